#pragma once

#include <string_view>
#include <vector>

#include "db/dao/windows/Ole.h"

namespace tsv::db::dao {

// An automation object whose members are found by name at each call. An error that the object raises becomes an Erro
// with its number, text and source; a member that it does not have raises 438.
class LateBound {
 public:
  using Arguments = std::vector<OleValue>;

  LateBound() = default;
  explicit LateBound(ComPointer<IDispatch> object) noexcept : object_(std::move(object)) {}

  // Creates the object of the first class that is installed; none is an empty object.
  static LateBound Create(std::initializer_list<std::wstring_view> progIds);

  explicit operator bool() const noexcept { return static_cast<bool>(object_); }
  IDispatch* Object() const noexcept { return object_.Get(); }

  OleValue Get(const wchar_t* name, Arguments arguments = {}) const;
  OleValue Call(const wchar_t* name, Arguments arguments = {}) const;
  void Put(const wchar_t* name, OleValue value) const;

  LateBound ObjectFrom(const wchar_t* name, Arguments arguments = {}) const;  // of a call or a property

 private:
  OleValue Invoke(const wchar_t* name, WORD flags, Arguments& arguments) const;

  ComPointer<IDispatch> object_;
};

template <typename... Values>
LateBound::Arguments ArgumentsOf(Values&&... values) {
  LateBound::Arguments arguments;
  (arguments.emplace_back(Variant(std::forward<Values>(values))), ...);
  return arguments;
}

}  // namespace tsv::db::dao

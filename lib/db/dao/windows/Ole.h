#pragma once

// The platform's automation headers, without the names that collide with ours.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <oleauto.h>
#undef MessageBox

#include <string>
#include <string_view>
#include <utility>

#include "types/Variant.h"

namespace tsv::db::dao {

// Holds one reference to an automation object.
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  explicit ComPointer(Interface* taken) noexcept : pointer_(taken) {}  // takes over the caller's reference
  static ComPointer Sharing(Interface* pointer) noexcept {
    if (pointer) pointer->AddRef();
    return ComPointer(pointer);
  }
  ComPointer(const ComPointer& other) noexcept : ComPointer(Sharing(other.pointer_)) {}
  ComPointer(ComPointer&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPointer() {
    if (pointer_) pointer_->Release();
  }

  Interface* Get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }
  Interface* Detach() noexcept { return std::exchange(pointer_, nullptr); }

  // Where a call that returns a reference leaves it. The pointer must be empty.
  Interface** Receive() noexcept { return &pointer_; }
  void** ReceiveAny() noexcept { return reinterpret_cast<void**>(&pointer_); }

 private:
  Interface* pointer_ = nullptr;
};

// An automation value that is freed with its owner.
class OleValue {
 public:
  OleValue() noexcept { VariantInit(&value_); }
  explicit OleValue(const Variant& value);
  explicit OleValue(IDispatch* object) noexcept;
  OleValue(OleValue&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  OleValue& operator=(OleValue&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  OleValue(const OleValue& other);
  ~OleValue() { VariantClear(&value_); }

  VARIANT& Raw() noexcept { return value_; }
  const VARIANT& Raw() const noexcept { return value_; }
  VARIANT Detach() noexcept { return std::exchange(value_, VARIANT{}); }

 private:
  VARIANT value_;
};

// The value of an automation value, through a reference if it is one; an object stands for its default value. A kind
// that the domain does not know, or an object without one, raises 13.
Variant ValueOf(const VARIANT& value);

// The object in an automation value; none raises 91, no object 13.
ComPointer<IDispatch> ObjectOf(const VARIANT& value);

// Calls a member of an object. An error that the object raises becomes an Erro with its number, text and source; what
// automation itself refuses is returned.
HRESULT CallMember(IDispatch& object, DISPID member, WORD flags, DISPPARAMS& given, VARIANT* result);

BSTR NewBstr(std::string_view utf8);  // the caller's to free
std::string TextOf(BSTR text);        // null is the empty text

}  // namespace tsv::db::dao

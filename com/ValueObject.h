#pragma once

#include <memory>

#include "Object.h"
#include "Values.h"

namespace tsv::com {

// An object that is one value of the library.
template <typename Interface, typename Value>
class ValueObject : public Object<Interface> {
 public:
  explicit ValueObject(std::shared_ptr<Value> value = std::make_shared<Value>()) : value_(std::move(value)) {}

 protected:
  template <typename Place, typename Property>
  static HRESULT Get(Place* place, const Property& property) noexcept {
    return Give(__uuidof(Interface), place, property);
  }

  template <typename Place, typename Action>
  static HRESULT Let(const Place* given, Action&& action) noexcept {
    return given ? Object<Interface>::Do(std::forward<Action>(action)) : E_POINTER;
  }

  std::shared_ptr<Value> value_;
};

}  // namespace tsv::com

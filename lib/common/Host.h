#pragma once

#include <cstdint>
#include <string_view>

#include "types/Date.h"

namespace tsv {

// What the library asks of the program around it. The default has no user interface: it shows nothing and answers OK.
class Host {
 public:
  static constexpr std::int32_t kDefaultPointer = 0;
  static constexpr std::int32_t kBusyPointer = 11;
  static constexpr std::int32_t kOk = 1;  // the button of a plain box

  virtual ~Host() = default;

  virtual void ShowBusyPointer() {}
  virtual void ShowNormalPointer() {}
  virtual std::int32_t Pointer() { return kDefaultPointer; }
  virtual void Pointer(std::int32_t /*code*/) {}

  // A modal box; returns the button that the user pressed. buttons: 0 is a plain OK box.
  virtual std::int32_t MessageBox(std::string_view /*prompt*/, std::int32_t /*buttons*/, std::string_view /*title*/,
                                  std::string_view /*helpFile*/, std::int32_t /*helpContext*/) {
    return kOk;
  }

  // Forgets the keys and clicks that wait for the program.
  virtual void DiscardPendingInput() {}

  virtual Date Now() { return Date::Now(); }
};

}  // namespace tsv

#pragma once

#include "common/Host.h"
#include "db/dao/windows/Ole.h"

namespace tsv::com {

// The screen of the client's thread.
class WindowsHost final : public Host {
 public:
  void ShowBusyPointer() override { Pointer(kBusyPointer); }
  void ShowNormalPointer() override { Pointer(kDefaultPointer); }
  std::int32_t Pointer() override { return pointer_; }
  void Pointer(std::int32_t code) override;
  std::int32_t MessageBox(std::string_view prompt, std::int32_t buttons, std::string_view title,
                          std::string_view helpFile, std::int32_t helpContext) override;
  void DiscardPendingInput() override;

 private:
  std::int32_t pointer_ = kDefaultPointer;  // the code that was set last: the screen keeps only its picture
};

}  // namespace tsv::com

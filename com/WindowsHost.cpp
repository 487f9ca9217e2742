#include "WindowsHost.h"

#include <optional>
#include <string>

namespace tsv::com {
namespace {

std::wstring Wide(std::string_view utf8) {
  const db::dao::OleValue text{Variant(std::string(utf8))};
  return {text.Raw().bstrVal, SysStringLen(text.Raw().bstrVal)};
}

// The end of the program comes whatever is asked for, and is not input: its code is given back.
std::optional<int> Discard(UINT first, UINT last) {
  std::optional<int> end;
  MSG message;
  while (PeekMessageA(&message, nullptr, first, last, PM_REMOVE)) {
    if (message.message == WM_QUIT) end = static_cast<int>(message.wParam);
  }
  return end;
}

}  // namespace

void WindowsHost::Pointer(std::int32_t code) {
  pointer_ = code;
  SetCursor(LoadCursorA(nullptr, code == kBusyPointer ? IDC_WAIT : IDC_ARROW));
}

std::int32_t WindowsHost::MessageBox(std::string_view prompt, std::int32_t buttons, std::string_view title,
                                     std::string_view /*helpFile*/, std::int32_t /*helpContext*/) {
  return MessageBoxW(GetActiveWindow(), Wide(prompt).c_str(), Wide(title).c_str(),
                     static_cast<UINT>(buttons) | MB_TASKMODAL);
}

void WindowsHost::DiscardPendingInput() {
  const auto end = Discard(WM_KEYFIRST, WM_KEYFIRST + 8);
  const auto later = Discard(WM_MOUSEFIRST, WM_MOUSEFIRST + 9);
  if (end || later) PostQuitMessage(end ? *end : *later);
}

}  // namespace tsv::com

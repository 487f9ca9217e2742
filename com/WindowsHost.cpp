#include "WindowsHost.h"

#include <string>

namespace tsv::com {
namespace {

std::wstring Wide(std::string_view utf8) {
  const db::dao::OleValue text{Variant(std::string(utf8))};
  return {text.Raw().bstrVal, SysStringLen(text.Raw().bstrVal)};
}

void Discard(UINT first, UINT last) {
  MSG message;
  while (PeekMessageA(&message, nullptr, first, last, PM_REMOVE)) {
  }
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
  Discard(WM_KEYFIRST, WM_KEYFIRST + 8);
  Discard(WM_MOUSEFIRST, WM_MOUSEFIRST + 9);
}

}  // namespace tsv::com

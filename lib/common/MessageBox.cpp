#include "common/MessageBox.h"

#include "common/Errors.h"
#include "common/Session.h"

namespace tsv::Module1 {

std::int32_t MsgBox(std::string_view prompt, std::int32_t buttons, std::string_view title, std::string_view helpFile,
                    std::int32_t helpContext) {
  return UnderHandler("em Tesovia_MsgBox", [&] {
    Host& host = *CurrentSession().host;
    const std::int32_t pointer = host.Pointer();
    host.Pointer(Host::kDefaultPointer);
    const std::int32_t button = host.MessageBox(prompt, buttons, title, helpFile, helpContext);
    host.Pointer(pointer);
    return button;
  });
}

}  // namespace tsv::Module1

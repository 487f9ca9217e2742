#pragma once

#include <cstdint>
#include <string_view>

namespace tsv::Module1 {

// Shows the host's message box under the default pointer, which afterwards is again what it was. Returns the button
// pressed. Never inside an open transaction: the user may take his time.
std::int32_t MsgBox(std::string_view prompt, std::int32_t buttons = 0, std::string_view title = {},
                    std::string_view helpFile = {}, std::int32_t helpContext = 0);

}  // namespace tsv::Module1

#include "ConsoleHost.h"

#include <iostream>

namespace tsv::cli {

std::int32_t ConsoleHost::MessageBox(std::string_view prompt, std::int32_t, std::string_view, std::string_view,
                                     std::int32_t) {
  last_ = prompt;
  if (!keep_) std::cerr << prompt << '\n';
  return kOk;
}

void ConsoleHost::Explain(std::string_view text) {
  if (!keep_) std::cerr << text << '\n';
  last_.append(" ").append(text);
}

}  // namespace tsv::cli

#pragma once

#include <string>
#include <string_view>

#include "common/Host.h"

namespace tsv::cli {

// Message boxes go to standard error, or are kept for a command that reports them itself.
class ConsoleHost : public tsv::Host {
 public:
  std::int32_t MessageBox(std::string_view prompt, std::int32_t buttons, std::string_view title,
                          std::string_view helpFile, std::int32_t helpContext) override;

  // Adds to the last box what the command itself found out about it.
  void Explain(std::string_view text);

  void KeepBoxes() { keep_ = true; }
  const std::string& LastBox() const { return last_; }  // empty: none since ForgetBox
  void ForgetBox() { last_.clear(); }

 private:
  bool keep_ = false;
  std::string last_;
};

}  // namespace tsv::cli

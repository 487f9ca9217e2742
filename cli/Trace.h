#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "db/Database.h"

namespace tsv::cli {

// Writes every statement to a file, each followed by "  -> " and its count of rows; one that failed has no count.
class Trace : public db::StatementObserver {
 public:
  explicit Trace(const std::string& path);  // a file that exists is refused

  // From now on the text, as a literal, is written as '***'.
  void Hide(std::string_view secret);

  void AboutToRun(std::string_view text) override;
  void HasRun(std::string_view text, std::int32_t affected) override;

 private:
  std::ofstream file_;
  std::vector<std::string> hidden_;
};

}  // namespace tsv::cli

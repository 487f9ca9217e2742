#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tsv::cli {

// A bar on standard error for work that lasts; nothing when that is no terminal or the work is done at once.
class ProgressBar {
 public:
  ProgressBar(std::string label, std::int64_t total);
  ~ProgressBar();  // wipes the bar
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void At(std::int64_t done);

  // Takes the bar off the line, for a message; the next call of At draws it again.
  void Wipe();

 private:
  void Draw(std::int64_t done);

  std::string label_;
  std::int64_t total_;
  bool visible_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace tsv::cli

#include "ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace tsv::cli {
namespace {

constexpr auto kFirst = std::chrono::milliseconds(500);
constexpr auto kBetween = std::chrono::milliseconds(100);
constexpr std::int64_t kCells = 40;

}  // namespace

ProgressBar::ProgressBar(std::string label, std::int64_t total)
    : label_(std::move(label)),
      total_(std::max<std::int64_t>(total, 1)),
      visible_(isatty(STDERR_FILENO) != 0),
      next_(std::chrono::steady_clock::now() + kFirst) {}

ProgressBar::~ProgressBar() { Wipe(); }

void ProgressBar::At(std::int64_t done) {
  if (!visible_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) return;
  next_ = now + kBetween;
  Draw(std::clamp<std::int64_t>(done, 0, total_));
}

void ProgressBar::Draw(std::int64_t done) {
  const std::int64_t cells = done * kCells / total_;
  std::string bar;
  for (std::int64_t cell = 0; cell < kCells; ++cell) bar += cell < cells ? "█" : "░";
  std::cerr << '\r' << label_ << ' ' << bar << ' ' << done * 100 / total_ << "% " << std::flush;
  drawn_ = true;
}

void ProgressBar::Wipe() {
  if (!drawn_) return;
  std::cerr << "\r\x1b[K" << std::flush;
  drawn_ = false;
}

}  // namespace tsv::cli

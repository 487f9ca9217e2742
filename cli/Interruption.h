#pragma once

#include <array>
#include <csignal>

namespace tsv::cli {

// While it lives, Ctrl+C and the request to end do not kill the process but wait until its work is undone: what was
// begun must not be left behind. Once it is gone the signal that came does what it always does.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Raises a Failure when a signal came.
  void Check() const;

 private:
  static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

  std::array<void (*)(int), kSignals.size()> before_{};
};

}  // namespace tsv::cli

#include "Interruption.h"

#include <iostream>

#include "Failure.h"

namespace tsv::cli {
namespace {

volatile std::sig_atomic_t came = 0;

}  // namespace

Interruption::Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    before_[i] = std::signal(kSignals[i], [](int signal) { came = signal; });
    if (before_[i] == SIG_IGN) static_cast<void>(std::signal(kSignals[i], SIG_IGN));  // as under nohup
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) static_cast<void>(std::signal(kSignals[i], before_[i]));
  if (came != 0) static_cast<void>(std::raise(came));
}

void Interruption::Check() const {
  if (came == 0) return;
  std::cerr << "\nInterrompido; o que foi começado é desfeito.\n";
  throw Failure(kFailed, "Interrompido.");
}

}  // namespace tsv::cli

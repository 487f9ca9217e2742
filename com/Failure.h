#pragma once

#include <exception>
#include <utility>

#include "Module.h"
#include "types/Erro.h"

namespace tsv::com {

// The error in flight as automation carries it: its number as the result, origin and description in the thread's error
// object, for the clients of the interface.
HRESULT ReportFailure(REFIID id) noexcept;

// Runs what a member does; nothing but a result leaves it.
template <typename Action>
HRESULT Guarded(REFIID id, Action&& action) noexcept {
  try {
    std::forward<Action>(action)();
    return S_OK;
  } catch (...) {
    return ReportFailure(id);
  }
}

// Moves the error that a member reported into a dispatch call's own report. Returns what the call then returns.
HRESULT TakeFailure(HRESULT result, EXCEPINFO* report) noexcept;

}  // namespace tsv::com

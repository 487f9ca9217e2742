#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <ostream>
#include <string_view>
#include <thread>
#include <utility>

#include "types/Currency.h"
#include "types/Erro.h"

namespace tsv {

inline std::ostream& operator<<(std::ostream& out, const Erro& erro) {
  return out << erro.Numero() << " '" << erro.Descricao() << "' [" << erro.Origem() << "]";
}

inline void PrintTo(Currency amount, std::ostream* out) { *out << amount.ToText(); }

namespace test {

// The error that the action raises; number 0 when it raises none.
template <typename Action>
Erro ErrorOf(Action&& action) {
  try {
    std::forward<Action>(action)();
  } catch (const Erro& erro) {
    return erro;
  }
  return Erro(0, "no error");
}

inline void ExpectErro(const Erro& actual, std::int32_t number, std::string_view description, std::string_view origin) {
  EXPECT_EQ(actual.Numero(), number) << actual;
  EXPECT_EQ(actual.Descricao(), description) << actual;
  EXPECT_EQ(actual.Origem(), origin) << actual;
}

// Runs the action as another user would: on a thread of its own, with a session and an error state of its own.
template <typename Action>
void OnAnotherThread(Action&& action) {
  std::exception_ptr failure;
  std::thread([&] {
    try {
      action();
    } catch (...) {
      failure = std::current_exception();
    }
  }).join();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace test
}  // namespace tsv

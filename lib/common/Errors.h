#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "types/Erro.h"

namespace tsv {

// The library's own error numbers. Clients test them: refused entries are TS_ERRO_LANCAMENTO and refused transfers
// TS_ERRO_TRANSFERENCIA, and the two validation numbers are published but never raised.
enum TS_ERROS : std::int32_t {
  TS_ERRO_LOGIN = -2147211505,
  TS_ERRO_LANCAMENTO = -2147211504,
  TS_ERRO_EXCLUSAO = -2147211503,
  TS_ERRO_BAIXA = -2147211502,
  TS_ERRO_VALIDACAO_LANCAMENTO = -2147211501,
  TS_ERRO_VALIDACAO_TRANSFERENCIA = -2147211500,
  TS_ERRO_NAO_INICIALIZADO = -2147211498,
  TS_ERRO_CARREGAR_LANCAMENTO = -2147211497,
  TS_ERRO_TRANSFERENCIA = -2147211496,
  TS_ERRO_JA_BAIXADO = -2147211495,
  TS_ERRO_ESTORNO = -2147211494,
};

namespace Module1 {

// Raises the number with the origin that the thread's last handler stored, however old: the handler of the calling
// routine decides whether it stays.
[[noreturn]] void GerarErro(std::int32_t numero, std::string_view descricao);

// The error in flight, inside a catch. An exception that is no Erro becomes 7 (out of memory) or 51.
Erro CaughtError();

// The handler of a routine, inside a catch: keeps number and description, keeps the origin too if its first three
// characters are the prefix (otherwise the routine's own takes its place), and raises the error again.
[[noreturn]] void RaiseAgain(std::string_view origin, std::string_view prefix);

// Runs a routine's body under its handler. What the body holds open is released before the error goes on.
template <typename Body>
auto UnderHandler(std::string_view origin, Body&& body, std::string_view prefix = "em ") {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    RaiseAgain(origin, prefix);
  }
}

// Does what must not fail: closing things, restoring the pointer.
template <typename Action>
void IgnoringErrors(Action&& action) noexcept {
  try {
    std::forward<Action>(action)();
  } catch (...) {  // NOLINT(bugprone-empty-catch): what went before is what counts
  }
}

}  // namespace Module1
}  // namespace tsv

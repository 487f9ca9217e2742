#include "types/Erro.h"

#include <utility>

namespace tsv {

Erro::Erro(std::int32_t numero, std::string descricao, std::string origem)
    : numero_(numero), descricao_(std::move(descricao)), origem_(std::move(origem)) {}

const char* TextOf(RuntimeError error) noexcept {
  switch (error) {
    case RuntimeError::InvalidArgument:
      return "Argumento inválido.";
    case RuntimeError::Overflow:
      return "Valor fora dos limites do tipo.";
    case RuntimeError::OutOfMemory:
      return "Memória insuficiente.";
    case RuntimeError::SubscriptOutOfRange:
      return "Índice fora do intervalo.";
    case RuntimeError::DivisionByZero:
      return "Divisão por zero.";
    case RuntimeError::TypeMismatch:
      return "Valor de tipo incompatível.";
    case RuntimeError::Internal:
      return "Erro interno.";
    case RuntimeError::ObjectNotSet:
      return "Objeto não informado.";
    case RuntimeError::InvalidPattern:
      return "Padrão de comparação inválido.";
    case RuntimeError::InvalidUseOfNull:
      return "Uso de Null onde um valor é necessário.";
  }
  return "Erro interno.";
}

void Raise(RuntimeError error) { throw Erro(static_cast<std::int32_t>(error), TextOf(error)); }

}  // namespace tsv

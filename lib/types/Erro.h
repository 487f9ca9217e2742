#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tsv {

// The one exception of the library: what an automation client sees as Err.Number, Err.Description and Err.Source.
class Erro : public std::exception {
 public:
  explicit Erro(std::int32_t numero, std::string descricao = {}, std::string origem = {});

  std::int32_t Numero() const noexcept { return numero_; }
  const std::string& Descricao() const noexcept { return descricao_; }
  const std::string& Origem() const noexcept { return origem_; }
  const char* what() const noexcept override { return descricao_.c_str(); }

 private:
  std::int32_t numero_;
  std::string descricao_;
  std::string origem_;
};

// Failures of the runtime itself; the values are those that automation clients know.
enum class RuntimeError : std::int32_t {
  InvalidArgument = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  Internal = 51,
  ObjectNotSet = 91,
  InvalidPattern = 93,
  InvalidUseOfNull = 94,
};

// The Portuguese text that goes with the number.
const char* TextOf(RuntimeError error) noexcept;

[[noreturn]] void Raise(RuntimeError error);

}  // namespace tsv

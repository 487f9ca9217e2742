#pragma once

#include <cstdint>
#include <memory>

#include "CLancamento.h"
#include "types/Currency.h"
#include "types/Variant.h"

namespace tsv {

class CBaixa;

// How a forecast ended.
enum TIPO_BAIXA : std::int32_t {
  BAIXA_TOTAL = 1,          // realised in full
  BAIXA_PARCIAL = 2,        // realised in part; nothing is left open
  BAIXA_NAO_REALIZADO = 3,  // it did not happen
};

namespace internal {
// The entry that a settlement is about, as stored: none until the settlement has read it.
const std::shared_ptr<CLancamento>& LancamentoDe(const CBaixa& baixa) noexcept;
void AnexarLancamento(CBaixa& baixa, std::shared_ptr<CLancamento> lancamento) noexcept;
}  // namespace internal

// A client's request to settle (baixar) a forecast. Nothing is checked as it is assigned: the settlement holds the
// whole request against the stored entry. A new request holds zeros and an Empty date.
class CBaixa {
 public:
  TIPO_BAIXA TipoBaixa() const noexcept { return tipo_baixa_; }
  void TipoBaixa(TIPO_BAIXA valor) noexcept { tipo_baixa_ = valor; }

  const Variant& DataRealizacao() const noexcept { return data_realizacao_; }  // a date, or a text that reads as one
  void DataRealizacao(const Variant& valor);

  Currency ValorBaixado() const noexcept { return valor_baixado_; }  // of the entry's sign
  void ValorBaixado(Currency valor) noexcept { valor_baixado_ = valor; }

  std::int32_t IdLancamento() const noexcept { return id_lancamento_; }
  void IdLancamento(std::int32_t valor) noexcept { id_lancamento_ = valor; }

  // The version of the entry that the client last saw.
  std::int32_t IdConcorrencia() const noexcept { return id_concorrencia_; }
  void IdConcorrencia(std::int32_t valor) noexcept { id_concorrencia_ = valor; }

 private:
  friend const std::shared_ptr<CLancamento>& internal::LancamentoDe(const CBaixa&) noexcept;
  friend void internal::AnexarLancamento(CBaixa&, std::shared_ptr<CLancamento>) noexcept;

  TIPO_BAIXA tipo_baixa_ = TIPO_BAIXA{};
  Variant data_realizacao_;
  Currency valor_baixado_;
  std::int32_t id_lancamento_ = 0;
  std::int32_t id_concorrencia_ = 0;
  std::shared_ptr<CLancamento> lancamento_;  // the entry as stored, once the settlement has read it
};

}  // namespace tsv

#include "CBaixa.h"

#include "Requests.h"
#include "common/Errors.h"
#include "types/Conversions.h"

namespace tsv {

using Module1::GerarErro;
using Module1::UnderHandler;

namespace {

[[noreturn]] void Refuse(std::string_view message) { GerarErro(TS_ERRO_BAIXA, message); }

bool IsPositive(Currency amount) {
  if (amount == Currency()) Raise(RuntimeError::DivisionByZero);
  return amount > Currency();
}

bool IsSameMoment(const Variant& realised, const Variant& stored) {
  return IsDate(realised) && ToDate(realised) == ToDate(stored);
}

void ValidateUnrealised(const CBaixa& baixa, const CLancamento& entry) {
  if (ToDate(baixa.DataRealizacao()).DayNumber() != ToDate(entry.Data()).DayNumber()) {
    Refuse("Não é permitido alterar a data de lançamento ao baixá-lo como não-realizado.");
  }
  if (baixa.ValorBaixado() != entry.Valor()) {
    Refuse("Não é permitido alterar o valor de lançamento ao baixá-lo como não-realizado.");
  }
}

void ValidateTotal(const CBaixa& baixa, const CLancamento& entry) {
  if (baixa.ValorBaixado() != entry.Valor()) {
    Refuse("Foi informada baixa total e um valor baixado diferente do valor do lançamento baixado.");
  }
  if (entry.Transferencia() != 0 && !IsSameMoment(baixa.DataRealizacao(), entry.Data())) {
    Refuse("Lançamento que é parte de uma transferência não pode ser baixado com data diferente da original.");
  }
}

void ValidatePartial(const CBaixa& baixa, const CLancamento& entry) {
  if (entry.Transferencia() != 0) {
    Refuse("Lancamento parte de uma transferência não pode receber baixa parcial.");
  }
  if (baixa.ValorBaixado().Abs() > entry.Valor().Abs()) {
    Refuse("Amplitude do valor baixado não pode ser maior que a do valor original do lançamento.");
  }
  if (baixa.ValorBaixado() == entry.Valor()) {
    Refuse("Informada baixa parcial, mas valor baixado é igual ao valor original do lançamento.");
  }
}

}  // namespace

void CBaixa::DataRealizacao(const Variant& valor) {
  UnderHandler("em CBaixa.DataRealizacao", [&] { data_realizacao_ = valor; });
}

const std::shared_ptr<CLancamento>& internal::LancamentoDe(const CBaixa& baixa) noexcept { return baixa.lancamento_; }

void internal::AnexarLancamento(CBaixa& baixa, std::shared_ptr<CLancamento> lancamento) noexcept {
  baixa.lancamento_ = std::move(lancamento);
}

bool internal::Validar(const CBaixa& baixa) {
  if (baixa.IdLancamento() == 0) Refuse("Faltando informar o identificador do lançamento a ser baixado.");
  const CLancamento& entry = *LancamentoDe(baixa);
  if (entry.Estornado() || entry.Estorno()) {
    Refuse("Lançamentos estornados ou que sejam estorno de outro não podem ser baixados.");
  }
  if (IsPositive(baixa.ValorBaixado()) != IsPositive(entry.Valor())) {
    Refuse("Valor baixado não pode ser de sinal diferente do valor do lançamento.");
  }
  if (baixa.TipoBaixa() == BAIXA_NAO_REALIZADO) {
    ValidateUnrealised(baixa, entry);
    return true;
  }
  // Stands here although the test of the signs has stopped a zero: clients know the order of the checks.
  if (baixa.ValorBaixado() == Currency()) Refuse("Valor baixado não pode ser igual a zero.");
  if (baixa.TipoBaixa() == BAIXA_TOTAL) ValidateTotal(baixa, entry);
  if (baixa.TipoBaixa() == BAIXA_PARCIAL) ValidatePartial(baixa, entry);
  if (IsEmpty(baixa.DataRealizacao())) Refuse("Faltando informar data de realização da previsão para a baixa.");
  if (!IsDate(baixa.DataRealizacao())) Refuse("Data de realização da previsão baixada é inválida.");
  return true;
}

}  // namespace tsv

#include "CLancamento.h"

#include <algorithm>
#include <array>

#include "Limits.h"
#include "common/Errors.h"
#include "common/Literals.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv {

using internal::kCodeLimit;
using internal::kDocumentLimit;
using internal::kHistoryLimit;
using Module1::GerarErro;
using Module1::UnderHandler;

namespace {

constexpr const char* kInvalidDate = "Data de realização inválida.";
constexpr const char* kInvalidReferenceDate = "Data de referência inválida.";
constexpr const char* kInvalidDueDate = "Data de vencimento inválida.";

std::string_view TrimmedUpTo(std::size_t limit, std::string_view value, std::string_view refusal) {
  return internal::TrimmedUpTo(limit, value, TS_ERRO_LANCAMENTO, refusal);
}

void RefuseUnlessDate(const Variant& value, std::string_view refusal) {
  if (!IsEmpty(value) && !IsDate(value)) GerarErro(TS_ERRO_LANCAMENTO, refusal);
}

void RequireDate(const Variant& value, std::string_view missing, std::string_view invalid) {
  if (IsEmpty(value)) GerarErro(TS_ERRO_LANCAMENTO, missing);
  RefuseUnlessDate(value, invalid);
}

void RequireText(const std::string& value, std::string_view missing) {
  if (value.empty()) GerarErro(TS_ERRO_LANCAMENTO, missing);
}

}  // namespace

void CLancamento::CodConta(std::string_view valor) {
  UnderHandler("em CLancamento.CodConta", [&] {
    cod_conta_ = TrimmedUpTo(kCodeLimit, valor, "Código de conta de capital não pode ter mais do que 31 caracteres.");
  });
}

void CLancamento::CodRecDesp(std::string_view valor) {
  UnderHandler("em CLancamento.CodRecDesp", [&] {
    cod_rec_desp_ = TrimmedUpTo(kCodeLimit, valor, "Código de receita/despesa não pode ter mais do que 31 caracteres.");
  });
}

void CLancamento::DataId(std::string_view valor) {
  UnderHandler("em CLancamento.DataId", [&] { data_id_ = valor; });
}

void CLancamento::Data(const Variant& valor) {
  UnderHandler("em CLancamento.Data", [&] {
    RefuseUnlessDate(valor, kInvalidDate);
    data_ = valor;
  });
}

void CLancamento::Documento(std::string_view valor) {
  UnderHandler("em CLancamento.Documento", [&] {
    documento_ = TrimmedUpTo(kDocumentLimit, valor, "Documento não deve ter mais do que 15 caracteres.");
  });
}

void CLancamento::Historico(std::string_view valor) {
  UnderHandler("em CLancamento.Historico", [&] {
    historico_ = text::Upper(TrimmedUpTo(kHistoryLimit, valor, "Histórico não deve ter mais do que 50 caracteres."));
  });
}

void CLancamento::Realizado(std::string_view valor) {
  UnderHandler("em CLancamento.Realizado", [&] {
    constexpr std::array<std::string_view, 5> kAllowed = {"", "?", "S", "N", "E"};
    const std::string_view trimmed = text::Trim(valor);
    if (std::find(kAllowed.begin(), kAllowed.end(), trimmed) == kAllowed.end()) {
      GerarErro(TS_ERRO_LANCAMENTO, "Informação inválida para o campo 'Realizado'.");
    }
    realizado_ = trimmed;
  });
}

void CLancamento::CodCentroCusto(std::string_view valor) {
  UnderHandler("em CLancamento.CodCentroCusto", [&] {
    cod_centro_custo_ =
        TrimmedUpTo(kCodeLimit, valor, "Código de centro de custo/lucro não pode ter mais do que 31 caracteres.");
  });
}

void CLancamento::DataReferencia(const Variant& valor) {
  UnderHandler("em CLancamento.DataReferencia, linha: 1", [&] {
    RefuseUnlessDate(valor, kInvalidReferenceDate);
    data_referencia_ = valor;
  });
}

void CLancamento::DataVencimento(const Variant& valor) {
  UnderHandler("em CLancamento.DataVencimento, linha: 1", [&] {
    RefuseUnlessDate(valor, kInvalidDueDate);
    data_vencimento_ = valor;
  });
}

bool CLancamento::Validar() const {
  return UnderHandler("em CLancamento.Validar", [&] {
    RequireText(cod_conta_, "Faltando informar o código da conta de capital.");
    RequireText(cod_rec_desp_, "Faltando informar o código da receita/despesa.");
    RequireDate(data_, "Faltando informar a data da previsão do lançamento.", "Data de previsão inválida.");
    RequireDate(data_referencia_, "Faltando informar a data de referência do lançamento.", kInvalidReferenceDate);
    RequireDate(data_vencimento_, "Faltando informar a data de vencimento do lançamento.", kInvalidDueDate);
    RequireText(historico_, "Faltando informar o histórico do lançamento.");
    if (valor_ == Currency()) GerarErro(TS_ERRO_LANCAMENTO, "Faltando informar o valor do lançamento.");
    if (id_usuario_ == 0) {
      GerarErro(TS_ERRO_LANCAMENTO, "Faltando informar o valor para 'IdUsuario' do lançamento.");
    }
    return true;
  });
}

void CLancamento::CarregarDeRegistro(const db::Recordset& rs) {
  const auto load = [&] {
    const auto value = [&](std::string_view column) -> const Variant& { return rs.Fields(column).Value(); };
    using Module1::VtoB;
    using Module1::VtoN;
    using Module1::VtoS;
    cod_centro_custo_ = VtoS(value("CodCentroCusto"));
    cod_conta_ = ToText(value("CodConta"));
    cod_rec_desp_ = ToText(value("CodRecDesp"));
    data_ = VtoN(value("Data"));
    data_referencia_ = VtoN(value("DataReferencia"));
    data_vencimento_ = VtoN(value("DataVencimento"));
    data_id_ = ToText(value("DataId"));
    documento_ = VtoS(value("Documento"));
    estornado_ = VtoB(value("Estornado"));
    estorno_ = VtoB(value("Estorno"));
    historico_ = ToText(value("Historico"));
    id_ = ToLong(value("Id"));
    id_concorrencia_ = ToLong(VtoN(value("IdConcorrencia")));
    id_parceiro_coml_ = ToLong(VtoN(value("IdParceiroComl")));
    id_usuario_ = ToLong(value("IdUsuario"));
    realizado_ = ToText(value("Realizado"));
    saldo_conta_ = ToCurrency(value("SaldoConta"));
    saldo_rec_desp_ = ToCurrency(value("SaldoRecDesp"));
    saldo_centro_custo_ = ToCurrency(VtoN(value("SaldoCentroCusto")));
    saldo_parceiro_coml_ = ToCurrency(VtoN(value("SaldoParceiroComl")));
    saldo_global_ = ToCurrency(value("SaldoGlobal"));
    transferencia_ = ToByte(VtoN(value("Transferencia")));
    valor_ = ToCurrency(value("Valor"));
    valor_pago_ = ToCurrency(VtoN(value("ValorPago")));
  };
  UnderHandler("Em CLancamento.CarregarDeRegistro", load, "Em ");
}

std::shared_ptr<CLancamento> CLancamento::Copiar() const {
  return UnderHandler("em CLancamento.Copiar", [&] {
    auto copia = std::make_shared<CLancamento>();
    copia->CodCentroCusto(cod_centro_custo_);
    copia->CodConta(cod_conta_);
    copia->CodRecDesp(cod_rec_desp_);
    copia->Data(data_);
    copia->DataReferencia(data_referencia_);
    copia->DataVencimento(data_vencimento_);
    copia->DataId(data_id_);
    copia->Documento(documento_);
    copia->Estornado(estornado_);
    copia->Estorno(estorno_);
    copia->Historico(historico_);
    copia->Id(id_);
    copia->IdConcorrencia(id_concorrencia_);
    copia->IdParceiroComl(id_parceiro_coml_);
    copia->IdUsuario(id_usuario_);
    copia->Realizado(realizado_);
    copia->SaldoCentroCusto(saldo_centro_custo_);
    copia->SaldoConta(saldo_conta_);
    copia->SaldoGlobal(saldo_global_);
    copia->SaldoParceiroComl(saldo_parceiro_coml_);
    copia->SaldoRecDesp(saldo_rec_desp_);
    copia->Transferencia(transferencia_);
    copia->Valor(valor_);
    copia->ValorPago(valor_pago_);
    return copia;
  });
}

}  // namespace tsv

#include "CTransferencia.h"

#include "Requests.h"
#include "common/Errors.h"
#include "types/Text.h"

namespace tsv {

using Module1::GerarErro;
using Module1::UnderHandler;

namespace {

constexpr std::size_t kCodeLimit = 31;
constexpr std::size_t kDocumentLimit = 15;
constexpr std::size_t kHistoryLimit = 50;

constexpr const char* kCodeTooLong = "Código de conta não pode ter mais do que 31 caracteres.";
constexpr const char* kHistoryTooLong = "Histórico não deve ter mais do que 50 caracteres.";
constexpr const char* kDocumentTooLong = "Documento não deve ter mais do que 15 caracteres.";
constexpr const char* kInvalidDate = "Data de transferência inválida.";

[[noreturn]] void Refuse(std::string_view message) { GerarErro(TS_ERRO_TRANSFERENCIA, message); }

std::string_view TrimmedUpTo(std::size_t limit, std::string_view value, std::string_view refusal) {
  const std::string_view trimmed = text::Trim(value);
  if (text::Length(trimmed) > limit) Refuse(refusal);
  return trimmed;
}

void RequireDate(Date date) {
  constexpr std::size_t kShortYear = 8;  // dd/mm/aa
  constexpr std::size_t kLongYear = 10;  // dd/mm/aaaa
  constexpr int kFirstYear = 1932;
  constexpr int kLastYear = 2028;
  const std::string written = date.ToBrazilian();
  if (written.size() < kLongYear && written.size() != kShortYear) {
    Refuse("Data incompleta. Deve ser no formato dd/mm/aaaa ou dd/mm/aa.");
  }
  if (!Date::FromText(written)) Refuse(kInvalidDate);
  const int year = date.ToCivil().year;
  if (year < kFirstYear || year > kLastYear) Refuse(kInvalidDate);
}

}  // namespace

void CTransferencia::CodContaOrigem(std::string_view valor) {
  UnderHandler("em CTransferencia.CodContaOrigem",
               [&] { cod_conta_origem_ = TrimmedUpTo(kCodeLimit, valor, kCodeTooLong); });
}

void CTransferencia::CodContaDestino(std::string_view valor) {
  UnderHandler("em CTransferencia.CodContaDestino",
               [&] { cod_conta_destino_ = TrimmedUpTo(kCodeLimit, valor, kCodeTooLong); });
}

void CTransferencia::HistoricoSaida(std::string_view valor) {
  UnderHandler("em CTransferencia.HistoricoSaida",
               [&] { historico_saida_ = TrimmedUpTo(kHistoryLimit, valor, kHistoryTooLong); });
}

void CTransferencia::HistoricoEntrada(std::string_view valor) {
  UnderHandler("em CTransferencia.HistoricoEntrada",
               [&] { historico_entrada_ = TrimmedUpTo(kHistoryLimit, valor, kHistoryTooLong); });
}

void CTransferencia::DocumentoSaida(std::string_view valor) {
  UnderHandler("em CTransferencia_DocumentoSaida",
               [&] { documento_saida_ = TrimmedUpTo(kDocumentLimit, valor, kDocumentTooLong); });
}

void CTransferencia::DocumentoEntrada(std::string_view valor) {
  UnderHandler("em CTransferencia_DocumentoEntrada",
               [&] { documento_entrada_ = TrimmedUpTo(kDocumentLimit, valor, kDocumentTooLong); });
}

bool internal::Validar(const CTransferencia& transferencia) {
  if (transferencia.Valor() == Currency()) Refuse("Valor de transferência não pode ser zero.");
  RequireDate(transferencia.DataDaTransferencia());
  if (transferencia.HistoricoSaida().empty()) Refuse("Informar histórico de saída.");
  if (transferencia.HistoricoEntrada().empty()) Refuse("Informar histórico de entrada.");
  if (TrimmedUpTo(kCodeLimit, transferencia.CodContaOrigem(), kCodeTooLong).empty()) {
    Refuse("Informar código da conta de orígem.");
  }
  if (TrimmedUpTo(kCodeLimit, transferencia.CodContaDestino(), kCodeTooLong).empty()) {
    Refuse("Informar código da conta de destino.");
  }
  return true;
}

}  // namespace tsv

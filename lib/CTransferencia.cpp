#include "CTransferencia.h"

#include "Limits.h"
#include "Requests.h"
#include "common/Errors.h"

namespace tsv {

using internal::kCodeLimit;
using internal::kDocumentLimit;
using internal::kHistoryLimit;
using Module1::GerarErro;
using Module1::UnderHandler;

namespace {

constexpr const char* kCodeTooLong = "Código de conta não pode ter mais do que 31 caracteres.";
constexpr const char* kHistoryTooLong = "Histórico não deve ter mais do que 50 caracteres.";
constexpr const char* kDocumentTooLong = "Documento não deve ter mais do que 15 caracteres.";
constexpr const char* kInvalidDate = "Data de transferência inválida.";

[[noreturn]] void Refuse(std::string_view message) { GerarErro(TS_ERRO_TRANSFERENCIA, message); }

std::string Trimmed(std::size_t limit, std::string_view value, std::string_view refusal) {
  return std::string(internal::TrimmedUpTo(limit, value, TS_ERRO_TRANSFERENCIA, refusal));
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
               [&] { cod_conta_origem_ = Trimmed(kCodeLimit, valor, kCodeTooLong); });
}

void CTransferencia::CodContaDestino(std::string_view valor) {
  UnderHandler("em CTransferencia.CodContaDestino",
               [&] { cod_conta_destino_ = Trimmed(kCodeLimit, valor, kCodeTooLong); });
}

void CTransferencia::HistoricoSaida(std::string_view valor) {
  UnderHandler("em CTransferencia.HistoricoSaida",
               [&] { historico_saida_ = Trimmed(kHistoryLimit, valor, kHistoryTooLong); });
}

void CTransferencia::HistoricoEntrada(std::string_view valor) {
  UnderHandler("em CTransferencia.HistoricoEntrada",
               [&] { historico_entrada_ = Trimmed(kHistoryLimit, valor, kHistoryTooLong); });
}

void CTransferencia::DocumentoSaida(std::string_view valor) {
  UnderHandler("em CTransferencia_DocumentoSaida",
               [&] { documento_saida_ = Trimmed(kDocumentLimit, valor, kDocumentTooLong); });
}

void CTransferencia::DocumentoEntrada(std::string_view valor) {
  UnderHandler("em CTransferencia_DocumentoEntrada",
               [&] { documento_entrada_ = Trimmed(kDocumentLimit, valor, kDocumentTooLong); });
}

bool internal::Validar(const CTransferencia& transferencia) {
  if (transferencia.Valor() == Currency()) Refuse("Valor de transferência não pode ser zero.");
  RequireDate(transferencia.DataDaTransferencia());
  if (transferencia.HistoricoSaida().empty()) Refuse("Informar histórico de saída.");
  if (transferencia.HistoricoEntrada().empty()) Refuse("Informar histórico de entrada.");
  if (Trimmed(kCodeLimit, transferencia.CodContaOrigem(), kCodeTooLong).empty()) {
    Refuse("Informar código da conta de orígem.");
  }
  if (Trimmed(kCodeLimit, transferencia.CodContaDestino(), kCodeTooLong).empty()) {
    Refuse("Informar código da conta de destino.");
  }
  return true;
}

}  // namespace tsv

#pragma once

#include <string>
#include <string_view>

#include "types/Currency.h"
#include "types/Date.h"

namespace tsv {

// A client's request to move an amount from one account to another: it becomes an outgoing entry (saída) on the first
// and an incoming entry (entrada) on the second. Texts are trimmed before their limit (in characters) applies; a text
// beyond it raises TS_ERRO_TRANSFERENCIA and leaves the request as it was. A new request holds empty texts, amount 0
// and the zero date. The two accounts are not compared.
class CTransferencia {
 public:
  const std::string& CodContaOrigem() const noexcept { return cod_conta_origem_; }
  void CodContaOrigem(std::string_view valor);  // up to 31

  const std::string& CodContaDestino() const noexcept { return cod_conta_destino_; }
  void CodContaDestino(std::string_view valor);  // up to 31

  Currency Valor() const noexcept { return valor_; }  // its sign does not matter
  void Valor(Currency valor) noexcept { valor_ = valor; }

  Date DataDaTransferencia() const noexcept { return data_da_transferencia_; }
  void DataDaTransferencia(Date valor) noexcept { data_da_transferencia_ = valor; }

  // Up to 50 each, kept in the case given.
  const std::string& HistoricoSaida() const noexcept { return historico_saida_; }
  void HistoricoSaida(std::string_view valor);

  const std::string& HistoricoEntrada() const noexcept { return historico_entrada_; }
  void HistoricoEntrada(std::string_view valor);

  // Up to 15 each; empty: none.
  const std::string& DocumentoSaida() const noexcept { return documento_saida_; }
  void DocumentoSaida(std::string_view valor);

  const std::string& DocumentoEntrada() const noexcept { return documento_entrada_; }
  void DocumentoEntrada(std::string_view valor);

 private:
  std::string cod_conta_origem_;
  std::string cod_conta_destino_;
  Currency valor_;
  Date data_da_transferencia_;
  std::string historico_saida_;
  std::string historico_entrada_;
  std::string documento_saida_;
  std::string documento_entrada_;
};

}  // namespace tsv

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "db/Recordset.h"
#include "types/Currency.h"
#include "types/Variant.h"

namespace tsv {

// One entry of the ledger. Each property is checked as it is assigned; a refused value raises TS_ERRO_LANCAMENTO with
// the message for the user and leaves the entry as it was. Texts are trimmed before their limit (in characters)
// applies. A new entry holds empty texts, zeros, False and Empty dates.
class CLancamento {
 public:
  std::int32_t Id() const noexcept { return id_; }
  void Id(std::int32_t valor) noexcept { id_ = valor; }

  const std::string& CodConta() const noexcept { return cod_conta_; }
  void CodConta(std::string_view valor);  // up to 31

  const std::string& CodRecDesp() const noexcept { return cod_rec_desp_; }
  void CodRecDesp(std::string_view valor);  // up to 31

  Currency Valor() const noexcept { return valor_; }  // positive in, negative out
  void Valor(Currency valor) noexcept { valor_ = valor; }

  const std::string& DataId() const noexcept { return data_id_; }  // the ordering key
  void DataId(std::string_view valor);

  // Empty, a date, or a text that reads as one, which stays a text.
  const Variant& Data() const noexcept { return data_; }
  void Data(const Variant& valor);

  const std::string& Documento() const noexcept { return documento_; }
  void Documento(std::string_view valor);  // up to 15

  const std::string& Historico() const noexcept { return historico_; }
  void Historico(std::string_view valor);  // up to 50; kept in upper case

  bool Estorno() const noexcept { return estorno_; }  // it reverses another entry
  void Estorno(bool valor) noexcept { estorno_ = valor; }

  bool Estornado() const noexcept { return estornado_; }  // another entry reverses it
  void Estornado(bool valor) noexcept { estornado_ = valor; }

  std::int32_t IdUsuario() const noexcept { return id_usuario_; }
  void IdUsuario(std::int32_t valor) noexcept { id_usuario_ = valor; }

  std::uint8_t Transferencia() const noexcept { return transferencia_; }  // 0 no, 1 outgoing leg, 2 incoming leg
  void Transferencia(std::uint8_t valor) noexcept { transferencia_ = valor; }

  // "?" open, "S" realised, "N" not realised, "E" reversed or reversal, or empty.
  const std::string& Realizado() const noexcept { return realizado_; }
  void Realizado(std::string_view valor);

  std::int32_t IdConcorrencia() const noexcept { return id_concorrencia_; }  // the version of the row
  void IdConcorrencia(std::int32_t valor) noexcept { id_concorrencia_ = valor; }

  const std::string& CodCentroCusto() const noexcept { return cod_centro_custo_; }
  void CodCentroCusto(std::string_view valor);  // up to 31; empty: none

  std::int32_t IdParceiroComl() const noexcept { return id_parceiro_coml_; }  // 0: none
  void IdParceiroComl(std::int32_t valor) noexcept { id_parceiro_coml_ = valor; }

  // The balances of the entry's account, type, cost centre and partner and of the whole ledger after this entry.
  Currency SaldoConta() const noexcept { return saldo_conta_; }
  void SaldoConta(Currency valor) noexcept { saldo_conta_ = valor; }

  Currency SaldoRecDesp() const noexcept { return saldo_rec_desp_; }
  void SaldoRecDesp(Currency valor) noexcept { saldo_rec_desp_ = valor; }

  Currency SaldoCentroCusto() const noexcept { return saldo_centro_custo_; }
  void SaldoCentroCusto(Currency valor) noexcept { saldo_centro_custo_ = valor; }

  Currency SaldoParceiroComl() const noexcept { return saldo_parceiro_coml_; }
  void SaldoParceiroComl(Currency valor) noexcept { saldo_parceiro_coml_ = valor; }

  Currency SaldoGlobal() const noexcept { return saldo_global_; }
  void SaldoGlobal(Currency valor) noexcept { saldo_global_ = valor; }

  const Variant& DataReferencia() const noexcept { return data_referencia_; }  // as Data
  void DataReferencia(const Variant& valor);

  const Variant& DataVencimento() const noexcept { return data_vencimento_; }  // as Data
  void DataVencimento(const Variant& valor);

  Currency ValorPago() const noexcept { return valor_pago_; }
  void ValorPago(Currency valor) noexcept { valor_pago_ = valor; }

  // True when everything that an entry needs is there; otherwise raises TS_ERRO_LANCAMENTO for the first thing missing.
  bool Validar() const;

  // Takes all values from the current row, unchecked. A Null where the ledger allows none raises 94, a text where an
  // optional number stands TS_ERRO_LANCAMENTO, a missing column 3265; the members read before are then those of the
  // row.
  void CarregarDeRegistro(const db::Recordset& rs);

  // A new entry of the same values, which are checked again on their way.
  std::shared_ptr<CLancamento> Copiar() const;

 private:
  std::int32_t id_ = 0;
  std::string cod_conta_;
  std::string cod_rec_desp_;
  Currency valor_;
  std::string data_id_;
  Variant data_;
  std::string documento_;
  std::string historico_;
  bool estorno_ = false;
  bool estornado_ = false;
  std::int32_t id_usuario_ = 0;
  std::uint8_t transferencia_ = 0;
  std::string realizado_;
  std::int32_t id_concorrencia_ = 0;
  std::string cod_centro_custo_;
  std::int32_t id_parceiro_coml_ = 0;
  Currency saldo_conta_;
  Currency saldo_rec_desp_;
  Currency saldo_centro_custo_;
  Currency saldo_parceiro_coml_;
  Currency saldo_global_;
  Variant data_referencia_;
  Variant data_vencimento_;
  Currency valor_pago_;
};

}  // namespace tsv

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/Balances.h"
#include "common/Errors.h"
#include "types/Currency.h"
#include "types/Date.h"

// The two entries of a transfer: the outgoing one (Transferencia 1) and the incoming one (2), on the type reserved for
// them, without cost centre or partner, linked by a row of Transferencias. Whatever is done is done to both: only
// together do they leave the balances of types above the reserved one alone.
namespace tsv::internal {

struct Perna {
  std::int32_t Id = 0;
  Currency Valor;
  Date Data;
  Date DataReferencia;
  std::string DataId;
  std::string CodConta;
  std::string DesConta;  // of the account
  std::optional<std::string> Documento;
  std::string Realizado;
  std::int32_t IdConcorrencia = 0;
};

// Both legs of the transfer that the entry is one of, as they stand. A leg or its account that is missing raises the
// error.
struct Pernas {
  Perna Saida;
  Perna Entrada;
};
Pernas LerPernas(std::int32_t id, TS_ERROS numero);

// The account and the reserved type: where a leg's amount counts.
Module1::Classificacao ClasseDaPerna(std::string_view codConta);

// Adds the amount to the balances of all entries after the key that hold it, when both legs do so.
void DeslocarSaldosDaPerna(const Module1::Classificacao& classe, Currency valor, std::string_view dataId);

}  // namespace tsv::internal

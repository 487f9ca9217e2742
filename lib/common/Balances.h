#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Currency.h"
#include "types/Date.h"

// The running balances that every entry carries, as they stand after it in the order of its key. A code's balance
// holds the entries of that code and of all codes that begin with it; a partner's only its own.
namespace tsv::Module1 {

struct Saldos {
  Currency Conta;
  Currency RecDesp;
  Currency CentroCusto;
  Currency ParceiroComl;
  Currency Global;
};

// What decides which balances an entry's amount enters.
struct Classificacao {
  std::string CodConta;
  std::string CodRecDesp;
  std::string CodCentroCusto;       // empty: none
  std::int32_t IdParceiroComl = 0;  // 0: none
};

// The place of a new entry: the serial that it must claim (its id is one more) and its own five balances. The partial
// balances of an entry without cost centre or partner are zero. A sum beyond the range of currency raises 6.
struct SerialESaldos {
  std::int32_t Serial = 0;
  Saldos Novos;
};
SerialESaldos LerSerialESaldos(const Classificacao& classificacao, Date data, Currency valor);

// Takes the serial's successor for this writer; false when another writer took it since it was read.
[[nodiscard]] bool ReivindicarSerial(std::int32_t serial);

// The ordering key: yyyymmdd and the id in nine digits, so that entries of one day stand as they were posted. Compared
// as text.
std::string MontarDataId(Date data, std::int32_t id);

// Adds the amount to the balances of all entries after the key that hold it.
void DeslocarSaldos(const Classificacao& classificacao, Currency valor, std::string_view dataId);

// Reads the balances at novoDataId, leaving out the entry at antigoDataId (" ": none), and compares them with those
// expected. Returns true; at the first difference, the trace of another writer, raises TS_ERRO_LOGIN without
// description. A cost centre that no entry has ("@@@", "$@#") and partner 0 stand for none.
bool VerificarApos(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                   std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId,
                   const Saldos& esperados);

}  // namespace tsv::Module1

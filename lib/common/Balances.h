#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Statement.h"
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

  friend bool operator==(const Saldos&, const Saldos&) = default;
};

// What decides which balances an entry's amount enters.
struct Classificacao {
  std::string CodConta;
  std::string CodRecDesp;
  std::string CodCentroCusto;       // empty: none
  std::int32_t IdParceiroComl = 0;  // 0: none
};

// Whose cost-centre balance is asked for: a code that no entry has for an entry without one.
std::string_view CentroOuNenhum(const Classificacao& classificacao);

// The place of a new entry: the serial that it must claim, its id, which is one more (beyond 32 bits: 6), its ordering
// key and its own five balances. The partial balances of an entry without cost centre or partner are zero. A sum beyond
// the range of currency raises 6.
struct LugarNovo {
  std::int32_t Serial = 0;
  std::int32_t Id = 0;
  std::string DataId;
  Saldos Novos;
};
LugarNovo LerLugar(const Classificacao& classificacao, Date data, Currency valor);

// Takes the serial's successor for this writer. Another writer who took it since it was read: the error, with the
// message that tells the user to try again.
void ReivindicarSerial(std::int32_t serial, TS_ERROS numero);
Statement Reivindicacao(std::int32_t serial);  // what it executes

// The ordering key: yyyymmdd and the id in nine digits, so that entries of one day stand as they were posted. Compared
// as text.
std::string MontarDataId(Date data, std::int32_t id);
Date DiaDe(std::string_view dataId);  // a text that is no key raises 5

// The words in which an operation shifts balances. The meaning is one, the texts are each operation's own: whoever
// traces the statements knows the operation by them.
struct TextoDoDeslocamento {
  Fragment Conta = "UPDATE Lancamentos Set SaldoConta = SaldoConta + Abs(";
  Fragment RecDesp = ", SaldoRecDesp = SaldoRecDesp + Abs(";
  Fragment TesteRecDesp = " LIKE CodRecDesp & '*') * ";
  Fragment CentroCusto = ", SaldoCentroCusto = SaldoCentroCusto + Abs(Not CodCentroCusto Is NULL And ";
  Fragment Parceiro = ", SaldoParceiroComl = SaldoParceiroComl + Abs(Not IdParceiroComl Is NULL And ";
  Fragment TesteParceiro = " = IdParceiroComl) * ";
  Fragment Global = ", SaldoGlobal = SaldoGlobal + ";
  Fragment Onde = " where DataId > ";
};

// Adds the amount to the balances of all entries after the key that hold it.
void DeslocarSaldos(const Classificacao& classificacao, Currency valor, std::string_view dataId,
                    const TextoDoDeslocamento& texto);
Statement Deslocamento(const Classificacao& classificacao, Currency valor, std::string_view dataId,
                       const TextoDoDeslocamento& texto);  // what it executes

// The balances at novoDataId, without the entry at antigoDataId unless both keys are one. " " is no key; a cost centre
// that no entry has ("@@@", "$@#") and partner 0 stand for none.
Saldos LerSaldosAte(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                    std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId);
db::QueryCall ConsultaDeSaldosAte(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                                  std::string_view codRecDesp, std::string_view novoDataId,
                                  std::string_view antigoDataId);  // what it opens

// Compares those balances with the ones expected. Returns true; at the first difference, the trace of another writer,
// raises TS_ERRO_LOGIN without description.
bool VerificarApos(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                   std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId,
                   const Saldos& esperados);

// The same for an entry of that classification. A difference that is only reported becomes the error, with the message
// that tells the user to try again.
void ExigirSaldos(const Classificacao& classificacao, std::string_view novoDataId, std::string_view antigoDataId,
                  const Saldos& esperados, TS_ERROS numero);

}  // namespace tsv::Module1

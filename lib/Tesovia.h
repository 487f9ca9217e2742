#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "CBaixa.h"
#include "CLancamento.h"
#include "CTransferencia.h"
#include "Collection.h"
#include "db/Recordset.h"
#include "types/Currency.h"
#include "types/Date.h"

namespace tsv {

// The ledger as a client sees it. All objects of one thread share one database and one user; releasing any of them
// closes that database, and the others are then not initialised.
//
// Failures are raised as Erro: TS_ERROS for what the library refuses (TS_ERRO_NAO_INICIALIZADO: no ledger is open), the
// engine's numbers as they are. An operation that fails has changed nothing.
class Tesovia {
 public:
  Tesovia() = default;
  ~Tesovia();
  Tesovia(const Tesovia&) = delete;
  Tesovia& operator=(const Tesovia&) = delete;

  // Opens the ledger and logs the user in by login name and password. TS_ERRO_LOGIN: unknown or deactivated user; an
  // apostrophe in login or password: 3075. After a failure no database is open, whatever was open before.
  void InicializarTS(std::string_view CaminhoBancoDeDados, std::string_view IdUsuario, std::string_view SenhaUsuario);

  // Opens a SELECT of the client's own, read-only, on its first row. A statement that changes: 3219.
  std::shared_ptr<db::Recordset> AbrirRecordsetTS(std::string_view SQL, db::RecordsetTypeEnum Tipo);

  // Posts one forecast entry: positive amounts come in, negative ones go out. Amounts have two decimals. An empty cost
  // centre or document and partner 0 are none. Returns the new entry.
  //
  // TS_ERRO_LANCAMENTO: a value is missing or too long, the type does not exist or takes only amounts of the other
  // sign, or another user was faster (try again). TS_ERRO_LOGIN without description: the reason was shown in a
  // message box (account, type, cost centre or partner deactivated), or the balances did not verify: another user
  // changed them meanwhile, or the amount has more than two decimals, which balances do not keep.
  std::shared_ptr<CLancamento> FazerLancamentoTS(Date DataPrevisao, Date DataReferencia, Currency Valor,
                                                 std::string_view Historico, std::string_view CodConta,
                                                 std::string_view CodRecDesp, std::string_view CodCentroDeCusto = {},
                                                 std::int32_t IdParceiroComl = 0, std::string_view Documento = {});

  // The operations below name an entry by its id and by the version that the client last saw (IdConcorrencia): one that
  // another user changed since is refused. On a leg of a transfer they work on both legs, wholly or not at all; a
  // transfer without its other leg is refused. When other users change the balances that an operation reads, or an
  // amount has more than two decimals, it ends in TS_ERRO_LOGIN without description and may be tried again.

  // Deletes an entry and takes its amount out of the later balances; the journal keeps what it was. Both legs of a
  // transfer go as they stand when the operation reads them. TS_ERRO_EXCLUSAO: not found or changed meanwhile,
  // reversed, or itself a reversal.
  void ExcluirLancamentoTS(std::int32_t IdLancamento, std::int32_t IdConcorrencia);

  // Settles an open forecast: in full or in part it moves to the day and amount of its realisation, and no rest stays
  // open; as not realised it leaves all balances. Returns the settled entry; one not realised with the balances that
  // were read with it, less its amount. A kind other than the three changes nothing.
  //
  // TS_ERRO_JA_BAIXADO: it is no open forecast. TS_ERRO_BAIXA: not found or changed meanwhile, the request does not fit
  // the entry, or something that it is classified by was deactivated. An amount of zero: 11.
  std::shared_ptr<CLancamento> BaixarLancamentoTS(CBaixa& Baixa);

  // Moves money between two accounts: an outgoing and an incoming entry on type 001, linked. Returns the two.
  // TS_ERRO_TRANSFERENCIA: an account does not exist or was deactivated, or another user was faster.
  Collection FazerTransferenciaTS(const CTransferencia& Transferencia);

  // Reverses an entry: it stays, marked, and an entry of the opposite amount and the given history (up to 50
  // characters, without quotes) stands against it on the same day. Returns the reversing entry; nothing for a transfer.
  // TS_ERRO_ESTORNO: no ledger is open, the entry was not found or changed meanwhile, was settled as not realised or
  // reversed before, the history is missing or has quotes, something that it is classified by was deactivated, or
  // another user was faster. A history that is too long for a transfer: 3163.
  std::shared_ptr<CLancamento> EstornarLancamentoTS(std::string_view HistoricoDoEstorno, std::int32_t IdLancamento,
                                                    std::int32_t IdConcorrencia);
};

}  // namespace tsv

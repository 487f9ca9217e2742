#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "CLancamento.h"
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

  // Opens a SELECT of the client's own, read-only, on its first row. Any other statement: 3219.
  std::shared_ptr<db::Recordset> AbrirRecordsetTS(std::string_view SQL, db::RecordsetTypeEnum Tipo);

  // Posts one forecast entry: positive amounts come in, negative ones go out. Amounts have two decimals. An empty cost
  // centre or document and partner 0 are none. Returns the entry as written.
  //
  // TS_ERRO_LANCAMENTO: a value is missing or too long, the type does not exist or takes only amounts of the other
  // sign, or another user was faster (try again). TS_ERRO_LOGIN without description: the reason was shown in a
  // message box (account, type, cost centre or partner deactivated), or the balances did not verify: another user
  // changed them meanwhile, or the amount has more than two decimals, which balances do not keep.
  std::shared_ptr<CLancamento> FazerLancamentoTS(Date DataPrevisao, Date DataReferencia, Currency Valor,
                                                 std::string_view Historico, std::string_view CodConta,
                                                 std::string_view CodRecDesp, std::string_view CodCentroDeCusto = {},
                                                 std::int32_t IdParceiroComl = 0, std::string_view Documento = {});
};

}  // namespace tsv

#include "Floor.h"

#include <strings.h>

#include <stdexcept>

#include "db/sqlite/Connection.h"
#include "db/sqlite/SqlFunctions.h"

namespace tsv::bench {
namespace {

using db::sqlite::Connection;
using db::sqlite::ScopedReset;
using db::sqlite::Statement;

Connection Opened(const std::string& path) {
  return Connection(path, Connection::Access::Write, std::chrono::milliseconds(1000));
}

void BeginsWith(sqlite3_context* context, int, sqlite3_value** values) {
  const int length = sqlite3_value_bytes(values[1]);
  const bool begins =
      sqlite3_value_bytes(values[0]) >= length &&
      strncasecmp(reinterpret_cast<const char*>(sqlite3_value_text(values[0])),
                  reinterpret_cast<const char*>(sqlite3_value_text(values[1])), static_cast<std::size_t>(length)) == 0;
  sqlite3_result_int(context, begins ? 1 : 0);
}

// The balance of a code before a key: its last own entry's, then what came after it below that code.
struct CodeBalance {
  CodeBalance(Connection& connection, const std::string& master, const std::string& code, const std::string& balance)
      : last(connection,
             "SELECT DataId, " + balance + " FROM Lancamentos WHERE " + code +
                 " = ?1 AND DataId < ?2 ORDER BY DataId DESC LIMIT 1",
             true),
        since(connection,
              "SELECT coalesce(sum(L.Valor), 0) FROM " + master + " AS M CROSS JOIN Lancamentos AS L ON L." + code +
                  " = M.Codigo WHERE M.Codigo > ?1 AND M.Codigo < ?1 || char(1114111) AND L.DataId > ?2 AND L.DataId < "
                  "?3 AND L.Realizado IS NOT 'N'",
              true) {}

  std::int64_t Before(std::string_view of, std::string_view key) {
    const ScopedReset resetLast(last);
    const ScopedReset resetSince(since);
    std::int64_t balance = 0;
    std::string from;
    if (last.Bind(1, of).Bind(2, key).Step()) {
      from = last.Text(0);
      balance = last.Integer(1);
    }
    since.Bind(1, of).Bind(2, from).Bind(3, key).Step();
    return balance + since.Integer(0);
  }

  Statement last;
  Statement since;
};

struct Balances {
  std::int64_t account = 0;
  std::int64_t type = 0;
  std::int64_t centre = 0;
  std::int64_t partner = 0;
  std::int64_t all = 0;
  bool operator==(const Balances&) const = default;
};

constexpr const char* kMasters =
    " FROM Contas AS C, TiposMovimentacoes AS T LEFT JOIN CentrosDeCusto AS U ON U.Codigo = ?4 AND U.Inativo = 0 AND "
    "U.Excluido = 0"
    " LEFT JOIN ParceirosComerciais AS P ON P.Id = ?5 AND P.Inativo = 0"
    " WHERE C.Codigo = ?2 AND C.Inativa = 0 AND C.Excluida = 0 AND T.Codigo = ?3 AND T.Inativo = 0 AND T.Excluido = 0"
    " AND (?4 IS NULL OR U.Codigo IS NOT NULL) AND (?5 IS NULL OR P.Id IS NOT NULL)";

}  // namespace

struct Floor::Prepared {
  explicit Prepared(const std::string& path)
      : connection(Opened(path)),
        registered(Register(connection)),
        typeCheck(connection, "SELECT Tipo FROM TiposMovimentacoes WHERE Codigo = ?1", true),
        serial(connection, "SELECT Serial FROM Serial", true),
        accounts(connection, "Contas", "CodConta", "SaldoConta"),
        types(connection, "TiposMovimentacoes", "CodRecDesp", "SaldoRecDesp"),
        centres(connection, "CentrosDeCusto", "CodCentroCusto", "SaldoCentroCusto"),
        partners(connection,
                 "SELECT SaldoParceiroComl FROM Lancamentos WHERE IdParceiroComl = ?1 AND DataId < ?2 ORDER BY DataId "
                 "DESC LIMIT 1",
                 true),
        all(connection, "SELECT SaldoGlobal FROM Lancamentos WHERE DataId < ?1 ORDER BY DataId DESC LIMIT 1", true),
        begin(connection, "BEGIN IMMEDIATE", true),
        commit(connection, "COMMIT", true),
        claim(connection, "UPDATE Serial SET Serial = Serial + 1 WHERE Serial = ?1", true),
        insert(connection,
               std::string(
                   "INSERT INTO Lancamentos (Id, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor, Data, "
                   "DataReferencia, DataVencimento,"
                   " Historico, DataId, SaldoConta, SaldoRecDesp, SaldoCentroCusto, SaldoParceiroComl, SaldoGlobal, "
                   "IdUsuario, Realizado, IdConcorrencia)"
                   " SELECT ?1, ?2, ?3, ?4, ?5, ?6, ?7, ?7, ?7, 'LANCAMENTO', ?8, ?9, ?10, ?11, ?12, ?13, 1, '?', 0") +
                   kMasters,
               true),
        journal(connection,
                std::string("INSERT INTO HistoricosDeLancamentos (DataHora, IdAcao, Id, CodConta, DesConta, "
                            "CodRecDesp, DesMovimentacao, CodCentroCusto,"
                            " DesCentroDeCusto, IdParceiroComl, NomeParceiro, Filial, Valor, Data, DataReferencia, "
                            "DataVencimento, Historico, DataId,"
                            " SaldoGlobal, SaldoConta, SaldoRecDesp, IdUsuario, DesUsuario, Realizado)"
                            " SELECT ?7, 1, ?1, ?2, C.DesConta, ?3, T.DesMovimentacao, ?4, U.DesCentroDeCusto, ?5, "
                            "P.Nome, P.Filial, ?6, ?7, ?7, ?7,"
                            " 'LANCAMENTO', ?8, ?13, ?9, ?10, 1, 'BANCO DE PROVA', '?'") +
                    kMasters,
                true),
        shift(connection,
              "UPDATE Lancamentos SET SaldoConta = SaldoConta + begins(?2, CodConta) * ?6, SaldoRecDesp = SaldoRecDesp "
              "+ begins(?3, CodRecDesp) * ?6,"
              " SaldoCentroCusto = SaldoCentroCusto + (CodCentroCusto IS NOT NULL AND ?4 IS NOT NULL AND begins(?4, "
              "CodCentroCusto)) * ?6,"
              " SaldoParceiroComl = SaldoParceiroComl + (IdParceiroComl IS NOT NULL AND IdParceiroComl IS ?5) * ?6,"
              " SaldoGlobal = SaldoGlobal + ?6 WHERE DataId > ?8",
              true) {}

  static bool Register(Connection& connection) {
    db::sqlite::RegisterFunctions(connection);
    sqlite3_create_function(connection.Handle(), "begins", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, BeginsWith,
                            nullptr, nullptr);
    connection.Execute("PRAGMA foreign_keys = ON");
    connection.Execute("PRAGMA synchronous = FULL");
    return true;
  }

  Balances Before(const Posting& posting, std::string_view key) {
    Balances balances;
    balances.account = accounts.Before(posting.account, key);
    balances.type = types.Before(posting.type, key);
    if (!posting.centre.empty()) balances.centre = centres.Before(posting.centre, key);
    const ScopedReset resetPartners(partners);
    const ScopedReset resetAll(all);
    if (posting.partner != 0 && partners.Bind(1, posting.partner).Bind(2, key).Step())
      balances.partner = partners.Integer(0);
    if (all.Bind(1, key).Step()) balances.all = all.Integer(0);
    return balances;
  }

  Connection connection;
  bool registered;
  Statement typeCheck;
  Statement serial;
  CodeBalance accounts;
  CodeBalance types;
  CodeBalance centres;
  Statement partners;
  Statement all;
  Statement begin;
  Statement commit;
  Statement claim;
  Statement insert;
  Statement journal;
  Statement shift;
};

Floor::Floor(const std::string& path) : prepared_(std::make_unique<Prepared>(path)) {}
Floor::~Floor() = default;

void Floor::Post(const Posting& posting) {
  Prepared& p = *prepared_;
  p.typeCheck.Bind(1, posting.type).Run();
  std::int64_t id = 0;
  {
    const ScopedReset reset(p.serial);
    p.serial.Step();
    id = p.serial.Integer(0) + 1;
  }
  const CivilTime day = posting.date.ToCivil();
  char key[64];
  std::snprintf(key, sizeof key, "%04d%02d%02d%09d", day.year, day.month, day.day, static_cast<int>(id));
  char iso[64];
  std::snprintf(iso, sizeof iso, "%04d-%02d-%02d 00:00:00", day.year, day.month, day.day);
  const std::int64_t amount = posting.amount.TenThousandths();
  Balances balances = p.Before(posting, key);
  const auto added = [&](Balances b) {
    return Balances{b.account + amount, b.type + amount, posting.centre.empty() ? 0 : b.centre + amount,
                    posting.partner == 0 ? 0 : b.partner + amount, b.all + amount};
  };
  const Balances expected = added(balances);

  p.begin.Run();
  p.claim.Bind(1, id - 1).Run();
  for (Statement* statement : {&p.insert, &p.journal, &p.shift}) {
    sqlite3_clear_bindings(statement->Handle());
    statement->Bind(2, posting.account).Bind(3, posting.type).Bind(6, amount).Bind(8, std::string_view(key));
    if (!posting.centre.empty()) statement->Bind(4, posting.centre);
    if (posting.partner != 0) statement->Bind(5, posting.partner);
    if (statement != &p.shift) {
      statement->Bind(1, id)
          .Bind(7, std::string_view(iso))
          .Bind(9, expected.account)
          .Bind(10, expected.type)
          .Bind(13, expected.all);
    }
    if (statement == &p.insert) statement->Bind(11, expected.centre).Bind(12, expected.partner);
    statement->Run();
  }
  if (added(p.Before(posting, key)) != expected) throw std::runtime_error("balances differ");
  p.commit.Run();
}

}  // namespace tsv::bench

#include "db/postgres/libpq/ServerLedger.h"

#include <string>

#include "db/EngineError.h"
#include "db/LedgerSchema.h"
#include "db/Password.h"
#include "db/postgres/SqlBalances.h"
#include "db/postgres/SqlFunctions.h"
#include "db/postgres/libpq/Schema.h"

namespace tsv::db::postgres {
namespace {

constexpr std::string_view kVersion = "1";

[[noreturn]] void Refuse(const Connection& connection, std::string_view reason) {
  throw Erro(static_cast<std::int32_t>(EngineError::UnrecognisedFile),
             TextOf(EngineError::UnrecognisedFile, connection.Place()).append(" ").append(reason));
}

std::string Setting(Connection& connection, const std::string& name) {
  return connection.Text("SELECT valor FROM tesovia.tsv_ajustes WHERE nome = $1", {name});
}

void Store(Connection& connection, const std::string& name, std::string_view value) {
  connection.Execute("INSERT INTO tesovia.tsv_ajustes VALUES ($1, $2)", {name, std::string(value)});
}

bool HasLedger(Connection& connection) {
  return !connection.Text("SELECT to_regclass('tesovia.tsv_ajustes')::text").empty();
}

// Room on every page lets a shift of balances write the new rows beside the old, without touching an index.
constexpr const char* kRoomForShifts =
    "ALTER TABLE tesovia.\"Lancamentos\" SET (fillfactor = 45, autovacuum_vacuum_scale_factor = 0.05)";

void CreateFirstSchema(Connection& connection) {
  connection.Execute("CREATE SCHEMA tesovia");
  connection.Execute("CREATE TABLE tesovia.tsv_ajustes (nome text PRIMARY KEY, valor text NOT NULL)");
  Store(connection, "catalogo", "0");
  connection.Execute(SqlFunctions());
  CreateColumnCatalog(connection);
  for (const Table& table : LedgerTables()) CreateTable(connection, table);
  connection.Execute(kRoomForShifts);
  connection.Execute(SqlBalances());
  connection.Execute("INSERT INTO tesovia.\"Serial\" VALUES (0)");
  // Reserved for the legs of transfers; inactive, so that nobody posts on it by hand.
  connection.Execute(
      "INSERT INTO tesovia.\"TiposMovimentacoes\" (\"Id\", \"Codigo\", \"DesMovimentacao\", \"Inativo\") "
      "VALUES (0, '001', 'TRANSFERÊNCIA ENTRE CONTAS', TRUE)");
}

}  // namespace

void FillNewLedger(Connection& connection, std::string_view password) {
  if (connection.Text("SHOW server_encoding") != "UTF8")
    Refuse(connection, "O banco de dados deve usar a codificação UTF8.");
  connection.BeginUnseen();
  try {
    connection.Execute("SELECT pg_advisory_xact_lock(1414747698, 2)");  // two who make it at once
    if (!connection.Text("SELECT 'x' FROM pg_namespace WHERE nspname = 'tesovia'").empty())
      throw Erro(static_cast<std::int32_t>(EngineError::DatabaseExists),
                 "O banco de dados '" + connection.Place() + "' já tem um livro-caixa, ou outro esquema 'tesovia'.");
    CreateFirstSchema(connection);
    const std::string salt = connection.Text("SELECT replace(gen_random_uuid()::text, '-', '')");
    Store(connection, "sal", salt);
    Store(connection, "senha", PasswordSum(salt, password));
    Store(connection, "versao", kVersion);
    connection.Commit();
  } catch (...) {
    try {
      connection.Undo(true);
    } catch (const Erro&) {
      // The first failure tells more.
    }
    throw;
  }
}

void RemoveLedger(Connection& connection) { connection.Execute("DROP SCHEMA tesovia CASCADE"); }

void VerifyLedger(Connection& connection, std::string_view password) {
  if (!HasLedger(connection)) Refuse(connection, "O banco de dados não tem um livro-caixa.");
  if (Setting(connection, "versao") != kVersion) Refuse(connection, "O livro vem de uma versão mais nova do programa.");
  if (PasswordSum(Setting(connection, "sal"), password) != Setting(connection, "senha"))
    Raise(EngineError::WrongPassword);
}

}  // namespace tsv::db::postgres

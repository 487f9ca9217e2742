#include "db/sqlite/LedgerFile.h"

#include <cstddef>
#include <iterator>
#include <string>

#include "db/EngineError.h"
#include "db/LedgerSchema.h"
#include "db/Password.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/SqlFunctions.h"

namespace tsv::db::sqlite {
namespace {

constexpr std::int64_t kMark = 0x54535632;  // "TSV2", in SQLite's field for the application

void CreateFirstSchema(Connection& connection) {
  CreateColumnCatalog(connection);
  for (const Table& table : LedgerTables()) CreateTable(connection, table);
  connection.Execute(
      "CREATE TABLE tsv_ajustes (nome TEXT NOT NULL PRIMARY KEY, valor TEXT NOT NULL) STRICT, WITHOUT ROWID");
  connection.Execute("INSERT INTO \"Serial\" VALUES (0)");
  // Reserved for the legs of transfers; inactive, so that nobody posts on it by hand.
  connection.Execute(
      "INSERT INTO \"TiposMovimentacoes\" (\"Id\", \"Codigo\", \"DesMovimentacao\", \"Inativo\") "
      "VALUES (0, '001', 'TRANSFERÊNCIA ENTRE CONTAS', 1)");
}

// The steps from one version of the file to the next. A step is never changed once files have taken it.
using Step = void (*)(Connection&);
constexpr Step kSteps[] = {CreateFirstSchema};
constexpr std::int64_t kVersion = std::size(kSteps);

void SetNumber(Connection& connection, const char* pragma, std::int64_t value) {
  connection.Execute(std::string("PRAGMA ").append(pragma).append("=").append(std::to_string(value)).c_str());
}

std::int64_t VersionOf(Connection& connection) { return connection.Integer("PRAGMA user_version"); }

// Everything in one transaction, so that a file is of one version or of the other.
template <typename Action>
void Atomically(Connection& connection, Action&& action) {
  connection.Execute("BEGIN IMMEDIATE");
  try {
    action();
    connection.Execute("COMMIT");
  } catch (...) {
    sqlite3_exec(connection.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void TakeSteps(Connection& connection) {
  for (std::int64_t version = VersionOf(connection); version < kVersion; ++version) {
    kSteps[static_cast<std::size_t>(version)](connection);
    SetNumber(connection, "user_version", version + 1);
  }
}

std::string Setting(Connection& connection, std::string_view name) {
  Statement setting(connection, "SELECT valor FROM tsv_ajustes WHERE nome = ?1");
  return setting.Bind(1, name).Step() ? std::string(setting.Text(0)) : std::string();
}

void Store(Connection& connection, std::string_view name, std::string_view value) {
  Statement(connection, "INSERT INTO tsv_ajustes VALUES (?1, ?2)").Bind(1, name).Bind(2, value).Run();
}

[[noreturn]] void Refuse(std::string_view path, std::string_view reason) {
  throw Erro(static_cast<std::int32_t>(EngineError::UnrecognisedFile),
             TextOf(EngineError::UnrecognisedFile, path).append(" ").append(reason));
}

void Verify(Connection& connection, std::string_view path) {
  if (connection.Integer("PRAGMA application_id") != kMark) Refuse(path, "O arquivo não é um livro-caixa.");
  const std::int64_t version = VersionOf(connection);
  if (version > kVersion) Refuse(path, "O arquivo vem de uma versão mais nova do programa.");
  if (version < 1) Refuse(path, "O arquivo está danificado.");
}

// A log beside the file, so that readers need not wait for a writer, nor a writer for them.
void LetReadersPass(Connection& connection) { connection.Execute("PRAGMA journal_mode=WAL"); }

}  // namespace

void Prepare(Connection& connection) {
  RegisterFunctions(connection);
  sqlite3_db_config(connection.Handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection.Handle(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(connection.Handle(), SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  connection.Execute("PRAGMA trusted_schema=OFF; PRAGMA foreign_keys=ON; PRAGMA synchronous=FULL");
}

void FillNewLedger(Connection& connection, std::string_view password) {
  Atomically(connection, [&] {
    SetNumber(connection, "application_id", kMark);
    TakeSteps(connection);
    const std::string salt = connection.Text("SELECT hex(randomblob(16))");
    Store(connection, "sal", salt);
    Store(connection, "senha", PasswordSum(salt, password));
  });
  LetReadersPass(connection);
}

void OpenLedger(Connection& connection, std::string_view path, std::string_view password, Connection::Access access) {
  Verify(connection, path);
  if (PasswordSum(Setting(connection, "sal"), password) != Setting(connection, "senha"))
    Raise(EngineError::WrongPassword);
  const bool current = VersionOf(connection) == kVersion;
  if (!current && access == Connection::Access::Read) Raise(EngineError::ReadOnly);
  if (!current) Atomically(connection, [&] { TakeSteps(connection); });
  if (access == Connection::Access::Write) LetReadersPass(connection);
}

}  // namespace tsv::db::sqlite

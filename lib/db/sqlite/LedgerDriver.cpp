#include "db/sqlite/LedgerDriver.h"

#include <memory>

#include "db/EngineError.h"
#include "db/sqlite/LedgerFile.h"
#include "db/sqlite/SqliteDatabase.h"

namespace tsv::db::sqlite {

bool LedgerDriver::Recognises(std::string_view /*path*/, std::string_view firstBytes) const {
  constexpr std::string_view kSignature("SQLite format 3\0", 16);
  return firstBytes.starts_with(kSignature);
}

std::shared_ptr<Database> LedgerDriver::Open(std::string_view path, bool exclusive, bool readOnly,
                                             std::string_view connect) const {
  const Connection::Access access = readOnly ? Connection::Access::Read : Connection::Access::Write;
  try {
    auto connection = std::make_unique<Connection>(path, access, patience_);
    if (exclusive) connection->Execute("PRAGMA locking_mode=EXCLUSIVE");  // before anything reads the file
    Prepare(*connection);
    OpenLedger(*connection, path, PasswordIn(connect), access);
    return std::make_shared<SqliteDatabase>(std::move(connection));
  } catch (const Erro& erro) {
    if (erro.Numero() == static_cast<std::int32_t>(EngineError::Locked)) Raise(EngineError::CannotOpen, path);
    throw;
  }
}

}  // namespace tsv::db::sqlite

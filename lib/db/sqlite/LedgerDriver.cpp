#include "db/sqlite/LedgerDriver.h"

#include <filesystem>
#include <memory>
#include <string>

#include "db/EngineError.h"
#include "db/FilePath.h"
#include "db/sqlite/LedgerFile.h"
#include "db/sqlite/SqliteDatabase.h"

namespace tsv::db::sqlite {

// Reads through SQLite, which knows what this process has locked: elsewhere, closing a second descriptor of a file
// would drop the locks of the first, and another process could then take away the log that this one writes to.
bool LedgerDriver::Recognises(std::string_view path) const {
  constexpr std::string_view kSignature("SQLite format 3\0", 16);
  std::error_code ignored;
  if (path.find('\0') != std::string_view::npos || !std::filesystem::is_regular_file(FilePath(path), ignored))
    return false;
  try {
    const Connection probe(path, Connection::Access::Read, std::chrono::milliseconds(0));
    sqlite3_file* file = nullptr;
    sqlite3_file_control(probe.Handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    std::string start(kSignature.size(), '\0');
    return file && file->pMethods &&
           file->pMethods->xRead(file, start.data(), static_cast<int>(start.size()), 0) == SQLITE_OK &&
           start == kSignature;
  } catch (const Erro&) {
    return false;
  }
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

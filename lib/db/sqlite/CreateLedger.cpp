#include "db/sqlite/CreateLedger.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "db/EngineError.h"
#include "db/FilePath.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/LedgerFile.h"

namespace tsv::db::sqlite {
namespace {

// Nothing when the file exists or cannot be made.
std::FILE* OpenNew(const std::filesystem::path& file) {
#ifdef _WIN32
  return _wfopen(file.c_str(), L"wbx");
#else
  return std::fopen(file.c_str(), "wbx");
#endif
}

// Takes the name for this process alone, also against another one that creates the same file.
void ClaimName(const std::filesystem::path& file, std::string_view path) {
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) Raise(EngineError::DatabaseExists, path);
  const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
  if (!std::filesystem::is_directory(folder, ignored)) Raise(EngineError::InvalidPath, path);
  std::FILE* claimed = OpenNew(file);
  if (!claimed) Raise(std::filesystem::exists(file, ignored) ? EngineError::DatabaseExists : EngineError::CannotOpen, path);
  std::fclose(claimed);
}

}  // namespace

void CreateLedger(std::string_view path, std::string_view password) {
  if (path.empty() || path.find('\0') != std::string_view::npos) Raise(EngineError::InvalidPath, path);
  const std::filesystem::path file = FilePath(path);
  ClaimName(file, path);
  try {
    Connection connection(path, Connection::Access::Write, std::chrono::seconds(10));
    Prepare(connection);
    FillNewLedger(connection, password);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    throw;
  }
}

}  // namespace tsv::db::sqlite

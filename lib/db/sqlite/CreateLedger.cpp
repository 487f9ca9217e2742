#include "db/sqlite/CreateLedger.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "db/Address.h"
#include "db/EngineError.h"
#include "db/FilePath.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/LedgerFile.h"

namespace tsv::db::sqlite {
namespace {

// Refuses a name that is taken or cannot be.
void CheckName(const std::filesystem::path& file, std::string_view path) {
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) Raise(EngineError::DatabaseExists, path);
  const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
  if (!std::filesystem::is_directory(folder, ignored)) Raise(EngineError::InvalidPath, WithoutPassword(path));
}

// An empty file beside the one wanted, which the caller removes.
std::filesystem::path MakeDraft(const std::filesystem::path& file, std::string_view path) {
  std::uint64_t number = 0;
  sqlite3_randomness(sizeof number, &number);
  std::filesystem::path draft = file;
  draft += "." + std::to_string(number) + ".novo";
  if (!std::ofstream(draft)) Raise(EngineError::CannotOpen, path);
  return draft;
}

// Gives the finished file its name, unless another has taken it meanwhile.
void Publish(const std::filesystem::path& draft, const std::filesystem::path& file, std::string_view path) {
  std::error_code error;
  std::filesystem::create_hard_link(draft, file, error);
  if (error == std::errc::file_exists) Raise(EngineError::DatabaseExists, path);
  if (!error) return;
  CheckName(file, path);  // a file system without links
  std::filesystem::rename(draft, file, error);
  if (error) Raise(EngineError::CannotOpen, path);
}

}  // namespace

void CreateLedger(std::string_view path, std::string_view password) {
  if (path.empty() || path.find('\0') != std::string_view::npos) Raise(EngineError::InvalidPath, path);
  const std::filesystem::path file = FilePath(path);
  CheckName(file, path);
  const std::filesystem::path draft = MakeDraft(file, path);
  const auto remove = [&draft] {
    std::error_code ignored;
    std::filesystem::remove(draft, ignored);
  };
  try {
    {
      const std::u8string name = draft.u8string();
      Connection connection({reinterpret_cast<const char*>(name.data()), name.size()}, Connection::Access::Write,
                            std::chrono::seconds(10));
      Prepare(connection);
      FillNewLedger(connection, password);
    }
    Publish(draft, file, path);
    remove();
  } catch (...) {
    remove();
    throw;
  }
}

void RemoveLedger(std::string_view path) {
  for (const char* suffix : {"-wal", "-shm", ""}) {
    std::filesystem::path file = FilePath(path);
    std::error_code error;
    std::filesystem::remove(file += suffix, error);
    if (error) Raise(EngineError::CannotOpen, path);
  }
}

}  // namespace tsv::db::sqlite

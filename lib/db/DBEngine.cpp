#include "db/DBEngine.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <utility>

#include "db/Address.h"
#include "db/EngineError.h"
#include "db/FilePath.h"
#include "types/Text.h"

namespace tsv::db {
namespace {

// Why a path that no driver recognises cannot be opened.
EngineError ProblemOf(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return EngineError::FileNotFound;
  const std::filesystem::path file = FilePath(path);
  std::error_code error;
  const std::filesystem::file_type type = std::filesystem::status(file, error).type();
  if (type == std::filesystem::file_type::not_found) return EngineError::FileNotFound;
  if (type != std::filesystem::file_type::regular || !std::ifstream(file)) return EngineError::CannotOpen;
  return EngineError::UnrecognisedFile;
}

}  // namespace

void Workspace::BeginTrans() {
  Level level;
  try {
    for (const auto& weak : databases_) {
      const auto database = weak.lock();
      if (!database || !database->IsOpen()) continue;
      level.reserve(databases_.size());
      database->Begin();
      level.push_back(weak);
    }
    levels_.push_back(level);
  } catch (...) {
    for (const auto& begun : level) begun.lock()->Rollback();
    throw;
  }
}

void Workspace::CommitTrans() {
  if (levels_.empty()) Raise(EngineError::NoTransaction);
  Level& level = levels_.back();
  while (!level.empty()) {
    const auto database = level.front().lock();
    if (database && database->IsOpen()) database->Commit();
    level.erase(level.begin());
  }
  levels_.pop_back();
}

void Workspace::Rollback() {
  if (levels_.empty()) Raise(EngineError::NoTransaction);
  const Level level = std::move(levels_.back());
  levels_.pop_back();
  std::exception_ptr failure;
  for (const auto& weak : level) {
    const auto database = weak.lock();
    if (!database || !database->IsOpen()) continue;
    try {
      database->Rollback();
    } catch (...) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

DBEngine::DBEngine(std::vector<std::unique_ptr<Driver>> drivers) : drivers_(std::move(drivers)) {}

std::shared_ptr<Database> DBEngine::OpenDatabase(std::string_view path, bool exclusive, bool readOnly,
                                                 std::string_view connect) {
  for (const auto& driver : drivers_) {
    if (!driver->Recognises(path)) continue;
    std::shared_ptr<Database> database = driver->Open(path, exclusive, readOnly, connect);
    database->Observe(observer_);
    std::erase_if(workspace_.databases_, [](const auto& other) { return other.expired(); });
    workspace_.databases_.push_back(database);
    return database;
  }
  Raise(ProblemOf(path), WithoutPassword(path));  // perhaps an address with a slip of the pen
}

Workspace& DBEngine::Workspaces(std::size_t index) {
  if (index != 0) Raise(EngineError::ItemNotFound, std::to_string(index));
  return workspace_;
}

void DBEngine::Observe(std::shared_ptr<StatementObserver> observer) { observer_ = std::move(observer); }

std::string_view PasswordIn(std::string_view connect) {
  constexpr std::string_view kKey = "PWD";
  while (!connect.empty()) {
    const std::size_t end = connect.find(';');
    const std::string_view part = connect.substr(0, end);
    const std::size_t equals = part.find('=');
    if (equals != std::string_view::npos && text::CompareFolded(text::Trim(part.substr(0, equals)), kKey) == 0) {
      return part.substr(equals + 1);
    }
    connect = end == std::string_view::npos ? std::string_view() : connect.substr(end + 1);
  }
  return {};
}

}  // namespace tsv::db

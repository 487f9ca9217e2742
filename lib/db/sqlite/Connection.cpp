#include "db/sqlite/Connection.h"

#include <filesystem>
#include <utility>

#include "db/FilePath.h"
#include "db/sqlite/ErrorMapping.h"

namespace tsv::db::sqlite {

Connection::Connection(std::string_view path, Access access, std::chrono::milliseconds timeout) {
  // An absolute path, so that no file name has a special meaning.
  const std::u8string absolute = std::filesystem::absolute(FilePath(path)).u8string();
  const int flags = access == Access::Write ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(reinterpret_cast<const char*>(absolute.c_str()), &handle,
                                   flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  handle_.reset(handle);
  if (code != SQLITE_OK) Raise(code);
  sqlite3_busy_timeout(handle, static_cast<int>(timeout.count()));
}

void Connection::Execute(const char* sql) {
  const int code = sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Raise(code);
}

std::int64_t Connection::Integer(const char* sql) {
  Statement statement(*this, sql);
  return statement.Step() ? statement.Integer(0) : 0;
}

std::string Connection::Text(const char* sql) {
  Statement statement(*this, sql);
  return statement.Step() ? std::string(statement.Text(0)) : std::string();
}

void Connection::Raise(int code, sqlite3_stmt* statement) {
  if (functionFailure_) throw *std::exchange(functionFailure_, std::nullopt);
  throw ErrorOf(handle_.get(), code, statement);
}

Statement::Statement(Connection& connection, std::string_view sql, bool lasting) : connection_(&connection) {
  sqlite3_stmt* handle = nullptr;
  const int code = sqlite3_prepare_v3(connection.Handle(), sql.data(), static_cast<int>(sql.size()),
                                      lasting ? SQLITE_PREPARE_PERSISTENT : 0, &handle, nullptr);
  if (code != SQLITE_OK) connection.Raise(code);
  handle_.reset(handle);
}

Statement& Statement::Bind(int place, std::int64_t value) {
  const int code = sqlite3_bind_int64(handle_.get(), place, value);
  if (code != SQLITE_OK) connection_->Raise(code);
  return *this;
}

Statement& Statement::Bind(int place, std::string_view text) {
  // An empty view may have no address, which would bind Null.
  const char* data = text.empty() ? "" : text.data();
  const int code = sqlite3_bind_text64(handle_.get(), place, data, text.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (code != SQLITE_OK) connection_->Raise(code);
  return *this;
}

bool Statement::Step() {
  const int code = sqlite3_step(handle_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  const ScopedReset reset(*this);
  connection_->Raise(code, handle_.get());
}

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

std::string_view Statement::Text(int column) const noexcept {
  const unsigned char* text = sqlite3_column_text(handle_.get(), column);
  const int size = sqlite3_column_bytes(handle_.get(), column);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(text ? size : 0)};
}

}  // namespace tsv::db::sqlite

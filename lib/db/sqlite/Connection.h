#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "types/Erro.h"

namespace tsv::db::sqlite {

// One connection to a file. Used by one thread at a time: it has no lock of its own.
class Connection {
 public:
  enum class Access { Read, Write };

  // Opens the file, which must exist. How long a writer waits for another: timeout, then 3260.
  Connection(std::string_view path, Access access, std::chrono::milliseconds timeout);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  sqlite3* Handle() const noexcept { return handle_.get(); }

  // Runs statements of our own making, which return no rows that matter.
  void Execute(const char* sql);

  // The one integer, or text, that a statement of our own making returns.
  std::int64_t Integer(const char* sql);
  std::string Text(const char* sql);

  bool InTransaction() const noexcept { return sqlite3_get_autocommit(handle_.get()) == 0; }

  // What an SQL function could not tell SQLite: the error itself, which its statement then raises.
  std::optional<Erro>& FunctionFailure() noexcept { return functionFailure_; }

  // Raises the failure of the last call, which returned the code. statement: the one that failed, if any.
  [[noreturn]] void Raise(int code, sqlite3_stmt* statement = nullptr);

 private:
  struct Closer {
    void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
  };

  std::unique_ptr<sqlite3, Closer> handle_;
  std::optional<Erro> functionFailure_;
};

// A prepared statement and its cursor.
class Statement {
 public:
  // lasting: a hint that it will be run many times.
  Statement(Connection& connection, std::string_view sql, bool lasting = false);

  sqlite3_stmt* Handle() const noexcept { return handle_.get(); }
  bool IsReadOnly() const noexcept { return sqlite3_stmt_readonly(handle_.get()) != 0; }

  // Places count from 1. A text must live until the statement is reset.
  Statement& Bind(int place, std::int64_t value);
  Statement& Bind(int place, std::string_view text);

  bool Step();  // whether there is a row
  void Reset() noexcept { sqlite3_reset(handle_.get()); }
  void Run();  // to its end, and resets it

  // Columns of the current row, counted from 0. A text lives until the next step.
  bool IsNull(int column) const noexcept { return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL; }
  std::int64_t Integer(int column) const noexcept { return sqlite3_column_int64(handle_.get(), column); }
  std::string_view Text(int column) const noexcept;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* handle) const noexcept { sqlite3_finalize(handle); }
  };

  Connection* connection_;
  std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
};

// Resets a statement at the end of a scope, so that it holds no snapshot and no lock.
class ScopedReset {
 public:
  explicit ScopedReset(Statement& statement) noexcept : statement_(statement) {}
  ~ScopedReset() { statement_.Reset(); }
  ScopedReset(const ScopedReset&) = delete;
  ScopedReset& operator=(const ScopedReset&) = delete;

 private:
  Statement& statement_;
};

}  // namespace tsv::db::sqlite

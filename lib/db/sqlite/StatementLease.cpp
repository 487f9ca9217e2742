#include "db/sqlite/StatementLease.h"

#include <utility>

#include "db/sqlite/StoredValue.h"

namespace tsv::db::sqlite {

StatementLease::StatementLease(Connection& connection, std::shared_ptr<Template> source)
    : source_(std::move(source)), statement_(std::exchange(source_->idle, std::nullopt)) {
  if (!statement_) statement_.emplace(connection, source_->compiled.sql, true);
}

StatementLease::~StatementLease() {
  if (!source_) return;
  statement_->Reset();
  // What was bound may hold a password.
  sqlite3_clear_bindings(statement_->Handle());
  if (!source_->idle) source_->idle = std::move(statement_);
}

bool LeasedRows::Next(std::vector<Variant>& row) {
  if (!statement_->Step()) return false;
  int place = 0;
  for (const jet::ResultColumn& column : statement_.Compiled().columns) {
    // The connection has no lock of its own, so its columns may be read like any other value.
    row.push_back(ReadStored(sqlite3_column_value(statement_->Handle(), place++), column.type));
  }
  return true;
}

}  // namespace tsv::db::sqlite

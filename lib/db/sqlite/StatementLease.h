#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "db/StreamedRecordset.h"
#include "db/jet/TemplateCache.h"
#include "db/sqlite/Connection.h"

namespace tsv::db::sqlite {

// A template with its prepared form while nobody uses it.
struct Template : jet::Template {
  std::optional<Statement> idle;
};

// A prepared statement in one user's hands: a second user of the same template gets another. It goes back to the
// template when it is released.
class StatementLease {
 public:
  StatementLease(Connection& connection, std::shared_ptr<Template> source);
  ~StatementLease();
  StatementLease(StatementLease&&) = default;
  StatementLease& operator=(StatementLease&&) = delete;

  Statement& operator*() { return *statement_; }
  Statement* operator->() { return &*statement_; }
  const jet::Compiled& Compiled() const { return source_->compiled; }
  const FieldDescriptions& Fields() const { return source_->fields; }

 private:
  std::shared_ptr<Template> source_;
  std::optional<Statement> statement_;
};

class LeasedRows final : public RowSource {
 public:
  explicit LeasedRows(StatementLease statement) : statement_(std::move(statement)) {}
  bool Next(std::vector<Variant>& row) override;

 private:
  StatementLease statement_;
};

}  // namespace tsv::db::sqlite

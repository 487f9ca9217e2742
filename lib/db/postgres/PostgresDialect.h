#pragma once

#include "db/jet/SqlDialect.h"

namespace tsv::db::postgres {

// PostgreSQL's form of Jet SQL. Amounts are numeric, dates timestamps, conditions booleans; what the server lacks are
// the functions of the ledger's schema (SqlFunctions). Texts are compared by keys, so that nothing depends on the
// database's own language.
class PostgresDialect final : public jet::SqlDialect {
 public:
  std::string Parameter(std::size_t place) const override;
  std::string Name(std::string_view name) const override;  // one that the server would cut short raises 3251
  std::string NullOf(ValueType type) const override;
  std::string TableName(std::string_view name) const override;
  std::string Compare(std::string_view op, ValueType type, bool exact, const std::string& a,
                      const std::string& b) const override;
  std::string EqualityKey(const std::string& text) const override;
  std::string SortKey(const std::string& text) const override;
  std::string ExactKey(const std::string& text) const override;
  bool KeysReplaceTexts() const override { return true; }
  std::string Direction(bool descending) const override;
  std::string Grouped(const std::string& column) const override;
  std::string Stored(const std::string& value, ValueType type) const override;
  std::string Concat(const std::string& a, const std::string& b) const override;
  std::string Like(const std::string& text, const std::string& pattern) const override;
  std::string LikePrefix(const std::string& text, const std::string& prefix) const override;
  std::string Magnitude(const std::string& condition) const override;
  std::string Call(const jet::Function& function, std::span<const std::string> arguments,
                   std::span<const ValueType> types) const override;
  std::string Aggregate(std::string_view name, ValueType type, const std::string& value) const override;

 private:
  std::string Ours(std::string_view function, const std::string& arguments) const override;
  std::string ConditionToWhole(const std::string& condition) const override;
  std::string WholeToDouble(const std::string& value) const override;
  std::string WholeToAmount(const std::string& value) const override;
  std::string WholeToText(const std::string& value) const override;
  std::string AmountToDouble(const std::string& value) const override;
};

}  // namespace tsv::db::postgres

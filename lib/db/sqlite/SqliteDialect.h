#pragma once

#include "db/jet/SqlDialect.h"

namespace tsv::db::sqlite {

// SQLite's form of Jet SQL. Amounts are integers of ten-thousandths, dates are ISO texts, conditions are 0 and 1; what
// SQLite lacks are the functions and collations registered in SqlFunctions.
class SqliteDialect final : public jet::SqlDialect {
 public:
  std::string Parameter(std::size_t place) const override;
  std::string Compare(std::string_view op, ValueType type, bool exact, const std::string& a,
                      const std::string& b) const override;
  std::string EqualityKey(const std::string& text) const override;
  std::string SortKey(const std::string& text) const override;
  std::string ExactKey(const std::string& text) const override;
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

}  // namespace tsv::db::sqlite

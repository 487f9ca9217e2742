#pragma once

#include "db/jet/ExpressionBinder.h"

namespace tsv::db::jet {

// Binds SELECTs: their sources, items, groups and order.
class QueryBinder {
 public:
  QueryBinder(const Lexed& lexed, const Catalog& catalog, const std::vector<DeclaredParameter>& declared);
  QueryBinder(const QueryBinder&) = delete;
  QueryBinder& operator=(const QueryBinder&) = delete;

  Output BindQuery(Query& query, const Scope* outer);

  // Adds the sources of a FROM clause to the scope and binds the conditions of its joins.
  void BindFrom(From& from, Scope& scope);

  const Table& TableNamed(std::string_view name) const;  // unknown: 3078
  ExpressionBinder& Expressions() { return expressions_; }

 private:
  Output BindBlock(SelectBlock& block, Scope& scope);
  static void ExpandStars(SelectBlock& block, const Scope& scope);
  void BindOrder(Query& query, const Output& output, const Scope& scope);
  void CheckGroups(const Query& query);
  void CheckGrouped(const Expression& expression, const SelectBlock& block);

  const Catalog& catalog_;
  ExpressionBinder expressions_;
};

}  // namespace tsv::db::jet

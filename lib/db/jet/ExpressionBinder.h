#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "db/jet/Lexer.h"
#include "db/jet/Scope.h"
#include "db/jet/Tree.h"

namespace tsv::db::jet {

// The columns that a bound query returns.
using Output = std::vector<SourceColumn>;

// Gives names and types to the expressions of one statement, and makes their conversions visible in the tree.
class ExpressionBinder {
 public:
  using QueryBinder = std::function<Output(Query&, const Scope&)>;

  ExpressionBinder(const Lexed& lexed, const std::vector<DeclaredParameter>& declared, QueryBinder bindQuery)
      : lexed_(lexed), declared_(declared), bindQuery_(std::move(bindQuery)) {}

  void Bind(ExpressionPtr& expression, const Scope& scope);
  void BindCondition(ExpressionPtr& expression, const Scope& scope);

  // Makes the bound expression one of the type: a literal is bound in that form, anything else is converted.
  void Coerce(ExpressionPtr& expression, ValueType type) const;

  // A literal whose value the SQL depends on.
  void Fix(std::uint32_t literal);

  // Whether two bound expressions are the same; their literals then count as fixed.
  bool Same(const Expression& a, const Expression& b);

  const Variant& LiteralAt(std::uint32_t place) const { return lexed_.literals[place]; }
  const std::vector<std::pair<std::uint32_t, Variant>>& Fixed() const { return fixed_; }

 private:
  void BindName(Expression& expression, const Scope& scope) const;
  void BindArithmetic(ExpressionPtr& expression) const;
  void BindAddition(Expression& sum) const;
  void BindCompare(Expression& comparison) const;
  void BindLike(Expression& like);
  void BindItems(Expression& list) const;
  void BindQueryOperand(Expression& expression, const Scope& scope);
  void BindCall(ExpressionPtr& expression) const;
  bool BindConditional(Expression& call) const;
  void BindFunction(Expression& call, const Function& function) const;
  void BindCase(Expression& node) const;
  void BindAggregate(Expression& aggregate) const;
  void CoerceBoth(Expression& node, ValueType type) const;

  const Lexed& lexed_;
  const std::vector<DeclaredParameter>& declared_;
  QueryBinder bindQuery_;
  std::vector<std::pair<std::uint32_t, Variant>> fixed_;
  bool insideAggregate_ = false;
};

// Makes column `place` of a bound query one of the type.
void CoerceOutput(const ExpressionBinder& binder, Query& query, std::size_t place, ValueType type);

bool HasAggregate(const Expression& expression);  // not looking into subqueries

}  // namespace tsv::db::jet

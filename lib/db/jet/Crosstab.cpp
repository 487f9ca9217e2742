#include "db/jet/Crosstab.h"

#include "db/EngineError.h"
#include "types/Conversions.h"

namespace tsv::db::jet {
namespace {

using Kind = Expression::Kind;

ExpressionPtr Copy(const Expression& e) {
  if (e.query) Raise(EngineError::Unsupported, "subconsulta em TRANSFORM ou PIVOT");
  auto copy = std::make_unique<Expression>(e.kind);
  copy->name = e.name;
  copy->qualifier = e.qualifier;
  copy->op = e.op;
  copy->flag = e.flag;
  copy->literal = e.literal;
  for (const ExpressionPtr& operand : e.operands) copy->operands.push_back(Copy(*operand));
  return copy;
}

ExpressionPtr LiteralNode(std::uint32_t literal) {
  auto node = std::make_unique<Expression>(Kind::Literal);
  node->literal = literal;
  return node;
}

}  // namespace

void ExpandCrosstab(Statement& statement, ExpressionBinder& binder) {
  const Crosstab& crosstab = *statement.crosstab;
  if (crosstab.value->kind != Kind::Aggregate)
    Raise(EngineError::Unsupported, "TRANSFORM que não seja uma função de agregação");
  if (statement.query->blocks.size() != 1) Raise(EngineError::Unsupported, "TRANSFORM sobre UNION");
  for (const std::uint32_t column : crosstab.columns) {
    binder.Fix(column);
    auto matches = std::make_unique<Expression>(Kind::Compare);
    matches->op = "=";
    matches->operands.push_back(Copy(*crosstab.by));
    matches->operands.push_back(LiteralNode(column));

    auto chosen = std::make_unique<Expression>(Kind::Call);
    chosen->name = "IIF";
    chosen->operands.push_back(std::move(matches));
    const auto& counted = crosstab.value->operands;
    chosen->operands.push_back(counted.empty() ? LiteralNode(column) : Copy(*counted[0]));
    chosen->operands.push_back(std::make_unique<Expression>(Kind::Null));

    SelectItem item;
    item.value = std::make_unique<Expression>(Kind::Aggregate);
    item.value->name = crosstab.value->name;
    item.value->operands.push_back(std::move(chosen));
    item.alias = ToText(binder.LiteralAt(column));
    statement.query->blocks[0].items.push_back(std::move(item));
  }
}

}  // namespace tsv::db::jet

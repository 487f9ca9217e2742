#include "db/jet/QueryBinder.h"

#include <algorithm>

#include "db/EngineError.h"
#include "db/jet/Types.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

using Kind = Expression::Kind;

// The first expression without a name is Expr1000; the number tells its place.
constexpr std::size_t kFirstUnnamed = 1000;

Source SourceOf(const Table& table, const std::string& alias) {
  Source source{alias, {}};
  for (const Column& column : table.columns)
    source.columns.push_back({column.name, column.name, column.type, column.exact});
  return source;
}

std::optional<std::size_t> PlaceOf(const Output& output, std::string_view name) {
  for (std::size_t i = 0; i < output.size(); ++i) {
    if (text::CompareFolded(output[i].name, name) == 0) return i;
  }
  return std::nullopt;
}

bool UsesOuterNames(const Query& query);

bool UsesOuterNames(const Expression& e) {
  return (e.kind == Kind::Name && e.flag) || (e.query && UsesOuterNames(*e.query)) ||
         std::any_of(e.operands.begin(), e.operands.end(),
                     [](const ExpressionPtr& part) { return UsesOuterNames(*part); });
}

bool UsesOuterNames(const From& from) {
  return (from.query && UsesOuterNames(*from.query)) || (from.on && UsesOuterNames(*from.on)) ||
         (from.left && (UsesOuterNames(*from.left) || UsesOuterNames(*from.right)));
}

bool UsesOuterNames(const Query& query) {
  const auto uses = [](const ExpressionPtr& e) { return e && UsesOuterNames(*e); };
  for (const SelectBlock& block : query.blocks) {
    const bool any =
        std::any_of(block.items.begin(), block.items.end(), [&](const auto& item) { return uses(item.value); }) ||
        std::any_of(block.from.begin(), block.from.end(), [](const auto& from) { return UsesOuterNames(*from); }) ||
        std::any_of(block.groupBy.begin(), block.groupBy.end(), uses) || uses(block.where) || uses(block.having);
    if (any) return true;
  }
  return false;
}

bool IsGrouped(const Query& query, const SelectBlock& block) {
  const auto aggregates = [](const auto& item) { return HasAggregate(*item.value); };
  return !block.groupBy.empty() || block.having || std::any_of(block.items.begin(), block.items.end(), aggregates) ||
         std::any_of(query.orderBy.begin(), query.orderBy.end(),
                     [&](const OrderItem& i) { return i.value && aggregates(i); });
}

}  // namespace

QueryBinder::QueryBinder(const Lexed& lexed, const Catalog& catalog, const std::vector<DeclaredParameter>& declared)
    : catalog_(catalog),
      expressions_(lexed, declared, [this](Query& query, const Scope& outer) { return BindQuery(query, &outer); }) {}

const Table& QueryBinder::TableNamed(std::string_view name) const {
  const Table* table = catalog_.Find(name);
  if (!table) Raise(EngineError::UnknownTable, name);
  return *table;
}

void QueryBinder::BindFrom(From& from, Scope& scope) {
  switch (from.kind) {
    case From::Kind::Table: {
      const Table& table = TableNamed(from.name);
      from.name = table.name;
      return scope.Add(SourceOf(table, from.alias));
    }
    case From::Kind::Derived: {
      Source source{from.alias, BindQuery(*from.query, nullptr)};
      return scope.Add(std::move(source));
    }
    case From::Kind::Inner:
    case From::Kind::Left:
    case From::Kind::Right:
      BindFrom(*from.left, scope);
      BindFrom(*from.right, scope);
      expressions_.BindCondition(from.on, scope);
      if (HasAggregate(*from.on)) Raise(EngineError::NotAggregated, "função de agregação numa junção");
  }
}

Output QueryBinder::BindQuery(Query& query, const Scope* outer) {
  Output output;
  for (std::size_t i = 0; i < query.blocks.size(); ++i) {
    Scope scope(outer);
    const Output block = BindBlock(query.blocks[i], scope);
    if (i == 0) {
      output = block;
    } else {
      if (block.size() != output.size()) Raise(EngineError::ValueCountDiffers);
      for (std::size_t c = 0; c < output.size(); ++c) {
        output[c].type = CommonValue(output[c].type, block[c].type);
        output[c].exact = output[c].exact || block[c].exact;
      }
    }
    if (query.blocks.size() == 1) BindOrder(query, output, scope);
  }
  if (query.blocks.size() > 1) {
    for (std::size_t c = 0; c < output.size(); ++c) {
      CoerceOutput(expressions_, query, c, output[c].type);
      for (SelectBlock& block : query.blocks) block.items[c].value->exact = output[c].exact;
    }
    BindOrder(query, output, Scope(nullptr));
  }
  CheckGroups(query);
  return output;
}

Output QueryBinder::BindBlock(SelectBlock& block, Scope& scope) {
  for (auto& from : block.from) BindFrom(*from, scope);
  ExpandStars(block, scope);
  if (block.top) expressions_.Fix(block.top->literal);
  Output output;
  for (SelectItem& item : block.items) {
    const bool isName = item.value->kind == Kind::Name;
    const std::string name = item.value->name;
    const std::string qualifier = item.value->qualifier;
    expressions_.Bind(item.value, scope);
    if (item.alias.empty() && isName && item.value->kind == Kind::Name)
      item.alias = scope.Resolve(qualifier, name).column->name;
    const std::string place = std::to_string(output.size() + 1);
    if (item.alias.empty()) item.alias = "Expr" + std::to_string(kFirstUnnamed + output.size());
    output.push_back({item.alias, "c" + place, item.value->type, item.value->exact});
  }
  if (block.where) {
    expressions_.BindCondition(block.where, scope);
    if (HasAggregate(*block.where)) Raise(EngineError::NotAggregated, "função de agregação em WHERE");
  }
  for (ExpressionPtr& group : block.groupBy) expressions_.Bind(group, scope);
  if (block.having) expressions_.BindCondition(block.having, scope);
  return output;
}

void QueryBinder::ExpandStars(SelectBlock& block, const Scope& scope) {
  std::vector<SelectItem> expanded;
  for (SelectItem& item : block.items) {
    if (item.value) {
      expanded.push_back(std::move(item));
      continue;
    }
    const Source* only = item.starOf.empty() ? nullptr : scope.Find(item.starOf);
    if (!item.starOf.empty() && !only) Raise(EngineError::UnknownTable, item.starOf);
    for (const Source& source : scope.Sources()) {
      if (only && &source != only) continue;
      for (const SourceColumn& column : source.columns) {
        SelectItem& added = expanded.emplace_back();
        added.value = std::make_unique<Expression>(Kind::Name);
        added.value->qualifier = source.alias;
        added.value->name = column.name;
      }
    }
  }
  if (expanded.empty()) Raise(EngineError::SyntaxInSelect, "* sem FROM");
  block.items = std::move(expanded);
}

// An order item is a place in the result, the name of a column of the result, or an expression over the sources.
void QueryBinder::BindOrder(Query& query, const Output& output, const Scope& scope) {
  for (OrderItem& item : query.orderBy) {
    Expression& value = *item.value;
    if (value.kind == Kind::Literal) {
      const auto* place = std::get_if<std::int32_t>(&expressions_.LiteralAt(value.literal));
      if (!place || *place < 1 || static_cast<std::size_t>(*place) > output.size()) {
        Raise(EngineError::SyntaxInSelect, "posição de ORDER BY fora das colunas");
      }
      expressions_.Fix(value.literal);
      item.place = static_cast<std::size_t>(*place) - 1;
      continue;
    }
    const bool isColumn =
        value.kind == Kind::Name && !scope.Sources().empty() && scope.Resolve(value.qualifier, value.name).column;
    if (value.kind == Kind::Name && value.qualifier.empty() && !isColumn) item.place = PlaceOf(output, value.name);
    if (item.place) continue;
    if (query.blocks.size() > 1) Raise(EngineError::Unsupported, "ORDER BY de UNION por uma expressão");
    expressions_.Bind(item.value, scope);
    if (!query.blocks[0].distinct) continue;
    // Rows that are told apart by what is selected have no other order.
    const auto& items = query.blocks[0].items;
    const auto same = [&](const SelectItem& selected) { return expressions_.Same(*selected.value, *item.value); };
    const auto found = std::find_if(items.begin(), items.end(), same);
    if (found == items.end()) Raise(EngineError::OrderAgainstDistinct);
    item.place = static_cast<std::size_t>(found - items.begin());
  }
}

void QueryBinder::CheckGroups(const Query& query) {
  for (const SelectBlock& block : query.blocks) {
    if (!IsGrouped(query, block)) continue;
    for (const SelectItem& item : block.items) CheckGrouped(*item.value, block);
    if (block.having) CheckGrouped(*block.having, block);
    for (const OrderItem& item : query.orderBy) {
      if (!item.place) CheckGrouped(*item.value, block);
    }
  }
}

void QueryBinder::CheckGrouped(const Expression& expression, const SelectBlock& block) {
  if (expression.kind == Kind::Aggregate) return;
  if (expression.query && UsesOuterNames(*expression.query)) {
    Raise(EngineError::Unsupported, "subconsulta que depende da linha numa consulta agrupada");
  }
  for (const ExpressionPtr& group : block.groupBy) {
    if (expressions_.Same(expression, *group)) return;
  }
  if (expression.kind == Kind::Name && !expression.flag) Raise(EngineError::NotAggregated, expression.name);
  for (const ExpressionPtr& operand : expression.operands) CheckGrouped(*operand, block);
}

}  // namespace tsv::db::jet

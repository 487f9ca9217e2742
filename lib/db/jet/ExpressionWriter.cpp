#include "db/jet/ExpressionWriter.h"

#include "db/jet/ExpressionBinder.h"

namespace tsv::db::jet {
namespace {

using Kind = Expression::Kind;

// No statement can take this alias for one of its own sources: a name in brackets cannot hold a bracket.
constexpr std::string_view kSubqueryAlias = "]q";

bool HasOneRow(const Query& query) {
  return query.blocks.size() == 1 && query.blocks[0].groupBy.empty() && HasAggregate(*query.blocks[0].items[0].value);
}

}  // namespace

std::string ExpressionWriter::Place(ParameterSlot slot) {
  parameters_.push_back(std::move(slot));
  return dialect_.Parameter(parameters_.size());
}

std::string ExpressionWriter::Write(const Expression& e) {
  switch (e.kind) {
    case Kind::Literal:
      return Place({e.type, e.literal, {}});
    case Kind::Parameter:
      return Place({e.type == ValueType::Null ? ValueType::Text : e.type, std::nullopt, e.name});
    case Kind::Null:
      return dialect_.NullOf(e.type);
    case Kind::Boolean:
      return e.flag ? "TRUE" : "FALSE";
    case Kind::Name:
      return Column(e);
    case Kind::Negate:
      return "(-" + Operand(e, 0) + ")";
    case Kind::Not:
      return "(NOT " + Operand(e, 0) + ")";
    case Kind::Arithmetic:
      return Arithmetic(e);
    case Kind::Concat: {
      const std::string left = Operand(e, 0);
      return dialect_.Concat(left, Operand(e, 1));
    }
    case Kind::Compare: {
      const std::string left = Operand(e, 0);
      return dialect_.Compare(e.op, e.operands[0]->type, e.exact, left, Operand(e, 1));
    }
    case Kind::Logical:
      return Logical(e);
    case Kind::Like:
    case Kind::LikePrefix: {
      const std::string text = Operand(e, 0);
      const std::string other = Operand(e, 1);
      return e.kind == Kind::Like ? dialect_.Like(text, other) : dialect_.LikePrefix(text, other);
    }
    case Kind::Between:
      return Between(e);
    case Kind::InList:
      return InList(e);
    case Kind::InQuery:
      return InQuery(e);
    case Kind::Quantified:
      return Quantified(e);
    case Kind::IsNull:
      return "(" + Operand(e, 0) + " IS NULL)";
    case Kind::Exists:
      return "EXISTS (" + writeQuery_(*e.query) + ")";
    case Kind::Scalar:
      return Scalar(e);
    case Kind::Call:
      return Call(e);
    case Kind::Case:
      return Case(e);
    case Kind::Coalesce: {
      const std::string value = Operand(e, 0);
      return "coalesce(" + value + ", " + Operand(e, 1) + ")";
    }
    case Kind::Magnitude:
      return dialect_.Magnitude(Operand(e, 0));
    case Kind::Aggregate:
      return Aggregate(e);
    case Kind::Convert:
      return dialect_.Convert(Operand(e, 0), e.operands[0]->type, e.type);
  }
  return {};
}

std::string ExpressionWriter::Key(const Expression& value, bool exact) {
  std::string written = Write(value);
  if (value.type != ValueType::Text) return written;
  return exact ? dialect_.ExactKey(written) : dialect_.EqualityKey(written);
}

std::string ExpressionWriter::EqualityKey(const Expression& expression) { return Key(expression, expression.exact); }

std::string ExpressionWriter::SortKey(const Expression& expression) { return SortKey(Write(expression), expression); }

std::string ExpressionWriter::SortKey(std::string written, const Expression& expression) const {
  if (expression.type == ValueType::Text)
    return expression.exact ? dialect_.ExactKey(written) : dialect_.SortKey(written);
  // True is -1 and so comes before False.
  return expression.type == ValueType::Boolean ? dialect_.Convert(written, ValueType::Boolean, ValueType::Long)
                                               : written;
}

std::string ExpressionWriter::Column(const Expression& e) const {
  const std::string column = dialect_.Name(e.qualifier) + "." + dialect_.Name(e.name);
  return grouped_ ? dialect_.Grouped(column) : column;
}

std::string ExpressionWriter::Aggregate(const Expression& e) {
  if (e.operands.empty()) return dialect_.Aggregate("Count", ValueType::Long, "*");
  const bool grouped = Grouped(false);
  const std::string value = Operand(e, 0);
  Grouped(grouped);
  return dialect_.Aggregate(e.name, e.operands[0]->type, value);
}

std::string ExpressionWriter::Logical(const Expression& e) {
  const std::string a = Operand(e, 0);
  const std::string b = Operand(e, 1);
  if (e.op == "IMP") return "((NOT " + a + ") OR " + b + ")";
  const std::string op = e.op == "XOR" ? "<>" : e.op == "EQV" ? "=" : e.op;
  return "(" + a + " " + op + " " + b + ")";
}

std::string ExpressionWriter::Arithmetic(const Expression& e) {
  const ValueType left = e.operands[0]->type;
  const bool scaled = e.op == "*" && left != e.operands[1]->type;  // a count times an amount
  const std::string a = Operand(e, 0);
  return dialect_.Arithmetic(e.op, scaled ? ValueType::Long : left, a, Operand(e, 1));
}

std::string ExpressionWriter::Between(const Expression& e) {
  const ValueType type = e.operands[0]->type;
  const std::string value = Operand(e, 0);
  const std::string low = Operand(e, 1);
  const std::string high = Operand(e, 2);
  // The bounds may stand in either order.
  const auto within = [&](const std::string& least, const std::string& most) {
    return "(" + dialect_.Compare(">=", type, e.exact, value, least) + " AND " +
           dialect_.Compare("<=", type, e.exact, value, most) + ")";
  };
  return "(" + within(low, high) + " OR " + within(high, low) + ")";
}

std::string ExpressionWriter::InList(const Expression& e) {
  std::string list = "(" + Key(*e.operands[0], e.exact) + " IN (";
  for (std::size_t i = 1; i < e.operands.size(); ++i) list += (i > 1 ? ", " : "") + Key(*e.operands[i], e.exact);
  return list + "))";
}

std::string ExpressionWriter::InQuery(const Expression& e) {
  const std::string value = Key(*e.operands[0], e.exact);
  std::string query = writeQuery_(*e.query);
  if (dialect_.KeysReplaceTexts() && e.operands[0]->type == ValueType::Text && !e.exact) {
    const std::string alias = dialect_.Name(kSubqueryAlias);
    query = "SELECT " + dialect_.EqualityKey(alias + "." + dialect_.Name("c1")) + " FROM (" + query + ") AS " + alias;
  }
  return "(" + value + " IN (" + query + "))";
}

std::string ExpressionWriter::Quantified(const Expression& e) {
  const Expression& value = *e.operands[0];
  const std::string written = Write(value);
  const std::string alias = dialect_.Name(kSubqueryAlias);
  const std::string compared = dialect_.Compare(e.op, value.type, e.exact, written, alias + "." + dialect_.Name("c1"));
  const auto count = [&](const std::string& condition) { return "count(CASE WHEN " + condition + " THEN 1 END)"; };
  const std::string decisive = count(e.flag ? "NOT " + compared : compared);
  const std::string others = count(e.flag ? compared : "NOT " + compared);
  const std::string_view whenDecided = e.flag ? "FALSE" : "TRUE";
  const std::string_view otherwise = e.flag ? "TRUE" : "FALSE";
  // One row decides; without one, each must say the contrary, or the answer is Null.
  std::string text = "(SELECT CASE WHEN " + decisive + " > 0 THEN ";
  text.append(whenDecided).append(" WHEN count(*) = ").append(others).append(" THEN ").append(otherwise);
  return text + " END FROM (" + writeQuery_(*e.query) + ") AS " + alias + ")";
}

std::string ExpressionWriter::Scalar(const Expression& e) {
  std::string query = writeQuery_(*e.query);
  if (HasOneRow(*e.query)) return "(" + query + ")";
  const std::string alias = dialect_.Name(kSubqueryAlias);
  return "(SELECT " + dialect_.Aggregate("Single", e.type, alias + "." + dialect_.Name("c1")) + " FROM (" + query +
         ") AS " + alias + ")";
}

std::string ExpressionWriter::Case(const Expression& e) {
  std::string text = "(CASE";
  std::size_t i = 0;
  for (; i + 1 < e.operands.size(); i += 2) {
    text += " WHEN " + Operand(e, i);
    text += " THEN " + Operand(e, i + 1);
  }
  return text + " ELSE " + Operand(e, i) + " END)";
}

std::string ExpressionWriter::Call(const Expression& e) {
  std::vector<std::string> arguments;
  std::vector<ValueType> types;
  for (const ExpressionPtr& operand : e.operands) {
    arguments.push_back(Write(*operand));
    types.push_back(operand->type);
  }
  return dialect_.Call(*e.function, arguments, types);
}

}  // namespace tsv::db::jet

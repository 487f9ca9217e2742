#include "db/sqlite/SqliteDialect.h"

#include "db/jet/Functions.h"
#include "db/jet/Keywords.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

using jet::SameWord;

// How a function that takes any type calls its form for one of them.
std::string_view Suffix(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return "_boolean";
    case ValueType::Byte:
    case ValueType::Long:
      return "_long";
    case ValueType::Decimal:
      return "_decimal";
    case ValueType::Currency:
      return "_currency";
    case ValueType::Double:
      return "_double";
    case ValueType::Date:
      return "_date";
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return "_text";
}

}  // namespace

std::string SqliteDialect::Ours(std::string_view function, const std::string& arguments) const {
  return std::string(function) + "(" + arguments + ")";
}

std::string SqliteDialect::ConditionToWhole(const std::string& condition) const { return "(-" + condition + ")"; }
std::string SqliteDialect::WholeToDouble(const std::string& value) const { return "CAST(" + value + " AS REAL)"; }
std::string SqliteDialect::WholeToAmount(const std::string& value) const { return Infix(value, "*", "10000"); }
std::string SqliteDialect::WholeToText(const std::string& value) const { return "CAST(" + value + " AS TEXT)"; }
std::string SqliteDialect::AmountToDouble(const std::string& value) const { return Infix(value, "/", "10000.0"); }

std::string SqliteDialect::Parameter(std::size_t place) const { return "?" + std::to_string(place); }

std::string SqliteDialect::Compare(std::string_view op, ValueType type, bool exact, const std::string& a,
                                   const std::string& b) const {
  if (type != ValueType::Text) return Infix(a, op, b);
  if (exact) return Infix(a, op, ExactKey(b));
  const bool equality = op == "=" || op == "<>";
  return Infix(a, op, equality ? EqualityKey(b) : SortKey(b));
}

std::string SqliteDialect::EqualityKey(const std::string& text) const { return text + " COLLATE TSV_TEXTO"; }
std::string SqliteDialect::SortKey(const std::string& text) const { return text + " COLLATE TSV_ORDEM"; }

std::string SqliteDialect::ExactKey(const std::string& text) const { return text + " COLLATE BINARY"; }

std::string SqliteDialect::Concat(const std::string& a, const std::string& b) const {
  return Ours("tsv_concat", a + ", " + b);
}
std::string SqliteDialect::Like(const std::string& text, const std::string& pattern) const {
  return Ours("tsv_like", text + ", " + pattern);
}
std::string SqliteDialect::LikePrefix(const std::string& text, const std::string& prefix) const {
  return Ours("tsv_like_prefix", text + ", " + prefix);
}

// A condition is 0 or 1 already.
std::string SqliteDialect::Magnitude(const std::string& condition) const { return condition; }

std::string SqliteDialect::Call(const jet::Function& function, std::span<const std::string> arguments,
                                std::span<const ValueType> types) const {
  if (SameWord(function.name, "LEN")) return Ours("length", arguments[0]);
  std::string call = "jet_" + text::Lower(function.name);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (function.arguments[i] != jet::ArgumentKind::Any) continue;
    call += Suffix(types[i]);
    break;
  }
  call += "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) call += (i > 0 ? ", " : "") + arguments[i];
  return call + ")";
}

std::string SqliteDialect::Aggregate(std::string_view name, ValueType type, const std::string& value) const {
  if (SameWord(name, "AVG") && IsAmount(type)) return Ours("tsv_average_currency", value);
  if (SameWord(name, "FIRST") || SameWord(name, "LAST") || SameWord(name, "SINGLE"))
    return Ours("tsv_" + text::Lower(name), value);
  const bool language = type == ValueType::Text && (SameWord(name, "MIN") || SameWord(name, "MAX"));
  return Ours(text::Lower(name), language ? SortKey(value) : value);
}

}  // namespace tsv::db::sqlite

#include "db/sqlite/SqliteDialect.h"

#include "db/jet/Functions.h"
#include "db/jet/Keywords.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

using jet::SameWord;

std::string Call1(std::string_view function, const std::string& a) { return std::string(function) + "(" + a + ")"; }

std::string Call2(std::string_view function, const std::string& a, const std::string& b) {
  return std::string(function) + "(" + a + ", " + b + ")";
}

std::string Infix(const std::string& a, std::string_view op, const std::string& b) {
  return "(" + a + " " + std::string(op) + " " + b + ")";
}

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

bool IsWhole(ValueType type) { return type == ValueType::Byte || type == ValueType::Long; }
bool IsAmount(ValueType type) { return type == ValueType::Decimal || type == ValueType::Currency; }

std::string ToDays(const std::string& value, ValueType from) {
  switch (from) {
    case ValueType::Boolean:
      return Infix(value, "*", "-1.0");
    case ValueType::Byte:
    case ValueType::Long:
      return "CAST(" + value + " AS REAL)";
    case ValueType::Decimal:
    case ValueType::Currency:
      return Infix(value, "/", "10000.0");
    case ValueType::Date:
      return Call1("tsv_date_to_days", value);
    case ValueType::Text:
      return Call1("tsv_parse_double", value);
    case ValueType::Null:
    case ValueType::Double:
      break;
  }
  return value;
}

std::string ToBooleanValue(const std::string& value, ValueType from) {
  if (from == ValueType::Text) return Call1("tsv_parse_boolean", value);
  return Infix(from == ValueType::Date ? ToDays(value, from) : value, "<>", "0");
}

std::string ToWhole(const std::string& value, ValueType from) {
  if (from == ValueType::Boolean) return "(-" + value + ")";
  if (IsAmount(from)) return Call1("tsv_long_from_currency", value);
  if (from == ValueType::Text) return Call1("tsv_parse_long", value);
  return Call1("tsv_round_long", ToDays(value, from));
}

std::string ToAmount(const std::string& value, ValueType from) {
  if (from == ValueType::Boolean) return Infix(value, "*", "-10000");
  if (IsWhole(from)) return Infix(value, "*", "10000");
  if (from == ValueType::Text) return Call1("tsv_parse_currency", value);
  return Call1("tsv_currency", ToDays(value, from));
}

std::string ToTextValue(const std::string& value, ValueType from) {
  if (from == ValueType::Boolean) return "CAST(-" + value + " AS TEXT)";
  if (IsWhole(from)) return "CAST(" + value + " AS TEXT)";
  if (IsAmount(from)) return Call1("tsv_text_currency", value);
  return Call1(from == ValueType::Date ? "tsv_text_date" : "tsv_text_double", value);
}

}  // namespace

std::string SqliteDialect::Parameter(std::size_t place) const { return "?" + std::to_string(place); }

std::string SqliteDialect::Name(std::string_view name) const {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

std::string SqliteDialect::Convert(const std::string& value, ValueType from, ValueType to) const {
  if (from == to || from == ValueType::Null || (IsWhole(from) && IsWhole(to)) || (IsAmount(from) && IsAmount(to)))
    return value;
  switch (to) {
    case ValueType::Boolean:
      return ToBooleanValue(value, from);
    case ValueType::Byte:
    case ValueType::Long:
      return ToWhole(value, from);
    case ValueType::Decimal:
    case ValueType::Currency:
      return ToAmount(value, from);
    case ValueType::Double:
      return ToDays(value, from);
    case ValueType::Date:
      return from == ValueType::Text ? Call1("tsv_parse_date", value) : Call1("tsv_days_to_date", ToDays(value, from));
    case ValueType::Text:
      return ToTextValue(value, from);
    case ValueType::Null:
      break;
  }
  return value;
}

std::string SqliteDialect::Arithmetic(std::string_view op, ValueType type, const std::string& a,
                                      const std::string& b) const {
  if (op == "+" && type == ValueType::Text) return Infix(a, "||", b);
  if (op == "*" && IsAmount(type)) return Call2("tsv_currency_multiply", a, b);
  if (op == "/") return Call2("tsv_divide", a, b);
  if (op == "\\") return Call2("tsv_integer_divide", a, b);
  if (op == "^") return Call2("tsv_power", a, b);
  if (SameWord(op, "MOD")) return Call2("tsv_modulo", a, b);
  return Infix(a, op, b);
}

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
  return Call2("tsv_concat", a, b);
}
std::string SqliteDialect::Like(const std::string& text, const std::string& pattern) const {
  return Call2("tsv_like", text, pattern);
}
std::string SqliteDialect::LikePrefix(const std::string& text, const std::string& prefix) const {
  return Call2("tsv_like_prefix", text, prefix);
}

// A condition is 0 or 1 already.
std::string SqliteDialect::Magnitude(const std::string& condition) const { return condition; }

std::string SqliteDialect::Call(const jet::Function& function, std::span<const std::string> arguments,
                                std::span<const ValueType> types) const {
  if (SameWord(function.name, "LEN")) return Call1("length", arguments[0]);
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
  if (SameWord(name, "AVG") && IsAmount(type)) return Call1("tsv_average_currency", value);
  if (SameWord(name, "FIRST") || SameWord(name, "LAST") || SameWord(name, "SINGLE"))
    return Call1("tsv_" + text::Lower(name), value);
  const bool language = type == ValueType::Text && (SameWord(name, "MIN") || SameWord(name, "MAX"));
  return Call1(text::Lower(name), language ? SortKey(value) : value);
}

}  // namespace tsv::db::sqlite

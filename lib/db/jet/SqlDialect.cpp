#include "db/jet/SqlDialect.h"

#include "db/jet/Keywords.h"

namespace tsv::db::jet {

std::string SqlDialect::Name(std::string_view name) const {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + "\"";
}

std::string SqlDialect::Infix(const std::string& a, std::string_view op, const std::string& b) {
  return "(" + a + " " + std::string(op) + " " + b + ")";
}

std::string SqlDialect::Convert(const std::string& value, ValueType from, ValueType to) const {
  if (from == to || from == ValueType::Null || (IsWhole(from) && IsWhole(to)) || (IsAmount(from) && IsAmount(to)))
    return value;
  switch (to) {
    case ValueType::Boolean:
      return ToBoolean(value, from);
    case ValueType::Byte:
    case ValueType::Long:
      return ToWhole(value, from);
    case ValueType::Decimal:
    case ValueType::Currency:
      return ToAmount(value, from);
    case ValueType::Double:
      return ToDouble(value, from);
    case ValueType::Date:
      return from == ValueType::Text ? Ours("tsv_parse_date", value) : Ours("tsv_days_to_date", ToDouble(value, from));
    case ValueType::Text:
      return ToText(value, from);
    case ValueType::Null:
      break;
  }
  return value;
}

std::string SqlDialect::ToBoolean(const std::string& value, ValueType from) const {
  if (from == ValueType::Text) return Ours("tsv_parse_boolean", value);
  return Infix(from == ValueType::Date ? ToDouble(value, from) : value, "<>", "0");
}

std::string SqlDialect::ToWhole(const std::string& value, ValueType from) const {
  if (from == ValueType::Boolean) return ConditionToWhole(value);
  if (IsAmount(from)) return Ours("tsv_long_from_currency", value);
  if (from == ValueType::Text) return Ours("tsv_parse_long", value);
  return Ours("tsv_round_long", ToDouble(value, from));
}

std::string SqlDialect::ToAmount(const std::string& value, ValueType from) const {
  if (from == ValueType::Boolean) return WholeToAmount(ConditionToWhole(value));
  if (IsWhole(from)) return WholeToAmount(value);
  if (from == ValueType::Text) return Ours("tsv_parse_currency", value);
  return Ours("tsv_currency", ToDouble(value, from));
}

std::string SqlDialect::ToDouble(const std::string& value, ValueType from) const {
  if (from == ValueType::Boolean) return WholeToDouble(ConditionToWhole(value));
  if (IsWhole(from)) return WholeToDouble(value);
  if (IsAmount(from)) return AmountToDouble(value);
  if (from == ValueType::Date) return Ours("tsv_date_to_days", value);
  return from == ValueType::Text ? Ours("tsv_parse_double", value) : value;
}

std::string SqlDialect::ToText(const std::string& value, ValueType from) const {
  if (from == ValueType::Boolean) return WholeToText(ConditionToWhole(value));
  if (IsWhole(from)) return WholeToText(value);
  if (IsAmount(from)) return Ours("tsv_text_currency", value);
  return Ours(from == ValueType::Date ? "tsv_text_date" : "tsv_text_double", value);
}

std::string SqlDialect::Arithmetic(std::string_view op, ValueType type, const std::string& a,
                                   const std::string& b) const {
  const std::string both = a + ", " + b;
  if (op == "+" && type == ValueType::Text) return Infix(a, "||", b);
  if (op == "*" && IsAmount(type)) return Ours("tsv_currency_multiply", both);
  if (op == "/") return Ours("tsv_divide", both);
  if (op == "\\") return Ours("tsv_integer_divide", both);
  if (op == "^") return Ours("tsv_power", both);
  if (SameWord(op, "MOD")) return Ours("tsv_modulo", both);
  return Infix(a, op, b);
}

}  // namespace tsv::db::jet

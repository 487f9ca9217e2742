#include "copying/RowText.h"

#include <functional>

#include "common/Statement.h"
#include "types/Conversions.h"

namespace tsv::cli {
namespace {

// Always with a point, so that all amounts are literals of one kind and statements of one shape.
std::string ExactAmount(Currency amount) {
  std::string text = amount.ToText();
  return text.find('.') == std::string::npos ? text.append(".0") : text;
}

std::string WithPairs(const std::string& text) {
  std::string paired;
  for (const char c : text) paired.append(c == '\'' ? 2 : 1, c);
  return paired;
}

std::string LiteralOf(const Variant& value) {
  if (IsNull(value)) return "NULL";
  if (const auto* amount = std::get_if<Currency>(&value)) return ExactAmount(*amount);
  if (const auto* text = std::get_if<std::string>(&value)) return Module1::TextLiteral(WithPairs(*text)).Text();
  if (const auto* date = std::get_if<Date>(&value))
    return (*date == Date() ? Module1::DateOnlyLiteral(*date) : Module1::DateLiteral(*date)).Text();
  return std::to_string(ToLong(value));
}

}  // namespace

std::string LiteralsOf(const db::Recordset& row) {
  std::string literals;
  for (std::size_t i = 0; i < row.FieldCount(); ++i) {
    if (i > 0) literals += ", ";
    literals += LiteralOf(row.Fields(i).Value());
  }
  return literals;
}

void TableDigest::Add(const std::string& literals) {
  ++rows;
  sum += std::hash<std::string>()(literals);
}

}  // namespace tsv::cli

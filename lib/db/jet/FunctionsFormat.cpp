#include "db/jet/Format.h"
#include "db/jet/FunctionTables.h"
#include "db/jet/Keywords.h"
#include "db/jet/TextValues.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

struct NamedFormat {
  std::string_view name;
  std::string_view pattern;
};

constexpr NamedFormat kNamedFormats[] = {
    {"Currency", "\"R$\" #,##0.00"}, {"Fixed", "0.00"},
    {"Standard", "#,##0.00"},        {"Percent", "0.00%"},
    {"Scientific", "0.00E+00"},      {"General Date", "c"},
    {"Long Date", "dddddd"},         {"Medium Date", "dd-mmm-yy"},
    {"Short Date", "ddddd"},         {"Long Time", "ttttt"},
    {"Medium Time", "hh:nn AM/PM"},  {"Short Time", "hh:nn"},
};

// A condition's names: what is shown for True and for False.
struct NamedCondition {
  std::string_view name;
  std::string_view whenTrue;
  std::string_view whenFalse;
};

constexpr NamedCondition kNamedConditions[] = {
    {"Yes/No", "Sim", "Não"}, {"True/False", "Verdadeiro", "Falso"}, {"On/Off", "Ativado", "Desativado"}};

enum class PatternKind { Number, Date, UpperText, LowerText, Literal };

// The first character that only one kind of pattern has decides.
PatternKind KindOf(std::string_view pattern) {
  for (std::size_t at = 0; at < pattern.size();) {
    const char c = pattern[at];
    if (c == '"' || c == '\\') {
      QuotedPart(pattern, at);
      continue;
    }
    if (c == '>') return PatternKind::UpperText;
    if (c == '<') return PatternKind::LowerText;
    if (std::string_view("0#%").find(c) != std::string_view::npos) return PatternKind::Number;
    if (std::string_view("cdmyhnsqwCDMYHNSQW").find(c) != std::string_view::npos) return PatternKind::Date;
    if (SameWord(pattern.substr(at, 5), "ttttt")) return PatternKind::Date;
    ++at;
  }
  return PatternKind::Literal;
}

NumberText NumberOf(const Variant& value) {
  if (const auto* amount = std::get_if<Currency>(&value)) {
    NumberText number{amount->TenThousandths() < 0, std::to_string(amount->TenThousandths()), {}};
    if (number.negative) number.digits.erase(0, 1);
    MovePoint(number, -4);
    return number;
  }
  constexpr int significant = 15;
  return DigitsOf(ToDouble(value), significant);
}

// A text that says a number or a date is formatted as one when the pattern asks for it.
Variant AsPatternWants(const Variant& value, PatternKind kind) {
  const auto* text = std::get_if<std::string>(&value);
  if (!text) return value;
  if (kind == PatternKind::Date && IsDate(value)) return ParseDate(*text);
  if ((kind == PatternKind::Date || kind == PatternKind::Number) && IsNumberText(*text)) return ParseDouble(*text);
  return value;
}

Variant Format(Arguments a) {
  if (IsNull(a[0])) return std::string();
  std::string_view pattern = a.size() > 1 && !IsNull(a[1]) ? std::string_view(TextAt(a, 1)) : std::string_view();
  if (pattern.empty() || SameWord(pattern, "General Number")) return TextOf(a[0]);
  for (const NamedCondition& named : kNamedConditions) {
    if (!SameWord(pattern, named.name)) continue;
    const auto* text = std::get_if<std::string>(&a[0]);
    return std::string((text ? ParseBoolean(*text) : ToBoolean(a[0])) ? named.whenTrue : named.whenFalse);
  }
  for (const NamedFormat& named : kNamedFormats) {
    if (SameWord(pattern, named.name)) pattern = named.pattern;
  }
  const PatternKind kind = KindOf(pattern);
  if (kind == PatternKind::UpperText) return text::Upper(TextOf(a[0]));
  if (kind == PatternKind::LowerText) return text::Lower(TextOf(a[0]));
  const Variant value = AsPatternWants(a[0], kind);
  if (std::holds_alternative<std::string>(value)) return value;
  if (kind == PatternKind::Date) return FormatDate(ToDate(value), pattern, LongAt(a, 2), LongAt(a, 3));
  return FormatNumber(NumberOf(value), pattern);
}

}  // namespace

std::vector<Function> FormatFunctions() {
  using enum ArgumentKind;
  return {{.name = "Format",
           .arguments = {Any, Text, Long, Long},
           .required = 1,
           .result = ValueType::Text,
           .passesNull = false,
           .call = Format}};
}

}  // namespace tsv::db::jet

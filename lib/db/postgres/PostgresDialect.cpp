#include "db/postgres/PostgresDialect.h"

#include "db/EngineError.h"
#include "db/jet/Functions.h"
#include "db/jet/Keywords.h"
#include "types/Text.h"

namespace tsv::db::postgres {
namespace {

using jet::SameWord;

// The server cuts longer names short without a word.
constexpr std::size_t kLongestName = 63;

std::string As(const std::string& value, std::string_view type) { return "(" + value + ")::" + std::string(type); }

std::string FirstOf(const std::string& value) { return "(array_agg(" + value + "))[1]"; }

}  // namespace

std::string PostgresDialect::Ours(std::string_view function, const std::string& arguments) const {
  return std::string("tesovia.").append(function) + "(" + arguments + ")";
}

std::string PostgresDialect::ConditionToWhole(const std::string& condition) const {
  return "(-" + As(condition, "integer") + ")";
}
std::string PostgresDialect::WholeToDouble(const std::string& value) const { return As(value, "float8"); }
std::string PostgresDialect::WholeToAmount(const std::string& value) const { return As(value, "numeric"); }
std::string PostgresDialect::WholeToText(const std::string& value) const { return As(value, "text"); }
std::string PostgresDialect::AmountToDouble(const std::string& value) const {
  return Ours("tsv_double_de_quantia", value);
}

std::string PostgresDialect::Parameter(std::size_t place) const { return "$" + std::to_string(place); }

std::string PostgresDialect::Name(std::string_view name) const {
  if (name.size() > kLongestName) Raise(EngineError::Unsupported, std::string("nome longo demais: ").append(name));
  return SqlDialect::Name(name);
}

// One without a type would be taken for a text where nothing beside it tells better.
std::string PostgresDialect::NullOf(ValueType type) const {
  switch (type) {
    case ValueType::Boolean:
      return "NULL::boolean";
    case ValueType::Byte:
    case ValueType::Long:
      return "NULL::integer";
    case ValueType::Decimal:
    case ValueType::Currency:
      return "NULL::numeric";
    case ValueType::Double:
      return "NULL::float8";
    case ValueType::Date:
      return "NULL::timestamp";
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return "NULL";
}

std::string PostgresDialect::TableName(std::string_view name) const { return "tesovia." + Name(name); }

std::string PostgresDialect::Compare(std::string_view op, ValueType type, bool exact, const std::string& a,
                                     const std::string& b) const {
  if (type != ValueType::Text) return Infix(a, op, b);
  if (exact) return Infix(a, op, ExactKey(b));
  const bool equality = op == "=" || op == "<>";
  return equality ? Infix(EqualityKey(a), op, EqualityKey(b)) : Infix(SortKey(a), op, SortKey(b));
}

std::string PostgresDialect::EqualityKey(const std::string& text) const { return Ours("tsv_texto", text); }
std::string PostgresDialect::SortKey(const std::string& text) const {
  return Ours("tsv_ordem", text) + " COLLATE \"C\"";
}
std::string PostgresDialect::ExactKey(const std::string& text) const { return text + " COLLATE \"C\""; }

std::string PostgresDialect::Direction(bool descending) const {
  return descending ? " DESC NULLS LAST" : " NULLS FIRST";
}

std::string PostgresDialect::Grouped(const std::string& column) const { return FirstOf(column); }

std::string PostgresDialect::Stored(const std::string& value, ValueType type) const {
  return type == ValueType::Boolean ? "coalesce(" + value + ", FALSE)" : value;
}

std::string PostgresDialect::Concat(const std::string& a, const std::string& b) const {
  return Ours("tsv_concat", a + ", " + b);
}
std::string PostgresDialect::Like(const std::string& text, const std::string& pattern) const {
  return Ours("tsv_like", text + ", " + pattern);
}
std::string PostgresDialect::LikePrefix(const std::string& text, const std::string& prefix) const {
  return Ours("tsv_comeca", text + ", " + prefix);
}

std::string PostgresDialect::Magnitude(const std::string& condition) const { return As(condition, "integer"); }

std::string PostgresDialect::Call(const jet::Function& function, std::span<const std::string> arguments,
                                  std::span<const ValueType> types) const {
  if (SameWord(function.name, "LEN")) return "length(" + arguments[0] + ")";
  std::string list;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    // The server tells its functions apart by their arguments' types; a bare Null has none.
    const bool typeless = function.arguments[i] == jet::ArgumentKind::Any && types[i] == ValueType::Null;
    list += (i > 0 ? ", " : "") + (typeless ? As(arguments[i], "float8") : arguments[i]);
  }
  return Ours("jet_" + text::Lower(function.name), list);
}

std::string PostgresDialect::Aggregate(std::string_view name, ValueType type, const std::string& value) const {
  if (SameWord(name, "AVG") && IsAmount(type)) return Ours("tsv_media", "sum(" + value + "), count(" + value + ")");
  if (SameWord(name, "AVG")) return "(sum(" + value + ") / nullif(count(" + value + "), 0))";
  if (SameWord(name, "COUNT")) return As("count(" + value + ")", "integer");
  if (type == ValueType::Null) return Aggregate(name, ValueType::Text, As(value, "text"));  // of Nulls alone
  if (SameWord(name, "FIRST")) return FirstOf(value);
  if (SameWord(name, "LAST")) return "(array_agg(" + value + "))[count(*)]";
  if (SameWord(name, "SINGLE")) return Ours("tsv_single", "array_agg(" + value + ")");
  const bool least = SameWord(name, "MIN");
  if (type == ValueType::Text && (least || SameWord(name, "MAX")))
    return "(array_agg(" + value + " ORDER BY " + SortKey(value) + (least ? "" : " DESC") + " NULLS LAST))[1]";
  return text::Lower(name) + "(" + value + ")";
}

}  // namespace tsv::db::postgres

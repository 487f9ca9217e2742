#include "db/postgres/SqlParts.h"

// Values of one type as another. Double values become decimal through their shortest text, which is what their writer
// meant, and texts show fifteen digits of them, which is what their own conversion to numeric keeps.
namespace tsv::db::postgres {
namespace {

// Numbers in texts: the Brazilian form or the plain one, or else one with an exponent. Null: no number.
std::string ReadingNumbers() {
  return Function("tsv_numero(t text)", "numeric", R"(
DECLARE
  number CONSTANT text COLLATE "C" := btrim(t, ' ');
BEGIN
  RETURN CASE
    WHEN number ~ '^[-+]?[1-9][0-9]{0,2}(\.[0-9]{3})+(,[0-9]*)?$' THEN translate(number, ',.', '.')::numeric
    WHEN number ~ '^[-+]?([0-9]+(,[0-9]*)?|,[0-9]+)$' THEN translate(number, ',', '.')::numeric
    WHEN number ~ '^[-+]?([0-9]+\.[0-9]*|\.[0-9]+)$' THEN number::numeric END;
END)") +
         // As the reader of Jet SQL takes it: a lone point begins the decimals.
         Function("tsv_numero_legivel(t text)", "numeric", R"(
DECLARE
  readable CONSTANT text COLLATE "C" := CASE WHEN t ~ '^[^.,]*\.[^.,]*$' THEN translate(t, '.', ',') ELSE t END;
  number numeric := tesovia.tsv_numero(readable);
  parts text[];
BEGIN
  IF number IS NOT NULL THEN RETURN number; END IF;
  parts := regexp_match(btrim(t, ' ') COLLATE "C", '^\+?(-?(?:[0-9]+\.?[0-9]*|\.[0-9]+))(?:[eE]([-+]?)0*([0-9]+))?$');
  IF parts IS NULL THEN RETURN NULL; END IF;
  IF parts[1]::numeric = 0 OR parts[2] = '-' AND char_length(parts[3]) > 4 THEN RETURN 0; END IF;
  IF char_length(parts[3]) > 4 THEN RAISE SQLSTATE 'T0006'; END IF;
  number := (parts[1] || 'e' || coalesce(parts[2] || parts[3], '0'))::numeric;
  RETURN tesovia.tsv_double(number)::text::numeric;
END)");
}

// The nearest double, which is zero below the least one, where the server would raise an error.
constexpr const char* kNearestDouble =
    "BEGIN RETURN CASE WHEN abs(x) < 2.4703282292062328e-324 THEN 0 ELSE x::float8 END; END";

// Dates in texts: Brazilian or ISO, with a time or without, or a time alone. Null: no date.
constexpr const char* kReadDate = R"(
DECLARE
  parts text[];
  y integer;
BEGIN
  parts := regexp_match(btrim(t, ' ') COLLATE "C",
    '^(?:([0-9]{4})-([0-9]{2})-([0-9]{2})(?:(?:T| +)([0-9]{1,2}):([0-9]{2})(?::([0-9]{2}))?)?)$');
  IF parts IS NULL THEN
    parts := regexp_match(btrim(t, ' ') COLLATE "C",
      '^([0-9]{1,2})/([0-9]{1,2})/([0-9]{4}|[0-9]{2})(?: +([0-9]{1,2}):([0-9]{2})(?::([0-9]{2}))?)?$');
    parts := ARRAY[parts[3], parts[2], parts[1], parts[4], parts[5], parts[6]];
  END IF;
  IF parts[1] IS NULL THEN
    parts := ARRAY['1899', '12', '30'] ||
      regexp_match(btrim(t, ' ') COLLATE "C", '^([0-9]{1,2}):([0-9]{2})(?::([0-9]{2}))?$');
    IF parts[4] IS NULL THEN RETURN NULL; END IF;
  END IF;
  y := parts[1]::integer + CASE WHEN char_length(parts[1]) > 2 THEN 0 WHEN parts[1]::integer < 30 THEN 2000 ELSE 1900 END;
  IF y < 100 OR parts[2]::integer NOT BETWEEN 1 AND 12 OR parts[3]::integer < 1
    OR parts[3]::integer > tesovia.tsv_dias_do_mes(y, parts[2]::integer)
    OR parts[4]::integer > 23 OR parts[5]::integer > 59 OR parts[6]::integer > 59 THEN
    RETURN NULL;
  END IF;
  RETURN make_timestamp(y, parts[2]::integer, parts[3]::integer, coalesce(parts[4]::integer, 0),
    coalesce(parts[5]::integer, 0), coalesce(parts[6]::integer, 0));
END)";

// Dates as days since 1899-12-30, whose fraction runs forward in time before that day too.
std::string Days() {
  return Expression("tsv_dias_do_mes(y integer, m integer)", "integer", R"(CASE WHEN m IN (4, 6, 9, 11) THEN 30
  WHEN m <> 2 THEN 31 WHEN y % 4 = 0 AND (y % 100 <> 0 OR y % 400 = 0) THEN 29 ELSE 28 END)") +
         Expression("tsv_dia(d timestamp)", "integer", "d::date - DATE '1899-12-30'") +
         Expression("tsv_segundo(d timestamp)", "integer", "extract(epoch FROM d::time)::integer") +
         Function("tsv_momento(dia bigint, segundo integer)", "timestamp", R"(
BEGIN
  IF dia NOT BETWEEN -657434 AND 2958465 THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN DATE '1899-12-30' + dia::integer + make_time(segundo / 3600, segundo / 60 % 60, segundo % 60);
END)") + Function("tsv_date_to_days(d timestamp)", "float8", R"(
DECLARE
  fraction CONSTANT float8 := tesovia.tsv_segundo(d) / 86400::float8;
BEGIN
  RETURN tesovia.tsv_dia(d) + CASE WHEN tesovia.tsv_dia(d) < 0 THEN -fraction ELSE fraction END;
END)") + Function("tsv_days_to_date(days float8)", "timestamp", R"(
DECLARE
  seconds float8 := abs(days - trunc(days)) * 86400;
BEGIN
  IF NOT (days > -657435 AND days < 2958466) THEN RAISE SQLSTATE 'T0005'; END IF;
  seconds := trunc(seconds) + CASE WHEN seconds - trunc(seconds) >= 0.5 THEN 1 ELSE 0 END;
  IF seconds = 86400 THEN RETURN tesovia.tsv_momento(trunc(days)::bigint + 1, 0); END IF;
  RETURN tesovia.tsv_momento(trunc(days)::bigint, seconds::integer);
END)") +
         // As a conversion of values does it: out of range is an overflow.
         Function("tsv_como_data(days float8)", "timestamp", R"(
BEGIN
  IF NOT (days > -657435 AND days < 2958466) THEN RAISE SQLSTATE 'T0006'; END IF;
  RETURN tesovia.tsv_days_to_date(days);
END)");
}

// Fixed while the digits fit beside the point, otherwise with an exponent.
constexpr const char* kTextOfDouble = R"(
DECLARE
  number CONSTANT numeric := trim_scale(abs(x::numeric));
  digits CONSTANT text := ltrim(split_part(number::text, '.', 1), '0');
  decimals CONSTANT text := split_part(number::text, '.', 2);
  shown text := number::text;
  exponent integer;
BEGIN
  IF char_length(digits) > 15 OR char_length(decimals) > 15 THEN
    shown := ltrim(digits || decimals, '0');
    exponent := char_length(shown) - char_length(decimals) - 1;
    shown := rtrim(shown, '0');
    shown := rtrim(left(shown, 1) || '.' || substr(shown, 2), '.') ||
      CASE WHEN exponent < 0 THEN 'E-' ELSE 'E+' END || lpad(abs(exponent)::text, greatest(2, char_length(abs(exponent)::text)), '0');
  END IF;
  RETURN CASE WHEN x < 0 AND number <> 0 THEN '-' ELSE '' END || shown;
END)";

// A time of the first day stands alone.
constexpr const char* kTextOfDate = R"(
DECLARE
  has_time CONSTANT boolean := d::time <> '00:00';
BEGIN
  RETURN concat_ws(' ', CASE WHEN NOT has_time OR tesovia.tsv_dia(d) <> 0 THEN to_char(d, 'DD/MM/YYYY') END,
    CASE WHEN has_time THEN to_char(d, 'HH24:MI:SS') END);
END)";

// What a text says; of another kind: 13.
std::string Parsers() {
  return Function("tsv_parse_number(t text)", "numeric", R"(
DECLARE
  number CONSTANT numeric := tesovia.tsv_numero_legivel(t);
BEGIN
  IF number IS NULL THEN RAISE SQLSTATE 'T0013'; END IF;
  RETURN number;
END)") +
         Function("tsv_parse_double(t text)", "float8",
                  "BEGIN RETURN tesovia.tsv_double(tesovia.tsv_parse_number(t)); END") +
         Function("tsv_parse_long(t text)", "integer", "BEGIN RETURN tesovia.tsv_parse_double(t)::integer; END") +
         Function("tsv_parse_currency(t text)", "numeric",
                  "BEGIN RETURN tesovia.tsv_quantia(tesovia.tsv_half_even(tesovia.tsv_parse_number(t), 4)); END") +
         Function("tsv_parse_date(t text)", "timestamp", R"(
BEGIN
  RETURN coalesce(tesovia.tsv_data(t), tesovia.tsv_como_data(tesovia.tsv_parse_double(t)));
END)") + Function("tsv_parse_boolean(t text)", "boolean", R"(
BEGIN
  RETURN CASE lower(btrim(t, ' ') COLLATE "C") WHEN 'true' THEN true WHEN 'false' THEN false
         ELSE tesovia.tsv_parse_double(t) <> 0 END;
END)");
}

std::string Writers() {
  return Expression("tsv_text_currency(x numeric)", "text", "trim_scale(x)::text") +
         Function("tsv_text_double(x float8)", "text", kTextOfDouble) +
         Function("tsv_text_date(d timestamp)", "text", kTextOfDate);
}

// The functions that convert a value of any type. Null is none of them: conversions raise 94, tests answer no.
std::string ConversionOf(std::string_view name, std::string_view type, std::string_view result,
                         std::string_view expression) {
  return FunctionOfNulls(
      "jet_" + std::string(name) + "(x " + std::string(type) + ")", result,
      "BEGIN IF x IS NULL THEN RAISE SQLSTATE 'T0094'; END IF; RETURN " + std::string(expression) + "; END");
}

// How each type becomes another; the names of the columns are the functions'.
struct FromType {
  std::string_view type, text, boolean, byte, whole, amount, number, date;
  std::string_view isDate, isNumeric;
};

constexpr FromType kTypes[] = {
    {.type = "boolean",
     .text = "CASE WHEN x THEN '-1' ELSE '0' END",
     .boolean = "x",
     .byte = "CASE WHEN x THEN 255 ELSE 0 END",
     .whole = "-x::integer",
     .amount = "-x::integer",
     .number = "-x::integer",
     .date = "tesovia.tsv_days_to_date(-x::integer)",
     .isDate = "false",
     .isNumeric = "x IS NOT NULL"},
    {.type = "integer",
     .text = "x::text",
     .boolean = "x <> 0",
     .byte = {},
     .whole = "x",
     .amount = "x",
     .number = "x",
     .date = "tesovia.tsv_como_data(x)",
     .isDate = "false",
     .isNumeric = "x IS NOT NULL"},
    {.type = "numeric",
     .text = "tesovia.tsv_text_currency(x)",
     .boolean = "x <> 0",
     .byte = {},
     .whole = "tesovia.tsv_long_from_currency(x)",
     .amount = "x",
     .number = "tesovia.tsv_double_de_quantia(x)",
     .date = "tesovia.tsv_como_data(tesovia.tsv_double_de_quantia(x))",
     .isDate = "false",
     .isNumeric = "x IS NOT NULL"},
    {.type = "float8",
     .text = "tesovia.tsv_text_double(x)",
     .boolean = "x <> 0",
     .byte = {},
     .whole = "x::integer",
     .amount = "tesovia.tsv_currency(x)",
     .number = "x",
     .date = "tesovia.tsv_como_data(x)",
     .isDate = "false",
     .isNumeric = "x IS NOT NULL"},
    {.type = "timestamp",
     .text = "tesovia.tsv_text_date(x)",
     .boolean = "tesovia.tsv_date_to_days(x) <> 0",
     .byte = {},
     .whole = "tesovia.tsv_date_to_days(x)::integer",
     .amount = "tesovia.tsv_currency(tesovia.tsv_date_to_days(x))",
     .number = "tesovia.tsv_date_to_days(x)",
     .date = "x",
     .isDate = "x IS NOT NULL",
     .isNumeric = "false"},
    {.type = "text",
     .text = "x",
     .boolean = "tesovia.tsv_parse_boolean(x)",
     .byte = {},
     .whole = "tesovia.tsv_parse_long(x)",
     .amount = "tesovia.tsv_parse_currency(x)",
     .number = "tesovia.tsv_parse_double(x)",
     .date = "tesovia.tsv_parse_date(x)",
     .isDate = "tesovia.tsv_data(x) IS NOT NULL",
     .isNumeric = "tesovia.tsv_numero_legivel(x) IS NOT NULL"},
};

std::string ConversionsOf(const FromType& from) {
  const auto within = [](std::string_view whole, std::string_view least, std::string_view most) {
    return "tesovia.tsv_entre(" + std::string(whole) + ", " + std::string(least) + ", " + std::string(most) + ")";
  };
  const auto convert = [&](std::string_view name, std::string_view result, std::string_view expression) {
    return ConversionOf(name, from.type, result, expression);
  };
  const auto test = [&](std::string_view name, std::string_view condition) {
    return Expression("jet_" + std::string(name) + "(x " + std::string(from.type) + ")", "boolean", condition);
  };
  return convert("cstr", "text", from.text) + convert("cbool", "boolean", from.boolean) +
         convert("cbyte", "integer", from.byte.empty() ? within(from.whole, "0", "255") : std::string(from.byte)) +
         convert("cint", "integer", within(from.whole, "-32768", "32767")) + convert("clng", "integer", from.whole) +
         convert("ccur", "numeric", from.amount) + convert("cdbl", "float8", from.number) +
         convert("cdate", "timestamp", from.date) + test("isdate", from.isDate) + test("isnumeric", from.isNumeric);
}

}  // namespace

std::string SqlConversions() {
  std::string script =  // An amount divides its count of ten-thousandths.
      Expression("tsv_double_de_quantia(x numeric)", "float8", "(x * 10000)::float8 / 10000") +
      Function("tsv_double(x numeric)", "float8", kNearestDouble) + ReadingNumbers() + Days() +
      Function("tsv_data(t text)", "timestamp", kReadDate) +
      Expression("tsv_round_long(x float8)", "integer", "x::integer") +
      Function("tsv_currency(x float8)", "numeric",
               "BEGIN RETURN tesovia.tsv_quantia(tesovia.tsv_half_even(x::text::numeric, 4)); END") +
      Function("tsv_long_from_currency(x numeric)", "integer",
               "BEGIN RETURN tesovia.tsv_half_even(x, 0)::integer; END") +
      Parsers() + Writers() + Function("tsv_entre(x integer, low integer, high integer)", "integer", R"(
BEGIN
  IF x NOT BETWEEN low AND high THEN RAISE SQLSTATE 'T0006'; END IF;
  RETURN x;
END)") +
      // The one element; none is Null.
      Function("tsv_single(elements anyarray)", "anyelement", R"(
BEGIN
  IF cardinality(elements) > 1 THEN RAISE SQLSTATE 'T3354'; END IF;
  RETURN elements[array_lower(elements, 1)];
END)");
  for (const FromType& from : kTypes) script += ConversionsOf(from);
  return script;
}

}  // namespace tsv::db::postgres

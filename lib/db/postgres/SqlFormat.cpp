#include "db/postgres/SqlParts.h"

// Format. Quoted text and a character behind a backslash stand for themselves.
namespace tsv::db::postgres {
namespace {

constexpr const char* kNamedFormats = R"(
  CASE lower(pattern COLLATE "C") WHEN 'currency' THEN '"R$" #,##0.00' WHEN 'fixed' THEN '0.00'
  WHEN 'standard' THEN '#,##0.00' WHEN 'percent' THEN '0.00%' WHEN 'scientific' THEN '0.00E+00'
  WHEN 'general date' THEN 'c' WHEN 'long date' THEN 'dddddd' WHEN 'medium date' THEN 'dd-mmm-yy'
  WHEN 'short date' THEN 'ddddd' WHEN 'long time' THEN 'ttttt' WHEN 'medium time' THEN 'hh:nn AM/PM'
  WHEN 'short time' THEN 'hh:nn' ELSE pattern END)";

// What is shown for True and for False.
constexpr const char* kNamedConditions = R"(
  CASE lower(pattern COLLATE "C") WHEN 'yes/no' THEN ARRAY['Sim', 'Não']
  WHEN 'true/false' THEN ARRAY['Verdadeiro', 'Falso'] WHEN 'on/off' THEN ARRAY['Ativado', 'Desativado'] END)";

// The first character that only one kind of pattern has decides: > and < are texts, 0 a number, d a date.
constexpr const char* kKind = R"(
DECLARE
  decisive CONSTANT text := substring(regexp_replace(pattern, '\\.?|"[^"]*"?', ' ', 'g')
    FROM '[><0#%cdmyhnsqwCDMYHNSQW]|[tT]{5}');
BEGIN
  RETURN CASE WHEN decisive IN ('>', '<') THEN decisive WHEN decisive IN ('0', '#', '%') THEN '0'
              WHEN decisive <> '' THEN 'd' ELSE '' END;
END)";

constexpr const char* kDateTokens = R"(
BEGIN
  RETURN ARRAY(SELECT m[1] FROM regexp_matches(pattern COLLATE "C",
    '("[^"]*"?|\\.?|am/pm|ampm|a/p|([^"\\])\2*)', 'gi') m);
END)";

// The halves of the day, where a pattern names them, turn all its hours.
constexpr const char* kDate = R"(
DECLARE
  tokens CONSTANT text[] := tesovia.tsv_partes_de_data(pattern);
  token text;
  letter text;
  n integer;
  shown text := '';
  part text;
  after_hour boolean := false;
BEGIN
  halves := halves OR EXISTS (SELECT FROM unnest(tokens) AS t WHERE lower(t) IN ('am/pm', 'a/p', 'ampm'));
  FOREACH token IN ARRAY tokens LOOP
    n := char_length(token);
    letter := lower(left(token, 1));
    IF letter IN ('"', '\') THEN
      shown := shown || CASE letter WHEN '"' THEN translate(token, '"', '') ELSE substr(token, 2) END;
      CONTINUE;
    END IF;
    IF lower(token) IN ('am/pm', 'a/p', 'ampm') THEN
      n := CASE n WHEN 3 THEN 1 ELSE 2 END;
      shown := shown || CASE WHEN tesovia.jet_hour(d) < 12 THEN left(token, n) ELSE right(token, n) END;
      after_hour := false;
      CONTINUE;
    END IF;
    part := CASE CASE WHEN letter = 'm' AND after_hour THEN 'n' ELSE letter END
      WHEN 'c' THEN tesovia.tsv_text_date(d)
      WHEN 'd' THEN CASE
        WHEN n <= 2 THEN to_char(d, CASE n WHEN 1 THEN 'FMDD' ELSE 'DD' END)
        WHEN n <= 4 THEN tesovia.jet_weekdayname(tesovia.jet_weekday(d), n = 3)
        ELSE tesovia.tsv_formata_data(d, CASE n WHEN 5 THEN 'dd/mm/yyyy' ELSE 'dddd, d "de" mmmm "de" yyyy' END,
          first_day, first_week, halves) END
      WHEN 'm' THEN CASE
        WHEN n <= 2 THEN to_char(d, CASE n WHEN 1 THEN 'FMMM' ELSE 'MM' END)
        ELSE tesovia.jet_monthname(tesovia.jet_month(d), n = 3) END
      WHEN 'y' THEN to_char(d, CASE n WHEN 1 THEN 'FMDDD' WHEN 2 THEN 'YY' ELSE 'YYYY' END)
      WHEN 'q' THEN to_char(d, 'Q')
      WHEN 'w' THEN CASE n WHEN 1 THEN tesovia.jet_weekday(d, first_day)
                           ELSE tesovia.tsv_semana(d, first_day, first_week) END::text
      WHEN 'h' THEN to_char(d, CASE n WHEN 1 THEN 'FM' ELSE '' END || CASE WHEN halves THEN 'HH12' ELSE 'HH24' END)
      WHEN 'n' THEN to_char(d, CASE n WHEN 1 THEN 'FMMI' ELSE 'MI' END)
      WHEN 's' THEN to_char(d, CASE n WHEN 1 THEN 'FMSS' ELSE 'SS' END)
      WHEN 't' THEN CASE n WHEN 5 THEN to_char(d, CASE WHEN halves THEN 'HH12:MI:SS' ELSE 'HH24:MI:SS' END) END
    END;
    IF part IS NOT NULL THEN after_hour := letter = 'h'; END IF;
    shown := shown || coalesce(part, token);
  END LOOP;
  RETURN shown;
END)";

// The section for the number's sign, and the sign that it needs: the second is for negative numbers, the third for
// zero, where they say something.
constexpr const char* kSection = R"(
DECLARE
  sections text[] := ARRAY[''];
  token text;
BEGIN
  FOR token IN SELECT m[1] FROM regexp_matches(pattern, '("[^"]*(?:"|$)|\\.?|.)', 'g') m LOOP
    IF token = ';' THEN
      sections := array_append(sections, '');
    ELSE
      sections[cardinality(sections)] := sections[cardinality(sections)] || token;
    END IF;
  END LOOP;
  RETURN CASE WHEN n = 0 AND sections[3] <> '' THEN ARRAY[sections[3], '']
              WHEN n < 0 AND sections[2] <> '' THEN ARRAY[sections[2], '']
              ELSE ARRAY[sections[1], '-'] END;
END)";

// The pattern is read into parts: L a literal, I and D a digit before and behind the point, P the point, E an exponent.
constexpr const char* kNumber = R"(
DECLARE
  section CONSTANT text[] := tesovia.tsv_secao(n, pattern);
  kinds text[] := '{}';
  texts text[] := '{}';
  token text;
  integers integer := 0;
  required_integers integer := 0;
  decimals integer := 0;
  required_decimals integer := 0;
  exponent_digits integer;
  in_exponent boolean := false;
  in_decimals boolean := false;
  grouped boolean := false;
  commas integer := 0;
  shift integer := 0;
  x numeric;
  exponent integer := 0;
  digits text;
  fraction text;
  shown text;
  places integer;
  written integer := 0;
  integers_seen integer := 0;
  decimals_seen integer := 0;
BEGIN
  FOR token IN SELECT m[1] FROM regexp_matches(section[1], '("[^"]*(?:"|$)|\\.?|[Ee][-+]|.)', 'g') m LOOP
    IF in_exponent AND token IN ('0', '#') THEN
      exponent_digits := exponent_digits + 1;
      CONTINUE;
    END IF;
    in_exponent := token ~ '^[Ee][-+]$' AND exponent_digits IS NULL;
    IF NOT in_decimals AND (in_exponent OR token = '.') THEN
      shift := shift - 3 * commas;
      commas := 0;
    END IF;
    CASE
      WHEN in_exponent THEN
        exponent_digits := 0;
        in_decimals := true;
        kinds := array_append(kinds, 'E');
      WHEN token IN ('0', '#') AND in_decimals THEN
        decimals := decimals + 1;
        IF token = '0' THEN required_decimals := decimals; END IF;
        kinds := array_append(kinds, 'D');
      WHEN token IN ('0', '#') THEN
        integers := integers + 1;
        IF token = '0' OR required_integers > 0 THEN required_integers := required_integers + 1; END IF;
        grouped := grouped OR commas > 0;
        commas := 0;
        kinds := array_append(kinds, 'I');
      WHEN token = '.' AND NOT in_decimals THEN
        in_decimals := true;
        kinds := array_append(kinds, 'P');
      WHEN token = ',' THEN
        IF integers > 0 AND NOT in_decimals THEN commas := commas + 1; END IF;
        CONTINUE;
      ELSE
        IF token = '%' THEN shift := shift + 2; END IF;
        token := CASE left(token, 1) WHEN '"' THEN translate(token, '"', '') WHEN '\' THEN substr(token, 2)
                                     ELSE token END;
        kinds := array_append(kinds, 'L');
    END CASE;
    texts := array_append(texts, token);
  END LOOP;
  IF NOT in_decimals THEN shift := shift - 3 * commas; END IF;

  x := abs(n) * ('1e' || shift)::numeric;
  WHILE exponent_digits IS NOT NULL AND x <> 0 LOOP
    -- As many digits before the point as the pattern has; rounding can make one more, 9.99 becoming 10.
    fraction := split_part(x::text, '.', 2);
    places := greatest(integers, 1) - CASE WHEN x >= 1 THEN char_length(trunc(x)::text)
                                      ELSE char_length(ltrim(fraction, '0')) - char_length(fraction) END;
    EXIT WHEN places = 0 AND scale(x) <= decimals;
    x := round(x * ('1e' || places)::numeric, decimals);
    exponent := exponent - places;
  END LOOP;
  x := round(x, decimals);
  digits := ltrim(trunc(x)::text, '0');
  digits := lpad(digits, greatest(char_length(digits), required_integers), '0');
  fraction := split_part(x::text, '.', 2);
  fraction := left(fraction, greatest(required_decimals, char_length(rtrim(fraction, '0'))));

  shown := CASE WHEN n < 0 AND x <> 0 THEN section[2] ELSE '' END;
  FOR i IN 1 .. cardinality(kinds) LOOP
    IF kinds[i] = 'I' THEN integers_seen := integers_seen + 1; END IF;
    -- The first digit of the pattern takes all that are too many for it.
    WHILE (kinds[i] = 'I' OR kinds[i] = 'P' AND integers = 0)
      AND written < char_length(digits) - (integers - integers_seen) LOOP
      written := written + 1;
      shown := shown || substr(digits, written, 1) ||
        CASE WHEN grouped AND written < char_length(digits) AND (char_length(digits) - written) % 3 = 0 THEN ','
             ELSE '' END;
    END LOOP;
    CASE kinds[i]
      WHEN 'L' THEN shown := shown || texts[i];
      WHEN 'P' THEN shown := shown || '.';
      WHEN 'D' THEN
        decimals_seen := decimals_seen + 1;
        shown := shown || substr(fraction, decimals_seen, 1);
      WHEN 'E' THEN
        digits := abs(exponent)::text;
        shown := shown || left(texts[i], 1) ||
          CASE WHEN exponent < 0 THEN '-' WHEN right(texts[i], 1) = '+' THEN '+' ELSE '' END ||
          lpad(digits, greatest(char_length(digits), exponent_digits), '0');
      ELSE NULL;
    END CASE;
  END LOOP;
  RETURN shown;
END)";

// A text that says a number or a date is formatted as one when the pattern asks for it.
std::string Format(const std::string& type) {
  const std::string number = type == "numeric" ? "x" : "tesovia.jet_cdbl(x)::numeric";
  const std::string asText = type != "text" ? "" : R"(
  IF NOT (kind = 'd' AND tesovia.jet_isdate(x) OR kind IN ('d', '0') AND tesovia.jet_isnumeric(x)) THEN
    RETURN x;
  END IF;)";
  return FunctionOfNulls(
      "jet_format(x " + type + ", pattern text DEFAULT '', first_day integer DEFAULT 0, first_week integer DEFAULT 0)",
      "text",
      R"(
DECLARE
  names CONSTANT text[] := tesovia.tsv_condicoes(pattern);
  kind text;
BEGIN
  IF x IS NULL THEN RETURN ''; END IF;
  IF coalesce(lower(pattern COLLATE "C"), '') IN ('', 'general number') THEN RETURN tesovia.jet_cstr(x); END IF;
  IF names IS NOT NULL THEN RETURN names[CASE WHEN tesovia.jet_cbool(x) THEN 1 ELSE 2 END]; END IF;
  pattern := tesovia.tsv_formato(pattern);
  kind := tesovia.tsv_tipo_de_formato(pattern);
  IF kind = '>' THEN RETURN tesovia.jet_ucase(tesovia.jet_cstr(x)); END IF;
  IF kind = '<' THEN RETURN tesovia.jet_lcase(tesovia.jet_cstr(x)); END IF;)" +
          asText + R"(
  IF kind <> 'd' THEN RETURN tesovia.tsv_formata_numero()" +
          number + R"(, pattern); END IF;
  IF first_day IS NULL OR first_week IS NULL THEN RAISE SQLSTATE 'T0094'; END IF;
  RETURN tesovia.tsv_formata_data(tesovia.jet_cdate(x), pattern, first_day, first_week);
END)");
}

}  // namespace

std::string SqlFormat() {
  std::string script = Expression("tsv_formato(pattern text)", "text", kNamedFormats) +
                       Expression("tsv_condicoes(pattern text)", "text[]", kNamedConditions) +
                       Function("tsv_tipo_de_formato(pattern text)", "text", kKind) +
                       Function("tsv_partes_de_data(pattern text)", "text[]", kDateTokens) +
                       Function(
                           "tsv_formata_data(d timestamp, pattern text, first_day integer, first_week integer, "
                           "halves boolean DEFAULT false)",
                           "text", kDate) +
                       Function("tsv_secao(n numeric, pattern text)", "text[]", kSection) +
                       Function("tsv_formata_numero(n numeric, pattern text)", "text", kNumber);
  for (const std::string type : {"boolean", "integer", "numeric", "float8", "timestamp", "text"})
    script += Format(type);
  return script;
}

}  // namespace tsv::db::postgres

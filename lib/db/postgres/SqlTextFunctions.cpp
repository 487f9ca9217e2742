#include "db/postgres/SqlParts.h"

// The value functions of texts; jet_lcase and jet_ucase are with the folding. A bad argument is 5.
namespace tsv::db::postgres {
namespace {

// A body whose arguments must meet a condition.
std::string Checked(std::string_view signature, std::string_view result, std::string_view condition,
                    std::string_view expression) {
  std::string body = "BEGIN IF NOT (";
  body.append(condition).append(") THEN RAISE SQLSTATE 'T0005'; END IF; RETURN ").append(expression).append("; END");
  return Function(signature, result, body);
}

std::string Pieces() {
  return Expression("jet_len(t text)", "integer", "char_length(t)") +
         Checked("jet_left(t text, n integer)", "text", "n >= 0", "left(t, n)") +
         Checked("jet_right(t text, n integer)", "text", "n >= 0", "right(t, n)") +
         Checked("jet_mid(t text, start integer)", "text", "start >= 1", "substr(t, start)") +
         Checked("jet_mid(t text, start integer, n integer)", "text", "start >= 1 AND n >= 0", "substr(t, start, n)") +
         Expression("jet_trim(t text)", "text", "btrim(t, ' ')") +
         Expression("jet_ltrim(t text)", "text", "ltrim(t, ' ')") +
         Expression("jet_rtrim(t text)", "text", "rtrim(t, ' ')") +
         Expression("jet_strreverse(t text)", "text", "reverse(t)");
}

// Comparisons are 0 to the letter, 1 and 2 as the database compares.
std::string Searches() {
  return Checked("tsv_busca(t text, comparison integer)", "text", "comparison BETWEEN 0 AND 2",
                 "CASE WHEN comparison = 0 THEN t ELSE tesovia.jet_lcase(t) END") +
         // The start comes as a text, since the first argument may be the text to search.
         Function("jet_instr(start text, t text, sought text, comparison integer DEFAULT 2)", "integer", R"(
DECLARE
  first integer := tesovia.tsv_double(tesovia.tsv_numero(start))::integer;
  place integer;
BEGIN
  IF first IS NULL THEN RAISE SQLSTATE 'T0013'; END IF;
  IF first < 1 THEN RAISE SQLSTATE 'T0005'; END IF;
  place := strpos(substr(tesovia.tsv_busca(t, comparison), first), tesovia.tsv_busca(sought, comparison));
  RETURN CASE WHEN place = 0 OR first > char_length(t) THEN 0 ELSE place + first - 1 END;
END)") + Expression("jet_instr(t text, sought text)", "integer", "tesovia.jet_instr('1', t, sought, 2)") +
         // Lower case keeps the length of every character: places in the lower text are places in the text itself.
         Function(
             "jet_replace(t text, sought text, replacement text, start integer DEFAULT 1, "
             "count integer DEFAULT -1, comparison integer DEFAULT 2)",
             "text", R"(
DECLARE
  rest text := substr(t, greatest(start, 1));
  searched text := tesovia.tsv_busca(rest, comparison);
  wanted CONSTANT text := tesovia.tsv_busca(sought, comparison);
  replaced text := '';
  place integer;
BEGIN
  IF start < 1 OR count < -1 THEN RAISE SQLSTATE 'T0005'; END IF;
  WHILE count <> 0 AND wanted <> '' LOOP
    place := strpos(searched, wanted);
    EXIT WHEN place = 0;
    replaced := replaced || left(rest, place - 1) || replacement;
    IF octet_length(replaced) > 1000000 THEN RAISE SQLSTATE 'T0007'; END IF;
    rest := substr(rest, place + char_length(wanted));
    searched := substr(searched, place + char_length(wanted));
    count := count - 1;
  END LOOP;
  RETURN replaced || rest;
END)") + Function("jet_strcomp(a text, b text, comparison integer DEFAULT 2)", "integer", R"(
DECLARE
  left_key text COLLATE "C" := a;
  right_key text COLLATE "C" := b;
BEGIN
  IF comparison NOT BETWEEN 0 AND 2 THEN RAISE SQLSTATE 'T0005'; END IF;
  IF comparison <> 0 THEN
    left_key := tesovia.tsv_ordem(a);
    right_key := tesovia.tsv_ordem(b);
    IF left_key = right_key THEN
      RETURN sign(char_length(a) - char_length(rtrim(a, ' ')) - char_length(b) + char_length(rtrim(b, ' ')));
    END IF;
  END IF;
  RETURN CASE WHEN left_key < right_key THEN -1 WHEN left_key > right_key THEN 1 ELSE 0 END;
END)");
}

// The characters of the Windows code page between 128 and 159; those that it lacks are themselves.
constexpr const char* kCodePage =
    R"(E'\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F)"
    R"(\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178')";

std::string Codes() {
  const std::string codePage = kCodePage;
  // The server's texts have no character 0.
  return Checked("jet_chr(code integer)", "text", "code BETWEEN 1 AND 255",
                 "CASE WHEN code BETWEEN 128 AND 159 THEN substr(" + codePage + ", code - 127, 1) ELSE chr(code) END") +
         Checked("jet_asc(t text)", "integer", "t <> ''",
                 "CASE WHEN strpos(" + codePage + ", left(t, 1)) > 0 THEN 127 + strpos(" + codePage +
                     ", left(t, 1)) WHEN ascii(t) < 256 THEN ascii(t) ELSE 63 END");
}

// A piece over and over; more than any column holds could only exhaust the memory.
std::string Repetitions() {
  std::string script = Function("tsv_repete(piece text, n integer)", "text", R"(
BEGIN
  IF n < 0 THEN RAISE SQLSTATE 'T0005'; END IF;
  IF octet_length(piece) * n::bigint > 1000000 THEN RAISE SQLSTATE 'T0007'; END IF;
  RETURN repeat(piece, n);
END)") + Function("jet_space(n integer)", "text", "BEGIN RETURN tesovia.tsv_repete(' ', n); END") +
                       Checked("jet_string(n integer, piece text)", "text", "piece <> ''",
                               "tesovia.tsv_repete(left(piece, 1), n)");
  for (const std::string type : {"boolean", "integer", "numeric", "float8", "timestamp"}) {
    script += Function("jet_string(n integer, code " + type + ")", "text",
                       "BEGIN RETURN tesovia.tsv_repete(tesovia.jet_chr(tesovia.jet_clng(code) & 255), n); END");
  }
  return script;
}

}  // namespace

std::string SqlTextFunctions() {
  return Pieces() + Searches() + Codes() + Repetitions() + Function("jet_val(t text)", "float8", R"(
DECLARE
  number CONSTANT text := substring(translate(t, E' \t\n\r', '') COLLATE "C"
    FROM '^[-+]?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE][-+]?[0-9]+)?');
BEGIN
  RETURN CASE WHEN number IS NULL THEN 0 ELSE tesovia.tsv_parse_double(number) END;
END)") + Function("jet_str(x float8)", "text", R"(
DECLARE
  shown text := tesovia.tsv_text_double(x);
BEGIN
  IF left(shown, 1) <> '-' THEN shown := ' ' || shown; END IF;
  RETURN CASE WHEN char_length(shown) > 2 AND substr(shown, 2, 1) = '0' THEN left(shown, 1) || substr(shown, 3)
              ELSE shown END;
END)");
}

}  // namespace tsv::db::postgres

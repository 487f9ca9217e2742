#include "db/postgres/SqlAlphabet.h"
#include "db/postgres/SqlParts.h"

// LIKE by regular expressions over folded texts. A ligature stands there as U+FFFF and its two letters, since ? takes
// it as one character and everything else as two.
namespace tsv::db::postgres {
namespace {

std::string ArrayOf(const std::vector<Run>& runs, char32_t Run::*end) {
  std::string elements;
  for (const Run& run : runs) elements.append(elements.empty() ? "" : ",").append(std::to_string(run.*end));
  return "'{" + elements + "}'";
}

// What lies between two characters in the language's order, as members of a class.
std::string RangeOfClass() {
  const std::vector<Run> order = LanguageOrder();
  return Function("tsv_faixa(a integer, b integer)", "text", R"(
DECLARE
  firsts CONSTANT integer[] := )" + ArrayOf(order, &Run::first) + R"(;
  lasts CONSTANT integer[] := )" + ArrayOf(order, &Run::last) + R"(;
  low integer;
  members text := '';
BEGIN
  FOR i IN 1 .. cardinality(firsts) LOOP
    IF a BETWEEN firsts[i] AND lasts[i] THEN
      low := a;
    ELSIF low IS NOT NULL THEN
      low := firsts[i];
    END IF;
    IF b BETWEEN firsts[i] AND lasts[i] THEN
      IF low IS NULL OR low > b THEN RAISE SQLSTATE 'T0093'; END IF;
      RETURN members || tesovia.tsv_membro(low) || '-' || tesovia.tsv_membro(b);
    ELSIF low IS NOT NULL THEN
      members := members || tesovia.tsv_membro(low) || '-' || tesovia.tsv_membro(lasts[i]);
    END IF;
  END LOOP;
  RAISE SQLSTATE 'T0093';
END)");
}

// A list without its brackets. The minus sign is itself at either end, the exclamation mark negates in front of
// something, and an empty list matches nothing.
constexpr const char* kList = R"(
DECLARE
  items text := lista;
  negated CONSTANT boolean := starts_with(lista, '!') AND char_length(lista) > 1;
  members text := '';
  i integer := 1;
BEGIN
  IF negated THEN items := substr(lista, 2); END IF;
  WHILE i <= char_length(items) LOOP
    IF substr(items, i + 1, 1) = '-' AND i + 2 <= char_length(items) THEN
      members := members || tesovia.tsv_faixa(ascii(substr(items, i, 1)), ascii(substr(items, i + 2, 1)));
      i := i + 3;
    ELSE
      members := members || tesovia.tsv_membro(ascii(substr(items, i, 1)));
      i := i + 1;
    END IF;
  END LOOP;
  RETURN CASE WHEN negated THEN '\uFFFF?[^\uFFFF' || members || ']'
              WHEN members = '' THEN '\uFFFF\uFFFF'
              ELSE '\uFFFF?[' || members || ']' END;
END)";

constexpr const char* kPattern = R"(
DECLARE
  folded CONSTANT text := tesovia.tsv_dobra(padrao);
  expression text := '^';
  c text;
  i integer := 1;
  close integer;
BEGIN
  WHILE i <= char_length(folded) LOOP
    c := substr(folded, i, 1);
    IF c = '[' THEN
      close := strpos(substr(folded, i + 1), ']');
      IF close = 0 THEN RAISE SQLSTATE 'T0093'; END IF;
      expression := expression || tesovia.tsv_lista(substr(folded, i + 1, close - 1));
      i := i + close;
    ELSE
      expression := expression || CASE c
        WHEN '*' THEN '(?:.*[^\uFFFF])?'
        WHEN '?' THEN '(?:\uFFFF..|[^\uFFFF])'
        WHEN '#' THEN '[0-9]'
        ELSE '\uFFFF?' || tesovia.tsv_membro(ascii(c)) END;
    END IF;
    i := i + 1;
  END LOOP;
  RETURN expression || '$';
END)";

}  // namespace

std::string SqlLike() {
  const std::string ligatures = Quoted("([" + Ligatures() + "])");
  return Expression("tsv_membro(codigo integer)", "text", R"('\U' || lpad(to_hex(codigo), 8, '0'))") + RangeOfClass() +
         Function("tsv_lista(lista text)", "text", kList) +
         // The regular expression of a pattern, which the planner finds once for a pattern that it knows.
         RareFunction("tsv_padrao(padrao text)", "text", kPattern) +
         RareFunction("tsv_unidades_letras(t text)", "text",
                      "BEGIN RETURN tesovia.tsv_dobra_letras(regexp_replace(t COLLATE \"C\", " + ligatures +
                          R"(, E'\uFFFF\\1', 'g')); END)") +
         Expression("tsv_like(t text, padrao text)", "boolean",
                    R"(CASE WHEN octet_length(t) = char_length(t) THEN lower(t COLLATE "C")
  ELSE tesovia.tsv_unidades_letras(t) END COLLATE "C" ~ tesovia.tsv_padrao(padrao))") +
         // t LIKE prefixo & '*'; Null & '*' is the pattern '*', which every text matches.
         Expression("tsv_comeca(t text, prefixo text)", "boolean",
                    R"(CASE WHEN strpos(prefixo, '*') = 0 AND strpos(prefixo, '?') = 0 AND strpos(prefixo, '#') = 0
    AND strpos(prefixo, '[') = 0 THEN starts_with(tesovia.tsv_dobra(t), tesovia.tsv_dobra(prefixo))
  WHEN prefixo IS NULL THEN t IS NOT NULL OR NULL
  ELSE tesovia.tsv_like(t, prefixo || '*') END)");
}

}  // namespace tsv::db::postgres

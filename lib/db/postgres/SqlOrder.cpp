#include "db/postgres/SqlAlphabet.h"
#include "db/postgres/SqlParts.h"

namespace tsv::db::postgres {

// The language's order as a key whose code points compare as the texts do: the letters without their marks, U+0001,
// U+0002 and the letters with them, U+0001, a place for each joiner; parts that say nothing are left out, so that plain
// texts are their own key. Punctuation behind the figures and symbols get the lead / in front, which sorts before the
// figures; the control characters that the key itself uses get another.
std::string SqlOrder() {
  const Variants variants = FindVariants();
  const std::string plain(kPlainLetters);
  const std::string letters = Quoted(plain + variants.letters);
  return RareFunction("tsv_ordem_letras(t text)", "text",
                      R"(
DECLARE
  letters text COLLATE "C" := translate(t, '-''', '');
  key text COLLATE "C" := letters;
  marks text := '';
  joiners text := CASE WHEN letters <> t THEN rtrim(regexp_replace(t, '[^''-]', '.', 'g'), '.') ELSE '' END;
BEGIN
  IF letters ~ '[)" + variants.letters +
                          R"(]' THEN
    key := translate(letters, )" +
                          letters + ", " + Quoted(plain + variants.bases) + R"();
    marks := E'\u0002' || translate(letters, )" +
                          letters + ", " + Quoted(plain + variants.marks) + R"();
  END IF;
  IF key ~ '[^ !"#$%&()*,.0-9a-z]' THEN
    key := regexp_replace(key, '([\u0001\u0002])', E'\u0002\\1', 'g');
    key := regexp_replace(key, '([/:;?@[\\\]^_`{|}~\u007F])', '/\1', 'g');
    key := regexp_replace(key, '([)" +
                          ClassOf(SymbolsBeyondAscii()) + R"(])', E'/\u0081\\1', 'g');
    key := regexp_replace(key, '([+<=>])', E'/\u0080\\1', 'g');
  END IF;
  RETURN key || CASE WHEN joiners <> '' THEN E'\u0001' || marks || E'\u0001' || joiners
                     WHEN marks <> '' THEN E'\u0001' || marks
                     ELSE '' END;
END)") + Expression("tsv_ordem(t text)", "text",
                    R"(CASE WHEN t COLLATE "C" ~ '^[ !"#$%&()*,.0-9A-Za-z]*$' THEN rtrim(lower(t COLLATE "C"), ' ')
  ELSE tesovia.tsv_ordem_letras(tesovia.tsv_texto(t)) END)");
}

}  // namespace tsv::db::postgres

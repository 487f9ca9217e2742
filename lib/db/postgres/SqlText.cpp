#include "db/postgres/SqlParts.h"
#include "types/Text.h"

// Case and folding, from the tables of letters that the whole library uses.
namespace tsv::db::postgres {
namespace {

using Map = std::string (*)(std::string_view text);

std::string Folded(std::string_view text) {
  std::string folded;
  for (text::FoldedReader reader(text); !reader.AtEnd();) text::AppendCodePoint(folded, reader.Next());
  return folded;
}

// The text as map gives it, beyond what ofAscii does.
std::string Mapped(Map map, const std::string& ofAscii) {
  std::string from;
  std::string to;
  std::string sql;
  std::string ligatures;
  constexpr char32_t firstBeyondAscii = 0x80;
  constexpr char32_t endOfCase = 0xD800;  // no letter of two cases lies further on
  for (char32_t codePoint = firstBeyondAscii; codePoint < endOfCase; ++codePoint) {
    std::string letter;
    text::AppendCodePoint(letter, codePoint);
    const std::string mapped = map(letter);
    if (mapped == letter) continue;
    if (text::Length(mapped) == 1) {
      from += letter;
      to += mapped;
    } else {
      ligatures += letter;
      sql.append(", ").append(Quoted(letter)).append(", ").append(Quoted(mapped)).append(")");
    }
  }
  const std::string plain = map(kPlainLetters);
  sql.insert(0, "translate(" + ofAscii + ", " + Quoted(plain + from) + ", " + Quoted(plain + to) + ")");
  for (std::size_t i = text::Length(ligatures); i > 0; --i) sql.insert(0, "replace(");
  return "CASE WHEN t COLLATE \"C\" ~ '[" + from + ligatures + "]' THEN " + sql + " ELSE " + ofAscii + " END";
}

// A text with as many bytes as characters is ASCII.
std::string OfText(std::string_view name, std::string_view ofAscii, std::string_view ofLetters) {
  return Expression(std::string(name) + "(t text)", "text",
                    "CASE WHEN octet_length(t) = char_length(t) THEN " + std::string(ofAscii) + " ELSE tesovia." +
                        std::string(ofLetters) + "(t) END");
}

std::string OfLetters(std::string_view name, std::string_view mapped) {
  return RareFunction(std::string(name) + "(t text)", "text", "BEGIN RETURN " + std::string(mapped) + "; END");
}

}  // namespace

std::string SqlText() {
  const std::string lower = R"(lower(t COLLATE "C"))";
  const std::string upper = R"(upper(t COLLATE "C"))";
  return OfLetters("tsv_minusculas", Mapped(text::Lower, lower)) + OfText("jet_lcase", lower, "tsv_minusculas") +
         OfLetters("tsv_maiusculas", Mapped(text::Upper, upper)) + OfText("jet_ucase", upper, "tsv_maiusculas") +
         OfLetters("tsv_dobra_letras", Mapped(Folded, lower)) + OfText("tsv_dobra", lower, "tsv_dobra_letras") +
         // Texts are equal where these are.
         Expression("tsv_texto(t text)", "text", "rtrim(tesovia.tsv_dobra(t), ' ')") +
         Expression("tsv_concat(a text, b text)", "text", "coalesce(a || b, a, b)");
}

}  // namespace tsv::db::postgres

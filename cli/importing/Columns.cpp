#include "importing/Columns.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "types/Text.h"

namespace tsv::cli {
namespace {

struct Title {
  const char* name;
  std::string TypedEntry::*target;
};

// Titles as Simplified leaves them; the first of each value is the one that messages show.
constexpr Title kTitles[] = {
    {"data", &TypedEntry::data},
    {"dataprevisao", &TypedEntry::data},
    {"referencia", &TypedEntry::referencia},
    {"datareferencia", &TypedEntry::referencia},
    {"datadereferencia", &TypedEntry::referencia},
    {"valor", &TypedEntry::valor},
    {"historico", &TypedEntry::historico},
    {"conta", &TypedEntry::conta},
    {"codconta", &TypedEntry::conta},
    {"receitadespesa", &TypedEntry::recDesp},
    {"recdesp", &TypedEntry::recDesp},
    {"codrecdesp", &TypedEntry::recDesp},
    {"centro", &TypedEntry::centro},
    {"centrodecusto", &TypedEntry::centro},
    {"codcentrocusto", &TypedEntry::centro},
    {"parceiro", &TypedEntry::parceiro},
    {"idparceirocoml", &TypedEntry::parceiro},
    {"documento", &TypedEntry::documento},
};

constexpr const char* kAdvice =
    " O cabeçalho nomeia as colunas data, valor, historico, conta e receita-despesa e, querendo, referencia, centro, "
    "parceiro e documento.";

struct Accents {
  std::string_view letters;
  char plain;
};
constexpr Accents kAccents[] = {{"áàâã", 'a'}, {"éê", 'e'}, {"í", 'i'}, {"óôõ", 'o'}, {"úü", 'u'}, {"ç", 'c'}};

char PlainLetter(char32_t letter) {
  if (letter < 0x80) return static_cast<char>(letter);
  for (const Accents& accents : kAccents) {
    for (std::size_t at = 0; at < accents.letters.size();) {
      if (text::NextCodePoint(accents.letters, at) == letter) return accents.plain;
    }
  }
  return ' ';
}

std::string Simplified(std::string_view title) {
  const std::string lower = text::Lower(title);
  std::string simple;
  for (std::size_t at = 0; at < lower.size();) {
    const char letter = PlainLetter(text::NextCodePoint(lower, at));
    if (letter >= 'a' && letter <= 'z') simple += letter;
  }
  return simple;
}

}  // namespace

Columns::Columns(const std::vector<std::string>& header) {
  for (const std::string& title : header) {
    const auto known = std::find_if(std::begin(kTitles), std::end(kTitles),
                                    [simple = Simplified(title)](const Title& t) { return simple == t.name; });
    if (known == std::end(kTitles)) throw Failure(kUsage, "Coluna desconhecida: '" + title + "'." + kAdvice);
    if (std::find(targets_.begin(), targets_.end(), known->target) != targets_.end()) {
      throw Failure(kUsage, "Coluna repetida: '" + title + "'." + kAdvice);
    }
    targets_.push_back(known->target);
  }
  for (auto required :
       {&TypedEntry::data, &TypedEntry::valor, &TypedEntry::historico, &TypedEntry::conta, &TypedEntry::recDesp}) {
    if (std::find(targets_.begin(), targets_.end(), required) == targets_.end()) {
      const auto title = std::find_if(std::begin(kTitles), std::end(kTitles),
                                      [required](const Title& t) { return t.target == required; });
      throw Failure(kUsage, "Falta a coluna '" + std::string(title->name) + "'." + kAdvice);
    }
  }
}

TypedEntry Columns::EntryOf(const std::vector<std::string>& fields) const {
  TypedEntry entry;
  for (std::size_t i = 0; i < targets_.size(); ++i) entry.*targets_[i] = text::Trim(fields[i]);
  return entry;
}

}  // namespace tsv::cli

#include <array>
#include <cstdint>
#include <string_view>

#include "types/Text.h"

namespace tsv::text {
namespace {

// The Latin letters and figures that are variants of another one, in the order of their marks.
struct Variants {
  char base;
  std::u32string_view letters;
};

constexpr Variants kVariants[] = {
    {'1', U"¹"},          {'2', U"²"},      {'3', U"³"},          {'a', U"áàâäăāãåąª"}, {'c', U"ćċĉčç"}, {'d', U"ďđð"},
    {'e', U"éèėêëěĕēę"},  {'g', U"ġĝğģ"},   {'h', U"ĥħ"},         {'i', U"íìîïĭīĩįı"},  {'j', U"ĵ"},     {'k', U"ķĸ"},
    {'l', U"ĺľļŀł"},      {'n', U"ńňñņŉŋ"}, {'o', U"óòôöŏōõőøº"}, {'r', U"ŕřŗ"},        {'s', U"śŝšşſ"}, {'t', U"ťţŧ"},
    {'u', U"úùûüŭūũůųű"}, {'w', U"ŵ"},      {'y', U"ýŷÿ"},        {'z', U"źżž"},
};

constexpr std::size_t kEndOfVariants = 0x180;

struct Letter {
  char base = 0;
  std::uint8_t mark = 0;  // 0 for the bare letter
};

constexpr std::array<Letter, kEndOfVariants> MakeLetters() {
  std::array<Letter, kEndOfVariants> letters{};
  for (const Variants& variants : kVariants) {
    std::uint8_t mark = 0;
    for (const char32_t letter : variants.letters) letters[letter] = {variants.base, ++mark};
  }
  return letters;
}

constexpr std::array<Letter, kEndOfVariants> kLetters = MakeLetters();

Letter LetterOf(char32_t folded) noexcept { return folded < kEndOfVariants ? kLetters[folded] : Letter{}; }

bool IsSymbol(char32_t folded) noexcept {
  return folded == '+' || folded == '<' || folded == '=' || folded == '>' || (folded >= 0x80 && folded < 0xC0) ||
         folded == 0xD7 || folded == 0xF7 || (folded >= 0x2000 && folded < 0x2C00);
}

// The place in the order, whatever the marks: punctuation, symbols, digits, Latin letters, other letters.
std::uint32_t PrimaryOf(char32_t folded, Letter letter) noexcept {
  constexpr std::uint32_t punctuation = 0, symbols = 1u << 21, digits = 2u << 21, latin = 3u << 21, others = 4u << 21;
  if (letter.base != 0) folded = static_cast<char32_t>(letter.base);
  if (folded >= 'a' && folded <= 'z') return latin + folded;
  if (folded >= '0' && folded <= '9') return digits + folded;
  if (IsSymbol(folded)) return symbols + folded;
  return (folded < 0x80 ? punctuation : others) + folded;
}

// Hyphens and apostrophes, which join words without separating them in the order.
bool IsJoiner(char32_t folded) noexcept { return folded == '-' || folded == '\''; }

// The next unit that counts at first sight; false at the end.
bool NextSignificant(FoldedReader& reader, char32_t& folded) noexcept {
  while (!reader.AtEnd()) {
    folded = reader.Next();
    if (!IsJoiner(folded)) return true;
  }
  return false;
}

// The next joiner and the count of units before it; false at the end.
bool NextJoiner(FoldedReader& reader, char32_t& folded, std::size_t& place) noexcept {
  while (!reader.AtEnd()) {
    folded = reader.Next();
    ++place;
    if (IsJoiner(folded)) return true;
  }
  return false;
}

int CompareLetters(std::string_view a, std::string_view b) noexcept {
  FoldedReader left(a);
  FoldedReader right(b);
  int marks = 0;
  for (;;) {
    char32_t l = 0;
    char32_t r = 0;
    const bool hasLeft = NextSignificant(left, l);
    const bool hasRight = NextSignificant(right, r);
    if (!hasLeft || !hasRight) return hasLeft ? 1 : hasRight ? -1 : marks;
    if (l == r) continue;
    const Letter leftLetter = LetterOf(l);
    const Letter rightLetter = LetterOf(r);
    const std::uint32_t leftPrimary = PrimaryOf(l, leftLetter);
    const std::uint32_t rightPrimary = PrimaryOf(r, rightLetter);
    if (leftPrimary != rightPrimary) return leftPrimary < rightPrimary ? -1 : 1;
    if (marks == 0) marks = leftLetter.mark < rightLetter.mark ? -1 : 1;
  }
}

// Between texts of the same letters: the one without joiners first, then the one that has them earlier.
int CompareJoiners(std::string_view a, std::string_view b) noexcept {
  FoldedReader left(a);
  FoldedReader right(b);
  std::size_t leftPlace = 0;
  std::size_t rightPlace = 0;
  for (;;) {
    char32_t l = 0;
    char32_t r = 0;
    const bool hasLeft = NextJoiner(left, l, leftPlace);
    const bool hasRight = NextJoiner(right, r, rightPlace);
    if (!hasLeft || !hasRight) return static_cast<int>(hasLeft) - static_cast<int>(hasRight);
    if (leftPlace != rightPlace) return leftPlace < rightPlace ? -1 : 1;
    if (l != r) return l < r ? -1 : 1;
  }
}

}  // namespace

int CompareLanguage(std::string_view a, std::string_view b) noexcept {
  a = TrimRight(a);
  b = TrimRight(b);
  if (const int letters = CompareLetters(a, b); letters != 0) return letters;
  return CompareJoiners(a, b);
}

}  // namespace tsv::text

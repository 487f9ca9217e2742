#include <algorithm>
#include <string>
#include <string_view>

#include "db/jet/Functions.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

using text::FoldedReader;

bool IsAsciiDigit(char32_t unit) noexcept { return unit >= '0' && unit <= '9'; }
bool IsAsciiWord(char32_t unit) noexcept { return IsAsciiDigit(unit) || (unit >= 'a' && unit <= 'z'); }

// Ranges follow the language's order: é lies between a and z.
bool IsAtMost(char32_t a, char32_t b) {
  if (IsAsciiWord(a) && IsAsciiWord(b)) return a <= b;
  std::string left;
  std::string right;
  text::AppendCodePoint(left, a);
  text::AppendCodePoint(right, b);
  return text::CompareLanguage(left, right) <= 0;
}

// Reads a list up to its closing bracket and tells whether the unit is in it. The minus sign is itself at either end,
// the exclamation mark negates in front of something.
bool IsInList(FoldedReader& pattern, char32_t unit) {
  char32_t item = pattern.Next();
  bool negated = false;
  if (item == '!') {
    FoldedReader ahead = pattern;
    if (const char32_t next = ahead.Next(); next != ']') {
      negated = true;
      pattern = ahead;
      item = next;
    }
  }
  bool found = false;
  while (item != ']') {
    char32_t next = pattern.Next();
    if (next == '-') {
      FoldedReader ahead = pattern;
      if (const char32_t last = ahead.Next(); last != ']') {
        pattern = ahead;
        if (!IsAtMost(item, last)) Raise(RuntimeError::InvalidPattern);
        found = found || (IsAtMost(item, unit) && IsAtMost(unit, last));
        item = pattern.Next();
        continue;
      }
    }
    found = found || unit == item;
    item = next;
  }
  return found != negated;
}

bool IsWildcard(char c) noexcept { return c == '*' || c == '?' || c == '#' || c == '['; }

void RequireClosedLists(std::string_view pattern) {
  for (std::size_t open = pattern.find('['); open != std::string_view::npos;) {
    const std::size_t close = pattern.find(']', open);
    if (close == std::string_view::npos) Raise(RuntimeError::InvalidPattern);
    open = pattern.find('[', close);
  }
}

// Takes one element of the pattern, which is no star, and what it matches of the text.
bool MatchOne(FoldedReader& pattern, FoldedReader& text) {
  const char32_t element = pattern.Next();
  const char32_t unit = text.Next();
  switch (element) {
    case '?':
      text.FinishCharacter();
      return true;
    case '#':
      return IsAsciiDigit(unit);
    case '[':
      return IsInList(pattern, unit);
    default:
      return element == unit;
  }
}

}  // namespace

// A failed match after a star goes on one character further; an earlier star need not be tried again.
bool Like(std::string_view text, std::string_view pattern) {
  RequireClosedLists(pattern);
  FoldedReader left(text);
  FoldedReader right(pattern);
  FoldedReader textAfterStar("");
  FoldedReader patternAfterStar("");
  bool starred = false;
  for (;;) {
    if (!right.AtEnd()) {
      FoldedReader afterElement = right;
      if (afterElement.Next() == '*') {
        right = patternAfterStar = afterElement;
        textAfterStar = left;
        starred = true;
        continue;
      }
      if (!left.AtEnd() && MatchOne(right, left)) continue;
    } else if (left.AtEnd()) {
      return true;
    }
    if (!starred || textAfterStar.AtEnd()) return false;
    textAfterStar.Next();
    left = textAfterStar;
    right = patternAfterStar;
  }
}

bool LikePrefix(std::string_view text, std::string_view prefix) {
  if (std::none_of(prefix.begin(), prefix.end(), IsWildcard)) return text::BeginsWithFolded(text, prefix);
  return Like(text, std::string(prefix) + '*');
}

}  // namespace tsv::db::jet

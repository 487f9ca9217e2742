#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "types/Variant.h"

namespace tsv::db::jet {

// What stands before a place in a statement, as far as it tells whether a literal begins there.
struct Before {
  bool operand = false;  // something that an operator follows: a minus sign is that operator
  bool name = false;     // a point leads to a part of it
  bool sign = false;     // a minus sign that stays apart: no number follows it but the base of a power
};

// What kinds of literals a shape tells apart.
enum class LiteralKind : char { None = 0, Text = 'T', Date = '#', Long = 'L', Currency = 'C', Double = 'D' };

// Whether a literal may begin with the character: only where ReadLiteral finds none there is another token.
constexpr bool MayBeginLiteral(char c) noexcept {
  return c == '\'' || c == '"' || c == '#' || c == '-' || c == '.' || (c >= '0' && c <= '9');
}

// Reads the literal that begins at the place, which must be inside the text, into the last of the literals and moves
// behind it; None, and nothing changed, where there is none. A minus sign that cannot be binary joins the number after
// it. Raises 3075 for an unclosed text or date.
LiteralKind ReadLiteral(std::string_view sql, std::size_t& at, Before before, std::vector<Variant>& literals);

}  // namespace tsv::db::jet

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "types/Variant.h"

namespace tsv::db::jet {

enum class TokenKind : std::uint8_t { Name, Bracketed, Literal, Operator, End };

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;      // of a bracketed name without the brackets; points into the statement
  std::uint32_t literal = 0;  // for Literal: its place in Lexed::literals
};

// A statement as the compiler and the template cache see it: its shape, and the values written into it.
struct Lexed {
  std::vector<Token> tokens;      // ends with End
  std::vector<Variant> literals;  // Long, Currency (a number with up to four decimals), Double, Date or text
  std::string shape;              // equal for two texts that differ in the values of literals only
};

// Reads sql into lexed, which keeps its buffers between calls. A minus sign that cannot be binary joins the number
// after it, so that a statement has one shape for both signs. Raises 3075 for an unclosed text, name or date.
void Lex(std::string_view sql, Lexed& lexed);

// Whether sql has the shape of a statement read before, and if so its literals: the same as Lex finds, without looking
// at what is known.
bool HasShape(std::string_view sql, std::string_view shape, std::vector<Variant>& literals);

// The beginning that all texts of one shape, and the shape itself, have in common: at most up to the first literal.
std::string_view HeadOf(std::string_view sqlOrShape) noexcept;

}  // namespace tsv::db::jet

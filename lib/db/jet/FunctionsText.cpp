#include <algorithm>
#include <array>
#include <string_view>

#include "db/jet/FunctionTables.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

// More than any column holds; a longer text can only be a mistake that would exhaust the memory.
constexpr std::size_t kLongestText = 1'000'000;

enum Comparison : std::int32_t { Binary = 0, Textual = 1, OfDatabase = 2 };

Comparison ComparisonAt(Arguments arguments, std::size_t place) {
  const std::int32_t comparison = LongAt(arguments, place, OfDatabase);
  Require(comparison >= Binary && comparison <= OfDatabase);
  return static_cast<Comparison>(comparison);
}

// The bytes that the first characters take, all of them when there are fewer.
std::size_t BytesOf(std::string_view text, std::int32_t characters) {
  std::size_t offset = 0;
  for (; characters > 0 && offset < text.size(); --characters) text::NextCodePoint(text, offset);
  return offset;
}

std::int32_t LengthOf(std::string_view text) { return static_cast<std::int32_t>(text::Length(text)); }

std::string Repeated(std::string_view piece, std::int32_t count) {
  Require(count >= 0);
  const auto times = static_cast<std::size_t>(count);
  if (times * piece.size() > kLongestText) Raise(RuntimeError::OutOfMemory);
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// The characters of the Windows code page between 128 and 159, where it is not Latin-1; 0 where it has none.
constexpr std::array<char32_t, 32> kWindowsCharacters{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::string CharacterOf(std::int32_t code) {
  Require(code >= 0 && code <= 255);
  char32_t character = static_cast<char32_t>(code);
  if (code >= 128 && code < 160) {
    const char32_t mapped = kWindowsCharacters[static_cast<std::size_t>(code - 128)];
    if (mapped != 0) character = mapped;
  }
  std::string text;
  text::AppendCodePoint(text, character);
  return text;
}

std::int32_t CodeOf(char32_t character) {
  constexpr std::int32_t unknown = '?';
  const auto mapped = std::find(kWindowsCharacters.begin(), kWindowsCharacters.end(), character);
  if (character != 0 && mapped != kWindowsCharacters.end()) {
    return static_cast<std::int32_t>(128 + (mapped - kWindowsCharacters.begin()));
  }
  return character < 256 ? static_cast<std::int32_t>(character) : unknown;
}

Variant Len(Arguments a) { return LengthOf(TextAt(a, 0)); }

Variant Left(Arguments a) {
  Require(LongAt(a, 1) >= 0);
  return TextAt(a, 0).substr(0, BytesOf(TextAt(a, 0), LongAt(a, 1)));
}

Variant Right(Arguments a) {
  Require(LongAt(a, 1) >= 0);
  return TextAt(a, 0).substr(BytesOf(TextAt(a, 0), LengthOf(TextAt(a, 0)) - LongAt(a, 1)));
}

Variant Mid(Arguments a) {
  Require(LongAt(a, 1) >= 1 && LongAt(a, 2) >= 0);
  std::string rest = TextAt(a, 0).substr(BytesOf(TextAt(a, 0), LongAt(a, 1) - 1));
  if (a.size() > 2) rest.resize(BytesOf(rest, LongAt(a, 2)));
  return rest;
}

// InStr([start,] text, sought [, comparison]): three arguments begin with the start.
Variant InStr(Arguments a) {
  const bool hasStart = a.size() > 2;
  const std::int32_t start = hasStart ? LongAt(a, 0) : 1;
  Require(start >= 1);
  std::string text = TextAt(a, hasStart ? 1 : 0);
  std::string sought = TextAt(a, hasStart ? 2 : 1);
  if (ComparisonAt(a, 3) != Binary) {
    text = text::Lower(text);
    sought = text::Lower(sought);
  }
  if (text.empty() || start > LengthOf(text)) return 0;
  const std::size_t found = text.find(sought, BytesOf(text, start - 1));
  return found == std::string::npos ? 0 : LengthOf(std::string_view(text).substr(0, found)) + 1;
}

// Lower case keeps the length of every character, so that places in the lower text are places in the text itself.
Variant Replace(Arguments a) {
  const std::int32_t start = LongAt(a, 3, 1);
  std::int32_t count = LongAt(a, 4, -1);
  Require(start >= 1 && count >= -1);
  const std::string text = TextAt(a, 0).substr(BytesOf(TextAt(a, 0), start - 1));
  const bool binary = ComparisonAt(a, 5) == Binary;
  const std::string searched = binary ? text : text::Lower(text);
  const std::string sought = binary ? TextAt(a, 1) : text::Lower(TextAt(a, 1));
  if (sought.empty()) return text;
  std::string replaced;
  std::size_t from = 0;
  for (; count != 0; --count) {
    const std::size_t found = searched.find(sought, from);
    if (found == std::string::npos) break;
    replaced.append(text, from, found - from).append(TextAt(a, 2));
    if (replaced.size() > kLongestText) Raise(RuntimeError::OutOfMemory);
    from = found + sought.size();
  }
  return replaced.append(text, from);
}

Variant UCase(Arguments a) { return text::Upper(TextAt(a, 0)); }
Variant LCase(Arguments a) { return text::Lower(TextAt(a, 0)); }
Variant Trim(Arguments a) { return std::string(text::Trim(TextAt(a, 0))); }
Variant LTrim(Arguments a) { return std::string(text::TrimLeft(TextAt(a, 0))); }
Variant RTrim(Arguments a) { return std::string(text::TrimRight(TextAt(a, 0))); }
Variant Space(Arguments a) { return Repeated(" ", LongAt(a, 0)); }

// String(count, character or code).
Variant String(Arguments a) {
  if (const auto* text = std::get_if<std::string>(&a[1])) {
    Require(!text->empty());
    return Repeated(std::string_view(*text).substr(0, BytesOf(*text, 1)), LongAt(a, 0));
  }
  return Repeated(CharacterOf(ToLong(a[1]) & 0xFF), LongAt(a, 0));
}

Variant StrReverse(Arguments a) {
  const std::string& text = TextAt(a, 0);
  std::string reversed(text.size(), '\0');
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t first = offset;
    text::NextCodePoint(text, offset);
    text.copy(&reversed[text.size() - offset], offset - first, first);
  }
  return reversed;
}

Variant Chr(Arguments a) { return CharacterOf(LongAt(a, 0)); }

Variant Asc(Arguments a) {
  Require(!TextAt(a, 0).empty());
  std::size_t offset = 0;
  return CodeOf(text::NextCodePoint(TextAt(a, 0), offset));
}

// Unlike the comparison operators, blanks at the end count.
Variant StrComp(Arguments a) {
  const std::string_view left = TextAt(a, 0);
  const std::string_view right = TextAt(a, 1);
  int order = 0;
  if (ComparisonAt(a, 2) == Binary) {
    order = left.compare(right);
  } else {
    order = text::CompareLanguage(left, right);
    const auto blanks = [](std::string_view text) { return text.size() - text::TrimRight(text).size(); };
    if (order == 0)
      order = static_cast<int>(blanks(left) > blanks(right)) - static_cast<int>(blanks(left) < blanks(right));
  }
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace

std::vector<Function> TextFunctions() {
  using enum ArgumentKind;
  constexpr ValueType whole = ValueType::Long;
  constexpr ValueType text = ValueType::Text;
  return {
      {.name = "Len", .arguments = {Text}, .required = 1, .result = whole, .call = Len},
      {.name = "Left", .arguments = {Text, Long}, .required = 2, .result = text, .call = Left},
      {.name = "Right", .arguments = {Text, Long}, .required = 2, .result = text, .call = Right},
      {.name = "Mid", .arguments = {Text, Long, Long}, .required = 2, .result = text, .call = Mid},
      {.name = "InStr", .arguments = {Text, Text, Text, Long}, .required = 2, .result = whole, .call = InStr},
      {.name = "Replace",
       .arguments = {Text, Text, Text, Long, Long, Long},
       .required = 3,
       .result = text,
       .call = Replace},
      {.name = "UCase", .arguments = {Text}, .required = 1, .result = text, .call = UCase},
      {.name = "LCase", .arguments = {Text}, .required = 1, .result = text, .call = LCase},
      {.name = "Trim", .arguments = {Text}, .required = 1, .result = text, .call = Trim},
      {.name = "LTrim", .arguments = {Text}, .required = 1, .result = text, .call = LTrim},
      {.name = "RTrim", .arguments = {Text}, .required = 1, .result = text, .call = RTrim},
      {.name = "Space", .arguments = {Long}, .required = 1, .result = text, .call = Space},
      {.name = "String", .arguments = {Long, Any}, .required = 2, .result = text, .call = String},
      {.name = "StrReverse", .arguments = {Text}, .required = 1, .result = text, .call = StrReverse},
      {.name = "Chr", .arguments = {Long}, .required = 1, .result = text, .call = Chr},
      {.name = "Asc", .arguments = {Text}, .required = 1, .result = whole, .call = Asc},
      {.name = "StrComp", .arguments = {Text, Text, Long}, .required = 2, .result = whole, .call = StrComp},
  };
}

}  // namespace tsv::db::jet

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The kinds of bytes that a statement's text consists of. Bytes beyond ASCII are letters.
namespace tsv::db::jet {

enum class CharacterKind : std::uint8_t { Blank = 1, Digit = 2, NameStart = 4, NamePart = 8 };

constexpr std::array<std::uint8_t, 256> kCharacterKinds = [] {
  using enum CharacterKind;
  std::array<std::uint8_t, 256> kinds{};
  const auto set = [&](std::size_t c, CharacterKind kind) { kinds[c] |= static_cast<std::uint8_t>(kind); };
  for (const char c : {' ', '\t', '\r', '\n'}) set(static_cast<unsigned char>(c), Blank);
  for (std::size_t c = 0; c < kinds.size(); ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
    const bool digit = c >= '0' && c <= '9';
    if (letter) set(c, NameStart);
    if (digit) set(c, Digit);
    if (letter || digit || c == '$') set(c, NamePart);
  }
  return kinds;
}();

constexpr bool Is(char c, CharacterKind kind) noexcept {
  return (kCharacterKinds[static_cast<unsigned char>(c)] & static_cast<std::uint8_t>(kind)) != 0;
}
constexpr bool IsBlank(char c) noexcept { return Is(c, CharacterKind::Blank); }
constexpr bool IsDigit(char c) noexcept { return Is(c, CharacterKind::Digit); }
constexpr bool IsNameStart(char c) noexcept { return Is(c, CharacterKind::NameStart); }
constexpr bool IsNamePart(char c) noexcept { return Is(c, CharacterKind::NamePart); }

}  // namespace tsv::db::jet

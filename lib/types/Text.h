#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// UTF-8 text: lengths count characters (code points), case is that of Unicode's Latin, Greek and Cyrillic letters,
// whatever the machine's locale.
namespace tsv::text {

std::size_t Length(std::string_view text) noexcept;

// Removes leading and trailing blanks, U+0020 only: a tab or a no-break space is part of a value.
std::string_view Trim(std::string_view text) noexcept;
std::string_view TrimLeft(std::string_view text) noexcept;
std::string_view TrimRight(std::string_view text) noexcept;

std::string Upper(std::string_view text);
std::string Lower(std::string_view text);

// The next code point at offset, which moves past it. Bytes that are not UTF-8 count one by one as themselves.
char32_t NextCodePoint(std::string_view text, std::size_t& offset) noexcept;
void AppendCodePoint(std::string& text, char32_t codePoint);
bool IsValidUtf8(std::string_view text) noexcept;

// The database's notion of equal text: case and trailing blanks do not count, accents do, and a ligature equals its
// letters (ß = ss, æ = ae). Negative, zero or positive; the order is that of the folded code points, so that all
// texts with one prefix lie together.
int CompareFolded(std::string_view a, std::string_view b) noexcept;

// Whether text begins with prefix under the same folding (but blanks count).
bool BeginsWithFolded(std::string_view text, std::string_view prefix) noexcept;

// The language's order, for sorting what people read: punctuation, digits, letters; accents decide only between
// texts of the same letters, hyphens and apostrophes only after them. Equal exactly where CompareFolded says so.
int CompareLanguage(std::string_view a, std::string_view b) noexcept;

// Reads a text as that folding sees it, one lower-case code point at a time; a ligature gives its letters one by one.
// A copy remembers a place in the text.
class FoldedReader {
 public:
  explicit FoldedReader(std::string_view text) noexcept : text_(text) {}

  bool AtEnd() const noexcept { return pending_ == 0 && offset_ == text_.size(); }

  char32_t Next() noexcept {
    const auto byte = static_cast<unsigned char>(text_[offset_]);
    if (pending_ == 0 && byte < 0x80) {
      ++offset_;
      return byte >= 'A' && byte <= 'Z' ? byte + 0x20u : byte;
    }
    return NextBeyondAscii();
  }

  // Leaves out the rest of a ligature whose first letter was read.
  void FinishCharacter() noexcept { pending_ = 0; }

 private:
  char32_t NextBeyondAscii() noexcept;

  std::string_view text_;
  std::size_t offset_ = 0;
  char32_t pending_ = 0;  // the second letter of a ligature
};

}  // namespace tsv::text

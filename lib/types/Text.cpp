#include "types/Text.h"

#include <algorithm>
#include <cstring>

namespace tsv::text {
namespace {

constexpr char kBlank = ' ';

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// The code point at offset and its length in bytes, 0 when the bytes there are not UTF-8.
std::size_t Decode(std::string_view text, std::size_t offset, char32_t& codePoint) noexcept {
  const auto lead = static_cast<unsigned char>(text[offset]);
  if (lead < 0x80) {
    codePoint = lead;
    return 1;
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - offset < length) return 0;
  codePoint = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[offset + i])) return 0;
    codePoint = codePoint << 6 | (static_cast<unsigned char>(text[offset + i]) & 0x3Fu);
  }
  constexpr char32_t least[] = {0x80, 0x800, 0x10000};
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint < least[length - 2] || codePoint > 0x10FFFF || surrogate ? 0 : length;
}

// Capitals from first to last, every step-th of them, whose small letters lie distance further on.
struct CaseRange {
  char32_t first;
  char32_t last;
  char32_t step;
  int distance;
};

constexpr CaseRange kCaseRanges[] = {
    {0x41, 0x5A, 1, 32},                                                    // Latin
    {0xC0, 0xD6, 1, 32},   {0xD8, 0xDE, 1, 32},   {0x178, 0x178, 1, -121},  // Latin-1
    {0x100, 0x12E, 2, 1},  {0x132, 0x136, 2, 1},  {0x139, 0x147, 2, 1},     // Latin Extended-A
    {0x14A, 0x176, 2, 1},  {0x179, 0x17D, 2, 1},                            //
    {0x386, 0x386, 1, 38}, {0x388, 0x38A, 1, 37}, {0x38C, 0x38C, 1, 64},    // Greek
    {0x38E, 0x38F, 1, 63}, {0x391, 0x3A1, 1, 32}, {0x3A3, 0x3AB, 1, 32},    //
    {0x400, 0x40F, 1, 80}, {0x410, 0x42F, 1, 32}, {0x460, 0x480, 2, 1},     // Cyrillic
    {0x48A, 0x4BE, 2, 1},  {0x4C0, 0x4C0, 1, 15}, {0x4C1, 0x4CD, 2, 1},     //
    {0x4D0, 0x52E, 2, 1},                                                   //
};

constexpr char32_t kFinalSigma = 0x3C2;  // another small form of the capital sigma
constexpr char32_t kSigma = 0x3C3;

bool Holds(const CaseRange& range, char32_t capital) {
  return capital >= range.first && capital <= range.last && (capital - range.first) % range.step == 0;
}

char32_t Moved(char32_t codePoint, int distance) {
  return static_cast<char32_t>(static_cast<std::int32_t>(codePoint) + distance);
}

char32_t LowerOf(char32_t codePoint) noexcept {
  for (const CaseRange& range : kCaseRanges) {
    if (Holds(range, codePoint)) return Moved(codePoint, range.distance);
  }
  return codePoint;
}

char32_t UpperOf(char32_t codePoint) noexcept {
  if (codePoint == kFinalSigma) return UpperOf(kSigma);
  for (const CaseRange& range : kCaseRanges) {
    if (const char32_t capital = Moved(codePoint, -range.distance); Holds(range, capital)) return capital;
  }
  return codePoint;
}

std::string Mapped(std::string_view text, char32_t (*map)(char32_t) noexcept) {
  std::string mapped;
  mapped.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    char32_t codePoint = 0;
    if (const std::size_t length = Decode(text, offset, codePoint); length != 0) {
      AppendCodePoint(mapped, map(codePoint));
      offset += length;
    } else {
      mapped += text[offset++];
    }
  }
  return mapped;
}

bool IsAscii(char byte) noexcept { return static_cast<unsigned char>(byte) < 0x80; }

char FoldedAscii(char byte) noexcept {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

// The length of the common beginning, in which bytes differ in the case of ASCII letters only.
std::size_t CommonLength(std::string_view a, std::string_view b) noexcept {
  const std::size_t most = std::min(a.size(), b.size());
  constexpr std::size_t word = 8;
  std::size_t i = 0;
  while (i + word <= most && std::memcmp(a.data() + i, b.data() + i, word) == 0) i += word;
  while (i < most && (a[i] == b[i] || FoldedAscii(a[i]) == FoldedAscii(b[i]))) ++i;
  return i;
}

// Whether the bytes around the end of the common beginning tell all: no character beyond ASCII lies across it.
bool DiffersInAscii(std::string_view a, std::string_view b, std::size_t common) noexcept {
  return (common == 0 || IsAscii(a[common - 1])) &&
         (common == a.size() || common == b.size() || (IsAscii(a[common]) && IsAscii(b[common])));
}

// Where two texts with equal folding before offset can be decoded from: just behind the last ASCII byte.
std::size_t DecodableBefore(std::string_view text, std::size_t offset) noexcept {
  while (offset > 0 && !IsAscii(text[offset - 1])) --offset;
  return offset;
}

int CompareBeyondAscii(std::string_view a, std::string_view b) noexcept {
  FoldedReader left(a);
  FoldedReader right(b);
  while (!left.AtEnd() && !right.AtEnd()) {
    const char32_t l = left.Next();
    const char32_t r = right.Next();
    if (l != r) return l < r ? -1 : 1;
  }
  return static_cast<int>(right.AtEnd()) - static_cast<int>(left.AtEnd());
}

bool BeginsWithBeyondAscii(std::string_view text, std::string_view prefix) noexcept {
  FoldedReader whole(text);
  FoldedReader begin(prefix);
  while (!begin.AtEnd()) {
    if (whole.AtEnd() || whole.Next() != begin.Next()) return false;
  }
  return true;
}

}  // namespace

std::size_t Length(std::string_view text) noexcept {
  std::size_t length = 0;
  for (std::size_t offset = 0; offset < text.size(); ++length) NextCodePoint(text, offset);
  return length;
}

std::string_view Trim(std::string_view text) noexcept { return TrimLeft(TrimRight(text)); }

std::string_view TrimLeft(std::string_view text) noexcept {
  return text.substr(std::min(text.find_first_not_of(kBlank), text.size()));
}

std::string_view TrimRight(std::string_view text) noexcept { return text.substr(0, text.find_last_not_of(kBlank) + 1); }

std::string Upper(std::string_view text) { return Mapped(text, UpperOf); }

std::string Lower(std::string_view text) { return Mapped(text, LowerOf); }

char32_t NextCodePoint(std::string_view text, std::size_t& offset) noexcept {
  char32_t codePoint = 0;
  if (const std::size_t length = Decode(text, offset, codePoint); length != 0) {
    offset += length;
    return codePoint;
  }
  return static_cast<unsigned char>(text[offset++]);
}

void AppendCodePoint(std::string& text, char32_t codePoint) {
  const auto continuation = [codePoint](int shift) { return static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += {static_cast<char>(0xC0 | codePoint >> 6), continuation(0)};
  } else if (codePoint < 0x10000) {
    text += {static_cast<char>(0xE0 | codePoint >> 12), continuation(6), continuation(0)};
  } else {
    text += {static_cast<char>(0xF0 | codePoint >> 18), continuation(12), continuation(6), continuation(0)};
  }
}

bool IsValidUtf8(std::string_view text) noexcept {
  char32_t codePoint = 0;
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t length = Decode(text, offset, codePoint);
    if (length == 0) return false;
    offset += length;
  }
  return true;
}

// Equal bytes are equal text, and most of what a ledger holds is ASCII: only a difference beyond it needs decoding.
int CompareFolded(std::string_view a, std::string_view b) noexcept {
  a = TrimRight(a);
  b = TrimRight(b);
  const std::size_t common = CommonLength(a, b);
  if (common == a.size() && common == b.size()) return 0;
  if (!DiffersInAscii(a, b, common)) {
    const std::size_t from = DecodableBefore(a, common);
    return CompareBeyondAscii(a.substr(from), b.substr(from));
  }
  if (common == a.size()) return -1;
  if (common == b.size()) return 1;
  return FoldedAscii(a[common]) < FoldedAscii(b[common]) ? -1 : 1;
}

bool BeginsWithFolded(std::string_view text, std::string_view prefix) noexcept {
  const std::size_t common = CommonLength(text, prefix);
  if (DiffersInAscii(text, prefix, common)) return common == prefix.size();
  const std::size_t from = DecodableBefore(prefix, common);
  return BeginsWithBeyondAscii(text.substr(from), prefix.substr(from));
}

char32_t FoldedReader::NextBeyondAscii() noexcept {
  if (pending_ != 0) {
    const char32_t second = pending_;
    pending_ = 0;
    return second;
  }
  const char32_t codePoint = LowerOf(NextCodePoint(text_, offset_));
  switch (codePoint) {
    case 0xDF:  // ß
      pending_ = 's';
      return 's';
    case 0xE6:  // æ
      pending_ = 'e';
      return 'a';
    case 0x133:  // ĳ
      pending_ = 'j';
      return 'i';
    case 0x153:  // œ
      pending_ = 'e';
      return 'o';
    case kFinalSigma:
      return kSigma;
    default:
      return codePoint;
  }
}

}  // namespace tsv::text

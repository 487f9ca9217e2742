#include "db/postgres/SqlAlphabet.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

#include "types/Text.h"

namespace tsv::db::postgres {
namespace {

constexpr char32_t kFirstBeyondAscii = 0x80;
constexpr char32_t kEndOfPlane = 0xFFFF;  // no character itself; what lies further on has neither case nor variants
constexpr Run kFurtherPlanes = {0x10000, 0x10FFFF};

std::string Character(char32_t codePoint) {
  std::string text;
  text::AppendCodePoint(text, codePoint);
  return text;
}

bool IsBefore(const std::string& a, const std::string& b) { return text::CompareLanguage(a, b) < 0; }
bool IsBeforeFigures(const std::string& character) { return IsBefore(character, "0"); }
bool IsAfterLatin(const std::string& character) { return IsBefore("zz", character); }

bool IsSurrogate(char32_t codePoint) { return codePoint >= 0xD800 && codePoint <= 0xDFFF; }

bool IsFolded(const std::string& character) {
  text::FoldedReader reader(character);
  std::size_t offset = 0;
  return reader.Next() == text::NextCodePoint(character, offset) && reader.AtEnd();
}

// The folded characters from begin to end that are of the kind, one by one.
template <typename Kind>
std::vector<std::string> Characters(char32_t begin, char32_t end, Kind isOfKind) {
  std::vector<std::string> found;
  for (char32_t codePoint = begin; codePoint < end; ++codePoint) {
    const std::string character = Character(codePoint);
    if (!IsSurrogate(codePoint) && isOfKind(character) && IsFolded(character)) found.push_back(character);
  }
  return found;
}

bool IsLatin(const std::string& character) { return !IsBeforeFigures(character) && !IsAfterLatin(character); }

std::vector<Run> RunsBeyondAscii(bool (*isOfKind)(const std::string& character)) {
  std::vector<Run> runs;
  for (char32_t codePoint = kFirstBeyondAscii; codePoint < kEndOfPlane; ++codePoint) {
    if (IsSurrogate(codePoint) || !isOfKind(Character(codePoint))) continue;
    if (runs.empty() || runs.back().last + 1 != codePoint) runs.push_back({codePoint, codePoint});
    runs.back().last = codePoint;
  }
  return runs;
}

void AppendSorted(std::vector<Run>& order, std::vector<std::string> characters) {
  std::sort(characters.begin(), characters.end(), IsBefore);
  for (const std::string& character : characters) {
    std::size_t offset = 0;
    const char32_t codePoint = text::NextCodePoint(character, offset);
    order.push_back({codePoint, codePoint});
  }
}

}  // namespace

Variants FindVariants() {
  std::map<char, std::vector<std::string>> lettersOf;
  const auto bases = Characters(1, kFirstBeyondAscii, IsLatin);
  for (const std::string& letter : Characters(kFirstBeyondAscii, kEndOfPlane, IsLatin)) {
    const auto isBase = [&](const std::string& base) {
      return IsBefore(letter + "a", base + "z") && IsBefore(base + "a", letter + "z");
    };
    const auto base = std::find_if(bases.begin(), bases.end(), isBase);
    if (base != bases.end()) lettersOf[base->front()].push_back(letter);
  }
  Variants variants;
  for (auto& [base, letters] : lettersOf) {
    std::sort(letters.begin(), letters.end(), IsBefore);
    char32_t mark = kFirstBeyondAscii;
    for (const std::string& letter : letters) {
      variants.letters += letter;
      variants.bases += base;
      text::AppendCodePoint(variants.marks, mark++);
    }
  }
  return variants;
}

std::vector<Run> SymbolsBeyondAscii() { return RunsBeyondAscii(IsBeforeFigures); }

std::vector<Run> LanguageOrder() {
  std::vector<Run> order;
  AppendSorted(order, Characters(1, kFirstBeyondAscii, IsBeforeFigures));
  for (const Run& run : SymbolsBeyondAscii()) order.push_back(run);
  AppendSorted(order, Characters(1, kEndOfPlane, IsLatin));
  AppendSorted(order, Characters(1, kFirstBeyondAscii, IsAfterLatin));
  for (const Run& run : RunsBeyondAscii(IsAfterLatin)) order.push_back(run);
  order.push_back(kFurtherPlanes);
  return order;
}

std::string Ligatures() {
  std::string ligatures;
  for (char32_t codePoint = kFirstBeyondAscii; codePoint < kEndOfPlane; ++codePoint) {
    if (IsSurrogate(codePoint)) continue;
    const std::string character = Character(codePoint);
    text::FoldedReader reader(character);
    reader.Next();
    if (!reader.AtEnd()) ligatures += character;
  }
  return ligatures;
}

std::string ClassOf(const std::vector<Run>& runs) {
  std::string members;
  for (const Run& run : runs) {
    std::array<char, 32> range{};
    std::snprintf(range.data(), range.size(), "\\U%08x-\\U%08x", static_cast<unsigned>(run.first),
                  static_cast<unsigned>(run.last));
    members += range.data();
  }
  return members;
}

}  // namespace tsv::db::postgres

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "db/jet/Format.h"

namespace tsv::db::jet {
namespace {

enum class Part { Literal, Integer, Point, Decimal, Exponent };

struct Token {
  Part part = Part::Literal;
  bool required = false;  // a 0, or an exponent that shows a plus sign
  std::string text;       // a literal, or the letter of the exponent
};

// One section of a pattern, read.
struct Section {
  std::vector<Token> tokens;
  std::size_t integers = 0;          // placeholders before the point
  std::size_t requiredIntegers = 0;  // those from the first 0 on
  std::size_t decimals = 0;          // placeholders behind the point
  std::size_t requiredDecimals = 0;  // those up to the last 0
  std::size_t exponentDigits = 0;
  int shift = 0;  // places by which the point moves to the right
  bool hasExponent = false;
  bool grouped = false;
};

std::vector<std::string_view> SplitSections(std::string_view pattern) {
  std::vector<std::string_view> sections;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < pattern.size();) {
    if (pattern[at] == '"' || pattern[at] == '\\') {
      QuotedPart(pattern, at);
    } else if (pattern[at++] == ';') {
      sections.push_back(pattern.substr(begin, at - 1 - begin));
      begin = at;
    }
  }
  sections.push_back(pattern.substr(begin));
  return sections;
}

class SectionReader {
 public:
  explicit SectionReader(std::string_view pattern) : pattern_(pattern) {}

  Section Read() {
    while (at_ < pattern_.size()) ReadToken();
    EndInteger();
    return std::move(section_);
  }

 private:
  void ReadToken() {
    const char c = pattern_[at_];
    if (c == '"' || c == '\\') {
      AddLiteral(QuotedPart(pattern_, at_));
      return;
    }
    ++at_;
    if (c == '0' || c == '#') {
      AddDigit(c == '0');
    } else if (c == '.' && !inDecimals_) {
      EndInteger();
      inDecimals_ = true;
      section_.tokens.push_back({Part::Point, false, {}});
    } else if (c == ',') {
      if (section_.integers > 0 && !inDecimals_) ++commas_;
    } else if ((c == 'E' || c == 'e') && BeginsExponent()) {
      AddExponent(c);
    } else {
      if (c == '%') section_.shift += 2;
      AddLiteral(pattern_.substr(at_ - 1, 1));
    }
  }

  void AddLiteral(std::string_view text) { section_.tokens.push_back({Part::Literal, false, std::string(text)}); }

  void AddDigit(bool required) {
    section_.tokens.push_back({inDecimals_ ? Part::Decimal : Part::Integer, required, {}});
    if (inDecimals_) {
      ++section_.decimals;
      if (required) section_.requiredDecimals = section_.decimals;
      return;
    }
    ++section_.integers;
    if (required || section_.requiredIntegers > 0) ++section_.requiredIntegers;
    section_.grouped = section_.grouped || commas_ > 0;
    commas_ = 0;
  }

  // Commas between digits group them, those behind the last one divide.
  void EndInteger() {
    if (!inDecimals_) section_.shift -= 3 * commas_;
    commas_ = 0;
  }

  bool BeginsExponent() const {
    return !section_.hasExponent && at_ < pattern_.size() && (pattern_[at_] == '+' || pattern_[at_] == '-');
  }

  void AddExponent(char letter) {
    EndInteger();
    inDecimals_ = true;
    section_.hasExponent = true;
    section_.tokens.push_back({Part::Exponent, pattern_[at_++] == '+', std::string(1, letter)});
    for (; at_ < pattern_.size() && (pattern_[at_] == '0' || pattern_[at_] == '#'); ++at_) ++section_.exponentDigits;
  }

  std::string_view pattern_;
  std::size_t at_ = 0;
  Section section_;
  int commas_ = 0;
  bool inDecimals_ = false;
};

// Brings the number to as many integer digits as the pattern has and gives the power of ten that makes up for it.
int Normalize(NumberText& number, const Section& section) {
  int exponent = 0;
  const auto wanted = static_cast<int>(std::max<std::size_t>(section.integers, 1));
  const auto adjust = [&] {
    const std::size_t zeros = number.digits.empty() ? number.decimals.find_first_not_of('0') : 0;
    const int places = wanted - static_cast<int>(number.digits.size()) + static_cast<int>(zeros);
    MovePoint(number, places);
    exponent -= places;
    RoundDecimals(number, section.decimals, Halves::AwayFromZero);
  };
  if (!number.IsZero()) adjust();
  if (static_cast<int>(number.digits.size()) > wanted) adjust();  // 9.99 became 10
  return exponent;
}

class Writer {
 public:
  Writer(const Section& section, NumberText number) : section_(section), number_(std::move(number)) {
    MovePoint(number_, section.shift);
    if (section.hasExponent) {
      exponent_ = Normalize(number_, section);
    } else {
      RoundDecimals(number_, section.decimals, Halves::AwayFromZero);
    }
    isNegative_ = number_.negative && !number_.IsZero();
    std::string& digits = number_.digits;
    if (digits.size() < section.requiredIntegers) digits.insert(0, section.requiredIntegers - digits.size(), '0');
    number_.decimals.resize(section.decimals, '0');
    shownDecimals_ = std::max(section.requiredDecimals, number_.decimals.find_last_not_of('0') + 1);
  }

  std::string Write(bool withSign) {
    if (withSign && isNegative_) text_ += '-';
    for (const Token& token : section_.tokens) WriteToken(token);
    return std::move(text_);
  }

 private:
  void WriteToken(const Token& token) {
    switch (token.part) {
      case Part::Literal:
        text_ += token.text;
        break;
      case Part::Integer:
        WriteDigitsDownTo(section_.integers - ++integersSeen_);
        break;
      case Part::Point:
        if (section_.integers == 0) WriteDigitsDownTo(0);
        text_ += '.';
        break;
      case Part::Decimal:
        if (decimalsSeen_ < shownDecimals_) text_ += number_.decimals[decimalsSeen_];
        ++decimalsSeen_;
        break;
      case Part::Exponent:
        WriteExponent(token);
        break;
    }
  }

  // The digits not yet written up to the one with so many behind it: the first placeholder takes all that overflow.
  void WriteDigitsDownTo(std::size_t behind) {
    const std::string& digits = number_.digits;
    for (; digitsWritten_ + behind < digits.size(); ++digitsWritten_) {
      text_ += digits[digitsWritten_];
      const std::size_t rest = digits.size() - 1 - digitsWritten_;
      if (section_.grouped && rest > 0 && rest % 3 == 0) text_ += ',';
    }
  }

  void WriteExponent(const Token& token) {
    text_ += token.text;
    if (exponent_ < 0) {
      text_ += '-';
    } else if (token.required) {
      text_ += '+';
    }
    const std::string digits = std::to_string(std::abs(exponent_));
    if (digits.size() < section_.exponentDigits) text_.append(section_.exponentDigits - digits.size(), '0');
    text_ += digits;
  }

  const Section& section_;
  NumberText number_;
  bool isNegative_ = false;
  int exponent_ = 0;
  std::size_t shownDecimals_ = 0;
  std::size_t integersSeen_ = 0;
  std::size_t decimalsSeen_ = 0;
  std::size_t digitsWritten_ = 0;
  std::string text_;
};

}  // namespace

std::string FormatNumber(const NumberText& number, std::string_view pattern) {
  const std::vector<std::string_view> sections = SplitSections(pattern);
  const auto has = [&](std::size_t place) { return place < sections.size() && !sections[place].empty(); };
  const bool isZero = number.IsZero();
  const std::size_t chosen = isZero && has(2) ? 2 : number.negative && !isZero && has(1) ? 1 : 0;
  const Section section = SectionReader(sections[chosen]).Read();
  return Writer(section, number).Write(chosen == 0);
}

std::string_view QuotedPart(std::string_view pattern, std::size_t& offset) {
  const std::size_t begin = offset + 1;
  if (pattern[offset] == '\\') {
    offset = std::min(begin + 1, pattern.size());
    return pattern.substr(begin, offset - begin);
  }
  const std::size_t end = std::min(pattern.find('"', begin), pattern.size());
  offset = std::min(end + 1, pattern.size());
  return pattern.substr(begin, end - begin);
}

}  // namespace tsv::db::jet

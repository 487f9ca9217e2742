#pragma once

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "db/jet/Functions.h"
#include "types/Text.h"

namespace tsv::test {

// Random values of the kinds that functions take, full of what decides: halves, extremes, marks, formats.
class Chance {
 public:
  using Kind = db::jet::ArgumentKind;

  explicit Chance(unsigned seed) : engine_(seed) {}

  std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(engine_); }

  template <typename Choices>
  auto Of(const Choices& choices) {
    return choices[Below(std::size(choices))];
  }

  // Mostly alike, so that what differs is what decides.
  std::string Text(std::size_t longest) {
    static constexpr std::u32string_view characters =
        U"aaáÁàÃAbBcçÇ eEéêiIoóõsSzZ  --''..,;:/+<=_~*?#[]!0129²ªßæÆŒĳÿŸñΣσςжЖ§×€—\x01\x02\x7F\xA0語\U0001F600";
    std::string text;
    for (std::size_t left = Below(longest + 1); left > 0; --left) text::AppendCodePoint(text, Of(characters));
    return text;
  }

  std::string NumberText() {
    static constexpr std::string_view pieces[] = {"1", "0", "25", "345", "999", ".", ".",
                                                  ",", "-", "+",  "e",   "E-",  " "};
    std::string text;
    for (std::size_t left = Below(6); left > 0; --left) text += Of(pieces);
    return text;
  }

  double Number() {
    static constexpr double scales[] = {1e-8, 1e-5, 1e-4, 0.005, 0.5, 1, 1, 1000, 1e5, 1e9, 1e14, 1e17, 1e200};
    const auto magnitude = static_cast<double>(Below(20001)) - 10000;
    return Below(4) == 0 ? magnitude / 3 * Of(scales) : magnitude * Of(scales);
  }

  std::int32_t Whole() {
    static constexpr std::int32_t extremes[] = {INT32_MIN, INT32_MAX, -1, 0, 255, 256, 32768};
    return Below(5) == 0 ? Of(extremes) : static_cast<std::int32_t>(Below(16)) - 3;
  }

  Currency Amount() {
    const auto units = static_cast<std::int64_t>(engine_());
    static constexpr std::int64_t parts[] = {1, 3, 10'000'000, 100'000'000'000};
    return Currency::FromTenThousandths((units << 32 | static_cast<std::int64_t>(engine_())) / Of(parts));
  }

  Date Moment() {
    const auto near = static_cast<std::int64_t>(Below(2000)) - 1000;
    const auto far = static_cast<std::int64_t>(Below(3'615'900)) - 657'434;
    return Date::FromDay(Below(2) == 0 ? near : far, Below(3) == 0 ? 0 : static_cast<int>(Below(86'400)));
  }

  Variant Value(Kind kind) {
    if (Below(60) == 0) return Null{};
    switch (kind) {
      case Kind::Boolean:
        return Below(2) == 0;
      case Kind::Long:
        return Whole();
      case Kind::Currency:
        return Amount();
      case Kind::Double:
        return Number();
      case Kind::Date:
        return Moment();
      case Kind::Text:
        return SpecialText();
      case Kind::Any:
        break;
    }
    static constexpr Kind kinds[] = {Kind::Boolean, Kind::Long, Kind::Currency, Kind::Double, Kind::Date, Kind::Text};
    return Value(Of(kinds));
  }

 private:
  // Intervals, patterns and names of formats, numbers, dates, or any text.
  std::string SpecialText() {
    static constexpr std::string_view special =
        R"(yyyy|Q|m|y|d|w|ww|h|n|s|x|true| FALSE |General Date|Long Date|Medium Time|Yes/No|Standard|percent|Scientific|)"
        R"(#,##0.00;(0.0#);"z;"|0.###E-00|##00.0E+0 x|#,,|.##%|"a\"#.0\%|<|>|dd/mm/yyyy hh:mm:ss|hh:mm a/p ddddd ttttt|)"
        R"("d"dddd \m mmm-yy q w ww y|c AMPM nn|31/12/99 7:05|2008-02-29T23:59:59|29/2/2007|)";
    const std::size_t begin = special.rfind('|', Below(special.size() - 1));
    const std::string_view chosen = special.substr(begin + 1);
    return Below(2) == 0 ? NumberText() : Below(4) == 0 ? Text(6) : std::string(chosen.substr(0, chosen.find('|')));
  }

  std::mt19937 engine_;
};

}  // namespace tsv::test

#include "types/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "types/Erro.h"
#include "types/Text.h"

namespace tsv {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

void RemoveLeadingZeros(std::string& digits) {
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
}

// Digits in groups of three behind points, as in 1.234.567; "0.250" is no grouping, nobody groups a leading zero.
bool IsGrouped(std::string_view integer) {
  std::size_t point = integer.find('.');
  if (point == 0 || point > 3 || integer[0] == '0') return false;
  while (point != std::string_view::npos) {
    const std::size_t next = integer.find('.', point + 1);
    if (std::min(next, integer.size()) - point != 4) return false;
    point = next;
  }
  return true;
}

NumberText FromScientific(bool negative, std::string_view written) {
  const std::size_t e = written.find('e');
  NumberText number{negative, std::string(1, written[0]), {}};
  if (e > 2) number.decimals = written.substr(2, e - 2);
  number.decimals.erase(number.decimals.find_last_not_of('0') + 1);
  int exponent = 0;
  std::from_chars(written.data() + e + 2, written.data() + written.size(), exponent);
  MovePoint(number, written[e + 1] == '-' ? -exponent : exponent);
  return number;
}

void AddOne(NumberText& number) {
  for (std::string* part : {&number.decimals, &number.digits}) {
    for (auto digit = part->rbegin(); digit != part->rend(); ++digit) {
      if (*digit != '9') {
        ++*digit;
        return;
      }
      *digit = '0';
    }
  }
  number.digits.insert(number.digits.begin(), '1');
}

}  // namespace

bool NumberText::IsZero() const noexcept {
  return digits.empty() && decimals.find_first_not_of('0') == std::string::npos;
}

std::optional<NumberText> ReadNumber(std::string_view text) {
  text = text::Trim(text);
  NumberText number;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    number.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  const std::size_t comma = text.find(',');
  std::string_view integer = text.substr(0, comma);
  std::string_view decimals = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  if (const std::size_t point = integer.find('.'); point != std::string_view::npos && !IsGrouped(integer)) {
    if (comma != std::string_view::npos) return std::nullopt;
    decimals = integer.substr(point + 1);
    integer = integer.substr(0, point);
  }
  for (char c : integer) {
    if (IsDigit(c)) {
      number.digits += c;
    } else if (c != '.') {
      return std::nullopt;
    }
  }
  if (!std::all_of(decimals.begin(), decimals.end(), IsDigit)) return std::nullopt;
  if (number.digits.empty() && decimals.empty()) return std::nullopt;
  RemoveLeadingZeros(number.digits);
  number.decimals = decimals;
  return number;
}

NumberText DigitsOf(double value, int significant) {
  if (!std::isfinite(value)) Raise(RuntimeError::Overflow);
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific, significant - 1)
          .ptr;
  return FromScientific(std::signbit(value), {buffer, static_cast<std::size_t>(end - buffer)});
}

NumberText ShortestDigits(double value) {
  if (!std::isfinite(value)) Raise(RuntimeError::Overflow);
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific).ptr;
  return FromScientific(std::signbit(value), {buffer, static_cast<std::size_t>(end - buffer)});
}

void RoundDecimals(NumberText& number, std::size_t places, Halves halves) {
  if (number.decimals.size() <= places) return;
  const std::string rest = number.decimals.substr(places);
  number.decimals.resize(places);
  if (rest[0] < '5') return;
  const bool half = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
  const std::string& last = places > 0 ? number.decimals : number.digits;
  const bool even = last.empty() || (last.back() - '0') % 2 == 0;
  if (!(half && halves == Halves::ToEven && even)) AddOne(number);
}

void MovePoint(NumberText& number, int places) {
  std::string& from = places > 0 ? number.decimals : number.digits;
  const auto count = static_cast<std::size_t>(std::abs(places));
  const std::string padding(count - std::min(count, from.size()), '0');
  if (places > 0) {
    from += padding;
    number.digits.append(from, 0, count);
    from.erase(0, count);
  } else {
    from.insert(0, padding);
    number.decimals.insert(0, from, from.size() - count);
    from.resize(from.size() - count);
  }
  RemoveLeadingZeros(number.digits);
}

double ToDouble(const NumberText& number) {
  const std::string text = "0" + number.digits + "." + number.decimals + "0";
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (result.ec == std::errc::result_out_of_range && !number.digits.empty()) Raise(RuntimeError::Overflow);
  return number.negative ? -value : value;
}

}  // namespace tsv

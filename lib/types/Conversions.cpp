#include "types/Conversions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "types/Erro.h"
#include "types/Text.h"

namespace tsv {
namespace {

template <typename... Readers>
struct Overloaded : Readers... {
  using Readers::operator()...;
};
template <typename... Readers>
Overloaded(Readers...) -> Overloaded<Readers...>;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Digits in groups of three behind points, as in 1.234.567; "0.250" is no grouping, nobody groups a leading zero.
bool IsGrouped(std::string_view integer) {
  std::size_t point = integer.find('.');
  if (point == 0 || point > 3 || integer[0] == '0') return false;
  for (; point != std::string_view::npos; point = integer.find('.', point + 1)) {
    const std::size_t next = std::min(integer.find('.', point + 1), integer.size());
    if (next - point != 4) return false;
  }
  return true;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

// Text with a decimal comma: fixed while its digits fit behind the point, otherwise with an exponent.
std::string DoubleToText(double value) {
  constexpr int kDigits = 15;
  if (value == 0) return "0";
  if (!std::isfinite(value)) Raise(RuntimeError::Overflow);
  char buffer[32];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific, kDigits - 1).ptr;
  const std::string_view written(buffer, static_cast<std::size_t>(end - buffer));
  const std::size_t e = written.find('e');
  std::string digits = std::string(1, written[0]).append(written.substr(2, e - 2));
  digits.erase(digits.find_last_not_of('0') + 1);
  int exponent = 0;
  std::from_chars(written.data() + e + 2, end, exponent);
  if (written[e + 1] == '-') exponent = -exponent;

  const int count = static_cast<int>(digits.size());
  std::string text = value < 0 ? "-" : "";
  if (exponent >= kDigits || count - 1 - exponent > kDigits) {
    text += digits[0];
    if (count > 1) text.append(",").append(digits, 1);
    text.append(exponent < 0 ? "E-" : "E+").append(std::abs(exponent) < 10 ? "0" : "");
    return text.append(std::to_string(std::abs(exponent)));
  }
  if (exponent < 0) {
    return text.append("0,").append(static_cast<std::size_t>(-exponent - 1), '0').append(digits);
  }
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) return text.append(digits).append(whole - digits.size(), '0');
  return text.append(digits, 0, whole).append(",").append(digits, whole);
}

double NumberToDouble(const NumberText& number) {
  const std::string text = "0" + number.digits + "." + number.decimals + "0";
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (result.ec == std::errc::result_out_of_range && !number.digits.empty()) Raise(RuntimeError::Overflow);
  return number.negative ? -value : value;
}

template <typename Integer>
Integer Rounded(double value) {
  const double whole = std::nearbyint(value);
  if (!(whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max())) {
    Raise(RuntimeError::Overflow);
  }
  return static_cast<Integer>(whole);
}

std::int64_t RoundedUnits(Currency value) {
  const std::int64_t units = value.TenThousandths();
  std::int64_t whole = units / Currency::kScale;
  const std::int64_t rest = std::abs(units % Currency::kScale);
  if (rest > Currency::kScale / 2 || (rest == Currency::kScale / 2 && whole % 2 != 0)) whole += units < 0 ? -1 : 1;
  return whole;
}

}  // namespace

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
  number.digits.erase(0, std::min(number.digits.find_first_not_of('0'), number.digits.size()));
  number.decimals = decimals;
  return number;
}

bool IsNumeric(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return ReadNumber(*text).has_value();
  return !IsNull(value) && !std::holds_alternative<Date>(value);
}

bool IsDate(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return Date::FromText(*text).has_value();
  return std::holds_alternative<Date>(value);
}

std::string ToText(const Variant& value) {
  return std::visit(Overloaded{
                        [](Empty) { return std::string(); },
                        [](Null) -> std::string { Raise(RuntimeError::InvalidUseOfNull); },
                        [](bool v) { return std::string(v ? "True" : "False"); },
                        [](std::uint8_t v) { return std::to_string(v); },
                        [](std::int32_t v) { return std::to_string(v); },
                        [](double v) { return DoubleToText(v); },
                        [](Currency v) {
                          std::string text = v.ToText();
                          std::replace(text.begin(), text.end(), '.', ',');
                          return text;
                        },
                        [](Date v) { return v.ToBrazilian(); },
                        [](const std::string& v) { return v; },
                    },
                    value);
}

bool ToBoolean(const Variant& value) {
  if (const auto* v = std::get_if<bool>(&value)) return *v;
  if (const auto* text = std::get_if<std::string>(&value)) {
    const std::string_view trimmed = text::Trim(*text);
    if (EqualsIgnoringCase(trimmed, "true")) return true;
    if (EqualsIgnoringCase(trimmed, "false")) return false;
  }
  return ToDouble(value) != 0;
}

std::uint8_t ToByte(const Variant& value) {
  if (const auto* v = std::get_if<bool>(&value)) return *v ? 255 : 0;
  const std::int32_t whole = ToLong(value);
  if (whole < 0 || whole > 255) Raise(RuntimeError::Overflow);
  return static_cast<std::uint8_t>(whole);
}

std::int32_t ToLong(const Variant& value) {
  if (const auto* v = std::get_if<std::int32_t>(&value)) return *v;
  if (const auto* v = std::get_if<Currency>(&value))
    return Rounded<std::int32_t>(static_cast<double>(RoundedUnits(*v)));
  return Rounded<std::int32_t>(ToDouble(value));
}

double ToDouble(const Variant& value) {
  return std::visit(Overloaded{
                        [](Empty) { return 0.0; },
                        [](Null) -> double { Raise(RuntimeError::InvalidUseOfNull); },
                        [](bool v) { return v ? -1.0 : 0.0; },
                        [](std::uint8_t v) { return static_cast<double>(v); },
                        [](std::int32_t v) { return static_cast<double>(v); },
                        [](double v) { return v; },
                        [](Currency v) { return v.ToDouble(); },
                        [](Date v) { return v.Days(); },
                        [](const std::string& v) {
                          const auto number = ReadNumber(v);
                          if (!number) Raise(RuntimeError::TypeMismatch);
                          return NumberToDouble(*number);
                        },
                    },
                    value);
}

Currency ToCurrency(const Variant& value) {
  if (const auto* v = std::get_if<Currency>(&value)) return *v;
  if (const auto* v = std::get_if<std::int32_t>(&value)) return Currency::FromInteger(*v);
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (const auto amount = Currency::FromText(*text)) return *amount;
    Raise(RuntimeError::TypeMismatch);
  }
  return Currency::FromDouble(ToDouble(value));
}

Date ToDate(const Variant& value) {
  if (const auto* v = std::get_if<Date>(&value)) return *v;
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (const auto date = Date::FromText(*text)) return *date;
  }
  constexpr double firstDay = -657'434;
  constexpr double dayAfterLast = 2'958'466;
  const double days = ToDouble(value);
  if (!(days > firstDay - 1 && days < dayAfterLast)) Raise(RuntimeError::Overflow);
  return Date(days);
}

}  // namespace tsv

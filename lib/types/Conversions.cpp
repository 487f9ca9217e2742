#include "types/Conversions.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

// Text with a decimal comma: fixed while its digits fit beside the comma, otherwise with an exponent.
std::string DoubleToText(double value) {
  constexpr int significant = 15;
  const NumberText number = DigitsOf(value, significant);
  std::string text = number.negative && !number.IsZero() ? "-" : "";
  if (number.digits.size() <= significant && number.decimals.size() <= significant) {
    text += number.digits.empty() ? "0" : number.digits;
    return number.decimals.empty() ? text : text.append(",").append(number.decimals);
  }
  std::string digits = number.digits + number.decimals;
  const std::size_t first = digits.find_first_not_of('0');
  const int exponent = static_cast<int>(number.digits.size()) - 1 - static_cast<int>(first);
  digits = digits.substr(first, digits.find_last_not_of('0') + 1 - first);
  text += digits[0];
  if (digits.size() > 1) text.append(",").append(digits, 1);
  text.append(exponent < 0 ? "E-" : "E+").append(std::abs(exponent) < 10 ? "0" : "");
  return text.append(std::to_string(std::abs(exponent)));
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
                          return ToDouble(*number);
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

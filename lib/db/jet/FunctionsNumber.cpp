#include <cmath>

#include "db/jet/FunctionTables.h"
#include "db/jet/TextValues.h"

namespace tsv::db::jet {
namespace {

// A function of a number keeps its type: whole numbers and amounts stay exact, a date stays a date.
template <typename OfLong, typename OfCurrency, typename OfDouble>
Variant KeepingType(const Variant& value, OfLong ofLong, OfCurrency ofCurrency, OfDouble ofDouble) {
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return ofLong(*whole);
  if (const auto* amount = std::get_if<Currency>(&value)) return ofCurrency(*amount);
  if (const auto* date = std::get_if<Date>(&value)) return ToDate(ofDouble(date->Days()));
  return ofDouble(ToDouble(value));
}

std::int32_t Itself(std::int32_t whole) { return whole; }

Currency Truncated(Currency amount) {
  return Currency::FromTenThousandths(amount.TenThousandths() / Currency::kScale * Currency::kScale);
}

Variant Abs(Arguments a) {
  return KeepingType(
      a[0],
      [](std::int32_t whole) {
        if (whole == INT32_MIN) Raise(RuntimeError::Overflow);
        return whole < 0 ? -whole : whole;
      },
      [](Currency amount) { return amount.Abs(); }, [](double value) { return std::fabs(value); });
}

Variant Int(Arguments a) {
  return KeepingType(
      a[0], Itself,
      [](Currency amount) {
        const Currency whole = Truncated(amount);
        return whole > amount ? whole - Currency::FromInteger(1) : whole;
      },
      [](double value) { return std::floor(value); });
}

Variant Fix(Arguments a) {
  return KeepingType(a[0], Itself, Truncated, [](double value) { return std::trunc(value); });
}

// Halves to even, in the decimal digits that the number is written with.
Variant Round(Arguments a) {
  const std::int32_t places = LongAt(a, 1);
  Require(places >= 0 && places <= 22);
  return KeepingType(
      a[0], Itself,
      [places](Currency amount) {
        std::int64_t step = Currency::kScale;
        for (std::int32_t i = 0; i < places && step > 1; ++i) step /= 10;
        const std::int64_t units = amount.TenThousandths();
        const std::int64_t rest = units % step;
        const std::int64_t twice = 2 * (rest < 0 ? -rest : rest);
        const Currency down = Currency::FromTenThousandths(units - rest);
        const bool up = twice > step || (twice == step && units / step % 2 != 0);
        return up ? down + Currency::FromTenThousandths(units < 0 ? -step : step) : down;
      },
      [places](double value) {
        NumberText number = ShortestDigits(value);
        RoundDecimals(number, static_cast<std::size_t>(places), Halves::ToEven);
        return ToDouble(number);
      });
}

Variant Sgn(Arguments a) {
  const double value = ToDouble(a[0]);
  return value > 0 ? 1 : value < 0 ? -1 : 0;
}

Variant Sqr(Arguments a) {
  Require(ToDouble(a[0]) >= 0);
  return std::sqrt(ToDouble(a[0]));
}

// The number that a text begins with, blanks between its characters notwithstanding; 0 when there is none.
Variant Val(Arguments a) {
  std::string text;
  for (const char c : TextAt(a, 0)) {
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') text += c;
  }
  const auto digits = [&text](std::size_t at) {
    const std::size_t end = text.find_first_not_of("0123456789", at);
    return (end == std::string::npos ? text.size() : end) - at;
  };
  std::size_t end = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const std::size_t whole = digits(end);
  end += whole;
  std::size_t decimals = 0;
  if (end < text.size() && text[end] == '.') {
    decimals = digits(end + 1);
    end += decimals + 1;
  }
  if (whole + decimals == 0) return 0.0;
  if (end < text.size() && (text[end] | 0x20) == 'e') {
    const std::size_t exponent = end + 1 + (end + 1 < text.size() && (text[end + 1] == '-' || text[end + 1] == '+'));
    if (digits(exponent) > 0) end = exponent + digits(exponent);
  }
  return ParseDouble(text.substr(0, end));
}

// The number's text with a blank in the place of a plus sign, and no zero before the point.
Variant Str(Arguments a) {
  std::string text = TextOf(a[0]);
  if (text[0] != '-') text.insert(text.begin(), ' ');
  if (text.size() > 2 && text[1] == '0') text.erase(1, 1);
  return text;
}

}  // namespace

std::vector<Function> NumberFunctions() {
  using enum ArgumentKind;
  constexpr ValueType same = ValueType::Null;
  return {
      {.name = "Abs", .arguments = {Any}, .required = 1, .result = same, .call = Abs},
      {.name = "Int", .arguments = {Any}, .required = 1, .result = same, .call = Int},
      {.name = "Fix", .arguments = {Any}, .required = 1, .result = same, .call = Fix},
      {.name = "Round", .arguments = {Any, Long}, .required = 1, .result = same, .call = Round},
      {.name = "Sgn", .arguments = {Double}, .required = 1, .result = ValueType::Long, .call = Sgn},
      {.name = "Sqr", .arguments = {Double}, .required = 1, .result = ValueType::Double, .call = Sqr},
      {.name = "Val", .arguments = {Text}, .required = 1, .result = ValueType::Double, .call = Val},
      {.name = "Str", .arguments = {Double}, .required = 1, .result = ValueType::Text, .call = Str},
  };
}

}  // namespace tsv::db::jet

#include "types/Currency.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv {
namespace {

constexpr std::size_t kDecimals = 4;

std::uint64_t Magnitude(std::int64_t units) {
  return units < 0 ? ~static_cast<std::uint64_t>(units) + 1 : static_cast<std::uint64_t>(units);
}

std::int64_t WithSign(std::uint64_t magnitude, bool negative) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (magnitude > most + (negative ? 1 : 0)) Raise(RuntimeError::Overflow);
  return static_cast<std::int64_t>(negative ? ~magnitude + 1 : magnitude);
}

// The decimals beyond the fourth: whether they move the fourth up, halves to even.
bool RoundsUp(std::string_view rest, bool odd) {
  if (rest.empty() || rest[0] < '5') return false;
  return rest[0] > '5' || rest.find_first_not_of('0', 1) != std::string_view::npos || odd;
}

Currency FromDigits(bool negative, std::string_view digits, std::string_view decimals) {
  constexpr std::uint64_t limit = std::uint64_t{1} << 63;
  std::uint64_t magnitude = 0;
  auto append = [&magnitude](char digit) {
    if (magnitude > limit / 10) Raise(RuntimeError::Overflow);
    magnitude = magnitude * 10 + static_cast<std::uint64_t>(digit - '0');
  };
  for (char digit : digits) append(digit);
  for (std::size_t i = 0; i < kDecimals; ++i) append(i < decimals.size() ? decimals[i] : '0');
  if (decimals.size() > kDecimals && RoundsUp(decimals.substr(kDecimals), magnitude % 2 != 0)) ++magnitude;
  return Currency::FromTenThousandths(WithSign(magnitude, negative));
}

}  // namespace

Currency Currency::FromInteger(std::int64_t whole) { return Currency(kScale) * whole; }

// The shortest decimal text of the double is what its writer meant: 1.00015 is a half, although its binary value is
// a little less.
Currency Currency::FromDouble(double value) {
  if (!(std::fabs(value) < 1e15)) Raise(RuntimeError::Overflow);
  if (std::fabs(value) <= 0.00005) return Currency();
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::fixed).ptr;
  const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return FromDigits(value < 0, text, {});
  return FromDigits(value < 0, text.substr(0, point), text.substr(point + 1));
}

std::optional<Currency> Currency::FromText(std::string_view text) {
  const auto number = ReadNumber(text);
  if (!number) return std::nullopt;
  return FromDigits(number->negative, number->digits, number->decimals);
}

double Currency::ToDouble() const noexcept { return static_cast<double>(units_) / kScale; }

std::string Currency::ToFixed2() const {
  const std::uint64_t cents = (Magnitude(units_) + 50) / 100;
  const std::uint64_t fraction = cents % 100;
  std::string text = units_ < 0 && cents != 0 ? "-" : "";
  text += std::to_string(cents / 100);
  text += '.';
  text += static_cast<char>('0' + fraction / 10);
  text += static_cast<char>('0' + fraction % 10);
  return text;
}

std::string Currency::ToText() const {
  const std::uint64_t magnitude = Magnitude(units_);
  std::string text = units_ < 0 ? "-" : "";
  text += std::to_string(magnitude / kScale);
  if (std::uint64_t fraction = magnitude % kScale; fraction != 0) {
    text += '.';
    for (std::uint64_t place = kScale / 10; fraction != 0; fraction %= place, place /= 10) {
      text += static_cast<char>('0' + fraction / place);
    }
  }
  return text;
}

Currency Currency::Abs() const { return units_ < 0 ? -*this : *this; }

Currency Currency::operator-() const { return Currency() -= *this; }

Currency& Currency::operator+=(Currency other) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(units_, other.units_, &sum)) Raise(RuntimeError::Overflow);
  units_ = sum;
  return *this;
}

Currency& Currency::operator-=(Currency other) {
  std::int64_t difference = 0;
  if (__builtin_sub_overflow(units_, other.units_, &difference)) Raise(RuntimeError::Overflow);
  units_ = difference;
  return *this;
}

Currency operator*(Currency a, std::int64_t factor) {
  std::int64_t product = 0;
  if (__builtin_mul_overflow(a.units_, factor, &product)) Raise(RuntimeError::Overflow);
  return Currency(product);
}

}  // namespace tsv

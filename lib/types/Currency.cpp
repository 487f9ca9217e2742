#include "types/Currency.h"

#include <limits>
#include <utility>

#include "types/Erro.h"
#include "types/NumberText.h"

namespace tsv {
namespace {

std::uint64_t Magnitude(std::int64_t units) {
  return units < 0 ? ~static_cast<std::uint64_t>(units) + 1 : static_cast<std::uint64_t>(units);
}

std::int64_t WithSign(std::uint64_t magnitude, bool negative) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (magnitude > most + (negative ? 1 : 0)) Raise(RuntimeError::Overflow);
  return static_cast<std::int64_t>(negative ? ~magnitude + 1 : magnitude);
}

Currency FromNumber(NumberText number) {
  constexpr std::size_t decimals = 4;
  constexpr std::uint64_t limit = std::uint64_t{1} << 63;
  RoundDecimals(number, decimals, Halves::ToEven);
  number.decimals.resize(decimals, '0');
  std::uint64_t magnitude = 0;
  for (const char digit : number.digits + number.decimals) {
    if (magnitude > limit / 10) Raise(RuntimeError::Overflow);
    magnitude = magnitude * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  return Currency::FromTenThousandths(WithSign(magnitude, number.negative));
}

}  // namespace

Currency Currency::FromInteger(std::int64_t whole) { return Currency(kScale) * whole; }

// The shortest decimal text of the double is what its writer meant: 1.00015 is a half, although its binary value is
// a little less.
Currency Currency::FromDouble(double value) { return FromNumber(ShortestDigits(value)); }

std::optional<Currency> Currency::FromText(std::string_view text) {
  auto number = ReadNumber(text);
  if (!number) return std::nullopt;
  return FromNumber(std::move(*number));
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

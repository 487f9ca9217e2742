#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tsv {

// An amount of money: a 64-bit count of ten-thousandths, from -922337203685477.5808 to 922337203685477.5807.
// No operation passes through binary floating point; a result outside the range raises 6 (overflow).
class Currency {
 public:
  static constexpr std::int64_t kScale = 10'000;

  constexpr Currency() = default;
  static constexpr Currency FromTenThousandths(std::int64_t units) noexcept { return Currency(units); }
  static Currency FromInteger(std::int64_t whole);

  // Rounds to the nearest ten-thousandth, halves to even. Not a number, or out of range: raises 6.
  static Currency FromDouble(double value);

  // Reads "1.234,56", "1234,5", "1234.5", "-0,0001" (see ReadNumber in NumberText.h for the accepted forms).
  // Nothing when the text is no number; more than four decimals round halves to even; out of range raises 6.
  static std::optional<Currency> FromText(std::string_view text);

  constexpr std::int64_t TenThousandths() const noexcept { return units_; }
  double ToDouble() const noexcept;

  // The pattern "#######0.00" with a point: at least one integer digit, two decimals, halves away from zero.
  // This is how amounts are written into statements: -1234.5 gives "-1234.50".
  std::string ToFixed2() const;

  // All significant decimals, a point, no grouping: "12.5", "-0.0001", "3".
  std::string ToText() const;

  Currency Abs() const;
  Currency operator-() const;
  Currency& operator+=(Currency other);
  Currency& operator-=(Currency other);
  friend Currency operator+(Currency a, Currency b) { return a += b; }
  friend Currency operator-(Currency a, Currency b) { return a -= b; }
  friend Currency operator*(Currency a, std::int64_t factor);

  friend constexpr auto operator<=>(Currency, Currency) = default;

 private:
  constexpr explicit Currency(std::int64_t units) noexcept : units_(units) {}
  std::int64_t units_ = 0;
};

}  // namespace tsv

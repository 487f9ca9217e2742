#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tsv {

// A number in decimal digits, without loss and without size limits. Zero has neither digits nor decimals but for the
// zeros that its writer gave.
struct NumberText {
  bool negative = false;
  std::string digits;  // the integer digits, leading zeros removed (empty for zero)
  std::string decimals;

  bool IsZero() const noexcept;
};

// Blanks around, an optional sign, then either the Brazilian form (points group thousands, a comma begins the
// decimals) or the plain one (a single point begins the decimals when it cannot be grouping: "1234.5", "0.25",
// "1.5"; "1.234" is one thousand two hundred and thirty-four). Nothing when the text is no number.
std::optional<NumberText> ReadNumber(std::string_view text);

// The decimal value of a double: with as many significant digits, or with the fewest that tell it from its neighbours,
// which are those that its writer meant. Raises 6 when it is infinite or no number.
NumberText DigitsOf(double value, int significant);
NumberText ShortestDigits(double value);

enum class Halves { ToEven, AwayFromZero };

// Leaves at most so many decimals.
void RoundDecimals(NumberText& number, std::size_t places, Halves halves);

// Moves the decimal point to the right, or to the left when places is negative.
void MovePoint(NumberText& number, int places);

double ToDouble(const NumberText& number);  // the nearest double; raises 6 when it is too large

}  // namespace tsv

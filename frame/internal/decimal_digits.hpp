// The exact decimal digits of a binary number, rounded to a number of significant digits.
// Every number-to-text conversion of the library starts here.
#pragma once

#include <string>

namespace ravelin {

// A decimal number d1.d2d3... x 10^exponent. `digits` holds ASCII digits without leading or
// trailing zeros; zero has empty digits and exponent 0.
struct DecimalDigits {
  bool negative = false;
  std::string digits;
  int exponent = 0;

  bool isZero() const { return digits.empty(); }
};

// The value rounded to at most `significant` digits (1 to 17), ties away from zero, decided on
// the exact decimal expansion of the binary value (never by printf's rounding). Negative zero
// gives zero. The value must be finite.
DecimalDigits roundToSignificant(double value, int significant);

}  // namespace ravelin

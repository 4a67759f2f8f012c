// The rounding behind DecimalDigits, without allocation, for the number-to-text paths that run
// over whole lists.
#pragma once

namespace ravelin::detail {

// d1.d2d3... x 10^exponent with count digits (at most 17) and no trailing zeros; zero has
// count 0 and exponent 0.
struct RoundedDigits {
  char digits[17];
  int count = 0;
  int exponent = 0;
  bool negative = false;
};

// The value rounded to `significant` digits (clamped to 1..17), ties away from zero on the exact
// binary value. Raises overflow (6) for an infinite or NaN value.
RoundedDigits roundDigits(double value, int significant);

}  // namespace ravelin::detail

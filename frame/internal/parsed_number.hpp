// A number read from text, kept as its decimal digits so that each target type rounds it
// exactly: shared by the text readers and the Variant coercions.
#pragma once

#include <cstdint>
#include <ravelin/frame/currency.hpp>
#include <ravelin/frame/locale.hpp>
#include <string>

namespace ravelin::detail {

// digits x 10^scale, or the bits of an &H / &O literal.
struct ParsedNumber {
  bool negative = false;
  // Significant decimal digits: no leading or trailing zeros (empty for zero). Very long inputs
  // keep their first digits and one final '1' standing for the nonzero digits dropped after
  // them, which keeps every rounding decision exact.
  std::string digits;
  int64_t scale = 0;
  // An &H or &O literal: its value, unsigned.
  bool isRadix = false;
  uint64_t bits = 0;
};

// The reader behind CDbl, CInt, CCur and friends for text (see parseDouble). Raises 13 when the
// text is not a number in the locale, 6 when an &H or &O literal exceeds 64 bits.
ParsedNumber readLocaleNumber(StringView text, const Locale& locale);

// The nearest double; raises 6 when it would be infinite, gives 0 on underflow. An &H or &O
// literal reads as a Long while it fits in 32 bits, and as a 64-bit integer beyond.
double toDouble(const ParsedNumber& number);

// Exact: the decimal digits rounded half to even at the fourth decimal; raises 6 out of range.
Currency toCurrency(const ParsedNumber& number);

// The decimal digits rounded half to even to a whole number in min..max; raises 6 outside.
// An &H or &O literal that fits in `bits` bits wraps as a two's-complement number of that width
// (&HFFFF is -1 as an Integer, 65535 as a Long); a wider one raises 6. Byte targets pass
// min 0 and do not wrap.
int64_t toWholeNumber(const ParsedNumber& number, int64_t min, int64_t max, int bits);

}  // namespace ravelin::detail

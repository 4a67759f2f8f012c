#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <ravelin/frame/internal/decimal_digits.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/rounded_digits.hpp>

namespace ravelin {
namespace detail {
namespace {

// Digits after the point that make std::to_chars print any double exactly: the longest exact
// expansion of a double has 767 significant digits.
constexpr int kExactPrecision = 767;

// Extra digits printed beyond the kept ones when the shortest text cannot be used. Rounding to
// n + kGuardDigits digits and then to n gives the same result as rounding once, except when the
// guard digits come out as exactly "500": only then can the value be a tie.
constexpr int kGuardDigits = 3;

// The shortest round-trip text decides the rounding to at most this many digits: a normal
// double lies within 2^-53 of its value relative to it, far inside half a unit of the 15th digit.
constexpr int kShortestIsExactEnough = 15;

// A scientific text "d.ddde+xx" (or "de+xx") written by std::to_chars, read in place.
class ScientificText {
 public:
  // Prints the magnitude with `precision` digits after the point, or the shortest round-trip
  // digits when precision is negative.
  void print(double magnitude, int precision) {
    auto result = precision < 0 ? std::to_chars(text_, text_ + sizeof text_, magnitude,
                                                std::chars_format::scientific)
                                : std::to_chars(text_, text_ + sizeof text_, magnitude,
                                                std::chars_format::scientific, precision);
    // The exponent is the short run after the last 'e': a sign and two or three digits.
    const char* e = result.ptr;
    while (*--e != 'e') {
    }
    exponent_ = 0;
    for (const char* p = e + 2; p != result.ptr; ++p)
      exponent_ = exponent_ * 10 + (*p - '0');
    if (e[1] == '-') exponent_ = -exponent_;
    count_ = e == text_ + 1 ? 1 : static_cast<int>(e - text_) - 1;
  }

  int count() const { return count_; }
  int exponent() const { return exponent_; }
  // The i-th significant digit; the point sits after the first one.
  char digit(int i) const { return i == 0 ? text_[0] : text_[i + 1]; }

  // Whether the digits from `from` (at least 1) on, read as a fraction of the last kept digit,
  // reach one half; `tie` tells whether they are exactly one half.
  bool tailRoundsUp(int from, bool& tie) const {
    tie = false;
    if (from >= count_ || digit(from) < '5') return false;
    if (digit(from) > '5') return true;
    const char* rest = text_ + from + 2;
    tie = std::all_of(rest, text_ + count_ + 1, [](char c) { return c == '0'; });
    return true;
  }

 private:
  char text_[kExactPrecision + 16];
  int count_ = 0;
  int exponent_ = 0;
};

}  // namespace

RoundedDigits roundDigits(double value, int significant) {
  if (!std::isfinite(value)) raiseRuntimeError(vb_error::kOverflow);
  significant = std::clamp(significant, 1, 17);
  RoundedDigits result;
  if (value == 0.0) return result;
  const double magnitude = std::fabs(value);

  ScientificText text;
  bool tie = false;
  bool roundUp = false;
  if (significant <= kShortestIsExactEnough && magnitude >= std::numeric_limits<double>::min()) {
    // The shortest text S is the closest among the shortest candidates, so no midpoint of the
    // kept grid can lie strictly between S and the value: S's tail decides, unless S ends in a
    // lone 5 right after the kept digits.
    text.print(magnitude, -1);
  } else {
    text.print(magnitude, significant - 1 + kGuardDigits);
  }
  roundUp = text.tailRoundsUp(significant, tie);
  if (tie) {
    text.print(magnitude, kExactPrecision);
    roundUp = text.tailRoundsUp(significant, tie);  // an exact tie rounds away from zero
  }

  int count = std::min(text.count(), significant);
  for (int i = 0; i < count; ++i)
    result.digits[i] = text.digit(i);
  result.exponent = text.exponent();
  if (roundUp) {
    while (count > 0 && result.digits[count - 1] == '9')
      --count;
    if (count == 0) {
      // 9.99... became 10: one digit, next decade.
      result.digits[0] = '1';
      count = 1;
      ++result.exponent;
    } else {
      ++result.digits[count - 1];
    }
  }
  while (count > 0 && result.digits[count - 1] == '0')
    --count;
  result.count = count;
  result.negative = std::signbit(value);
  return result;
}

}  // namespace detail

DecimalDigits roundToSignificant(double value, int significant) {
  detail::RoundedDigits rounded = detail::roundDigits(value, significant);
  DecimalDigits result;
  if (rounded.count == 0) return result;
  result.negative = rounded.negative;
  result.digits.assign(rounded.digits, static_cast<std::size_t>(rounded.count));
  result.exponent = rounded.exponent;
  return result;
}

}  // namespace ravelin

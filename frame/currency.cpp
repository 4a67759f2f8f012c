#include <ravelin/frame/currency.hpp>

#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 UInt128;

// Divides a 128-bit numerator by a positive 64-bit divisor, rounding half to even.
Int128 divideHalfEven(Int128 numerator, Int128 divisor) {
  bool negative = (numerator < 0) != (divisor < 0);
  UInt128 n = numerator < 0 ? -static_cast<UInt128>(numerator)
                                      : static_cast<UInt128>(numerator);
  UInt128 d = divisor < 0 ? -static_cast<UInt128>(divisor)
                                    : static_cast<UInt128>(divisor);
  UInt128 q = n / d;
  UInt128 r = n % d;
  if (r * 2 > d || (r * 2 == d && (q & 1) != 0)) ++q;
  // q fits: callers check the range of the signed result afterwards.
  return negative ? -static_cast<Int128>(q) : static_cast<Int128>(q);
}

Currency checked(Int128 scaled) {
  if (scaled > INT64_MAX || scaled < INT64_MIN) raiseRuntimeError(vb_error::kOverflow);
  return Currency::fromScaled(static_cast<int64_t>(scaled));
}

}  // namespace

Currency Currency::fromUnits(int64_t units) {
  return checked(static_cast<Int128>(units) * kScale);
}

Currency Currency::operator+(Currency other) const {
  return checked(static_cast<Int128>(scaled_) + other.scaled_);
}

Currency Currency::operator-(Currency other) const {
  return checked(static_cast<Int128>(scaled_) - other.scaled_);
}

Currency Currency::operator-() const { return checked(-static_cast<Int128>(scaled_)); }

Currency Currency::operator*(Currency other) const {
  return checked(divideHalfEven(static_cast<Int128>(scaled_) * other.scaled_, kScale));
}

Currency Currency::operator/(Currency other) const {
  if (other.scaled_ == 0) raiseRuntimeError(vb_error::kDivisionByZero);
  return checked(divideHalfEven(static_cast<Int128>(scaled_) * kScale, other.scaled_));
}

}  // namespace ravelin

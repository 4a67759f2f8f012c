// Currency: exact 64-bit fixed point scaled by 10,000, as the automation runtime keeps money.
#pragma once

#include <compare>
#include <cstdint>

namespace ravelin {

class Currency {
 public:
  static constexpr int64_t kScale = 10000;

  constexpr Currency() = default;

  // The value whose scaled representation is `scaled` (1.5 is fromScaled(15000)).
  static constexpr Currency fromScaled(int64_t scaled) {
    Currency c;
    c.scaled_ = scaled;
    return c;
  }
  // Whole units; raises overflow (6) outside the range.
  static Currency fromUnits(int64_t units);

  static constexpr Currency max() { return fromScaled(INT64_MAX); }
  static constexpr Currency min() { return fromScaled(INT64_MIN); }

  constexpr int64_t scaled() const { return scaled_; }
  // The nearest double (exact for values up to 2^53 / 10,000).
  double toDouble() const { return static_cast<double>(scaled_) / kScale; }

  // Exact arithmetic; a result outside the range raises overflow (6). Multiplication and
  // division round the scaled result half to even; division by zero raises 11.
  Currency operator+(Currency other) const;
  Currency operator-(Currency other) const;
  Currency operator-() const;
  Currency operator*(Currency other) const;
  Currency operator/(Currency other) const;

  constexpr auto operator<=>(const Currency&) const = default;

 private:
  int64_t scaled_ = 0;
};

}  // namespace ravelin

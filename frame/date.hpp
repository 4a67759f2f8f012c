// Date: days since 30 December 1899 as a double, the fraction the time of day.
#pragma once

#include <compare>

namespace ravelin {

// The automation Date. The zero date (30 December 1899, midnight) stands for "no date".
// For negative serials the whole part counts days back and the fraction still counts the time
// forward from that day's midnight: -1.25 is 29 December 1899, 06:00.
struct Date {
  double serial = 0.0;

  constexpr auto operator<=>(const Date&) const = default;
};

// The range of valid serials: 1 January 100 to 31 December 9999.
inline constexpr double kMinDateSerial = -657434.0;
inline constexpr double kMaxDateSerial = 2958465.0;
// A serial is valid when kMinDateSerial - 1 < serial < kMaxDateSerial + 1.
constexpr bool isValidDateSerial(double serial) {
  return serial > kMinDateSerial - 1.0 && serial < kMaxDateSerial + 1.0;
}

}  // namespace ravelin

// The current date and time as serials, read from the platform clock.
#include <ravelin/frame/date_time.hpp>
#include <ravelin/platform/clock.hpp>

namespace ravelin {

Date currentDateTime() {
  const platform::LocalTime now = platform::clock()->localNow();
  const Date whole = makeDate(now.year, now.month, now.day, now.hour, now.minute, now.second);
  return Date{whole.serial + static_cast<double>(now.millisecond) / 86400000.0};
}

Date currentDate() {
  const platform::LocalTime now = platform::clock()->localNow();
  return makeDate(now.year, now.month, now.day);
}

}  // namespace ravelin

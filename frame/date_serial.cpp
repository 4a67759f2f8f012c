// Serials and calendar parts: splitDate, makeDate, DateSerial, TimeSerial.
#include <chrono>
#include <cmath>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

namespace {

namespace chr = std::chrono;

// Serial day number of 1 January 1970, the epoch of std::chrono::sys_days.
constexpr int64_t kUnixEpochDay = 25569;
// Days in a 400-year Gregorian cycle.
constexpr int64_t kDaysPer400Years = 146097;
constexpr int64_t kSecondsPerDay = 86400;

constexpr int64_t floorDiv(int64_t a, int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

constexpr bool isLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

// Whole day plus a time of day in seconds, with the runtime's sign rule for negative days.
Date serialOf(int64_t dayNumber, int64_t secondsOfDay) {
  const double time = static_cast<double>(secondsOfDay) / static_cast<double>(kSecondsPerDay);
  const double day = static_cast<double>(dayNumber);
  return Date{dayNumber < 0 ? day - time : day + time};
}

}  // namespace

namespace detail {

int64_t dayNumberOf(int64_t year, int64_t month, int64_t day) {
  const int64_t monthIndex = year * 12 + (month - 1);
  int64_t normalYear = floorDiv(monthIndex, 12);
  const auto normalMonth = static_cast<unsigned>(monthIndex - normalYear * 12 + 1);
  // Shift the year into 0..399 so std::chrono's year range is never a concern; the calendar
  // repeats every 400 years.
  const int64_t cycles = floorDiv(normalYear, 400);
  normalYear -= cycles * 400;
  const chr::sys_days first{chr::year{static_cast<int>(normalYear)} / chr::month{normalMonth} /
                            chr::day{1}};
  return first.time_since_epoch().count() + kUnixEpochDay + cycles * kDaysPer400Years + day - 1;
}

void calendarOfDayNumber(int64_t dayNumber, int& year, int& month, int& day) {
  const chr::year_month_day date{chr::sys_days{chr::days{dayNumber - kUnixEpochDay}}};
  year = static_cast<int>(date.year());
  month = static_cast<int>(static_cast<unsigned>(date.month()));
  day = static_cast<int>(static_cast<unsigned>(date.day()));
}

}  // namespace detail

DateParts splitDate(Date date) {
  const double serial = date.serial;
  if (!isValidDateSerial(serial)) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const double whole = std::trunc(serial);
  const double seconds = std::fabs(serial - whole) * static_cast<double>(kSecondsPerDay);
  double wholeSeconds = std::floor(seconds);
  if (seconds - wholeSeconds > 0.5) wholeSeconds += 1.0;

  auto dayNumber = static_cast<int64_t>(whole);
  auto secondsOfDay = static_cast<int64_t>(wholeSeconds);
  if (secondsOfDay >= kSecondsPerDay) {
    // 23:59:59.5 and later reads as the next midnight, except on the last day of the range.
    if (dayNumber < static_cast<int64_t>(kMaxDateSerial)) {
      ++dayNumber;
      secondsOfDay -= kSecondsPerDay;
    } else {
      secondsOfDay = kSecondsPerDay - 1;
    }
  }

  DateParts parts;
  detail::calendarOfDayNumber(dayNumber, parts.year, parts.month, parts.day);
  parts.hour = static_cast<int>(secondsOfDay / 3600);
  parts.minute = static_cast<int>(secondsOfDay / 60 % 60);
  parts.second = static_cast<int>(secondsOfDay % 60);
  const chr::weekday weekday{chr::sys_days{chr::days{dayNumber - kUnixEpochDay}}};
  parts.dayOfWeek = static_cast<int>(weekday.c_encoding()) + 1;
  return parts;
}

Date makeDate(int year, int month, int day, int hour, int minute, int second) {
  const bool valid = year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
                     day <= daysInMonth(year, month) && hour >= 0 && hour <= 23 && minute >= 0 &&
                     minute <= 59 && second >= 0 && second <= 59;
  if (!valid) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return serialOf(detail::dayNumberOf(year, month, day),
                  int64_t{hour} * 3600 + int64_t{minute} * 60 + second);
}

Date DateSerial(int year, int month, int day) {
  int64_t fullYear = year;
  if (year >= 0 && year <= 29) {
    fullYear += 2000;
  } else if (year >= 30 && year <= 99) {
    fullYear += 1900;
  }
  const int64_t dayNumber = detail::dayNumberOf(fullYear, month, day);
  if (dayNumber < static_cast<int64_t>(kMinDateSerial) ||
      dayNumber > static_cast<int64_t>(kMaxDateSerial)) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  return Date{static_cast<double>(dayNumber)};
}

Date TimeSerial(int hour, int minute, int second) {
  const int64_t total = int64_t{hour} * 3600 + int64_t{minute} * 60 + second;
  const double serial = static_cast<double>(total) / static_cast<double>(kSecondsPerDay);
  if (!isValidDateSerial(serial)) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return Date{serial};
}

}  // namespace ravelin

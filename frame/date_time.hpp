// Date arithmetic and date text, as the automation runtime does it.
#pragma once

#include <cstdint>

#include <ravelin/frame/date.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {

// The calendar parts of a date (proleptic Gregorian calendar).
struct DateParts {
  int year = 1899;
  int month = 12;  // 1..12
  int day = 30;    // 1..31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int dayOfWeek = 7;  // 1 Sunday .. 7 Saturday

  bool operator==(const DateParts&) const = default;
};

// The parts of a serial: the whole part (truncated toward zero) is the day, the absolute
// fraction the time; fractions of more than half a second round up. Raises 5 outside the valid
// range.
DateParts splitDate(Date date);

// The serial of a calendar date and time; raises 5 when the parts do not name a valid date
// (month 1..12, day within the month, year 100..9999, time within the day).
Date makeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

// DateSerial: months and days outside their ranges carry into the neighbouring years and months
// (DateSerial(2010, 14, 1) is 1 February 2011; day 0 is the last day of the previous month).
// Years 0..29 mean 2000..2029 and 30..99 mean 1930..1999. Raises 5 outside the valid range.
Date DateSerial(int year, int month, int day);
// TimeSerial: hours, minutes and seconds carry the same way; the result may be a negative or
// multi-day serial as the runtime gives it.
Date TimeSerial(int hour, int minute, int second);

// First-day-of-week and first-week-of-year options, with the runtime's constant values.
enum FirstDayOfWeek : int {
  vbUseSystemDayOfWeek = 0,
  vbSunday = 1,
  vbMonday = 2,
  vbTuesday = 3,
  vbWednesday = 4,
  vbThursday = 5,
  vbFriday = 6,
  vbSaturday = 7,
};
enum FirstWeekOfYear : int {
  vbUseSystem = 0,
  vbFirstJan1 = 1,
  vbFirstFourDays = 2,
  vbFirstFullWeek = 3,
};

// Weekday: 1..7 counted from firstDayOfWeek (vbUseSystemDayOfWeek means Sunday). Raises 5 for an
// option outside 0..7.
int Weekday(Date date, int firstDayOfWeek = vbSunday);

// The week of the year (DatePart "ww"). With vbFirstFourDays a day before week 1 belongs to the
// last week of the previous year and a late-December day in the next year's week 1 gives 1
// (with vbMonday this is ISO 8601). vbFirstJan1 never rolls over and may give 54.
int WeekOfYear(Date date, int firstDayOfWeek = vbSunday, int firstWeekOfYear = vbFirstJan1);

// CStr of a date: the locale's short date, then a blank and the locale's time when the time is
// not midnight; a serial whose whole part is 0 gives the time only.
String textOfDate(Date date, const Locale& locale = currentLocale());

// Renders a date with a Windows picture pattern (the Locale pattern letters).
String formatWithPattern(Date date, StringView pattern, const Locale& locale);

// CDate of text: a date, a time, or both, with numbers in the locale's short-date order, month
// names, and two-digit years in the 1930..2029 window. Raises 13 for text that is no date.
Date parseDate(StringView text, const Locale& locale = currentLocale());
// IsDate of text: whether parseDate would succeed.
bool isDateText(StringView text, const Locale& locale = currentLocale());

}  // namespace ravelin

// Date arithmetic and date text, as the automation runtime does it.
//
// Errors: a serial outside the valid range (or NaN, or infinite) and parts that name no valid
// date raise 5 (invalid procedure call), as the runtime's date functions do for their arguments;
// converting an out-of-range number to a Date (CDate of a number) is the conversions' business and
// raises 6 there. Text that is no date raises 13, whatever the reason (a bad word, a day 31 in
// April, a year past 9999).
#pragma once

#include <cstdint>
#include <optional>
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
// fraction the time; fractions of more than half a second round up, carrying into the next day
// (except past 31 December 9999 23:59:59, which stays there). Raises 5 for NaN, an infinity or a
// serial outside the valid range.
DateParts splitDate(Date date);

// The serial of a calendar date and time; raises 5 when the parts do not name a valid date
// (month 1..12, day within the month, year 100..9999, hour 0..23, minute and second 0..59).
// Before 30 December 1899 the time is subtracted: 29 December 1899 06:00 is -1.25.
Date makeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

// DateSerial: months and days outside their ranges carry into the neighbouring years and months
// (DateSerial(2010, 14, 1) is 1 February 2011; day 0 is the last day of the previous month).
// Years 0..29 mean 2000..2029 and 30..99 mean 1930..1999. Raises 5 outside the valid range.
Date DateSerial(int year, int month, int day);
// TimeSerial: the total of the seconds divided by 86400, so components carry and borrow freely
// (TimeSerial(25, 0, 0) is 1 day 1 hour, TimeSerial(0, -1, 0) is -60/86400, which reads as
// 00:01:00 on 30 December 1899). Raises 5 when the result is outside the valid range.
Date TimeSerial(int hour, int minute, int second);

// The local date and time of the platform clock (Now, with its milliseconds), and today at
// midnight (Date). Tests install a simulated clock to fix them.
Date currentDateTime();
Date currentDate();

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

// The week of the year (DatePart "ww"). Week 1 starts on the first day of the week on or before
// 1 January (vbFirstJan1, also for vbUseSystem), on the first week with at least four days in the
// year (vbFirstFourDays) or on the first full week (vbFirstFullWeek). A day before week 1 belongs
// to the last week of the previous year; with vbFirstFourDays a late-December day in the next
// year's week 1 gives 1 (with vbMonday this is ISO 8601 for every day). vbFirstJan1 never rolls
// over and may give 54. Raises 5 for options outside 0..7 and 0..3.
int WeekOfYear(Date date, int firstDayOfWeek = vbSunday, int firstWeekOfYear = vbFirstJan1);

// CStr of a date: the locale's short date, then a blank and the locale's time when the time is
// not midnight (a fraction of at least 1e-12); a serial whose whole part is 0 gives the time only
// ("12:00:00 AM" for serial 0 in en-US).
String textOfDate(Date date, const Locale& locale = currentLocale());

// Renders a date with a Windows picture pattern: d dd (day), ddd dddd (day names), M MM (month),
// MMM MMMM (month names), y yy (two-digit year), yyyy (the full year, not padded), h hh H HH
// (12 and 24-hour clock), m mm, s ss, t tt (first letter or all of the AM/PM designator),
// '...' literals ('' is one apostrophe). Every other character is written as it stands, so the
// separators come out as the pattern writes them.
String formatWithPattern(Date date, StringView pattern, const Locale& locale);

// CDate of text. Accepted, with blanks (and tabs) allowed at both ends and between parts:
// - a date of three numbers separated by "/", "-", ".", "," or blanks (or the locale's date
//   separator), read in the locale's short-date order; when the first number has three or more
//   digits or exceeds 31 it is the year and the order is year, month, day whatever the locale
//   ("2010-03-02"). A month above 12 whose day could be a month is swapped with the day, as the
//   runtime does (en-US "13/1/2010" is 13 January 2010);
// - two numbers: month and day in the locale's order in the current year (UTC), or, when one
//   of them has three or more digits or exceeds 31, month and year with day 1 ("3/2010");
// - a month name or abbreviation, in English or the locale (a trailing "." allowed), with a day
//   and a year in any order ("2 March 2010", "Mar 2, 2010", "2010 March 2"); with one number it
//   is the year when it has three or more digits or exceeds 31 (day 1), else the day (current
//   year). When both numbers could be a day, the first is the day. A day name is ignored.
// - a time: hours, then ":" (or the locale's time separator) minutes and seconds, each optional
//   after the hours, then AM/PM (English or the locale's designators, any case) which may also
//   follow the hours alone ("2 PM"). Without a designator hours are 0..23, with one 0..12.
// - a date and a time in either order, or a time alone (the serial's whole part is then 0).
// Numbers have at most four digits (time parts two); years of one or two digits are
// 1930..2029, others must be 100..9999. Anything else raises 13. The work is linear in the length
// of the text.
Date parseDate(StringView text, const Locale& locale = currentLocale());
// IsDate of text: whether parseDate would succeed.
bool isDateText(StringView text, const Locale& locale = currentLocale());

// A date literal of the script language: the text between the #s of #3/2/2010#, read the same
// way in every locale. A date, a time or both, in either order, apart by any run of blanks
// (spaces, tabs) and "/", "-", ".", ",":
// - the date is three numbers, month/day/year ("3/2/2010"; a month above 12 whose day could be
//   one is swapped with it), or year/month/day when the first number has three or more digits
//   or exceeds 31 ("2010-03-02", never swapped); or an English month name or its three-letter
//   abbreviation with a day and a year, the day first unless the first number is such a year
//   ("March 2, 2010", "2010 Sep 2");
// - the time is "h:m[:s]" with an optional AM/PM (or A/P, any case, anywhere after the time),
//   or an hour 1..12 with a designator alone ("2 PM").
// Numbers have at most four digits; years of one or two digits are 1930..2029. nullopt for
// anything else, including a date or time that does not exist.
std::optional<Date> readDateLiteral(StringView text);

namespace detail {

// The serial day number (days since 30 December 1899) of a calendar date. Months and days
// outside their ranges carry into the neighbouring years and months; any values of int range
// work.
int64_t dayNumberOf(int64_t year, int64_t month, int64_t day);
// The calendar year, month and day of a serial day number within the date range (give or take
// a few days).
void calendarOfDayNumber(int64_t dayNumber, int& year, int& month, int& day);

}  // namespace detail

}  // namespace ravelin

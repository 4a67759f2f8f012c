// Built-in date functions: the clock, DateSerial and TimeSerial, DateAdd, DateDiff, DatePart,
// the part extractors, day and month names, and the formatting functions.
#include <cmath>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/builtin_args.hpp>

namespace ravelin::script::detail {
namespace {

using Args = std::span<const Variant>;

[[noreturn]] void invalidCall() {
  raiseRuntimeError(vb_error::kInvalidProcedureCall);
}

constexpr int64_t kSecondsPerDay = 86400;

// A date split into a serial day number (counted from 30 December 1899, the calendar's own
// numbering, which keeps going backwards before it) and the seconds since that midnight.
struct DayAndTime {
  int64_t day = 0;
  int64_t seconds = 0;
  DateParts parts;
};

DayAndTime dayAndTimeOf(Date date) {
  DayAndTime result;
  result.parts = splitDate(date);
  const DateParts& p = result.parts;
  result.day = ravelin::detail::dayNumberOf(p.year, p.month, p.day);
  result.seconds = p.hour * 3600 + p.minute * 60 + p.second;
  return result;
}

// The serial of a day number and seconds into it (which may run past the day): before day 0 the
// time is subtracted, as the runtime's serials do. Outside the date range raises 5.
Date serialOf(int64_t day, int64_t seconds) {
  // Whole days out of the seconds, rounding toward minus infinity.
  const int64_t carry =
      seconds >= 0 ? seconds / kSecondsPerDay : -((kSecondsPerDay - 1 - seconds) / kSecondsPerDay);
  day += carry;
  seconds -= carry * kSecondsPerDay;
  if (day < static_cast<int64_t>(kMinDateSerial) || day > static_cast<int64_t>(kMaxDateSerial)) {
    invalidCall();
  }
  const double fraction = static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay);
  const auto whole = static_cast<double>(day);
  return Date{day < 0 ? whole - fraction : whole + fraction};
}

int daysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

// The interval codes of DateAdd, DateDiff and DatePart.
enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval intervalArgument(const Variant& v) {
  const String text = textArgument(v);
  struct Code {
    StringView name;
    Interval interval;
  };
  static constexpr Code kCodes[] = {
      {u"yyyy", Interval::Year},   {u"q", Interval::Quarter}, {u"m", Interval::Month},
      {u"y", Interval::DayOfYear}, {u"d", Interval::Day},     {u"w", Interval::Weekday},
      {u"ww", Interval::Week},     {u"h", Interval::Hour},    {u"n", Interval::Minute},
      {u"s", Interval::Second},
  };
  for (const Code& code : kCodes) {
    if (equalsIgnoreCase(text, code.name)) return code.interval;
  }
  invalidCall();
}

// The first-day-of-week and first-week-of-year options, checked (5 outside 0..7 and 0..3).
int firstDayArgument(Args a, std::size_t i) {
  const int32_t day = longArgument(a, i, vbSunday);
  if (day < vbUseSystemDayOfWeek || day > vbSaturday) invalidCall();
  return day;
}
int firstWeekArgument(Args a, std::size_t i) {
  const int32_t week = longArgument(a, i, vbFirstJan1);
  if (week < vbUseSystem || week > vbFirstFullWeek) invalidCall();
  return week;
}

Date todayOf(Date now) {
  const DateParts p = splitDate(now);
  return makeDate(p.year, p.month, p.day);
}

Variant callNow(Args) {
  const DateParts p = splitDate(currentDateTime());
  return Variant(makeDate(p.year, p.month, p.day, p.hour, p.minute, p.second));
}
Variant callDate(Args) {
  return Variant(todayOf(currentDateTime()));
}
Variant callTime(Args) {
  const DateParts p = splitDate(currentDateTime());
  return Variant(TimeSerial(p.hour, p.minute, p.second));
}
// Timer: seconds since midnight as a Single, to the hundredth.
Variant callTimer(Args) {
  const double serial = std::fabs(currentDateTime().serial);
  const double seconds = (serial - std::floor(serial)) * static_cast<double>(kSecondsPerDay);
  return Variant(static_cast<float>(std::floor(seconds * 100.0) / 100.0));
}

Variant callDateSerial(Args a) {
  return Variant(DateSerial(CInt(a[0]), CInt(a[1]), CInt(a[2])));
}
Variant callTimeSerial(Args a) {
  return Variant(TimeSerial(CInt(a[0]), CInt(a[1]), CInt(a[2])));
}

Variant callDateValue(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(todayOf(CDate(a[0])));
}
Variant callTimeValue(Args a) {
  if (a[0].isNull()) return a[0];
  const DateParts p = splitDate(CDate(a[0]));
  return Variant(TimeSerial(p.hour, p.minute, p.second));
}

// DateAdd(interval, number, date): months and years keep the day, clamped to the end of a
// shorter month; days, weeks and times add to the serial; the time of day is kept.
Variant callDateAdd(Args a) {
  const Interval interval = intervalArgument(a[0]);
  const int64_t n = CLng(a[1]);
  if (a[2].isNull()) return a[2];
  const DayAndTime start = dayAndTimeOf(CDate(a[2]));
  const DateParts& p = start.parts;
  int64_t months = 0;
  switch (interval) {
    case Interval::Year:
      months = 12 * n;
      break;
    case Interval::Quarter:
      months = 3 * n;
      break;
    case Interval::Month:
      months = n;
      break;
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday:
      return Variant(serialOf(start.day + n, start.seconds));
    case Interval::Week:
      return Variant(serialOf(start.day + 7 * n, start.seconds));
    case Interval::Hour:
      return Variant(serialOf(start.day, start.seconds + 3600 * n));
    case Interval::Minute:
      return Variant(serialOf(start.day, start.seconds + 60 * n));
    case Interval::Second:
      return Variant(serialOf(start.day, start.seconds + n));
  }
  const int64_t index = int64_t{p.year} * 12 + (p.month - 1) + months;
  if (index < 100 * 12 || index >= 10000 * 12) invalidCall();
  const int year = static_cast<int>(index / 12);
  const int month = static_cast<int>(index % 12) + 1;
  const int day = std::min(p.day, daysInMonth(year, month));
  return Variant(makeDate(year, month, day, p.hour, p.minute, p.second));
}

// DateDiff(interval, date1, date2[, firstDayOfWeek[, firstWeekOfYear]]): the number of interval
// boundaries crossed from date1 to date2 ("yyyy" from 31 December to 1 January is 1; "ww"
// counts first days of the week, "w" whole weeks).
Variant callDateDiff(Args a) {
  const Interval interval = intervalArgument(a[0]);
  const int firstDay = firstDayArgument(a, 3);
  (void)firstWeekArgument(a, 4);
  if (a[1].isNull() || a[2].isNull()) return Variant::null();
  const Date date1 = CDate(a[1]);
  const Date date2 = CDate(a[2]);
  const DayAndTime x = dayAndTimeOf(date1);
  const DayAndTime y = dayAndTimeOf(date2);
  const int64_t days = y.day - x.day;
  int64_t result = 0;
  switch (interval) {
    case Interval::Year:
      result = y.parts.year - x.parts.year;
      break;
    case Interval::Quarter:
      result = (int64_t{y.parts.year} * 4 + (y.parts.month - 1) / 3) -
               (int64_t{x.parts.year} * 4 + (x.parts.month - 1) / 3);
      break;
    case Interval::Month:
      result = (int64_t{y.parts.year} * 12 + y.parts.month) -
               (int64_t{x.parts.year} * 12 + x.parts.month);
      break;
    case Interval::DayOfYear:
    case Interval::Day:
      result = days;
      break;
    case Interval::Weekday:
      result = days / 7;
      break;
    case Interval::Week: {
      const int64_t start1 = x.day - (Weekday(date1, firstDay) - 1);
      const int64_t start2 = y.day - (Weekday(date2, firstDay) - 1);
      result = (start2 - start1) / 7;
      break;
    }
    case Interval::Hour:
      result = days * 24 + (y.seconds / 3600 - x.seconds / 3600);
      break;
    case Interval::Minute:
      result = days * 1440 + (y.seconds / 60 - x.seconds / 60);
      break;
    case Interval::Second:
      result = days * kSecondsPerDay + (y.seconds - x.seconds);
      break;
  }
  if (result < INT32_MIN || result > INT32_MAX) raiseRuntimeError(vb_error::kOverflow);
  return Variant(static_cast<int32_t>(result));
}

// DatePart(interval, date[, firstDayOfWeek[, firstWeekOfYear]]) as an Integer.
Variant callDatePart(Args a) {
  const Interval interval = intervalArgument(a[0]);
  const int firstDay = firstDayArgument(a, 2);
  const int firstWeek = firstWeekArgument(a, 3);
  if (a[1].isNull()) return a[1];
  const Date date = CDate(a[1]);
  const DateParts p = splitDate(date);
  int result = 0;
  switch (interval) {
    case Interval::Year:
      result = p.year;
      break;
    case Interval::Quarter:
      result = (p.month - 1) / 3 + 1;
      break;
    case Interval::Month:
      result = p.month;
      break;
    case Interval::DayOfYear:
      result = static_cast<int>(ravelin::detail::dayNumberOf(p.year, p.month, p.day) -
                                ravelin::detail::dayNumberOf(p.year, 1, 1)) +
               1;
      break;
    case Interval::Day:
      result = p.day;
      break;
    case Interval::Weekday:
      result = Weekday(date, firstDay);
      break;
    case Interval::Week:
      result = WeekOfYear(date, firstDay, firstWeek);
      break;
    case Interval::Hour:
      result = p.hour;
      break;
    case Interval::Minute:
      result = p.minute;
      break;
    case Interval::Second:
      result = p.second;
      break;
  }
  return Variant(static_cast<int16_t>(result));
}

// One part of a date argument as an Integer; Null gives Null.
template <int DateParts::*kPart>
Variant datePartOf(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(static_cast<int16_t>(splitDate(CDate(a[0])).*kPart));
}

Variant callWeekday(Args a) {
  const int firstDay = firstDayArgument(a, 1);
  if (a[0].isNull()) return a[0];
  return Variant(static_cast<int16_t>(Weekday(CDate(a[0]), firstDay)));
}

// WeekdayName(weekday[, abbreviate[, firstDayOfWeek]]): weekday 1..7 counted from the first
// day of the week (Sunday by default), in the locale's language.
Variant callWeekdayName(Args a) {
  const int32_t weekday = CLng(a[0]);
  const bool abbreviate = isGiven(a, 1) && CBool(a[1]);
  int firstDay = firstDayArgument(a, 2);
  if (firstDay == vbUseSystemDayOfWeek) firstDay = vbSunday;
  if (weekday < 1 || weekday > 7) invalidCall();
  const auto index = static_cast<std::size_t>((weekday - 1 + firstDay - 1) % 7);
  const Locale& locale = currentLocale();
  return Variant(abbreviate ? locale.abbreviatedDayNames[index] : locale.dayNames[index]);
}

Variant callMonthName(Args a) {
  const int32_t month = CLng(a[0]);
  const bool abbreviate = isGiven(a, 1) && CBool(a[1]);
  if (month < 1 || month > 12) invalidCall();
  const auto index = static_cast<std::size_t>(month - 1);
  const Locale& locale = currentLocale();
  return Variant(abbreviate ? locale.abbreviatedMonthNames[index] : locale.monthNames[index]);
}

// The most units one unit of a format can write: "c" writes a whole date and time.
constexpr std::size_t kMaxFormatGrowth = 32;

// Format(value[, format[, firstDayOfWeek[, firstWeekOfYear]]]). A format long enough that its
// expansion could pass the text limit raises 14 before it is applied; so does a longer result.
Variant callFormat(Args a) {
  const String format = isGiven(a, 1) ? textArgument(a[1]) : String();
  checkTextLength(format.size() * kMaxFormatGrowth);
  const int firstDay = firstDayArgument(a, 2);
  const int firstWeek = firstWeekArgument(a, 3);
  String result = Format(a[0], format, firstDay, firstWeek);
  checkTextLength(result.size());
  return Variant(std::move(result));
}

// FormatDateTime(date[, namedFormat]): 0 general (as CStr), 1 long date, 2 short date, 3 long
// time, 4 short time (24-hour hh:mm).
Variant callFormatDateTime(Args a) {
  static constexpr StringView kFormats[] = {u"", u"Long Date", u"Short Date", u"Long Time",
                                            u"hh:nn"};
  const int32_t named = longArgument(a, 1, 0);
  if (named < 0 || named > 4) invalidCall();
  const Date date = CDate(a[0]);
  if (named == 0) return Variant(textOfDate(date));
  return Variant(Format(Variant(date), kFormats[named]));
}

// The tristate options of FormatNumber: -1 True, 0 False, -2 the locale's default.
bool tristateArgument(Args a, std::size_t i, bool localeDefault) {
  const int32_t value = longArgument(a, i, -2);
  if (value == -2) return localeDefault;
  if (value != -1 && value != 0) invalidCall();
  return value == -1;
}

// The number section of FormatNumber, FormatPercent and FormatCurrency, built from their
// digits, leading-digit and grouping options (arguments 1, 2 and 4).
String numberSection(Args a) {
  const int32_t digits = longArgument(a, 1, -1);
  if (digits < -1 || digits > 255) invalidCall();
  const bool leadingDigit = tristateArgument(a, 2, true);
  const bool grouping = tristateArgument(a, 4, true);
  String section = grouping ? (leadingDigit ? u"#,##0" : u"#,###") : (leadingDigit ? u"0" : u"#");
  const int32_t decimals = digits == -1 ? 2 : digits;
  if (decimals > 0) section += u"." + String(static_cast<std::size_t>(decimals), u'0');
  return section;
}

// The value as a number (13 for text that is no number).
Variant numberArgument(Args a) {
  return a[0].isNumber() ? a[0] : Variant(CDbl(a[0]));
}

// FormatNumber and FormatPercent: a user format built from the options, applied to the value.
Variant formatNumberWith(Args a, StringView suffix) {
  const String section = numberSection(a) + String(suffix);
  const bool parentheses = tristateArgument(a, 3, false);
  String format = section;
  if (parentheses) format += u";(" + section + u")";
  return Variant(Format(numberArgument(a), format));
}

Variant callFormatNumber(Args a) {
  return formatNumberWith(a, u"");
}
Variant callFormatPercent(Args a) {
  return formatNumberWith(a, u"%");
}

// FormatCurrency: the same options, with the locale's currency symbol where the named format
// Currency puts it; negatives go in parentheses by default where the locale writes them so.
Variant callFormatCurrency(Args a) {
  const CurrencyFormat currency = currencyFormatOf(currentLocale(), numberSection(a));
  const bool parentheses = tristateArgument(a, 3, currency.parentheses);
  return Variant(Format(numberArgument(a), currency.text(parentheses)));
}

constexpr Builtin kTable[] = {
    {u"Date", 0, 0, callDate},
    {u"DateAdd", 3, 3, callDateAdd},
    {u"DateDiff", 3, 5, callDateDiff},
    {u"DatePart", 2, 4, callDatePart},
    {u"DateSerial", 3, 3, callDateSerial},
    {u"DateValue", 1, 1, callDateValue},
    {u"Day", 1, 1, datePartOf<&DateParts::day>},
    {u"Format", 1, 4, callFormat},
    {u"FormatCurrency", 1, 5, callFormatCurrency},
    {u"FormatDateTime", 1, 2, callFormatDateTime},
    {u"FormatNumber", 1, 5, callFormatNumber},
    {u"FormatPercent", 1, 5, callFormatPercent},
    {u"Hour", 1, 1, datePartOf<&DateParts::hour>},
    {u"Minute", 1, 1, datePartOf<&DateParts::minute>},
    {u"Month", 1, 1, datePartOf<&DateParts::month>},
    {u"MonthName", 1, 2, callMonthName},
    {u"Now", 0, 0, callNow},
    {u"Second", 1, 1, datePartOf<&DateParts::second>},
    {u"Time", 0, 0, callTime},
    {u"Timer", 0, 0, callTimer},
    {u"TimeSerial", 3, 3, callTimeSerial},
    {u"TimeValue", 1, 1, callTimeValue},
    {u"Weekday", 1, 2, callWeekday},
    {u"WeekdayName", 1, 3, callWeekdayName},
    {u"Year", 1, 1, datePartOf<&DateParts::year>},
};
static_assert(isSortedByName(kTable));

}  // namespace

std::span<const Builtin> dateBuiltins() {
  return kTable;
}

}  // namespace ravelin::script::detail

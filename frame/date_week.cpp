// Day of the week and week of the year, with the runtime's first-day and first-week options.
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

namespace {

// The option value with "system" replaced by its en-US meaning; raises 5 when out of range.
int checkedFirstDay(int firstDayOfWeek) {
  if (firstDayOfWeek < vbUseSystemDayOfWeek || firstDayOfWeek > vbSaturday) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  return firstDayOfWeek == vbUseSystemDayOfWeek ? vbSunday : firstDayOfWeek;
}

int checkedFirstWeek(int firstWeekOfYear) {
  if (firstWeekOfYear < vbUseSystem || firstWeekOfYear > vbFirstFullWeek) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  return firstWeekOfYear == vbUseSystem ? vbFirstJan1 : firstWeekOfYear;
}

// 1 Sunday .. 7 Saturday of a serial day number (day 0, 30 December 1899, was a Saturday).
int dayOfWeekOf(int64_t dayNumber) {
  const int64_t rest = (dayNumber + 6) % 7;
  return static_cast<int>(rest < 0 ? rest + 7 : rest) + 1;
}

// The serial day number on which week 1 of the year starts.
int64_t weekOneStart(int64_t year, int firstDay, int firstWeek) {
  const int64_t jan1 = detail::dayNumberOf(year, 1, 1);
  const int offset = (dayOfWeekOf(jan1) - firstDay + 7) % 7;  // days from week start to 1 Jan
  switch (firstWeek) {
    case vbFirstFourDays:
      return offset <= 3 ? jan1 - offset : jan1 - offset + 7;
    case vbFirstFullWeek:
      return offset == 0 ? jan1 : jan1 - offset + 7;
    default:
      return jan1 - offset;
  }
}

}  // namespace

int Weekday(Date date, int firstDayOfWeek) {
  const int firstDay = checkedFirstDay(firstDayOfWeek);
  return (splitDate(date).dayOfWeek - firstDay + 7) % 7 + 1;
}

int WeekOfYear(Date date, int firstDayOfWeek, int firstWeekOfYear) {
  const int firstDay = checkedFirstDay(firstDayOfWeek);
  const int firstWeek = checkedFirstWeek(firstWeekOfYear);
  const DateParts parts = splitDate(date);
  const int64_t day = detail::dayNumberOf(parts.year, parts.month, parts.day);

  const int64_t start = weekOneStart(parts.year, firstDay, firstWeek);
  if (day < start) {
    // Before week 1: the last week of the previous year.
    return static_cast<int>((day - weekOneStart(parts.year - 1, firstDay, firstWeek)) / 7) + 1;
  }
  if (firstWeek == vbFirstFourDays && day >= weekOneStart(parts.year + 1, firstDay, firstWeek)) {
    return 1;
  }
  return static_cast<int>((day - start) / 7) + 1;
}

}  // namespace ravelin

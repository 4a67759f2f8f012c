#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/numeric/date_functions.hpp>

namespace ravelin {
namespace {

// One step of 16-bit arithmetic: the value as an Integer, or 6 when it does not fit.
int16_t toInteger(int32_t value) {
  return CInt(Variant(value));
}

// Date + days as the runtime adds them: on the raw serial, 6 when the result is no date.
Date addDays(Date date, double days) {
  const double serial = date.serial + days;
  if (!isValidDateSerial(serial)) raiseRuntimeError(vb_error::kOverflow);
  return Date{serial};
}

int16_t daysInMonth(int month, int year) {
  switch (month) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 10:
    case 12:
      return 31;
    case 4:
    case 6:
    case 9:
    case 11:
      return 30;
    case 2:
      return (year & 3) == 0 ? 29 : 28;
    default:
      return 0;
  }
}

}  // namespace

bool DateFunctions::IsLastDayOfMonth(Date Value) const {
  return splitDate(addDays(Value, 1.0)).day == 1;
}

int16_t DateFunctions::GetLastDayOfMonth(int16_t intMonth, int16_t intYear) const {
  return daysInMonth(intMonth, intYear);
}

int16_t DateFunctions::GetNextLastDayOfMonth(int16_t intMonth, int16_t intYear) const {
  const int16_t next = toInteger(intMonth + 1);
  return daysInMonth(next == 13 ? 1 : next, intYear);
}

int16_t DateFunctions::DayOfYear(Date inDate) const {
  const Date newYear = makeDate(splitDate(inDate).year, 1, 1);
  return CInt(Variant(roundHalfEven(inDate.serial - newYear.serial + 1.0)));
}

int16_t DateFunctions::GetWeekNumber(Date inDate) const {
  return static_cast<int16_t>(WeekOfYear(inDate, vbMonday, vbFirstFourDays));
}

Date DateFunctions::GetDateByWeekNumber(int16_t wkNumber, int16_t intYear) const {
  const Date newYear = DateSerial(intYear, 1, 1);
  const int fromMonday = Weekday(newYear, vbMonday) - 1;  // Monday 0 .. Sunday 6
  if (wkNumber <= 0) return Date{};

  const bool startsWeekOne = GetWeekNumber(newYear) == 1;
  // Week 1 begins on the Monday on or before 1 January when that day is in week 1, otherwise
  // on the Monday after it; each later week is 7 days on.
  const int16_t weeks = startsWeekOne ? toInteger(wkNumber - 1) : wkNumber;
  const int16_t days = toInteger(toInteger(weeks * 7) - fromMonday);
  return addDays(newYear, days);
}

ClassInfo DateFunctions::describe() {
  return ClassBuilder<DateFunctions>(kClassName)
      .method(u"IsLastDayOfMonth", &DateFunctions::IsLastDayOfMonth, {u"Value"})
      .method(u"GetLastDayOfMonth", &DateFunctions::GetLastDayOfMonth, {u"intMonth", u"intYear"})
      .method(u"DayOfYear", &DateFunctions::DayOfYear, {u"inDate"})
      .method(u"GetWeekNumber", &DateFunctions::GetWeekNumber, {u"inDate"})
      .method(u"GetDateByWeekNumber", &DateFunctions::GetDateByWeekNumber,
              {u"wkNumber", u"intYear"})
      .method(u"GetNextLastDayOfMonth", &DateFunctions::GetNextLastDayOfMonth,
              {u"intMonth", u"intYear"})
      .build();
}

}  // namespace ravelin

// DateFunctions: the calendar rules the suite uses for month ends, day-of-year counts and week
// numbers. Stateless; every member works on its arguments alone.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class DateFunctions : public PublicClass<DateFunctions> {
 public:
  static constexpr StringView kClassName = u"DateFunctions";

  DateFunctions() = default;

  // The member table late-bound callers see.
  static ClassInfo describe();

  // True when the day after Value is the first of a month. Raises 6 when Value is the last day
  // of the calendar (the day after it is no date).
  bool IsLastDayOfMonth(Date Value) const;

  // The number of days in month intMonth: February has 29 days in every year divisible by 4
  // (no century rule, so 1900 and 2100 give 29); a month outside 1..12 gives 0.
  int16_t GetLastDayOfMonth(int16_t intMonth, int16_t intYear) const;

  // The number of days in the month after intMonth (12 wraps to January), February counted in
  // intYear itself. Raises 6 when intMonth + 1 is beyond the Integer range.
  int16_t GetNextLastDayOfMonth(int16_t intMonth, int16_t intYear) const;

  // inDate minus 1 January of its year, plus 1, rounded half to even: a time after noon counts
  // one day more (1 January 18:00 gives 2).
  int16_t DayOfYear(Date inDate) const;

  // The week of the year with Monday first and week 1 the first week with four days in the year
  // (ISO 8601): early-January days may be in week 52 or 53 of the year before, late-December
  // days in week 1 of the next.
  int16_t GetWeekNumber(Date inDate) const;

  // The Monday of week wkNumber of intYear, by the week rule of GetWeekNumber; 0 or a negative
  // week gives the zero date, a week past the year's last a Monday of the next year. The day
  // counts are Integer arithmetic: wkNumber * 7 beyond 32767 raises 6, as does a result past
  // the calendar; a year DateSerial refuses raises 5.
  Date GetDateByWeekNumber(int16_t wkNumber, int16_t intYear) const;
};

}  // namespace ravelin

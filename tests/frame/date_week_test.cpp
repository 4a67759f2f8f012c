#include <gtest/gtest.h>

#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

TEST(Weekday, CountsFromTheFirstDayOfTheWeek) {
  struct Row {
    double serial;
    int firstDay;
    int expected;  // 0: raises 5
  };
  const Row rows[] = {
      {40239.5, vbSunday, 3},  // Tuesday 2 March 2010
      {40239.5, vbUseSystemDayOfWeek, 3},
      {40239.5, vbMonday, 2},
      {40239.5, vbWednesday, 7},
      {40239.5, vbSaturday, 4},
      {0, vbSunday, 7},                    // Saturday 30 December 1899
      {-1.25, vbSunday, 6},                // Friday 29 December 1899
      {1 + 86399.6 / 86400, vbSunday, 2},  // rounds to Monday 1 January 1900
      {40239, -1, 0},
      {40239, 8, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.serial << " first day " << row.firstDay);
    if (row.expected == 0) {
      EXPECT_EQ(errorNumberOf([&] { Weekday(Date{row.serial}, row.firstDay); }), 5);
    } else {
      EXPECT_EQ(Weekday(Date{row.serial}, row.firstDay), row.expected);
    }
  }
}

// The days between 1900 and 2101 are all checked against a model below; these rows are the
// documented deviation and the ends of the range.
TEST(WeekOfYear, MondayAndFourDaysIsIso8601AroundTheNewYear) {
  struct Row {
    int year, month, day;
    int week;
  };
  const Row rows[] = {
      {2003, 12, 29, 1},  // a Monday the runtime wrongly gives 53
      {100, 1, 1, 53},    // the last week of year 99, before the range
      {9999, 12, 31, 52},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.year << "-" << row.month << "-" << row.day);
    EXPECT_EQ(WeekOfYear(makeDate(row.year, row.month, row.day), vbMonday, vbFirstFourDays),
              row.week);
  }
}

// Every day of two centuries, every first day of the week and every first-week rule, against
// models the test keeps itself: counting week starts from 1 January (first full week, first
// 1 January week) and the middle day of the week deciding its year (first four-day week).
TEST(WeekOfYear, AgreesWithCountedWeeksForEveryOption) {
  const int64_t first = detail::dayNumberOf(1899, 1, 1);
  const int64_t last = detail::dayNumberOf(2101, 12, 31);
  for (int firstDay = vbSunday; firstDay <= vbSaturday; ++firstDay) {
    int jan1Week = 0;
    int fullWeek = 0;
    bool fullWeekStarted = false;
    int mismatches = 0;
    for (int64_t day = first; day <= last; ++day) {
      const Date date{static_cast<double>(day)};
      const DateParts parts = splitDate(date);
      const bool weekStarts = parts.dayOfWeek == firstDay;
      if (parts.month == 1 && parts.day == 1) {
        jan1Week = 1;
        fullWeekStarted = false;
      } else if (weekStarts) {
        ++jan1Week;
      }
      if (weekStarts) {
        fullWeek = fullWeekStarted ? fullWeek + 1 : 1;
        fullWeekStarted = true;
      }
      const int64_t middle = day - (parts.dayOfWeek - firstDay + 7) % 7 + 3;
      const DateParts middleParts = splitDate(Date{static_cast<double>(middle)});
      const int fourDayWeek =
          static_cast<int>((middle - detail::dayNumberOf(middleParts.year, 1, 1)) / 7) + 1;

      if (parts.year < 1900) continue;  // the counters need one year to settle
      const int expected[] = {jan1Week, fourDayWeek, fullWeek};
      for (int rule = vbFirstJan1; rule <= vbFirstFullWeek; ++rule) {
        const int week = WeekOfYear(date, firstDay, rule);
        if (week != expected[rule - 1] && ++mismatches <= 5) {
          ADD_FAILURE() << parts.year << "-" << parts.month << "-" << parts.day << " first day "
                        << firstDay << " rule " << rule << ": " << week << " expected "
                        << expected[rule - 1];
        }
      }
    }
  }
}

TEST(WeekOfYear, SystemOptionsAndInvalidOptions) {
  const Date lastOf2000 = makeDate(2000, 12, 31);  // a Sunday starting a 54th week
  EXPECT_EQ(WeekOfYear(lastOf2000), 54);
  EXPECT_EQ(WeekOfYear(lastOf2000, vbUseSystemDayOfWeek, vbUseSystem), 54);
  const struct {
    int firstDay, firstWeek;
  } invalid[] = {{-1, vbFirstJan1}, {8, vbFirstJan1}, {vbSunday, -1}, {vbSunday, 4}};
  for (const auto& options : invalid) {
    SCOPED_TRACE(testing::Message() << options.firstDay << ", " << options.firstWeek);
    EXPECT_EQ(errorNumberOf([&] { WeekOfYear(lastOf2000, options.firstDay, options.firstWeek); }),
              5);
  }
  EXPECT_EQ(errorNumberOf([] { WeekOfYear(Date{3e6}); }), 5);
}

}  // namespace
}  // namespace ravelin

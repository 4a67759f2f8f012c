#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();  // in tables: raises 5
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

double seconds(int h, int m, int s) {
  return (h * 3600 + m * 60 + s) / 86400.0;
}

TEST(SplitDate, SerialsGiveTheirCalendarParts) {
  const struct {
    double serial;
    DateParts parts;
  } rows[] = {
      {0, {1899, 12, 30, 0, 0, 0, 7}},
      {2.525, {1900, 1, 1, 12, 36, 0, 2}},
      {40239 + seconds(14, 5, 9), {2010, 3, 2, 14, 5, 9, 3}},
      // Negative serials: the day truncates toward zero, the fraction counts forward.
      {-1.25, {1899, 12, 29, 6, 0, 0, 6}},
      {-657434.9, {100, 1, 1, 21, 36, 0, 6}},
      {2958465, {9999, 12, 31, 0, 0, 0, 6}},
      // More than half a second rounds up, into the next day if need be, but not past the end.
      {1 + 0.4 / 86400, {1899, 12, 31, 0, 0, 0, 1}},
      {1 + 0.6 / 86400, {1899, 12, 31, 0, 0, 1, 1}},
      {1 + 86399.6 / 86400, {1900, 1, 1, 0, 0, 0, 2}},
      {-1 - 86399.6 / 86400, {1899, 12, 30, 0, 0, 0, 7}},
      {2958465 + 86399.6 / 86400, {9999, 12, 31, 23, 59, 59, 6}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.serial);
    EXPECT_EQ(splitDate(Date{row.serial}), row.parts);
  }
  for (const double serial :
       {kNaN, std::numeric_limits<double>::infinity(), -657435.0, 2958466.0}) {
    SCOPED_TRACE(serial);
    EXPECT_EQ(errorNumberOf([&] { splitDate(Date{serial}); }), 5);
  }
}

// Walks every day of the range with a calendar kept by the test itself and checks that
// splitDate and makeDate agree with it in both directions.
TEST(SplitDate, EveryDayOfTheRangeFollowsTheGregorianCalendar) {
  const int monthDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  int year = 100, month = 1, day = 1, dayOfWeek = 6;  // 1 January 100 was a Friday
  int mismatches = 0;
  for (int serial = -657434; serial <= 2958465; ++serial) {
    const DateParts expected{year, month, day, 0, 0, 0, dayOfWeek};
    if ((splitDate(Date{static_cast<double>(serial)}) != expected ||
         makeDate(year, month, day).serial != serial) &&
        ++mismatches <= 5) {
      ADD_FAILURE() << "serial " << serial << " expected " << year << "-" << month << "-" << day;
    }
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    dayOfWeek = dayOfWeek % 7 + 1;
    if (++day > (month == 2 && leap ? 29 : monthDays[month - 1])) {
      day = 1;
      if (++month > 12) {
        month = 1;
        ++year;
      }
    }
  }
  EXPECT_EQ(year, 10000);
}

TEST(MakeDate, PartsGiveSerialsAndInvalidPartsRaise5) {
  const struct {
    int year, month, day, hour, minute, second;
    double serial;
  } rows[] = {
      {1899, 12, 29, 6, 0, 0, -1.25},  // the time is subtracted below zero
      {1765, 4, 24, 5, 45, 36, -49192 - seconds(5, 45, 36)},
      {9999, 12, 31, 23, 59, 59, 2958465 + seconds(23, 59, 59)},
      {1900, 2, 29, 0, 0, 0, kNaN},
      {2010, 4, 31, 0, 0, 0, kNaN},
      {2010, 13, 1, 0, 0, 0, kNaN},
      {2010, 1, 0, 0, 0, 0, kNaN},
      {99, 12, 31, 0, 0, 0, kNaN},
      {10000, 1, 1, 0, 0, 0, kNaN},
      {2010, 1, 1, 24, 0, 0, kNaN},
      {2010, 1, 1, 0, 60, 0, kNaN},
      {2010, 1, 1, 0, 0, -1, kNaN},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.year << "-" << row.month << "-" << row.day << " "
                                    << row.hour << ":" << row.minute << ":" << row.second);
    auto make = [&] {
      return makeDate(row.year, row.month, row.day, row.hour, row.minute, row.second);
    };
    if (std::isnan(row.serial)) {
      EXPECT_EQ(errorNumberOf(make), 5);
    } else {
      EXPECT_DOUBLE_EQ(make().serial, row.serial);
    }
  }
}

TEST(DateSerial, MonthsAndDaysCarryAndTwoDigitYearsUseTheWindow) {
  const struct {
    int year, month, day;
    double serial;
  } rows[] = {
      {2010, 13, 1, 40544},        // 2011-01-01
      {2010, 0, 1, 40148},         // 2009-12-01
      {2010, 3, 0, 40237},         // 2010-02-28
      {2010, 1, 400, 40578},       // 2011-02-04
      {2010, -13, 1, 39753},       // 2008-11-01
      {1900, 2, 29, 61},           // 1900-03-01
      {29, 1, 1, 47119},           // 2029-01-01
      {30, 1, 1, 10959},           // 1930-01-01
      {100, 1, 1, -657434},        // year 100 as written
      {100, 1, 3000000, 2342565},  // 8313-09-21
      {9999, 12, 31, 2958465},
      {100, 1, 0, kNaN},
      {9999, 12, 32, kNaN},
      {-1, 1, 1, kNaN},
      {kIntMax, kIntMax, kIntMax, kNaN},
      {kIntMin, kIntMin, kIntMin, kNaN},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.year << ", " << row.month << ", " << row.day);
    if (std::isnan(row.serial)) {
      EXPECT_EQ(errorNumberOf([&] { DateSerial(row.year, row.month, row.day); }), 5);
    } else {
      EXPECT_EQ(DateSerial(row.year, row.month, row.day).serial, row.serial);
    }
  }
}

TEST(TimeSerial, IsTheTotalOfSecondsOverADay) {
  const struct {
    int hour, minute, second;
    double serial;
  } rows[] = {
      {25, 0, 0, 25.0 / 24}, {0, -1, 0, -60.0 / 86400},         {6, -15, 0, 20700.0 / 86400},
      {0, 0, 86400, 1.0},    {kIntMax, kIntMax, kIntMax, kNaN}, {kIntMin, 0, 0, kNaN},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.hour << ", " << row.minute << ", " << row.second);
    if (std::isnan(row.serial)) {
      EXPECT_EQ(errorNumberOf([&] { TimeSerial(row.hour, row.minute, row.second); }), 5);
    } else {
      EXPECT_DOUBLE_EQ(TimeSerial(row.hour, row.minute, row.second).serial, row.serial);
    }
  }
}

}  // namespace
}  // namespace ravelin

#include <gtest/gtest.h>

#include <ravelin/frame/class_registry.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/numeric/date_functions.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

const DateFunctions kDates;

Date at(int year, int month, int day, int hour = 0) {
  return makeDate(year, month, day, hour);
}
Date noon(int year, int month, int day) {
  return at(year, month, day, 12);
}

TEST(DateFunctionsTest, MonthLengthsUseTheDivisibleByFourRule) {
  struct Row {
    int16_t month, year, last, nextLast;
  };
  const Row rows[] = {
      {1, 2010, 31, 28}, {2, 2011, 28, 31},  {2, 2012, 29, 31},  {2, 1900, 29, 31},
      {2, 2100, 29, 31}, {2, 2000, 29, 31},  {1, 2012, 31, 29},  {1, 1900, 31, 29},
      {4, 2010, 30, 31}, {11, 2010, 30, 31}, {12, 2010, 31, 31}, {2, -4, 29, 31},
      {1, -1, 31, 28},   {0, 2010, 0, 31},   {13, 2010, 0, 0},   {-1, 2010, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.month << "/" << row.year);
    EXPECT_EQ(kDates.GetLastDayOfMonth(row.month, row.year), row.last);
    EXPECT_EQ(kDates.GetNextLastDayOfMonth(row.month, row.year), row.nextLast);
  }
  EXPECT_EQ(errorNumberOf([] { kDates.GetNextLastDayOfMonth(INT16_MAX, 2010); }), 6);
}

TEST(DateFunctionsTest, LastDayOfMonthFollowsTheCalendar) {
  struct Row {
    Date date;
    bool last;
  };
  const Row rows[] = {
      {at(2011, 2, 28), true},    {at(2012, 2, 28), false},    {at(2012, 2, 29), true},
      {at(1900, 2, 28), true},    {at(2100, 2, 28), true},     {at(2010, 4, 30), true},
      {at(2010, 12, 31), true},   {at(2011, 2, 28, 23), true}, {at(1899, 12, 29, 6), false},
      {at(1800, 1, 31, 6), true},
  };
  // The calendar has no 29 February 1900 or 2100, whatever GetLastDayOfMonth says.
  for (const auto& row : rows) {
    SCOPED_TRACE(row.date.serial);
    EXPECT_EQ(kDates.IsLastDayOfMonth(row.date), row.last);
  }
  EXPECT_EQ(errorNumberOf([] { kDates.IsLastDayOfMonth(at(9999, 12, 31)); }), 6);
}

TEST(DateFunctionsTest, DayOfYearRoundsTheTimeHalfToEven) {
  struct Row {
    Date date;
    int16_t day;
  };
  const Row rows[] = {
      {at(2012, 12, 31), 366},     {at(2011, 12, 31), 365}, {at(1900, 12, 31), 365},
      {at(2010, 1, 1), 1},         {at(2012, 3, 1), 61},    {at(2010, 1, 1, 18), 2},
      {noon(2010, 1, 1), 2},       {noon(2010, 1, 2), 2},   {makeDate(2010, 1, 1, 11, 59), 1},
      {at(9999, 12, 31, 23), 366}, {at(1800, 1, 1, 18), 0},
  };
  // The last row: before 1900 the time counts back from the day's serial, so the raw
  // difference from 1 January is -0.75.
  for (const auto& row : rows) {
    SCOPED_TRACE(row.date.serial);
    EXPECT_EQ(kDates.DayOfYear(row.date), row.day);
  }
}

TEST(DateFunctionsTest, WeekNumbersStartOnMondayWithTheFirstFourDayWeek) {
  struct Row {
    Date date;
    int16_t week;
  };
  const Row rows[] = {
      {at(2010, 1, 1), 53},   {at(2010, 1, 4), 1},    {at(2011, 1, 1), 52},
      {at(2012, 1, 1), 52},   {at(2015, 1, 1), 1},    {at(2021, 1, 3), 53},
      {at(2010, 12, 31), 52}, {at(2015, 12, 31), 53}, {at(2010, 6, 15, 20), 24},
      {at(2018, 12, 31), 1},  {at(2007, 12, 31), 1},  {at(2019, 12, 30), 1},
      {at(2019, 12, 31), 1},  {at(2003, 12, 29), 1},  {at(2003, 12, 31), 1},
      {at(2003, 12, 28), 52},
  };
  // From 2018-12-31 on: 31 December on a Monday, Tuesday or Wednesday puts the last days in
  // the next year's week 1, also when the next year is a leap year.
  for (const auto& row : rows) {
    SCOPED_TRACE(row.date.serial);
    EXPECT_EQ(kDates.GetWeekNumber(row.date), row.week);
  }
}

TEST(DateFunctionsTest, DateByWeekNumberIsTheMondayOfThatWeek) {
  struct Row {
    int16_t week, year;
    Date monday;
  };
  const Row rows[] = {
      {1, 2010, at(2010, 1, 4)}, {1, 2009, at(2008, 12, 29)}, {2, 2010, at(2010, 1, 11)},
      {2, 2009, at(2009, 1, 5)}, {10, 2015, at(2015, 3, 2)},  {53, 2009, at(2009, 12, 28)},
      {1, 2018, at(2018, 1, 1)}, {53, 2010, at(2011, 1, 3)},  {0, 2010, Date{}},
      {-3, 2010, Date{}},
  };
  // No upper check: 2010 has 52 weeks, its week 53 is the first Monday of 2011.
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.week << "/" << row.year);
    EXPECT_EQ(kDates.GetDateByWeekNumber(row.week, row.year), row.monday);
  }
}

TEST(DateFunctionsTest, DateByWeekNumberErrorsAreThePlatformsOwn) {
  struct Row {
    int16_t week, year;
    int32_t error;
  };
  // 2010 begins in the previous year's last week, so week n is n * 7 days on: 4681 * 7 is
  // 32767, 4682 * 7 overflows. 2009 begins in week 1, so the product is (n - 1) * 7. Past
  // 31 December 9999 the date addition overflows; DateSerial refuses the year 10000 (5) before
  // the week is looked at.
  const Row rows[] = {
      {4681, 2010, 0}, {4682, 2010, 6}, {4682, 2009, 0}, {4683, 2009, 6},
      {60, 9999, 6},   {1, 10000, 5},   {0, 10000, 5},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.week << "/" << row.year);
    EXPECT_EQ(errorNumberOf([&] { kDates.GetDateByWeekNumber(row.week, row.year); }), row.error);
  }
}

TEST(DateFunctionsTest, MembersAreCallableByNameWithConvertedArguments) {
  ClassRegistry registry;
  registry.add<DateFunctions>();
  ObjectRef dates = registry.create(u"DateFunctions");
  ASSERT_NE(dates, nullptr);
  EXPECT_EQ(dates->className(), u"DateFunctions");

  auto call = [&](StringView name, std::vector<CallArgument> arguments) {
    return callMember(dates, name, MemberKind::Method, arguments);
  };
  EXPECT_EQ(call(u"getlastdayofmonth", {{Variant(u"2")}, {Variant(1900.5)}}), Variant(int16_t{29}));
  EXPECT_EQ(call(u"GetWeekNumber", {{Variant(u"2010-01-01")}}), Variant(int16_t{53}));
  EXPECT_EQ(call(u"GetDateByWeekNumber", {{Variant(1)}, {Variant(2009)}}),
            Variant(at(2008, 12, 29)));
  EXPECT_EQ(call(u"IsLastDayOfMonth", {{Variant(at(2011, 2, 28))}}), Variant(true));

  const ClassInfo* info = registry.findClass(u"DateFunctions");
  const MemberInfo* byWeek = info->find(u"GetDateByWeekNumber", MemberKind::Method);
  ASSERT_NE(byWeek, nullptr);
  ASSERT_EQ(byWeek->parameters.size(), 2u);
  EXPECT_EQ(byWeek->parameters[0].name, u"wkNumber");
  EXPECT_EQ(byWeek->parameters[0].type, VarType::Integer);
  EXPECT_EQ(byWeek->resultType, VarType::Date);
}

}  // namespace
}  // namespace ravelin

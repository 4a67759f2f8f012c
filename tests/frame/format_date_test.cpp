#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

const Locale& kEnUs = *findKnownLocale(u"en-US");
const Locale& kDeDe = *findKnownLocale(u"de-DE");

struct DateCase {
  Variant value;
  const char16_t* format;
  const char16_t* expected;
  int firstDayOfWeek = vbSunday;
  int firstWeekOfYear = vbFirstJan1;
};

void expectFormats(const DateCase* begin, const DateCase* end, const Locale& locale) {
  for (const DateCase* c = begin; c != end; ++c) {
    SCOPED_TRACE(toUtf8(c->format));
    EXPECT_EQ(toUtf8(Format(c->value, c->format, c->firstDayOfWeek, c->firstWeekOfYear, locale)),
              toUtf8(c->expected));
  }
}

// 2024-01-31 13:05:09, a Wednesday.
const Date kJan31 = makeDate(2024, 1, 31, 13, 5, 9);

TEST(FormatDate, MinutesOnlyAfterAnHour) {
  const Date noonish{2.525};  // 1900-01-01 12:36
  const DateCase cases[] = {
      {noonish, u"dd mm yyyy hh:mm:ss", u"01 01 1900 12:36:00"},
      {noonish, u"mm :mm:ss", u"01 :01:00"},
      {noonish, u"hh:mm :ss:mm", u"12:36 :00:01"},
      {noonish, u"dd :mm:nn", u"01 :01:36"},
      {noonish, u"hh dd mm", u"12 01 01"},
      {Date{2.725}, u"hh:nn:ss A/P", u"05:24:00 P"},
      {kJan31, u"mm\\/dd\\/yyyy hh:mm:ss", u"01/31/2024 13:05:09"},
      {kJan31, u"YYYY-MM-DD HH:NN:SS", u"2024-01-31 13:05:09"},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
}

TEST(FormatDate, TokensNamesAndClock) {
  const Date dec30 = makeDate(2024, 12, 30);  // a Monday in ISO week 1 of 2025
  const DateCase cases[] = {
      {kJan31, u"d-m-yy", u"31-1-24"},
      {kJan31, u"ddd dddd mmm mmmm", u"Wed Wednesday Jan January"},
      {kJan31, u"dddddd", u"Wednesday, January 31, 2024"},
      {kJan31, u"c", u"1/31/2024 1:05:09 PM"},
      {kJan31, u"h:nn AM/PM", u"1:05 PM"},
      {kJan31, u"h:nn am/pm", u"1:05 pm"},
      {kJan31, u"hh a/p", u"01 p"},
      {kJan31, u"h AMPM", u"1 PM"},
      {Date{0.0}, u"h AM/PM", u"12 AM"},
      {Date{0.5}, u"h AM/PM", u"12 PM"},
      {kJan31, u"q y w", u"1 31 4"},
      {kJan31, u"w", u"3", vbMonday},
      {makeDate(2024, 12, 31), u"y", u"366"},
      {dec30, u"ww", u"53"},
      {dec30, u"ww w", u"1 1", vbMonday, vbFirstFourDays},
      {kJan31, u"\\d\\a\\y d \"at\" h", u"day 31 at 13"},
      {45322.0, u"yyyy-mm-dd", u"2024-01-31"},
      {u"abc", u"yyyy", u"abc"},
      {Variant::null(), u"yyyy", u""},
      {kJan31, u"Short Date", u"1/31/2024"},
      {kJan31, u"long date", u"Wednesday, January 31, 2024"},
      {kJan31, u"Medium Date", u"31-Jan-24"},
      {kJan31, u"Long Time", u"1:05:09 PM"},
      {kJan31, u"Medium Time", u"01:05 PM"},
      {kJan31, u"Short Time", u"13:05"},
      {kJan31, u"General Date", u"1/31/2024 1:05:09 PM"},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
  // A number outside the date range has no date to format.
  EXPECT_EQ(errorNumberOf([] { Format(1e10, u"yyyy", vbSunday, vbFirstJan1, kEnUs); }), 6);
}

TEST(FormatDate, SeparatorsFollowTheLocale) {
  const DateCase cases[] = {
      {kJan31, u"dd/mm/yyyy", u"31.01.2024"},
      {kJan31, u"dd\\/mm\\/yyyy", u"31/01/2024"},
      {kJan31, u"ddddd mmmm", u"31.01.2024 Januar"},
      {kJan31, u"ttttt", u"13:05:09"},
      {kJan31, u"Medium Time", u"13:05"},
  };
  expectFormats(std::begin(cases), std::end(cases), kDeDe);
}

}  // namespace
}  // namespace ravelin

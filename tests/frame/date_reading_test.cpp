#include <gtest/gtest.h>

#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/clock.hpp>

namespace ravelin {
namespace {

// The locales the suite runs under, with Windows' settings (German abbreviates March "Mrz").
const Locale& usEnglish() {
  return *findKnownLocale(u"en-US");
}
const Locale& brazilianPortuguese() {
  return *findKnownLocale(u"pt-BR");
}
const Locale& german() {
  return *findKnownLocale(u"de-DE");
}

// A row's expected date; year 0 means the text is no date.
struct Expected {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};
constexpr Expected kNoDate{};
constexpr Expected kTimeOnly(int hour, int minute, int second) {
  return {1899, 12, 30, hour, minute, second};
}

struct Row {
  std::u16string_view text;
  Expected expected;
};

void checkRows(const Locale& locale, std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(locale.name) + " \"" + toUtf8(row.text) + "\"");
    const Expected& e = row.expected;
    EXPECT_EQ(isDateText(row.text, locale), e.year != 0);
    try {
      const Date date = parseDate(row.text, locale);
      if (e.year == 0) {
        ADD_FAILURE() << "read as " << date.serial;
      } else {
        EXPECT_EQ(date.serial, makeDate(e.year, e.month, e.day, e.hour, e.minute, e.second).serial);
      }
    } catch (const AutomationError& error) {
      EXPECT_EQ(e.year, 0) << error.what();
      EXPECT_EQ(error.number(), 13);
    }
  }
}

// The locales' own date and time texts are read back by ReadsBackTheTextOfDates below.
TEST(ParseDate, NumbersInTheLocaleOrder) {
  checkRows(usEnglish(), {
                             {u"3.2.2010", {2010, 3, 2}},
                             {u" \t03/02/2010  ", {2010, 3, 2}},
                             {u"2010-03-02", {2010, 3, 2}},
                             {u"13/1/2010", {2010, 1, 13}},  // month 13 swaps with the day
                             {u"13/13/2010", kNoDate},
                             {u"2/30/2010", kNoDate},
                             {u"2/29/2000", {2000, 2, 29}},
                             {u"2/29/1900", kNoDate},
                             {u"3/2/29", {2029, 3, 2}},
                             {u"3/2/30", {1930, 3, 2}},
                             {u"1/1/100", {100, 1, 1}},
                             {u"12/31/9999", {9999, 12, 31}},
                             {u"1/1/099", kNoDate},
                             {u"1/1/10000", kNoDate},
                             {u"3/2010", {2010, 3, 1}},
                             {u"3//2/2010", kNoDate},
                             {u"/3/2/2010", kNoDate},
                             {u"3/2/2010.", kNoDate},
                             {u"2010", kNoDate},
                             {u"", kNoDate},
                         });
  checkRows(brazilianPortuguese(), {
                                       {u"2-3-10", {2010, 3, 2}},
                                       {u"2010-03-02", {2010, 3, 2}},
                                       {u"1/13/2010", {2010, 1, 13}},
                                   });
}

TEST(ParseDate, MonthAndDayNames) {
  checkRows(usEnglish(), {
                             {u"2 March 2010", {2010, 3, 2}},
                             {u"March 2, 2010", {2010, 3, 2}},
                             {u"Mar. 2, 2010", {2010, 3, 2}},
                             {u"2-mar-2010", {2010, 3, 2}},
                             {u"2010 March 2", {2010, 3, 2}},
                             {u"Tuesday, March 2, 2010", {2010, 3, 2}},
                             {u"March 2010", {2010, 3, 1}},
                             {u"Feb 29 2010", kNoDate},
                             {u"March", kNoDate},
                             {u"March April 2010", kNoDate},
                             {u"Marc 2 2010", kNoDate},
                             {u"2 Mars 2010", kNoDate},
                         });
  checkRows(brazilianPortuguese(), {
                                       {u"2 março 2010", {2010, 3, 2}},
                                       {u"2 MARÇO 2010", {2010, 3, 2}},
                                       {u"terça-feira, 2 março 2010", {2010, 3, 2}},
                                       {u"2 March 2010", {2010, 3, 2}},
                                   });
  checkRows(german(), {
                          {u"2. März 2010", {2010, 3, 2}},
                          {u"2.Mrz.2010", {2010, 3, 2}},
                      });
}

TEST(ParseDate, TimesAloneAndWithDates) {
  checkRows(usEnglish(), {
                             {u"14:05:09", kTimeOnly(14, 5, 9)},
                             {u"2:05 PM", kTimeOnly(14, 5, 0)},
                             {u"2:05pm", kTimeOnly(14, 5, 0)},
                             {u"2 PM", kTimeOnly(14, 0, 0)},
                             {u"12:00:00 AM", kTimeOnly(0, 0, 0)},
                             {u"12:30 PM", kTimeOnly(12, 30, 0)},
                             {u"3/2/2010 14:05:09", {2010, 3, 2, 14, 5, 9}},
                             {u"2010-03-02 14:05:09", {2010, 3, 2, 14, 5, 9}},
                             {u"14:05 3/2/2010", {2010, 3, 2, 14, 5, 0}},
                             {u"12/29/1899 6:00 AM", {1899, 12, 29, 6, 0, 0}},
                             {u"24:00", kNoDate},
                             {u"12:60", kNoDate},
                             {u"13:00 PM", kNoDate},
                             {u"14 : 05", kNoDate},
                             {u"14:05 PM PM", kNoDate},
                             {u"PM", kNoDate},
                             {u"3/2/2010 14:05 3/2/2010", kNoDate},
                             {u"3/2 PM/2010", kNoDate},
                         });
  checkRows(german(), {
                          {u"02.03.2010 14:05", {2010, 3, 2, 14, 5, 0}},
                          {u"2 PM", kTimeOnly(14, 0, 0)},  // English designators always count
                      });
}

TEST(ParseDate, MissingYearIsTheCurrentYear) {
  const int year = platform::clock()->localNow().year;
  checkRows(usEnglish(), {{u"3/2", {year, 3, 2}}, {u"March 2", {year, 3, 2}}});
  checkRows(brazilianPortuguese(), {{u"2/3", {year, 3, 2}}});
}

TEST(ParseDate, LongTextIsRejectedQuickly) {
  const Locale& us = usEnglish();
  for (const char16_t unit : {u'1', u' ', u'/', u'a', u'M'}) {
    const String text(1'000'000, unit);
    EXPECT_FALSE(isDateText(text, us));
  }
  EXPECT_FALSE(isDateText(u"3/2/2010" + String(1'000'000, u' ') + u"x", us));
  EXPECT_TRUE(isDateText(u"3/2/2010" + String(1'000'000, u' '), us));
}

TEST(ParseDate, ReadsBackTheTextOfDates) {
  for (const Locale& locale : {usEnglish(), brazilianPortuguese(), german()}) {
    SCOPED_TRACE(toUtf8(locale.name));
    int failures = 0;
    for (double serial = makeDate(1930, 1, 1).serial; serial < makeDate(2030, 1, 1).serial;
         serial += 3.0 + 7919.0 / 86400) {
      const DateParts parts = splitDate(Date{serial});
      for (const Date date :
           {makeDate(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second),
            makeDate(parts.year, parts.month, parts.day)}) {
        const String text = textOfDate(date, locale);
        if (parseDate(text, locale) != date && ++failures <= 5) ADD_FAILURE() << toUtf8(text);
      }
    }
  }
}

}  // namespace
}  // namespace ravelin

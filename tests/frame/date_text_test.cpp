#include <gtest/gtest.h>

#include <limits>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {
namespace {

// A locale the library carries, with the settings Windows has for it.
const Locale& known(StringView name) {
  return *findKnownLocale(name);
}

double at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return makeDate(year, month, day, hour, minute, second).serial;
}

TEST(TextOfDate, ShortDateAndTimeOfTheLocale) {
  const Locale& us = known(u"en-US");
  const Locale& brazil = known(u"pt-BR");
  const Locale& germany = known(u"de-DE");
  struct Row {
    double serial;
    const Locale* locale;
    std::u16string_view expected;
  };
  const Row rows[] = {
      {0, &us, u"12:00:00 AM"},  // whole part 0: the time only
      {-0.25, &us, u"6:00:00 AM"},
      {365, &us, u"12/30/1900"},
      {365.25, &us, u"12/30/1900 6:00:00 AM"},
      {-49192.24, &us, u"4/24/1765 5:45:36 AM"},
      {-657434, &us, u"1/1/100"},
      {2958465, &us, u"12/31/9999"},
      {at(2010, 3, 2, 14, 5, 9), &us, u"3/2/2010 2:05:09 PM"},
      {at(2010, 3, 2) + 1e-13, &us, u"3/2/2010"},  // below 1e-12 is midnight
      {at(2010, 3, 2) + 86399.6 / 86400, &us, u"3/3/2010 12:00:00 AM"},
      {at(2010, 3, 2, 14, 5, 9), &brazil, u"02/03/2010 14:05:09"},
      {at(2010, 3, 2), &germany, u"02.03.2010"},
      {at(2010, 3, 2, 0, 0, 1), &germany, u"02.03.2010 00:00:01"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.serial << " " << toUtf8(row.locale->name));
    EXPECT_EQ(textOfDate(Date{row.serial}, *row.locale), row.expected);
  }
}

TEST(FormatWithPattern, PictureLettersLiteralsAndSeparators) {
  const Locale& us = known(u"en-US");
  const Locale& brazil = known(u"pt-BR");
  const double afternoon = at(2010, 3, 2, 14, 5, 9);
  const double earlyMorning = at(2005, 11, 20, 0, 7, 3);
  struct Row {
    double serial;
    std::u16string_view pattern;
    std::u16string_view expected;
    const Locale* locale = nullptr;  // en-US unless given
  };
  const Row rows[] = {
      {afternoon, u"dddd, MMMM d, yyyy", u"Tuesday, March 2, 2010"},
      {afternoon, u"ddd dd MMM yy", u"Tue 02 Mar 10"},
      {afternoon, u"dddd d MMMM", u"terça-feira 2 março", &brazil},
      {earlyMorning, u"y yy yyyy", u"5 05 2005"},
      {afternoon, u"HH:mm:ss", u"14:05:09"},
      {afternoon, u"h t", u"2 P"},
      {earlyMorning, u"H:m:s h tt", u"0:7:3 12 AM"},
      {earlyMorning, u"HH hh mm ss", u"00 12 07 03"},
      {afternoon, u"d.M.yyyy", u"2.3.2010"},  // separators come out as written
      {afternoon, u"'Day' d 'o''clock'", u"Day 2 o'clock"},
      {afternoon, u"[d] 'unterminated", u"[2] unterminated"},
      {afternoon, u"''", u""},
      {afternoon, u"g z", u"g z"},
      {-657434, u"yyyy-MM-dd", u"100-01-01"},
      {-657434, u"yy", u"00"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.pattern));
    EXPECT_EQ(formatWithPattern(Date{row.serial}, row.pattern, row.locale ? *row.locale : us),
              row.expected);
  }
}

}  // namespace
}  // namespace ravelin

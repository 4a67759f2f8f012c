#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/fake/locale_fake.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <set>
#include <thread>

namespace ravelin {
namespace {

TEST(LocaleTest, KnownLocalesCarryWindowsSettings) {
  struct Row {
    StringView name;
    uint32_t lcid;
    StringView decimal, thousands, currency, shortDate, time;
    DateOrder order;
    bool twelveHour;
    int oem;
    StringView sunday, abbreviatedMonday, march, abbreviatedDecember;
  };
  const Row rows[] = {
      {u"en-US", 1033, u".", u",", u"$", u"M/d/yyyy", u"h:mm:ss tt", DateOrder::MonthDayYear, true,
       437, u"Sunday", u"Mon", u"March", u"Dec"},
      {u"en-GB", 2057, u".", u",", u"\u00A3", u"dd/MM/yyyy", u"HH:mm:ss", DateOrder::DayMonthYear,
       false, 850, u"Sunday", u"Mon", u"March", u"Dec"},
      {u"pt-BR", 1046, u",", u".", u"R$", u"dd/MM/yyyy", u"HH:mm:ss", DateOrder::DayMonthYear,
       false, 850, u"domingo", u"seg", u"mar\u00E7o", u"dez"},
      {u"pt-PT", 2070, u",", u".", u"\u20AC", u"dd-MM-yyyy", u"HH:mm:ss", DateOrder::DayMonthYear,
       false, 850, u"domingo", u"seg", u"mar\u00E7o", u"dez"},
      {u"de-DE", 1031, u",", u".", u"\u20AC", u"dd.MM.yyyy", u"HH:mm:ss", DateOrder::DayMonthYear,
       false, 850, u"Sonntag", u"Mo", u"M\u00E4rz", u"Dez"},
      {u"fr-FR", 1036, u",", u"\u00A0", u"\u20AC", u"dd/MM/yyyy", u"HH:mm:ss",
       DateOrder::DayMonthYear, false, 850, u"dimanche", u"lun.", u"mars", u"d\u00E9c."},
      {u"es-ES", 3082, u",", u".", u"\u20AC", u"dd/MM/yyyy", u"H:mm:ss", DateOrder::DayMonthYear,
       false, 850, u"domingo", u"lun", u"marzo", u"dic"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    const Locale* locale = findKnownLocale(row.name);
    ASSERT_NE(locale, nullptr);
    EXPECT_EQ(findKnownLocale(row.lcid), locale);
    EXPECT_EQ(locale->name, row.name);
    EXPECT_EQ(locale->decimalSeparator, row.decimal);
    EXPECT_EQ(locale->thousandsSeparator, row.thousands);
    EXPECT_EQ(locale->currencySymbol, row.currency);
    EXPECT_EQ(locale->shortDatePattern, row.shortDate);
    EXPECT_EQ(locale->timePattern, row.time);
    EXPECT_EQ(locale->dateOrder(), row.order);
    EXPECT_EQ(locale->uses12HourClock(), row.twelveHour);
    EXPECT_EQ(locale->ansiCodePage, 1252);
    EXPECT_EQ(locale->oemCodePage, row.oem);
    EXPECT_EQ(locale->dayNames[0], row.sunday);
    EXPECT_EQ(locale->abbreviatedDayNames[1], row.abbreviatedMonday);
    EXPECT_EQ(locale->monthNames[2], row.march);
    EXPECT_EQ(locale->abbreviatedMonthNames[11], row.abbreviatedDecember);
    // The separators are the ones the patterns write.
    EXPECT_NE(locale->shortDatePattern.find(locale->dateSeparator), String::npos);
    EXPECT_NE(locale->timePattern.find(locale->timeSeparator), String::npos);
    // Every name is there and no two are the same (a shifted or duplicated row shows up here).
    std::set<String> names(locale->dayNames.begin(), locale->dayNames.end());
    names.insert(locale->monthNames.begin(), locale->monthNames.end());
    EXPECT_EQ(names.size(), 19u);
    EXPECT_FALSE(names.count(String()));
  }
}

TEST(LocaleTest, NamesAndIdentifiersMatchLikeTheSystemWrites) {
  struct Row {
    StringView query;
    StringView expected;  // empty: not known
  };
  const Row rows[] = {
      {u"pt-BR", u"pt-BR"},
      {u"pt_BR.UTF-8", u"pt-BR"},
      {u"PT-br", u"pt-BR"},
      {u"de_DE.utf8@euro", u"de-DE"},
      {u"pt", u"pt-BR"},
      {u"en.UTF-8", u"en-US"},
      {u"es-ES_tradnl", u"es-ES"},
      {u"", u""},
      {u".UTF-8", u""},
      {u"pt-BRX", u""},
      {u"pt-", u""},
      {u"nl-NL", u""},
      {u"C", u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.query));
    const Locale* locale = findKnownLocale(row.query);
    if (row.expected.empty()) {
      EXPECT_EQ(locale, nullptr);
    } else {
      ASSERT_NE(locale, nullptr);
      EXPECT_EQ(locale->name, row.expected);
    }
  }

  const std::pair<uint32_t, StringView> identifiers[] = {
      {0x0016, u"pt-BR"}, {0x0009, u"en-US"}, {0x040A, u"es-ES"},
      {0x0007, u"de-DE"}, {0, u""},           {1049, u""},
  };
  for (const auto& [lcid, expected] : identifiers) {
    SCOPED_TRACE(lcid);
    const Locale* locale = findKnownLocale(lcid);
    EXPECT_EQ(locale == nullptr ? String() : locale->name, expected);
  }
}

TEST(LocaleTest, PatternFactsSkipQuotedLiterals) {
  struct Row {
    StringView shortDate;
    StringView time;
    DateOrder order;
    bool twelveHour;
  };
  const Row rows[] = {
      {u"yyyy-MM-dd", u"HH:mm", DateOrder::YearMonthDay, false},
      {u"'month' d/M/yy", u"'h'H:mm", DateOrder::DayMonthYear, false},
      {u"'day' MM.dd.yyyy", u"hh:mm tt", DateOrder::MonthDayYear, true},
      {u"'yy'dd/MM", u"tt h:mm", DateOrder::DayMonthYear, true},
      {u"", u"", DateOrder::MonthDayYear, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.shortDate) + " / " + toUtf8(row.time));
    Locale locale;
    locale.shortDatePattern = String(row.shortDate);
    locale.timePattern = String(row.time);
    EXPECT_EQ(locale.dateOrder(), row.order);
    EXPECT_EQ(locale.uses12HourClock(), row.twelveHour);
  }
}

// Locale data a system might have for a name the library does not know.
Locale dutchFromSystem() {
  Locale dutch = *findKnownLocale(u"de-DE");
  dutch.name = u"nl-NL";
  dutch.lcid = 0;
  dutch.shortDatePattern = u"d-M-yyyy";
  return dutch;
}

TEST(LocaleTest, DefaultComesFromTheEnvironment) {
  struct Row {
    const char* lcAll;
    const char* lang;
    StringView expected;
  };
  const Row rows[] = {
      {nullptr, "pt_BR.UTF-8", u"pt-BR"}, {nullptr, "C", u"en-US"},
      {nullptr, "C.UTF-8", u"en-US"},     {"POSIX", "pt_BR", u"en-US"},
      {nullptr, nullptr, u"en-US"},       {nullptr, "xx_YY.UTF-8", u"en-US"},  // known to nobody
      {nullptr, "nl_NL.UTF-8", u"nl-NL"},  // known to the system only
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.expected));
    platform::ScopedFake<platform::FakeLocaleSystem> system;
    system.fake().addLocale(dutchFromSystem());
    if (row.lcAll) system.fake().setVariable("LC_ALL", row.lcAll);
    if (row.lang) system.fake().setVariable("LANG", row.lang);
    resetCurrentLocale();
    EXPECT_EQ(currentLocale().name, row.expected);
    resetCurrentLocale();
  }
}

TEST(LocaleTest, FindLocaleAsksTheSystemOnlyForUnknownNames) {
  platform::ScopedFake<platform::FakeLocaleSystem> system;
  system.fake().addLocale(dutchFromSystem());
  Locale strangeGerman = dutchFromSystem();
  strangeGerman.name = u"de-DE";
  strangeGerman.lcid = 1031;
  system.fake().addLocale(strangeGerman);

  EXPECT_EQ(findLocale(u"de_DE.UTF-8")->shortDatePattern, u"dd.MM.yyyy");
  EXPECT_EQ(findLocale(uint32_t{1031})->shortDatePattern, u"dd.MM.yyyy");
  EXPECT_EQ(findLocale(u"nl_NL.UTF-8")->shortDatePattern, u"d-M-yyyy");
  EXPECT_EQ(findLocale(u"C")->name, u"en-US");
  EXPECT_FALSE(findLocale(u"xx_YY").has_value());
  EXPECT_FALSE(findLocale(u"").has_value());
  EXPECT_FALSE(findLocale(uint32_t{1043}).has_value());
}

TEST(LocaleTest, CurrentLocaleBelongsToTheThread) {
  platform::ScopedFake<platform::FakeLocaleSystem> system;
  system.fake().setVariable("LANG", "de_DE.UTF-8");
  setCurrentLocale(*findKnownLocale(u"pt-BR"));

  String seenByOther, setByOther;
  std::thread other([&] {
    seenByOther = currentLocale().name;
    setCurrentLocale(*findKnownLocale(u"fr-FR"));
    setByOther = currentLocale().name;
  });
  other.join();

  EXPECT_EQ(seenByOther, u"de-DE");
  EXPECT_EQ(setByOther, u"fr-FR");
  EXPECT_EQ(currentLocale().name, u"pt-BR");
  resetCurrentLocale();
}

TEST(LocaleTest, ScopedLocaleRestoresWhatWasThere) {
  platform::ScopedFake<platform::FakeLocaleSystem> system;
  system.fake().setVariable("LANG", "it_IT");
  resetCurrentLocale();
  {
    ScopedLocale outer(u"pt_BR");
    EXPECT_EQ(currentLocale().name, u"pt-BR");
    {
      ScopedLocale inner(*findKnownLocale(u"en-GB"));
      EXPECT_EQ(currentLocale().name, u"en-GB");
    }
    EXPECT_EQ(currentLocale().name, u"pt-BR");
  }
  // The thread had no setting of its own, so it follows the environment again.
  system.fake().setVariable("LANG", "es_ES");
  EXPECT_EQ(currentLocale().name, u"es-ES");
  resetCurrentLocale();

  EXPECT_EQ(errorNumberOf([] { ScopedLocale unknown(u"xx-YY"); }), vb_error::kInvalidProcedureCall);
}

}  // namespace
}  // namespace ravelin

// The same cases against the fake locale system and against the one of the system running the
// test. The native one is asked only about locales the machine has; a missing one skips.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <ravelin/platform/fake/locale_fake.hpp>
#include <ravelin/platform/locale.hpp>

namespace ravelin::platform {
namespace {

struct Implementation {
  const char* name;
  std::function<std::shared_ptr<LocaleSystem>()> make;
};

// The fake holds the data a system would hand back for US English and German.
std::shared_ptr<LocaleSystem> makeFake() {
  auto fake = std::make_shared<FakeLocaleSystem>();
  Locale english = *findKnownLocale(u"en-US");
  english.shortDatePattern = u"MM/dd/yyyy";
  fake->addLocale(english);
  fake->addLocale(*findKnownLocale(u"de-DE"));
  fake->setVariable("LANG", "de_DE.UTF-8");
  return fake;
}

class LocaleContractTest : public testing::TestWithParam<Implementation> {
 protected:
  void SetUp() override { system_ = GetParam().make(); }

  // The system's data for a name, or nullopt when the machine lacks it.
  std::optional<Locale> find(StringView name) const { return system_->findLocale(name); }

  std::shared_ptr<LocaleSystem> system_;
};

TEST_P(LocaleContractTest, UsEnglishData) {
  const std::optional<Locale> locale = find(u"en_US.UTF-8");
  if (!locale) GTEST_SKIP() << "en_US.UTF-8 is not installed";
  EXPECT_TRUE(equalsIgnoreCase(localeBaseName(locale->name), u"en-US"));
  EXPECT_EQ(locale->decimalSeparator, u".");
  EXPECT_EQ(locale->thousandsSeparator, u",");
  EXPECT_EQ(locale->currencySymbol, u"$");
  EXPECT_EQ(locale->dateOrder(), DateOrder::MonthDayYear);
  EXPECT_EQ(locale->dateSeparator, u"/");
  EXPECT_EQ(locale->timeSeparator, u":");
  EXPECT_TRUE(locale->uses12HourClock());
  EXPECT_EQ(locale->amDesignator, u"AM");
  EXPECT_EQ(locale->pmDesignator, u"PM");
  EXPECT_EQ(locale->dayNames[0], u"Sunday");
  EXPECT_EQ(locale->dayNames[6], u"Saturday");
  EXPECT_EQ(locale->abbreviatedDayNames[1], u"Mon");
  EXPECT_EQ(locale->monthNames[0], u"January");
  EXPECT_EQ(locale->abbreviatedMonthNames[8], u"Sep");
  EXPECT_EQ(locale->ansiCodePage, 1252);
}

TEST_P(LocaleContractTest, GermanDataUnderEveryWritingOfTheName) {
  for (StringView name : {u"de_DE.UTF-8", u"de-DE", u"DE_de"}) {
    SCOPED_TRACE(toUtf8(name));
    const std::optional<Locale> locale = find(name);
    if (!locale) GTEST_SKIP() << "de_DE is not installed";
    EXPECT_EQ(locale->decimalSeparator, u",");
    EXPECT_EQ(locale->thousandsSeparator, u".");
    EXPECT_EQ(locale->dateOrder(), DateOrder::DayMonthYear);
    EXPECT_EQ(locale->dateSeparator, u".");
    EXPECT_FALSE(locale->uses12HourClock());
    EXPECT_EQ(locale->dayNames[0], u"Sonntag");
    EXPECT_EQ(locale->monthNames[2], u"M\u00E4rz");
    EXPECT_EQ(locale->currencySymbol, u"\u20AC");
  }
}

TEST_P(LocaleContractTest, NamesNobodyKnows) {
  for (StringView name : {u"xx_YY", u"xx-YY.UTF-8", u"zz", u"", u"../../etc/passwd", u"@euro"}) {
    SCOPED_TRACE(toUtf8(name));
    EXPECT_FALSE(find(name).has_value());
  }
  EXPECT_FALSE(system_->findLocale(uint32_t{0}).has_value());
}

TEST_P(LocaleContractTest, EnvironmentNameIsStableAndUsable) {
  const String name = system_->environmentLocaleName();
  EXPECT_EQ(system_->environmentLocaleName(), name);
  if (std::string(GetParam().name) == "fake") {
    EXPECT_EQ(name, u"de_DE.UTF-8");
    return;
  }
#if !defined(_WIN32)
  // On POSIX systems the name is the one the variables give, LC_ALL first.
  std::string expected;
  for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') {
      expected = value;
      break;
    }
  }
  EXPECT_EQ(toUtf8(name), expected);
#else
  // On Windows it is the user default locale, which the system always knows.
  EXPECT_TRUE(system_->findLocale(name).has_value());
#endif
}

TEST(LocaleNameFromVariablesTest, FollowsPosixPrecedence) {
  struct Row {
    std::map<std::string, std::string> variables;
    std::string expected;
  };
  const Row rows[] = {
      {{{"LANG", "pt_BR.UTF-8"}}, "pt_BR.UTF-8"},
      {{{"LANG", "pt_BR"}, {"LC_NUMERIC", "de_DE"}}, "de_DE"},
      {{{"LANG", "pt_BR"}, {"LC_NUMERIC", "de_DE"}, {"LC_ALL", "fr_FR"}}, "fr_FR"},
      {{{"LANG", "pt_BR"}, {"LC_ALL", ""}}, "pt_BR"},
      {{{"LC_TIME", "de_DE"}, {"LC_MESSAGES", "fr_FR"}}, ""},
      {{}, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(localeNameFromVariables([&row](std::string_view name) -> std::optional<std::string> {
                auto it = row.variables.find(std::string(name));
                if (it == row.variables.end()) return std::nullopt;
                return it->second;
              }),
              row.expected);
  }
}

TEST(InstallLocaleSystemTest, InstalledSystemIsReadUntilRemoved) {
  auto fake = std::make_shared<FakeLocaleSystem>();
  fake->setVariable("LANG", "only_in_the_fake");
  auto previous = localeSystem.install(fake);
  EXPECT_EQ(localeSystem()->environmentLocaleName(), u"only_in_the_fake");
  localeSystem.install(previous);
  EXPECT_NE(localeSystem().get(), fake.get());
}

INSTANTIATE_TEST_SUITE_P(Implementations, LocaleContractTest,
                         testing::Values(Implementation{"fake", makeFake},
                                         Implementation{"native",
                                                        [] {
                                                          return std::shared_ptr<LocaleSystem>(
                                                              LocaleSystem::makeNative());
                                                        }}),
                         [](const testing::TestParamInfo<Implementation>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
}  // namespace ravelin::platform

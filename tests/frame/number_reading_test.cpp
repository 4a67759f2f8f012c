#include <gtest/gtest.h>

#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>

namespace ravelin {
namespace {

Locale makeLocale(StringView decimal, StringView thousands, StringView currency) {
  Locale locale;
  locale.decimalSeparator = String(decimal);
  locale.thousandsSeparator = String(thousands);
  locale.currencySymbol = String(currency);
  return locale;
}

const Locale kEnUs = makeLocale(u".", u",", u"$");
const Locale kDeDe = makeLocale(u",", u".", u"\u20AC");

struct ReadCase {
  const char16_t* text;
  double value;
  int error;  // when nonzero, the call must raise it
};

template <std::size_t N, typename Read>
void checkReads(const ReadCase (&cases)[N], Read read) {
  for (const auto& c : cases) {
    SCOPED_TRACE(toUtf8(c.text));
    if (c.error != 0) {
      EXPECT_EQ(errorNumberOf([&] { read(c.text); }), c.error);
    } else {
      EXPECT_EQ(read(c.text), c.value);
    }
  }
}

TEST(Val, ReadsLeniently) {
  const ReadCase cases[] = {
      {u"    1615 198th Street N.E.", 1615198, 0},
      {u"24 and 57", 24, 0},
      {u"- 1 2", -12, 0},
      {u"\u3000"
       u"7",
       7, 0},
      {u"1.2.3", 1.2, 0},
      {u"$12", 0, 0},
      {u"1,234", 1, 0},
      {u"", 0, 0},
      {u"1.5D3", 1500, 0},
      {u"2e 1 0", 2e10, 0},  // blanks inside the exponent too
      {u"1E", 1, 0},
      {u"1e-400", 0, 0},
      {u"&HFF", 255, 0},
      {u"&HFFFF", -1, 0},
      {u"&H10000", 65536, 0},
      {u"&HFFFFFFFF", -1, 0},
      {u"&HFFFF&", 65535, 0},
      {u"&H100000000", 4294967296.0, 0},
      {u"&O177777", -1, 0},
      {u"&O37777777777", -1, 0},
      {u"50%", 50, 0},
      {u"0.1!", static_cast<double>(0.1f), 0},
      {u"50.5%", 0, 13},
      {u"1e2&", 0, 13},
      {u"40000%", 0, 6},
      {u"1e999", 0, 6},
      {u"&H1FFFFFFFFFFFFFFFF", 0, 6},
  };
  checkReads(cases, [](StringView text) { return Val(text); });
}

TEST(Val, LongInputIsCorrectlyRounded) {
  // 2^53 + 1 is a tie between two doubles: even wins, unless any later digit is nonzero.
  const String tie = u"9007199254740993";
  EXPECT_EQ(Val(tie), 9007199254740992.0);
  EXPECT_EQ(Val(tie + u"." + String(100000, u'0') + u"1"), 9007199254740994.0);
  EXPECT_EQ(Val(tie + u"." + String(100000, u'0')), 9007199254740992.0);

  EXPECT_EQ(Val(u"3." + String(100000, u'3')), 3.3333333333333333);
  EXPECT_EQ(Val(u"0." + String(100000, u'0') + u"1"), 0.0);
  EXPECT_EQ(Val(String(300, u'0') + u"1" + String(300, u'0') + u"e-300"), 1.0);
  EXPECT_EQ(errorNumberOf([] { Val(u"1" + String(100000, u'0')); }), 6);
  EXPECT_EQ(Val(String(100000, u' ')), 0.0);
}

TEST(ParseDouble, ReadsTheLocaleForms) {
  const ReadCase enUs[] = {
      {u" 1,234.5 ", 1234.5, 0},
      {u"$1,234.50", 1234.5, 0},
      {u"(12)", -12, 0},
      {u"($12)", -12, 0},
      {u"12-", -12, 0},
      {u"-$12", -12, 0},
      {u"12 $", 12, 0},
      {u"1,2,3", 123, 0},
      {u"&HFFFF", 65535, 0},
      {u"&HFFFFFFFF", -1, 0},
      {u" &O17 ", 15, 0},
      {u"1e-94938484", 0, 0},
      {u"1.1.", 0, 13},
      {u"1D3", 0, 13},
      {u"", 0, 13},
      {u" ", 0, 13},
      {u",5", 0, 13},
      {u"1 2", 0, 13},
      {u"(12", 0, 13},
      {u"(-12)", 0, 13},
      {u"-12-", 0, 13},
      {u"1e", 0, 13},
      {u"$", 0, 13},
      {u"12%", 0, 13},
      {u"-&HFF", 0, 13},
      {u"&H", 0, 13},
      {u"1e999", 0, 6},
      {u"&H1FFFFFFFFFFFFFFFF", 0, 6},
  };
  checkReads(enUs, [](StringView text) { return parseDouble(text, kEnUs); });

  const ReadCase deDe[] = {
      {u"1.234,5", 1234.5, 0}, {u"1,5", 1.5, 0},
      {u"1.5", 15, 0},         {u"1.234.567,5 \u20AC", 1234567.5, 0},
      {u"-1,5e3", -1500, 0},   {u"1,5.0", 0, 13},
  };
  checkReads(deDe, [](StringView text) { return parseDouble(text, kDeDe); });

  const Locale frFr = makeLocale(u",", u"\u00A0", u"\u20AC");
  EXPECT_EQ(parseDouble(u"1\u00A0234,5", frFr), 1234.5);
  EXPECT_EQ(parseDouble(u"1 234,5", frFr), 1234.5);
  // A thousands separator equal to the decimal one is ignored.
  EXPECT_EQ(parseDouble(u"1,5", makeLocale(u",", u",", u"")), 1.5);
}

TEST(ParseDouble, BuildsTheNearestDouble) {
  const String digits = u"1.00000000000000011102230246251565404236316680908203125";  // 1 + 2^-53
  EXPECT_EQ(parseDouble(digits, kEnUs), 1.0);                                        // tie: even
  EXPECT_EQ(parseDouble(digits + u"000001", kEnUs), 1.0000000000000002);
  EXPECT_EQ(parseDouble(u"2.2250738585072011e-308", kEnUs), 2.2250738585072009e-308);
  EXPECT_EQ(parseDouble(u"4.9e-324", kEnUs), 4.9406564584124654e-324);
  EXPECT_EQ(parseDouble(u"1" + String(308, u'0'), kEnUs), 1e308);
  EXPECT_EQ(errorNumberOf([] { parseDouble(u"1" + String(309, u'0'), kEnUs); }), 6);
}

TEST(ParseCurrency, RoundsTheDecimalDigitsHalfToEven) {
  const ReadCase cases[] = {
      {u"922337203685477.5808", 0, 6},
      // As a double 0.12345 would be 0.123450000000000004...
      {u"0.12345", 1234, 0},
      {u"1.000050000001", 10001, 0},
      {u"-2.50015", -25002, 0},
      {u"0.00005", 0, 0},
      {u"$1,234.56", 12345600, 0},
      {u"(0.0001)", -1, 0},
      {u"&HFFFFFFFF", -10000, 0},
  };
  // Compared as doubles: the scaled values above are exact in a double.
  checkReads(cases, [](StringView text) {
    return static_cast<double>(parseCurrency(text, kEnUs).scaled());
  });
  // Digits far beyond the rounding point still count.
  EXPECT_EQ(parseCurrency(u"1.00005" + String(5000, u'0') + u"1", kEnUs).scaled(), 10001);
  EXPECT_EQ(parseCurrency(u"1.00005" + String(5000, u'0'), kEnUs).scaled(), 10000);
  EXPECT_EQ(parseCurrency(u"922337203685477.5807", kEnUs), Currency::max());
  EXPECT_EQ(parseCurrency(u"922337203685477.58074", kEnUs), Currency::max());
  EXPECT_EQ(parseCurrency(u"-922337203685477.5808", kEnUs), Currency::min());
}

}  // namespace
}  // namespace ravelin

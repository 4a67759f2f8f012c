#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/numeric/math_functions.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

const MathFunctions kMath;

TEST(MathFunctionsTest, MyIntTruncatesOnTheDecimalText) {
  struct Row {
    Variant value;
    double expected;
  };
  const Row rows[] = {
      {Variant(2.9999999999999996), 3},  // its decimal text is "3"
      {Variant(-2.7), -2},
      {Variant(0.5), 0},
      {Variant(1.5e-7), 0},
      {Variant(1.5e15), 1.5e15},
      {Variant(-2.25e17), -2.25e17},
      {Variant(1e15), 1e14},  // a mantissa without a point counts as one digit behind it
      {Variant(String(u"12.7")), 12},
      {Variant::null(), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(kMath.MyInt(row.value), row.expected);
  }
  EXPECT_EQ(errorNumberOf([] { kMath.MyInt(Variant(String(u"abc"))); }), 13);
}

TEST(MathFunctionsTest, MyRoundRoundsHalvesAwayFromZeroDespiteBinaryNoise) {
  struct Row {
    double value;
    int16_t digits;
    double expected;
  };
  const Row rows[] = {
      {0.285, 2, 0.29},   {1.005, 2, 1.01},   {-2.675, 2, -2.68},  {2.5, 0, 3},
      {-2.5, 0, -3},      {0.5, 0, 1},        {-0.5, 0, -1},       {0.4, 0, 0},
      {-0.4, 0, 0},       {-0.005, 2, -0.01}, {1234.5, -2, 1200},  {1250, -2, 1300},
      {-1250, -2, -1300}, {1e15, 0, 1e15},    {2.5e15, 0, 2.5e15},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.value << " to " << row.digits);
    EXPECT_DOUBLE_EQ(kMath.MyRound(row.value, row.digits), row.expected);
    EXPECT_DOUBLE_EQ(kMath.MyRound(row.value, row.digits, ArithmeticalSimetric), row.expected);
  }
  EXPECT_EQ(kMath.MyRound(0, 2, ArithmeticalAssimetric), 0);
  EXPECT_EQ(kMath.MyRound(0, 2, ArithmeticalSimetric), 0);
  EXPECT_EQ(kMath.MyRound(1.5, 0, static_cast<RoundingTypes>(7)), 0);
  // Either side of the first scaled value written in exponent form (999999999999999.5): below it
  // the decimal text decides, from it on Round (half to even) does.
  EXPECT_EQ(kMath.MyRound(999999999999998.5, 0), 999999999999999.0);
  EXPECT_EQ(kMath.MyRound(999999999999998.75, 0), 999999999999999.0);
  EXPECT_EQ(kMath.MyRound(999999999999999.0, 0), 999999999999999.0);
  EXPECT_EQ(kMath.MyRound(-999999999999999.0, 0), -999999999999999.0);
  EXPECT_EQ(kMath.MyRound(99999999999999.95, 1), 1e14);  // 999999999999999.5 ties to even
  // Too large for plain notation after scaling: Round takes over, and it refuses negative places.
  EXPECT_EQ(errorNumberOf([] { kMath.MyRound(1e20, -2); }), 5);
  EXPECT_EQ(errorNumberOf([] { kMath.MyRound(std::numeric_limits<double>::infinity(), 0); }), 6);
}

TEST(MathFunctionsTest, MyValReadsTypedNumbersLeniently) {
  struct Row {
    const char16_t* locale;
    const char16_t* text;
    const char16_t* separator;
    double expected;
  };
  const Row rows[] = {
      {u"en-US", u"12,5", u",", 125},  // the comma groups thousands here
      {u"pt-BR", u"12,5", u",", 12.5},
      {u"pt-BR", u"1.234,56", u",", 1234.56},
      {u"pt-BR", u"R$ -12,50", u",", -12.5},
      {u"pt-BR", u"1,2,3", u",", 1.23},  // only the first comma is kept
      {u"pt-BR", u"12,5", u".", 12},     // invariant reading stops at the comma
      {u"en-US", u"1.2.3", u".", 1.2},
      {u"en-US", u"1.2.3", u",", 0},  // the locale refuses it: trapped
      {u"en-US", u"5-3", u".", 53},   // a minus after a digit is dropped
      {u"en-US", u"--7", u".", -7},
      {u"en-US", u" - ", u",", 0},
      {u"en-US", u"1.5E+3", u".", 1500},
      {u"en-US", u"2E-2", u".", 0.02},
      {u"pt-BR", u"2,5E+2", u",", 250},
      {u"en-US", u"1E+400", u".", 0},  // overflow trapped
      {u"en-US", u"1E+x", u".", 1},    // not an exponent: E, + and x are dropped
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << toUtf8(row.locale) << " " << toUtf8(row.text));
    ScopedLocale locale(row.locale);
    EXPECT_DOUBLE_EQ(kMath.MyVal(row.text, row.separator), row.expected);
  }
}

TEST(MathFunctionsTest, CumulativeDiscountAndAbsoluteValue) {
  struct Row {
    double d1, d2, d3, expected;
  };
  const Row rows[] = {
      {10, 10, 0, 19},    {50, 50, 50, 87.5}, {0, 0, 0, 0},     {100, 20, 0, 100},
      {10, 20, 30, 49.6}, {-10, 0, 0, -10},   {150, 0, 0, 150},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.d1 << "," << row.d2 << "," << row.d3);
    EXPECT_DOUBLE_EQ(kMath.GetCumulativeDiscount(row.d1, row.d2, row.d3), row.expected);
  }
  EXPECT_EQ(kMath.MyABS(-2.5), 2.5);
  EXPECT_EQ(kMath.MyABS(2.5), 2.5);
  EXPECT_FALSE(std::signbit(kMath.MyABS(-0.0)));
}

TEST(MathFunctionsTest, ConvCurrencyKeepsTheSuitesArithmetic) {
  struct Row {
    const char16_t* locale;
    double value, exchange, factor;
    bool toEuro;
    double toExchange, toFactor;
    int16_t decimals;
    double expected;
  };
  const Row rows[] = {
      {u"en-US", 100, 0, 1, false, 2, 1, 2, 0},
      {u"en-US", 100, 2, 1, true, 5, 1, 2, 50},  // no target rate into the euro
      {u"en-US", 100, 2, 1, false, 3, 1, 2, 150},
      {u"en-US", 10, 3, 1, true, 1, 1, 2, 3.33},
      {u"en-US", 1, 3, 1, true, 1, 1, -1, 0.3333333},  // only the seven-place base rounding
      {u"en-US", 1234, 1, 1, false, 3, 1, -2, 3700},
      {u"en-US", 1234, 1, 1, false, 3, 10, -2, 37020},  // negative places: no rounding here
      {u"en-US", 100, 2, 2, false, 3, 10, 2, 375},      // the source factor divides twice
      {u"en-US", 100, 2, 2.5, false, 3, 10, 2, 240},
      {u"pt-BR", 100, 2, 2.5, false, 3, 10, 2, 300},     // "2,5" reads back as 2
      {u"en-US", 100, 2, 1e-5, false, 3, 10, 2, 1.5e8},  // "1E-05" reads back as 1
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << toUtf8(row.locale) << " " << row.value << " "
                                      << row.exchange << " " << row.factor);
    ScopedLocale locale(row.locale);
    EXPECT_DOUBLE_EQ(kMath.ConvCurrency(row.value, row.exchange, row.factor, row.toEuro,
                                        row.toExchange, row.toFactor, row.decimals),
                     row.expected);
  }
  ScopedLocale portuguese(u"pt-BR");
  // A factor of "0,5" reads back as 0: the second division is by zero.
  EXPECT_EQ(errorNumberOf([] { kMath.ConvCurrency(100, 2, 0.5, false, 3, 10, 2); }), 11);
}

TEST(MathFunctionsTest, TypeLimitsAndFormats) {
  struct Row {
    int32_t type;
    double limit;
    const char16_t* format;
  };
  const Row rows[] = {
      {vtTenDigit, 9999999999.0, u"#########0"},
      {vtThirteenDigit, 9999999999999.0, u"############0"},
      {vtTDBNumber, 999999999999999.0, u"##############0"},
      {vtInteger, 32767, u"####0"},
      {vtLong, 2147483647, u"#########0"},
      {vtDouble, 9.223372036854776e18, u"##############0"},
      {vtOperation, 900, u"##0"},
      {17, 0, u"##############0"},
      {0, 0, u"##############0"},
      {-1, 0, u"##############0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.type);
    const auto type = static_cast<VarDataType>(row.type);
    EXPECT_EQ(kMath.GetTypeMaxValue(type), row.limit);
    EXPECT_EQ(kMath.GetTypeMaxValueFormat(type), row.format);
  }
}

TEST(MathFunctionsTest, MaxValueOfADisplayFormat) {
  struct Row {
    const char16_t* format;
    double expected;
  };
  const Row rows[] = {
      {u"#,##0.00", 9999}, {u"$ #,##0;(#,##0)", 9999}, {u"##0", 999}, {u"0", 9},   {u"0.00", 9},
      {u"#,##0 kg", 9999}, {u"R$ #.##0,00", 9},        {u"", 0},      {u"abc", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.format));
    EXPECT_EQ(kMath.GetTDBMaxValueFromFormat(row.format), row.expected);
  }
}

TEST(MathFunctionsTest, KeysAndWeekTitles) {
  for (const int key : {8, 16, 17, 46, 48, 57})
    EXPECT_EQ(kMath.ValidNumericAscii(static_cast<int16_t>(key)), key);
  for (const int key : {0, 9, 44, 45, 47, 58, 65, 256, -8})
    EXPECT_EQ(kMath.ValidNumericAscii(static_cast<int16_t>(key)), 0) << key;
  {
    ScopedLocale english(u"en-US");
    EXPECT_EQ(kMath.GetTDBWeekTitles(), u"Sun,Mon,Tue,Wed,Thu,Fri,Sat");
  }
  {
    ScopedLocale portuguese(u"pt-BR");
    EXPECT_EQ(kMath.GetTDBWeekTitles(), u"Dom,Seg,Ter,Qua,Qui,Sex,S\u00E1b");
  }
  Locale shouting = currentLocale();
  shouting.abbreviatedDayNames = {u"SUN DAY", u"mon", u"", u"wED", u"t", u"fri.", u"SAT"};
  ScopedLocale custom(shouting);
  EXPECT_EQ(kMath.GetTDBWeekTitles(), u"Sun Day,Mon,,Wed,T,Fri.,Sat");
}

TEST(MathFunctionsTest, LateBoundCallsUseTheDefaults) {
  const ObjectRef math = libraryRegistry().create(u"Ravelin.MathFunctions");
  const auto call = [&](StringView name, std::vector<CallArgument> arguments) {
    return callMember(math, name, MemberKind::Method, arguments);
  };
  EXPECT_EQ(call(u"MyRound", {{Variant(2.675)}, {Variant(2)}}), Variant(2.68));
  EXPECT_EQ(call(u"MyRound", {{Variant(2.675)}, {Variant(2)}, {Variant(5)}}), Variant(0.0));
  EXPECT_EQ(call(u"GetTypeMaxValue", {{Variant(16)}}), Variant(32767.0));
  ScopedLocale portuguese(u"pt-BR");
  EXPECT_EQ(call(u"MyVal", {{Variant(u"3,25")}}), Variant(3.25));
  EXPECT_EQ(call(u"MyVal", {{Variant(u"3,25")}, {Variant(u".")}}), Variant(3.0));
}

// A result too large for a Double (or no number at all) raises 6 from the member that produced
// it, as the platform's floating-point arithmetic does; MyVal's trap still gives 0.
TEST(MathFunctionsTest, LateBoundResultsOutOfRangeRaiseOverflow) {
  const ObjectRef math = libraryRegistry().create(u"Ravelin.MathFunctions");
  struct Row {
    const char16_t* member;
    std::vector<Variant> arguments;
    Variant expected;  // Empty when the call raises 6
  };
  const Row rows[] = {
      {u"GetCumulativeDiscount", {1E308, 1.0, 1.0}, {}},
      {u"GetCumulativeDiscount", {-1E308, 0.0, 0.0}, {}},
      {u"GetCumulativeDiscount", {1E306, 0.0, 0.0}, {}},  // the product overflows on its way
      {u"GetCumulativeDiscount", {50.0, 50.0, 50.0}, 87.5},
      {u"MyRound", {5.0, int16_t{-400}}, {}},
      {u"MyRound", {5.0, int16_t{-300}}, 0.0},
      {u"MyRound", {0.0, int16_t{-400}, int32_t{ArithmeticalSimetric}}, {}},
      {u"ConvCurrency", {1E308, 1E-10, 1.0, false, 1.0, 1.0, int16_t{-1}}, {}},
      {u"MyVal", {u"9E+999"}, 0.0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.member) + " " + toUtf8(CStr(row.arguments[0])));
    std::vector<CallArgument> arguments(row.arguments.begin(), row.arguments.end());
    Variant result;
    const int32_t error = errorNumberOf(
        [&] { result = callMember(math, row.member, MemberKind::Method, arguments); });
    EXPECT_EQ(error, row.expected.isEmpty() ? 6 : 0);
    if (!row.expected.isEmpty()) {
      EXPECT_EQ(result, row.expected);
    }
  }
}

}  // namespace
}  // namespace ravelin

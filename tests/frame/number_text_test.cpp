#include <gtest/gtest.h>

#include <limits>
#include <ravelin/frame/convert.hpp>

namespace ravelin {
namespace {

Locale withSeparator(StringView separator) {
  Locale locale;
  locale.decimalSeparator = String(separator);
  locale.thousandsSeparator = separator == u"," ? u"." : u",";
  return locale;
}

struct TextCase {
  double value;
  const char* text;
};

TEST(TextOfDouble, FifteenDigitsTheClassicExponentRuleAndTheLocaleSeparator) {
  const Locale point = withSeparator(u".");
  const TextCase cases[] = {
      {-0.5, "-0.5"},
      {0.0001, "0.0001"},
      {0.00001, "1E-05"},
      {1.5e-7, "1.5E-07"},
      {999999999999999.0, "999999999999999"},
      {1e15, "1E+15"},
      {1.2e15, "1.2E+15"},
      {-1e-100, "-1E-100"},
      {3.14159265358979323846, "3.14159265358979"},
      {0.1 + 0.2, "0.3"},
      {2.9999999999999996, "3"},
      {1000000000000005.0, "1.00000000000001E+15"},
      {999999999999999.5, "1E+15"},  // the carry reaches the exponent rule
      {-0.0, "0"},
      {std::numeric_limits<double>::max(), "1.79769313486232E+308"},
      {std::numeric_limits<double>::denorm_min(), "4.94065645841247E-324"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(textOfDouble(c.value, point), fromAscii(c.text));
  }
  // The locale's decimal separator, in the exponent form too.
  const Locale comma = withSeparator(u",");
  EXPECT_EQ(textOfDouble(1234567.25, comma), u"1234567,25");
  EXPECT_EQ(textOfDouble(-1.5e-7, comma), u"-1,5E-07");
}

TEST(TextOfSingle, SevenDigits) {
  const Locale point = withSeparator(u".");
  const struct {
    float value;
    const char* text;
  } cases[] = {
      {654322.23456f, "654322.3"},  // an exact tie in binary: away from zero
      {1e8f, "1E+08"},
      {1234567.0f, "1234567"},
      {12345678.0f, "1.234568E+07"},
      {0.1f, "0.1"},
      {-3.4028235e38f, "-3.402823E+38"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(textOfSingle(c.value, point), fromAscii(c.text));
  }
}

TEST(TextOfCurrency, ExactWithoutExponent) {
  const Locale point = withSeparator(u".");
  const Locale comma = withSeparator(u",");
  const struct {
    int64_t scaled;
    const char* point;
    const char* comma;
  } cases[] = {
      {15000, "1.5", "1,5"},
      {9, "0.0009", "0,0009"},
      {0, "0", "0"},
      {10000000000000000, "1000000000000", "1000000000000"},
      {INT64_MAX, "922337203685477.5807", "922337203685477,5807"},
      {INT64_MIN, "-922337203685477.5808", "-922337203685477,5808"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.point);
    EXPECT_EQ(textOfCurrency(Currency::fromScaled(c.scaled), point), fromAscii(c.point));
    EXPECT_EQ(textOfCurrency(Currency::fromScaled(c.scaled), comma), fromAscii(c.comma));
  }
}

}  // namespace
}  // namespace ravelin

#include <gtest/gtest.h>

#include <limits>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

Locale numberLocale(StringView name, StringView decimal, StringView thousands, StringView symbol) {
  Locale locale;
  locale.name = String(name);
  locale.decimalSeparator = String(decimal);
  locale.thousandsSeparator = String(thousands);
  locale.currencySymbol = String(symbol);
  locale.dateSeparator = u"/";
  locale.timeSeparator = u":";
  return locale;
}

const Locale kEnUs = numberLocale(u"en-US", u".", u",", u"$");
const Locale kDeDe = numberLocale(u"de-DE", u",", u".", u"\u20ac");
const Locale kPtBr = numberLocale(u"pt-BR", u",", u".", u"R$");

struct NumberCase {
  Variant value;
  const char16_t* format;
  String expected;
};

void expectFormats(const NumberCase* begin, const NumberCase* end, const Locale& locale) {
  for (const NumberCase* c = begin; c != end; ++c) {
    SCOPED_TRACE(toUtf8(c->format));
    SCOPED_TRACE(toUtf8(Format(c->value, u"", vbSunday, vbFirstJan1, locale)));
    EXPECT_EQ(toUtf8(Format(c->value, c->format, vbSunday, vbFirstJan1, locale)),
              toUtf8(c->expected));
  }
}

TEST(FormatNumber, PlaceholdersLiteralsAndExponents) {
  const NumberCase cases[] = {
      {0.0, u"#", u""},
      {0.0, u"#.#", u"."},
      {0.17, u"#.00", u".17"},
      {0.0049, u"#.##", u"."},
      {17.0, u"#000", u"017"},
      {1.0, u"0,000,000,000", u"0,000,000,001"},
      {123456789.0, u"#,#.#", u"123,456,789."},
      {-0.1, u".#", u"-.1"},
      {17.0, u"#3.33", u"173.33"},
      {1.0, u"00\\c\\o\\p\\y", u"01copy"},
      {8.0995, u"#.##", u"8.1"},
      {1.5, u"0.0.0", u"1.5.0"},
      {5551234567.0, u"(000) 000-0000", u"(555) 123-4567"},
      {1234.5, u"\"Total: \"#,##0.00", u"Total: 1,234.50"},
      {0.5, u"0%", u"50%"},
      {1.73245, u"0.0000E+000", u"1.7325E+000"},
      {1.7, u"0.0000E-000", u"1.7000E000"},
      {47.11, u".0000E+0", u".4711E+2"},
      {12345.0, u"00.00E+00", u"12.35E+03"},
      {0.000123, u"0.0E-00", u"1.2E-04"},
      {0.0, u"0.00E+00", u"0.00E+00"},
      {9.99, u"0.0E+0", u"1.0E+1"},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
}

TEST(FormatNumber, RoundsHalfUpOnTheFifteenDigitText) {
  const NumberCase cases[] = {
      {2.675, u"0.00", u"2.68"},
      {-2.5, u"0", u"-3"},
      {9.9999999, u"#0.000000", u"10.000000"},
      {-0.001, u"0.00", u"-0.00"},
      {0.1 + 0.2, u"0.00000000000000000", u"0.30000000000000000"},
      {Variant(0.1f), u"0.000000000", u"0.100000000"},
      {1e300, u"0", u"1" + String(300, u'0')},
      {1.23456789012345e20, u"#,##0", u"123,456,789,012,345,000,000"},
      {Variant(Currency::max()), u"0.0000", u"922337203685477.5807"},
      {Variant(Currency::min()), u"#,##0.00", u"-922,337,203,685,477.58"},
      {Variant(Currency::fromScaled(12345)), u"0.000", u"1.235"},
      {Variant(int32_t{-2147483647 - 1}), u"0", u"-2147483648"},
      {Variant(Date{2.5}), u"0.00", u"2.50"},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
}

TEST(FormatNumber, SectionsBySignBeforeRounding) {
  const NumberCase cases[] = {
      {-1234.0, u"#,##0;(#,##0)", u"(1,234)"},
      {0.0, u"\"pos\";\"neg\"", u"pos"},
      {0.0, u"\"pos\";\"neg\";\"zero\"", u"zero"},
      {-0.001, u"0;(0);\"zero\"", u"(0)"},
      {0.0, u"$#,##0;;\\Z\\e\\r\\o", u"Zero"},
      {-5.0, u"$#,##0;;\\Z\\e\\r\\o", u"-$5"},
      {Variant::null(), u"0;0;0;\\N\\u\\l\\l", u"Null"},
      {Variant::null(), u"0.00", u""},
      {Variant(), u"0.00", u"0.00"},
      {u"1234.5", u"#,##0.00", u"1,234.50"},
      {u"-3", u"0;(0)", u"(3)"},
      {u"abc", u"0.00", u"abc"},
      {1.0, u"0;0;0;0;0", u"1"},
      {1.0, u"0\\;0", u"0;1"},
      {-1.0, u"\"a;b\"0", u"-a;b1"},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
}

TEST(FormatNumber, LocaleSeparatorsAndNamedFormats) {
  const NumberCase enUs[] = {
      {1234567.891, u"#,##0.00", u"1,234,567.89"},
      {1.0, u"Percent", u"100.00%"},
      {1234.567, u"fixed", u"1234.57"},
      {1234.5, u"Currency", u"$1,234.50"},
      {-1234.5, u"Currency", u"($1,234.50)"},
      {1234.5, u"General Number", u"1234.5"},
      {1e15, u"General Number", u"1E+15"},
      {0.0, u"Yes/No", u"No"},
      {Variant(true), u"True/False", u"True"},
      {u"abc", u"Yes/No", u"abc"},
  };
  expectFormats(std::begin(enUs), std::end(enUs), kEnUs);
  const NumberCase deDe[] = {
      {1234567.891, u"#,##0.00", u"1.234.567,89"}, {u"1.234,5", u"#,##0.00", u"1.234,50"},
      {1234.5, u"Currency", u"1.234,50 \u20ac"},   {-1234.5, u"Currency", u"-1.234,50 \u20ac"},
      {1234.5, u"General Number", u"1234,5"},      {0.5, u"0.0.0", u"0,5.0"},
  };
  expectFormats(std::begin(deDe), std::end(deDe), kDeDe);
  const NumberCase ptBr[] = {
      {1234.5, u"Currency", u"R$ 1.234,50"},
      {-1234.5, u"Currency", u"-R$ 1.234,50"},
  };
  expectFormats(std::begin(ptBr), std::end(ptBr), kPtBr);
}

TEST(FormatNumber, EmptyFormatIsTheValuesText) {
  const NumberCase cases[] = {
      {1234.5, u"", u"1234.5"},
      {Variant(true), u"", u"True"},
      {Variant::null(), u"", u""},
      {Variant(), u"", u""},
  };
  expectFormats(std::begin(cases), std::end(cases), kEnUs);
  EXPECT_EQ(Format(1234.5, u"", vbSunday, vbFirstJan1, kDeDe), u"1234,5");
}

TEST(FormatNumber, BadArgumentsRaise) {
  EXPECT_EQ(errorNumberOf([] { Format(Variant::nothing(), u"0", vbSunday, vbFirstJan1, kEnUs); }),
            13);
  EXPECT_EQ(errorNumberOf([] { Format(1.0, u"0", 8, vbFirstJan1, kEnUs); }), 5);
  EXPECT_EQ(errorNumberOf([] { Format(1.0, u"0", vbSunday, 4, kEnUs); }), 5);
  EXPECT_EQ(errorNumberOf([] {
              Format(std::numeric_limits<double>::infinity(), u"0", vbSunday, vbFirstJan1, kEnUs);
            }),
            6);
}

}  // namespace
}  // namespace ravelin

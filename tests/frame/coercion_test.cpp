#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

Locale numbersOnly(StringView decimal, StringView thousands) {
  Locale locale;
  locale.decimalSeparator = String(decimal);
  locale.thousandsSeparator = String(thousands);
  locale.currencySymbol = u"$";
  return locale;
}

// One conversion: the expected result, or the error number it must raise.
template <typename T>
struct Row {
  Variant input;
  T expected{};
  int error = 0;
};

template <typename T, typename Convert>
void checkRows(const std::vector<Row<T>>& rows, Convert convert) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(testing::Message() << "row " << i);
    const Row<T>& row = rows[i];
    if (row.error == 0) {
      EXPECT_EQ(convert(row.input), row.expected);
    } else {
      EXPECT_EQ(errorNumberOf([&] { (void)convert(row.input); }), row.error);
    }
  }
}

template <typename T = int64_t>
Row<T> fails(Variant input, int error) {
  return {std::move(input), T{}, error};
}

const Variant kNull = Variant::null();
const Variant kMissing = Variant::missing();
const Variant kNothing = Variant::nothing();
const Variant kErrorValue = Variant(Variant::ErrorValue{5});
const Variant kArray = Variant(SafeArray::vector(VarType::Variant, 0, 1));

Currency units(double value) {
  return Currency::fromScaled(std::llround(value * 10000));
}

// Values that no conversion to a number accepts.
std::vector<Row<int64_t>> unconvertible() {
  return {fails(kNull, 94),  fails(kMissing, 13), fails(kErrorValue, 13), fails(kNothing, 13),
          fails(kArray, 13), fails(u"abc", 13),   fails(u"", 13),         fails(u" ", 13)};
}

TEST(Coercion, WholeNumbersRoundHalfToEven) {
  ScopedLocale scope(numbersOnly(u".", u","));
  std::vector<Row<int64_t>> cint = {
      {2.5, 2},
      {-0.5, 0},
      {2.5000000000000004, 3},
      {-32768.5, -32768},
      {u"3.5", 4},
      {u"2.50000000000000001", 3},  // as a double this would be 2.5: the digits decide
      {u" (1,234.5) ", -1234},
      {u"&HFFFF", -1},
      {units(2.5), 2},
      {true, -1},
      {Variant(), 0},
      fails(32767.5, 6),
      fails(-32768.51, 6),
      fails(std::numeric_limits<double>::quiet_NaN(), 6),
      fails(u"32767.5", 6),
      fails(u"&H10000", 6),
      fails(int32_t{40000}, 6),
      fails(Currency::max(), 6),
  };
  for (auto& row : unconvertible())
    cint.push_back(row);
  checkRows(cint, [](const Variant& v) { return int64_t{CInt(v)}; });

  const std::vector<Row<int64_t>> clng = {
      {-2147483648.5, INT32_MIN}, {u"&HFFFF", 65535},        {u"&HFFFFFFFF", -1},
      {units(-1.5), -2},          fails(2147483647.5, 6),    fails(u"2147483647.5", 6),
      fails(u"&H100000000", 6),   fails(Currency::min(), 6), fails(kNull, 94),
  };
  checkRows(clng, [](const Variant& v) { return int64_t{CLng(v)}; });

  const std::vector<Row<int64_t>> cbyte = {
      {254.5, 254},    {-0.5, 0},      {u"&HFF", 255},     {int16_t{255}, 255}, fails(255.5, 6),
      fails(-0.51, 6), fails(true, 6), fails(u"&H100", 6), fails(u"-1", 6),     fails(kNull, 94),
  };
  checkRows(cbyte, [](const Variant& v) { return int64_t{CByte(v)}; });
}

TEST(Coercion, CurrencyUsesTheExactValue) {
  ScopedLocale scope(numbersOnly(u".", u","));
  std::vector<Row<int64_t>> rows = {
      {0.12345, 1235},     // 0.12345000000000000417 as a double
      {u"0.12345", 1234},  // the decimal digits: a tie, to even
      {0.00005, 1},        // 5.0000000000000002396e-05
      {0.00015, 1},        // 1.4999999999999998686e-04
      {-2.50005, -25000},  // -2.5000499999999998835
      {922337203685477.0, 9223372036854770000},
      {Date{1.25}, 12500},
      {Variant(), 0},
      fails(922337203685477.5807, 6),  // 922337203685477.625 as a double
      fails(-922337203685477.5808, 6),
      fails(1e15, 6),
  };
  for (auto& row : unconvertible())
    rows.push_back(row);
  checkRows(rows, [](const Variant& v) { return CCur(v).scaled(); });
}

TEST(Coercion, DoubleAndSingle) {
  ScopedLocale scope(numbersOnly(u",", u"."));
  std::vector<Row<double>> cdbl = {
      {Variant(), 0},
      {true, -1},
      {units(1.5), 1.5},
      {Date{2.25}, 2.25},
      {0.1f, static_cast<double>(0.1f)},
      {u"1,5", 1.5},
      {u"1.234,5", 1234.5},
      {u"1.5", 15},
  };
  checkRows(cdbl, [](const Variant& v) { return CDbl(v); });
  std::vector<Row<int64_t>> bad = unconvertible();
  bad.push_back(fails(u"1e999", 6));
  checkRows(bad, [](const Variant& v) { return static_cast<int64_t>(CDbl(v)); });

  const std::vector<Row<float>> csng = {
      {0.1, 0.1f},
      {3.4028235e38, std::numeric_limits<float>::max()},  // rounds down to the largest Single
      {u"2,5", 2.5f},
      fails<float>(1e39, 6),
      fails<float>(u"1e39", 6),
      fails<float>(kNull, 94),
  };
  checkRows(csng, [](const Variant& v) { return CSng(v); });
}

TEST(Coercion, Boolean) {
  ScopedLocale scope(numbersOnly(u",", u"."));
  const std::vector<Row<bool>> rows = {
      {u" TRUE ", true},       {u"0,5", true},         {0.0, false},
      {1e-300, true},          {units(0.0001), true},  {Variant(), false},
      fails<bool>(u"yes", 13), fails<bool>(kNull, 94), fails<bool>(kMissing, 13),
      fails<bool>(kArray, 13),
  };
  checkRows(rows, [](const Variant& v) { return CBool(v); });
}

TEST(Coercion, Text) {
  ScopedLocale scope(u"en-US");
  std::vector<Row<String>> cstr = {
      {Variant(), u""},
      {true, u"True"},
      {int32_t{INT32_MIN}, u"-2147483648"},
      {1e15, u"1E+15"},
      {654322.23456f, u"654322.3"},
      {Currency::max(), u"922337203685477.5807"},
      {Date{365.25}, u"12/30/1900 6:00:00 AM"},
      fails<String>(kNull, 94),
      fails<String>(kMissing, 13),
  };
  checkRows(cstr, [](const Variant& v) { return CStr(v); });

  ScopedLocale comma(numbersOnly(u",", u"."));
  EXPECT_EQ(CStr(-0.5), u"-0,5");
  EXPECT_EQ(CStr(units(-1.25)), u"-1,25");
}

TEST(Coercion, Dates) {
  ScopedLocale scope(u"en-US");
  const std::vector<Row<double>> rows = {
      {365.25, 365.25},
      {-657434.5, -657434.5},
      {units(2.5), 2.5},
      {Variant(), 0},
      {u"1/2/2000", 36527},
      fails<double>(2958466.0, 6),
      fails<double>(-657435.0, 6),
      fails<double>(kNull, 94),
      fails<double>(u"not a date", 13),
  };
  checkRows(rows, [](const Variant& v) { return CDate(v).serial; });
}

TEST(Str, InvariantNumberText) {
  ScopedLocale scope(numbersOnly(u",", u"."));  // Str ignores the locale's separator
  const std::vector<Row<String>> rows = {
      {459.0, u" 459"},
      {-459.65, u"-459.65"},
      {-0.5, u"-.5"},
      {0.5, u" .5"},
      {0.0, u" 0"},
      {-0.0, u" 0"},
      {1.5e-7, u" 1.5E-07"},
      {0.1f, u" .1"},
      {units(-1.5), u"-1.5"},
      {true, u"True"},
      {Variant(), u" 0"},
      {u"1,5", u" 1.5"},  // text is read in the current locale first
      fails<String>(kNull, 94),
      fails<String>(u"abc", 13),
  };
  checkRows(rows, [](const Variant& v) { return Str(v); });
}

}  // namespace
}  // namespace ravelin

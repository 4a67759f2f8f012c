// The list text of the numeric arrays and the ordering of clsArrayInteger.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/frame/locale.hpp>
#include <vector>

namespace ravelin {
namespace {

template <typename Array, typename Value>
String listOf(const std::vector<Value>& values) {
  Array array;
  for (const Value value : values)
    array.add(value);
  return array.getItemsAsList();
}

TEST(NumberLists, IntegerAndLongInDecimal) {
  EXPECT_EQ(listOf<clsArrayInteger>(std::vector<int16_t>{}), u"");
  EXPECT_EQ(listOf<clsArrayInteger>(std::vector<int16_t>{INT16_MIN, -1, 0, 12, INT16_MAX}),
            u"-32768,-1,0,12,32767");
  EXPECT_EQ(listOf<clsArrayLong>(std::vector<int32_t>{INT32_MIN, 0, 1000000, INT32_MAX}),
            u"-2147483648,0,1000000,2147483647");
}

TEST(NumberLists, DoubleListUsesAPointWhateverTheLocale) {
  Locale decimalComma = *findKnownLocale(u"en-US");
  decimalComma.decimalSeparator = u",";
  decimalComma.thousandsSeparator = u".";
  struct Row {
    std::vector<double> values;
    const char16_t* expected;
  };
  const Row rows[] = {
      {{}, u""},
      {{1.5, 2}, u"1.5,2"},
      {{-0.25, 0, 1234567.5}, u"-0.25,0,1234567.5"},
      {{1e15, 1.5e-7, -2.5e300}, u"1E+15,1.5E-07,-2.5E+300"},
  };
  for (const char16_t* localeName : {u"en-US", u"de-DE", u"pt-BR"}) {
    ScopedLocale known(localeName);
    for (const Locale& locale : {currentLocale(), decimalComma}) {
      ScopedLocale scope(locale);
      for (const Row& row : rows) {
        SCOPED_TRACE(toUtf8(locale.name) + " " + toUtf8(locale.decimalSeparator) + " " +
                     toUtf8(row.expected));
        EXPECT_EQ(listOf<clsArrayDouble>(row.values), row.expected);
      }
    }
  }
}

TEST(NumberLists, OrderValuesAsc) {
  struct Row {
    std::vector<int16_t> values;
    std::vector<int16_t> sorted;
  };
  const Row rows[] = {
      {{3, -1, 2, -1}, {-1, -1, 2, 3}},
      {{}, {}},
      {{INT16_MAX, 0, INT16_MIN, -1}, {INT16_MIN, -1, 0, INT16_MAX}},
  };
  for (const Row& row : rows) {
    clsArrayInteger array;
    for (const int16_t value : row.values)
      array.add(value);
    array.orderValuesAsc();
    std::vector<int16_t> sorted;
    for (int16_t i = 0; i < array.getCount(); ++i)
      sorted.push_back(array.item(i));
    EXPECT_EQ(sorted, row.sorted);
  }

  // Only the used part is ordered: a removed value does not come back.
  clsArrayInteger array;
  for (const int16_t value : std::vector<int16_t>{4, 2, -3})
    array.add(value);
  array.removeLastItem();
  array.orderValuesAsc();
  EXPECT_EQ(array.getItemsAsList(), u"2,4");
}

}  // namespace
}  // namespace ravelin

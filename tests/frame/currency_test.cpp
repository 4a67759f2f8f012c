#include <gtest/gtest.h>

#include <ravelin/frame/currency.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

TEST(CurrencyTest, ArithmeticIsExactAndRoundsHalfToEven) {
  struct Row {
    int64_t a, b;
    char op;
    int64_t expected;
  };
  const Row rows[] = {
      {15000, 25000, '+', 40000},           // 1.5 + 2.5
      {1, -2, '+', -1},                     // smallest steps
      {15000, 20000, '*', 30000},           // 1.5 * 2
      {1, 5000, '*', 0},                    // 0.0001 * 0.5 = 0.00005 -> 0 (even)
      {3, 5000, '*', 2},                    // 0.0003 * 0.5 = 0.00015 -> 0.0002 (even)
      {-3, 5000, '*', -2},                  // sign does not change the tie rule
      {10000, 30000, '/', 3333},            // 1 / 3
      {20000, 30000, '/', 6667},            // 2 / 3
      {1, 20000, '/', 0},                   // 0.0001 / 2 = 0.00005 -> 0
      {INT64_MAX, 10000, '*', INT64_MAX},   // times one
      {INT64_MIN + 1, -1, '+', INT64_MIN},  // reaches the lowest value exactly
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.a << row.op << row.b);
    auto a = Currency::fromScaled(row.a);
    auto b = Currency::fromScaled(row.b);
    Currency result = row.op == '+' ? a + b : row.op == '-' ? a - b : row.op == '*' ? a * b : a / b;
    EXPECT_EQ(result.scaled(), row.expected);
  }
}

TEST(CurrencyTest, OutOfRangeResultsAndDivisionByZeroRaise) {
  EXPECT_EQ(errorNumberOf([] { return Currency::max() + Currency::fromScaled(1); }), 6);
  EXPECT_EQ(errorNumberOf([] { return Currency::min() - Currency::fromScaled(1); }), 6);
  EXPECT_EQ(errorNumberOf([] { return -Currency::min(); }), 6);
  EXPECT_EQ(errorNumberOf([] { return Currency::max() * Currency::fromUnits(2); }), 6);
  EXPECT_EQ(errorNumberOf([] { return Currency::fromUnits(1) / Currency(); }), 11);
  EXPECT_EQ(errorNumberOf([] { return Currency::fromUnits(INT64_MAX / 10000 + 1); }), 6);
}

}  // namespace
}  // namespace ravelin

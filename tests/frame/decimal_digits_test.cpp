#include <gtest/gtest.h>

#include <charconv>
#include <cstring>
#include <limits>
#include <random>
#include <ravelin/frame/internal/decimal_digits.hpp>

namespace ravelin {
namespace {

struct RoundingCase {
  double value;
  int significant;
  bool negative;
  const char* digits;
  int exponent;
};

TEST(RoundToSignificant, RoundsTiesAwayFromZeroOnTheExactValue) {
  const RoundingCase cases[] = {
      {2.5, 1, false, "3", 0},  // exact tie: away from zero, not to even
      {-2.5, 1, true, "3", 0},
      {9.5, 1, false, "1", 1},      // the carry moves the exponent
      {0.35, 1, false, "3", -1},    // 0.34999999999999997... is just below the tie
      {0.45, 1, false, "5", -1},    // 0.45000000000000001... is just above it
      {2.675, 3, false, "267", 0},  // 2.67499999999999982...
      {1000000000000005.0, 15, false, "100000000000001", 15},
      {1000000000000004.875, 15, false, "1", 15},
      {static_cast<double>(654322.23456f), 7, false, "6543223", 5},
      {0.1, 17, false, "10000000000000001", -1},
      {std::numeric_limits<double>::max(), 15, false, "179769313486232", 308},
      {std::numeric_limits<double>::denorm_min(), 15, false, "494065645841247", -324},
      {-0.0, 15, false, "", 0},
      {-1e-300, 2, true, "1", -300},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.value << " to " << c.significant << " digits");
    DecimalDigits d = roundToSignificant(c.value, c.significant);
    EXPECT_EQ(d.negative, c.negative);
    EXPECT_EQ(d.digits, c.digits);
    EXPECT_EQ(d.exponent, c.exponent);
  }
}

// Rounds the exact expansion by hand, the slow way, for comparison with the fast path.
std::string referenceDigits(double magnitude, int significant, int& exponent) {
  char buffer[1024];
  auto end =
      std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific, 767)
          .ptr;
  std::string text(buffer, end);
  std::size_t e = text.find('e');
  exponent = std::stoi(text.substr(e + 1));
  std::string all = text.substr(0, 1) + text.substr(2, e - 2);
  std::string kept = all.substr(0, static_cast<std::size_t>(significant));
  if (all[kept.size()] >= '5') {  // at or beyond one half: away from zero
    int i = significant - 1;
    while (i >= 0 && kept[i] == '9')
      kept[i--] = '0';
    if (i < 0) {
      kept = "1" + kept.substr(0, kept.size() - 1);
      ++exponent;
    } else {
      ++kept[i];
    }
  }
  kept.erase(kept.find_last_not_of('0') + 1);
  return kept;
}

TEST(RoundToSignificant, AgreesWithTheExactExpansion) {
  std::mt19937_64 random(20260101);
  for (int i = 0; i < 20000; ++i) {
    double value;
    if (i % 2 == 0) {
      // Short binary fractions: many of them are exact decimal ties.
      value = static_cast<double>(random() % 2000000) / static_cast<double>(1 << (random() % 12));
    } else {
      uint64_t bits = random() & 0x7FEFFFFFFFFFFFFFull;
      std::memcpy(&value, &bits, sizeof value);
    }
    if (value == 0.0) continue;
    int significant = 1 + static_cast<int>(random() % 17);
    int exponent = 0;
    std::string expected = referenceDigits(value, significant, exponent);
    DecimalDigits d = roundToSignificant(value, significant);
    ASSERT_EQ(d.digits, expected) << value << " to " << significant;
    ASSERT_EQ(d.exponent, exponent) << value << " to " << significant;
  }
}

}  // namespace
}  // namespace ravelin

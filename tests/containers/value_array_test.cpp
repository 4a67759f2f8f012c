// Behaviour shared by the numeric and Boolean value arrays, run against each class.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

// Per class: the element type, three distinct sample values, and how bad indexes are reported.
struct DoubleCase {
  using Array = clsArrayDouble;
  using Value = double;
  static constexpr std::array<Value, 3> kSamples{1.5, -2.25, 1e300};
  static constexpr bool kIndexCountStyle = false;
};
struct IntegerCase {
  using Array = clsArrayInteger;
  using Value = int16_t;
  static constexpr std::array<Value, 3> kSamples{7, INT16_MIN, INT16_MAX};
  static constexpr bool kIndexCountStyle = false;
};
struct LongCase {
  using Array = clsArrayLong;
  using Value = int32_t;
  static constexpr std::array<Value, 3> kSamples{100000, -1, INT32_MIN};
  static constexpr bool kIndexCountStyle = false;
};
struct SingleCase {
  using Array = clsArraySingle;
  using Value = float;
  static constexpr std::array<Value, 3> kSamples{0.5f, -3.25f, 1e30f};
  static constexpr bool kIndexCountStyle = true;
};
struct BooleanCase {
  using Array = clsArrayBoolean;
  using Value = bool;
  static constexpr std::array<Value, 3> kSamples{true, false, true};
  static constexpr bool kIndexCountStyle = false;
};

template <typename F>
AutomationError errorOf(F&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error raised";
  return AutomationError(0, u"", u"");
}

// Fills a new array with n values, cycling through the samples.
template <typename Case>
std::vector<typename Case::Value> fill(typename Case::Array& array, int n) {
  std::vector<typename Case::Value> added;
  for (int i = 0; i < n; ++i) {
    const auto value = Case::kSamples[static_cast<std::size_t>(i) % Case::kSamples.size()];
    EXPECT_EQ(array.add(value), i);
    added.push_back(value);
  }
  return added;
}

template <typename Case>
void expectContents(const typename Case::Array& array,
                    const std::vector<typename Case::Value>& expected) {
  ASSERT_EQ(array.getCount(), static_cast<int16_t>(expected.size()));
  EXPECT_EQ(array.Count(), array.getCount());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(array.item(static_cast<int16_t>(i)), expected[i]) << "index " << i;
  }
}

template <typename Case>
class ValueArrayTest : public testing::Test {};

using AllValueArrays = testing::Types<DoubleCase, IntegerCase, LongCase, SingleCase, BooleanCase>;
TYPED_TEST_SUITE(ValueArrayTest, AllValueArrays);

TYPED_TEST(ValueArrayTest, AddAppendsAndGrowsOneSlotAtATime) {
  typename TypeParam::Array array;
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(array.slotCount(), 2);
  std::vector<typename TypeParam::Value> added;
  for (int i = 0; i < 6; ++i) {
    const auto value = TypeParam::kSamples[static_cast<std::size_t>(i) % 3];
    EXPECT_EQ(array.add(value), i);
    added.push_back(value);
    EXPECT_EQ(array.slotCount(), std::max(2, i + 1)) << "after add " << i;
  }
  expectContents<TypeParam>(array, added);
}

TYPED_TEST(ValueArrayTest, HoldsAtMost32767Values) {
  typename TypeParam::Array array;
  const auto last = TypeParam::kSamples[1];
  for (int i = 0; i < INT16_MAX - 1; ++i)
    ASSERT_EQ(array.add(TypeParam::kSamples[0]), i);
  EXPECT_EQ(array.add(last), INT16_MAX - 1);
  EXPECT_EQ(array.getCount(), INT16_MAX);
  EXPECT_EQ(array.slotCount(), INT16_MAX);

  // The next growth step would overflow the 16-bit slot count: -1, nothing changed, and the
  // array keeps working.
  EXPECT_EQ(array.add(TypeParam::kSamples[2]), -1);
  EXPECT_EQ(array.add(TypeParam::kSamples[2]), -1);
  EXPECT_EQ(array.getCount(), INT16_MAX);
  EXPECT_EQ(array.slotCount(), INT16_MAX);
  EXPECT_EQ(array.item(INT16_MAX - 1), last);
  array.letItem(INT16_MAX - 1, TypeParam::kSamples[2]);
  EXPECT_EQ(array.item(INT16_MAX - 1), TypeParam::kSamples[2]);
}

TYPED_TEST(ValueArrayTest, SetArraySizeWithEmptyValues) {
  struct Row {
    int filled;
    int16_t size;
    int16_t count;
    int16_t slotCount;
  };
  const Row rows[] = {
      {3, 5, 5, 5},
      {5, 2, 2, 2},
      {4, 0, 0, 0},
      {0, 32767, 32767, 32767},
      // A negative size grows by one step: the count stays, the values are discarded.
      {3, -1, 3, 4},
      {1, -7, 1, 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.filled << " values, size " << row.size);
    typename TypeParam::Array array;
    fill<TypeParam>(array, row.filled);
    array.setArraySizeWithEmptyValues(row.size);
    EXPECT_EQ(array.slotCount(), row.slotCount);
    expectContents<TypeParam>(
        array, std::vector<typename TypeParam::Value>(static_cast<std::size_t>(row.count)));
    // The next add lands after the zeros; a full array of 32767 refuses it.
    const int16_t expectedIndex = row.count == INT16_MAX ? int16_t{-1} : row.count;
    EXPECT_EQ(array.add(TypeParam::kSamples[0]), expectedIndex);
  }
}

TYPED_TEST(ValueArrayTest, GrowingPastTheLimitRaisesOverflowAndKeepsTheValues) {
  typename TypeParam::Array array;
  array.setArraySizeWithEmptyValues(INT16_MAX);
  array.letItem(5, TypeParam::kSamples[0]);
  const AutomationError error = errorOf([&] { array.setArraySizeWithEmptyValues(-1); });
  EXPECT_EQ(error.number(), vb_error::kOverflow);
  EXPECT_EQ(array.getCount(), INT16_MAX);
  EXPECT_EQ(array.slotCount(), INT16_MAX);
  EXPECT_EQ(array.item(5), TypeParam::kSamples[0]);
}

TYPED_TEST(ValueArrayTest, BadItemIndexRaisesAndChangesNothing) {
  typename TypeParam::Array array;
  const auto added = fill<TypeParam>(array, 3);
  const String name(array.className());
  const String common(kCommonErrorSource);
  // The one-past-the-end slot is a valid index for clsArraySingle only.
  const std::vector<int16_t> badIndexes =
      TypeParam::kIndexCountStyle ? std::vector<int16_t>{-1, 4, INT16_MAX, INT16_MIN}
                                  : std::vector<int16_t>{-1, 3, 4, INT16_MAX, INT16_MIN};
  for (const int16_t index : badIndexes) {
    SCOPED_TRACE(index);
    const AutomationError onGet = errorOf([&] { (void)array.item(index); });
    const AutomationError onLet = errorOf([&] { array.letItem(index, TypeParam::kSamples[0]); });
    EXPECT_EQ(onGet.number(), CCEC_InvalidIndex);
    EXPECT_EQ(onLet.number(), CCEC_InvalidIndex);
    if (TypeParam::kIndexCountStyle) {
      const String description = u"Index=" + fromAscii(std::to_string(index)) + u" getCount()=3";
      EXPECT_EQ(onGet.source(), common + u".getItem()");
      EXPECT_EQ(onLet.source(), common + u".setItem()");
      EXPECT_EQ(onGet.description(), description);
      EXPECT_EQ(onLet.description(), description);
    } else {
      EXPECT_EQ(onGet.source(), common);
      EXPECT_EQ(onLet.source(), common);
      EXPECT_EQ(onGet.description(), name + u".getItem()");
      EXPECT_EQ(onLet.description(), name + u".letItem()");
    }
  }
  expectContents<TypeParam>(array, added);
  EXPECT_EQ(array.slotCount(), 3);
}

TYPED_TEST(ValueArrayTest, CopyInterfaceRefuses) {
  typename TypeParam::Array array;
  fill<TypeParam>(array, 2);
  const ObjectRef other = std::make_shared<typename TypeParam::Array>();
  const String name(array.className());
  const std::pair<AutomationError, const char16_t*> refusals[] = {
      {errorOf([&] { array.IObject_copyObject(other); }), u".IObject_copyObject()"},
      {errorOf([&] { array.IObject_copyToObject(other, 0); }), u".IObject_copyToObject()"},
      {errorOf([&] { (void)array.IObject_generateCopy(); }), u".IObject_generateCopy()"},
  };
  for (const auto& [error, operation] : refusals) {
    SCOPED_TRACE(toUtf8(operation));
    EXPECT_EQ(error.number(), CCEC_FeatureNotImplemented);
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
    EXPECT_EQ(error.description(), name + operation);
  }
  EXPECT_EQ(array.getCount(), 2);
}

// The classes with removal and clear (all but clsArraySingle).
template <typename Case>
class RemovableValueArrayTest : public testing::Test {
 protected:
  static void clear(typename Case::Array& array) {
    if constexpr (std::is_same_v<typename Case::Value, bool>) {
      array.clear(false);
    } else {
      array.clear();
    }
  }
};

using RemovableValueArrays = testing::Types<DoubleCase, IntegerCase, LongCase, BooleanCase>;
TYPED_TEST_SUITE(RemovableValueArrayTest, RemovableValueArrays);

TYPED_TEST(RemovableValueArrayTest, RemoveItemKeepsOrderAndTrapsBadIndexes) {
  const auto [a, b, c] = TypeParam::kSamples;
  using Values = std::vector<typename TypeParam::Value>;
  struct Row {
    int16_t index;
    bool removed;
    Values left;
  };
  const Row rows[] = {
      {0, true, {b, c}},
      {1, true, {a, c}},
      {2, true, {a, b}},
      {3, false, {a, b, c}},
      {-1, false, {a, b, c}},
      {INT16_MAX, false, {a, b, c}},
      {INT16_MIN, false, {a, b, c}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.index);
    typename TypeParam::Array array;
    fill<TypeParam>(array, 3);
    EXPECT_EQ(array.removeItem(row.index), row.removed);
    expectContents<TypeParam>(array, row.left);
    EXPECT_EQ(array.slotCount(), 3);  // storage never shrinks
    // The freed slot is reused by the next add.
    EXPECT_EQ(array.add(c), static_cast<int16_t>(row.left.size()));
  }
}

TYPED_TEST(RemovableValueArrayTest, RemoveLastItemUntilEmpty) {
  typename TypeParam::Array array;
  auto values = fill<TypeParam>(array, 3);
  while (!values.empty()) {
    EXPECT_TRUE(array.removeLastItem());
    values.pop_back();
    expectContents<TypeParam>(array, values);
  }
  EXPECT_FALSE(array.removeLastItem());
  EXPECT_FALSE(array.removeItem(0));
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(array.slotCount(), 3);
}

TYPED_TEST(RemovableValueArrayTest, ClearKeepsTheStorage) {
  typename TypeParam::Array array;
  fill<TypeParam>(array, 5);
  TestFixture::clear(array);
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(array.slotCount(), 5);
  EXPECT_EQ(errorOf([&] { (void)array.item(0); }).number(), CCEC_InvalidIndex);
  EXPECT_EQ(array.add(TypeParam::kSamples[2]), 0);
  EXPECT_EQ(array.slotCount(), 5);
  expectContents<TypeParam>(array, {TypeParam::kSamples[2]});
}

}  // namespace
}  // namespace ravelin

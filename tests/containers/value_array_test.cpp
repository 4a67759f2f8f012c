// Behaviour shared by the numeric and Boolean value arrays, run against each class.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

// Per class: three sample values, and whether bad indexes are reported as index and count
// (clsArraySingle, which also accepts the index one past the last element).
template <typename A, typename V, V a, V b, V c, bool indexCountStyle = false>
struct Case {
  using Array = A;
  using Value = V;
  static constexpr std::array<V, 3> kSamples{a, b, c};
  static constexpr bool kIndexCountStyle = indexCountStyle;
};
using DoubleCase = Case<clsArrayDouble, double, 1.5, -2.25, 1e300>;
using IntegerCase = Case<clsArrayInteger, int16_t, 7, INT16_MIN, INT16_MAX>;
using LongCase = Case<clsArrayLong, int32_t, 100000, -1, INT32_MIN>;
using SingleCase = Case<clsArraySingle, float, 0.5f, -3.25f, 1e30f, true>;
using BooleanCase = Case<clsArrayBoolean, bool, true, false, true>;

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

// Adds n values cycling through the samples, checking each index; returns what was added.
template <typename C>
std::vector<typename C::Value> fill(typename C::Array& array, int n) {
  std::vector<typename C::Value> added;
  for (int i = 0; i < n; ++i) {
    added.push_back(C::kSamples[static_cast<std::size_t>(i % 3)]);
    EXPECT_EQ(array.add(added.back()), i);
  }
  return added;
}

template <typename C>
void expectContents(const typename C::Array& array, const std::vector<typename C::Value>& want) {
  ASSERT_EQ(array.getCount(), static_cast<int16_t>(want.size()));
  EXPECT_EQ(array.Count(), array.getCount());
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(array.item(static_cast<int16_t>(i)), want[i]) << "index " << i;
  }
}

template <typename C>
class ValueArrayTest : public testing::Test {};
using AllValueArrays = testing::Types<DoubleCase, IntegerCase, LongCase, SingleCase, BooleanCase>;
TYPED_TEST_SUITE(ValueArrayTest, AllValueArrays);

TYPED_TEST(ValueArrayTest, AddGrowsOneSlotAtATimeUpTo32767Values) {
  typename TypeParam::Array array;
  EXPECT_EQ(array.slotCount(), 2);
  for (int i = 0; i < INT16_MAX; ++i) {
    ASSERT_EQ(array.add(TypeParam::kSamples[static_cast<std::size_t>(i % 3)]), i);
    ASSERT_EQ(array.slotCount(), std::max(2, i + 1));
  }
  // The next growth step would overflow the 16-bit slot count: -1, and nothing changes.
  EXPECT_EQ(array.add(TypeParam::kSamples[1]), -1);
  EXPECT_EQ(array.getCount(), INT16_MAX);
  EXPECT_EQ(array.slotCount(), INT16_MAX);
  EXPECT_EQ(array.item(0), TypeParam::kSamples[0]);
  EXPECT_EQ(array.item(INT16_MAX - 1), TypeParam::kSamples[(INT16_MAX - 1) % 3]);
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
      {0, INT16_MAX, INT16_MAX, INT16_MAX},
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
    expectContents<TypeParam>(array, std::vector<typename TypeParam::Value>(row.count));
    // The next add lands after the zeros, unless the array is full.
    EXPECT_EQ(array.add(TypeParam::kSamples[0]), row.count == INT16_MAX ? -1 : row.count);
  }

  // Growing a full array raises overflow and leaves it as it was.
  typename TypeParam::Array full;
  full.setArraySizeWithEmptyValues(INT16_MAX);
  full.letItem(5, TypeParam::kSamples[0]);
  EXPECT_EQ(errorOf([&] { full.setArraySizeWithEmptyValues(-1); }).number(), vb_error::kOverflow);
  EXPECT_EQ(full.slotCount(), INT16_MAX);
  EXPECT_EQ(full.item(5), TypeParam::kSamples[0]);
}

TYPED_TEST(ValueArrayTest, BadItemIndexRaisesAndChangesNothing) {
  typename TypeParam::Array array;
  const auto added = fill<TypeParam>(array, 3);
  const String name(array.className());
  const String common(kCommonErrorSource);
  const std::vector<int16_t> badIndexes{-1, 4, INT16_MAX, INT16_MIN};
  for (int16_t index : badIndexes) {
    SCOPED_TRACE(index);
    const AutomationError onGet = errorOf([&] { (void)array.item(index); });
    const AutomationError onLet = errorOf([&] { array.letItem(index, TypeParam::kSamples[1]); });
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
  // Index count (past the end everywhere but in clsArraySingle) runs in examples/value_arrays.vbs.
  expectContents<TypeParam>(array, added);
}

TYPED_TEST(ValueArrayTest, CopyInterfaceRefuses) {
  typename TypeParam::Array array;
  const ObjectRef other = std::make_shared<typename TypeParam::Array>();
  const std::pair<AutomationError, const char16_t*> refusals[] = {
      {errorOf([&] { array.IObject_copyObject(other); }), u".IObject_copyObject()"},
      {errorOf([&] { array.IObject_copyToObject(other, 0); }), u".IObject_copyToObject()"},
      {errorOf([&] { (void)array.IObject_generateCopy(); }), u".IObject_generateCopy()"},
  };
  for (const auto& [error, operation] : refusals) {
    EXPECT_EQ(error.number(), CCEC_FeatureNotImplemented);
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
    EXPECT_EQ(error.description(), String(array.className()) + operation);
  }
}

// The classes with removal and clear (all but clsArraySingle).
template <typename C>
class RemovableValueArrayTest : public testing::Test {};
using RemovableValueArrays = testing::Types<DoubleCase, IntegerCase, LongCase, BooleanCase>;
TYPED_TEST_SUITE(RemovableValueArrayTest, RemovableValueArrays);

TYPED_TEST(RemovableValueArrayTest, RemoveItemKeepsOrderAndTrapsBadIndexes) {
  const auto [a, b, c] = TypeParam::kSamples;
  struct Row {
    int16_t index;
    bool removed;
    std::vector<typename TypeParam::Value> left;
  };
  const Row rows[] = {
      {0, true, {b, c}},     {1, true, {a, c}},      {2, true, {a, b}},
      {3, false, {a, b, c}}, {-1, false, {a, b, c}}, {INT16_MIN, false, {a, b, c}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.index);
    typename TypeParam::Array array;
    fill<TypeParam>(array, 3);
    EXPECT_EQ(array.removeItem(row.index), row.removed);
    expectContents<TypeParam>(array, row.left);
    EXPECT_EQ(array.slotCount(), 3);  // storage never shrinks
  }
}

TYPED_TEST(RemovableValueArrayTest, RemoveLastItemAndClearKeepTheSlots) {
  typename TypeParam::Array array;
  auto values = fill<TypeParam>(array, 5);
  EXPECT_TRUE(array.removeLastItem());
  values.pop_back();
  expectContents<TypeParam>(array, values);
  if constexpr (std::is_same_v<typename TypeParam::Value, bool>) {
    array.clear(false);
  } else {
    array.clear();
  }
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_FALSE(array.removeLastItem());
  EXPECT_FALSE(array.removeItem(0));
  EXPECT_EQ(array.slotCount(), 5);
  EXPECT_EQ(array.add(TypeParam::kSamples[1]), 0);
  expectContents<TypeParam>(array, {TypeParam::kSamples[1]});
}

}  // namespace
}  // namespace ravelin

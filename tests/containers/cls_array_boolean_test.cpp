#include <gtest/gtest.h>

#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

// An array of n values alternating True and False.
clsArrayBoolean alternating(int n) {
  clsArrayBoolean array;
  for (int i = 0; i < n; ++i)
    array.add(i % 2 == 0);
  return array;
}

TEST(ClsArrayBoolean, ClearedFillReappearsThroughAddTo) {
  clsArrayBoolean array;
  for (int i = 0; i < 3; ++i)
    array.add(true);
  array.clear(true);
  EXPECT_EQ(array.getItemsAsList(), u"");
  EXPECT_TRUE(array.addTo(4, false));
  EXPECT_EQ(array.getItemsAsList(), u"True,True,True,False,False");
}

TEST(ClsArrayBoolean, AddTo) {
  struct Row {
    int filled;
    int16_t index;
    bool result;
    const char16_t* list;
    int16_t slotCount;
  };
  const Row rows[] = {
      {3, 1, true, u"True,True,True", 3},
      {2, 2, true, u"True,False,True", 3},
      {0, 2, true, u"False,False,True", 3},
      // Extending sizes the slots to exactly index + 1, even below the old slot count.
      {0, 0, true, u"True", 1},
      {2, -1, false, u"True,False", 2},
      {2, INT16_MAX, false, u"True,False", 2},  // index + 1 overflows
      {0, INT16_MAX - 1, true, nullptr, INT16_MAX},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.index);
    clsArrayBoolean array = alternating(row.filled);
    EXPECT_EQ(array.addTo(row.index, true), row.result);
    if (row.list != nullptr) {
      EXPECT_EQ(array.getItemsAsList(), row.list);
    }
    EXPECT_EQ(array.slotCount(), row.slotCount);
  }
}

TEST(ClsArrayBoolean, AllocateSpacePublic) {
  struct Row {
    int16_t size;
    bool preserve;
    bool reset;
    const char16_t* list;  // starting from True, False, True, False
    int16_t slotCount;
  };
  const Row rows[] = {
      {6, true, false, u"True,False,True,False", 6},
      {6, false, false, u"False,False,False,False", 6},  // the count is never raised
      {2, true, false, u"True,False", 2},
      {6, true, true, u"", 6},
      {0, true, false, u"", 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.size << row.preserve << row.reset);
    clsArrayBoolean array = alternating(4);
    array.allocateSpacePublic(row.size, row.preserve, row.reset);
    EXPECT_EQ(array.getItemsAsList(), row.list);
    EXPECT_EQ(array.slotCount(), row.slotCount);
  }

  // Values kept past a reset count come back when addTo extends over them.
  clsArrayBoolean array = alternating(3);
  array.allocateSpacePublic(5, true, true);
  EXPECT_TRUE(array.addTo(3, true));
  EXPECT_EQ(array.getItemsAsList(), u"True,False,True,True");
  EXPECT_EQ(errorNumberOf([&] { array.allocateSpacePublic(-2); }), vb_error::kSubscriptOutOfRange);
  EXPECT_EQ(array.getItemsAsList(), u"True,False,True,True");
}

}  // namespace
}  // namespace ravelin

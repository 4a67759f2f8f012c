#include <gtest/gtest.h>

#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

std::vector<bool> contentsOf(const clsArrayBoolean& array) {
  std::vector<bool> values;
  for (int16_t i = 0; i < array.getCount(); ++i)
    values.push_back(array.item(i));
  return values;
}

TEST(ClsArrayBoolean, ClearedFillReappearsThroughAddTo) {
  clsArrayBoolean array;
  for (int i = 0; i < 3; ++i)
    array.add(true);
  array.clear(true);
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_TRUE(array.addTo(4, false));
  EXPECT_EQ(contentsOf(array), (std::vector<bool>{true, true, true, false, false}));
  EXPECT_EQ(array.slotCount(), 5);
}

TEST(ClsArrayBoolean, AddTo) {
  struct Row {
    const char* name;
    int filled;  // values added first, alternating true and false
    int16_t index;
    bool value;
    bool result;
    std::vector<bool> contents;
    int16_t slotCount;
  };
  const Row rows[] = {
      {"inside the count", 3, 1, true, true, {true, true, true}, 3},
      {"at the count", 2, 2, true, true, {true, false, true}, 3},
      {"past the count on an empty array", 0, 2, true, true, {false, false, true}, 3},
      // Extending sizes the slots to exactly index + 1, even below the old slot count.
      {"extending a small part of a larger storage", 0, 0, true, true, {true}, 1},
      {"negative index", 2, -1, true, false, {true, false}, 2},
      {"last Integer index: index + 1 overflows", 2, INT16_MAX, true, false, {true, false}, 2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    clsArrayBoolean array;
    for (int i = 0; i < row.filled; ++i)
      array.add(i % 2 == 0);
    EXPECT_EQ(array.addTo(row.index, row.value), row.result);
    EXPECT_EQ(contentsOf(array), row.contents);
    EXPECT_EQ(array.slotCount(), row.slotCount);
  }

  clsArrayBoolean full;
  EXPECT_TRUE(full.addTo(INT16_MAX - 1, true));
  EXPECT_EQ(full.getCount(), INT16_MAX);
  EXPECT_TRUE(full.item(INT16_MAX - 1));
}

TEST(ClsArrayBoolean, AllocateSpacePublic) {
  struct Row {
    const char* name;
    int16_t size;
    bool preserve;
    bool reset;
    std::vector<bool> contents;  // starting from true, false, true, true
    int16_t slotCount;
  };
  const Row rows[] = {
      {"grow, keeping values", 6, true, false, {true, false, true, true}, 6},
      {"grow, discarding values: count is not raised",
       6,
       false,
       false,
       {false, false, false, false},
       6},
      {"shrink lowers the count", 2, true, false, {true, false}, 2},
      {"reset the count", 6, true, true, {}, 6},
      {"zero", 0, true, false, {}, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    clsArrayBoolean array;
    for (const bool value : {true, false, true, true})
      array.add(value);
    array.allocateSpacePublic(row.size, row.preserve, row.reset);
    EXPECT_EQ(contentsOf(array), row.contents);
    EXPECT_EQ(array.slotCount(), row.slotCount);
  }

  // Values kept past a reset count come back when addTo extends over them.
  clsArrayBoolean array;
  for (const bool value : {true, false, true})
    array.add(value);
  array.allocateSpacePublic(5, true, true);
  EXPECT_TRUE(array.addTo(3, true));
  EXPECT_EQ(contentsOf(array), (std::vector<bool>{true, false, true, true}));

  try {
    array.allocateSpacePublic(-2);
    ADD_FAILURE() << "a negative size was accepted";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), vb_error::kSubscriptOutOfRange);
  }
  EXPECT_EQ(contentsOf(array), (std::vector<bool>{true, false, true, true}));
}

TEST(ClsArrayBoolean, GetItemsAsList) {
  clsArrayBoolean array;
  EXPECT_EQ(array.getItemsAsList(), u"");
  array.add(true);
  EXPECT_EQ(array.getItemsAsList(), u"True");
  array.add(false);
  array.add(true);
  EXPECT_EQ(array.getItemsAsList(), u"True,False,True");
}

}  // namespace
}  // namespace ravelin

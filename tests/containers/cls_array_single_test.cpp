#include <gtest/gtest.h>

#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

TEST(ClsArraySingle, OnePastTheEndIsTheSpareSlot) {
  clsArraySingle array;
  array.letItem(0, 2.5f);  // writes the spare slot; the count stays 0
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(array.item(0), 2.5f);
  EXPECT_EQ(array.add(1.25f), 0);  // the add overwrites it
  EXPECT_EQ(array.item(0), 1.25f);
  EXPECT_EQ(array.item(1), 0.0f);

  // A full array's spare slot is there too.
  clsArraySingle full;
  full.setArraySizeWithEmptyValues(INT16_MAX);
  full.letItem(INT16_MAX, 9.0f);
  EXPECT_EQ(full.add(1.0f), -1);
  EXPECT_EQ(full.item(INT16_MAX), 9.0f);
}

}  // namespace
}  // namespace ravelin

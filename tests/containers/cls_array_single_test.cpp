#include <gtest/gtest.h>

#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

TEST(ClsArraySingle, OnePastTheEndIsTheSpareSlot) {
  clsArraySingle array;
  EXPECT_EQ(array.item(0), 0.0f);
  array.letItem(0, 2.5f);  // writes the spare slot; the count stays 0
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(array.item(0), 2.5f);

  EXPECT_EQ(array.add(1.25f), 0);  // the add overwrites it
  EXPECT_EQ(array.item(0), 1.25f);
  EXPECT_EQ(array.item(1), 0.0f);

  // Filling the slots grows the storage with the written spare value kept in place.
  EXPECT_EQ(array.add(3.0f), 1);
  array.letItem(2, -7.5f);
  EXPECT_EQ(array.add(4.0f), 2);
  EXPECT_EQ(array.slotCount(), 3);
  EXPECT_EQ(array.item(2), 4.0f);
  EXPECT_EQ(array.item(3), 0.0f);
}

TEST(ClsArraySingle, SpareSlotOfAFullArray) {
  clsArraySingle array;
  array.setArraySizeWithEmptyValues(INT16_MAX);
  array.letItem(INT16_MAX, 9.0f);
  EXPECT_EQ(array.item(INT16_MAX), 9.0f);
  EXPECT_EQ(array.add(1.0f), -1);
  EXPECT_EQ(array.item(INT16_MAX), 9.0f);
}

TEST(ClsArraySingle, BadIndexNamesIndexAndCount) {
  clsArraySingle array;
  array.add(1.0f);
  try {
    (void)array.item(2);
    ADD_FAILURE() << "index 2 was accepted";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), CCEC_InvalidIndex);
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common.getItem()");
    EXPECT_EQ(error.description(), u"Index=2 getCount()=1");
  }
  try {
    array.letItem(-5, 1.0f);
    ADD_FAILURE() << "index -5 was accepted";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common.setItem()");
    EXPECT_EQ(error.description(), u"Index=-5 getCount()=1");
  }
}

}  // namespace
}  // namespace ravelin

// clsArrayStringLong, clsArrayStringObject and clsArrayVariObject (clsArrayString2 has its own
// tests).
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/containers/cls_array_string_long.hpp>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/containers/cls_array_vari_object.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <string>
#include <tuple>
#include <vector>

#include "../support/error_number.hpp"

namespace ravelin {
namespace {

// Number, source and description of the error an action raises (zero and empty for none).
using Raised = std::tuple<int32_t, std::string, std::string>;
template <typename Action>
Raised raisedBy(Action&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return {error.number(), toUtf8(error.source()), toUtf8(error.description())};
  }
  return {};
}

Variant call(const ObjectRef& object, StringView name, std::vector<CallArgument> arguments = {},
             MemberKind kind = MemberKind::Method) {
  return callMember(object, name, kind, arguments);
}

// The stable insertion and findKey's two directions run in examples/pair_arrays.vbs; here the
// extremes of the key and the full array.
TEST(PairArrays, AddSortAscByKeyAtTheExtremes) {
  clsArrayStringLong array;
  std::vector<int16_t> indexes;
  for (int32_t key : {-1, INT32_MIN, INT32_MAX, 0})
    indexes.push_back(array.addSortAscByKey(u"t", key));
  EXPECT_EQ(indexes, (std::vector<int16_t>{0, 0, 2, 2}));
  std::vector<int32_t> keys;
  for (int16_t i = 0; i < array.getCount(); ++i)
    keys.push_back(array.getItemLong(i));
  EXPECT_EQ(keys, (std::vector<int32_t>{INT32_MIN, -1, 0, INT32_MAX}));

  // A full array cannot grow: both adds fail and change nothing.
  clsArrayStringLong full;
  full.setArraySizeWithEmptyValues(32767);
  EXPECT_EQ(full.addSortAscByKey(u"x", -1), -1);
  EXPECT_FALSE(full.add(u"x", 0));
  EXPECT_EQ(full.getCount(), 32767);
  EXPECT_EQ(full.getItemLong(0), 0);
}

TEST(PairArrays, BadIndexesRaiseTheirClassTextsAndRemovalsAnswerFalse) {
  clsArrayStringLong longs;
  longs.add(u"x", 1);
  clsArrayVariObject varis;
  varis.add(Variant(1), nullptr);
  clsArrayStringObject objects;
  objects.add(u"k", nullptr);
  const std::string common = "Tarn.Quillmark.Common";
  struct Row {
    std::function<void(int16_t)> action;
    std::string source;
    std::string description;
  };
  // One row per kind of text: the shared ".item()", a getter, a setter, and the Long-indexed
  // class with its empty source and its "itemKey" quirk (the setters of clsArrayStringLong and
  // clsArrayStringObject run in examples/pair_arrays.vbs).
  const Row rows[] = {
      {[&](int16_t i) { longs.getItem(i); }, common, "clsArrayStringLong.item()"},
      {[&](int16_t i) { varis.getItem(i); }, common, "clsArrayVariObject.getItem()"},
      {[&](int16_t i) { varis.setItemObject(nullptr, i); }, common,
       "clsArrayVariObject.setItemObject()"},
      {[&](int16_t i) { objects.ItemKey(i); }, "", "clsLArrayStringObject.item()"},
      {[&](int16_t i) { objects.letItemKey(i, u""); }, "", "clsLArrayStringObject.itemKey()"},
  };
  for (const Row& row : rows) {
    for (const int16_t index : {int16_t{-1}, int16_t{1}}) {
      SCOPED_TRACE(row.description + " " + std::to_string(index));
      EXPECT_EQ(raisedBy([&] { row.action(index); }),
                Raised(CCEC_InvalidIndex, row.source, row.description));
    }
  }
  EXPECT_FALSE(longs.removeItem(1));
  EXPECT_FALSE(varis.removeItem(-1));
  EXPECT_FALSE(objects.remove(1));
  EXPECT_EQ(longs.getCount() + varis.getCount() + objects.getCount(), 3);
}

TEST(PairArrays, VariObjectRowsKeepTheTypeCodeAndReleaseRemovedObjects) {
  const auto object = std::make_shared<clsArrayString2>();
  const Variant values[] = {
      Variant(),      Variant::null(),     Variant(int16_t{1}),
      Variant(1.5),   Variant(u"x"),       Variant(object),
      Variant(false), Variant(uint8_t{1}), Variant(SafeArray::vector(VarType::Variant, 0, 1))};
  clsArrayVariObject array;
  for (const Variant& value : values)
    ASSERT_TRUE(array.add(value, object));
  for (int16_t i = 0; i < array.getCount(); ++i) {
    EXPECT_EQ(static_cast<int>(array.getItem(i).eVntValueType), values[i].varTypeCode()) << i;
    EXPECT_EQ(array.getItemVariant(i), values[i]) << i;
  }
  array.setItemVariant(Variant(u"text"), 0);
  EXPECT_EQ(array.getItem(0).eVntValueType, VarType::String);

  // Removed rows let go of their value and object at once. The object is held by `object`,
  // values[5], every row's object and row 5's value.
  EXPECT_EQ(object.use_count(), 2 + 9 + 1);
  for (int16_t i = array.getCount(); i > 0; --i)
    EXPECT_TRUE(i % 2 ? array.removeItem(0) : array.removeLastItem());
  EXPECT_EQ(object.use_count(), 2);
  EXPECT_EQ(array.getSlotCount(), 10);
}

TEST(PairArrays, StringObjectKeyedLookupsTakeTheLastMatch) {
  const char16_t* keys[] = {u"a", u"b", u"a", u"c"};
  struct Row {
    const char16_t* key;
    int32_t index;
  };
  const Row rows[] = {{u"a", 2}, {u"b", 1}, {u"A", -1}, {u"", -1}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    clsArrayStringObject array;
    std::vector<ObjectRef> objects;
    for (const char16_t* key : keys) {
      objects.push_back(std::make_shared<clsArrayString2>());
      array.add(key, objects.back());
    }
    const ObjectRef expected = row.index < 0 ? nullptr : objects[row.index];
    EXPECT_EQ(array.ItemIndex(row.key), row.index);
    EXPECT_EQ(array.find(row.key), expected);
    EXPECT_EQ(array.removeWithKey(row.key), row.index >= 0);
    EXPECT_EQ(array.ItemIndex(u"c"), row.index < 0 ? 3 : 2);
  }

  // Told to ignore a missing key, it does not raise even when asked to (the raised error runs
  // in examples/pair_arrays.vbs).
  EXPECT_FALSE(clsArrayStringObject().removeWithKey(u"x", true, true));
}

TEST(PairArrays, RecordsAndObjectsByName) {
  const auto& registry = libraryRegistry();
  // clsArrayStringLong's record runs in tests/scripts/record_fields.vbs.
  ObjectRef longs = registry.create(u"Ravelin.clsArrayStringLong");
  ObjectRef varis = registry.create(u"Ravelin.clsArrayVariObject");
  call(varis, u"add", {{u"v"}, {Variant(longs)}});
  const udtVariObject row = udtVariObjectFrom(call(varis, u"getItem", {{Variant(0)}}));
  EXPECT_EQ(row.eVntValueType, VarType::String);
  EXPECT_EQ(row.oValue, longs);

  // clsArrayStringObject: item is set with an object (a plain value is a type mismatch), and
  // the class has no copy interface.
  ObjectRef objects = registry.create(u"Ravelin.clsArrayStringObject");
  call(objects, u"add", {{u"k"}, {Variant(varis)}});
  call(objects, u"item", {{Variant(0)}, {Variant(longs)}}, MemberKind::PropertySet);
  EXPECT_EQ(call(objects, u"find", {{u"k"}}), Variant(longs));
  EXPECT_EQ(errorNumberOf([&] {
              call(objects, u"item", {{Variant(0)}, {u"text"}}, MemberKind::PropertySet);
            }),
            13);
  EXPECT_EQ(errorNumberOf([&] { call(objects, u"generateCopy"); }), vb_error::kMemberNotSupported);
}

}  // namespace
}  // namespace ravelin

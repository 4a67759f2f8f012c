#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

#include "../support/error_number.hpp"

namespace ravelin {
namespace {

struct Filled {
  clsArrayStringObject array;
  std::vector<ObjectRef> objects;
};

// Rows (a, 0) (b, 1) (a, 2) (c, 3), each object a distinct array.
std::unique_ptr<Filled> filled() {
  auto filled = std::make_unique<Filled>();
  for (const char16_t* key : {u"a", u"b", u"a", u"c"}) {
    filled->objects.push_back(std::make_shared<clsArrayString2>());
    filled->array.add(key, filled->objects.back());
  }
  return filled;
}

TEST(ClsArrayStringObject, KeyedLookupsAndRemovalTakeTheLastMatch) {
  struct Row {
    const char16_t* key;
    int32_t index;  // -1: none
  };
  const Row rows[] = {{u"a", 2}, {u"b", 1}, {u"c", 3}, {u"A", -1}, {u"", -1}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    const auto f = filled();
    EXPECT_EQ(f->array.ItemIndex(row.key), row.index);
    const ObjectRef expected = row.index < 0 ? nullptr : f->objects[row.index];
    EXPECT_EQ(f->array.find(row.key), expected);
    EXPECT_EQ(f->array.removeWithKey(row.key), row.index >= 0);
    EXPECT_EQ(f->array.getCount(), row.index < 0 ? 4 : 3);
    for (int32_t i = 0; i < f->array.getCount(); ++i)
      EXPECT_NE(f->array.item(i), expected);
  }
}

TEST(ClsArrayStringObject, MissingKeyFlagsOfRemoveWithKey) {
  struct Row {
    bool ignoreNotFound;
    bool raiseNotFound;
    bool raises;
  };
  const Row rows[] = {
      {false, false, false}, {true, false, false}, {false, true, true}, {true, true, false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.ignoreNotFound << row.raiseNotFound);
    const auto f = filled();
    try {
      EXPECT_FALSE(f->array.removeWithKey(u"zz", row.ignoreNotFound, row.raiseNotFound));
      EXPECT_FALSE(row.raises);
    } catch (const AutomationError& error) {
      EXPECT_TRUE(row.raises);
      EXPECT_EQ(error.number(), CCEC_ItemNotFound);
      EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
      EXPECT_EQ(error.description(), u"clsLArrayStringObject.remove()");
    }
    EXPECT_EQ(f->array.getCount(), 4);
    // A key that is present is removed whatever the flags say.
    EXPECT_TRUE(f->array.removeWithKey(u"b", row.ignoreNotFound, row.raiseNotFound));
  }
}

TEST(ClsArrayStringObject, BadIndexesNameTheClassInTheDescription) {
  const auto f = filled();
  clsArrayStringObject& array = f->array;
  struct Row {
    std::function<void(int32_t)> action;
    const char16_t* description;
  };
  const Row rows[] = {
      {[&](int32_t i) { array.item(i); }, u"clsLArrayStringObject.item()"},
      {[&](int32_t i) { array.setItem(i, nullptr); }, u"clsLArrayStringObject.item()"},
      {[&](int32_t i) { array.ItemKey(i); }, u"clsLArrayStringObject.item()"},
      {[&](int32_t i) { array.letItemKey(i, u"k"); }, u"clsLArrayStringObject.itemKey()"},
  };
  for (const Row& row : rows) {
    for (int32_t index : {-1, 4, INT32_MAX}) {
      SCOPED_TRACE(toUtf8(row.description) + " " + std::to_string(index));
      try {
        row.action(index);
        ADD_FAILURE() << "no error";
      } catch (const AutomationError& error) {
        EXPECT_EQ(error.number(), CCEC_InvalidIndex);
        EXPECT_EQ(error.source(), u"");
        EXPECT_EQ(error.description(), row.description);
      }
    }
  }
  EXPECT_FALSE(array.remove(4));
  EXPECT_FALSE(array.remove(-1));
  EXPECT_EQ(array.getCount(), 4);
}

TEST(ClsArrayStringObject, StorageGrowsFrom500AndKeepsRemovedObjects) {
  clsArrayStringObject array;
  auto object = std::make_shared<clsArrayString2>();
  const std::weak_ptr<clsArrayString2> alive = object;
  array.add(u"held", std::move(object));
  // removeLast and removeAll only move the count: the slot holds its object until reused.
  EXPECT_TRUE(array.removeLast());
  EXPECT_FALSE(alive.expired());
  for (int i = 0; i < 500; ++i)
    array.add(u"k", nullptr);
  EXPECT_TRUE(alive.expired());
  EXPECT_EQ(array.slotCount(), 500);
  array.add(u"k", nullptr);
  EXPECT_EQ(array.slotCount(), 502);

  // allocateSpacePublic lowers the count, never raises it, and resets it on request.
  array.allocateSpacePublic(3);
  EXPECT_EQ(array.getCount(), 3);
  EXPECT_EQ(array.ItemKey(2), u"k");
  array.allocateSpacePublic(10);
  EXPECT_EQ(array.getCount(), 3);
  array.allocateSpacePublic(10, false);
  EXPECT_EQ(array.ItemKey(2), u"");
  array.allocateSpacePublic(10, true, true);
  EXPECT_EQ(array.getCount(), 0);
  EXPECT_EQ(errorNumberOf([&] { array.allocateSpacePublic(-1); }), 9);
  EXPECT_EQ(array.slotCount(), 10);
}

TEST(ClsArrayStringObject, ObjectPropertiesByName) {
  ObjectRef array = ClassRegistry::library().create(u"Ravelin.clsArrayStringObject");
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->className(), u"clsArrayStringObject");
  const ObjectRef value = std::make_shared<clsArrayString2>();
  std::vector<CallArgument> add = {{u"k"}, {Variant(value)}};
  EXPECT_EQ(callMember(array, u"add", MemberKind::Method, add), Variant(true));
  // item is set with an object; assigning it a plain value is a type mismatch.
  std::vector<CallArgument> setNothing = {{Variant(0)}, {Variant::nothing()}};
  callMember(array, u"item", MemberKind::PropertySet, setNothing);
  std::vector<CallArgument> index = {{Variant(0)}};
  EXPECT_EQ(callMember(array, u"item", MemberKind::PropertyGet, index), Variant::nothing());
  std::vector<CallArgument> setText = {{Variant(0)}, {u"text"}};
  EXPECT_EQ(errorNumberOf([&] { callMember(array, u"item", MemberKind::PropertySet, setText); }),
            13);
  std::vector<CallArgument> key = {{u"k"}};
  EXPECT_EQ(callMember(array, u"ItemIndex", MemberKind::PropertyGet, key), Variant(0));
  Variant raise(true);
  std::vector<CallArgument> removeMissing = {
      {u"x"}, CallArgument::omittedArgument(), {raise, &raise}};
  EXPECT_EQ(errorNumberOf(
                [&] { callMember(array, u"removeWithKey", MemberKind::Method, removeMissing); }),
            CCEC_ItemNotFound);
  // This class has no copy interface.
  EXPECT_EQ(errorNumberOf([&] {
              std::vector<CallArgument> none;
              callMember(array, u"generateCopy", MemberKind::Method, none);
            }),
            vb_error::kMemberNotSupported);
}

}  // namespace
}  // namespace ravelin

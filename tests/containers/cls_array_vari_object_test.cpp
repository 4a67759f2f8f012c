#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/containers/cls_array_vari_object.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

TEST(ClsArrayVariObject, RowsRememberTheVariantTypeOfTheirValue) {
  const auto owner = std::make_shared<clsArrayString2>();
  struct Row {
    Variant value;
    int32_t type;
  };
  const Row rows[] = {
      {Variant(), 0},
      {Variant::null(), 1},
      {Variant(int16_t{1}), 2},
      {Variant(1), 3},
      {Variant(1.5), 5},
      {Variant(u"x"), 8},
      {Variant(owner), 9},
      {Variant(false), 11},
      {Variant(uint8_t{1}), 17},
      {Variant(SafeArray::vector(VarType::Variant, 0, 1)), 8204},
  };
  clsArrayVariObject array;
  for (const Row& row : rows)
    ASSERT_TRUE(array.add(row.value, owner));
  for (int16_t i = 0; i < array.getCount(); ++i) {
    SCOPED_TRACE(i);
    const udtVariObject item = array.getItem(i);
    EXPECT_EQ(static_cast<int32_t>(item.eVntValueType), rows[i].type);
    EXPECT_EQ(array.getItemVariant(i), rows[i].value);
    EXPECT_EQ(item.oValue, owner);
  }
  // A new value brings its type along; a whole row is stored as given.
  array.setItemVariant(Variant(u"now text"), 0);
  EXPECT_EQ(array.getItem(0).eVntValueType, VarType::String);
  array.setItem(udtVariObject{VarType::Long, Variant(u"7"), nullptr}, 1);
  EXPECT_EQ(array.getItem(1).eVntValueType, VarType::Long);
  EXPECT_EQ(array.getItemObject(1), nullptr);
}

TEST(ClsArrayVariObject, BadIndexesRaiseInStyleAOrAnswerFalse) {
  clsArrayVariObject array;
  array.add(Variant(1), nullptr);
  using Action = std::function<void(int16_t)>;
  struct Row {
    Action action;
    const char16_t* description;
  };
  const Row rows[] = {
      {[&](int16_t i) { array.getItem(i); }, u"clsArrayVariObject.getItem()"},
      {[&](int16_t i) { array.getItemObject(i); }, u"clsArrayVariObject.getItemObject()"},
      {[&](int16_t i) { array.getItemVariant(i); }, u"clsArrayVariObject.getItemVariant()"},
      {[&](int16_t i) { array.setItem({}, i); }, u"clsArrayVariObject.setItem()"},
      {[&](int16_t i) { array.setItemVariant(Variant(2), i); },
       u"clsArrayVariObject.setItemVariant()"},
      {[&](int16_t i) { array.setItemObject(nullptr, i); }, u"clsArrayVariObject.setItemObject()"},
  };
  for (const Row& row : rows) {
    for (int16_t index : {int16_t{-1}, int16_t{1}}) {
      SCOPED_TRACE(toUtf8(row.description) + " " + std::to_string(index));
      try {
        row.action(index);
        ADD_FAILURE() << "no error";
      } catch (const AutomationError& error) {
        EXPECT_EQ(error.number(), CCEC_InvalidIndex);
        EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
        EXPECT_EQ(error.description(), row.description);
      }
    }
  }
  EXPECT_EQ(array.getItemVariant(0), Variant(1));
  EXPECT_FALSE(array.removeItem(1));
  EXPECT_EQ(array.getCount(), 1);
}

TEST(ClsArrayVariObject, RemovedRowsReleaseTheirObjects) {
  clsArrayVariObject array;
  auto first = std::make_shared<clsArrayString2>();
  auto second = std::make_shared<clsArrayString2>();
  const std::weak_ptr<clsArrayString2> firstAlive = first, secondAlive = second;
  array.add(Variant(1), std::move(first));
  array.add(Variant(2), std::move(second));
  EXPECT_TRUE(array.removeItem(0));
  EXPECT_TRUE(firstAlive.expired());
  EXPECT_EQ(array.getItemVariant(0), Variant(2));
  EXPECT_TRUE(array.removeLastItem());
  EXPECT_TRUE(secondAlive.expired());
  EXPECT_FALSE(array.removeLastItem());
  EXPECT_EQ(array.getSlotCount(), 2);
}

TEST(ClsArrayVariObject, CopyInterfaceRefusesInStyleC) {
  ObjectRef array = ClassRegistry::library().create(u"Ravelin.clsArrayVariObject");
  ASSERT_NE(array, nullptr);
  struct Row {
    const char16_t* member;
    std::vector<Variant> arguments;
    const char16_t* description;
  };
  const Row rows[] = {
      {u"copyObject", {Variant(array)}, u".copyObject()"},
      {u"copyToObject", {Variant(array), Variant(-1)}, u".copyToObject()"},
      {u"generateCopy", {}, u".generateCopy()"},
      {u"getParameterValue", {Variant(u"x")}, u".getParameterValue()"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.member));
    std::vector<CallArgument> arguments(row.arguments.begin(), row.arguments.end());
    try {
      callMember(array, row.member, MemberKind::Method, arguments);
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), CCEC_FeatureNotImplemented);
      EXPECT_EQ(error.source(), u"clsArrayVariObject");
      EXPECT_EQ(error.description(), row.description);
    }
  }
  // The row record by name: value, its type code and the object.
  std::vector<CallArgument> add = {{Variant(u"v")}, {Variant(array)}};
  EXPECT_EQ(callMember(array, u"add", MemberKind::Method, add), Variant(true));
  std::vector<CallArgument> index = {{Variant(0)}};
  const udtVariObject row =
      udtVariObjectFrom(callMember(array, u"getItem", MemberKind::Method, index));
  EXPECT_EQ(row.eVntValueType, VarType::String);
  EXPECT_EQ(row.vntValue, Variant(u"v"));
  EXPECT_EQ(row.oValue, array);
  // The array holds itself now; drop the cycle.
  std::vector<CallArgument> remove = {};
  callMember(array, u"removeLastItem", MemberKind::Method, remove);
}

}  // namespace
}  // namespace ravelin

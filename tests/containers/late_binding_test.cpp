// The value arrays and clsError driven by name, as scripts and automation clients drive them.
#include <gtest/gtest.h>

#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {
namespace {

Variant call(const ObjectRef& object, StringView member, std::vector<CallArgument> arguments = {},
             MemberKind kind = MemberKind::Method) {
  return callMember(object, member, kind, arguments);
}

TEST(LateBindingTest, EveryArrayAndTheErrorObjectAreCreatableByName) {
  const auto& registry = ClassRegistry::library();
  for (StringView name : {u"clsError", u"clsArrayDouble", u"clsArrayInteger", u"clsArrayLong",
                          u"clsArraySingle", u"clsArrayBoolean", u"clsArrayString"}) {
    SCOPED_TRACE(toUtf8(name));
    ObjectRef object = registry.create(String(kLibraryPrefix) + String(name));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->className(), name);
    EXPECT_EQ(registry.create(toUpper(name))->className(), name);
  }
  EXPECT_EQ(registry.findEnumValue(u"ccec_invalidindex"), CCEC_InvalidIndex);
}

TEST(LateBindingTest, ArraysConvertWhatTheyAreGivenByName) {
  ScopedLocale locale(u"de-DE");
  struct Row {
    StringView className;
    std::vector<Variant> values;
    StringView list;
  };
  const Row rows[] = {
      {u"clsArrayDouble", {Variant(1.5), Variant(u"2,25"), Variant(int16_t{3})}, u"1.5,2.25,3"},
      {u"clsArrayInteger", {Variant(7), Variant(-2.5), Variant(true)}, u"7,-2,-1"},
      {u"clsArrayLong", {Variant(40000), Variant(u"12")}, u"40000,12"},
      {u"clsArrayBoolean", {Variant(true), Variant(0), Variant(u"True")}, u"True,False,True"},
      {u"clsArrayString", {Variant(u"a"), Variant(2.5)}, u"a,2,5"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.className));
    ObjectRef array = ClassRegistry::library().create(row.className);
    for (const auto& value : row.values)
      call(array, u"add", {{value}});
    EXPECT_EQ(call(array, u"Count", {}, MemberKind::PropertyGet).varTypeCode(), 2);
    EXPECT_EQ(call(array, u"getitemsaslist"), Variant(row.list));
  }
}

// Named and by-reference arguments by name are covered through scripts (interpreter tests),
// the index errors at the function level (value array tests).
TEST(LateBindingTest, CopyInterfaceAndMembersOfEachClass) {
  ObjectRef strings = ClassRegistry::library().create(u"clsArrayString");
  EXPECT_EQ(call(strings, u"getClassIdAsString"), Variant(u"clsArrayString"));
  EXPECT_EQ(call(strings, u"generateCopy"), Variant::nothing());
  ObjectRef singles = ClassRegistry::library().create(u"clsArraySingle");
  EXPECT_FALSE(ClassRegistry::library().classOf(*singles)->hasMember(u"getItemsAsList"));
}

TEST(LateBindingTest, ErrorObjectRendersWhatItWasGivenByName) {
  ObjectRef error = ClassRegistry::library().create(u"Ravelin.clsError");
  call(error, u"init",
       {CallArgument::named(u"vsDescription", u"clsArrayDouble.getItem()"),
        CallArgument::named(u"vlCode", Variant(CCEC_InvalidIndex)),
        CallArgument::named(u"vsSource", u"Tarn.Quillmark.Common")});
  EXPECT_EQ(call(error, u"CompleteErrorDescription", {}, MemberKind::PropertyGet),
            Variant(u"-2147221504-clsArrayDouble.getItem()\r\n<Tarn.Quillmark.Common>"));
  EXPECT_EQ(call(error, u"getCode"), Variant(CCEC_InvalidIndex));
}

}  // namespace
}  // namespace ravelin

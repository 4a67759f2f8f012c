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

TEST(LateBindingTest, ArraysAddListAndRaiseByName) {
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
    for (const auto& value : row.values) call(array, u"add", {{value}});
    EXPECT_EQ(call(array, u"Count", {}, MemberKind::PropertyGet).varTypeCode(), 2);
    EXPECT_EQ(call(array, u"getitemsaslist"), Variant(row.list));
    try {
      call(array, u"item", {{Variant(99)}}, MemberKind::PropertyGet);
      ADD_FAILURE() << "item(99) did not raise";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), CCEC_InvalidIndex);
      EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
      EXPECT_EQ(error.description(), String(row.className) + u".getItem()");
    }
  }
}

TEST(LateBindingTest, OptionalAndByReferenceParametersOfTheArrays) {
  ObjectRef strings = ClassRegistry::library().create(u"clsArrayString");
  call(strings, u"add", {{Variant(u"a")}});
  call(strings, u"add", {{Variant(u"b")}});
  EXPECT_EQ(call(strings, u"getItemsAsList"), Variant(u"a,b"));
  EXPECT_EQ(call(strings, u"getItemsAsList", {CallArgument::named(u"vsDelimiterChar", u"'")}),
            Variant(u"'a','b'"));
  EXPECT_EQ(call(strings, u"getClassIdAsString"), Variant(u"clsArrayString"));
  EXPECT_EQ(call(strings, u"generateCopy"), Variant::nothing());

  ObjectRef flags = ClassRegistry::library().create(u"clsArrayBoolean");
  call(flags, u"addTo", {{Variant(int16_t{2})}, {Variant(true)}});
  Variant preserve(true);
  Variant reset(u"True");  // converted on the way in, written back as a Boolean
  call(flags, u"allocateSpacePublic", {{Variant(int16_t{5})}, {preserve, &preserve}, {reset, &reset}});
  EXPECT_EQ(reset, Variant(true));
  EXPECT_EQ(call(flags, u"getCount"), Variant(int16_t{0}));

  ObjectRef singles = ClassRegistry::library().create(u"clsArraySingle");
  EXPECT_FALSE(ClassRegistry::library().classOf(*singles)->hasMember(u"getItemsAsList"));
  try {
    call(singles, u"item", {{Variant(int16_t{1})}}, MemberKind::PropertyGet);
    ADD_FAILURE();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common.getItem()");
    EXPECT_EQ(error.description(), u"Index=1 getCount()=0");
  }
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

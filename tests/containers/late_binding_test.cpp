// The value arrays driven by name, as scripts and automation clients drive them.
#include <gtest/gtest.h>

#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {
namespace {

Variant call(const ObjectRef& object, StringView member, std::vector<CallArgument> arguments = {},
             MemberKind kind = MemberKind::Method) {
  return callMember(object, member, kind, arguments);
}

// Creating each class by name runs in examples/value_arrays.vbs.
TEST(LateBindingTest, EnumerationsAndMembersByName) {
  const auto& registry = libraryRegistry();
  EXPECT_EQ(registry.findEnumValue(u"ccec_invalidindex"), CCEC_InvalidIndex);
  // clsArraySingle has no list text.
  EXPECT_FALSE(registry.create(u"clsArraySingle")->classInfo().hasMember(u"getItemsAsList"));
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
      {u"clsArrayBoolean", {Variant(true), Variant(0), Variant(u"True")}, u"True,False,True"},
      {u"clsArrayString", {Variant(u"a"), Variant(2.5)}, u"a,2,5"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.className));
    ObjectRef array = libraryRegistry().create(row.className);
    for (const auto& value : row.values)
      call(array, u"add", {{value}});
    EXPECT_EQ(call(array, u"Count", {}, MemberKind::PropertyGet).varTypeCode(), 2);
    EXPECT_EQ(call(array, u"getitemsaslist"), Variant(row.list));
  }
}

}  // namespace
}  // namespace ravelin

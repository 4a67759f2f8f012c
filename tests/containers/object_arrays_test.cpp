// The object arrays' error texts, their copy interfaces and calls by name.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ravelin/containers/cls_array_any_object.hpp>
#include <ravelin/containers/cls_array_object.hpp>
#include <ravelin/containers/cls_array_object2.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_larray_double.hpp>
#include <ravelin/containers/cls_larray_double2.hpp>
#include <ravelin/containers/cls_larray_long_object.hpp>
#include <ravelin/containers/cls_larray_object.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

// The error an action raises, or nothing.
std::optional<AutomationError> errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error;
  }
  return std::nullopt;
}

void expectError(const std::function<void()>& action, int32_t number, StringView source,
                 StringView description) {
  const auto error = errorOf(action);
  ASSERT_TRUE(error.has_value()) << "nothing was raised";
  EXPECT_EQ(error->number(), number);
  EXPECT_EQ(error->source(), source);
  EXPECT_EQ(error->description(), description);
}

TEST(ObjectArrays, BadIndexTexts) {
  // Every array holds one element; each action works at the index it is given.
  const auto object = std::make_shared<clsArrayString>();
  clsLArrayObject objects;
  objects.add(object);
  clsLArrayDouble doubles;
  doubles.add(1);
  clsLArrayDouble2 pairs;
  pairs.add(1, 2);
  clsLArrayLongObject keyed;
  keyed.add(1, object);
  clsArrayObject iobjects;
  iobjects.add(object);
  clsArrayAnyObject anyObjects;
  anyObjects.add(object);
  clsArrayObject2 objectPairs;
  objectPairs.add(object, object);

  struct Row {
    const char* label;
    std::function<void(int32_t)> action;
    StringView source;
    StringView description;
  };
  const auto i16 = [](int32_t index) { return static_cast<int16_t>(index); };
  const Row rows[] = {
      {"L object get", [&](int32_t i) { objects.item(i); }, u"", u"clsLArrayObject.item()"},
      {"L object set", [&](int32_t i) { objects.setItem(i, object); }, u"",
       u"clsLArrayObject.item()"},
      {"L double get", [&](int32_t i) { doubles.item(i); }, u"", u"clsLArrayDouble.item()"},
      {"L double let", [&](int32_t i) { doubles.letItem(i, 2); }, u"",
       u"clsLArrayDouble.item.let()"},
      // The texts of clsLArrayDouble2 name other properties; they are kept so.
      {"Item1 get", [&](int32_t i) { pairs.Item1(i); }, u"", u"clsLArrayDouble2.item()"},
      {"Item1 let", [&](int32_t i) { pairs.letItem1(i, 3); }, u"", u"clsLArrayDouble2.itemKey()"},
      {"Item2 get", [&](int32_t i) { pairs.Item2(i); }, u"", u"clsLArrayDouble2.item2()"},
      {"Item2 let", [&](int32_t i) { pairs.letItem2(i, 3); }, u"", u"clsLArrayDouble2.item()"},
      {"keyed get", [&](int32_t i) { keyed.item(i); }, u"", u"clsLArrayLongObject.item()"},
      {"keyed set", [&](int32_t i) { keyed.setItem(i, object); }, u"",
       u"clsLArrayLongObject.item()"},
      {"ItemKey get", [&](int32_t i) { keyed.ItemKey(i); }, u"", u"clsLArrayLongObject.item()"},
      {"ItemKey let", [&](int32_t i) { keyed.letItemKey(i, 2); }, u"",
       u"clsLArrayLongObject.itemKey()"},
      // The Integer-indexed arrays report in style A; clsArrayObject by its identifier.
      {"IObject get", [&](int32_t i) { iobjects.item(i16(i)); }, kCommonErrorSource,
       u"clsObjectArray.getItem()"},
      {"IObject set", [&](int32_t i) { iobjects.setItem(i16(i), object); }, kCommonErrorSource,
       u"clsObjectArray.setItem()"},
      {"any get", [&](int32_t i) { anyObjects.item(i16(i)); }, kCommonErrorSource,
       u"clsArrayAnyObject.getItem()"},
      {"any set", [&](int32_t i) { anyObjects.setItem(i16(i), object); }, kCommonErrorSource,
       u"clsArrayAnyObject.setItem()"},
      {"getItem0", [&](int32_t i) { objectPairs.getItem0(i16(i)); }, kCommonErrorSource,
       u"clsArrayObject2.getItem0()"},
      {"getItem1", [&](int32_t i) { objectPairs.getItem1(i16(i)); }, kCommonErrorSource,
       u"clsArrayObject2.getItem1()"},
      {"setItem0", [&](int32_t i) { objectPairs.setItem0(object, i16(i)); }, kCommonErrorSource,
       u"clsArrayObject2.setItem0()"},
      {"setItem1", [&](int32_t i) { objectPairs.setItem1(object, i16(i)); }, kCommonErrorSource,
       u"clsArrayObject2.setItem1()"},
  };
  for (const Row& row : rows) {
    for (int32_t index : {-1, 1}) {
      SCOPED_TRACE(std::string(row.label) + " at " + std::to_string(index));
      expectError([&] { row.action(index); }, CCEC_InvalidIndex, row.source, row.description);
    }
    SCOPED_TRACE(row.label);
    EXPECT_FALSE(errorOf([&] { row.action(0); }).has_value());
  }
  // The assignments at index 0 landed; the refused ones added nothing.
  EXPECT_EQ(doubles.getCount(), 1);
  EXPECT_EQ(objectPairs.getCount(), 1);
  EXPECT_EQ(pairs.Item1(0), 3);
  EXPECT_EQ(pairs.Item2(0), 3);
}

Variant call(const ObjectRef& object, StringView member, std::vector<CallArgument> arguments = {},
             MemberKind kind = MemberKind::Method) {
  return callMember(object, member, kind, arguments);
}

TEST(ObjectArrays, ByName) {
  const auto& registry = ClassRegistry::library();
  for (StringView name :
       {u"clsLArrayObject", u"clsLArrayDouble", u"clsLArrayDouble2", u"clsLArrayLongObject",
        u"clsArrayObject", u"clsArrayAnyObject", u"clsArrayObject2"}) {
    SCOPED_TRACE(toUtf8(name));
    EXPECT_EQ(registry.create(String(kLibraryPrefix) + String(name))->className(), name);
  }

  // clsArrayObject holds IObject references only: clsArrayString is one, clsArrayDouble is not.
  ObjectRef objects = registry.create(u"clsArrayObject");
  ObjectRef strings = registry.create(u"clsArrayString");
  EXPECT_EQ(call(objects, u"add", {{Variant(strings)}}), Variant(true));
  EXPECT_EQ(errorNumberOf([&] { call(objects, u"add", {{registry.create(u"clsArrayDouble")}}); }),
            vb_error::kTypeMismatch);
  EXPECT_EQ(call(objects, u"getCount"), Variant(int16_t{1}));
  EXPECT_EQ(call(objects, u"item", {{Variant(int16_t{0})}}, MemberKind::PropertyGet),
            Variant(strings));

  // A keyed removal asks for the not-found error by name.
  ObjectRef keyed = registry.create(u"clsLArrayLongObject");
  call(keyed, u"add", {{Variant(7)}, {Variant(strings)}});
  EXPECT_EQ(call(keyed, u"removeWithKey", {{Variant(8)}}), Variant(false));
  expectError(
      [&] {
        call(keyed, u"removeWithKey",
             {{Variant(8)}, CallArgument::named(u"vbRaiseNotFoundError", Variant(true))});
      },
      CCEC_ItemNotFound, kCommonErrorSource, u"clsLArrayLongObject.remove()");
  EXPECT_EQ(call(keyed, u"removeWithKey", {{Variant(7)}}), Variant(true));

  // allocateSpacePublic with its flags left out keeps the values and lowers the count.
  ObjectRef numbers = registry.create(u"clsLArrayDouble");
  for (double value : {1.5, 2.5, 3.5})
    call(numbers, u"add", {{Variant(value)}});
  call(numbers, u"allocateSpacePublic", {{Variant(2)}});
  EXPECT_EQ(call(numbers, u"getCount"), Variant(2));
  EXPECT_EQ(call(numbers, u"item", {{Variant(1)}}, MemberKind::PropertyGet), Variant(2.5));
}

}  // namespace
}  // namespace ravelin

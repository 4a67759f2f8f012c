// The object arrays' error texts and calls by name.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_array_any_object.hpp>
#include <ravelin/containers/cls_array_object.hpp>
#include <ravelin/containers/cls_array_object2.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_larray_long_object.hpp>
#include <ravelin/containers/cls_larray_object.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

void expectError(const std::function<void()>& action, int32_t number, StringView source,
                 StringView description) {
  try {
    action();
    ADD_FAILURE() << "nothing was raised";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), number);
    EXPECT_EQ(error.source(), source);
    EXPECT_EQ(error.description(), description);
  }
}

TEST(ObjectArrays, BadIndexTexts) {
  // Every array holds one element; each action works at the index it is given. The texts that
  // examples/object_arrays.vbs shows are left out.
  const auto object = std::make_shared<clsArrayString>();
  clsLArrayObject objects;
  objects.add(object);
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
      {"L object set", [&](int32_t i) { objects.setItem(i, object); }, u"",
       u"clsLArrayObject.item()"},
      {"keyed get", [&](int32_t i) { keyed.item(i); }, u"", u"clsLArrayLongObject.item()"},
      {"keyed set", [&](int32_t i) { keyed.setItem(i, object); }, u"",
       u"clsLArrayLongObject.item()"},
      {"ItemKey get", [&](int32_t i) { keyed.ItemKey(i); }, u"", u"clsLArrayLongObject.item()"},
      // The Integer-indexed arrays report in style A; clsArrayObject by its identifier.
      {"IObject set", [&](int32_t i) { iobjects.setItem(i16(i), object); }, kCommonErrorSource,
       u"clsObjectArray.setItem()"},
      {"any get", [&](int32_t i) { anyObjects.item(i16(i)); }, kCommonErrorSource,
       u"clsArrayAnyObject.getItem()"},
      {"any set", [&](int32_t i) { anyObjects.setItem(i16(i), object); }, kCommonErrorSource,
       u"clsArrayAnyObject.setItem()"},
      {"getItem0", [&](int32_t i) { objectPairs.getItem0(i16(i)); }, kCommonErrorSource,
       u"clsArrayObject2.getItem0()"},
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
    EXPECT_EQ(errorNumberOf([&] { row.action(0); }), 0);
  }
  // The refused assignments added nothing.
  EXPECT_EQ(objectPairs.getCount(), 1);
}

// The rest of the by-name behaviour, this error's texts among it, runs in
// examples/object_arrays.vbs; here the flag passed by its name.
TEST(ObjectArrays, KeyedRemovalTakesTheNotFoundFlagByName) {
  ObjectRef keyed = libraryRegistry().create(u"clsLArrayLongObject");
  std::vector<CallArgument> arguments{{Variant(8)},
                                      CallArgument::named(u"vbRaiseNotFoundError", Variant(true))};
  EXPECT_EQ(
      errorNumberOf([&] { callMember(keyed, u"removeWithKey", MemberKind::Method, arguments); }),
      CCEC_ItemNotFound);
}

}  // namespace
}  // namespace ravelin

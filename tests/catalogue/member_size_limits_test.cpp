#include <gtest/gtest.h>

#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <utility>
#include <vector>

namespace ravelin {
namespace {

constexpr std::size_t kText = kMaxTextLength;
constexpr std::size_t kElements = kMaxArrayElements;

String letters(std::size_t length) {
  return String(length, u'A');
}

using Calls = std::vector<std::pair<StringView, std::vector<Variant>>>;

// Members that build a text or an array larger than their arguments refuse one past the shared
// limits (14 for a text, 7 for an array) instead of building it; a result right at the limit is
// built. Each row creates the class by name and calls its members in turn.
TEST(MemberSizeLimitsTest, BuiltTextsAndArraysStayWithinTheLimits) {
  struct Row {
    StringView className;
    Calls calls;
    int32_t error;         // of the last call; 0: none
    std::size_t size = 0;  // without error: the length of the text or the element count
  };
  const auto wide = [](std::size_t count) {
    return Variant(SafeArray::vector(VarType::Variant, 0, static_cast<int32_t>(count) - 1));
  };
  const Row rows[] = {
      // Three digits and a "/" for each unit.
      {u"StringFunctions", {{u"ConvertStringToDec", {letters(kText / 4 + 1)}}}, 14},
      {u"StringFunctions", {{u"ConvertStringToDec", {letters(kText / 4)}}}, 0, kText - 1},
      // Two bytes for each unit and a closing 0.
      {u"StringFunctions", {{u"StringToBytes", {letters(kElements / 2)}}}, 7},
      {u"StringFunctions", {{u"StringToBytes", {letters(kElements / 2 - 1)}}}, 0, kElements - 1},
      {u"StringFunctions", {{u"ParamArrayToString", {wide(kElements + 1)}}}, 7},
      // The texts joined by ",", each between two delimiters.
      {u"clsArrayString",
       {{u"add", {letters(kText / 2)}}, {u"add", {letters(kText / 2)}}, {u"getItemsAsList", {}}},
       14},
      {u"clsArrayString",
       {{u"add", {letters(kText / 2)}},
        {u"add", {letters(kText / 2 - 1)}},
        {u"getItemsAsList", {}}},
       0,
       kText},
      {u"clsArrayString", {{u"add", {u""}}, {u"getItemsAsList", {letters(kText / 2 + 1)}}}, 14},
      {u"clsArrayString2",
       {{u"add", {u"k", u"v"}}, {u"add", {u"k", u"v"}}, {u"getItemsAsList", {letters(kText / 4)}}},
       14},
      {u"clsArrayString2",
       {{u"add", {letters(kText / 2), u""}},
        {u"add", {letters(kText / 2), u""}},
        {u"getItemKeysAsList", {}}},
       14},
      {u"clsArrayString2",
       {{u"add", {letters(kText / 2), u""}},
        {u"add", {letters(kText / 2 - 1), u""}},
        {u"getItemKeysAsList", {}}},
       0,
       kText},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.className) + "." + toUtf8(row.calls.back().first));
    const ObjectRef object = libraryRegistry().create(row.className);
    Variant result;
    const int32_t error = errorNumberOf([&] {
      for (const auto& [member, values] : row.calls) {
        std::vector<CallArgument> arguments(values.begin(), values.end());
        result = callMember(object, member, MemberKind::Method, arguments);
      }
    });
    EXPECT_EQ(error, row.error);
    if (error != 0) continue;
    EXPECT_EQ(result.isArray() ? result.asArray().elements.size() : result.asString().size(),
              row.size);
  }
}

}  // namespace
}  // namespace ravelin

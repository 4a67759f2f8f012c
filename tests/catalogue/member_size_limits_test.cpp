#include <gtest/gtest.h>

#include <functional>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

constexpr std::size_t kText = kMaxTextLength;
constexpr std::size_t kElements = kMaxArrayElements;

String letters(std::size_t length) {
  return String(length, u'A');
}

// Creates the class by name and calls its members in turn; the last call's result is returned.
Variant callInTurn(StringView className,
                   std::vector<std::pair<StringView, std::vector<Variant>>> calls) {
  const ObjectRef object = libraryRegistry().create(className);
  Variant result;
  for (auto& [member, values] : calls) {
    std::vector<CallArgument> arguments(values.begin(), values.end());
    result = callMember(object, member, MemberKind::Method, arguments);
  }
  return result;
}

// Members that build a text or an array larger than their arguments refuse one past the shared
// limits (14 for a text, 7 for an array) instead of building it; a result right at the limit is
// built.
TEST(MemberSizeLimitsTest, BuiltTextsAndArraysStayWithinTheLimits) {
  struct Row {
    const char* name;
    std::function<Variant()> call;
    int32_t error;         // 0: no error
    std::size_t size = 0;  // without error: the length of the text or the element count
  };
  const Row rows[] = {
      {"ConvertStringToDec, four units for each",
       [] {
         return callInTurn(u"StringFunctions", {{u"ConvertStringToDec", {letters(kText / 4 + 1)}}});
       },
       14},
      {"ConvertStringToDec at the limit less the last separator",
       [] {
         return callInTurn(u"StringFunctions", {{u"ConvertStringToDec", {letters(kText / 4)}}});
       },
       0, kText - 1},
      {"StringToBytes, two bytes for each unit and one more",
       [] {
         return callInTurn(u"StringFunctions", {{u"StringToBytes", {letters(kElements / 2)}}});
       },
       7},
      {"StringToBytes at the limit",
       [] {
         return callInTurn(u"StringFunctions", {{u"StringToBytes", {letters(kElements / 2 - 1)}}});
       },
       0, kElements - 1},
      {"ParamArrayToString of more elements than an array may hold",
       [] {
         return callInTurn(
             u"StringFunctions",
             {{u"ParamArrayToString",
               {SafeArray::vector(VarType::Variant, 0, static_cast<int32_t>(kElements))}}});
       },
       7},
      {"clsArrayString list of two halves and a comma",
       [] {
         return callInTurn(u"clsArrayString", {{u"add", {letters(kText / 2)}},
                                               {u"add", {letters(kText / 2)}},
                                               {u"getItemsAsList", {}}});
       },
       14},
      {"clsArrayString list at the limit",
       [] {
         return callInTurn(u"clsArrayString", {{u"add", {letters(kText / 2)}},
                                               {u"add", {letters(kText / 2 - 1)}},
                                               {u"getItemsAsList", {}}});
       },
       0, kText},
      {"clsArrayString list with long delimiters",
       [] {
         return callInTurn(u"clsArrayString",
                           {{u"add", {u""}}, {u"getItemsAsList", {letters(kText / 2 + 1)}}});
       },
       14},
      {"clsArrayString2 values with long delimiters",
       [] {
         return callInTurn(u"clsArrayString2", {{u"add", {u"k", u"v"}},
                                                {u"add", {u"k", u"v"}},
                                                {u"getItemsAsList", {letters(kText / 4)}}});
       },
       14},
      {"clsArrayString2 keys",
       [] {
         return callInTurn(u"clsArrayString2", {{u"add", {letters(kText / 2), u""}},
                                                {u"add", {letters(kText / 2), u""}},
                                                {u"getItemKeysAsList", {}}});
       },
       14},
      {"clsArrayString2 keys at the limit",
       [] {
         return callInTurn(u"clsArrayString2", {{u"add", {letters(kText / 2), u""}},
                                                {u"add", {letters(kText / 2 - 1), u""}},
                                                {u"getItemKeysAsList", {}}});
       },
       0, kText},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Variant result;
    EXPECT_EQ(errorNumberOf([&] { result = row.call(); }), row.error);
    if (row.error != 0) continue;
    EXPECT_EQ(result.isArray() ? result.asArray().elements.size() : result.asString().size(),
              row.size);
  }
}

}  // namespace
}  // namespace ravelin

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <vector>

namespace ravelin {
namespace {

// Members whose results depend on their arguments: products that may overflow, texts and arrays
// of a size the caller asks for.
class clsBuilder : public PublicClass<clsBuilder> {
 public:
  static constexpr StringView kClassName = u"clsBuilder";
  static ClassInfo describe() {
    return ClassBuilder<clsBuilder>(kClassName)
        .method(u"product", [](clsBuilder&, double a, double b) { return a * b; })
        .method(u"quotient", [](clsBuilder&, double a, double b) { return a / b; })
        .method(u"singleProduct", [](clsBuilder&, float a, float b) { return a * b; })
        .method(u"variantProduct", [](clsBuilder&, double a, double b) { return Variant(a * b); })
        .method(u"scale", [](clsBuilder&, double& value, double by) { value *= by; })
        .method(u"scaleSingle", [](clsBuilder&, float& value, float by) { value *= by; })
        .method(u"text",
                [](clsBuilder&, int32_t length) {
                  return String(static_cast<std::size_t>(length), u'x');
                })
        .method(u"variantText",
                [](clsBuilder&, int32_t length) {
                  return Variant(String(static_cast<std::size_t>(length), u'x'));
                })
        .method(u"bytes",
                [](clsBuilder&, int32_t count) {
                  return Variant(SafeArray::vector(VarType::Byte, 0, count - 1));
                })
        .build();
  }
};

// What a member hands back is checked where it is converted for the caller: a Double or Single
// that is not finite raises 6, a text past the text limit 14, an array past the element limit 7;
// sizes up to the limits pass. A by-reference argument that fails is not written back.
TEST(MemberResultsTest, ResultsAndByReferenceValuesAreChecked) {
  constexpr double kHuge = std::numeric_limits<double>::max();
  constexpr float kHugeSingle = std::numeric_limits<float>::max();
  constexpr auto kText = static_cast<int32_t>(kMaxTextLength);
  constexpr auto kElements = static_cast<int32_t>(kMaxArrayElements);
  struct Row {
    const char16_t* member;
    std::vector<Variant> arguments;  // the first is passed by reference, from a variable
    int32_t error;                   // 0: no error
    const char16_t* description = u"";
  };
  const Row rows[] = {
      {u"product", {kHuge, 1.0}, 0},
      {u"product", {kHuge, 2.0}, 6, u"Overflow"},
      {u"product", {-kHuge, 2.0}, 6, u"Overflow"},
      {u"quotient", {0.0, 0.0}, 6, u"Overflow"},
      {u"singleProduct", {kHugeSingle, 2.0f}, 6, u"Overflow"},
      {u"variantProduct", {kHuge, 2.0}, 6, u"Overflow"},
      {u"scale", {kHuge, 1.0}, 0},
      {u"scale", {kHuge, 10.0}, 6, u"Overflow"},
      {u"scaleSingle", {kHugeSingle, 10.0f}, 6, u"Overflow"},
      {u"text", {kText}, 0},
      {u"text", {kText + 1}, 14, u"Out of string space"},
      {u"variantText", {kText + 1}, 14, u"Out of string space"},
      {u"bytes", {kElements}, 0},
      {u"bytes", {kElements + 1}, 7, u"Out of memory"},
  };
  const ObjectRef builder = classTableOf<clsBuilder>().create();
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.member) + " " + toUtf8(CStr(row.arguments[0])));
    Variant variable = row.arguments[0];
    std::vector<CallArgument> arguments{{variable, &variable}};
    for (std::size_t i = 1; i < row.arguments.size(); ++i)
      arguments.emplace_back(row.arguments[i]);
    int32_t error = 0;
    try {
      callMember(builder, row.member, MemberKind::Method, arguments);
    } catch (const AutomationError& e) {
      error = e.number();
      EXPECT_EQ(e.description(), row.description);
    }
    EXPECT_EQ(error, row.error);
    if (error != 0) {
      EXPECT_EQ(variable, row.arguments[0]);
    }
  }
}

}  // namespace
}  // namespace ravelin

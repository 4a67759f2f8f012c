#include <gtest/gtest.h>

#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/echo_text.hpp>
#include <ravelin/host/script/err_object.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin::script {
namespace {

TEST(EchoText, ShowsEachTypeAsTheScriptHostDoes) {
  ScopedLocale english(u"en-US");
  // Err shows its default property, Number.
  auto err = std::make_shared<ErrObject>();
  err->number = 11;
  struct Row {
    Variant value;
    const char* expected;
  };
  const Row rows[] = {
      {Variant(), ""},
      {Variant::null(), "null"},
      {Variant(true), "-1"},
      {Variant(false), "0"},
      {Variant(int16_t{-7}), "-7"},
      {Variant(int32_t{2147483647}), "2147483647"},
      {Variant(0.1 + 0.2), "0.3"},
      {Variant(1e20), "1E+20"},
      {Variant(String(u"caf\u00e9")), "caf\xc3\xa9"},
      {Variant(ObjectRef(std::make_shared<clsError>())), "clsError"},
      {Variant::nothing(), "Nothing"},
      {Variant(ObjectRef(err)), "11"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    std::vector<Variant> one{row.value};
    EXPECT_EQ(echoLine(one), std::string(row.expected) + "\n");
  }
}

TEST(EchoText, JoinsArgumentsWithOneBlank) {
  EXPECT_EQ(echoLine({}), "\n");
  std::vector<Variant> values{Variant(int32_t{1}), Variant(), Variant(String(u"b")), Variant(true)};
  EXPECT_EQ(echoLine(values), "1  b -1\n");
}

TEST(EchoText, AnArrayIsATypeMismatch) {
  Variant array(SafeArray::vector(VarType::Variant, 0, 1));
  EXPECT_EQ(errorNumberOf([&] { echoText(array); }), vb_error::kTypeMismatch);
}

}  // namespace
}  // namespace ravelin::script

#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/echo_text.hpp>
#include <ravelin/host/script/err_object.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin::script {
namespace {

// The common types are pinned by tests/scripts/echo_values; these are the cases it does not
// reach: doubles shown with 15 digits, the exponent form, Err through its default property.
TEST(EchoText, ShowsEachTypeAsTheScriptHostDoes) {
  ScopedLocale english(u"en-US");
  auto err = std::make_shared<ErrObject>();
  err->number = 11;
  struct Row {
    Variant value;
    const char* expected;
  };
  const Row rows[] = {
      {Variant(0.1 + 0.2), "0.3"},
      {Variant(1e20), "1E+20"},
      {Variant(ObjectRef(err)), "11"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    std::vector<Variant> one{row.value};
    EXPECT_EQ(echoLine(one), std::string(row.expected) + "\n");
  }
}

TEST(EchoText, AnArrayIsATypeMismatch) {
  Variant array(SafeArray::vector(VarType::Variant, 0, 1));
  EXPECT_EQ(errorNumberOf([&] { echoText(array); }), vb_error::kTypeMismatch);
}

}  // namespace
}  // namespace ravelin::script

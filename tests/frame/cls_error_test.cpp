#include <gtest/gtest.h>

#include <cstdint>
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

TEST(ClsError, NewObjectHoldsNothing) {
  EXPECT_EQ(clsError().CompleteErrorDescription(), u"0-\r\n<>");
}

TEST(ClsError, InitAndCompleteErrorDescription) {
  struct Row {
    int32_t code;
    const char16_t* source;
    const char16_t* description;
    const char16_t* expected;
  };
  const Row rows[] = {
      {CCEC_InvalidIndex, u"Tarn.Quillmark.Common", u"clsArrayDouble.getItem()",
       u"-2147221504-clsArrayDouble.getItem()\r\n<Tarn.Quillmark.Common>"},
      // No thousands separators, whatever the size of the number.
      {INT32_MIN, u"s", u"d", u"-2147483648-d\r\n<s>"},
      {INT32_MAX, u"", u"", u"2147483647-\r\n<>"},
      // Texts are echoed unchanged: separators and line breaks inside them are not special.
      {5, u"<a>", u"x-y\r\n\u00e9", u"5-x-y\r\n\u00e9\r\n<<a>>"},
  };
  clsError error;  // one object for all rows: init replaces every field
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.expected));
    error.init(row.code, row.source, row.description);
    EXPECT_EQ(error.CompleteErrorDescription(), row.expected);
  }
}

}  // namespace
}  // namespace ravelin

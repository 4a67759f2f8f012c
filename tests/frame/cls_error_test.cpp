#include <gtest/gtest.h>

#include <cstdint>
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

TEST(ClsError, NewObjectHoldsNothing) {
  clsError error;
  EXPECT_EQ(error.className(), u"clsError");
  EXPECT_EQ(error.getCode(), 0);
  EXPECT_EQ(error.getSource(), u"");
  EXPECT_EQ(error.getDescription(), u"");
  EXPECT_EQ(error.CompleteErrorDescription(), u"0-\r\n<>");
}

TEST(ClsError, CompleteErrorDescriptionRendersCodeDescriptionAndSource) {
  struct Row {
    int32_t code;
    const char16_t* source;
    const char16_t* description;
    const char16_t* expected;
  };
  const Row rows[] = {
      {CCEC_InvalidIndex, u"Tarn.Quillmark.Common", u"clsArrayDouble.getItem()",
       u"-2147221504-clsArrayDouble.getItem()\r\n<Tarn.Quillmark.Common>"},
      {CCEC_FeatureNotImplemented, u"Tarn.Quillmark.Common", u"clsArrayLong.IObject_copyObject()",
       u"-2147221498-clsArrayLong.IObject_copyObject()\r\n<Tarn.Quillmark.Common>"},
      // No thousands separators, whatever the size of the number.
      {INT32_MIN, u"s", u"d", u"-2147483648-d\r\n<s>"},
      {INT32_MAX, u"", u"", u"2147483647-\r\n<>"},
      {13, u"Ravelin", u"Type mismatch", u"13-Type mismatch\r\n<Ravelin>"},
      // Texts are echoed unchanged: separators and line breaks inside them are not special.
      {5, u"<a>", u"x-y\r\nz", u"5-x-y\r\nz\r\n<<a>>"},
      {1, u"Quelle \u00e9\u20ac", u"\u00c7a", u"1-\u00c7a\r\n<Quelle \u00e9\u20ac>"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.expected));
    clsError error;
    error.init(row.code, row.source, row.description);
    EXPECT_EQ(error.getCode(), row.code);
    EXPECT_EQ(error.getSource(), row.source);
    EXPECT_EQ(error.getDescription(), row.description);
    EXPECT_EQ(error.CompleteErrorDescription(), row.expected);
  }
}

TEST(ClsError, InitReplacesEveryField) {
  clsError error;
  error.init(CCEC_ItemNotFound, u"first source", u"first description");
  error.init(7, u"second", u"");
  EXPECT_EQ(error.getCode(), 7);
  EXPECT_EQ(error.getSource(), u"second");
  EXPECT_EQ(error.getDescription(), u"");
  EXPECT_EQ(error.CompleteErrorDescription(), u"7-\r\n<second>");
}

TEST(ClsError, CarriesACaughtAutomationError) {
  clsError held;
  try {
    raiseStyleB(CCEC_InvalidIndex, u".getItem()", 7, 3);
  } catch (const AutomationError& caught) {
    held.init(caught.number(), caught.source(), caught.description());
  }
  EXPECT_EQ(held.CompleteErrorDescription(),
            u"-2147221504-Index=7 getCount()=3\r\n<Tarn.Quillmark.Common.getItem()>");
}

}  // namespace
}  // namespace ravelin

#include <gtest/gtest.h>

#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <set>
#include <string>

namespace ravelin {
namespace {

TEST(CodePageTest, EverySingleByteRoundTripsThroughText) {
  for (int codePage : {1252, 850, 437, 28591}) {
    SCOPED_TRACE(codePage);
    std::set<char16_t> units;
    for (int value = 0; value < 256; ++value) {
      const std::string byte(1, static_cast<char>(value));
      const String text = decode(byte, codePage);
      ASSERT_EQ(text.size(), 1u) << value;
      units.insert(text[0]);
      EXPECT_EQ(encode(text, codePage), byte) << "byte " << value;
    }
    // No two bytes read as the same unit, or encoding could not tell them apart.
    EXPECT_EQ(units.size(), 256u);
  }
  for (int value = 0; value < 128; ++value) {
    const std::string byte(1, static_cast<char>(value));
    EXPECT_EQ(encode(decode(byte, 20127), 20127), byte) << value;
  }
}

TEST(CodePageTest, EncodesKnownUnits) {
  struct Row {
    char16_t unit;
    int codePage;
    unsigned char expected;
  };
  const Row rows[] = {
      {u'\u00E7', 1252, 0xE7},                           // c cedilla
      {u'\u00E7', 850, 0x87},  {u'\u00E3', 850, 0xC6},   // a tilde: in 850, not in 437
      {u'\u00E3', 437, '?'},   {u'\u20AC', 1252, 0x80},  // euro: only in 1252
      {u'\u20AC', 850, '?'},   {u'\u20AC', 28591, '?'}, {u'\u0178', 1252, 0x9F},  // Y diaeresis
      {u'\u0081', 1252, 0x81},  // an undefined byte of 1252 keeps its control
      {u'\u009D', 1252, 0x9D}, {u'\u2500', 437, 0xC4},  // box drawing
      {u'\u2554', 437, 0xC9},  {u'\u2500', 850, 0xC4},  {u'\u2500', 1252, '?'},
      {u'\u0131', 850, 0xD5},  // dotless i
      {u'\u00DF', 437, 0xE1},  {u'\u00A0', 850, 0xFF},  {u'\u00FF', 28591, 0xFF},
      {u'\u0100', 28591, '?'}, {u'\u00E9', 20127, '?'}, {u'~', 20127, '~'},
      {u'\uFFFF', 1252, '?'},  {u'\u0000', 850, 0x00},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message()
                 << "U+" << std::hex << int{row.unit} << " in " << std::dec << row.codePage);
    EXPECT_EQ(encode(StringView(&row.unit, 1), row.codePage),
              std::string(1, static_cast<char>(row.expected)));
  }
}

TEST(CodePageTest, ConvertsWholeTexts) {
  EXPECT_EQ(encode(u"Pre\u00E7o: \u20AC 1,50", 1252), "Pre\xE7o: \x80 1,50");
  EXPECT_EQ(encode(u"Pre\u00E7o: \u20AC 1,50", 850), "Pre\x87o: ? 1,50");
  EXPECT_EQ(decode("\xC9\xCD\xBB", 437), u"\u2554\u2550\u2557");
  EXPECT_EQ(decode("S\xC6o Jo\xC6o", 850), u"S\u00E3o Jo\u00E3o");
  // A surrogate pair is two units, so a single-byte page writes two default characters.
  EXPECT_EQ(encode(u"a\U0001F600b", 1252), "a??b");
  // US-ASCII reads a byte above 0x7F without its high bit, as the system's table does.
  EXPECT_EQ(decode("caf\xE9", 20127), u"cafi");
  EXPECT_EQ(encode(u"", 437), "");
  // Embedded zero bytes are text like any other.
  EXPECT_EQ(decode(std::string("a\0b", 3), 1252), String(u"a\0b", 3));
}

TEST(CodePageTest, Utf8GoesThroughTheTextModule) {
  EXPECT_EQ(encode(u"\u00E7\u20AC", 65001), "\xC3\xA7\xE2\x82\xAC");
  EXPECT_EQ(decode("\xC3\xA7\xE2\x82\xAC", 65001), u"\u00E7\u20AC");
  EXPECT_EQ(decode("a\xFF", 65001), u"a\uFFFD");
}

TEST(CodePageTest, UnsupportedCodePagesRaiseInvalidProcedureCall) {
  for (int codePage : {1252, 850, 437, 28591, 20127, 65001}) {
    EXPECT_TRUE(isSupportedCodePage(codePage)) << codePage;
  }
  for (int codePage : {0, -1, 1251, 866, 932, 65000, 1200}) {
    SCOPED_TRACE(codePage);
    EXPECT_FALSE(isSupportedCodePage(codePage));
    EXPECT_EQ(errorNumberOf([&] { encode(u"x", codePage); }), vb_error::kInvalidProcedureCall);
    EXPECT_EQ(errorNumberOf([&] { decode("x", codePage); }), vb_error::kInvalidProcedureCall);
  }
}

}  // namespace
}  // namespace ravelin

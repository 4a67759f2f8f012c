#include <gtest/gtest.h>

#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <set>
#include <string>

namespace ravelin {
namespace {

TEST(CodePageTest, EverySingleByteRoundTripsThroughText) {
  for (int codePage : {1252, 850, 437, 28591, 737,  852,  857,  860,  861,  863,
                       865,  866, 874, 1250,  1251, 1253, 1254, 1255, 1256, 1257}) {
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
      {u'\u00E7', 1252, 0xE7},  // c cedilla
      {u'\u00E7', 850, 0x87},
      {u'\u00E3', 850, 0xC6},  // a tilde: in 850, not in 437
      {u'\u00E3', 437, '?'},
      {u'\u20AC', 1252, 0x80},  // euro: only in 1252
      {u'\u20AC', 850, '?'},
      {u'\u20AC', 28591, '?'},
      {u'\u0178', 1252, 0x9F},  // Y diaeresis
      {u'\u0081', 1252, 0x81},  // an undefined byte of 1252 keeps its control
      {u'\u009D', 1252, 0x9D},
      {u'\u2500', 437, 0xC4},  // box drawing
      {u'\u2554', 437, 0xC9},
      {u'\u2500', 850, 0xC4},
      {u'\u2500', 1252, '?'},
      {u'\u0131', 850, 0xD5},  // dotless i
      {u'\u00DF', 437, 0xE1},
      {u'\u00A0', 850, 0xFF},
      {u'\u00FF', 28591, 0xFF},
      {u'\u0100', 28591, '?'},
      {u'\u00E9', 20127, '?'},
      {u'~', 20127, '~'},
      {u'\uFFFF', 1252, '?'},
      {u'\u0000', 850, 0x00},
      // The generated pages: a letter of each script, and one the page lacks.
      {u'\u0416', 1251, 0xC6},
      {u'\u0416', 866, 0x86},
      {u'\u0416', 1252, '?'},  // Cyrillic Zhe
      {u'\u0161', 1250, 0x9A},
      {u'\u0161', 852, 0xE7},
      {u'\u0161', 437, '?'},  // s caron
      {u'\u03A9', 1253, 0xD9},
      {u'\u03A9', 737, 0x97},
      {u'\u011F', 1254, 0xF0},  // Omega, g breve
      {u'\u011F', 857, 0xA7},
      {u'\u05D0', 1255, 0xE0},
      {u'\u0627', 1256, 0xC7},  // alef
      {u'\u0117', 1257, 0xEB},
      {u'\u0E01', 874, 0xA1},
      {u'\u00E3', 860, 0x84},  // e dot, ko kai
      {u'\u00F0', 861, 0x8C},
      {u'\u00C2', 863, 0x84},
      {u'\u00F8', 865, 0x9B},
      {u'\u20AC', 1251, 0x88},
      {u'\u20AC', 866, '?'},
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
  for (int codePage : {1252, 850, 437, 28591, 20127, 65001, 1251, 866}) {
    EXPECT_TRUE(isSupportedCodePage(codePage)) << codePage;
  }
  for (int codePage : {0, -1, 932, 936, 10000, 65000, 1200, 1258, 862}) {
    SCOPED_TRACE(codePage);
    EXPECT_FALSE(isSupportedCodePage(codePage));
    EXPECT_EQ(errorNumberOf([&] { encode(u"x", codePage); }), vb_error::kInvalidProcedureCall);
    EXPECT_EQ(errorNumberOf([&] { decode("x", codePage); }), vb_error::kInvalidProcedureCall);
  }
}

TEST(CodePageTest, SingleByteTableIsDecodeOfEachByte) {
  for (int codePage : {1252, 850, 437, 28591, 20127, 866, 1250, 874}) {
    SCOPED_TRACE(codePage);
    const auto table = singleByteTable(codePage);
    ASSERT_TRUE(table.has_value());
    for (int value = 0; value < 256; ++value) {
      const std::string byte(1, static_cast<char>(value));
      EXPECT_EQ((*table)[value], decode(byte, codePage)[0]) << value;
    }
  }
  EXPECT_FALSE(singleByteTable(65001).has_value());
  EXPECT_FALSE(singleByteTable(932).has_value());
}

}  // namespace
}  // namespace ravelin

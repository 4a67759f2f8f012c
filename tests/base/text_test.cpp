#include <gtest/gtest.h>

#include <ravelin/base/text.hpp>

namespace ravelin {
namespace {

TEST(TextTest, Utf8RoundTripsAndRepairsMalformedInput) {
  struct Row {
    std::string utf8;
    String utf16;
  };
  const Row rows[] = {
      {"", u""},
      {"a\xc3\xa7\xe2\x82\xac", u"aç€"},
      {"\xf0\x9f\x98\x80", u"\U0001F600"},  // a surrogate pair
  };
  for (const auto& row : rows) {
    EXPECT_EQ(fromUtf8(row.utf8), row.utf16);
    EXPECT_EQ(toUtf8(row.utf16), row.utf8);
  }
  // Truncated sequences, overlong forms, encoded surrogates and lone surrogates.
  EXPECT_EQ(fromUtf8("a\xc3"), u"a\uFFFD");
  EXPECT_EQ(fromUtf8("\xc0\xaf"), u"\uFFFD");
  EXPECT_EQ(fromUtf8("\xed\xa0\x80x"), u"\uFFFDx");
  EXPECT_EQ(fromUtf8("\xff"), u"\uFFFD");
  EXPECT_EQ(toUtf8(String(1, char16_t(0xD800)) + u"x"), "\xef\xbf\xbdx");
}

TEST(TextTest, CaseFoldingCoversTheWesternLetters) {
  EXPECT_EQ(toUpper(u"ação ÿ ß œ"), u"AÇÃO Ÿ ß Œ");
  EXPECT_EQ(toLower(u"AÇÃO Ÿ Œ Ł"), u"ação ÿ œ ł");
  EXPECT_EQ(toUpper(u'\u00F7'), u'\u00F7');  // division sign is not a letter
  EXPECT_TRUE(equalsIgnoreCase(u"clsArrayLong", u"CLSARRAYLONG"));
  EXPECT_TRUE(equalsIgnoreCase(u"Ção", u"çÃO"));
  EXPECT_FALSE(equalsIgnoreCase(u"abc", u"abd"));
  EXPECT_FALSE(equalsIgnoreCase(u"abc", u"ab"));
}

}  // namespace
}  // namespace ravelin

#include <gtest/gtest.h>

#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/lexer.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string>
#include <vector>

namespace ravelin::script {
namespace {

using namespace syntax_error;

// The token kinds of a source, without the final End.
std::vector<TokenKind> kindsOf(const std::vector<Token>& tokens) {
  std::vector<TokenKind> kinds;
  for (const Token& t : tokens) {
    if (t.kind != TokenKind::End) kinds.push_back(t.kind);
  }
  return kinds;
}

TEST(LexerTest, LiteralValuesAndTypes) {
  struct Case {
    std::u16string source;
    Variant expected;
  };
  const Case cases[] = {
      {u"0", Variant(int16_t{0})},
      {u"32767", Variant(int16_t{32767})},
      {u"32768", Variant(int32_t{32768})},
      {u"2147483647", Variant(int32_t{2147483647})},
      {u"2147483648", Variant(2147483648.0)},
      {u"000000000000000000042", Variant(int16_t{42})},
      {u"99999999999999999999", Variant(1e20)},
      {u".5", Variant(0.5)},
      {u"1E3", Variant(1000.0)},
      {u"1e-400", Variant(0.0)},
      {u"&HFF", Variant(int16_t{255})},
      {u"&hffff", Variant(int16_t{-1})},
      {u"&H8000", Variant(int16_t{-32768})},
      {u"&H10000", Variant(int32_t{65536})},
      {u"&HFFFFFFFF", Variant(int32_t{-1})},
      {u"&H80000000", Variant(int32_t{-2147483647 - 1})},
      {u"&HFF&", Variant(int32_t{255})},
      {u"&HFFFF&", Variant(int32_t{65535})},
      {u"&o177777", Variant(int16_t{-1})},
      {u"&O200000", Variant(int32_t{65536})},
      {u"\"\"", Variant(String())},
      {u"\"say \"\"hi\"\"\"", Variant(String(u"say \"hi\""))},
      {u"\"caf\u00e9 '\"", Variant(String(u"caf\u00e9 '"))},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.source));
    const std::vector<Token> tokens = tokenize(c.source);
    ASSERT_EQ(tokens.size(), 2u);
    ASSERT_EQ(tokens[0].kind, TokenKind::Literal);
    EXPECT_EQ(tokens[0].value.type(), c.expected.type());
    EXPECT_TRUE(tokens[0].value == c.expected);
  }
}

TEST(LexerTest, DateLiteralsReadMonthDayYearWhateverTheLocale) {
  struct Case {
    std::u16string source;
    int year, month, day, hour, minute, second;
  };
  const Case cases[] = {
      {u"#2010-03-02#", 2010, 3, 2, 0, 0, 0},    {u"#3/2/2010 14:05:09#", 2010, 3, 2, 14, 5, 9},
      {u"#3/2/10#", 2010, 3, 2, 0, 0, 0},        {u"#1/1/30#", 1930, 1, 1, 0, 0, 0},
      {u"#13/1/2010#", 2010, 1, 13, 0, 0, 0},    {u"# 3/2/2010 2:05 PM #", 2010, 3, 2, 14, 5, 0},
      {u"#12:00:00 AM#", 1899, 12, 30, 0, 0, 0}, {u"#12:30 pm#", 1899, 12, 30, 12, 30, 0},
      {u"#2 PM#", 1899, 12, 30, 14, 0, 0},       {u"#14:05:09 3/2/2010#", 2010, 3, 2, 14, 5, 9},
      {u"#March 2, 2010#", 2010, 3, 2, 0, 0, 0}, {u"#2010 Sep 2 1 am#", 2010, 9, 2, 1, 0, 0},
      {u"#99-12-31#", 1999, 12, 31, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.source));
    const std::vector<Token> tokens = tokenize(c.source);
    ASSERT_EQ(tokens[0].kind, TokenKind::Literal) << tokens[0].errorNumber;
    ASSERT_EQ(tokens[0].value.type(), VarType::Date);
    EXPECT_EQ(tokens[0].value.asDate(),
              makeDate(c.year, c.month, c.day, c.hour, c.minute, c.second));
  }
}

// Where CDate of the same text reads otherwise: a day-first locale's order and month names, a
// year-first date's month above 12, an hour 0 with a designator.
TEST(LexerTest, DateLiteralsKeepTheirOwnRulesWhereCDateDiffers) {
  ScopedLocale german(u"de-DE");
  struct Case {
    std::u16string source;
    int year, month, day;  // year 0: a syntax error
  };
  const Case cases[] = {
      {u"#3/2/2010#", 2010, 3, 2},
      {u"#2 Mrz 2010#", 0, 0, 0},
      {u"#2010-13-1#", 0, 0, 0},
      {u"#0 AM#", 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.source));
    const Token token = tokenize(c.source)[0];
    if (c.year == 0) {
      EXPECT_EQ(token.kind, TokenKind::Error);
      EXPECT_EQ(token.errorNumber, kSyntaxError);
    } else {
      ASSERT_EQ(token.kind, TokenKind::Literal) << token.errorNumber;
      EXPECT_EQ(token.value.asDate(), makeDate(c.year, c.month, c.day));
    }
  }
}

TEST(LexerTest, ErrorsBecomeAnErrorTokenAtTheirPosition) {
  struct Case {
    std::u16string source;
    int32_t number;
    uint32_t line, column;
  };
  const Case cases[] = {
      {u"x = \"abc", kUnterminatedString, 1, 5},
      {u"x = 1\ny = \"abc\nz", kUnterminatedString, 2, 5},
      {u"x = $", kInvalidCharacter, 1, 5},
      {u"x = a ! b", kInvalidCharacter, 1, 7},
      {u"x = 1 _ y", kInvalidCharacter, 1, 7},
      {u"x = \u00e9", kInvalidCharacter, 1, 5},
      {u"x = &H100000000", kInvalidNumber, 1, 5},
      {u"x = 1e400", kInvalidNumber, 1, 5},
      {u"x = #2/30/2010#", kSyntaxError, 1, 5},
      {u"x = #3/2#", kSyntaxError, 1, 5},
      {u"x = #3/2/2010", kSyntaxError, 1, 5},
      {u"x = #25:00#", kSyntaxError, 1, 5},
      {u"x = #13 PM#", kSyntaxError, 1, 5},
      {u"x = #Marc 2, 2010#", kSyntaxError, 1, 5},
      {u"x = #March 2#", kSyntaxError, 1, 5},
      {u"x = #1/2/3/4#", kSyntaxError, 1, 5},
      {u"x = #12345/1/1#", kSyntaxError, 1, 5},
      {u"x = ##", kSyntaxError, 1, 5},
      {u"x = [abc", kInvalidCharacter, 1, 5},
      {u"x = " + std::u16string(256, u'a'), kIdentifierTooLong, 1, 5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.source));
    const std::vector<Token> tokens = tokenize(c.source);
    const Token& last = tokens.back();
    ASSERT_EQ(last.kind, TokenKind::Error);
    EXPECT_EQ(last.errorNumber, c.number);
    EXPECT_EQ(last.line, c.line);
    EXPECT_EQ(last.column, c.column);
  }
}

TEST(LexerTest, CommentsContinuationsAndOperators) {
  using K = TokenKind;
  struct Case {
    std::u16string source;
    std::vector<TokenKind> kinds;
  };
  const Case cases[] = {
      {u"a ' comment = 1\nb", {K::Identifier, K::NewLine, K::Identifier}},
      {u"a : REM comment\nb", {K::Identifier, K::Colon, K::NewLine, K::Identifier}},
      {u"a REM comment\nb", {K::Identifier, K::Identifier, K::NewLine, K::Identifier}},
      {u"Rem", {}},
      {u"o.Rem x", {K::Identifier, K::Dot, K::Identifier, K::Identifier}},
      {u"a = 1 + _\r\n  2", {K::Identifier, K::Equal, K::Literal, K::Plus, K::Literal}},
      {u"a _ \t\n b", {K::Identifier, K::Identifier}},
      {u"a\r\nb\rc\n",
       {K::Identifier, K::NewLine, K::Identifier, K::NewLine, K::Identifier, K::NewLine}},
      {u"<> <= >= < > = :=",
       {K::NotEqual, K::LessEqual, K::GreaterEqual, K::Less, K::Greater, K::Equal, K::ColonEqual}},
      {u"a&b & &Hx",
       {K::Identifier, K::Ampersand, K::Identifier, K::Ampersand, K::Ampersand, K::Identifier}},
      {u"\uFEFFx", {K::Identifier}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.source));
    EXPECT_EQ(kindsOf(tokenize(c.source)), c.kinds);
  }
}

TEST(LexerTest, PositionsAndKeywords) {
  const std::u16string source = u"If x Then _\n  y = [my var]\nEND if";
  const std::vector<Token> tokens = tokenize(source);
  struct Expected {
    Keyword keyword;
    std::u16string text;
    uint32_t line, column;
  };
  const Expected expected[] = {
      {Keyword::If, u"If", 1, 1},  {Keyword::None, u"x", 1, 4},      {Keyword::Then, u"Then", 1, 6},
      {Keyword::None, u"y", 2, 3}, {Keyword::None, u"my var", 2, 7}, {Keyword::End, u"END", 3, 1},
      {Keyword::If, u"if", 3, 5},
  };
  std::vector<Token> words;
  for (const Token& t : tokens) {
    if (t.kind == TokenKind::Identifier) words.push_back(t);
  }
  ASSERT_EQ(words.size(), std::size(expected));
  for (std::size_t i = 0; i < words.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(words[i].keyword, expected[i].keyword);
    EXPECT_EQ(String(words[i].text), expected[i].text);
    EXPECT_EQ(words[i].line, expected[i].line);
    EXPECT_EQ(words[i].column, expected[i].column);
  }
  EXPECT_EQ(keywordOf(u"eLsEiF"), Keyword::ElseIf);
  EXPECT_EQ(keywordOf(u"Step"), Keyword::None);
  EXPECT_EQ(keywordOf(u"Error"), Keyword::None);
}

}  // namespace
}  // namespace ravelin::script

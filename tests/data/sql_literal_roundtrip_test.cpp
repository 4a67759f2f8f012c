// The text literals of SQLUtilities read by a real SQL engine: every text, run as "SELECT
// <literal>" in an in-memory SQLite database, must come back unchanged as the one value of the
// one row of one statement. A value that escapes its literal (an undoubled apostrophe, a comment
// or a second statement) shows as a parse error, text after the statement, extra columns or rows,
// or a different value.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/tests/support/sqlite_select.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

struct TextCase {
  std::string name;
  String value;
};

// One way callers turn a text into a literal.
struct Producer {
  std::string name;
  std::function<String(const SQLUtilities&, StringView)> literal;
};

std::vector<Producer> producers() {
  std::vector<Producer> result;
  for (const DataBTypeEnum kind : {dbtMDB, dbtMSSQL}) {
    const std::string kindName = kind == dbtMDB ? "dbtMDB" : "dbtMSSQL";
    result.push_back({"'fmtSQLString' " + kindName, [kind](const SQLUtilities& sql, StringView v) {
                        return u"'" + sql.fmtSQLString(v, kind) + u"'";
                      }});
    for (const enumDataTypesSql type : {DTS_Text, DTS_TextUnicode}) {
      const std::string typeName = type == DTS_Text ? "DTS_Text" : "DTS_TextUnicode";
      result.push_back({"FormatSqlValue " + typeName + " " + kindName,
                        [kind, type](const SQLUtilities& sql, StringView v) {
                          return sql.FormatSqlValue(type, Variant(v), kind);
                        }});
    }
    result.push_back(
        {"'FormatSqlValue unquoted' " + kindName, [kind](const SQLUtilities& sql, StringView v) {
           return u"'" + sql.FormatSqlValue(DTS_Text, Variant(v), kind, false) + u"'";
         }});
  }
  return result;
}

// Random text of valid UTF-16: code points from every plane (supplementary ones as surrogate
// pairs, never a lone surrogate), no NUL, apostrophes and quotes more often than chance.
String randomText(std::mt19937& random) {
  String text;
  const int count = std::uniform_int_distribution<int>(1, 80)(random);
  for (int i = 0; i < count; ++i) {
    char32_t point = 0;
    switch (std::uniform_int_distribution<int>(0, 5)(random)) {
      case 0:
        point = std::uniform_int_distribution<uint32_t>(1, 0x7F)(random);
        break;
      case 1:
        point = std::uniform_int_distribution<uint32_t>(0x80, 0xD7FF)(random);
        break;
      case 2:
        point = std::uniform_int_distribution<uint32_t>(0xE000, 0xFFFF)(random);
        break;
      case 3:
        point = std::uniform_int_distribution<uint32_t>(0x10000, 0x10FFFF)(random);
        break;
      default: {
        static constexpr char16_t kSyntax[] = u"'\"\\;-/*#[]%_";
        point = kSyntax[std::uniform_int_distribution<size_t>(0, std::size(kSyntax) - 2)(random)];
        break;
      }
    }
    if (point >= 0x10000) {
      text.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
      text.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
    } else {
      text.push_back(static_cast<char16_t>(point));
    }
  }
  return text;
}

String repeated(StringView piece, size_t units) {
  String text;
  text.reserve(units + piece.size());
  while (text.size() < units)
    text += piece;
  return text;
}

std::vector<TextCase> textCases() {
  std::vector<TextCase> cases = {
      {"empty", u""},
      {"one apostrophe", u"'"},
      {"two apostrophes", u"''"},
      {"three apostrophes", u"'''"},
      {"apostrophe first", u"'abc"},
      {"apostrophe last", u"abc'"},
      {"apostrophes at both ends", u"'abc'"},
      {"doubled inside", u"O''Brien"},
      {"name", u"O'Brien"},
      {"double quote", u"\""},
      {"double quotes around", u"\"abc\""},
      {"quotes mixed", u"'\"'\"\"'"},
      {"backslash", u"\\"},
      {"backslash before apostrophe", u"\\'"},
      {"backslash last", u"abc\\"},
      {"escape-like", u"\\n\\t\\0\\x27"},
      {"line comment", u"--"},
      {"line comment after apostrophe", u"a' --"},
      {"block comment start", u"/*"},
      {"block comment after apostrophe", u"'/*"},
      {"block comment whole", u"a'/* b */'c"},
      {"drop table", u"'; DROP TABLE t; --"},
      {"drop table after parenthesis", u"x'); DROP TABLE t; --"},
      {"drop table after backslash", u"\\'; DROP TABLE t; --"},
      {"always true", u"' OR '1'='1"},
      {"concatenation", u"' || sqlite_version() || '"},
      {"second select", u"1'; SELECT 2; --"},
      {"union", u"' UNION SELECT 'x"},
      {"other delimiters", u"#01/02/2003# [x] `y` %_"},
      {"typographic apostrophes", u"\u2018a\u2019 \u02BC \uFF07; DROP TABLE t; --"},
      {"byte order mark first", u"\uFEFF'x"},
      {"noncharacters", u"\uFFFE\uFFFF\uFFFD"},
      {"Greek",
       u"\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 '\u03BA\u03CC\u03C3\u03BC\u03B5'"},
      {"Cyrillic", u"\u0421\u044A\u0435\u0448\u044C '\u0431\u0443\u043B\u043E\u043A'"},
      {"CJK", u"\u65E5\u672C\u8A9E\u306E'\u30C6\u30AD\u30B9\u30C8'"},
      {"emoji", u"\U0001F600'\U0001F4A9''\U0001F468\u200D\U0001F469"},
      {"only apostrophes, long", String(4097, u'\'')},
      {"1 MiB of syntax", repeated(u"O'Brien -- /* '; DROP TABLE t; \\ \" ", size_t{1} << 20)},
      {"1 MiB of emoji", repeated(u"\U0001F600'", size_t{1} << 20)},
  };
  // Every control character alone and between apostrophes.
  for (char16_t unit = 1; unit < 128; ++unit) {
    if (unit >= 32 && unit < 127) continue;
    const std::string code = std::to_string(static_cast<int>(unit));
    cases.push_back({"control " + code, String(1, unit)});
    cases.push_back({"control " + code + " quoted", u"'" + String(1, unit) + u"'"});
  }
  std::mt19937 random(20240611);
  for (int i = 0; i < 300; ++i)
    cases.push_back({"random " + std::to_string(i), randomText(random)});
  return cases;
}

// Where two texts first differ, for a message that does not print a mebibyte.
std::string firstDifference(const String& expected, const String& actual) {
  size_t at = 0;
  while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
    ++at;
  return "lengths " + std::to_string(expected.size()) + "/" + std::to_string(actual.size()) +
         ", first difference at unit " + std::to_string(at);
}

TEST(SqlLiteralRoundTrip, EveryTextComesBackUnchanged) {
  const SqliteMemory db;
  ASSERT_TRUE(db.isOpen());
  const auto sql = makeObject<SQLUtilities>();
  const std::vector<Producer> ways = producers();
  for (const TextCase& row : textCases()) {
    for (const Producer& way : ways) {
      const LiteralReading reading = db.selectLiteral(way.literal(*sql, row.value));
      ASSERT_TRUE(reading.value.has_value())
          << row.name << " through " << way.name << ": " << reading.fault;
      EXPECT_TRUE(*reading.value == row.value) << row.name << " through " << way.name << ": "
                                               << firstDifference(row.value, *reading.value);
    }
  }
}

// The reader itself tells a literal that lets its value out from one that keeps it in.
TEST(SqlLiteralRoundTrip, ReaderCatchesEscapedValues) {
  struct Row {
    StringView literal;
    StringView intended;
    std::string faultStart;  // empty: it reads, but another value
  };
  const Row rows[] = {
      {u"'O'Brien'", u"O'Brien", "prepare"},
      {u"'a'; DROP TABLE t; --'", u"a'; DROP TABLE t; --", "text after"},
      {u"'a', 'b'", u"a', 'b", "2 columns"},
      {u"'a' UNION ALL SELECT 'b'", u"a' UNION ALL SELECT 'b", "more than one row"},
      {u"'a' -- '", u"a' -- ", ""},
      {u"'a' || 'b'", u"a' || 'b", ""},
      {u"1", u"1", "not a text"},
  };
  const SqliteMemory db;
  ASSERT_TRUE(db.isOpen());
  for (const Row& row : rows) {
    const std::string name = toUtf8(row.literal);
    const LiteralReading reading = db.selectLiteral(row.literal);
    if (row.faultStart.empty()) {
      ASSERT_TRUE(reading.value.has_value()) << name << ": " << reading.fault;
      EXPECT_NE(*reading.value, row.intended) << name;
    } else {
      EXPECT_FALSE(reading.value.has_value()) << name;
      EXPECT_EQ(reading.fault.rfind(row.faultStart, 0), 0u) << name << ": " << reading.fault;
    }
  }
}

}  // namespace
}  // namespace ravelin

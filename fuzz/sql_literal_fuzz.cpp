// Arbitrary text through SQLUtilities' text literals, read back by SQLite in memory: each literal
// (fmtSQLString between the caller's apostrophes, FormatSqlValue quoted and unquoted, for DTS_Text
// and DTS_TextUnicode and both database kinds) must be exactly one statement whose one value is
// the text unchanged. A value that escapes its literal, or comes back different, is a finding.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/tests/support/sqlite_select.hpp>
#include <string>

namespace {

using ravelin::String;

// Pairs of bytes (little-endian) as UTF-16 units. NUL units are dropped, since a NUL ends the
// text for SQL engines, and a lone surrogate becomes U+FFFD: no encoding can carry it.
String textOf(const uint8_t* data, size_t size) {
  String units;
  for (size_t i = 0; i + 1 < size; i += 2) {
    const auto unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    if (unit != 0) units.push_back(unit);
  }
  String text;
  text.reserve(units.size());
  for (size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
        units[i + 1] < 0xE000) {
      text.push_back(unit);
      text.push_back(units[++i]);
    } else if (unit >= 0xD800 && unit < 0xE000) {
      text.push_back(u'\uFFFD');
    } else {
      text.push_back(unit);
    }
  }
  return text;
}

void expectReadBack(const ravelin::SqliteMemory& db, const String& literal, const String& text,
                    const char* how) {
  const ravelin::LiteralReading reading = db.selectLiteral(literal);
  if (reading.value && *reading.value == text) return;
  std::fprintf(stderr, "%s: %s\nliteral: %s\n", how,
               reading.value ? "another value came back" : reading.fault.c_str(),
               ravelin::toUtf8(literal).c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace ravelin;
  static const SqliteMemory db;
  static const std::shared_ptr<SQLUtilities> sql = makeObject<SQLUtilities>();
  if (!db.isOpen()) std::abort();
  const String text = textOf(data, size);
  const Variant value(text);
  for (const DataBTypeEnum kind : {dbtMDB, dbtMSSQL}) {
    expectReadBack(db, u"'" + sql->fmtSQLString(text, kind) + u"'", text, "fmtSQLString");
    expectReadBack(db, sql->FormatSqlValue(DTS_Text, value, kind), text, "DTS_Text");
    expectReadBack(db, sql->FormatSqlValue(DTS_TextUnicode, value, kind), text, "DTS_TextUnicode");
    expectReadBack(db, u"'" + sql->FormatSqlValue(DTS_Text, value, kind, false) + u"'", text,
                   "DTS_Text unquoted");
  }
  return 0;
}

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/fake/paths_fake.hpp>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

using test_dbf::Field;
using test_dbf::Record;
using test_dbf::Table;

Variant valueOf(Recordset& rs, StringView name) {
  return rs.Fields()->Item(Variant(name))->Value();
}

// Every row's values in the order of the named fields, walked with MoveFirst and MoveNext.
std::vector<std::vector<Variant>> rowsOf(Recordset& rs, const std::vector<StringView>& names) {
  std::vector<std::vector<Variant>> rows;
  if (rs.BOF() && rs.EndOfFile()) return rows;
  for (rs.MoveFirst(); !rs.EndOfFile(); rs.MoveNext()) {
    std::vector<Variant>& row = rows.emplace_back();
    for (StringView name : names)
      row.push_back(valueOf(rs, name));
  }
  return rows;
}

Variant text(StringView value) {
  return Variant(value);
}
Variant date(int year, int month, int day) {
  return Variant(makeDate(year, month, day));
}
const Variant kNull = Variant::null();

class TempFile {
 public:
  explicit TempFile(const std::string& bytes) {
    path_ = std::filesystem::temp_directory_path() /
            ("ravelin_dbf_test_" + std::to_string(++counter_) + ".dbf");
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  ~TempFile() { std::filesystem::remove(path_); }
  String path() const {
    const std::u16string p = path_.u16string();
    return String(p.begin(), p.end());
  }

 private:
  static inline int counter_ = 0;
  std::filesystem::path path_;
};

Table everyType() {
  Table table;
  table.fields = {{"NAME", 'C', 10},      {"QTY", 'N', 8, 2}, {"PRICE", 'N', 8, '2'},
                  {"PLAIN", 'N', 6, ' '}, {"OK", 'L', 1},     {"BORN", 'D', 8},
                  {"NOTES", 'M', 10}};
  return table;
}

TEST(DBFFileReaderTest, EveryColumnTypeAndEdgeCase) {
  const Table table = everyType();
  const std::vector<Record> records = {
      {{"abc", "123.45", "12345", "7", "T", "20100607", "0000000001"}},
      {{"  padded  ", "-0.5", "-250", "1.5e2", "Y", "        ", "0000000002"}},
      {{"x", "abc", "", "", "t", "19991231", ""}},
      {{"gone", "1", "1", "1", "T", "20100607", "1"}, true},
      {{"", "", "", "", "N", "", ""}},
  };
  const auto rs = DBFFileReader::readBytes(test_dbf::tableBytes(table, records));
  ASSERT_TRUE(rs);

  // The columns: types, defined sizes and names in descriptor order.
  struct ColumnRow {
    StringView name;
    int32_t type;
    int32_t definedSize;
  };
  const ColumnRow columns[] = {{u"NAME", adVarWChar, 10}, {u"QTY", adDouble, 8},
                               {u"PRICE", adDouble, 8},   {u"PLAIN", adDouble, 8},
                               {u"OK", adBoolean, 2},     {u"BORN", adDate, 8},
                               {u"NOTES", adVarWChar, 10}};
  ASSERT_EQ(rs->Fields()->Count(), 7);
  for (int32_t i = 0; i < 7; ++i) {
    const auto field = rs->Fields()->Item(Variant(i));
    EXPECT_EQ(field->Name(), columns[i].name);
    EXPECT_EQ(field->Type(), columns[i].type) << i;
    if (columns[i].type == adVarWChar) {
      EXPECT_EQ(field->DefinedSize(), columns[i].definedSize);
    }
  }

  // The last record is under AddNew and current.
  EXPECT_EQ(rs->EditMode(), adEditAdd);

  const std::vector<std::vector<Variant>> expected = {
      // C keeps its trailing blanks; the binary decimal count 2 divides by 1, the ASCII "2" by
      // 100, a blank byte not at all; "T" is true; a memo is never filled.
      {text(u"abc       "), Variant(123.45), Variant(123.45), Variant(7.0), Variant(true),
       date(2010, 6, 7), kNull},
      {text(u"  padded  "), Variant(-0.5), Variant(-2.5), Variant(150.0), Variant(true), kNull,
       kNull},
      {text(u"x         "), Variant(0.0), Variant(0.0), Variant(0.0), Variant(false),
       date(1999, 12, 31), kNull},
      {kNull, kNull, kNull, kNull, kNull, kNull, kNull},  // deleted: every column unset
      {text(u"          "), Variant(0.0), Variant(0.0), Variant(0.0), Variant(false), kNull, kNull},
  };
  const auto rows = rowsOf(*rs, {u"NAME", u"QTY", u"PRICE", u"PLAIN", u"OK", u"BORN", u"NOTES"});
  ASSERT_EQ(rows.size(), expected.size());
  for (std::size_t r = 0; r < rows.size(); ++r) {
    for (std::size_t c = 0; c < expected[r].size(); ++c) {
      EXPECT_EQ(rows[r][c], expected[r][c])
          << "row " << r << " column " << c << ": "
          << toUtf8(CStr(rows[r][c].isNull() ? Variant(u"null") : rows[r][c]));
    }
  }
  EXPECT_EQ(rs->RecordCount(), 5);
}

TEST(DBFFileReaderTest, HeaderShapesAndTheLastRecord) {
  // A header length of 97 with a record length of 21 gives two fields.
  Table two;
  two.fields = {{"A", 'C', 10}, {"B", 'C', 10}};
  std::string bytes = test_dbf::tableBytes(two, {{{"1", "2"}}});
  EXPECT_EQ(bytes[8], 97);
  EXPECT_EQ(bytes[10], 21);
  EXPECT_EQ(DBFFileReader::readBytes(bytes)->Fields()->Count(), 2);

  // An empty table: open, no rows, no AddNew.
  const auto empty = DBFFileReader::readBytes(test_dbf::tableBytes(two, {}));
  EXPECT_TRUE(empty->BOF() && empty->EndOfFile());
  EXPECT_EQ(empty->RecordCount(), 0);

  // A deleted last record is still the row under AddNew, with nothing set.
  const auto lastDeleted =
      DBFFileReader::readBytes(test_dbf::tableBytes(two, {{{"1", "2"}}, {{"3", "4"}, true}}));
  EXPECT_EQ(lastDeleted->EditMode(), adEditAdd);
  EXPECT_EQ(valueOf(*lastDeleted, u"A"), kNull);
  lastDeleted->MoveFirst();
  EXPECT_EQ(valueOf(*lastDeleted, u"A"), text(u"1         "));
  EXPECT_EQ(lastDeleted->RecordCount(), 2);

  // A header count smaller than the records present reads the counted ones.
  Table counted = two;
  counted.recordCount = 2;
  const auto fewer = DBFFileReader::readBytes(
      test_dbf::tableBytes(counted, {{{"1", ""}}, {{"2", ""}}, {{"3", ""}}}));
  EXPECT_EQ(rowsOf(*fewer, {u"A"}).size(), 2u);

  // An unsupported type that only deleted records reach is no failure; it has no column.
  Table binary;
  binary.fields = {{"A", 'C', 2}, {"PIC", 'B', 10}};
  const auto skipped = DBFFileReader::readBytes(test_dbf::tableBytes(binary, {{{"x", "1"}, true}}));
  EXPECT_EQ(skipped->Fields()->Count(), 1);

  // A name is cut at its first null and trimmed; an empty name is a column too.
  Table names;
  names.fields = {{std::string(" ID\0XY", 6), 'N', 3}, {"", 'C', 2}};
  const auto named = DBFFileReader::readBytes(test_dbf::tableBytes(names, {{{"5", "ab"}}}));
  EXPECT_EQ(named->Fields()->Item(Variant(int32_t{0}))->Name(), u"ID");
  EXPECT_EQ(named->Fields()->Item(Variant(int32_t{1}))->Name(), u"");
}

TEST(DBFFileReaderTest, TextIsDecodedFromTheTablesCodePage) {
  struct Row {
    uint8_t mark;
    std::string bytes;
    StringView expected;
  };
  const Row rows[] = {
      {0x03, "Pre\xE7o", u"Pre\u00E7o"},              // 1252, the ISO-8859-1 path
      {0x03, "\x80 5", u"\u20AC 5"},                  // 1252 above ISO-8859-1
      {0x02, "Pre\x87o", u"Pre\u00E7o"},              // 850
      {0x01, "\xC9\xCD\xBB", u"\u2554\u2550\u2557"},  // 437
      {0xC9, "\xC6\xE0", u"\u0416\u0430"},            // 1251
      {0x65, "\x86\xA0", u"\u0416\u0430"},            // 866
      {0x00, "Pre\xE7o", u"Pre\u00E7o"},              // no mark: the locale's ANSI page (1252)
      {0x57, "\x80", u"\u20AC"},                      // "current ANSI"
      {0x4D, "\xE7", u"\u00E7"},                      // a double-byte page: the locale's page
  };
  const ScopedLocale locale(u"en-US");
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << "mark " << int{row.mark} << " " << row.bytes);
    Table table;
    table.languageDriver = row.mark;
    table.fields = {{"T", 'C', static_cast<uint8_t>(row.bytes.size())}};
    // Twice: once through the bulk rows, once as the last record under AddNew.
    const auto rs =
        DBFFileReader::readBytes(test_dbf::tableBytes(table, {{{row.bytes}}, {{row.bytes}}}));
    const auto values = rowsOf(*rs, {u"T"});
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0][0], text(row.expected));
    EXPECT_EQ(values[1][0], text(row.expected));
  }
}

TEST(DBFFileReaderTest, BrokenFilesRaiseTheReadersError) {
  Table table;
  table.fields = {{"A", 'C', 10}, {"B", 'C', 10}};
  const std::vector<Record> three = {{{"1", "2"}}, {{"3", "4"}}, {{"5", "6"}}};
  const std::string good = test_dbf::tableBytes(table, three);  // 97 + 3 x 21 + 1 bytes

  struct Row {
    const char* what;
    std::string bytes;
    std::string description;
  };
  const auto with = [&](auto change) {
    Table broken = table;
    change(broken);
    return test_dbf::tableBytes(broken, three);
  };
  Table dated;
  dated.fields = {{"BORN", 'D', 8}};
  Table binary;
  binary.fields = {{"A", 'C', 2}, {"PIC", 'B', 10}};
  Table twice;
  twice.fields = {{"A", 'C', 2}, {"a", 'N', 2}};
  Table version30 = table;
  version30.version = 0x30;
  Table version8B = table;
  version8B.version = 0x8B;

  const Row rows[] = {
      {"ends inside a record", good.substr(0, good.size() - 6),
       "Truncated file: record 3 of 3 is incomplete"},
      {"count beyond the records", with([](Table& t) { t.recordCount = 5; }),
       "Truncated file: the header counts 5 records and the file holds 3"},
      {"count beyond, no end mark", good.substr(0, good.size() - 1 - 21),
       "Truncated file: the header counts 3 records and the file holds 2"},
      {"header length past the file", with([](Table& t) { t.headerLength = 5000; }),
       "Header length 5000 does not fit the file of 161 bytes"},
      {"header length without room", with([](Table& t) { t.headerLength = 96; }),
       "Header length 96 leaves no room for the descriptor terminator (0x0D)"},
      {"header length below a header", with([](Table& t) { t.headerLength = 20; }),
       "Header length 20 leaves no room for the descriptor terminator (0x0D)"},
      {"record length too short", with([](Table& t) { t.recordLength = 20; }),
       "Record length 20 does not fit the field descriptors, which need 21 bytes"},
      {"no terminator", with([](Table& t) { t.terminator = ' '; }),
       "Field descriptors without their terminator (0x0D) at byte 96"},
      {"shorter than a header", good.substr(0, 10),
       "Truncated file: the header needs 32 bytes and the file has 10"},
      {"empty file", "", "Truncated file: the header needs 32 bytes and the file has 0"},
      {"version 0x30", test_dbf::tableBytes(version30, three), "Invalid file format"},
      {"version 0x8B", test_dbf::tableBytes(version8B, three), "Invalid file format"},
      {"unsupported type reached", test_dbf::tableBytes(binary, {{{"x", "1"}, true}, {{"y", "2"}}}),
       "Record 2: field \"PIC\" has the unsupported type \"B\""},
      {"unreadable date", test_dbf::tableBytes(dated, {{{"20100607"}}, {{"2010ab07"}}, {{""}}}),
       "Record 2: field \"BORN\" holds \"2010ab07\", which is not a date"},
      {"unreadable last date", test_dbf::tableBytes(dated, {{{"99999999"}}}),
       "Record 1: field \"BORN\" holds \"99999999\", which is not a date"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    try {
      DBFFileReader::readBytes(row.bytes);
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), kReservedInvalidFileFormat);
      EXPECT_EQ(error.source(), u"clsDBFFileReader.ReadDBF");
      EXPECT_EQ(toUtf8(error.description()), row.description);
    }
  }
  // A repeated name (in any case) is refused by the record set; the reader says which field.
  try {
    DBFFileReader::readBytes(test_dbf::tableBytes(twice, {{{"x", "1"}}}));
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), kReservedInvalidFileFormat);
    EXPECT_EQ(toUtf8(error.description()).rfind("Field \"a\" cannot be added: ", 0), 0u)
        << toUtf8(error.description());
  }
}

TEST(DBFFileReaderTest, FilesByName) {
  const DBFFileReader reader;
  // An empty name touches no file.
  EXPECT_EQ(reader.readDBF(u""), nullptr);
  EXPECT_EQ(reader.RecordCount(u""), 0.0);

  Table table;
  table.fields = {{"A", 'C', 3}};
  const TempFile file(test_dbf::tableBytes(table, {{{"abc"}}, {{"def"}}}));
  const auto rs = reader.readDBF(file.path());
  ASSERT_TRUE(rs);
  EXPECT_EQ(rowsOf(*rs, {u"A"}).size(), 2u);
  EXPECT_EQ(reader.RecordCount(file.path()), 2.0);

  // RecordCount reads the header whatever the version byte; readDBF refuses it.
  table.version = 0x30;
  table.recordCount = 70000;
  const TempFile foxPro(test_dbf::tableBytes(table, {{{"abc"}}}));
  EXPECT_EQ(reader.RecordCount(foxPro.path()), 70000.0);
  table.recordCount = 0xFFFFFFFFu;  // read as a signed Long
  const TempFile huge(test_dbf::tableBytes(table, {}));
  EXPECT_EQ(reader.RecordCount(huge.path()), -1.0);
  try {
    reader.readDBF(foxPro.path());
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), u"Invalid file format");
  }

  // A name with a lone surrogate cannot name a file where names are UTF-8; it is not found
  // either, never a failure of the path conversion.
  for (const String& missing : {file.path() + u".missing", file.path() + u"\xD800"}) {
    for (const auto& [call, source] :
         {std::pair<std::function<void()>, StringView>{[&] { reader.readDBF(missing); },
                                                       u"clsDBFFileReader.ReadDBF"},
          {[&] { reader.RecordCount(missing); }, u"clsDBFFileReader.RecordCount"}}) {
      try {
        call();
        ADD_FAILURE() << "no error";
      } catch (const AutomationError& error) {
        EXPECT_EQ(error.number(), kReservedInvalidFileFormat);
        EXPECT_EQ(error.source(), source);
        EXPECT_EQ(error.description(), u"File not found: " + missing);
      }
    }
  }
}

// Where paths have a native form besides the Windows one, a Windows-form name reaches the file
// the drive map says, and a drive the map lacks names no file.
TEST(DBFFileReaderTest, WindowsFormNamesThroughTheDriveMap) {
  if (platform::isWindowsForm(u"/native")) GTEST_SKIP() << "every path here is in the Windows form";
  Table table;
  table.fields = {{"A", 'C', 3}};
  const TempFile file(test_dbf::tableBytes(table, {{{"abc"}}}));
  const std::string native = toUtf8(file.path());
  const std::size_t slash = native.rfind('/');
  platform::ScopedFake<platform::FakePathSystem> paths;
  paths.fake().setDrive("T:", native.substr(0, slash));
  const DBFFileReader reader;
  EXPECT_EQ(reader.RecordCount(u"t:\\" + fromUtf8(native.substr(slash + 1))), 1.0);
  try {
    reader.readDBF(u"U:\\x.dbf");
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), u"File not found: U:\\x.dbf");
  }
}

}  // namespace
}  // namespace ravelin

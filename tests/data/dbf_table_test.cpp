#include <gtest/gtest.h>

#include <cmath>
#include <ravelin/data/internal/dbf_code_pages.hpp>
#include <ravelin/data/internal/dbf_table.hpp>
#include <ravelin/data/internal/dbf_values.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

// A memory source that fails the test when asked for bytes past its end.
class StrictSource : public dbf::ByteSource {
 public:
  explicit StrictSource(std::string bytes) : bytes_(std::move(bytes)) {}
  uint64_t size() const override { return bytes_.size(); }
  std::size_t read(char* into, std::size_t count) override {
    EXPECT_LE(position_ + count, bytes_.size()) << "read past the end";
    const std::size_t n = std::min(count, bytes_.size() - position_);
    bytes_.copy(into, n, position_);
    position_ += n;
    ++reads;
    return n;
  }
  int reads = 0;

 private:
  std::string bytes_;
  std::size_t position_ = 0;
};

TEST(DbfTableTest, StreamsEveryCountedRecordThroughAnyBufferSize) {
  test_dbf::Table table;
  table.fields = {{"ID", 'N', 4}, {"NAME", 'C', 6}};
  std::vector<test_dbf::Record> records;
  for (int i = 1; i <= 7; ++i)
    records.push_back({{std::to_string(i), "n" + std::to_string(i)}, i == 4});
  const std::string file = test_dbf::tableBytes(table, records);
  for (std::size_t bufferBytes : {0u, 1u, 11u, 12u, 23u, 24u, 1000u}) {
    SCOPED_TRACE(bufferBytes);
    StrictSource source(file);
    const dbf::Header header = dbf::readHeader(source);
    EXPECT_EQ(header.recordCount, 7u);
    EXPECT_EQ(header.recordLength, 11u);
    EXPECT_EQ(header.headerLength, 97u);
    EXPECT_EQ(header.languageDriver, 0x03);
    EXPECT_EQ(header.year, 2026);
    const std::vector<dbf::FieldDescriptor> fields = dbf::readDescriptors(source, header);
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[1].offset, 5u);
    dbf::RecordStream stream(source, header, bufferBytes);
    std::string_view record;
    for (std::size_t i = 0; i < records.size(); ++i) {
      ASSERT_TRUE(stream.next(record));
      EXPECT_EQ(stream.recordNumber(), i + 1);
      EXPECT_EQ(record, test_dbf::recordBytes(table, records[i].values, records[i].deleted));
    }
    EXPECT_FALSE(stream.next(record));
  }
  // A large buffer reads the whole table in one call after the header and descriptors.
  StrictSource source(file);
  const dbf::Header header = dbf::readHeader(source);
  dbf::readDescriptors(source, header);
  dbf::RecordStream stream(source, header);
  std::string_view record;
  while (stream.next(record)) {
  }
  EXPECT_EQ(source.reads, 3);
}

TEST(DbfTableTest, NumbersReadAsValReadsThem) {
  const char* const texts[] = {
      "         0",
      "       123",
      "    123.45",
      "   -123.45",
      "  +7.5    ",
      "-0",
      "0.1",
      "3.3",
      "1.",
      ".5",
      "   .",
      "",
      "          ",
      "-",
      "12 34",
      "1e3",
      "1D2",
      "12abc",
      "\t5",
      "&H10",
      "999999999999999",
      "9999999999999999",
      "0.000000000000000000001",
      "123456789.123456",
      "00000000000000000001.5",
      "1.7976931348623157",
  };
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    const std::string_view bytes(text);
    const double expected = Val(String(bytes.begin(), bytes.end()));
    const double actual = dbf::numericText(bytes);
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(std::signbit(actual), std::signbit(expected));
  }
  struct Divisor {
    uint8_t byte;
    double divisor;
  };
  const Divisor divisors[] = {{0x20, 1},  {2, 1},   {0, 1},    {'2', 100}, {'0', 1},
                              {'9', 1e9}, {'A', 1}, {0xB2, 1}, {'-', 1},   {'.', 1}};
  for (const Divisor& row : divisors)
    EXPECT_EQ(dbf::decimalDivisor(row.byte), row.divisor) << int{row.byte};
}

TEST(DbfTableTest, DatesAndLogicals) {
  struct Row {
    const char* text;
    dbf::DateText kind;
    int year, month, day;
  };
  const Row rows[] = {
      {"20100607", dbf::DateText::Date, 2010, 6, 7},
      {"19991231", dbf::DateText::Date, 1999, 12, 31},
      {"20101301", dbf::DateText::Date, 2011, 1, 1},  // months carry as DateSerial carries them
      {"        ", dbf::DateText::Blank, 0, 0, 0},
      {"", dbf::DateText::Blank, 0, 0, 0},
      {"2010ab07", dbf::DateText::Unreadable, 0, 0, 0},
      {"2010060", dbf::DateText::Unreadable, 0, 0, 0},
      {" 2010060", dbf::DateText::Unreadable, 0, 0, 0},
      {"99999999", dbf::DateText::Unreadable, 0, 0, 0},  // past 9999
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    double serial = -1;
    EXPECT_EQ(dbf::readDateText(row.text, serial), row.kind);
    if (row.kind == dbf::DateText::Date) {
      EXPECT_EQ(serial, makeDate(row.year, row.month, row.day).serial);
    }
  }
  double serial = 0;
  EXPECT_EQ(dbf::readDateText(std::string_view("\0\0\0\0\0\0\0\0", 8), serial),
            dbf::DateText::Unreadable);
  for (const char* text : {"T", "Y"})
    EXPECT_TRUE(dbf::logicalText(text)) << text;
  for (const char* text : {"t", "y", "N", "F", " ", "?", "", "TT"})
    EXPECT_FALSE(dbf::logicalText(text)) << text;
}

TEST(DbfTableTest, LanguageDriverMarks) {
  const std::pair<uint8_t, int> rows[] = {
      {0x01, 437},  {0x02, 850},  {0x03, 1252}, {0x57, 0},    {0x00, 0},    {0x13, 0},
      {0x26, 866},  {0x65, 866},  {0x64, 852},  {0x66, 865},  {0x67, 861},  {0x6A, 737},
      {0x6B, 857},  {0xC8, 1250}, {0xC9, 1251}, {0xCA, 1254}, {0xCB, 1253}, {0xCC, 1257},
      {0x7D, 1255}, {0x7E, 1256}, {0x4D, 0},    {0x04, 0},    {0xFF, 0},    {0x24, 860},
  };
  for (const auto& [mark, page] : rows)
    EXPECT_EQ(dbf::codePageOfLanguageDriver(mark), page) << int{mark};
}

}  // namespace
}  // namespace ravelin

// The dBASE files committed to the repository (the example's table and the fuzz seeds) are what
// the test writer makes of the definitions below, byte for byte. RAVELIN_WRITE_DBF_SAMPLES=1
// writes them anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

using test_dbf::Record;
using test_dbf::Table;

struct Sample {
  std::string path;  // from the source root
  std::string bytes;
};

std::vector<Sample> samples() {
  Table shop;  // Windows-1252
  shop.fields = {{"CODE", 'N', 6}, {"NAME", 'C', 20}, {"PRICE", 'N', 8, 2},
                 {"SOLD", 'D', 8}, {"PAID", 'L', 1},  {"NOTES", 'M', 10}};
  const std::vector<Record> shopRecords = {
      {{"101", "P\xE3o de queijo", "4.50", "20100607", "T", "1"}},
      {{"102", "Caf\xE9 com leite", "3.25", "", "N", ""}},
      {{"103", "Bolo de fub\xE1", "12.00", "20240229", "Y", "2"}, true},
      {{"104", "Guaran\xE1 350 ml", "5.75", "19991231", "t", ""}},
  };
  Table oem;  // OEM 850, decimal count as an ASCII digit, an empty table beside it
  oem.languageDriver = 0x02;
  oem.fields = {{"QTY", 'N', 5, '1'}, {"TEXT", 'C', 6}};
  Table unsupported;
  unsupported.fields = {{"A", 'C', 2}, {"PIC", 'B', 10}};
  Table broken = oem;
  broken.recordCount = 9;
  return {
      {"examples/dbase_sample.dbf", test_dbf::tableBytes(shop, shopRecords)},
      {"fuzz/seeds/dbf_reader_fuzz/shop.dbf", test_dbf::tableBytes(shop, shopRecords)},
      {"fuzz/seeds/dbf_reader_fuzz/oem850.dbf",
       test_dbf::tableBytes(oem, {{{"125", "Pre\x87o"}}, {{"-7", "x"}, true}})},
      {"fuzz/seeds/dbf_reader_fuzz/empty.dbf", test_dbf::tableBytes(oem, {})},
      {"fuzz/seeds/dbf_reader_fuzz/unsupported.dbf",
       test_dbf::tableBytes(unsupported, {{{"a", "1"}, true}, {{"b", "2"}}})},
      {"fuzz/seeds/dbf_reader_fuzz/count_too_large.dbf",
       test_dbf::tableBytes(broken, {{{"1", "a"}}})},
  };
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(DbfSamplesTest, CommittedFilesAreWhatTheWriterMakes) {
  const std::filesystem::path root = RAVELIN_SOURCE_DIR;
  const bool write = std::getenv("RAVELIN_WRITE_DBF_SAMPLES") != nullptr;
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.path);
    if (write) std::ofstream(root / sample.path, std::ios::binary) << sample.bytes;
    EXPECT_EQ(readFile(root / sample.path), sample.bytes);
  }
}

}  // namespace
}  // namespace ravelin

// The suite's daily work in short: a dBASE table of sales read into a record set, its rows marked
// as pending insertions and written in one batch through a connection to a new SQLite database
// file, then counted back with a query. On a terminal the batch shows its progress (rows sent,
// rows per second); written to a file or a pipe, the output is the same on every run.
#include "demo_import.hpp"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/platform/terminal.hpp>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <string>
#include <vector>

namespace ravelin::demo {
namespace {

namespace fs = std::filesystem;

// The sales table: every 100th record deleted, every third one paid.
void writeSalesTable(const fs::path& path, std::size_t records) {
  test_dbf::Table table;
  table.fields = {{"ID", 'N', 10, 0}, {"NAME", 'C', 40}, {"PRICE", 'N', 12, 2},
                  {"SOLD", 'D', 8},   {"PAID", 'L', 1},  {"NOTE", 'C', 60}};
  std::ofstream out(path, std::ios::binary);
  out << test_dbf::headerBytes(table, static_cast<uint32_t>(records));
  char buffer[64];
  const auto text = [&](const char* format, auto... values) {
    const int length = std::snprintf(buffer, sizeof buffer, format, values...);
    return std::string(buffer, static_cast<std::size_t>(length));
  };
  for (std::size_t i = 0; i < records; ++i) {
    const auto n = static_cast<unsigned>(i);
    out << test_dbf::recordBytes(
        table,
        {text("%u", n + 1), text("Customer %07u", n), text("%u.%02u", n % 1000, n % 100),
         text("%04u%02u%02u", 2000 + n % 25, 1 + n % 12, 1 + n % 28), n % 3 == 0 ? "T" : "F",
         text("Receipt %u, O'Brien's till", n)},
        i % 100 == 99);
  }
  out << '\x1A';
}

// The progress line of the batch, rewritten in place.
class Progress {
 public:
  explicit Progress(bool shown) : shown_(shown), start_(std::chrono::steady_clock::now()) {}
  void operator()(std::size_t sent, std::size_t total) {
    if (!shown_) return;
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    std::printf("\r  sending: %zu of %zu rows, %.0f rows/s   ", sent, total,
                seconds > 0 ? static_cast<double>(sent) / seconds : 0.0);
    if (sent == total) std::printf("\n");
    std::fflush(stdout);
  }

 private:
  bool shown_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace

void importSales(std::size_t records) {
  std::cout << "\ndBASE import into SQLite\n";
  const fs::path folder =
      fs::temp_directory_path() /
      ("ravelin-demo-" +
       std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
  fs::create_directories(folder);
  struct RemoveFolder {
    fs::path folder;
    ~RemoveFolder() {
      std::error_code ignored;
      fs::remove_all(folder, ignored);
    }
  } removeFolder{folder};

  const fs::path table = folder / "sales.dbf";
  writeSalesTable(table, records);
  std::cout << "  sales.dbf: " << records << " records, " << records / 100 << " of them deleted\n";

  auto rs = DBFFileReader().readDBF(table.u16string());
  std::cout << "  readDBF: " << rs->RecordCount() << " rows of " << rs->Fields()->Count()
            << " columns\n";

  DataUtilities().UpdateRsToInsert(rs);
  rs->setFilter(Variant(int32_t{adFilterPendingRecords}));
  std::cout << "  UpdateRsToInsert: " << rs->RecordCount() << " pending insertions\n";
  rs->setFilter(Variant(int32_t{adFilterNone}));

  auto connection = makeObject<Connection>();
  connection->Open(u"Data Source=" + (folder / "sales.db").u16string());
  connection->Execute(
      u"CREATE TABLE sales (ID DOUBLE PRECISION, NAME VARCHAR(40), PRICE DOUBLE PRECISION, "
      u"SOLD TIMESTAMP, PAID BOOLEAN, NOTE VARCHAR(60))");
  rs->setActiveConnection(Variant(ObjectRef(connection)));
  rs->setBatchProgress(Progress(platform::terminal()->standardOutputIsTerminal()));
  rs->UpdateBatch();
  std::cout << "  UpdateBatch: every row sent to sales.db in one transaction\n";

  const auto counts = connection->Execute(
      u"SELECT COUNT(*), COUNT(ID), SUM(CASE WHEN PAID THEN 1 ELSE 0 END), "
      u"ROUND(SUM(PRICE), 2) FROM sales");
  const auto value = [&](int32_t column) {
    return toUtf8(CStr(counts->Fields()->Item(Variant(column))->Value()));
  };
  std::cout << "  read back: " << value(0) << " rows, " << value(1) << " with an ID, " << value(2)
            << " paid, prices adding up to " << value(3) << "\n";
  connection->Close();
}

}  // namespace ravelin::demo

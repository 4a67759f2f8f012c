// The suite's import of a dBASE table into its database: the million-record table
// (support/million_records_dbf.hpp) read with readDBF, its rows marked as insertions with
// UpdateRsToInsert and sent in one batch through a connection to a new SQLite file, against
// `ogr2ogr -f SQLite` (GDAL) converting the same file into a new SQLite file in the same run.
// A third run measures the floor the ODBC driver sets: the same million rows of values made in
// memory and inserted by one prepared statement through the platform's ODBC layer alone, with no
// dBASE file and no record set. Counters: rows per second, and for the library the seconds of
// each step.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/platform/odbc.hpp>
#include <string>

#include "support/million_records_dbf.hpp"

namespace {

namespace fs = std::filesystem;
using ravelin::bench::benchFile;
using ravelin::bench::kRecords;
using Clock = std::chrono::steady_clock;

// A database file in a fresh folder, removed afterwards.
struct DatabaseFile {
  fs::path folder;
  fs::path file;
  explicit DatabaseFile(const char* name) {
    folder = fs::temp_directory_path() /
             ("ravelin_import_bench_" + std::to_string(Clock::now().time_since_epoch().count()));
    fs::create_directories(folder);
    file = folder / name;
  }
  ~DatabaseFile() { fs::remove_all(folder); }
};

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_ImportThroughConnection(benchmark::State& state) {
  const auto& table = benchFile();
  const std::string tableName = table.path.stem().string();
  double readSeconds = 0, markSeconds = 0, batchSeconds = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const DatabaseFile database("import.db");
    auto connection = ravelin::makeObject<ravelin::Connection>();
    connection->Open(u"Data Source=" + ravelin::fromUtf8(database.file.string()));
    connection->Execute(ravelin::fromUtf8(
        "CREATE TABLE \"" + tableName +
        "\" (ID DOUBLE PRECISION, NAME VARCHAR(40), PRICE DOUBLE PRECISION, SOLD TIMESTAMP, "
        "PAID BOOLEAN, NOTE VARCHAR(60))"));
    state.ResumeTiming();

    auto start = Clock::now();
    auto rs = ravelin::DBFFileReader().readDBF(table.name());
    readSeconds += secondsSince(start);
    start = Clock::now();
    ravelin::DataUtilities().UpdateRsToInsert(rs);
    markSeconds += secondsSince(start);
    start = Clock::now();
    rs->setActiveConnection(ravelin::Variant(ravelin::ObjectRef(connection)));
    rs->UpdateBatch();
    batchSeconds += secondsSince(start);

    state.PauseTiming();
    const auto count =
        connection->Execute(ravelin::fromUtf8("SELECT COUNT(*) FROM \"" + tableName + "\""));
    if (ravelin::CDbl(count->Fields()->Item(ravelin::Variant(0))->Value()) != kRecords)
      state.SkipWithError("not every row arrived");
    connection->Close();
    state.ResumeTiming();
  }
  const double runs = static_cast<double>(state.iterations());
  state.counters["rows_per_s"] =
      benchmark::Counter(double(kRecords) * runs, benchmark::Counter::kIsRate);
  state.counters["read_s"] = readSeconds / runs;
  state.counters["mark_s"] = markSeconds / runs;
  state.counters["batch_s"] = batchSeconds / runs;
}
BENCHMARK(BM_ImportThroughConnection)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

// The peer: GDAL's converter on the same file.
void BM_Ogr2ogrPeer(benchmark::State& state) {
  const auto& table = benchFile();
  if (std::system("ogr2ogr --version >/dev/null 2>&1") != 0) {
    state.SkipWithError("ogr2ogr is not installed (gdal-bin)");
    return;
  }
  for (auto _ : state) {
    state.PauseTiming();
    const DatabaseFile database("peer.db");
    const std::string command = "ogr2ogr -f SQLite '" + database.file.string() + "' '" +
                                table.path.string() + "' >/dev/null 2>&1";
    state.ResumeTiming();
    if (std::system(command.c_str()) != 0) state.SkipWithError("ogr2ogr failed");
  }
  state.counters["rows_per_s"] = benchmark::Counter(double(kRecords) * double(state.iterations()),
                                                    benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Ogr2ogrPeer)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

// The driver's floor: one INSERT prepared once, six parameters set per row, one transaction.
void BM_DriverFloor(benchmark::State& state) {
  namespace platform = ravelin::platform;
  for (auto _ : state) {
    state.PauseTiming();
    const DatabaseFile database("floor.db");
    const auto connection = platform::odbc()->connect(u"Driver={SQLite3};Database=" +
                                                      ravelin::fromUtf8(database.file.string()));
    connection->statement()->executeDirect(
        u"CREATE TABLE sales (ID DOUBLE PRECISION, NAME VARCHAR(40), PRICE DOUBLE PRECISION, "
        u"SOLD TIMESTAMP, PAID BOOLEAN, NOTE VARCHAR(60))");
    state.ResumeTiming();
    connection->setAutoCommit(false);
    const auto insert = connection->statement();
    using Kind = platform::OdbcValueKind;
    namespace type = platform::odbc_sql_type;
    const platform::OdbcParameter parameters[] = {
        {Kind::Double, type::kDouble, 15, 0}, {Kind::Text, type::kWVarChar, 40, 0},
        {Kind::Double, type::kDouble, 15, 0}, {Kind::Timestamp, type::kTypeTimestamp, 19, 0},
        {Kind::Bit, type::kBit, 1, 0},        {Kind::Text, type::kWVarChar, 60, 0}};
    insert->prepare(
        u"INSERT INTO sales (ID, NAME, PRICE, SOLD, PAID, NOTE) VALUES (?, ?, ?, ?, ?, ?)",
        parameters);
    char text[64];
    const auto setText = [&](std::size_t parameter, int length) {
      char16_t* buffer = insert->textBuffer(parameter, static_cast<std::size_t>(length));
      for (int i = 0; i < length; ++i)
        buffer[i] = static_cast<char16_t>(text[i]);
    };
    for (uint32_t i = 0; i < kRecords; ++i) {
      insert->setDouble(0, i + 1);
      setText(1, std::snprintf(text, sizeof text, "Customer %07u", i));
      insert->setDouble(2, (i % 100000) + (i % 100) / 100.0);
      insert->setTimestamp(3,
                           {static_cast<int16_t>(1990 + i % 35), static_cast<uint16_t>(1 + i % 12),
                            static_cast<uint16_t>(1 + i % 28), 0, 0, 0, 0});
      insert->setBit(4, i % 3 == 0);
      setText(5, std::snprintf(text, sizeof text, "Note for record %u", i));
      insert->executePrepared();
    }
    connection->commit();
  }
  state.counters["rows_per_s"] = benchmark::Counter(double(kRecords) * double(state.iterations()),
                                                    benchmark::Counter::kIsRate);
}
BENCHMARK(BM_DriverFloor)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

}  // namespace

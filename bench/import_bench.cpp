// The suite's import of a dBASE table into its database: the million-record table
// (support/million_records_dbf.hpp) read with readDBF, its rows marked as insertions with
// UpdateRsToInsert and sent in one batch through a connection to a new SQLite file, against
// `ogr2ogr -f SQLite` (GDAL) converting the same file into a new SQLite file in the same run.
// Counters: rows per second, and for the library the seconds of each step.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
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

}  // namespace

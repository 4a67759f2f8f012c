// Reading the million-record dBASE table (support/million_records_dbf.hpp) into a record set with
// readDBF and walking every value, against a plain parse of the same file into fixed structs that
// walks the same values. Counters: records per second, the file's size and the growth of the
// process's peak resident memory during the first read (VmHWM of /proc/self/status on Linux;
// 0 where the system has no such file).
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ravelin/data/dbf_file_reader.hpp>
#include <string>
#include <vector>

#include "support/million_records_dbf.hpp"

namespace {

using ravelin::DBFFileReader;
using ravelin::Recordset;
using ravelin::String;
using ravelin::Variant;

using ravelin::bench::BenchFile;
using ravelin::bench::benchFile;
using ravelin::bench::kRecords;

double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;  // in kB
  }
  return 0;
}

void BM_ReadDbfAndWalk(benchmark::State& state) {
  const BenchFile& file = benchFile();
  const DBFFileReader reader;
  // Google Benchmark calls this function more than once; the growth of the peak is that of the
  // process's first read, before any later read could reuse memory the first one raised.
  static double peakGrowth = -1;
  for (auto _ : state) {
    const double before = peakGrowth < 0 ? peakMegabytes() : 0;
    std::shared_ptr<Recordset> rs = reader.readDBF(file.name());
    if (peakGrowth < 0) peakGrowth = peakMegabytes() - before;
    double sum = 0;
    std::size_t units = 0;
    const auto fields = rs->Fields();
    std::vector<std::shared_ptr<ravelin::Field>> columns;
    for (int32_t i = 0; i < fields->Count(); ++i)
      columns.push_back(fields->Item(Variant(i)));
    for (rs->MoveFirst(); !rs->EndOfFile(); rs->MoveNext()) {
      for (const auto& column : columns) {
        const Variant value = column->Value();
        if (value.isString()) {
          units += value.asString().size();
        } else if (value.type() == ravelin::VarType::Double) {
          sum += value.asDouble();
        } else if (value.type() == ravelin::VarType::Date) {
          sum += value.asDate().serial;
        }
      }
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(units);
  }
  state.counters["records_per_s"] = benchmark::Counter(
      double(kRecords) * double(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["file_MB"] = double(file.bytes) / 1e6;
  state.counters["peak_growth_MB"] = peakGrowth;
}
BENCHMARK(BM_ReadDbfAndWalk)->Unit(benchmark::kMillisecond);

void BM_ReadDbfOnly(benchmark::State& state) {
  const BenchFile& file = benchFile();
  const DBFFileReader reader;
  for (auto _ : state) {
    std::shared_ptr<Recordset> rs = reader.readDBF(file.name());
    benchmark::DoNotOptimize(rs.get());
  }
  state.counters["records_per_s"] = benchmark::Counter(
      double(kRecords) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ReadDbfOnly)->Unit(benchmark::kMillisecond);

// The baseline: the same file parsed by hand into fixed structs, then the same values walked.
struct PlainRecord {
  bool deleted;
  double id;
  std::string name;
  double price;
  int32_t sold;  // days since 30 December 1899
  bool paid;
  std::string note;
};

double plainNumber(std::string_view text) {
  while (!text.empty() && text.front() == ' ')
    text.remove_prefix(1);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

int32_t plainDate(std::string_view text) {
  const auto digits = [&](std::size_t from, std::size_t count) {
    int value = 0;
    for (std::size_t i = from; i < from + count; ++i)
      value = value * 10 + (text[i] - '0');
    return value;
  };
  // Days from civil (proleptic Gregorian), shifted to the automation epoch.
  int y = digits(0, 4);
  const int m = digits(4, 2);
  const int d = digits(6, 2);
  y -= m <= 2;
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int yoe = y - era * 400;
  const int doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468 + 25569;
}

void BM_PlainParseAndWalk(benchmark::State& state) {
  const BenchFile& file = benchFile();
  for (auto _ : state) {
    std::FILE* f = std::fopen(file.path.c_str(), "rb");
    unsigned char header[32];
    if (std::fread(header, 1, 32, f) != 32) state.SkipWithError("short header");
    const std::size_t headerLength = header[8] | (header[9] << 8);
    const std::size_t recordLength = header[10] | (header[11] << 8);
    std::fseek(f, static_cast<long>(headerLength), SEEK_SET);
    std::vector<PlainRecord> records;
    records.reserve(kRecords);
    std::vector<char> buffer(recordLength * 2000);
    for (uint32_t done = 0; done < kRecords;) {
      const std::size_t n = std::min<std::size_t>(2000, kRecords - done);
      if (std::fread(buffer.data(), recordLength, n, f) != n) state.SkipWithError("short read");
      for (std::size_t i = 0; i < n; ++i) {
        const std::string_view r(buffer.data() + i * recordLength, recordLength);
        PlainRecord& p = records.emplace_back();
        p.deleted = r[0] == '*';
        if (p.deleted) continue;
        p.id = plainNumber(r.substr(1, 10));
        p.name.assign(r.substr(11, 40));
        p.price = plainNumber(r.substr(51, 12));
        p.sold = plainDate(r.substr(63, 8));
        p.paid = r[71] == 'T' || r[71] == 'Y';
        p.note.assign(r.substr(72, 60));
      }
      done += static_cast<uint32_t>(n);
    }
    std::fclose(f);
    double sum = 0;
    std::size_t units = 0;
    for (const PlainRecord& p : records) {
      if (p.deleted) continue;
      sum += p.id + p.price + p.sold + (p.paid ? 1 : 0);
      units += p.name.size() + p.note.size();
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(units);
  }
  state.counters["records_per_s"] = benchmark::Counter(
      double(kRecords) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_PlainParseAndWalk)->Unit(benchmark::kMillisecond);

}  // namespace

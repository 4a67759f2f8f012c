// The benchmarks' dBASE table of a million records: N(10,0), C(40), N(12,2), D(8), L(1), C(60);
// 1 % deleted; about 132 MB. Written once per process into the temporary folder under a name of
// its own (from the clock), and removed at exit.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ravelin/base/text.hpp>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <string>
#include <vector>

namespace ravelin::bench {

constexpr uint32_t kRecords = 1'000'000;

inline test_dbf::Table benchTable() {
  test_dbf::Table table;
  table.fields = {{"ID", 'N', 10, 0}, {"NAME", 'C', 40}, {"PRICE", 'N', 12, 2},
                  {"SOLD", 'D', 8},   {"PAID", 'L', 1},  {"NOTE", 'C', 60}};
  return table;
}

// The table file, written on first use and removed at exit.
struct BenchFile {
  std::filesystem::path path;
  uint64_t bytes = 0;

  BenchFile() {
    path = std::filesystem::temp_directory_path() /
           ("ravelin_bench_" +
            std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) +
            "_sales.dbf");
    const test_dbf::Table table = benchTable();
    std::ofstream out(path, std::ios::binary);
    out << test_dbf::headerBytes(table, kRecords);
    char buffer[32];
    for (uint32_t i = 0; i < kRecords; ++i) {
      const auto value = [&](const char* format, auto... args) {
        const int n = std::snprintf(buffer, sizeof buffer, format, args...);
        return std::string(buffer, static_cast<std::size_t>(n));
      };
      const std::vector<std::string> values = {
          value("%u", i + 1),
          value("Customer %07u", i),
          value("%u.%02u", i % 100000, i % 100),
          value("%04u%02u%02u", 1990 + i % 35, 1 + i % 12, 1 + i % 28),
          i % 3 == 0 ? "T" : "F",
          i % 7 == 0 ? std::string() : value("Note for record %u", i),
      };
      out << test_dbf::recordBytes(table, values, i % 100 == 50);
    }
    out << '\x1A';
    out.close();
    bytes = std::filesystem::file_size(path);
  }
  ~BenchFile() { std::filesystem::remove(path); }

  String name() const { return path.u16string(); }
};

inline const BenchFile& benchFile() {
  static const BenchFile file;
  return file;
}

}  // namespace ravelin::bench

// INI reads: 10,000 lookups of random existing keys in a generated 1 MB file (1,330 sections of
// 22 keys, with comments and blank lines) through the native profile system, each with the
// 512-byte buffer FileSystem.ReadINIString uses, against Python's configparser reading the same
// file once. Python starts outside the measurement: it times its own read (manual time), so its
// start-up does not count. Each run of the lookups starts with a new profile system, so it pays
// for reading and parsing the file once, as a program's first lookup does. The file's
// modification time is set an hour back, as for a till's INI file written long before it is
// read: a file changed within the last seconds is read again on every lookup until it settles
// (profile_posix.cpp says why). Counter ratio_to_configparser: the lookups' time over the
// configparser read's, the goal being at most 1.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <ravelin/files/file_system.hpp>
#include <ravelin/platform/profile.hpp>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kSections = 1330;
constexpr int kKeysPerSection = 22;
constexpr int kLookups = 10000;

std::string sectionName(int section) {
  return "Terminal" + std::to_string(section);
}
std::string keyName(int key) {
  return "Setting" + std::to_string(key);
}
std::string valueOf(int section, int key) {
  return "value-" + std::to_string(section) + "-" + std::to_string(key) + "-abcdef";
}

// The generated file, in a folder of its own removed at exit.
struct BenchFile {
  fs::path folder;
  fs::path path;
  size_t bytes = 0;

  BenchFile() {
    folder = fs::temp_directory_path() /
             ("ravelin_profile_bench_" + std::to_string(Clock::now().time_since_epoch().count()));
    fs::create_directories(folder);
    path = folder / "till.ini";
    std::string text = "; Generated settings of the profile benchmark\r\n\r\n";
    for (int section = 0; section < kSections; ++section) {
      text += "[" + sectionName(section) + "]\r\n";
      text += "; terminal " + std::to_string(section) + "\r\n";
      for (int key = 0; key < kKeysPerSection; ++key)
        text += keyName(key) + " = " + valueOf(section, key) + "\r\n";
      text += "\r\n";
    }
    std::ofstream(path, std::ios::binary).write(text.data(), std::streamsize(text.size()));
    bytes = text.size();
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
  }
  ~BenchFile() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
};

const BenchFile& benchFile() {
  static const BenchFile file;
  return file;
}

// Seconds configparser takes to read the file, as Python measures them; negative on failure.
double configparserSeconds() {
  const BenchFile& file = benchFile();
  const fs::path script = file.folder / "read.py";
  const fs::path output = file.folder / "seconds.txt";
  std::ofstream(script) << "import configparser, sys, time\n"
                           "start = time.perf_counter()\n"
                           "parser = configparser.ConfigParser(interpolation=None)\n"
                           "parser.read(sys.argv[1], encoding='latin-1')\n"
                           "seconds = time.perf_counter() - start\n"
                           "assert len(parser.sections()) == int(sys.argv[2])\n"
                           "print(repr(seconds))\n";
  const std::string command = "python3 '" + script.string() + "' '" + file.path.string() + "' " +
                              std::to_string(kSections) + " > '" + output.string() + "'";
  if (std::system(command.c_str()) != 0) return -1;
  std::ifstream in(output);
  double seconds = -1;
  in >> seconds;
  return in ? seconds : -1;
}

double& baselineSeconds() {
  static double seconds = 0;
  return seconds;
}

void BM_ConfigparserReadsFileOnce(benchmark::State& state) {
  double total = 0;
  for (auto _ : state) {
    const double seconds = configparserSeconds();
    if (seconds < 0) {
      state.SkipWithError("python3 with configparser could not read the file");
      return;
    }
    state.SetIterationTime(seconds);
    total += seconds;
  }
  baselineSeconds() = total / double(state.iterations());
  state.counters["file_MB"] = double(benchFile().bytes) / 1e6;
}
BENCHMARK(BM_ConfigparserReadsFileOnce)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_ProfileSystem10000Lookups(benchmark::State& state) {
  const BenchFile& file = benchFile();
  std::mt19937 random(20240611);
  std::vector<std::pair<std::string, std::string>> lookups;
  std::vector<std::string> expected;
  for (int i = 0; i < kLookups; ++i) {
    const int section = int(random() % kSections);
    const int key = int(random() % kKeysPerSection);
    lookups.emplace_back(sectionName(section), keyName(key));
    expected.push_back(valueOf(section, key));
  }
  double total = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    const auto system = ravelin::platform::ProfileSystem::makeNative();
    for (int i = 0; i < kLookups; ++i) {
      const auto read = system->getString(lookups[i].first, lookups[i].second, "", 512, file.path);
      if (read.text() != expected[i]) {
        state.SkipWithError("a lookup found another value");
        return;
      }
    }
    total += std::chrono::duration<double>(Clock::now() - start).count();
  }
  if (baselineSeconds() <= 0) baselineSeconds() = configparserSeconds();
  const double mean = total / double(state.iterations());
  if (baselineSeconds() > 0) state.counters["ratio_to_configparser"] = mean / baselineSeconds();
  state.counters["lookups_per_s"] = benchmark::Counter(
      double(kLookups) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ProfileSystem10000Lookups)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same lookups as a script makes them: FileSystem.ReadINIString, whose texts cross the ANSI
// code page both ways and whose file name is taken through the paths area.
void BM_ReadINIString10000Lookups(benchmark::State& state) {
  const BenchFile& file = benchFile();
  std::mt19937 random(20240611);
  std::vector<std::pair<ravelin::String, ravelin::String>> lookups;
  std::vector<ravelin::String> expected;
  for (int i = 0; i < kLookups; ++i) {
    const int section = int(random() % kSections);
    const int key = int(random() % kKeysPerSection);
    lookups.emplace_back(ravelin::fromUtf8(sectionName(section)), ravelin::fromUtf8(keyName(key)));
    expected.push_back(ravelin::fromUtf8(valueOf(section, key)));
  }
  const ravelin::String path = ravelin::fromUtf8(file.path.string());
  ravelin::FileSystem files;
  double total = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    ravelin::platform::profileSystem.install(ravelin::platform::ProfileSystem::makeNative());
    for (int i = 0; i < kLookups; ++i) {
      if (files.ReadINIString(lookups[i].first, lookups[i].second, u"", path) != expected[i]) {
        state.SkipWithError("a lookup found another value");
        return;
      }
    }
    total += std::chrono::duration<double>(Clock::now() - start).count();
  }
  if (baselineSeconds() <= 0) baselineSeconds() = configparserSeconds();
  const double mean = total / double(state.iterations());
  if (baselineSeconds() > 0) state.counters["ratio_to_configparser"] = mean / baselineSeconds();
}
BENCHMARK(BM_ReadINIString10000Lookups)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

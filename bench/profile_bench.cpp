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

// One lookup: the section, the key and the value it finds.
struct Lookup {
  std::string section;
  std::string key;
  std::string value;
};

// The same random existing keys for every benchmark.
const std::vector<Lookup>& randomLookups() {
  static const std::vector<Lookup> lookups = [] {
    std::mt19937 random(20240611);
    std::vector<Lookup> made;
    for (int i = 0; i < kLookups; ++i) {
      const int section = int(random() % kSections);
      const int key = int(random() % kKeysPerSection);
      made.push_back({sectionName(section), keyName(key), valueOf(section, key)});
    }
    return made;
  }();
  return lookups;
}

// The ratio of the lookups' mean time to the configparser read's.
void reportRatio(benchmark::State& state, double totalSeconds) {
  if (baselineSeconds() <= 0) baselineSeconds() = configparserSeconds();
  const double mean = totalSeconds / double(state.iterations());
  if (baselineSeconds() > 0) state.counters["ratio_to_configparser"] = mean / baselineSeconds();
}

void BM_ProfileSystem10000Lookups(benchmark::State& state) {
  const BenchFile& file = benchFile();
  const std::vector<Lookup>& lookups = randomLookups();
  double total = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    const auto system = ravelin::platform::ProfileSystem::makeNative();
    for (int i = 0; i < kLookups; ++i) {
      const auto read = system->getString(lookups[i].section, lookups[i].key, "", 512, file.path);
      if (read.text() != lookups[i].value) {
        state.SkipWithError("a lookup found another value");
        return;
      }
    }
    total += std::chrono::duration<double>(Clock::now() - start).count();
  }
  reportRatio(state, total);
  state.counters["lookups_per_s"] = benchmark::Counter(
      double(kLookups) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ProfileSystem10000Lookups)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same lookups as a script makes them: FileSystem.ReadINIString, whose texts cross the ANSI
// code page both ways and whose file name is taken through the paths area.
void BM_ReadINIString10000Lookups(benchmark::State& state) {
  using ravelin::fromUtf8;
  struct TextLookup {
    ravelin::String section, key, value;
  };
  std::vector<TextLookup> lookups;
  for (const Lookup& lookup : randomLookups())
    lookups.push_back({fromUtf8(lookup.section), fromUtf8(lookup.key), fromUtf8(lookup.value)});
  const ravelin::String path = fromUtf8(benchFile().path.string());
  ravelin::FileSystem files;
  double total = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    ravelin::platform::profileSystem.install(ravelin::platform::ProfileSystem::makeNative());
    for (const TextLookup& lookup : lookups) {
      if (files.ReadINIString(lookup.section, lookup.key, u"", path) != lookup.value) {
        state.SkipWithError("a lookup found another value");
        return;
      }
    }
    total += std::chrono::duration<double>(Clock::now() - start).count();
  }
  reportRatio(state, total);
}
BENCHMARK(BM_ReadINIString10000Lookups)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

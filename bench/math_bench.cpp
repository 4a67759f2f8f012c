// The suite's numeric rules against plain C library work on the same values: MyRound (rounding
// on the decimal text) vs round(x * 10^d) / 10^d, and the TRAN picture "###,##0.00" vs
// snprintf("%.2f") into a buffer. Each pass covers a million varied values.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <ravelin/frame/locale.hpp>
#include <ravelin/numeric/math_functions.hpp>
#include <ravelin/text/string_functions.hpp>
#include <vector>

namespace {

constexpr int kValues = 1'000'000;

// Prices, quantities and amounts: mostly two to four decimals, some whole, some large.
const std::vector<double>& variedDoubles() {
  static const std::vector<double> values = [] {
    std::mt19937_64 random(20261122);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> magnitude(0, 9);
    std::vector<double> built;
    built.reserve(kValues);
    for (int i = 0; i < kValues; ++i) {
      const double scale = std::pow(10.0, magnitude(random));
      const double value = unit(random) * scale;
      built.push_back(i % 4 == 0 ? std::round(value * 1000) / 1000 : value);
    }
    return built;
  }();
  return values;
}

int16_t digitsFor(int i) {
  return static_cast<int16_t>(i % 5);  // 0 to 4 places
}

void BM_MyRound(benchmark::State& state) {
  const ravelin::MathFunctions math;
  const auto& values = variedDoubles();
  for (auto _ : state) {
    for (int i = 0; i < kValues; ++i)
      benchmark::DoNotOptimize(math.MyRound(values[static_cast<std::size_t>(i)], digitsFor(i)));
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_MyRound)->Unit(benchmark::kMillisecond);

void BM_StdRoundBaseline(benchmark::State& state) {
  const auto& values = variedDoubles();
  for (auto _ : state) {
    for (int i = 0; i < kValues; ++i) {
      const double scale = std::pow(10.0, digitsFor(i));
      benchmark::DoNotOptimize(std::round(values[static_cast<std::size_t>(i)] * scale) / scale);
    }
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_StdRoundBaseline)->Unit(benchmark::kMillisecond);

void BM_Tran(benchmark::State& state) {
  ravelin::ScopedLocale english(u"en-US");
  ravelin::StringFunctions text;
  const auto& values = variedDoubles();
  for (auto _ : state) {
    for (int i = 0; i < kValues; ++i) {
      benchmark::DoNotOptimize(
          text.TRAN(ravelin::Variant(values[static_cast<std::size_t>(i)]), u"###,##0.00"));
    }
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_Tran)->Unit(benchmark::kMillisecond);

void BM_SnprintfBaseline(benchmark::State& state) {
  const auto& values = variedDoubles();
  char buffer[64];
  for (auto _ : state) {
    for (int i = 0; i < kValues; ++i) {
      benchmark::DoNotOptimize(
          std::snprintf(buffer, sizeof buffer, "%.2f", values[static_cast<std::size_t>(i)]));
      benchmark::ClobberMemory();
    }
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_SnprintfBaseline)->Unit(benchmark::kMillisecond);

}  // namespace

// The value arrays against the standard library doing the same work: adds into a growing array
// (clsArrayLong vs std::vector push_back) and the list text of doubles (clsArrayDouble
// getItemsAsList vs a plain std::to_chars join).
#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/frame/locale.hpp>
#include <string>
#include <vector>

namespace {

constexpr int kValues = 32767;

void BM_ArrayLongAdd(benchmark::State& state) {
  for (auto _ : state) {
    ravelin::clsArrayLong array;
    for (int32_t i = 0; i < kValues; ++i)
      benchmark::DoNotOptimize(array.add(i));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_ArrayLongAdd);

void BM_VectorPushBack(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<int32_t> values;
    for (int32_t i = 0; i < kValues; ++i)
      values.push_back(i);
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_VectorPushBack);

// Doubles of varied magnitude and precision: whole numbers, prices, fractions, tiny and huge.
std::vector<double> variedDoubles() {
  std::mt19937_64 random(20240611);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  std::uniform_int_distribution<int> exponent(-12, 20);
  std::vector<double> values;
  values.reserve(kValues);
  for (int i = 0; i < kValues; ++i) {
    const double x = unit(random);
    switch (i % 4) {
      case 0:
        values.push_back(std::round(x * 100000.0));
        break;
      case 1:
        values.push_back(std::round(x * 1000000.0) / 100.0);
        break;
      case 2:
        values.push_back(x);
        break;
      default:
        values.push_back(x * std::pow(10.0, exponent(random)));
        break;
    }
  }
  return values;
}

void BM_ArrayDoubleList(benchmark::State& state) {
  ravelin::ScopedLocale locale(u"en-US");
  ravelin::clsArrayDouble array;
  for (const double value : variedDoubles())
    array.add(value);
  for (auto _ : state) {
    ravelin::String list = array.getItemsAsList();
    benchmark::DoNotOptimize(list.data());
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_ArrayDoubleList);

void BM_ToCharsJoin(benchmark::State& state) {
  const std::vector<double> values = variedDoubles();
  for (auto _ : state) {
    std::string list;
    char digits[32];
    for (const double value : values) {
      const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
      list.append(digits, end);
      list += ',';
    }
    if (!list.empty()) list.pop_back();
    benchmark::DoNotOptimize(list.data());
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(BM_ToCharsJoin);

}  // namespace

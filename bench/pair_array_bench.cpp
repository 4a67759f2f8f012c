// The key/value search of clsArrayString2 against a plain backward scan over a
// std::vector of pairs doing the same comparisons: 30,000 rows with 1,000 distinct keys, a full
// walk of getNextValueForKey for one key (30 matches, then not found) and the walk for a missing
// key (one pass over every row).
#include <benchmark/benchmark.h>

#include <cstddef>
#include <ravelin/containers/cls_array_string2.hpp>
#include <string>
#include <utility>
#include <vector>

namespace {

using ravelin::String;
using ravelin::StringView;
using Pairs = std::vector<std::pair<String, String>>;

constexpr int kRows = 30000;
constexpr int kDistinctKeys = 1000;

Pairs makePairs() {
  Pairs pairs;
  pairs.reserve(kRows);
  for (int i = 0; i < kRows; ++i) {
    pairs.emplace_back(ravelin::fromAscii("key" + std::to_string(i % kDistinctKeys)),
                       ravelin::fromAscii("value" + std::to_string(i)));
  }
  return pairs;
}

// Every value for the key, walking from the last row; returns how many were found.
int walkArray(ravelin::clsArrayString2& array, StringView key, bool ignoreCase) {
  array.resetSearch();
  int matches = 0;
  bool found = true;
  while (found) {
    String value = array.getNextValueForKey(key, found, ignoreCase);
    benchmark::DoNotOptimize(value.data());
    matches += found ? 1 : 0;
  }
  return matches;
}

// The same walk over the vector: a position that moves down past each match, the value copied
// out as the array's search returns it.
int walkVector(const Pairs& pairs, StringView key, bool ignoreCase) {
  int matches = 0;
  std::size_t position = pairs.size();
  for (;;) {
    bool found = false;
    String value;
    while (position > 0) {
      --position;
      const String& candidate = pairs[position].first;
      if (ignoreCase ? ravelin::equalsIgnoreCase(candidate, key) : candidate == key) {
        value = pairs[position].second;
        found = true;
        break;
      }
    }
    benchmark::DoNotOptimize(value.data());
    if (!found) return matches;
    ++matches;
  }
}

void runArray(benchmark::State& state, StringView key, bool ignoreCase) {
  ravelin::clsArrayString2 array;
  for (auto& [k, v] : makePairs())
    array.add(std::move(k), std::move(v));
  for (auto _ : state)
    benchmark::DoNotOptimize(walkArray(array, key, ignoreCase));
  state.SetItemsProcessed(state.iterations() * kRows);
}

void runVector(benchmark::State& state, StringView key, bool ignoreCase) {
  const Pairs pairs = makePairs();
  for (auto _ : state)
    benchmark::DoNotOptimize(walkVector(pairs, key, ignoreCase));
  state.SetItemsProcessed(state.iterations() * kRows);
}

void BM_String2WalkKey(benchmark::State& state) {
  runArray(state, u"key500", false);
}
void BM_VectorWalkKey(benchmark::State& state) {
  runVector(state, u"key500", false);
}
void BM_String2WalkMissingKey(benchmark::State& state) {
  runArray(state, u"nokey", false);
}
void BM_VectorWalkMissingKey(benchmark::State& state) {
  runVector(state, u"nokey", false);
}
void BM_String2WalkKeyIgnoreCase(benchmark::State& state) {
  runArray(state, u"KEY500", true);
}
void BM_VectorWalkKeyIgnoreCase(benchmark::State& state) {
  runVector(state, u"KEY500", true);
}

BENCHMARK(BM_String2WalkKey);
BENCHMARK(BM_VectorWalkKey);
BENCHMARK(BM_String2WalkMissingKey);
BENCHMARK(BM_VectorWalkMissingKey);
BENCHMARK(BM_String2WalkKeyIgnoreCase);
BENCHMARK(BM_VectorWalkKeyIgnoreCase);

}  // namespace

// clsCollection against std::unordered_map doing the same work: 10,000 adds under distinct text
// keys, then 10,000 lookups by key (in a different order), both from prepared keys.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <ravelin/containers/cls_collection.hpp>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kItems = 10000;

struct Keys {
  std::vector<ravelin::String> texts;     // in adding order
  std::vector<ravelin::Variant> lookups;  // the same keys shuffled, as item() takes them
  std::vector<ravelin::String> lookupTexts;
};

const Keys& keys() {
  static const Keys prepared = [] {
    Keys k;
    for (int i = 0; i < kItems; ++i) {
      k.texts.push_back(ravelin::fromAscii("CUST-" + std::to_string(100000 + i * 7)));
    }
    k.lookupTexts = k.texts;
    std::shuffle(k.lookupTexts.begin(), k.lookupTexts.end(), std::mt19937(20261122));
    for (const auto& text : k.lookupTexts)
      k.lookups.emplace_back(text);
    return k;
  }();
  return prepared;
}

void BM_ClsCollectionAddAndLookUp(benchmark::State& state) {
  const Keys& k = keys();
  for (auto _ : state) {
    ravelin::clsCollection collection;
    for (int i = 0; i < kItems; ++i) {
      benchmark::DoNotOptimize(collection.add(ravelin::Variant(i), k.texts[i]));
    }
    for (const auto& key : k.lookups)
      benchmark::DoNotOptimize(collection.item(key));
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_ClsCollectionAddAndLookUp);

void BM_UnorderedMapAddAndLookUp(benchmark::State& state) {
  const Keys& k = keys();
  for (auto _ : state) {
    std::unordered_map<ravelin::String, ravelin::Variant> map;
    for (int i = 0; i < kItems; ++i) {
      benchmark::DoNotOptimize(map.emplace(k.texts[i], ravelin::Variant(i)).second);
    }
    for (const auto& key : k.lookupTexts) {
      const auto found = map.find(key);
      ravelin::Variant item = found == map.end() ? ravelin::Variant() : found->second;
      benchmark::DoNotOptimize(item);
    }
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_UnorderedMapAddAndLookUp);

}  // namespace

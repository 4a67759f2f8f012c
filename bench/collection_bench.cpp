// clsCollection against std::unordered_map doing the same work, both from prepared keys:
// - 10,000 adds under distinct text keys, then 10,000 lookups by key (in a different order);
// - removal by key of every item of a full collection, in adding order (from the front) or in
//   random order, with the keys as item() takes them (Variant) and as the map takes them (String);
// - removal by key from the front with a read of the first item after each removal (a queue),
//   against erasing from the map and finding the next key.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>
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
  std::vector<ravelin::Variant> inOrder;  // the keys in adding order, as remove() takes them
};

Keys prepareKeys(int count) {
  Keys k;
  for (int i = 0; i < count; ++i) {
    k.texts.push_back(ravelin::fromAscii("CUST-" + std::to_string(100000 + i * 7)));
  }
  k.lookupTexts = k.texts;
  std::shuffle(k.lookupTexts.begin(), k.lookupTexts.end(), std::mt19937(20261122));
  for (const auto& text : k.lookupTexts)
    k.lookups.emplace_back(text);
  for (const auto& text : k.texts)
    k.inOrder.emplace_back(text);
  return k;
}

const Keys& keys(int count = kItems) {
  static std::map<int, Keys> prepared;
  auto found = prepared.find(count);
  if (found == prepared.end()) found = prepared.emplace(count, prepareKeys(count)).first;
  return found->second;
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

// The removal benchmarks take the item count and the order: 0 from the front, 1 random.
enum RemovalOrder { kFront = 0, kRandom = 1 };

void removalArguments(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"items", "random"});
  for (int count : {10000, 160000}) {
    bench->Args({count, kFront});
    bench->Args({count, kRandom});
  }
  bench->Unit(benchmark::kMillisecond);
}

void BM_ClsCollectionRemoveByKey(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Keys& k = keys(count);
  const auto& order = state.range(1) == kRandom ? k.lookups : k.inOrder;
  for (auto _ : state) {
    state.PauseTiming();
    auto collection = std::make_unique<ravelin::clsCollection>();
    for (int i = 0; i < count; ++i)
      collection->add(ravelin::Variant(i), k.texts[i]);
    state.ResumeTiming();
    for (const auto& key : order)
      benchmark::DoNotOptimize(collection->remove(key));
    state.PauseTiming();
    collection.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_ClsCollectionRemoveByKey)->Apply(removalArguments);

void BM_UnorderedMapErase(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Keys& k = keys(count);
  const auto& order = state.range(1) == kRandom ? k.lookupTexts : k.texts;
  for (auto _ : state) {
    state.PauseTiming();
    auto map = std::make_unique<std::unordered_map<ravelin::String, ravelin::Variant>>();
    for (int i = 0; i < count; ++i)
      map->emplace(k.texts[i], ravelin::Variant(i));
    state.ResumeTiming();
    for (const auto& key : order)
      benchmark::DoNotOptimize(map->erase(key));
    state.PauseTiming();
    map.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_UnorderedMapErase)->Apply(removalArguments);

void queueArguments(benchmark::internal::Benchmark* bench) {
  bench->ArgName("items")->Arg(10000)->Arg(160000)->Unit(benchmark::kMillisecond);
}

void BM_ClsCollectionRemoveFirstAndReadNext(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Keys& k = keys(count);
  const ravelin::Variant first(1);
  for (auto _ : state) {
    state.PauseTiming();
    auto collection = std::make_unique<ravelin::clsCollection>();
    for (int i = 0; i < count; ++i)
      collection->add(ravelin::Variant(i), k.texts[i]);
    state.ResumeTiming();
    for (const auto& key : k.inOrder) {
      benchmark::DoNotOptimize(collection->remove(key));
      benchmark::DoNotOptimize(collection->item(first));
    }
    state.PauseTiming();
    collection.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_ClsCollectionRemoveFirstAndReadNext)->Apply(queueArguments);

void BM_UnorderedMapEraseAndFindNext(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Keys& k = keys(count);
  for (auto _ : state) {
    state.PauseTiming();
    auto map = std::make_unique<std::unordered_map<ravelin::String, ravelin::Variant>>();
    for (int i = 0; i < count; ++i)
      map->emplace(k.texts[i], ravelin::Variant(i));
    state.ResumeTiming();
    for (int i = 0; i < count; ++i) {
      benchmark::DoNotOptimize(map->erase(k.texts[i]));
      const auto found = i + 1 < count ? map->find(k.texts[i + 1]) : map->end();
      ravelin::Variant item = found == map->end() ? ravelin::Variant() : found->second;
      benchmark::DoNotOptimize(item);
    }
    state.PauseTiming();
    map.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_UnorderedMapEraseAndFindNext)->Apply(queueArguments);

}  // namespace

// Values whose release never recurses (makeDeferredShared, makeObject) against plain shared
// values doing the same work: making and letting go of a one-element array, of an empty object,
// and of a nest 1000 levels deep, which the plain values can still release by recursion.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <ravelin/frame/deferred_release.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/variant.hpp>
#include <utility>

namespace {

using ravelin::SafeArray;
using ravelin::VarType;

class Empty : public ravelin::Object {
 public:
  const ravelin::ClassInfo& classInfo() const override { std::abort(); }
};

constexpr int kDepth = 1000;

// The plain counterpart of a level of a nest of arrays: a one-element array and the level below.
struct PlainLevel {
  SafeArray array;
  std::shared_ptr<const PlainLevel> inner;
};

void BM_DeferredArray(benchmark::State& state) {
  for (auto _ : state) {
    auto array =
        ravelin::makeDeferredShared<const SafeArray>(SafeArray::vector(VarType::Variant, 0, 0));
    benchmark::DoNotOptimize(array.get());
  }
}
BENCHMARK(BM_DeferredArray);

void BM_PlainArray(benchmark::State& state) {
  for (auto _ : state) {
    auto array = std::make_shared<const SafeArray>(SafeArray::vector(VarType::Variant, 0, 0));
    benchmark::DoNotOptimize(array.get());
  }
}
BENCHMARK(BM_PlainArray);

void BM_DeferredObject(benchmark::State& state) {
  for (auto _ : state) {
    auto object = ravelin::makeObject<Empty>();
    benchmark::DoNotOptimize(object.get());
  }
}
BENCHMARK(BM_DeferredObject);

void BM_PlainObject(benchmark::State& state) {
  for (auto _ : state) {
    auto object = std::make_shared<Empty>();
    benchmark::DoNotOptimize(object.get());
  }
}
BENCHMARK(BM_PlainObject);

void BM_DeferredNest(benchmark::State& state) {
  for (auto _ : state) {
    ravelin::Variant nest;
    for (int i = 0; i < kDepth; ++i) {
      SafeArray level = SafeArray::vector(VarType::Variant, 0, 0);
      level.elements[0] = std::move(nest);
      nest = ravelin::Variant(std::move(level));
    }
    benchmark::DoNotOptimize(nest);
  }
  state.SetItemsProcessed(state.iterations() * kDepth);
}
BENCHMARK(BM_DeferredNest);

void BM_PlainNest(benchmark::State& state) {
  for (auto _ : state) {
    std::shared_ptr<const PlainLevel> nest;
    for (int i = 0; i < kDepth; ++i) {
      PlainLevel level{SafeArray::vector(VarType::Variant, 0, 0), std::move(nest)};
      nest = std::make_shared<const PlainLevel>(std::move(level));
    }
    benchmark::DoNotOptimize(nest.get());
  }
  state.SetItemsProcessed(state.iterations() * kDepth);
}
BENCHMARK(BM_PlainNest);

}  // namespace

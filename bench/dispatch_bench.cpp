// Late-bound calls against the same work called directly: reading an item of a clsArrayLong and
// adding to a clsArrayString by member name (as scripts and automation clients do), against the
// typed C++ calls.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <vector>

namespace {

using ravelin::CallArgument;
using ravelin::MemberKind;
using ravelin::Variant;

constexpr int16_t kItems = 1000;

std::shared_ptr<ravelin::clsArrayLong> filledLongArray() {
  auto array = std::make_shared<ravelin::clsArrayLong>();
  for (int32_t i = 0; i < kItems; ++i)
    array->add(i);
  return array;
}

void BM_DirectItem(benchmark::State& state) {
  auto array = filledLongArray();
  int16_t index = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(array->item(index));
    index = static_cast<int16_t>((index + 1) % kItems);
  }
}
BENCHMARK(BM_DirectItem);

void BM_DispatchItem(benchmark::State& state) {
  ravelin::ObjectRef array = filledLongArray();
  int16_t index = 0;
  for (auto _ : state) {
    CallArgument arguments[] = {CallArgument(Variant(index))};
    benchmark::DoNotOptimize(
        ravelin::callMember(array, u"Item", MemberKind::PropertyGet, arguments));
    index = static_cast<int16_t>((index + 1) % kItems);
  }
}
BENCHMARK(BM_DispatchItem);

// A method with a text argument, the shape of most of the library's calls from scripts.
void BM_DirectAddString(benchmark::State& state) {
  for (auto _ : state) {
    ravelin::clsArrayString array;
    for (int i = 0; i < kItems; ++i)
      benchmark::DoNotOptimize(array.add(u"price"));
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_DirectAddString);

void BM_DispatchAddString(benchmark::State& state) {
  for (auto _ : state) {
    ravelin::ObjectRef array = std::make_shared<ravelin::clsArrayString>();
    for (int i = 0; i < kItems; ++i) {
      CallArgument arguments[] = {CallArgument(Variant(u"price"))};
      benchmark::DoNotOptimize(ravelin::callMember(array, u"add", MemberKind::Method, arguments));
    }
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_DispatchAddString);

}  // namespace

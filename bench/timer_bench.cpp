// A 10 ms periodic TimerMM run for 5 seconds on the thread's event loop, its Timer events taken
// by a sink, against a plain loop of 10 ms nanosleep calls in the same run. Each reports how far
// the intervals between consecutive wake-ups stray from 10 ms: the median and the 99th
// percentile, in microseconds (counters median_us and p99_us).
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ravelin/frame/events.hpp>
#include <ravelin/system/timer_mm.hpp>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

constexpr auto kPeriod = 10ms;
constexpr auto kRun = 5s;

// The median and 99th percentile of |interval - 10 ms| over consecutive instants.
void reportDeviation(benchmark::State& state, const std::vector<Steady::time_point>& instants) {
  std::vector<double> deviations;
  for (std::size_t i = 1; i < instants.size(); ++i) {
    const std::chrono::duration<double, std::micro> interval = instants[i] - instants[i - 1];
    deviations.push_back(std::abs(interval.count() - 10'000.0));
  }
  if (deviations.empty()) return;
  std::sort(deviations.begin(), deviations.end());
  const auto at = [&](double fraction) {
    return deviations[static_cast<std::size_t>(fraction *
                                               static_cast<double>(deviations.size() - 1))];
  };
  state.counters["median_us"] = at(0.5);
  state.counters["p99_us"] = at(0.99);
  state.counters["max_us"] = deviations.back();
  state.counters["intervals"] = static_cast<double>(deviations.size());
}

class Stamps : public ravelin::EventSink {
 public:
  void onEvent(ravelin::StringView, std::span<ravelin::Variant>) override {
    instants.push_back(Steady::now());
  }
  std::vector<Steady::time_point> instants;
};

void BM_TimerMMPeriodic10ms(benchmark::State& state) {
  std::vector<Steady::time_point> instants;
  for (auto _ : state) {
    auto stamps = std::make_shared<Stamps>();
    stamps->instants.reserve(1024);
    auto timer = ravelin::makeObject<ravelin::TimerMM>();
    timer->Interval(static_cast<int32_t>(kPeriod.count()));
    timer->EventType(ravelin::etPeriodic);
    timer->connectSink(stamps);
    timer->Enabled(true);
    stamps->instants.push_back(Steady::now());
    ravelin::EventQueue::current()->waitAndRun(
        std::chrono::duration_cast<std::chrono::milliseconds>(kRun));
    timer->Enabled(false);
    instants = std::move(stamps->instants);
  }
  reportDeviation(state, instants);
}
BENCHMARK(BM_TimerMMPeriodic10ms)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_NanosleepLoop10ms(benchmark::State& state) {
  std::vector<Steady::time_point> instants;
  for (auto _ : state) {
    instants.clear();
    instants.reserve(1024);
    const Steady::time_point end = Steady::now() + kRun;
    instants.push_back(Steady::now());
    while (instants.back() < end) {
      const timespec period{0, std::chrono::nanoseconds(kPeriod).count()};
      nanosleep(&period, nullptr);
      instants.push_back(Steady::now());
    }
  }
  reportDeviation(state, instants);
}
BENCHMARK(BM_NanosleepLoop10ms)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

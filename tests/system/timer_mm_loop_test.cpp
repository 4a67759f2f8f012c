// TimerMM on the system's own event loop: ticks reach the thread that started the timer and no
// other, a release from another thread tears down, and timers churn on several threads at once
// without a leak. These cases also run under the thread sanitizer (tools/dev tsan).
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <optional>
#include <ravelin/frame/events.hpp>
#include <ravelin/system/internal/timer_registry.hpp>
#include <ravelin/system/timer_mm.hpp>
#include <thread>
#include <vector>

namespace ravelin {
namespace {

using namespace std::chrono_literals;

// Counts Timer events and notes whether each came on the expected thread.
class ThreadCheckingSink : public EventSink {
 public:
  explicit ThreadCheckingSink(std::thread::id owner) : owner_(owner) {}
  void onEvent(StringView, std::span<Variant> arguments) override {
    if (std::this_thread::get_id() != owner_) ++foreign;
    if (arguments[0].asLong() < 0) ++negative;
    ++count;
  }
  int count = 0;
  int foreign = 0;
  int negative = 0;

 private:
  std::thread::id owner_;
};

// Runs the calling thread's loop in short waits until `done`.
template <typename Done>
void pumpUntil(Done done) {
  auto queue = EventQueue::current();
  while (!done())
    queue->waitAndRun(1ms);
}

TEST(TimerMMLoop, TicksReachTheStartingThreadOnly) {
  constexpr int kThreads = 3;
  std::vector<std::thread> threads;
  std::atomic<int> foreign{0};
  std::atomic<int> negative{0};
  std::atomic<int> finished{0};
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      auto sink = std::make_shared<ThreadCheckingSink>(std::this_thread::get_id());
      auto timer = makeObject<TimerMM>();
      timer->Interval(1);
      timer->EventType(etPeriodic);
      timer->connectSink(sink);
      timer->Enabled(true);
      pumpUntil([&] { return sink->count >= 5; });
      timer.reset();
      foreign += sink->foreign;
      negative += sink->negative;
      if (timer_registry::size() == std::nullopt) ++finished;
    });
  }
  for (auto& thread : threads)
    thread.join();
  EXPECT_EQ(foreign, 0);
  EXPECT_EQ(negative, 0);
  EXPECT_EQ(finished, kThreads);
  // Nothing was posted to this thread's loop.
  EXPECT_EQ(EventQueue::current()->runPending(), 0u);
}

// The last release on another thread stops the timer at once; the owner's registry entry goes
// when the owner next runs its loop.
TEST(TimerMMLoop, ReleaseOnAnotherThreadTearsDown) {
  auto sink = std::make_shared<ThreadCheckingSink>(std::this_thread::get_id());
  auto timer = makeObject<TimerMM>();
  timer->Interval(1);
  timer->EventType(etPeriodic);
  timer->connectSink(sink);
  timer->Enabled(true);
  pumpUntil([&] { return sink->count >= 1; });
  std::thread([moved = std::move(timer)]() mutable { moved.reset(); }).join();
  EXPECT_EQ(timer_registry::size(), 1u);
  const int before = sink->count;
  EventQueue::current()->waitAndRun(5ms);
  EXPECT_EQ(sink->count, before);
  EXPECT_EQ(timer_registry::size(), std::nullopt);
}

// The process's open descriptors where the loop works with descriptors and the system lists
// them (Linux), else nothing.
std::optional<std::size_t> openDescriptors() {
  if (EventQueue::current()->loop()->readyDescriptor() < 0) return std::nullopt;
  std::error_code error;
  std::filesystem::directory_iterator entries("/proc/self/fd", error);
  if (error) return std::nullopt;
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : entries)
    ++count;
  return count;
}

// 10,000 timers created, started, run a little, stopped or released, on four threads at once.
TEST(TimerMMLoop, ChurnOnSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kCycles = 2500;
  // The loops of the threads close theirs when the threads end; the timers must keep none.
  const std::optional<std::size_t> before = openDescriptors();
  std::atomic<int> foreign{0};
  std::atomic<int> leftOver{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      auto sink = std::make_shared<ThreadCheckingSink>(std::this_thread::get_id());
      auto queue = EventQueue::current();
      for (int i = 0; i < kCycles; ++i) {
        auto timer = makeObject<TimerMM>();
        timer->Interval(1 + (i + t) % 3);
        timer->EventType(i % 2 == 0 ? etPeriodic : etOneShot);
        timer->connectSink(sink);
        timer->Enabled(true);
        if (i % 50 == 0) queue->waitAndRun(2ms);
        queue->runPending();
        // Half are switched off, half released running.
        if (i % 4 < 2) timer->Enabled(false);
      }
      queue->runPending();
      foreign += sink->foreign;
      if (timer_registry::size() != std::nullopt) ++leftOver;
    });
  }
  for (auto& thread : threads)
    thread.join();
  EXPECT_EQ(foreign, 0);
  EXPECT_EQ(leftOver, 0);
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace ravelin

// The same cases against the clock-driven loop on the simulated clock and against the loop of
// the system running the test. Waits on the native loop are real but bounded by what the case
// needs (a few milliseconds); no case bounds how long the machine takes.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <ravelin/platform/event_loop.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/platform/fake/event_loop_fake.hpp>
#include <string>
#include <thread>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <poll.h>
#endif

namespace ravelin::platform {
namespace {

using namespace std::chrono_literals;

struct Implementation {
  const char* name;
  bool simulated;
};

class EventLoopContractTest : public testing::TestWithParam<Implementation> {
 protected:
  void SetUp() override {
    if (GetParam().simulated) {
      clock_.emplace();
      loops_.emplace();
    }
    loop_ = currentEventLoop();
  }
  void TearDown() override {
    loop_.reset();
    loops_.reset();
    clock_.reset();
  }

  // Whether expiries that fell due while the thread slept are all there when it wakes. The
  // multimedia timer of Windows posts each one from its own thread as that thread gets to it,
  // so on a busy machine some may still be on their way.
  bool expiriesPileUp() const {
#if defined(_WIN32)
    return GetParam().simulated;
#else
    return true;
#endif
  }

  // Lets time pass without running the loop.
  void letTimePass(std::chrono::milliseconds duration) {
    if (clock_) {
      clock_->fake().advance(duration);
    } else {
      std::this_thread::sleep_for(duration);
    }
  }
  // Runs the loop until `done`, in short waits.
  void runUntil(const std::function<bool()>& done) {
    while (!done())
      loop_->runUntil(clock()->now() + 1ms);
  }

  std::optional<ScopedFake<SimulatedClock>> clock_;
  std::optional<ScopedFake<ClockEventLoops>> loops_;
  std::shared_ptr<EventLoop> loop_;
};

TEST_P(EventLoopContractTest, PostsFromOtherThreadsRunOnTheLoopThreadInOrder) {
  constexpr int kPerThread = 200;
  const auto owner = std::this_thread::get_id();
  std::vector<std::vector<int>> seen(3);
  std::atomic<int> ran{0};
  bool allOnOwner = true;
  std::vector<std::thread> posters;
  for (int t = 0; t < 3; ++t) {
    posters.emplace_back([&, t, loop = loop_] {
      for (int i = 0; i < kPerThread; ++i) {
        loop->post([&, t, i] {
          allOnOwner = allOnOwner && std::this_thread::get_id() == owner;
          seen[t].push_back(i);
          ++ran;
        });
      }
    });
  }
  runUntil([&] { return ran == 3 * kPerThread; });
  for (auto& poster : posters)
    poster.join();
  EXPECT_TRUE(allOnOwner);
  std::vector<int> expected(kPerThread);
  for (int i = 0; i < kPerThread; ++i)
    expected[i] = i;
  for (const auto& one : seen)
    EXPECT_EQ(one, expected);
}

TEST_P(EventLoopContractTest, RunPendingLeavesWhatWorkPostsForLater) {
  std::vector<int> ran;
  loop_->post([&] {
    ran.push_back(1);
    loop_->post([&] { ran.push_back(2); });
  });
  EXPECT_EQ(loop_->runPending(), 1u);
  EXPECT_EQ(ran, (std::vector<int>{1}));
  EXPECT_EQ(loop_->runPending(), 1u);
  EXPECT_EQ(loop_->runPending(), 0u);
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

// Each expiry is one tick, however late the loop runs; a one-shot timer fires once.
TEST_P(EventLoopContractTest, EveryExpiryIsOneTick) {
  if (!expiriesPileUp()) GTEST_SKIP() << "expiries arrive one by one";
  int periodic = 0;
  int oneShot = 0;
  const auto start = clock()->now();
  const auto p = loop_->startTimer(2ms, 0ms, true, [&] { ++periodic; });
  const auto o = loop_->startTimer(5ms, 0ms, false, [&] { ++oneShot; });
  ASSERT_NE(p, 0u);
  ASSERT_NE(o, 0u);
  ASSERT_NE(p, o);
  loop_->runUntil(start + 21ms);
  const auto elapsed = clock()->now() - start;
  EXPECT_EQ(oneShot, 1);
  EXPECT_GE(periodic, 10);
  EXPECT_LE(periodic, elapsed / 2ms);
  loop_->stopTimer(p);
  loop_->stopTimer(o);
  const int before = periodic;
  letTimePass(6ms);
  loop_->runPending();
  EXPECT_EQ(periodic, before);
  EXPECT_EQ(oneShot, 1);
  // A zero interval is refused.
  EXPECT_EQ(loop_->startTimer(0ms, 0ms, true, [] {}), 0u);
}

// Expiries that piled up come in the order they fell due, whatever timer they belong to.
TEST_P(EventLoopContractTest, PiledUpTicksComeInTheOrderTheyFellDue) {
  if (!expiriesPileUp()) GTEST_SKIP() << "expiries arrive one by one";
  std::string order;
  const auto slow = loop_->startTimer(30ms, 0ms, false, [&] { order += 'S'; });
  const auto fast = loop_->startTimer(10ms, 0ms, true, [&] { order += 'F'; });
  const auto middle = loop_->startTimer(25ms, 0ms, false, [&] { order += 'M'; });
  letTimePass(45ms);
  loop_->runPending();
  // F at 10, 20, then M at 25, S at 30, F at 30 after it (started later), F at 40, and on
  // the native loop more F if the thread slept longer than asked.
  EXPECT_EQ(order.substr(0, 6), "FFMSFF");
  EXPECT_EQ(order.find_first_not_of('F', 6), std::string::npos) << order;
  if (GetParam().simulated) {
    EXPECT_EQ(order, "FFMSFF");
  }
  for (auto id : {slow, fast, middle})
    loop_->stopTimer(id);
}

// A stopped timer's queued ticks do not run, whether it was stopped by a tick before them or
// from another thread.
TEST_P(EventLoopContractTest, AStoppedTimerDeliversNothingMore) {
  if (!expiriesPileUp()) GTEST_SKIP() << "expiries arrive one by one";
  std::string order;
  EventLoop::TimerId second = 0;
  const auto first = loop_->startTimer(5ms, 0ms, false, [&] {
    order += '1';
    loop_->stopTimer(second);
  });
  second = loop_->startTimer(6ms, 0ms, true, [&] { order += '2'; });
  const auto third = loop_->startTimer(7ms, 0ms, true, [&] { order += '3'; });
  letTimePass(10ms);
  std::thread([&] { loop_->stopTimer(third); }).join();
  loop_->runPending();
  EXPECT_EQ(order, "1");
  letTimePass(10ms);
  loop_->runPending();
  EXPECT_EQ(order, "1");
  loop_->stopTimer(first);
  loop_->stopTimer(first);  // again: ignored
}

TEST_P(EventLoopContractTest, TickMayStopItsOwnTimer) {
  int ticks = 0;
  EventLoop::TimerId id = 0;
  id = loop_->startTimer(1ms, 0ms, true, [&] {
    if (++ticks == 2) loop_->stopTimer(id);
  });
  runUntil([&] { return ticks >= 2; });
  letTimePass(5ms);
  loop_->runPending();
  EXPECT_EQ(ticks, 2);
}

#if !defined(_WIN32)
bool readable(int descriptor, int timeoutMs) {
  pollfd ready{descriptor, POLLIN, 0};
  return poll(&ready, 1, timeoutMs) == 1;
}

// A client with its own loop polls the descriptor and runs what is ready.
TEST(NativeEventLoop, DescriptorIsReadableWhileWorkIsReady) {
  auto loop = EventLoops::makeNative()->make();
  const int descriptor = loop->readyDescriptor();
  ASSERT_GE(descriptor, 0);
  EXPECT_FALSE(readable(descriptor, 0));
  bool ran = false;
  std::thread([&] { loop->post([&] { ran = true; }); }).join();
  EXPECT_TRUE(readable(descriptor, 0));
  EXPECT_EQ(loop->runPending(), 1u);
  EXPECT_TRUE(ran);
  EXPECT_FALSE(readable(descriptor, 0));

  int ticks = 0;
  const auto id = loop->startTimer(2ms, 0ms, false, [&] { ++ticks; });
  EXPECT_TRUE(readable(descriptor, -1));  // waits for the expiry
  EXPECT_EQ(loop->runPending(), 1u);
  EXPECT_EQ(ticks, 1);
  EXPECT_FALSE(readable(descriptor, 0));
  loop->stopTimer(id);
}
#endif

#if defined(_WIN32)
// A client whose loop is a plain GetMessage/DispatchMessage loop (a program with windows, a
// Basic client of the automation server) gets ticks and posted work on its own thread.
TEST(NativeEventLoop, APlainMessageLoopDeliversTicksAndPostedWork) {
  auto loop = currentEventLoop();
  const DWORD owner = GetCurrentThreadId();
  int ticks = 0;
  bool ticksOnOwner = true;
  bool postedOnOwner = false;
  EventLoop::TimerId id = 0;
  id = loop->startTimer(5ms, 0ms, true, [&] {
    ticksOnOwner = ticksOnOwner && GetCurrentThreadId() == owner;
    if (++ticks == 3) {
      loop->stopTimer(id);
      PostQuitMessage(0);
    }
  });
  ASSERT_NE(id, 0u);
  std::thread([&] { loop->post([&] { postedOnOwner = GetCurrentThreadId() == owner; }); }).join();
  // Guards against a loop that never delivers: a thread timer ends the wait.
  const UINT_PTR guard = SetTimer(nullptr, 0, 60000, nullptr);
  bool guardFired = false;
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (message.message == WM_TIMER && message.hwnd == nullptr) {
      guardFired = true;
      break;
    }
    DispatchMessageW(&message);
  }
  KillTimer(nullptr, guard);
  loop->stopTimer(id);
  EXPECT_FALSE(guardFired);
  EXPECT_EQ(ticks, 3);
  EXPECT_TRUE(ticksOnOwner);
  EXPECT_TRUE(postedOnOwner);
}
#endif

TEST(CurrentEventLoop, OnePerThreadAndNewWhenTheAreaChanges) {
  auto mine = currentEventLoop();
  EXPECT_EQ(currentEventLoop(), mine);
  std::shared_ptr<EventLoop> theirs;
  std::thread([&] { theirs = currentEventLoop(); }).join();
  EXPECT_NE(theirs, mine);
  {
    ScopedFake<ClockEventLoops> loops;
    EXPECT_NE(currentEventLoop(), mine);
    EXPECT_NE(dynamic_cast<ClockEventLoop*>(currentEventLoop().get()), nullptr);
  }
  EXPECT_EQ(dynamic_cast<ClockEventLoop*>(currentEventLoop().get()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Implementations, EventLoopContractTest,
                         testing::Values(Implementation{"simulated", true},
                                         Implementation{"native", false}),
                         [](const testing::TestParamInfo<Implementation>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
}  // namespace ravelin::platform

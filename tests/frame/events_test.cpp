#include <gtest/gtest.h>

#include <ravelin/frame/events.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/platform/fake/event_loop_fake.hpp>
#include <string>
#include <thread>
#include <vector>

namespace ravelin {
namespace {

using namespace std::chrono_literals;

// An object that raises "Tick" with a counter it passes by reference.
class Ticker : public PublicClass<Ticker>, public EventSource {
 public:
  static constexpr StringView kClassName = u"Ticker";
  Variant tick(int32_t value) {
    Variant arguments[] = {Variant(value)};
    raiseEvent(u"Tick", arguments);
    return arguments[0];
  }
};

// Records each event as "name:value" and adds one to the first argument.
class RecordingSink : public EventSink {
 public:
  explicit RecordingSink(std::vector<std::string>* log, std::string tag = "")
      : log_(log), tag_(std::move(tag)) {}
  void onEvent(StringView eventName, std::span<Variant> arguments) override {
    log_->push_back(tag_ + toUtf8(eventName) + ":" + std::to_string(arguments[0].asLong()));
    arguments[0] = Variant(arguments[0].asLong() + 1);
    if (onCall) onCall();
  }
  std::function<void()> onCall;

 private:
  std::vector<std::string>* log_;
  std::string tag_;
};

TEST(EventSource, DeliversToLiveSinksInOrder) {
  std::vector<std::string> log;
  Ticker ticker;
  auto first = std::make_shared<RecordingSink>(&log, "a.");
  auto second = std::make_shared<RecordingSink>(&log, "b.");
  uint32_t firstCookie = ticker.connectSink(first);
  ticker.connectSink(second);

  // Each sink sees the value the previous one left.
  EXPECT_EQ(ticker.tick(1).asLong(), 3);
  EXPECT_EQ(log, (std::vector<std::string>{"a.Tick:1", "b.Tick:2"}));

  EXPECT_TRUE(ticker.disconnectSink(firstCookie));
  EXPECT_FALSE(ticker.disconnectSink(firstCookie));
  log.clear();
  ticker.tick(5);
  EXPECT_EQ(log, (std::vector<std::string>{"b.Tick:5"}));

  // The source does not keep a sink alive.
  second.reset();
  EXPECT_EQ(ticker.sinkCount(), 0u);
  log.clear();
  EXPECT_EQ(ticker.tick(7).asLong(), 7);
  EXPECT_TRUE(log.empty());
}

TEST(EventSource, SinkDisconnectingDuringDeliveryIsSafe) {
  std::vector<std::string> log;
  Ticker ticker;
  auto self = std::make_shared<RecordingSink>(&log, "self.");
  auto other = std::make_shared<RecordingSink>(&log, "other.");
  uint32_t selfCookie = ticker.connectSink(self);
  ticker.connectSink(other);
  std::weak_ptr<RecordingSink> watch = self;
  self->onCall = [&] {
    ticker.disconnectSink(selfCookie);
    self.reset();  // the last outside reference goes while the sink runs
  };
  ticker.tick(0);
  ticker.tick(10);
  EXPECT_EQ(log, (std::vector<std::string>{"self.Tick:0", "other.Tick:1", "other.Tick:10"}));
  EXPECT_TRUE(watch.expired());
}

TEST(EventQueue, RunPendingLeavesEventsPostedByEventsForLater) {
  EventQueue queue;
  std::vector<int> ran;
  queue.post([&] {
    ran.push_back(1);
    queue.post([&] { ran.push_back(2); });
  });
  EXPECT_EQ(queue.runPending(), 1u);
  EXPECT_EQ(ran, (std::vector<int>{1}));
  EXPECT_EQ(queue.runPending(), 1u);
  EXPECT_EQ(queue.runPending(), 0u);
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

// A timer on another thread: its callback only posts; the tick is raised on the queue's thread.
TEST(EventQueue, ScheduledPostsRunDuringTheWaitUpToTheDeadline) {
  platform::ScopedFake<platform::SimulatedClock> simulated;
  platform::ScopedFake<platform::ClockEventLoops> loops;
  platform::SimulatedClock& clock = simulated.fake();
  EventQueue queue;
  Ticker ticker;
  std::vector<std::string> log;
  auto sink = std::make_shared<RecordingSink>(&log);
  ticker.connectSink(sink);
  std::vector<std::chrono::milliseconds> seenAt;
  const auto start = clock.now();
  for (auto at : {30ms, 60ms, 100ms, 101ms}) {
    clock.schedule(start + at, [&, at] {
      queue.post([&, at] {
        seenAt.push_back(
            std::chrono::duration_cast<std::chrono::milliseconds>(clock.now() - start));
        ticker.tick(static_cast<int32_t>(at.count()));
      });
    });
  }
  queue.waitAndRun(100ms);
  EXPECT_EQ(log, (std::vector<std::string>{"Tick:30", "Tick:60", "Tick:100"}));
  EXPECT_EQ(seenAt, (std::vector<std::chrono::milliseconds>{30ms, 60ms, 100ms}));
  EXPECT_EQ(clock.now() - start, 100ms);

  // The tick at 101 ms comes with the next wait; a wait with nothing due just moves time on.
  queue.waitAndRun(5ms);
  EXPECT_EQ(log.back(), "Tick:101");
  EXPECT_EQ(clock.now() - start, 105ms);
}

TEST(EventQueue, PostsFromAnotherThreadRunOnTheOwningThread) {
  platform::ScopedFake<platform::SimulatedClock> simulated;
  platform::ScopedFake<platform::ClockEventLoops> loops;
  platform::SimulatedClock& clock = simulated.fake();
  EventQueue queue;
  const auto owner = std::this_thread::get_id();
  std::vector<bool> onOwner;
  clock.expectPosts(2);
  std::thread poster([&] {
    for (int i = 0; i < 2; ++i) {
      queue.post([&] {
        onOwner.push_back(std::this_thread::get_id() == owner);
        clock.expectPosts(-1);
      });
    }
  });
  // Blocks until both posts ran, then jumps to the deadline.
  queue.waitAndRun(1000ms);
  poster.join();
  EXPECT_EQ(onOwner, (std::vector<bool>{true, true}));
}

TEST(EventQueue, EachThreadHasItsOwnQueue) {
  const platform::EventLoop* mine = EventQueue::current()->loop().get();
  const platform::EventLoop* theirs = nullptr;
  std::thread other([&] { theirs = EventQueue::current()->loop().get(); });
  other.join();
  EXPECT_EQ(EventQueue::current()->loop().get(), mine);
  EXPECT_NE(mine, theirs);
}

}  // namespace
}  // namespace ravelin

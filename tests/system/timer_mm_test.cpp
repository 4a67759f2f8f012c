// TimerMM's state machine, validation and measured intervals, on the simulated clock and the
// clock-driven event loop: every tick falls at an exact simulated instant and nothing sleeps.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/platform/fake/event_loop_fake.hpp>
#include <ravelin/system/internal/timer_registry.hpp>
#include <ravelin/system/timer_mm.hpp>
#include <string>
#include <system_error>
#include <vector>

namespace ravelin {
namespace {

using namespace std::chrono_literals;

// Records the lMilliseconds of each Timer event and runs an optional action after each.
class TimerLog : public EventSink {
 public:
  void onEvent(StringView eventName, std::span<Variant> arguments) override {
    EXPECT_EQ(String(eventName), u"Timer");
    values.push_back(arguments[0].asLong());
    if (after) after(values.size());
  }
  std::vector<int32_t> values;
  std::function<void(std::size_t count)> after;
};

class TimerMMTest : public testing::Test {
 protected:
  // A timer with a log connected.
  std::shared_ptr<TimerMM> makeTimer(int32_t interval, EEventTypes type,
                                     const std::shared_ptr<TimerLog>& log) {
    auto timer = makeObject<TimerMM>();
    timer->Interval(interval);
    timer->EventType(type);
    timer->connectSink(log);
    return timer;
  }
  // Runs the thread's loop for that much simulated time.
  void run(std::chrono::milliseconds duration) {
    platform::currentEventLoop()->runUntil(clock().now() + duration);
  }
  platform::SimulatedClock& clock() { return simulated_.fake(); }
  platform::ClockEventLoop& loop() {
    return static_cast<platform::ClockEventLoop&>(*platform::currentEventLoop());
  }

  platform::ScopedFake<platform::SimulatedClock> simulated_;
  platform::ScopedFake<platform::ClockEventLoops> loops_;
};

struct Fields {
  bool enabled;
  int32_t interval;
  int32_t resolution;
  int32_t eventType;
  bool operator==(const Fields&) const = default;
};

Fields fieldsOf(const TimerMM& timer) {
  return {timer.Enabled(), timer.Interval(), timer.Resolution(), timer.EventType()};
}

TEST_F(TimerMMTest, ValidationRaisesTheExactErrorAndChangesNothing) {
  struct Row {
    const char* name;
    std::function<void(TimerMM&)> prepare;
    std::function<void(TimerMM&)> action;
    int32_t number;  // 0: accepted
    String source;
    String description;
    Fields after;  // the fields once the action ran (or failed)
  };
  const String interval = u"Interval property must be positive";
  const String resolution = u"Resolution property must be non-negative";
  const auto none = [](TimerMM&) {};
  const std::vector<Row> rows = {
      {"a new timer", none, none, 0, u"", u"", {false, 0, 0, etOneShot}},
      {"enabling a new timer",
       none,
       [](TimerMM& t) { t.Enabled(true); },
       380,
       u"CTimerMM::Enabled",
       interval,
       {false, 0, 0, etOneShot}},
      {"disabling a new timer is no change",
       none,
       [](TimerMM& t) { t.Enabled(false); },
       0,
       u"",
       u"",
       {false, 0, 0, etOneShot}},
      {"interval 0",
       [](TimerMM& t) { t.Interval(7); },
       [](TimerMM& t) { t.Interval(0); },
       380,
       u"CTimerMM::Interval",
       interval,
       {false, 7, 0, etOneShot}},
      {"interval -5",
       [](TimerMM& t) { t.Interval(7); },
       [](TimerMM& t) { t.Interval(-5); },
       380,
       u"CTimerMM::Interval",
       interval,
       {false, 7, 0, etOneShot}},
      {"interval of a running timer",
       [](TimerMM& t) {
         t.Interval(7);
         t.Enabled(true);
       },
       [](TimerMM& t) { t.Interval(std::numeric_limits<int32_t>::min()); },
       380,
       u"CTimerMM::Interval",
       interval,
       {true, 7, 0, etOneShot}},
      {"interval 1",
       none,
       [](TimerMM& t) { t.Interval(1); },
       0,
       u"",
       u"",
       {false, 1, 0, etOneShot}},
      {"resolution -1",
       [](TimerMM& t) { t.Resolution(3); },
       [](TimerMM& t) { t.Resolution(-1); },
       380,
       u"CTimerMM::Resolution",
       resolution,
       {false, 0, 3, etOneShot}},
      {"resolution 0",
       [](TimerMM& t) { t.Resolution(3); },
       [](TimerMM& t) { t.Resolution(0); },
       0,
       u"",
       u"",
       {false, 0, 0, etOneShot}},
      {"any event type is kept",
       none,
       [](TimerMM& t) { t.EventType(static_cast<EEventTypes>(-9)); },
       0,
       u"",
       u"",
       {false, 0, 0, -9}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    auto timer = makeObject<TimerMM>();
    row.prepare(*timer);
    int32_t number = 0;
    try {
      row.action(*timer);
    } catch (const AutomationError& error) {
      number = error.number();
      EXPECT_EQ(error.source(), row.source);
      EXPECT_EQ(error.description(), row.description);
    }
    EXPECT_EQ(number, row.number);
    EXPECT_EQ(fieldsOf(*timer), row.after);
  }
}

// The reported interval runs from the start, or from the return of the previous handler, to
// the tick; ticks that fell due during a handler follow one another at once.
TEST_F(TimerMMTest, ReportedIntervalsExcludeTheTimeSpentInHandlers) {
  struct Row {
    const char* name;
    EEventTypes type;
    int32_t interval;
    std::vector<std::chrono::milliseconds> handlerCost;  // by tick, none past the end
    std::chrono::milliseconds runFor;
    std::vector<int32_t> expected;
  };
  const std::vector<Row> rows = {
      {"periodic, instant handlers", etPeriodic, 10, {}, 35ms, {10, 10, 10}},
      {"periodic, 3 ms handlers", etPeriodic, 10, {3ms, 3ms, 3ms}, 35ms, {10, 7, 7}},
      {"a slow handler lets two ticks queue", etPeriodic, 10, {25ms}, 40ms, {10, 0, 0, 5}},
      {"one-shot fires once", etOneShot, 10, {}, 100ms, {10}},
      {"one-shot, long interval", etOneShot, 86'400'000, {}, 86'400'000ms, {86'400'000}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    auto log = std::make_shared<TimerLog>();
    log->after = [&](std::size_t count) {
      if (count <= row.handlerCost.size()) clock().advance(row.handlerCost[count - 1]);
    };
    auto timer = makeTimer(row.interval, row.type, log);
    timer->Enabled(true);
    run(row.runFor);
    EXPECT_EQ(log->values, row.expected);
    // A one-shot timer stays enabled after it fired.
    EXPECT_TRUE(timer->Enabled());
  }
}

// The 32-bit millisecond clock: its wrap-around at 2^32 is harmless, but a difference beyond
// the range of a Long, across 2^31, is error 6 and raises no event.
TEST_F(TimerMMTest, ElapsedTimeIsASigned32BitDifference) {
  struct Row {
    std::chrono::milliseconds startAt;
    int32_t expectedNumber;
    std::vector<int32_t> expected;
  };
  const std::vector<Row> rows = {
      {0ms, 0, {10}},
      {2'147'483'637ms, 0, {10}},                  // 2^31 - 11: the tick falls on 2^31 - 1
      {2'147'483'643ms, vb_error::kOverflow, {}},  // 2^31 - 5: the tick falls past 2^31
      {4'294'967'291ms, 0, {10}},                  // 2^32 - 5: the counter wraps meanwhile
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.startAt.count());
    clock().advance(row.startAt - (clock().now() - platform::Clock::TimePoint()));
    auto log = std::make_shared<TimerLog>();
    auto timer = makeTimer(10, etOneShot, log);
    timer->Enabled(true);
    int32_t number = 0;
    try {
      run(20ms);
    } catch (const AutomationError& error) {
      number = error.number();
    }
    EXPECT_EQ(number, row.expectedNumber);
    EXPECT_EQ(log->values, row.expected);
  }
}

TEST_F(TimerMMTest, SwitchingOnAndOff) {
  auto log = std::make_shared<TimerLog>();
  auto timer = makeTimer(10, etPeriodic, log);

  // Switching on twice starts one timer.
  timer->Enabled(true);
  timer->Enabled(true);
  EXPECT_EQ(loop().timerCount(), 1u);
  run(100ms);
  EXPECT_EQ(log->values.size(), 10u);

  // A new interval waits for the next start.
  timer->Interval(25);
  run(30ms);
  EXPECT_EQ(log->values.size(), 13u);
  timer->Enabled(false);
  EXPECT_EQ(loop().timerCount(), 0u);
  EXPECT_EQ(timer_registry::size(), std::nullopt);
  run(100ms);
  EXPECT_EQ(log->values.size(), 13u);
  timer->Enabled(true);
  run(50ms);
  EXPECT_EQ(log->values,
            (std::vector<int32_t>{10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 25, 25}));

  // A fired one-shot timer starts again only after switching it off.
  timer->Enabled(false);
  timer->EventType(etOneShot);
  timer->Interval(5);
  timer->Enabled(true);
  run(20ms);
  timer->Enabled(true);
  run(20ms);
  EXPECT_EQ(log->values.size(), 16u);
  timer->Enabled(false);
  timer->Enabled(true);
  run(20ms);
  EXPECT_EQ(log->values.size(), 17u);
}

TEST_F(TimerMMTest, TwoTimersOnOneThreadHaveTwoEntries) {
  auto fastLog = std::make_shared<TimerLog>();
  auto slowLog = std::make_shared<TimerLog>();
  auto fast = makeTimer(10, etPeriodic, fastLog);
  auto slow = makeTimer(30, etPeriodic, slowLog);
  fast->Enabled(true);
  slow->Enabled(true);
  EXPECT_EQ(timer_registry::size(), 2u);
  run(60ms);
  EXPECT_EQ(fastLog->values.size(), 6u);
  EXPECT_EQ(slowLog->values, (std::vector<int32_t>{30, 30}));

  fast->Enabled(false);
  EXPECT_EQ(timer_registry::size(), 1u);
  run(60ms);
  EXPECT_EQ(fastLog->values.size(), 6u);
  EXPECT_EQ(slowLog->values.size(), 4u);

  slow->Enabled(false);
  EXPECT_EQ(timer_registry::size(), std::nullopt);
}

// The registry does not keep a timer alive: the client's last release stops it.
TEST_F(TimerMMTest, ReleasingARunningTimerTearsItDown) {
  auto log = std::make_shared<TimerLog>();
  auto timer = makeTimer(10, etPeriodic, log);
  timer->Enabled(true);
  std::weak_ptr<TimerMM> watch = timer;
  timer.reset();
  EXPECT_TRUE(watch.expired());
  EXPECT_EQ(timer_registry::size(), std::nullopt);
  EXPECT_EQ(loop().timerCount(), 0u);
  run(50ms);
  EXPECT_TRUE(log->values.empty());
}

// Two ticks fall due together; the first handler releases the other timer, whose tick is
// already queued: it raises nothing, then or later.
TEST_F(TimerMMTest, TimerReleasedWhileItsTickIsQueuedRaisesNothing) {
  auto firstLog = std::make_shared<TimerLog>();
  auto secondLog = std::make_shared<TimerLog>();
  auto first = makeTimer(10, etPeriodic, firstLog);
  auto second = makeTimer(10, etPeriodic, secondLog);
  first->Enabled(true);
  second->Enabled(true);
  firstLog->after = [&](std::size_t) { second.reset(); };
  clock().advance(10ms);
  run(30ms);
  EXPECT_EQ(firstLog->values, (std::vector<int32_t>{10, 10, 10, 10}));
  EXPECT_TRUE(secondLog->values.empty());
  EXPECT_EQ(timer_registry::size(), 1u);
}

// A handler that switches its own timer off mid-run.
TEST_F(TimerMMTest, HandlerMaySwitchItsOwnTimerOff) {
  auto log = std::make_shared<TimerLog>();
  auto timer = makeTimer(10, etPeriodic, log);
  log->after = [&](std::size_t count) {
    if (count == 3) timer->Enabled(false);
  };
  timer->Enabled(true);
  clock().advance(55ms);  // five ticks due at once
  run(50ms);
  EXPECT_EQ(log->values, (std::vector<int32_t>{55, 0, 0}));
  EXPECT_FALSE(timer->Enabled());
}

class NoLoops : public platform::EventLoops {
 public:
  std::unique_ptr<platform::EventLoop> make() override {
    throw std::system_error(std::make_error_code(std::errc::too_many_files_open));
  }
};

TEST_F(TimerMMTest, NoLoopForTheThreadRaises51) {
  platform::ScopedFake<NoLoops> none;
  auto timer = makeObject<TimerMM>();
  timer->Interval(10);
  try {
    timer->Enabled(true);
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), vb_error::kInternalError);
    EXPECT_EQ(error.source(), u"MTimerMM::fRegister");
    EXPECT_EQ(error.description(), u"Unable to create timer control window");
  }
  // The value was stored before registering, as the original stored it; nothing was registered.
  EXPECT_TRUE(timer->Enabled());
  EXPECT_EQ(timer_registry::size(), std::nullopt);
  timer->Enabled(false);
  EXPECT_EQ(timer_registry::size(), std::nullopt);
}

}  // namespace
}  // namespace ravelin

// The same cases against the simulated clock and the clock of the system running the test, then
// the native clock against the system's own idea of local time. No case waits for more than a
// few milliseconds, and none bounds how long the machine takes.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <optional>
#include <ostream>
#include <ravelin/platform/clock.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <string>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <stdlib.h>
#include <time.h>
#endif

namespace ravelin::platform {

void PrintTo(const LocalTime& t, std::ostream* out) {
  *out << t.year << "-" << t.month << "-" << t.day << " " << t.hour << ":" << t.minute << ":"
       << t.second << "." << t.millisecond;
}

namespace {

using namespace std::chrono;

UtcTime utc(year_month_day date, milliseconds time = {}) {
  return UtcTime(sys_days(date)) + time;
}

struct Implementation {
  const char* name;
  std::function<std::shared_ptr<Clock>()> make;
  // Adds to (or takes from) the notifications a wait is to expect: the simulated clock jumps to
  // the deadline unless told that one is coming.
  std::function<void(Clock&, int)> expectNotifications;
};

class ClockContractTest : public testing::TestWithParam<Implementation> {
 protected:
  void SetUp() override { clock_ = GetParam().make(); }

  std::shared_ptr<Clock> clock_;
  std::mutex mutex_;
  std::condition_variable wake_;
};

// A few waits of a millisecond, each until the deadline is reached; time never goes back.
TEST_P(ClockContractTest, WaitingEndsAtTheDeadlineAndTimeNeverGoesBack) {
  std::unique_lock lock(mutex_);
  Clock::TimePoint previous = clock_->now();
  for (int i = 0; i < 3; ++i) {
    const Clock::TimePoint deadline = previous + milliseconds(1);
    for (Clock::TimePoint now = previous; now < deadline; previous = now) {
      clock_->waitUntil(lock, wake_, deadline);
      ASSERT_TRUE(lock.owns_lock());
      now = clock_->now();
      ASSERT_GE(now, previous);
    }
    EXPECT_GE(previous, deadline);
  }
}

// The deadline is far enough off that only a wait deaf to the notification can reach it.
TEST_P(ClockContractTest, NotificationEndsTheWaitBeforeTheDeadline) {
  GetParam().expectNotifications(*clock_, 1);
  bool notified = false;
  std::unique_lock lock(mutex_);
  const Clock::TimePoint deadline = clock_->now() + minutes(2);
  std::thread notifier([&] {
    {
      std::lock_guard guard(mutex_);
      notified = true;
    }
    wake_.notify_all();
  });
  while (!notified && clock_->now() < deadline)
    clock_->waitUntil(lock, wake_, deadline);
  lock.unlock();
  notifier.join();
  GetParam().expectNotifications(*clock_, -1);
  EXPECT_TRUE(notified);
  EXPECT_LT(clock_->now(), deadline);
}

// Every zone in use today is between 12 hours behind and 14 ahead of UTC, in steps of 15 minutes.
TEST_P(ClockContractTest, OffsetsAreThoseOfARealZone) {
  for (const UtcTime instant : {clock_->utcNow(), utc(2024y / January / 15, 12h),
                                utc(2024y / July / 15, 12h), utc(1999y / December / 31, 23h)}) {
    const seconds offset = clock_->utcOffsetAt(instant);
    SCOPED_TRACE(std::to_string(offset.count()) + " s");
    EXPECT_GE(offset, -hours(12));
    EXPECT_LE(offset, hours(14));
    EXPECT_EQ(offset % minutes(15), seconds(0));
  }
}

// A simulated clock in a zone other than UTC, so that the cases see a non-zero offset.
std::shared_ptr<Clock> makeSimulated() {
  auto clock = std::make_shared<SimulatedClock>();
  clock->setUtcNow(utc(2024y / March / 10, 6h + 59min + 59s));
  clock->setUtcOffset(-hours(5));
  return clock;
}

INSTANTIATE_TEST_SUITE_P(
    Implementations, ClockContractTest,
    testing::Values(Implementation{"simulated", makeSimulated,
                                   [](Clock& clock, int count) {
                                     static_cast<SimulatedClock&>(clock).expectPosts(count);
                                   }},
                    Implementation{"native",
                                   [] { return std::shared_ptr<Clock>(Clock::makeNative()); },
                                   [](Clock&, int) {}}),
    [](const testing::TestParamInfo<Implementation>& info) {
      return std::string(info.param.name);
    });

TEST(LocalTimeAtTest, MovesTheInstantByTheOffsetAcrossDaysAndYears) {
  struct Row {
    UtcTime instant;
    seconds offset;
    LocalTime expected;
  };
  const Row rows[] = {
      {utc(2023y / December / 31, 23h + 30min), hours(2), {2024, 1, 1, 1, 30, 0, 0}},
      {utc(2024y / January / 1, 30min), -hours(5), {2023, 12, 31, 19, 30, 0, 0}},
      {utc(2024y / February / 28, 22h), hours(5) + minutes(45), {2024, 2, 29, 3, 45, 0, 0}},
      // Before 1970 the fields still count forwards from the start of the day.
      {utc(1969y / December / 31, 23h + 59min + 59s + 999ms),
       seconds(0),
       {1969, 12, 31, 23, 59, 59, 999}},
      {utc(1970y / January / 1, 250ms), -seconds(1), {1969, 12, 31, 23, 59, 59, 250}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(localTimeAt(row.instant, row.offset), row.expected);
  }
}

// Setting the date and time moves only the date and time; waiting and advancing move both.
TEST(SimulatedClockTest, DateAndTimeMoveWithMonotonicTime) {
  SimulatedClock clock;
  clock.setUtcOffset(hours(2));
  const Clock::TimePoint start = clock.now();
  clock.setUtcNow(utc(2023y / December / 31, 23h + 59min + 59s));
  EXPECT_EQ(clock.now(), start);
  EXPECT_EQ(clock.localNow(), (LocalTime{2024, 1, 1, 1, 59, 59, 0}));

  clock.advance(milliseconds(1500));
  EXPECT_EQ(clock.utcNow(), utc(2024y / January / 1, 500ms));

  std::mutex mutex;
  std::condition_variable wake;
  std::unique_lock lock(mutex);
  clock.waitUntil(lock, wake, clock.now() + hours(1));
  EXPECT_EQ(clock.now() - start, hours(1) + milliseconds(1500));
  EXPECT_EQ(clock.localNow(), (LocalTime{2024, 1, 1, 3, 0, 0, 500}));
}

#if !defined(_WIN32)

// Zones written as POSIX rules, which need no time zone database; the US Eastern zone moved
// its clocks forward at 2024-03-10 07:00 UTC.
TEST(NativeClockTest, FollowsTheZoneOfTheEnvironment) {
  struct Row {
    const char* zone;
    UtcTime instant;
    LocalTime expected;
  };
  const Row rows[] = {
      {"<+02>-2", utc(2023y / December / 31, 23h + 30min), {2024, 1, 1, 1, 30, 0, 0}},
      {"<-0330>3:30", utc(2024y / January / 1, 1h), {2023, 12, 31, 21, 30, 0, 0}},
      {"EST5EDT,M3.2.0,M11.1.0",
       utc(2024y / March / 10, 6h + 59min + 59s),
       {2024, 3, 10, 1, 59, 59, 0}},
      {"EST5EDT,M3.2.0,M11.1.0", utc(2024y / March / 10, 7h), {2024, 3, 10, 3, 0, 0, 0}},
  };
  const char* const saved = getenv("TZ");
  const std::optional<std::string> previous =
      saved == nullptr ? std::nullopt : std::optional<std::string>(saved);
  const std::unique_ptr<Clock> clock = Clock::makeNative();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.zone);
    setenv("TZ", row.zone, 1);
    EXPECT_EQ(localTimeAt(row.instant, clock->utcOffsetAt(row.instant)), row.expected);
  }
  if (previous) {
    setenv("TZ", previous->c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

#else

int64_t ticksOf(const SYSTEMTIME& time) {
  FILETIME file{};
  SystemTimeToFileTime(&time, &file);
  return static_cast<int64_t>((static_cast<uint64_t>(file.dwHighDateTime) << 32) |
                              file.dwLowDateTime);
}

// GetLocalTime less GetSystemTime, taken a moment apart and rounded to a quarter of an hour, is
// the offset of the zone Windows is set to.
TEST(NativeClockTest, OffsetIsTheOneOfTheSystemsLocalTime) {
  const std::unique_ptr<Clock> clock = Clock::makeNative();
  SYSTEMTIME utcTime{};
  SYSTEMTIME localTime{};
  GetSystemTime(&utcTime);
  GetLocalTime(&localTime);
  const seconds offset = clock->utcOffsetAt(clock->utcNow());
  const double difference = static_cast<double>(ticksOf(localTime) - ticksOf(utcTime));
  const long quarters = std::lround(difference / (15.0 * 60 * 10'000'000));
  EXPECT_EQ(offset, minutes(15 * quarters));
}

#endif

}  // namespace
}  // namespace ravelin::platform

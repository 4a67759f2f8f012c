// Platform area "clock": the local date and time, a monotonic time for measuring and timing out,
// and waiting for a notification until such a time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <ravelin/platform/slot.hpp>

namespace ravelin::platform {

// An instant in UTC, to the millisecond.
using UtcTime = std::chrono::sys_time<std::chrono::milliseconds>;

// A date and time as calendar fields.
struct LocalTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;  // 0 to 59: system time counts no leap seconds
  int millisecond = 0;

  bool operator==(const LocalTime&) const = default;
};

// The local date and time at `instant` in a zone `offset` ahead of UTC (negative to the west).
inline LocalTime localTimeAt(UtcTime instant, std::chrono::seconds offset) {
  using namespace std::chrono;
  const UtcTime local = instant + offset;
  const sys_days day = floor<days>(local);
  const year_month_day date{day};
  const hh_mm_ss<milliseconds> time{local - day};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count()),
          static_cast<int>(time.subseconds().count())};
}

// The system's clocks, as the library reads them.
class Clock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  virtual ~Clock() = default;

  // The monotonic time: it never goes back and does not follow changes of the date and time.
  // Every system's own is the standard library's steady clock.
  virtual TimePoint now() const { return std::chrono::steady_clock::now(); }

  // Waits on `wake` (the caller's lock held on entry and on return) until it is notified or the
  // monotonic time reaches `deadline`. May return early; the caller checks again.
  virtual void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
                         TimePoint deadline) {
    wake.wait_until(lock, deadline);
  }

  // The current date and time in UTC.
  virtual UtcTime utcNow() const = 0;

  // How far the system's local time is ahead of UTC at `instant` (negative to the west),
  // daylight saving time included.
  virtual std::chrono::seconds utcOffsetAt(UtcTime instant) const = 0;

  // The current local date and time.
  LocalTime localNow() const {
    const UtcTime instant = utcNow();
    return localTimeAt(instant, utcOffsetAt(instant));
  }

  // The implementation of the system the library runs on.
  static std::unique_ptr<Clock> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<Clock> clock{};

}  // namespace ravelin::platform

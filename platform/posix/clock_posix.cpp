// The clocks of POSIX systems: CLOCK_MONOTONIC (through std::chrono::steady_clock) for measuring
// and waiting, CLOCK_REALTIME for the date and time, localtime_r for the zone's offset.
#include <time.h>

#include <ravelin/platform/clock.hpp>

namespace ravelin::platform {
namespace {

class PosixClock final : public Clock {
 public:
  UtcTime utcNow() const override {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return UtcTime(std::chrono::seconds(time.tv_sec) +
                   std::chrono::milliseconds(time.tv_nsec / 1'000'000));
  }

  // An instant the C library cannot convert counts as UTC.
  std::chrono::seconds utcOffsetAt(UtcTime instant) const override {
    const time_t seconds =
        std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
    // localtime_r, unlike localtime, need not look at TZ again; a zone set since start-up counts.
    tzset();
    tm local{};
    if (localtime_r(&seconds, &local) == nullptr) return std::chrono::seconds(0);
    return std::chrono::seconds(local.tm_gmtoff);
  }
};

}  // namespace

std::unique_ptr<Clock> Clock::makeNative() {
  return std::make_unique<PosixClock>();
}

}  // namespace ravelin::platform

// The clocks of Windows: the performance counter (through std::chrono::steady_clock) for
// measuring and waiting, the system time for the date and time, and the active time zone's
// rules (SystemTimeToTzSpecificLocalTime) for its offset.
#include <windows.h>

#include <cstdint>
#include <ravelin/platform/clock.hpp>

namespace ravelin::platform {
namespace {

// FILETIME counts 100-nanosecond intervals from 1601-01-01, 11644473600 seconds before 1970.
constexpr int64_t kTicksPerSecond = 10'000'000;
constexpr int64_t kTicksPerMillisecond = 10'000;
constexpr int64_t kEpochTicks = 11'644'473'600LL * kTicksPerSecond;
// 30827-12-31 23:59:59 UTC, the last second a SYSTEMTIME holds, counted from 1970.
constexpr int64_t kLastSecond = 910'670'515'199LL;

int64_t ticksOf(const FILETIME& time) {
  return static_cast<int64_t>((static_cast<uint64_t>(time.dwHighDateTime) << 32) |
                              time.dwLowDateTime);
}

FILETIME fileTimeOf(int64_t ticks) {
  const auto bits = static_cast<uint64_t>(ticks);
  return FILETIME{static_cast<DWORD>(bits & 0xFFFFFFFFu), static_cast<DWORD>(bits >> 32)};
}

class Win32Clock final : public Clock {
 public:
  UtcTime utcNow() const override {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    return UtcTime(std::chrono::milliseconds((ticksOf(time) - kEpochTicks) / kTicksPerMillisecond));
  }

  // The local time the zone gives for the instant's whole second, less the instant. Instants
  // Windows cannot convert (before 1601, after 30827) count as UTC.
  std::chrono::seconds utcOffsetAt(UtcTime instant) const override {
    const int64_t seconds =
        std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
    if (seconds < -kEpochTicks / kTicksPerSecond || seconds > kLastSecond) {
      return std::chrono::seconds(0);
    }
    const int64_t ticks = seconds * kTicksPerSecond + kEpochTicks;
    const FILETIME utcFile = fileTimeOf(ticks);
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    FILETIME localFile{};
    if (!FileTimeToSystemTime(&utcFile, &utc) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ||
        !SystemTimeToFileTime(&local, &localFile)) {
      return std::chrono::seconds(0);
    }
    return std::chrono::seconds((ticksOf(localFile) - ticks) / kTicksPerSecond);
  }
};

}  // namespace

std::unique_ptr<Clock> Clock::makeNative() {
  return std::make_unique<Win32Clock>();
}

}  // namespace ravelin::platform

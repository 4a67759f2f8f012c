// A simulated clock for tests: time moves only when told to or when someone waits, and the date,
// time and time zone are set by hand.
#pragma once

#include <functional>
#include <ravelin/platform/clock.hpp>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <utility>
#include <vector>

namespace ravelin::platform {

// Monotonic time starts at zero and moves when the test advances it or when a wait jumps to its
// deadline, or to the next scheduled action, which runs then. The date and time move along with
// it from where they were last set (1970-01-01 00:00 UTC at first), in a zone of a fixed offset
// (UTC at first).
class SimulatedClock : public Clock {
 public:
  TimePoint now() const override;
  void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
                 TimePoint deadline) override;
  UtcTime utcNow() const override;
  std::chrono::seconds utcOffsetAt(UtcTime instant) const override;

  void advance(std::chrono::nanoseconds duration);
  // Runs `action` when simulated time reaches `when` during a wait (as a timer's callback would).
  void schedule(TimePoint when, std::function<void()> action);
  // While posts are awaited, a wait blocks until the queue is notified instead of jumping ahead:
  // a test expecting a post from another thread raises the count and lowers it on delivery.
  void expectPosts(int count);

  // Sets the date and time, as a user setting the system's clock would: monotonic time stays.
  void setUtcNow(UtcTime instant);
  // Sets the offset of the local time zone, the same at every instant.
  void setUtcOffset(std::chrono::seconds offset);

 private:
  mutable std::mutex mutex_;
  TimePoint now_{};
  // The date and time when monotonic time was zero.
  std::chrono::sys_time<std::chrono::nanoseconds> utcAtZero_{};
  std::chrono::seconds utcOffset_{0};
  std::vector<std::pair<TimePoint, std::function<void()>>> scheduled_;
  int awaitedPosts_ = 0;
};

}  // namespace ravelin::platform

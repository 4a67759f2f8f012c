// The clock-driven event loop.
#include <algorithm>
#include <ravelin/platform/fake/event_loop_fake.hpp>
#include <utility>
#include <vector>

namespace ravelin::platform {

ClockEventLoop::ClockEventLoop(std::shared_ptr<Clock> clock) : clock_(std::move(clock)) {}

EventLoop::TimerId ClockEventLoop::startTimer(std::chrono::milliseconds interval,
                                              std::chrono::milliseconds, bool periodic, Work tick) {
  if (interval <= std::chrono::milliseconds(0)) return 0;
  const TimerId id = newTimerId();
  std::lock_guard guard(mutex_);
  // system: 1 while a one-shot timer has yet to fire, 0 once it has; -1 for a periodic one.
  addTimer(id, std::move(tick), interval, periodic, clock_->now() + interval, periodic ? -1 : 1);
  return id;
}

std::size_t ClockEventLoop::timerCount() {
  std::lock_guard guard(mutex_);
  return timers_.size();
}

void ClockEventLoop::wake() {
  // Taking the lock orders the notice after a waiter's last look at the queue.
  { std::lock_guard guard(mutex_); }
  wake_.notify_all();
}

void ClockEventLoop::collect() {
  const TimePoint now = clock_->now();
  std::vector<Expiry> batch;
  std::lock_guard guard(mutex_);
  for (auto& [id, timer] : timers_) {
    if (timer.system == 0 || timer.nextDue > now) continue;
    if (timer.periodic) {
      addExpiries(batch, id, timer,
                  static_cast<std::uint64_t>((now - timer.nextDue) / timer.interval) + 1);
    } else {
      addExpiries(batch, id, timer, 1);
      timer.system = 0;
    }
  }
  queueExpiries(batch);
}

void ClockEventLoop::runUntil(TimePoint deadline) {
  for (;;) {
    runPending();
    std::unique_lock lock(mutex_);
    if (hasReady()) continue;
    const TimePoint now = clock_->now();
    if (now >= deadline) break;
    TimePoint until = deadline;
    for (const auto& [id, timer] : timers_) {
      if (timer.system != 0) until = std::min(until, timer.nextDue);
    }
    // A timer already due is collected on the next round.
    if (until > now) clock_->waitUntil(lock, wake_, until);
  }
  runPending();
}

std::unique_ptr<EventLoop> ClockEventLoops::make() {
  return std::make_unique<ClockEventLoop>(clock());
}

}  // namespace ravelin::platform

// The simulated clock.
#include <algorithm>
#include <ravelin/platform/fake/clock_fake.hpp>

namespace ravelin::platform {

Clock::TimePoint SimulatedClock::now() const {
  std::lock_guard guard(mutex_);
  return now_;
}

UtcTime SimulatedClock::utcNow() const {
  std::lock_guard guard(mutex_);
  return std::chrono::floor<std::chrono::milliseconds>(utcAtZero_ + now_.time_since_epoch());
}

std::chrono::seconds SimulatedClock::utcOffsetAt(UtcTime) const {
  std::lock_guard guard(mutex_);
  return utcOffset_;
}

void SimulatedClock::setUtcNow(UtcTime instant) {
  std::lock_guard guard(mutex_);
  utcAtZero_ = instant - now_.time_since_epoch();
}

void SimulatedClock::setUtcOffset(std::chrono::seconds offset) {
  std::lock_guard guard(mutex_);
  utcOffset_ = offset;
}

void SimulatedClock::advance(std::chrono::nanoseconds duration) {
  std::lock_guard guard(mutex_);
  now_ += duration;
}

void SimulatedClock::schedule(TimePoint when, std::function<void()> action) {
  std::lock_guard guard(mutex_);
  scheduled_.emplace_back(when, std::move(action));
}

void SimulatedClock::expectPosts(int count) {
  std::lock_guard guard(mutex_);
  awaitedPosts_ += count;
}

void SimulatedClock::waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
                               TimePoint deadline) {
  std::unique_lock guard(mutex_);
  if (awaitedPosts_ > 0) {
    guard.unlock();
    wake.wait(lock);
    return;
  }
  auto next = std::min_element(scheduled_.begin(), scheduled_.end(),
                               [](const auto& a, const auto& b) { return a.first < b.first; });
  if (next == scheduled_.end() || next->first > deadline) {
    now_ = std::max(now_, deadline);
    return;
  }
  now_ = std::max(now_, next->first);
  std::function<void()> action = std::move(next->second);
  scheduled_.erase(next);
  guard.unlock();
  // The action may post to the queue, which takes the queue's lock.
  lock.unlock();
  action();
  lock.lock();
}

}  // namespace ravelin::platform

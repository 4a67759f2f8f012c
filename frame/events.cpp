#include <algorithm>
#include <ravelin/frame/events.hpp>

namespace ravelin {

uint32_t EventSource::connectSink(const std::shared_ptr<EventSink>& sink) {
  uint32_t cookie = nextCookie_++;
  sinks_.push_back({cookie, sink});
  return cookie;
}

bool EventSource::disconnectSink(uint32_t cookie) {
  auto found = std::find_if(sinks_.begin(), sinks_.end(),
                            [cookie](const Connection& c) { return c.cookie == cookie; });
  if (found == sinks_.end()) return false;
  sinks_.erase(found);
  return true;
}

std::size_t EventSource::sinkCount() const {
  return static_cast<std::size_t>(std::count_if(
      sinks_.begin(), sinks_.end(), [](const Connection& c) { return !c.sink.expired(); }));
}

void EventSource::raiseEvent(StringView eventName, std::span<Variant> arguments) {
  // Sinks that died since the last event are forgotten; the live ones are held for the call so
  // that a sink disconnecting itself (or its source) during delivery stays valid.
  std::erase_if(sinks_, [](const Connection& c) { return c.sink.expired(); });
  std::vector<std::shared_ptr<EventSink>> live;
  live.reserve(sinks_.size());
  for (const Connection& connection : sinks_) {
    if (auto sink = connection.sink.lock()) live.push_back(std::move(sink));
  }
  for (const auto& sink : live)
    sink->onEvent(eventName, arguments);
}

namespace {

class SteadyWaitClock final : public WaitClock {
 public:
  TimePoint now() const override { return std::chrono::steady_clock::now(); }
  void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& wake,
                 TimePoint deadline) override {
    wake.wait_until(lock, deadline);
  }
};

}  // namespace

WaitClock& steadyWaitClock() {
  static SteadyWaitClock clock;
  return clock;
}

WaitClock::TimePoint SimulatedWaitClock::now() const {
  std::lock_guard guard(mutex_);
  return now_;
}

void SimulatedWaitClock::advance(std::chrono::nanoseconds duration) {
  std::lock_guard guard(mutex_);
  now_ += duration;
}

void SimulatedWaitClock::schedule(TimePoint when, std::function<void()> action) {
  std::lock_guard guard(mutex_);
  scheduled_.emplace_back(when, std::move(action));
}

void SimulatedWaitClock::expectPosts(int count) {
  std::lock_guard guard(mutex_);
  awaitedPosts_ += count;
}

void SimulatedWaitClock::waitUntil(std::unique_lock<std::mutex>& lock,
                                   std::condition_variable& wake, TimePoint deadline) {
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

const std::shared_ptr<EventQueue>& EventQueue::current() {
  thread_local const std::shared_ptr<EventQueue> queue = std::make_shared<EventQueue>();
  return queue;
}

void EventQueue::post(std::function<void()> event) {
  {
    std::lock_guard guard(mutex_);
    events_.push_back(std::move(event));
  }
  wake_.notify_all();
}

std::size_t EventQueue::runPending() {
  std::size_t count;
  {
    std::lock_guard guard(mutex_);
    count = events_.size();
  }
  for (std::size_t i = 0; i < count; ++i) {
    std::function<void()> event;
    {
      std::lock_guard guard(mutex_);
      event = std::move(events_.front());
      events_.pop_front();
    }
    event();
  }
  return count;
}

void EventQueue::waitAndRun(WaitClock::TimePoint deadline) {
  for (;;) {
    runPending();
    std::unique_lock lock(mutex_);
    if (!events_.empty()) continue;
    if (clock_->now() >= deadline) break;
    clock_->waitUntil(lock, wake_, deadline);
  }
  runPending();
}

}  // namespace ravelin

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

void EventQueue::waitAndRun(platform::Clock::TimePoint deadline) {
  const std::shared_ptr<platform::Clock> clock = platform::clock();
  for (;;) {
    runPending();
    std::unique_lock lock(mutex_);
    if (!events_.empty()) continue;
    if (clock->now() >= deadline) break;
    clock->waitUntil(lock, wake_, deadline);
  }
  runPending();
}

void EventQueue::waitAndRun(std::chrono::milliseconds duration) {
  waitAndRun(platform::clock()->now() + duration);
}

}  // namespace ravelin

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

EventQueue::EventQueue() : loop_(platform::eventLoops()->make()) {}

EventQueue::EventQueue(std::shared_ptr<platform::EventLoop> loop) : loop_(std::move(loop)) {}

std::shared_ptr<EventQueue> EventQueue::current() {
  return std::make_shared<EventQueue>(platform::currentEventLoop());
}

void EventQueue::waitAndRun(std::chrono::milliseconds duration) {
  loop_->runUntil(platform::clock()->now() + duration);
}

}  // namespace ravelin

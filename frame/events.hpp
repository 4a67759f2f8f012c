// Events: objects that raise named events to connected sinks, and the per-thread queue through
// which work posted from other threads (a timer's system callback) runs on the owning thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/variant.hpp>
#include <ravelin/platform/clock.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <span>
#include <utility>
#include <vector>

namespace ravelin {

// Receives the events of the sources it is connected to.
class EventSink {
 public:
  virtual ~EventSink() = default;
  // One event: its name ("Timer") and its arguments, which the sink may change (by reference).
  virtual void onEvent(StringView eventName, std::span<Variant> arguments) = 0;
};

// A mixin for an Object that raises events. Sources hold their sinks weakly: whoever connects
// a sink owns it, so a sink that refers back to its source makes no cycle. Connecting, raising
// and disconnecting happen on the thread that owns the source.
class EventSource {
 public:
  // Connects a sink; the number returned disconnects it again.
  uint32_t connectSink(const std::shared_ptr<EventSink>& sink);
  // Disconnects the sink of that number; false when there is none.
  bool disconnectSink(uint32_t cookie);
  // The number of sinks still alive.
  std::size_t sinkCount() const;

 protected:
  EventSource() = default;
  ~EventSource() = default;
  EventSource(const EventSource&) {}
  EventSource& operator=(const EventSource&) { return *this; }

  // Calls every live sink in the order they were connected. A sink connected or disconnected
  // while the event is delivered takes effect from the next event.
  void raiseEvent(StringView eventName, std::span<Variant> arguments);

 private:
  struct Connection {
    uint32_t cookie;
    std::weak_ptr<EventSink> sink;
  };
  std::vector<Connection> sinks_;
  uint32_t nextCookie_ = 1;
};

// The events waiting to run on one thread: a handle on a platform event loop, which also
// delivers the ticks of the thread's timers. post() may be called from any thread; the other
// members only on the loop's thread.
class EventQueue {
 public:
  // A queue on a loop of its own, made by the installed event-loop area.
  EventQueue();
  explicit EventQueue(std::shared_ptr<platform::EventLoop> loop);

  // A queue on the calling thread's loop (platform::currentEventLoop), the one its timers
  // deliver to. Keep the shared reference to post to it from elsewhere: it outlives the thread
  // if need be (posts then never run).
  static std::shared_ptr<EventQueue> current();

  void post(std::function<void()> event) { loop_->post(std::move(event)); }

  // Runs the events posted so far (not those they post in turn); returns how many ran.
  std::size_t runPending() { return loop_->runPending(); }
  // Runs events as they arrive until the clock reaches `deadline`, then those already posted.
  // An exception from an event leaves the rest queued and propagates.
  void waitAndRun(platform::Clock::TimePoint deadline) { loop_->runUntil(deadline); }
  // The deadline is that long after the installed clock's present time.
  void waitAndRun(std::chrono::milliseconds duration);

  const std::shared_ptr<platform::EventLoop>& loop() const { return loop_; }

 private:
  std::shared_ptr<platform::EventLoop> loop_;
};

}  // namespace ravelin

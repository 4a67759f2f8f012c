// Platform area "event loop": one loop per thread that runs, on that thread, the work posted to
// it from any thread and the ticks of its one-shot and periodic timers. Nothing runs by itself:
// the thread runs its loop (runUntil, runPending), or a client with a loop of its own watches
// readyDescriptor() and calls runPending when it is readable.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ravelin/platform/clock.hpp>
#include <ravelin/platform/slot.hpp>

namespace ravelin::platform {

class EventLoop {
 public:
  using TimePoint = Clock::TimePoint;
  // A timer while it exists; 0 is never one.
  using TimerId = std::uint64_t;
  using Work = std::function<void()>;

  virtual ~EventLoop() = default;

  // Any thread: queues `work` to run on the loop's thread after the work posted before it, and
  // wakes the loop if it waits.
  virtual void post(Work work) = 0;

  // Starts a timer that expires `interval` from now and, when `periodic`, every `interval` after
  // that. Each expiry queues one run of `tick` on the loop's thread; expiries that pile up while
  // the thread is busy are each delivered, in the order they fell due, across all timers of the
  // loop. `resolution` is the accuracy asked for (0: the best there is). Returns 0 when the
  // system refuses a timer. On the loop's thread.
  virtual TimerId startTimer(std::chrono::milliseconds interval,
                             std::chrono::milliseconds resolution, bool periodic, Work tick) = 0;
  // Stops the timer: it queues nothing more, and its ticks already queued do not run. A one-shot
  // timer that has fired is stopped all the same. Any thread; an unknown id is ignored.
  virtual void stopTimer(TimerId id) = 0;

  // Runs what is ready now (posted work, expired ticks) but not what that work posts in turn;
  // returns how many ran. On the loop's thread.
  virtual std::size_t runPending() = 0;
  // Runs work as it becomes ready until the monotonic time reaches `deadline`, then what is
  // ready at that point. An exception from work propagates; what was queued after it stays.
  // On the loop's thread.
  virtual void runUntil(TimePoint deadline) = 0;

  // A file descriptor that polls readable while something is ready to run, for a client that
  // waits in a loop of its own (poll, epoll, select); -1 where there is none (Windows: the
  // client calls runPending from its own loop).
  virtual int readyDescriptor() const = 0;
};

// The area: it makes the loops, one for each thread that asks.
class EventLoops {
 public:
  virtual ~EventLoops() = default;
  // A loop owned by the calling thread.
  virtual std::unique_ptr<EventLoop> make() = 0;
  // The implementation of the system the library runs on.
  static std::unique_ptr<EventLoops> makeNative();
};

inline constexpr Slot<EventLoops> eventLoops{};

// The calling thread's loop, made by the installed area on first use, and made again when
// another area was installed since. May throw std::system_error when the system has no room
// for another loop.
std::shared_ptr<EventLoop> currentEventLoop();

}  // namespace ravelin::platform

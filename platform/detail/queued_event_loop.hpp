// What every event loop shares: the queue of ready work, the table of timers, and the rules of
// delivery (order of expiry, nothing from a stopped timer). Each system adds how it waits, how
// it wakes, and how its timers expire.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <ravelin/platform/event_loop.hpp>
#include <vector>

namespace ravelin::platform {

// A thread's loop and the area that made it.
struct ThreadLoop {
  std::shared_ptr<EventLoops> maker;
  std::shared_ptr<EventLoop> loop;
};

// Deletes the calling thread's loop record when the thread ends. Each system has its own hook:
// the C++ runtime of mingw-w64 frees a thread_local object's storage before running its
// destructor.
void destroyAtThreadExit(ThreadLoop* threadLoop);

class QueuedEventLoop : public EventLoop {
 public:
  void post(Work work) override;
  void stopTimer(TimerId id) override;
  std::size_t runPending() override;

 protected:
  struct Timer {
    std::shared_ptr<const Work> tick;
    std::chrono::nanoseconds interval{};
    bool periodic = false;
    // When the next expiry falls due.
    TimePoint nextDue{};
    // The system's handle of the timer (a descriptor, a timer id), or -1.
    std::int64_t system = -1;
  };
  // An expiry seen by collect(), before it joins the queue.
  struct Expiry {
    TimePoint due;
    TimerId timer;
  };

  // Wakes the loop's thread from a wait (any thread, without the lock).
  virtual void wake() = 0;
  // Moves what the system has ready into the queue, without waiting (loop's thread).
  virtual void collect() = 0;
  // Lets go of the system's timer of a timer that was removed (without the lock).
  virtual void releaseTimer(TimerId id, const Timer& timer) = 0;

  // A new timer's id, unique in the process, so that a late notice of a stopped timer can
  // never reach another.
  static TimerId newTimerId();
  // Adds `count` expiries of `timer`, the first at its nextDue, and moves nextDue on (lock
  // held).
  static void addExpiries(std::vector<Expiry>& batch, TimerId id, Timer& timer,
                          std::uint64_t count);
  // Enters a started timer in the table, its first expiry at `firstDue` (lock held).
  void addTimer(TimerId id, Work tick, std::chrono::milliseconds interval, bool periodic,
                TimePoint firstDue, std::int64_t system);
  // runUntil on the steady clock: runs what is ready, and while nothing is, calls
  // wait(deadline) (without the lock), which returns when work may be ready or at the deadline.
  template <typename Wait>
  void runReadyUntil(TimePoint deadline, Wait&& wait) {
    for (;;) {
      runPending();
      {
        std::lock_guard guard(mutex_);
        if (hasReady()) continue;
      }
      if (std::chrono::steady_clock::now() >= deadline) break;
      wait(deadline);
    }
    runPending();
  }
  // Queues a batch of expiries in the order they fell due (lock held).
  void queueExpiries(std::vector<Expiry>& batch);
  // Whether anything waits in the queue (lock held).
  bool hasReady() const { return !ready_.empty(); }

  std::mutex mutex_;
  std::map<TimerId, Timer> timers_;

 private:
  // Posted work, or one tick of a timer (work empty).
  struct Item {
    TimerId timer = 0;
    Work work;
  };
  std::deque<Item> ready_;
};

}  // namespace ravelin::platform

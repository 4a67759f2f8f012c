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

// Destroys the calling thread's loop when the thread ends. Each system has its own hook: the
// C++ runtime of mingw-w64 frees a thread_local object's storage before running its destructor.
void destroyAtThreadExit(std::shared_ptr<EventLoop>* loop);

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

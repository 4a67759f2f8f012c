// The thread's loop and the delivery rules that every loop shares.
#include <algorithm>
#include <atomic>
#include <ravelin/platform/detail/queued_event_loop.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <utility>

namespace ravelin::platform {

std::shared_ptr<EventLoop> currentEventLoop() {
  // A plain pointer: its storage needs no destructor (destroyAtThreadExit deletes the record).
  thread_local ThreadLoop* current = nullptr;
  std::shared_ptr<EventLoops> installed = eventLoops();
  if (current == nullptr) {
    current = new ThreadLoop();
    destroyAtThreadExit(current);
  }
  if (!current->loop || current->maker != installed) {
    current->loop = installed->make();
    current->maker = std::move(installed);
  }
  return current->loop;
}

void QueuedEventLoop::post(Work work) {
  {
    std::lock_guard guard(mutex_);
    ready_.push_back({0, std::move(work)});
  }
  wake();
}

void QueuedEventLoop::stopTimer(TimerId id) {
  Timer removed;
  {
    std::lock_guard guard(mutex_);
    auto found = timers_.find(id);
    if (found == timers_.end()) return;
    removed = std::move(found->second);
    timers_.erase(found);
  }
  releaseTimer(id, removed);
}

std::size_t QueuedEventLoop::runPending() {
  collect();
  std::size_t count;
  {
    std::lock_guard guard(mutex_);
    count = ready_.size();
  }
  std::size_t ran = 0;
  for (std::size_t i = 0; i < count; ++i) {
    Work work;
    std::shared_ptr<const Work> tick;
    {
      std::lock_guard guard(mutex_);
      // Work run meanwhile may have run the queue itself (a nested wait).
      if (ready_.empty()) break;
      Item item = std::move(ready_.front());
      ready_.pop_front();
      if (item.timer == 0) {
        work = std::move(item.work);
      } else {
        auto found = timers_.find(item.timer);
        if (found == timers_.end()) continue;  // stopped since it expired
        // Held for the call: the tick may stop its own timer.
        tick = found->second.tick;
      }
    }
    if (tick) {
      (*tick)();
    } else {
      work();
    }
    ++ran;
  }
  return ran;
}

EventLoop::TimerId QueuedEventLoop::newTimerId() {
  static std::atomic<TimerId> next{1};
  return next.fetch_add(1, std::memory_order_relaxed);
}

void QueuedEventLoop::addExpiries(std::vector<Expiry>& batch, TimerId id, Timer& timer,
                                  std::uint64_t count) {
  for (std::uint64_t i = 0; i < count; ++i) {
    batch.push_back({timer.nextDue, id});
    timer.nextDue += timer.interval;
  }
}

void QueuedEventLoop::addTimer(TimerId id, Work tick, std::chrono::milliseconds interval,
                               bool periodic, TimePoint firstDue, std::int64_t system) {
  Timer& timer = timers_[id];
  timer.tick = std::make_shared<const Work>(std::move(tick));
  timer.interval = interval;
  timer.periodic = periodic;
  timer.nextDue = firstDue;
  timer.system = system;
}

void QueuedEventLoop::queueExpiries(std::vector<Expiry>& batch) {
  // Expiries due at the same time go in the order their timers started.
  std::sort(batch.begin(), batch.end(), [](const Expiry& a, const Expiry& b) {
    return a.due != b.due ? a.due < b.due : a.timer < b.timer;
  });
  for (const Expiry& expiry : batch)
    ready_.push_back({expiry.timer, {}});
  batch.clear();
}

}  // namespace ravelin::platform

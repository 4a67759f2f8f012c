// Event loops that take their time and their waiting from the installed clock, so that with the
// simulated clock (clock_fake.hpp) timers fire at exact simulated instants and no test sleeps.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <ravelin/platform/clock.hpp>
#include <ravelin/platform/detail/queued_event_loop.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <ravelin/platform/fake/scoped_fake.hpp>

namespace ravelin::platform {

// A loop whose timers are due times checked against the clock; a wait is the clock's wait
// until the deadline or the next due time, whichever is first. It has no descriptor.
class ClockEventLoop final : public QueuedEventLoop {
 public:
  explicit ClockEventLoop(std::shared_ptr<Clock> clock);

  TimerId startTimer(std::chrono::milliseconds interval, std::chrono::milliseconds resolution,
                     bool periodic, Work tick) override;
  void runUntil(TimePoint deadline) override;
  int readyDescriptor() const override { return -1; }

  // The timers started and not stopped, fired one-shot timers included.
  std::size_t timerCount();

 protected:
  void wake() override;
  void collect() override;
  void releaseTimer(TimerId, const Timer&) override {}

 private:
  std::shared_ptr<Clock> clock_;
  std::condition_variable wake_;
};

// Makes ClockEventLoops on the clock installed when each is made.
class ClockEventLoops : public EventLoops {
 public:
  std::unique_ptr<EventLoop> make() override;
};

}  // namespace ravelin::platform

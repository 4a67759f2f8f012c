// TimerMM: a timer of millisecond precision that raises the event Timer on the thread that
// started it, from that thread's event loop (platform/event_loop.hpp), which the client runs
// (WScript.Sleep in the script host, EventQueue or the loop's descriptor in C++).
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/enum_info.hpp>
#include <ravelin/frame/events.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <thread>

namespace ravelin {

// How often a TimerMM fires; the values are the system timer service's own flags.
enum EEventTypes : int32_t {
  etOneShot = 0,
  etPeriodic = 1,
};
template <>
const EnumInfo& enumInfo<EEventTypes>();

class TimerMM : public PublicClass<TimerMM>, public EventSource {
 public:
  static constexpr StringView kClassName = u"TimerMM";
  static ClassInfo describe();

  TimerMM() = default;
  // Stops a running timer and lets go of its registration.
  ~TimerMM() override;
  TimerMM(const TimerMM&) = delete;
  TimerMM& operator=(const TimerMM&) = delete;

  bool Enabled() const { return enabled_; }
  // Starts (true) or stops (false) the timer; the same value again does nothing. Raises 380
  // while Interval is below 1 or Resolution below 0, and 51 when the thread has no event loop
  // to deliver to. Ticks arrive on the thread that started the timer.
  void Enabled(bool value);
  int32_t Interval() const { return interval_; }
  // Milliseconds from the start to the tick, and between ticks; at least 1 (else 380). A
  // running timer keeps the value it started with.
  void Interval(int32_t value);
  int32_t Resolution() const { return resolution_; }
  // The accuracy asked of the system in milliseconds, 0 the best; not negative (else 380).
  void Resolution(int32_t value);
  EEventTypes EventType() const { return eventType_; }
  // Taken as given; a running timer keeps the type it started with.
  void EventType(EEventTypes value) { eventType_ = value; }

  // One tick: raises Timer with the milliseconds since the start or since the previous Timer
  // handlers returned (overflow of that difference is error 6).
  void RaiseTimer();

 private:
  bool enabled_ = false;
  int32_t interval_ = 0;
  int32_t resolution_ = 0;
  EEventTypes eventType_ = etOneShot;
  // The loop's timer while running, 0 otherwise.
  platform::EventLoop::TimerId timerId_ = 0;
  // The millisecond clock at the start and after each event, and at the latest tick.
  uint32_t lastTickTime_ = 0;
  uint32_t currentTickTime_ = 0;
  // The key of this timer in its thread's registry while registered, 0 otherwise.
  uint32_t handle_ = 0;
  // The loop the timer delivers to, and its thread, from the first registration on.
  std::shared_ptr<platform::EventLoop> loop_;
  std::thread::id owner_;
};

}  // namespace ravelin

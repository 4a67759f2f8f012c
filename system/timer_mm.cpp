#include <chrono>
#include <limits>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/clock.hpp>
#include <ravelin/system/internal/timer_registry.hpp>
#include <ravelin/system/timer_mm.hpp>
#include <unordered_map>

namespace ravelin {
namespace {

using Registry = std::unordered_map<uint32_t, std::weak_ptr<TimerMM>>;

// The registry of the calling thread; null while no timer is registered. A plain pointer, whose
// storage needs no destructor at thread exit (mingw-w64 frees it before destructors run); a
// thread that ends with timers registered leaves its registry behind.
Registry*& threadRegistry() {
  thread_local Registry* registry = nullptr;
  return registry;
}

// The system's millisecond counter, which wraps around after 2^32 ms as timeGetTime does.
uint32_t millisecondClock() {
  const auto since = platform::clock()->now().time_since_epoch();
  return static_cast<uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
}

// Starts the loop's timer, whose ticks look the timer up by its handle on the loop's thread,
// so that a timer released meanwhile gets none. Returns 0 when the system refused.
platform::EventLoop::TimerId StartTimer(platform::EventLoop& loop, int32_t interval,
                                        int32_t resolution, EEventTypes eventType,
                                        uint32_t handle) {
  return loop.startTimer(std::chrono::milliseconds(interval), std::chrono::milliseconds(resolution),
                         (eventType & etPeriodic) != 0, [handle] {
                           if (std::shared_ptr<TimerMM> timer = timer_registry::find(handle))
                             timer->RaiseTimer();
                         });
}

}  // namespace

namespace timer_registry {

uint32_t add(const std::weak_ptr<TimerMM>& timer) {
  Registry*& registry = threadRegistry();
  if (!registry) registry = new Registry();
  thread_local uint32_t last = 0;
  do {
    ++last;
  } while (last == 0 || registry->contains(last));
  registry->emplace(last, timer);
  return last;
}

void remove(uint32_t handle) {
  Registry*& registry = threadRegistry();
  if (!registry) return;
  registry->erase(handle);
  if (registry->empty()) {
    delete registry;
    registry = nullptr;
  }
}

std::shared_ptr<TimerMM> find(uint32_t handle) {
  Registry*& registry = threadRegistry();
  if (!registry) return nullptr;
  auto found = registry->find(handle);
  return found == registry->end() ? nullptr : found->second.lock();
}

std::optional<std::size_t> size() {
  const Registry* registry = threadRegistry();
  if (!registry) return std::nullopt;
  return registry->size();
}

}  // namespace timer_registry

template <>
const EnumInfo& enumInfo<EEventTypes>() {
  static const EnumInfo info{u"EEventTypes",
                             {{u"etOneShot", etOneShot}, {u"etPeriodic", etPeriodic}}};
  return info;
}

ClassInfo TimerMM::describe() {
  using Self = TimerMM;
  return ClassBuilder<TimerMM>(kClassName)
      .get(u"Enabled", static_cast<bool (Self::*)() const>(&Self::Enabled))
      .let(u"Enabled", static_cast<void (Self::*)(bool)>(&Self::Enabled))
      .get(u"Interval", static_cast<int32_t (Self::*)() const>(&Self::Interval))
      .let(u"Interval", static_cast<void (Self::*)(int32_t)>(&Self::Interval))
      .get(u"Resolution", static_cast<int32_t (Self::*)() const>(&Self::Resolution))
      .let(u"Resolution", static_cast<void (Self::*)(int32_t)>(&Self::Resolution))
      .get(u"EventType", static_cast<EEventTypes (Self::*)() const>(&Self::EventType))
      .let(u"EventType", static_cast<void (Self::*)(EEventTypes)>(&Self::EventType))
      .event<void(int32_t)>(u"Timer", {u"lMilliseconds"})
      .build();
}

TimerMM::~TimerMM() {
  if (timerId_ != 0 && loop_) loop_->stopTimer(timerId_);
  if (handle_ != 0) {
    if (std::this_thread::get_id() == owner_) {
      timer_registry::remove(handle_);
    } else if (loop_) {
      // The registry belongs to the owner's thread; the entry no longer finds this timer.
      loop_->post([handle = handle_] { timer_registry::remove(handle); });
    }
  }
}

void TimerMM::Interval(int32_t value) {
  if (value < 1) {
    raiseError(vb_error::kInvalidPropertyValue, u"CTimerMM::Interval",
               u"Interval property must be positive");
  }
  interval_ = value;
}

void TimerMM::Resolution(int32_t value) {
  if (value < 0) {
    raiseError(vb_error::kInvalidPropertyValue, u"CTimerMM::Resolution",
               u"Resolution property must be non-negative");
  }
  resolution_ = value;
}

void TimerMM::Enabled(bool value) {
  if (value == enabled_) return;
  // Checked when switching off too.
  if (interval_ < 1) {
    raiseError(vb_error::kInvalidPropertyValue, u"CTimerMM::Enabled",
               u"Interval property must be positive");
  }
  if (resolution_ < 0) {
    raiseError(vb_error::kInvalidPropertyValue, u"CTimerMM::Enabled",
               u"Resolution property must be non-negative");
  }
  // Stored before registering: a thread without a loop leaves the value set, as the
  // original did.
  enabled_ = value;
  if (value) {
    if (handle_ == 0) {
      try {
        loop_ = platform::currentEventLoop();
      } catch (const std::exception&) {
        raiseError(vb_error::kInternalError, u"MTimerMM::fRegister",
                   u"Unable to create timer control window");
      }
      owner_ = std::this_thread::get_id();
      // The key of this timer on its thread, by which the loop's ticks find it.
      handle_ = timer_registry::add(std::static_pointer_cast<TimerMM>(shared_from_this()));
    }
    timerId_ = StartTimer(*loop_, interval_, resolution_, eventType_, handle_);
    lastTickTime_ = millisecondClock();
  } else {
    if (loop_) loop_->stopTimer(timerId_);
    timerId_ = 0;
    if (handle_ != 0) timer_registry::remove(handle_);
    handle_ = 0;
  }
}

void TimerMM::RaiseTimer() {
  currentTickTime_ = millisecondClock();
  const int64_t elapsed = int64_t{static_cast<int32_t>(currentTickTime_)} -
                          int64_t{static_cast<int32_t>(lastTickTime_)};
  if (elapsed < std::numeric_limits<int32_t>::min() ||
      elapsed > std::numeric_limits<int32_t>::max()) {
    raiseRuntimeError(vb_error::kOverflow);
  }
  Variant arguments[] = {Variant(static_cast<int32_t>(elapsed))};
  raiseEvent(u"Timer", arguments);
  lastTickTime_ = millisecondClock();
}

}  // namespace ravelin

// The implementation of a platform area that the whole process uses: the native one, made on
// first use, unless another was installed (a fake, in tests).
#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace ravelin::platform {

// The implementation in place for one area. An area is an interface with a static factory for
// the system's own implementation, defined once per system (posix/, win32/), and one slot
// through which the library reaches it:
//
//   class Clock {
//    public:
//     ...
//     static std::unique_ptr<Clock> makeNative();
//   };
//   inline constexpr Slot<Clock> clock{};
//
// The library reads `clock()->now()`; tests put a fake in place with ScopedFake (fake/).
// Every Slot<Interface> object refers to the same process-wide state.
template <class Interface>
class Slot {
 public:
  // The installed implementation, or the native one, made on first use (and again after the
  // native one was put back).
  std::shared_ptr<Interface> operator()() const {
    State& state = this->state();
    std::lock_guard lock(state.mutex);
    if (!state.installed) state.installed = Interface::makeNative();
    return state.installed;
  }

  // Puts an implementation in place for the whole process and returns the one it replaces
  // (null if none was made yet); null puts the native one back. Callers that hold the old one
  // keep using it until they ask again.
  std::shared_ptr<Interface> install(std::shared_ptr<Interface> implementation) const {
    State& state = this->state();
    std::lock_guard lock(state.mutex);
    return std::exchange(state.installed, std::move(implementation));
  }

 private:
  struct State {
    std::mutex mutex;
    std::shared_ptr<Interface> installed;
  };
  static State& state() {
    static State state;
    return state;
  }
};

}  // namespace ravelin::platform

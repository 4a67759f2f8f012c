// Puts a fake in place of a platform area for the life of a scope.
#pragma once

#include <memory>
#include <ravelin/platform/slot.hpp>
#include <utility>

namespace ravelin::platform {

// Makes a Fake (from the arguments given), installs it in its area's slot and puts the previous
// implementation back on destruction. The area is the interface whose makeNative() the fake
// inherits: ScopedFake<SimulatedClock> replaces the clock.
template <class Fake>
class ScopedFake {
 public:
  using Interface = typename decltype(Fake::makeNative())::element_type;

  template <class... Arguments>
  explicit ScopedFake(Arguments&&... arguments)
      : fake_(std::make_shared<Fake>(std::forward<Arguments>(arguments)...)),
        previous_(Slot<Interface>{}.install(fake_)) {}
  ~ScopedFake() { Slot<Interface>{}.install(std::move(previous_)); }
  ScopedFake(const ScopedFake&) = delete;
  ScopedFake& operator=(const ScopedFake&) = delete;

  Fake& fake() const { return *fake_; }

 private:
  std::shared_ptr<Fake> fake_;
  std::shared_ptr<Interface> previous_;
};

}  // namespace ravelin::platform

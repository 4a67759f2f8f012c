// The running timers of each thread, keyed by a handle that the thread's loop delivers ticks
// for. Entries hold their timer weakly, so that the client's last release tears it down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace ravelin {

class TimerMM;

namespace timer_registry {

// Records the timer in the calling thread's registry (made on first use) and returns its
// handle, never 0.
uint32_t add(const std::weak_ptr<TimerMM>& timer);
// Forgets the handle; the registry goes when its last entry does.
void remove(uint32_t handle);
// The timer of that handle on the calling thread, if it is still alive.
std::shared_ptr<TimerMM> find(uint32_t handle);
// How many entries the calling thread's registry has, or nothing when it has none.
std::optional<std::size_t> size();

}  // namespace timer_registry
}  // namespace ravelin

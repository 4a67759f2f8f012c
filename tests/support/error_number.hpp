// Helpers shared by the test programs.
#pragma once

#include <cstdint>
#include <ravelin/frame/error.hpp>

namespace ravelin {

// The number of the AutomationError an action raises, or 0 when it raises none.
template <typename Action>
int32_t errorNumberOf(Action&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace ravelin

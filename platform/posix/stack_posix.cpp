// The stack budget on POSIX systems, whose main thread has 8 MB by default.
#include <ravelin/platform/stack.hpp>

namespace ravelin::platform {

std::size_t mainThreadStackBudget() {
  return std::size_t{3} << 20;
}

}  // namespace ravelin::platform

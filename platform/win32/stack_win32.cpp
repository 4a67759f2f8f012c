// The stack budget on Windows, whose main thread has 1 MB unless the program asks for more.
#include <ravelin/platform/stack.hpp>

namespace ravelin::platform {

std::size_t mainThreadStackBudget() {
  return std::size_t{640} << 10;
}

}  // namespace ravelin::platform

// Platform area "stack": how much of the main thread's stack the library's deep recursion (the
// script interpreter) may use.
#pragma once

#include <cstddef>

namespace ravelin::platform {

// The bytes of the main thread's stack that the script interpreter may use before it reports
// "Out of stack space"; the rest stays free for the deepest nesting the parser accepts. The
// system decides the stack's size: 1 MB on Windows unless the program asks for more, 8 MB on
// Linux and macOS.
std::size_t mainThreadStackBudget();

}  // namespace ravelin::platform

#include <unistd.h>

#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {

bool standardInputIsTerminal() {
  return isatty(STDIN_FILENO) == 1;
}

}  // namespace ravelin::platform

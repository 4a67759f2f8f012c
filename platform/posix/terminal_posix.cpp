#include <unistd.h>

#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {

std::vector<std::string> commandLineArguments(int argc, char** argv) {
  return std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc);
}

bool standardInputIsTerminal() {
  return isatty(STDIN_FILENO) == 1;
}

}  // namespace ravelin::platform

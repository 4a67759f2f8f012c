#include <windows.h>

#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {

// A console handle answers GetConsoleMode; a pipe or a file does not.
bool standardInputIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

}  // namespace ravelin::platform

// Platform area "terminal": the console the script host talks to, its arguments, and whether
// standard input and output are an interactive terminal.
#pragma once

#include <memory>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {

// The program's console, as the script host reads it.
class Terminal {
 public:
  virtual ~Terminal() = default;

  // The program's arguments after its name, in UTF-8, given main's argc and argv (on Windows
  // read from the wide command line instead, as the narrow one is in the ANSI code page).
  virtual std::vector<std::string> commandLineArguments(int argc, char** argv) const = 0;

  // True when standard input is a terminal (the host then offers its prompt instead of reading
  // a script from the input).
  virtual bool standardInputIsTerminal() const = 0;
  // True when standard output is a terminal (a program then shows progress that a file or a pipe
  // would only be cluttered with).
  virtual bool standardOutputIsTerminal() const = 0;

  // The implementation of the system the library runs on.
  static std::unique_ptr<Terminal> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<Terminal> terminal{};

}  // namespace ravelin::platform

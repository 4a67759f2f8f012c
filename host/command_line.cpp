#include <ravelin/host/command_line.hpp>

namespace ravelin::host {
namespace {

CommandLine usageError(std::string message) {
  CommandLine line;
  line.action = HostAction::UsageError;
  line.error = std::move(message);
  return line;
}

}  // namespace

CommandLine parseCommandLine(std::span<const std::string_view> arguments, bool inputIsTerminal) {
  CommandLine line;
  if (arguments.empty()) {
    line.action = inputIsTerminal ? HostAction::Prompt : HostAction::RunInput;
    return line;
  }
  std::size_t next = 0;
  std::string_view first = arguments[0];
  auto takeRest = [&] {
    for (std::size_t i = next; i < arguments.size(); ++i)
      line.scriptArguments.emplace_back(arguments[i]);
  };

  if (first == "--help" || first == "-h" || first == "-?") {
    line.action = HostAction::ShowHelp;
  } else if (first == "--version") {
    line.action = HostAction::ShowVersion;
  } else if (first == "--list") {
    line.action = HostAction::ListClasses;
    if (arguments.size() > 2) return usageError("--list takes at most one class name");
    if (arguments.size() == 2) line.target = arguments[1];
    return line;
  } else if (first == "-e") {
    if (arguments.size() < 2) return usageError("-e needs the code to run");
    line.action = HostAction::RunCode;
    line.target = arguments[1];
    next = 2;
    takeRest();
    return line;
  } else {
    if (first == "--") {
      if (arguments.size() < 2) return usageError("-- must be followed by a script file");
      next = 1;
    } else if (first.size() > 1 && first[0] == '-') {
      return usageError("unknown option " + std::string(first));
    }
    line.action = HostAction::RunFile;
    line.target = arguments[next];
    ++next;
    takeRest();
    return line;
  }
  if (arguments.size() > 1) {
    return usageError(std::string(first) + " takes no further arguments");
  }
  return line;
}

std::string_view usageText() {
  return "Usage: ravelin [FILE [ARGS...]]\n"
         "       ravelin -e CODE [ARGS...]\n"
         "       ravelin --list [CLASS]\n"
         "       ravelin --help | --version\n"
         "\n"
         "Runs a script of the Basic script language against the Ravelin library.\n"
         "\n"
         "  FILE           the script to run (UTF-8, or UTF-16 with a byte-order mark);\n"
         "                 '-' reads it from standard input\n"
         "  ARGS           what the script sees as WScript.Arguments\n"
         "  -e CODE        runs CODE instead of a file\n"
         "  --list         lists the library's classes and enumerations\n"
         "  --list CLASS   lists the members of CLASS\n"
         "  --help         shows this text\n"
         "  --version      shows the version\n"
         "\n"
         "Without arguments, reads the script from standard input, or offers a prompt when\n"
         "standard input is a terminal: a statement runs, an expression alone prints its value.\n"
         "\n"
         "Exit status: the code of WScript.Quit, else 0; 1 after a runtime error; 2 after a\n"
         "syntax error or a wrong command line.\n";
}

}  // namespace ravelin::host

// The command line of the `ravelin` script host: what to run and with which script arguments.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ravelin::host {

// What the host was asked to do.
enum class HostAction {
  RunFile,      // ravelin FILE [ARGS...]
  RunCode,      // ravelin -e CODE [ARGS...]
  RunInput,     // no arguments, standard input not a terminal: the script is the input
  Prompt,       // no arguments, standard input a terminal: the interactive prompt
  ShowHelp,     // --help, -h, -?
  ShowVersion,  // --version
  ListClasses,  // --list [CLASS]
  UsageError,   // anything else: `error` says what, the exit code is 2
};

struct CommandLine {
  HostAction action = HostAction::Prompt;
  // The script file for RunFile, the code for RunCode, the class for ListClasses (may be empty).
  std::string target;
  // What the script sees as WScript.Arguments.
  std::vector<std::string> scriptArguments;
  std::string error;
};

// Reads the arguments after the program name. Options come before the script; everything after
// the script file (or after -e CODE) belongs to the script, and "--" ends the options.
CommandLine parseCommandLine(std::span<const std::string_view> arguments, bool inputIsTerminal);

// The text of --help.
std::string_view usageText();

}  // namespace ravelin::host

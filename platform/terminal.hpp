// The console the script host talks to: its arguments, and whether standard input is an
// interactive terminal.
#pragma once

#include <string>
#include <vector>

namespace ravelin::platform {

// The program's arguments after its name, in UTF-8 (on Windows read from the wide command line,
// as the narrow one is in the ANSI code page).
std::vector<std::string> commandLineArguments(int argc, char** argv);

// True when standard input is a terminal (the host then offers its prompt instead of reading a
// script from the input).
bool standardInputIsTerminal();

}  // namespace ravelin::platform

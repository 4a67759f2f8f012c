// The lines the host writes on standard error when a script fails.
#pragma once

#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string>
#include <string_view>

namespace ravelin::host {

// "FILE(LINE): error NUMBER: DESCRIPTION [SOURCE]", the number in decimal as the runtime
// reports it (negative for the library's own codes); no brackets when the source is empty.
std::string runtimeErrorText(std::string_view file, const script::ScriptError& error);

// "FILE(LINE, COLUMN): syntax error NUMBER: MESSAGE".
std::string syntaxErrorText(std::string_view file, const script::SyntaxError& error);

// Exit codes of the host besides the script's own (WScript.Quit).
inline constexpr int kExitRuntimeError = 1;
inline constexpr int kExitSyntaxOrUsageError = 2;

}  // namespace ravelin::host

// The interactive prompt: statements run, an expression typed alone prints its value.
#pragma once

#include <cstdio>
#include <ravelin/base/text.hpp>
#include <ravelin/host/script/interpreter.hpp>

namespace ravelin::host {

// Whether a line typed at the prompt is an expression whose value to print, rather than a
// statement: it must parse as one expression, and not be an assignment ("x = 1" is a statement
// there, though it also reads as a comparison).
bool isExpressionInput(StringView line);

// Reads lines from `input` until its end, running each in the interpreter's global scope: the
// value of an expression goes to `output`, the prompt and errors to `errors`, and an error does
// not end the loop. Returns the exit code (WScript.Quit's, else 0). `flushOutput` runs before
// each prompt so that what the script wrote appears first.
int runPrompt(script::Interpreter& interpreter, std::FILE* input, std::FILE* output,
              std::FILE* errors, void (*flushOutput)());

}  // namespace ravelin::host

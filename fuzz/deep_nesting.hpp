// The deepest nesting of each kind that the parser accepts, as script source. The script targets
// run these once at start-up on their small stack: a legitimate script must fit there, so that
// only nesting the parser should have refused, or recursion that lacks a guard, overflows it.
#pragma once

#include <cstddef>
#include <functional>
#include <ravelin/host/script/parser.hpp>
#include <string>
#include <vector>

namespace ravelin::fuzzing {

struct NestingForm {
  const char* name;
  // The source nested `depth` deep.
  std::function<std::string(int depth)> source;
};

inline std::string repeated(const std::string& text, int times) {
  std::string result;
  result.reserve(text.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i)
    result += text;
  return result;
}

// Every form also runs to its end: the loops run once, the conditions hold.
inline std::vector<NestingForm> nestingForms() {
  auto block = [](std::string open, std::string body, std::string close) {
    return [=](int depth) { return repeated(open, depth) + body + repeated(close, depth); };
  };
  auto line = [](std::string open, std::string close) {
    return [=](int depth) { return "x = " + repeated(open, depth) + "1" + repeated(close, depth); };
  };
  return {
      {"block If", block("If True Then\n", "x = 1\n", "End If\n")},
      {"If with Else", block("If x Then\nElse\n", "x = 0\n", "End If\n")},
      {"For", block("For i = 1 To 1\n", "x = 1\n", "Next\n")},
      {"For Each", block("For Each e In Array(1)\n", "x = 1\n", "Next\n")},
      {"Do", block("Do\n", "x = 1\n", "Loop Until True\n")},
      {"While", block("While x = 0\n", "x = 1\n", "Wend\n")},
      {"Select Case", block("Select Case 1\nCase 1\n", "x = 1\n", "End Select\n")},
      {"With", block("With WScript\n", ".Echo 1\n", "End With\n")},
      {"parentheses", line("(", ")")},
      {"negation", line("-", "")},
      {"Not", line("Not ", "")},
      {"calls", line("Abs(", ")")},
      {"power", line("2 ^ -", "")},
      {"sum", [](int depth) { return "x = 1" + repeated(" + 1", depth); }},
      {"members", [](int depth) { return "x = WScript" + repeated(".Echo", depth); }},
      {"indexes", [](int depth) { return "x = Array(1)" + repeated("(0)", depth); }},
  };
}

inline bool parses(const std::string& source) {
  try {
    (void)script::parseScript(source);
    return true;
  } catch (const script::SyntaxError&) {
    return false;
  }
}

// The deepest `form` that parses, found on the calling thread (the main thread, whose stack
// holds any depth up to kMaxDepth); 0 when none does. The depths just under the parser's limits
// are tried first, then a bisection finds any other.
inline int deepestAccepted(const NestingForm& form) {
  constexpr int kMaxDepth = 4 * script::kMaxNesting;
  constexpr int kHeight = static_cast<int>(script::kMaxExpressionHeight);
  for (const int guess :
       {script::kMaxNesting - 1, kHeight - 1, kHeight - 2, script::kMaxNesting / 2 - 1}) {
    if (parses(form.source(guess)) && !parses(form.source(guess + 1))) return guess;
  }
  if (parses(form.source(kMaxDepth))) return kMaxDepth;
  int accepted = 0;
  int refused = kMaxDepth;
  while (refused - accepted > 1) {
    const int middle = accepted + (refused - accepted) / 2;
    (parses(form.source(middle)) ? accepted : refused) = middle;
  }
  return accepted;
}

}  // namespace ravelin::fuzzing

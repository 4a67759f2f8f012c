// Any bytes, read as UTF-8 script source, either parse or raise a syntax error; anything else
// (another exception, a crash, a sanitizer report) is a bug.
//
// The parse runs on a thread with a small stack (small_stack.hpp), so that nesting the parser
// does not bound overflows at a few kilobytes of input instead of megabytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ravelin/host/script/parser.hpp>
#include <ravelin/host/script/tree_printer.hpp>
#include <string>
#include <string_view>

#include "deep_nesting.hpp"
#include "small_stack.hpp"

namespace {

// The parser's stack for the deepest nesting it accepts (kMaxNesting) is at most about
// 240 KB under the address and undefined-behaviour sanitizers (the start-up check below prints
// each kind's use); twice that leaves room for frames that grow, while an unbounded
// recursion still overflows within a few thousand levels.
constexpr std::size_t kStackBytes = std::size_t{4608} << 10;

ravelin::fuzzing::SmallStack& stack() {
  static ravelin::fuzzing::SmallStack small(kStackBytes);
  return small;
}

void parseAndPrint(std::string_view source) {
  try {
    const ravelin::script::Program program = ravelin::script::parseScript(source);
    // Walking the whole tree checks that every node the parser built is complete.
    (void)ravelin::script::printProgram(program);
  } catch (const ravelin::script::SyntaxError& e) {
    if (e.line() == 0 || e.column() == 0) std::abort();
  } catch (...) {
    std::abort();
  }
}

}  // namespace

// The deepest source of each kind that the parser accepts must parse on the small stack, and the
// one a level deeper must be refused there.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::size_t most = 0;
  for (const ravelin::fuzzing::NestingForm& form : ravelin::fuzzing::nestingForms()) {
    const int depth = ravelin::fuzzing::deepestAccepted(form);
    const std::string deepest = form.source(depth);
    const std::string deeper = form.source(depth + 1);
    bool refusedAsOnTheMainThread = false;
    auto work = [&] {
      parseAndPrint(deepest);
      parseAndPrint(deeper);
      refusedAsOnTheMainThread =
          ravelin::fuzzing::parses(deepest) && !ravelin::fuzzing::parses(deeper);
    };
    const std::size_t used = stack().measure(work);
    std::fprintf(stderr, "INFO: stack: %s %d deep: %zu of %zu bytes\n", form.name, depth, used,
                 stack().size());
    if (!refusedAsOnTheMainThread) {
      std::fprintf(stderr, "%s: the limit differs from the main thread's\n", form.name);
      std::abort();
    }
    most = std::max(most, used);
  }
  std::fprintf(stderr, "INFO: stack: at most %zu of %zu bytes\n", most, stack().size());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  auto work = [source] { parseAndPrint(source); };
  stack().run(work);
  return 0;
}

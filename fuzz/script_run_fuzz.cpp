// Any bytes, read as UTF-8 script source, run with a step budget: the run ends normally or with
// a syntax error, a script error or a quit; anything else (another exception, a crash, a hang,
// a sanitizer report) is a bug. Objects come only from the library's registry, less the
// classes that act on the machine's files, and no database driver is installed (sandbox.hpp).
// Memory is bounded by memory_budget.cpp: a script that asks for too much sees error 7.
//
// The run takes place on a thread with a small stack (small_stack.hpp) and a stack budget to
// match, so that recursion without a guard overflows at depths a fuzzer reaches within the step
// budget.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string>
#include <string_view>

#include "deep_nesting.hpp"
#include "sandbox.hpp"
#include "small_stack.hpp"

namespace {

// The stack's layout, measured under the address and undefined-behaviour sanitizers by the
// start-up check below, which prints what each kind of nesting used:
// - the budget holds the deepest block nesting the parser accepts, run from the top level
//   (about 1.3 MB), so that a legitimate script never sees "Out of stack space" here that it
//   would not see on the main thread;
// - below the budget the stack holds the work that the guard does not count: the parse of the
//   deepest source (Execute and Eval parse at any depth, about 3.5 MB), or the evaluation of the
//   highest expression (about 1.2 MB), with the frames between two checks of the guard on top.
//   The deepest of these at the bottom of a recursion that reached the budget used about
//   5.1 MB; the stack leaves a quarter more.
constexpr std::size_t kStackBudget = std::size_t{2304} << 10;
constexpr std::size_t kStackBytes = std::size_t{7424} << 10;
constexpr uint64_t kStepBudget = 10000;

ravelin::fuzzing::SmallStack& stack() {
  static ravelin::fuzzing::SmallStack small(kStackBytes);
  return small;
}

// WScript's stand-in: Echo converts its argument to text as the host would, then drops it.
class Sink : public ravelin::PublicClass<Sink> {
 public:
  static constexpr ravelin::StringView kClassName = u"Sink";
  static ravelin::ClassInfo describe() {
    return ravelin::ClassBuilder<Sink>(kClassName, false)
        .method(u"Echo",
                [](Sink& self, ravelin::Variant value) {
                  if (!value.isNull() && !value.isObject()) {
                    self.units += ravelin::CStr(value).size();
                  }
                },
                {ravelin::optional(u"value")})
        .build();
  }
  std::size_t units = 0;
};

// Runs the script; returns the number of the script error that ended it, or 0.
int32_t runScript(std::string_view source, uint64_t steps) {
  ravelin::script::Interpreter interpreter;
  interpreter.setCreatable(
      [](const ravelin::ClassInfo& info) { return !ravelin::fuzzing::actsOnMachineFiles(info); });
  interpreter.addGlobalObject(u"WScript", std::make_shared<Sink>());
  interpreter.setStepBudget(steps);
  interpreter.setStackBudget(kStackBudget);
  try {
    interpreter.run(ravelin::fromUtf8(source));
  } catch (const ravelin::script::SyntaxError&) {
  } catch (const ravelin::script::ScriptError& e) {
    if (e.line() == 0 && e.number() != ravelin::script::kStepBudgetExceeded) std::abort();
    return e.number();
  } catch (const ravelin::script::ScriptQuit&) {
  } catch (...) {
    std::abort();
  }
  return 0;
}

// A recursion that runs into the guard, then, at the bottom, runs `source` through Execute.
std::string atTheBottom(std::string source) {
  for (char& c : source) {
    if (c == '\n') c = '|';
  }
  return "Dim hit\nSub r(n)\nOn Error Resume Next\nr n + 1\n"
         "If Not hit Then Execute Replace(\"hit = True|" +
         source + "\", \"|\", vbLf)\nEnd Sub\nr 1\n";
}

// Runs a legitimate script on the small stack and prints how much of it the run used; "Out of
// stack space" where `mayRunOut` is false means the budget is too small.
std::size_t check(const std::string& name, const std::string& source, bool mayRunOut) {
  int32_t error = 0;
  auto work = [&] { error = runScript(source, 0); };
  const std::size_t used = stack().measure(work);
  std::fprintf(stderr, "INFO: stack: %s: %zu of %zu bytes (error %d)\n", name.c_str(), used,
               stack().size(), static_cast<int>(error));
  if (error == ravelin::script::syntax_error::kOutOfStackSpace && !mayRunOut) {
    std::fprintf(stderr, "%s runs out of the stack budget (%zu bytes)\n", name.c_str(),
                 kStackBudget);
    std::abort();
  }
  return used;
}

}  // namespace

// The deepest nesting of each kind that the parser accepts runs on the small stack, from the top
// level and at the bottom of a recursion that reached the budget.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ravelin::fuzzing::withoutOdbcDrivers();
  std::size_t most = 0;
  for (const ravelin::fuzzing::NestingForm& form : ravelin::fuzzing::nestingForms()) {
    const int depth = ravelin::fuzzing::deepestAccepted(form);
    const std::string source = form.source(depth);
    const std::string name = std::string(form.name) + " " + std::to_string(depth) + " deep";
    const std::size_t top = check(name + " from the top", source, false);
    const std::size_t bottom = check(name + " under the budget", atTheBottom(source), true);
    most = std::max({most, top, bottom});
  }
  std::fprintf(stderr, "INFO: stack: at most %zu of %zu bytes\n", most, stack().size());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  auto work = [source] { runScript(source, kStepBudget); };
  stack().run(work);
  return 0;
}

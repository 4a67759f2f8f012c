// The interpreter of the script language: runs a parsed script with the automation runtime's
// variant semantics, late-bound calls into the library, and the runtime's error handling.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/variant.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <span>

namespace ravelin::script {

// A runtime error that no On Error Resume Next caught, with the place it happened.
class ScriptError : public AutomationError {
 public:
  ScriptError(const AutomationError& error, uint32_t line, uint32_t column)
      : AutomationError(error), line_(line), column_(column) {}
  uint32_t line() const { return line_; }
  uint32_t column() const { return column_; }

 private:
  uint32_t line_;
  uint32_t column_;
};

// The number of the error a run raises when it goes past its step budget (setStepBudget). It is
// raised as a ScriptError, which On Error Resume Next does not catch.
inline constexpr int32_t kStepBudgetExceeded = 0x7FFF0001;

// Raised by WScript.Quit to end the script with an exit code; never caught by On Error.
struct ScriptQuit {
  int exitCode = 0;
};

// Runs scripts. Objects (the library's, and the host's such as WScript) are called late-bound
// through their class's member table (Object::classInfo). A member published under the empty
// name is the object's default member (its value, and obj(index)); Object::enumerate makes an
// object a collection for For Each.
// Recursion deeper than 2000 calls, or than the stack allows, raises 28 "Out of stack space".
class Interpreter {
 public:
  Interpreter();
  ~Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // A global object the script sees by name (WScript).
  void addGlobalObject(StringView name, ObjectRef object);

  // Parses and runs a whole script. A syntax error raises SyntaxError (syntax_error.hpp); an
  // uncaught runtime error raises ScriptError; WScript.Quit raises ScriptQuit.
  void run(StringView source);

  // Runs statements typed at the interactive prompt, in the global scope of earlier input.
  void execute(StringView statements);
  // Evaluates one expression in the global scope (the prompt prints its value).
  Variant evaluate(StringView expression);

  // Calls the script's Sub or Function of that name with the arguments (by reference where the
  // procedure declares it, writing back into `arguments`); false when the script has none.
  // Events connected with WScript.ConnectObject arrive this way.
  bool callProcedure(StringView name, std::span<Variant> arguments);

  // Bounds the statements and loop iterations each call of run, execute, evaluate or
  // callProcedure may take; past it the run raises ScriptError kStepBudgetExceeded, which no
  // On Error catches. Fuzzing uses it to turn endless loops into errors. 0 (the default) means
  // no bound.
  void setStepBudget(uint64_t steps);

  // Bounds the stack each call of run, execute, evaluate or callProcedure may use, counted from
  // where it was entered; deeper recursion raises 28 "Out of stack space". 0 (the default) is
  // the budget of the main thread (platform/stack.hpp). A host that runs scripts on a thread
  // with a smaller stack gives a budget that leaves room below it for the deepest nesting the
  // parser accepts, which Execute and Eval may parse at any depth.
  void setStackBudget(std::size_t bytes);

  // Which of the library's classes CreateObject may create; all of them unless a host says
  // otherwise. A class refused raises 429, as an unknown name does. A host running scripts it
  // does not trust keeps them away from classes that reach the machine's files.
  void setCreatable(std::function<bool(const ClassInfo&)> allowed);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace ravelin::script

// The interpreter's run-time state: parsed units, global variables, call frames and the
// evaluator that walks the syntax tree. Internal to the interpreter's source files.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/frame/variant.hpp>
#include <ravelin/host/script/ast.hpp>
#include <ravelin/host/script/builtins.hpp>
#include <ravelin/host/script/err_object.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/script_limits.hpp>
#include <unordered_map>
#include <vector>

namespace ravelin::script::detail {

// Error numbers the interpreter itself raises, beyond the frame's standard ones.
namespace script_error {
inline constexpr int32_t kArrayFixed = 10;
inline constexpr int32_t kOutOfStringSpace = script::kOutOfStringSpace;
inline constexpr int32_t kOutOfStackSpace = 28;
inline constexpr int32_t kNamedArgumentNotFound = 448;
inline constexpr int32_t kNotACollection = 451;
inline constexpr int32_t kVariableUndefined = 500;
inline constexpr int32_t kIllegalAssignment = 501;
}  // namespace script_error

// The source of runtime errors raised by the script itself.
inline constexpr StringView kScriptRuntimeSource = u"Microsoft VBScript runtime error";

// The runtime's description of an error number the interpreter raises: the frame's standard
// text, the script-specific ones, else "Unknown runtime error".
String scriptErrorDescription(int32_t number);

// The value of a comparison operator (=, <>, <, >, <=, >=) on two values; Select Case's Is
// tests share it with expressions.
Variant compareBy(BinaryOp op, const Variant& a, const Variant& b, const CompareOptions& options);

// Raises a script runtime error with its description and the runtime's source.
[[noreturn]] void raiseScriptError(int32_t number);

// An error raised by a member of a library or host object: its number, source and description
// reach the script unchanged (a plain AutomationError of the frame's runtime source is re-sourced
// as a script runtime error instead).
class MemberError : public AutomationError {
 public:
  explicit MemberError(const AutomationError& error) : AutomationError(error) {}
};

// The error as the script sees it in Err: the frame's own runtime errors (conversions, operators,
// built-in functions) carry the script runtime's source.
AutomationError asScriptError(const AutomationError& error);

// Error 7 as the script sees it, for an allocation that failed (std::bad_alloc, or a container
// asked for more than it can hold).
AutomationError outOfMemoryError();

struct Unit;

// A Sub or Function with the unit whose name table its body uses.
struct ProcedureRef {
  const Procedure* procedure = nullptr;
  Unit* unit = nullptr;
};

// What a name of a unit means outside any local scope, cached on first use.
struct Binding {
  enum class Kind : uint8_t {
    Unknown,
    Global,
    Procedure,
    Builtin,
    Constant,
    ErrObject,
    CreateObject,
    Eval,
    Execute
  };
  Kind kind = Kind::Unknown;
  uint32_t global = 0;
  const ProcedureRef* procedure = nullptr;
  const Builtin* builtin = nullptr;
  Variant constant;
};

// One parsed piece of source (the script, or one line of the prompt) and its name bindings.
struct Unit {
  Program program;
  std::vector<Binding> bindings;  // by NameId, grown on demand
};

// A global variable or constant (the host's objects are constants too).
struct Global {
  Variant value;
  bool isConstant = false;
  bool fixedArray = false;  // declared with bounds: ReDim raises 10
};

// A by-reference argument that is an array element: passed as a copy and stored back into the
// element after the call, if the array still has it.
struct ElementWriteBack {
  Variant* array = nullptr;
  std::vector<int32_t> subscripts;
  Variant value;
};

// The variables and error mode of one running procedure (or of the script level).
struct Frame {
  const Procedure* procedure = nullptr;  // null at the script level
  Unit* unit = nullptr;
  std::vector<Variant> slots;
  // For a by-reference parameter, the caller's variable; null where the slot holds the value.
  std::vector<Variant*> references;
  // Names assigned in the procedure without a declaration (when Option Explicit is off).
  std::unordered_map<NameId, Variant> implicitLocals;
  std::vector<Variant> withObjects;
  std::vector<bool> fixedSlots;  // locals declared as fixed-size arrays
  bool resumeNext = false;
};

// How a statement ended: normally, or leaving its loop or procedure.
enum class Flow : uint8_t { Normal, ExitDo, ExitFor, ExitProcedure };

// The whole state of an interpreter and the tree-walking evaluator.
class Evaluator {
 public:
  Evaluator();

  // Entry points (interpreter.cpp).
  Unit& addUnit(Program program);
  void runUnit(Unit& unit);
  Variant evaluateIn(Unit& unit, const Expr& expression);
  const ProcedureRef* findProcedure(StringView name) const;
  void callFromHost(const ProcedureRef& procedure, std::span<Variant> arguments);
  void addGlobalObject(StringView name, ObjectRef object);
  void setStepBudget(uint64_t steps) { stepBudget_ = steps; }
  void setStackBudget(std::size_t bytes) { stackBudget_ = bytes; }
  void setCreatable(std::function<bool(const ClassInfo&)> allowed) {
    creatable_ = std::move(allowed);
  }
  void beginEntry();
  ScriptError toScriptError(const AutomationError& error) const;

  // Statements (evaluator_statements.cpp).
  Flow execBlock(Frame& frame, const Block& block);
  Flow execStatement(Frame& frame, const Stmt& statement);

  // Expressions (evaluator_expressions.cpp).
  Variant eval(Frame& frame, const Expr& expression);
  // The value of an expression with an object's default member taken (operators, If, Let).
  Variant evalValue(Frame& frame, const Expr& expression);
  Variant defaultValueOf(const Variant& value);

 private:
  friend class StatementRunner;

  // ---- names ----
  Binding& bindingOf(Unit& unit, NameId id, StringView spelling);
  uint32_t declareGlobal(const String& foldedName);
  // The variable a name refers to; with `create`, an undeclared name becomes a variable (500
  // under Option Explicit). Null for a name that is no variable.
  Variant* variableOf(Frame& frame, const NameExpr& name, bool create);
  // `declares`: the name is being declared (Dim, ReDim), which Option Explicit allows.
  Variant* variableOf(Frame& frame, int32_t localSlot, NameId id, StringView spelling, bool create,
                      bool declares = false);
  Variant* slotOf(Frame& frame, int32_t slot);
  bool isConstantName(Frame& frame, const NameExpr& name);
  void hoistDeclarations(Unit& unit, const Block& block);

  // ---- expressions ----
  Variant evalName(Frame& frame, const NameExpr& name, std::vector<Argument> const* args,
                   bool asStatement);
  Variant evalApply(Frame& frame, const ApplyExpr& apply);
  Variant evalMember(Frame& frame, const MemberExpr& member, const std::vector<Argument>* args,
                     bool asStatement);
  Variant evalBinary(Frame& frame, const BinaryExpr& binary);
  ObjectRef objectOf(Frame& frame, const MemberExpr& member);
  // What a member expression is applied to: its object expression, or the innermost With.
  Variant targetOf(Frame& frame, const MemberExpr& member);
  // record.field = value, for a record held by a variable; false when the target is not one.
  bool assignRecordField(Frame& frame, const MemberExpr& member, Variant& value);
  Variant indexArray(const Variant& array, Frame& frame, const std::vector<Argument>& args);
  std::vector<int32_t> subscriptsOf(Frame& frame, const std::vector<Argument>& args);
  Variant callBuiltin(Frame& frame, const Builtin& builtin, const std::vector<Argument>* args);
  Variant createObject(Frame& frame, const std::vector<Argument>* args);
  // Eval(expression) and Execute / ExecuteGlobal(statements), both in the global scope.
  Variant evalText(Frame& frame, const std::vector<Argument>* args, bool statements);

  // ---- calls ----
  Variant callScript(Frame& caller, const ProcedureRef& procedure,
                     const std::vector<Argument>* args);
  // Runs the frame's procedure (callee.procedure, fixed when the frame was made).
  Variant runProcedure(Frame& callee);
  Variant callObject(Frame& frame, const ObjectRef& object, StringView name,
                     const std::vector<Argument>* args, bool preferMethod,
                     const Variant* assigned = nullptr, bool isSet = false);
  // Calls a member, marking what it raises as the member's own error (MemberError).
  static Variant invokeMember(Object& object, const MemberInfo& member,
                              std::vector<CallArgument>& arguments);
  // The variable behind a by-reference argument, or null for an expression; an array element
  // is copied into `writeBacks`.
  Variant* referenceTo(Frame& frame, const Expr& expression,
                       std::deque<ElementWriteBack>& writeBacks);
  void storeWriteBacks(std::deque<ElementWriteBack>& writeBacks);
  // The array a variable holds, ready for writing (copied when shared, which costs steps).
  SafeArray& writableArray(Variant& variable);

  // ---- assignment ----
  void assign(Frame& frame, const Expr& target, Variant value, bool isSet);

  void checkStack();

 public:
  // ---- limits ----
  // Counts one statement or loop iteration against the budget.
  void countStep();
  // Charges work that grows with the size of its data (building a long text or a large array)
  // as that many steps, so a budget also bounds the time such work takes.
  void chargeSteps(std::size_t steps);
  // The steps charged per array element and per unit of text built.
  static constexpr std::size_t kElementsPerStep = 64;
  static constexpr std::size_t kTextUnitsPerStep = 1024;
  // The size limits (kMaxTextLength, kMaxArrayElements) are shared with the built-in
  // functions in script_limits.hpp.

  // ---- state ----
  bool optionExplicit = false;
  std::vector<std::unique_ptr<Unit>> units;
  std::deque<Global> globals;                        // stable addresses for by-reference use
  std::unordered_map<String, uint32_t> globalIndex;  // upper-case name -> globals
  std::unordered_map<String, std::unique_ptr<ProcedureRef>> procedures;  // by upper-case name
  std::shared_ptr<ErrObject> err;
  Frame topFrame;      // the script level, kept between lines of the prompt
  SourcePos position;  // the statement running, for error positions
  // Nested entries (an event delivered while the script runs) keep the outer entry's counters.
  int entries = 0;

 private:
  uint64_t stepBudget_ = 0;
  uint64_t steps_ = 0;
  int callDepth_ = 0;
  std::size_t stackBudget_ = 0;                      // 0: the main thread's (platform/stack.hpp)
  std::function<bool(const ClassInfo&)> creatable_;  // empty: every class
  const char* stackBase_ = nullptr;
};

// How an operand takes part in a comparison: a literal written in the script (also with a
// sign, -1) keeps its type; anything else is a Variant.
inline OperandKind operandKindOf(const Expr& e) {
  if (e.parenthesized) return OperandKind::Variant;
  if (e.kind == ExprKind::Literal) return OperandKind::Literal;
  if (e.kind == ExprKind::Unary) {
    const auto& unary = static_cast<const UnaryExpr&>(e);
    if (unary.op != UnaryOp::Not && unary.operand->kind == ExprKind::Literal &&
        !unary.operand->parenthesized) {
      return OperandKind::Literal;
    }
  }
  return OperandKind::Variant;
}

// The value of a predefined constant (vbCrLf, vbObjectError...) by name, any case.
std::optional<Variant> predefinedConstant(StringView name);

}  // namespace ravelin::script::detail

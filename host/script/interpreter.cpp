// The interpreter's entry points, name binding and error text.
#include <algorithm>
#include <cstdint>
#include <new>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/parser.hpp>
#include <ravelin/host/script/script_scope.hpp>
#include <ravelin/platform/stack.hpp>
#include <stdexcept>

namespace ravelin::script {

namespace detail {

namespace {

// A run that consumes more stack than this raises "Out of stack space"; it leaves room below
// for the deepest expression and statement nesting the parser accepts.
const std::uintptr_t kStackLimit = platform::mainThreadStackBudget();
// The deepest a script's own procedures may call each other.
constexpr int kMaxCallDepth = 2000;

constexpr StringView kUnknownRuntimeError = u"Unknown runtime error";

}  // namespace

String scriptErrorDescription(int32_t number) {
  switch (number) {
    case script_error::kArrayFixed:
      return u"This array is fixed or temporarily locked";
    case script_error::kOutOfStringSpace:
      return u"Out of string space";
    case script_error::kOutOfStackSpace:
      return u"Out of stack space";
    case 35:
      return u"Sub or Function not defined";
    case script_error::kNamedArgumentNotFound:
      return u"Named argument not found";
    case script_error::kNotACollection:
      return u"Object not a collection";
    case script_error::kVariableUndefined:
      return u"Variable is undefined";
    case script_error::kIllegalAssignment:
      return u"Illegal assignment";
    default:
      break;
  }
  const StringView standard = standardErrorDescription(number);
  if (standard == standardErrorDescription(-1)) return String(kUnknownRuntimeError);
  return String(standard);
}

void raiseScriptError(int32_t number) {
  throw AutomationError(number, String(kScriptRuntimeSource), scriptErrorDescription(number));
}

AutomationError asScriptError(const AutomationError& error) {
  if (dynamic_cast<const MemberError*>(&error) == nullptr &&
      error.source() == kRuntimeErrorSource) {
    return AutomationError(error.number(), String(kScriptRuntimeSource),
                           scriptErrorDescription(error.number()));
  }
  return AutomationError(error.number(), error.source(), error.description());
}

AutomationError outOfMemoryError() {
  return AutomationError(vb_error::kOutOfMemory, String(kScriptRuntimeSource), u"Out of memory");
}

Evaluator::Evaluator() : err(makeObject<ErrObject>()) {}

Unit& Evaluator::addUnit(Program program) {
  auto unit = std::make_unique<Unit>();
  unit->program = std::move(program);
  unit->bindings.resize(unit->program.names.size());
  if (unit->program.optionExplicit) optionExplicit = true;
  for (const auto& procedure : unit->program.procedures) {
    auto& slot = procedures[toUpper(procedure->name)];
    if (!slot) slot = std::make_unique<ProcedureRef>();
    slot->procedure = procedure.get();
    slot->unit = unit.get();
  }
  units.push_back(std::move(unit));
  return *units.back();
}

uint32_t Evaluator::declareGlobal(const String& upperName) {
  auto [it, added] = globalIndex.try_emplace(upperName, static_cast<uint32_t>(globals.size()));
  if (added) globals.emplace_back();
  return it->second;
}

Binding& Evaluator::bindingOf(Unit& unit, NameId id, StringView spelling) {
  if (id >= unit.bindings.size()) unit.bindings.resize(unit.program.names.size());
  Binding& binding = unit.bindings[id];
  if (binding.kind != Binding::Kind::Unknown) return binding;
  const String upper = toUpper(spelling);
  if (auto it = globalIndex.find(upper); it != globalIndex.end()) {
    binding.kind = Binding::Kind::Global;
    binding.global = it->second;
  } else if (auto proc = procedures.find(upper); proc != procedures.end()) {
    binding.kind = Binding::Kind::Procedure;
    binding.procedure = proc->second.get();
  } else if (upper == u"ERR") {
    binding.kind = Binding::Kind::ErrObject;
  } else if (upper == u"CREATEOBJECT") {
    binding.kind = Binding::Kind::CreateObject;
  } else if (upper == u"EVAL") {
    binding.kind = Binding::Kind::Eval;
  } else if (upper == u"EXECUTE" || upper == u"EXECUTEGLOBAL") {
    binding.kind = Binding::Kind::Execute;
  } else if (const Builtin* builtin = findBuiltin(spelling)) {
    binding.kind = Binding::Kind::Builtin;
    binding.builtin = builtin;
  } else if (auto constant = predefinedConstant(spelling)) {
    binding.kind = Binding::Kind::Constant;
    binding.constant = std::move(*constant);
  } else if (auto value = libraryRegistry().findEnumValue(spelling)) {
    binding.kind = Binding::Kind::Constant;
    binding.constant = Variant(*value);
  }
  return binding;
}

Variant* Evaluator::slotOf(Frame& frame, int32_t slot) {
  const auto index = static_cast<std::size_t>(slot);
  if (index < frame.references.size() && frame.references[index] != nullptr) {
    return frame.references[index];
  }
  return &frame.slots[index];
}

Variant* Evaluator::variableOf(Frame& frame, const NameExpr& name, bool create) {
  return variableOf(frame, name.localSlot, name.id, name.name, create);
}

Variant* Evaluator::variableOf(Frame& frame, int32_t localSlot, NameId id, StringView spelling,
                               bool create, bool declares) {
  if (localSlot != kNoSlot && frame.procedure != nullptr) return slotOf(frame, localSlot);
  if (frame.procedure != nullptr && !frame.implicitLocals.empty()) {
    if (auto it = frame.implicitLocals.find(id); it != frame.implicitLocals.end()) {
      return &it->second;
    }
  }
  Binding& binding = bindingOf(*frame.unit, id, spelling);
  if (binding.kind == Binding::Kind::Global) return &globals[binding.global].value;
  if (binding.kind != Binding::Kind::Unknown || !create) return nullptr;
  if (optionExplicit && !declares) raiseScriptError(script_error::kVariableUndefined);
  if (frame.procedure != nullptr) return &frame.implicitLocals[id];
  binding.kind = Binding::Kind::Global;
  binding.global = declareGlobal(toUpper(spelling));
  return &globals[binding.global].value;
}

bool Evaluator::isConstantName(Frame& frame, const NameExpr& name) {
  if (name.localSlot != kNoSlot) {
    const auto& constants = frame.procedure->constantSlots;
    return std::find(constants.begin(), constants.end(), name.localSlot) != constants.end();
  }
  if (frame.implicitLocals.count(name.id) != 0) return false;
  const Binding& binding = bindingOf(*frame.unit, name.id, name.name);
  return binding.kind == Binding::Kind::Global && globals[binding.global].isConstant;
}

void Evaluator::hoistDeclarations(Unit& unit, const Block& block) {
  auto hoistBlock = [&](const Block& inner) { hoistDeclarations(unit, inner); };
  for (const StmtPtr& statement : block) {
    switch (statement->kind) {
      case StmtKind::Dim:
        for (const DimVariable& variable : static_cast<const DimStmt&>(*statement).variables) {
          declareGlobal(toUpper(variable.name));
        }
        break;
      case StmtKind::Const:
        for (const ConstDefinition& constant :
             static_cast<const ConstStmt&>(*statement).constants) {
          Global& global = globals[declareGlobal(toUpper(constant.name))];
          global.value = constant.value;
          global.isConstant = true;
        }
        break;
      case StmtKind::If: {
        const auto& s = static_cast<const IfStmt&>(*statement);
        for (const IfBranch& branch : s.branches)
          hoistBlock(branch.body);
        hoistBlock(s.elseBody);
        break;
      }
      case StmtKind::Select: {
        const auto& s = static_cast<const SelectStmt&>(*statement);
        for (const CaseClause& clause : s.cases)
          hoistBlock(clause.body);
        hoistBlock(s.elseBody);
        break;
      }
      case StmtKind::For:
        hoistBlock(static_cast<const ForStmt&>(*statement).body);
        break;
      case StmtKind::ForEach:
        hoistBlock(static_cast<const ForEachStmt&>(*statement).body);
        break;
      case StmtKind::Do:
        hoistBlock(static_cast<const DoStmt&>(*statement).body);
        break;
      case StmtKind::With:
        hoistBlock(static_cast<const WithStmt&>(*statement).body);
        break;
      default:
        break;
    }
  }
}

void Evaluator::runUnit(Unit& unit) {
  hoistDeclarations(unit, unit.program.body);
  topFrame.unit = &unit;
  topFrame.withObjects.clear();
  execBlock(topFrame, unit.program.body);
}

Variant Evaluator::evaluateIn(Unit& unit, const Expr& expression) {
  topFrame.unit = &unit;
  return eval(topFrame, expression);
}

const ProcedureRef* Evaluator::findProcedure(StringView name) const {
  auto it = procedures.find(toUpper(name));
  return it == procedures.end() ? nullptr : it->second.get();
}

void Evaluator::addGlobalObject(StringView name, ObjectRef object) {
  Global& global = globals[declareGlobal(toUpper(name))];
  global.value = Variant(std::move(object));
  global.isConstant = true;
}

void Evaluator::beginEntry() {
  if (entries > 1) return;
  char here = 0;
  stackBase_ = &here;
  steps_ = 0;
  callDepth_ = 0;
}

void Evaluator::countStep() {
  if (stepBudget_ != 0 && ++steps_ > stepBudget_) {
    throw ScriptError(AutomationError(kStepBudgetExceeded, u"ravelin", u"Step budget exceeded"),
                      position.line, position.column);
  }
}

void Evaluator::chargeSteps(std::size_t steps) {
  if (stepBudget_ == 0 || steps == 0) return;
  steps_ += steps - 1;
  countStep();
}

void Evaluator::checkStack() {
  char here = 0;
  const auto base = reinterpret_cast<std::uintptr_t>(stackBase_);
  const auto now = reinterpret_cast<std::uintptr_t>(&here);
  const std::uintptr_t used = base > now ? base - now : now - base;
  const std::uintptr_t limit = stackBudget_ != 0 ? stackBudget_ : kStackLimit;
  if (stackBase_ != nullptr && used > limit) {
    raiseScriptError(script_error::kOutOfStackSpace);
  }
}

ScriptError Evaluator::toScriptError(const AutomationError& error) const {
  if (const auto* scriptError = dynamic_cast<const ScriptError*>(&error)) return *scriptError;
  return ScriptError(asScriptError(error), position.line, position.column);
}

Variant Evaluator::runProcedure(Frame& callee) {
  if (callDepth_ >= kMaxCallDepth) raiseScriptError(script_error::kOutOfStackSpace);
  checkStack();
  ++callDepth_;
  struct DepthGuard {
    int& depth;
    ~DepthGuard() { --depth; }
  } guard{callDepth_};
  // The frame's own definition: the procedure's name may be given a new one while it runs.
  const Procedure& proc = *callee.procedure;
  execBlock(callee, proc.body);
  const int32_t result = proc.resultSlot;
  if (result == kNoSlot) return Variant();
  return std::move(callee.slots[static_cast<std::size_t>(result)]);
}

void Evaluator::callFromHost(const ProcedureRef& procedure, std::span<Variant> arguments) {
  const Procedure& proc = *procedure.procedure;
  if (arguments.size() > proc.parameters.size()) {
    raiseScriptError(vb_error::kWrongArgumentCount);
  }
  Frame callee;
  callee.procedure = &proc;
  callee.unit = procedure.unit;
  callee.slots.resize(proc.slotNames.size());
  callee.references.resize(proc.parameters.size(), nullptr);
  for (std::size_t i = 0; i < proc.parameters.size(); ++i) {
    const Parameter& parameter = proc.parameters[i];
    if (i >= arguments.size()) {
      if (!parameter.optional) raiseScriptError(vb_error::kWrongArgumentCount);
      callee.slots[i] = parameter.defaultValue;
    } else if (parameter.byRef) {
      callee.references[i] = &arguments[i];
    } else {
      callee.slots[i] = arguments[i];
    }
  }
  runProcedure(callee);
}

}  // namespace detail

struct Interpreter::State {
  detail::Evaluator evaluator;
};

Interpreter::Interpreter() : state_(std::make_unique<State>()) {}

Interpreter::~Interpreter() = default;

void Interpreter::addGlobalObject(StringView name, ObjectRef object) {
  state_->evaluator.addGlobalObject(name, std::move(object));
}

namespace {

// Runs `work` as one entry into the script, turning an uncaught runtime error into ScriptError.
template <typename Work>
auto enter(detail::Evaluator& evaluator, Work work) {
  ++evaluator.entries;
  struct EntryGuard {
    int& entries;
    ~EntryGuard() { --entries; }
  } guard{evaluator.entries};
  evaluator.beginEntry();
  try {
    return work();
  } catch (const ScriptError&) {
    throw;
  } catch (const SyntaxError&) {
    throw;
  } catch (const AutomationError& error) {
    throw evaluator.toScriptError(error);
  } catch (const std::bad_alloc&) {
    throw evaluator.toScriptError(detail::outOfMemoryError());
  } catch (const std::length_error&) {
    throw evaluator.toScriptError(detail::outOfMemoryError());
  }
}

}  // namespace

void Interpreter::run(StringView source) {
  execute(source);
}

void Interpreter::execute(StringView statements) {
  detail::Unit& unit = state_->evaluator.addUnit(parseScript(statements));
  enter(state_->evaluator, [&] { state_->evaluator.runUnit(unit); });
}

Variant Interpreter::evaluate(StringView expression) {
  Program program;
  ExprPtr tree = parseExpression(expression, program.names);
  detail::Unit& unit = state_->evaluator.addUnit(std::move(program));
  return enter(state_->evaluator, [&] { return state_->evaluator.evaluateIn(unit, *tree); });
}

bool Interpreter::callProcedure(StringView name, std::span<Variant> arguments) {
  const detail::ProcedureRef* procedure = state_->evaluator.findProcedure(name);
  if (procedure == nullptr) return false;
  enter(state_->evaluator, [&] { state_->evaluator.callFromHost(*procedure, arguments); });
  return true;
}

void Interpreter::setStepBudget(uint64_t steps) {
  state_->evaluator.setStepBudget(steps);
}

void Interpreter::setStackBudget(std::size_t bytes) {
  state_->evaluator.setStackBudget(bytes);
}

void Interpreter::setCreatable(std::function<bool(const ClassInfo&)> allowed) {
  state_->evaluator.setCreatable(std::move(allowed));
}

}  // namespace ravelin::script

// Statements: declarations, assignment, calls, the branches and loops, With and On Error.
#include <algorithm>
#include <cstdint>
#include <new>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/script_scope.hpp>
#include <stdexcept>

namespace ravelin::script::detail {
namespace {

bool isTrue(const Variant& v) {
  return v.type() == VarType::Boolean && v.asBoolean();
}

// A For loop's start, end or step: numbers, dates, Empty and Boolean as they are, text read as a
// Double as the arithmetic reads it (a text counter would compare above every number). Null
// raises 94, anything else 13.
Variant loopValue(Variant value) {
  switch (value.type()) {
    case VarType::Empty:
    case VarType::Boolean:
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
      return value;
    case VarType::String:
      return Variant(CDbl(value));
    case VarType::Null:
      raiseScriptError(vb_error::kInvalidUseOfNull);
    default:
      raiseScriptError(vb_error::kTypeMismatch);
  }
}

}  // namespace

// Runs the statements of one kind; a small friend of the evaluator so that each statement has
// its own function.
class StatementRunner {
 public:
  StatementRunner(Evaluator& evaluator, Frame& frame) : e_(evaluator), frame_(frame) {}

  bool condition(const Expr& expression) {
    const Variant value = e_.evalValue(frame_, expression);
    if (value.isNull()) return false;
    return CBool(value);
  }

  Flow call(const CallStmt& s) {
    switch (s.callee->kind) {
      case ExprKind::Name:
        e_.evalName(frame_, static_cast<const NameExpr&>(*s.callee), &s.args, true);
        break;
      case ExprKind::Member:
        e_.evalMember(frame_, static_cast<const MemberExpr&>(*s.callee), &s.args, true);
        break;
      default: {
        const Variant callee = e_.eval(frame_, *s.callee);
        if (!s.args.empty()) {
          if (!callee.isObject()) raiseScriptError(vb_error::kTypeMismatch);
          e_.callObject(frame_, callee.asObject(), u"", &s.args, true);
        }
      }
    }
    return Flow::Normal;
  }

  // The array of Dim, ReDim and ReDim Preserve: bounds 0 to each upper bound. More dimensions
  // than an array may have, or an upper bound below -1, raise 9; more elements than an array may
  // hold raise 7, a single dimension too, since an empty one makes the product 0.
  SafeArray newArray(const std::vector<ExprPtr>& bounds) {
    if (bounds.size() > kMaxArrayDimensions) raiseScriptError(vb_error::kSubscriptOutOfRange);
    SafeArray array;
    uint64_t total = 1;
    for (const ExprPtr& bound : bounds) {
      const int32_t upper = CLng(e_.evalValue(frame_, *bound));
      if (upper < -1) raiseScriptError(vb_error::kSubscriptOutOfRange);
      // At most 2^31, and total is at most kMaxArrayElements here, so neither overflows.
      const auto count = static_cast<uint64_t>(int64_t{upper} + 1);
      total *= count;
      if (count > kMaxArrayElements || total > kMaxArrayElements) {
        raiseScriptError(vb_error::kOutOfMemory);
      }
      array.bounds.push_back(SafeArray::Bound{0, static_cast<int32_t>(count)});
    }
    const auto elements = static_cast<std::size_t>(total);
    e_.chargeSteps(elements / Evaluator::kElementsPerStep);
    array.elements.resize(elements);
    return array;
  }

  Variant* declared(const DimVariable& v) {
    return e_.variableOf(frame_, v.localSlot, v.id, v.name, true, true);
  }

  // Whether a variable is a fixed-size array (Dim a(3)), which ReDim may not resize; with
  // `mark`, records that it is one.
  bool fixedArray(const DimVariable& v, bool mark) {
    if (frame_.procedure != nullptr && v.localSlot != kNoSlot) {
      const auto slot = static_cast<std::size_t>(v.localSlot);
      if (mark && frame_.fixedSlots.size() <= slot) frame_.fixedSlots.resize(slot + 1);
      if (slot >= frame_.fixedSlots.size()) return false;
      if (mark) frame_.fixedSlots[slot] = true;
      return frame_.fixedSlots[slot];
    }
    const auto it = e_.globalIndex.find(toUpper(v.name));
    if (it == e_.globalIndex.end()) return false;
    Global& global = e_.globals[it->second];
    if (mark) global.fixedArray = true;
    return global.fixedArray;
  }

  // Whether a name read in a statement is a fixed-size array (its local slot or its global).
  bool isFixedArray(const NameExpr& name) {
    if (name.localSlot != kNoSlot) {
      const auto slot = static_cast<std::size_t>(name.localSlot);
      return slot < frame_.fixedSlots.size() && frame_.fixedSlots[slot];
    }
    if (frame_.procedure != nullptr && frame_.implicitLocals.count(name.id) != 0) return false;
    const auto it = e_.globalIndex.find(toUpper(name.name));
    return it != e_.globalIndex.end() && e_.globals[it->second].fixedArray;
  }

  Flow dim(const DimStmt& s) {
    for (const DimVariable& v : s.variables) {
      if (!v.isArray) continue;
      if (!v.bounds.empty()) fixedArray(v, true);
      Variant* variable = declared(v);
      if (variable->isArray()) continue;
      *variable = Variant(newArray(v.bounds));
    }
    return Flow::Normal;
  }

  Flow reDim(const ReDimStmt& s) {
    for (const DimVariable& v : s.variables) {
      if (fixedArray(v, false)) raiseScriptError(script_error::kArrayFixed);
      SafeArray resized = newArray(v.bounds);
      Variant* variable = declared(v);
      if (s.preserve && variable->isArray()) {
        const SafeArray& old = variable->asArray();
        if (!old.bounds.empty()) {
          if (old.bounds.size() != resized.bounds.size()) {
            raiseScriptError(vb_error::kSubscriptOutOfRange);
          }
          for (std::size_t d = 0; d + 1 < old.bounds.size(); ++d) {
            if (old.bounds[d].count != resized.bounds[d].count ||
                old.bounds[d].lower != resized.bounds[d].lower) {
              raiseScriptError(vb_error::kSubscriptOutOfRange);
            }
          }
          // Only the last dimension changes, so the kept elements are a prefix in storage.
          const std::size_t keep = std::min(old.elements.size(), resized.elements.size());
          for (std::size_t i = 0; i < keep; ++i)
            resized.elements[i] = old.elements[i];
        }
      }
      *variable = Variant(std::move(resized));
    }
    return Flow::Normal;
  }

  // Erase: a fixed-size array keeps its bounds with every element back to Empty; a dynamic one
  // loses its storage (as after Dim a()) until the next ReDim. Anything else is a type mismatch.
  Flow erase(const EraseStmt& s) {
    const NameExpr& name = *s.array;
    Variant* variable = e_.variableOf(frame_, name, false);
    if (variable == nullptr || !variable->isArray()) raiseScriptError(vb_error::kTypeMismatch);
    if (isFixedArray(name)) {
      SafeArray& array = e_.writableArray(*variable);
      e_.chargeSteps(array.elements.size() / Evaluator::kElementsPerStep);
      std::fill(array.elements.begin(), array.elements.end(), zeroValueOf(array.elementType));
    } else {
      *variable = Variant(SafeArray{});
    }
    return Flow::Normal;
  }

  Flow constant(const ConstStmt& s) {
    if (frame_.procedure == nullptr) return Flow::Normal;  // declared before the script runs
    for (const ConstDefinition& c : s.constants) {
      if (c.localSlot != kNoSlot) *e_.slotOf(frame_, c.localSlot) = c.value;
    }
    return Flow::Normal;
  }

  // Under On Error Resume Next a condition that raises an error counts as true: the runtime
  // resumes with the next statement, the first of the branch's body.
  bool branchTaken(const Expr& expression) {
    if (!frame_.resumeNext) return condition(expression);
    try {
      return condition(expression);
    } catch (const ScriptError&) {
      throw;
    } catch (const AutomationError& error) {
      e_.err->set(asScriptError(error));
      return true;
    }
  }

  Flow ifStatement(const IfStmt& s) {
    for (const IfBranch& branch : s.branches) {
      if (branchTaken(*branch.condition)) return e_.execBlock(frame_, branch.body);
    }
    return e_.execBlock(frame_, s.elseBody);
  }

  bool matches(const Variant& subject, OperandKind subjectKind, const CaseTest& test) {
    const Variant value = e_.evalValue(frame_, *test.value);
    const CompareOptions options{CompareMode::Binary, subjectKind, operandKindOf(*test.value)};
    switch (test.kind) {
      case CaseTest::Kind::Value:
        return isTrue(equalTo(subject, value, options));
      case CaseTest::Kind::Is:
        return isTrue(compareBy(test.comparison, subject, value, options));
      case CaseTest::Kind::Range: {
        const Variant upper = e_.evalValue(frame_, *test.upper);
        const CompareOptions upperOptions{CompareMode::Binary, subjectKind,
                                          operandKindOf(*test.upper)};
        return isTrue(greaterThanOrEqual(subject, value, options)) &&
               isTrue(lessThanOrEqual(subject, upper, upperOptions));
      }
    }
    return false;
  }

  Flow select(const SelectStmt& s) {
    const Variant subject = e_.evalValue(frame_, *s.subject);
    const OperandKind subjectKind = operandKindOf(*s.subject);
    for (const CaseClause& clause : s.cases) {
      e_.position = clause.pos;
      for (const CaseTest& test : clause.tests) {
        if (matches(subject, subjectKind, test)) return e_.execBlock(frame_, clause.body);
      }
    }
    return s.hasElse ? e_.execBlock(frame_, s.elseBody) : Flow::Normal;
  }

  Variant& counter(const NameExpr& name) {
    if (e_.isConstantName(frame_, name)) raiseScriptError(script_error::kIllegalAssignment);
    Variant* variable = e_.variableOf(frame_, name, true);
    if (variable == nullptr) raiseScriptError(script_error::kIllegalAssignment);
    return *variable;
  }

  // The counter starts as the start value and each pass adds the step with the language's own
  // addition, so its type follows the sum: an Integer counter becomes a Long past 32767, an
  // Integer start with a Double step is a Double from the second pass.
  Flow forLoop(const ForStmt& s) {
    Variant start = e_.evalValue(frame_, *s.from);
    Variant end = e_.evalValue(frame_, *s.to);
    Variant step = s.step ? e_.evalValue(frame_, *s.step) : Variant(int16_t{1});
    start = loopValue(std::move(start));
    end = loopValue(std::move(end));
    step = loopValue(std::move(step));
    const bool descending = compare(step, Variant(int16_t{0})) == Comparison::Less;
    counter(*s.variable) = std::move(start);
    for (;;) {
      const Comparison c = compare(counter(*s.variable), end);
      if (c == Comparison::Null || c == (descending ? Comparison::Less : Comparison::Greater)) {
        break;
      }
      e_.countStep();
      const Flow flow = e_.execBlock(frame_, s.body);
      if (flow == Flow::ExitFor) break;
      if (flow != Flow::Normal) return flow;
      Variant& variable = counter(*s.variable);
      variable = add(variable, step);
    }
    return Flow::Normal;
  }

  Flow forEach(const ForEachStmt& s) {
    const Variant collection = e_.eval(frame_, *s.collection);
    std::vector<Variant> items;
    if (collection.isArray()) {
      // The loop walks the array as it was when the loop started.
      items = collection.asArray().elements;
    } else if (!collection.isObject() || !collection.asObject() ||
               !collection.asObject()->enumerate(items)) {
      raiseScriptError(script_error::kNotACollection);
    }
    e_.chargeSteps(items.size() / Evaluator::kElementsPerStep);
    for (Variant& item : items) {
      e_.countStep();
      counter(*s.variable) = std::move(item);
      const Flow flow = e_.execBlock(frame_, s.body);
      if (flow == Flow::ExitFor) break;
      if (flow != Flow::Normal) return flow;
    }
    return Flow::Normal;
  }

  bool keepsLooping(const DoStmt& s) {
    if (s.test == DoStmt::Test::None) return true;
    const bool value = condition(*s.condition);
    return s.test == DoStmt::Test::While ? value : !value;
  }

  Flow doLoop(const DoStmt& s) {
    for (;;) {
      if (s.testAtTop && !keepsLooping(s)) break;
      e_.countStep();
      const Flow flow = e_.execBlock(frame_, s.body);
      if (flow == Flow::ExitDo && !s.isWhileWend) break;
      if (flow != Flow::Normal) return flow;
      if (!s.testAtTop && !keepsLooping(s)) break;
    }
    return Flow::Normal;
  }

  Flow with(const WithStmt& s) {
    frame_.withObjects.push_back(e_.eval(frame_, *s.object));
    struct Pop {
      std::vector<Variant>& objects;
      ~Pop() { objects.pop_back(); }
    } pop{frame_.withObjects};
    return e_.execBlock(frame_, s.body);
  }

 private:
  Evaluator& e_;
  Frame& frame_;
};

Flow Evaluator::execBlock(Frame& frame, const Block& block) {
  checkStack();
  for (const StmtPtr& statement : block) {
    Flow flow = Flow::Normal;
    if (!frame.resumeNext) {
      flow = execStatement(frame, *statement);
    } else {
      try {
        flow = execStatement(frame, *statement);
      } catch (const ScriptError&) {
        throw;
      } catch (const AutomationError& error) {
        // On Error Resume Next: note the error and go on with the next statement.
        err->set(asScriptError(error));
      } catch (const std::bad_alloc&) {
        err->set(outOfMemoryError());
      } catch (const std::length_error&) {
        err->set(outOfMemoryError());
      }
    }
    if (flow != Flow::Normal) return flow;
  }
  return Flow::Normal;
}

Flow Evaluator::execStatement(Frame& frame, const Stmt& statement) {
  position = statement.pos;
  countStep();
  StatementRunner run(*this, frame);
  switch (statement.kind) {
    case StmtKind::Assign: {
      const auto& s = static_cast<const AssignStmt&>(statement);
      assign(frame, *s.target, eval(frame, *s.value), s.isSet);
      return Flow::Normal;
    }
    case StmtKind::Call:
      return run.call(static_cast<const CallStmt&>(statement));
    case StmtKind::Dim:
      return run.dim(static_cast<const DimStmt&>(statement));
    case StmtKind::ReDim:
      return run.reDim(static_cast<const ReDimStmt&>(statement));
    case StmtKind::Erase:
      return run.erase(static_cast<const EraseStmt&>(statement));
    case StmtKind::Const:
      return run.constant(static_cast<const ConstStmt&>(statement));
    case StmtKind::If:
      return run.ifStatement(static_cast<const IfStmt&>(statement));
    case StmtKind::Select:
      return run.select(static_cast<const SelectStmt&>(statement));
    case StmtKind::For:
      return run.forLoop(static_cast<const ForStmt&>(statement));
    case StmtKind::ForEach:
      return run.forEach(static_cast<const ForEachStmt&>(statement));
    case StmtKind::Do:
      return run.doLoop(static_cast<const DoStmt&>(statement));
    case StmtKind::Exit:
      switch (static_cast<const ExitStmt&>(statement).target) {
        case ExitStmt::Target::Do:
          return Flow::ExitDo;
        case ExitStmt::Target::For:
          return Flow::ExitFor;
        case ExitStmt::Target::Sub:
        case ExitStmt::Target::Function:
          return Flow::ExitProcedure;
      }
      return Flow::Normal;
    case StmtKind::OnError:
      frame.resumeNext = static_cast<const OnErrorStmt&>(statement).resumeNext;
      err->clear();
      return Flow::Normal;
    case StmtKind::With:
      return run.with(static_cast<const WithStmt&>(statement));
  }
  return Flow::Normal;
}

}  // namespace ravelin::script::detail

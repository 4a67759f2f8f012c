// Expressions: names, calls into the script's procedures, the built-in functions and objects'
// members, array elements, operators and assignment targets.
#include <algorithm>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/frame/records.hpp>
#include <ravelin/host/script/parser.hpp>
#include <ravelin/host/script/script_scope.hpp>

namespace ravelin::script::detail {
namespace {

std::size_t textLength(const Variant& v) {
  return v.isString() ? v.asString().size() : 0;
}

}  // namespace

Variant compareBy(BinaryOp op, const Variant& a, const Variant& b, const CompareOptions& options) {
  switch (op) {
    case BinaryOp::NotEqual:
      return notEqualTo(a, b, options);
    case BinaryOp::Less:
      return lessThan(a, b, options);
    case BinaryOp::Greater:
      return greaterThan(a, b, options);
    case BinaryOp::LessEqual:
      return lessThanOrEqual(a, b, options);
    case BinaryOp::GreaterEqual:
      return greaterThanOrEqual(a, b, options);
    default:
      return equalTo(a, b, options);
  }
}

namespace {

// Whether the object's default member gives a value when called without arguments.
bool hasValueWithoutArguments(const Object& object) {
  const MemberInfo* member = findDefaultMember(object);
  if (member == nullptr) return false;
  return std::all_of(member->parameters.begin(), member->parameters.end(),
                     [](const ParameterInfo& parameter) { return parameter.optional; });
}

}  // namespace

Variant Evaluator::defaultValueOf(const Variant& value) {
  if (!value.isObject()) return value;
  const ObjectRef& object = value.asObject();
  if (!object) raiseScriptError(vb_error::kObjectNotSet);
  const MemberInfo* member = findDefaultMember(*object);
  if (member == nullptr) raiseScriptError(vb_error::kMemberNotSupported);
  for (const ParameterInfo& parameter : member->parameters) {
    // A default member that needs an index has no value of its own.
    if (!parameter.optional) raiseScriptError(vb_error::kWrongArgumentCount);
  }
  std::vector<CallArgument> none;
  return invokeMember(*object, *member, none);
}

Variant Evaluator::evalValue(Frame& frame, const Expr& expression) {
  Variant value = eval(frame, expression);
  if (value.isObject()) return defaultValueOf(value);
  return value;
}

Variant Evaluator::eval(Frame& frame, const Expr& expression) {
  switch (expression.kind) {
    case ExprKind::Literal:
      return static_cast<const LiteralExpr&>(expression).value;
    case ExprKind::Name:
      return evalName(frame, static_cast<const NameExpr&>(expression), nullptr, false);
    case ExprKind::Member:
      return evalMember(frame, static_cast<const MemberExpr&>(expression), nullptr, false);
    case ExprKind::Apply:
      return evalApply(frame, static_cast<const ApplyExpr&>(expression));
    case ExprKind::Unary: {
      const auto& unary = static_cast<const UnaryExpr&>(expression);
      Variant operand = evalValue(frame, *unary.operand);
      switch (unary.op) {
        case UnaryOp::Negate:
          return negate(operand);
        case UnaryOp::Plus:
          return operand;
        case UnaryOp::Not:
          return logicalNot(operand);
      }
      break;
    }
    case ExprKind::Binary:
      return evalBinary(frame, static_cast<const BinaryExpr&>(expression));
  }
  return Variant();
}

Variant Evaluator::evalBinary(Frame& frame, const BinaryExpr& binary) {
  if (binary.op == BinaryOp::Is) {
    const Variant a = eval(frame, *binary.left);
    const Variant b = eval(frame, *binary.right);
    return Variant(isSameObject(a, b));
  }
  const Variant a = evalValue(frame, *binary.left);
  const Variant b = evalValue(frame, *binary.right);
  const CompareOptions options{CompareMode::Binary, operandKindOf(*binary.left),
                               operandKindOf(*binary.right)};
  switch (binary.op) {
    case BinaryOp::Power:
      return power(a, b);
    case BinaryOp::Multiply:
      return multiply(a, b);
    case BinaryOp::Divide:
      return divide(a, b);
    case BinaryOp::IntDivide:
      return integerDivide(a, b);
    case BinaryOp::Mod:
      return modulo(a, b);
    case BinaryOp::Add:
      if (textLength(a) + textLength(b) > kMaxTextLength) {
        raiseScriptError(script_error::kOutOfStringSpace);
      }
      chargeSteps((textLength(a) + textLength(b)) / kTextUnitsPerStep);
      return add(a, b);
    case BinaryOp::Subtract:
      return subtract(a, b);
    case BinaryOp::Concat:
      // Numbers add at most a few dozen units; long text is what can run away.
      if (textLength(a) + textLength(b) + 64 > kMaxTextLength) {
        raiseScriptError(script_error::kOutOfStringSpace);
      }
      chargeSteps((textLength(a) + textLength(b)) / kTextUnitsPerStep);
      return concatenate(a, b);
    case BinaryOp::Equal:
    case BinaryOp::NotEqual:
    case BinaryOp::Less:
    case BinaryOp::Greater:
    case BinaryOp::LessEqual:
    case BinaryOp::GreaterEqual:
      return compareBy(binary.op, a, b, options);
    case BinaryOp::And:
      return logicalAnd(a, b);
    case BinaryOp::Or:
      return logicalOr(a, b);
    case BinaryOp::Xor:
      return logicalXor(a, b);
    case BinaryOp::Eqv:
      return logicalEqv(a, b);
    case BinaryOp::Imp:
      return logicalImp(a, b);
    case BinaryOp::Is:
      break;
  }
  return Variant();
}

std::vector<int32_t> Evaluator::subscriptsOf(Frame& frame, const std::vector<Argument>& args) {
  std::vector<int32_t> subscripts;
  subscripts.reserve(args.size());
  for (const Argument& arg : args) {
    if (arg.isOmitted()) raiseScriptError(vb_error::kSubscriptOutOfRange);
    subscripts.push_back(CLng(evalValue(frame, *arg.value)));
  }
  return subscripts;
}

Variant Evaluator::indexArray(const Variant& array, Frame& frame,
                              const std::vector<Argument>& args) {
  if (args.empty()) return array;
  const std::vector<int32_t> subscripts = subscriptsOf(frame, args);
  const SafeArray& elements = array.asArray();
  return elements.elements[elements.offsetOf(subscripts)];
}

Variant Evaluator::evalName(Frame& frame, const NameExpr& name, const std::vector<Argument>* args,
                            bool asStatement) {
  if (Variant* variable = variableOf(frame, name, false)) {
    if (args == nullptr) return *variable;
    if (variable->isArray()) return indexArray(*variable, frame, *args);
    if (variable->isObject()) {
      const ObjectRef object = variable->asObject();
      if (args->empty() && !asStatement) return *variable;
      return callObject(frame, object, u"", args, asStatement);
    }
    if (args->empty()) return *variable;
    raiseScriptError(vb_error::kTypeMismatch);
  }
  Binding& binding = bindingOf(*frame.unit, name.id, name.name);
  switch (binding.kind) {
    case Binding::Kind::Procedure:
      return callScript(frame, *binding.procedure, args);
    case Binding::Kind::Builtin:
      return callBuiltin(frame, *binding.builtin, args);
    case Binding::Kind::Constant:
      if (args != nullptr && !args->empty()) raiseScriptError(vb_error::kTypeMismatch);
      return binding.constant;
    case Binding::Kind::ErrObject:
      if (args != nullptr && !args->empty()) return callObject(frame, err, u"", args, asStatement);
      return Variant(ObjectRef(err));
    case Binding::Kind::CreateObject:
      return createObject(frame, args);
    case Binding::Kind::Eval:
      return evalText(frame, args, false);
    case Binding::Kind::Execute:
      return evalText(frame, args, true);
    case Binding::Kind::Global:
    case Binding::Kind::Unknown:
      break;
  }
  if (args != nullptr && (asStatement || !args->empty())) {
    // The runtime reports a call of a name it does not know as a type mismatch.
    raiseScriptError(vb_error::kTypeMismatch);
  }
  if (optionExplicit) raiseScriptError(script_error::kVariableUndefined);
  return Variant();
}

Variant Evaluator::evalApply(Frame& frame, const ApplyExpr& apply) {
  switch (apply.callee->kind) {
    case ExprKind::Name:
      return evalName(frame, static_cast<const NameExpr&>(*apply.callee), &apply.args, false);
    case ExprKind::Member:
      return evalMember(frame, static_cast<const MemberExpr&>(*apply.callee), &apply.args, false);
    default:
      break;
  }
  const Variant callee = eval(frame, *apply.callee);
  if (callee.isArray()) return indexArray(callee, frame, apply.args);
  if (callee.isObject()) return callObject(frame, callee.asObject(), u"", &apply.args, false);
  raiseScriptError(vb_error::kTypeMismatch);
}

Variant Evaluator::targetOf(Frame& frame, const MemberExpr& member) {
  if (member.object != nullptr) return eval(frame, *member.object);
  if (!frame.withObjects.empty()) return frame.withObjects.back();
  return Variant();
}

ObjectRef Evaluator::objectOf(Frame& frame, const MemberExpr& member) {
  const Variant target = targetOf(frame, member);
  if (!target.isObject()) raiseScriptError(vb_error::kObjectRequired);
  return target.asObject();
}

Variant Evaluator::evalMember(Frame& frame, const MemberExpr& member,
                              const std::vector<Argument>* args, bool asStatement) {
  const Variant target = targetOf(frame, member);
  if (target.isRecord()) {
    // A record's field reads like a property without arguments.
    const Variant* field = target.asRecord().field(member.name);
    if (field == nullptr) raiseScriptError(vb_error::kMemberNotSupported);
    if (args != nullptr && !args->empty()) raiseScriptError(vb_error::kTypeMismatch);
    return *field;
  }
  if (!target.isObject()) raiseScriptError(vb_error::kObjectRequired);
  return callObject(frame, target.asObject(), member.name, args, asStatement);
}

bool Evaluator::assignRecordField(Frame& frame, const MemberExpr& member, Variant& value) {
  if (member.object == nullptr || member.object->kind != ExprKind::Name) return false;
  Variant* variable = variableOf(frame, static_cast<const NameExpr&>(*member.object), false);
  if (variable == nullptr || !variable->isRecord()) return false;
  ravelin::assignRecordField(variable->mutableRecord(), member.name, std::move(value));
  return true;
}

Variant* Evaluator::referenceTo(Frame& frame, const Expr& expression,
                                std::deque<ElementWriteBack>& writeBacks) {
  if (expression.parenthesized) return nullptr;
  if (expression.kind == ExprKind::Name) {
    const auto& name = static_cast<const NameExpr&>(expression);
    if (isConstantName(frame, name)) return nullptr;
    return variableOf(frame, name, true);
  }
  if (expression.kind == ExprKind::Apply) {
    const auto& apply = static_cast<const ApplyExpr&>(expression);
    if (apply.callee->kind != ExprKind::Name || apply.args.empty()) return nullptr;
    const auto& name = static_cast<const NameExpr&>(*apply.callee);
    Variant* array = variableOf(frame, name, false);
    if (array == nullptr || !array->isArray()) return nullptr;
    std::vector<int32_t> subscripts = subscriptsOf(frame, apply.args);
    // The subscripts may have run code that changed the array.
    array = variableOf(frame, name, false);
    if (array == nullptr || !array->isArray()) raiseScriptError(vb_error::kTypeMismatch);
    const SafeArray& elements = array->asArray();
    Variant value = elements.elements[elements.offsetOf(subscripts)];
    writeBacks.push_back(ElementWriteBack{array, std::move(subscripts), std::move(value)});
    return &writeBacks.back().value;
  }
  return nullptr;
}

SafeArray& Evaluator::writableArray(Variant& variable) {
  const SafeArray* before = &variable.asArray();
  SafeArray& array = variable.mutableArray();
  // Writing into an array that another variable shares copies it first.
  if (&array != before) chargeSteps(array.elements.size() / kElementsPerStep);
  return array;
}

void Evaluator::storeWriteBacks(std::deque<ElementWriteBack>& writeBacks) {
  for (ElementWriteBack& back : writeBacks) {
    if (!back.array->isArray()) continue;
    std::size_t offset = 0;
    try {
      offset = back.array->asArray().offsetOf(back.subscripts);
    } catch (const AutomationError&) {
      // The array lost the element during the call (ReDim): nothing to write back to.
      continue;
    }
    writableArray(*back.array).elements[offset] = std::move(back.value);
  }
}

Variant Evaluator::callObject(Frame& frame, const ObjectRef& object, StringView name,
                              const std::vector<Argument>* args, bool preferMethod,
                              const Variant* assigned, bool isSet) {
  if (!object) raiseScriptError(vb_error::kObjectNotSet);
  const ClassInfo& info = object->classInfo();
  auto find = [&](MemberKind first, MemberKind second) {
    const MemberInfo* found = info.find(name, first);
    return found != nullptr ? found : info.find(name, second);
  };
  const MemberInfo* member = nullptr;
  if (assigned != nullptr) {
    member = isSet ? find(MemberKind::PropertySet, MemberKind::PropertyLet)
                   : info.find(name, MemberKind::PropertyLet);
  } else if (preferMethod) {
    member = find(MemberKind::Method, MemberKind::PropertyGet);
  } else {
    member = find(MemberKind::PropertyGet, MemberKind::Method);
  }
  const bool hasIndexes = args != nullptr && !args->empty() && name != u"";
  if (hasIndexes) {
    // obj.Items(0) where the property Items takes no index: the indexes apply to its value (an
    // array element or the default member of the object it returns). Only a property get is
    // read this way: a method without parameters given arguments is refused before it runs.
    const MemberInfo* getter = info.find(name, MemberKind::PropertyGet);
    const std::size_t ownParameters =
        member != nullptr ? member->parameters.size() - (assigned != nullptr ? 1 : 0) : 0;
    if (getter != nullptr && getter->parameters.empty() &&
        (member == nullptr || ownParameters == 0)) {
      std::vector<CallArgument> none;
      const Variant value = invokeMember(*object, *getter, none);
      if (value.isObject()) {
        return callObject(frame, value.asObject(), u"", args, false, assigned, isSet);
      }
      if (value.isArray() && assigned == nullptr) return indexArray(value, frame, *args);
      raiseScriptError(vb_error::kWrongArgumentCount);
    }
  }
  if (member == nullptr) raiseScriptError(vb_error::kMemberNotSupported);

  std::deque<ElementWriteBack> writeBacks;
  std::vector<CallArgument> arguments;
  if (args != nullptr) {
    arguments.reserve(args->size() + 1);
    for (const Argument& arg : *args) {
      if (arg.isOmitted()) {
        arguments.push_back(CallArgument::omittedArgument());
        continue;
      }
      Variant* variable = arg.byValue ? nullptr : referenceTo(frame, *arg.value, writeBacks);
      Variant value = variable != nullptr ? *variable : eval(frame, *arg.value);
      if (arg.isNamed()) {
        arguments.push_back(CallArgument::named(arg.name, std::move(value), variable));
      } else {
        arguments.emplace_back(std::move(value), variable);
      }
    }
  }
  if (assigned != nullptr) arguments.emplace_back(*assigned);

  Variant result = invokeMember(*object, *member, arguments);
  storeWriteBacks(writeBacks);
  return result;
}

Variant Evaluator::invokeMember(Object& object, const MemberInfo& member,
                                std::vector<CallArgument>& arguments) {
  try {
    return callMember(object, member, arguments);
  } catch (const ScriptError&) {
    throw;
  } catch (const MemberError&) {
    throw;
  } catch (const AutomationError& error) {
    // Binding errors are the script runtime's own; anything the member raised is passed on
    // with its number, source and description.
    const int32_t number = error.number();
    if (number == script_error::kNamedArgumentNotFound ||
        number == vb_error::kArgumentNotOptional || number == vb_error::kWrongArgumentCount) {
      throw;
    }
    throw MemberError(error);
  }
}

Variant Evaluator::callBuiltin(Frame& frame, const Builtin& builtin,
                               const std::vector<Argument>* args) {
  const std::size_t count = args != nullptr ? args->size() : 0;
  if (count < static_cast<std::size_t>(builtin.minArgs) ||
      count > static_cast<std::size_t>(builtin.maxArgs)) {
    raiseScriptError(vb_error::kWrongArgumentCount);
  }
  std::vector<Variant> values;
  values.reserve(count);
  const bool seesObjects = builtin.seesObjects;
  for (std::size_t i = 0; i < count; ++i) {
    const Argument& arg = (*args)[i];
    if (arg.isOmitted()) {
      values.push_back(Variant::missing());
      continue;
    }
    Variant value = eval(frame, *arg.value);
    if (value.isObject() && value.asObject()) {
      if (!seesObjects) {
        if (value.asObject()->classInfo().hasMember(u"")) value = defaultValueOf(value);
      } else if (builtin.testsDefaultValue && hasValueWithoutArguments(*value.asObject())) {
        value = defaultValueOf(value);
      }
    }
    values.push_back(std::move(value));
  }
  Variant result = builtin.call(values);
  if (result.isString()) chargeSteps(result.asString().size() / kTextUnitsPerStep);
  if (result.isArray()) chargeSteps(result.asArray().elements.size() / kElementsPerStep);
  return result;
}

Variant Evaluator::createObject(Frame& frame, const std::vector<Argument>* args) {
  if (args == nullptr || args->size() != 1 || (*args)[0].isOmitted()) {
    raiseScriptError(vb_error::kWrongArgumentCount);
  }
  const String progId = CStr(evalValue(frame, *(*args)[0].value));
  if (creatable_) {
    const ClassInfo* info = libraryRegistry().findClass(progId);
    if (info != nullptr && !creatable_(*info)) raiseScriptError(vb_error::kCannotCreateObject);
  }
  return Variant(libraryRegistry().create(progId));
}

Variant Evaluator::evalText(Frame& frame, const std::vector<Argument>* args, bool statements) {
  if (args == nullptr || args->size() != 1 || (*args)[0].isOmitted()) {
    raiseScriptError(vb_error::kWrongArgumentCount);
  }
  const String text = CStr(evalValue(frame, *(*args)[0].value));
  checkStack();
  const SourcePos caller = position;
  try {
    Variant result;
    if (statements) {
      Unit& added = addUnit(parseScript(StringView(text)));
      hoistDeclarations(added, added.program.body);
      Frame global;
      global.unit = &added;
      execBlock(global, added.program.body);
    } else {
      Unit unit;
      ExprPtr tree = parseExpression(text, unit.program.names);
      unit.bindings.resize(unit.program.names.size());
      Frame global;
      global.unit = &unit;
      result = eval(global, *tree);
    }
    position = caller;
    return result;
  } catch (const ScriptError&) {
    throw;
  } catch (const SyntaxError& error) {
    position = caller;
    throw AutomationError(error.number(), String(kCompilationErrorSource), error.description());
  } catch (const AutomationError&) {
    position = caller;
    throw;
  }
}

Variant Evaluator::callScript(Frame& caller, const ProcedureRef& procedure,
                              const std::vector<Argument>* args) {
  // The definition as the call starts: an argument may redefine the procedure (ExecuteGlobal),
  // and the new definition applies only to later calls.
  const Procedure& proc = *procedure.procedure;
  const std::size_t count = args != nullptr ? args->size() : 0;
  if (count > proc.parameters.size()) raiseScriptError(vb_error::kWrongArgumentCount);
  Frame callee;
  callee.procedure = &proc;
  callee.unit = procedure.unit;
  callee.slots.resize(proc.slotNames.size());
  callee.references.resize(proc.parameters.size(), nullptr);
  std::deque<ElementWriteBack> writeBacks;
  for (std::size_t i = 0; i < proc.parameters.size(); ++i) {
    const Parameter& parameter = proc.parameters[i];
    const Argument* arg = i < count ? &(*args)[i] : nullptr;
    if (arg != nullptr && arg->isNamed()) raiseScriptError(script_error::kNamedArgumentNotFound);
    if (arg == nullptr || arg->isOmitted()) {
      if (!parameter.optional) raiseScriptError(vb_error::kWrongArgumentCount);
      callee.slots[i] = parameter.defaultValue;
      continue;
    }
    Variant* variable =
        parameter.byRef && !arg->byValue ? referenceTo(caller, *arg->value, writeBacks) : nullptr;
    if (variable != nullptr) {
      callee.references[i] = variable;
    } else {
      callee.slots[i] = eval(caller, *arg->value);
    }
  }
  Variant result = runProcedure(callee);
  storeWriteBacks(writeBacks);
  return result;
}

void Evaluator::assign(Frame& frame, const Expr& target, Variant value, bool isSet) {
  if (isSet) {
    if (!value.isObject()) raiseScriptError(vb_error::kObjectRequired);
  } else if (value.isObject()) {
    value = defaultValueOf(value);
  }
  // Text is copied by value: a long one costs its length.
  chargeSteps(textLength(value) / kTextUnitsPerStep);
  switch (target.kind) {
    case ExprKind::Name: {
      const auto& name = static_cast<const NameExpr&>(target);
      if (isConstantName(frame, name)) raiseScriptError(script_error::kIllegalAssignment);
      Variant* variable = variableOf(frame, name, true);
      if (variable == nullptr) raiseScriptError(script_error::kIllegalAssignment);
      *variable = std::move(value);
      return;
    }
    case ExprKind::Member: {
      const auto& member = static_cast<const MemberExpr&>(target);
      if (!isSet && assignRecordField(frame, member, value)) return;
      callObject(frame, objectOf(frame, member), member.name, nullptr, false, &value, isSet);
      return;
    }
    case ExprKind::Apply: {
      const auto& apply = static_cast<const ApplyExpr&>(target);
      if (apply.callee->kind == ExprKind::Member) {
        const auto& member = static_cast<const MemberExpr&>(*apply.callee);
        callObject(frame, objectOf(frame, member), member.name, &apply.args, false, &value, isSet);
        return;
      }
      if (apply.callee->kind == ExprKind::Name) {
        const auto& name = static_cast<const NameExpr&>(*apply.callee);
        Variant* variable = variableOf(frame, name, false);
        if (variable != nullptr && variable->isObject()) {
          const ObjectRef object = variable->asObject();
          callObject(frame, object, u"", &apply.args, false, &value, isSet);
          return;
        }
        if (variable != nullptr && variable->isArray()) {
          const std::vector<int32_t> subscripts = subscriptsOf(frame, apply.args);
          variable = variableOf(frame, name, false);
          if (variable == nullptr || !variable->isArray()) {
            raiseScriptError(vb_error::kTypeMismatch);
          }
          const std::size_t offset = variable->asArray().offsetOf(subscripts);
          writableArray(*variable).elements[offset] = std::move(value);
          return;
        }
        if (variable == nullptr && optionExplicit &&
            bindingOf(*frame.unit, name.id, name.name).kind == Binding::Kind::Unknown) {
          raiseScriptError(script_error::kVariableUndefined);
        }
        raiseScriptError(vb_error::kTypeMismatch);
      }
      const Variant callee = eval(frame, *apply.callee);
      if (callee.isObject()) {
        callObject(frame, callee.asObject(), u"", &apply.args, false, &value, isSet);
        return;
      }
      raiseScriptError(vb_error::kTypeMismatch);
    }
    default:
      raiseScriptError(script_error::kIllegalAssignment);
  }
}

}  // namespace ravelin::script::detail

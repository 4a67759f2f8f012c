// Late-bound calls: a member of an object called by name, with positional, named, omitted and
// by-reference arguments, as an automation client calls through a dispatch interface.
#pragma once

#include <ravelin/frame/member_table.hpp>
#include <span>
#include <utility>

namespace ravelin {

// One argument of a late-bound call.
struct CallArgument {
  CallArgument(Variant argumentValue, Variant* callerVariable = nullptr)
      : value(std::move(argumentValue)), variable(callerVariable) {}
  static CallArgument named(StringView argumentName, Variant argumentValue,
                            Variant* callerVariable = nullptr) {
    CallArgument argument(std::move(argumentValue), callerVariable);
    argument.name = String(argumentName);
    return argument;
  }
  static CallArgument omittedArgument() {
    CallArgument argument{Variant()};
    argument.omitted = true;
    return argument;
  }

  Variant value;
  // The caller's variable behind the argument, or null for an expression. A by-reference
  // parameter writes its final value back into it.
  Variant* variable = nullptr;
  // The name of a named argument (name:=value); empty for a positional one.
  String name;
  // An omitted positional argument (f(a, , c)): the parameter's default applies.
  bool omitted = false;
};

// Calls member `name` of kind `kind` on `object` through its class's member table.
// Errors: 91 for Nothing, 438 for an unknown member, 450 for too many arguments, 448 for an
// unknown named argument, 449 for a missing required one, and the conversion errors (13, 6, 94)
// of an argument that does not fit its declared type.
Variant callMember(const ObjectRef& object, StringView name, MemberKind kind,
                   std::span<CallArgument> arguments);

// The default member of an object's class: its unnamed property, else its unnamed method, else
// null.
const MemberInfo* findDefaultMember(const Object& object);

// The value a conversion reads from `value`: the value itself, or for an object the result of
// its default member called without arguments, as the runtime reads a field passed where a value
// is expected. Errors: 91 for Nothing, 438 without a default member, 449 when the default
// member needs an argument.
Variant valueBehindObject(const Variant& value);

// Binds the arguments of a call to the member's parameters and calls it.
Variant callMember(Object& object, const MemberInfo& member, std::span<CallArgument> arguments);

}  // namespace ravelin

// The script host's built-in functions (CStr, Len, DateAdd, UBound...): a table the interpreter
// looks up by name and calls with evaluated arguments.
#pragma once

#include <limits>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/variant.hpp>
#include <span>

namespace ravelin::script {

// The maxArgs of a function that takes any number of arguments (Array).
inline constexpr int kAnyArgumentCount = std::numeric_limits<int>::max();

// One built-in function. The interpreter checks the argument count against minArgs and maxArgs
// (450 otherwise) and passes the values with object default members already resolved, unless
// the function sees objects as they are (the Is... tests, TypeName and VarType). An omitted
// optional argument is Variant::missing() or simply absent from the end of the span; each function
// applies the runtime's default. Functions raise the runtime's errors (5, 6, 13, 94...).
struct Builtin {
  StringView name;  // the runtime's spelling ("InStrRev")
  int minArgs;
  int maxArgs;
  Variant (*call)(std::span<const Variant> args);
  // Arguments that are objects arrive as the objects, not their default values.
  bool seesObjects = false;
  // With seesObjects: an object whose default member needs no arguments arrives as that
  // member's value (IsNull(rs("Name")) tests the field's value, as the runtime does); any other
  // object arrives as itself.
  bool testsDefaultValue = false;
};

// The built-in function of that name, matched without regard to case, or null. A binary search
// of static tables: no work at start-up.
const Builtin* findBuiltin(StringView name);

}  // namespace ravelin::script

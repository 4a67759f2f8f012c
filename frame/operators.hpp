// The Basic script dialect's operators on Variants: arithmetic with the runtime's result types
// and promotions, concatenation, comparison, the logical and bitwise operators, and Is.
//
// Every function takes values as the interpreter holds them. The caller resolves default
// members first: an object that reaches an arithmetic, comparison or logical operator is a
// type mismatch (13), as are arrays, records and Error values. Errors are raised as
// AutomationError with the runtime's numbers: 13 type mismatch, 6 overflow, 11 division by
// zero, 5 invalid procedure call, 424 object required.
//
// Result types. Boolean operands count as Integer (True is -1) and Empty as Integer 0. Strings
// taking part in arithmetic are read as Double with the locale's reader (13 when not numeric).
// A Byte, Integer or Long result that overflows moves to the next wider type (Byte to Integer to
// Long to Double) instead of raising 6, as the script dialect does with Variants; a Single result
// that overflows becomes a Double, and a Date result outside the calendar becomes a Double.
// Double and Currency results that overflow raise 6.
#pragma once

#include <cstdint>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// ---- Arithmetic ------------------------------------------------------------------------------

// a + b. Two strings are concatenated; a string with a number is read as a number. Null gives
// Null; Empty with Empty gives Integer 0; Empty with anything else gives the other operand
// unchanged. The result has the more precise type in the order Byte, Integer, Long, Single,
// Double, Currency, except Single with Long (Double) and a Date with anything (Date).
Variant add(const Variant& a, const Variant& b);

// a - b. Types as for add; Date - Date is a Double, a Date with any other operand a Date.
Variant subtract(const Variant& a, const Variant& b);

// a * b. The precision order is Byte, Integer, Long, Single, Currency, Double: Currency with
// Double gives Double. Single with Long gives Double; a Date counts as a Double.
Variant multiply(const Variant& a, const Variant& b);

// a / b, always floating point: a Single when one operand is a Single and the other a Single,
// Byte, Integer or Boolean, a Double otherwise. A zero divisor raises 11, or 6 when the dividend
// is zero too (0 / 0 has no value, which the runtime reports as an overflow).
Variant divide(const Variant& a, const Variant& b);

// a \ b. Both operands are first rounded half to even to whole numbers; the result is a Byte
// when both are Bytes, an Integer when neither is wider than Integer, a Long otherwise. The
// quotient is truncated toward zero. A zero divisor raises 11; a rounded operand beyond the Long
// range raises 6, and so does the one quotient a Long cannot hold (the Long minimum \ -1), while
// the Integer minimum \ -1 becomes a Long.
Variant integerDivide(const Variant& a, const Variant& b);

// a Mod b: the remainder of the truncating division, with the sign of a. Operands and result
// type as for integerDivide; a zero divisor raises 11.
Variant modulo(const Variant& a, const Variant& b);

// a ^ b, always a Double. A negative base needs a whole exponent, and a zero base a
// non-negative one: otherwise 5. A result beyond the Double range raises 6.
Variant power(const Variant& a, const Variant& b);

// -a. Byte and Boolean give Integer; the type's most negative value moves to the wider type
// (Integer to Long, Long to Double); Currency's most negative value raises 6. Empty gives
// Integer 0, a string a Double, Null Null.
Variant negate(const Variant& a);

// a & b: both converted to text (numbers, dates and Booleans as CStr writes them, Null and Empty
// as ""). Null & Null is Null.
Variant concatenate(const Variant& a, const Variant& b);

// ---- Comparison ------------------------------------------------------------------------------

// How two strings are compared: by UTF-16 code unit, or without regard to case (each unit folded
// with toUpper).
enum class CompareMode : uint8_t { Binary, Text };

// Where the interpreter took an operand from. In the script dialect every value is a Variant,
// but a literal written in the script text keeps its own type when compared:
//  - a number literal against a string: the string is read as that kind of number (CBool for a
//    Boolean literal, CDate for a date literal, CCur for Currency, a Double otherwise), 13 when
//    it cannot be;
//  - a string literal against a number that is not a literal: the number's CStr text is
//    compared with the string.
// Anything else (variables, constants bound to variables, function results, results of other
// operators, parenthesised expressions) is Variant: a number Variant is always less than a
// string Variant. Empty compares as 0 with a number and as "" with a string.
enum class OperandKind : uint8_t { Variant, Literal };

// The settings of one comparison: Option Compare (or the mode argument of a function that takes
// one) and the origin of each operand.
struct CompareOptions {
  CompareMode mode = CompareMode::Binary;
  OperandKind left = OperandKind::Variant;
  OperandKind right = OperandKind::Variant;
};

// The outcome of a comparison, numbered as the runtime's VARCMP values.
enum class Comparison : uint8_t { Less = 0, Equal = 1, Greater = 2, Null = 3 };

// Compares two values. Null on either side gives Comparison::Null. Numbers compare by value in
// the wider type; when a Single meets a Double, the Double is first rounded to Single
// precision, and when a Currency meets a Single or Double, the floating value is first rounded to
// Currency (four decimals).
Comparison compare(const Variant& a, const Variant& b, const CompareOptions& options = {});

// The six comparison operators: Boolean True or False, or Null when either operand is Null.
Variant equalTo(const Variant& a, const Variant& b, const CompareOptions& options = {});
Variant notEqualTo(const Variant& a, const Variant& b, const CompareOptions& options = {});
Variant lessThan(const Variant& a, const Variant& b, const CompareOptions& options = {});
Variant lessThanOrEqual(const Variant& a, const Variant& b, const CompareOptions& options = {});
Variant greaterThan(const Variant& a, const Variant& b, const CompareOptions& options = {});
Variant greaterThanOrEqual(const Variant& a, const Variant& b, const CompareOptions& options = {});

// a Is b: true when both refer to the same object, or both are Nothing. Anything that is not an
// object reference raises 424.
bool isSameObject(const Variant& a, const Variant& b);

// ---- Logical and bitwise ---------------------------------------------------------------------
//
// Two Booleans combine logically into a Boolean. Otherwise the operators work bit by bit: two
// Bytes give a Byte, operands no wider than Integer (Boolean and Empty count as Integer) give an
// Integer, anything else a Long; Single, Double, Currency and Date operands are first rounded
// half to even to a Long (6 when out of range). A string "True" or "False" (any case) is a
// Boolean, another string is read as a number. Null follows three-valued logic: the result is
// known when the other operand decides it alone (Null And 0 is 0, Null Or True is True, False Imp
// Null is True), otherwise it is Null.

Variant logicalNot(const Variant& a);
Variant logicalAnd(const Variant& a, const Variant& b);
Variant logicalOr(const Variant& a, const Variant& b);
Variant logicalXor(const Variant& a, const Variant& b);
Variant logicalEqv(const Variant& a, const Variant& b);
Variant logicalImp(const Variant& a, const Variant& b);

}  // namespace ravelin

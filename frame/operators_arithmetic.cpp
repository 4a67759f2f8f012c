// Arithmetic and concatenation operators on Variants.
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/operators.hpp>

namespace ravelin {
namespace {

// The number types of the arithmetic. Boolean and Empty operands become Integer, strings Double.
enum class Kind : uint8_t { Byte, Integer, Long, Single, Double, Currency, Date };

// An operand reduced to one of those types.
struct Number {
  Kind kind = Kind::Integer;
  int64_t whole = 0;  // Byte, Integer, Long
  double real = 0.0;  // Single, Double, Date (the serial)
  Currency money;     // Currency
};

Number wholeNumber(Kind kind, int64_t value) {
  Number n;
  n.kind = kind;
  n.whole = value;
  return n;
}

Number realNumber(Kind kind, double value) {
  Number n;
  n.kind = kind;
  n.real = value;
  return n;
}

// Reduces a non-Null operand to a number; anything that has no numeric value raises 13.
Number toNumber(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
      return wholeNumber(Kind::Integer, 0);
    case VarType::Boolean:
      return wholeNumber(Kind::Integer, v.asBoolean() ? -1 : 0);
    case VarType::Byte:
      return wholeNumber(Kind::Byte, v.asByte());
    case VarType::Integer:
      return wholeNumber(Kind::Integer, v.asInteger());
    case VarType::Long:
      return wholeNumber(Kind::Long, v.asLong());
    case VarType::Single:
      return realNumber(Kind::Single, v.asSingle());
    case VarType::Double:
      return realNumber(Kind::Double, v.asDouble());
    case VarType::Date:
      return realNumber(Kind::Date, v.asDate().serial);
    case VarType::Currency: {
      Number n;
      n.kind = Kind::Currency;
      n.money = v.asCurrency();
      return n;
    }
    case VarType::String:
      return realNumber(Kind::Double, parseDouble(v.asString()));
    default:
      raiseRuntimeError(vb_error::kTypeMismatch);
  }
}

bool isWhole(Kind kind) {
  return kind == Kind::Byte || kind == Kind::Integer || kind == Kind::Long;
}

double realOf(const Number& n) {
  if (isWhole(n.kind)) return static_cast<double>(n.whole);
  if (n.kind == Kind::Currency) return n.money.toDouble();
  return n.real;
}

// The operand as Currency: whole numbers exactly, floating values rounded as CCur rounds them
// (6 when out of range).
Currency currencyOf(const Number& n) {
  if (isWhole(n.kind)) return Currency::fromUnits(n.whole);
  if (n.kind == Kind::Currency) return n.money;
  if (n.kind == Kind::Single) return CCur(Variant(static_cast<float>(n.real)));
  return CCur(Variant(n.real));
}

// A whole result in the narrowest of its own type and the wider ones that holds it.
Variant wholeResult(Kind kind, int64_t value) {
  if (kind == Kind::Byte && value >= 0 && value <= UINT8_MAX) {
    return Variant(static_cast<uint8_t>(value));
  }
  if (kind != Kind::Long && value >= INT16_MIN && value <= INT16_MAX) {
    return Variant(static_cast<int16_t>(value));
  }
  if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<int32_t>(value));
  return Variant(static_cast<double>(value));
}

Variant doubleResult(double value) {
  if (!std::isfinite(value)) raiseRuntimeError(vb_error::kOverflow);
  return Variant(value);
}

// A Single result, or a Double when it is beyond the Single range.
Variant singleResult(double value) {
  if (std::isfinite(value) && std::fabs(value) <= static_cast<double>(FLT_MAX)) {
    return Variant(static_cast<float>(value));
  }
  return doubleResult(value);
}

// A Date result, or a Double when the serial is outside the calendar.
Variant dateResult(double serial) {
  if (isValidDateSerial(serial)) return Variant(Date{serial});
  return doubleResult(serial);
}

// Ranks of the precision orders: addition and subtraction put Currency above Double,
// multiplication puts it below.
int additiveRank(Kind kind) {
  switch (kind) {
    case Kind::Byte:
      return 0;
    case Kind::Integer:
      return 1;
    case Kind::Long:
      return 2;
    case Kind::Single:
      return 3;
    case Kind::Double:
      return 4;
    case Kind::Currency:
      return 5;
    case Kind::Date:
      return 6;
  }
  return 4;
}

int multiplicativeRank(Kind kind) {
  switch (kind) {
    case Kind::Currency:
      return 4;
    case Kind::Double:
    case Kind::Date:
      return 5;
    default:
      return additiveRank(kind);
  }
}

bool isSingleWithLong(Kind a, Kind b) {
  return (a == Kind::Single && b == Kind::Long) || (a == Kind::Long && b == Kind::Single);
}

Kind additiveKind(Kind a, Kind b) {
  if (isSingleWithLong(a, b)) return Kind::Double;
  return additiveRank(a) >= additiveRank(b) ? a : b;
}

enum class Op : uint8_t { Add, Subtract, Multiply };

double applyReal(Op op, double a, double b) {
  switch (op) {
    case Op::Add:
      return a + b;
    case Op::Subtract:
      return a - b;
    case Op::Multiply:
      return a * b;
  }
  return 0.0;
}

// Performs one of + - * in the result type `kind`.
Variant computeIn(Kind kind, Op op, const Number& a, const Number& b) {
  switch (kind) {
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long: {
      // Both operands are whole numbers of at most 32 bits: 64 bits hold every result.
      int64_t x = a.whole;
      int64_t y = b.whole;
      int64_t r = op == Op::Add ? x + y : op == Op::Subtract ? x - y : x * y;
      return wholeResult(kind, r);
    }
    case Kind::Single:
      return singleResult(applyReal(op, realOf(a), realOf(b)));
    case Kind::Double:
      return doubleResult(applyReal(op, realOf(a), realOf(b)));
    case Kind::Date:
      return dateResult(applyReal(op, realOf(a), realOf(b)));
    case Kind::Currency: {
      Currency x = currencyOf(a);
      Currency y = currencyOf(b);
      return Variant(op == Op::Add ? x + y : op == Op::Subtract ? x - y : x * y);
    }
  }
  return Variant();
}

// Raises 13 for values that no operator accepts, so that an Empty or Null beside them does not
// hide the mistake.
void requireScalar(const Variant& v) {
  if (v.isObject() || v.isArray() || v.isRecord() || v.type() == VarType::Error) {
    raiseRuntimeError(vb_error::kTypeMismatch);
  }
}

// The prologue of every binary arithmetic operator: both operands must be scalars (13
// otherwise), and the result is Null when either is Null.
bool eitherIsNull(const Variant& a, const Variant& b) {
  requireScalar(a);
  requireScalar(b);
  return a.isNull() || b.isNull();
}

// An operand of \ and Mod: a whole number of type Byte, Integer or Long.
Number roundedWhole(const Variant& v) {
  Number n = toNumber(v);
  if (isWhole(n.kind)) return n;
  return wholeNumber(Kind::Long, CLng(v));
}

Kind integerDivisionKind(Kind a, Kind b) {
  if (a == Kind::Byte && b == Kind::Byte) return Kind::Byte;
  if (a == Kind::Long || b == Kind::Long) return Kind::Long;
  return Kind::Integer;
}

}  // namespace

Variant add(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  if (a.isEmpty() && b.isEmpty()) return Variant(int16_t{0});
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  if (a.isString() && b.isString()) return Variant(a.asString() + b.asString());
  Number x = toNumber(a);
  Number y = toNumber(b);
  if (x.kind == Kind::Date || y.kind == Kind::Date) {
    return dateResult(realOf(x) + realOf(y));
  }
  return computeIn(additiveKind(x.kind, y.kind), Op::Add, x, y);
}

Variant subtract(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  Number x = toNumber(a);
  Number y = toNumber(b);
  if (x.kind == Kind::Date && y.kind == Kind::Date) return doubleResult(x.real - y.real);
  if (x.kind == Kind::Date || y.kind == Kind::Date) {
    return dateResult(realOf(x) - realOf(y));
  }
  return computeIn(additiveKind(x.kind, y.kind), Op::Subtract, x, y);
}

Variant multiply(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  Number x = toNumber(a);
  Number y = toNumber(b);
  Kind kind = multiplicativeRank(x.kind) >= multiplicativeRank(y.kind) ? x.kind : y.kind;
  if (kind == Kind::Date || isSingleWithLong(x.kind, y.kind)) kind = Kind::Double;
  return computeIn(kind, Op::Multiply, x, y);
}

Variant divide(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  Number x = toNumber(a);
  Number y = toNumber(b);
  double dividend = realOf(x);
  double divisor = realOf(y);
  if (divisor == 0.0) {
    raiseRuntimeError(dividend == 0.0 ? vb_error::kOverflow : vb_error::kDivisionByZero);
  }
  auto singleOrNarrower = [](Kind k) {
    return k == Kind::Single || k == Kind::Byte || k == Kind::Integer;
  };
  bool single = (x.kind == Kind::Single || y.kind == Kind::Single) && singleOrNarrower(x.kind) &&
                singleOrNarrower(y.kind);
  double quotient = dividend / divisor;
  return single ? singleResult(quotient) : doubleResult(quotient);
}

Variant integerDivide(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  Number x = roundedWhole(a);
  Number y = roundedWhole(b);
  if (y.whole == 0) raiseRuntimeError(vb_error::kDivisionByZero);
  int64_t quotient = x.whole / y.whole;  // 64-bit: the Long minimum divided by -1 is defined
  Kind kind = integerDivisionKind(x.kind, y.kind);
  // Only the most negative value divided by -1 leaves its type: Integer moves to Long, but a
  // Long has nowhere whole to go.
  if (quotient > INT32_MAX) raiseRuntimeError(vb_error::kOverflow);
  return wholeResult(kind, quotient);
}

Variant modulo(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  Number x = roundedWhole(a);
  Number y = roundedWhole(b);
  if (y.whole == 0) raiseRuntimeError(vb_error::kDivisionByZero);
  return wholeResult(integerDivisionKind(x.kind, y.kind), x.whole % y.whole);
}

Variant power(const Variant& a, const Variant& b) {
  if (eitherIsNull(a, b)) return Variant::null();
  double base = realOf(toNumber(a));
  double exponent = realOf(toNumber(b));
  if (base < 0.0 && exponent != std::trunc(exponent)) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  if (base == 0.0 && exponent < 0.0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  double result = std::pow(base, exponent);
  if (std::isnan(result)) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return doubleResult(result);
}

Variant negate(const Variant& a) {
  requireScalar(a);
  if (a.isNull()) return Variant::null();
  Number x = toNumber(a);
  switch (x.kind) {
    case Kind::Byte:
    case Kind::Integer:
      return wholeResult(Kind::Integer, -x.whole);
    case Kind::Long:
      return wholeResult(Kind::Long, -x.whole);
    case Kind::Single:
      return Variant(static_cast<float>(-x.real));
    case Kind::Double:
      return Variant(-x.real);
    case Kind::Date:
      return dateResult(-x.real);
    case Kind::Currency:
      return Variant(-x.money);
  }
  return Variant();
}

Variant concatenate(const Variant& a, const Variant& b) {
  requireScalar(a);
  requireScalar(b);
  if (a.isNull() && b.isNull()) return Variant::null();
  auto text = [](const Variant& v) -> String {
    if (v.isNull() || v.isEmpty()) return String();
    if (v.isString()) return v.asString();
    return CStr(v);
  };
  return Variant(text(a) + text(b));
}

}  // namespace ravelin

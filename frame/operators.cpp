// Logical and bitwise operators: Not, And, Or, Xor, Eqv, Imp.
#include <cstdint>
#include <optional>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/operators.hpp>

namespace ravelin {
namespace {

// The type a logical operand takes part as, narrowest first.
enum class BitKind : uint8_t { Boolean, Byte, Integer, Long };

// A non-Null operand as a bit pattern; Booleans are 0 or -1.
struct Bits {
  BitKind kind = BitKind::Integer;
  int32_t value = 0;
};

// The operand's bits, or nothing for Null. Values without bits raise 13.
std::optional<Bits> bitsOf(const Variant& v) {
  switch (v.type()) {
    case VarType::Null:
      return std::nullopt;
    case VarType::Empty:
      return Bits{BitKind::Integer, 0};
    case VarType::Boolean:
      return Bits{BitKind::Boolean, v.asBoolean() ? -1 : 0};
    case VarType::Byte:
      return Bits{BitKind::Byte, v.asByte()};
    case VarType::Integer:
      return Bits{BitKind::Integer, v.asInteger()};
    case VarType::Long:
      return Bits{BitKind::Long, v.asLong()};
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
      return Bits{BitKind::Long, CLng(v)};
    case VarType::String:
      if (equalsIgnoreCase(v.asString(), u"True")) return Bits{BitKind::Boolean, -1};
      if (equalsIgnoreCase(v.asString(), u"False")) return Bits{BitKind::Boolean, 0};
      return Bits{BitKind::Long, CLng(Variant(parseDouble(v.asString())))};
    default:
      raiseRuntimeError(vb_error::kTypeMismatch);
  }
}

// The result type of two operands: two Booleans stay Boolean, two Bytes stay Byte, a Boolean
// beside anything else counts as an Integer.
BitKind combinedKind(BitKind a, BitKind b) {
  if (a == b) return a;
  if (a == BitKind::Long || b == BitKind::Long) return BitKind::Long;
  return BitKind::Integer;
}

// The value with every bit set in a type: True, 255, -1.
int32_t allOnes(BitKind kind) {
  return kind == BitKind::Byte ? 0xFF : -1;
}

bool isAllOnes(const Bits& b) {
  return b.value == allOnes(b.kind);
}

Variant makeResult(BitKind kind, int32_t value) {
  switch (kind) {
    case BitKind::Boolean:
      return Variant(value != 0);
    case BitKind::Byte:
      return Variant(static_cast<uint8_t>(value & 0xFF));
    case BitKind::Integer:
      // Operands were sign-extended 16-bit values, so every bitwise result is one too.
      return Variant(static_cast<int16_t>(value));
    case BitKind::Long:
      return Variant(value);
  }
  return Variant();
}

using BitwiseFunction = int32_t (*)(int32_t, int32_t);

Variant combine(const Bits& a, const Bits& b, BitwiseFunction f) {
  return makeResult(combinedKind(a.kind, b.kind), f(a.value, b.value));
}

}  // namespace

Variant logicalNot(const Variant& a) {
  std::optional<Bits> x = bitsOf(a);
  if (!x) return Variant::null();
  return makeResult(x->kind, ~x->value);
}

Variant logicalAnd(const Variant& a, const Variant& b) {
  std::optional<Bits> x = bitsOf(a);
  std::optional<Bits> y = bitsOf(b);
  // Null And 0 is 0 whatever the Null would have been.
  if (!x && y) return y->value == 0 ? makeResult(y->kind, 0) : Variant::null();
  if (x && !y) return x->value == 0 ? makeResult(x->kind, 0) : Variant::null();
  if (!x) return Variant::null();
  return combine(*x, *y, [](int32_t p, int32_t q) { return p & q; });
}

Variant logicalOr(const Variant& a, const Variant& b) {
  std::optional<Bits> x = bitsOf(a);
  std::optional<Bits> y = bitsOf(b);
  // Null Or True is True whatever the Null would have been.
  if (!x && y) return isAllOnes(*y) ? makeResult(y->kind, y->value) : Variant::null();
  if (x && !y) return isAllOnes(*x) ? makeResult(x->kind, x->value) : Variant::null();
  if (!x) return Variant::null();
  return combine(*x, *y, [](int32_t p, int32_t q) { return p | q; });
}

Variant logicalXor(const Variant& a, const Variant& b) {
  std::optional<Bits> x = bitsOf(a);
  std::optional<Bits> y = bitsOf(b);
  if (!x || !y) return Variant::null();
  return combine(*x, *y, [](int32_t p, int32_t q) { return p ^ q; });
}

Variant logicalEqv(const Variant& a, const Variant& b) {
  std::optional<Bits> x = bitsOf(a);
  std::optional<Bits> y = bitsOf(b);
  if (!x || !y) return Variant::null();
  return combine(*x, *y, [](int32_t p, int32_t q) { return ~(p ^ q); });
}

Variant logicalImp(const Variant& a, const Variant& b) {
  std::optional<Bits> x = bitsOf(a);
  std::optional<Bits> y = bitsOf(b);
  // Null Imp True is True, False Imp Null is True; everything else with a Null is Null.
  if (!x && y) return isAllOnes(*y) ? makeResult(y->kind, y->value) : Variant::null();
  if (x && !y) return x->value == 0 ? makeResult(x->kind, allOnes(x->kind)) : Variant::null();
  if (!x) return Variant::null();
  return combine(*x, *y, [](int32_t p, int32_t q) { return ~p | q; });
}

}  // namespace ravelin

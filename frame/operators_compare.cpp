// Comparison operators and Is.
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/operators.hpp>

namespace ravelin {
namespace {

// What a value is for the comparison rules.
enum class Category : uint8_t { Empty, Null, Number, String, Other };

Category categoryOf(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
      return Category::Empty;
    case VarType::Null:
      return Category::Null;
    case VarType::Boolean:
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
      return Category::Number;
    case VarType::String:
      return Category::String;
    default:
      return Category::Other;
  }
}

template <typename T>
Comparison order(const T& a, const T& b) {
  if (a < b) return Comparison::Less;
  if (b < a) return Comparison::Greater;
  return Comparison::Equal;
}

Comparison reversed(Comparison c) {
  if (c == Comparison::Less) return Comparison::Greater;
  if (c == Comparison::Greater) return Comparison::Less;
  return c;
}

bool isWholeType(VarType t) {
  return t == VarType::Boolean || t == VarType::Byte || t == VarType::Integer || t == VarType::Long;
}

int64_t wholeOf(const Variant& v) {
  switch (v.type()) {
    case VarType::Boolean:
      return v.asBoolean() ? -1 : 0;
    case VarType::Byte:
      return v.asByte();
    case VarType::Integer:
      return v.asInteger();
    default:
      return v.asLong();
  }
}

double realOf(const Variant& v) {
  switch (v.type()) {
    case VarType::Single:
      return v.asSingle();
    case VarType::Double:
      return v.asDouble();
    case VarType::Date:
      return v.asDate().serial;
    case VarType::Currency:
      return v.asCurrency().toDouble();
    default:
      return static_cast<double>(wholeOf(v));
  }
}

// A Currency against a floating value: the floating value is rounded to Currency first. Beyond
// the Currency range the floating value decides the order by itself.
Comparison compareCurrencyWithReal(Currency money, const Variant& real) {
  double value = realOf(real);
  // The largest double that CCur accepts; the next one up (...477.625) is beyond the maximum
  // (...477.5807).
  constexpr double kCurrencyLimit = 922337203685477.5;
  if (std::isnan(value)) return Comparison::Greater;
  if (value > kCurrencyLimit) return Comparison::Less;
  if (value < -kCurrencyLimit) return Comparison::Greater;
  Currency rounded =
      real.type() == VarType::Single ? CCur(Variant(real.asSingle())) : CCur(Variant(value));
  return order(money, rounded);
}

Comparison compareNumbers(const Variant& a, const Variant& b) {
  VarType ta = a.type();
  VarType tb = b.type();
  if (isWholeType(ta) && isWholeType(tb)) return order(wholeOf(a), wholeOf(b));
  if (ta == VarType::Currency || tb == VarType::Currency) {
    if (ta == VarType::Currency && tb == VarType::Currency) {
      return order(a.asCurrency(), b.asCurrency());
    }
    if (ta == VarType::Currency && isWholeType(tb)) {
      return order(a.asCurrency(), Currency::fromUnits(wholeOf(b)));
    }
    if (tb == VarType::Currency && isWholeType(ta)) {
      return order(Currency::fromUnits(wholeOf(a)), b.asCurrency());
    }
    if (ta == VarType::Currency) return compareCurrencyWithReal(a.asCurrency(), b);
    return reversed(compareCurrencyWithReal(b.asCurrency(), a));
  }
  // A Single against any other floating value: the other is rounded to Single precision.
  if ((ta == VarType::Single) != (tb == VarType::Single) && !isWholeType(ta) && !isWholeType(tb)) {
    double other = ta == VarType::Single ? realOf(b) : realOf(a);
    if (std::isfinite(other) && std::fabs(other) <= static_cast<double>(FLT_MAX)) {
      float narrowed = static_cast<float>(other);
      return ta == VarType::Single ? order(a.asSingle(), narrowed) : order(narrowed, b.asSingle());
    }
  }
  return order(realOf(a), realOf(b));
}

Comparison compareText(StringView a, StringView b, CompareMode mode) {
  if (mode == CompareMode::Binary) {
    int c = a.compare(b);
    return c < 0 ? Comparison::Less : c > 0 ? Comparison::Greater : Comparison::Equal;
  }
  std::size_t common = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < common; ++i) {
    char16_t x = toUpper(a[i]);
    char16_t y = toUpper(b[i]);
    if (x != y) return x < y ? Comparison::Less : Comparison::Greater;
  }
  return order(a.size(), b.size());
}

// Reads text as the same kind of number as a literal it is compared with.
Variant asKindOf(const Variant& literal, const String& text) {
  switch (literal.type()) {
    case VarType::Boolean:
      return Variant(CBool(Variant(text)));
    case VarType::Date:
      return Variant(CDate(Variant(text)));
    case VarType::Currency:
      return Variant(CCur(Variant(text)));
    default:
      return Variant(parseDouble(text));
  }
}

// A number against a string, by the origin of each.
Comparison compareNumberWithString(const Variant& number, OperandKind numberKind,
                                   const Variant& text, OperandKind textKind, CompareMode mode) {
  if (numberKind == OperandKind::Literal) {
    return compareNumbers(number, asKindOf(number, text.asString()));
  }
  if (textKind == OperandKind::Literal) return compareText(CStr(number), text.asString(), mode);
  return Comparison::Less;
}

Variant booleanOf(Comparison c, bool (*holds)(Comparison)) {
  if (c == Comparison::Null) return Variant::null();
  return Variant(holds(c));
}

}  // namespace

Comparison compare(const Variant& a, const Variant& b, const CompareOptions& options) {
  Category ca = categoryOf(a);
  Category cb = categoryOf(b);
  if (ca == Category::Null || cb == Category::Null) return Comparison::Null;
  if (ca == Category::Other || cb == Category::Other) {
    raiseRuntimeError(vb_error::kTypeMismatch);
  }
  if (ca == Category::Empty && cb == Category::Empty) return Comparison::Equal;
  if (ca == Category::Empty) {
    return cb == Category::Number ? compareNumbers(Variant(int16_t{0}), b)
                                  : compareText(StringView(), b.asString(), options.mode);
  }
  if (cb == Category::Empty) {
    return ca == Category::Number ? compareNumbers(a, Variant(int16_t{0}))
                                  : compareText(a.asString(), StringView(), options.mode);
  }
  if (ca == Category::Number && cb == Category::Number) return compareNumbers(a, b);
  if (ca == Category::String && cb == Category::String) {
    return compareText(a.asString(), b.asString(), options.mode);
  }
  if (ca == Category::Number) {
    return compareNumberWithString(a, options.left, b, options.right, options.mode);
  }
  return reversed(compareNumberWithString(b, options.right, a, options.left, options.mode));
}

Variant equalTo(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c == Comparison::Equal; });
}

Variant notEqualTo(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c != Comparison::Equal; });
}

Variant lessThan(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c == Comparison::Less; });
}

Variant lessThanOrEqual(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c != Comparison::Greater; });
}

Variant greaterThan(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c == Comparison::Greater; });
}

Variant greaterThanOrEqual(const Variant& a, const Variant& b, const CompareOptions& options) {
  return booleanOf(compare(a, b, options), [](Comparison c) { return c != Comparison::Less; });
}

bool isSameObject(const Variant& a, const Variant& b) {
  if (!a.isObject() || !b.isObject()) raiseRuntimeError(vb_error::kObjectRequired);
  return a.asObject().get() == b.asObject().get();
}

}  // namespace ravelin

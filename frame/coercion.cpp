// Variant coercions: CStr, CDbl, CSng, CInt, CLng, CByte, CBool, CCur and CDate.
#include <charconv>
#include <cmath>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/parsed_number.hpp>

namespace ravelin {
namespace {

__extension__ typedef unsigned __int128 UInt128;

[[noreturn]] void typeMismatch() {
  raiseRuntimeError(vb_error::kTypeMismatch);
}

// Null cannot be converted; errors (the missing-argument marker among them), objects (which have
// no default value here), arrays and records do not convert to a plain value.
[[noreturn]] void notConvertible(const Variant& value) {
  if (value.isNull()) raiseRuntimeError(vb_error::kInvalidUseOfNull);
  typeMismatch();
}

// Non-text values as a double: Empty 0, True -1, a date its serial. Returns false for
// text and for everything that does not convert.
bool numericValueOf(const Variant& value, double& out) {
  switch (value.type()) {
    case VarType::Empty:
      out = 0.0;
      return true;
    case VarType::Integer:
      out = value.asInteger();
      return true;
    case VarType::Long:
      out = value.asLong();
      return true;
    case VarType::Byte:
      out = value.asByte();
      return true;
    case VarType::Boolean:
      out = value.asBoolean() ? -1.0 : 0.0;
      return true;
    case VarType::Single:
      out = static_cast<double>(value.asSingle());
      return true;
    case VarType::Double:
      out = value.asDouble();
      return true;
    case VarType::Currency:
      out = value.asCurrency().toDouble();
      return true;
    case VarType::Date:
      out = value.asDate().serial;
      return true;
    default:
      return false;
  }
}

// A whole-number conversion of a double: half to even on the binary value, then the range.
int64_t wholeNumberOf(double value, int64_t min, int64_t max) {
  if (std::isnan(value)) raiseRuntimeError(vb_error::kOverflow);
  const double rounded = roundHalfEven(value);
  if (!(rounded >= static_cast<double>(min) && rounded <= static_cast<double>(max))) {
    raiseRuntimeError(vb_error::kOverflow);
  }
  return static_cast<int64_t>(rounded);
}

// Currency to a whole number, half to even on the exact scaled value.
int64_t wholeNumberOf(Currency value) {
  const int64_t scaled = value.scaled();
  int64_t quotient = scaled / Currency::kScale;
  const int64_t remainder = scaled % Currency::kScale;  // same sign as scaled
  const int64_t twice = 2 * (remainder < 0 ? -remainder : remainder);
  if (twice > Currency::kScale || (twice == Currency::kScale && quotient % 2 != 0)) {
    quotient += remainder < 0 ? -1 : 1;
  }
  return quotient;
}

// The conversion behind CInt, CLng and CByte.
int64_t wholeNumberOf(const Variant& value, int64_t min, int64_t max, int bits) {
  if (value.isString()) {
    return detail::toWholeNumber(detail::readLocaleNumber(value.asString(), currentLocale()), min,
                                 max, bits);
  }
  if (value.type() == VarType::Currency) {
    const int64_t whole = wholeNumberOf(value.asCurrency());
    if (whole < min || whole > max) raiseRuntimeError(vb_error::kOverflow);
    return whole;
  }
  double number = 0.0;
  if (!numericValueOf(value, number)) notConvertible(value);
  return wholeNumberOf(number, min, max);
}

// The exact binary value of a double times 10,000, rounded half to even.
Currency currencyOfDouble(double value) {
  if (!std::isfinite(value)) raiseRuntimeError(vb_error::kOverflow);
  if (value == 0.0) return Currency();
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent);  // value = fraction * 2^exponent
  const auto mantissa = static_cast<uint64_t>(std::ldexp(fraction, 53));
  exponent -= 53;  // |value| = mantissa * 2^exponent exactly
  const bool negative = value < 0;
  const UInt128 limit = negative ? UInt128{1} << 63 : UInt128{INT64_MAX};
  const UInt128 product = static_cast<UInt128>(mantissa) * Currency::kScale;  // below 2^67
  UInt128 scaled = 0;
  if (exponent >= 0) {
    if (exponent > 11) raiseRuntimeError(vb_error::kOverflow);  // at least 2^52 * 2^12
    scaled = product << exponent;
  } else if (exponent > -100) {
    const int shift = -exponent;
    scaled = product >> shift;
    const UInt128 remainder = product - (scaled << shift);
    const UInt128 half = UInt128{1} << (shift - 1);
    if (remainder > half || (remainder == half && (scaled & 1) != 0)) ++scaled;
  }
  if (scaled > limit) raiseRuntimeError(vb_error::kOverflow);
  const auto magnitude = static_cast<uint64_t>(scaled);
  return Currency::fromScaled(negative ? static_cast<int64_t>(0u - magnitude)
                                       : static_cast<int64_t>(magnitude));
}

String integerText(int64_t value) {
  char buffer[24];
  auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  return fromAscii(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
}

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\u00A0';
}

StringView trimBlanks(StringView text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

}  // namespace

double roundHalfEven(double value) {
  const double nearest = std::round(value);  // halves away from zero
  if (std::fabs(nearest - value) == 0.5) return 2.0 * std::round(value / 2.0);
  return nearest;
}

String CStr(const Variant& value) {
  switch (value.type()) {
    case VarType::Empty:
      return String();
    case VarType::String:
      return value.asString();
    case VarType::Boolean:
      return value.asBoolean() ? u"True" : u"False";
    case VarType::Integer:
      return integerText(value.asInteger());
    case VarType::Long:
      return integerText(value.asLong());
    case VarType::Byte:
      return integerText(value.asByte());
    case VarType::Single:
      return textOfSingle(value.asSingle());
    case VarType::Double:
      return textOfDouble(value.asDouble());
    case VarType::Currency:
      return textOfCurrency(value.asCurrency());
    case VarType::Date:
      return textOfDate(value.asDate());
    default:
      notConvertible(value);
  }
}

double CDbl(const Variant& value) {
  if (value.isString()) return parseDouble(value.asString());
  double number = 0.0;
  if (!numericValueOf(value, number)) notConvertible(value);
  return number;
}

float CSng(const Variant& value) {
  const double number = CDbl(value);
  // Overflow where the nearest Single would be infinite: 3.4028235E+38 still reads.
  const auto single = static_cast<float>(number);
  if (std::isinf(single)) raiseRuntimeError(vb_error::kOverflow);
  return single;
}

int16_t CInt(const Variant& value) {
  return static_cast<int16_t>(wholeNumberOf(value, INT16_MIN, INT16_MAX, 16));
}

int32_t CLng(const Variant& value) {
  return static_cast<int32_t>(wholeNumberOf(value, INT32_MIN, INT32_MAX, 32));
}

uint8_t CByte(const Variant& value) {
  return static_cast<uint8_t>(wholeNumberOf(value, 0, 255, 8));
}

bool CBool(const Variant& value) {
  if (value.isString()) {
    const StringView text = trimBlanks(value.asString());
    if (equalsIgnoreCase(text, u"True")) return true;
    if (equalsIgnoreCase(text, u"False")) return false;
    return parseDouble(value.asString()) != 0.0;
  }
  if (value.type() == VarType::Currency) return value.asCurrency().scaled() != 0;
  double number = 0.0;
  if (!numericValueOf(value, number)) notConvertible(value);
  return number != 0.0;
}

Currency CCur(const Variant& value) {
  switch (value.type()) {
    case VarType::Currency:
      return value.asCurrency();
    case VarType::String:
      return parseCurrency(value.asString());
    default: {
      double number = 0.0;
      if (!numericValueOf(value, number)) notConvertible(value);
      return currencyOfDouble(number);
    }
  }
}

Date CDate(const Variant& value) {
  if (value.isString()) return parseDate(value.asString());
  double serial = 0.0;
  if (!numericValueOf(value, serial)) notConvertible(value);
  if (!isValidDateSerial(serial)) raiseRuntimeError(vb_error::kOverflow);
  return Date{serial};
}

}  // namespace ravelin

// Built-in math functions: Abs, Int, Fix, Round, Sgn, Sqr, the transcendental functions, Hex,
// Oct, RGB, Rnd and Randomize.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/host/script/builtin_args.hpp>

namespace ravelin::script::detail {
namespace {

using Args = std::span<const Variant>;

[[noreturn]] void invalidCall() {
  raiseRuntimeError(vb_error::kInvalidProcedureCall);
}

// The operand of Abs, Int, Fix, Round and Sgn: Boolean and Empty count as Integer, text is read
// as a Double; numbers and dates stay as they are. Null is handled by the caller; anything else
// raises 13.
Variant numericOperand(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
      return Variant(int16_t{0});
    case VarType::Boolean:
      return Variant(static_cast<int16_t>(v.asBoolean() ? -1 : 0));
    case VarType::String:
      return Variant(CDbl(v));
    case VarType::Integer:
    case VarType::Long:
    case VarType::Byte:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
      return v;
    default:
      raiseRuntimeError(vb_error::kTypeMismatch);
  }
}

// Applies a whole-number function to each kind of number; whole types pass unchanged.
template <typename Function>
Variant wholeNumberOf(const Variant& value, Function round, int64_t (*roundScaled)(int64_t)) {
  if (value.isNull()) return value;
  const Variant v = numericOperand(value);
  switch (v.type()) {
    case VarType::Single:
      return Variant(static_cast<float>(round(double{v.asSingle()})));
    case VarType::Double:
      return Variant(round(v.asDouble()));
    case VarType::Date:
      return Variant(Date{round(v.asDate().serial)});
    case VarType::Currency:
      return Variant(Currency::fromScaled(roundScaled(v.asCurrency().scaled())));
    default:
      return v;
  }
}

// `quotient` steps of `unit` as a scaled Currency; a result beyond the range raises 6, as the
// Currency operators do (Int of the most negative Currency is one unit below it).
int64_t scaledUnits(int64_t quotient, int64_t unit) {
  if (quotient > INT64_MAX / unit || quotient < INT64_MIN / unit) {
    raiseRuntimeError(vb_error::kOverflow);
  }
  return quotient * unit;
}

// Scaled Currency values rounded to whole units, down and toward zero.
int64_t floorScaled(int64_t s) {
  const int64_t quotient = s / Currency::kScale;
  return scaledUnits(s % Currency::kScale < 0 ? quotient - 1 : quotient, Currency::kScale);
}
int64_t truncScaled(int64_t s) {
  return scaledUnits(s / Currency::kScale, Currency::kScale);
}

Variant callInt(Args a) {
  return wholeNumberOf(
      a[0], [](double x) { return std::floor(x); }, floorScaled);
}
Variant callFix(Args a) {
  return wholeNumberOf(
      a[0], [](double x) { return std::trunc(x); }, truncScaled);
}

Variant callAbs(Args a) {
  if (a[0].isNull()) return a[0];
  const Variant v = numericOperand(a[0]);
  switch (v.type()) {
    case VarType::Integer:
      return v.asInteger() < 0 ? negate(v) : v;
    case VarType::Long:
      return v.asLong() < 0 ? negate(v) : v;
    case VarType::Single:
      return Variant(std::fabs(v.asSingle()));
    case VarType::Double:
      return Variant(std::fabs(v.asDouble()));
    case VarType::Currency:
      return v.asCurrency() < Currency() ? Variant(-v.asCurrency()) : v;
    case VarType::Date:
      return Variant(std::fabs(v.asDate().serial));
    default:
      return v;  // Byte
  }
}

// x rounded half to even at `digits` decimals: x * 10^digits rounded, then divided back, in
// double arithmetic as the runtime does (Round(2.675, 2) is 2.68, Round(1.005, 2) is 1).
double roundDouble(double x, int32_t digits) {
  if (digits == 0) return roundHalfEven(x);
  const double scale = std::pow(10.0, digits);
  const double scaled = x * scale;
  if (!std::isfinite(scale) || !std::isfinite(scaled)) return x;
  return roundHalfEven(scaled) / scale;
}

// A scaled Currency rounded half to even at `digits` (0..3) decimals; 6 when the rounded value
// is beyond the range (Round of 922337203685477.5807 would be 922337203685478).
int64_t roundScaledHalfEven(int64_t s, int32_t digits) {
  int64_t unit = 1;
  for (int32_t i = digits; i < 4; ++i)
    unit *= 10;
  int64_t quotient = s / unit;
  const int64_t remainder = s % unit;
  const int64_t twice = remainder < 0 ? -2 * remainder : 2 * remainder;
  if (twice > unit || (twice == unit && quotient % 2 != 0)) quotient += s < 0 ? -1 : 1;
  return scaledUnits(quotient, unit);
}

Variant callRound(Args a) {
  const Variant& value = a[0];
  const int32_t digits = longArgument(a, 1, 0);
  if (value.isNull()) return value;
  if (digits < 0) invalidCall();
  const Variant v = numericOperand(value);
  switch (v.type()) {
    case VarType::Single:
      return Variant(static_cast<float>(roundDouble(double{v.asSingle()}, digits)));
    case VarType::Double:
      return Variant(roundDouble(v.asDouble(), digits));
    case VarType::Date:
      return Variant(Date{roundDouble(v.asDate().serial, digits)});
    case VarType::Currency:
      if (digits >= 4) return v;
      return Variant(Currency::fromScaled(roundScaledHalfEven(v.asCurrency().scaled(), digits)));
    default:
      return v;
  }
}

Variant callSgn(Args a) {
  if (a[0].isNull()) return a[0];
  const Comparison c = compare(numericOperand(a[0]), Variant(int16_t{0}));
  return Variant(static_cast<int16_t>(c == Comparison::Less ? -1 : c == Comparison::Equal ? 0 : 1));
}

// A Double function of one Double argument; Null gives Null; a result beyond the Double range
// raises 6.
template <double (*F)(double)>
Variant realFunction(Args a) {
  if (a[0].isNull()) return a[0];
  const double result = F(CDbl(a[0]));
  if (std::isinf(result)) raiseRuntimeError(vb_error::kOverflow);
  if (std::isnan(result)) invalidCall();
  return Variant(result);
}

double sqrChecked(double x) {
  if (x < 0) invalidCall();
  return std::sqrt(x);
}
double logChecked(double x) {
  if (!(x > 0)) invalidCall();
  return std::log(x);
}
double expOf(double x) {
  return std::exp(x);
}
double atnOf(double x) {
  return std::atan(x);
}
double cosOf(double x) {
  return std::cos(x);
}
double sinOf(double x) {
  return std::sin(x);
}
double tanOf(double x) {
  return std::tan(x);
}

// Digits of a number's two's complement in base 2^bits: an Integer in 16 bits (Hex of the
// Integer -1 is "FFFF"), anything else rounded to a Long and written in 32 bits (Hex of the Long
// -1 is "FFFFFFFF"; a Byte is never negative).
Variant radixText(const Variant& value, unsigned bits) {
  if (value.isNull()) return value;
  auto n = value.type() == VarType::Integer ? uint32_t{static_cast<uint16_t>(value.asInteger())}
                                            : static_cast<uint32_t>(CLng(value));
  char16_t buffer[16];
  char16_t* end = buffer + 16;
  char16_t* p = end;
  const unsigned mask = (1u << bits) - 1;
  do {
    *--p = u"0123456789ABCDEF"[n & mask];
    n >>= bits;
  } while (n != 0);
  return Variant(String(p, end));
}

Variant callHex(Args a) {
  return radixText(a[0], 4);
}
Variant callOct(Args a) {
  return radixText(a[0], 3);
}

// Rnd's 24-bit generator, with the runtime's multiplier, increment and starting seed.
thread_local uint32_t rndState = 0x50000;

float rndValue() {
  return static_cast<float>(rndState) / 16777216.0f;
}
void rndStep() {
  rndState = (rndState * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
}

// Rnd([n]): the next number in [0, 1); 0 repeats the last one; a negative n restarts the
// sequence from n, so the same n always gives the same number.
Variant callRnd(Args a) {
  if (isGiven(a, 0)) {
    const float n = CSng(a[0]);
    if (n == 0) return Variant(rndValue());
    if (n < 0) {
      const auto bits = std::bit_cast<uint32_t>(n);
      rndState = (bits + (bits >> 24)) & 0xFFFFFFu;
    }
  }
  rndStep();
  return Variant(rndValue());
}

// Randomize([n]): mixes n (the seconds since midnight by default) into the generator's seed.
Variant callRandomize(Args a) {
  double seed = 0;
  if (isGiven(a, 0)) {
    seed = CDbl(a[0]);
  } else {
    const double serial = currentDateTime().serial;
    seed = (serial - std::floor(serial)) * 86400.0;
  }
  const auto high = static_cast<uint32_t>(std::bit_cast<uint64_t>(seed) >> 32);
  const uint32_t mixed = ((high & 0xFFFFu) ^ (high >> 16)) << 8;
  rndState = (rndState & 0xFFu) | (mixed & 0xFFFF00u);
  return Variant();
}

// RGB(red, green, blue): the colour as a Long, red in the low byte. Components above 255 count
// as 255; negative ones raise 5.
Variant callRGB(Args a) {
  int32_t colour = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const int32_t component = CLng(a[i]);
    if (component < 0) invalidCall();
    colour |= std::min(component, 255) << (8 * i);
  }
  return Variant(colour);
}

constexpr Builtin kTable[] = {
    {u"Abs", 1, 1, callAbs},
    {u"Atn", 1, 1, realFunction<atnOf>},
    {u"Cos", 1, 1, realFunction<cosOf>},
    {u"Exp", 1, 1, realFunction<expOf>},
    {u"Fix", 1, 1, callFix},
    {u"Hex", 1, 1, callHex},
    {u"Int", 1, 1, callInt},
    {u"Log", 1, 1, realFunction<logChecked>},
    {u"Oct", 1, 1, callOct},
    {u"Randomize", 0, 1, callRandomize},
    {u"RGB", 3, 3, callRGB},
    {u"Rnd", 0, 1, callRnd},
    {u"Round", 1, 2, callRound},
    {u"Sgn", 1, 1, callSgn},
    {u"Sin", 1, 1, realFunction<sinOf>},
    {u"Sqr", 1, 1, realFunction<sqrChecked>},
    {u"Tan", 1, 1, realFunction<tanOf>},
};
static_assert(isSortedByName(kTable));

}  // namespace

std::span<const Builtin> mathBuiltins() {
  return kTable;
}

}  // namespace ravelin::script::detail

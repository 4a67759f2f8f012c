// MathFunctions: the suite's numeric rules: a truncation and a rounding immune to binary
// representation noise, a lenient reader of typed numbers, cumulative discounts, currency
// conversion and the limits and display formats of the numeric input fields. Stateless.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// How MyRound reaches zero; both modes round halves away from zero.
enum RoundingTypes : int32_t {
  ArithmeticalAssimetric = 0,
  ArithmeticalSimetric = 1,
};
template <>
const EnumInfo& enumInfo<RoundingTypes>();

// The numeric kinds of the suite's input fields.
enum VarDataType : int32_t {
  vtTenDigit = 10,
  vtThirteenDigit = 13,
  vtTDBNumber = 15,
  vtInteger = 16,
  vtLong = 32,
  vtDouble = 64,
  vtOperation = 900,
};
template <>
const EnumInfo& enumInfo<VarDataType>();

class MathFunctions : public PublicClass<MathFunctions> {
 public:
  static constexpr StringView kClassName = u"MathFunctions";

  MathFunctions() = default;

  // The member table late-bound callers see.
  static ClassInfo describe();

  // The integer part toward zero, taken on the value's decimal text (2.9999999999999996 gives
  // 3). Null gives 0; text that is no number raises 13.
  double MyInt(const Variant& Value) const;

  // Value rounded to Digits places (negative Digits round to tens, hundreds...), halves away
  // from zero, on the decimal text of the scaled value so that 0.285 gives 0.29. A scaled value
  // too large for plain notation falls back to Round (half to even). An unknown RoundingType
  // gives 0.
  double MyRound(double Value, int16_t Digits,
                 RoundingTypes RoundingType = ArithmeticalAssimetric) const;

  // Lenient reader of a typed number: keeps a leading "-", digits, every "." and the first ","
  // (an "E-" or "E+" exponent of digits is applied afterwards). With "." as DecimalSeparator
  // the kept text is read invariantly, otherwise in the current locale. Any failure gives 0.
  double MyVal(StringView Value, StringView DecimalSeparator = u",") const;

  // The magnitude of Value.
  double MyABS(double Value) const;

  // The percentage that three successive percentage discounts take off in all. Unrounded.
  double GetCumulativeDiscount(double dblDiscount1, double dblDiscount2, double dblDiscount3) const;

  // An amount in one currency converted to another through their exchange rates and factors.
  // A zero source rate or factor gives 0. Where the target rate applies and the target factor
  // is not 1, the source factor is divided out a second time, read back from its locale text
  // (so a decimal comma loses its fraction): the suite's programs depend on that result.
  double ConvCurrency(double dblValue, double dblValueExchange, double dblValueFactor,
                      bool blnTo_ItsEuro, double dblTo_Exchange, double dblTo_Factor,
                      int16_t intReturnDecimals) const;

  // The largest value a field of the kind accepts; 0 for an unknown kind.
  double GetTypeMaxValue(VarDataType TypeVar) const;

  // The display format of a field of the kind.
  String GetTypeMaxValueFormat(VarDataType TypeVar) const;

  // The locale's abbreviated day names, Sunday first, in proper case, joined with ",".
  String GetTDBWeekTitles() const;

  // KeyAscii when it is backspace, 16, 17, "." or a digit; otherwise 0 (swallow the key).
  int16_t ValidNumericAscii(int16_t KeyAscii) const;

  // The largest value the positive section of a numeric display format can show ("#,##0.00"
  // gives 9999).
  double GetTDBMaxValueFromFormat(StringView strFormat) const;
};

}  // namespace ravelin

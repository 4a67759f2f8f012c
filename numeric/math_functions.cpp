#include <cmath>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/numeric/math_functions.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {
namespace {

// The smallest magnitude whose decimal text (15 significant digits) is written "1E+15".
constexpr double kFirstExponentText = 999999999999999.5;

// Round(value, digits): the scaled value rounded half to even; negative digits raise 5.
double platformRound(double value, int16_t digits) {
  if (digits < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const double scale = std::pow(10.0, digits);
  return roundHalfEven(value * scale) / scale;
}

// The text with the first letter of each word upper case and the rest lower case.
String properCase(StringView text) {
  String result = toLower(text);
  bool wordStart = true;
  for (char16_t& unit : result) {
    if (wordStart) unit = toUpper(unit);
    wordStart = unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n' || unit == 0;
  }
  return result;
}

// Everything before the first occurrence of `mark` (the whole text when it is absent).
StringView before(StringView text, StringView mark) {
  return text.substr(0, text.find(mark));
}

// The invariant reading of the text's leading sign, digits and points; it stops at any other
// character, an exponent mark included ("1E-05" reads as 1).
double plainReading(StringView text) {
  std::size_t end = 0;
  if (end < text.size() && (text[end] == u'-' || text[end] == u'+')) ++end;
  while (end < text.size() && ((text[end] >= u'0' && text[end] <= u'9') || text[end] == u'.')) {
    ++end;
  }
  return Val(text.substr(0, end));
}

// The mantissa reading of MyVal: a leading "-", digits, every "." and the first ",".
double readMantissa(StringView text, StringView decimalSeparator) {
  String kept;
  bool commaKept = false;
  for (const char16_t unit : text) {
    if (unit >= u'0' && unit <= u'9') {
      kept += unit;
    } else if (unit == u'.') {
      kept += unit;
    } else if (unit == u',' && !commaKept) {
      kept += unit;
      commaKept = true;
    } else if (unit == u'-' && kept.empty()) {
      kept += unit;
    }
  }
  if (kept.empty() || kept == u"-") return 0;
  if (decimalSeparator == u".") return plainReading(kept);
  return parseDouble(kept);
}

double scaleByExponent(double mantissa, StringView digits, bool negative) {
  const double power = std::pow(10.0, CInt(Variant(String(digits))));
  const double result = negative ? mantissa / power : mantissa * power;
  if (!std::isfinite(result)) raiseRuntimeError(vb_error::kOverflow);
  return result;
}

}  // namespace

double MathFunctions::MyInt(const Variant& Value) const {
  return TruncateNumber(Value);
}

double MathFunctions::MyRound(double Value, int16_t Digits, RoundingTypes RoundingType) const {
  const double scale = std::pow(10.0, Digits);
  double shifted = 0;
  switch (RoundingType) {
    case ArithmeticalAssimetric:
      if (Value == 0) return 0;
      shifted = Value > 0 ? Value * scale + 0.5 : Value * scale - 0.5;
      break;
    case ArithmeticalSimetric:
      shifted = Value < 0 ? Value * scale - 0.5 : Value * scale + 0.5;
      break;
    default:
      return 0;
  }
  if (!std::isfinite(shifted)) raiseRuntimeError(vb_error::kOverflow);
  // |shifted| is at least 0.5, so its decimal text takes the exponent form exactly when its 15
  // significant digits round up to 1E+15 or more (ties away from zero): one text build saved.
  if (std::fabs(shifted) >= kFirstExponentText) return platformRound(Value, Digits);
  return TruncateNumber(Variant(shifted)) / scale;
}

double MathFunctions::MyVal(StringView Value, StringView DecimalSeparator) const {
  try {
    for (const StringView mark : {StringView(u"E-"), StringView(u"E+")}) {
      const auto at = Value.find(mark);
      if (at == StringView::npos) continue;
      const StringView exponent = Value.substr(at + 2);
      if (exponent.empty() || !IsDigitsOnly(exponent)) continue;
      return scaleByExponent(readMantissa(Value.substr(0, at), DecimalSeparator), exponent,
                             mark == u"E-");
    }
    return readMantissa(Value, DecimalSeparator);
  } catch (const AutomationError&) {
    return 0;
  }
}

double MathFunctions::MyABS(double Value) const {
  if (Value == 0) return 0;
  return Value < 0 ? -Value : Value;
}

double MathFunctions::GetCumulativeDiscount(double dblDiscount1, double dblDiscount2,
                                            double dblDiscount3) const {
  constexpr double kBase = 1000;
  const double first = kBase - dblDiscount1 / 100 * kBase;
  const double second = first - dblDiscount2 / 100 * first;
  const double third = second - dblDiscount3 / 100 * second;
  return (kBase - third) * 100 / kBase;
}

double MathFunctions::ConvCurrency(double dblValue, double dblValueExchange, double dblValueFactor,
                                   bool blnTo_ItsEuro, double dblTo_Exchange, double dblTo_Factor,
                                   int16_t intReturnDecimals) const {
  if (dblValueFactor == 0 || dblValueExchange == 0) return 0;
  const double base = MyRound(dblValue / dblValueExchange / dblValueFactor * dblTo_Factor, 7);
  double result = base;
  if (dblTo_Exchange != 1 && !blnTo_ItsEuro) {
    if (dblTo_Factor == 1) {
      result = MyRound(base * dblTo_Exchange, intReturnDecimals);
    } else {
      // The source factor divided out once more, as read back from its locale text.
      const double sourceFactor = plainReading(textOfDouble(dblValueFactor));
      if (sourceFactor == 0) {
        raiseRuntimeError(base == 0 ? vb_error::kOverflow : vb_error::kDivisionByZero);
      }
      result = base / sourceFactor * dblTo_Exchange;
      if (intReturnDecimals >= 0) result = MyRound(result, intReturnDecimals);
    }
  }
  if (intReturnDecimals >= 0) result = MyRound(result, intReturnDecimals);
  return result;
}

double MathFunctions::GetTypeMaxValue(VarDataType TypeVar) const {
  switch (TypeVar) {
    case vtTenDigit:
      return 9999999999.0;
    case vtThirteenDigit:
      return 9999999999999.0;
    case vtTDBNumber:
      return 999999999999999.0;
    case vtInteger:
    case vtLong:
    case vtDouble:
      return std::pow(2.0, static_cast<int>(TypeVar) - 1) - 1;
    case vtOperation:
      return 900;
  }
  return 0;
}

String MathFunctions::GetTypeMaxValueFormat(VarDataType TypeVar) const {
  switch (TypeVar) {
    case vtTenDigit:
    case vtLong:
      return u"#########0";
    case vtThirteenDigit:
      return u"############0";
    case vtInteger:
      return u"####0";
    case vtOperation:
      return u"##0";
    case vtTDBNumber:
    case vtDouble:
      break;
  }
  return u"##############0";
}

String MathFunctions::GetTDBWeekTitles() const {
  String titles;
  for (const String& name : currentLocale().abbreviatedDayNames) {
    if (!titles.empty()) titles += u',';
    titles += properCase(name);
  }
  return titles;
}

int16_t MathFunctions::ValidNumericAscii(int16_t KeyAscii) const {
  const bool allowed = KeyAscii == 8 || KeyAscii == 16 || KeyAscii == 17 || KeyAscii == 46 ||
                       (KeyAscii >= 48 && KeyAscii <= 57);
  return allowed ? KeyAscii : int16_t{0};
}

double MathFunctions::GetTDBMaxValueFromFormat(StringView strFormat) const {
  StringView section = before(strFormat, u";");
  if (const auto blank = section.find(u" #"); blank != StringView::npos) {
    section = section.substr(blank + 1);
  }
  section = before(section, u".");
  if (const auto hash = section.find(u'#'); hash != StringView::npos) {
    section = section.substr(hash);
  }
  section = before(section, u" ");
  String digits;
  for (const char16_t unit : section) {
    if (unit == u',' || unit == u'.') continue;
    digits += unit == u'0' || unit == u'#' ? u'9' : unit;
  }
  return MyVal(digits, u",");
}

template <>
const EnumInfo& enumInfo<RoundingTypes>() {
  static const EnumInfo info{u"RoundingTypes",
                             {
                                 {u"ArithmeticalAssimetric", ArithmeticalAssimetric},
                                 {u"ArithmeticalSimetric", ArithmeticalSimetric},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<VarDataType>() {
  static const EnumInfo info{u"VarDataType",
                             {
                                 {u"vtTenDigit", vtTenDigit},
                                 {u"vtThirteenDigit", vtThirteenDigit},
                                 {u"vtTDBNumber", vtTDBNumber},
                                 {u"vtInteger", vtInteger},
                                 {u"vtLong", vtLong},
                                 {u"vtDouble", vtDouble},
                                 {u"vtOperation", vtOperation},
                             }};
  return info;
}

ClassInfo MathFunctions::describe() {
  return ClassBuilder<MathFunctions>(kClassName)
      .method(u"MyInt", &MathFunctions::MyInt, {u"Value"})
      .method(u"MyRound",
              [](MathFunctions& self, double value, int16_t digits, int32_t roundingType) {
                return self.MyRound(value, digits, static_cast<RoundingTypes>(roundingType));
              },
              {u"Value", u"Digits", optional(u"RoundingType", Variant(int32_t{0}))})
      .method(u"MyVal",
              [](MathFunctions& self, String value, String decimalSeparator) {
                return self.MyVal(value, decimalSeparator);
              },
              {u"Value", optional(u"DecimalSeparator", Variant(String(u",")))})
      .method(u"MyABS", &MathFunctions::MyABS, {u"Value"})
      .method(u"GetCumulativeDiscount", &MathFunctions::GetCumulativeDiscount,
              {u"dblDiscount1", u"dblDiscount2", u"dblDiscount3"})
      .method(u"ConvCurrency", &MathFunctions::ConvCurrency,
              {u"dblValue", u"dblValueExchange", u"dblValueFactor", u"blnTo_ItsEuro",
               u"dblTo_Exchange", u"dblTo_Factor", u"intReturnDecimals"})
      .method(u"GetTypeMaxValue",
              [](MathFunctions& self, int32_t typeVar) {
                return self.GetTypeMaxValue(static_cast<VarDataType>(typeVar));
              },
              {u"TypeVar"})
      .method(u"GetTypeMaxValueFormat",
              [](MathFunctions& self, int32_t typeVar) {
                return self.GetTypeMaxValueFormat(static_cast<VarDataType>(typeVar));
              },
              {u"TypeVar"})
      .method(u"GetTDBWeekTitles", &MathFunctions::GetTDBWeekTitles)
      .method(u"ValidNumericAscii", &MathFunctions::ValidNumericAscii, {u"KeyAscii"})
      .method(
          u"GetTDBMaxValueFromFormat",
          [](MathFunctions& self, String format) { return self.GetTDBMaxValueFromFormat(format); },
          {u"strFormat"})
      .build();
}

}  // namespace ravelin

// Conversions between automation values, exactly as the automation runtime performs them.
// Each function raises the runtime's errors: 13 type mismatch, 6 overflow, 94 invalid use of
// Null. Locale-dependent conversions read the calling thread's current locale unless given one.
#pragma once

#include <cstdint>

#include <ravelin/frame/currency.hpp>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// ---- Numbers to text -------------------------------------------------------------------------

// CStr of a Double: at most 15 significant digits, ties away from zero on the exact value, the
// locale's decimal separator, no grouping, exponent form ("1E+15", "1.5E-07") when the decimal
// exponent is below -4 or at least 15. Negative zero gives "0".
String textOfDouble(double value, const Locale& locale = currentLocale());
// CStr of a Single: the same with 7 significant digits.
String textOfSingle(float value, const Locale& locale = currentLocale());
// CStr of a Currency: exact, up to 4 decimals, trailing zeros dropped, never an exponent.
String textOfCurrency(Currency value, const Locale& locale = currentLocale());

// Str: the invariant text of a number. "." always, a leading blank for a non-negative value,
// no zero before the point (" .5", "-.5"). Null raises 94; text and other non-numbers raise 13.
String Str(const Variant& number);

// ---- Text to numbers -------------------------------------------------------------------------

// Val: the lenient reader. Skips blanks, tabs and line breaks anywhere among the digits, reads
// an optional sign, digits, "." and an exponent (E or D), and stops at the first other
// character; "&H" and "&O" prefixes read hexadecimal and octal. No digits give 0.
double Val(StringView text);

// The locale reader behind CDbl and friends: blanks at both ends, one sign before or after,
// parentheses for negative, the currency symbol, the locale's decimal and thousands separators,
// an exponent, "&H" and "&O". The whole text must be used: otherwise 13; out of range 6.
double parseDouble(StringView text, const Locale& locale = currentLocale());
Currency parseCurrency(StringView text, const Locale& locale = currentLocale());

// ---- Variant coercions -----------------------------------------------------------------------

String CStr(const Variant& value);  // Empty gives "", Null raises 94, Boolean "True"/"False"
double CDbl(const Variant& value);
float CSng(const Variant& value);
int16_t CInt(const Variant& value);  // round half to even; overflow 6
int32_t CLng(const Variant& value);  // round half to even; overflow 6
uint8_t CByte(const Variant& value);  // round half to even; overflow 6
bool CBool(const Variant& value);     // numbers: non-zero; text: "True"/"False" or a number
Currency CCur(const Variant& value);  // round half to even at the fourth decimal
Date CDate(const Variant& value);     // numbers as serials; text read in the locale's order

// Round half to even to a whole number, as the integer conversions do on a binary value.
double roundHalfEven(double value);

}  // namespace ravelin

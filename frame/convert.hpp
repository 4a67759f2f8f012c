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
// exponent is below -4 or at least 15; the exponent has a sign and at least two digits.
// Negative zero gives "0"; an infinite or NaN value raises 6.
String textOfDouble(double value, const Locale& locale = currentLocale());
// CStr of a Single: the same with 7 significant digits.
String textOfSingle(float value, const Locale& locale = currentLocale());
// CStr of a Currency: exact, up to 4 decimals, trailing zeros dropped, never an exponent.
String textOfCurrency(Currency value, const Locale& locale = currentLocale());

// Str: the invariant text of a number. "." always, a leading blank for a non-negative value,
// no zero before the point (" .5", "-.5"). Integer, Long, Byte, Single (7 digits), Double and
// Currency as CStr writes them; Empty gives " 0"; a Date its serial (" .5" for noon); a Boolean
// "True" or "False"; text is first read as CDbl reads it. Null raises 94; errors, objects and
// arrays raise 13.
String Str(const Variant& number);

// ---- Text to numbers -------------------------------------------------------------------------

// Val: the lenient reader. Skips blanks, tabs and line breaks anywhere among the digits, reads
// an optional sign, digits, "." and an exponent (E or D), and stops at the first other
// character. No digits give 0. "&H" and "&O" read hexadecimal and octal: up to 4 hex digits
// wrap as an Integer (&HFFFF is -1), up to 8 as a Long, more as 64 bits; octal wraps by value
// the same way; beyond 64 bits raises 6. A type character after the number: "%" and "&" raise
// 13 after a fraction or exponent and 6 out of the Integer or Long range, "!" rounds to a
// Single, "@" to a Currency. An infinite result raises 6.
double Val(StringView text);

// The locale reader behind CDbl and friends: blanks at both ends, one sign before or after,
// parentheses for negative, the currency symbol, the locale's decimal and thousands separators,
// an exponent (E only), "&H" and "&O". The thousands separator may stand anywhere after the
// first digit of the whole part. The whole text must be used, and empty text is no number:
// otherwise 13; out of range 6; underflow gives 0. The double is the correctly rounded value of
// the decimal digits. "&H" and "&O" read as a Long while they fit in 32 bits (&HFFFFFFFF is -1).
double parseDouble(StringView text, const Locale& locale = currentLocale());
// The same reader; the decimal digits are rounded half to even at the fourth decimal, exactly.
Currency parseCurrency(StringView text, const Locale& locale = currentLocale());

// ---- Variant coercions -----------------------------------------------------------------------
// Empty converts as 0, "" or False; True is -1 as a number; a Date is its serial. Text is read
// in the current locale. Null raises 94; errors (the missing-argument marker too), objects and
// arrays raise 13.

String CStr(const Variant& value);  // Empty gives "", Null raises 94, Boolean "True"/"False"
double CDbl(const Variant& value);
float CSng(const Variant& value);  // raises 6 where the nearest Single would be infinite
// The whole-number conversions round half to even: a Double on its binary value, text on its
// decimal digits (CInt("2.5") is 2, CInt("32767.5") raises 6). Out of range raises 6. Text
// "&H..." wraps to the target's width when it fits (CInt("&HFFFF") is -1, CLng gives 65535).
int16_t CInt(const Variant& value);
int32_t CLng(const Variant& value);
uint8_t CByte(const Variant& value);
bool CBool(const Variant& value);  // numbers: non-zero; text: "True"/"False" or a number
// Rounds half to even at the fourth decimal: a Double on its exact binary value, text on its
// decimal digits.
Currency CCur(const Variant& value);
// Numbers as serials (outside the valid range raises 6); text read by parseDate.
Date CDate(const Variant& value);

// Round half to even to a whole number, as the integer conversions do on a binary value.
double roundHalfEven(double value);

}  // namespace ravelin

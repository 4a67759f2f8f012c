// User-defined formats: one engine for numbers, dates and text, as the runtime's Format does.
#pragma once

#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// Format(value, format): the runtime's Format with user-defined and named formats.
//
// The first deciding token of the format text (outside "\x" and "..." literals) gives its kind:
// "0" "#" "%" a number format; "@" "&" "<" ">" "!" a text format; a date letter (d w m q y h n
// s c, "ttttt", an AM/PM marker) a date format. A format of literals only is read after the
// value's type. Up to four sections split by ";" (more are ignored).
//
// Numbers: 0 # . , % E+ E- e+ e-, other characters literal. The first "." is the locale's
// decimal separator, any "," turns on grouping by three, "%" multiplies by 100. One section
// serves all values; two: positive and zero, negative; three: positive, negative, zero; the
// fourth serves Null. A missing or empty section falls back to the first, which writes a "-" for
// a negative value. The section follows the sign before rounding; the value's 15-digit text
// (7 for a Single, exact for Currency and whole numbers) is then rounded half up in magnitude.
// Dates and Booleans (-1, 0) count as numbers; numeric text is read as CDbl reads it, and other
// text is returned as it is. Empty counts as 0.
//
// Dates: d dd ddd dddd ddddd dddddd, w ww, m mm mmm mmmm, q, y yy yyyy, h hh, n nn, s ss,
// ttttt, c, AM/PM am/pm A/P a/p (12-hour clock, letters as written), AMPM (the locale's
// designators); "/" and ":" write the locale's separators. m and mm are minutes when an h or hh
// came earlier, no minutes were written yet and no d token came in between. Letters match in
// either case. Numbers are serials (6 outside the date range); text is read as a date, else as a
// number, else returned as it is. The first section serves every date; the fourth serves Null.
//
// Text: "@" a character or a blank, "&" a character or nothing, filled so the text ends at the
// last placeholder ("!" fills from the left instead); text longer than the placeholders follows
// the whole section. "<" and ">" change the case. The second section serves Null and "".
// Numbers and dates are written as CStr writes them in the locale.
//
// Named formats (any case): General Number, Currency, Fixed, Standard, Percent, Scientific,
// Yes/No, True/False, On/Off, General Date, Long Date, Medium Date ("dd-mmm-yy"), Short Date,
// Long Time, Medium Time ("hh:nn AMPM", or "hh:nn" for a locale without designators), Short
// Time ("hh:nn"). Currency has two decimals, grouping and the locale's symbol, placed as Windows
// places it for the locale: en-US "$1,234.50" and "($1,234.50)"; other English locales the
// symbol first and "-" for negatives; pt-BR "R$ 1.234,50" and "-R$ 1.234,50"; all other locales
// the number, a blank and the symbol.
//
// An empty format gives CStr of the value in the locale, and "" for Empty and Null. Null gives
// "" unless a section serves it. Objects, arrays and error values raise 13; options outside
// 0..7 and 0..3 raise 5.
String Format(const Variant& value, StringView format = {}, int firstDayOfWeek = vbSunday,
              int firstWeekOfYear = vbFirstJan1, const Locale& locale = currentLocale());

// Where the locale puts its currency symbol: the positive section of a user format around the
// number section `number` ("#,##0.00"), and whether negatives go in parentheses (en-US) rather
// than after a minus sign. The rules are those of the named format Currency above.
struct CurrencyFormat {
  String positive;
  bool parentheses = false;
  // The two-section user format: negatives in parentheses or after "-".
  String text(bool withParentheses) const;
};
CurrencyFormat currencyFormatOf(const Locale& locale, StringView number);

}  // namespace ravelin

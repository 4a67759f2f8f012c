// Shared text helpers of the common-functions module: padding, digit checks, null cutting and the
// decimal truncation of numbers that the text and numeric classes rest on.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// True when every unit of the text is one of "0" to "9"; an empty text is true.
bool IsDigitsOnly(StringView text);

// Cuts `text` (in place) before its first unit of code 0, if any, and returns the result with
// leading and trailing spaces removed; the variable keeps the untrimmed cut.
String CutAtNull(String& text);

// Fits the text to `size` units: an over-long text keeps its first `size` units (both functions
// cut on the right); a short one is filled with the character of ANSI code `fill`, before the
// text (PadLeftText) or after it (PadRightText). A negative size or a fill code that has no
// character raises 5.
String PadLeftText(StringView text, int16_t size, int16_t fill);
String PadRightText(StringView text, int16_t size, int16_t fill);

// The integer part of a number toward zero, taken on the number's invariant decimal text (Str)
// so that no binary rounding intervenes. Null gives 0. A value written in exponent form with a
// mantissa without a point comes out one power of ten smaller (" 1E+15" gives 1E+14), as the
// suite's programs expect.
double TruncateNumber(const Variant& value);

// A record-set field's Value, read by name through late binding so that any field object
// serves. Raises what the read raises (91 for Nothing, 438 without a Value, the field's own).
Variant FieldValue(const ObjectRef& field);

// The text of a record-set field's Value, read by FieldValue. Any error on the way (Nothing, an
// object without a Value, no current record, a Null or another value that has no text) is absorbed
// and the text stays empty.
String FieldValueText(const ObjectRef& field);

// The code of a unit in the current locale's ANSI code page (what Asc gives).
int32_t AnsiCodeOf(char16_t unit);

// The character of an ANSI code in the current locale's code page (what Chr gives); codes
// outside 0..255 raise 5.
String AnsiCharacterOf(int32_t code);

// The text without leading and trailing spaces (only U+0020, as Trim removes).
StringView TrimSpaces(StringView text);

}  // namespace ravelin

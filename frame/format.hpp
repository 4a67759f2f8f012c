// User-defined formats: one engine for numbers, dates and text, as the runtime's Format does.
#pragma once

#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// Format(value, format). Numbers: 0 # . , % E+ E- literals, \x and "..." literals, up to four
// sections split by ";" (positive, negative, zero, Null). Dates: d dd ddd dddd ddddd dddddd,
// w ww, m mm mmm mmmm, q, y yy yyyy, h hh, n nn, s ss, ttttt, c, AM/PM am/pm A/P a/p AMPM,
// "/" and ":" as the locale's separators, m/mm as minutes right after an hour. Text: @ & < > !.
// An empty format gives CStr of the value. Rounding of numbers is half up in magnitude on the
// value's 15-digit text.
String Format(const Variant& value, StringView format = {}, int firstDayOfWeek = vbSunday,
              int firstWeekOfYear = vbFirstJan1, const Locale& locale = currentLocale());

}  // namespace ravelin

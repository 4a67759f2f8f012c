// Text of dates: CStr of a date and the Windows picture patterns of the locale.
#include <cmath>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

namespace {

// Below this the fraction of a serial counts as midnight.
constexpr double kMidnightTolerance = 1e-12;

void appendNumber(String& out, int value, int minDigits) {
  char16_t digits[12];
  int count = 0;
  auto rest = static_cast<unsigned>(value < 0 ? -value : value);
  do {
    digits[count++] = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (value < 0) out += u'-';
  for (int pad = count; pad < minDigits; ++pad)
    out += u'0';
  while (count > 0)
    out += digits[--count];
}

// Writes one run of a pattern letter ("dd", "MMMM", "tt"...).
void appendField(String& out, char16_t letter, int count, const DateParts& parts,
                 const Locale& locale) {
  const int width = count >= 2 ? 2 : 1;
  switch (letter) {
    case u'd':
      if (count <= 2) {
        appendNumber(out, parts.day, width);
      } else {
        const auto& names = count == 3 ? locale.abbreviatedDayNames : locale.dayNames;
        out += names[static_cast<size_t>(parts.dayOfWeek - 1)];
      }
      break;
    case u'M':
      if (count <= 2) {
        appendNumber(out, parts.month, width);
      } else {
        const auto& names = count == 3 ? locale.abbreviatedMonthNames : locale.monthNames;
        out += names[static_cast<size_t>(parts.month - 1)];
      }
      break;
    case u'y':
      // The full year is not padded: year 100 is "100".
      appendNumber(out, count <= 2 ? parts.year % 100 : parts.year, count <= 2 ? width : 1);
      break;
    case u'h': {
      const int hour12 = parts.hour % 12;
      appendNumber(out, hour12 == 0 ? 12 : hour12, width);
      break;
    }
    case u'H':
      appendNumber(out, parts.hour, width);
      break;
    case u'm':
      appendNumber(out, parts.minute, width);
      break;
    case u's':
      appendNumber(out, parts.second, width);
      break;
    case u't': {
      const String& designator = parts.hour < 12 ? locale.amDesignator : locale.pmDesignator;
      if (count == 1) {
        if (!designator.empty()) out += designator.front();
      } else {
        out += designator;
      }
      break;
    }
    default:
      out.append(static_cast<size_t>(count), letter);
  }
}

bool isPatternLetter(char16_t unit) {
  return unit == u'd' || unit == u'M' || unit == u'y' || unit == u'h' || unit == u'H' ||
         unit == u'm' || unit == u's' || unit == u't';
}

}  // namespace

String formatWithPattern(Date date, StringView pattern, const Locale& locale) {
  const DateParts parts = splitDate(date);
  String out;
  size_t i = 0;
  while (i < pattern.size()) {
    const char16_t unit = pattern[i];
    if (unit == u'\'') {
      // A quoted literal; two apostrophes inside it stand for one.
      ++i;
      while (i < pattern.size()) {
        if (pattern[i] == u'\'') {
          if (i + 1 < pattern.size() && pattern[i + 1] == u'\'') {
            out += u'\'';
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        out += pattern[i++];
      }
    } else if (isPatternLetter(unit)) {
      size_t end = i;
      while (end < pattern.size() && pattern[end] == unit)
        ++end;
      appendField(out, unit, static_cast<int>(end - i), parts, locale);
      i = end;
    } else {
      out += unit;
      ++i;
    }
  }
  return out;
}

String textOfDate(Date date, const Locale& locale) {
  if (!isValidDateSerial(date.serial)) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const double whole = std::trunc(date.serial);
  if (whole == 0.0) return formatWithPattern(date, locale.timePattern, locale);
  String text = formatWithPattern(date, locale.shortDatePattern, locale);
  if (std::fabs(date.serial - whole) >= kMidnightTolerance) {
    text += u' ';
    text += formatWithPattern(date, locale.timePattern, locale);
  }
  return text;
}

}  // namespace ravelin

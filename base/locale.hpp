// Locale: the regional settings every text conversion of the library reads, as a value, and the
// locales the library carries with their Windows settings.
#pragma once

#include <array>
#include <cstdint>
#include <ravelin/base/text.hpp>

namespace ravelin {

// Order of day, month and year in the short date, derived from its pattern.
enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

// The settings of one locale, as Windows has them for that locale. Patterns use the Windows
// picture letters: d dd (day), M MM MMM MMMM (month), yy yyyy (year), h hh H HH (hour, 12 and
// 24-hour), m mm (minute), s ss (second), tt (AM/PM designator), '...' literals.
struct Locale {
  String name;        // "en-US"
  uint32_t lcid = 0;  // 1033
  String decimalSeparator;
  String thousandsSeparator;
  String currencySymbol;
  String dateSeparator;
  String timeSeparator;
  String shortDatePattern;                    // "M/d/yyyy"
  String longDatePattern;                     // "dddd, MMMM d, yyyy"
  String timePattern;                         // "h:mm:ss tt"
  String amDesignator;                        // "AM"
  String pmDesignator;                        // "PM"
  std::array<String, 7> dayNames;             // Sunday first
  std::array<String, 7> abbreviatedDayNames;  // Sunday first
  std::array<String, 12> monthNames;          // January first
  std::array<String, 12> abbreviatedMonthNames;
  int ansiCodePage = 1252;
  int oemCodePage = 437;

  DateOrder dateOrder() const;
  // True when the time pattern uses the 12-hour clock (h or hh).
  bool uses12HourClock() const;
};

// A system locale name without its encoding and modifier, with "_" written as "-":
// "pt_BR.UTF-8" and "pt_BR@euro" give "pt-BR". Case is kept.
String localeBaseName(StringView name);

// The locales the library knows with their Windows settings, whatever the C library offers:
// en-US, en-GB, pt-BR, pt-PT, de-DE, fr-FR, es-ES and it-IT. Names match in any case, with "_"
// or "-" and with or without an encoding ("pt_BR.UTF-8"); a bare language ("pt", "en") names its
// main country, as Windows' neutral locales do (pt-BR, en-US, de-DE, fr-FR, es-ES, it-IT).
// Null when the library does not know the locale.
const Locale* findKnownLocale(StringView name);
const Locale* findKnownLocale(uint32_t lcid);

}  // namespace ravelin

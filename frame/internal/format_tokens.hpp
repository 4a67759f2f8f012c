// The parsed form of a user-defined format text: its kind, its sections and their tokens.
// Internal to the format engine (format_*.cpp).
#pragma once

#include <array>
#include <cstdint>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/internal/decimal_digits.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/base/text.hpp>
#include <vector>

namespace ravelin::detail {

// How a format text reads its value. Literal: the text holds no token that decides (only
// literals, "." or ","), so the value's own type decides.
enum class FormatKind : uint8_t { Literal, Number, Date, Text };

enum class TokenKind : uint8_t {
  Literal,  // the format's own text at [begin, begin + length)
  // Numbers
  IntegerDigit,   // "0" or "#" before the decimal point
  FractionDigit,  // "0" or "#" after it
  DecimalPoint,
  Percent,
  Exponent,  // "E+" and the like with its digit placeholders
  // Dates
  DayNumber,
  DayTwoDigits,
  DayAbbreviation,
  DayName,
  ShortDate,
  LongDate,
  WeekdayNumber,
  WeekOfYearNumber,
  MonthNumber,
  MonthTwoDigits,
  MonthAbbreviation,
  MonthName,
  Quarter,
  DayOfYear,
  YearTwoDigits,
  YearFourDigits,
  HourNumber,
  HourTwoDigits,
  MinuteNumber,
  MinuteTwoDigits,
  SecondNumber,
  SecondTwoDigits,
  LocaleTime,
  GeneralDate,
  AmPmLetters,  // "AM/PM" in any case: the letters as written
  APLetter,     // "A/P" in any case: the letter as written
  LocaleAmPm,   // "AMPM": the locale's designators
  DateSeparator,
  TimeSeparator,
  // Text
  CharOrSpace,    // "@"
  CharOrNothing,  // "&"
};

struct FormatToken {
  TokenKind kind;
  uint32_t begin;  // position in the format text
  uint32_t length;
};

enum class CaseChange : uint8_t { None, Upper, Lower };

// One ";"-separated part of a format, with what its tokens add up to.
struct FormatSection {
  uint32_t firstToken = 0;
  uint32_t endToken = 0;
  bool empty = true;  // no character at all between its separators

  // Numbers
  int32_t integerDigits = 0;         // placeholders before the decimal point
  int32_t forcedIntegerDigits = 0;   // from the first "0" to the decimal point
  int32_t fractionDigits = 0;        // placeholders after it
  int32_t forcedFractionDigits = 0;  // up to the last "0" after it
  int32_t percentCount = 0;
  bool grouping = false;
  bool hasExponent = false;
  bool exponentSignAlways = false;  // "E+" rather than "E-"
  int32_t exponentDigits = 0;       // minimum digits of the exponent ("0"s after the sign)

  // Dates
  bool twelveHour = false;

  // Text
  int32_t placeholders = 0;
  CaseChange caseChange = CaseChange::None;
  bool leftAlign = false;
};

inline constexpr int kMaxSections = 4;

struct ParsedFormat {
  FormatKind kind = FormatKind::Literal;
  std::vector<FormatToken> tokens;
  std::array<FormatSection, kMaxSections> sections{};
  int sectionCount = 0;

  // The section i if the format has it with some text, else null.
  const FormatSection* usableSection(int i) const {
    return i < sectionCount && !sections[i].empty ? &sections[i] : nullptr;
  }
};

// The kind decided by the first deciding token: "0" "#" "%" for numbers; "@" "&" "<" ">" "!"
// for text; a date letter (d w m q y h n s c, "ttttt", an AM/PM marker) for dates.
FormatKind classifyFormat(StringView format);

// Splits the format into at most four sections (later ones are ignored) and reads each as
// `kind` (Number, Date or Text).
ParsedFormat parseFormat(StringView format, FormatKind kind);

// The format text a token stands for.
inline StringView tokenText(StringView format, const FormatToken& token) {
  return format.substr(token.begin, token.length);
}

// Formats a number with a Number format: picks the section by the sign and zero-ness of the
// unrounded value, then rounds half up in magnitude at the section's decimals.
void appendFormattedNumber(DecimalDigits number, const ParsedFormat& parsed, StringView format,
                           const Locale& locale, String& out);
// Formats a number with one section of a Number format; `minus` writes a "-" first.
void appendNumberSection(DecimalDigits magnitude, bool minus, const ParsedFormat& parsed,
                         const FormatSection& section, StringView format, const Locale& locale,
                         String& out);

// Formats a date with one section of a Date format.
void appendFormattedDate(Date date, const ParsedFormat& parsed, const FormatSection& section,
                         StringView format, int firstDayOfWeek, int firstWeekOfYear,
                         const Locale& locale, String& out);

// Formats text with one section of a Text format.
void appendFormattedText(StringView text, const ParsedFormat& parsed, const FormatSection& section,
                         StringView format, String& out);

}  // namespace ravelin::detail

// Date sections of user-defined formats: day, week, month, quarter, year and time tokens.
#include <cstddef>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/internal/format_tokens.hpp>

namespace ravelin::detail {
namespace {

// A non-negative number with at least `minDigits` digits.
void appendNumber(String& out, int value, int minDigits) {
  char16_t digits[12];
  int count = 0;
  auto rest = static_cast<unsigned>(value < 0 ? 0 : value);
  do {
    digits[count++] = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  for (int pad = count; pad < minDigits; ++pad)
    out += u'0';
  while (count > 0)
    out += digits[--count];
}

bool isLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int dayOfYear(const DateParts& parts) {
  static constexpr int kDaysBeforeMonth[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  int day = kDaysBeforeMonth[parts.month - 1] + parts.day;
  if (parts.month > 2 && isLeapYear(parts.year)) ++day;
  return day;
}

// "AM/PM" and "A/P" print the format's own letters, so their case follows the format.
void appendAmPmLetters(StringView marker, bool morning, String& out) {
  if (marker.size() == 5) {
    out += morning ? marker.substr(0, 2) : marker.substr(3, 2);
  } else {
    out += morning ? marker[0] : marker[2];
  }
}

}  // namespace

void appendFormattedDate(Date date, const ParsedFormat& parsed, const FormatSection& section,
                         StringView format, int firstDayOfWeek, int firstWeekOfYear,
                         const Locale& locale, String& out) {
  const DateParts parts = splitDate(date);
  const bool morning = parts.hour < 12;
  int hour = parts.hour;
  if (section.twelveHour) hour = hour % 12 == 0 ? 12 : hour % 12;

  for (uint32_t i = section.firstToken; i < section.endToken; ++i) {
    const FormatToken& token = parsed.tokens[i];
    switch (token.kind) {
      case TokenKind::DayNumber:
      case TokenKind::DayTwoDigits:
        appendNumber(out, parts.day, token.kind == TokenKind::DayTwoDigits ? 2 : 1);
        break;
      case TokenKind::DayAbbreviation:
        out += locale.abbreviatedDayNames[static_cast<size_t>(parts.dayOfWeek - 1)];
        break;
      case TokenKind::DayName:
        out += locale.dayNames[static_cast<size_t>(parts.dayOfWeek - 1)];
        break;
      case TokenKind::ShortDate:
        out += formatWithPattern(date, locale.shortDatePattern, locale);
        break;
      case TokenKind::LongDate:
        out += formatWithPattern(date, locale.longDatePattern, locale);
        break;
      case TokenKind::WeekdayNumber:
        appendNumber(out, Weekday(date, firstDayOfWeek), 1);
        break;
      case TokenKind::WeekOfYearNumber:
        appendNumber(out, WeekOfYear(date, firstDayOfWeek, firstWeekOfYear), 1);
        break;
      case TokenKind::MonthNumber:
      case TokenKind::MonthTwoDigits:
        appendNumber(out, parts.month, token.kind == TokenKind::MonthTwoDigits ? 2 : 1);
        break;
      case TokenKind::MonthAbbreviation:
        out += locale.abbreviatedMonthNames[static_cast<size_t>(parts.month - 1)];
        break;
      case TokenKind::MonthName:
        out += locale.monthNames[static_cast<size_t>(parts.month - 1)];
        break;
      case TokenKind::Quarter:
        appendNumber(out, (parts.month - 1) / 3 + 1, 1);
        break;
      case TokenKind::DayOfYear:
        appendNumber(out, dayOfYear(parts), 1);
        break;
      case TokenKind::YearTwoDigits:
        appendNumber(out, parts.year % 100, 2);
        break;
      case TokenKind::YearFourDigits:
        appendNumber(out, parts.year, 1);
        break;
      case TokenKind::HourNumber:
      case TokenKind::HourTwoDigits:
        appendNumber(out, hour, token.kind == TokenKind::HourTwoDigits ? 2 : 1);
        break;
      case TokenKind::MinuteNumber:
      case TokenKind::MinuteTwoDigits:
        appendNumber(out, parts.minute, token.kind == TokenKind::MinuteTwoDigits ? 2 : 1);
        break;
      case TokenKind::SecondNumber:
      case TokenKind::SecondTwoDigits:
        appendNumber(out, parts.second, token.kind == TokenKind::SecondTwoDigits ? 2 : 1);
        break;
      case TokenKind::LocaleTime:
        out += formatWithPattern(date, locale.timePattern, locale);
        break;
      case TokenKind::GeneralDate:
        out += textOfDate(date, locale);
        break;
      case TokenKind::AmPmLetters:
      case TokenKind::APLetter:
        appendAmPmLetters(tokenText(format, token), morning, out);
        break;
      case TokenKind::LocaleAmPm:
        out += morning ? locale.amDesignator : locale.pmDesignator;
        break;
      case TokenKind::DateSeparator:
        out += locale.dateSeparator;
        break;
      case TokenKind::TimeSeparator:
        out += locale.timeSeparator;
        break;
      default:
        out += tokenText(format, token);
        break;
    }
  }
}

}  // namespace ravelin::detail

// Reading dates from text: CDate and IsDate of a String, and the script language's date
// literals.
#include <array>
#include <optional>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/clock.hpp>

namespace ravelin {

namespace {

// A date has at most a day name, three date parts, three time parts and a designator; a few
// more tokens than that can only be a mistake, so reading stops there.
constexpr size_t kMaxTokens = 10;
constexpr int kMaxDigits = 4;

constexpr std::array<StringView, 12> kEnglishMonths = {
    u"January", u"February", u"March",     u"April",   u"May",      u"June",
    u"July",    u"August",   u"September", u"October", u"November", u"December"};
constexpr std::array<StringView, 12> kEnglishMonthAbbreviations = {
    u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
constexpr std::array<StringView, 7> kEnglishDays = {
    u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"};
constexpr std::array<StringView, 7> kEnglishDayAbbreviations = {u"Sun", u"Mon", u"Tue", u"Wed",
                                                                u"Thu", u"Fri", u"Sat"};

enum class TokenKind { Number, Month, DayName, Meridiem };
// What stood between a token and the one before it.
enum class Gap { None, Blank, DateSeparator, TimeSeparator };

struct Token {
  TokenKind kind = TokenKind::Number;
  int value = 0;   // the number, the month 1..12, or 0 for AM and 1 for PM
  int digits = 0;  // digit count of a number
  Gap gap = Gap::None;
};

struct Tokens {
  std::array<Token, kMaxTokens> items;
  size_t count = 0;
};

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\u00A0';
}
bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}
bool isDateSeparatorUnit(char16_t unit) {
  return unit == u'/' || unit == u'-' || unit == u'.' || unit == u',';
}

// The hour of the day of a 12-hour clock reading (0..12) with AM (0) or PM (1): 12 AM is
// midnight, 12 PM noon.
int hourOfDay(int hour, int meridiem) {
  return hour % 12 + (meridiem == 1 ? 12 : 0);
}

// The month (1..12) an English month name or its three-letter abbreviation names, any case;
// 0 for any other word.
int englishMonthOf(StringView word) {
  for (size_t i = 0; i < 12; ++i) {
    if (equalsIgnoreCase(word, kEnglishMonths[i]) ||
        equalsIgnoreCase(word, kEnglishMonthAbbreviations[i])) {
      return static_cast<int>(i) + 1;
    }
  }
  return 0;
}

bool startsWithIgnoreCase(StringView text, StringView prefix) {
  return !prefix.empty() && prefix.size() <= text.size() &&
         equalsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

// The locale's time separator counts only when it cannot be taken for a date separator.
bool usableTimeSeparator(const Locale& locale) {
  const String& separator = locale.timeSeparator;
  if (separator.empty() || separator == locale.dateSeparator) return false;
  return !(separator.size() == 1 && isDateSeparatorUnit(separator[0])) && !isBlank(separator[0]) &&
         !isDigit(separator[0]);
}

// Reads blanks and at most one separator between tokens; nullopt for a time separator with
// blanks around it.
std::optional<Gap> readGap(StringView text, size_t& pos, const Locale& locale) {
  const size_t start = pos;
  while (pos < text.size() && isBlank(text[pos]))
    ++pos;
  const bool blankBefore = pos > start;
  Gap gap = blankBefore ? Gap::Blank : Gap::None;
  const StringView rest = text.substr(pos);
  const String& dateSeparator = locale.dateSeparator;
  if (!dateSeparator.empty() && !isDigit(dateSeparator[0]) && rest.starts_with(dateSeparator)) {
    gap = Gap::DateSeparator;
    pos += dateSeparator.size();
  } else if (!rest.empty() && isDateSeparatorUnit(rest[0])) {
    gap = Gap::DateSeparator;
    ++pos;
  } else if (!rest.empty() && rest[0] == u':') {
    gap = Gap::TimeSeparator;
    ++pos;
  } else if (usableTimeSeparator(locale) && rest.starts_with(locale.timeSeparator)) {
    gap = Gap::TimeSeparator;
    pos += locale.timeSeparator.size();
  }
  const size_t afterSeparator = pos;
  while (pos < text.size() && isBlank(text[pos]))
    ++pos;
  if (gap == Gap::TimeSeparator && (blankBefore || pos > afterSeparator)) return std::nullopt;
  if (gap == Gap::None && pos > afterSeparator) gap = Gap::Blank;
  return gap;
}

// The longest month name, day name or designator (English or the locale's) at the start of
// the text.
struct NameMatch {
  TokenKind kind = TokenKind::Month;
  int value = 0;
  size_t length = 0;
};

void considerName(StringView rest, StringView name, TokenKind kind, int value, NameMatch& best) {
  if (name.size() > best.length && startsWithIgnoreCase(rest, name)) {
    best = {kind, value, name.size()};
  }
}

NameMatch matchName(StringView rest, const Locale& locale) {
  NameMatch best;
  for (int i = 0; i < 12; ++i) {
    const auto index = static_cast<size_t>(i);
    considerName(rest, kEnglishMonths[index], TokenKind::Month, i + 1, best);
    considerName(rest, kEnglishMonthAbbreviations[index], TokenKind::Month, i + 1, best);
    considerName(rest, locale.monthNames[index], TokenKind::Month, i + 1, best);
    considerName(rest, locale.abbreviatedMonthNames[index], TokenKind::Month, i + 1, best);
  }
  for (size_t i = 0; i < 7; ++i) {
    considerName(rest, kEnglishDays[i], TokenKind::DayName, 0, best);
    considerName(rest, kEnglishDayAbbreviations[i], TokenKind::DayName, 0, best);
    considerName(rest, locale.dayNames[i], TokenKind::DayName, 0, best);
    considerName(rest, locale.abbreviatedDayNames[i], TokenKind::DayName, 0, best);
  }
  considerName(rest, u"AM", TokenKind::Meridiem, 0, best);
  considerName(rest, u"PM", TokenKind::Meridiem, 1, best);
  considerName(rest, locale.amDesignator, TokenKind::Meridiem, 0, best);
  considerName(rest, locale.pmDesignator, TokenKind::Meridiem, 1, best);
  return best;
}

std::optional<Tokens> tokenize(StringView text, const Locale& locale) {
  Tokens tokens;
  size_t pos = 0;
  while (pos < text.size()) {
    const std::optional<Gap> gap = readGap(text, pos, locale);
    if (!gap) return std::nullopt;
    if (pos == text.size()) {
      // Only blanks may trail the last token; an empty text is no date either.
      if (*gap != Gap::Blank && *gap != Gap::None) return std::nullopt;
      break;
    }
    if (tokens.count == 0 && *gap != Gap::Blank && *gap != Gap::None) return std::nullopt;
    if (tokens.count == kMaxTokens) return std::nullopt;

    Token token;
    token.gap = tokens.count == 0 ? Gap::None : *gap;
    if (isDigit(text[pos])) {
      while (pos < text.size() && isDigit(text[pos])) {
        if (++token.digits > kMaxDigits) return std::nullopt;
        token.value = token.value * 10 + (text[pos] - u'0');
        ++pos;
      }
    } else {
      const NameMatch match = matchName(text.substr(pos), locale);
      if (match.length == 0) return std::nullopt;
      token.kind = match.kind;
      token.value = match.value;
      pos += match.length;
      // An abbreviation may carry its own full stop ("Mar.").
      if (match.kind != TokenKind::Meridiem && pos < text.size() && text[pos] == u'.' &&
          text[pos - 1] != u'.') {
        ++pos;
      }
    }
    tokens.items[tokens.count++] = token;
  }
  if (tokens.count == 0) return std::nullopt;
  return tokens;
}

struct TimeOfDay {
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// The time group at [first, last): hours, optional minutes and seconds, optional designator.
std::optional<TimeOfDay> readTime(const Tokens& tokens, size_t first, size_t last) {
  int parts[3] = {0, 0, 0};
  size_t partCount = 0;
  std::optional<int> meridiem;
  for (size_t i = first; i < last; ++i) {
    const Token& token = tokens.items[i];
    if (token.kind == TokenKind::Number && !meridiem && partCount < 3 && token.digits <= 2) {
      parts[partCount++] = token.value;
    } else if (token.kind == TokenKind::Meridiem && !meridiem && i + 1 == last) {
      meridiem = token.value;
    } else {
      return std::nullopt;
    }
  }
  TimeOfDay time{parts[0], parts[1], parts[2]};
  if (time.minute > 59 || time.second > 59) return std::nullopt;
  if (meridiem) {
    if (time.hour > 12) return std::nullopt;
    time.hour = hourOfDay(time.hour, *meridiem);
  } else if (time.hour > 23) {
    return std::nullopt;
  }
  return time;
}

// The local year, the one the script's Date is in (around New Year, UTC's may differ).
int currentYear() {
  return platform::clock()->localNow().year;
}

// A year written with three or more digits, or too big for a day, can only be a year.
bool isYearLike(const Token& token) {
  return token.digits >= 3 || token.value > 31;
}

int fullYear(const Token& token) {
  if (token.digits > 2) return token.value;
  return token.value < 30 ? 2000 + token.value : 1900 + token.value;
}

bool isLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool isValidCalendarDate(int year, int month, int day) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1) return false;
  return day <= (month == 2 && isLeapYear(year) ? 29 : kDays[month - 1]);
}

struct CalendarDate {
  int year = 0;
  int month = 0;
  int day = 0;
};

// Month and day from two numbers in the given order, a month above 12 swapped with the day.
void assignMonthDay(CalendarDate& date, const Token& monthToken, const Token& dayToken) {
  date.month = monthToken.value;
  date.day = dayToken.value;
  if (date.month > 12 && date.day <= 12) std::swap(date.month, date.day);
}

// The date parts of the tokens at [first, last).
std::optional<CalendarDate> readCalendarDate(const Tokens& tokens, size_t first, size_t last,
                                             const Locale& locale) {
  std::array<Token, 3> numbers;
  size_t numberCount = 0;
  int monthName = 0;
  bool dayName = false;
  for (size_t i = first; i < last; ++i) {
    const Token& token = tokens.items[i];
    if (i > first && token.gap == Gap::TimeSeparator) return std::nullopt;
    switch (token.kind) {
      case TokenKind::Number:
        if (numberCount == 3) return std::nullopt;
        numbers[numberCount++] = token;
        break;
      case TokenKind::Month:
        if (monthName != 0) return std::nullopt;
        monthName = token.value;
        break;
      case TokenKind::DayName:
        if (dayName) return std::nullopt;
        dayName = true;
        break;
      case TokenKind::Meridiem:
        return std::nullopt;
    }
  }

  CalendarDate date;
  if (monthName != 0) {
    date.month = monthName;
    if (numberCount == 1) {
      if (isYearLike(numbers[0])) {
        date.year = fullYear(numbers[0]);
        date.day = 1;
      } else {
        date.year = currentYear();
        date.day = numbers[0].value;
      }
    } else if (numberCount == 2) {
      const bool firstIsYear = isYearLike(numbers[0]) && !isYearLike(numbers[1]);
      date.year = fullYear(numbers[firstIsYear ? 0 : 1]);
      date.day = numbers[firstIsYear ? 1 : 0].value;
      if (!firstIsYear && isYearLike(numbers[0])) return std::nullopt;
    } else {
      return std::nullopt;
    }
  } else if (numberCount == 3) {
    DateOrder order = locale.dateOrder();
    if (isYearLike(numbers[0])) {
      order = DateOrder::YearMonthDay;
    } else if (order == DateOrder::YearMonthDay) {
      order = DateOrder::MonthDayYear;
    }
    switch (order) {
      case DateOrder::MonthDayYear:
        assignMonthDay(date, numbers[0], numbers[1]);
        date.year = fullYear(numbers[2]);
        break;
      case DateOrder::DayMonthYear:
        assignMonthDay(date, numbers[1], numbers[0]);
        date.year = fullYear(numbers[2]);
        break;
      case DateOrder::YearMonthDay:
        assignMonthDay(date, numbers[1], numbers[2]);
        date.year = fullYear(numbers[0]);
        break;
    }
  } else if (numberCount == 2) {
    if (isYearLike(numbers[0]) || isYearLike(numbers[1])) {
      // Month and year, on the first of the month.
      const bool firstIsYear = isYearLike(numbers[0]);
      if (firstIsYear && isYearLike(numbers[1])) return std::nullopt;
      date.year = fullYear(numbers[firstIsYear ? 0 : 1]);
      date.month = numbers[firstIsYear ? 1 : 0].value;
      date.day = 1;
    } else {
      if (locale.dateOrder() == DateOrder::DayMonthYear) {
        assignMonthDay(date, numbers[1], numbers[0]);
      } else {
        assignMonthDay(date, numbers[0], numbers[1]);
      }
      date.year = currentYear();
    }
  } else {
    return std::nullopt;
  }
  if (!isValidCalendarDate(date.year, date.month, date.day)) return std::nullopt;
  return date;
}

// Finds the time group: a number followed by a time separator, or a number followed by a
// designator. Sets [first, last) to it and returns false when there is none.
bool findTimeGroup(const Tokens& tokens, size_t& first, size_t& last) {
  for (size_t i = 0; i + 1 < tokens.count; ++i) {
    const Token& next = tokens.items[i + 1];
    const bool startsTime =
        tokens.items[i].kind == TokenKind::Number &&
        (next.gap == Gap::TimeSeparator ||
         (next.kind == TokenKind::Meridiem && (next.gap == Gap::None || next.gap == Gap::Blank)));
    if (!startsTime) continue;
    first = i;
    last = i + 1;
    while (last < tokens.count && tokens.items[last].gap == Gap::TimeSeparator)
      ++last;
    if (last < tokens.count && tokens.items[last].kind == TokenKind::Meridiem &&
        (tokens.items[last].gap == Gap::None || tokens.items[last].gap == Gap::Blank)) {
      ++last;
    }
    return true;
  }
  return false;
}

std::optional<double> readDate(StringView text, const Locale& locale) {
  const std::optional<Tokens> tokens = tokenize(text, locale);
  if (!tokens) return std::nullopt;

  size_t timeFirst = tokens->count;
  size_t timeLast = tokens->count;
  TimeOfDay time;
  if (findTimeGroup(*tokens, timeFirst, timeLast)) {
    const std::optional<TimeOfDay> read = readTime(*tokens, timeFirst, timeLast);
    if (!read) return std::nullopt;
    time = *read;
    // The date, if any, stands wholly before or wholly after the time, apart by blanks.
    if (timeFirst > 0 && timeLast < tokens->count) return std::nullopt;
    if (timeFirst > 0 && tokens->items[timeFirst].gap != Gap::Blank) return std::nullopt;
    if (timeLast < tokens->count && tokens->items[timeLast].gap != Gap::Blank) {
      return std::nullopt;
    }
  }
  const size_t dateFirst = timeFirst > 0 ? 0 : timeLast;
  const size_t dateLast = timeFirst > 0 ? timeFirst : tokens->count;

  CalendarDate date{1899, 12, 30};
  if (dateFirst < dateLast) {
    const std::optional<CalendarDate> read = readCalendarDate(*tokens, dateFirst, dateLast, locale);
    if (!read) return std::nullopt;
    date = *read;
  } else if (timeFirst == tokens->count) {
    return std::nullopt;
  }
  return makeDate(date.year, date.month, date.day, time.hour, time.minute, time.second).serial;
}

// A date literal's parts as written. Its rules are the script language's own, not CDate's: they
// are the same in every locale and looser about separators, stricter about the date.
struct LiteralParts {
  std::array<Token, 3> numbers;  // the date's numbers, in order
  size_t numberCount = 0;
  int monthName = 0;  // 1..12 when the month is a word
  std::array<int, 3> time{};
  size_t timeCount = 0;
  std::optional<int> meridiem;  // 0 AM, 1 PM
};

bool isAsciiLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

// Only spaces and tabs are blanks in a literal.
bool isLiteralBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t';
}

StringView letterRun(StringView text, size_t from) {
  size_t end = from;
  while (end < text.size() && isAsciiLetter(text[end]))
    ++end;
  return text.substr(from, end - from);
}

// AM or PM in a literal, or their first letter, any case: 0 for AM, 1 for PM.
std::optional<int> literalMeridiem(StringView word) {
  if (equalsIgnoreCase(word, u"AM") || equalsIgnoreCase(word, u"A")) return 0;
  if (equalsIgnoreCase(word, u"PM") || equalsIgnoreCase(word, u"P")) return 1;
  return std::nullopt;
}

// One to four digits at pos; nullopt for none (any other character) or more.
std::optional<Token> readLiteralNumber(StringView text, size_t& pos) {
  Token number;
  while (pos < text.size() && isDigit(text[pos])) {
    if (++number.digits > kMaxDigits) return std::nullopt;
    number.value = number.value * 10 + (text[pos++] - u'0');
  }
  if (number.digits == 0) return std::nullopt;
  return number;
}

// Splits a literal into date numbers, a month name, one time group and a designator. Any run of
// blanks and date separators stands between them. A time is a number followed at once by ":"
// (then up to two more numbers, each right after a ":"), or a number followed by blanks and a
// designator ("2 PM"); the designator may come anywhere after the time.
std::optional<LiteralParts> scanLiteral(StringView text) {
  LiteralParts parts;
  size_t pos = 0;
  while (pos < text.size()) {
    const char16_t unit = text[pos];
    if (isLiteralBlank(unit) || isDateSeparatorUnit(unit)) {
      ++pos;
      continue;
    }
    if (isAsciiLetter(unit)) {
      const StringView word = letterRun(text, pos);
      pos += word.size();
      if (const std::optional<int> meridiem = literalMeridiem(word)) {
        if (parts.timeCount == 0 || parts.meridiem) return std::nullopt;
        parts.meridiem = meridiem;
      } else if (const int month = englishMonthOf(word); month != 0 && parts.monthName == 0) {
        parts.monthName = month;
      } else {
        return std::nullopt;
      }
      continue;
    }
    const std::optional<Token> number = readLiteralNumber(text, pos);
    if (!number) return std::nullopt;
    size_t after = pos;
    while (after < text.size() && isLiteralBlank(text[after]))
      ++after;
    const bool startsTime = pos < text.size() && text[pos] == u':';
    const bool hourOnly = !startsTime && literalMeridiem(letterRun(text, after)).has_value();
    if (startsTime || hourOnly) {
      if (parts.timeCount != 0) return std::nullopt;
      parts.time[parts.timeCount++] = number->value;
      while (pos < text.size() && text[pos] == u':') {
        if (parts.timeCount == 3) return std::nullopt;
        ++pos;
        const std::optional<Token> part = readLiteralNumber(text, pos);
        if (!part) return std::nullopt;
        parts.time[parts.timeCount++] = part->value;
      }
    } else {
      if (parts.numberCount == 3) return std::nullopt;
      parts.numbers[parts.numberCount++] = *number;
    }
  }
  if (parts.numberCount == 0 && parts.monthName == 0 && parts.timeCount == 0) return std::nullopt;
  // An hour alone needs its designator.
  if (parts.timeCount == 1 && !parts.meridiem) return std::nullopt;
  return parts;
}

}  // namespace

Date parseDate(StringView text, const Locale& locale) {
  const std::optional<double> serial = readDate(text, locale);
  if (!serial) raiseRuntimeError(vb_error::kTypeMismatch);
  return Date{*serial};
}

bool isDateText(StringView text, const Locale& locale) {
  return readDate(text, locale).has_value();
}

std::optional<Date> readDateLiteral(StringView text) {
  const std::optional<LiteralParts> parts = scanLiteral(text);
  if (!parts) return std::nullopt;

  CalendarDate date{1899, 12, 30};
  if (parts->numberCount != 0 || parts->monthName != 0) {
    const Token& first = parts->numbers[0];
    const Token& second = parts->numbers[1];
    if (parts->monthName != 0) {
      // A day and a year, the year first when it can only be one.
      if (parts->numberCount != 2) return std::nullopt;
      const bool yearFirst = isYearLike(first);
      date.month = parts->monthName;
      date.day = (yearFirst ? second : first).value;
      date.year = fullYear(yearFirst ? first : second);
    } else {
      if (parts->numberCount != 3) return std::nullopt;
      if (isYearLike(first)) {
        date.year = fullYear(first);
        date.month = second.value;
        date.day = parts->numbers[2].value;
      } else {
        assignMonthDay(date, first, second);
        date.year = fullYear(parts->numbers[2]);
      }
    }
  }
  int hour = parts->time[0];
  const int minute = parts->time[1];
  const int second = parts->time[2];
  if (parts->meridiem) {
    if (hour < 1 || hour > 12) return std::nullopt;
    hour = hourOfDay(hour, *parts->meridiem);
  }
  if (!isValidCalendarDate(date.year, date.month, date.day) || hour > 23 || minute > 59 ||
      second > 59) {
    return std::nullopt;
  }
  return makeDate(date.year, date.month, date.day, hour, minute, second);
}

}  // namespace ravelin

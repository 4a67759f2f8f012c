// Reading a user-defined format text: its kind, its sections and their tokens, in one pass.
#include <cstddef>
#include <limits>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/format_tokens.hpp>

namespace ravelin::detail {
namespace {

// ASCII letter of a date token in either case; `lower` is the lower-case letter.
bool isLetter(char16_t unit, char lower) {
  return unit == static_cast<char16_t>(lower) || unit == static_cast<char16_t>(lower - 'a' + 'A');
}

// How many times `lower` (either case) repeats from `at`, at most `limit`.
size_t runOf(StringView format, size_t at, char lower, size_t limit) {
  size_t count = 0;
  while (at + count < format.size() && count < limit && isLetter(format[at + count], lower)) {
    ++count;
  }
  return count;
}

bool startsWithIgnoreCase(StringView format, size_t at, StringView word) {
  return format.size() - at >= word.size() &&
         equalsIgnoreCase(format.substr(at, word.size()), word);
}

// The AM/PM marker starting at `at` ("AM/PM", "AMPM", "A/P" in any case): its length and kind,
// or 0.
size_t amPmMarkerAt(StringView format, size_t at, TokenKind& kind) {
  if (startsWithIgnoreCase(format, at, u"am/pm")) {
    kind = TokenKind::AmPmLetters;
    return 5;
  }
  if (startsWithIgnoreCase(format, at, u"ampm")) {
    kind = TokenKind::LocaleAmPm;
    return 4;
  }
  if (startsWithIgnoreCase(format, at, u"a/p")) {
    kind = TokenKind::APLetter;
    return 3;
  }
  return 0;
}

// Where a quoted literal that opens at `at` ends (the position after its closing quote, or the
// end of the text when it is never closed).
size_t endOfQuoted(StringView format, size_t at) {
  size_t close = format.find(u'"', at + 1);
  return close == StringView::npos ? format.size() : close + 1;
}

// The kind a character at `at` decides, or Literal when it decides nothing.
FormatKind kindDecidedAt(StringView format, size_t at) {
  char16_t unit = format[at];
  switch (unit) {
    case u'0':
    case u'#':
    case u'%':
      return FormatKind::Number;
    case u'@':
    case u'&':
    case u'<':
    case u'>':
    case u'!':
      return FormatKind::Text;
    default:
      break;
  }
  for (char letter : {'d', 'w', 'm', 'q', 'y', 'h', 'n', 's', 'c'}) {
    if (isLetter(unit, letter)) return FormatKind::Date;
  }
  if (isLetter(unit, 't') && runOf(format, at, 't', 5) == 5) return FormatKind::Date;
  TokenKind marker;
  if (isLetter(unit, 'a') && amPmMarkerAt(format, at, marker) != 0) return FormatKind::Date;
  return FormatKind::Literal;
}

// Builds the tokens of one format text, section by section.
class FormatParser {
 public:
  FormatParser(StringView format, FormatKind kind, ParsedFormat& out)
      : format_(format), kind_(kind), out_(out) {}

  void run() {
    out_.kind = kind_;
    out_.sectionCount = 1;
    startSection(0);
    size_t at = 0;
    while (at < format_.size()) {
      char16_t unit = format_[at];
      if (unit == u';') {
        finishSection(at);
        if (out_.sectionCount == kMaxSections) return;
        ++out_.sectionCount;
        startSection(at + 1);
        ++at;
      } else if (unit == u'\\') {
        if (at + 1 < format_.size()) literal(at + 1, 1);
        at += 2;
      } else if (unit == u'"') {
        size_t close = format_.find(u'"', at + 1);
        size_t contentEnd = close == StringView::npos ? format_.size() : close;
        literal(at + 1, contentEnd - at - 1);
        at = close == StringView::npos ? format_.size() : close + 1;
      } else {
        switch (kind_) {
          case FormatKind::Number:
            at = numberToken(at);
            break;
          case FormatKind::Date:
            at = dateToken(at);
            break;
          default:
            at = textToken(at);
            break;
        }
      }
    }
    finishSection(format_.size());
  }

 private:
  FormatSection& section() { return out_.sections[out_.sectionCount - 1]; }

  void startSection(size_t at) {
    FormatSection& s = section();
    s = FormatSection{};
    s.firstToken = static_cast<uint32_t>(out_.tokens.size());
    sectionStart_ = at;
    afterPoint_ = afterExponent_ = false;
    firstZero_ = -1;
    sawHour_ = minutesWritten_ = false;
  }

  void finishSection(size_t at) {
    FormatSection& s = section();
    s.endToken = static_cast<uint32_t>(out_.tokens.size());
    s.empty = at == sectionStart_;
    if (firstZero_ >= 0) s.forcedIntegerDigits = s.integerDigits - firstZero_;
  }

  void push(TokenKind kind, size_t at, size_t length) {
    out_.tokens.push_back(
        FormatToken{kind, static_cast<uint32_t>(at), static_cast<uint32_t>(length)});
  }

  // A literal; joins the previous literal when the two are adjacent in the format text.
  void literal(size_t at, size_t length) {
    if (length == 0) return;
    if (out_.tokens.size() > section().firstToken) {
      FormatToken& last = out_.tokens.back();
      if (last.kind == TokenKind::Literal && last.begin + last.length == at) {
        last.length += static_cast<uint32_t>(length);
        return;
      }
    }
    push(TokenKind::Literal, at, length);
  }

  size_t numberToken(size_t at) {
    FormatSection& s = section();
    char16_t unit = format_[at];
    if ((unit == u'0' || unit == u'#') && !afterExponent_) {
      if (afterPoint_) {
        ++s.fractionDigits;
        if (unit == u'0') s.forcedFractionDigits = s.fractionDigits;
        push(TokenKind::FractionDigit, at, 1);
      } else {
        if (unit == u'0' && firstZero_ < 0) firstZero_ = s.integerDigits;
        ++s.integerDigits;
        push(TokenKind::IntegerDigit, at, 1);
      }
      return at + 1;
    }
    if (unit == u'.' && !afterPoint_ && !afterExponent_) {
      afterPoint_ = true;
      push(TokenKind::DecimalPoint, at, 1);
      return at + 1;
    }
    if (unit == u',') {
      s.grouping = true;
      return at + 1;
    }
    if (unit == u'%') {
      ++s.percentCount;
      push(TokenKind::Percent, at, 1);
      return at + 1;
    }
    if ((unit == u'E' || unit == u'e') && !afterExponent_ && at + 1 < format_.size() &&
        (format_[at + 1] == u'+' || format_[at + 1] == u'-')) {
      afterExponent_ = true;
      s.hasExponent = true;
      s.exponentSignAlways = format_[at + 1] == u'+';
      size_t end = at + 2;
      while (end < format_.size() && (format_[end] == u'0' || format_[end] == u'#')) {
        if (format_[end] == u'0') ++s.exponentDigits;
        ++end;
      }
      push(TokenKind::Exponent, at, end - at);
      return end;
    }
    literal(at, 1);
    return at + 1;
  }

  size_t dateToken(size_t at) {
    char16_t unit = format_[at];
    size_t run;
    if (isLetter(unit, 'd')) {
      run = runOf(format_, at, 'd', 6);
      static constexpr TokenKind kDays[] = {TokenKind::DayNumber,       TokenKind::DayTwoDigits,
                                            TokenKind::DayAbbreviation, TokenKind::DayName,
                                            TokenKind::ShortDate,       TokenKind::LongDate};
      push(kDays[run - 1], at, run);
      sawHour_ = false;
      return at + run;
    }
    if (isLetter(unit, 'm')) {
      run = runOf(format_, at, 'm', 4);
      if (run <= 2 && sawHour_ && !minutesWritten_) {
        minutesWritten_ = true;
        push(run == 1 ? TokenKind::MinuteNumber : TokenKind::MinuteTwoDigits, at, run);
      } else {
        static constexpr TokenKind kMonths[] = {TokenKind::MonthNumber, TokenKind::MonthTwoDigits,
                                                TokenKind::MonthAbbreviation, TokenKind::MonthName};
        push(kMonths[run - 1], at, run);
      }
      return at + run;
    }
    if (isLetter(unit, 'y')) {
      run = runOf(format_, at, 'y', 4);
      if (run == 4) {
        push(TokenKind::YearFourDigits, at, 4);
      } else if (run >= 2) {
        run = 2;
        push(TokenKind::YearTwoDigits, at, 2);
      } else {
        push(TokenKind::DayOfYear, at, 1);
      }
      return at + run;
    }
    if (isLetter(unit, 'w')) {
      run = runOf(format_, at, 'w', 2);
      push(run == 1 ? TokenKind::WeekdayNumber : TokenKind::WeekOfYearNumber, at, run);
      return at + run;
    }
    if (isLetter(unit, 'h')) {
      run = runOf(format_, at, 'h', 2);
      push(run == 1 ? TokenKind::HourNumber : TokenKind::HourTwoDigits, at, run);
      sawHour_ = true;
      return at + run;
    }
    if (isLetter(unit, 'n')) {
      run = runOf(format_, at, 'n', 2);
      push(run == 1 ? TokenKind::MinuteNumber : TokenKind::MinuteTwoDigits, at, run);
      minutesWritten_ = true;
      return at + run;
    }
    if (isLetter(unit, 's')) {
      run = runOf(format_, at, 's', 2);
      push(run == 1 ? TokenKind::SecondNumber : TokenKind::SecondTwoDigits, at, run);
      return at + run;
    }
    if (isLetter(unit, 'q')) {
      push(TokenKind::Quarter, at, 1);
      return at + 1;
    }
    if (isLetter(unit, 'c')) {
      push(TokenKind::GeneralDate, at, 1);
      return at + 1;
    }
    if (isLetter(unit, 't') && runOf(format_, at, 't', 5) == 5) {
      push(TokenKind::LocaleTime, at, 5);
      return at + 5;
    }
    TokenKind marker;
    if (isLetter(unit, 'a')) {
      if (size_t length = amPmMarkerAt(format_, at, marker)) {
        section().twelveHour = true;
        push(marker, at, length);
        return at + length;
      }
    }
    if (unit == u'/') {
      push(TokenKind::DateSeparator, at, 1);
      return at + 1;
    }
    if (unit == u':') {
      push(TokenKind::TimeSeparator, at, 1);
      return at + 1;
    }
    literal(at, 1);
    return at + 1;
  }

  size_t textToken(size_t at) {
    FormatSection& s = section();
    switch (format_[at]) {
      case u'@':
        ++s.placeholders;
        push(TokenKind::CharOrSpace, at, 1);
        break;
      case u'&':
        ++s.placeholders;
        push(TokenKind::CharOrNothing, at, 1);
        break;
      case u'<':
        s.caseChange = CaseChange::Lower;
        break;
      case u'>':
        s.caseChange = CaseChange::Upper;
        break;
      case u'!':
        s.leftAlign = true;
        break;
      default:
        literal(at, 1);
        break;
    }
    return at + 1;
  }

  StringView format_;
  FormatKind kind_;
  ParsedFormat& out_;
  size_t sectionStart_ = 0;
  // Number state: past the decimal point, past the exponent, index of the first integer "0".
  bool afterPoint_ = false;
  bool afterExponent_ = false;
  int32_t firstZero_ = -1;
  // Date state for telling minutes from months.
  bool sawHour_ = false;
  bool minutesWritten_ = false;
};

}  // namespace

FormatKind classifyFormat(StringView format) {
  size_t at = 0;
  while (at < format.size()) {
    char16_t unit = format[at];
    if (unit == u'\\') {
      at += 2;
    } else if (unit == u'"') {
      at = endOfQuoted(format, at);
    } else {
      FormatKind kind = kindDecidedAt(format, at);
      if (kind != FormatKind::Literal) return kind;
      ++at;
    }
  }
  return FormatKind::Literal;
}

ParsedFormat parseFormat(StringView format, FormatKind kind) {
  // Token positions are 32-bit; a format that long is no format.
  if (format.size() >= std::numeric_limits<uint32_t>::max()) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  ParsedFormat parsed;
  parsed.tokens.reserve(format.size() < 64 ? format.size() : 64);
  FormatParser(format, kind, parsed).run();
  return parsed;
}

}  // namespace ravelin::detail

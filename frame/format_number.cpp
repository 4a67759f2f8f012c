// Number sections of user-defined formats: digit placeholders, grouping, percent, exponent.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ravelin/frame/internal/format_tokens.hpp>
#include <utility>

namespace ravelin::detail {
namespace {

// Rounds half up in magnitude so that at most `keep` leading digits remain (none when `keep` is
// zero or negative; a kept zero digit count can still round up to one unit of the next place).
void roundKeeping(DecimalDigits& number, int64_t keep) {
  if (number.isZero() || keep >= static_cast<int64_t>(number.digits.size())) return;
  std::string& digits = number.digits;
  if (keep < 0) {
    digits.clear();
    number.exponent = 0;
    return;
  }
  bool up = digits[static_cast<size_t>(keep)] >= '5';
  digits.resize(static_cast<size_t>(keep));
  if (up) {
    while (!digits.empty() && digits.back() == '9')
      digits.pop_back();
    if (digits.empty()) {
      digits.assign(1, '1');
      ++number.exponent;
    } else {
      ++digits.back();
    }
  }
  while (!digits.empty() && digits.back() == '0')
    digits.pop_back();
  if (digits.empty()) number.exponent = 0;
}

// Writes the digits of a rounded magnitude into one section's placeholders.
class NumberWriter {
 public:
  NumberWriter(const DecimalDigits& magnitude, const FormatSection& section, const Locale& locale,
               String& out)
      : number_(magnitude), section_(section), locale_(locale), out_(out) {
    if (!number_.isZero() && number_.exponent >= 0) integerLength_ = number_.exponent + 1;
    paddedLength_ = std::max<int64_t>(integerLength_, section.forcedIntegerDigits);
    int64_t lastFraction = 0;
    if (!number_.isZero()) {
      lastFraction = static_cast<int64_t>(number_.digits.size()) - 1 - number_.exponent;
    }
    neededFraction_ = std::max<int64_t>(lastFraction, section.forcedFractionDigits);
  }

  // The integer placeholder at `ordinal` (0 is the leftmost): its digit, and before it every
  // surplus digit when it is the first.
  void integerPlaceholder(int64_t ordinal) {
    int64_t place = section_.integerDigits - 1 - ordinal;
    if (ordinal == 0) {
      if (paddedLength_ > place) integerDigits(paddedLength_ - 1, place);
    } else if (place < paddedLength_) {
      integerDigits(place, place);
    }
  }

  void decimalPoint() {
    // Without integer placeholders the integer digits go just before the point.
    if (section_.integerDigits == 0 && paddedLength_ > 0) integerDigits(paddedLength_ - 1, 0);
    out_ += locale_.decimalSeparator;
  }

  // The fraction placeholder at `position` (1 is the first after the point).
  void fractionPlaceholder(int64_t position) {
    if (position > neededFraction_) return;
    int64_t index = number_.exponent + position;
    bool inDigits = index >= 0 && index < static_cast<int64_t>(number_.digits.size());
    out_ += static_cast<char16_t>(inDigits ? number_.digits[static_cast<size_t>(index)] : '0');
  }

 private:
  // Integer digits counted from the right (0 is the units), from `high` down to `low`, with the
  // thousands separator after every third.
  void integerDigits(int64_t high, int64_t low) {
    for (int64_t place = high; place >= low; --place) {
      char digit = '0';
      if (place < integerLength_) {
        auto index = static_cast<size_t>(integerLength_ - 1 - place);
        if (index < number_.digits.size()) digit = number_.digits[index];
      }
      out_ += static_cast<char16_t>(digit);
      if (section_.grouping && place > 0 && place % 3 == 0) out_ += locale_.thousandsSeparator;
    }
  }

  const DecimalDigits& number_;
  const FormatSection& section_;
  const Locale& locale_;
  String& out_;
  int64_t integerLength_ = 0;
  int64_t paddedLength_ = 0;
  int64_t neededFraction_ = 0;
};

void appendExponent(StringView marker, int64_t exponent, const FormatSection& section,
                    String& out) {
  out += marker[0];
  if (exponent < 0) {
    out += u'-';
  } else if (section.exponentSignAlways) {
    out += u'+';
  }
  uint64_t magnitude =
      exponent < 0 ? 0 - static_cast<uint64_t>(exponent) : static_cast<uint64_t>(exponent);
  char text[24];
  auto end = std::to_chars(text, text + sizeof text, magnitude).ptr;
  auto length = static_cast<int32_t>(end - text);
  if (magnitude == 0 && section.exponentDigits == 0) length = 0;
  for (int32_t pad = length; pad < section.exponentDigits; ++pad)
    out += u'0';
  for (int32_t i = 0; i < length; ++i)
    out += static_cast<char16_t>(text[i]);
}

}  // namespace

void appendNumberSection(DecimalDigits magnitude, bool minus, const ParsedFormat& parsed,
                         const FormatSection& section, StringView format, const Locale& locale,
                         String& out) {
  if (minus) out += u'-';
  magnitude.negative = false;
  // Each "%" multiplies by 100: exact on the decimal digits. The cap only guards the exponent
  // against overflow for absurd formats.
  if (!magnitude.isZero()) magnitude.exponent += 2 * std::min(section.percentCount, 100000);

  int64_t shownExponent = 0;
  if (section.hasExponent) {
    roundKeeping(magnitude, int64_t{section.integerDigits} + section.fractionDigits);
    if (!magnitude.isZero()) {
      // As many integer digits as there are integer placeholders.
      shownExponent = int64_t{magnitude.exponent} + 1 - section.integerDigits;
      magnitude.exponent = section.integerDigits - 1;
    }
  } else {
    roundKeeping(magnitude, int64_t{magnitude.exponent} + section.fractionDigits + 1);
  }

  NumberWriter writer(magnitude, section, locale, out);
  int64_t integerOrdinal = 0;
  int64_t fractionPosition = 0;
  for (uint32_t i = section.firstToken; i < section.endToken; ++i) {
    const FormatToken& token = parsed.tokens[i];
    switch (token.kind) {
      case TokenKind::IntegerDigit:
        writer.integerPlaceholder(integerOrdinal++);
        break;
      case TokenKind::DecimalPoint:
        writer.decimalPoint();
        break;
      case TokenKind::FractionDigit:
        writer.fractionPlaceholder(++fractionPosition);
        break;
      case TokenKind::Percent:
        out += u'%';
        break;
      case TokenKind::Exponent:
        appendExponent(tokenText(format, token), shownExponent, section, out);
        break;
      default:
        out += tokenText(format, token);
        break;
    }
  }
}

void appendFormattedNumber(DecimalDigits number, const ParsedFormat& parsed, StringView format,
                           const Locale& locale, String& out) {
  // The section follows the sign of the value before rounding. A negative value in its own
  // section gets no "-"; in the first section it does.
  const FormatSection* section = &parsed.sections[0];
  bool minus = false;
  if (number.negative && !number.isZero()) {
    if (const FormatSection* negative = parsed.usableSection(1)) {
      section = negative;
    } else {
      minus = true;
    }
  } else if (number.isZero()) {
    if (const FormatSection* zero = parsed.usableSection(2)) section = zero;
  }
  appendNumberSection(std::move(number), minus, parsed, *section, format, locale, out);
}

}  // namespace ravelin::detail

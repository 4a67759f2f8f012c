// Text to numbers: Val, the locale reader behind CDbl, and exact rounding of the digits read.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/parsed_number.hpp>
#include <string>

namespace ravelin {
namespace detail {
namespace {

__extension__ typedef unsigned __int128 UInt128;

// Digits kept of a long input. Any decimal midpoint between two doubles has at most 767
// significant digits, so 800 digits and a sticky '1' decide every rounding correctly.
constexpr std::size_t kMaxKeptDigits = 800;
// Bound of an explicit exponent: far beyond any finite double, small enough not to overflow.
constexpr int64_t kExponentLimit = 1'000'000'000;

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

// Collects decimal digits in reading order into a ParsedNumber.
class DigitCollector {
 public:
  void add(char16_t digitUnit, bool afterPoint) {
    const char digit = static_cast<char>(digitUnit);
    ++count_;
    if (digits_.empty() && digit == '0') {
      if (afterPoint) --scale_;  // a leading zero of the fraction
      return;
    }
    if (digits_.size() < kMaxKeptDigits) {
      digits_.push_back(digit);
      if (afterPoint) --scale_;
    } else {
      if (!afterPoint) ++scale_;
      if (digit != '0') sticky_ = true;
    }
  }

  // Digits seen, zeros included.
  int64_t count() const { return count_; }

  ParsedNumber finish(bool negative, int64_t exponent) {
    ParsedNumber number;
    number.negative = negative;
    std::size_t end = digits_.find_last_not_of('0');
    if (end == std::string::npos) return number;  // zero
    if (sticky_) {
      digits_.push_back('1');
      --scale_;
    } else {
      scale_ += static_cast<int64_t>(digits_.size() - end - 1);
      digits_.resize(end + 1);
    }
    number.digits = std::move(digits_);
    number.scale = scale_ + std::clamp(exponent, -kExponentLimit, kExponentLimit);
    return number;
  }

 private:
  std::string digits_;
  int64_t scale_ = 0;
  int64_t count_ = 0;
  bool sticky_ = false;
};

// Accumulates an exponent's digits without overflow.
void addExponentDigit(int64_t& exponent, char16_t digit) {
  if (exponent < kExponentLimit) exponent = exponent * 10 + (digit - u'0');
}

// The value of an &H or &O digit, or -1.
int radixDigit(char16_t unit, int radix) {
  int value = -1;
  if (isDigit(unit)) {
    value = unit - u'0';
  } else if (unit >= u'a' && unit <= u'f') {
    value = unit - u'a' + 10;
  } else if (unit >= u'A' && unit <= u'F') {
    value = unit - u'A' + 10;
  }
  return value < radix ? value : -1;
}

// Appends a radix digit to a 64-bit value; raises 6 when the value no longer fits.
void addRadixDigit(uint64_t& bits, int digit, int radix) {
  const int shift = radix == 16 ? 4 : 3;
  if ((bits >> (64 - shift)) != 0) raiseRuntimeError(vb_error::kOverflow);
  bits = (bits << shift) | static_cast<uint64_t>(digit);
}

// The radix of an "&H" or "&O" prefix at `at`, or 0.
int radixPrefix(StringView text, std::size_t at) {
  if (at + 1 >= text.size() || text[at] != u'&') return 0;
  switch (text[at + 1]) {
    case u'H':
    case u'h':
      return 16;
    case u'O':
    case u'o':
      return 8;
    default:
      return 0;
  }
}

int64_t wrapSigned(uint64_t bits, int width) {
  if (width >= 64) return static_cast<int64_t>(bits);
  const uint64_t mask = (uint64_t{1} << width) - 1;
  bits &= mask;
  const uint64_t sign = uint64_t{1} << (width - 1);
  return (bits & sign) != 0 ? static_cast<int64_t>(bits) - static_cast<int64_t>(mask) - 1
                            : static_cast<int64_t>(bits);
}

// ---- The locale reader ------------------------------------------------------------------------

bool isBlank(char16_t unit) {
  switch (unit) {
    case u' ':
    case u'\t':
    case u'\n':
    case u'\r':
    case u'\v':
    case u'\f':
    case u'\u00A0':
    case u'\u3000':
      return true;
    default:
      return false;
  }
}

class LocaleNumberReader {
 public:
  LocaleNumberReader(StringView text, const Locale& locale)
      : text_(text),
        decimal_(locale.decimalSeparator.empty() ? StringView(u".")
                                                 : StringView(locale.decimalSeparator)),
        thousands_(locale.thousandsSeparator),
        currency_(locale.currencySymbol) {
    // A thousands separator equal to the decimal one is ignored.
    if (thousands_ == decimal_) thousands_ = {};
    // Where the separator is a no-break space, people type an ordinary one.
    spaceGroups_ = thousands_ == u"\u00A0" || thousands_ == u"\u202F";
  }

  // Reads the whole text; raises 13 when something is left over or missing.
  ParsedNumber read() {
    skipBlanks();
    if (int radix = radixPrefix(text_, pos_)) return readRadix(radix);
    readAffixes();
    ParsedNumber number = readDigits();
    readAffixes();  // a sign may also follow the digits
    skipBlanks();
    if (pos_ != text_.size() || openParenthesis_) mismatch();
    number.negative = negative_ || sawParenthesis_;
    return number;
  }

 private:
  [[noreturn]] static void mismatch() { raiseRuntimeError(vb_error::kTypeMismatch); }

  bool at(StringView token) const {
    return !token.empty() && text_.substr(pos_, token.size()) == token;
  }
  bool take(StringView token) {
    if (!at(token)) return false;
    pos_ += token.size();
    return true;
  }
  void skipBlanks() {
    while (pos_ < text_.size() && isBlank(text_[pos_]))
      ++pos_;
  }
  bool atGroupSeparator() const { return at(thousands_) || (spaceGroups_ && at(u" ")); }

  // Signs, parentheses and the currency symbol around the number, blanks between them. One
  // sign in all, before or after; one pair of parentheses; one currency symbol.
  void readAffixes() {
    for (;;) {
      skipBlanks();
      if (pos_ == text_.size()) return;
      const char16_t unit = text_[pos_];
      if ((unit == u'+' || unit == u'-') && !sawSign_ && !sawParenthesis_) {
        sawSign_ = true;
        negative_ = unit == u'-';
        ++pos_;
      } else if (unit == u'(' && !sawDigits_ && !sawParenthesis_ && !sawSign_) {
        sawParenthesis_ = openParenthesis_ = true;
        ++pos_;
      } else if (unit == u')' && openParenthesis_ && sawDigits_) {
        openParenthesis_ = false;
        ++pos_;
      } else if (!sawCurrency_ && take(currency_)) {
        sawCurrency_ = true;
      } else {
        return;
      }
    }
  }

  ParsedNumber readDigits() {
    DigitCollector collector;
    bool afterPoint = false;
    while (pos_ < text_.size()) {
      const char16_t unit = text_[pos_];
      if (isDigit(unit)) {
        collector.add(unit, afterPoint);
        ++pos_;
      } else if (!afterPoint && take(decimal_)) {
        afterPoint = true;
      } else if (!afterPoint && collector.count() > 0 && atGroupSeparator()) {
        pos_ += at(thousands_) ? thousands_.size() : 1;
      } else {
        break;
      }
    }
    if (collector.count() == 0) mismatch();
    sawDigits_ = true;

    int64_t exponent = 0;
    if (pos_ < text_.size() && (text_[pos_] == u'e' || text_[pos_] == u'E')) {
      ++pos_;
      bool negativeExponent = false;
      if (pos_ < text_.size() && (text_[pos_] == u'+' || text_[pos_] == u'-')) {
        negativeExponent = text_[pos_++] == u'-';
      }
      if (pos_ == text_.size() || !isDigit(text_[pos_])) mismatch();  // unfinished exponent
      while (pos_ < text_.size() && isDigit(text_[pos_]))
        addExponentDigit(exponent, text_[pos_++]);
      if (negativeExponent) exponent = -exponent;
    }
    return collector.finish(false, exponent);
  }

  ParsedNumber readRadix(int radix) {
    pos_ += 2;
    ParsedNumber number;
    number.isRadix = true;
    int digits = 0;
    for (int d; pos_ < text_.size() && (d = radixDigit(text_[pos_], radix)) >= 0; ++pos_) {
      addRadixDigit(number.bits, d, radix);
      ++digits;
    }
    skipBlanks();
    if (digits == 0 || pos_ != text_.size()) mismatch();
    return number;
  }

  StringView text_;
  StringView decimal_;
  StringView thousands_;
  StringView currency_;
  bool spaceGroups_ = false;
  std::size_t pos_ = 0;
  bool negative_ = false;
  bool sawSign_ = false;
  bool sawParenthesis_ = false;
  bool openParenthesis_ = false;
  bool sawCurrency_ = false;
  bool sawDigits_ = false;
};

// Magnitude of the digits x 10^decimals, rounded half to even to a whole number; raises 6
// above `limit`.
uint64_t roundedMagnitude(const ParsedNumber& number, int decimals, uint64_t limit) {
  if (number.digits.empty()) return 0;
  const auto length = static_cast<int64_t>(number.digits.size());
  const int64_t kept = length + number.scale + decimals;  // digits before the rounding point
  if (kept > 20) raiseRuntimeError(vb_error::kOverflow);
  if (kept < 0) return 0;  // below a tenth of the last unit
  UInt128 value = 0;
  for (int64_t i = 0; i < std::min(kept, length); ++i)
    value = value * 10 + (number.digits[i] - '0');
  for (int64_t i = length; i < kept; ++i)
    value *= 10;
  if (kept < length) {
    const char first = number.digits[static_cast<std::size_t>(kept)];
    const bool more = kept + 1 < length;  // no trailing zeros: anything after is nonzero
    if (first > '5' || (first == '5' && (more || (value & 1) != 0))) ++value;
  }
  if (value > limit) raiseRuntimeError(vb_error::kOverflow);
  return static_cast<uint64_t>(value);
}

}  // namespace

ParsedNumber readLocaleNumber(StringView text, const Locale& locale) {
  return LocaleNumberReader(text, locale).read();
}

double toDouble(const ParsedNumber& number) {
  if (number.isRadix) {
    return static_cast<double>(wrapSigned(number.bits, number.bits <= 0xFFFFFFFFu ? 32 : 64));
  }
  if (number.digits.empty()) return 0.0;
  const int64_t leading = number.scale + static_cast<int64_t>(number.digits.size()) - 1;
  if (leading > 310) raiseRuntimeError(vb_error::kOverflow);
  if (leading < -330) return number.negative ? -0.0 : 0.0;
  std::string text;
  text.reserve(number.digits.size() + 10);
  if (number.negative) text.push_back('-');
  text += number.digits;
  text.push_back('e');
  text += std::to_string(number.scale);
  double value = 0.0;
  auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    if (leading > 0) raiseRuntimeError(vb_error::kOverflow);
    return number.negative ? -0.0 : 0.0;
  }
  return value;
}

Currency toCurrency(const ParsedNumber& number) {
  if (number.isRadix) {
    return Currency::fromUnits(wrapSigned(number.bits, number.bits <= 0xFFFFFFFFu ? 32 : 64));
  }
  const uint64_t limit = number.negative ? uint64_t{1} << 63 : uint64_t{INT64_MAX};
  const uint64_t magnitude = roundedMagnitude(number, 4, limit);
  return Currency::fromScaled(number.negative ? static_cast<int64_t>(0u - magnitude)
                                              : static_cast<int64_t>(magnitude));
}

int64_t toWholeNumber(const ParsedNumber& number, int64_t min, int64_t max, int bits) {
  if (number.isRadix) {
    const uint64_t widthMask = bits >= 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1;
    if (number.bits > widthMask) raiseRuntimeError(vb_error::kOverflow);
    const int64_t value =
        min < 0 ? wrapSigned(number.bits, bits) : static_cast<int64_t>(number.bits);
    if (value < min || value > max) raiseRuntimeError(vb_error::kOverflow);
    return value;
  }
  const uint64_t limit = number.negative ? static_cast<uint64_t>(-(min + 1)) + 1
                                         : static_cast<uint64_t>(std::max<int64_t>(max, 0));
  const uint64_t magnitude = roundedMagnitude(number, 0, limit);
  return number.negative ? static_cast<int64_t>(0u - magnitude) : static_cast<int64_t>(magnitude);
}

}  // namespace detail

// ---- Val --------------------------------------------------------------------------------------

namespace {

// Val's blanks: skipped before the number and anywhere among its digits.
bool isValBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'\u3000';
}

// Val of "&H..." / "&O...": up to 64 bits, wrapped to the width the digits suggest. A trailing
// "&" or "%" type character asks for a Long or an Integer.
double valOfRadix(StringView text, std::size_t pos, int radix) {
  pos += 2;
  uint64_t bits = 0;
  int digits = 0;
  for (; pos < text.size(); ++pos) {
    if (isValBlank(text[pos])) continue;
    const int d = detail::radixDigit(text[pos], radix);
    if (d < 0) break;
    detail::addRadixDigit(bits, d, radix);
    ++digits;
  }
  int width = 64;
  if (pos < text.size() && text[pos] == u'&') {
    width = 32;
  } else if (pos < text.size() && text[pos] == u'%') {
    width = 16;
  } else if (radix == 16) {
    width = digits <= 4 ? 16 : digits <= 8 ? 32 : 64;
  } else {
    width = bits <= 0xFFFFu ? 16 : bits <= 0xFFFFFFFFu ? 32 : 64;
  }
  return static_cast<double>(detail::wrapSigned(bits, width));
}

}  // namespace

double Val(StringView text) {
  std::size_t pos = 0;
  auto skipBlanks = [&] {
    while (pos < text.size() && isValBlank(text[pos]))
      ++pos;
  };
  skipBlanks();
  if (int radix = detail::radixPrefix(text, pos)) return valOfRadix(text, pos, radix);

  bool negative = false;
  if (pos < text.size() && (text[pos] == u'+' || text[pos] == u'-')) negative = text[pos++] == u'-';

  detail::DigitCollector collector;
  bool afterPoint = false;
  for (; pos < text.size(); ++pos) {
    const char16_t unit = text[pos];
    if (detail::isDigit(unit)) {
      collector.add(unit, afterPoint);
    } else if (unit == u'.' && !afterPoint) {
      afterPoint = true;
    } else if (!isValBlank(unit)) {
      break;
    }
  }

  int64_t exponent = 0;
  bool sawExponent = false;
  if (pos < text.size() && collector.count() > 0) {
    const char16_t letter = text[pos];
    if (letter == u'E' || letter == u'e' || letter == u'D' || letter == u'd') {
      std::size_t p = pos + 1;
      while (p < text.size() && isValBlank(text[p]))
        ++p;
      bool negativeExponent = false;
      if (p < text.size() && (text[p] == u'+' || text[p] == u'-'))
        negativeExponent = text[p++] == u'-';
      bool anyDigit = false;
      for (; p < text.size(); ++p) {
        if (detail::isDigit(text[p])) {
          detail::addExponentDigit(exponent, text[p]);
          anyDigit = true;
        } else if (!isValBlank(text[p])) {
          break;
        }
      }
      if (anyDigit) {
        sawExponent = true;
        if (negativeExponent) exponent = -exponent;
        pos = p;
      } else {
        exponent = 0;  // "1E" alone: the letter ends the number
      }
    }
  }
  if (collector.count() == 0) return 0.0;

  const detail::ParsedNumber number = collector.finish(negative, exponent);
  double value = detail::toDouble(number);

  // Type characters: "%" Integer and "&" Long (whole numbers only), "!" Single, "#" Double,
  // "@" Currency.
  if (pos < text.size()) {
    switch (text[pos]) {
      case u'%':
      case u'&': {
        if (afterPoint || sawExponent) raiseRuntimeError(vb_error::kTypeMismatch);
        const bool isInteger = text[pos] == u'%';
        const double limit = isInteger ? 32767.0 : 2147483647.0;
        if (value > limit || value < -limit - 1) raiseRuntimeError(vb_error::kOverflow);
        break;
      }
      case u'!':
        if (std::isinf(static_cast<float>(value))) raiseRuntimeError(vb_error::kOverflow);
        value = static_cast<double>(static_cast<float>(value));
        break;
      case u'@':
        value = detail::toCurrency(number).toDouble();
        break;
      default:
        break;
    }
  }
  return value;
}

// ---- The locale reader ------------------------------------------------------------------------

double parseDouble(StringView text, const Locale& locale) {
  return detail::toDouble(detail::readLocaleNumber(text, locale));
}

Currency parseCurrency(StringView text, const Locale& locale) {
  return detail::toCurrency(detail::readLocaleNumber(text, locale));
}

}  // namespace ravelin

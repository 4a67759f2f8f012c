// Numbers to text: CStr of Double, Single and Currency, and Str.
#include <algorithm>
#include <charconv>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/rounded_digits.hpp>

namespace ravelin {
namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

void appendAscii(String& out, std::string_view ascii) {
  out.append(ascii.begin(), ascii.end());
}

// Writes rounded digits the way CStr does: fixed notation while the decimal exponent lies in
// -4 .. significant - 1, exponent form ("1.5E-07", "1E+15") outside. The text is sized first and
// filled in place: this runs once per element when whole lists are turned into text.
String writeDigits(const detail::RoundedDigits& number, int significant, StringView separator) {
  if (number.count == 0) return u"0";
  const char* digits = number.digits;
  const int count = number.count;
  const int exponent = number.exponent;
  const bool exponentForm = exponent < -4 || exponent >= significant;
  const auto separatorLength = static_cast<int>(separator.size());

  int length = number.negative ? 1 : 0;
  int magnitude = exponent < 0 ? -exponent : exponent;
  if (exponentForm) {
    length += count + (count > 1 ? separatorLength : 0) + 2 + (magnitude >= 100 ? 3 : 2);
  } else if (exponent < 0) {
    length += 1 + separatorLength + (-exponent - 1) + count;
  } else {
    length += std::max(count, exponent + 1) + (count > exponent + 1 ? separatorLength : 0);
  }

  String out(static_cast<std::size_t>(length), u'0');
  char16_t* p = out.data();
  auto putSeparator = [&] {
    for (char16_t unit : separator)
      *p++ = unit;
  };
  if (number.negative) *p++ = u'-';
  if (exponentForm) {
    *p++ = static_cast<char16_t>(digits[0]);
    if (count > 1) {
      putSeparator();
      for (int i = 1; i < count; ++i)
        *p++ = static_cast<char16_t>(digits[i]);
    }
    *p++ = u'E';
    *p++ = exponent < 0 ? u'-' : u'+';
    if (magnitude >= 100) *p++ = static_cast<char16_t>(u'0' + magnitude / 100);
    *p++ = static_cast<char16_t>(u'0' + magnitude / 10 % 10);
    *p++ = static_cast<char16_t>(u'0' + magnitude % 10);
  } else if (exponent < 0) {
    ++p;  // the "0" before the separator
    putSeparator();
    p += -exponent - 1;  // zeros after the separator
    for (int i = 0; i < count; ++i)
      *p++ = static_cast<char16_t>(digits[i]);
  } else {
    for (int i = 0; i < count; ++i) {
      if (i == exponent + 1) putSeparator();
      *p++ = static_cast<char16_t>(digits[i]);
    }
    // Integer digits beyond the significant ones are the zeros the text was filled with.
  }
  return out;
}

// An empty separator in a hand-built locale would glue the fraction to the integer digits.
StringView separatorOf(const Locale& locale) {
  return locale.decimalSeparator.empty() ? StringView(u".") : StringView(locale.decimalSeparator);
}

}  // namespace

String textOfDouble(double value, const Locale& locale) {
  return writeDigits(detail::roundDigits(value, kDoubleDigits), kDoubleDigits, separatorOf(locale));
}

String textOfSingle(float value, const Locale& locale) {
  return writeDigits(detail::roundDigits(static_cast<double>(value), kSingleDigits), kSingleDigits,
                     separatorOf(locale));
}

String textOfCurrency(Currency value, const Locale& locale) {
  const int64_t scaled = value.scaled();
  // The magnitude as unsigned, so that the minimum (-922337203685477.5808) does not overflow.
  const uint64_t magnitude =
      scaled < 0 ? 0u - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  const auto scale = static_cast<uint64_t>(Currency::kScale);
  char buffer[32];
  String out;
  if (scaled < 0) out.push_back(u'-');
  auto end = std::to_chars(buffer, buffer + sizeof buffer, magnitude / scale).ptr;
  appendAscii(out, std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
  uint64_t fraction = magnitude % scale;
  if (fraction != 0) {
    char decimals[4];
    for (int i = 3; i >= 0; --i) {
      decimals[i] = static_cast<char>('0' + fraction % 10);
      fraction /= 10;
    }
    std::size_t length = 4;
    while (decimals[length - 1] == '0')
      --length;
    out.append(separatorOf(locale));
    appendAscii(out, std::string_view(decimals, length));
  }
  return out;
}

namespace {

// The invariant settings Str writes with.
const Locale& invariantNumbers() {
  static const Locale locale = [] {
    Locale l;
    l.decimalSeparator = u".";
    return l;
  }();
  return locale;
}

// Str's form of an invariant number text: a blank for the sign of a non-negative number, and
// no zero before the point (" .5", "-.5").
String strForm(String text) {
  const bool negative = !text.empty() && text[0] == u'-';
  const std::size_t start = negative ? 1 : 0;
  if (text.compare(start, 2, u"0.") == 0) text.erase(start, 1);
  if (!negative) text.insert(text.begin(), u' ');
  return text;
}

}  // namespace

String Str(const Variant& number) {
  const Locale& invariant = invariantNumbers();
  switch (number.type()) {
    case VarType::Null:
      raiseRuntimeError(vb_error::kInvalidUseOfNull);
    case VarType::Empty:
      return u" 0";
    // Str(True) is "True": the runtime writes a Boolean by name, without the sign blank.
    case VarType::Boolean:
      return number.asBoolean() ? u"True" : u"False";
    case VarType::Integer:
    case VarType::Long:
    case VarType::Byte:
      return strForm(textOfDouble(CDbl(number), invariant));
    case VarType::Single:
      return strForm(textOfSingle(number.asSingle(), invariant));
    case VarType::Double:
      return strForm(textOfDouble(number.asDouble(), invariant));
    case VarType::Currency:
      return strForm(textOfCurrency(number.asCurrency(), invariant));
    // A date is written as its serial number (noon is " .5"): wherever a number is expected,
    // the library takes a date as its serial, and the SQL time literals rely on this.
    case VarType::Date:
      return strForm(textOfDouble(number.asDate().serial, invariant));
    // Text is read as CDbl reads it, in the current locale, then written as a Double.
    case VarType::String:
      return strForm(textOfDouble(parseDouble(number.asString()), invariant));
    default:
      raiseRuntimeError(vb_error::kTypeMismatch);
  }
}

}  // namespace ravelin

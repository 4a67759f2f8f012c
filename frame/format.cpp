// Format: the named formats, and the dispatch of user-defined formats by the value's type.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/internal/decimal_digits.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/frame/internal/format_tokens.hpp>

namespace ravelin {
namespace {

using detail::FormatKind;
using detail::ParsedFormat;

[[noreturn]] void raiseTypeMismatch() {
  raiseRuntimeError(vb_error::kTypeMismatch);
}

std::string decimalText(int64_t value) {
  char text[24];
  auto end = std::to_chars(text, text + sizeof text, value).ptr;
  return std::string(text, end);
}

// The exact digits of a whole number.
DecimalDigits digitsOfInteger(int64_t value) {
  DecimalDigits number;
  if (value == 0) return number;
  number.negative = value < 0;
  uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  char text[24];
  auto end = std::to_chars(text, text + sizeof text, magnitude).ptr;
  number.digits.assign(text, end);
  number.exponent = static_cast<int>(number.digits.size()) - 1;
  while (number.digits.back() == '0')
    number.digits.pop_back();
  return number;
}

// The exact digits of a Currency (scaled by 10,000).
DecimalDigits digitsOfCurrency(Currency value) {
  DecimalDigits number = digitsOfInteger(value.scaled());
  if (!number.isZero()) number.exponent -= 4;
  return number;
}

DecimalDigits digitsOfDouble(double value, int significant) {
  if (!std::isfinite(value)) raiseRuntimeError(vb_error::kOverflow);
  return roundToSignificant(value, significant);
}

// Text read as CDbl reads it, or nothing when it is no number.
std::optional<double> numberInText(StringView text, const Locale& locale) {
  try {
    return parseDouble(text, locale);
  } catch (const AutomationError&) {
    return std::nullopt;
  }
}

// The value as a number for a number format: its decimal digits (15 significant for a Double,
// 7 for a Single, exact otherwise). Text that is no number gives nothing.
std::optional<DecimalDigits> numberOf(const Variant& value, const Locale& locale) {
  switch (value.type()) {
    case VarType::Empty:
      return DecimalDigits{};
    case VarType::Integer:
      return digitsOfInteger(value.asInteger());
    case VarType::Long:
      return digitsOfInteger(value.asLong());
    case VarType::Byte:
      return digitsOfInteger(value.asByte());
    case VarType::Boolean:
      return digitsOfInteger(value.asBoolean() ? -1 : 0);
    case VarType::Single:
      return digitsOfDouble(static_cast<double>(value.asSingle()), 7);
    case VarType::Double:
      return digitsOfDouble(value.asDouble(), 15);
    case VarType::Currency:
      return digitsOfCurrency(value.asCurrency());
    case VarType::Date:
      return digitsOfDouble(value.asDate().serial, 15);
    case VarType::String:
      if (auto number = numberInText(value.asString(), locale)) {
        return digitsOfDouble(*number, 15);
      }
      return std::nullopt;
    default:
      raiseTypeMismatch();
  }
}

Date dateOfNumber(double serial) {
  if (!isValidDateSerial(serial)) raiseRuntimeError(vb_error::kOverflow);
  return Date{serial};
}

// The value as a date for a date format: numbers are serials; text is read as a date, else as
// a number. Text that is neither gives nothing.
std::optional<Date> dateOf(const Variant& value, const Locale& locale) {
  switch (value.type()) {
    case VarType::Empty:
      return Date{};
    case VarType::Date:
      return value.asDate();
    case VarType::Integer:
      return dateOfNumber(static_cast<double>(value.asInteger()));
    case VarType::Long:
      return dateOfNumber(static_cast<double>(value.asLong()));
    case VarType::Byte:
      return dateOfNumber(static_cast<double>(value.asByte()));
    case VarType::Boolean:
      return Date{value.asBoolean() ? -1.0 : 0.0};
    case VarType::Single:
      return dateOfNumber(static_cast<double>(value.asSingle()));
    case VarType::Double:
      return dateOfNumber(value.asDouble());
    case VarType::Currency:
      return dateOfNumber(value.asCurrency().toDouble());
    case VarType::String: {
      const String& text = value.asString();
      if (isDateText(text, locale)) return parseDate(text, locale);
      if (auto number = numberInText(text, locale)) return dateOfNumber(*number);
      return std::nullopt;
    }
    default:
      raiseTypeMismatch();
  }
}

// The value as text, as CStr writes it in the given locale; Empty and Null give "".
String textOf(const Variant& value, const Locale& locale) {
  switch (value.type()) {
    case VarType::Empty:
    case VarType::Null:
      return String();
    case VarType::String:
      return value.asString();
    case VarType::Integer:
      return fromAscii(decimalText(value.asInteger()));
    case VarType::Long:
      return fromAscii(decimalText(value.asLong()));
    case VarType::Byte:
      return fromAscii(decimalText(value.asByte()));
    case VarType::Boolean:
      return value.asBoolean() ? u"True" : u"False";
    case VarType::Single:
      return textOfSingle(value.asSingle(), locale);
    case VarType::Double:
      return textOfDouble(value.asDouble(), locale);
    case VarType::Currency:
      return textOfCurrency(value.asCurrency(), locale);
    case VarType::Date:
      return textOfDate(value.asDate(), locale);
    default:
      raiseTypeMismatch();
  }
}

// "General Number": the number as CStr writes it, never grouped.
String generalNumber(const Variant& value, const Locale& locale) {
  switch (value.type()) {
    case VarType::Null:
      return String();
    case VarType::Empty:
      return u"0";
    case VarType::Boolean:
      return value.asBoolean() ? u"-1" : u"0";
    case VarType::Date:
      return textOfDouble(value.asDate().serial, locale);
    case VarType::String:
      if (auto number = numberInText(value.asString(), locale)) {
        return textOfDouble(*number, locale);
      }
      return value.asString();
    default:
      return textOf(value, locale);
  }
}

// "Yes/No", "True/False", "On/Off": the second word for zero, the first for any other number.
String twoWords(const Variant& value, StringView nonZero, StringView zero, const Locale& locale) {
  if (value.isNull()) return String();
  std::optional<DecimalDigits> number = numberOf(value, locale);
  if (!number) return value.asString();
  return String(number->isZero() ? zero : nonZero);
}

}  // namespace

CurrencyFormat currencyFormatOf(const Locale& locale, StringView number) {
  String symbol;
  for (char16_t unit : locale.currencySymbol) {
    symbol += u'\\';
    symbol += unit;
  }
  StringView name = locale.name;
  auto namedAs = [&](StringView prefix) {
    return name.size() >= prefix.size() && equalsIgnoreCase(name.substr(0, prefix.size()), prefix);
  };
  CurrencyFormat format;
  if (namedAs(u"en-US") || namedAs(u"en_US")) {
    format.positive = symbol + String(number);
    format.parentheses = true;
  } else if (namedAs(u"en")) {
    format.positive = symbol + String(number);
  } else if (namedAs(u"pt-BR") || namedAs(u"pt_BR")) {
    format.positive = symbol + u"\\ " + String(number);
  } else {
    format.positive = String(number) + u"\\ " + symbol;
  }
  return format;
}

String CurrencyFormat::text(bool withParentheses) const {
  return positive + (withParentheses ? u";(" + positive + u")" : u";-" + positive);
}

namespace {

// "Currency": two decimals, grouping and the locale's symbol where Windows puts it for the
// locale (see format.hpp).
String currencyFormat(const Locale& locale) {
  const CurrencyFormat format = currencyFormatOf(locale, u"#,##0.00");
  return format.text(format.parentheses);
}

// Formats with a user-defined format text of a known kind (Literal: the value's type decides).
String formatWith(const Variant& value, StringView format, FormatKind kind, int firstDayOfWeek,
                  int firstWeekOfYear, const Locale& locale) {
  if (kind == FormatKind::Literal) {
    if (value.type() == VarType::Date) {
      kind = FormatKind::Date;
    } else if (value.isString()) {
      kind = FormatKind::Text;
    } else {
      kind = FormatKind::Number;
    }
  }
  const ParsedFormat parsed = detail::parseFormat(format, kind);
  String out;
  out.reserve(format.size() + 24);
  switch (kind) {
    case FormatKind::Number: {
      if (value.isNull()) {
        if (auto* section = parsed.usableSection(3)) {
          detail::appendNumberSection(DecimalDigits{}, false, parsed, *section, format, locale,
                                      out);
        }
        return out;
      }
      std::optional<DecimalDigits> number = numberOf(value, locale);
      if (!number) return value.asString();
      detail::appendFormattedNumber(std::move(*number), parsed, format, locale, out);
      return out;
    }
    case FormatKind::Date: {
      if (value.isNull()) {
        if (auto* section = parsed.usableSection(3)) {
          detail::appendFormattedDate(Date{}, parsed, *section, format, firstDayOfWeek,
                                      firstWeekOfYear, locale, out);
        }
        return out;
      }
      std::optional<Date> date = dateOf(value, locale);
      if (!date) return value.asString();
      detail::appendFormattedDate(*date, parsed, parsed.sections[0], format, firstDayOfWeek,
                                  firstWeekOfYear, locale, out);
      return out;
    }
    default: {
      // The second section, when there is one, serves Null and empty text.
      String text = textOf(value, locale);
      const detail::FormatSection* section = &parsed.sections[0];
      if (value.isNull() || text.empty()) {
        section = parsed.usableSection(1);
        if (section == nullptr && value.isNull()) return out;
        if (section == nullptr) section = &parsed.sections[0];
      }
      detail::appendFormattedText(text, parsed, *section, format, out);
      return out;
    }
  }
}

}  // namespace

String Format(const Variant& value, StringView format, int firstDayOfWeek, int firstWeekOfYear,
              const Locale& locale) {
  if (firstDayOfWeek < vbUseSystemDayOfWeek || firstDayOfWeek > vbSaturday ||
      firstWeekOfYear < vbUseSystem || firstWeekOfYear > vbFirstFullWeek) {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  if (format.empty()) return textOf(value, locale);

  auto named = [&](StringView name) { return equalsIgnoreCase(format, name); };
  auto asNumber = [&](StringView pattern) {
    return formatWith(value, pattern, FormatKind::Number, firstDayOfWeek, firstWeekOfYear, locale);
  };
  auto asDate = [&](StringView pattern) {
    return formatWith(value, pattern, FormatKind::Date, firstDayOfWeek, firstWeekOfYear, locale);
  };
  // The named formats are 5 to 14 units long and start with a letter; other formats skip the
  // comparisons.
  const char16_t first = format[0];
  if (format.size() >= 5 && format.size() <= 14 &&
      ((first >= u'A' && first <= u'Z') || (first >= u'a' && first <= u'z'))) {
    if (named(u"General Number")) return generalNumber(value, locale);
    if (named(u"Currency")) return asNumber(currencyFormat(locale));
    if (named(u"Fixed")) return asNumber(u"0.00");
    if (named(u"Standard")) return asNumber(u"#,##0.00");
    if (named(u"Percent")) return asNumber(u"0.00%");
    if (named(u"Scientific")) return asNumber(u"0.00E+00");
    if (named(u"Yes/No")) return twoWords(value, u"Yes", u"No", locale);
    if (named(u"True/False")) return twoWords(value, u"True", u"False", locale);
    if (named(u"On/Off")) return twoWords(value, u"On", u"Off", locale);
    if (named(u"General Date")) return asDate(u"c");
    if (named(u"Long Date")) return asDate(u"dddddd");
    if (named(u"Medium Date")) return asDate(u"dd-mmm-yy");
    if (named(u"Short Date")) return asDate(u"ddddd");
    if (named(u"Long Time")) return asDate(u"ttttt");
    if (named(u"Medium Time")) {
      // A locale without AM/PM designators keeps its 24-hour clock.
      bool designators = !locale.amDesignator.empty() || !locale.pmDesignator.empty();
      return asDate(designators ? u"hh:nn AMPM" : u"hh:nn");
    }
    if (named(u"Short Time")) return asDate(u"hh:nn");
  }
  return formatWith(value, format, detail::classifyFormat(format), firstDayOfWeek, firstWeekOfYear,
                    locale);
}

}  // namespace ravelin

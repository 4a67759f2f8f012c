// StringFunctions: the members, in the order of their dispatch slots.
#include <algorithm>
#include <array>
#include <limits>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <ravelin/platform/random.hpp>
#include <ravelin/text/string_functions.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {

namespace {

// A 16-bit intermediate, as the runtime's Integer arithmetic keeps it: outside the range is 6.
int16_t toInteger(int64_t value) {
  if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
    raiseRuntimeError(vb_error::kOverflow);
  return static_cast<int16_t>(value);
}

// Mid(text, start) with a 1-based start: empty beyond the end; a start below 1 raises 5.
StringView midFrom(StringView text, int64_t start) {
  if (start < 1) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const auto index = static_cast<std::size_t>(start - 1);
  return index >= text.size() ? StringView() : text.substr(index);
}

// Left(text, count); a negative count raises 5.
StringView left(StringView text, int64_t count) {
  if (count < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return text.substr(0, static_cast<std::size_t>(count));
}

void replaceAll(String& text, StringView from, StringView to) {
  for (auto at = text.find(from); at != String::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

// One token of ConvertDecToString: a number (13 otherwise) whose character is appended.
void appendCharacterOfToken(String& out, StringView token) {
  out += AnsiCharacterOf(CLng(Variant(String(token))));
}

// The plain letter for each accented one, in the order the replacements are made.
struct AccentRule {
  StringView accented;
  char16_t plain;
};
constexpr std::array<AccentRule, 16> kAccentRules = {{
    {u"\u00C0\u00C1\u00C2\u00C3\u00C4", u'A'},
    {u"\u00E2\u00E3\u00E4\u00E0\u00E1", u'a'},
    {u"\u00C8\u00C9\u00CA\u00CB", u'E'},
    {u"\u00EA\u00EB\u00E8\u00E9", u'e'},
    {u"\u00CC\u00CD\u00CE\u00CF", u'I'},
    {u"\u00EE\u00EF\u00EC\u00ED", u'i'},
    {u"\u00D2\u00D3\u00D4\u00D5\u00D6", u'O'},
    {u"\u00F4\u00F5\u00F6\u00F2\u00F3", u'o'},
    {u"\u00D9\u00DA\u00DB\u00DC", u'U'},
    {u"\u00FB\u00FC\u00F9\u00FA", u'u'},
    {u"\u00DD", u'Y'},
    {u"\u00FD", u'y'},
    {u"\u00F1", u'n'},
    {u"\u00D1", u'N'},
    {u"\u00C7", u'C'},
    {u"\u00E7", u'c'},
}};

}  // namespace

String StringFunctions::PadZeroRight(StringView str, int16_t& strLen) {
  const int16_t count = toInteger(int64_t{strLen} - static_cast<int64_t>(str.size()));
  if (count <= 0) return String(str);
  return String(static_cast<std::size_t>(count), u'0') + String(str);
}

String StringFunctions::ReturnOnlyCharacteres(StringView strString) {
  String out;
  for (char16_t unit : strString) {
    const int32_t code = AnsiCodeOf(unit);
    if (code >= 32 && code <= 254) out += unit;
  }
  return out;
}

String StringFunctions::ReturnOnlyDigits(StringView Text) {
  String out;
  for (char16_t unit : Text)
    if (unit >= u'0' && unit <= u'9') out += unit;
  return out;
}

String StringFunctions::ConvertStringToDec(StringView strString) {
  // Three digits and a "/" for each unit but the last, which has no "/".
  if (strString.empty()) return String();
  checkTextLength(strString.size() * 4 - 1);
  String out;
  out.reserve(strString.size() * 4);
  for (char16_t unit : strString) {
    // A derived StrZero may write more than three digits.
    const String code = StrZero(AnsiCodeOf(unit), 3);
    checkTextLength(out.size() + code.size());
    out += code;
    out += u'/';
  }
  if (!out.empty()) out.pop_back();
  return out;
}

String StringFunctions::ConvertDecToString(StringView Sequencia) {
  if (TrimSpaces(Sequencia).empty()) return String();
  String out;
  StringView rest = Sequencia;
  for (;;) {
    auto separator = rest.find(u'/');
    if (separator == StringView::npos) separator = rest.find(u'\\');
    if (separator == StringView::npos) break;
    appendCharacterOfToken(out, rest.substr(0, separator));
    rest.remove_prefix(separator + 1);
  }
  appendCharacterOfToken(out, rest);
  return out;
}

String StringFunctions::StripNulls(StringView OriginalStr) {
  String copy(OriginalStr);
  return CutAtNull(copy);
}

String StringFunctions::StrZero(double Number, int16_t Digits) {
  const String number(TrimSpaces(Str(Variant(TruncateNumber(Variant(Number))))));
  String text = PadL(number, Digits, 32);
  for (char16_t& unit : text)
    if (unit == u' ') unit = u'0';
  return text;
}

Variant StringFunctions::StringToBytes(StringView iStr) {
  const auto byteCount = static_cast<int64_t>(iStr.size()) * 2;
  if (byteCount >= std::numeric_limits<int32_t>::max()) raiseRuntimeError(vb_error::kOverflow);
  // Two bytes a unit and the closing 0.
  checkArrayElements(static_cast<std::size_t>(byteCount) + 1);
  SafeArray bytes = SafeArray::vector(VarType::Byte, 0, static_cast<int32_t>(byteCount));
  for (std::size_t i = 0; i < iStr.size(); ++i) {
    bytes.elements[2 * i] = Variant(static_cast<uint8_t>(iStr[i] & 0xFF));
    bytes.elements[2 * i + 1] = Variant(static_cast<uint8_t>(iStr[i] >> 8));
  }
  return Variant(std::move(bytes));
}

bool StringFunctions::HaveOnlyDigits(StringView strString) {
  return IsDigitsOnly(strString);
}

String StringFunctions::Stuff(StringView Expression, int16_t StartReplacement,
                              int16_t CharactersReplaced, StringView Replacement) {
  if (StartReplacement < 1) return String(Expression);
  String expression(Expression);
  if (expression.size() < static_cast<std::size_t>(StartReplacement))
    expression.resize(static_cast<std::size_t>(StartReplacement), u' ');
  const int16_t tailStart = toInteger(int64_t{StartReplacement} + CharactersReplaced);
  String result(left(expression, StartReplacement - 1));
  const StringView tail = midFrom(expression, tailStart);
  if (CharactersReplaced != 0) result += PadR(Replacement, CharactersReplaced, 32);
  result += tail;
  return result;
}

String StringFunctions::PadL(StringView Text, int16_t Size, int16_t AsciiChar) {
  return PadLeftText(Text, Size, AsciiChar);
}

String StringFunctions::PadR(StringView Text, int16_t Size, int16_t AsciiChar) {
  return PadRightText(Text, Size, AsciiChar);
}

String StringFunctions::StrCenter(StringView Text, int16_t TextLength) {
  const StringView text = TrimSpaces(Text);
  if (static_cast<int64_t>(text.size()) >= TextLength) return String(left(text, TextLength));
  const int16_t margins = toInteger(int64_t{TextLength} - static_cast<int64_t>(text.size()));
  const auto leftMargin = static_cast<int16_t>(TruncateNumber(Variant(margins / 2.0)));
  const auto rightMargin = static_cast<int16_t>(margins - leftMargin);
  return String(static_cast<std::size_t>(leftMargin), u' ') + String(text) +
         String(static_cast<std::size_t>(rightMargin), u' ');
}

String StringFunctions::TRAN(const Variant& Valor, StringView String_Formatacao) {
  String picture(String_Formatacao);
  const bool numeric = picture.find_first_of(u"#0") != String::npos;
  if (!numeric) {
    std::erase(picture, u'!');
    const auto width = toInteger(static_cast<int64_t>(picture.size()));
    String text = CStr(Valor);
    replaceAll(text, u"\r\n", u"");
    const StringView trimmed = TrimSpaces(text);
    if (trimmed.size() > picture.size()) return String(left(text, width));
    if (trimmed.size() < picture.size()) return PadR(trimmed, width, 32);
    return text;
  }

  String limitText;
  for (char16_t unit : picture) {
    if (unit == u',') continue;
    limitText += (unit == u'#' || unit == u'0') ? u'9' : unit;
  }
  const double limit = Val(limitText);
  const Variant value = Valor.isNull() ? Variant(int16_t{0}) : Valor;
  if (CDbl(value) > limit) {
    for (char16_t& unit : picture)
      if (unit == u'#' || unit == u'0') unit = u'*';
    return picture;
  }
  const String formatted = Format(value, picture, vbSunday, vbFirstJan1, currentLocale());
  return PadL(formatted, toInteger(static_cast<int64_t>(picture.size())), 32);
}

int16_t StringFunctions::GetBarCodeCheckDigit(StringView Barcode) {
  if (!HaveOnlyDigits(Barcode)) return 0;
  int16_t evenSum = 0;  // positions 2, 4, 6, ...
  int16_t oddSum = 0;   // positions 1, 3, 5, ...
  for (std::size_t i = 0; i < Barcode.size(); ++i) {
    const int digit = Barcode[i] - u'0';
    int16_t& sum = (i % 2 == 0) ? oddSum : evenSum;
    sum = toInteger(int64_t{sum} + digit);
  }
  const double half = static_cast<double>(Barcode.size()) / 2;
  const bool evenLength = half == TruncateNumber(Variant(half));
  // The digit next to the check digit always weighs 3.
  const int16_t total = evenLength ? toInteger(int64_t{evenSum} * 3 + oddSum)
                                   : toInteger(int64_t{oddSum} * 3 + evenSum);
  const int check = 10 - total % 10;
  return static_cast<int16_t>(check == 10 ? 0 : check);
}

String StringFunctions::GetOEMString(int16_t CodePage, StringView CharString) {
  const String text = CodePage == 0 ? RemoveAccents(CharString) : String(CharString);
  // ANSI bytes, their characters mapped into the OEM page, and the OEM bytes read back as ANSI
  // characters so that each one writes out as the byte the printer expects. A character the OEM
  // page lacks becomes "?".
  const Locale& locale = currentLocale();
  const String ansiText = decode(encode(text, locale.ansiCodePage), locale.ansiCodePage);
  return decode(encode(ansiText, locale.oemCodePage), locale.ansiCodePage);
}

String StringFunctions::GetCleanCaption(StringView Value) {
  String out(Value);
  std::erase(out, u'&');
  return out;
}

Variant StringFunctions::ParamArrayToString(Variant& Values) {
  if (!Values.isArray()) raiseRuntimeError(vb_error::kTypeMismatch);
  const SafeArray& source = Values.asArray();
  if (source.bounds.empty()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  const int32_t upper = source.bounds.front().upper();
  if (upper < 0) return Variant(SafeArray{VarType::String, {}, {}});
  checkArrayElements(static_cast<std::size_t>(upper) + 1);
  SafeArray texts = SafeArray::vector(VarType::String, 0, upper);
  for (int32_t i = 0; i <= upper; ++i)
    texts.elements[static_cast<std::size_t>(i)] =
        Variant(CStr(source.elements[source.offsetOf({i})]));
  return Variant(std::move(texts));
}

int32_t StringFunctions::HowManyStrings(StringView Target, StringView FindMe) {
  if (Target.empty() || FindMe.empty()) return 0;
  int32_t count = 0;
  for (auto at = Target.find(FindMe); at != StringView::npos; at = Target.find(FindMe, at + 1))
    ++count;
  return count;
}

String StringFunctions::CreateGUID() {
  std::array<uint8_t, 16> bytes{};
  if (!platform::randomSource()->fill(bytes)) return String();
  // Version 4 in the high nibble of the third field (stored little-endian, so byte 7) and the
  // RFC 4122 variant in the top bits of byte 8.
  bytes[7] = static_cast<uint8_t>((bytes[7] & 0x0F) | 0x40);
  bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);
  static constexpr char16_t kHex[] = u"0123456789ABCDEF";
  String out;
  for (uint8_t byte : bytes) {
    out += kHex[byte >> 4];
    out += kHex[byte & 0x0F];
  }
  return out;
}

String StringFunctions::RemoveAccents(StringView text) {
  String out(text);
  for (const AccentRule& rule : kAccentRules)
    for (char16_t accented : rule.accented)
      std::replace(out.begin(), out.end(), accented, rule.plain);
  return out;
}

ClassInfo StringFunctions::describe() {
  return ClassBuilder<StringFunctions>(kClassName)
      .method(u"PadZeroRight", &StringFunctions::PadZeroRight, {u"str", u"strLen"})
      .method(u"ReturnOnlyCharacteres", &StringFunctions::ReturnOnlyCharacteres, {u"strString"})
      .method(u"ReturnOnlyDigits", &StringFunctions::ReturnOnlyDigits, {u"Text"})
      .method(u"ConvertStringToDec", &StringFunctions::ConvertStringToDec, {u"strString"})
      .method(u"ConvertDecToString", &StringFunctions::ConvertDecToString, {u"Sequencia"})
      .method(u"StripNulls", &StringFunctions::StripNulls, {u"OriginalStr"})
      .method(u"StrZero", &StringFunctions::StrZero, {u"Number", u"Digits"})
      .method(u"StringToBytes", &StringFunctions::StringToBytes, {u"iStr"})
      .method(u"HaveOnlyDigits", &StringFunctions::HaveOnlyDigits, {u"strString"})
      .method(u"Stuff", &StringFunctions::Stuff,
              {u"Expression", u"StartReplacement", u"CharactersReplaced", u"Replacement"})
      .method(u"PadL", &StringFunctions::PadL,
              {u"Text", u"Size", optional(u"AsciiChar", Variant(int16_t{32}))})
      .method(u"PadR", &StringFunctions::PadR,
              {u"Text", u"Size", optional(u"AsciiChar", Variant(int16_t{32}))})
      .method(u"StrCenter", &StringFunctions::StrCenter, {u"Text", u"TextLength"})
      .method(u"TRAN", &StringFunctions::TRAN, {u"Valor", u"String_Formatacao"})
      .method(u"GetBarCodeCheckDigit", &StringFunctions::GetBarCodeCheckDigit, {u"Barcode"})
      .method(u"GetOEMString", &StringFunctions::GetOEMString, {u"CodePage", u"CharString"})
      .method(u"GetCleanCaption", &StringFunctions::GetCleanCaption, {u"Value"})
      .method(u"ParamArrayToString", &StringFunctions::ParamArrayToString, {u"Values"})
      .method(u"HowManyStrings", &StringFunctions::HowManyStrings, {u"Target", u"FindMe"})
      .method(u"CreateGUID", &StringFunctions::CreateGUID)
      .build();
}

}  // namespace ravelin

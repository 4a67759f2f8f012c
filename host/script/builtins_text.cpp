// Built-in text functions: Asc, Chr, InStr, Left, Mid, Replace, Split, Join, StrComp...
#include <algorithm>
#include <new>
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/host/script/builtin_args.hpp>

namespace ravelin::script::detail {
namespace {

using Args = std::span<const Variant>;

[[noreturn]] void invalidCall() {
  raiseRuntimeError(vb_error::kInvalidProcedureCall);
}

// The number of arguments up to the last one given (trailing omitted ones do not count).
std::size_t givenCount(Args a) {
  std::size_t n = a.size();
  while (n > 0 && a[n - 1].isMissing())
    --n;
  return n;
}

// The locale's ANSI code page when the library converts it, else Windows-1252.
int ansiCodePage() {
  const int page = currentLocale().ansiCodePage;
  return page != 65001 && isSupportedCodePage(page) ? page : 1252;
}

// A text built with `make`, raising 7 instead of failing when memory runs out.
template <typename Make>
Variant textOrOutOfMemory(Make make) {
  try {
    return Variant(make());
  } catch (const std::bad_alloc&) {
    raiseRuntimeError(vb_error::kOutOfMemory);
  }
}

// Position (0-based) of `what` in `text` at or after `from`, folding case when asked.
std::size_t findText(StringView text, StringView what, std::size_t from, bool textMode) {
  if (!textMode) return text.find(what, from);
  return StringView(toUpper(text)).find(toUpper(what), from);
}

// The last position of `what` in `text` at or before `from` (0-based), folding case when asked.
std::size_t findTextBackwards(StringView text, StringView what, std::size_t from, bool textMode) {
  if (!textMode) return text.rfind(what, from);
  return StringView(toUpper(text)).rfind(toUpper(what), from);
}

Variant callAsc(Args a) {
  const String text = textArgument(a[0]);
  if (text.empty()) invalidCall();
  const std::string bytes = encode(StringView(text).substr(0, 1), ansiCodePage());
  return Variant(static_cast<int16_t>(static_cast<unsigned char>(bytes[0])));
}

Variant callAscW(Args a) {
  const String text = textArgument(a[0]);
  if (text.empty()) invalidCall();
  return Variant(static_cast<int16_t>(text[0]));
}

// Chr(code): the character of an ANSI code 0..255 in the locale's code page.
Variant callChr(Args a) {
  const int32_t code = CLng(a[0]);
  if (code < 0 || code > 255) invalidCall();
  return Variant(decode(std::string(1, static_cast<char>(code)), ansiCodePage()));
}

// ChrW(code): the UTF-16 unit of -32768..65535 (negative codes wrap).
Variant callChrW(Args a) {
  const int32_t code = CLng(a[0]);
  if (code < -32768 || code > 65535) invalidCall();
  return Variant(String(1, static_cast<char16_t>(code & 0xFFFF)));
}

// InStr([start,] text, what[, compare]): the 1-based position of what in text from start, 0
// when absent; start when what is empty; Null when either text is Null.
Variant callInStr(Args a) {
  const bool hasStart = givenCount(a) >= 3;
  const std::size_t first = hasStart ? 1 : 0;
  const int32_t start = hasStart ? longArgument(a, 0, 1) : 1;
  if (start < 1) invalidCall();
  const bool textMode = hasStart && isTextCompare(a, 3);
  const Variant& text = a[first];
  const Variant& what = argumentAt(a, first + 1);
  if (text.isNull() || what.isNull()) return Variant::null();
  const String haystack = textArgument(text);
  const String needle = textArgument(what);
  const auto from = static_cast<std::size_t>(start - 1);
  if (haystack.empty() || from >= haystack.size()) return Variant(int32_t{0});
  if (needle.empty()) return Variant(start);
  const std::size_t at = findText(haystack, needle, from, textMode);
  return Variant(at == StringView::npos ? int32_t{0} : static_cast<int32_t>(at + 1));
}

// InStrRev(text, what[, start[, compare]]): the last match ending at or before start (-1, the
// default, means the end of the text).
Variant callInStrRev(Args a) {
  const int32_t start = longArgument(a, 2, -1);
  if (start == 0 || start < -1) invalidCall();
  const bool textMode = isTextCompare(a, 3);
  if (a[0].isNull() || a[1].isNull()) return Variant::null();
  const String haystack = textArgument(a[0]);
  const String needle = textArgument(a[1]);
  const auto length = static_cast<int32_t>(haystack.size());
  const int32_t end = start == -1 ? length : start;
  if (haystack.empty() || end > length) return Variant(int32_t{0});
  if (needle.empty()) return Variant(end);
  if (static_cast<std::size_t>(end) < needle.size()) return Variant(int32_t{0});
  const std::size_t at =
      findTextBackwards(haystack, needle, static_cast<std::size_t>(end) - needle.size(), textMode);
  return Variant(at == StringView::npos ? int32_t{0} : static_cast<int32_t>(at + 1));
}

Variant callLCase(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(toLower(textArgument(a[0])));
}
Variant callUCase(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(toUpper(textArgument(a[0])));
}

Variant callLen(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(static_cast<int32_t>(textArgument(a[0]).size()));
}

// The count argument of Left and Right: a Long, 5 when negative, 94 when Null.
std::size_t lengthArgument(Args a, std::size_t i) {
  const int32_t n = CLng(argumentAt(a, i));
  if (n < 0) invalidCall();
  return static_cast<std::size_t>(n);
}

Variant callLeft(Args a) {
  const std::size_t n = lengthArgument(a, 1);
  if (a[0].isNull()) return a[0];
  return Variant(textArgument(a[0]).substr(0, n));
}

Variant callRight(Args a) {
  const std::size_t n = lengthArgument(a, 1);
  if (a[0].isNull()) return a[0];
  const String text = textArgument(a[0]);
  return Variant(text.substr(text.size() - std::min(n, text.size())));
}

// Mid(text, start[, length]): start from 1 (0 or less raises 5), length 0 or more.
Variant callMid(Args a) {
  const int32_t start = CLng(a[1]);
  if (start < 1) invalidCall();
  const int32_t length = longArgument(a, 2, -1);
  if (length < 0 && isGiven(a, 2)) invalidCall();
  if (a[0].isNull()) return a[0];
  const String text = textArgument(a[0]);
  const auto from = static_cast<std::size_t>(start - 1);
  if (from >= text.size()) return Variant(String());
  return Variant(text.substr(from, length < 0 ? String::npos : static_cast<std::size_t>(length)));
}

// Blanks (U+0020 only) off either end.
StringView trimmed(StringView text, bool left, bool right) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  if (left) {
    while (begin < end && text[begin] == u' ')
      ++begin;
  }
  if (right) {
    while (end > begin && text[end - 1] == u' ')
      --end;
  }
  return text.substr(begin, end - begin);
}

template <bool kLeft, bool kRight>
Variant callTrim(Args a) {
  if (a[0].isNull()) return a[0];
  return Variant(trimmed(textArgument(a[0]), kLeft, kRight));
}

Variant callSpace(Args a) {
  const int32_t n = CLng(a[0]);
  if (n < 0) invalidCall();
  checkTextLength(static_cast<std::size_t>(n));
  return textOrOutOfMemory([n] { return String(static_cast<std::size_t>(n), u' '); });
}

// String(count, character): the character is the first of a text, or an ANSI code taken
// modulo 256.
Variant callString(Args a) {
  if (a[0].isNull() || a[1].isNull()) return Variant::null();
  const int32_t n = CLng(a[0]);
  if (n < 0) invalidCall();
  char16_t unit = 0;
  if (a[1].isString()) {
    if (a[1].asString().empty()) invalidCall();
    unit = a[1].asString()[0];
  } else {
    const int32_t code = ((CLng(a[1]) % 256) + 256) % 256;
    unit = decode(std::string(1, static_cast<char>(code)), ansiCodePage())[0];
  }
  checkTextLength(static_cast<std::size_t>(n));
  return textOrOutOfMemory([n, unit] { return String(static_cast<std::size_t>(n), unit); });
}

Variant callStrReverse(Args a) {
  String text = textArgument(a[0]);
  std::reverse(text.begin(), text.end());
  return Variant(std::move(text));
}

// StrComp(a, b[, compare]): -1, 0 or 1 as Integer; Null when either is Null.
Variant callStrComp(Args a) {
  const bool textMode = isTextCompare(a, 2);
  if (a[0].isNull() || a[1].isNull()) return Variant::null();
  CompareOptions options;
  options.mode = textMode ? CompareMode::Text : CompareMode::Binary;
  const Comparison c = compare(Variant(textArgument(a[0])), Variant(textArgument(a[1])), options);
  return Variant(static_cast<int16_t>(c == Comparison::Less ? -1 : c == Comparison::Equal ? 0 : 1));
}

// Replace(text, find, with[, start[, count[, compare]]]): the text from start on, with up to
// count (-1 for all) matches of find replaced. A result past the text limit raises 14 before it
// is built further.
Variant callReplace(Args a) {
  const String text = textArgument(a[0]);
  const String find = textArgument(a[1]);
  const String with = textArgument(a[2]);
  const int32_t start = longArgument(a, 3, 1);
  const int32_t count = longArgument(a, 4, -1);
  const bool textMode = isTextCompare(a, 5);
  if (start < 1 || count < -1) invalidCall();
  const auto from = static_cast<std::size_t>(start - 1);
  if (from >= text.size()) return Variant(String());
  const StringView tail = StringView(text).substr(from);
  if (find.empty() || count == 0) return Variant(tail);
  const String folded = textMode ? toUpper(tail) : String();
  const String foldedFind = textMode ? toUpper(find) : String();
  const StringView searched = textMode ? StringView(folded) : tail;
  const StringView needle = textMode ? StringView(foldedFind) : StringView(find);
  String result;
  std::size_t done = 0;
  int32_t replaced = 0;
  while (count == -1 || replaced < count) {
    const std::size_t at = searched.find(needle, done);
    if (at == StringView::npos) break;
    appendWithinLimit(result, tail.substr(done, at - done));
    appendWithinLimit(result, with);
    done = at + needle.size();
    ++replaced;
  }
  appendWithinLimit(result, tail.substr(done));
  return Variant(std::move(result));
}

// A String array indexed from 0.
Variant stringArray(std::vector<Variant> items) {
  SafeArray array;
  array.elementType = VarType::String;
  array.bounds.push_back({0, static_cast<int32_t>(items.size())});
  array.elements = std::move(items);
  return Variant(std::move(array));
}

// Split(text[, delimiter[, count[, compare]]]): the parts between delimiters (a blank by
// default), at most count (-1 for all) of them, the last holding the rest.
Variant callSplit(Args a) {
  const String text = textArgument(a[0]);
  const String delimiter = isGiven(a, 1) ? textArgument(a[1]) : String(u" ");
  const int32_t count = longArgument(a, 2, -1);
  const bool textMode = isTextCompare(a, 3);
  if (count < -1) invalidCall();
  std::vector<Variant> parts;
  if (text.empty() || count == 0) return stringArray(std::move(parts));
  if (delimiter.empty() || count == 1) {
    parts.emplace_back(text);
    return stringArray(std::move(parts));
  }
  const String folded = textMode ? toUpper(text) : String();
  const String foldedDelimiter = textMode ? toUpper(delimiter) : String();
  const StringView searched = textMode ? StringView(folded) : StringView(text);
  const StringView needle = textMode ? StringView(foldedDelimiter) : StringView(delimiter);
  // The delimiters are counted first, so a text of more parts than an array may hold raises 7
  // before any part is built.
  const std::size_t maxCuts = count == -1 ? kMaxArrayElements : static_cast<std::size_t>(count - 1);
  std::size_t cuts = 0;
  for (std::size_t at = searched.find(needle); cuts < maxCuts && at != StringView::npos;
       at = searched.find(needle, at + needle.size())) {
    if (++cuts >= kMaxArrayElements) raiseRuntimeError(vb_error::kOutOfMemory);
  }
  parts.reserve(cuts + 1);
  std::size_t begin = 0;
  for (std::size_t i = 0; i < cuts; ++i) {
    const std::size_t at = searched.find(needle, begin);
    parts.emplace_back(StringView(text).substr(begin, at - begin));
    begin = at + needle.size();
  }
  parts.emplace_back(StringView(text).substr(begin));
  return stringArray(std::move(parts));
}

// The elements of a one-dimensional array argument: 94 for Null, 13 for anything but an array,
// 5 for more dimensions.
const SafeArray& vectorArgument(const Variant& v) {
  if (v.isNull()) raiseRuntimeError(vb_error::kInvalidUseOfNull);
  if (!v.isArray()) raiseRuntimeError(vb_error::kTypeMismatch);
  const SafeArray& array = v.asArray();
  if (array.bounds.size() != 1) invalidCall();
  return array;
}

// Join(list[, delimiter]): the elements' texts with a blank (by default) between them; 14 when
// they would pass the text limit.
Variant callJoin(Args a) {
  const SafeArray& array = vectorArgument(a[0]);
  const String delimiter = isGiven(a, 1) ? textArgument(a[1]) : String(u" ");
  String result;
  for (std::size_t i = 0; i < array.elements.size(); ++i) {
    if (i > 0) appendWithinLimit(result, delimiter);
    appendWithinLimit(result, textArgument(array.elements[i]));
  }
  return Variant(std::move(result));
}

// Filter(list, value[, include[, compare]]): the elements that contain value (or, with include
// False, those that do not), as a String array.
Variant callFilter(Args a) {
  const SafeArray& array = vectorArgument(a[0]);
  const String value = textArgument(a[1]);
  const bool include = isGiven(a, 2) ? CBool(a[2]) : true;
  const bool textMode = isTextCompare(a, 3);
  std::vector<Variant> kept;
  for (const Variant& element : array.elements) {
    String text = textArgument(element);
    if ((findText(text, value, 0, textMode) != StringView::npos) == include) {
      kept.emplace_back(std::move(text));
    }
  }
  return stringArray(std::move(kept));
}

// Escape(text): %XX for units below 256 and %uXXXX above, except ASCII letters, digits and
// @*_+-./, which stand as they are.
Variant callEscape(Args a) {
  if (a[0].isNull()) return a[0];
  static constexpr char16_t kHex[] = u"0123456789ABCDEF";
  constexpr StringView kPlain = u"@*_+-./";
  const auto isPlain = [kPlain](char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9') || kPlain.find(unit) != StringView::npos;
  };
  const String text = textArgument(a[0]);
  // The escaped length first: a unit grows up to six-fold, and past the text limit raises 14.
  std::size_t length = 0;
  for (const char16_t unit : text)
    length += isPlain(unit) ? 1 : unit < 256 ? 3 : 6;
  checkTextLength(length);
  String result;
  result.reserve(length);
  for (const char16_t unit : text) {
    if (isPlain(unit)) {
      result += unit;
    } else if (unit < 256) {
      result += {u'%', kHex[unit >> 4], kHex[unit & 15]};
    } else {
      result +=
          {u'%',           u'u', kHex[unit >> 12], kHex[(unit >> 8) & 15], kHex[(unit >> 4) & 15],
           kHex[unit & 15]};
    }
  }
  return Variant(std::move(result));
}

// The value of `count` hexadecimal digits at text[at], or -1 when they are not all digits.
int32_t hexValue(StringView text, std::size_t at, std::size_t count) {
  if (at + count > text.size()) return -1;
  int32_t value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    const char16_t c = text[i];
    int digit = -1;
    if (c >= u'0' && c <= u'9') digit = c - u'0';
    if (c >= u'a' && c <= u'f') digit = c - u'a' + 10;
    if (c >= u'A' && c <= u'F') digit = c - u'A' + 10;
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

// Unescape(text): reads %XX and %uXXXX back; a "%" not followed by hexadecimal digits stays.
Variant callUnescape(Args a) {
  if (a[0].isNull()) return a[0];
  const String text = textArgument(a[0]);
  String result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'%') {
      const bool wide = i + 1 < text.size() && (text[i + 1] == u'u' || text[i + 1] == u'U');
      const int32_t value = wide ? hexValue(text, i + 2, 4) : hexValue(text, i + 1, 2);
      if (value >= 0) {
        result += static_cast<char16_t>(value);
        i += wide ? 5 : 2;
        continue;
      }
    }
    result += text[i];
  }
  return Variant(std::move(result));
}

constexpr Builtin kTable[] = {
    {u"Asc", 1, 1, callAsc},
    {u"AscW", 1, 1, callAscW},
    {u"Chr", 1, 1, callChr},
    {u"ChrW", 1, 1, callChrW},
    {u"Escape", 1, 1, callEscape},
    {u"Filter", 2, 4, callFilter},
    {u"InStr", 2, 4, callInStr},
    {u"InStrRev", 2, 4, callInStrRev},
    {u"Join", 1, 2, callJoin},
    {u"LCase", 1, 1, callLCase},
    {u"Left", 2, 2, callLeft},
    {u"Len", 1, 1, callLen},
    {u"LTrim", 1, 1, callTrim<true, false>},
    {u"Mid", 2, 3, callMid},
    {u"Replace", 3, 6, callReplace},
    {u"Right", 2, 2, callRight},
    {u"RTrim", 1, 1, callTrim<false, true>},
    {u"Space", 1, 1, callSpace},
    {u"Split", 1, 4, callSplit},
    {u"StrComp", 2, 3, callStrComp},
    {u"String", 2, 2, callString},
    {u"StrReverse", 1, 1, callStrReverse},
    {u"Trim", 1, 1, callTrim<true, true>},
    {u"UCase", 1, 1, callUCase},
    {u"Unescape", 1, 1, callUnescape},
};
static_assert(isSortedByName(kTable));

}  // namespace

std::span<const Builtin> textBuiltins() {
  return kTable;
}

}  // namespace ravelin::script::detail

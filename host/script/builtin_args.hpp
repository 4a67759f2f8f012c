// Helpers the built-in function families share: reading optional arguments and building their
// name tables.
#pragma once

#include <cstdint>
#include <ravelin/frame/variant.hpp>
#include <ravelin/host/script/builtins.hpp>
#include <ravelin/host/script/script_limits.hpp>
#include <span>
#include <string_view>

namespace ravelin::script::detail {

// Argument i, or the missing-argument marker when the caller left it out.
const Variant& argumentAt(std::span<const Variant> args, std::size_t i);

// True when argument i was given (present and not the missing-argument marker).
bool isGiven(std::span<const Variant> args, std::size_t i);

// A whole-number argument as a Long (CLng's rounding), or fallback when it was left out. Null
// raises 94.
int32_t longArgument(std::span<const Variant> args, std::size_t i, int32_t fallback);

// A text argument as CStr writes it; Null raises 94.
String textArgument(const Variant& value);

// The compare argument of InStr, Split, Replace, StrComp and Filter: 0 binary (the default),
// 1 text; anything else raises 5.
bool isTextCompare(std::span<const Variant> args, std::size_t i);

// Raises 14 (out of string space) when a text of `length` units would pass kMaxTextLength.
// Functions that build text call it before they allocate.
void checkTextLength(std::size_t length);

// Appends `piece` to `text`, raising 14 first when the result would pass kMaxTextLength.
void appendWithinLimit(String& text, StringView piece);

// Upper case of an ASCII letter, for matching function names.
constexpr char16_t foldAscii(char16_t c) {
  return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

// Orders names without regard to ASCII case.
constexpr int compareNames(std::u16string_view a, std::u16string_view b) {
  const std::size_t n = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < n; ++i) {
    const char16_t x = foldAscii(a[i]);
    const char16_t y = foldAscii(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

// Whether a family's table is sorted by name, as the binary search needs.
template <std::size_t N>
constexpr bool isSortedByName(const Builtin (&table)[N]) {
  for (std::size_t i = 1; i < N; ++i) {
    if (compareNames(table[i - 1].name, table[i].name) >= 0) return false;
  }
  return true;
}

// The tables of the families, each sorted by name.
std::span<const Builtin> conversionBuiltins();
std::span<const Builtin> mathBuiltins();
std::span<const Builtin> textBuiltins();
std::span<const Builtin> dateBuiltins();

}  // namespace ravelin::script::detail

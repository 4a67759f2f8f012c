// Text between the library's UTF-16 String and the two encodings of Windows calls: wide text
// (the same UTF-16 units) and the ANSI code page of the "A" functions.
#pragma once

#include <windows.h>

#include <optional>
#include <ravelin/base/text.hpp>
#include <string>
#include <string_view>

namespace ravelin::platform::win32 {

inline std::wstring toWide(StringView text) {
  return std::wstring(text.begin(), text.end());
}

inline String fromWide(std::wstring_view text) {
  return String(text.begin(), text.end());
}

// The text as an "A" function reads it; nullopt when the code page cannot spell it exactly (a
// character it lacks, which the conversion would replace by "?" or a look-alike, so that a file
// name would name another file) or it holds a NUL.
inline std::optional<std::string> exactAnsi(std::wstring_view text) {
  if (text.find(L'\0') != std::wstring_view::npos) return std::nullopt;
  if (text.empty()) return std::string();
  const UINT codePage = GetACP();
  // UTF-8 takes neither the best-fit flag nor the used-default report; it refuses lone
  // surrogates instead.
  const bool utf8 = codePage == CP_UTF8;
  const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  BOOL usedDefault = FALSE;
  BOOL* const usedDefaultReport = utf8 ? nullptr : &usedDefault;
  const int length = static_cast<int>(text.size());
  const int needed = WideCharToMultiByte(codePage, flags, text.data(), length, nullptr, 0, nullptr,
                                         usedDefaultReport);
  if (needed <= 0 || usedDefault) return std::nullopt;
  std::string result(static_cast<std::size_t>(needed), '\0');
  if (WideCharToMultiByte(codePage, flags, text.data(), length, result.data(), needed, nullptr,
                          usedDefaultReport) != needed ||
      usedDefault) {
    return std::nullopt;
  }
  return result;
}

// The text as the system converts it for an "A" function, a character the code page lacks
// becoming its default character or a look-alike.
inline std::string toAnsi(StringView text) {
  const std::wstring wide = toWide(text);
  if (wide.empty()) return {};
  const int length = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string ansi(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), length, ansi.data(), size, nullptr, nullptr);
  return ansi;
}

// Text an "A" function gave back.
inline String fromAnsi(std::string_view text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  const int units = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), units);
  return fromWide(wide);
}

}  // namespace ravelin::platform::win32

// Whether a test program runs under Wine, for the few cases where Wine's own libraries behave
// otherwise than Windows does, and the Linux name of a Windows path there: ODBC under Wine
// reaches the Linux drivers (unixODBC's), which take Linux paths.
//
// Wine is known by the export wine_get_version of its ntdll.dll, which Windows' ntdll lacks.
#pragma once

#include <filesystem>
#include <string>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

namespace ravelin {

inline bool runningUnderWine() {
#if defined(_WIN32)
  const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
#else
  return false;
#endif
}

// The name under which a program of the host system (a Linux ODBC driver, under Wine) finds
// `path`, in UTF-8: under Wine its Linux name (kernel32's wine_get_unix_file_name), elsewhere
// `path` itself.
inline std::string hostPathOf(const std::filesystem::path& path) {
#if defined(_WIN32)
  using UnixFileName = char*(CDECL*)(const WCHAR*);
  const HMODULE kernel32 = GetModuleHandleW(L"kernel32.dll");
  const auto unixFileName = kernel32 != nullptr
                                ? reinterpret_cast<UnixFileName>(reinterpret_cast<void*>(
                                      GetProcAddress(kernel32, "wine_get_unix_file_name")))
                                : nullptr;
  if (unixFileName != nullptr) {
    char* name = unixFileName(path.wstring().c_str());
    if (name != nullptr) {
      std::string result(name);
      HeapFree(GetProcessHeap(), 0, name);
      return result;
    }
  }
#endif
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace ravelin

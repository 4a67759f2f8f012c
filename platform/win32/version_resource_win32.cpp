// Version resources on Windows: GetFileVersionInfoSizeA, GetFileVersionInfoA and VerQueryValueA of
// the version library, with the path in the ANSI code page as the library's callers pass it.
#include <windows.h>

#include <cstring>
#include <optional>
#include <ravelin/platform/version_resource.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

// `path` in the ANSI code page; nullopt when the code page cannot spell it (a character it lacks,
// which the conversion would replace by "?" or a look-alike and so name another file) or it holds
// a NUL.
std::optional<std::string> ansiPath(const std::wstring& path) {
  if (path.empty() || path.find(L'\0') != std::wstring::npos) return std::nullopt;
  const UINT codePage = GetACP();
  // UTF-8 takes neither the best-fit flag nor the used-default report; it refuses lone
  // surrogates instead.
  const bool utf8 = codePage == CP_UTF8;
  const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  BOOL usedDefault = FALSE;
  BOOL* const usedDefaultReport = utf8 ? nullptr : &usedDefault;
  const int length = static_cast<int>(path.size());
  const int needed = WideCharToMultiByte(codePage, flags, path.data(), length, nullptr, 0, nullptr,
                                         usedDefaultReport);
  if (needed <= 0 || usedDefault) return std::nullopt;
  std::string result(static_cast<std::size_t>(needed), '\0');
  if (WideCharToMultiByte(codePage, flags, path.data(), length, result.data(), needed, nullptr,
                          usedDefaultReport) != needed ||
      usedDefault) {
    return std::nullopt;
  }
  return result;
}

class Win32VersionResources final : public VersionResources {
 public:
  VersionResource read(const std::filesystem::path& file) const override {
    const std::optional<std::string> name = ansiPath(file.native());
    if (!name) return {};
    DWORD handle = 0;
    const DWORD size = GetFileVersionInfoSizeA(name->c_str(), &handle);
    if (size == 0) return {};
    VersionResource result;
    result.size = size;
    std::vector<char> block(size);
    if (!GetFileVersionInfoA(name->c_str(), 0, size, block.data())) return result;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(block.data(), "\\", &value, &length) || value == nullptr ||
        length < sizeof(FixedFileInfo)) {
      return result;
    }
    FixedFileInfo words{};
    std::memcpy(words.data(), value, sizeof(words));
    if (words[0] == kFixedFileInfoSignature) result.fixedInfo = words;
    return result;
  }
};

}  // namespace

std::unique_ptr<VersionResources> VersionResources::makeNative() {
  return std::make_unique<Win32VersionResources>();
}

}  // namespace ravelin::platform

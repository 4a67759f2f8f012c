// The folders of Windows, from the ANSI calls the library has always used, so that a letter the
// code page lacks comes back as the system gives it.
#include <windows.h>
// shlobj.h needs windows.h first.
#include <shlobj.h>

#include <ravelin/platform/folders.hpp>
#include <ravelin/platform/win32/text_win32.hpp>
#include <vector>

namespace ravelin::platform {
namespace {

template <class Call>
FolderCall callWithBuffer(uint32_t bufferSize, Call call) {
  std::vector<char> buffer(bufferSize + 1, '\0');
  const DWORD count = call(static_cast<DWORD>(bufferSize), buffer.data());
  if (count == 0 || count >= bufferSize) return {count, {}};
  return {count, win32::fromAnsi(std::string_view(buffer.data(), count))};
}

class Win32FolderSystem final : public FolderSystem {
 public:
  std::optional<String> specialFolder(SpecialFolder folder) const override {
    char buffer[MAX_PATH] = {};
    if (SHGetFolderPathA(nullptr, static_cast<int>(folder), nullptr, SHGFP_TYPE_CURRENT, buffer) !=
        S_OK) {
      return std::nullopt;
    }
    return win32::fromAnsi(std::string_view(buffer, strnlen(buffer, MAX_PATH)));
  }

  FolderCall systemDirectory(uint32_t bufferSize) const override {
    return callWithBuffer(
        bufferSize, [](DWORD size, char* buffer) { return GetSystemDirectoryA(buffer, size); });
  }

  FolderCall tempPath(uint32_t bufferSize) const override {
    return callWithBuffer(bufferSize,
                          [](DWORD size, char* buffer) { return GetTempPathA(size, buffer); });
  }

  String libraryFolder() const override {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&userDirectoryFromText), &module);
    std::vector<wchar_t> name(32768);
    const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
    String path(reinterpret_cast<const char16_t*>(name.data()), length);
    const auto separator = path.find_last_of(u"\\/");
    return separator == String::npos ? String() : path.substr(0, separator);
  }
};

}  // namespace

std::unique_ptr<FolderSystem> FolderSystem::makeNative() {
  return std::make_unique<Win32FolderSystem>();
}

}  // namespace ravelin::platform

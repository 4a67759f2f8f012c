// INI files on Windows: the system's own GetPrivateProfileStringA and WritePrivateProfileStringA,
// with file names in the ANSI code page and a bare name in the Windows directory, as Windows
// has it.
#include <windows.h>

#include <algorithm>
#include <ravelin/platform/internal/profile_text.hpp>
#include <ravelin/platform/profile.hpp>
#include <ravelin/platform/win32/text_win32.hpp>
#include <string>

namespace ravelin::platform {
namespace {

namespace fs = std::filesystem;

// The first buffer a read tries; a larger one is used only when the text fills it.
constexpr uint32_t kFirstBuffer = 65536;

// A file name in the ANSI code page; false when the code page lacks one of its characters.
bool ansiName(const fs::path& file, std::string& name) {
  auto ansi = win32::exactAnsi(file.native());
  name = ansi ? std::move(*ansi) : std::string();
  return ansi.has_value();
}

// An optional text as the C string of a call: null when absent, cut at a NUL when present.
class CText {
 public:
  explicit CText(std::optional<std::string_view> text)
      : present_(text.has_value()), text_(text ? cString(*text) : std::string_view()) {}
  const char* get() const { return present_ ? text_.c_str() : nullptr; }

 private:
  bool present_;
  std::string text_;
};

class WindowsProfileSystem : public ProfileSystem {
 public:
  ProfileRead getString(std::optional<std::string_view> section,
                        std::optional<std::string_view> key,
                        std::optional<std::string_view> defaultValue, uint32_t size,
                        const fs::path& file) override {
    std::string name;
    if (!ansiName(cPath(file), name)) {
      return readProfileString(nullptr, profile_error::kNoUnicodeTranslation, section, key,
                               defaultValue, size);
    }
    const CText sectionText(section);
    const CText keyText(key);
    const CText defaultText(defaultValue);
    const bool list = !section || !key;

    // The buffer starts small and grows while the text fills it, so that a large size costs
    // memory only for a large text; the result is the one a buffer of `size` gives.
    uint32_t capacity = std::min(size, kFirstBuffer);
    for (;;) {
      // A byte the call does not write keeps this mark, which tells the NULs it wrote after the
      // text from the bytes it left alone.
      std::string buffer(std::max<uint32_t>(capacity, 1), '\xCC');
      SetLastError(ERROR_SUCCESS);
      const DWORD count =
          GetPrivateProfileStringA(sectionText.get(), keyText.get(), defaultText.get(),
                                   buffer.data(), capacity, name.c_str());
      const DWORD error = GetLastError();
      const bool filled = list ? count + 2 >= capacity : count + 1 >= capacity;
      if (filled && capacity < size) {
        capacity = static_cast<uint32_t>(std::min<uint64_t>(uint64_t{capacity} * 4, size));
        continue;
      }
      ProfileRead result;
      result.count = count;
      result.lastError = error;
      if (capacity == 0) return result;
      size_t written = std::min<size_t>(count, capacity);
      for (int nul = 0; nul < 2 && written < capacity && buffer[written] == '\0'; ++nul)
        ++written;
      result.copied.assign(buffer, 0, written);
      return result;
    }
  }

  ProfileWrite writeString(std::optional<std::string_view> section,
                           std::optional<std::string_view> key,
                           std::optional<std::string_view> value, const fs::path& file) override {
    std::string name;
    if (!ansiName(cPath(file), name)) return {false, profile_error::kNoUnicodeTranslation};
    const CText sectionText(section);
    const CText keyText(key);
    const CText valueText(value);
    SetLastError(ERROR_SUCCESS);
    const BOOL written =
        WritePrivateProfileStringA(sectionText.get(), keyText.get(), valueText.get(), name.c_str());
    return {written != FALSE, GetLastError()};
  }
};

}  // namespace

std::unique_ptr<ProfileSystem> ProfileSystem::makeNative() {
  return std::make_unique<WindowsProfileSystem>();
}

}  // namespace ravelin::platform

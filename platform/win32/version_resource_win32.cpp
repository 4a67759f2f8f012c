// Version resources on Windows: GetFileVersionInfoSizeA, GetFileVersionInfoA and VerQueryValueA of
// the version library, with the path in the ANSI code page as the library's callers pass it.
#include <windows.h>

#include <cstring>
#include <optional>
#include <ravelin/platform/version_resource.hpp>
#include <ravelin/platform/win32/text_win32.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

class Win32VersionResources final : public VersionResources {
 public:
  VersionResource read(const std::filesystem::path& file) const override {
    const std::optional<std::string> name =
        file.empty() ? std::nullopt : win32::exactAnsi(file.native());
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

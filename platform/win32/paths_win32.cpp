// Paths on Windows: every text is a native path already, and the system has its own drives.
#include <ravelin/platform/paths.hpp>
#include <string>
#include <system_error>

namespace ravelin::platform {
namespace {

class Win32PathSystem final : public PathSystem {
 public:
  DriveMap driveMap() const override { return {}; }
  std::vector<Mount> mounts() const override { return {}; }
  std::filesystem::path currentFolder() const override {
    std::error_code error;
    std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? std::filesystem::path(L"C:\\") : folder;
  }
};

}  // namespace

std::unique_ptr<PathSystem> PathSystem::makeNative() {
  return std::make_unique<Win32PathSystem>();
}

bool isWindowsForm(StringView) {
  return true;
}

char16_t separatorFor(StringView) {
  return u'\\';
}

std::optional<std::filesystem::path> nativePath(StringView path) {
  if (path.empty() || path.find(u'\0') != StringView::npos) return std::nullopt;
  // Windows' wide text and the library's String are both UTF-16.
  return std::filesystem::path(std::wstring(path.begin(), path.end()));
}

String fromNativePath(const std::filesystem::path& path) {
  const std::wstring& wide = path.native();
  return String(wide.begin(), wide.end());
}

std::optional<String> windowsFormOf(const std::filesystem::path& native) {
  return fromNativePath(native);
}

}  // namespace ravelin::platform

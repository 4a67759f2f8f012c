// Paths on POSIX systems: the drive map from RAVELIN_DRIVES, the mount table from
// /proc/self/mountinfo, and the translation of Windows-form texts by the rules of paths.cpp.
#include <cstdlib>
#include <fstream>
#include <ravelin/platform/paths.hpp>
#include <sstream>
#include <system_error>
#include <utility>

namespace ravelin::platform {
namespace {

class PosixPathSystem final : public PathSystem {
 public:
  DriveMap driveMap() const override {
    const char* text = std::getenv("RAVELIN_DRIVES");
    return parseDriveMap(text == nullptr ? std::string_view() : std::string_view(text));
  }

  std::vector<Mount> mounts() const override {
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    if (!file) return {};
    std::ostringstream text;
    text << file.rdbuf();
    return parseMountInfo(text.str());
  }

  std::filesystem::path currentFolder() const override {
    std::error_code error;
    std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? std::filesystem::path("/") : folder;
  }
};

// Whether the text can be a file name here: no NUL, and no lone surrogate (names are UTF-8).
bool spellable(StringView path) {
  for (std::size_t i = 0; i < path.size(); ++i) {
    const char16_t unit = path[i];
    if (unit == u'\0') return false;
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      if (i + 1 >= path.size() || path[i + 1] < 0xDC00 || path[i + 1] > 0xDFFF) return false;
      ++i;
    } else if (unit >= 0xDC00 && unit <= 0xDFFF) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::unique_ptr<PathSystem> PathSystem::makeNative() {
  return std::make_unique<PosixPathSystem>();
}

bool isWindowsForm(StringView path) {
  return hasWindowsFormMarks(path);
}

char16_t separatorFor(StringView path) {
  return isWindowsForm(path) ? u'\\' : u'/';
}

std::optional<std::filesystem::path> nativePath(StringView path) {
  if (path.empty() || !spellable(path)) return std::nullopt;
  std::optional<std::string> posix = posixPathFor(path, *pathSystem());
  if (!posix) return std::nullopt;
  return std::filesystem::path(std::move(*posix));
}

String fromNativePath(const std::filesystem::path& path) {
  return fromUtf8(path.native());
}

std::optional<String> windowsFormOf(const std::filesystem::path& native) {
  return windowsFormUnder(native.native(), pathSystem()->driveMap());
}

}  // namespace ravelin::platform

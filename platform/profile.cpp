// The profile folder: where bare INI file names live outside Windows.
#include <cstdlib>
#include <mutex>
#include <ravelin/platform/profile.hpp>
#include <system_error>
#include <utility>

namespace ravelin::platform {
namespace {

struct FolderSetting {
  std::mutex mutex;
  std::filesystem::path folder;
};

FolderSetting& folderSetting() {
  static FolderSetting setting;
  return setting;
}

// A variable's value; an empty one counts as unset.
std::filesystem::path variable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return {};
  return std::filesystem::path(value);
}

}  // namespace

void setProfileFolder(std::filesystem::path folder) {
  FolderSetting& setting = folderSetting();
  std::lock_guard lock(setting.mutex);
  setting.folder = std::move(folder);
}

std::filesystem::path profileFolder() {
  {
    FolderSetting& setting = folderSetting();
    std::lock_guard lock(setting.mutex);
    if (!setting.folder.empty()) return setting.folder;
  }
  if (std::filesystem::path folder = variable("RAVELIN_WINDOWS_DIR"); !folder.empty()) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(folder, error);
    return error ? folder : absolute;
  }
  // The XDG base directory rules: a relative XDG_CONFIG_HOME is invalid and ignored.
  if (std::filesystem::path config = variable("XDG_CONFIG_HOME");
      !config.empty() && config.is_absolute()) {
    return config / "ravelin";
  }
  if (std::filesystem::path home = variable("HOME"); !home.empty()) {
    return home / ".config" / "ravelin";
  }
  return {};
}

}  // namespace ravelin::platform

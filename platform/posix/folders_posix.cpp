#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ravelin/platform/folders.hpp>
#include <sstream>
#include <vector>

namespace ravelin::platform {
namespace {

// The Windows calls fill buffers of MAX_PATH characters.
constexpr std::size_t kMaxPath = 260;

std::optional<std::string> variable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return std::string(value);
}

std::string homeFolder() {
  if (auto home = variable("HOME")) return *home;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
      found->pw_dir) {
    return found->pw_dir;
  }
  return "/";
}

std::string documentsFolder() {
  const std::string home = homeFolder();
  const std::filesystem::path config = variable("XDG_CONFIG_HOME").value_or(home + "/.config");
  std::ifstream file(config / "user-dirs.dirs", std::ios::binary);
  if (file) {
    std::ostringstream text;
    text << file.rdbuf();
    if (auto folder = userDirectoryFromText(text.str(), "XDG_DOCUMENTS_DIR", home)) return *folder;
  }
  return home;
}

// The folder of the file that holds `address`, resolved to an absolute path without links.
std::string folderOfFileHolding(const void* address) {
  std::error_code error;
  std::filesystem::path file;
  Dl_info info{};
  if (dladdr(address, &info) != 0 && info.dli_fname != nullptr &&
      std::filesystem::path(info.dli_fname).is_absolute()) {
    file = std::filesystem::canonical(info.dli_fname, error);
  }
  // A symbol of the main program reports the name the program was started by, which may be
  // relative to a folder it has left since; the kernel knows the program's file.
  if (file.empty() || error) file = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return file.parent_path().string();
}

String pathText(const std::string& path) {
  return fromUtf8(path);
}

std::string withoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

// A call that copies `text` into a buffer of `bufferSize` characters, the terminating null
// included: the length on success, the size needed otherwise.
FolderCall copiedToBuffer(const std::string& text, uint32_t bufferSize) {
  if (text.size() + 1 > bufferSize) return {static_cast<uint32_t>(text.size() + 1), {}};
  return {static_cast<uint32_t>(text.size()), pathText(text)};
}

class PosixFolderSystem final : public FolderSystem {
 public:
  std::optional<String> specialFolder(SpecialFolder folder) const override {
    std::string path;
    switch (folder) {
      case SpecialFolder::personal:
        path = documentsFolder();
        break;
      case SpecialFolder::commonDocuments:
        if (auto configured = variable("RAVELIN_COMMON_DOCUMENTS")) path = *configured;
        break;
      case SpecialFolder::programFiles:
        path = "/opt";
        break;
      case SpecialFolder::programFilesCommon:
        path = RAVELIN_INSTALL_FULL_LIBDIR;
        break;
      case SpecialFolder::commonAppData:
        path = "/var/lib";
        break;
    }
    path = withoutTrailingSlash(std::move(path));
    if (path.empty() || path.size() >= kMaxPath) return std::nullopt;
    return pathText(path);
  }

  FolderCall systemDirectory(uint32_t bufferSize) const override {
    // The folder of the C library, where the system's own shared libraries live.
    const std::string folder = folderOfFileHolding(reinterpret_cast<const void*>(&std::fclose));
    if (folder.empty()) return {};
    return copiedToBuffer(folder, bufferSize);
  }

  FolderCall tempPath(uint32_t bufferSize) const override {
    std::string folder = withoutTrailingSlash(variable("TMPDIR").value_or("/tmp"));
    if (folder != "/") folder += '/';
    return copiedToBuffer(folder, bufferSize);
  }

  String libraryFolder() const override {
    return pathText(folderOfFileHolding(reinterpret_cast<const void*>(&userDirectoryFromText)));
  }
};

}  // namespace

std::unique_ptr<FolderSystem> FolderSystem::makeNative() {
  return std::make_unique<PosixFolderSystem>();
}

}  // namespace ravelin::platform

// The machine and network rules of systems without drive letters: the computer name of a host
// name, network paths from the mount table, and drives as mounted file systems. Shared by the
// POSIX implementation, the fake and the tests of every system.
#include <array>
#include <ravelin/platform/machine.hpp>

namespace ravelin::platform {
namespace {

bool isSlash(char16_t c) {
  return c == u'/' || c == u'\\';
}

bool isAsciiLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Whether a text starts with two separators and a name: "\\server", "//server".
bool isUncName(StringView path) {
  return path.size() > 2 && isSlash(path[0]) && isSlash(path[1]) && !isSlash(path[2]);
}

}  // namespace

std::optional<std::string> computerNameFromHost(std::string_view hostName, uint32_t bufferSize) {
  const std::string_view label = hostName.substr(0, hostName.find('.'));
  if (label.empty() || label.size() + 1 > bufferSize) return std::nullopt;
  return std::string(label);
}

bool isNetworkFileSystem(std::string_view type) {
  static constexpr std::array<std::string_view, 10> kTypes = {
      "nfs", "nfs4", "cifs", "smb3", "smbfs", "fuse.sshfs", "fuse.gvfsd-fuse", "9p", "ceph", "afs"};
  for (std::string_view known : kTypes) {
    if (type == known) return true;
  }
  return false;
}

int32_t networkPathAnswer(StringView path, const PathSystem& paths, std::string_view gvfsFolder) {
  if (isUncName(path)) return 1;
  if (path.size() >= 6 && equalsIgnoreCase(path.substr(0, 6), u"smb://")) return 1;
  const std::optional<std::string> posix = posixPathFor(path, paths);
  if (!posix || posix->empty() || (*posix)[0] != '/') return 0;
  const std::string normal = lexicallyNormalPosix(*posix);
  if (!gvfsFolder.empty()) {
    const std::string folder = lexicallyNormalPosix(gvfsFolder);
    if (normal.size() > folder.size() && normal.compare(0, folder.size(), folder) == 0 &&
        normal[folder.size()] == '/') {
      return 1;
    }
  }
  const std::vector<Mount> mounts = paths.mounts();
  const Mount* mount = mountHolding(mounts, normal);
  return mount != nullptr && isNetworkFileSystem(mount->type) ? 1 : 0;
}

std::optional<DriveLocation> locateDrive(StringView name, const PathSystem& paths) {
  DriveLocation location;
  const std::vector<Mount> mounts = paths.mounts();
  if (name.size() == 2 && isAsciiLetter(name[0]) && name[1] == u':') {
    const DriveMap drives = paths.driveMap();
    const auto found = drives.find(toUtf8(toUpper(name)));
    if (found == drives.end()) return std::nullopt;
    location.folder = lexicallyNormalPosix(found->second);
  } else if (isUncName(name)) {
    // The share itself: two names, then at most a trailing separator.
    std::size_t names = 0;
    for (std::size_t i = 2; i < name.size(); ++i) {
      if (isSlash(name[i]) && i + 1 < name.size()) ++names;
    }
    if (names != 1) return std::nullopt;
    const std::optional<std::string> folder = posixPathFor(name, paths);
    if (!folder) return std::nullopt;
    location.folder = lexicallyNormalPosix(*folder);
  } else if (!name.empty() && name[0] == u'/') {
    location.folder = lexicallyNormalPosix(toUtf8(name));
    bool isMountPoint = false;
    for (const Mount& mount : mounts)
      isMountPoint = isMountPoint || lexicallyNormalPosix(mount.mountPoint) == location.folder;
    if (!isMountPoint) return std::nullopt;
  } else {
    return std::nullopt;
  }
  if (const Mount* mount = mountHolding(mounts, location.folder)) location.mount = *mount;
  return location;
}

int32_t driveTypeFor(std::string_view fileSystemType, bool removableDevice) {
  if (isNetworkFileSystem(fileSystemType)) return 3;
  if (fileSystemType == "tmpfs" || fileSystemType == "ramfs") return 5;
  if (fileSystemType == "iso9660" || fileSystemType == "udf") return 4;
  return removableDevice ? 1 : 2;
}

uint32_t serialNumberFromUuid(std::string_view uuid) {
  uint32_t serial = 0;
  int digits = 0;
  for (auto it = uuid.rbegin(); it != uuid.rend() && digits < 8; ++it) {
    const int value = hexValue(*it);
    if (value < 0) continue;
    serial |= static_cast<uint32_t>(value) << (4 * digits);
    ++digits;
  }
  return digits == 8 ? serial : 0;
}

std::string deviceLabelFromLink(std::string_view linkName) {
  std::string label;
  for (std::size_t i = 0; i < linkName.size(); ++i) {
    if (linkName[i] == '\\' && i + 3 < linkName.size() && linkName[i + 1] == 'x' &&
        hexValue(linkName[i + 2]) >= 0 && hexValue(linkName[i + 3]) >= 0) {
      label += static_cast<char>(hexValue(linkName[i + 2]) * 16 + hexValue(linkName[i + 3]));
      i += 3;
      continue;
    }
    label += linkName[i];
  }
  return label;
}

}  // namespace ravelin::platform

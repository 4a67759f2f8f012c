// Platform area "paths": how a path the suite writes in the Windows form ("C:\Data\prices.dbf",
// "\\server\share\file") names a file of the system the library runs on. Every area that touches
// files takes native paths; the library translates its callers' texts here, in one place.
//
// On Linux "\" reads as "/", a drive letter is looked up in the drive map (RAVELIN_DRIVES, for
// example "C:=/srv/till;D:=/mnt/data"; "C:" is "/" unless the map says otherwise) and a UNC name
// "\\server\share\rest" is the mount point of that share while it is mounted (the mount table),
// and names nothing otherwise. A native path ("/srv/till/prices.dbf") is taken as it is. On
// Windows every path is native.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>

namespace ravelin::platform {

// One mounted file system, as the mount table lists it.
struct Mount {
  std::string mountPoint;  // where it is mounted, a native path
  std::string source;      // what is mounted ("//server/share", "server:/export", "/dev/sda1")
  std::string type;        // the file system type ("ext4", "nfs4", "cifs", "tmpfs")
};

// The facts the translation depends on, read from the system (or set by a test).
class PathSystem {
 public:
  virtual ~PathSystem() = default;

  // Drive letters ("C:", upper case) and the native folders they stand for.
  virtual std::map<std::string, std::filesystem::path> driveMap() const = 0;
  // The mounted file systems, in the order of the mount table.
  virtual std::vector<Mount> mounts() const = 0;
  // The current folder of the process, native.
  virtual std::filesystem::path currentFolder() const = 0;

  static std::unique_ptr<PathSystem> makeNative();
};

inline constexpr Slot<PathSystem> pathSystem{};

// Whether the text is written in the Windows form: it has a "\" or starts with a drive letter and
// ":". Always true on Windows, where there is only one form.
bool isWindowsForm(StringView path);

// The separator to join names to `path` with: "\" for a Windows-form path, "/" for a native one.
char16_t separatorFor(StringView path);

// The native path that `path` names, or nullopt when it names nothing: a drive letter the map does
// not have, a share that is not mounted, a text the system cannot spell as a file name.
std::optional<std::filesystem::path> nativePath(StringView path);

// A native path as the library's text.
String fromNativePath(const std::filesystem::path& path);

}  // namespace ravelin::platform

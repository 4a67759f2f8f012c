// Platform area "paths": how a path the suite writes in the Windows form ("C:\Data\prices.dbf",
// "\\server\share\file") names a file of the system the library runs on. Every area that touches
// files takes native paths; the library translates its callers' texts here, in one place.
//
// On Windows every path is native. Elsewhere:
// - A text is in the Windows form when it has a "\" or starts with a drive letter and ":"; any
//   other text is a native path and is taken as it is ("/srv/till/prices.dbf", "data/x.dbf").
// - In the Windows form "\" and "/" both separate names.
// - A drive letter is looked up in the drive map, the variable RAVELIN_DRIVES: entries
//   LETTER:=FOLDER separated by ";", the letter in either case, the folder an absolute native
//   path ("C:=/srv/till;D:=/mnt/data"); entries of another shape are ignored, and a folder cannot
//   hold a ";". "C:" is "/" unless the map says otherwise; other letters exist only in the map.
//   "C:\x" is x in C's folder; "C:x" is x in the current folder when that lies in C's folder,
//   else in C's folder; "\x" is x in the folder of the drive that holds the current folder.
//   ".." never climbs above a drive's folder, as it never climbs above a drive's root on Windows.
// - A UNC name "\\server\share\rest" (also written "//server/share/rest") is rest under the
//   mount point where that share is mounted: a mount whose source is "//server/share" (SMB,
//   names in any case) or "server:/share" (NFS, the share's path as written); a source that names
//   a folder inside a share serves the names below it. An unmounted share names nothing.
//   "\\?\C:\x" and "\\?\UNC\server\share" are read without their "\\?\" prefix.
// - A name that cannot be a file name (a NUL, or on Linux a lone UTF-16 surrogate, which has no
//   UTF-8 spelling) names nothing.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace ravelin::platform {

// One mounted file system, as the mount table lists it.
struct Mount {
  std::string mountPoint;  // where it is mounted, a native path
  std::string source;      // what is mounted ("//server/share", "server:/export", "/dev/sda1")
  std::string type;        // the file system type ("ext4", "nfs4", "cifs", "tmpfs")
};

// Drive letters ("C:", upper case) and the native folders they stand for, as UTF-8 text.
using DriveMap = std::map<std::string, std::string>;

// The facts the translation depends on, read from the system (or set by a test).
class PathSystem {
 public:
  virtual ~PathSystem() = default;

  // The drive map; empty on Windows, where drive letters are the system's own.
  virtual DriveMap driveMap() const = 0;
  // The mounted file systems, in the order of the mount table (/proc/self/mountinfo on Linux);
  // empty on Windows.
  virtual std::vector<Mount> mounts() const = 0;
  // The current folder of the process, native.
  virtual std::filesystem::path currentFolder() const = 0;

  static std::unique_ptr<PathSystem> makeNative();
};

inline constexpr Slot<PathSystem> pathSystem{};

// Whether the text is written in the Windows form. Always true on Windows, where there is only
// one form.
bool isWindowsForm(StringView path);

// The separator to join names to `path` with: "\" for a Windows-form path, "/" for a native one.
char16_t separatorFor(StringView path);

// The native path that `path` names, or nullopt when it names nothing: a drive letter the map does
// not have, a share that is not mounted, an empty text, a text the system cannot spell as a file
// name.
std::optional<std::filesystem::path> nativePath(StringView path);

// A native path as the library's text.
String fromNativePath(const std::filesystem::path& path);

// The Windows-form text of a native path, for members that hand back a path in the form they were
// given: on Windows the path itself; elsewhere the path under the drive of the map whose folder
// holds it (the longest such folder), or nullopt when no drive's folder does.
std::optional<String> windowsFormOf(const std::filesystem::path& native);

// ---- The rules of systems without drive letters, for every system's tests ----

// Whether a text has the marks of the Windows form: a "\", or a drive letter and ":" first.
bool hasWindowsFormMarks(StringView path);

// The drive map that a RAVELIN_DRIVES text describes, "C:" included ("/" unless the text maps it).
DriveMap parseDriveMap(std::string_view text);

// The mounts of a /proc/self/mountinfo text: the mount point (field 5), and after the optional
// fields and their "-" the type and the source. Octal escapes ("\040" for a blank) are decoded;
// lines of another shape are skipped.
std::vector<Mount> parseMountInfo(std::string_view text);

// The mount that holds an absolute, lexically normal native path: the one with the longest mount
// point that is the path or a folder above it, the later one of two on the same point (it hides
// the earlier); null when none does.
const Mount* mountHolding(const std::vector<Mount>& mounts, std::string_view path);

// The POSIX path a text names under the facts of `system`, by the rules at the top of this file
// (a native text is returned as it is, in UTF-8); nullopt when it names nothing.
std::optional<std::string> posixPathFor(StringView path, const PathSystem& system);

// The Windows-form text of an absolute POSIX path under a drive map, as windowsFormOf describes.
std::optional<String> windowsFormUnder(std::string_view posixPath, const DriveMap& drives);

// A POSIX path with "." and empty names removed and ".." applied; ".." never climbs above "/".
std::string lexicallyNormalPosix(std::string_view path);

}  // namespace ravelin::platform

// Platform area "machine and network": the computer's name, which paths lie on the network, and
// the drives (on Linux: mounted file systems) that hold paths and whether they can be reached.
//
// On Linux a drive is named by a letter of the drive map ("C:", paths.hpp), by a mounted share
// ("\\server\share") or by a mount point ("/mnt/data"); it is the mounted file system that holds
// that folder. Its type comes from the file system type (the network types below: network;
// tmpfs and ramfs: RAM disk; iso9660 and udf: CD-ROM), else from the device (removable when
// /sys/class/block says so), else fixed. It is ready when statvfs answers: the call runs on a
// worker thread and is waited for at most three seconds, since statvfs on a dead hard NFS mount
// blocks in the kernel where nothing can end it; such a mount is not ready, and is not probed
// again (no second thread) until the hung call returns. Sizes come from statvfs, the volume name
// from /dev/disk/by-label and the serial number from the last eight hex digits of the volume's
// UUID in /dev/disk/by-uuid (the serial number itself for FAT and NTFS volumes).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/paths.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <string_view>

namespace ravelin::platform {

// What the system knows about one drive.
struct DriveFacts {
  String path;                 // how the drive is named ("C:", "\\server\share", "/mnt/data")
  int32_t driveType = 0;       // 0 unknown, 1 removable, 2 fixed, 3 network, 4 CD-ROM, 5 RAM disk
  bool isReady = false;        // whether its file system answers now
  String fileSystem;           // "NTFS", "ext4", ... ; empty when not ready
  String volumeName;           // empty when it has none or is not ready
  int64_t totalSize = 0;       // bytes; 0 when not ready
  int64_t freeSpace = 0;       // bytes free on the drive; 0 when not ready
  int64_t availableSpace = 0;  // bytes this user may still write (quotas, reserved blocks)
  uint32_t serialNumber = 0;
};

class MachineSystem {
 public:
  virtual ~MachineSystem() = default;

  // The computer's name as GetComputerNameA gives it into a buffer of `bufferSize` characters
  // (the terminating null included): nullopt when the name does not fit. On Linux the host name
  // up to its first ".", its case kept.
  virtual std::optional<std::string> computerName(uint32_t bufferSize) const = 0;

  // What PathIsNetworkPathA returns for the path: 1 for a UNC name or a path on a network file
  // system, 0 otherwise. On Linux by networkPathAnswer below, from the mount table, without
  // touching the file system.
  virtual int32_t isNetworkPath(StringView path) const = 0;

  // The drive of that name (the drive part of a path: "C:", "\\server\share", or on Linux a mount
  // point), or nullopt when there is no such drive. Reading readiness never blocks without end
  // on a dead network mount: a file system that does not answer in time is not ready.
  virtual std::optional<DriveFacts> drive(StringView name) const = 0;

  static std::unique_ptr<MachineSystem> makeNative();
};

inline constexpr Slot<MachineSystem> machineSystem{};

// ---- The rules of systems without drive letters, for every system's tests ----

// The computer name of a host name: the label before the first ".", case kept; nullopt when the
// label and its terminating null do not fit in `bufferSize` characters, or the label is empty.
std::optional<std::string> computerNameFromHost(std::string_view hostName, uint32_t bufferSize);

// Whether a file system type is a network one: nfs, nfs4, cifs, smb3, smbfs, fuse.sshfs,
// fuse.gvfsd-fuse, 9p, ceph or afs.
bool isNetworkFileSystem(std::string_view type);

// PathIsNetworkPathA's answer for the path under the facts of `paths`: 1 for a UNC name (two
// separators and a name first, either slash), an "smb://" address, a path in `gvfsFolder` (the
// desktop's network mounts, /run/user/UID/gvfs; empty for none) or a path that the mount table
// puts on a network file system; 0 for anything else, a relative path included.
int32_t networkPathAnswer(StringView path, const PathSystem& paths, std::string_view gvfsFolder);

// Where a drive name leads: the folder it stands for and the mount that holds it (none when the
// mount table does not list one).
struct DriveLocation {
  std::string folder;
  std::optional<Mount> mount;
};

// The drive a name names under the facts of `paths`: a letter of the drive map ("C:"), a mounted
// share ("\\server\share" or "//server/share", the share itself and not a folder in it), or a
// mount point; nullopt for anything else.
std::optional<DriveLocation> locateDrive(StringView name, const PathSystem& paths);

// The drive type (DriveFacts::driveType) of a mounted file system.
int32_t driveTypeFor(std::string_view fileSystemType, bool removableDevice);

// The serial number of a volume from its UUID as /dev/disk/by-uuid names it: the value of its
// last eight hex digits (0 when it has fewer).
uint32_t serialNumberFromUuid(std::string_view uuid);

// A name of /dev/disk/by-label with its "\xHH" escapes decoded.
std::string deviceLabelFromLink(std::string_view linkName);

}  // namespace ravelin::platform

// Platform area "machine and network": the computer's name, which paths lie on the network, and
// the drives (on Linux: mounted file systems) that hold paths and whether they can be reached.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>

namespace ravelin::platform {

// What the system knows about one drive.
struct DriveFacts {
  String path;             // how the drive is named ("C:", "\\server\share", "/mnt/data")
  int32_t driveType = 0;   // 0 unknown, 1 removable, 2 fixed, 3 network, 4 CD-ROM, 5 RAM disk
  bool isReady = false;    // whether its file system answers now
  String fileSystem;       // "NTFS", "ext4", ... ; empty when not ready
  String volumeName;       // empty when it has none or is not ready
  int64_t totalSize = 0;   // bytes; 0 when not ready
  int64_t freeSpace = 0;   // bytes free to this user; 0 when not ready
  int64_t availableSpace = 0;
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
  // system (on Linux: a mount of type nfs, nfs4, cifs, smb3, smbfs, fuse.sshfs, fuse.gvfsd-fuse,
  // 9p, ceph or afs, found in the mount table without touching the file system), 0 otherwise.
  virtual int32_t isNetworkPath(StringView path) const = 0;

  // The drive of that name (the drive part of a path: "C:", "\\server\share", or on Linux a mount
  // point), or nullopt when there is no such drive. Reading readiness never blocks without end
  // on a dead network mount: a file system that does not answer in time is not ready.
  virtual std::optional<DriveFacts> drive(StringView name) const = 0;

  static std::unique_ptr<MachineSystem> makeNative();
};

inline constexpr Slot<MachineSystem> machineSystem{};

}  // namespace ravelin::platform

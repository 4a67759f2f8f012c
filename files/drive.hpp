// Drive and Folder: the objects the file-system object hands back from GetDrive and CreateFolder.
//
// A Drive asks the system about its drive each time a property is read, as the Windows object
// does: IsReady, and the sizes, can change while the object lives. The properties of the file
// system (FileSystem, sizes, VolumeName, SerialNumber) raise 71 "Disk not ready" while the drive
// is not ready. DriveLetter is the letter ("C") of a letter drive and "" for a share or a mount
// point; ShareName is "\\server\share" of a network drive named so, else "". Path is the default
// member.
#pragma once

#include <cstdint>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/platform/machine.hpp>

namespace ravelin {

// The drive types, as Drive.DriveType gives them.
enum DriveTypeConst : int32_t {
  UnknownType = 0,
  Removable = 1,
  Fixed = 2,
  Remote = 3,
  CDRom = 4,
  RamDisk = 5,
};
template <>
const EnumInfo& enumInfo<DriveTypeConst>();

class Drive : public PublicClass<Drive> {
 public:
  static constexpr StringView kClassName = u"Drive";
  static ClassInfo describe();

  // The drive the system knows by `name` ("C:", "\\server\share", or a mount point).
  explicit Drive(String name) : name_(std::move(name)) {}

  String Path() const { return name_; }
  String DriveLetter() const;
  String ShareName() const;
  int32_t DriveType() const;
  bool IsReady() const;
  String FileSystem() const;
  double TotalSize() const;
  double FreeSpace() const;
  double AvailableSpace() const;
  String VolumeName() const;
  int32_t SerialNumber() const;

 private:
  // What the system says now; a drive gone since counts as not ready.
  platform::DriveFacts facts() const;
  // The same, raising 71 when the drive is not ready.
  platform::DriveFacts readyFacts() const;

  String name_;
};

class Folder : public PublicClass<Folder> {
 public:
  static constexpr StringView kClassName = u"Folder";
  static ClassInfo describe();

  explicit Folder(String path) : path_(std::move(path)) {}

  String Path() const { return path_; }
  String Name() const;

 private:
  String path_;
};

}  // namespace ravelin

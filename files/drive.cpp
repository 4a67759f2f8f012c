// Drives as the machine area reports them, and folders by their path.
#include <ravelin/files/drive.hpp>
#include <ravelin/files/internal/path_text.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

template <>
const EnumInfo& enumInfo<DriveTypeConst>() {
  static const EnumInfo info{u"DriveTypeConst",
                             {
                                 {u"UnknownType", UnknownType},
                                 {u"Removable", Removable},
                                 {u"Fixed", Fixed},
                                 {u"Remote", Remote},
                                 {u"CDRom", CDRom},
                                 {u"RamDisk", RamDisk},
                             }};
  return info;
}

ClassInfo Drive::describe() {
  return ClassBuilder<Drive>(kClassName, false)
      .get(u"", &Drive::Path)
      .get(u"Path", &Drive::Path)
      .get(u"DriveLetter", &Drive::DriveLetter)
      .get(u"ShareName", &Drive::ShareName)
      .get(u"DriveType", &Drive::DriveType)
      .get(u"IsReady", &Drive::IsReady)
      .get(u"FileSystem", &Drive::FileSystem)
      .get(u"TotalSize", &Drive::TotalSize)
      .get(u"FreeSpace", &Drive::FreeSpace)
      .get(u"AvailableSpace", &Drive::AvailableSpace)
      .get(u"VolumeName", &Drive::VolumeName)
      .get(u"SerialNumber", &Drive::SerialNumber)
      .build();
}

platform::DriveFacts Drive::facts() const {
  std::optional<platform::DriveFacts> facts = platform::machineSystem()->drive(name_);
  if (!facts) {
    platform::DriveFacts gone;
    gone.path = name_;
    return gone;
  }
  return std::move(*facts);
}

platform::DriveFacts Drive::readyFacts() const {
  platform::DriveFacts now = facts();
  if (!now.isReady) raiseRuntimeError(vb_error::kDiskNotReady);
  return now;
}

String Drive::DriveLetter() const {
  return path_text::startsWithDrive(name_) && name_.size() == 2 ? String(1, toUpper(name_[0]))
                                                                : String();
}

String Drive::ShareName() const {
  return path_text::driveName(name_) == name_ && !path_text::startsWithDrive(name_) ? name_
                                                                                    : String();
}

int32_t Drive::DriveType() const {
  return facts().driveType;
}
bool Drive::IsReady() const {
  return facts().isReady;
}
String Drive::FileSystem() const {
  return readyFacts().fileSystem;
}
double Drive::TotalSize() const {
  return static_cast<double>(readyFacts().totalSize);
}
double Drive::FreeSpace() const {
  return static_cast<double>(readyFacts().freeSpace);
}
double Drive::AvailableSpace() const {
  return static_cast<double>(readyFacts().availableSpace);
}
String Drive::VolumeName() const {
  return readyFacts().volumeName;
}
int32_t Drive::SerialNumber() const {
  return static_cast<int32_t>(readyFacts().serialNumber);
}

ClassInfo Folder::describe() {
  return ClassBuilder<Folder>(kClassName, false)
      .get(u"", &Folder::Path)
      .get(u"Path", &Folder::Path)
      .get(u"Name", &Folder::Name)
      .build();
}

String Folder::Name() const {
  return path_text::fileName(path_);
}

}  // namespace ravelin

// FileSystemObject: the scripting runtime's file-system object, created by name as
// Scripting.FileSystemObject or Ravelin.FileSystemObject, with its text streams (text_stream.hpp)
// and drives (drive.hpp).
//
// Paths: every member takes the Windows form and, where the system has one (Linux), the native
// form (platform/paths.hpp). Members that join names (BuildPath) use the separator of the form
// given. GetParentFolderName, GetFileName, GetBaseName, GetExtensionName, BuildPath and
// GetDriveName look at the text only, by the Windows object's rules (files/internal/
// path_text.hpp), "/" counting as a separator; on Linux GetDriveName of an absolute native path
// is the mount point that holds it. GetAbsolutePathName works on the text too (links are never
// followed) and answers in the form it was given: a Windows-form path on Linux starts from the
// current folder as the drive map names it.
//
// Errors are the runtime's, as the Windows object raises them: 5 for an argument out of range
// (an IOMode or Format it does not know, a drive named in another shape), 52 for a name that
// cannot be one, 53 for a file that is not there, 58 for a name that is taken, 68 for a drive
// that is not there, 70 for a refusal (a read-only file without Force, a folder where a file is
// meant), 76 for a folder that is not there (also an unknown drive letter or an unmounted share).
//
// Where the Windows object leaves a choice:
// - DeleteFile and DeleteFolder take "*" and "?" in the last name (any case); "*.*" is every
//   name. Every match is checked before anything is deleted, so a read-only file met without
//   Force deletes nothing. Force deletes read-only files and makes read-only folders deletable.
//   DeleteFolder refuses a root with 70.
// - CopyFile over an existing file copies beside it first and then replaces it, so a copy that
//   fails (a full disk) leaves the old file as it was.
// - "Read-only" is the owner's write permission on Linux, as Windows' attribute.
// - GetTempName is "rad", five hex digits and ".tmp".
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/files/drive.hpp>
#include <ravelin/files/text_stream.hpp>
#include <ravelin/frame/enum_info.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

// What a text file is opened for.
enum IOMode : int32_t {
  ForReading = 1,
  ForWriting = 2,
  ForAppending = 8,
};
template <>
const EnumInfo& enumInfo<IOMode>();

// The text format of a text file: ANSI (TristateFalse), UTF-16LE (TristateTrue), or for
// OpenTextFile the file's own (TristateUseDefault: UTF-16 when it starts with a byte order mark,
// for reading and appending; ANSI for writing).
enum Tristate : int32_t {
  TristateTrue = -1,
  TristateFalse = 0,
  TristateUseDefault = -2,
  TristateMixed = -2,
};
template <>
const EnumInfo& enumInfo<Tristate>();

class FileSystemObject : public PublicClass<FileSystemObject> {
 public:
  static constexpr StringView kClassName = u"FileSystemObject";
  static constexpr StringView kProgId = u"Scripting.FileSystemObject";
  static ClassInfo describe();

  // Names and paths.
  String BuildPath(StringView Path, StringView Name) const;
  String GetAbsolutePathName(StringView Path) const;
  String GetBaseName(StringView Path) const;
  String GetDriveName(StringView Path) const;
  String GetExtensionName(StringView Path) const;
  String GetFileName(StringView Path) const;
  String GetParentFolderName(StringView Path) const;
  String GetTempName() const;

  // Drives: "C", "C:", "C:\", "\\server\share", or on Linux a mount point.
  bool DriveExists(StringView DriveName) const;
  std::shared_ptr<Drive> GetDrive(StringView DriveName) const;

  // Files and folders.
  bool FileExists(StringView FileName) const;
  bool FolderExists(StringView FolderName) const;
  std::shared_ptr<Folder> CreateFolder(StringView Path) const;
  void DeleteFile(StringView FileName, bool Force) const;
  void DeleteFolder(StringView FolderName, bool Force) const;
  void CopyFile(StringView Source, StringView Destination, bool OverWriteFiles) const;
  void MoveFile(StringView Source, StringView Destination) const;

  // Text files.
  std::shared_ptr<TextStream> CreateTextFile(StringView FileName, bool Overwrite,
                                             bool Unicode) const;
  std::shared_ptr<TextStream> OpenTextFile(StringView FileName, int32_t IOMode, bool Create,
                                           int32_t Format) const;
};

}  // namespace ravelin

// FileSystem: the library's file-system service. It resolves the system's and the suite's
// standard folders, builds and checks paths and file names, creates folder chains, reads and
// writes INI values, reads the version resource of executable files and answers questions about
// the machine and network paths. It holds one file-system object (MyFso) for its whole life.
//
// Paths are taken in the Windows form and in the system's native form; folders the library finds
// by itself come back native (on Linux "/home/ana/Documents"), and a name joined to a folder is
// joined with that folder's separator. The pure text members (AddBackSlashToStringOnNeed,
// SameFileExtension, ValidFileName) keep their exact text rules everywhere.
//
// Behaviour where the members leave a choice:
// - A special-folder member or MakeDirectories that meets an error (a folder that cannot be
//   created, a drive that vanishes) ends with an empty text, respectively false, and raises
//   nothing, as the suite's callers expect.
// - INI texts cross to the file in the ANSI code page of the current locale.
#pragma once

#include <memory>
#include <ravelin/files/file_system_object.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/records.hpp>

namespace ravelin {

class FileSystem : public PublicClass<FileSystem> {
 public:
  static constexpr StringView kClassName = u"FileSystem";
  static ClassInfo describe();

  FileSystem();

  // The file-system object every member uses.
  std::shared_ptr<FileSystemObject> MyFso() const { return fso_; }

  // ---- Paths and names ----
  // Value trimmed of spaces, with one "\" at its end ("\" for an empty text).
  String AddBackSlashToStringOnNeed(StringView Value) const;
  // Whether a file name has the extension of a wildcard pattern ("*.txt"), ignoring case.
  bool SameFileExtension(StringView strFileName1, StringView strFileName2) const;
  // Whether the text can be a file name: no reserved character (comma included), no ".." at
  // either end, no device name, no space, comma or period at its end.
  bool ValidFileName(StringView Value) const;
  // Creates every missing folder of Path, shallowest first; whether Path exists afterwards.
  bool MakeDirectories(StringView Path) const;

  // ---- Folders ----
  String GetSystemDirectory() const;
  // With the separator the system puts at its end.
  String GetTempDirectory() const;
  String GetUserDirectory() const;
  String GetUserMyDocumentsDirectory(StringView AppShortName) const;
  String GetCommonDocumentsDirectory(StringView AppShortName = {}) const;
  String GetProgramFilesDirectory() const;
  String GetProgramFilesCommonDirectory() const;
  String GetAllUserAppDataDirectory() const;
  // Always joins AppShortName, so an empty one gives the folder with a separator at its end.
  String GetAllUserAppDataDirectoryForQuillmark(StringView AppShortName) const;

  // ---- INI files ----
  // Sets the key, creating file and section as needed; the value is trimmed of spaces.
  bool WriteINIString(StringView Section, StringView key, StringView Value, StringView File) const;
  // The value of the key (at most 511 characters), Default when the key is missing.
  String ReadINIString(StringView Section, StringView key, StringView Default,
                       StringView File) const;

  // ---- Version information ----
  // The first, second and fourth numbers of the file's version; zeros when it has none.
  FileVersion GetFileVersion(StringView FullFileName) const;
  // The fixed part of the file's version resource; zeros when it has none.
  FileInfo GetFileInfo(String& strFullFileName) const;

  // ---- Machine and network ----
  // The computer's name; empty when it does not fit 15 characters.
  String CurrentMachineName() const;
  // Whether the path lies on the network (a UNC name, a network drive or file system).
  bool IsPathNetworkPath(StringView sPath) const;
  // Whether the drive or share holding Folder is there and ready; a ready local drive counts.
  bool IsNetworkPathAvailable(StringView Folder) const;

 private:
  std::shared_ptr<FileSystemObject> fso_;
};

}  // namespace ravelin

#include <algorithm>
#include <ravelin/files/drive.hpp>
#include <ravelin/files/file_system.hpp>
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/folders.hpp>
#include <ravelin/platform/machine.hpp>
#include <ravelin/platform/paths.hpp>
#include <ravelin/platform/profile.hpp>
#include <ravelin/platform/version_resource.hpp>
#include <vector>

namespace ravelin {
namespace {

StringView trimSpaces(StringView text) {
  const auto first = text.find_first_not_of(u' ');
  if (first == StringView::npos) return {};
  const auto last = text.find_last_not_of(u' ');
  return text.substr(first, last - first + 1);
}

bool isDeviceName(StringView name) {
  const String upper = toUpper(name);
  if (upper == u"CON" || upper == u"PRN" || upper == u"AUX" || upper == u"NUL") return true;
  return upper.size() == 4 && (upper.starts_with(u"COM") || upper.starts_with(u"LPT")) &&
         upper[3] >= u'0' && upper[3] <= u'9';
}

// The folder a special-folder member gives: the system's folder, or this library's own when the
// system has none; with the subfolder joined and created (one level) when one is asked for.
String specialFolder(FileSystemObject& fso, platform::SpecialFolder which,
                     std::optional<StringView> subfolder) {
  try {
    String path = platform::folderSystem()->specialFolder(which).value_or(String());
    if (trimSpaces(path).empty()) return platform::folderSystem()->libraryFolder();
    if (subfolder) {
      path += platform::separatorFor(path);
      path += *subfolder;
      if (!fso.FolderExists(path)) fso.CreateFolder(path);
    }
    return path;
  } catch (const AutomationError&) {
    return {};
  }
}

// The subfolder when the name is not empty.
std::optional<StringView> unlessEmpty(StringView name) {
  if (name.empty()) return std::nullopt;
  return name;
}

// The fixed part of a file's version resource, nullopt when the file has none (missing, not an
// executable, no resource, or a name that names no file).
std::optional<platform::FixedFileInfo> fixedFileInfo(StringView fileName) {
  const auto path = platform::nativePath(fileName);
  if (!path) return std::nullopt;
  const platform::VersionResource resource = platform::versionResources()->read(*path);
  if (resource.size < 1) return std::nullopt;
  return resource.fixedInfo;
}

// Text as it crosses to the profile functions: in the ANSI code page of the current locale.
std::string toAnsi(StringView text) {
  return encode(text, currentLocale().ansiCodePage);
}
String fromAnsi(std::string_view bytes) {
  return decode(bytes, currentLocale().ansiCodePage);
}

int16_t lowHalf(uint32_t word) {
  return static_cast<int16_t>(word & 0xFFFFu);
}
int16_t highHalf(uint32_t word) {
  return static_cast<int16_t>(word >> 16);
}
int32_t wholeWord(uint32_t word) {
  return static_cast<int32_t>(word);
}

}  // namespace

FileSystem::FileSystem() : fso_(makeObject<FileSystemObject>()) {}

String FileSystem::AddBackSlashToStringOnNeed(StringView Value) const {
  String result(trimSpaces(Value));
  if (result.empty() || result.back() != u'\\') result += u'\\';
  return result;
}

bool FileSystem::SameFileExtension(StringView strFileName1, StringView strFileName2) const {
  if (equalsIgnoreCase(strFileName1, strFileName2)) return true;
  const auto star = strFileName2.rfind(u'*');
  const auto dot = strFileName1.rfind(u'.');
  if (star == StringView::npos || dot == StringView::npos) return false;
  // The "*" and the character after it (normally ".") are not part of the extension.
  const StringView patternExtension =
      star + 2 <= strFileName2.size() ? strFileName2.substr(star + 2) : StringView();
  return equalsIgnoreCase(patternExtension, strFileName1.substr(dot + 1));
}

bool FileSystem::ValidFileName(StringView Value) const {
  // The reserved characters, the comma among them.
  if (Value.find_first_of(u"<,>:/\\|?*\"") != StringView::npos) return false;
  if (Value.starts_with(u"..") || Value.ends_with(u"..")) return false;
  if (isDeviceName(Value)) return false;
  if (!Value.empty() && (Value.back() == u' ' || Value.back() == u',' || Value.back() == u'.'))
    return false;
  return true;
}

bool FileSystem::MakeDirectories(StringView Path) const {
  try {
    const String drive = fso_->GetDriveName(Path);
    if (fso_->DriveExists(drive) && fso_->GetDrive(drive)->IsReady()) {
      std::vector<String> missing;
      for (String current(Path); !current.empty(); current = fso_->GetParentFolderName(current)) {
        if (fso_->FolderExists(current)) break;
        missing.push_back(current);
      }
      std::for_each(missing.rbegin(), missing.rend(),
                    [&](const String& folder) { fso_->CreateFolder(folder); });
    }
    return fso_->FolderExists(Path);
  } catch (const AutomationError&) {
    return false;
  }
}

String FileSystem::GetSystemDirectory() const {
  // A buffer of 255 spaces of which the caller keeps as many as the call reports.
  constexpr uint32_t kBuffer = 255;
  const platform::FolderCall call = platform::folderSystem()->systemDirectory(kBuffer);
  if (call.count < kBuffer) return call.text.substr(0, call.count);
  return String(kBuffer, u' ');
}

String FileSystem::GetTempDirectory() const {
  // A buffer of 255 null characters, read up to the first one: empty when nothing was copied.
  return platform::folderSystem()->tempPath(255).text;
}

String FileSystem::GetUserDirectory() const {
  return specialFolder(*fso_, platform::SpecialFolder::personal, std::nullopt);
}

String FileSystem::GetUserMyDocumentsDirectory(StringView AppShortName) const {
  return specialFolder(*fso_, platform::SpecialFolder::personal, unlessEmpty(AppShortName));
}

String FileSystem::GetCommonDocumentsDirectory(StringView AppShortName) const {
  return specialFolder(*fso_, platform::SpecialFolder::commonDocuments, unlessEmpty(AppShortName));
}

String FileSystem::GetProgramFilesDirectory() const {
  return specialFolder(*fso_, platform::SpecialFolder::programFiles, std::nullopt);
}

String FileSystem::GetProgramFilesCommonDirectory() const {
  return specialFolder(*fso_, platform::SpecialFolder::programFilesCommon, std::nullopt);
}

String FileSystem::GetAllUserAppDataDirectory() const {
  return specialFolder(*fso_, platform::SpecialFolder::commonAppData, std::nullopt);
}

String FileSystem::GetAllUserAppDataDirectoryForQuillmark(StringView AppShortName) const {
  return specialFolder(*fso_, platform::SpecialFolder::commonAppData, AppShortName);
}

bool FileSystem::WriteINIString(StringView Section, StringView key, StringView Value,
                                StringView File) const {
  const auto path = platform::nativePath(File);
  if (!path) return false;
  return platform::profileSystem()
      ->writeString(toAnsi(Section), toAnsi(key), toAnsi(trimSpaces(Value)), *path)
      .succeeded;
}

String FileSystem::ReadINIString(StringView Section, StringView key, StringView Default,
                                 StringView File) const {
  // A buffer of 512 characters: values are cut at 511.
  constexpr uint32_t kBuffer = 512;
  // A name that names no file (an unknown drive) reads as a missing file: the default, cut as
  // the call cuts it.
  const platform::ProfileRead read = platform::profileSystem()->getString(
      toAnsi(Section), toAnsi(key), toAnsi(Default), kBuffer,
      platform::nativePath(File).value_or(std::filesystem::path()));
  if (read.count == 0) return {};
  return fromAnsi(read.text());
}

FileVersion FileSystem::GetFileVersion(StringView FullFileName) const {
  const auto info = fixedFileInfo(FullFileName);
  if (!info) return {};
  // The third number (the high half of the least significant word) is left out.
  const uint32_t mostSignificant = (*info)[2];
  const uint32_t leastSignificant = (*info)[3];
  return {highHalf(mostSignificant), lowHalf(mostSignificant), lowHalf(leastSignificant)};
}

FileInfo FileSystem::GetFileInfo(String& strFullFileName) const {
  const auto info = fixedFileInfo(strFullFileName);
  if (!info) return {};
  const platform::FixedFileInfo& w = *info;
  return {wholeWord(w[0]),  lowHalf(w[1]),    highHalf(w[1]),  lowHalf(w[2]),   highHalf(w[2]),
          lowHalf(w[3]),    highHalf(w[3]),   lowHalf(w[4]),   highHalf(w[4]),  lowHalf(w[5]),
          highHalf(w[5]),   wholeWord(w[6]),  wholeWord(w[7]), wholeWord(w[8]), wholeWord(w[9]),
          wholeWord(w[10]), wholeWord(w[11]), wholeWord(w[12])};
}

String FileSystem::CurrentMachineName() const {
  // A buffer of 16 characters: a longer name makes the call fail.
  const auto name = platform::machineSystem()->computerName(16);
  return name ? fromAnsi(*name) : String();
}

bool FileSystem::IsPathNetworkPath(StringView sPath) const {
  return platform::machineSystem()->isNetworkPath(sPath) == 1;
}

bool FileSystem::IsNetworkPathAvailable(StringView Folder) const {
  try {
    // A file-system object of its own, as the member has always used.
    const auto fso = makeObject<FileSystemObject>();
    if (Folder.empty()) return false;
    const String drive = fso->GetDriveName(fso->GetAbsolutePathName(Folder));
    if (drive.empty()) return false;
    return fso->GetDrive(drive)->IsReady();
  } catch (const AutomationError&) {
    return false;
  }
}

ClassInfo FileSystem::describe() {
  using F = FileSystem;
  return ClassBuilder<F>(kClassName)
      .get(u"MyFso", &F::MyFso)
      .method(u"AddBackSlashToStringOnNeed", &F::AddBackSlashToStringOnNeed, {u"Value"})
      .method(u"SameFileExtension", &F::SameFileExtension, {u"strFileName1", u"strFileName2"})
      .method(u"ValidFileName", &F::ValidFileName, {u"Value"})
      .method(u"MakeDirectories", &F::MakeDirectories, {u"Path"})
      .method(u"GetSystemDirectory", &F::GetSystemDirectory)
      .method(u"GetTempDirectory", &F::GetTempDirectory)
      .method(u"GetUserDirectory", &F::GetUserDirectory)
      .method(u"GetUserMyDocumentsDirectory", &F::GetUserMyDocumentsDirectory, {u"AppShortName"})
      .method(u"GetCommonDocumentsDirectory", &F::GetCommonDocumentsDirectory,
              {optional(u"AppShortName", String())})
      .method(u"GetProgramFilesDirectory", &F::GetProgramFilesDirectory)
      .method(u"GetProgramFilesCommonDirectory", &F::GetProgramFilesCommonDirectory)
      .method(u"GetAllUserAppDataDirectory", &F::GetAllUserAppDataDirectory)
      .method(u"GetAllUserAppDataDirectoryForQuillmark", &F::GetAllUserAppDataDirectoryForQuillmark,
              {u"AppShortName"})
      .method(u"WriteINIString", &F::WriteINIString, {u"Section", u"key", u"Value", u"File"})
      .method(u"ReadINIString", &F::ReadINIString, {u"Section", u"key", u"Default", u"File"})
      .method(u"GetFileVersion", &F::GetFileVersion, {u"FullFileName"})
      .method(u"GetFileInfo", &F::GetFileInfo, {u"strFullFileName"})
      .method(u"CurrentMachineName", &F::CurrentMachineName)
      .method(u"IsPathNetworkPath", &F::IsPathNetworkPath, {u"sPath"})
      .method(u"IsNetworkPathAvailable", &F::IsNetworkPathAvailable, {u"Folder"})
      .build();
}

}  // namespace ravelin

// The file-system object: path texts, drives, files and folders, and the opening of text files.
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <ravelin/files/file_system_object.hpp>
#include <ravelin/files/internal/file_errors.hpp>
#include <ravelin/files/internal/path_text.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/machine.hpp>
#include <ravelin/platform/paths.hpp>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace ravelin {

namespace fs = std::filesystem;

template <>
const EnumInfo& enumInfo<IOMode>() {
  static const EnumInfo info{u"IOMode",
                             {
                                 {u"ForReading", ForReading},
                                 {u"ForWriting", ForWriting},
                                 {u"ForAppending", ForAppending},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<Tristate>() {
  static const EnumInfo info{u"Tristate",
                             {
                                 {u"TristateTrue", TristateTrue},
                                 {u"TristateFalse", TristateFalse},
                                 {u"TristateUseDefault", TristateUseDefault},
                                 {u"TristateMixed", TristateMixed},
                             }};
  return info;
}

ClassInfo FileSystemObject::describe() {
  return ClassBuilder<FileSystemObject>(kClassName)
      .method(u"BuildPath", &FileSystemObject::BuildPath, {u"Path", u"Name"})
      .method(u"GetAbsolutePathName", &FileSystemObject::GetAbsolutePathName, {u"Path"})
      .method(u"GetBaseName", &FileSystemObject::GetBaseName, {u"Path"})
      .method(u"GetDriveName", &FileSystemObject::GetDriveName, {u"Path"})
      .method(u"GetExtensionName", &FileSystemObject::GetExtensionName, {u"Path"})
      .method(u"GetFileName", &FileSystemObject::GetFileName, {u"Path"})
      .method(u"GetParentFolderName", &FileSystemObject::GetParentFolderName, {u"Path"})
      .method(u"GetTempName", &FileSystemObject::GetTempName)
      .method(u"DriveExists", &FileSystemObject::DriveExists, {u"DriveName"})
      .method(u"GetDrive", &FileSystemObject::GetDrive, {u"DriveName"})
      .method(u"FileExists", &FileSystemObject::FileExists, {u"FileName"})
      .method(u"FolderExists", &FileSystemObject::FolderExists, {u"FolderName"})
      .method(u"CreateFolder", &FileSystemObject::CreateFolder, {u"Path"})
      .method(u"DeleteFile", &FileSystemObject::DeleteFile,
              {u"FileName", optional(u"Force", Variant(false))})
      .method(u"DeleteFolder", &FileSystemObject::DeleteFolder,
              {u"FolderName", optional(u"Force", Variant(false))})
      .method(u"CopyFile", &FileSystemObject::CopyFile,
              {u"Source", u"Destination", optional(u"OverWriteFiles", Variant(true))})
      .method(u"MoveFile", &FileSystemObject::MoveFile, {u"Source", u"Destination"})
      .method(u"CreateTextFile", &FileSystemObject::CreateTextFile,
              {u"FileName", optional(u"Overwrite", Variant(true)),
               optional(u"Unicode", Variant(false))})
      .method(u"OpenTextFile", &FileSystemObject::OpenTextFile,
              {u"FileName", optional(u"IOMode", Variant(int32_t{ForReading})),
               optional(u"Create", Variant(false)),
               optional(u"Format", Variant(int32_t{TristateFalse}))})
      .build();
}

namespace {

using file_errors::raise;

bool startsWithTwoSeparators(StringView path) {
  return path.size() >= 2 && path_text::isSeparator(path[0]) && path_text::isSeparator(path[1]);
}

// Whether the text rules of the Windows form apply: a Windows-form path or a UNC name.
bool windowsRules(StringView path) {
  return platform::isWindowsForm(path) || startsWithTwoSeparators(path);
}

// The last name of a member's text, for wildcards.
String lastNameOf(StringView path) {
  std::size_t end = path.size();
  std::size_t begin = end;
  while (begin > 0 && !path_text::isSeparator(path[begin - 1]))
    --begin;
  return String(path.substr(begin, end - begin));
}

bool endsWithSeparator(StringView path) {
  return !path.empty() && path_text::isSeparator(path.back());
}

// A native path without trailing separators (a root keeps its own).
fs::path withoutTrailingSeparators(fs::path path) {
  while (!path.has_filename() && path.has_relative_path())
    path = path.parent_path();
  return path;
}

bool isFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

// Whether a directory entry counts as a file: anything but a folder or a link to one (a link
// that leads nowhere is a file, and deleting it deletes the link).
bool isFileEntry(const fs::path& path) {
  std::error_code error;
  const fs::file_status own = fs::symlink_status(path, error);
  if (error || !fs::exists(own)) return false;
  if (fs::is_symlink(own)) return !isFolder(path);
  return !fs::is_directory(own);
}

bool isThere(const fs::path& path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error));
}

// The number for something missing: 53 when its folder is there, else 76.
int32_t missingNumber(const fs::path& path) {
  const fs::path folder = path.parent_path();
  return folder.empty() || isFolder(folder) ? vb_error::kFileNotFound : vb_error::kPathNotFound;
}

// The entries of the folder of `native` whose names match the last name of `pattern`.
std::vector<fs::path> matchingEntries(const fs::path& native, StringView pattern, bool folders) {
  const fs::path folder = native.parent_path().empty() ? fs::path(".") : native.parent_path();
  if (!isFolder(folder)) raise(vb_error::kPathNotFound);
  const String wildcards = lastNameOf(pattern);
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const fs::path& entry = it->path();
    if ((folders ? isFolder(entry) : isFileEntry(entry)) &&
        path_text::matchesWildcards(platform::fromNativePath(entry.filename()), wildcards)) {
      found.push_back(entry);
    }
  }
  if (error) file_errors::raiseFor(error, vb_error::kPathNotFound);
  return found;
}

// The files a Source names: the matches of its wildcards, or the one file (53 when it is not
// one, 76 when its folder is missing).
std::vector<fs::path> sourceFiles(StringView source, const fs::path& native) {
  if (path_text::hasWildcards(lastNameOf(source))) {
    std::vector<fs::path> files = matchingEntries(native, source, false);
    if (files.empty()) raise(vb_error::kFileNotFound);
    return files;
  }
  if (!isFileEntry(native)) raise(missingNumber(native));
  return {native};
}

// Lets the owner write a file or folder (not a link: callers pass none).
void makeWritable(const fs::path& path) {
  std::error_code error;
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, error);
}

// Copies a file to a name that is free or may be replaced; a failed copy leaves the target as it
// was.
void copyOver(const fs::path& source, const fs::path& target) {
  std::error_code error;
  if (!isThere(target)) {
    if (!fs::copy_file(source, target, error)) {
      std::error_code ignored;
      if (error != std::errc::file_exists) fs::remove(target, ignored);
      file_errors::raiseFor(error, vb_error::kPathNotFound);
    }
    return;
  }
  fs::path beside;
  for (int attempt = 0; attempt < 100; ++attempt) {
    beside = target;
    beside += ".copy" + std::to_string(attempt);
    if (!isThere(beside)) break;
  }
  if (!fs::copy_file(source, beside, error)) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    file_errors::raiseFor(error, vb_error::kPathNotFound);
  }
  fs::rename(beside, target, error);
  if (error) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    file_errors::raiseFor(error, vb_error::kPathNotFound);
  }
}

// The name the system knows a drive by, as a script names it: "C:" for "c", "C:" or "C:\"; a UNC
// share as written; a native mount point, lexically normal; nullopt for any other shape.
std::optional<String> canonicalDriveName(StringView name) {
  const bool letterOnly =
      (name.size() == 1 && path_text::startsWithDrive(String{name[0], u':'})) ||
      (path_text::startsWithDrive(name) &&
       (name.size() == 2 || (name.size() == 3 && path_text::isSeparator(name[2]))));
  if (letterOnly) return String{toUpper(name[0]), u':'};
  const String share = path_text::driveName(name);
  if (!share.empty() && !path_text::startsWithDrive(share) &&
      (name.size() == share.size() ||
       (name.size() == share.size() + 1 && path_text::isSeparator(name.back())))) {
    return share;
  }
  if (!platform::isWindowsForm(name) && !startsWithTwoSeparators(name) && name.starts_with(u'/')) {
    return fromUtf8(platform::lexicallyNormalPosix(toUtf8(name)));
  }
  return std::nullopt;
}

enum class Detected { ansi, unicode, empty };

// What the first bytes of a file say about its format.
Detected detectFormat(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  char bytes[2] = {};
  in.read(bytes, 2);
  if (in.gcount() == 0) return Detected::empty;
  return in.gcount() == 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE' ? Detected::unicode
                                                                      : Detected::ansi;
}

std::shared_ptr<TextStream> streamOn(const fs::path& file, TextStream::Mode mode,
                                     TextStream::Encoding encoding, bool byteOrderMark) {
  std::ios::openmode openMode = std::ios::binary;
  switch (mode) {
    case TextStream::Mode::reading:
      openMode |= std::ios::in;
      break;
    case TextStream::Mode::writing:
      openMode |= std::ios::out | std::ios::trunc;
      break;
    case TextStream::Mode::appending:
      openMode |= std::ios::out | std::ios::app;
      break;
  }
  // Text written goes to the file at once, without a buffer that could keep what failed.
  std::fstream stream;
  if (mode != TextStream::Mode::reading) stream.rdbuf()->pubsetbuf(nullptr, 0);
  errno = 0;
  stream.open(file, openMode);
  if (!stream) file_errors::raiseFor(file_errors::lastStreamError(), missingNumber(file));
  if (mode == TextStream::Mode::reading && encoding == TextStream::Encoding::unicode) {
    // The byte order mark is not text.
    char bytes[2] = {};
    stream.read(bytes, 2);
    if (!(stream.gcount() == 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE')) {
      stream.clear();
      stream.seekg(0);
    }
  }
  if (byteOrderMark) {
    errno = 0;
    stream.write("\xFF\xFE", 2);
    stream.flush();
    if (!stream) file_errors::raiseFor(file_errors::lastStreamError(), vb_error::kFileNotFound);
  }
  return makeObject<TextStream>(std::move(stream), mode, encoding, currentLocale().ansiCodePage);
}

}  // namespace

// ---- Names and paths ----------------------------------------------------------------------

String FileSystemObject::BuildPath(StringView Path, StringView Name) const {
  return path_text::buildPath(Path, Name, platform::separatorFor(Path.empty() ? Name : Path));
}

String FileSystemObject::GetAbsolutePathName(StringView Path) const {
  const fs::path current = platform::pathSystem()->currentFolder();
  if (!platform::isWindowsForm(Path))
    return path_text::absoluteNativePath(Path, platform::fromNativePath(current));
  if (const std::optional<String> windowsCurrent = platform::windowsFormOf(current))
    return path_text::absoluteWindowsPath(Path, *windowsCurrent);
  // The current folder lies on no drive: a path from a drive's root needs none; one relative to
  // the current folder is answered in the native form.
  const bool relative =
      Path.empty() || (!path_text::startsWithDrive(Path) && !path_text::isSeparator(Path[0]));
  if (!relative) return path_text::absoluteWindowsPath(Path, u"C:\\");
  String slashed(Path);
  for (char16_t& unit : slashed) {
    if (unit == u'\\') unit = u'/';
  }
  return path_text::absoluteNativePath(slashed, platform::fromNativePath(current));
}

String FileSystemObject::GetBaseName(StringView Path) const {
  return path_text::baseName(Path);
}

String FileSystemObject::GetDriveName(StringView Path) const {
  if (windowsRules(Path)) return path_text::driveName(Path);
  if (Path.empty() || Path[0] != u'/') return String();
  // The mount that holds a native path.
  const std::vector<platform::Mount> mounts = platform::pathSystem()->mounts();
  const platform::Mount* mount =
      platform::mountHolding(mounts, platform::lexicallyNormalPosix(toUtf8(Path)));
  return mount == nullptr ? String() : fromUtf8(mount->mountPoint);
}

String FileSystemObject::GetExtensionName(StringView Path) const {
  return path_text::extensionName(Path);
}

String FileSystemObject::GetFileName(StringView Path) const {
  return path_text::fileName(Path);
}

String FileSystemObject::GetParentFolderName(StringView Path) const {
  return path_text::parentFolderName(Path, windowsRules(Path));
}

String FileSystemObject::GetTempName() const {
  static constexpr char16_t kHex[] = u"0123456789ABCDEF";
  std::random_device source;
  const uint32_t value = source() & 0xFFFFF;
  String name = u"rad";
  for (int shift = 16; shift >= 0; shift -= 4)
    name += kHex[(value >> shift) & 0xF];
  return name + u".tmp";
}

// ---- Drives -------------------------------------------------------------------------------

bool FileSystemObject::DriveExists(StringView DriveName) const {
  const std::optional<String> name = canonicalDriveName(DriveName);
  return name && platform::machineSystem()->drive(*name).has_value();
}

std::shared_ptr<Drive> FileSystemObject::GetDrive(StringView DriveName) const {
  const std::optional<String> name = canonicalDriveName(DriveName);
  if (!name) raise(vb_error::kInvalidProcedureCall);
  if (!platform::machineSystem()->drive(*name)) raise(vb_error::kDeviceUnavailable);
  return makeObject<Drive>(*name);
}

// ---- Files and folders --------------------------------------------------------------------

bool FileSystemObject::FileExists(StringView FileName) const {
  const std::optional<fs::path> native = platform::nativePath(FileName);
  std::error_code error;
  const fs::file_status status =
      native ? fs::status(*native, error) : fs::file_status(fs::file_type::not_found);
  return fs::exists(status) && !fs::is_directory(status);
}

bool FileSystemObject::FolderExists(StringView FolderName) const {
  const std::optional<fs::path> native = platform::nativePath(FolderName);
  return native && isFolder(*native);
}

std::shared_ptr<Folder> FileSystemObject::CreateFolder(StringView Path) const {
  const fs::path native = withoutTrailingSeparators(file_errors::nativeOrRaise(Path));
  if (isThere(native)) raise(vb_error::kFileAlreadyExists);
  std::error_code error;
  if (!fs::create_directory(native, error)) {
    file_errors::raiseFor(error ? error : std::make_error_code(std::errc::file_exists),
                          vb_error::kPathNotFound);
  }
  return makeObject<Folder>(GetAbsolutePathName(Path));
}

void FileSystemObject::DeleteFile(StringView FileName, bool Force) const {
  const fs::path native = file_errors::nativeOrRaise(FileName);
  std::vector<fs::path> files = sourceFiles(FileName, native);
  if (!Force) {
    for (const fs::path& file : files) {
      if (file_errors::isReadOnly(file)) raise(vb_error::kPermissionDenied);
    }
  }
  for (const fs::path& file : files) {
    if (Force && file_errors::isReadOnly(file)) makeWritable(file);
    std::error_code error;
    if (!fs::remove(file, error)) file_errors::raiseFor(error, vb_error::kFileNotFound);
  }
}

void FileSystemObject::DeleteFolder(StringView FolderName, bool Force) const {
  const fs::path native = withoutTrailingSeparators(file_errors::nativeOrRaise(FolderName));
  std::vector<fs::path> folders;
  if (path_text::hasWildcards(lastNameOf(FolderName))) {
    folders = matchingEntries(native, FolderName, true);
  } else if (isFolder(native)) {
    folders.push_back(native);
  }
  if (folders.empty()) raise(vb_error::kPathNotFound);
  for (const fs::path& folder : folders) {
    if (folder == folder.root_path() || !folder.has_relative_path())
      raise(vb_error::kPermissionDenied);
  }
  // Every file is checked before anything goes; Force makes the read-only ones deletable.
  for (const fs::path& folder : folders) {
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
      std::error_code statusError;
      const fs::file_status status = it->symlink_status(statusError);
      const bool readOnly = !statusError && !fs::is_symlink(status) &&
                            (status.permissions() & fs::perms::owner_write) == fs::perms::none;
      if (!readOnly) continue;
      if (!Force && !fs::is_directory(status)) raise(vb_error::kPermissionDenied);
      if (Force) makeWritable(it->path());
    }
    if (error) file_errors::raiseFor(error, vb_error::kPathNotFound);
  }
  for (const fs::path& folder : folders) {
    std::error_code error;
    fs::remove_all(folder, error);
    if (error) file_errors::raiseFor(error, vb_error::kPathNotFound);
  }
}

namespace {

// The files a copy or move takes (a wildcard may match several) and where each goes: into the
// destination folder when the source has wildcards or the destination ends with a separator (a
// folder that must exist), else to the destination name itself.
std::vector<std::pair<fs::path, fs::path>> transfers(StringView Source, StringView Destination) {
  const fs::path source = file_errors::nativeOrRaise(Source);
  const fs::path destination = file_errors::nativeOrRaise(Destination);
  std::vector<fs::path> files = sourceFiles(Source, source);
  const bool intoFolder =
      path_text::hasWildcards(lastNameOf(Source)) || endsWithSeparator(Destination);
  if (intoFolder && !isFolder(destination)) raise(vb_error::kPathNotFound);
  std::vector<std::pair<fs::path, fs::path>> result;
  for (fs::path& file : files) {
    fs::path target = intoFolder ? destination / file.filename() : destination;
    result.emplace_back(std::move(file), std::move(target));
  }
  return result;
}

}  // namespace

void FileSystemObject::CopyFile(StringView Source, StringView Destination,
                                bool OverWriteFiles) const {
  for (const auto& [file, target] : transfers(Source, Destination)) {
    if (isFolder(target)) raise(vb_error::kPermissionDenied);
    if (isThere(target)) {
      std::error_code error;
      if (!OverWriteFiles) raise(vb_error::kFileAlreadyExists);
      if (file_errors::isReadOnly(target) || fs::equivalent(file, target, error))
        raise(vb_error::kPermissionDenied);
    } else if (!target.parent_path().empty() && !isFolder(target.parent_path())) {
      raise(vb_error::kPathNotFound);
    }
    copyOver(file, target);
  }
}

void FileSystemObject::MoveFile(StringView Source, StringView Destination) const {
  for (const auto& [file, target] : transfers(Source, Destination)) {
    if (isThere(target)) raise(vb_error::kFileAlreadyExists);
    if (!target.parent_path().empty() && !isFolder(target.parent_path()))
      raise(vb_error::kPathNotFound);
    std::error_code error;
    fs::rename(file, target, error);
    if (error == std::errc::cross_device_link) {
      // Another file system: a copy, then the original goes.
      copyOver(file, target);
      error.clear();
      fs::remove(file, error);
    }
    if (error) file_errors::raiseFor(error, vb_error::kFileNotFound);
  }
}

// ---- Text files ---------------------------------------------------------------------------

std::shared_ptr<TextStream> FileSystemObject::CreateTextFile(StringView FileName, bool Overwrite,
                                                             bool Unicode) const {
  const fs::path native = file_errors::nativeOrRaise(FileName);
  if (isThere(native)) {
    if (!Overwrite) raise(vb_error::kFileAlreadyExists);
    if (isFolder(native) || file_errors::isReadOnly(native)) raise(vb_error::kPermissionDenied);
  } else if (!native.parent_path().empty() && !isFolder(native.parent_path())) {
    raise(vb_error::kPathNotFound);
  }
  return streamOn(native, TextStream::Mode::writing,
                  Unicode ? TextStream::Encoding::unicode : TextStream::Encoding::ansi, Unicode);
}

std::shared_ptr<TextStream> FileSystemObject::OpenTextFile(StringView FileName, int32_t IOMode,
                                                           bool Create, int32_t Format) const {
  if (IOMode != ForReading && IOMode != ForWriting && IOMode != ForAppending)
    raise(vb_error::kInvalidProcedureCall);
  if (Format != TristateFalse && Format != TristateTrue && Format != TristateUseDefault)
    raise(vb_error::kInvalidProcedureCall);
  const fs::path native = file_errors::nativeOrRaise(FileName);
  if (isFolder(native)) raise(vb_error::kPermissionDenied);
  if (!isThere(native)) {
    if (!Create) raise(missingNumber(native));
    if (!native.parent_path().empty() && !isFolder(native.parent_path()))
      raise(vb_error::kPathNotFound);
    errno = 0;
    std::ofstream created(native, std::ios::binary | std::ios::app);
    if (!created) file_errors::raiseFor(file_errors::lastStreamError(), vb_error::kPathNotFound);
  } else if (IOMode != ForReading && file_errors::isReadOnly(native)) {
    raise(vb_error::kPermissionDenied);
  }
  const TextStream::Mode mode = IOMode == ForReading   ? TextStream::Mode::reading
                                : IOMode == ForWriting ? TextStream::Mode::writing
                                                       : TextStream::Mode::appending;
  const Detected found = IOMode == ForWriting ? Detected::empty : detectFormat(native);
  const bool unicode =
      Format == TristateTrue ||
      (Format == TristateUseDefault && IOMode != ForWriting && found == Detected::unicode);
  // A UTF-16 file being started gets its byte order mark.
  const bool byteOrderMark =
      unicode && (IOMode == ForWriting || (IOMode == ForAppending && found == Detected::empty));
  return streamOn(native, mode,
                  unicode ? TextStream::Encoding::unicode : TextStream::Encoding::ansi,
                  byteOrderMark);
}

}  // namespace ravelin

// Platform area "folders": the system's and the user's standard folders, and the folder of the
// library itself.
//
// On Linux (each a native path without a trailing "/"):
// - documents: XDG_DOCUMENTS_DIR from ${XDG_CONFIG_HOME:-$HOME/.config}/user-dirs.dirs, read as
//   the XDG rules say (a quoted "$HOME/..." or absolute value), else $HOME;
// - common documents: RAVELIN_COMMON_DOCUMENTS when set, else none (Linux has no folder shared by
//   all users for documents);
// - program files: /opt; common program files: the library folder of the installation
//   (${prefix}/lib); application data of all users: /var/lib;
// - system folder: the folder that holds the C library (/usr/lib/x86_64-linux-gnu on Debian);
// - temporary folder: $TMPDIR, else /tmp, with a trailing "/" as the Windows call gives it one;
// - a path of 260 bytes or more does not fit the Windows buffers, and is treated as the Windows
//   calls treat it (no folder; the size needed).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>

namespace ravelin::platform {

// The folders SHGetFolderPathA knows by these identifiers (CSIDL values).
enum class SpecialFolder : int32_t {
  personal = 5,             // the user's documents
  programFiles = 38,        // programs
  programFilesCommon = 43,  // files programs share
  commonAppData = 35,       // application data of all users
  commonDocuments = 46,     // documents of all users
};

// What a call that fills a caller's buffer gives back.
struct FolderCall {
  uint32_t count = 0;
  String text;
};

class FolderSystem {
 public:
  virtual ~FolderSystem() = default;

  // Texts are the system's: on Windows what the ANSI calls give (a letter the code page lacks
  // already "?"), on Linux the UTF-8 names.

  // The folder as SHGetFolderPathA gives it into a buffer of 260 characters; nullopt when the
  // system has none, the call fails or the path does not fit.
  virtual std::optional<String> specialFolder(SpecialFolder folder) const = 0;
  // GetSystemDirectoryA into a buffer of `bufferSize` characters: the count the call returns (the
  // length copied, or the size needed when the buffer is too small; 0 on failure) and the text
  // copied (empty unless it fitted).
  virtual FolderCall systemDirectory(uint32_t bufferSize) const = 0;
  // GetTempPathA, with the same protocol.
  virtual FolderCall tempPath(uint32_t bufferSize) const = 0;
  // The folder of the file the library was loaded from (the program's, when it is linked into
  // it), without a trailing separator.
  virtual String libraryFolder() const = 0;

  static std::unique_ptr<FolderSystem> makeNative();
};

inline constexpr Slot<FolderSystem> folderSystem{};

// The value of one entry of a user-dirs.dirs text ("XDG_DOCUMENTS_DIR") by the XDG rules, with
// $HOME replaced by `home`: nullopt when the entry is missing or not of an allowed form (unquoted,
// relative, "~/").
std::optional<std::string> userDirectoryFromText(std::string_view text, std::string_view entry,
                                                 std::string_view home);

}  // namespace ravelin::platform

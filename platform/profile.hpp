// Platform area "profile": INI files read and written with the exact semantics of the Windows
// profile functions GetPrivateProfileStringA and WritePrivateProfileStringA.
//
// Texts are the file's bytes (the ANSI code page on Windows); the caller converts code pages.
// Lines are looked up and edited in place by the Windows rules: names match without regard to
// ASCII case, only the first of two sections or keys of the same name counts, a value in quotes
// loses them, and a write keeps every comment, blank line and spelling it does not replace.
//
// File names arrive in the native form. A bare name (no folder part) names a file in the profile
// folder, which stands in for the Windows directory: on Windows it is the Windows directory
// itself; elsewhere it is the folder set with setProfileFolder(), else the environment variable
// RAVELIN_WINDOWS_DIR, else ${XDG_CONFIG_HOME:-$HOME/.config}/ravelin. The folder is created on
// the first write into it. Any other name is used as it is (a relative one from the current
// folder).
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <string_view>

namespace ravelin::platform {

// The Windows last-error codes a profile call leaves.
namespace profile_error {
inline constexpr uint32_t kNone = 0;
inline constexpr uint32_t kFileNotFound = 2;  // also: a write created the file
inline constexpr uint32_t kPathNotFound = 3;
inline constexpr uint32_t kTooManyOpenFiles = 4;
inline constexpr uint32_t kAccessDenied = 5;  // the name is empty, a folder, or not writable
inline constexpr uint32_t kNotEnoughMemory = 8;
inline constexpr uint32_t kGeneralFailure = 31;
inline constexpr uint32_t kSharingViolation = 32;
inline constexpr uint32_t kLockViolation = 33;  // the folder could not be locked for a write
inline constexpr uint32_t kNotSupported = 50;   // a write into a UTF-16 file
inline constexpr uint32_t kDiskFull = 112;
inline constexpr uint32_t kMoreData = 234;               // the text was cut at the buffer's size
inline constexpr uint32_t kNoUnicodeTranslation = 1113;  // a name the ANSI code page cannot hold
inline constexpr uint32_t kIoDevice = 1117;
}  // namespace profile_error

// What GetPrivateProfileStringA hands back.
struct ProfileRead {
  // The call's result: the characters copied, without the terminating NUL; for a list, with the
  // NUL after each name but not the final one.
  uint32_t count = 0;
  // Every byte the call wrote into the buffer, from its start: the text and its NUL, or a list
  // with its NULs ("a\0bb\0\0"). Empty when the buffer has no room (a size of 0); the caller's
  // buffer beyond these bytes is left as it was.
  std::string copied;
  // The last-error code after the call; kNone when the call set none.
  uint32_t lastError = profile_error::kNone;

  // The first `count` bytes, what a caller takes as the result.
  std::string_view text() const { return std::string_view(copied).substr(0, count); }
};

// What WritePrivateProfileStringA hands back.
struct ProfileWrite {
  bool succeeded = false;  // the call's BOOL
  uint32_t lastError = profile_error::kNone;
};

// The profile functions, as the library calls them. Every text is cut at its first NUL, as the
// C strings of the Windows calls are. Thread-safe.
class ProfileSystem {
 public:
  virtual ~ProfileSystem() = default;

  // GetPrivateProfileStringA(section, key, defaultValue, buffer, size, file):
  // - section and key: the value of the key in the first section of that name; the default when
  //   the file, section or key is missing (nullopt default: "", trailing blanks removed);
  // - no key: the key names of the section, each followed by a NUL, then a final NUL;
  // - no section: the section names of the file in the same form;
  // - the text is cut to fit `size` bytes with its NUL (a list: its last two bytes are NULs).
  virtual ProfileRead getString(std::optional<std::string_view> section,
                                std::optional<std::string_view> key,
                                std::optional<std::string_view> defaultValue, uint32_t size,
                                const std::filesystem::path& file) = 0;

  // WritePrivateProfileStringA(section, key, value, file):
  // - all three: sets the value, creating the file, section and key as needed;
  // - no value: deletes the key; no key: deletes the section, its header and entries (its
  //   comments and blank lines stay); of two of the same name, the first, which lookups see;
  // - no section: fails with kFileNotFound, unless key and value are absent too, which only
  //   asks for cached data to be dropped (and returns false, as Windows documents).
  // A missing file is created even by a deletion; lastError is then kFileNotFound.
  virtual ProfileWrite writeString(std::optional<std::string_view> section,
                                   std::optional<std::string_view> key,
                                   std::optional<std::string_view> value,
                                   const std::filesystem::path& file) = 0;

  // The implementation of the system the library runs on.
  static std::unique_ptr<ProfileSystem> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<ProfileSystem> profileSystem{};

// Sets the folder of bare file names for this process (outside Windows); an empty path returns
// to the environment's choice.
void setProfileFolder(std::filesystem::path folder);

// The folder of bare file names outside Windows: the one set, else $RAVELIN_WINDOWS_DIR (made
// absolute against the current folder), else $XDG_CONFIG_HOME/ravelin (when that is absolute),
// else $HOME/.config/ravelin; empty when none of these is known, so that a bare name then reads
// as a missing file and cannot be written.
std::filesystem::path profileFolder();

}  // namespace ravelin::platform

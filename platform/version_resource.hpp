// Platform area "version resources": the version block of an executable file (a DLL or EXE), as
// Windows' version library hands it out: the buffer size GetFileVersionInfoSizeA asks for, and the
// fixed file information that VerQueryValueA finds under "\" in the block.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <ravelin/platform/slot.hpp>

namespace ravelin::platform {

// VS_FIXEDFILEINFO as its 13 little-endian 32-bit words, in the block's order: signature
// (0xFEEF04BD), structure version, file version MS and LS, product version MS and LS, file flags
// mask, file flags, file OS, file type, file subtype, file date MS and LS.
using FixedFileInfo = std::array<uint32_t, 13>;

inline constexpr uint32_t kFixedFileInfoSignature = 0xFEEF04BD;

// What the version library reports for one file.
struct VersionResource {
  // The buffer size the size call asks for, in bytes; 0 when the file has no version block (a
  // missing file, a folder, a file that is not an executable, one without the resource).
  uint32_t size = 0;
  // The fixed file information of the block; nullopt when there is no block or the block holds
  // none (its value is not 52 bytes, or does not begin with the signature).
  std::optional<FixedFileInfo> fixedInfo;

  friend bool operator==(const VersionResource&, const VersionResource&) = default;
};

class VersionResources {
 public:
  virtual ~VersionResources() = default;

  // The version block of `file`, a native path. Never throws for a file that is missing,
  // unreadable or malformed: those have no block.
  virtual VersionResource read(const std::filesystem::path& file) const = 0;

  // The implementation of the system the library runs on: the version library on Windows, the
  // portable reader of the file's bytes (pe_version_reader.hpp) elsewhere.
  static std::unique_ptr<VersionResources> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<VersionResources> versionResources{};

}  // namespace ravelin::platform

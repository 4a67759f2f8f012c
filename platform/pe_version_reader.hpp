// The version block of a Windows executable (PE32 or PE32+), read straight from the file's bytes on
// any system: DOS header, PE header, optional header, the resource directory found through the
// section table, the resource tree (type 16, ID 1, one language), then VS_VERSIONINFO and its
// VS_FIXEDFILEINFO.
//
// The reader trusts nothing in the file: every offset and count is checked against the bytes that
// are there, the tree is walked to its fixed depth only (so a directory that refers to itself
// cannot make it loop), and it reads only the headers, the section table, the directories on its
// path and the first bytes of the block, however large the file. Anything out of place gives no
// block (size 0), never an error.
//
// Rules where Windows' own behaviour is not documented:
// - Language: of the version resource's languages, 0 (neutral) if present, else 0x0409 (US
//   English), else the first one in the directory. Files with several
//   languages usually carry the same fixed information in each; only the size differs.
// - Size: twice the resource's size plus 4 bytes, the room Windows' version library asks for to
//   hold the block and the ANSI copies of its texts that VerQueryValueA makes. It is never below
//   the resource's size, which is what a caller needs to hold the block.
// - Bytes: the resource tree and the block must lie in the bytes the file holds for their
//   section; parts of a section that exist only in memory (beyond its raw data) do not count.
// - Fixed information: present when the block's length covers it and stays within the resource,
//   its value is 52 bytes, its key is "VS_VERSION_INFO" and the value begins with 0xFEEF04BD.
//   A resource that fails these checks still has a size, as the size call only finds it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <ravelin/platform/version_resource.hpp>
#include <span>

namespace ravelin::platform {

// The version block of the image held in `image`.
VersionResource readPeVersionResource(std::span<const uint8_t> image);

// The version block of the file at `file`; a path that is not a regular file (missing, a folder,
// a device or pipe) has none.
VersionResource readPeVersionResource(const std::filesystem::path& file);

// The size reported for a version resource of `resourceSize` bytes; 0 for an empty resource or
// one too large for the size to fit in 32 bits.
constexpr uint32_t versionBufferSize(uint32_t resourceSize) {
  const uint64_t size = uint64_t{resourceSize} * 2 + 4;
  return resourceSize == 0 || size > std::numeric_limits<uint32_t>::max()
             ? 0
             : static_cast<uint32_t>(size);
}

}  // namespace ravelin::platform

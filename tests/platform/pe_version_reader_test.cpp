// The portable reader of version blocks: images built here, damaged one field at a time, read from
// memory and from a file; and the Windows DLLs that Debian's Wine packages ship, which nobody here
// wrote.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <ravelin/platform/pe_version_reader.hpp>
#include <ravelin/tests/support/pe_image.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

namespace fs = std::filesystem;
using pe_image::buildPeImage;
using pe_image::fixedInfoOf;
using pe_image::PeImage;
using pe_image::PeImageOptions;
using pe_image::resourceData;
using pe_image::resourceDirectory;
using pe_image::versionBlock;
using pe_image::versionResource;

// A folder of this program's own, removed afterwards.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    path_ = fs::temp_directory_path() /
            ("ravelin_pe_" + std::to_string(std::random_device()()) + std::to_string(++count_));
    fs::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  fs::path write(const fs::path& name, const std::vector<uint8_t>& bytes) const {
    std::ofstream(path_ / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return path_ / name;
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
  static inline int count_ = 0;
};

const FixedFileInfo kNeutral = fixedInfoOf(1, 4, 0, 6);
const FixedFileInfo kGerman = fixedInfoOf(2, 0, 0, 7);
const FixedFileInfo kEnglish = fixedInfoOf(3, 1, 2, 9);
const FixedFileInfo kFrench = fixedInfoOf(4, 0, 0, 1);

// The block a resource of `blockSize` bytes gives when it holds `fixedInfo`.
VersionResource found(std::size_t blockSize, const FixedFileInfo& fixedInfo) {
  return {static_cast<uint32_t>(2 * blockSize + 4), fixedInfo};
}
VersionResource foundWithoutFixedInfo(std::size_t blockSize) {
  return {static_cast<uint32_t>(2 * blockSize + 4), std::nullopt};
}

PeImage image(std::vector<pe_image::ResourceNode> resources, bool pe32Plus = true) {
  PeImageOptions options;
  options.pe32Plus = pe32Plus;
  options.resources = std::move(resources);
  return buildPeImage(options);
}

// An image of one neutral version block of 92 + 100 bytes.
PeImage plain() {
  return image({versionResource({resourceData(0u, versionBlock(kNeutral, 100))})});
}

// `plain()` after `change`.
std::vector<uint8_t> damaged(const std::function<void(PeImage&)>& change) {
  PeImage result = plain();
  change(result);
  return result.bytes;
}

struct Row {
  const char* name;
  std::function<std::vector<uint8_t>()> image;
  VersionResource expected;
};

std::string describe(const VersionResource& resource) {
  std::string text = "size " + std::to_string(resource.size);
  if (resource.fixedInfo) {
    const FixedFileInfo& words = *resource.fixedInfo;
    text += ", version " + std::to_string(words[2] >> 16) + "." +
            std::to_string(words[2] & 0xFFFF) + "." + std::to_string(words[3] >> 16) + "." +
            std::to_string(words[3] & 0xFFFF);
  } else {
    text += ", no fixed information";
  }
  return text;
}

// Every row is read from memory and from a file, which must agree.
void checkRows(const std::vector<Row>& rows) {
  TemporaryFolder folder;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::vector<uint8_t> bytes = row.image();
    EXPECT_EQ(describe(readPeVersionResource(std::span<const uint8_t>(bytes))),
              describe(row.expected));
    EXPECT_EQ(readPeVersionResource(std::span<const uint8_t>(bytes)), row.expected);
    EXPECT_EQ(readPeVersionResource(folder.write("image.dll", bytes)), row.expected);
  }
}

TEST(PeVersionReader, FindsTheBlockWhereverTheTreeLeads) {
  using pe_image::ResourceNode;
  const std::vector<Row> rows = {
      {"PE32+, neutral language", [] { return plain().bytes; }, found(192, kNeutral)},
      {"PE32, US English",
       [] {
         return image({versionResource({resourceData(0x409u, versionBlock(kEnglish, 40))})}, false)
             .bytes;
       },
       found(132, kEnglish)},
      {"resources far from their file offset",
       [] {
         PeImageOptions options;
         options.resourceVirtualAddress = 0x54000;
         options.resources = {versionResource({resourceData(0u, versionBlock(kFrench))})};
         return buildPeImage(options).bytes;
       },
       found(92, kFrench)},
      {"other types around the version",
       [] {
         return image({resourceDirectory(3u, {resourceDirectory(1u, {resourceData(0u, {1, 2})})}),
                       versionResource({resourceData(0u, versionBlock(kNeutral, 8))}),
                       resourceDirectory(
                           24u, {resourceDirectory(1u, {resourceData(0u, {'<', 'x', '/', '>'})})})})
             .bytes;
       },
       found(100, kNeutral)},
      // Named entries come first in each directory; each leads to a block of its own that the
      // reader must not take.
      {"named entries before the IDs at every level",
       [] {
         const std::vector<uint8_t> decoy = versionBlock(kFrench);
         return image({resourceDirectory(u"VERSION",
                                         {resourceDirectory(1u, {resourceData(0u, decoy)})}),
                       resourceDirectory(
                           16u, {resourceDirectory(u"ONE", {resourceData(0u, decoy)}),
                                 resourceDirectory(
                                     1u, {resourceData(u"X", decoy),
                                          resourceData(0x409u, versionBlock(kEnglish))})})})
             .bytes;
       },
       found(92, kEnglish)},
      {"ID 1 among other IDs",
       [] {
         return image({resourceDirectory(
                          16u, {resourceDirectory(0u, {resourceData(0u, versionBlock(kFrench))}),
                                resourceDirectory(1u, {resourceData(0u, versionBlock(kNeutral))}),
                                resourceDirectory(2u, {resourceData(0u, versionBlock(kGerman))})})})
             .bytes;
       },
       found(92, kNeutral)},
  };
  checkRows(rows);
}

TEST(PeVersionReader, ChoosesNeutralThenUsEnglishThenTheFirstLanguage) {
  const auto languages = [](std::vector<std::pair<uint32_t, FixedFileInfo>> blocks) {
    std::vector<pe_image::ResourceNode> leaves;
    std::size_t children = 0;
    for (const auto& [language, fixedInfo] : blocks)
      leaves.push_back(resourceData(language, versionBlock(fixedInfo, children += 4)));
    return image({versionResource(std::move(leaves))}).bytes;
  };
  const std::vector<Row> rows = {
      {"neutral before US English",
       [&] {
         return languages({{0, kNeutral}, {0x407, kGerman}, {0x409, kEnglish}});
       },
       found(96, kNeutral)},
      {"US English before the first",
       [&] {
         return languages({{0x407, kGerman}, {0x409, kEnglish}, {0x40C, kFrench}});
       },
       found(100, kEnglish)},
      {"the first of others",
       [&] {
         return languages({{0x407, kGerman}, {0x40C, kFrench}});
       },
       found(96, kGerman)},
      {"the first in the directory, not the lowest",
       [&] {
         return languages({{0x40C, kFrench}, {0x407, kGerman}});
       },
       found(96, kFrench)},
      {"named languages are no languages",
       [&] {
         return image({versionResource({resourceData(u"en", versionBlock(kEnglish)),
                                        resourceData(0x40Cu, versionBlock(kFrench, 4))})})
             .bytes;
       },
       found(96, kFrench)},
  };
  checkRows(rows);
}

TEST(PeVersionReader, FilesWithoutAVersionBlock) {
  const std::vector<Row> rows = {
      {"resources without RT_VERSION",
       [] {
         return image({resourceDirectory(24u, {resourceDirectory(1u, {resourceData(0u, {1})})})})
             .bytes;
       },
       {}},
      {"RT_VERSION without ID 1",
       [] {
         return image(
                    {resourceDirectory(
                        16u, {resourceDirectory(2u, {resourceData(0u, versionBlock(kNeutral))})})})
             .bytes;
       },
       {}},
      {"ID 1 without languages", [] { return image({versionResource({})}).bytes; }, {}},
      {"no resource directory",
       [] { return damaged([](PeImage& i) { i.put32(i.optionalHeader + 112 + 16, 0); }); },
       {}},
      {"only two data directories",
       [] { return damaged([](PeImage& i) { i.put32(i.optionalHeader + 108, 2); }); },
       {}},
      {"an empty resource",
       [] { return image({versionResource({resourceData(0u, {})})}).bytes; },
       {}},
  };
  checkRows(rows);
}

TEST(PeVersionReader, DamagedAndHostileImagesHaveNoBlock) {
  const auto rootEntryValue = [](PeImage& i, std::size_t entry, uint32_t value) {
    i.put32(i.resourceRoot + 16 + 8 * entry + 4, value);
  };
  const std::vector<Row> rows = {
      {"empty", [] { return std::vector<uint8_t>(); }, {}},
      {"shorter than the DOS header", [] { return plain().firstBytes(0x3C); }, {}},
      {"no MZ", [] { return damaged([](PeImage& i) { i.bytes[1] = 'X'; }); }, {}},
      {"no PE signature",
       [] { return damaged([](PeImage& i) { i.bytes[i.peHeader + 1] = 'X'; }); },
       {}},
      {"PE header offset past the end",
       [] { return damaged([](PeImage& i) { i.put32(0x3C, 0xFFFFFFF0); }); },
       {}},
      {"headers cut short", [] { return plain().firstBytes(200); }, {}},
      {"section table cut short",
       [] {
         const PeImage i = plain();
         return i.firstBytes(i.sectionTable + 60);
       },
       {}},
      {"optional header too small for the resource entry",
       [] { return damaged([](PeImage& i) { i.put16(i.peHeader + 20, 100); }); },
       {}},
      {"unknown optional header",
       [] { return damaged([](PeImage& i) { i.put16(i.optionalHeader, 0x107); }); },
       {}},
      {"resources in no section",
       [] { return damaged([](PeImage& i) { i.put32(i.optionalHeader + 112 + 16, 0x9000); }); },
       {}},
      {"resource directory cut short",
       [] {
         const PeImage i = plain();
         return i.firstBytes(i.resourceRoot + 20);
       },
       {}},
      {"subdirectory past its section",
       [&] { return damaged([&](PeImage& i) { rootEntryValue(i, 0, 0x8000FFF0); }); },
       {}},
      {"directory entry counts beyond the section",
       [] { return damaged([](PeImage& i) { i.put16(i.resourceRoot + 14, 0xFFFF); }); },
       {}},
      // Types 1 and 16 of the root both lead back to the root: the path 16, 1 then meets a
      // directory where it expects data.
      {"a directory that contains itself",
       [&] {
         PeImage i = image({resourceDirectory(1u, {}),
                            versionResource({resourceData(0u, versionBlock(kNeutral))})});
         rootEntryValue(i, 0, 0x80000000);
         rootEntryValue(i, 1, 0x80000000);
         return i.bytes;
       },
       {}},
      {"data where a directory belongs",
       [] { return image({resourceData(16u, versionBlock(kNeutral))}).bytes; },
       {}},
      {"a directory where data belongs",
       [] {
         return image({versionResource(
                          {resourceDirectory(0u, {resourceData(0u, versionBlock(kNeutral))})})})
             .bytes;
       },
       {}},
      {"data entry pointing past the file",
       [] { return damaged([](PeImage& i) { i.put32(i.dataEntries[0], 0x3000 + 0x0FF0); }); },
       {}},
      {"data entry longer than the file",
       [] { return damaged([](PeImage& i) { i.put32(i.dataEntries[0] + 4, 0x7FFFFFFF); }); },
       {}},
      // The file goes on after the section with a copy of the block where the RVA would lead
      // if the section's raw data were longer.
      {"data only in memory, beyond the section's bytes in the file",
       [] {
         return damaged([](PeImage& i) {
           const std::vector<uint8_t> block(i.bytes.begin() + i.data[0],
                                            i.bytes.begin() + i.data[0] + 192);
           i.bytes.resize(0x600 + 0x400);
           i.bytes.insert(i.bytes.end(), block.begin(), block.end());
           i.put32(i.sectionTable + 40 + 8, 0x10000);  // virtual size of .rsrc
           i.put32(i.dataEntries[0], 0x3000 + 0x400);
         });
       },
       {}},
      {"file cut inside the block",
       [] {
         const PeImage i = plain();
         return i.firstBytes(i.data[0] + 60);
       },
       {}},
  };
  checkRows(rows);
}

// The size call finds the resource; only the fixed information is refused.
TEST(PeVersionReader, BlocksWithoutValidFixedInformation) {
  const std::vector<Row> rows = {
      {"wLength beyond the resource",
       [] { return damaged([](PeImage& i) { i.put16(i.data[0], 192 + 4); }); },
       foundWithoutFixedInfo(192)},
      {"wLength short of the fixed information",
       [] { return damaged([](PeImage& i) { i.put16(i.data[0], 91); }); },
       foundWithoutFixedInfo(192)},
      {"no value", [] { return damaged([](PeImage& i) { i.put16(i.data[0] + 2, 0); }); },
       foundWithoutFixedInfo(192)},
      {"another key", [] { return damaged([](PeImage& i) { i.bytes[i.data[0] + 34] = 'X'; }); },
       foundWithoutFixedInfo(192)},
      {"key without its terminator",
       [] { return damaged([](PeImage& i) { i.bytes[i.data[0] + 36] = 'X'; }); },
       foundWithoutFixedInfo(192)},
      {"no signature", [] { return damaged([](PeImage& i) { i.bytes[i.data[0] + 40] = 0xBE; }); },
       foundWithoutFixedInfo(192)},
      {"resource smaller than the fixed information",
       [] {
         std::vector<uint8_t> block = versionBlock(kNeutral);
         block.resize(60);
         block[0] = 60;
         return image({versionResource({resourceData(0u, block)})}).bytes;
       },
       foundWithoutFixedInfo(60)},
  };
  checkRows(rows);
}

TEST(PeVersionReader, PathsThatAreNoImages) {
  TemporaryFolder folder;
  const PeImage valid = plain();
  const struct {
    const char* name;
    fs::path path;
  } rows[] = {
      {"missing", folder.path() / "missing.dll"},
      {"a folder", folder.path()},
      {"empty", folder.write("empty.dll", {})},
      {"text", folder.write("text.dll", {'M', 'Z', ' ', 'i', 's', ' ', 'n', 'o', 't', '\n'})},
      {"ELF", folder.write("elf.so", {0x7F, 'E', 'L', 'F', 2, 1, 1, 0})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(readPeVersionResource(row.path), VersionResource{});
  }
  // The same image under a name outside ASCII reads as under a plain one.
  EXPECT_EQ(readPeVersionResource(folder.write(u8"versi\u00F3n_\u0416.dll", valid.bytes)),
            found(192, kNeutral));
}

// Only the headers and what the walk leads to are read: a file far larger than memory allows
// with its image at the head reads like the image alone. The file is sparse.
TEST(PeVersionReader, ReadsOnlyWhatTheWalkNeeds) {
  TemporaryFolder folder;
  const fs::path file = folder.write("large.dll", plain().bytes);
  std::error_code error;
  fs::resize_file(file, uint64_t{64} << 30, error);
  if (error) GTEST_SKIP() << "no room for a sparse file: " << error.message();
  EXPECT_EQ(readPeVersionResource(file), found(192, kNeutral));
}

// --- The DLLs of Debian's Wine packages ---

const fs::path kWine = "/usr/lib/x86_64-linux-gnu/wine";

std::vector<uint8_t> fileBytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

TEST(PeVersionReaderWine, KnownFiles) {
  if (!fs::exists(kWine / "x86_64-windows" / "kernel32.dll")) {
    GTEST_SKIP() << "Wine's Windows DLLs are not installed";
  }
  struct Expected {
    const char* file;
    uint32_t blockSize;  // the data entry's size, language 0, else 0x409
    uint32_t fileVersionMS, fileVersionLS, productVersionMS, productVersionLS;
    uint32_t fileOS;
  };
  const Expected rows[] = {
      {"x86_64-windows/kernel32.dll", 868, 0x000A0000, 0x47BA0546, 0x000A0000, 0x47BA0546, 0},
      {"x86_64-windows/advapi32.dll", 880, 0x000A0000, 0x28004000, 0x000A0000, 0x28004000, 0},
      {"x86_64-windows/version.dll", 860, 0x00050001, 0x0A280884, 0x00050001, 0x0A280884, 0},
      {"x86_64-windows/ntdll.dll", 852, 0x00060001, 0x1DB15DFB, 0x00060001, 0x1DB15DFB, 0},
      {"x86_64-windows/msvcrt.dll", 832, 0x00070000, 0x0A280884, 0x00010000, 0x00000000, 0},
      {"i386-windows/zlib1.dll", 820, 0x00010002, 0x000D0000, 0x00010002, 0x000D0000, 4},
  };
  for (const Expected& row : rows) {
    SCOPED_TRACE(row.file);
    const VersionResource resource = readPeVersionResource(kWine / row.file);
    ASSERT_TRUE(resource.fixedInfo.has_value());
    const FixedFileInfo& words = *resource.fixedInfo;
    EXPECT_EQ(resource.size, 2 * row.blockSize + 4);
    EXPECT_EQ(words[0], kFixedFileInfoSignature);
    EXPECT_EQ(words[1], 0x00010000u);
    EXPECT_EQ(words[2], row.fileVersionMS);
    EXPECT_EQ(words[3], row.fileVersionLS);
    EXPECT_EQ(words[4], row.productVersionMS);
    EXPECT_EQ(words[5], row.productVersionLS);
    EXPECT_EQ(words[6], 0x3Fu);
    EXPECT_EQ(words[8], row.fileOS);
    EXPECT_EQ(words[9], 2u);
    EXPECT_EQ(words[11], 0u);
    EXPECT_EQ(words[12], 0u);
  }
  for (const char* file :
       {"x86_64-windows/notepad.exe", "x86_64-windows/acledit.dll", "x86_64-unix/ntdll.so"}) {
    SCOPED_TRACE(file);
    EXPECT_EQ(readPeVersionResource(kWine / file), VersionResource{});
  }
}

// Pieces and alterations of kernel32.dll, whose resources lie at RVA 0x54000 but file offset
// 0x53000.
TEST(PeVersionReaderWine, DamagedKernel32) {
  const fs::path file = kWine / "x86_64-windows" / "kernel32.dll";
  if (!fs::exists(file)) GTEST_SKIP() << "Wine's Windows DLLs are not installed";
  const std::vector<uint8_t> whole = fileBytes(file);
  const auto first = [&whole](std::size_t count) {
    return std::vector<uint8_t>(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
  };
  const VersionResource full = readPeVersionResource(std::span<const uint8_t>(whole));
  ASSERT_TRUE(full.fixedInfo.has_value());
  // The chosen block is language 0x409's, at RVA 0x59F64: it ends at file offset 0x58F64 + 868.
  EXPECT_EQ(readPeVersionResource(std::span<const uint8_t>(first(0x58F64 + 868))), full);
  std::vector<uint8_t> noPe = whole;
  noPe[whole[0x3C] | whole[0x3D] << 8] = 'X';
  const std::vector<uint8_t> none[] = {first(0x3C), first(200), first(0x53008),
                                       first(0x58F64 + 867), noPe};
  for (const std::vector<uint8_t>& bytes : none) {
    SCOPED_TRACE(bytes.size());
    EXPECT_EQ(readPeVersionResource(std::span<const uint8_t>(bytes)), VersionResource{});
  }
}

// Every file of the 64-bit folder reads without harm; how many have a block is reported.
TEST(PeVersionReaderWine, WholeFolder) {
  const fs::path folder = kWine / "x86_64-windows";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "Wine's Windows DLLs are not installed";
  int files = 0;
  int blocks = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const VersionResource resource = readPeVersionResource(entry.path());
    ++files;
    if (resource.size != 0) {
      ++blocks;
      EXPECT_TRUE(resource.fixedInfo.has_value()) << entry.path();
    }
  }
  std::cout << files << " files, " << blocks << " with a version block\n";
  EXPECT_GT(blocks, 0);
}

}  // namespace
}  // namespace ravelin::platform

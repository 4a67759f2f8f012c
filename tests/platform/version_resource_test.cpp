// The version resources of the system running the test, on images written here (the version
// library on Windows, the portable reader elsewhere); the fake that callers' tests put in place;
// and, under Wine, the portable reader against Wine's own version library on every file of Wine's
// Windows folders.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <ravelin/platform/fake/version_resource_fake.hpp>
#include <ravelin/platform/pe_version_reader.hpp>
#include <ravelin/platform/version_resource.hpp>
#include <ravelin/tests/support/pe_image.hpp>
#include <ravelin/tests/support/wine.hpp>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace ravelin::platform {
namespace {

namespace fs = std::filesystem;
using pe_image::fixedInfoOf;
using pe_image::resourceData;
using pe_image::resourceDirectory;
using pe_image::versionBlock;
using pe_image::versionResource;

class VersionResourcesNative : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ =
        fs::temp_directory_path() / ("ravelin_version_" + std::to_string(std::random_device()()));
    fs::create_directories(folder_);
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  fs::path write(const fs::path& name, const std::vector<uint8_t>& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return folder_ / name;
  }

  static std::vector<uint8_t> image(std::vector<pe_image::ResourceNode> resources,
                                    bool pe32Plus = true) {
    pe_image::PeImageOptions options;
    options.pe32Plus = pe32Plus;
    options.resources = std::move(resources);
    return pe_image::buildPeImage(options).bytes;
  }

  std::shared_ptr<VersionResources> native_ = VersionResources::makeNative();
  fs::path folder_;
};

TEST_F(VersionResourcesNative, ImagesWrittenHere) {
  const FixedFileInfo dll64 = fixedInfoOf(1, 4, 0, 6);
  const FixedFileInfo dll32 = fixedInfoOf(7, 10, 3, 65535);
  struct Row {
    const char* name;
    fs::path path;
    std::optional<FixedFileInfo> fixedInfo;
    uint32_t resourceSize;  // of the version resource; the size reported is at least this
  };
  const Row rows[] = {
      {"PE32+",
       write("a64.dll", image({versionResource({resourceData(0u, versionBlock(dll64, 200))})})),
       dll64, 292},
      {"PE32",
       write("a32.dll",
             image({versionResource({resourceData(0x409u, versionBlock(dll32))})}, false)),
       dll32, 92},
      {"no version resource",
       write("none.dll",
             image({resourceDirectory(24u, {resourceDirectory(1u, {resourceData(0u, {1})})})})),
       std::nullopt, 0},
      {"missing", folder_ / "missing.dll", std::nullopt, 0},
      {"a folder", folder_, std::nullopt, 0},
      {"text", write("notes.txt", {'v', 'e', 'r', 's', 'i', 'o', 'n', '\n'}), std::nullopt, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const VersionResource resource = native_->read(row.path);
    EXPECT_EQ(resource.fixedInfo, row.fixedInfo);
    if (row.fixedInfo) {
      EXPECT_GE(resource.size, row.resourceSize);
    } else {
      EXPECT_EQ(resource.size, 0u);
    }
  }
}

// A name of Cyrillic, Thai and Chinese letters, which no ANSI code page holds together: Windows'
// version library, reached through the ANSI functions, cannot name the file, so it has no block.
// Elsewhere names are bytes and the file reads.
TEST_F(VersionResourcesNative, NameOutsideTheAnsiCodePage) {
  const FixedFileInfo fixedInfo = fixedInfoOf(2, 5, 0, 1);
  const fs::path file =
      write(fs::path(u8"\u0416\u0E01\u4E2D.dll"),
            image({versionResource({resourceData(0u, versionBlock(fixedInfo))})}));
  // The file is there and holds a block: the portable reader, which takes wide names, finds it.
  ASSERT_EQ(readPeVersionResource(file).fixedInfo, fixedInfo);
#if defined(_WIN32)
  if (GetACP() == CP_UTF8) GTEST_SKIP() << "the ANSI code page is UTF-8, which spells every name";
  EXPECT_EQ(native_->read(file), VersionResource{});
#else
  EXPECT_EQ(native_->read(file).fixedInfo, fixedInfo);
#endif
}

TEST(FakeVersionResources, AnswersAsSetAndRecordsWhatWasAsked) {
  ScopedFake<FakeVersionResources> scoped;
  FakeVersionResources& fake = scoped.fake();
  const FixedFileInfo fixedInfo = fixedInfoOf(1, 2, 3, 4);
  fake.setFixedInfo("C:/till/pos.exe", fixedInfo, 500);
  fake.set("/bad.dll", VersionResource{64, std::nullopt});

  const std::shared_ptr<VersionResources> installed = versionResources();
  EXPECT_EQ(installed->read("C:/till/pos.exe"), (VersionResource{1004, fixedInfo}));
  EXPECT_EQ(installed->read("/bad.dll"), (VersionResource{64, std::nullopt}));
  EXPECT_EQ(installed->read("C:/till/POS.exe"), VersionResource{});
  fake.remove("C:/till/pos.exe");
  EXPECT_EQ(installed->read("C:/till/pos.exe"), VersionResource{});
  EXPECT_EQ(fake.reads(), (std::vector<fs::path>{"C:/till/pos.exe", "/bad.dll", "C:/till/POS.exe",
                                                 "C:/till/pos.exe"}));
}

// Under Wine, GetFileVersionInfoA is Wine's: it and the portable reader must agree on whether each
// file has a block, on every word of its fixed information, and (Wine asking for twice the
// resource plus 4 bytes, as the reader reports) on the size.
TEST(VersionResourcesWine, PortableReaderAgreesWithTheVersionLibrary) {
  if (!runningUnderWine()) GTEST_SKIP() << "not running under Wine";
  const std::shared_ptr<VersionResources> native = VersionResources::makeNative();
  int files = 0;
  int dlls = 0;
  int blocks = 0;
  for (const char* folder : {"x86_64-windows", "i386-windows"}) {
    const fs::path path = fs::path("Z:\\usr\\lib\\x86_64-linux-gnu\\wine") / folder;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(path, error)) {
      SCOPED_TRACE(entry.path().string());
      const VersionResource portable = readPeVersionResource(entry.path());
      const VersionResource windows = native->read(entry.path());
      ++files;
      if (entry.path().extension() == ".dll") ++dlls;
      EXPECT_EQ(portable.size != 0, windows.size != 0);
      EXPECT_EQ(portable.fixedInfo, windows.fixedInfo);
      EXPECT_EQ(portable.size, windows.size);
      if (windows.size != 0) ++blocks;
    }
  }
  std::cout << "compared " << files << " files (" << dlls << " DLLs), " << blocks
            << " with a version block\n";
  if (files == 0) GTEST_SKIP() << "Wine's Windows DLLs are not installed";
}

}  // namespace
}  // namespace ravelin::platform

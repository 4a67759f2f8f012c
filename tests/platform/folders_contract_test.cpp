// The reading of the desktop's user-dirs file, the buffer protocol of the folder calls against
// the fake and the native implementation, and the native folders on a temporary home (POSIX).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <ravelin/platform/fake/folders_fake.hpp>
#include <ravelin/platform/folders.hpp>
#include <string>

#if !defined(_WIN32)
#include <stdlib.h>
#include <unistd.h>
#endif

namespace ravelin::platform {
namespace {

TEST(UserDirectoryFromTextTest, ReadsQuotedHomeAndAbsoluteValuesOnly) {
  constexpr std::string_view kEntry = "XDG_DOCUMENTS_DIR";
  const struct {
    const char* text;
    std::optional<std::string> expected;
  } rows[] = {
      {"XDG_DOCUMENTS_DIR=\"$HOME/Meus Documentos\"\n", "/home/ana/Meus Documentos"},
      {"XDG_DOCUMENTS_DIR=\"/srv/docs/\"", "/srv/docs"},
      {"  XDG_DOCUMENTS_DIR = \"$HOME\"  # trailing words", "/home/ana"},
      {"XDG_DOCUMENTS_DIR=$HOME/Documents", std::nullopt},  // unquoted
      {"XDG_DOCUMENTS_DIR=\"Documents\"", std::nullopt},    // relative
      {"XDG_DOCUMENTS_DIR=\"~/Documents\"", std::nullopt},  // not expanded by the rules
      {"XDG_DOCUMENTS_DIR=\"$HOMEWORK/x\"", std::nullopt},  // $HOME must end there
      {"XDG_DOCUMENTS_DIR=\"/unterminated", std::nullopt},
      {"# XDG_DOCUMENTS_DIR=\"/commented\"", std::nullopt},
      {"XDG_DESKTOP_DIR=\"$HOME/Desktop\"\n", std::nullopt},  // another entry
      {"XDG_DOCUMENTS_DIR_OLD=\"/x\"", std::nullopt},
      {"XDG_DOCUMENTS_DIR=\"/first\"\r\nXDG_DOCUMENTS_DIR=\"/second\"\n", "/second"},
      {"XDG_DOCUMENTS_DIR=\"/kept\"\nXDG_DOCUMENTS_DIR=bad\n", "/kept"},
      {"XDG_DOCUMENTS_DIR=\"/a \\\"b\\\"\"", "/a \\"},  // no unescaping: the value ends at a quote
      {"", std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(userDirectoryFromText(row.text, kEntry, "/home/ana"), row.expected) << row.text;
  }
}

class FoldersContractTest
    : public testing::TestWithParam<std::pair<const char*, std::shared_ptr<FolderSystem> (*)()>> {};

// A buffer too small gets nothing and the size needed; a large one the text and its length.
TEST_P(FoldersContractTest, BufferCallsReportTheLengthOrTheSizeNeeded) {
  const std::shared_ptr<FolderSystem> folders = GetParam().second();
  for (auto call : {&FolderSystem::systemDirectory, &FolderSystem::tempPath}) {
    const FolderCall whole = (folders.get()->*call)(4096);
    ASSERT_GT(whole.count, 0u);
    EXPECT_EQ(whole.text.size(), whole.count);
    const FolderCall cut = (folders.get()->*call)(whole.count);
    EXPECT_EQ(cut.count, whole.count + 1);
    EXPECT_TRUE(cut.text.empty());
    EXPECT_EQ((folders.get()->*call)(whole.count + 1).text, whole.text);
  }
  const String temp = folders->tempPath(4096).text;
  EXPECT_TRUE(temp.back() == u'/' || temp.back() == u'\\') << toUtf8(temp);
  EXPECT_FALSE(folders->libraryFolder().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Implementations, FoldersContractTest,
    testing::Values(
        std::pair{"fake", +[] { return std::shared_ptr<FolderSystem>(new FakeFolderSystem); }},
        std::pair{"native", +[] { return std::shared_ptr(FolderSystem::makeNative()); }}),
    [](const auto& info) { return std::string(info.param.first); });

#if !defined(_WIN32)

// Sets environment variables for one test and puts the old values back.
class ScopedVariables {
 public:
  void set(const char* name, const std::string& value) {
    remember(name);
    ::setenv(name, value.c_str(), 1);
  }
  void unset(const char* name) {
    remember(name);
    ::unsetenv(name);
  }
  ~ScopedVariables() {
    for (const auto& [name, value] : saved_) {
      if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
      } else {
        ::unsetenv(name.c_str());
      }
    }
  }

 private:
  void remember(const char* name) {
    const char* value = std::getenv(name);
    saved_.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
  }
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

class NativeFoldersTest : public testing::Test {
 protected:
  void SetUp() override {
    home_ =
        std::filesystem::temp_directory_path() / ("ravelin-folders-" + std::to_string(::getpid()));
    std::filesystem::create_directories(home_ / ".config");
    variables_.set("HOME", home_.string());
    variables_.unset("XDG_CONFIG_HOME");
  }
  void TearDown() override { std::filesystem::remove_all(home_); }

  void writeUserDirs(const std::filesystem::path& folder, const std::string& text) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "user-dirs.dirs") << text;
  }
  String documents() {
    return FolderSystem::makeNative()->specialFolder(SpecialFolder::personal).value_or(u"-");
  }

  std::filesystem::path home_;
  ScopedVariables variables_;
};

TEST_F(NativeFoldersTest, DocumentsComeFromTheUserDirsFileOrAreTheHomeFolder) {
  const String home = fromUtf8(home_.string());
  EXPECT_EQ(documents(), home);  // no file

  writeUserDirs(home_ / ".config", "XDG_DOCUMENTS_DIR=\"$HOME/Meus Documentos\"\n");
  EXPECT_EQ(documents(), home + u"/Meus Documentos");

  writeUserDirs(home_ / ".config", "XDG_DOCUMENTS_DIR=~/Documents\n");
  EXPECT_EQ(documents(), home);

  // XDG_CONFIG_HOME moves the file.
  writeUserDirs(home_ / "cfg", "XDG_DOCUMENTS_DIR=\"/srv/d\xC3\xB6\"\n");
  variables_.set("XDG_CONFIG_HOME", (home_ / "cfg").string());
  EXPECT_EQ(documents(), u"/srv/d\u00F6");
}

TEST_F(NativeFoldersTest, FixedFoldersTemporaryFolderAndLibraryFolder) {
  const auto folders = FolderSystem::makeNative();
  EXPECT_EQ(folders->specialFolder(SpecialFolder::programFiles), u"/opt");
  EXPECT_EQ(folders->specialFolder(SpecialFolder::commonAppData), u"/var/lib");
  variables_.unset("RAVELIN_COMMON_DOCUMENTS");
  EXPECT_EQ(folders->specialFolder(SpecialFolder::commonDocuments), std::nullopt);
  variables_.set("RAVELIN_COMMON_DOCUMENTS", "/srv/shared/");
  EXPECT_EQ(folders->specialFolder(SpecialFolder::commonDocuments), u"/srv/shared");
  variables_.set("RAVELIN_COMMON_DOCUMENTS", "/" + std::string(300, 'x'));
  EXPECT_EQ(folders->specialFolder(SpecialFolder::commonDocuments), std::nullopt);

  variables_.set("TMPDIR", "/var/tmp/");
  EXPECT_EQ(folders->tempPath(255).text, u"/var/tmp/");
  variables_.unset("TMPDIR");
  EXPECT_EQ(folders->tempPath(255).text, u"/tmp/");

  // Linked into this test program, the library's folder is the program's.
  EXPECT_EQ(folders->libraryFolder(),
            fromUtf8(std::filesystem::read_symlink("/proc/self/exe").parent_path().string()));
  const std::filesystem::path system = toUtf8(folders->systemDirectory(255).text);
  EXPECT_TRUE(system.is_absolute());
  EXPECT_TRUE(std::filesystem::exists(system / "libc.so.6")) << system;
}

#endif

}  // namespace
}  // namespace ravelin::platform

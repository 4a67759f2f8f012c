// FileSystem: the exact text rules, the special folders over a fake folder system with real
// subfolders in a temporary tree, folder chains, and the machine and network members.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ravelin/files/file_system.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/fake/folders_fake.hpp>
#include <ravelin/platform/fake/machine_fake.hpp>
#include <ravelin/platform/fake/paths_fake.hpp>
#include <ravelin/platform/fake/version_resource_fake.hpp>
#include <ravelin/platform/paths.hpp>
#include <ravelin/platform/profile.hpp>
#include <string>

namespace ravelin {
namespace {

TEST(FileSystemTextRules, AddBackSlashSameExtensionAndValidName) {
  FileSystem files;
  const std::pair<const char16_t*, const char16_t*> backslashRows[] = {
      {u"", u"\\"},
      {u"   ", u"\\"},
      {u" C:\\Data ", u"C:\\Data\\"},
      {u"C:\\", u"C:\\"},
      {u"/srv/till", u"/srv/till\\"},
      {u"\tx", u"\tx\\"},
  };
  for (const auto& [value, expected] : backslashRows) {
    EXPECT_EQ(files.AddBackSlashToStringOnNeed(value), expected) << toUtf8(value);
  }

  const struct {
    const char16_t* name;
    const char16_t* pattern;
    bool same;
  } extensionRows[] = {
      {u"report.TXT", u"*.txt", true},
      {u"report", u"*.txt", false},
      {u"A.B", u"a.b", true},
      {u"a.tar.gz", u"*.gz", true},
      {u"a.gz.tar", u"*.gz", false},
      {u"a.txt", u"txt", false},  // no "*" in the pattern
      {u"a.txt", u"a*.txt", true},
      {u"a.", u"*.", true},
      {u"a.txt", u"*", false},
      {u"a.txt", u"*xtxt", true},  // the character after "*"
      {u"", u"", true},
      {u"x.TxT", u"*.*", false},  // no wildcard extension
  };
  for (const auto& row : extensionRows) {
    EXPECT_EQ(files.SameFileExtension(row.name, row.pattern), row.same)
        << toUtf8(row.name) << " " << toUtf8(row.pattern);
  }

  const std::pair<const char16_t*, bool> nameRows[] = {
      {u"", true},          {u"prices.dbf", true}, {u"a,b.txt", false}, {u"a<b", false},
      {u"a>b", false},      {u"c:x", false},       {u"a/b", false},     {u"a\\b", false},
      {u"a|b", false},      {u"a?", false},        {u"*.txt", false},   {u"say\"hi\"", false},
      {u"..hidden", false}, {u"name..", false},    {u".profile", true}, {u"com1", false},
      {u"CON", false},      {u"nul", false},       {u"Lpt9", false},    {u"COM10", true},
      {u"CONSOLE", true},   {u"con.txt", true},    {u"name.", false},   {u"name ", false},
      {u" name", true},     {u"caf\u00E9", true},
  };
  for (const auto& [name, valid] : nameRows) {
    EXPECT_EQ(files.ValidFileName(name), valid) << toUtf8(name);
  }
}

class FileSystemFoldersTest : public testing::Test {
 protected:
  void SetUp() override {
    root_ = std::filesystem::temp_directory_path() /
            ("ravelin-file-system-" +
             std::to_string(std::hash<std::string>{}(
                 testing::UnitTest::GetInstance()->current_test_info()->name())));
    std::filesystem::remove_all(root_);
    std::filesystem::create_directories(root_ / "docs");
    std::filesystem::create_directories(root_ / "data");
  }
  void TearDown() override { std::filesystem::remove_all(root_); }

  String native(const std::filesystem::path& path) const { return platform::fromNativePath(path); }

  std::filesystem::path root_;
  platform::ScopedFake<platform::FakeFolderSystem> folders_;
};

TEST_F(FileSystemFoldersTest, EachMemberAsksForItsFolderAndJoinsItsSubfolder) {
  using platform::SpecialFolder;
  FileSystem files;
  const String docs = native(root_ / "docs");
  const String data = native(root_ / "data");
  const String separator(1, platform::separatorFor(docs));
  folders_.fake().setSpecialFolder(SpecialFolder::personal, docs);
  folders_.fake().setSpecialFolder(SpecialFolder::commonDocuments, docs);
  folders_.fake().setSpecialFolder(SpecialFolder::programFiles, u"C:\\Program Files");
  folders_.fake().setSpecialFolder(SpecialFolder::programFilesCommon,
                                   u"C:\\Program Files\\Common Files");
  folders_.fake().setSpecialFolder(SpecialFolder::commonAppData, data);

  const struct {
    const char* member;
    String result;
    String expected;
  } rows[] = {
      {"GetUserDirectory", files.GetUserDirectory(), docs},
      {"GetUserMyDocumentsDirectory", files.GetUserMyDocumentsDirectory(u"Till"),
       docs + separator + u"Till"},
      {"GetUserMyDocumentsDirectory empty", files.GetUserMyDocumentsDirectory(u""), docs},
      {"GetCommonDocumentsDirectory", files.GetCommonDocumentsDirectory(u"Shop"),
       docs + separator + u"Shop"},
      {"GetCommonDocumentsDirectory empty", files.GetCommonDocumentsDirectory(), docs},
      {"GetProgramFilesDirectory", files.GetProgramFilesDirectory(), u"C:\\Program Files"},
      {"GetProgramFilesCommonDirectory", files.GetProgramFilesCommonDirectory(),
       u"C:\\Program Files\\Common Files"},
      {"GetAllUserAppDataDirectory", files.GetAllUserAppDataDirectory(), data},
      {"GetAllUserAppDataDirectoryForQuillmark",
       files.GetAllUserAppDataDirectoryForQuillmark(u"Till"), data + separator + u"Till"},
      // This member alone joins an empty name, leaving a separator at the end.
      {"GetAllUserAppDataDirectoryForQuillmark empty",
       files.GetAllUserAppDataDirectoryForQuillmark(u""), data + separator},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.result, row.expected) << row.member;
  // The subfolders were created, one level each.
  EXPECT_TRUE(std::filesystem::is_directory(root_ / "docs" / "Till"));
  EXPECT_TRUE(std::filesystem::is_directory(root_ / "docs" / "Shop"));
  EXPECT_TRUE(std::filesystem::is_directory(root_ / "data" / "Till"));
}

TEST_F(FileSystemFoldersTest, WithoutASystemFolderTheLibraryFolderIsUsedAsItIs) {
  using platform::SpecialFolder;
  FileSystem files;
  folders_.fake().setLibraryFolder(native(root_));
  folders_.fake().setSpecialFolder(SpecialFolder::personal, u"   ");  // blank counts as none
  EXPECT_EQ(files.GetUserMyDocumentsDirectory(u"Till"), native(root_));
  EXPECT_EQ(files.GetAllUserAppDataDirectoryForQuillmark(u"Till"), native(root_));
  EXPECT_FALSE(std::filesystem::exists(root_ / "Till"));  // nothing joined, nothing created
}

TEST_F(FileSystemFoldersTest, ASubfolderThatCannotBeCreatedGivesAnEmptyText) {
  // A file stands where the folder's parent should be.
  std::ofstream(root_ / "plain") << "x";
  folders_.fake().setSpecialFolder(platform::SpecialFolder::personal, native(root_ / "plain"));
  FileSystem files;
  EXPECT_EQ(files.GetUserMyDocumentsDirectory(u"Till"), u"");
  EXPECT_EQ(files.GetUserDirectory(), native(root_ / "plain"));
}

TEST_F(FileSystemFoldersTest, SystemAndTemporaryFoldersKeepTheBufferRules) {
  FileSystem files;
  folders_.fake().setSystemDirectory(u"C:\\WINDOWS\\system32");
  folders_.fake().setTempPath(u"C:\\Users\\ana\\AppData\\Local\\Temp\\");
  EXPECT_EQ(files.GetSystemDirectory(), u"C:\\WINDOWS\\system32");
  EXPECT_EQ(files.GetTempDirectory(), u"C:\\Users\\ana\\AppData\\Local\\Temp\\");
  // Too long for the 255-character buffers: the system folder is the untouched buffer of
  // spaces, the temporary folder the untouched buffer of nulls.
  folders_.fake().setSystemDirectory(u"C:\\" + String(300, u'x'));
  folders_.fake().setTempPath(u"C:\\" + String(300, u'x') + u"\\");
  EXPECT_EQ(files.GetSystemDirectory(), String(255, u' '));
  EXPECT_EQ(files.GetTempDirectory(), u"");
  folders_.fake().setSystemDirectory(String(254, u'y'));  // exactly fits with its null
  EXPECT_EQ(files.GetSystemDirectory(), String(254, u'y'));
}

TEST_F(FileSystemFoldersTest, MakeDirectoriesCreatesTheWholeChain) {
  FileSystem files;
  const std::filesystem::path deep = root_ / "a" / "b c" / "d\u00E9";
  EXPECT_TRUE(files.MakeDirectories(native(deep)));
  EXPECT_TRUE(std::filesystem::is_directory(deep));
  EXPECT_TRUE(files.MakeDirectories(native(deep)));  // already there
  std::ofstream(root_ / "file") << "x";
  EXPECT_FALSE(files.MakeDirectories(native(root_ / "file" / "sub")));
  EXPECT_FALSE(std::filesystem::exists(root_ / "file" / "sub"));
}

std::string fileBytes(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// INI values through the real profile functions: the value trimmed, texts in the ANSI code page,
// the 511-character cut, the default for a missing key, names in both path forms.
TEST_F(FileSystemFoldersTest, IniValuesRoundTripInTheAnsiCodePage) {
  FileSystem files;
  ScopedLocale locale(u"pt-BR");  // code page 1252
  const String ini = native(root_ / "till.ini");
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Printer", u"  EPSON TM-T20  ", ini));
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Caixa", u"Jo\u00E3o \u20AC \u0416", ini));
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Long", String(600, u'x'), ini));
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Empty", u"", ini));
  // The euro sign is in code page 1252 (0x80); the Cyrillic letter is not and becomes "?".
  EXPECT_EQ(fileBytes(root_ / "till.ini"),
            "[Till]\r\nPrinter=EPSON TM-T20\r\nCaixa=Jo\xE3o \x80 ?\r\nLong=" +
                std::string(600, 'x') + "\r\nEmpty=\r\n");

  const struct {
    const char16_t* section;
    const char16_t* key;
    const char16_t* defaultValue;
    String expected;
  } rows[] = {
      {u"till", u"PRINTER", u"none", u"EPSON TM-T20"},
      {u"Till", u"Caixa", u"", u"Jo\u00E3o \u20AC ?"},
      {u"Till", u"Long", u"", String(511, u'x')},
      {u"Till", u"Empty", u"none", u""},  // an empty value is not missing
      {u"Till", u"Scale", u"none", u"none"},
      {u"Till", u"Scale", u"", u""},
      {u"Till", u"Scale", u"d  ", u"d"},  // the default loses its trailing spaces
      {u"Other", u"Printer", u"none", u"none"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(files.ReadINIString(row.section, row.key, row.defaultValue, ini), row.expected)
        << toUtf8(row.key);
  }
  EXPECT_EQ(files.ReadINIString(u"Till", u"Printer", u"none", native(root_ / "missing.ini")),
            u"none");
  EXPECT_FALSE(files.WriteINIString(u"Till", u"Printer", u"x", native(root_ / "no" / "t.ini")));
}

TEST_F(FileSystemFoldersTest, IniNamesInTheWindowsFormAndBareNames) {
  if (platform::separatorFor(u"/x") == u'\\') GTEST_SKIP() << "one path form only";
  platform::ScopedFake<platform::FakePathSystem> paths;
  paths.fake().setDrive("T:", root_.string());
  FileSystem files;
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Drawer", u"COM3", u"t:\\sub\\..\\till.ini"));
  EXPECT_TRUE(std::filesystem::exists(root_ / "till.ini"));
  EXPECT_EQ(files.ReadINIString(u"Till", u"Drawer", u"", native(root_ / "till.ini")), u"COM3");
  // A drive the map lacks names no file: the default, and no write.
  EXPECT_EQ(files.ReadINIString(u"Till", u"Drawer", u"none", u"Q:\\till.ini"), u"none");
  EXPECT_FALSE(files.WriteINIString(u"Till", u"Drawer", u"COM3", u"Q:\\till.ini"));

  // A bare name is a file of the profile folder.
  platform::setProfileFolder(root_ / "windows");
  EXPECT_TRUE(files.WriteINIString(u"Till", u"Drawer", u"COM4", u"till.ini"));
  platform::setProfileFolder({});
  EXPECT_EQ(fileBytes(root_ / "windows" / "till.ini"), "[Till]\r\nDrawer=COM4\r\n");
}

// The machine members over a fake machine: the 16-character buffer, the exact answer 1 of the
// network test, and readiness of the drive that holds a folder.
TEST_F(FileSystemFoldersTest, MachineNameNetworkPathsAndDriveReadiness) {
  platform::ScopedFake<platform::FakeMachineSystem> machine;
  FileSystem files;
  const struct {
    std::optional<std::string> host;
    const char16_t* expected;
  } names[] = {
      {"till-01.shop.example", u"till-01"},
      {"fifteen-chars-x", u"fifteen-chars-x"},
      {"sixteen-chars-xy", u""},  // does not fit 16 with its null
      {std::nullopt, u""},
  };
  for (const auto& row : names) {
    machine.fake().setHostName(row.host);
    EXPECT_EQ(files.CurrentMachineName(), row.expected);
  }

  machine.fake().setNetworkPathAnswer(u"\\\\server\\share\\prices.dbf", 1);
  machine.fake().setNetworkPathAnswer(u"N:\\prices.dbf", 2);  // non-zero but not 1
  machine.fake().setNetworkPathAnswer(u"C:\\prices.dbf", 0);
  EXPECT_TRUE(files.IsPathNetworkPath(u"\\\\server\\share\\prices.dbf"));
  EXPECT_FALSE(files.IsPathNetworkPath(u"N:\\prices.dbf"));
  EXPECT_FALSE(files.IsPathNetworkPath(u"C:\\prices.dbf"));

  const String drive = files.MyFso()->GetDriveName(native(root_));
  ASSERT_FALSE(drive.empty());
  const auto driveFacts = [&](int32_t type, bool ready) {
    platform::DriveFacts facts;
    facts.path = drive;
    facts.driveType = type;
    facts.isReady = ready;
    return facts;
  };
  machine.fake().addDrive(driveFacts(2, true));
  EXPECT_TRUE(files.IsNetworkPathAvailable(native(root_ / "docs")));
  EXPECT_FALSE(files.IsNetworkPathAvailable(u""));
  EXPECT_TRUE(files.MakeDirectories(native(root_ / "x" / "y")));

  machine.fake().removeDrive(drive);
  machine.fake().addDrive(driveFacts(3, false));  // a share that does not answer
  EXPECT_FALSE(files.IsNetworkPathAvailable(native(root_ / "docs")));
  EXPECT_FALSE(files.MakeDirectories(native(root_ / "z" / "y")));
  EXPECT_FALSE(std::filesystem::exists(root_ / "z"));  // nothing created
  machine.fake().removeDrive(drive);  // gone altogether: GetDrive raises, the member says false
  EXPECT_FALSE(files.IsNetworkPathAvailable(native(root_ / "docs")));
}

// The version split: the fourth number, not the third, is the revision; halves of 0x8000 and
// above read as negative Integers; no block, or a size below 1, gives zeros.
TEST(FileSystemVersions, SplitTheFixedBlockIntoTheRecords) {
  platform::ScopedFake<platform::FakeVersionResources> versions;
  const platform::FixedFileInfo words = {0xFEEF04BD, 0x00010000, 0x00010004, 0x00000006, 0x000A0000,
                                         0x4A610546, 0x3F,       0x8,        0x40004,    0x2,
                                         0x0,        0x1,        0xFFFFFFFF};
  versions.fake().setFixedInfo("/opt/till/till.exe", words);
  versions.fake().setFixedInfo("/opt/till/big.dll",
                               {0xFEEF04BD, 0x00010000, 0xFFFF8000, 0x90000001});
  versions.fake().set("/opt/till/empty.dll", {0, words});
  versions.fake().set("/opt/till/noinfo.dll", {100, std::nullopt});

  FileSystem files;
  const auto version = [&](const char16_t* name) {
    const FileVersion v = files.GetFileVersion(name);
    return std::array<int, 3>{v.Major, v.Minor, v.Revision};
  };
  EXPECT_EQ(version(u"/opt/till/till.exe"), (std::array<int, 3>{1, 4, 6}));
  EXPECT_EQ(version(u"/opt/till/big.dll"), (std::array<int, 3>{-1, -32768, 1}));
  for (const char16_t* none :
       {u"/opt/till/empty.dll", u"/opt/till/noinfo.dll", u"/opt/till/missing.dll", u""}) {
    EXPECT_EQ(version(none), (std::array<int, 3>{0, 0, 0})) << toUtf8(none);
  }

  String name = u"/opt/till/till.exe";
  const FileInfo info = files.GetFileInfo(name);
  EXPECT_EQ(info.Signature, static_cast<int32_t>(0xFEEF04BD));
  EXPECT_EQ(std::make_pair(info.StrucVersionl, info.StrucVersionh),
            std::make_pair(int16_t{0}, int16_t{1}));
  EXPECT_EQ(std::make_pair(info.FileVersionMSl, info.FileVersionMSh),
            std::make_pair(int16_t{4}, int16_t{1}));
  EXPECT_EQ(std::make_pair(info.FileVersionLSl, info.FileVersionLSh),
            std::make_pair(int16_t{6}, int16_t{0}));
  EXPECT_EQ(std::make_pair(info.ProductVersionMSl, info.ProductVersionMSh),
            std::make_pair(int16_t{0}, int16_t{10}));
  EXPECT_EQ(std::make_pair(info.ProductVersionLSl, info.ProductVersionLSh),
            std::make_pair(int16_t{0x546}, int16_t{0x4A61}));
  EXPECT_EQ(info.FileFlagsMask, 0x3F);
  EXPECT_EQ(info.FileFlags, 8);
  EXPECT_EQ(info.FileOS, 0x40004);
  EXPECT_EQ(info.FileType, 2);
  EXPECT_EQ(info.FileSubtype, 0);
  EXPECT_EQ(info.FileDateMS, 1);
  EXPECT_EQ(info.FileDateLS, -1);
  String missing = u"/opt/till/missing.dll";
  EXPECT_EQ(files.GetFileInfo(missing).Signature, 0);
}

}  // namespace
}  // namespace ravelin

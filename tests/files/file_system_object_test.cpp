// The file-system object on real temporary trees (the members that touch files), on the text
// rules of its path members, and on drives through a fake machine.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <ravelin/files/file_system_object.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/fake/machine_fake.hpp>
#include <ravelin/platform/fake/paths_fake.hpp>
#include <ravelin/platform/paths.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

namespace fs = std::filesystem;

// Whether this system has a native form besides the Windows one (not Windows).
bool hasNativeForm() {
  return !platform::isWindowsForm(u"/native");
}

std::string bytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeBytes(const fs::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void makeReadOnly(const fs::path& file) {
  fs::permissions(file, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
}

class FileSystemObjectTest : public testing::Test {
 protected:
  void SetUp() override {
    std::random_device random;
    root_ = fs::temp_directory_path() / ("ravelin_fso_" + std::to_string(random()));
    fs::create_directories(root_);
  }
  void TearDown() override {
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(root_, error))
      fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(root_, error);
  }

  // The path of a name in the temporary folder, as the library's text.
  String at(std::string_view name) const { return platform::fromNativePath(file(name)); }
  fs::path file(std::string_view name) const {
    return name.empty() ? root_ : root_ / fs::path(std::u8string(name.begin(), name.end()));
  }

  FileSystemObject fso_;
  fs::path root_;
};

// ---- Text members ---------------------------------------------------------------------------

TEST_F(FileSystemObjectTest, NamesOfWindowsFormPaths) {
  struct Row {
    StringView path;
    StringView parent;
    StringView fileName;
    StringView baseName;
    StringView extension;
    StringView drive;
  };
  const Row rows[] = {
      {u"C:\\Data\\prices.dbf", u"C:\\Data", u"prices.dbf", u"prices", u"dbf", u"C:"},
      {u"c:\\Data\\", u"c:\\", u"Data", u"Data", u"", u"c:"},
      {u"C:\\\\a", u"C:\\", u"a", u"a", u"", u"C:"},
      {u"C:\\", u"", u"", u"", u"", u"C:"},
      {u"C:", u"", u"", u"", u"", u"C:"},
      {u"a", u"", u"a", u"a", u"", u""},
      {u"a/a/a", u"a/a", u"a", u"a", u"", u""},
      {u"a\\a\\a", u"a\\a", u"a", u"a", u"", u""},
      {u"a/a//\\\\", u"a", u"a", u"a", u"", u""},
      {u"ac:\\a", u"ac:", u"a", u"a", u"", u""},
      {u"a/a.b.c", u"a", u"a.b.c", u"a.b", u"c", u""},
      {u"a.b\\", u"", u"a.b", u"a", u"b", u""},
      {u".a", u"", u".a", u"", u"a", u""},
      {u"n.o.eXt", u"", u"n.o.eXt", u"n.o", u"eXt", u""},
      {u"/\\", u"", u"", u"", u"", u""},
      {u"\\a", u"", u"a", u"a", u"", u""},
      {u"\\\\server\\share\\dir\\f.txt", u"\\\\server\\share\\dir", u"f.txt", u"f", u"txt",
       u"\\\\server\\share"},
      {u"\\\\server\\share", u"\\\\server", u"share", u"share", u"", u"\\\\server\\share"},
      {u"//server/share/f", u"//server/share", u"f", u"f", u"", u"//server/share"},
      {u"\\\\server", u"", u"server", u"server", u"", u""},
      {u"\\\\server\\", u"", u"server", u"server", u"", u""},
      {u"OO:", u"", u"OO:", u"OO:", u"", u""},
      {u"O", u"", u"O", u"O", u"", u""},
      {u":", u"", u":", u":", u"", u""},
      {u"", u"", u"", u"", u"", u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(fso_.GetParentFolderName(row.path), row.parent);
    EXPECT_EQ(fso_.GetFileName(row.path), row.fileName);
    EXPECT_EQ(fso_.GetBaseName(row.path), row.baseName);
    EXPECT_EQ(fso_.GetExtensionName(row.path), row.extension);
    EXPECT_EQ(fso_.GetDriveName(row.path), row.drive);
  }
}

TEST_F(FileSystemObjectTest, BuildPath) {
  struct Row {
    StringView path;
    StringView name;
    StringView expected;
  };
  const Row rows[] = {
      {u"C:\\path", u"..\\name.tmp", u"C:\\path\\..\\name.tmp"},
      {u"C:\\path", u"\\name.tmp", u"C:\\path\\name.tmp"},
      {u"C:\\path", u"name.tmp", u"C:\\path\\name.tmp"},
      {u"C:\\path\\", u"name.tmp", u"C:\\path\\name.tmp"},
      {u"C:\\path", u"\\\\name.tmp", u"C:\\path\\\\name.tmp"},
      {u"C:\\path\\", u"\\name.tmp", u"C:\\path\\name.tmp"},
      {u"C:\\path\\", u"\\\\name.tmp", u"C:\\path\\\\name.tmp"},
      {u"C:\\path\\\\", u"\\\\name.tmp", u"C:\\path\\\\\\name.tmp"},
      {u"C:\\\\", u"\\name.tmp", u"C:\\\\name.tmp"},
      {u"C:", u"name.tmp", u"C:name.tmp"},
      {u"C:", u"\\\\name.tmp", u"C:\\\\name.tmp"},
      {u"C:/path", u"name.tmp", u"C:/path\\name.tmp"},
      {u"", u"", u""},
      {u"path", u"", u"path"},
      {u"", u"path", u"path"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path) + " + " + toUtf8(row.name));
    EXPECT_EQ(fso_.BuildPath(row.path, row.name), row.expected);
  }
}

TEST_F(FileSystemObjectTest, NamesOfNativePaths) {
  if (!hasNativeForm()) GTEST_SKIP() << "every path of this system is in the Windows form";
  EXPECT_EQ(fso_.BuildPath(u"/srv/till", u"prices.dbf"), u"/srv/till/prices.dbf");
  EXPECT_EQ(fso_.BuildPath(u"/srv/till/", u"/prices.dbf"), u"/srv/till/prices.dbf");
  EXPECT_EQ(fso_.BuildPath(u"data", u"x"), u"data/x");
  EXPECT_EQ(fso_.GetParentFolderName(u"/srv/till/x.dbf"), u"/srv/till");
  // "/" stands where a drive's root does.
  EXPECT_EQ(fso_.GetParentFolderName(u"/srv"), u"/");
  EXPECT_EQ(fso_.GetParentFolderName(u"/"), u"");
  EXPECT_EQ(fso_.GetParentFolderName(u"srv"), u"");

  platform::ScopedFake<platform::FakePathSystem> paths;
  paths.fake().addMount({"/", "/dev/sda1", "ext4"});
  paths.fake().addMount({"/mnt/prices", "//fileserver/prices", "cifs"});
  EXPECT_EQ(fso_.GetDriveName(u"/mnt/prices/2024/a.dbf"), u"/mnt/prices");
  EXPECT_EQ(fso_.GetDriveName(u"/mnt/prices/../x"), u"/");
  EXPECT_EQ(fso_.GetDriveName(u"/home/clerk"), u"/");
  EXPECT_EQ(fso_.GetDriveName(u"relative/x"), u"");
}

TEST_F(FileSystemObjectTest, AbsolutePathNamesByText) {
  platform::ScopedFake<platform::FakePathSystem> paths;
  if (hasNativeForm()) {
    paths.fake().setDrive("C:", "/srv/till");
    paths.fake().setCurrentFolder("/srv/till/work");
  } else {
    paths.fake().setCurrentFolder(fs::path(u"C:\\work"));
  }
  struct Row {
    StringView path;
    StringView expected;
  };
  const Row rows[] = {
      {u"a\\..\\b", u"C:\\work\\b"},
      {u"..\\..\\..\\x", u"C:\\x"},
      {u"\\x\\y\\", u"C:\\x\\y"},
      {u"C:y", u"C:\\work\\y"},
      {u"c:y", u"C:\\work\\y"},
      {u"D:y", u"D:\\y"},
      {u"c:\\a\\.\\b\\..\\c\\", u"c:\\a\\c"},
      {u"C:/a/b", u"C:\\a\\b"},
      {u"C:\\", u"C:\\"},
      {u"C:", u"C:\\work"},
      {u"\\\\srv\\share\\a\\..\\..", u"\\\\srv\\share"},
      {u"\\\\srv\\share\\a\\.\\b", u"\\\\srv\\share\\a\\b"},
      // Names are not looked up: links are not followed, wildcards stay.
      {u"link\\..\\x", u"C:\\work\\x"},
      {u"dir\\test_dir*", u"C:\\work\\dir\\test_dir*"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(fso_.GetAbsolutePathName(row.path), row.expected);
  }
  if (!hasNativeForm()) {
    EXPECT_EQ(fso_.GetAbsolutePathName(u""), u"C:\\work");
    return;
  }
  EXPECT_EQ(fso_.GetAbsolutePathName(u""), u"/srv/till/work");
  EXPECT_EQ(fso_.GetAbsolutePathName(u"x/../y"), u"/srv/till/work/y");
  EXPECT_EQ(fso_.GetAbsolutePathName(u"/a/./b//c/"), u"/a/b/c");
  EXPECT_EQ(fso_.GetAbsolutePathName(u"/.."), u"/");
  // The current folder on no drive of the map: relative Windows-form paths come back native.
  paths.fake().setCurrentFolder("/home/clerk");
  EXPECT_EQ(fso_.GetAbsolutePathName(u"a\\b"), u"/home/clerk/a/b");
  EXPECT_EQ(fso_.GetAbsolutePathName(u"C:\\a\\..\\b"), u"C:\\b");
}

TEST_F(FileSystemObjectTest, TempNames) {
  for (int i = 0; i < 20; ++i) {
    const String name = fso_.GetTempName();
    ASSERT_EQ(name.size(), 12u);
    EXPECT_EQ(name.substr(0, 3), u"rad");
    EXPECT_EQ(name.substr(8), u".tmp");
    for (char16_t unit : name.substr(3, 5))
      EXPECT_TRUE((unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F'));
  }
}

// ---- Drives ---------------------------------------------------------------------------------

TEST_F(FileSystemObjectTest, DrivesThroughTheMachine) {
  platform::ScopedFake<platform::FakeMachineSystem> machine;
  platform::DriveFacts fixed;
  fixed.path = u"C:";
  fixed.driveType = Fixed;
  fixed.isReady = true;
  fixed.fileSystem = u"NTFS";
  fixed.volumeName = u"TILL";
  fixed.totalSize = int64_t{5} << 32;
  fixed.freeSpace = 3000;
  fixed.availableSpace = 2000;
  fixed.serialNumber = 0xDEADBEEF;
  machine.fake().addDrive(fixed);
  platform::DriveFacts share;
  share.path = u"\\\\srv\\share";
  share.driveType = Remote;
  machine.fake().addDrive(share);

  struct Row {
    StringView name;
    bool exists;
    int32_t error;  // of GetDrive
    StringView letter;
  };
  const Row rows[] = {
      {u"C", true, 0, u"C"},
      {u"c", true, 0, u"C"},
      {u"C:", true, 0, u"C"},
      {u"c:\\", true, 0, u"C"},
      {u"C:/", true, 0, u"C"},
      {u"\\\\srv\\share", true, 0, u""},
      {u"\\\\SRV\\Share\\", true, 0, u""},
      {u"Q:", false, vb_error::kDeviceUnavailable, u""},
      {u"\\\\srv\\other", false, vb_error::kDeviceUnavailable, u""},
      {u"C\\", false, vb_error::kInvalidProcedureCall, u""},
      {u"C?", false, vb_error::kInvalidProcedureCall, u""},
      {u"?", false, vb_error::kInvalidProcedureCall, u""},
      {u"$:\\", false, vb_error::kInvalidProcedureCall, u""},
      {u"\\host\\share", false, vb_error::kInvalidProcedureCall, u""},
      {u"host\\share", false, vb_error::kInvalidProcedureCall, u""},
      {u"C:\\Windows", false, vb_error::kInvalidProcedureCall, u""},
      {u"\\\\srv\\share\\dir", false, vb_error::kInvalidProcedureCall, u""},
      {u"", false, vb_error::kInvalidProcedureCall, u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    EXPECT_EQ(fso_.DriveExists(row.name), row.exists);
    EXPECT_EQ(errorNumberOf([&] { fso_.GetDrive(row.name); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(fso_.GetDrive(row.name)->DriveLetter(), row.letter);
    }
  }

  const std::shared_ptr<Drive> drive = fso_.GetDrive(u"c:\\");
  EXPECT_EQ(drive->Path(), u"C:");
  EXPECT_EQ(drive->DriveType(), Fixed);
  EXPECT_TRUE(drive->IsReady());
  EXPECT_EQ(drive->FileSystem(), u"NTFS");
  EXPECT_EQ(drive->VolumeName(), u"TILL");
  EXPECT_EQ(drive->TotalSize(), 21474836480.0);
  EXPECT_EQ(drive->FreeSpace(), 3000.0);
  EXPECT_EQ(drive->AvailableSpace(), 2000.0);
  EXPECT_EQ(drive->SerialNumber(), static_cast<int32_t>(0xDEADBEEFu));
  EXPECT_EQ(drive->ShareName(), u"");

  // A drive that is not ready answers what it is, and 71 for its file system.
  const std::shared_ptr<Drive> remote = fso_.GetDrive(u"\\\\srv\\share");
  EXPECT_EQ(remote->Path(), u"\\\\srv\\share");
  EXPECT_EQ(remote->ShareName(), u"\\\\srv\\share");
  EXPECT_EQ(remote->DriveType(), Remote);
  EXPECT_FALSE(remote->IsReady());
  for (const auto& read : std::vector<std::function<void()>>{
           [&] { remote->FileSystem(); }, [&] { remote->TotalSize(); },
           [&] { remote->FreeSpace(); }, [&] { remote->AvailableSpace(); },
           [&] { remote->VolumeName(); }, [&] { remote->SerialNumber(); }}) {
    EXPECT_EQ(errorNumberOf(read), vb_error::kDiskNotReady);
  }
  // The properties are read when asked: the share comes up, the drive object sees it.
  share.isReady = true;
  machine.fake().addDrive(share);
  EXPECT_TRUE(remote->IsReady());
  machine.fake().removeDrive(u"\\\\srv\\share");
  EXPECT_FALSE(remote->IsReady());
}

TEST_F(FileSystemObjectTest, DriveOfTheTemporaryFolder) {
  const String drive = fso_.GetDriveName(at(""));
  ASSERT_FALSE(drive.empty());
  EXPECT_TRUE(fso_.DriveExists(drive));
  EXPECT_TRUE(fso_.GetDrive(drive)->IsReady());
  EXPECT_GT(fso_.GetDrive(drive)->TotalSize(), 0.0);
}

// ---- Files and folders ----------------------------------------------------------------------

TEST_F(FileSystemObjectTest, FoldersExistAndAreCreated) {
  writeBytes(file("file.txt"), "x");
  EXPECT_TRUE(fso_.FolderExists(at("")));
  EXPECT_FALSE(fso_.FolderExists(at("file.txt")));
  EXPECT_FALSE(fso_.FolderExists(at("missing")));
  EXPECT_FALSE(fso_.FolderExists(u""));
  EXPECT_TRUE(fso_.FileExists(at("file.txt")));
  EXPECT_FALSE(fso_.FileExists(at("")));
  EXPECT_FALSE(fso_.FileExists(at("missing")));
  EXPECT_FALSE(fso_.FileExists(u""));

  const std::shared_ptr<Folder> made = fso_.CreateFolder(at("new"));
  EXPECT_TRUE(fs::is_directory(file("new")));
  EXPECT_EQ(made->Path(), at("new"));
  EXPECT_EQ(made->Name(), u"new");
  // A trailing separator names the same folder.
  EXPECT_EQ(fso_.CreateFolder(at("other") + platform::separatorFor(at("")))->Name(), u"other");
  EXPECT_TRUE(fs::is_directory(file("other")));

  struct Row {
    String path;
    int32_t error;
  };
  const Row rows[] = {
      {at("new"), vb_error::kFileAlreadyExists},
      {at("file.txt"), vb_error::kFileAlreadyExists},
      {fso_.BuildPath(at("missing"), u"deeper"), vb_error::kPathNotFound},
      {u"", vb_error::kPathNotFound},
      {String(u"bad\0name", 8), vb_error::kBadFileNameOrNumber},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(errorNumberOf([&] { fso_.CreateFolder(row.path); }), row.error);
  }
}

TEST_F(FileSystemObjectTest, DeleteFile) {
  for (const char* name : {"a.txt", "b.TXT", "c.dbf", "keep.txt.bak"})
    writeBytes(file(name), name);
  fs::create_directory(file("folder.txt"));
  fso_.DeleteFile(at("c.dbf"), false);
  EXPECT_FALSE(fs::exists(file("c.dbf")));
  // Wildcards match names in any case and leave folders alone.
  fso_.DeleteFile(fso_.BuildPath(at(""), u"*.txt"), false);
  EXPECT_FALSE(fs::exists(file("a.txt")));
  EXPECT_FALSE(fs::exists(file("b.TXT")));
  EXPECT_TRUE(fs::exists(file("keep.txt.bak")));
  EXPECT_TRUE(fs::is_directory(file("folder.txt")));

  struct Row {
    String name;
    int32_t error;
  };
  const Row rows[] = {
      {at("c.dbf"), vb_error::kFileNotFound},
      {at("folder.txt"), vb_error::kFileNotFound},
      {fso_.BuildPath(at(""), u"*.none"), vb_error::kFileNotFound},
      {fso_.BuildPath(at("missing"), u"x.txt"), vb_error::kPathNotFound},
      {fso_.BuildPath(at("missing"), u"*.txt"), vb_error::kPathNotFound},
      {u"", vb_error::kPathNotFound},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    EXPECT_EQ(errorNumberOf([&] { fso_.DeleteFile(row.name, false); }), row.error);
  }
}

TEST_F(FileSystemObjectTest, DeleteFileOfReadOnlyFilesNeedsForce) {
  writeBytes(file("a.log"), "a");
  writeBytes(file("b.log"), "b");
  makeReadOnly(file("b.log"));
  // One read-only match refuses the whole call before anything goes.
  EXPECT_EQ(errorNumberOf([&] { fso_.DeleteFile(fso_.BuildPath(at(""), u"?.log"), false); }),
            vb_error::kPermissionDenied);
  EXPECT_TRUE(fs::exists(file("a.log")));
  EXPECT_TRUE(fs::exists(file("b.log")));
  EXPECT_EQ(errorNumberOf([&] { fso_.DeleteFile(at("b.log"), false); }),
            vb_error::kPermissionDenied);
  fso_.DeleteFile(fso_.BuildPath(at(""), u"?.log"), true);
  EXPECT_FALSE(fs::exists(file("a.log")));
  EXPECT_FALSE(fs::exists(file("b.log")));

  // A link to a read-only file is no read-only file: it goes, what it leads to stays as it was.
  writeBytes(file("target.txt"), "t");
  makeReadOnly(file("target.txt"));
  std::error_code error;
  fs::create_symlink(file("target.txt"), file("link.txt"), error);
  if (error) GTEST_SKIP() << "no links here";
  fso_.DeleteFile(at("link.txt"), false);
  EXPECT_FALSE(fs::exists(fs::symlink_status(file("link.txt"))));
  EXPECT_TRUE(fs::exists(file("target.txt")));
  EXPECT_EQ(fs::status(file("target.txt")).permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST_F(FileSystemObjectTest, DeleteFolder) {
  fs::create_directories(file("tree/sub/deeper"));
  writeBytes(file("tree/sub/deeper/f.txt"), "f");
  fs::create_directories(file("old1/x"));
  fs::create_directories(file("old2"));
  fs::create_directories(file("keep"));
  writeBytes(file("old3"), "a file, not a folder");
  fso_.DeleteFolder(at("tree"), false);
  EXPECT_FALSE(fs::exists(file("tree")));
  fso_.DeleteFolder(fso_.BuildPath(at(""), u"OLD*"), false);
  EXPECT_FALSE(fs::exists(file("old1")));
  EXPECT_FALSE(fs::exists(file("old2")));
  EXPECT_TRUE(fs::exists(file("old3")));
  EXPECT_TRUE(fs::exists(file("keep")));

  struct Row {
    String name;
    int32_t error;
  };
  const Row rows[] = {
      {at("tree"), vb_error::kPathNotFound},
      {at("old3"), vb_error::kPathNotFound},
      {fso_.BuildPath(at(""), u"none*"), vb_error::kPathNotFound},
      {fso_.BuildPath(at("missing"), u"*"), vb_error::kPathNotFound},
      {u"", vb_error::kPathNotFound},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    EXPECT_EQ(errorNumberOf([&] { fso_.DeleteFolder(row.name, false); }), row.error);
  }

  // A read-only file inside: nothing goes without Force.
  fs::create_directories(file("locked/sub"));
  writeBytes(file("locked/a.txt"), "a");
  writeBytes(file("locked/sub/ro.txt"), "ro");
  makeReadOnly(file("locked/sub/ro.txt"));
  EXPECT_EQ(errorNumberOf([&] { fso_.DeleteFolder(at("locked"), false); }),
            vb_error::kPermissionDenied);
  EXPECT_TRUE(fs::exists(file("locked/a.txt")));
  EXPECT_TRUE(fs::exists(file("locked/sub/ro.txt")));
  fso_.DeleteFolder(at("locked"), true);
  EXPECT_FALSE(fs::exists(file("locked")));
}

TEST_F(FileSystemObjectTest, CopyFile) {
  writeBytes(file("a.txt"), "alpha");
  writeBytes(file("b.txt"), "beta");
  writeBytes(file("c.dbf"), "gamma");
  fs::create_directory(file("into"));
  const String into = at("into") + platform::separatorFor(at(""));
  fso_.CopyFile(at("a.txt"), at("copy.txt"), false);
  EXPECT_EQ(bytesOf(file("copy.txt")), "alpha");
  EXPECT_EQ(bytesOf(file("a.txt")), "alpha");
  fso_.CopyFile(at("b.txt"), at("copy.txt"), true);
  EXPECT_EQ(bytesOf(file("copy.txt")), "beta");
  fso_.CopyFile(at("a.txt"), into, true);
  EXPECT_EQ(bytesOf(file("into/a.txt")), "alpha");
  fso_.CopyFile(fso_.BuildPath(at(""), u"*.TXT"), at("into"), true);
  EXPECT_EQ(bytesOf(file("into/b.txt")), "beta");
  EXPECT_EQ(bytesOf(file("into/copy.txt")), "beta");
  EXPECT_FALSE(fs::exists(file("into/c.dbf")));

  writeBytes(file("locked.txt"), "locked");
  makeReadOnly(file("locked.txt"));
  struct Row {
    String source;
    String destination;
    bool overwrite;
    int32_t error;
  };
  const Row rows[] = {
      {at("a.txt"), at("copy.txt"), false, vb_error::kFileAlreadyExists},
      {at("missing.txt"), at("x.txt"), true, vb_error::kFileNotFound},
      {at("into"), at("x.txt"), true, vb_error::kFileNotFound},
      {fso_.BuildPath(at(""), u"*.none"), at("into"), true, vb_error::kFileNotFound},
      {fso_.BuildPath(at("missing"), u"a.txt"), at("x.txt"), true, vb_error::kPathNotFound},
      {at("a.txt"), at("into"), true, vb_error::kPermissionDenied},
      {at("a.txt"), fso_.BuildPath(at("missing"), u"x.txt"), true, vb_error::kPathNotFound},
      {at("a.txt"), at("missing") + platform::separatorFor(at("")), true, vb_error::kPathNotFound},
      {at("a.txt"), at("locked.txt"), true, vb_error::kPermissionDenied},
      {at("a.txt"), at("a.txt"), true, vb_error::kPermissionDenied},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.source) + " -> " + toUtf8(row.destination));
    EXPECT_EQ(errorNumberOf([&] { fso_.CopyFile(row.source, row.destination, row.overwrite); }),
              row.error);
  }
  // The refused copies changed nothing.
  EXPECT_EQ(bytesOf(file("copy.txt")), "beta");
  EXPECT_EQ(bytesOf(file("locked.txt")), "locked");
  EXPECT_EQ(bytesOf(file("a.txt")), "alpha");
  EXPECT_FALSE(fs::exists(file("x.txt")));
}

TEST_F(FileSystemObjectTest, MoveFile) {
  writeBytes(file("a.txt"), "alpha");
  writeBytes(file("b.txt"), "beta");
  writeBytes(file("c.log"), "gamma");
  fs::create_directory(file("into"));
  fso_.MoveFile(at("a.txt"), at("moved.txt"));
  EXPECT_FALSE(fs::exists(file("a.txt")));
  EXPECT_EQ(bytesOf(file("moved.txt")), "alpha");

  struct Row {
    String source;
    String destination;
    int32_t error;
  };
  const Row rows[] = {
      {at("moved.txt"), at("b.txt"), vb_error::kFileAlreadyExists},
      {at("moved.txt"), at("into"), vb_error::kFileAlreadyExists},
      {at("a.txt"), at("x.txt"), vb_error::kFileNotFound},
      {fso_.BuildPath(at(""), u"*.none"), at("into"), vb_error::kFileNotFound},
      {at("moved.txt"), fso_.BuildPath(at("missing"), u"x.txt"), vb_error::kPathNotFound},
      {at("moved.txt"), at("missing") + platform::separatorFor(at("")), vb_error::kPathNotFound},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.source) + " -> " + toUtf8(row.destination));
    EXPECT_EQ(errorNumberOf([&] { fso_.MoveFile(row.source, row.destination); }), row.error);
  }
  EXPECT_EQ(bytesOf(file("moved.txt")), "alpha");
  EXPECT_EQ(bytesOf(file("b.txt")), "beta");

  fso_.MoveFile(at("moved.txt"), at("into") + platform::separatorFor(at("")));
  EXPECT_EQ(bytesOf(file("into/moved.txt")), "alpha");
  fso_.MoveFile(fso_.BuildPath(at(""), u"*.*"), at("into"));
  EXPECT_EQ(bytesOf(file("into/b.txt")), "beta");
  EXPECT_EQ(bytesOf(file("into/c.log")), "gamma");
  EXPECT_TRUE(fs::is_directory(file("into")));
}

// ---- Text streams ---------------------------------------------------------------------------

TEST_F(FileSystemObjectTest, AnsiTextGoesThroughTheCodePage) {
  Locale cyrillic = *findLocale(u"en-US");
  cyrillic.ansiCodePage = 1251;
  ScopedLocale scoped(cyrillic);
  const String text = u"\u041F\u0440\u0438\u0432\u0435\u0442, \u00AB\u043C\u0438\u0440\u00BB";
  std::shared_ptr<TextStream> out = fso_.CreateTextFile(at("ru.txt"), true, false);
  out->WriteLine(text);
  out->Write(u"\u4E2D");
  out->Close();
  EXPECT_EQ(bytesOf(file("ru.txt")), "\xCF\xF0\xE8\xE2\xE5\xF2, \xAB\xEC\xE8\xF0\xBB\r\n?");
  std::shared_ptr<TextStream> in =
      fso_.OpenTextFile(at("ru.txt"), ForReading, false, TristateFalse);
  EXPECT_EQ(in->ReadLine(), text);
  EXPECT_EQ(in->ReadAll(), u"?");
}

TEST_F(FileSystemObjectTest, UnicodeTextRoundTrips) {
  const String text = u"Pre\u00E7o \u4E2D\u6587 \U0001F600 \u041C\u0438\u0440";
  std::shared_ptr<TextStream> out = fso_.CreateTextFile(at("u.txt"), true, true);
  out->WriteLine(text);
  out->Write(u"end");
  out->Close();
  const std::string bytes = bytesOf(file("u.txt"));
  ASSERT_GE(bytes.size(), 4u);
  EXPECT_EQ(bytes.substr(0, 4), std::string("\xFF\xFEP\0", 4));
  EXPECT_EQ(bytes.size(), 2 + 2 * (text.size() + 2 + 3));

  for (int32_t format : {TristateTrue, TristateUseDefault}) {
    SCOPED_TRACE(format);
    std::shared_ptr<TextStream> in = fso_.OpenTextFile(at("u.txt"), ForReading, false, format);
    EXPECT_EQ(in->ReadLine(), text);
    EXPECT_EQ(in->ReadLine(), u"end");
    EXPECT_TRUE(in->AtEndOfStream());
  }
  // Read as ANSI, the byte order mark and the zero bytes are characters.
  std::shared_ptr<TextStream> ansi =
      fso_.OpenTextFile(at("u.txt"), ForReading, false, TristateFalse);
  EXPECT_EQ(ansi->Read(3), String(u"\u00FF\u00FEP"));

  // Without a byte order mark the file is read from its first byte; an odd last byte is lost.
  writeBytes(file("bare.txt"), std::string("a\0\x34\x04z", 5));
  std::shared_ptr<TextStream> bare =
      fso_.OpenTextFile(at("bare.txt"), ForReading, false, TristateTrue);
  EXPECT_EQ(bare->ReadAll(), u"a\u0434");
  writeBytes(file("one.txt"), "A");
  std::shared_ptr<TextStream> one =
      fso_.OpenTextFile(at("one.txt"), ForReading, false, TristateTrue);
  EXPECT_EQ(errorNumberOf([&] { one->ReadAll(); }), vb_error::kInputPastEndOfFile);
  // The default format reads a file without the mark as ANSI.
  std::shared_ptr<TextStream> plain =
      fso_.OpenTextFile(at("bare.txt"), ForReading, false, TristateUseDefault);
  EXPECT_EQ(plain->Read(2), String(u"a\0", 2));
}

TEST_F(FileSystemObjectTest, LinesEndAtLineFeeds) {
  writeBytes(file("lines.txt"), "first line\r\nsecond\n\n\rt\r\re \rst\nlast\r");
  std::shared_ptr<TextStream> in =
      fso_.OpenTextFile(at("lines.txt"), ForReading, false, TristateFalse);
  const std::vector<String> expected = {u"first line", u"second", u"", u"\rt\r\re \rst", u"last\r"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(in->Line(), static_cast<int32_t>(i + 1));
    EXPECT_EQ(in->Column(), 1);
    EXPECT_FALSE(in->AtEndOfStream());
    EXPECT_EQ(in->ReadLine(), expected[i]);
  }
  EXPECT_TRUE(in->AtEndOfStream());
  EXPECT_TRUE(in->AtEndOfLine());
  EXPECT_EQ(in->Column(), 6);
  for (const auto& read : std::vector<std::function<void()>>{
           [&] { in->ReadLine(); }, [&] { in->ReadAll(); }, [&] { in->Read(1); },
           [&] { in->Skip(1); }, [&] { in->SkipLine(); }}) {
    EXPECT_EQ(errorNumberOf(read), vb_error::kInputPastEndOfFile);
  }
  EXPECT_EQ(in->Read(0), u"");
}

TEST_F(FileSystemObjectTest, ReadingPiecesAndPositions) {
  writeBytes(file("p.txt"), "abc\r\ndef\nghi");
  std::shared_ptr<TextStream> in = fso_.OpenTextFile(at("p.txt"), ForReading, false, TristateFalse);
  EXPECT_EQ(in->Read(2), u"ab");
  EXPECT_EQ(in->Column(), 3);
  EXPECT_FALSE(in->AtEndOfLine());
  in->Skip(1);
  EXPECT_TRUE(in->AtEndOfLine());
  EXPECT_EQ(in->Read(3), u"\r\nd");
  EXPECT_EQ(in->Line(), 2);
  EXPECT_EQ(in->Column(), 2);
  in->SkipLine();
  EXPECT_EQ(in->Line(), 3);
  EXPECT_EQ(errorNumberOf([&] { in->Read(-1); }), vb_error::kInvalidProcedureCall);
  EXPECT_EQ(errorNumberOf([&] { in->Skip(-1); }), vb_error::kInvalidProcedureCall);
  EXPECT_EQ(in->Read(100), u"ghi");
  EXPECT_TRUE(in->AtEndOfStream());

  writeBytes(file("empty.txt"), "");
  std::shared_ptr<TextStream> empty =
      fso_.OpenTextFile(at("empty.txt"), ForReading, false, TristateFalse);
  EXPECT_TRUE(empty->AtEndOfStream());
  EXPECT_EQ(errorNumberOf([&] { empty->ReadAll(); }), vb_error::kInputPastEndOfFile);
}

// Blocks of the file meet inside lines, inside UTF-16 units and inside UTF-8 sequences.
TEST_F(FileSystemObjectTest, LongFilesReadWhole) {
  String line;
  for (int i = 0; i < 50; ++i)
    line += u"\u00E9\u20AC\U0001F600x";
  for (int unicode = 0; unicode < 2; ++unicode) {
    for (int codePage : {1252, 65001}) {
      SCOPED_TRACE(std::to_string(unicode) + " " + std::to_string(codePage));
      Locale locale = *findLocale(u"en-US");
      locale.ansiCodePage = codePage;
      ScopedLocale scoped(locale);
      std::shared_ptr<TextStream> out = fso_.CreateTextFile(at("long.txt"), true, unicode == 1);
      const int lines = 3000;
      for (int i = 0; i < lines; ++i)
        out->WriteLine(fromAscii(std::to_string(i)) + line);
      out->Close();
      const String expectedLine = codePage == 65001 || unicode == 1 ? line : [&] {
        String lossy;
        for (int i = 0; i < 50; ++i)
          lossy += u"\u00E9\u20AC??x";
        return lossy;
      }();
      std::shared_ptr<TextStream> in =
          fso_.OpenTextFile(at("long.txt"), ForReading, false, TristateUseDefault);
      int read = 0;
      while (!in->AtEndOfStream()) {
        ASSERT_EQ(in->ReadLine(), fromAscii(std::to_string(read)) + expectedLine);
        ++read;
      }
      EXPECT_EQ(read, lines);
      EXPECT_EQ(in->Line(), lines + 1);
    }
  }
}

TEST_F(FileSystemObjectTest, WritingAndAppending) {
  std::shared_ptr<TextStream> out = fso_.CreateTextFile(at("w.txt"), true, false);
  out->Write(u"a");
  EXPECT_EQ(bytesOf(file("w.txt")), "a");  // every write reaches the file at once
  out->WriteLine(u"b");
  out->WriteBlankLines(2);
  out->WriteLine(u"");
  EXPECT_EQ(out->Line(), 5);
  out->Write(u"cd");
  EXPECT_EQ(out->Column(), 3);
  EXPECT_EQ(errorNumberOf([&] { out->WriteBlankLines(-1); }), vb_error::kInvalidProcedureCall);
  out->Close();
  EXPECT_EQ(bytesOf(file("w.txt")), "ab\r\n\r\n\r\n\r\ncd");

  std::shared_ptr<TextStream> more =
      fso_.OpenTextFile(at("w.txt"), ForAppending, false, TristateFalse);
  more->Write(u"e");
  more->Close();
  EXPECT_EQ(bytesOf(file("w.txt")), "ab\r\n\r\n\r\n\r\ncde");
  // ForWriting starts the file again.
  std::shared_ptr<TextStream> again =
      fso_.OpenTextFile(at("w.txt"), ForWriting, false, TristateFalse);
  again->Write(u"new");
  again->Close();
  EXPECT_EQ(bytesOf(file("w.txt")), "new");

  // Appending to a UTF-16 file: by the file's own format, no second byte order mark.
  std::shared_ptr<TextStream> unicode = fso_.CreateTextFile(at("u.txt"), true, true);
  unicode->Write(u"x");
  unicode->Close();
  for (int32_t format : {TristateTrue, TristateUseDefault}) {
    std::shared_ptr<TextStream> tail = fso_.OpenTextFile(at("u.txt"), ForAppending, false, format);
    tail->Write(u"\u00E9");
    tail->Close();
  }
  EXPECT_EQ(bytesOf(file("u.txt")), std::string("\xFF\xFEx\0\xE9\0\xE9\0", 8));
  // A new UTF-16 file opened for appending gets its mark; one opened for writing too.
  std::shared_ptr<TextStream> fresh =
      fso_.OpenTextFile(at("fresh.txt"), ForAppending, true, TristateTrue);
  fresh->Write(u"y");
  fresh->Close();
  EXPECT_EQ(bytesOf(file("fresh.txt")), std::string("\xFF\xFEy\0", 4));
  std::shared_ptr<TextStream> rewritten =
      fso_.OpenTextFile(at("fresh.txt"), ForWriting, false, TristateTrue);
  rewritten->Close();
  EXPECT_EQ(bytesOf(file("fresh.txt")), "\xFF\xFE");
}

TEST_F(FileSystemObjectTest, OpeningAndCreatingRefusals) {
  writeBytes(file("there.txt"), "kept");
  writeBytes(file("locked.txt"), "locked");
  makeReadOnly(file("locked.txt"));
  fs::create_directory(file("folder"));
  const String missingFolder = fso_.BuildPath(at("missing"), u"x.txt");
  struct OpenRow {
    String name;
    int32_t mode;
    bool create;
    int32_t format;
    int32_t error;
  };
  const OpenRow opens[] = {
      {at("none.txt"), ForReading, false, TristateFalse, vb_error::kFileNotFound},
      {at("none.txt"), ForAppending, false, TristateFalse, vb_error::kFileNotFound},
      {missingFolder, ForReading, false, TristateFalse, vb_error::kPathNotFound},
      {missingFolder, ForWriting, true, TristateFalse, vb_error::kPathNotFound},
      {at("folder"), ForReading, false, TristateFalse, vb_error::kPermissionDenied},
      {at("locked.txt"), ForWriting, false, TristateFalse, vb_error::kPermissionDenied},
      {at("locked.txt"), ForAppending, false, TristateFalse, vb_error::kPermissionDenied},
      {at("there.txt"), 3, false, TristateFalse, vb_error::kInvalidProcedureCall},
      {at("there.txt"), 0, false, TristateFalse, vb_error::kInvalidProcedureCall},
      {at("there.txt"), ForReading, false, 1, vb_error::kInvalidProcedureCall},
      {u"", ForReading, false, TristateFalse, vb_error::kPathNotFound},
      {String(u"x\0y", 3), ForReading, true, TristateFalse, vb_error::kBadFileNameOrNumber},
  };
  for (const OpenRow& row : opens) {
    SCOPED_TRACE(toUtf8(row.name) + " mode " + std::to_string(row.mode));
    EXPECT_EQ(errorNumberOf([&] { fso_.OpenTextFile(row.name, row.mode, row.create, row.format); }),
              row.error);
  }
  EXPECT_FALSE(fs::exists(file("none.txt")));
  // Create makes the file that is missing, even for reading.
  EXPECT_TRUE(fso_.OpenTextFile(at("made.txt"), ForReading, true, TristateFalse)->AtEndOfStream());
  EXPECT_TRUE(fs::exists(file("made.txt")));
  EXPECT_EQ(fso_.OpenTextFile(at("locked.txt"), ForReading, false, TristateFalse)->ReadAll(),
            u"locked");

  struct CreateRow {
    String name;
    bool overwrite;
    int32_t error;
  };
  const CreateRow creates[] = {
      {at("there.txt"), false, vb_error::kFileAlreadyExists},
      {at("folder"), false, vb_error::kFileAlreadyExists},
      {at("folder"), true, vb_error::kPermissionDenied},
      {at("locked.txt"), true, vb_error::kPermissionDenied},
      {missingFolder, true, vb_error::kPathNotFound},
  };
  for (const CreateRow& row : creates) {
    SCOPED_TRACE(toUtf8(row.name));
    EXPECT_EQ(errorNumberOf([&] { fso_.CreateTextFile(row.name, row.overwrite, false); }),
              row.error);
  }
  EXPECT_EQ(bytesOf(file("there.txt")), "kept");
  EXPECT_EQ(bytesOf(file("locked.txt")), "locked");
  fso_.CreateTextFile(at("there.txt"), true, false)->Close();
  EXPECT_EQ(bytesOf(file("there.txt")), "");
}

TEST_F(FileSystemObjectTest, ModesAndClosing) {
  writeBytes(file("r.txt"), "text");
  std::shared_ptr<TextStream> reader =
      fso_.OpenTextFile(at("r.txt"), ForReading, false, TristateFalse);
  std::shared_ptr<TextStream> writer = fso_.CreateTextFile(at("w.txt"), true, false);
  std::shared_ptr<TextStream> appender =
      fso_.OpenTextFile(at("w.txt"), ForAppending, false, TristateFalse);
  for (TextStream* stream : {writer.get(), appender.get()}) {
    for (const auto& read : std::vector<std::function<void()>>{
             [&] { stream->Read(1); }, [&] { stream->ReadLine(); }, [&] { stream->ReadAll(); },
             [&] { stream->Skip(1); }, [&] { stream->SkipLine(); },
             [&] { stream->AtEndOfStream(); }, [&] { stream->AtEndOfLine(); }}) {
      EXPECT_EQ(errorNumberOf(read), vb_error::kBadFileMode);
    }
  }
  for (const auto& write : std::vector<std::function<void()>>{
           [&] { reader->Write(u"x"); }, [&] { reader->WriteLine(u"x"); },
           [&] { reader->WriteBlankLines(1); }}) {
    EXPECT_EQ(errorNumberOf(write), vb_error::kBadFileMode);
  }
  EXPECT_EQ(reader->Read(2), u"te");
  reader->Close();
  reader->Close();
  writer->Close();
  EXPECT_EQ(reader->Column(), 3);
  EXPECT_EQ(errorNumberOf([&] { reader->Read(1); }), vb_error::kBadFileMode);
  EXPECT_EQ(errorNumberOf([&] { reader->AtEndOfStream(); }), vb_error::kBadFileMode);
  EXPECT_EQ(errorNumberOf([&] { writer->Write(u"x"); }), vb_error::kBadFileMode);
}

// A device that is always full (Linux's /dev/full): the write raises, nothing is lost silently.
TEST_F(FileSystemObjectTest, RefusedWritesRaise) {
  if (!hasNativeForm() || !fs::exists("/dev/full")) GTEST_SKIP() << "no full device here";
  std::shared_ptr<TextStream> full =
      fso_.OpenTextFile(u"/dev/full", ForWriting, false, TristateFalse);
  EXPECT_EQ(errorNumberOf([&] { full->Write(u"lost?"); }), vb_error::kDiskFull);
  EXPECT_EQ(errorNumberOf([&] { full->WriteLine(u"again"); }), vb_error::kDiskFull);
  EXPECT_EQ(
      errorNumberOf([&] { fso_.OpenTextFile(u"/dev/full", ForWriting, false, TristateTrue); }),
      vb_error::kDiskFull);
}

// Windows-form paths reach real files through the drive map where paths have two forms.
TEST_F(FileSystemObjectTest, WindowsFormReachesFilesThroughTheDriveMap) {
  if (!hasNativeForm()) GTEST_SKIP() << "every path of this system is in the Windows form";
  platform::ScopedFake<platform::FakePathSystem> paths;
  paths.fake().setDrive("T:", toUtf8(at("")));
  fso_.CreateFolder(u"t:\\Data");
  std::shared_ptr<TextStream> out = fso_.CreateTextFile(u"T:\\Data\\prices.txt", true, false);
  out->WriteLine(u"1.50");
  out->Close();
  EXPECT_EQ(bytesOf(file("Data/prices.txt")), "1.50\r\n");
  EXPECT_TRUE(fso_.FileExists(u"T:/Data\\prices.txt"));
  EXPECT_TRUE(fso_.FolderExists(u"T:\\Data\\..\\Data"));
  fso_.CopyFile(u"T:\\Data\\prices.txt", u"t:\\", true);
  EXPECT_EQ(bytesOf(file("prices.txt")), "1.50\r\n");
  EXPECT_EQ(fso_.BuildPath(u"T:\\Data", u"x.txt"), u"T:\\Data\\x.txt");
  EXPECT_EQ(errorNumberOf([&] { fso_.CreateTextFile(u"U:\\x.txt", true, false); }),
            vb_error::kPathNotFound);
  EXPECT_EQ(
      errorNumberOf([&] { fso_.OpenTextFile(u"\\\\srv\\share\\x.txt", ForReading, false, 0); }),
      vb_error::kPathNotFound);
  fso_.DeleteFolder(u"T:\\Data", false);
  EXPECT_FALSE(fs::exists(file("Data")));
}

}  // namespace
}  // namespace ravelin

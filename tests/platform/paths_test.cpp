// The path rules of systems without drive letters, through a fake path system (on every system),
// and nativePath of the system running the test.
#include <gtest/gtest.h>

#include <optional>
#include <ravelin/platform/fake/paths_fake.hpp>
#include <ravelin/platform/paths.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

// A till whose C: is /srv/till, working in C:\work, with two shares mounted.
void furnish(FakePathSystem& system) {
  system.setDrive("C:", "/srv/till");
  system.setDrive("D:", "/mnt/data");
  system.setCurrentFolder("/srv/till/work");
  system.addMount({"/", "/dev/sda1", "ext4"});
  system.addMount({"/mnt/prices", "//fileserver/prices", "cifs"});
  system.addMount({"/mnt/pos", "nas:/export/pos", "nfs4"});
  system.addMount({"/mnt/sub", "//fileserver/Shared/sub", "cifs"});
}

TEST(PathsTest, WindowsFormTranslatesByDriveMapAndMounts) {
  FakePathSystem system;
  furnish(system);
  struct Row {
    StringView path;
    std::optional<std::string> expected;
  };
  const Row rows[] = {
      {u"C:\\Data\\prices.dbf", "/srv/till/Data/prices.dbf"},
      {u"c:\\Data\\prices.dbf", "/srv/till/Data/prices.dbf"},
      {u"d:/exports/day.txt", "/mnt/data/exports/day.txt"},
      {u"C:/Data\\mixed/x.txt", "/srv/till/Data/mixed/x.txt"},
      {u"C:\\Data\\", "/srv/till/Data/"},
      {u"C:\\\\Data\\\\x", "/srv/till/Data/x"},
      {u"E:\\x.txt", std::nullopt},
      // ".." stops at the drive's folder, as at a drive's root.
      {u"C:\\..\\..\\etc\\passwd", "/srv/till/etc/passwd"},
      {u"C:\\a\\.\\b\\..\\c", "/srv/till/a/c"},
      // A drive without a root: the current folder when it lies on that drive.
      {u"C:x.dbf", "/srv/till/work/x.dbf"},
      {u"C:", "/srv/till/work"},
      {u"D:x.dbf", "/mnt/data/x.dbf"},
      // From the root of the drive that holds the current folder.
      {u"\\Data\\x.dbf", "/srv/till/Data/x.dbf"},
      {u"Data\\x.dbf", "Data/x.dbf"},
      {u"..\\x.dbf", "../x.dbf"},
      {u"\\\\fileserver\\prices\\2024\\a.dbf", "/mnt/prices/2024/a.dbf"},
      {u"\\\\FILESERVER\\Prices\\a.dbf", "/mnt/prices/a.dbf"},
      {u"//fileserver/prices/a.dbf", "/mnt/prices/a.dbf"},
      {u"\\\\fileserver/prices\\a.dbf", "/mnt/prices/a.dbf"},
      {u"\\\\fileserver\\prices", "/mnt/prices"},
      {u"\\\\fileserver\\prices\\..\\..\\x", "/mnt/prices/x"},
      {u"\\\\nas\\export\\pos\\x.dbf", "/mnt/pos/x.dbf"},
      {u"\\\\NAS\\export\\pos\\x.dbf", "/mnt/pos/x.dbf"},
      // An NFS export's path is case sensitive; an SMB share's is not.
      {u"\\\\nas\\export\\POS\\x.dbf", std::nullopt},
      {u"\\\\fileserver\\shared\\SUB\\deep\\f.txt", "/mnt/sub/deep/f.txt"},
      {u"\\\\fileserver\\shared\\f.txt", std::nullopt},
      {u"\\\\fileserver\\other\\x", std::nullopt},
      {u"\\\\server", std::nullopt},
      {u"\\\\server\\", std::nullopt},
      {u"\\\\?\\C:\\Data\\x", "/srv/till/Data/x"},
      {u"\\\\?\\UNC\\fileserver\\prices\\x", "/mnt/prices/x"},
      // Native texts are taken as they are.
      {u"/var/log/till.log", "/var/log/till.log"},
      {u"relative/native.txt", "relative/native.txt"},
      {u"/srv/../etc", "/srv/../etc"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(posixPathFor(row.path, system), row.expected);
  }
}

TEST(PathsTest, RootRelativePathsNeedADriveHoldingTheCurrentFolder) {
  FakePathSystem system;
  system.setDrive("C:", "/srv/till");
  system.setDrive("D:", "/srv/till/data");
  system.setCurrentFolder("/srv/till/data/day");
  // The longest folder holding the current one is D's.
  EXPECT_EQ(posixPathFor(u"\\x", system), "/srv/till/data/x");
  system.setCurrentFolder("/home/clerk");
  EXPECT_EQ(posixPathFor(u"\\x", system), std::nullopt);
  EXPECT_EQ(posixPathFor(u"C:x", system), "/srv/till/x");
}

TEST(PathsTest, FormMarks) {
  struct Row {
    StringView path;
    bool windowsForm;
  };
  for (const Row& row :
       {Row{u"C:\\x", true}, Row{u"c:", true}, Row{u"a\\b", true}, Row{u"/a/b", false},
        Row{u"a/b", false}, Row{u"//srv/s", false}, Row{u"1:\\x", true}, Row{u"1:", false},
        Row{u"", false}, Row{u"ab:", false}}) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(hasWindowsFormMarks(row.path), row.windowsForm);
  }
}

TEST(PathsTest, DriveMapText) {
  struct Row {
    std::string_view text;
    DriveMap expected;
  };
  const Row rows[] = {
      {"", {{"C:", "/"}}},
      {"C:=/srv/till;d:=/mnt/data/", {{"C:", "/srv/till"}, {"D:", "/mnt/data"}}},
      {"D:=/mnt/data", {{"C:", "/"}, {"D:", "/mnt/data"}}},
      // Entries of another shape are left out: no colon, no "=", a relative folder, no letter.
      {"X=/a;Y:/b;Z:=rel;;1:=/one;Q:=/q;", {{"C:", "/"}, {"Q:", "/q"}}},
      {"C:=/;E:=/", {{"C:", "/"}, {"E:", "/"}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.text));
    EXPECT_EQ(parseDriveMap(row.text), row.expected);
  }
}

TEST(PathsTest, MountInfoText) {
  const std::string_view text =
      "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw,errors=remount-ro\n"
      "36 22 0:32 / /mnt/my\\040share rw,nosuid shared:20 master:3 - cifs "
      "//fileserver/my\\040share "
      "rw,vers=3.0\n"
      "40 22 0:35 /sub /mnt/pos rw - nfs4 nas:/export/pos rw\n"
      "not a mount line\n"
      "45 22 0:40 / /mnt/tab\\011and\\134back rw - tmpfs tmpfs rw\n"
      "46 22 0:41 / /mnt/cut rw shared:2\n"
      "47 22 0:42 / /run/user/1000/gvfs rw,nosuid,nodev shared:300 - fuse.gvfsd-fuse gvfsd-fuse "
      "rw,user_id=1000";
  const std::vector<Mount> mounts = parseMountInfo(text);
  ASSERT_EQ(mounts.size(), 5u);
  const std::vector<std::vector<std::string>> expected = {
      {"/", "/dev/sda1", "ext4"},
      {"/mnt/my share", "//fileserver/my share", "cifs"},
      {"/mnt/pos", "nas:/export/pos", "nfs4"},
      {"/mnt/tab\tand\\back", "tmpfs", "tmpfs"},
      {"/run/user/1000/gvfs", "gvfsd-fuse", "fuse.gvfsd-fuse"},
  };
  for (std::size_t i = 0; i < mounts.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(mounts[i].mountPoint, expected[i][0]);
    EXPECT_EQ(mounts[i].source, expected[i][1]);
    EXPECT_EQ(mounts[i].type, expected[i][2]);
  }
}

TEST(PathsTest, MountHoldingAPath) {
  const std::vector<Mount> mounts = {{"/", "/dev/sda1", "ext4"},
                                     {"/mnt/pos", "nas:/export/pos", "nfs4"},
                                     {"/mnt/my share", "//fs/my share", "cifs"},
                                     {"/mnt/pos", "tmpfs", "tmpfs"}};
  struct Row {
    std::string_view path;
    std::optional<std::string_view> source;
  };
  const Row rows[] = {
      {"/", "/dev/sda1"},
      {"/home/clerk", "/dev/sda1"},
      // The later of two mounts on one point hides the earlier.
      {"/mnt/pos", "tmpfs"},
      {"/mnt/pos/x/y", "tmpfs"},
      {"/mnt/position", "/dev/sda1"},
      {"/mnt/my share/a", "//fs/my share"},
      {"relative", std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.path));
    const Mount* mount = mountHolding(mounts, row.path);
    EXPECT_EQ(mount == nullptr ? std::nullopt : std::optional<std::string_view>(mount->source),
              row.source);
  }
  EXPECT_EQ(mountHolding({}, "/x"), nullptr);
}

TEST(PathsTest, WindowsFormOfANativePath) {
  const DriveMap drives = {{"C:", "/"}, {"D:", "/mnt/data"}, {"T:", "/srv/till/"}};
  struct Row {
    std::string_view path;
    std::optional<String> expected;
  };
  const Row rows[] = {
      {"/home/clerk", u"C:\\home\\clerk"},
      {"/", u"C:\\"},
      {"/mnt/data/x/y.txt", u"D:\\x\\y.txt"},
      {"/mnt/data", u"D:\\"},
      {"/mnt/database", u"C:\\mnt\\database"},
      {"/srv/till/work/../day", u"T:\\day"},
      {"relative", std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.path));
    EXPECT_EQ(windowsFormUnder(row.path, drives), row.expected);
  }
  EXPECT_EQ(windowsFormUnder("/home/clerk", {{"D:", "/mnt/data"}}), std::nullopt);
}

TEST(PathsTest, LexicallyNormal) {
  struct Row {
    std::string_view path;
    std::string_view expected;
  };
  for (const Row& row : {Row{"/a/./b//c/", "/a/b/c"}, Row{"/a/../../b", "/b"}, Row{"/..", "/"},
                         Row{"a/../../b", "../b"}, Row{"", "."}, Row{"./", "."}}) {
    SCOPED_TRACE(std::string(row.path));
    EXPECT_EQ(lexicallyNormalPosix(row.path), row.expected);
  }
}

// nativePath of the system running the test: the fake's facts where paths have two forms, the
// text itself where every path is native (Windows).
TEST(PathsTest, NativePathOfThisSystem) {
  ScopedFake<FakePathSystem> fake;
  furnish(fake.fake());
  EXPECT_EQ(nativePath(u""), std::nullopt);
  EXPECT_EQ(nativePath(String(u"a\0b", 3)), std::nullopt);
  if (isWindowsForm(u"/native")) {
    EXPECT_EQ(separatorFor(u"/x"), u'\\');
    EXPECT_EQ(nativePath(u"C:\\Data\\x.dbf"), std::filesystem::path(u"C:\\Data\\x.dbf"));
    EXPECT_EQ(fromNativePath(std::filesystem::path(u"C:\\Pre\u00E7o")), u"C:\\Pre\u00E7o");
    return;
  }
  EXPECT_EQ(separatorFor(u"/x"), u'/');
  EXPECT_EQ(separatorFor(u"C:"), u'\\');
  EXPECT_EQ(nativePath(u"C:\\Data\\x.dbf"), std::filesystem::path("/srv/till/Data/x.dbf"));
  EXPECT_EQ(nativePath(u"\\\\fileserver\\other\\x"), std::nullopt);
  EXPECT_EQ(nativePath(u"/srv/x"), std::filesystem::path("/srv/x"));
  // A lone surrogate has no UTF-8 spelling; a pair has.
  EXPECT_EQ(nativePath(u"/srv/\xD800x"), std::nullopt);
  EXPECT_EQ(nativePath(u"/srv/\xDC00"), std::nullopt);
  EXPECT_EQ(nativePath(u"/srv/\U0001F600"), std::filesystem::path("/srv/\xF0\x9F\x98\x80"));
  EXPECT_EQ(fromNativePath("/srv/Pre\xC3\xA7o"), u"/srv/Pre\u00E7o");
  EXPECT_EQ(windowsFormOf("/srv/till/work/x"), u"C:\\work\\x");
}

}  // namespace
}  // namespace ravelin::platform

// The machine rules of systems without drive letters, through fakes (on every system), and the
// contract the fake and the system's own machine share.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ravelin/platform/fake/machine_fake.hpp>
#include <ravelin/platform/fake/paths_fake.hpp>
#include <ravelin/platform/machine.hpp>
#include <string>

namespace ravelin::platform {
namespace {

TEST(MachineTest, ComputerNameOfAHostName) {
  struct Row {
    std::string_view host;
    uint32_t bufferSize;
    std::optional<std::string> expected;
  };
  const Row rows[] = {
      {"build-server-Linux-2024.corp.example.com", 64, "build-server-Linux-2024"},
      // GetComputerNameA's buffer rule: the name and its terminating null must fit.
      {"build-server-Linux-2024.corp.example.com", 16, std::nullopt},
      {"build-server-Linux-2024", 24, "build-server-Linux-2024"},
      {"build-server-Linux-2024", 23, std::nullopt},
      {"Till-01.shop.lan", 16, "Till-01"},
      {"ABCDEFGHIJKLMNO", 16, "ABCDEFGHIJKLMNO"},
      {"ABCDEFGHIJKLMNOP", 16, std::nullopt},
      {"till", 0, std::nullopt},
      {"", 16, std::nullopt},
      {".local", 16, std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.host) + " in " + std::to_string(row.bufferSize));
    EXPECT_EQ(computerNameFromHost(row.host, row.bufferSize), row.expected);
  }
}

// A till whose D: lies on an NFS export, with the home folders on a disk of their own.
void furnish(FakePathSystem& system) {
  system.setDrive("C:", "/");
  system.setDrive("D:", "/mnt/pos/till");
  system.addMount({"/", "/dev/sda1", "ext4"});
  system.addMount({"/home", "/dev/sda2", "ext4"});
  system.addMount({"/mnt/pos", "nas:/export/pos", "nfs4"});
  system.addMount({"/mnt/prices", "//fileserver/prices", "cifs"});
  system.addMount({"/mnt/ram", "tmpfs", "tmpfs"});
}

TEST(MachineTest, NetworkPaths) {
  FakePathSystem system;
  furnish(system);
  struct Row {
    StringView path;
    int32_t expected;
  };
  const Row rows[] = {
      {u"//srv/s", 1},
      {u"\\\\srv\\s", 1},
      {u"/mnt/pos/x.dbf", 1},
      {u"/home", 0},
      {u"\\\\srv", 1},
      {u"\\\\srv\\s\\deep\\file.dat", 1},
      {u"smb://srv/s", 1},
      {u"SMB://srv/s", 1},
      {u"/mnt/pos", 1},
      {u"/mnt/position", 0},
      {u"/mnt/prices/a/../b", 1},
      {u"/mnt/ram/x", 0},
      {u"D:\\day.txt", 1},
      {u"C:\\day.txt", 0},
      {u"Q:\\day.txt", 0},
      {u"data\\x.dbf", 0},
      {u"relative/x", 0},
      {u"/run/user/1000/gvfs/smb-share:server=s/x", 1},
      {u"/run/user/1000/gvfsx", 0},
      {u"", 0},
      {u"\\", 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.path));
    EXPECT_EQ(networkPathAnswer(row.path, system, "/run/user/1000/gvfs"), row.expected);
  }
}

TEST(MachineTest, NetworkFileSystemTypes) {
  for (std::string_view type : {"nfs", "nfs4", "cifs", "smb3", "smbfs", "fuse.sshfs",
                                "fuse.gvfsd-fuse", "9p", "ceph", "afs"}) {
    EXPECT_TRUE(isNetworkFileSystem(type)) << type;
  }
  for (std::string_view type : {"ext4", "tmpfs", "fuse", "NFS", "overlay", ""})
    EXPECT_FALSE(isNetworkFileSystem(type)) << type;
}

TEST(MachineTest, DrivesAsMountedFileSystems) {
  FakePathSystem system;
  furnish(system);
  struct Row {
    StringView name;
    std::optional<std::string> folder;
    std::string mountType;
  };
  const Row rows[] = {
      {u"C:", "/", "ext4"},
      {u"c:", "/", "ext4"},
      {u"D:", "/mnt/pos/till", "nfs4"},
      {u"Q:", std::nullopt, ""},
      {u"C:\\", std::nullopt, ""},
      {u"C", std::nullopt, ""},
      {u"\\\\fileserver\\prices", "/mnt/prices", "cifs"},
      {u"//FileServer/Prices/", "/mnt/prices", "cifs"},
      {u"\\\\fileserver\\prices\\2024", std::nullopt, ""},
      {u"\\\\fileserver\\other", std::nullopt, ""},
      {u"\\\\fileserver", std::nullopt, ""},
      {u"/mnt/ram", "/mnt/ram", "tmpfs"},
      {u"/mnt/ram/", "/mnt/ram", "tmpfs"},
      {u"/home", "/home", "ext4"},
      {u"/mnt/ram/x", std::nullopt, ""},
      {u"/srv", std::nullopt, ""},
      {u"", std::nullopt, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    const std::optional<DriveLocation> location = locateDrive(row.name, system);
    ASSERT_EQ(location.has_value(), row.folder.has_value());
    if (!location) continue;
    EXPECT_EQ(location->folder, *row.folder);
    ASSERT_TRUE(location->mount.has_value());
    EXPECT_EQ(location->mount->type, row.mountType);
  }
}

TEST(MachineTest, DriveFactsFromTheSystemsWords) {
  struct TypeRow {
    std::string_view type;
    bool removable;
    int32_t expected;
  };
  for (const TypeRow& row :
       {TypeRow{"nfs4", false, 3}, TypeRow{"cifs", true, 3}, TypeRow{"tmpfs", false, 5},
        TypeRow{"ramfs", false, 5}, TypeRow{"iso9660", true, 4}, TypeRow{"udf", false, 4},
        TypeRow{"vfat", true, 1}, TypeRow{"ext4", false, 2}, TypeRow{"overlay", false, 2}}) {
    EXPECT_EQ(driveTypeFor(row.type, row.removable), row.expected) << row.type;
  }
  struct SerialRow {
    std::string_view uuid;
    uint32_t expected;
  };
  for (const SerialRow& row :
       {SerialRow{"1234-ABCD", 0x1234ABCDu}, SerialRow{"0123456789ABCDEF", 0x89ABCDEFu},
        SerialRow{"c1b9d5a2-f162-11cf-9ece-0020afc76f16", 0xAFC76F16u}, SerialRow{"12ab", 0u},
        SerialRow{"", 0u}}) {
    EXPECT_EQ(serialNumberFromUuid(row.uuid), row.expected) << row.uuid;
  }
  EXPECT_EQ(deviceLabelFromLink("POS\\x20DATA"), "POS DATA");
  EXPECT_EQ(deviceLabelFromLink("a\\x2fb\\xzz"), "a/b\\xzz");
  EXPECT_EQ(deviceLabelFromLink("plain"), "plain");
}

TEST(MachineTest, FakeAnswersAsSet) {
  ScopedFake<FakePathSystem> paths;
  furnish(paths.fake());
  FakeMachineSystem machine;
  machine.setHostName("Till-01.shop.lan");
  EXPECT_EQ(machine.computerName(16), "Till-01");
  EXPECT_EQ(machine.computerName(7), std::nullopt);
  machine.setHostName(std::nullopt);
  EXPECT_EQ(machine.computerName(16), std::nullopt);

  machine.setNetworkPathAnswer(u"X:\\odd", 2);
  EXPECT_EQ(machine.isNetworkPath(u"X:\\odd"), 2);
  EXPECT_EQ(machine.isNetworkPath(u"\\\\srv\\s"), 1);
  EXPECT_EQ(machine.isNetworkPath(u"/home/clerk"), 0);

  DriveFacts share;
  share.path = u"\\\\srv\\s";
  share.driveType = 3;
  machine.addDrive(share);
  EXPECT_EQ(machine.drive(u"\\\\SRV\\S")->driveType, 3);
  EXPECT_FALSE(machine.drive(u"\\\\SRV\\S")->isReady);
  share.isReady = true;
  machine.addDrive(share);
  EXPECT_TRUE(machine.drive(u"\\\\srv\\s")->isReady);
  machine.removeDrive(u"\\\\srv\\s");
  EXPECT_EQ(machine.drive(u"\\\\srv\\s"), std::nullopt);
}

// The same cases against the fake and against the system's own machine: the buffer rule of
// GetComputerNameA, UNC names on the network, a "C:" drive that is ready (on Linux the root unless
// RAVELIN_DRIVES maps it elsewhere) and a drive that is not there.
struct Implementation {
  const char* name;
  std::function<std::shared_ptr<MachineSystem>()> make;
};

class MachineContractTest : public testing::TestWithParam<Implementation> {};

TEST_P(MachineContractTest, Answers) {
  const std::shared_ptr<MachineSystem> machine = GetParam().make();
  const std::optional<std::string> name = machine->computerName(256);
  ASSERT_TRUE(name.has_value());
  ASSERT_FALSE(name->empty());
  EXPECT_EQ(name->find('.'), std::string::npos);
  const auto fitting = static_cast<uint32_t>(name->size() + 1);
  EXPECT_EQ(machine->computerName(fitting), name);
  EXPECT_EQ(machine->computerName(fitting - 1), std::nullopt);

  EXPECT_EQ(machine->isNetworkPath(u"\\\\server\\share\\file.dat"), 1);
  const std::optional<DriveFacts> drive = machine->drive(u"C:");
  ASSERT_TRUE(drive.has_value());
  EXPECT_EQ(drive->path, u"C:");
  EXPECT_TRUE(drive->isReady);
  EXPECT_GT(drive->totalSize, 0);
  EXPECT_GE(drive->totalSize, drive->freeSpace);
  EXPECT_FALSE(drive->fileSystem.empty());
  EXPECT_EQ(machine->drive(u"Q:"), std::nullopt);
}

std::shared_ptr<MachineSystem> makeFake() {
  auto fake = std::make_shared<FakeMachineSystem>();
  fake->setHostName("till-01.shop.lan");
  DriveFacts fixed;
  fixed.path = u"C:";
  fixed.driveType = 2;
  fixed.isReady = true;
  fixed.fileSystem = u"NTFS";
  fixed.totalSize = 1000;
  fixed.freeSpace = 10;
  fake->addDrive(fixed);
  return fake;
}

INSTANTIATE_TEST_SUITE_P(Machines, MachineContractTest,
                         testing::Values(Implementation{"Fake", makeFake},
                                         Implementation{"Native",
                                                        [] {
                                                          return std::shared_ptr<MachineSystem>(
                                                              MachineSystem::makeNative());
                                                        }}),
                         [](const testing::TestParamInfo<Implementation>& info) {
                           return info.param.name;
                         });

}  // namespace
}  // namespace ravelin::platform

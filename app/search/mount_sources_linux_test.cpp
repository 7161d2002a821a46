// SPDX-License-Identifier: GPL-3.0-or-later
// The drives and volumes of a mount table, with the block devices of a test's own folders.
#include "app/search/mount_sources_linux.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/search/system_volumes.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

class MountSourcesTest : public testing::Test {
 protected:
  /// Adds a line to the mount table; makes the folder that is the mount point.
  /// \returns the root of the drive
  std::string Mount(const std::string& point, const std::string& number, const std::string& type,
                    const std::string& source, const std::string& root = "/") {
    std::string drive = folder.Folder("mnt/" + point);
    table += "1 1 " + number + " " + root + " " + drive.substr(0, drive.size() - 1) + " rw - " +
             type + " " + source + " rw\n";
    return drive;
  }
  /// Makes the folder of a block device, and the link to it.
  ///
  /// \param mark the content of the file "removable"; null when the folder has none
  void Device(const std::string& number, const std::string& name, const std::string& path,
              const char* mark = nullptr) {
    const std::string devices = folder.Folder("sys/devices/" + path);
    if (mark != nullptr) folder.File("sys/devices/" + path + "/removable", mark);
    folder.Folder("sys/block");
    std::filesystem::create_directory_symlink(devices, folder / ("sys/block/" + number));
    numbers["/dev/" + name] = number;
  }
  MountSources Sources() const {
    return {.mount_table = folder.File("mounts", table),
            .block_devices = folder / "sys/block/",
            .uuids = folder / "by-uuid",
            .device_number_of = [this](const std::string& path) {
              const auto found = numbers.find(path);
              return found != numbers.end() ? found->second : std::string();
            }};
  }
  /// The type of a drive whose device has these numbers.
  int TypeOf(const std::string& drive) const { return DrivesFrom(Sources())->TypeOf(drive); }

  TempFolder folder;
  std::string table;
  std::map<std::string, std::string> numbers;  ///< by the path of the device
};

TEST_F(MountSourcesTest, ADeviceOnAUsbPortIsRemovable) {
  Device("8:17", "sdb1", "pci0/usb1/1-1/block/sdb/sdb1");
  EXPECT_EQ(TypeOf(Mount("stick", "8:17", "vfat", "/dev/sdb1")), kRemovableDrive);
}

TEST_F(MountSourcesTest, TheDiskOfAPartitionTellsWhetherItIsRemovable) {
  Device("8:0", "sda", "pci0/block/sda", "0\n");
  Device("8:1", "sda1", "pci0/block/sda/sda1");
  Device("179:0", "mmc", "pci0/block/mmc", "1\n");
  Device("179:1", "mmc1", "pci0/block/mmc/mmc1");
  EXPECT_EQ(TypeOf(Mount("disk", "8:0", "ext4", "/dev/sda")), kFixedDrive);
  EXPECT_EQ(TypeOf(Mount("part", "8:1", "ext4", "/dev/sda1")), kFixedDrive);
  EXPECT_EQ(TypeOf(Mount("card", "179:1", "vfat", "/dev/mmc1")), kRemovableDrive);
}

TEST_F(MountSourcesTest, ADeviceWithoutAReadableMarkIsFixed) {
  Device("8:1", "sda1", "pci0/block/sda/sda1");
  Device("8:2", "sda2", "pci0/block/sda/sda2");
  folder.Folder("sys/devices/pci0/block/sda/sda2/removable");
  EXPECT_EQ(TypeOf(Mount("none", "8:1", "ext4", "/dev/sda1")), kFixedDrive);
  EXPECT_EQ(TypeOf(Mount("folder", "8:2", "ext4", "/dev/sda2")), kFixedDrive);
}

TEST_F(MountSourcesTest, AnEncryptedDiskIsRemovableWhenItsPartIs) {
  Device("8:17", "sdb1", "pci0/usb1/1-1/block/sdb/sdb1");
  Device("8:1", "sda1", "pci0/block/sda/sda1", "0\n");
  for (const auto& [number, part] : {std::pair("253:0", "pci0/usb1/1-1/block/sdb/sdb1"),
                                     std::pair("253:1", "pci0/block/sda/sda1")}) {
    const std::string name = std::string("dm") + number;
    Device(number, name, "virtual/block/" + name, "0\n");
    const std::string slaves = folder.Folder("sys/devices/virtual/block/" + name + "/slaves");
    std::filesystem::create_directory_symlink(folder / ("sys/devices/" + std::string(part)),
                                              slaves + "part");
  }
  EXPECT_EQ(TypeOf(Mount("secret", "253:0", "ext4", "/dev/dm253:0")), kRemovableDrive);
  EXPECT_EQ(TypeOf(Mount("own", "253:1", "ext4", "/dev/dm253:1")), kFixedDrive);
}

TEST_F(MountSourcesTest, TooManyLayersOfDevicesAreNotDescended) {
  // Each device consists of the one with the next number; the last is on a USB port.
  const auto path = [](int layer) {
    return layer == 5 ? std::string("pci0/usb1/sdb") : "virtual/dm" + std::to_string(layer);
  };
  for (int layer = 5; layer >= 0; --layer) {
    const std::string name = "dm" + std::to_string(layer);
    Device("253:" + std::to_string(layer), name, path(layer));
    if (layer == 5) continue;
    const std::string slaves = folder.Folder("sys/devices/" + path(layer) + "/slaves");
    std::filesystem::create_directory_symlink(folder / ("sys/devices/" + path(layer + 1)),
                                              slaves + "below");
  }
  EXPECT_EQ(TypeOf(Mount("four", "253:1", "ext4", "/dev/dm1")), kRemovableDrive);
  EXPECT_EQ(TypeOf(Mount("five", "253:0", "ext4", "/dev/dm0")), kFixedDrive);
}

TEST_F(MountSourcesTest, ADeviceThatSysDoesNotListIsFixed) {
  folder.Folder("sys/block");
  numbers["/dev/sda1"] = "8:1";
  EXPECT_EQ(TypeOf(Mount("disk", "8:1", "ext4", "/dev/sda1")), kFixedDrive);
}

TEST_F(MountSourcesTest, AMountWhoseSourceIsNoDeviceIsKnownByItsNumber) {
  Device("8:1", "sda1", "pci0/block/sda/sda1");
  EXPECT_EQ(TypeOf(Mount("numbered", "8:1", "ext4", "/dev/root")), kFixedDrive);
  EXPECT_EQ(TypeOf(Mount("named", "8:1", "ext4", "rootfs")), kFixedDrive);
  EXPECT_EQ(TypeOf(Mount("unknown", "0:77", "overlay", "overlay")), kUnknownDrive);
}

TEST_F(MountSourcesTest, OnlyADriveThatRespondsImmediatelyIsReportedAsGone) {
  Device("8:1", "sda1", "pci0/block/sda/sda1", "0\n");
  const std::string disk = Mount("disk", "8:1", "ext4", "/dev/sda1");
  const std::string share = Mount("share", "0:50", "nfs4", "server:/music");
  const auto drives = DrivesFrom(Sources());
  EXPECT_EQ(drives->GetLogicalDriveList(), disk + '\0' + share + '\0' + '\0');
  EXPECT_EQ(drives->TypeOf(disk), kFixedDrive);
  for (const std::string& root : {disk, share})
    std::filesystem::remove(std::filesystem::path(root));
  EXPECT_EQ(drives->TypeOf(disk), kNoDrive);
  EXPECT_EQ(drives->ListedTypeOf(disk), kFixedDrive);
  EXPECT_EQ(drives->TypeOf(share), kRemoteDrive);
  EXPECT_EQ(drives->TypeOf(folder / "elsewhere/"), kUnknownDrive);
}

TEST_F(MountSourcesTest, ALinkIsFollowedUnlessTheNearestMountIsTheKernels) {
  const std::string disk = Mount("disk", "8:1", "ext4", "/dev/sda1");
  const std::string proc = Mount("disk/proc", "0:22", "proc", "proc");
  const std::string below = Mount("disk/proc/stick", "8:17", "vfat", "/dev/sdb1");
  for (const std::string& target : {disk, proc, below})
    std::filesystem::create_directory_symlink(target,
                                              folder / ("to" + std::to_string(target.size())));
  const auto drives = DrivesFrom(Sources());
  const auto may_follow = [&](const std::string& target) {
    return drives->MayFollow(folder / ("to" + std::to_string(target.size())));
  };
  EXPECT_TRUE(may_follow(disk));
  EXPECT_FALSE(may_follow(proc));
  EXPECT_TRUE(may_follow(below));
  EXPECT_TRUE(drives->MayFollow("/"));
  EXPECT_TRUE(drives->IsMountPoint(proc));
  EXPECT_FALSE(drives->IsMountPoint(folder.path()));
}

TEST_F(MountSourcesTest, WithoutAReadableMountTableThereAreNoDrives) {
  MountSources sources = Sources();
  for (const std::string& path : {folder / "none", folder.Folder("mount table")}) {
    sources.mount_table = path;
    EXPECT_EQ(DrivesFrom(sources)->GetLogicalDriveList(), "") << path;
    EXPECT_TRUE(VolumesFrom(sources).empty()) << path;
  }
}

TEST_F(MountSourcesTest, AVolumeIsIdentifiedByTheUuidOfItsDevice) {
  const std::string stick = Mount("stick", "8:17", "vfat", "/dev/sdb1");
  // A file system of several devices has a number of its own.
  const std::string joined = Mount("joined", "0:40", "btrfs", "/dev/sdc1", "/@music");
  const std::string share = Mount("share", "0:50", "nfs4", "server:/music");
  const std::string sent = Mount("sent", "0:51", "fuse.portal2", "portal");
  const std::string unmounted = Mount("auto", "0:52", "autofs", "systemd-1");
  const std::string unknown = Mount("unknown", "8:33", "ext4", "/dev/sdx1");
  Mount("proc", "0:22", "proc", "proc");
  numbers = {{folder / "by-uuid/1234-ABCD", "8:17"},
             {folder / "by-uuid/abba", "8:49"},
             {"/dev/sdc1", "8:49"}};
  for (const char* const link : {"1234-ABCD", "abba", "no-device"})
    folder.File("by-uuid/" + std::string(link));
  const MountedVolumes volumes = VolumesFrom(Sources());
  struct Expected {
    std::string root;
    VolumeFolder of;
    bool automounter;
    bool network;
  };
  const std::vector<Expected> expected{{stick, {"uuid 1234-ABCD", "/"}, false, false},
                                       {joined, {"uuid abba", "/@music/"}, false, false},
                                       {share, {"source server:/music", "/"}, false, true},
                                       {sent, {}, false, true},
                                       {unmounted, {}, true, false},
                                       {unknown, {}, false, false}};
  ASSERT_EQ(volumes.size(), expected.size());
  for (std::size_t k = 0; k < expected.size(); ++k) {
    EXPECT_EQ(volumes[k].root, expected[k].root);
    EXPECT_EQ(volumes[k].folder, expected[k].of) << expected[k].root;
    EXPECT_EQ(volumes[k].automounter, expected[k].automounter) << expected[k].root;
    EXPECT_EQ(volumes[k].network, expected[k].network) << expected[k].root;
  }
}

TEST_F(MountSourcesTest, OnlyBlockDevicesHaveADeviceNumber) {
  EXPECT_EQ(DeviceNumberOf("/dev/null"), "");
  EXPECT_EQ(DeviceNumberOf(folder.path()), "");
  EXPECT_EQ(DeviceNumberOf(folder / "none"), "");
}

TEST_F(MountSourcesTest, GivenDrivesTakeTheMountPointsAndLinksOfTheSystem) {
  const auto drives = GivenDrives({folder.path()});
  EXPECT_TRUE(drives->IsMountPoint("/proc/"));
  EXPECT_FALSE(drives->IsMountPoint(folder.path()));
  EXPECT_FALSE(drives->MayFollow("/proc/self"));
  EXPECT_TRUE(drives->MayFollow(folder.path()));
  EXPECT_EQ(drives->ListedTypeOf(folder.path()), kFixedDrive);
}

TEST(SystemWalkLimits, TheMountPointsOfTheKernelAreAmongThem) {
  const std::vector<std::string> points = SystemWalkLimits().mount_points();
  EXPECT_NE(std::find(points.begin(), points.end(), "/proc/"), points.end());
}

}  // namespace
}  // namespace tallow

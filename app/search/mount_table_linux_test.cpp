// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/mount_table_linux.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "app/search/drive_list.h"

namespace tallow {
namespace {

/// A typical desktop's mount table in the kernel's format.
constexpr std::string_view kTable =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "27 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
    "30 27 8:3 / /home rw - ext4 /dev/sda3 rw\n"
    "31 27 0:40 /@music /srv/music rw shared:9 master:2 - btrfs /dev/sdb1 rw,subvol=/@music\n"
    "32 27 0:40 /@music /mnt/again rw - btrfs /dev/sdb1 rw,subvol=/@music\n"
    "33 27 0:40 /@other /mnt/other rw - btrfs /dev/sdb1 rw,subvol=/@other\n"
    "34 27 8:17 / /media/My\\040Stick rw - vfat /dev/sdc1 rw\n"
    "35 27 0:50 / /mnt/share rw - nfs4 server:/music rw\n"
    "36 27 11:0 / /media/cd ro - iso9660 /dev/sr0 ro\n"
    "37 27 0:51 / /tmp rw - tmpfs tmpfs rw\n"
    "38 27 8:2 /etc/hosts /etc/hosts rw - ext4 /dev/sda2 rw\n"
    "39 27 0:60 / /var/lib/box/merged rw - overlay overlay rw\n"
    "not a line of a mount table\n";

std::vector<std::string> PointsOf(const std::vector<Mount>& mounts) {
  std::vector<std::string> points;
  for (const Mount& mount : mounts) points.push_back(mount.point);
  return points;
}

TEST(MountTable, FieldsAreReadAndUnescaped) {
  const std::vector<Mount> table = ParseMountTable(kTable);
  ASSERT_EQ(table.size(), 12U);
  EXPECT_EQ(table[3].device, "0:40");
  EXPECT_EQ(table[3].root, "/@music");
  EXPECT_EQ(table[3].point, "/srv/music");
  EXPECT_EQ(table[3].type, "btrfs");
  EXPECT_EQ(table[3].source, "/dev/sdb1");
  EXPECT_EQ(table[6].point, "/media/My Stick");
}

TEST(MountTable, TheLaterOfTwoMountsAtOnePlaceHidesTheOther) {
  const std::vector<Mount> table =
      ParseMountTable("1 1 8:1 / /mnt rw - ext4 /dev/a rw\n2 1 8:2 / /mnt rw - xfs /dev/b rw\n");
  ASSERT_EQ(table.size(), 1U);
  EXPECT_EQ(table[0].type, "xfs");
}

TEST(MountTable, DrivesAreInOrderWithoutPseudoFileSystemsFilesAndRepeats) {
  const std::vector<Mount> drives = DrivesOf(
      ParseMountTable(kTable), [](const std::string& point) { return point != "/etc/hosts"; });
  EXPECT_EQ(PointsOf(drives),
            (std::vector<std::string>{"/", "/home", "/media/My Stick", "/media/cd", "/mnt/again",
                                      "/mnt/other", "/mnt/share", "/tmp", "/var/lib/box/merged"}));
}

TEST(MountTable, EveryKindOfDriveIsKnown) {
  const std::vector<Mount> table = ParseMountTable(kTable);
  const auto type = [&](std::string_view point, BlockDevice device) {
    for (const Mount& mount : table)
      if (mount.point == point) return TypeOfMount(mount, device);
    return -1;
  };
  EXPECT_EQ(type("/", {}), kFixedDrive);
  EXPECT_EQ(type("/home", {.exists = true}), kFixedDrive);
  EXPECT_EQ(type("/home", {.exists = true, .removable = true}), kRemovableDrive);
  EXPECT_EQ(type("/srv/music", {.exists = true}), kFixedDrive);
  EXPECT_EQ(type("/media/My Stick", {.exists = true, .removable = true}), kRemovableDrive);
  EXPECT_EQ(type("/mnt/share", {}), kRemoteDrive);
  EXPECT_EQ(type("/media/cd", {.exists = true, .removable = true}), kCdRom);
  EXPECT_EQ(type("/tmp", {}), kRamDisk);
  EXPECT_EQ(type("/var/lib/box/merged", {}), kUnknownDrive);
}

TEST(MountTable, RemoteAndPseudoFileSystemsByName) {
  for (const char* type : {"nfs", "nfs4", "cifs", "smb3", "9p", "ceph", "fuse.sshfs"})
    EXPECT_EQ(TypeOfMount({"0:1", "/", "/mnt", type, "x"}, {}), kRemoteDrive) << type;
  for (const char* type : {"proc", "sysfs", "devtmpfs", "cgroup2", "tracefs", "autofs"})
    EXPECT_TRUE(IsPseudoFileSystem(type)) << type;
  for (const char* type : {"ext4", "tmpfs", "nfs", "btrfs", "fuseblk"})
    EXPECT_FALSE(IsPseudoFileSystem(type)) << type;
}

TEST(MountTable, ARootOnAnythingIsFixed) {
  EXPECT_EQ(TypeOfMount({"0:1", "/", "/", "overlay", "overlay"}, {}), kFixedDrive);
  EXPECT_EQ(TypeOfMount({"0:1", "/", "/", "tmpfs", "tmpfs"}, {}), kFixedDrive);
}

TEST(MountTable, ServersAreNotAskedWhetherTheirMountsAreFolders) {
  std::vector<std::string> asked;
  DrivesOf(ParseMountTable(kTable), [&](const std::string& point) {
    asked.push_back(point);
    return true;
  });
  EXPECT_EQ(std::count(asked.begin(), asked.end(), "/mnt/share"), 0);
  EXPECT_EQ(std::count(asked.begin(), asked.end(), "/home"), 1);
}

TEST(MountTable, DecryptedAndJoinedFoldersAreLocal) {
  for (const char* type : {"ecryptfs", "fuse.gocryptfs", "fuse.encfs", "fuse.mergerfs"})
    EXPECT_EQ(TypeOfMount({"0:1", "/", "/home/ann", type, "x"}, {}), kFixedDrive) << type;
}

}  // namespace
}  // namespace tallow

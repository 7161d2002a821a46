// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_list.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

TEST(DriveList, RootsAreTakenFromTheFront) {
  std::string list("A:\\\0C:\\\0\0", 9);
  EXPECT_FALSE(IsEndOfDriveList(list));
  EXPECT_EQ(NextDriveFromList(list), "A:\\");
  EXPECT_EQ(NextDriveFromList(list), "C:\\");
  EXPECT_EQ(list, std::string(1, '\0'));
  EXPECT_TRUE(IsEndOfDriveList(list));
}

TEST(DriveList, AListWithoutNulGivesNothingAndIsUnchanged) {
  std::string list = "C:\\";
  EXPECT_EQ(NextDriveFromList(list), "");
  EXPECT_EQ(list, "C:\\");
  EXPECT_TRUE(IsEndOfDriveList(list));
  EXPECT_TRUE(IsEndOfDriveList(""));
}

TEST(DriveList, EveryTypeHasADescription) {
  EXPECT_EQ(DescribeDriveType(0, "C:\\"), "The drive type cannot be determined");
  EXPECT_EQ(DescribeDriveType(1, "C:\\"), "The root directory does not exist");
  EXPECT_EQ(DescribeDriveType(2, "a:\\"), "Floppy drive");
  EXPECT_EQ(DescribeDriveType(2, "b:\\"), "Floppy drive");
  EXPECT_EQ(DescribeDriveType(2, "A:\\"), "Removable drive");
  EXPECT_EQ(DescribeDriveType(2, "E:\\"), "Removable drive");
  EXPECT_EQ(DescribeDriveType(3, "C:\\"), "Hard drive; can not be removed");
  EXPECT_EQ(DescribeDriveType(4, "C:\\"), "Remote (network) drive");
  EXPECT_EQ(DescribeDriveType(5, "C:\\"), "CD-ROM drive");
  EXPECT_EQ(DescribeDriveType(6, "C:\\"), "RAM disk");
  EXPECT_EQ(DescribeDriveType(7, "C:\\"), "");
  EXPECT_EQ(DescribeDriveType(99, "C:\\"), "");
}

TEST(DriveList, OnlyHardDrivesAreSearched) {
  for (int type = 0; type < 9; ++type)
    EXPECT_EQ(IsSearched(DescribeDriveType(type, "C:\\")), type == 3) << type;
}

TEST(DriveList, GivenFoldersAreTheFixedDrivesInTheirOrder) {
  const TempFolder folder;
  const std::string b = folder.Folder("b");
  const std::string a = folder.Folder("a");
  const auto drives = GivenDrives({b, a});
  std::string expected = b;
  expected.push_back('\0');
  expected += a;
  expected.append(2, '\0');
  EXPECT_EQ(drives->GetLogicalDriveList(), expected);
  EXPECT_EQ(drives->TypeOf(b), kFixedDrive);
  std::filesystem::remove(std::filesystem::path(b));
  EXPECT_EQ(drives->TypeOf(b), kNoDrive);
}

TEST(DriveList, TheSystemsListEndsWithANul) {
  std::string list = SystemDrives()->GetLogicalDriveList();
  ASSERT_FALSE(list.empty());
  int drives = 0;
  while (!IsEndOfDriveList(list)) {
    const std::string root = NextDriveFromList(list);
    EXPECT_EQ(root.back(), kSeparator);
    ++drives;
  }
  EXPECT_GT(drives, 0);
}

}  // namespace
}  // namespace tallow

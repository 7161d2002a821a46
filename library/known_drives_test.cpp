// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/known_drives.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

using Verdict = KnownDrives::Verdict;

/// Two folders that simulate mount points, with a simulated mount table.
class KnownDrivesTest : public testing::Test {
 protected:
  KnownDrivesTest() { MakeSong(one); }

  void MakeSong(const std::string& root) {
    CreateFolders(root + "abba" + kSep);
    WriteFileAtomically(root + "abba" + kSep + "a.mp3", "x");
  }
  void Mount(const std::string& root, const std::string& volume) {
    Unmount(root);
    mounted.push_back({root, {volume, volume.empty() ? "" : kSep}, false});
  }
  void Unmount(const std::string& root) {
    std::erase_if(mounted, [&](const MountedVolume& volume) { return volume.root == root; });
  }
  void Clear(const std::string& root) {
    std::filesystem::remove_all(std::filesystem::path(root));
    CreateFolders(root);
  }
  void CheckDrives() {
    drives.CheckDrives([this] {
      ++reads;
      return mounted;
    });
  }
  /// \param kept whether other songs in the same folder are away
  void Remember(const std::string& root, bool kept = false) {
    CheckDrives();
    const std::string abba = root + "abba" + kSep;
    drives.UpdateFolders({abba}, kept ? std::vector<std::string>{abba} : std::vector<std::string>(),
                         true);
  }
  Verdict VerdictOf(const std::string& root) {
    CheckDrives();
    return drives.VerdictOf(root + "abba" + kSep).verdict;
  }

  TempFolder folder;
  const std::string one = folder.Folder("one");
  const std::string two = folder.Folder("two");
  MountedVolumes mounted{{folder.path(), {"uuid root", kSep}, false}};
  KnownDrives drives;
  int reads = 0;
};

TEST_F(KnownDrivesTest, AFolderOnNoKnownDriveIsReportedAsSuch) {
  EXPECT_EQ(VerdictOf(one), Verdict::kNoKnownDrive);
  Mount(one, "uuid A");
  Remember(one);
  EXPECT_EQ(VerdictOf(two), Verdict::kNoKnownDrive);
}

TEST_F(KnownDrivesTest, OnAMountedDriveASongIsMissing) {
  Mount(one, "uuid A");
  Remember(one);
  EXPECT_EQ(VerdictOf(one), Verdict::kMissing);
  ASSERT_EQ(drives.Drives().size(), 1U);
  EXPECT_EQ(drives.Drives()[0].root, one);
  EXPECT_TRUE(drives.Drives()[0].mount_point);
  EXPECT_EQ(drives.Drives()[0].folder, (VolumeFolder{"uuid A", kSep}));
}

TEST_F(KnownDrivesTest, AMissingRootIsAway) {
  Mount(one, "uuid A");
  Remember(one);
  std::filesystem::remove_all(std::filesystem::path(one));
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
  EXPECT_EQ(drives.VerdictOf(one + "abba" + kSep).away_root, one);
}

TEST_F(KnownDrivesTest, AnUnmountedMountPointIsAway) {
  Mount(one, "");
  Remember(one);
  EXPECT_EQ(VerdictOf(one), Verdict::kMissing);
  Unmount(one);
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
}

TEST_F(KnownDrivesTest, AnEmptyRootIsAway) {
  Mount(one, "");
  Remember(one);
  Clear(one);
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
}

TEST_F(KnownDrivesTest, AnUnreadableShareIsAway) {
  Mount(one, "source server");
  mounted.back().network = true;
  Remember(one);
  FolderState state = FolderState::kUnreadable;
  const auto verdict = [&] {
    drives.CheckDrives([&] { return mounted; },
                       [&](const std::vector<std::string>& folders) {
                         return std::vector<std::optional<FolderState>>(folders.size(), state);
                       });
    return drives.VerdictOf(one + "abba" + kSep).verdict;
  };
  EXPECT_EQ(verdict(), Verdict::kAway);
  state = FolderState::kHasEntries;
  EXPECT_EQ(verdict(), Verdict::kMissing);
}

TEST_F(KnownDrivesTest, AnotherKnownVolumeMeansAway) {
  Mount(one, "uuid A");
  Remember(one);
  Mount(one, "uuid B");
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
  Mount(one, "uuid A");
  EXPECT_EQ(VerdictOf(one), Verdict::kMissing);
}

TEST_F(KnownDrivesTest, AnotherFolderOfAVolumeIsAnotherDrive) {
  mounted.push_back({one, {"uuid A", kSep + "music" + kSep}, false});
  Remember(one);
  Unmount(one);
  mounted.push_back({one, {"uuid A", kSep + "films" + kSep}, false});
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
}

TEST_F(KnownDrivesTest, WithoutAVolumeIdentityItIsTheSameDrive) {
  Mount(one, "");
  Remember(one);
  Mount(one, "uuid B");
  EXPECT_EQ(VerdictOf(one), Verdict::kMissing);
  Remember(one);
  EXPECT_EQ(drives.Drives().size(), 1U);
  Mount(one, "");
  EXPECT_EQ(VerdictOf(one), Verdict::kMissing);
  Remember(one);
  // The known volume is kept.
  EXPECT_EQ(drives.Drives()[0].folder.volume, "uuid B");
}

TEST_F(KnownDrivesTest, AnAutomounterIsOpenedOnceBeforeItIsAway) {
  Mount(one, "uuid A");
  Remember(one);
  Unmount(one);
  mounted.push_back({one, {}, true});
  reads = 0;
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
  EXPECT_EQ(reads, 2);
  // Opening the root has mounted the drive.
  reads = 0;
  drives.CheckDrives([this] {
    if (++reads == 2) mounted.back() = {one, {"uuid A", kSep}, false};
    return mounted;
  });
  EXPECT_EQ(drives.VerdictOf(one + "abba" + kSep).verdict, Verdict::kMissing);
}

TEST_F(KnownDrivesTest, WithTwoSticksAtOneRootASongIsAwayWhenOneOfThemIs) {
  Mount(one, "uuid A");
  Remember(one);
  Mount(one, "uuid B");
  Remember(one, true);
  ASSERT_EQ(drives.Drives().size(), 2U);
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
  Mount(one, "uuid A");
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
}

TEST_F(KnownDrivesTest, AVolumeMountedElsewhereIsFound) {
  Mount(one, "uuid A");
  Remember(one);
  Unmount(one);
  MakeSong(two);
  Mount(two, "uuid A");
  CheckDrives();
  const auto verdict = drives.VerdictOf(one + "abba" + kSep);
  EXPECT_EQ(verdict.verdict, Verdict::kMissing);
  EXPECT_EQ(verdict.moved_to, std::vector<std::string>{two + "abba" + kSep});
  drives.ApplyNewRoots();
  EXPECT_EQ(drives.Drives()[0].root, two);
  EXPECT_EQ(VerdictOf(two), Verdict::kMissing);
  EXPECT_EQ(VerdictOf(one), Verdict::kNoKnownDrive);
}

TEST_F(KnownDrivesTest, AGivenFolderIsADriveWithItsFolderOnTheVolume) {
  Mount(one, "uuid A");
  const std::string given = one + "abba" + kSep;
  drives = KnownDrives({given});
  CheckDrives();
  drives.UpdateFolders({given}, {}, true);
  ASSERT_EQ(drives.Drives().size(), 1U);
  EXPECT_EQ(drives.Drives()[0].root, given);
  EXPECT_FALSE(drives.Drives()[0].mount_point);
  EXPECT_EQ(drives.Drives()[0].folder, (VolumeFolder{"uuid A", kSep + "abba" + kSep}));
  // The stick is mounted elsewhere.
  Unmount(one);
  Clear(one);
  MakeSong(two);
  Mount(two, "uuid A");
  CheckDrives();
  EXPECT_EQ(drives.VerdictOf(given).moved_to, std::vector<std::string>{two + "abba" + kSep});
}

TEST_F(KnownDrivesTest, AGivenFolderThatIsNotThereIsKnown) {
  Mount(one, "uuid A");
  Remember(one);
  EXPECT_TRUE(drives.Knows(one));
  EXPECT_TRUE(drives.Knows(one + "abba" + kSep));
  EXPECT_FALSE(drives.Knows(one + "queen" + kSep));
  EXPECT_FALSE(drives.Knows(two));
}

TEST_F(KnownDrivesTest, AMountedDriveKeepsOnlyFoldersWithSongs) {
  Mount(one, "");
  CheckDrives();
  drives.UpdateFolders({one + "abba" + kSep, one + "queen" + kSep}, {}, true);
  drives.UpdateFolders({one + "abba" + kSep}, {}, true);
  EXPECT_EQ(drives.Drives()[0].folders, (std::set<std::string>{"abba" + kSep}));
  // Folders with away songs are kept only if they were known before.
  drives.UpdateFolders({one + "abba" + kSep}, {one + "queen" + kSep}, true);
  EXPECT_EQ(drives.Drives()[0].folders, (std::set<std::string>{"abba" + kSep}));
  drives.UpdateFolders({one + "abba" + kSep, one + "queen" + kSep}, {}, true);
  drives.UpdateFolders({one + "abba" + kSep}, {one + "queen" + kSep}, true);
  EXPECT_EQ(drives.Drives()[0].folders.size(), 2U);
  // A cancelled search has not seen all folders.
  drives.UpdateFolders({}, {}, false);
  EXPECT_EQ(drives.Drives()[0].folders.size(), 2U);
  drives.UpdateFolders({}, {}, true);
  EXPECT_TRUE(drives.Drives().empty());
}

TEST_F(KnownDrivesTest, AVolumeWhoseSongsAreAllOnAnotherVolumeIsForgotten) {
  Mount(one, "uuid A");
  Remember(one);
  Mount(one, "uuid B");
  Remember(one);
  ASSERT_EQ(drives.Drives().size(), 1U);
  EXPECT_EQ(drives.Drives()[0].folder.volume, "uuid B");
}

TEST_F(KnownDrivesTest, ADriveThatIsAwayKeepsItsFolders) {
  Mount(one, "uuid A");
  Remember(one);
  Unmount(one);
  MakeSong(two);
  CheckDrives();
  drives.UpdateFolders({two + "abba" + kSep}, {one + "abba" + kSep}, true);
  EXPECT_EQ(VerdictOf(one), Verdict::kAway);
}

TEST_F(KnownDrivesTest, ForgettingARootForgetsOnlyItsAwayDrive) {
  Mount(one, "uuid A");
  Remember(one);
  Mount(one, "uuid B");
  Remember(one, true);
  CheckDrives();
  drives.Forget(one);
  ASSERT_EQ(drives.Drives().size(), 1U);
  EXPECT_EQ(drives.Drives()[0].folder.volume, "uuid B");
}

TEST_F(KnownDrivesTest, TheFileHoldsEverything) {
  Mount(one, "uuid A");
  Remember(one);
  EXPECT_TRUE(drives.IsDirty());
  drives.MarkSaved();
  Remember(one);
  EXPECT_FALSE(drives.IsDirty());
  KnownDrives read;
  read.Decode(drives.Encode());
  EXPECT_FALSE(read.IsDirty());
  EXPECT_EQ(read.Encode(), drives.Encode());
  EXPECT_EQ(read.Drives()[0].folders, (std::set<std::string>{"abba" + kSep}));
  EXPECT_THROW(read.Decode("{}"), std::exception);
  EXPECT_THROW(read.Decode("{\"format\":\"Tallow drives\",\"version\":2,\"drives\":[]}"),
               std::exception);
  EXPECT_EQ(read.Encode(), drives.Encode());
}

TEST_F(KnownDrivesTest, WithoutMountInformationTheDriveIsTheShareOrTheFolder) {
  mounted.clear();
  CheckDrives();
  drives.UpdateFolders({"\\\\server\\music\\abba\\", one}, {}, true);
  ASSERT_EQ(drives.Drives().size(), 2U);
  EXPECT_EQ(drives.Drives()[0].root, "\\\\server\\music\\");
  EXPECT_EQ(drives.Drives()[1].root, one);
}

}  // namespace
}  // namespace tallow

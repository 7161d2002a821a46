// SPDX-License-Identifier: GPL-3.0-or-later
// Paths through links, and folders whose entries cannot be read.
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/as_nobody_linux.h"
#include "tests/failing_call_linux.h"
#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

TEST(FileSystemLinux, TheAbsolutePathOfALinkToNothingIsThatOfItsTarget) {
  const TempFolder folder;
  std::filesystem::create_symlink("away/real.juk", folder / "relative.juk");
  std::filesystem::create_symlink(folder / "relative.juk", folder / "chain.juk");
  std::filesystem::create_symlink("away", folder / "folder");
  EXPECT_EQ(AbsolutePath(folder / "relative.juk"), folder / "away/real.juk");
  EXPECT_EQ(AbsolutePath(folder / "chain.juk"), folder / "away/real.juk");
  EXPECT_EQ(AbsolutePath(folder / "folder/"), folder / "away");
  EXPECT_TRUE(IsSamePath(folder / "chain.juk", folder / "away/real.juk"));
  EXPECT_FALSE(IsSamePath(folder / "chain.juk", folder / "away/other.juk"));
  // The paths stay the same when the target is there.
  folder.File("away/real.juk");
  EXPECT_EQ(AbsolutePath(folder / "chain.juk"), folder / "away/real.juk");
}

TEST(FileSystemLinux, TheAbsolutePathOfLinksInACircleIsOneOfThem) {
  const TempFolder folder;
  std::filesystem::create_symlink("two.juk", folder / "one.juk");
  std::filesystem::create_symlink("one.juk", folder / "two.juk");
  std::filesystem::create_symlink("none.juk", folder / "other.juk");
  for (int k = 0; k < 3; ++k) {
    const std::string path = AbsolutePath(folder / "one.juk");
    EXPECT_TRUE(path == folder / "one.juk" || path == folder / "two.juk") << path;
    EXPECT_EQ(AbsolutePath(folder / "other.juk"), folder / "none.juk");
  }
}

TEST(FileSystemLinux, TheAbsolutePathOfARelativePathIsInTheCurrentFolder) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(AbsolutePath("no-such-folder/a.juk"), here + "/no-such-folder/a.juk");
  EXPECT_EQ(AbsolutePath("no-such-file"), here + "/no-such-file");
  EXPECT_EQ(AbsolutePath("."), here);
}

TEST(FileSystemLinux, RealSubfoldersAreNoLinksAndHaveNoIdentity) {
  const TempFolder folder;
  folder.File("a.mp3");
  folder.File("b.txt");
  folder.Folder("real");
  std::filesystem::create_directory_symlink(folder / "real", folder / "link");
  const FolderListing listing =
      ListFolder(folder.path(), {.pattern = "*.mp3", .real_subfolders = true});
  ASSERT_EQ(listing.subfolders.size(), 1U);
  EXPECT_EQ(listing.subfolders[0].name, "real");
  EXPECT_FALSE(listing.subfolders[0].linked);
  EXPECT_EQ(listing.identity, FolderIdentity());
  EXPECT_EQ(listing.files.size(), 1U);
}

TEST(FileSystemLinux, FilesOfAFolderThatMayOnlyBeListedHaveNoSizeAndAreReported) {
  const TempFolder folder;
  folder.File("listed/a.mp3", "12345");
  const std::string listed = folder / "listed";
  const ListRequest request{.pattern = "*.mp3", .sizes = true, .tail_bytes = 3};
  ASSERT_EQ(chmod(listed.c_str(), 0444), 0);
  FolderListing listing;
  {
    const AsNobody nobody;
    listing = ListFolder(listed, request);
  }
  ASSERT_EQ(chmod(listed.c_str(), 0755), 0);
  EXPECT_TRUE(listing.opened);
  EXPECT_EQ(listing.problem, "Permission denied");
  ASSERT_EQ(listing.files.size(), 1U);
  EXPECT_EQ(listing.files[0].name, "a.mp3");
  EXPECT_EQ(listing.files[0].size, kNoLimit);
  EXPECT_EQ(listing.files[0].tail, "");
  listing = ListFolder(listed, request);
  EXPECT_EQ(listing.problem, "");
  ASSERT_EQ(listing.files.size(), 1U);
  EXPECT_EQ(listing.files[0].size, 5U);
  EXPECT_EQ(listing.files[0].tail, "345");
}

TEST(FileSystemLinux, AnEntryThatCannotBeReadIsReportedUnlessPermissionIsMissing) {
  const TempFolder folder;
  folder.File("a.mp3");
  for (const int error : {EIO, EACCES}) {
    FolderListing listing;
    // The folder itself is checked with a flag, its entries without.
    const bool has_run = RunWithFailingCall({SYS_newfstatat, error, 0}, [&] {
      listing = ListFolder(folder.path(), {.pattern = "*.mp3", .sizes = true});
    });
    if (!has_run) GTEST_SKIP() << "The kernel cannot refuse calls.";
    EXPECT_TRUE(listing.opened);
    EXPECT_TRUE(listing.files.empty());
    EXPECT_EQ(listing.problem, error == EIO ? "Input/output error" : "");
  }
}

TEST(FileSystemLinux, FilesBeyondTheMaximumOfTailsStayPendingUntilTheyAreRead) {
  const TempFolder folder;
  for (int k = 0; k < 20; ++k)
    folder.File(std::to_string(k) + ".mp3", std::string(static_cast<std::size_t>(k), 'x') + "tail");
  std::filesystem::create_symlink("0.mp3", folder / "link.mp3");
  const ListRequest all{.sizes = true, .tail_bytes = 4};
  ListRequest some = all;
  some.max_tails = 5;
  const FolderListing expected = ListFolder(folder.path(), all);
  EXPECT_FALSE(expected.has_pending);
  FolderListing listing = ListFolder(folder.path(), some);
  EXPECT_TRUE(listing.has_pending);
  EXPECT_EQ(std::ranges::count(listing.files, true, &FileEntry::is_pending), 15);
  EXPECT_EQ(ReadPendingFiles(folder.path(), 4, listing.files), "");
  ASSERT_EQ(listing.files.size(), expected.files.size());
  for (std::size_t k = 0; k < expected.files.size(); ++k) {
    EXPECT_FALSE(listing.files[k].is_pending);
    EXPECT_EQ(listing.files[k].name, expected.files[k].name);
    EXPECT_EQ(listing.files[k].size, expected.files[k].size);
    EXPECT_EQ(listing.files[k].tail, expected.files[k].tail);
  }
}

TEST(FileSystemLinux, APendingFileThatIsDeletedStaysPending) {
  const TempFolder folder;
  folder.File("a.mp3", "content");
  FolderListing listing =
      ListFolder(folder.path(), {.sizes = true, .tail_bytes = 4, .max_tails = 0});
  ASSERT_EQ(listing.files.size(), 1U);
  ASSERT_TRUE(RemoveFile(folder / "a.mp3"));
  EXPECT_EQ(ReadPendingFiles(folder.path(), 4, listing.files), "");
  EXPECT_TRUE(listing.files.front().is_pending);
}

TEST(FileSystemLinux, NoFileIsPendingWithoutTailsOrWithFewerFilesThanTheMaximum) {
  const TempFolder folder;
  folder.File("a.mp3", "content");
  EXPECT_FALSE(ListFolder(folder.path(), {.sizes = true, .max_tails = 0}).has_pending);
  EXPECT_FALSE(
      ListFolder(folder.path(), {.sizes = true, .tail_bytes = 4, .max_tails = 1}).has_pending);
}

}  // namespace
}  // namespace tallow

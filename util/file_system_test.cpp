// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/file_system.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

#include "tests/temp_folder.h"
#include "util/day.h"
#include "util/errors.h"
#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace tallow {
namespace {

std::vector<std::string> NamesOf(const FolderListing& listing) {
  std::vector<std::string> names;
  for (const FileEntry& file : listing.files) names.push_back(file.name);
  std::sort(names.begin(), names.end());
  return names;
}

TEST(FileSystem, AListingContainsFilesSizesAndSubfolders) {
  const TempFolder folder;
  folder.File("a.mp3", "12345");
  folder.File("B.MP3", "123");
  folder.File("c.txt");
  folder.Folder("sub.mp3");
  const FolderListing listing =
      ListFolder(folder.path(), {.pattern = "*.mp3", .subfolders = true, .sizes = true});
  EXPECT_TRUE(listing.opened);
  EXPECT_EQ(NamesOf(listing), (std::vector<std::string>{"B.MP3", "a.mp3"}));
  for (const FileEntry& file : listing.files) EXPECT_EQ(file.size, file.name == "a.mp3" ? 5U : 3U);
  ASSERT_EQ(listing.subfolders.size(), 1U);
  EXPECT_EQ(listing.subfolders[0].name, "sub.mp3");
  EXPECT_FALSE(listing.subfolders[0].linked);
  EXPECT_EQ(listing.identity, IdentityOfFolder(folder.path()));
  EXPECT_NE(listing.identity, IdentityOfFolder(folder / "sub.mp3"));
}

TEST(FileSystem, FilesOfTheCountedNamesAreOnlyCounted) {
  const TempFolder folder;
  for (const char* const name : {"a.mp3", "b.flac", "C.OGG", "d.txt", "._b.flac"})
    folder.File(name);
  folder.Folder("e.flac");
  FolderListing listing =
      ListFolder(folder.path(), {.pattern = "*.mp3", .counted = "*.mp3;*.flac;*.ogg"});
  EXPECT_EQ(NamesOf(listing), std::vector<std::string>{"a.mp3"});
  EXPECT_EQ(listing.counted, 2U);
  listing =
      ListFolder(folder.path(), {.pattern = "*.mp3", .counted = "*.flac", .subfolders = true});
  EXPECT_EQ(listing.counted, 1U);
  EXPECT_EQ(ListFolder(folder.path(), {.pattern = "*.mp3"}).counted, 0U);
}

TEST(FileSystem, AFolderThatIsNotThereIsNotOpened) {
  const TempFolder folder;
  EXPECT_FALSE(ListFolder(folder / "none", {}).opened);
  EXPECT_FALSE(IdentityOfFolder(folder / "none").has_value());
}

TEST(FileSystem, FileExistsAndFolderExistsTellFilesFromFolders) {
  const TempFolder folder;
  const std::string file = folder.File("a");
  EXPECT_TRUE(FileExists(file));
  EXPECT_FALSE(FolderExists(file));
  EXPECT_TRUE(FolderExists(folder.path()));
  EXPECT_FALSE(FileExists(folder.path()));
  EXPECT_FALSE(FileExists(""));
}

TEST(FileSystem, MissingParentFoldersAreCreated) {
  const TempFolder folder;
  CreateFolders(folder / "x/y/z/");
  EXPECT_TRUE(FolderExists(folder / "x/y/z"));
  CreateFolder(folder / "x");
  folder.File("file");
  EXPECT_THROW(CreateFolder(folder / "file"), FileError);
  EXPECT_THROW(CreateFolder(folder / "none/below"), FileError);
}

TEST(FileSystem, RemovingAMissingFileIsASuccess) {
  const TempFolder folder;
  const std::string path = folder.File("a");
  EXPECT_TRUE(RemoveFile(path));
  EXPECT_FALSE(FileExists(path));
  EXPECT_TRUE(RemoveFile(path));
}

TEST(FileSystem, ReadWholeFileReturnsNoValueForAMissingFile) {
  const TempFolder folder;
  const std::string bytes("a\0b\r\n", 5);
  EXPECT_EQ(ReadWholeFile(folder.File("a", bytes)), bytes);
  EXPECT_EQ(ReadWholeFile(folder / "none"), std::nullopt);
  EXPECT_THROW(ReadWholeFile(folder.path()), FileError);
}

TEST(FileSystem, TheTailOfAFileIsItsLastBytes) {
  const TempFolder folder;
  char bytes[3];
  EXPECT_EQ(ReadTail(folder.File("a", "12345"), bytes), TailResult::kRead);
  EXPECT_EQ(std::string_view(bytes, 3), "345");
  EXPECT_EQ(ReadTail(folder.File("b", "123"), bytes), TailResult::kTooShort);
  EXPECT_EQ(ReadTail(folder / "none", bytes), TailResult::kFailed);
  EXPECT_EQ(ReadTail(folder.path(), bytes), TailResult::kFailed);
}

TEST(FileSystem, AStampChangesWithTheFile) {
  const TempFolder folder;
  const std::string path = folder.File("a", "1");
  const auto before = StampOf(path);
  ASSERT_TRUE(before.has_value());
  EXPECT_EQ(StampOf(path), before);
  folder.File("a", "12");
  EXPECT_NE(StampOf(path), before);
  EXPECT_FALSE(StampOf(folder / "none").has_value());
}

TEST(FileSystem, NonLatinNamesAndLongPathsWork) {
  const TempFolder folder;
  std::string inside = "\xE6\x9B\xB2";  // a Chinese character
  for (int k = 0; k < 12; ++k) inside += "/" + std::string(40, 'd');
  const std::string path = folder.File(inside + "/\xD0\xB6.mp3", "song");
  EXPECT_GT(path.size(), 260U);
  EXPECT_TRUE(FileExists(path));
  const FolderListing listing = ListFolder(folder / inside, {.pattern = "*.mp3"});
  ASSERT_EQ(listing.files.size(), 1U);
  EXPECT_EQ(listing.files[0].name, "\xD0\xB6.mp3");
}

TEST(FileSystem, AFileCreatedWhileItIsReadIsNoBrokenLink) {
  const TempFolder folder;
  constexpr int kFiles = 3000;
  const auto name = [&](int number) { return folder / std::to_string(number); };
  std::thread writer([&] {
    for (int number = 0; number < kFiles; ++number) std::ofstream(name(number)) << "";
  });
  for (int number = 0; number < kFiles; ++number) {
    try {
      while (!ReadWholeFile(name(number))) std::this_thread::yield();
    } catch (const FileError& error) {
      ADD_FAILURE() << error.path() << " " << error.reason();
    }
  }
  writer.join();
}

#ifndef _WIN32
TEST(FileSystem, OnlyRegularFilesAndLinksToThemAreFiles) {
  const TempFolder folder;
  folder.File("real.mp3", "1234");
  std::filesystem::create_symlink(folder / "real.mp3", folder / "link.mp3");
  std::filesystem::create_symlink(folder / "nowhere", folder / "broken.mp3");
  std::filesystem::create_symlink(folder.path(), folder / "loop.mp3");
  ASSERT_EQ(mkfifo((folder / "pipe.mp3").c_str(), 0600), 0);
  const FolderListing listing =
      ListFolder(folder.path(), {.pattern = "*.mp3", .subfolders = true, .sizes = true});
  EXPECT_EQ(NamesOf(listing), (std::vector<std::string>{"link.mp3", "real.mp3"}));
  for (const FileEntry& file : listing.files) EXPECT_EQ(file.size, 4U);
  ASSERT_EQ(listing.subfolders.size(), 1U);
  EXPECT_TRUE(listing.subfolders[0].linked);
  EXPECT_FALSE(FileExists(folder / "pipe.mp3"));
  EXPECT_FALSE(IsGone(folder / "broken.mp3"));
  EXPECT_TRUE(IsSamePath(folder / "link.mp3", folder / "real.mp3"));
  // The file does not exist, but its folder does.
  EXPECT_TRUE(IsSamePath(folder / "loop.mp3/none", folder / "none"));
  EXPECT_TRUE(IsSamePath(folder.path() + "/none", folder / "none"));
  char bytes[1];
  EXPECT_EQ(ReadTail(folder / "pipe.mp3", bytes), TailResult::kFailed);
}
#endif

TEST(FileSystem, TheRealPathOfAnOrdinaryFolderIsItself) {
  const TempFolder folder;
  EXPECT_EQ(EnsureTrailingBackslash(RealPathOfFolder(folder.path())), folder.path());
  EXPECT_EQ(RealPathOfFolder(folder / "none"), folder / "none");
}

TEST(FileSystem, AListingContainsTailsWhenRequested) {
  const TempFolder folder;
  folder.File("long.mp3", "123456");
  folder.File("short.mp3", "123");
  for (const FileEntry& file :
       ListFolder(folder.path(), {.pattern = "*.mp3", .sizes = true, .tail_bytes = 3}).files) {
    EXPECT_EQ(file.size, file.name == "long.mp3" ? 6U : 3U);
    EXPECT_TRUE(file.tail.empty() || (file.name == "long.mp3" && file.tail == "456"));
  }
}

TEST(FileSystem, IsGoneIsTrueOnlyForAMissingPath) {
  const TempFolder folder;
  EXPECT_TRUE(IsGone(folder / "none"));
  EXPECT_TRUE(IsGone(folder / "none/a.juk"));
  EXPECT_FALSE(IsGone(folder.path()));
  EXPECT_FALSE(IsGone(folder.File("a.juk")));
}

TEST(FileSystem, DifferentPathsToOnePlaceAreTheSame) {
  const TempFolder folder;
  const std::string path = folder.File("b/a.juk");
  EXPECT_TRUE(IsSamePath(path, path));
  EXPECT_TRUE(IsSamePath(path, folder / "b/../b/a.juk"));
  EXPECT_FALSE(IsSamePath(path, folder.File("b/c.juk")));
  EXPECT_TRUE(IsSamePath(folder / "none", folder / "none"));
  // Names that differ in letter case are different files only where the file system says so.
  EXPECT_EQ(IsSamePath(path, folder / "b/A.juk"), kSeparator == '\\');
}

TEST(FileSystem, AFileThatIsTooLargeIsNotRead) {
  const TempFolder folder;
  const std::string path = folder.File("a.txt", "12345");
  EXPECT_EQ(ReadWholeFile(path, 5), "12345");
  try {
    ReadWholeFile(path, 4);
    FAIL();
  } catch (const FileTooLargeError& error) {
    EXPECT_EQ(error.path(), path);
    EXPECT_EQ(error.reason(), "has more than 4 bytes");
  }
}

TEST(FileSystem, EntriesThatAreNotFilesAreListedWhenRequested) {
  const TempFolder folder;
  folder.File("Jukebox-1.unsaved");
  folder.Folder("Jukebox-2.unsaved");
  folder.Folder("other");
  const ListRequest request{.pattern = "Jukebox-*.unsaved", .others = true};
  EXPECT_EQ(ListFolder(folder.path(), request).others,
            std::vector<std::string>{"Jukebox-2.unsaved"});
  EXPECT_TRUE(ListFolder(folder.path(), {.pattern = "Jukebox-*.unsaved"}).others.empty());
}

TEST(FileStamps, TheDayOfAFileWrittenNowIsToday) {
  const TempFolder folder;
  const std::int32_t before = Today();
  const std::int32_t day = DayOf(StampOf(folder.File("a.txt")).value());
  EXPECT_GE(day, before);
  EXPECT_LE(day, Today());
}

}  // namespace
}  // namespace tallow

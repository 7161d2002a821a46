// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/atomic_file.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/temp_folder.h"
#include "util/errors.h"

namespace tallow {
namespace {

TEST(AtomicFile, MakesAndReplacesAFile) {
  const TempFolder folder;
  const std::string path = folder / "a.lmz";
  WriteFileAtomically(path, "one");
  EXPECT_EQ(ReadWholeFile(path), "one");
  WriteFileAtomically(path, "");
  EXPECT_EQ(ReadWholeFile(path), "");
  EXPECT_FALSE(FileExists(path + ".new"));
}

TEST(AtomicFile, AMissingFolderIsAnErrorThatNamesTheFile) {
  const TempFolder folder;
  const std::string path = folder / "gone/a.lmz";
  try {
    WriteFileAtomically(path, "x");
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), path);
    EXPECT_FALSE(error.reason().empty());
  }
}

TEST(AtomicFile, AFailureLeavesTheOldContent) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "old");
  folder.Folder("a.lmz.new");  // makes writing the temporary file fail
  EXPECT_THROW(WriteFileAtomically(path, "new"), FileError);
  EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST(AtomicFile, AFolderInTheFilesPlaceIsAnError) {
  const TempFolder folder;
  folder.Folder("a.lmz");
  EXPECT_THROW(WriteFileAtomically(folder / "a.lmz", "x"), FileError);
}

TEST(AtomicFile, TheBackupIsACopyBesideTheFile) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "damaged");
  KeepBackup(path);
  EXPECT_EQ(ReadWholeFile(path + ".bak"), "damaged");
  EXPECT_EQ(ReadWholeFile(path), "damaged");
  KeepBackup(folder / "none");
  EXPECT_FALSE(FileExists(folder / "none.bak"));
}

#ifndef _WIN32
TEST(AtomicFile, WritingThroughALinkReplacesItsTarget) {
  const TempFolder folder;
  const std::string real = folder.File("elsewhere/real.lmz", "old");
  std::filesystem::create_symlink(real, folder / "link.lmz");
  WriteFileAtomically(folder / "link.lmz", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.lmz"));
  EXPECT_EQ(ReadWholeFile(real), "new");
}

TEST(AtomicFile, ALinkThatLeadsToNothingIsNotReplaced) {
  const TempFolder folder;
  const std::string link = folder / "link.lmz";
  std::filesystem::create_symlink(folder / "away/real.lmz", link);
  try {
    WriteFileAtomically(link, "new");
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), link);
    EXPECT_EQ(error.reason(), "is a broken link");
  }
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_THROW(ReadWholeFile(link), FileError);
}

TEST(AtomicFile, ReplacingLeavesABackupWithoutCopyingTheFile) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "one");
  KeepReplaced(path);
  EXPECT_EQ(std::filesystem::hard_link_count(path), 2U);
  WriteFileAtomically(path, "two");
  EXPECT_EQ(std::filesystem::hard_link_count(path), 1U);
}

TEST(AtomicFile, TheBackupOfALinkIsAFileBesideTheLink) {
  const TempFolder folder;
  const std::string real = folder.File("elsewhere/real.lmz", "old");
  const std::string link = folder / "link.lmz";
  std::filesystem::create_symlink(real, link);
  KeepReplaced(link);
  WriteFileAtomically(link, "new");
  EXPECT_EQ(ReadWholeFile(link + ".bak"), "old");
  EXPECT_FALSE(std::filesystem::is_symlink(link + ".bak"));
  EXPECT_EQ(ReadWholeFile(real), "new");
}

TEST(AtomicFile, ALinkWithTheNameOfAnUnfinishedFileIsNotFollowed) {
  const TempFolder folder;
  const std::string other = folder.File("other.txt", "of somebody else");
  std::filesystem::create_symlink(other, folder / "a.juk.new");
  WriteFileAtomically(folder / "a.juk", "new");
  EXPECT_EQ(ReadWholeFile(folder / "a.juk"), "new");
  EXPECT_EQ(ReadWholeFile(other), "of somebody else");
}

TEST(AtomicFile, PermissionsAreKept) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "old");
  std::filesystem::permissions(
      path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  WriteFileAtomically(path, "new");
  EXPECT_EQ(std::filesystem::status(path).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}
#endif

TEST(AtomicFile, KeepReplacedKeepsTheContentBeforeEachWrite) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "one");
  for (const char* next : {"two", "three"}) {
    const auto before = ReadWholeFile(path);
    KeepReplaced(path);
    WriteFileAtomically(path, next);
    EXPECT_EQ(ReadWholeFile(path + ".bak"), before);
    EXPECT_EQ(ReadWholeFile(path), next);
  }
  EXPECT_FALSE(FileExists(path + ".bak.new"));
  KeepReplaced(path, ".damaged");
  EXPECT_EQ(ReadWholeFile(path + ".damaged"), "three");
  // The backup is already a hard link to this file; no temporary file may stay behind.
  KeepReplaced(path, ".damaged");
  EXPECT_FALSE(FileExists(path + ".damaged.new"));
  KeepReplaced(folder / "none");
  EXPECT_FALSE(FileExists(folder / "none.bak"));
}

TEST(AtomicFile, MoveToBackupDoesNotReadTheFile) {
  const TempFolder folder;
  const std::string path = folder.File("a.ini", "damaged");
  folder.File("a.ini.bak", "older");
  MoveToBackup(path);
  EXPECT_FALSE(FileExists(path));
  EXPECT_EQ(ReadWholeFile(path + ".bak"), "damaged");
  EXPECT_THROW(MoveToBackup(path), FileError);
}

TEST(AtomicFile, ACallbackThatThrowsBeforeTheRenameLeavesTheOldContent) {
  const TempFolder folder;
  const std::string path = folder.File("a.juk", "old");
  bool was_written = false;
  EXPECT_THROW(WriteFileAtomically(path, "new",
                                   [&] {
                                     was_written = ReadWholeFile(path + ".new") == "new";
                                     throw FileError(path, "no");
                                   }),
               FileError);
  EXPECT_TRUE(was_written);
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_FALSE(FileExists(path + ".new"));
}

}  // namespace
}  // namespace tallow

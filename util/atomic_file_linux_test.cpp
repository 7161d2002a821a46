// SPDX-License-Identifier: GPL-3.0-or-later
// Links, large files, and folders that take a file's place.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/failing_call_linux.h"
#include "tests/file_size_limit_linux.h"
#include "tests/temp_folder.h"
#include "util/atomic_file.h"
#include "util/errors.h"

namespace tallow {
namespace {

TEST(AtomicFileLinux, MoveToBackupOfALinkKeepsTheLinkAndItsTarget) {
  const TempFolder folder;
  const std::string real = folder.File("elsewhere/real.ini", "damaged");
  const std::string link = folder / "link.ini";
  std::filesystem::create_symlink(real, link);
  MoveToBackup(link);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(ReadWholeFile(link + ".bak"), "damaged");
  EXPECT_FALSE(std::filesystem::is_symlink(link + ".bak"));
  // The next write goes to the target and leaves the backup.
  WriteFileAtomically(link, "new");
  EXPECT_EQ(ReadWholeFile(real), "new");
  EXPECT_EQ(ReadWholeFile(link + ".bak"), "damaged");
}

TEST(AtomicFileLinux, AFileTooLargeToCopyIsRenamedWhereItCannotBeLinked) {
  const TempFolder folder;
  const std::string path = folder.File("a.lmz", "start");
  const std::uint64_t bytes = (std::uint64_t{1} << 30U) + 1;
  // The file has no blocks behind its first ones.
  std::filesystem::resize_file(path, bytes);
  folder.Folder("a.lmz.bak.new");  // makes the link fail
  KeepReplaced(path);
  EXPECT_FALSE(FileExists(path));
  EXPECT_EQ(std::filesystem::file_size(path + ".bak"), bytes);
}

TEST(AtomicFileLinux, AFolderThatReplacesTheFileDuringTheWriteStays) {
  const TempFolder folder;
  const std::string path = folder / "a.juk";
  try {
    WriteFileAtomically(path, "new", [&] { folder.File("a.juk/song.mp3"); });
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), path);
    EXPECT_EQ(error.reason(), "Is a directory");
  }
  EXPECT_TRUE(FileExists(path + "/song.mp3"));
  EXPECT_FALSE(FileExists(path + ".new"));
}

TEST(AtomicFileLinux, WhereNoPermissionsAreKeptTheContentIsSaved) {
  const TempFolder folder;
  const std::string path = folder.File("a.juk", "old");
  for (const int error : {EPERM, ENOTSUP, ENOSYS, EINVAL}) {
    const std::string content = "new " + std::to_string(error);
    const bool has_run = RunWithFailingCall(
        {SYS_fchmod, error, {}}, [&] { EXPECT_NO_THROW(WriteFileAtomically(path, content)); });
    if (!has_run) GTEST_SKIP() << "The kernel cannot refuse calls.";
    EXPECT_EQ(ReadWholeFile(path), content);
  }
}

TEST(AtomicFileLinux, PermissionsThatTheDiskFailsToStoreAreAnError) {
  const TempFolder folder;
  const std::string path = folder.File("a.juk", "old");
  std::string reason;
  const bool has_run = RunWithFailingCall({SYS_fchmod, EIO, {}}, [&] {
    try {
      WriteFileAtomically(path, "new");
    } catch (const FileError& error) {
      reason = error.reason();
    }
  });
  if (!has_run) GTEST_SKIP() << "The kernel cannot refuse calls.";
  EXPECT_EQ(reason, "Input/output error");
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_FALSE(FileExists(path + ".new"));
}

TEST(AtomicFileLinux, AWriteThatFailsMidwayLeavesTheOldFileAndNoOther) {
  const TempFolder folder;
  const std::string path = folder.File("a.juk", "old");
  {
    const FileSizeLimit limit(2);
    EXPECT_THROW(WriteFileAtomically(path, "newer"), FileError);
  }
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_FALSE(FileExists(path + ".new"));
}

}  // namespace
}  // namespace tallow

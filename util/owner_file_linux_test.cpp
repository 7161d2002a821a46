// SPDX-License-Identifier: GPL-3.0-or-later
// OwnerFile with killed processes, links, FIFOs and missing permissions.
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/as_nobody_linux.h"
#include "tests/file_size_limit_linux.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"
#include "util/file_lock.h"
#include "util/owner_file.h"

namespace tallow {
namespace {

using Answer = OwnerFile::Answer;
using Unknown = OwnerFile::Unknown;

/// A child process that owns a file until it is killed.
class Holder {
 public:
  explicit Holder(const std::string& path) {
    int pipe_ends[2];
    EXPECT_EQ(pipe(pipe_ends), 0);
    child_ = fork();
    if (child_ == 0) {
      OwnerFile owner;
      const char held = owner.Acquire(path, Unknown::kStays) == Answer::kHeld ? 'y' : 'n';
      if (write(pipe_ends[1], &held, 1) == 1) pause();
      _exit(1);
    }
    char held = 0;
    EXPECT_EQ(read(pipe_ends[0], &held, 1), 1);
    EXPECT_EQ(held, 'y');
    close(pipe_ends[0]);
    close(pipe_ends[1]);
  }
  ~Holder() { waitpid(child_, nullptr, 0); }
  void Kill() const { kill(child_, SIGKILL); }

 private:
  pid_t child_ = 0;
};

TEST(OwnerFileLinux, AFileOfAKilledZombieProcessIsReplaced) {
  TempFolder folder;
  const std::string path = folder / "it.owner";
  const Holder holder(path);
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kInUse);
  EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kInUse);
  holder.Kill();
  EXPECT_TRUE(WaitUntil([&] { return owner.Acquire(path, Unknown::kStays) == Answer::kHeld; }));
}

TEST(OwnerFileLinux, AProcessOfAnEarlierBootHasEnded) {
  ProcessName before = ThisProcess();
  before.run = "another";
  EXPECT_EQ(StateOf(before), ProcessState::kGone);
}

TEST(OwnerFileLinux, ProcessesOfAnotherNamespaceOrComputerAreUnknown) {
  ProcessName contained = ThisProcess();
  contained.process_set = "pid:[1]";
  EXPECT_EQ(StateOf(contained), ProcessState::kUnknown);
  ProcessName other = ThisProcess();
  other.run = "windows";
  EXPECT_EQ(StateOf(other), ProcessState::kUnknown);
}

TEST(OwnerFileLinux, AnUnusedProcessIdMeansTheProcessHasEnded) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ProcessName ended = ThisProcess();
  ended.process = static_cast<std::uint64_t>(child);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(StateOf(ended), ProcessState::kGone);
  EXPECT_EQ(StateOf(ThisProcess()), ProcessState::kRuns);
}

TEST(OwnerFileLinux, LinksAndFifosAreNeitherFollowedNorWaitedFor) {
  TempFolder folder;
  const std::string path = folder / "it.owner";
  const auto make = [&](int kind) {
    RemoveFile(path);
    if (kind == 0) return symlink("nowhere", path.c_str());
    if (kind == 1) return symlink("it.owner", path.c_str());
    return mkfifo(path.c_str(), 0600);
  };
  for (int kind = 0; kind < 3; ++kind) {
    ASSERT_EQ(make(kind), 0);
    OwnerFile owner;
    EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kUnknown) << kind;
    EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kHeld) << kind;
    EXPECT_EQ(ReadOwner(path), ThisProcess());
  }
  EXPECT_FALSE(FileExists(folder / "nowhere"));
}

TEST(OwnerFileLinux, AnOldFileInAReadOnlyFolderLocksNobodyOut) {
  TempFolder folder;
  ProcessName far = ThisProcess();
  far.host += "2";
  const std::string path = folder.File("it.owner", OwnerText(far));
  ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);
  {
    const AsNobody nobody;
    OwnerFile owner;
    EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kImpossible);
  }
  chmod(folder.path().c_str(), 0700);
}

TEST(OwnerFileLinux, AFileThatCannotBeWrittenIsRemoved) {
  TempFolder folder;
  const std::string path = folder / "it.owner";
  OwnerFile owner;
  for (const rlim_t room : {0U, 10U}) {
    const FileSizeLimit limit(room);
    EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kImpossible) << room;
    EXPECT_FALSE(FileExists(path)) << room;
  }
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kHeld);
}

TEST(FileLockLinux, ANonRegularFileIsNeitherLockedNorWaitedFor) {
  TempFolder folder;
  FileLock lock;
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(lock.Acquire(folder / "fifo"), FileLock::Answer::kImpossible);
  ASSERT_EQ(symlink("/dev/null", (folder / "device").c_str()), 0);
  EXPECT_EQ(lock.Acquire(folder / "device"), FileLock::Answer::kImpossible);
  folder.Folder("folder");
  EXPECT_EQ(lock.Acquire(folder / "folder"), FileLock::Answer::kImpossible);
  ASSERT_EQ(symlink("loop", (folder / "loop").c_str()), 0);
  EXPECT_EQ(lock.Acquire(folder / "loop"), FileLock::Answer::kImpossible);
}

}  // namespace
}  // namespace tallow

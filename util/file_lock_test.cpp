// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/file_lock.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

using Answer = FileLock::Answer;

TEST(FileLockTest, OnlyOneObjectHoldsTheLock) {
  TempFolder folder;
  const std::string path = folder / "it.lock";
  FileLock second;
  {
    FileLock first;
    EXPECT_EQ(first.Acquire(path), Answer::kHeld);
    EXPECT_EQ(second.Acquire(path), Answer::kInUse);
    EXPECT_EQ(second.Acquire(folder / "other.lock"), Answer::kHeld);
  }
  EXPECT_EQ(second.Acquire(path), Answer::kHeld);
}

TEST(FileLockTest, AnExistingFileCanBeLocked) {
  TempFolder folder;
  folder.File("it.lock");
  FileLock lock;
  EXPECT_EQ(lock.Acquire(folder / "it.lock"), Answer::kHeld);
}

TEST(FileLockTest, AFileThatCannotBeCreatedIsImpossible) {
  TempFolder folder;
  FileLock lock;
  EXPECT_EQ(lock.Acquire(folder / "none/it.lock"), Answer::kImpossible);
}

}  // namespace
}  // namespace tallow

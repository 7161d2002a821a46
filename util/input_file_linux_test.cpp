// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <gtest/gtest.h>
#include <string>

#include "tests/temp_folder.h"
#include "util/input_file.h"

namespace tallow {
namespace {

TEST(InputFile, TellsTheEndOfTheFileFromAnErrorOfTheSystem) {
  std::array<char, 8> bytes{};
  const TempFolder folder;
  const auto whole = InputFile::Open(folder.File("a", "abcd"));
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(whole->ReadAt(2, bytes), 2U);
  EXPECT_EQ(whole->ReadAt(4, bytes), 0U);
  EXPECT_FALSE(whole->HasFailed());
  // The memory of this process, in which nothing is at address 0.
  const auto memory = InputFile::Open("/proc/self/mem");
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(memory->ReadAt(0, bytes), 0U);
  EXPECT_TRUE(memory->HasFailed());
}

}  // namespace
}  // namespace tallow

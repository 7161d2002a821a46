// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "player/substitute/play_failures.h"
#include "tests/dead_folder_linux.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

TEST(FailureReasons, ADiskThatDoesNotRespondIsAskedOnlyOnce) {
  const TempFolder folder;
  FailureReasons reasons;
  {
    const DeadFolder dead(folder.path());
    for (const char* const name : {"1", "2", "3"})
      EXPECT_EQ(reasons.Of(folder / name, "damaged"), "damaged");
    EXPECT_EQ(dead.Asked(), 1);
  }
  EXPECT_TRUE(
      WaitUntil([&] { return reasons.Of(folder / "4", "damaged") == "The file is gone."; }));
}

}  // namespace
}  // namespace tallow

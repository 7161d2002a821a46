// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "app/playing/player_choice.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using PlayerChoiceOnLinux = LibraryTest;

TEST_F(PlayerChoiceOnLinux, AFileThatCannotBeRunIsNotThePlayer) {
  const std::string file = music.File("tallow-player");
  EXPECT_EQ(ChoosePlayer(tallow, file), file + " is not a program that you may run.");
  EXPECT_EQ(tallow.player_path, "");
}

}  // namespace
}  // namespace tallow

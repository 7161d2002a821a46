// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/command_effect.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(CommandEffect, WithoutAPlayerNothingIsSaid) {
  for (const PlayerCommand command :
       {kNextTrack, kPreviousTrack, kPause, kPlay, kStop, kStopAfterTrack, kClosePlayer})
    EXPECT_EQ(WhyNoEffect(command, {}), "");
}

TEST(CommandEffect, AnEmptyPlayerHasNothingToDo) {
  Playing now{.is_running = true, .kind = PlayerKind::kTallowPlayer};
  EXPECT_EQ(WhyNoEffect(kNextTrack, now), "There is no next song.");
  EXPECT_EQ(WhyNoEffect(kPreviousTrack, now), "There is no previous song.");
  for (const PlayerCommand command : {kPause, kStop, kStopAfterTrack})
    EXPECT_EQ(WhyNoEffect(command, now), "Nothing is playing.");
  EXPECT_EQ(WhyNoEffect(kPlay, now),
            "The player has no songs. Select songs, and choose Play Selected Songs.");
  EXPECT_EQ(WhyNoEffect(kClosePlayer, now), "");
  // Winamp does not tell whether it has songs.
  now.kind = PlayerKind::kWinamp;
  EXPECT_EQ(WhyNoEffect(kPlay, now), "");
}

TEST(CommandEffect, APlayerThatPlaysObeys) {
  Playing now{.is_running = true, .kind = PlayerKind::kTallowPlayer, .status = kPlaying};
  for (const PlayerCommand command : {kPause, kPlay, kStop, kStopAfterTrack})
    EXPECT_EQ(WhyNoEffect(command, now), "");
  EXPECT_EQ(WhyNoEffect(kNextTrack, now), "There is no next song.");
  now.can_go_next = true;
  now.can_go_previous = true;
  EXPECT_EQ(WhyNoEffect(kNextTrack, now), "");
  EXPECT_EQ(WhyNoEffect(kPreviousTrack, now), "");
}

}  // namespace
}  // namespace tallow

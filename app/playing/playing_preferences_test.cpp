// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/playing_preferences.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

TEST(PlayingPreferences, DefaultsFollowTheStyle) {
  Preferences preferences;
  const PlayingPreferences playing(preferences);
  EXPECT_FALSE(playing.ShowsBar());
  EXPECT_FALSE(playing.ShowsMarks());
  EXPECT_FALSE(playing.KeepsVolume());
  EXPECT_FALSE(playing.RestoresQueue());
  EXPECT_FALSE(playing.PlaysOn());
  preferences.SetStyle(Style::kModern);
  EXPECT_TRUE(playing.ShowsBar());
  EXPECT_TRUE(playing.ShowsMarks());
  EXPECT_TRUE(playing.KeepsVolume());
  EXPECT_TRUE(playing.RestoresQueue());
  EXPECT_TRUE(playing.PlaysOn());
  EXPECT_FALSE(playing.ShowsQueue());
  EXPECT_FALSE(playing.Shuffles());
  EXPECT_EQ(playing.Repeat(), RepeatMode::kOff);
  EXPECT_EQ(playing.Gain(), ReplayGain::kOff);
  EXPECT_EQ(playing.Device(), "auto");
  EXPECT_EQ(playing.Volume(), 128);
  EXPECT_EQ(playing.Balance(), 0);
}

TEST(PlayingPreferences, TheUsersChoiceIsKeptAfterTheStyleChangesAndTheProgramEnds) {
  const TempFolder folder;
  {
    Preferences preferences;
    preferences.Load(folder / "Preferences.json");
    PlayingPreferences playing(preferences);
    playing.SetShowsBar(true);
    playing.SetShowsMarks(true);
    playing.SetShowsQueue(true);
    playing.SetKeepsVolume(true);
    playing.SetRestoresQueue(true);
    playing.SetShuffles(true);
    playing.SetRepeat(RepeatMode::kOne);
    playing.SetGain(ReplayGain::kAlbum);
    playing.SetDevice("alsa/hw");
    playing.SetVolume(255);
    playing.SetBalance(-127);
  }
  Preferences preferences;
  ASSERT_TRUE(preferences.Load(folder / "Preferences.json"));
  const PlayingPreferences playing(preferences);
  EXPECT_TRUE(playing.ShowsBar());
  EXPECT_TRUE(playing.ShowsMarks());
  EXPECT_TRUE(playing.ShowsQueue());
  EXPECT_TRUE(playing.KeepsVolume());
  EXPECT_TRUE(playing.RestoresQueue());
  EXPECT_TRUE(playing.Shuffles());
  EXPECT_EQ(playing.Repeat(), RepeatMode::kOne);
  EXPECT_EQ(playing.Gain(), ReplayGain::kAlbum);
  EXPECT_EQ(playing.Device(), "alsa/hw");
  EXPECT_EQ(playing.Volume(), 255);
  EXPECT_EQ(playing.Balance(), -127);
}

TEST(PlayingPreferences, EveryModeIsStored) {
  Preferences preferences;
  PlayingPreferences playing(preferences);
  for (const RepeatMode mode : {RepeatMode::kAll, RepeatMode::kOne, RepeatMode::kOff}) {
    playing.SetRepeat(mode);
    EXPECT_EQ(playing.Repeat(), mode);
  }
  for (const ReplayGain mode : {ReplayGain::kTrack, ReplayGain::kAlbum, ReplayGain::kOff}) {
    playing.SetGain(mode);
    EXPECT_EQ(playing.Gain(), mode);
  }
}

TEST(PlayingPreferences, AValueThatCannotBeIsTheDefault) {
  Preferences preferences;
  const PlayingPreferences playing(preferences);
  for (const std::int64_t volume : {std::int64_t{-1}, std::int64_t{256}, INT64_MAX}) {
    preferences.Set("player.volume", volume);
    EXPECT_EQ(playing.Volume(), 128);
  }
  for (const std::int64_t balance : {std::int64_t{-128}, std::int64_t{128}, INT64_MIN}) {
    preferences.Set("player.balance", balance);
    EXPECT_EQ(playing.Balance(), 0);
  }
  preferences.Set<std::string>("player.repeat", "twice");
  EXPECT_EQ(playing.Repeat(), RepeatMode::kOff);
  preferences.Set<std::string>("player.gain", "loud");
  EXPECT_EQ(playing.Gain(), ReplayGain::kOff);
}

}  // namespace
}  // namespace tallow

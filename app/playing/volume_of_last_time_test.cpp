// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/volume_of_last_time.h"

#include <gtest/gtest.h>

#include "app/playing/playing_preferences.h"

namespace tallow {
namespace {

class VolumeOfLastTimeTest : public testing::Test {
 protected:
  Preferences preferences;
  PlayingPreferences playing{preferences};
  VolumeOfLastTime volume{playing};
  VolumeOfLastTime::Time now{std::chrono::hours(1)};
};

TEST_F(VolumeOfLastTimeTest, ClassicBeginsInTheMiddleEachTime) {
  playing.SetVolume(10);
  playing.SetBalance(20);
  volume.Begin();
  EXPECT_EQ(volume.Volume(), 128);
  EXPECT_EQ(volume.Balance(), 0);
  volume.SetVolume(200, now);
  volume.SetBalance(-5, now);
  EXPECT_EQ(volume.Volume(), 200);
  EXPECT_EQ(volume.Balance(), -5);
  volume.Begin();
  EXPECT_EQ(volume.Volume(), 128);
  EXPECT_EQ(playing.Volume(), 10);
}

TEST_F(VolumeOfLastTimeTest, ModernBeginsAsItWas) {
  preferences.SetStyle(Style::kModern);
  volume.Begin();
  EXPECT_EQ(volume.Volume(), 128);
  volume.SetVolume(200, now);
  volume.SetBalance(-5, now);
  volume.Begin();
  EXPECT_EQ(volume.Volume(), 200);
  EXPECT_EQ(volume.Balance(), -5);
  EXPECT_EQ(playing.Volume(), 200);
  EXPECT_EQ(playing.Balance(), -5);
}

TEST_F(VolumeOfLastTimeTest, ADragIsStoredOnceWhenItHasEnded) {
  preferences.SetStyle(Style::kModern);
  volume.Begin();
  int stored = 0;
  preferences.OnChange([&](const Switches&) { ++stored; });
  for (int value = 100; value < 150; ++value) {
    volume.SetVolume(value, now);
    now += std::chrono::milliseconds(20);
    volume.Poll(now);
  }
  EXPECT_EQ(stored, 0);
  now += std::chrono::seconds(2);
  volume.Poll(now);
  volume.Poll(now);
  EXPECT_EQ(stored, 2);  // Volume and balance.
  EXPECT_EQ(playing.Volume(), 149);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Random commands, and random orders of the engine's events.
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "player/substitute/event_loop.h"
#include "player/substitute/song_player.h"
#include "tests/simulated_engine.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class SimulatedPlayback : public testing::Test {
 protected:
  SimulatedPlayback() { testing::internal::CaptureStderr(); }
  ~SimulatedPlayback() override { testing::internal::GetCapturedStderr(); }

  /// Plays track after track until nothing happens any more.
  /// \returns the tracks that sounded
  Texts PlayToTheEnd(int max_tracks) {
    Texts sounded;
    engine.on_sound = [&](const std::string& path) { sounded.push_back(path); };
    engine.Settle();
    for (int k = 0; k < max_tracks && engine.Advance(); ++k) engine.Settle();
    engine.on_sound = [](const std::string&) {};
    return sounded;
  }

  const std::unique_ptr<EventLoop> loop = NewEventLoop();
  SimulatedEngine engine;
  SongPlayer player{*loop, engine, 1};
};

TEST_F(SimulatedPlayback, ARepeatedListPlaysAgainAndAgain) {
  player.AddFiles({"1", "bad", "2"}, kAtEnd);
  player.SetRepeat(RepeatMode::kAll);
  player.Play();
  EXPECT_EQ(PlayToTheEnd(5), (Texts{"1", "2", "1", "2", "1", "2"}));
}

TEST_F(SimulatedPlayback, ARepeatedTrackPlaysAgainAndAgain) {
  player.AddFiles({"1", "2"}, kAtEnd);
  player.SetRepeat(RepeatMode::kOne);
  player.Play();
  EXPECT_EQ(PlayToTheEnd(2), (Texts{"1", "1", "1"}));
  EXPECT_EQ(player.TrackNumber(), 1U);
}

TEST_F(SimulatedPlayback, ARepeatedListWhoseTracksAllFailStops) {
  for (const int files : {1, 2, 3, 20}) {
    player.Clear();
    for (int k = 0; k < files; ++k) player.Add("bad" + std::to_string(k));
    player.SetRepeat(RepeatMode::kAll);
    const std::size_t before = player.Failures().After(0, 1000).size();
    player.Play();
    engine.Settle();
    EXPECT_EQ(player.State(), PlayerState::kRanOut) << files;
    EXPECT_EQ(player.Failures().After(0, 1000).size() - before, static_cast<std::size_t>(files));
    // A file that is added plays.
    player.Add("good");
    engine.Settle();
    EXPECT_EQ(engine.Paths().front(), "good");
    player.Stop();
    engine.Settle();
  }
}

TEST_F(SimulatedPlayback, ARepeatedTrackThatFailsIsFollowedByTheNextOne) {
  player.AddFiles({"bad", "bad too", "2"}, kAtEnd);
  player.SetRepeat(RepeatMode::kOne);
  player.Play();
  EXPECT_EQ(PlayToTheEnd(1), (Texts{"2", "2"}));
  player.Clear();
  player.AddFiles({"1", "bad"}, kAtEnd);
  player.PlayEntry(player.List().UpcomingNumbers(0, 1).front());
  engine.Settle();
  EXPECT_EQ(player.State(), PlayerState::kRanOut);
}

TEST_F(SimulatedPlayback, PreviousSkipsTracksThatFailBackwards) {
  for (const RepeatMode mode : {RepeatMode::kOff, RepeatMode::kAll, RepeatMode::kOne}) {
    player.Clear();
    player.SetRepeat(mode);
    const ListNumber first = player.AddFiles({"1", "bad", "bad too", "2"}, kAtEnd);
    player.PlayEntry(first + 3);
    engine.Settle();
    player.Previous();
    EXPECT_EQ(PlayToTheEnd(0), Texts{"1"});
    EXPECT_EQ(player.TrackNumber(), first);
    // A failure after that one skips forwards again.
    player.Next();
    EXPECT_EQ(PlayToTheEnd(0), Texts{"2"});
  }
}

TEST_F(SimulatedPlayback, PreviousGoesForwardsAgainWhenAllTracksBeforeFail) {
  for (const RepeatMode mode : {RepeatMode::kOff, RepeatMode::kAll, RepeatMode::kOne}) {
    player.Clear();
    player.SetRepeat(mode);
    const ListNumber first = player.AddFiles({"bad", "bad too", "1"}, kAtEnd);
    player.PlayEntry(first + 2);
    engine.Settle();
    player.Previous();
    EXPECT_EQ(PlayToTheEnd(0), Texts{"1"});
    EXPECT_EQ(player.TrackNumber(), first + 2);
  }
}

TEST_F(SimulatedPlayback, PreviousSkipsNothingBackwardsOnceItsTrackHasPlayed) {
  const ListNumber first = player.AddFiles({"1", "2", "bad", "3"}, kAtEnd);
  player.PlayEntry(first + 1);
  engine.Settle();
  player.Previous();
  engine.Settle();
  ASSERT_EQ(player.TrackNumber(), first);
  EXPECT_EQ(PlayToTheEnd(2), (Texts{"2", "3"}));
}

TEST_F(SimulatedPlayback, AShuffledListPlaysEachTrackOnceInEachRound) {
  player.SetShuffle(true);
  player.SetRepeat(RepeatMode::kAll);
  for (int k = 0; k < 20; ++k) player.Add(std::to_string(k));
  player.Play();
  const Texts sounded = PlayToTheEnd(99);
  ASSERT_EQ(sounded.size(), 100U);
  for (auto round = sounded.begin(); round != sounded.end(); round += 20) {
    Texts tracks(round, round + 20);
    std::sort(tracks.begin(), tracks.end());
    EXPECT_EQ(std::unique(tracks.begin(), tracks.end()), tracks.end());
  }
}

/// Sends a random command.
/// \param next number for the name of a new file
void SendRandomCommand(SongPlayer& player, std::mt19937& random, int& next) {
  const auto below = [&](std::size_t end) { return random() % end; };
  const auto some_entry = [&] { return ListNumber{below(static_cast<std::size_t>(next) + 2)}; };
  const auto new_files = [&] {
    Texts files(1 + below(3));
    for (std::string& file : files) file = (below(4) == 0 ? "bad " : "") + std::to_string(++next);
    return files;
  };
  switch (below(22)) {
    case 0:
    case 1:
    case 2:
      player.AddFiles(new_files(), kAtEnd);
      break;
    case 3:
    case 4:
      player.AddFiles(new_files(), kPlayNext);
      break;
    case 5:
      player.AddFiles(new_files(), static_cast<std::int64_t>(some_entry() + 1));
      break;
    case 6:
    case 7:
      player.Move({some_entry(), some_entry()}, some_entry());
      break;
    case 8:
    case 9:
    case 10:
      // Mostly the next ones: these are the commands that the engine can overtake.
      player.Remove(player.List().UpcomingNumbers(below(2), 1 + below(2)));
      break;
    case 11:
      player.SetShuffle(below(2) == 0);
      break;
    case 12:
      player.SetRepeat(static_cast<RepeatMode>(below(3)));
      break;
    case 13:
      player.PlayEntry(some_entry());
      break;
    case 14:
      player.Next();
      break;
    case 15:
      player.Previous();
      break;
    case 16:
      if (below(4) == 0) player.Stop();
      break;
    case 17:
      if (below(8) == 0) player.Clear();
      break;
    case 18:
      if (below(4) == 0) player.StopAfterCurrent();
      break;
    default:
      if (player.Status() == kStopped) player.Play();
  }
}

TEST_F(SimulatedPlayback, WhateverOvertakesWhatTheRightTrackSounds) {
  int sounds = 0;
  for (unsigned seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    SimulatedEngine simulated;
    SongPlayer playing(*loop, simulated, seed);
    simulated.on_sound = [&](const std::string& path) {
      ++sounds;
      ASSERT_GE(playing.State(), PlayerState::kOpening);
      EXPECT_EQ(path, playing.CurrentTrack()->path);
    };
    int next = 0;
    for (int step = 0; step < 300; ++step) {
      SCOPED_TRACE(step);
      switch (random() % 5) {
        case 0:
          SendRandomCommand(playing, random, next);
          break;
        case 1:
          simulated.Execute();
          break;
        case 2:
          simulated.Advance();
          break;
        default:
          simulated.Dispatch();
      }
      if (random() % 20 == 0) {
        simulated.Settle();
        Texts expected;
        if (playing.Status() != kStopped) {
          expected.push_back(playing.CurrentTrack()->path);
          PlayList list = playing.List();
          for (std::size_t k = 1; k <= 8 && !playing.StopsAfterCurrent(); ++k)
            if (const auto after = list.After(k); after.number != 0)
              expected.push_back(*after.path);
        }
        EXPECT_EQ(simulated.Paths(), expected);
      }
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(sounds, 5000);
}

}  // namespace
}  // namespace tallow

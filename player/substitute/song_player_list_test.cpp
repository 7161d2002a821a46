// SPDX-License-Identifier: GPL-3.0-or-later
// What SongPlayer sends to its engine when the list changes, and after failures.
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "player/substitute/event_loop.h"
#include "player/substitute/song_player.h"
#include "tests/recorded_engine.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class SongPlayerList : public testing::Test {
 protected:
  /// Plays the first of the files "1", "2" and so on.
  void PlayFiles(int files) {
    for (int k = 1; k <= files; ++k) player.Add(std::to_string(k));
    player.Play();
    engine.ReplyToLoads();
    Start("1");
    engine.events->OnTrackOpened();
    engine.sent.clear();
  }
  void Start(const std::string& path) { engine.events->OnTrackStarted(engine.entries.at(path)); }
  void Fail(const std::string& path, const char* error = "damaged") {
    testing::internal::CaptureStderr();
    engine.events->OnTrackEnded(engine.entries.at(path), error);
    testing::internal::GetCapturedStderr();
  }
  void ReplyToRemoval() { engine.events->OnReply(engine.removal, true, kNoEntry); }
  /// Replies to all commands, and forgets them.
  void Settle() {
    ReplyToRemoval();
    engine.ReplyToLoads();
    engine.sent.clear();
  }
  std::vector<std::pair<ListNumber, std::string>> Failures() const {
    std::vector<std::pair<ListNumber, std::string>> failures;
    for (const FailedEntry& failure : player.Failures().After(0, 100))
      failures.emplace_back(failure.entry, failure.reason);
    return failures;
  }

  const std::unique_ptr<EventLoop> loop = NewEventLoop();
  RecordedEngine engine;
  SongPlayer player{*loop, engine, 1};
};

TEST_F(SongPlayerList, AChangeReplacesOnlyTheTracksFromTheFirstThatDiffers) {
  PlayFiles(5);
  player.Move({5}, 4);
  EXPECT_EQ(engine.sent, (Texts{"remove 4", "remove 3", "append 5", "append 4"}));
  Settle();
  player.Remove({4});
  EXPECT_EQ(engine.sent, Texts{"remove 4"});
  Settle();
  player.Remove({77});
  player.Move({3}, 5);
  player.SetShuffle(false);
  EXPECT_EQ(engine.sent, Texts{});
}

TEST_F(SongPlayerList, AChangeOfTheNextTrackReplacesAllThatFollow) {
  PlayFiles(3);
  player.AddFiles({"x"}, kPlayNext);
  // There is a next track all the time.
  EXPECT_EQ(engine.sent, (Texts{"remove 2", "append x", "move 2 behind the first"}));
  engine.sent.clear();
  engine.ReplyToLoads();
  // The former next track follows the new one.
  EXPECT_EQ(engine.sent, Texts{"append 3"});
}

TEST_F(SongPlayerList, AFormerNextTrackThatNoLongerFollowsIsRemovedAtLast) {
  PlayFiles(3);
  player.Remove({2});
  EXPECT_EQ(engine.sent, (Texts{"remove 2", "append 3", "move 2 behind the first"}));
  engine.sent.clear();
  engine.ReplyToLoads();
  EXPECT_EQ(engine.sent, Texts{"remove 2"});
}

TEST_F(SongPlayerList, RepeatAllAppendsTheBeginningOfTheList) {
  PlayFiles(2);
  player.SetRepeat(RepeatMode::kAll);
  EXPECT_EQ(engine.sent, (Texts{"append 1", "append 2", "append 1", "append 2", "append 1",
                                "append 2", "append 1"}));
  Settle();
  player.SetRepeat(RepeatMode::kOff);
  EXPECT_EQ(engine.sent.size(), 7U);
  EXPECT_EQ(engine.sent.back(), "remove 2");
}

TEST_F(SongPlayerList, RepeatOneAppendsTheSameTrackAndNextLeavesIt) {
  PlayFiles(2);
  player.SetRepeat(RepeatMode::kOne);
  EXPECT_EQ(engine.sent, (Texts{"append 1", "move 2 behind the first"}));
  engine.sent.clear();
  engine.ReplyToLoads();
  EXPECT_EQ(engine.sent.front(), "remove 2");
  EXPECT_EQ(engine.sent[1], "append 1");
  EXPECT_EQ(engine.sent.back(), "append 1");
  player.Next();
  EXPECT_EQ(player.CurrentTrack()->path, "2");
  player.Next();
  EXPECT_EQ(player.CurrentTrack()->path, "2");
}

TEST_F(SongPlayerList, NextOfTheLastTrackOfARepeatedListIsTheFirst) {
  PlayFiles(2);
  player.SetRepeat(RepeatMode::kAll);
  player.Next();
  player.Next();
  EXPECT_EQ(engine.sent.back(), "load 1");
  EXPECT_EQ(player.TrackNumber(), 1U);
}

TEST_F(SongPlayerList, ShuffleReplacesWhatFollows) {
  PlayFiles(20);
  player.SetShuffle(true);
  const std::vector<ListNumber> upcoming = player.List().UpcomingNumbers(0, 8);
  ASSERT_NE(upcoming[0], 2U);
  ASSERT_NE(upcoming[1], 2U);
  EXPECT_EQ(engine.sent.size(), 9U);
  EXPECT_EQ(engine.sent[7], "append " + std::to_string(upcoming[0]));
  EXPECT_EQ(engine.sent[8], "move 2 behind the first");
  engine.sent.clear();
  engine.ReplyToLoads();
  EXPECT_EQ(engine.sent.size(), 8U);
  EXPECT_EQ(engine.sent[0], "remove 2");
  for (std::size_t k = 1; k < upcoming.size(); ++k)
    EXPECT_EQ(engine.sent[k], "append " + std::to_string(upcoming[k]));
}

TEST_F(SongPlayerList, ARemovedTrackThatHasStartedIsReplacedByTheRightOne) {
  PlayFiles(4);
  player.Remove({2});
  EXPECT_EQ(engine.sent, (Texts{"remove 3", "remove 2", "append 3", "move 2 behind the first"}));
  engine.sent.clear();
  // The engine had started the track before.
  Start("2");
  EXPECT_EQ(engine.sent, (Texts{"redirect to 3", "remove following", "append 4"}));
  EXPECT_EQ(player.State(), PlayerState::kOpening);
  EXPECT_EQ(player.CurrentTrack()->path, "3");
  engine.ReplyToLoads();
  engine.events->OnTrackOpened();
  engine.events->OnTrackEnded(engine.entries.at("2"), nullptr);
  EXPECT_EQ(player.State(), PlayerState::kOpen);
  Settle();
  Start("4");
  EXPECT_EQ(engine.sent, Texts{"remove first"});
  EXPECT_EQ(player.CurrentTrack()->path, "4");
}

TEST_F(SongPlayerList, ARemovedTrackThatHasStartedWithoutANextOneEndsTheList) {
  PlayFiles(2);
  player.Remove({2});
  Start("2");
  EXPECT_EQ(engine.sent, (Texts{"remove following", "stop"}));
  EXPECT_EQ(player.State(), PlayerState::kStopped);
}

TEST_F(SongPlayerList, ChangesWaitUntilTheEngineHasAnsweredTheLastOnes) {
  PlayFiles(5);
  player.Remove({2});
  engine.sent.clear();
  player.Remove({3});
  player.Remove({4});
  EXPECT_EQ(engine.sent, Texts{});
  engine.ReplyToLoads();
  EXPECT_EQ(engine.sent, (Texts{"remove 2", "append 5", "move 2 behind the first", "remove 2"}));
  engine.sent.clear();
  Settle();
  EXPECT_EQ(engine.sent, Texts{});
}

TEST_F(SongPlayerList, ANextTrackThatStartsBeforeAWaitingChangeIsReplaced) {
  PlayFiles(5);
  player.Remove({2});
  engine.ReplyToLoads();
  player.Remove({3});
  engine.sent.clear();
  Start("3");
  EXPECT_EQ(engine.sent, (Texts{"redirect to 4", "remove following", "append 5"}));
  EXPECT_EQ(player.CurrentTrack()->path, "4");
}

TEST_F(SongPlayerList, AfterTheReplyOfItsReplacementNoFormerNextTrackCanStart) {
  PlayFiles(4);
  player.Remove({2});
  engine.ReplyToLoads();
  engine.sent.clear();
  Start("2");
  EXPECT_EQ(engine.sent, Texts{});
  EXPECT_EQ(player.CurrentTrack()->path, "1");
}

TEST_F(SongPlayerList, ATrackThatIsRemovedBeforeItsNumberIsKnownIsReplacedToo) {
  player.Add("1");
  player.Play();
  engine.ReplyToLoads();
  Start("1");
  player.AddFiles({"2", "3"}, kAtEnd);
  player.Remove({2});
  const std::map<CommandNumber, std::string> loads = engine.loads;
  for (const auto& [command, path] : loads) {
    engine.entries[path] = 50 + static_cast<EntryNumber>(command);
    engine.events->OnReply(command, true, engine.entries[path]);
  }
  engine.sent.clear();
  Start("2");
  EXPECT_EQ(engine.sent, (Texts{"redirect to 3", "remove following"}));
  EXPECT_EQ(player.CurrentTrack()->path, "3");
}

TEST_F(SongPlayerList, ATrackIsCuedPausedAtAPosition) {
  PlayFiles(3);
  player.Cue(3, 5000);
  EXPECT_EQ(engine.sent, (Texts{"pause", "load 3"}));
  EXPECT_EQ(player.Status(), kPaused);
  EXPECT_EQ(player.Position(), 5000);
  engine.ReplyToLoads();
  Start("3");
  engine.events->OnTrackOpened();
  engine.events->OnLength(60);
  engine.events->OnPropertiesReported();
  EXPECT_EQ(engine.sent.back(), "seek 5");
  player.Stop();
  engine.sent.clear();
  player.Cue(1, 0);
  EXPECT_EQ(engine.sent, (Texts{"pause", "load 1"}));
  EXPECT_EQ(player.Position(), 0);
}

TEST_F(SongPlayerList, FilesAddedAfterTheListRanOutPlayFromTheFirstOfThem) {
  player.Add("1");
  player.Play();
  engine.ReplyToLoads();
  Start("1");
  Fail("1");
  engine.events->OnIdle();
  ASSERT_EQ(player.State(), PlayerState::kRanOut);
  player.AddFiles({"2", "3"}, kAtEnd);
  EXPECT_EQ(player.State(), PlayerState::kLoading);
  EXPECT_EQ(player.CurrentTrack()->path, "2");
}

TEST_F(SongPlayerList, FilesAddedBeforeTheOneThatRanOutDoNotPlay) {
  const ListNumber first = player.AddFiles({"1"}, kAtEnd);
  player.Play();
  engine.ReplyToLoads();
  Start("1");
  Fail("1");
  engine.events->OnIdle();
  ASSERT_EQ(player.State(), PlayerState::kRanOut);
  player.AddFiles({"2", "3"}, static_cast<std::int64_t>(first));
  EXPECT_EQ(player.State(), PlayerState::kRanOut);
  EXPECT_EQ(player.CurrentTrack()->path, "1");
}

TEST_F(SongPlayerList, NothingIsToComeAfterTheEndOfTheListUntilSomethingIsPlayedOrAdded) {
  PlayFiles(2);
  EXPECT_EQ(player.Upcoming(), 1U);
  Start("2");
  engine.events->OnTrackEnded(engine.entries.at("2"), nullptr);
  engine.events->OnIdle();
  ASSERT_EQ(player.Status(), kStopped);
  EXPECT_EQ(player.Upcoming(), 0U);
  EXPECT_TRUE(player.HasEnded());
  player.Play();
  EXPECT_EQ(player.Upcoming(), 1U);
  EXPECT_FALSE(player.HasEnded());
  player.Stop();
  EXPECT_EQ(player.Upcoming(), 1U);
  player.AddFiles({"3"}, kAtEnd);
  EXPECT_EQ(player.Upcoming(), 2U);
}

TEST_F(SongPlayerList, AFailureIsKeptWithItsReasonUntilTheTrackPlays) {
  using Failure = std::pair<ListNumber, std::string>;
  const TempFolder folder;
  const std::string there = folder.File("a.mp3", "no sound");
  player.AddFiles({there, folder / "gone.mp3"}, kAtEnd);
  player.Play();
  engine.ReplyToLoads();
  Start(there);
  Fail(there, "It has no sound.");
  EXPECT_EQ(Failures(), (std::vector<Failure>{{1, "It has no sound."}}));
  Start(folder / "gone.mp3");
  Fail(folder / "gone.mp3", "It has no sound.");
  EXPECT_EQ(Failures().back(), (Failure{2, "The file is gone."}));
  player.PlayEntry(1);
  engine.ReplyToLoads();
  Start(there);
  engine.events->OnTrackOpened();
  EXPECT_EQ(Failures().size(), 2U);
  engine.events->OnPosition(0.1);
  EXPECT_EQ(Failures().back(), (Failure{1, ""}));
  engine.events->OnPosition(0.2);
  EXPECT_EQ(Failures().size(), 3U);
}

TEST_F(SongPlayerList, ARepeatedTrackThatFailsIsLeft) {
  PlayFiles(2);
  player.SetRepeat(RepeatMode::kOne);
  Fail("1");
  EXPECT_EQ(engine.sent.back(), "load 2");
  EXPECT_EQ(player.State(), PlayerState::kLoading);
}

TEST(PlayFailures, OnlyTheLastThousandAreKept) {
  PlayFailures failures;
  for (ListNumber entry = 1; entry <= 1500; ++entry) failures.Add(entry, "damaged");
  EXPECT_EQ(failures.After(0, 5000).size(), 1000U);
  EXPECT_EQ(failures.After(0, 64).size(), 64U);
  EXPECT_EQ(failures.After(0, 1).front().number, 501U);
  EXPECT_EQ(failures.After(1499, 64).front().entry, 1500U);
  EXPECT_TRUE(failures.After(1500, 64).empty());
  EXPECT_TRUE(failures.After(~std::uint64_t{0}, 64).empty());
  failures.ForgetEntries();
  failures.EntryPlays(1500);
  EXPECT_TRUE(failures.After(1500, 64).empty());
}

}  // namespace
}  // namespace tallow

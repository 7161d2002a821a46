// SPDX-License-Identifier: GPL-3.0-or-later
// Walks through the transitions of SongPlayer. libmpv cannot be made to send its events in every
// order, so a stand-in for the engine records the commands, and the tests send the events.
#include "player/substitute/song_player.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "player/substitute/event_loop.h"
#include "tests/recorded_engine.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

/// A player with the files "1", "2" and so on, in a state.
class Playback {
 public:
  Playback(int files, PlayerState state) {
    for (int k = 1; k <= files; ++k) player.Add(std::to_string(k));
    Reach(state);
    EXPECT_EQ(player.State(), state);
    engine.sent.clear();
    player.OnChange([this](PlayerChange change) { changes.push_back(change); });
  }

  PlaybackListener& Events() { return *engine.events; }
  void Start(const std::string& path) { Events().OnTrackStarted(engine.entries.at(path)); }
  void End(const std::string& path, const char* error = nullptr) {
    Events().OnTrackEnded(engine.entries.at(path), error);
  }
  void FailAndDrain() {
    testing::internal::CaptureStderr();
    End("1", "damaged");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tallow-player: 1 cannot be played and is skipped: damaged\n");
  }

  const std::unique_ptr<EventLoop> loop = NewEventLoop();
  RecordedEngine engine;
  SongPlayer player{*loop, engine};
  std::vector<PlayerChange> changes;

 private:
  void Reach(PlayerState state) {
    if (state == PlayerState::kStopped) return;
    player.Play();
    if (state == PlayerState::kLoading) return;
    engine.ReplyToLoads();
    if (state == PlayerState::kLoaded) return;
    Start("1");
    if (state == PlayerState::kOpening) return;
    if (state == PlayerState::kRanOut) {
      FailAndDrain();
      return Events().OnIdle();
    }
    Events().OnTrackOpened();
    if (state == PlayerState::kDraining) End("1");
  }
};

constexpr auto kStoppedState = PlayerState::kStopped;
constexpr auto kRanOut = PlayerState::kRanOut;
constexpr auto kLoading = PlayerState::kLoading;
constexpr auto kLoaded = PlayerState::kLoaded;
constexpr auto kOpening = PlayerState::kOpening;
constexpr auto kOpen = PlayerState::kOpen;
constexpr auto kDraining = PlayerState::kDraining;

constexpr PlayerState kTrackStates[] = {kLoading, kLoaded, kOpening, kOpen, kDraining};
constexpr PlayerState kEntryStates[] = {kLoaded, kOpening, kOpen, kDraining};
constexpr PlayerState kAllStates[] = {kStoppedState, kRanOut, kLoading, kLoaded,
                                      kOpening,      kOpen,   kDraining};

/// A row of the table of transitions.
struct Row {
  const char* name;
  int files;
  std::vector<PlayerState> from;
  std::function<void(Playback&)> event;
  PlayerState next;
  Texts sent;
  PlayerStatus status;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows)
    for (const PlayerState from : row.from) {
      SCOPED_TRACE(row.name + (" in state " + std::to_string(static_cast<int>(from))));
      Playback playback(row.files, from);
      row.event(playback);
      EXPECT_EQ(playback.player.State(), row.next);
      EXPECT_EQ(playback.engine.sent, row.sent);
      EXPECT_EQ(playback.player.Status(), row.status);
    }
}

template <std::size_t count>
std::vector<PlayerState> In(const PlayerState (&states)[count]) {
  return {states, states + count};
}

TEST(SongPlayer, CommandsCauseTheDocumentedTransitions) {
  const std::vector<PlayerState> without_track = {kStoppedState, kRanOut};
  Check({
      {"play",
       1,
       without_track,
       [](Playback& p) { p.player.Play(); },
       kLoading,
       {"resume", "load 1"},
       kPlaying},
      {"resume",
       1,
       without_track,
       [](Playback& p) { p.player.Resume(); },
       kLoading,
       {"resume", "load 1"},
       kPlaying},
      {"play",
       1,
       In(kTrackStates),
       [](Playback& p) { p.player.Play(); },
       kLoading,
       {"resume", "load 1"},
       kPlaying},
      {"pause",
       1,
       {kStoppedState},
       [](Playback& p) { p.player.TogglePause(); },
       kStoppedState,
       {},
       kStopped},
      {"seek",
       1,
       {kStoppedState},
       [](Playback& p) { EXPECT_FALSE(p.player.Seek(0)); },
       kStoppedState,
       {},
       kStopped},
      {"pause while draining",
       1,
       {kDraining},
       [](Playback& p) { p.player.TogglePause(); },
       kLoading,
       {"pause", "load 1"},
       kPaused},
      {"seek while draining",
       1,
       {kDraining},
       [](Playback& p) { EXPECT_TRUE(p.player.Seek(5000)); },
       kLoading,
       {"resume", "load 1"},
       kPlaying},
      {"seek",
       1,
       {kOpen},
       [](Playback& p) { EXPECT_TRUE(p.player.Seek(5000)); },
       kOpen,
       {"seek 5"},
       kPlaying},
      {"next",
       2,
       {kOpen},
       [](Playback& p) { p.player.Next(); },
       kLoading,
       {"resume", "load 2"},
       kPlaying},
      {"next of the last", 1, {kOpen}, [](Playback& p) { p.player.Next(); }, kOpen, {}, kPlaying},
      {"next",
       2,
       {kStoppedState},
       [](Playback& p) { p.player.Next(); },
       kStoppedState,
       {},
       kStopped},
      {"previous of the first",
       1,
       In(kTrackStates),
       [](Playback& p) { p.player.Previous(); },
       kLoading,
       {"resume", "load 1"},
       kPlaying},
      {"stop",
       1,
       In(kTrackStates),
       [](Playback& p) { p.player.Stop(); },
       kStoppedState,
       {"stop"},
       kStopped},
      {"stop", 1, without_track, [](Playback& p) { p.player.Stop(); }, kStoppedState, {}, kStopped},
      {"clear",
       1,
       In(kTrackStates),
       [](Playback& p) { p.player.Clear(); },
       kStoppedState,
       {"stop"},
       kStopped},
      {"clear",
       1,
       without_track,
       [](Playback& p) { p.player.Clear(); },
       kStoppedState,
       {},
       kStopped},
      {"add",
       1,
       {kStoppedState},
       [](Playback& p) { p.player.Add("2"); },
       kStoppedState,
       {},
       kStopped},
      {"add",
       1,
       {kRanOut},
       [](Playback& p) { p.player.Add("2"); },
       kLoading,
       {"resume", "load 2"},
       kPlaying},
      {"add", 1, {kLoading}, [](Playback& p) { p.player.Add("2"); }, kLoading, {}, kPlaying},
  });
}

TEST(SongPlayer, CommandsThatKeepTheStateFollowTheTable) {
  for (const PlayerState state : kTrackStates) {
    SCOPED_TRACE(static_cast<int>(state));
    Check({
        {"pause and resume",
         1,
         {state == kDraining ? kOpen : state},
         [](Playback& p) {
           p.player.TogglePause();
           EXPECT_EQ(p.player.Status(), kPaused);
           p.player.Resume();
         },
         state == kDraining ? kOpen : state,
         {"pause", "resume"},
         kPlaying},
        {"stop after the current track",
         1,
         {state},
         [](Playback& p) { p.player.StopAfterCurrent(); },
         state,
         {"remove following"},
         kPlaying},
        {"resume when playing",
         1,
         {state},
         [](Playback& p) { p.player.Resume(); },
         state,
         {},
         kPlaying},
    });
  }
  for (const PlayerState state : kEntryStates)
    Check({{"add",
            1,
            {state},
            [](Playback& p) { p.player.Add("2"); },
            state,
            {"append 2"},
            kPlaying}});
  for (const PlayerState state : {kLoading, kLoaded, kOpening})
    Check({{"deferred seek",
            1,
            {state},
            [](Playback& p) { EXPECT_TRUE(p.player.Seek(5000)); },
            state,
            {},
            kPlaying}});
}

TEST(SongPlayer, EventsCauseTheDocumentedTransitions) {
  Check({
      {"reply",
       3,
       {kLoading},
       [](Playback& p) { p.engine.ReplyToLoads(); },
       kLoaded,
       {"append 2", "append 3"},
       kPlaying},
      {"failed reply",
       2,
       {kLoading},
       [](Playback& p) { p.Events().OnReply(p.engine.loads.begin()->first, false, kNoEntry); },
       kStoppedState,
       {"stop"},
       kStopped},
      {"the track starts", 2, {kLoaded}, [](Playback& p) { p.Start("1"); }, kOpening, {}, kPlaying},
      {"the next track starts",
       2,
       {kLoaded, kOpening, kOpen},
       [](Playback& p) { p.Start("2"); },
       kOpening,
       {"remove first"},
       kPlaying},
      {"the track is open",
       2,
       {kOpening},
       [](Playback& p) { p.Events().OnTrackOpened(); },
       kOpen,
       {"properties"},
       kPlaying},
      {"the track ends before the next one",
       2,
       {kOpen},
       [](Playback& p) { p.End("1"); },
       kOpen,
       {},
       kPlaying},
      {"the last track ends",
       1,
       {kLoaded, kOpening, kOpen},
       [](Playback& p) { p.End("1"); },
       kDraining,
       {},
       kPlaying},
      {"idle with a next track",
       2,
       {kLoaded, kOpening, kOpen},
       [](Playback& p) { p.Events().OnIdle(); },
       kLoading,
       {"resume", "load 2"},
       kPlaying},
      {"idle",
       1,
       In(kEntryStates),
       [](Playback& p) { p.Events().OnIdle(); },
       kStoppedState,
       {"stop"},
       kStopped},
      {"idle after a failure",
       1,
       {kOpening},
       [](Playback& p) {
         p.FailAndDrain();
         EXPECT_EQ(p.player.State(), kDraining);
         p.Events().OnIdle();
       },
       kRanOut,
       {"stop"},
       kStopped},
      {"events were lost",
       1,
       In(kAllStates),
       [](Playback& p) { p.Events().OnEventsLost(); },
       kStoppedState,
       {"stop"},
       kStopped},
  });
}

TEST(SongPlayer, ATrackThatEndsBeforeTheReplyForTheNextIsFollowedByALoad) {
  Check({{"end",
          2,
          {kLoading},
          [](Playback& p) {
            const CommandNumber load = p.engine.loads.begin()->first;
            p.engine.entries["1"] = 7;
            p.Events().OnReply(load, true, 7);
            p.Start("1");
            p.End("1");
          },
          kLoading,
          {"append 2", "resume", "load 2"},
          kPlaying}});
}

TEST(SongPlayer, AfterStopAfterCurrentTheTrackEndsAndTheNextOneBecomesCurrent) {
  Playback playback(2, kOpen);
  playback.player.StopAfterCurrent();
  playback.End("1");
  EXPECT_EQ(playback.player.State(), kDraining);
  playback.Events().OnIdle();
  EXPECT_EQ(playback.player.State(), kStoppedState);
  EXPECT_EQ(playback.player.CurrentTrack()->path, "2");
  EXPECT_EQ(playback.engine.sent, (Texts{"remove following", "stop"}));
}

TEST(SongPlayer, ANextTrackThatStartsDespiteStopAfterCurrentIsStopped) {
  Playback playback(2, kOpen);
  playback.player.StopAfterCurrent();
  playback.Start("2");
  EXPECT_EQ(playback.player.State(), kStoppedState);
  EXPECT_EQ(playback.player.CurrentTrack()->path, "2");
}

TEST(SongPlayer, EventsWithoutARowAreIgnored) {
  constexpr EntryNumber kOther = std::numeric_limits<EntryNumber>::max();
  for (const PlayerState state : kAllStates) {
    SCOPED_TRACE(static_cast<int>(state));
    Playback playback(1, state);
    playback.Events().OnReply(~CommandNumber{0}, true, kOther);
    playback.Events().OnReply(~CommandNumber{0}, false, kNoEntry);
    playback.Events().OnTrackStarted(kOther);
    playback.Events().OnTrackEnded(kOther, "damaged");
    playback.Events().OnPlaybackRestarted();
    if (state != kOpening) playback.Events().OnTrackOpened();
    if (state < kLoaded) playback.Events().OnIdle();
    if (state != kOpen) playback.Events().OnPosition(30);
    if (state < kOpen) {
      playback.Events().OnLength(60);
      playback.Events().OnTags({.title = "Title", .artist = {}});
      playback.Events().OnPropertiesReported();
    }
    EXPECT_EQ(playback.player.State(), state);
    EXPECT_EQ(playback.engine.sent, Texts{});
    EXPECT_TRUE(playback.changes.empty());
    EXPECT_LE(playback.player.Position(), 0);
    EXPECT_EQ(playback.player.CurrentTrack()->title, "");
    EXPECT_FALSE(playback.player.CurrentTrack()->length);
  }
}

TEST(SongPlayer, AFullCommandQueueStopsThePlayer) {
  Playback playback(2, kOpen);
  playback.engine.full = true;
  playback.player.Next();
  EXPECT_EQ(playback.player.State(), kStoppedState);
  EXPECT_EQ(playback.engine.sent, (Texts{"resume", "load 2", "stop"}));
  EXPECT_EQ(playback.changes, (std::vector{PlayerChange::kStatus, PlayerChange::kTrack}));
}

TEST(SongPlayer, ADeferredSeekIsSentWhenTheLengthIsKnown) {
  Playback playback(1, kOpening);
  EXPECT_TRUE(playback.player.Seek(5000));
  EXPECT_EQ(playback.player.Position(), 5000);
  playback.Events().OnTrackOpened();
  playback.Events().OnPosition(0.1);
  playback.Events().OnLength(60);
  playback.Events().OnPropertiesReported();
  EXPECT_EQ(playback.engine.sent, (Texts{"properties", "seek 5"}));
  // Until playback restarts, the reports are those from before the seek.
  playback.Events().OnPosition(0.2);
  playback.Events().OnReply(playback.engine.seek, true, kNoEntry);
  playback.Events().OnPosition(0.3);
  EXPECT_EQ(playback.player.Position(), 5000);
  playback.Events().OnPlaybackRestarted();
  playback.Events().OnPosition(4.9);
  EXPECT_EQ(playback.player.Position(), 5000);
  playback.Events().OnPosition(6);
  EXPECT_EQ(playback.player.Position(), 6000);
}

TEST(SongPlayer, ADeferredSeekPastTheEndIsDropped) {
  Playback playback(1, kOpening);
  EXPECT_TRUE(playback.player.Seek(61000));
  playback.Events().OnTrackOpened();
  playback.Events().OnLength(60);
  playback.Events().OnPropertiesReported();
  EXPECT_EQ(playback.engine.sent, Texts{"properties"});
  EXPECT_EQ(playback.player.Position(), 0);
  EXPECT_EQ(playback.changes.back(), PlayerChange::kSeeked);
  EXPECT_FALSE(playback.player.Seek(61000));
}

TEST(SongPlayer, ASeekThatFailsLetsReportsThroughAgain) {
  Playback playback(1, kOpen);
  EXPECT_TRUE(playback.player.Seek(5000));
  playback.Events().OnReply(playback.engine.seek, false, kNoEntry);
  playback.Events().OnPosition(1);
  EXPECT_EQ(playback.player.Position(), 1000);
}

TEST(SongPlayer, APausedPositionDoesNotMoveBack) {
  Playback playback(1, kOpen);
  playback.player.TogglePause();
  EXPECT_TRUE(playback.player.Seek(5000));
  playback.Events().OnReply(playback.engine.seek, true, kNoEntry);
  playback.Events().OnPlaybackRestarted();
  playback.Events().OnPosition(1);
  EXPECT_EQ(playback.player.Position(), 5000);
}

TEST(SongPlayer, ASeekToTheVeryEndIsNoFailure) {
  Playback playback(1, kOpen);
  EXPECT_TRUE(playback.player.Seek(5000));
  testing::internal::CaptureStderr();
  playback.End("1", "no audio");
  playback.Events().OnIdle();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(playback.player.State(), kStoppedState);
}

TEST(SongPlayer, AfterTheEndOfTheFileThePositionGoesOnUpToTheLength) {
  Playback playback(1, kOpen);
  playback.Events().OnLength(3600);
  playback.Events().OnPosition(1800);
  playback.End("1");
  ASSERT_EQ(playback.player.State(), kDraining);
  const std::int64_t first = playback.player.Position();
  EXPECT_GE(first, 1'800'000);
  EXPECT_TRUE(WaitUntil([&] { return playback.player.Position() > first; }));
  EXPECT_LE(playback.player.Position(), 3'600'000);

  Playback at_end(1, kOpen);
  at_end.Events().OnLength(10);
  at_end.Events().OnPosition(10);
  at_end.End("1");
  EXPECT_TRUE(WaitUntil([&] { return playback.player.Position() > first + 1; }));
  EXPECT_EQ(at_end.player.Position(), 10'000);
}

TEST(SongPlayer, TheLengthIsPassedOnWhenTheTrackIsOpenOrHasEnded) {
  for (const bool opened : {true, false}) {
    Playback playback(1, kOpening);
    std::vector<std::int64_t> lengths;
    const auto store = [&](std::int64_t length) { lengths.push_back(length); };
    playback.player.WhenLengthIsKnown(store);
    playback.player.WhenLengthIsKnown(store);
    EXPECT_TRUE(lengths.empty());
    if (opened) {
      playback.Events().OnTrackOpened();
      playback.Events().OnLength(60.9);
      playback.Events().OnPropertiesReported();
    } else {
      playback.player.Stop();
    }
    const std::int64_t length = opened ? 60 : -1;
    EXPECT_EQ(lengths, (std::vector{length, length}));
    playback.player.WhenLengthIsKnown(store);
    EXPECT_EQ(lengths.size(), 3U);
  }
}

TEST(SongPlayer, AtMostEightTracksAreLoadedInAdvance) {
  Playback playback(20, kLoading);
  playback.engine.ReplyToLoads();
  EXPECT_EQ(playback.engine.sent.size(), 8U);
  EXPECT_EQ(playback.engine.sent.back(), "append 9");
  playback.Start("1");
  playback.Start("2");
  EXPECT_EQ(playback.engine.sent.back(), "append 10");
}

TEST(PlayList, NumbersAreNeverReused) {
  PlayList list;
  EXPECT_EQ(list.CurrentNumber(), 0U);
  EXPECT_EQ(list.CurrentPath(), "");
  list.Add("1");
  EXPECT_EQ(list.CurrentNumber(), 1U);
  list.Clear();
  list.Add("2");
  EXPECT_EQ(list.CurrentNumber(), 2U);
}

}  // namespace
}  // namespace tallow

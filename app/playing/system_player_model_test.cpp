// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/system_player_model.h"

#include <gtest/gtest.h>
#include <memory>

#include "app/data_paths.h"
#include "tests/id3v2_tag.h"
#include "tests/library_fixture.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"
#include "tests/stand_in_tallow_player.h"
#include "tests/tagged_file.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

using namespace std::chrono_literals;
using Songs = std::vector<std::int32_t>;

/// Ignores what a hand-over says.
class SilentPanel : public HandOffPanel {
 public:
  void TrackStarted(std::int32_t /*length*/) override {}
  void HandedOver() override {}
};

/// Records what a model says.
class RecordedChanges : public PlayerListener {
 public:
  void PlayingChanged(const Playing& before, const Playing& now) override {
    EXPECT_NE(before, now);
    changes.push_back(now);
  }
  void VolumeChanged() override { ++volumes; }

  std::vector<Playing> changes;
  int volumes = 0;
};

/// A library of ten songs with files, and a model with a clock that the test moves.
class ModelTest : public LibraryTest {
 protected:
  ModelTest() {
    for (int number = 1; number <= 10; ++number) {
      const std::string name = std::to_string(number) + ".mp3";
      AddSong(music.path(), name);
      music.File(name, "song");
    }
  }

  std::unique_ptr<SystemPlayerModel> MakeModel(WinAMP_Control& player) {
    PlayingClocks clocks;
    clocks.now = [this] { return now; };
    clocks.today = [this] { return today; };
    return std::make_unique<SystemPlayerModel>(tallow, player, clocks);
  }
  /// Hands songs over as the frame window does.
  void HandOver(SystemPlayerModel& model, Songs songs, const PlayOrder& order = {}) {
    tallow.SongsToPlay = std::move(songs);
    tallow.play_order = order;
    model.HandOverSongs(messages.Shower(), panel);
    model.SetUpNewPlayer();
    model.Update();
  }
  static Songs QueueOf(SystemPlayerModel& model) {
    Songs songs;
    for (std::size_t row = 0; row < model.QueueLength(); ++row)
      songs.push_back(model.QueueAt(row).song);
    return songs;
  }
  std::string PathOf(std::int32_t song) const { return library.Song(song).Path(); }

  RecordedMessages messages;
  SilentPanel panel;
  SystemPlayerModel::Time now{1h};
  std::chrono::sys_days today{2026y / 11 / 23};
};

class ModelOfOwnPlayer : public ModelTest {
 protected:
  ModelOfOwnPlayer() {
    tallow.player_path = music.path() + "tallow-player";
    model = MakeModel(player);
    model->AddListener(listener);
  }
  ~ModelOfOwnPlayer() override { model->RemoveListener(listener); }

  void HandOver(Songs songs, const PlayOrder& order = {}) {
    ModelTest::HandOver(*model, std::move(songs), order);
  }
  Songs Queue() { return QueueOf(*model); }
  /// Plays on for a time, with an update every 150 ms.
  void Hear(std::chrono::milliseconds time) {
    for (; time > 0ms; time -= 150ms) {
      now += 150ms;
      link.position += 150;
      model->Update();
    }
  }
  /// Another run of the program, with the same player.
  void Restart() {
    model->RemoveListener(listener);
    model.reset();
    tallow.handed_over.Clear();
    model = MakeModel(player);
    model->AddListener(listener);
  }

  StandInTallowPlayer link;
  WinAMP_Control player{link, [this] { return tallow.player_path; }, messages.Shower()};
  std::unique_ptr<SystemPlayerModel> model;
  RecordedChanges listener;
};

TEST_F(ModelOfOwnPlayer, WithoutAPlayerNothingPlaysAndNoCommandShowsAMessage) {
  model->Update();
  EXPECT_FALSE(model->Now().is_running);
  EXPECT_EQ(model->Now().kind, PlayerKind::kTallowPlayer);
  model->PlayOrPause();
  model->Next();
  model->Previous();
  model->Seek(5);
  model->SetVolume(7);
  model->SetBalance(7);
  model->SetShuffle(true);
  model->SetRepeat(RepeatMode::kOne);
  model->SetGain(ReplayGain::kTrack);
  model->MoveInQueue({}, 0);
  model->RemoveFromQueue({});
  model->PlayFromQueue(3);
  EXPECT_EQ(model->QueueLength(), 0U);
  EXPECT_TRUE(model->SongsOfQueue().empty());
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(model->Volume(), 7);
  EXPECT_TRUE(model->Now().shuffle);
  EXPECT_EQ(model->Now().repeat, RepeatMode::kOne);
}

TEST_F(ModelOfOwnPlayer, TheSongThatPlaysIsKnownWithItsOrigin) {
  const Jukebox* const jukebox = reinterpret_cast<const Jukebox*>(&tallow);
  HandOver({3, 4, 3}, {.origin = {jukebox, 8}});
  Playing playing = model->Now();
  EXPECT_TRUE(playing.is_running);
  EXPECT_EQ(playing.status, kPlaying);
  EXPECT_EQ(playing.song, 3);
  EXPECT_EQ(playing.origin, (SongsOrigin{jukebox, 8}));
  EXPECT_EQ(playing.length, 200);
  EXPECT_TRUE(playing.can_go_next);
  EXPECT_EQ(Queue(), (Songs{4, 3}));
  link.PlayNextEntry();
  link.PlayNextEntry();
  link.position = 61'999;
  model->Update();
  EXPECT_EQ(model->Now().song, 3);
  // Another entry of the same song.
  EXPECT_NE(model->Now().entry, playing.entry);
  EXPECT_EQ(model->Now().position, 61);
  EXPECT_TRUE(Queue().empty());
  model->PlayOrPause();
  EXPECT_EQ(model->Now().status, kPaused);
  EXPECT_EQ(model->Now().song, 3);
  link.status = kStopped;
  model->Update();
  EXPECT_EQ(model->Now().song, 0);
  EXPECT_EQ(model->Now().position, -1);
}

TEST_F(ModelOfOwnPlayer, ListenersAreToldOfEachChangeOnce) {
  HandOver({1, 2});
  listener.changes.clear();
  model->Update();
  EXPECT_TRUE(listener.changes.empty());
  link.PlayNextEntry();
  model->Update();
  ASSERT_EQ(listener.changes.size(), 1U);
  EXPECT_EQ(listener.changes[0].song, 2);
  link.End();
  model->Update();
  ASSERT_EQ(listener.changes.size(), 2U);
  EXPECT_FALSE(listener.changes[1].is_running);
  EXPECT_EQ(listener.changes[1].song, 0);
}

TEST_F(ModelOfOwnPlayer, ASongThatWasNotHandedOverIsNotNamed) {
  HandOver({1, 2});
  link.SendCopyData(1, kAddFile, std::string_view("/m/other.mp3\0", 13));
  link.current = 2;
  model->Update();
  EXPECT_EQ(model->Now().status, kPlaying);
  EXPECT_EQ(model->Now().song, 0);
  EXPECT_EQ(model->Now().entry, 0U);
}

TEST_F(ModelOfOwnPlayer, AnotherPlayersEntriesAreNotThoseOfTheFirst) {
  HandOver({1, 2});
  const std::uint64_t entry = model->Now().entry;
  link.End();
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(player.FindWinamp());
  link.SendCopyData(1, kAddFile, std::string_view("/m/other.mp3\0", 13));
  link.status = kPlaying;
  model->Update();
  EXPECT_EQ(link.list[0].number, entry);
  EXPECT_TRUE(model->Now().is_running);
  EXPECT_EQ(model->Now().song, 0);
  EXPECT_EQ(model->QueueLength(), 0U);
}

TEST_F(ModelOfOwnPlayer, PlayFromHereHasTheWholeFolderAndStartsAtTheSong) {
  HandOver({1, 2, 3, 4}, {.first = 2, .origin = {}});
  EXPECT_EQ(model->Now().song, 3);
  EXPECT_EQ(Queue(), Songs{4});
  EXPECT_EQ(link.Paths(), (Texts{PathOf(1), PathOf(2), PathOf(3), PathOf(4)}));
  model->Previous();
  EXPECT_EQ(model->Now().song, 2);
  EXPECT_EQ(Queue(), (Songs{3, 4}));
}

TEST_F(ModelOfOwnPlayer, PlayNextGoesBehindEarlierOnesAndAddToQueueToTheEnd) {
  HandOver({1, 2});
  HandOver({3}, {.to = HandOverTo::kPlayNext, .origin = {}});
  HandOver({4, 5}, {.to = HandOverTo::kPlayNext, .origin = {}});
  HandOver({6}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(model->Now().song, 1);
  EXPECT_EQ(Queue(), (Songs{3, 4, 5, 2, 6}));
  EXPECT_EQ(model->SongsOfQueue(), Queue());
  HandOver({7});
  EXPECT_EQ(model->Now().song, 7);
  EXPECT_TRUE(Queue().empty());
}

TEST_F(ModelOfOwnPlayer, WithNothingToPlayTheyPlay) {
  HandOver({1}, {.to = HandOverTo::kPlayNext, .origin = {}});
  EXPECT_EQ(model->Now().song, 1);
  // The list was played to its end.
  link.status = kStopped;
  HandOver({2, 3}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(model->Now().song, 2);
  EXPECT_EQ(Queue(), Songs{3});
  // The user has stopped in the middle.
  link.status = kStopped;
  HandOver({4}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(model->Now().status, kStopped);
  EXPECT_EQ(Queue(), (Songs{3, 4}));
}

TEST_F(ModelOfOwnPlayer, TheQueueIsRearranged) {
  HandOver({1, 2, 3, 4, 5});
  const auto entry = [&](std::size_t row) { return model->QueueAt(row).entry; };
  std::uint64_t revision = model->Now().queue_revision;
  const std::uint64_t moved[] = {entry(3), entry(2)};
  model->MoveInQueue(moved, entry(0));
  EXPECT_EQ(Queue(), (Songs{5, 4, 2, 3}));
  EXPECT_NE(model->Now().queue_revision, std::exchange(revision, model->Now().queue_revision));
  const std::uint64_t removed[] = {entry(1)};
  model->RemoveFromQueue(removed);
  EXPECT_EQ(Queue(), (Songs{5, 2, 3}));
  EXPECT_NE(model->Now().queue_revision, revision);
  model->PlayFromQueue(entry(1));
  EXPECT_EQ(model->Now().song, 2);
  EXPECT_EQ(Queue(), Songs{3});
}

TEST_F(ModelOfOwnPlayer, ALongQueueIsAskedForInBlocks) {
  Songs songs;
  for (int k = 0; k < 5000; ++k) songs.push_back(1 + k % 10);
  HandOver(songs);
  link.questions = 0;
  EXPECT_EQ(model->QueueLength(), 4999U);
  for (std::size_t row = 0; row < 200; ++row) EXPECT_EQ(model->QueueAt(row).song, songs[row + 1]);
  EXPECT_EQ(model->QueueAt(4998).song, 10);
  EXPECT_EQ(link.questions, 2U);
  songs.erase(songs.begin());
  EXPECT_EQ(model->SongsOfQueue(), songs);
}

TEST_F(ModelOfOwnPlayer, ANewPlayerGetsTheVolumeAndThePreferences) {
  PlayingPreferences preferences(tallow.preferences);
  preferences.SetRepeat(RepeatMode::kAll);
  preferences.SetShuffles(true);
  preferences.SetGain(ReplayGain::kAlbum);
  preferences.SetDevice("alsa/hw");
  HandOver({1});
  EXPECT_EQ(link.volume, 128);
  EXPECT_TRUE(link.shuffle);
  EXPECT_EQ(link.TakeRequests(),
            (Texts{R"({"do":"repeat","mode":"all"})", R"({"do":"gain","mode":"album"})",
                   R"({"do":"device","name":"alsa/hw"})"}));
  HandOver({2});
  EXPECT_EQ(link.TakeRequests(), Texts{});
  model->SetGain(ReplayGain::kOff);
  model->SetRepeat(RepeatMode::kOne);
  EXPECT_EQ(model->Now().repeat, RepeatMode::kOne);
  EXPECT_EQ(link.TakeRequests(),
            (Texts{R"({"do":"gain","mode":"off"})", R"({"do":"repeat","mode":"one"})"}));
  EXPECT_EQ(preferences.Repeat(), RepeatMode::kOne);
}

TEST_F(ModelOfOwnPlayer, TheVolumeThatWasChosenBeforeThePlayerStartsIsSent) {
  model->SetVolume(30);
  model->SetBalance(-20);
  EXPECT_EQ(listener.volumes, 2);
  HandOver({1});
  EXPECT_EQ(link.volume, 30);
  EXPECT_EQ(link.balance, -20 + kLeftBalance);
  // In the classic style the next player begins in the middle.
  model->ClosePlayer();
  HandOver({1});
  EXPECT_EQ(link.volume, 128);
  EXPECT_EQ(model->Volume(), 128);
}

TEST_F(ModelOfOwnPlayer, TheModernStyleBeginsWithTheVolumeOfLastTime) {
  tallow.preferences.SetStyle(Style::kModern);
  HandOver({1});
  model->SetVolume(30);
  model->ClosePlayer();
  Restart();
  EXPECT_EQ(model->Volume(), 30);
  HandOver({1});
  EXPECT_EQ(link.volume, 30);
}

TEST_F(ModelOfOwnPlayer, TheVolumeOfLastTimeIsShownWhenThePreferencesAreLoaded) {
  // The model was made before.
  tallow.preferences.SetStyle(Style::kModern);
  PlayingPreferences preferences(tallow.preferences);
  preferences.SetVolume(30);
  preferences.SetBalance(-20);
  model->ShowVolumeOfLastTime();
  EXPECT_EQ(model->Volume(), 30);
  EXPECT_EQ(model->Balance(), -20);
  EXPECT_EQ(listener.volumes, 1);
  model->SetVolume(40);
  model->ShowVolumeOfLastTime();
  EXPECT_EQ(model->Volume(), 40);
}

TEST_F(ModelOfOwnPlayer, AVolumeThatIsSetEarlyLeavesTheBalanceOfLastTime) {
  tallow.preferences.SetStyle(Style::kModern);
  PlayingPreferences(tallow.preferences).SetBalance(-20);
  model->SetVolume(40);
  model.reset();
  model = MakeModel(player);
  EXPECT_EQ(PlayingPreferences(tallow.preferences).Volume(), 40);
  EXPECT_EQ(PlayingPreferences(tallow.preferences).Balance(), -20);
}

TEST_F(ModelOfOwnPlayer, APlayerThatReplacesADeadOneGetsTheVolumeThatItHad) {
  HandOver({1});
  model->SetVolume(30);
  link.End();
  model->Update();
  HandOver({1});
  EXPECT_EQ(link.volume, 30);
}

TEST_F(ModelOfOwnPlayer, FailuresAreKnownBySongAndByEntry) {
  HandOver({1, 2, 1});
  EXPECT_EQ(model->FailureOf(2), "");
  const std::uint64_t entry = model->QueueAt(0).entry;
  link.Fail(entry, "It is no music.");
  link.PlayNextEntry();
  link.PlayNextEntry();
  std::uint64_t revision = model->Now().failures_revision;
  model->Update();
  EXPECT_NE(model->Now().failures_revision,
            std::exchange(revision, model->Now().failures_revision));
  EXPECT_EQ(model->FailureOf(2), "It is no music.");
  EXPECT_EQ(model->FailureOfEntry(entry), "It is no music.");
  EXPECT_EQ(model->FailureOf(1), "");
  model->Update();
  EXPECT_EQ(model->Now().failures_revision, revision);
  // It plays after all.
  link.Fail(entry, "");
  model->Update();
  EXPECT_EQ(model->FailureOf(2), "");
  EXPECT_EQ(model->FailureOfEntry(entry), "");
  EXPECT_NE(model->Now().failures_revision, revision);
}

TEST_F(ModelOfOwnPlayer, AnEndWithoutTheUsersCommandIsSaidOnce) {
  HandOver({1, 2});
  link.End();
  model->Update();
  model->Update();
  EXPECT_EQ(model->TakeNotices(), Texts{"The player has ended. Play starts it again."});
  HandOver({1, 2});
  // The user stops or closes it.
  model->ClosePlayer();
  model->Update();
  HandOver({1});
  model->DropStoredQueue();
  link.End();
  model->Update();
  HandOver({1});
  link.status = kStopped;
  model->Update();
  link.End();
  model->Update();
  EXPECT_EQ(model->TakeNotices(), Texts{});
}

TEST_F(ModelOfOwnPlayer, ASongThatCannotBePlayedIsSaidWhenThePlayerStops) {
  HandOver({3});
  link.status = kStopped;
  link.Fail(link.list[0].number, "It is no music.");
  model->Update();
  model->Update();
  EXPECT_EQ(model->TakeNotices(), Texts{"3.mp3 cannot be played: It is no music."});
  // The next one plays.
  HandOver({3, 4});
  link.Fail(link.list[0].number, "It is no music.");
  link.PlayNextEntry();
  model->Update();
  link.position = 5000;
  model->Update();
  link.status = kStopped;
  model->Update();
  EXPECT_EQ(model->TakeNotices(), Texts{});
}

TEST_F(ModelOfOwnPlayer, ALateAnswerChangesNothing) {
  HandOver({1, 2});
  Hear(99s);
  const Playing before = model->Now();
  listener.changes.clear();
  link.answers = false;
  model->Update();
  EXPECT_EQ(model->Now(), before);
  EXPECT_TRUE(model->HasList());
  // It may play, so its list is not replaced.
  tallow.SongsToPlay = {3};
  tallow.play_order = {.to = HandOverTo::kAtEnd, .origin = {}};
  model->HandOverSongs(messages.Shower(), panel);
  EXPECT_EQ(link.list.size(), 3U);
  link.answers = true;
  Hear(2s);
  EXPECT_EQ(model->CountOf(1).count, 1);
}

TEST_F(ModelOfOwnPlayer, PlayersThatWereNotLookedForKeepTheirLists) {
  HandOver({1, 2});
  WinAMP_Control other{link, [this] { return tallow.player_path; }, messages.Shower()};
  const auto next = MakeModel(other);
  ModelTest::HandOver(*next, {3}, {.to = HandOverTo::kPlayNext, .origin = {}});
  EXPECT_EQ(link.Paths(), (Texts{PathOf(1), PathOf(3), PathOf(2)}));
}

TEST_F(ModelOfOwnPlayer, AnotherKindOfPlayerThatWasChosenClosesTheFirst) {
  HandOver({1, 2});
  model->SetVolume(30);
  tallow.player_path = "C:\\Winamp\\winamp.exe";
  EXPECT_TRUE(model->CloseFormerPlayer());
  EXPECT_FALSE(link.is_there);
  EXPECT_FALSE(model->CloseFormerPlayer());
  // What is added then plays.
  tallow.player_path = music.path() + "tallow-player";
  HandOver({1, 2});
  tallow.player_path = "C:\\Winamp\\winamp.exe";
  HandOver({3}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(link.Paths(), Texts{PathOf(3)});
  EXPECT_EQ(link.status, kPlaying);
}

TEST_F(ModelOfOwnPlayer, ButtonsAreEnabledWhereTheyDoSomething) {
  HandOver({1, 2});
  EXPECT_TRUE(model->Now().can_go_next);
  // It begins the first song anew.
  EXPECT_TRUE(model->Now().can_go_previous);
  model->Next();
  EXPECT_FALSE(model->Now().can_go_next);
  link.shuffle = true;
  model->SetRepeat(RepeatMode::kOne);
  EXPECT_FALSE(model->Now().can_go_next);
  model->SetRepeat(RepeatMode::kAll);
  EXPECT_TRUE(model->Now().can_go_next);
  link.list.clear();
  link.current = 0;
  model->Update();
  EXPECT_FALSE(model->Now().can_go_next);
  EXPECT_FALSE(model->Now().can_go_previous);
}

TEST_F(ModelOfOwnPlayer, TheLastSecondThatIsShownCanBeSoughtFor) {
  HandOver({1});
  link.length = 3600;
  model->Update();
  ASSERT_EQ(model->Now().length, 4);
  model->Seek(4);
  EXPECT_EQ(model->Now().position, 3);
}

TEST_F(ModelOfOwnPlayer, ListenersAreToldOfTextsThatCameLater) {
  HandOver({1});
  model->PlayOrPause();
  EXPECT_EQ(model->TextOf(1), "1.mp3");
  music.File("1.mp3", Id3v2Tag({{"TIT2", "A Title"}}) + Audio(300));
  tallow.details.Start(library);
  EXPECT_TRUE(WaitUntil([&] {
    tallow.details.Poll();
    return !tallow.details.IsReading();
  }));
  listener.changes.clear();
  now += 1s;
  model->Update();
  EXPECT_EQ(listener.changes.size(), 1U);
  EXPECT_EQ(model->TextOf(1), "A Title");
  now += 1s;
  model->Update();
  EXPECT_EQ(listener.changes.size(), 1U);
}

TEST_F(ModelOfOwnPlayer, AFailureFollowsASongThatReturnsUnderAnotherNumber) {
  HandOver({1, 2});
  link.Fail(model->QueueAt(0).entry, "It is no music.");
  model->Update();
  AddSong(music.path(), "2.mp3");
  library.Mp3Info(kFileLocation, 2, "0");
  library.Mp3Info(kFileName, 2, "0");
  library.Mp3Info(kFileIsThere, 2, "0");
  tallow.handed_over.Renumber({{2, 11}});
  model->Update();
  EXPECT_EQ(Queue(), Songs{11});
  EXPECT_EQ(model->FailureOf(11), "It is no music.");
}

TEST_F(ModelOfOwnPlayer, APlayIsCountedWhenHalfOfTheSongWasHeard) {
  HandOver({1, 2});
  Hear(99s);
  EXPECT_EQ(model->CountOf(1).count, 0);
  Hear(2s);
  EXPECT_EQ(model->CountOf(1), (PlayCount{1, today}));
  Hear(90s);
  link.PlayNextEntry();
  model->Update();
  model->Seek(150);
  Hear(45s);
  EXPECT_EQ(model->CountOf(2).count, 0);
  EXPECT_TRUE(FileExists(GroupingFolder(application.path()) + "PlayCounts.json"));
}

TEST_F(ModelOfOwnPlayer, TheNextStartRestoresTheQueuePaused) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2, 3, 2});
  link.PlayNextEntry();
  link.position = 61'500;
  model->Update();
  model->StoreQueue();
  model->ClosePlayer();
  Restart();
  model->RestoreQueue(messages.Shower());
  EXPECT_EQ(model->Now().status, kPaused);
  EXPECT_EQ(model->Now().song, 2);
  EXPECT_EQ(model->Now().position, 61);
  EXPECT_EQ(Queue(), (Songs{3, 2}));
  EXPECT_EQ(link.volume, 128);
  // A player that plays is left alone.
  Restart();
  link.TakeRequests();
  model->RestoreQueue(messages.Shower());
  EXPECT_EQ(link.list.size(), 3U);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(ModelOfOwnPlayer, APlayerThatAKilledTallowLeftBehindIsTakenOver) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2, 3, 2});
  model->SetVolume(30);
  link.PlayNextEntry();
  Restart();
  // The next program knows nothing of the player.
  WinAMP_Control found{link, [this] { return tallow.player_path; }, messages.Shower()};
  const auto next = MakeModel(found);
  next->RestoreQueue(messages.Shower());
  EXPECT_TRUE(next->Now().is_running);
  EXPECT_EQ(next->Now().status, kPlaying);
  EXPECT_EQ(next->Now().song, 2);
  EXPECT_EQ(QueueOf(*next), (Songs{3, 2}));
  EXPECT_EQ(next->Volume(), 30);
  EXPECT_EQ(link.volume, 30);
  EXPECT_EQ(link.list.size(), 4U);
  EXPECT_TRUE(next->HasPlayer());
  next->ClosePlayer();
  EXPECT_FALSE(link.is_there);
}

TEST_F(ModelOfOwnPlayer, SongsOfAPlayerThatAreNotKnownAreNotNamed) {
  HandOver({1, 2, 3});
  Restart();
  WinAMP_Control found{link, [this] { return tallow.player_path; }, messages.Shower()};
  const auto next = MakeModel(found);
  next->RestoreQueue(messages.Shower());
  EXPECT_TRUE(next->Now().is_running);
  EXPECT_EQ(next->Now().song, 0);
  EXPECT_EQ(next->QueueLength(), 0U);
  EXPECT_TRUE(next->HasPlayer());
  // The list has another song than the stored one.
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  ModelTest::HandOver(*next, {1, 2, 3});
  link.SendCopyData(1, kAddFile, std::string_view("/m/other.mp3\0", 13));
  tallow.handed_over.Clear();
  WinAMP_Control again{link, [this] { return tallow.player_path; }, messages.Shower()};
  const auto last = MakeModel(again);
  last->RestoreQueue(messages.Shower());
  EXPECT_EQ(last->Now().song, 0);
  EXPECT_EQ(last->QueueLength(), 0U);
}

TEST_F(ModelOfOwnPlayer, AShortenedQueueIsNotStored) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  const Texts all{PathOf(4), music / "away.mp3", PathOf(5)};
  SavedQueue(SystemFolder(application.path())).Store({all, 0});
  const auto stored = [this] { return SavedQueue(SystemFolder(application.path())).Load().paths; };
  model->RestoreQueue(messages.Shower());
  EXPECT_EQ(Queue(), Songs{5});
  now += 6s;
  model->Update();
  model->StoreQueue();
  EXPECT_EQ(stored(), all);
  const std::uint64_t removed[] = {model->QueueAt(0).entry};
  model->RemoveFromQueue(removed);
  model->StoreQueue();
  EXPECT_EQ(stored(), Texts{PathOf(4)});
}

TEST_F(ModelOfOwnPlayer, AShuffledPlayerGetsTheOrderOfTheStoredQueue) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  PlayingPreferences(tallow.preferences).SetShuffles(true);
  SavedQueue(SystemFolder(application.path())).Store({{PathOf(4), PathOf(2), PathOf(5)}, 0});
  model->RestoreQueue(messages.Shower());
  EXPECT_EQ(link.TakeRequests().back(), R"({"do":"move","entries":[2,3],"before":0})");
  EXPECT_EQ(Queue(), (Songs{2, 5}));
}

TEST_F(ModelOfOwnPlayer, TheQueueIsStoredSomeTimeAfterAChange) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2, 3});
  now += 5s;
  model->Update();
  EXPECT_EQ(SavedQueue(SystemFolder(application.path())).Load().paths,
            (Texts{PathOf(1), PathOf(2), PathOf(3)}));
  link.PlayNextEntry();
  model->Update();
  now += 6s;
  model->Update();
  EXPECT_EQ(SavedQueue(SystemFolder(application.path())).Load().paths,
            (Texts{PathOf(2), PathOf(3)}));
  // A player that crashes does not lose the queue.
  link.End();
  now += 6s;
  model->Update();
  model->StoreQueue();
  EXPECT_EQ(SavedQueue(SystemFolder(application.path())).Load().paths.size(), 2U);
  model->DropStoredQueue();
  EXPECT_TRUE(SavedQueue(SystemFolder(application.path())).Load().paths.empty());
}

TEST_F(ModelOfOwnPlayer, NothingIsStoredOrRestoredWithoutTheUsersWish) {
  HandOver({1, 2});
  now += 6s;
  model->Update();
  model->StoreQueue();
  EXPECT_FALSE(FileExists(SystemFolder(application.path()) + "Queue.json"));
  SavedQueue(SystemFolder(application.path())).Store({{PathOf(1)}, 5});
  model->ClosePlayer();
  Restart();
  model->RestoreQueue(messages.Shower());
  EXPECT_FALSE(link.is_there);
}

TEST_F(ModelOfOwnPlayer, SongsThatAreGoneAreNotRestored) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  SavedQueue(SystemFolder(application.path()))
      .Store({{music / "gone.mp3", PathOf(4), music / "gone.mp3", PathOf(5)}, 61'500});
  model->RestoreQueue(messages.Shower());
  EXPECT_EQ(model->Now().song, 4);
  EXPECT_EQ(model->Now().position, 0);
  EXPECT_EQ(Queue(), Songs{5});
}

TEST_F(ModelOfOwnPlayer, AQueueThatWasPlayedToItsEndIsNotRestored) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2});
  model->StoreQueue();
  link.PlayNextEntry();
  link.status = kStopped;
  model->Update();
  model->StoreQueue();
  EXPECT_TRUE(SavedQueue(SystemFolder(application.path())).Load().paths.empty());
}

TEST_F(ModelOfOwnPlayer, EverythingCanBeDone) {
  for (const PlayerFeature feature :
       {PlayerFeature::kPlayNext, PlayerFeature::kRearrange, PlayerFeature::kRepeatOne,
        PlayerFeature::kReplayGain, PlayerFeature::kSoundDevice}) {
    EXPECT_TRUE(model->Can(feature));
    EXPECT_EQ(model->WhyNot(feature), "");
  }
}

/// The answers of a Winamp with a list.
class ModelOfWinamp : public ModelTest {
 protected:
  ModelOfWinamp() {
    tallow.player_path = "C:\\Winamp\\winamp.exe";
    model = MakeModel(player);
  }
  void HandOver(Songs songs, const PlayOrder& order = {}) {
    link.answers["1024 0 124"] = static_cast<std::int64_t>(
        (order.to == HandOverTo::kReplace ? 0 : tallow.handed_over.Count()) + songs.size());
    ModelTest::HandOver(*model, std::move(songs), order);
  }
  void PlaysAt(std::int64_t place, std::int64_t status = 1) {
    link.answers["1024 0 125"] = place;
    link.answers["1024 0 104"] = status;
    link.answers["1024 0 105"] = 61'999;
    link.answers["1024 1 105"] = 215;
    model->Update();
  }
  Songs Queue() { return QueueOf(*model); }

  RecordedLink link;
  WinAMP_Control player{link, [this] { return tallow.player_path; }, messages.Shower()};
  std::unique_ptr<SystemPlayerModel> model;
};

TEST_F(ModelOfWinamp, TheSongIsKnownByItsPlace) {
  HandOver({3, 4, 5});
  PlaysAt(1);
  EXPECT_EQ(model->Now().kind, PlayerKind::kWinamp);
  EXPECT_EQ(model->Now().song, 4);
  EXPECT_EQ(model->Now().position, 61);
  EXPECT_EQ(model->Now().length, 215);
  EXPECT_EQ(Queue(), Songs{5});
  PlaysAt(2, 3);
  EXPECT_EQ(model->Now().status, kPaused);
  EXPECT_EQ(model->Now().song, 5);
  EXPECT_TRUE(Queue().empty());
}

TEST_F(ModelOfWinamp, AListOfAnotherLengthMarksNothing) {
  HandOver({3, 4, 5});
  for (const std::int64_t length : {0, 2, 4}) {
    link.answers["1024 0 124"] = length;
    PlaysAt(1);
    EXPECT_EQ(model->Now().status, kPlaying);
    EXPECT_EQ(model->Now().song, 0) << length;
    EXPECT_EQ(model->QueueLength(), 0U) << length;
  }
  link.answers["1024 0 124"] = 3;
  PlaysAt(1);
  EXPECT_EQ(model->Now().song, 4);
  // An earlier Winamp does not know its place.
  PlaysAt(-1);
  EXPECT_EQ(model->Now().song, 0);
}

TEST_F(ModelOfWinamp, PlayFromHereAndAddToQueueAppend) {
  HandOver({1, 2, 3, 4}, {.first = 2, .origin = {}});
  PlaysAt(0);
  EXPECT_EQ(model->Now().song, 3);
  EXPECT_EQ(Queue(), (Songs{4, 1, 2}));
  HandOver({5}, {.to = HandOverTo::kAtEnd, .origin = {}});
  PlaysAt(0);
  EXPECT_EQ(Queue(), (Songs{4, 1, 2, 5}));
  EXPECT_EQ(model->SongsOfQueue(), (Songs{4, 1, 2, 5}));
}

TEST_F(ModelOfWinamp, InRandomOrderItsListIsNotReplacedByAddToQueue) {
  HandOver({1, 2, 3});
  link.answers["1024 0 250"] = 1;
  PlaysAt(2, 0);
  link.logs_queries = false;
  link.Take();
  HandOver({5}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(std::ranges::count(link.Take(), "1024 0 101"), 0);
  link.answers["1024 0 250"] = 0;
  PlaysAt(4, 0);
  HandOver({5}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(std::ranges::count(link.Take(), "1024 0 101"), 1);
}

TEST_F(ModelOfWinamp, ASongAtThePlaceOfTheFormerOneIsCountedAnew) {
  const auto hear = [this](int steps) {
    for (int k = 0; k < steps; ++k) {
      now += 1s;
      link.answers["1024 0 105"] += 1000;
      model->Update();
    }
  };
  HandOver({1});
  PlaysAt(0);
  hear(100);
  HandOver({2});
  PlaysAt(0);
  hear(100);
  EXPECT_EQ(model->CountOf(2).count, 0);
  hear(8);
  EXPECT_EQ(model->CountOf(2).count, 1);
}

TEST_F(ModelOfWinamp, InRandomOrderTheQueueIsUnknown) {
  HandOver({1, 2, 3});
  link.answers["1024 0 250"] = 1;
  PlaysAt(1);
  EXPECT_EQ(model->Now().song, 2);
  EXPECT_TRUE(model->Now().shuffle);
  EXPECT_EQ(model->QueueLength(), 0U);
}

TEST_F(ModelOfWinamp, ANewPlayerGetsOnlyTheVolume) {
  tallow.preferences.SetStyle(Style::kModern);
  PlayingPreferences(tallow.preferences).SetShuffles(true);
  link.logs_queries = false;
  HandOver({1});
  const Texts sent = link.Take();
  ASSERT_GE(sent.size(), 2U);
  EXPECT_EQ(Texts(sent.end() - 2, sent.end()), (Texts{"1024 128 122", "1024 0 123"}));
}

TEST_F(ModelOfWinamp, CommandsAreItsMessages) {
  HandOver({1, 2, 3});
  PlaysAt(0);
  link.logs_queries = false;
  link.Take();
  model->PlayOrPause();
  model->Next();
  model->Previous();
  model->Seek(20);
  model->SetShuffle(true);
  model->SetRepeat(RepeatMode::kAll);
  model->SetRepeat(RepeatMode::kOne);
  model->PlayFromQueue(3);
  EXPECT_EQ(link.Take(), (Texts{"273 40046 0", "273 40048 0", "273 40044 0", "1024 20000 106",
                                "1024 1 252", "1024 1 253", "1024 2 121", "273 40045 0"}));
  PlaysAt(0, 0);
  model->PlayOrPause();
  EXPECT_EQ(link.Take(), Texts{"273 40045 0"});
}

TEST_F(ModelOfWinamp, WhatItCannotDoIsSaid) {
  HandOver({1});
  for (const PlayerFeature feature :
       {PlayerFeature::kPlayNext, PlayerFeature::kRearrange, PlayerFeature::kRepeatOne,
        PlayerFeature::kReplayGain, PlayerFeature::kSoundDevice}) {
    EXPECT_FALSE(model->Can(feature));
    EXPECT_EQ(model->WhyNot(feature),
              "Winamp cannot do this. Tallow's own player can; choose it in Preferences, page "
              "Player.");
  }
}

TEST_F(ModelOfWinamp, AWinampOfTheUserIsNotTakenForTallows) {
  ASSERT_TRUE(player.FindWinamp());
  model->Update();
  EXPECT_TRUE(model->Now().is_running);
  EXPECT_FALSE(model->HasPlayer());
  HandOver({1});
  EXPECT_TRUE(model->HasPlayer());
}

}  // namespace
}  // namespace tallow

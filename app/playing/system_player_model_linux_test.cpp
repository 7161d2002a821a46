// SPDX-License-Identifier: GPL-3.0-or-later
// The model with the built tallow-player.
#include <gtest/gtest.h>

#include "app/data_paths.h"
#include "app/playing/play_order.h"
#include "app/playing/system_player_model.h"
#include "app/tallow.h"
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"

namespace tallow {
namespace {

using Songs = std::vector<std::int32_t>;

class SilentPanel : public HandOffPanel {
 public:
  void TrackStarted(std::int32_t /*length*/) override {}
  void HandedOver() override {}
};

class ModelAndPlayer : public RealPlayer {
 protected:
  ModelAndPlayer() {
    CreateFolders(SystemFolder(application.path()));
    tallow.player_path = path;
    for (std::int32_t row = 1; row <= 3; ++row) AddSong(row);
  }

  void AddSong(std::int32_t row) {
    const std::string name = std::to_string(row) + ".mp3";
    MakeMp3(folder / name, std::to_string(row * 30) + " sine 440", 2, "-b 64");
    Add(row, name);
  }
  void Add(std::int32_t row, const std::string& name) {
    tallow.library.Mp3Info(kFileLocation, row, folder.path());
    tallow.library.Mp3Info(kFileName, row, name);
    tallow.library.Mp3Info(kFileIsThere, row, "1");
  }
  void HandOver(Songs songs, const PlayOrder& order = {}) {
    tallow.SongsToPlay = std::move(songs);
    tallow.play_order = order;
    model->HandOverSongs(messages.Shower(), panel);
    model->SetUpNewPlayer();
    model->Update();
  }
  bool Becomes(const std::function<bool(const Playing&)>& condition) {
    return WaitUntil([&] {
      model->Update();
      return condition(model->Now());
    });
  }
  bool Plays(std::int32_t song) {
    return Becomes([song](const Playing& now) { return now.song == song; });
  }

  TempFolder application;
  Tallow tallow{application.path()};
  SilentPanel panel;
  std::optional<SystemPlayerModel> model{std::in_place, tallow, player};
};

TEST_F(ModelAndPlayer, ShowsWhatPlaysAndWhatIsToCome) {
  HandOver({1, 2, 3}, {.first = 1, .origin = {}});
  EXPECT_TRUE(Plays(2));
  EXPECT_EQ(model->SongsOfQueue(), Songs{3});
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.length == 60; }));
  HandOver({1}, {.to = HandOverTo::kPlayNext, .origin = {}});
  HandOver({2}, {.to = HandOverTo::kAtEnd, .origin = {}});
  EXPECT_EQ(model->SongsOfQueue(), (Songs{1, 3, 2}));
  const std::uint64_t moved[] = {model->QueueAt(2).entry};
  model->MoveInQueue(moved, model->QueueAt(0).entry);
  EXPECT_EQ(model->SongsOfQueue(), (Songs{2, 1, 3}));
  const std::uint64_t removed[] = {model->QueueAt(1).entry};
  model->RemoveFromQueue(removed);
  EXPECT_EQ(model->SongsOfQueue(), (Songs{2, 3}));
  model->PlayFromQueue(model->QueueAt(1).entry);
  EXPECT_TRUE(Plays(3));
  model->Previous();
  EXPECT_TRUE(Plays(2));
  model->PlayOrPause();
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.status == kPaused; }));
  model->Seek(20);
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.position == 20; }));
  EXPECT_EQ(messages.Take(), std::vector<std::string>());
}

TEST_F(ModelAndPlayer, ASongThatCannotBePlayedIsNamedAndTheNextOnePlays) {
  folder.File("4.mp3", "This is no music.");
  Add(4, "4.mp3");
  HandOver({4, 1});
  EXPECT_TRUE(Plays(1));
  EXPECT_TRUE(Becomes([this](const Playing&) { return !model->FailureOf(4).empty(); }));
  EXPECT_EQ(model->FailureOf(1), "");
}

TEST_F(ModelAndPlayer, TheQueueIsRestoredPaused) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2, 3});
  EXPECT_TRUE(Plays(1));
  model->Next();
  EXPECT_TRUE(Plays(2));
  // The player accepts a position only once it knows the length.
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.length == 60; }));
  model->Seek(20);
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.position >= 20; }));
  model->StoreQueue();
  model->ClosePlayer();
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  model.emplace(tallow, player);
  model->RestoreQueue(messages.Shower());
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.status == kPaused && now.song == 2; }));
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.position >= 20; }));
  // The bar shows the time of a paused song, too.
  EXPECT_TRUE(Becomes([](const Playing& now) { return now.length == 60; }));
  EXPECT_EQ(model->SongsOfQueue(), Songs{3});
  model->PlayOrPause();
  EXPECT_TRUE(
      Becomes([](const Playing& now) { return now.status == kPlaying && now.position >= 21; }));
}

TEST_F(ModelAndPlayer, AShuffledQueueIsRestoredInItsOrder) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  PlayingPreferences(tallow.preferences).SetShuffles(true);
  SavedSongs songs;
  Songs expected;
  for (const std::int32_t song : {3, 1, 2, 2, 1, 3, 1, 1, 3, 2, 3, 1}) {
    songs.paths.push_back(tallow.library.Song(song).Path());
    expected.push_back(song);
  }
  SavedQueue(SystemFolder(application.path())).Store(songs);
  model->RestoreQueue(messages.Shower());
  expected.erase(expected.begin());
  EXPECT_EQ(model->Now().song, 3);
  EXPECT_TRUE(model->Now().shuffle);
  EXPECT_EQ(model->SongsOfQueue(), expected);
  // Play Next still comes before them.
  HandOver({3}, {.to = HandOverTo::kPlayNext, .origin = {}});
  expected.insert(expected.begin(), 3);
  EXPECT_EQ(model->SongsOfQueue(), expected);
}

TEST_F(ModelAndPlayer, APlayerThatWasLeftBehindIsTakenOver) {
  PlayingPreferences(tallow.preferences).SetRestoresQueue(true);
  HandOver({1, 2, 3});
  model->SetVolume(77);
  EXPECT_TRUE(Plays(1));
  // The next Tallow has a connection of its own.
  tallow.handed_over.Clear();
  const std::unique_ptr<PlayerLink> next_link = SystemPlayerLink();
  WinAMP_Control next{*next_link, [this] { return path; }, messages.Shower()};
  model.emplace(tallow, next);
  model->RestoreQueue(messages.Shower());
  EXPECT_TRUE(Plays(1));
  EXPECT_EQ(model->Now().status, kPlaying);
  EXPECT_EQ(model->SongsOfQueue(), (Songs{2, 3}));
  EXPECT_EQ(model->Volume(), 77);
  ASSERT_TRUE(model->HasPlayer());
  model->ClosePlayer();
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  model.reset();
}

}  // namespace
}  // namespace tallow

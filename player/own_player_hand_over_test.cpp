// SPDX-License-Identifier: GPL-3.0-or-later
// Hand-over of songs to Tallow's own player.
#include <filesystem>
#include <utility>

#include "player/playfile.h"
#include "tests/library_fixture.h"
#include "tests/recorded_messages.h"
#include "tests/tallow_player_stand_in.h"

namespace tallow {
namespace {

using Numbers = std::vector<std::int32_t>;

class OwnPlayerHandOver : public LibraryTest, protected HandOffPanel {
 protected:
  /// Adds songs 1 to `count` to the library, with their files.
  void AddSongs(int count) {
    for (int k = 1; k <= count; ++k) {
      AddSong(music.path(), Name(k));
      music.File(Name(k));
    }
  }
  static std::string Name(int song) { return std::to_string(song) + ".mp3"; }
  std::string Path(int song) const { return music / Name(song); }
  void Remove(int song) const { std::filesystem::remove(Path(song)); }

  HandOverResult HandOver(const Numbers& songs, HandOverTo to = HandOverTo::kReplace,
                          std::size_t first = 0) {
    return tallow::HandOver({.songs = songs, .to = to, .first = first}, library, player,
                            messages.Shower(), *this, progress);
  }
  /// The songs of the player's list, by their paths.
  Numbers List() const {
    Numbers songs;
    for (const std::string& path : link.Paths())
      songs.push_back(std::stoi(path.substr(music.path().size())));
    return songs;
  }
  /// Checks that the result tells the songs and entries of the player's whole list.
  void ExpectResult(const HandOverResult& result) const {
    EXPECT_TRUE(result.reached);
    const Numbers songs = List();
    ASSERT_EQ(result.songs.size(), songs.size());
    for (std::size_t k = 0; k < songs.size(); ++k)
      EXPECT_EQ(result.songs[k], (HandedOverSong{songs[k], link.list[k].number})) << k;
  }
  static Numbers OneTo(int count) {
    Numbers songs;
    for (int k = 1; k <= count; ++k) songs.push_back(k);
    return songs;
  }

  void ListCleared() override { log.push_back("cleared"); }
  void FirstSongIsGone(const std::string& path) override { log.push_back("gone " + path); }
  void SongsAdded(std::span<const HandedOverSong> songs, std::uint64_t before) override {
    added += songs.size();
    added_before = before;
  }
  void TrackStarted(std::int32_t length) override {
    log.push_back("started " + std::to_string(length) + " with " +
                  std::to_string(link.list.size()));
  }
  void HandedOver() override { log.push_back("handed over"); }
  void Cancelled(std::size_t has, std::size_t of) override {
    log.push_back("cancelled " + std::to_string(has) + " of " + std::to_string(of));
  }

  TallowPlayerStandIn link;
  RecordedMessages messages;
  HandOverProgress progress;
  WinAMP_Control player{link, [] { return std::string("/opt/tallow-player"); }, messages.Shower()};
  Texts log;
  std::size_t added = 0;
  std::uint64_t added_before = 0;
};

TEST_F(OwnPlayerHandOver, TheFirstSongPlaysBeforeTheOthersAreAdded) {
  AddSongs(300);
  link.answers["1024 1 105"] = 1;
  const HandOverResult result = HandOver(OneTo(300));
  EXPECT_EQ(List(), OneTo(300));
  ExpectResult(result);
  EXPECT_TRUE(result.replaced);
  EXPECT_EQ(log, (Texts{"cleared", "started 1 with 1", "handed over"}));
  EXPECT_EQ(link.status, kPlaying);
  EXPECT_EQ(added, 300U);
  const Texts sent = link.Take();
  EXPECT_EQ(Texts(sent.begin() + 2, sent.begin() + 6),
            (Texts{"273 40047 0", "1024 0 101", "add 0 " + Path(1), "273 40045 0"}));
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(OwnPlayerHandOver, RecordsAreFilledAndNotLargerThanAllowed) {
  constexpr int kSongs = 3000;
  AddSong(music.path(), Name(1));
  music.File(Name(1));
  HandOver(Numbers(kSongs, 1));
  EXPECT_EQ(link.list.size(), std::size_t{kSongs});
  std::size_t bytes = 0;
  for (const std::size_t size : link.records) {
    EXPECT_LE(size, kMaxPayload);
    bytes += size - sizeof(std::int64_t);
  }
  EXPECT_EQ(bytes, kSongs * (Path(1).size() + 1));
  EXPECT_LT(link.records.size(), std::size_t{kSongs / 10});
}

TEST_F(OwnPlayerHandOver, FromASongOnTheWholeFolderIsInItsOrder) {
  AddSongs(9);
  Remove(2);
  Remove(7);
  const HandOverResult result = HandOver(OneTo(9), HandOverTo::kReplace, 4);
  EXPECT_EQ(List(), (Numbers{1, 3, 4, 5, 6, 8, 9}));
  ExpectResult(result);
  // The song that plays is the chosen one, though others precede it now.
  EXPECT_EQ(link.list[link.current].path, Path(5));
  EXPECT_EQ(added_before, link.list[3].number);
}

TEST_F(OwnPlayerHandOver, WhenTheChosenSongIsGoneThoseBeforeItAreAddedAtTheEnd) {
  AddSongs(4);
  // The list is cleared before the first two are sent.
  bool is_cleared = false;
  progress = [&](std::size_t done, std::size_t) {
    if (done == 2 && !std::exchange(is_cleared, true))
      link.Send(link.Find(), kWmUser, 0, kClearList);
    return true;
  };
  const HandOverResult result = HandOver(OneTo(4), HandOverTo::kReplace, 2);
  const Numbers list = List();
  ASSERT_GE(list.size(), 2U);
  EXPECT_EQ(Numbers(list.end() - 2, list.end()), (Numbers{1, 2}));
  EXPECT_EQ(result.songs.size(), 4U);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(OwnPlayerHandOver, WithoutTheChosenSongNothingChanges) {
  AddSongs(3);
  Remove(2);
  const HandOverResult result = HandOver(OneTo(3), HandOverTo::kReplace, 1);
  EXPECT_EQ(log, Texts{"gone " + Path(2)});
  EXPECT_FALSE(result.replaced);
  EXPECT_TRUE(link.list.empty());
}

TEST_F(OwnPlayerHandOver, PlayNextAndAtEndLeaveAloneWhatPlays) {
  AddSongs(9);
  HandOver({1, 2});
  log.clear();
  link.Take();
  const HandOverResult next = HandOver({3, 4}, HandOverTo::kPlayNext);
  EXPECT_EQ(next.songs, (std::vector<HandedOverSong>{{3, 3}, {4, 4}}));
  EXPECT_FALSE(next.replaced);
  HandOver({5}, HandOverTo::kPlayNext);
  HandOver({6, 7}, HandOverTo::kAtEnd);
  EXPECT_EQ(List(), (Numbers{1, 3, 4, 5, 2, 6, 7}));
  EXPECT_EQ(link.current, 0U);
  for (const std::string& sent : link.Take())
    EXPECT_TRUE(sent.starts_with("add ") || sent.starts_with("find") || sent.starts_with("start"))
        << sent;
  EXPECT_EQ(log, (Texts{"handed over", "handed over", "handed over"}));
}

TEST_F(OwnPlayerHandOver, WhenTheListGetsFullTheSongsThatFitAreAdded) {
  AddSongs(100);
  Remove(10);
  for (const std::size_t room : {1, 2, 37, 64, 98}) {
    link.max_files = room;
    const HandOverResult result = HandOver(OneTo(100));
    EXPECT_EQ(link.list.size(), room);
    ExpectResult(result);
    // The missing song counts as accepted, because it is not the one that does not fit.
    const std::size_t accepted = room < 10 ? room : room + 1;
    EXPECT_EQ(messages.Take(),
              Texts{"The player's list is full: it accepted " + std::to_string(accepted) +
                    " of 100 songs. Play fewer songs at once."});
  }
}

TEST_F(OwnPlayerHandOver, APlayerThatDoesNotAnswerIsReported) {
  AddSongs(3);
  link.is_answering = false;
  const HandOverResult result = HandOver(OneTo(3));
  EXPECT_TRUE(result.replaced);
  EXPECT_TRUE(result.songs.empty());
  EXPECT_EQ(messages.Take(), Texts{"The player does not answer: it accepted 0 of 3 songs. End the "
                                   "player, then play them again."});
}

TEST_F(OwnPlayerHandOver, APlayerThatEndsIsReported) {
  AddSongs(3);
  link.is_answering = false;
  link.ends_at = 0;
  HandOver(OneTo(3));
  EXPECT_EQ(messages.Take(), Texts{"The player has ended: it accepted 0 of 3 songs. Play them "
                                   "again to restart the player."});
}

TEST_F(OwnPlayerHandOver, CancelledMidwayTheResultTellsWhatThePlayerHas) {
  AddSongs(50);
  progress = [](std::size_t done, std::size_t) { return done < 25; };
  const HandOverResult result = HandOver(OneTo(50));
  ExpectResult(result);
  EXPECT_EQ(log.size(), 4U);
  EXPECT_EQ(log[2], "cancelled " + std::to_string(link.list.size()) + " of 50");
}

}  // namespace
}  // namespace tallow

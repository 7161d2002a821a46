// SPDX-License-Identifier: GPL-3.0-or-later
// Progress reports and cancellation while songs are handed over to the player.
#include "player/playfile.h"
#include "tests/library_fixture.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

class HandOverIsWatched : public LibraryTest, protected HandOffPanel {
 protected:
  HandOverIsWatched() {
    for (int k = 1; k <= kSongs; ++k) {
      AddSong(music.path(), std::to_string(k) + ".mp3");
      // Every tenth file is missing; the first exists.
      if (k % 10 != 0) music.File(std::to_string(k) + ".mp3");
      songs.push_back(k);
    }
  }
  void Play(const HandOverProgress& progress) {
    HandOver(songs, library, player, messages.Shower(), *this, progress);
  }
  std::ptrdiff_t Added() {
    const Texts sent = link.Take();
    return std::count_if(sent.begin(), sent.end(),
                         [](const std::string& line) { return line.starts_with("copy 100"); });
  }

  void TrackStarted(std::int32_t) override { log.push_back("started"); }
  void HandedOver() override { log.push_back("handed over"); }
  void Cancelled(std::size_t has, std::size_t of) override {
    log.push_back("cancelled " + std::to_string(has) + " of " + std::to_string(of));
  }

  static constexpr int kSongs = 200;
  std::vector<std::int32_t> songs;
  Texts log;
  RecordedLink link;
  RecordedMessages messages;
  WinAMP_Control player{link, [] { return std::string("/opt/player"); }, messages.Shower()};
};

TEST_F(HandOverIsWatched, ProgressIsReportedAfterEverySong) {
  std::size_t reported = 0;
  Play([&](std::size_t done, std::size_t of) {
    EXPECT_EQ(of, std::size_t{kSongs});
    EXPECT_LE(done, reported + 1);
    reported = done;
    return true;
  });
  EXPECT_EQ(reported, std::size_t{kSongs - 1});
  EXPECT_EQ(Added(), kSongs - kSongs / 10);
  EXPECT_EQ(log, (Texts{"started", "handed over"}));
}

TEST_F(HandOverIsWatched, CancelledMidwayThePlayerKeepsItsSongsAndTheirNumberIsReported) {
  Play([](std::size_t done, std::size_t) { return done < 25; });
  // Songs 10 and 20 are missing.
  EXPECT_EQ(Added(), 23);
  EXPECT_EQ(log, (Texts{"started", "cancelled 23 of 200", "handed over"}));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/playfile.h"

#include "tests/library_fixture.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

class Playfile : public LibraryTest, protected HandOffPanel {
 protected:
  Playfile() { link.answers["1024 1 105"] = 215; }

  /// Adds a song to the library, with an existing or a missing file.
  std::string Song(const std::string& name, bool exists = true) {
    AddSong(music.path(), name);
    return exists ? music.File(name) : music / name;
  }
  void Play(const std::vector<std::int32_t>& songs) {
    HandOver(songs, library, player, messages.Shower(), *this);
  }
  /// Compares what was sent after the player was started and found.
  void ExpectSent(const Texts& expected) {
    Texts sent = link.Take();
    ASSERT_GE(sent.size(), 2U);
    EXPECT_EQ(sent[0], "start /opt/player");
    EXPECT_EQ(sent[1], "find");
    sent.erase(sent.begin(), sent.begin() + 2);
    EXPECT_EQ(sent, expected);
  }
  /// The log line for an added file.
  static std::string Added(const std::string& file) {
    return "copy 100 " + std::to_string(file.size() + 1) + " " + file + "\\0";
  }

  void FirstSongIsGone(const std::string& gone) override { first_gone = gone; }
  void TrackStarted(std::int32_t length) override {
    link.log.push_back("panel starts " + std::to_string(length));
  }
  void HandedOver() override { link.log.push_back("panel done"); }

  std::string first_gone;
  RecordedLink link;
  RecordedMessages messages;
  std::string path = "/opt/player";
  WinAMP_Control player{link, [this] { return path; }, messages.Shower()};
};

TEST_F(Playfile, OneSongIsStoppedClearedAddedAndPlayed) {
  const std::string a = Song("a.mp3");
  Play({1});
  ExpectSent({"273 40047 0", "1024 0 101", Added(a), "273 40045 0", "1024 1 105",
              "panel starts 215", "panel done"});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Playfile, WhenTheListIsFullTheSongsThatFitArePlayedAndAMessageIsShown) {
  Song("a.mp3");
  Song("gone.mp3", false);
  Song("c.mp3");
  Song("d.mp3");
  Song("e.mp3");
  link.max_files = 2;
  Play({1, 2, 3, 4, 5});
  // The hand-over ends at the first song that does not fit, so no song in between is skipped.
  EXPECT_EQ(link.files, 3U);
  EXPECT_EQ(link.Take().back(), "panel done");
  EXPECT_EQ(messages.Take(),
            Texts{"The player's list is full: it accepted 3 of 5 songs. Play fewer songs at "
                  "once."});
}

TEST_F(Playfile, WhenNoSongFitsNothingIsPlayedAndAMessageIsShown) {
  Song("a.mp3");
  Song("b.mp3");
  link.max_files = 0;
  Play({1, 2});
  EXPECT_EQ(link.files, 1U);
  EXPECT_EQ(messages.Take(),
            Texts{"The player's list is full: it accepted 0 of 2 songs. Play fewer songs at "
                  "once."});
}

TEST_F(Playfile, WhenThePlayerEndsAMessageIsShownAndNothingMoreIsSent) {
  for (const char* const name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"}) Song(name);
  link.ends_at = 3;
  Play({1, 2, 3, 4});
  EXPECT_EQ(link.files, 3U);
  EXPECT_EQ(messages.Take(), Texts{"The player has ended: it accepted 2 of 4 songs. Play them "
                                   "again to restart the player."});
}

TEST_F(Playfile, FurtherSongsFollowInTheirOrder) {
  const std::string a = Song("a.mp3");
  const std::string b = Song("b.mp3");
  const std::string c = Song("c.mp3");
  Play({3, 1, 2, 1});
  ExpectSent({"273 40047 0", "1024 0 101", Added(c), "273 40045 0", "1024 1 105",
              "panel starts 215", Added(a), Added(b), Added(a), "panel done"});
}

TEST_F(Playfile, AMissingSongInBetweenIsSkipped) {
  Texts added;
  for (const char* name : {"1.mp3", "2.mp3", "3.mp3", "4.mp3", "5.mp3"})
    added.push_back(Added(Song(name, std::string_view(name) != "3.mp3")));
  Play({1, 2, 3, 4, 5});
  ExpectSent({"273 40047 0", "1024 0 101", added[0], "273 40045 0", "1024 1 105",
              "panel starts 215", added[1], added[3], added[4], "panel done"});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Playfile, IfTheFirstSongIsMissingThePlayerIsNotTouched) {
  const std::string a = Song("a.mp3", false);
  Song("b.mp3");
  Play({1, 2});
  ExpectSent({});
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(first_gone, a);
}

TEST_F(Playfile, ASongWithoutAPathCountsAsMissing) {
  AddSong("", "");
  const std::string b = Song("b.mp3");
  Play({1, 2});
  ExpectSent({});
  Play({2, 1, 99, 0, -1});
  ExpectSent({"273 40047 0", "1024 0 101", Added(b), "273 40045 0", "1024 1 105",
              "panel starts 215", "panel done"});
}

/// A panel that needs to know only when songs play.
struct PlainPanel : HandOffPanel {
  void TrackStarted(std::int32_t) override { ++started; }
  void HandedOver() override { ++ended; }
  int started = 0;
  int ended = 0;
};

TEST_F(Playfile, APanelNeedNotHandleAMissingFirstSong) {
  Song("a.mp3", false);
  Song("b.mp3");
  PlainPanel panel;
  HandOver(std::vector<std::int32_t>{1, 2}, library, player, messages.Shower(), panel);
  ExpectSent({});
  EXPECT_EQ(panel.started, 0);
  EXPECT_EQ(panel.ended, 0);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Playfile, APanelNeedNotHandleACancel) {
  const std::string a = Song("a.mp3");
  Song("b.mp3");
  PlainPanel panel;
  HandOver(std::vector<std::int32_t>{1, 2}, library, player, messages.Shower(), panel,
           [](std::size_t done, std::size_t) { return done == 0; });
  ExpectSent({"273 40047 0", "1024 0 101", Added(a), "273 40045 0", "1024 1 105"});
  EXPECT_EQ(panel.started, 1);
  EXPECT_EQ(panel.ended, 1);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Playfile, NothingIsDoneForNoSongs) {
  Play({});
  ExpectSent({});
}

TEST_F(Playfile, WithoutAPlayerPathNothingStarts) {
  Song("a.mp3");
  path.clear();
  Play({1});
  EXPECT_EQ(link.Take(), Texts{});
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].text, "Couldn't start WinAMP");
  EXPECT_EQ(messages.shown[0].title, "Tallow");
  EXPECT_EQ(messages.shown[0].icon, MessageIcon::kNone);
  EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
}

TEST_F(Playfile, APlayerThatCannotBeRunIsReported) {
  Song("a.mp3");
  link.starts = false;
  Play({1});
  EXPECT_EQ(messages.Take(), Texts{"Couldn't start WinAMP"});
}

TEST_F(Playfile, APlayerWithoutAWindowIsReported) {
  Song("a.mp3");
  link.found = 0;
  Play({1});
  ExpectSent({});
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].text, "Couldn't find WinAMP's Window");
  EXPECT_EQ(messages.shown[0].title, "Tallow");
  EXPECT_EQ(messages.shown[0].icon, MessageIcon::kNone);
  EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
}

TEST_F(Playfile, AFileThatCannotBeCheckedIsStillHandedOver) {
  AddSong(music.path(), kImpossibleName);
  Song("b.mp3");
  Play({2, 1});
  const Texts log = link.Take();
  ASSERT_EQ(log.size(), 10U);
  EXPECT_EQ(log[8], Added(music.path() + kImpossibleName));
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].title, "Error");
  EXPECT_TRUE(messages.shown[0].text.starts_with("Error Number: "));
}

TEST_F(Playfile, ManyFilesThatCannotBeCheckedAreReportedInOneMessage) {
  Song("b.mp3");
  for (int k = 0; k < 7; ++k) AddSong(music.path(), std::to_string(k) + kImpossibleName);
  Play({1, 2, 3, 4, 5, 6, 7, 8});
  ASSERT_EQ(messages.shown.size(), 1U);
  const std::string& text = messages.shown[0].text;
  EXPECT_EQ(messages.shown[0].title, "Error");
  EXPECT_TRUE(
      text.starts_with("7 songs cannot be read:\n\n" + music.path() + "0" + kImpossibleName + ": "))
      << text;
  EXPECT_TRUE(text.ends_with("\nand 2 more")) << text;
  EXPECT_NE(text.find(music.path() + "4" + kImpossibleName), std::string::npos);
  EXPECT_EQ(text.find(music.path() + "5" + kImpossibleName), std::string::npos);
  messages.Take();
  Play({1, 2, 3});
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_TRUE(messages.shown[0].text.starts_with("2 songs cannot be read:\n"));
  EXPECT_EQ(messages.shown[0].text.find("more"), std::string::npos);
}

}  // namespace
}  // namespace tallow

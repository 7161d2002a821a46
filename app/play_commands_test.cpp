// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/play_commands.h"

#include <stdexcept>

#include "app/search/player_search.h"
#include "jukebox/folder_tree.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class PlayCommandsTest : public LibraryTest, protected PlayWindows {
 protected:
  PlayCommandsTest() { tallow.settings.LocOfWinAmpExe("/opt/player"); }

  MessageAnswer Show(const Message& message) override {
    log.push_back("box");
    shown.push_back(message);
    return shown.size() == 1 ? answer : MessageAnswer::kOk;
  }
  void Notice(const Texts& lines) override { log.insert(log.end(), lines.begin(), lines.end()); }
  std::span<Jukebox* const> OpenJukeboxes() override { return {}; }
  void ShowStatus(const std::string& text) override { log.push_back("status " + text); }
  void EnableFrame(bool enabled) override { log.push_back(enabled ? "enabled" : "disabled"); }
  void PlayOnPanel() override { log.push_back("play"); }
  bool Start(const std::string& program) override {
    log.push_back("start " + program);
    return starts;
  }

  PlayCommands commands{tallow, *this};
  std::function<void()> search = [this] { log.push_back("search"); };
  MessageAnswer answer = MessageAnswer::kNo;
  bool starts = true;
  Texts log;
  std::vector<Message> shown;
};

constexpr const char* kQuestion =
    "WinAmp is not installed on your system.  You need Winamp to play music.  Would you like to "
    "have "
    "a free copy of WinAmp installed on you system now?";

TEST_F(PlayCommandsTest, SongsToPlayIsSetBeforeThePanelPlays) {
  commands.Play({3, 1, 2}, search);
  EXPECT_EQ(log, Texts{"play"});
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{3, 1, 2}));
}

TEST_F(PlayCommandsTest, AwaySongsAreCheckedAgainAndLeftOut) {
  MountedVolumes mounted{{music.path() + "one" + kSep, {"uuid A", kSep}, false}};
  library.UseDrives([&] { return mounted; }, {});
  const std::string a = music.File("one/a.mp3");
  const std::string b = music.File("one/b.mp3");
  const std::string c = music.File("c.mp3");
  for (const std::string& path : {a, b, c})
    library.AddSong(FolderOfPath(path), NameOfPath(path), 1);
  library.ImportFoundSongs(0);
  library.FinishScan(true);
  RemoveFile(a);
  RemoveFile(b);
  mounted.clear();
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  commands.Play({1, 2, 3}, search);
  EXPECT_EQ(log, (Texts{"status 2 songs were not played. The first: a.mp3 is on a drive "
                        "that is away: " +
                            std::string(FolderOfPath(a)),
                        "play"}));
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{3}));
  // One song comes back.
  music.File("one/b.mp3");
  log.clear();
  commands.Play({1, 2}, search);
  EXPECT_EQ(log, (Texts{"status 1 song was not played: a.mp3 is on a drive that is away: " +
                            std::string(FolderOfPath(a)),
                        "play"}));
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{2}));
  log.clear();
  commands.Play({1}, search);
  EXPECT_EQ(log.size(), 1U);
}

TEST_F(PlayCommandsTest, NoSongsDoNothing) {
  tallow.SongsToPlay = {9};
  commands.Play({}, search);
  EXPECT_EQ(log, Texts{});
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{9}));
}

TEST_F(PlayCommandsTest, APendingSearchComesFirst) {
  tallow.settings.LocOfWinAmpExe("");
  tallow.player_search_is_pending = true;
  search = [this] {
    log.push_back("search");
    tallow.settings.LocOfWinAmpExe("/opt/player");
  };
  commands.Play({1}, search);
  EXPECT_EQ(log, (Texts{"status Searching for Winamp  . . . ", "disabled", "search", "enabled",
                        "status ", "play"}));
  EXPECT_FALSE(tallow.player_search_is_pending);
  log.clear();
  commands.Play({1}, search);
  EXPECT_EQ(log, Texts{"play"});
}

TEST_F(PlayCommandsTest, APendingSearchThatFindsNothingOffersTheInstaller) {
  tallow.settings.LocOfWinAmpExe("");
  tallow.player_search_is_pending = true;
  commands.Play({1}, search);
  EXPECT_EQ(log, (Texts{"status Searching for Winamp  . . . ", "disabled", "search", "enabled",
                        "status ", "box"}));
}

TEST_F(PlayCommandsTest, APendingSearchThatFailsOffersTheInstaller) {
  tallow.settings.LocOfWinAmpExe("");
  tallow.player_search_is_pending = true;
  search = [] { throw std::runtime_error("The drive is gone."); };
  commands.Play({1}, search);
  EXPECT_EQ(
      log, (Texts{"status Searching for Winamp  . . . ", "disabled", "enabled", "status ", "box"}));
  EXPECT_EQ(shown[0].text, kQuestion);
}

TEST_F(PlayCommandsTest, WithoutAPlayerTheUserIsAsked) {
  tallow.settings.LocOfWinAmpExe("");
  for (const MessageAnswer no : {MessageAnswer::kNo, MessageAnswer::kCancel}) {
    answer = no;
    log.clear();
    shown.clear();
    commands.Play({1}, search);
    EXPECT_EQ(log, Texts{"box"});
    EXPECT_EQ(shown[0].text, kQuestion);
    EXPECT_EQ(shown[0].title, "Tallow");
    EXPECT_EQ(shown[0].buttons, MessageButtons::kYesNoCancel);
  }
  EXPECT_TRUE(tallow.SongsToPlay.empty());
}

TEST_F(PlayCommandsTest, YesExplainsAndStartsTheInstaller) {
  tallow.settings.LocOfWinAmpExe("");
  answer = MessageAnswer::kYes;
  commands.Play({1}, search);
  EXPECT_EQ(log, (Texts{"box", "box", "start " + application.path() + "winamp265_lite.exe"}));
  EXPECT_EQ(
      shown[1].text,
      "WinAmp will now be installed on your system.  After WinAmp is installed, close down both "
      "WinAmp and Tallow.  Then just open Tallow.  When you request to play songs WinAmp will "
      "then automatically open.");
  EXPECT_EQ(shown[1].buttons, MessageButtons::kOk);
}

TEST_F(PlayCommandsTest, AMissingInstallerIsReported) {
  tallow.settings.LocOfWinAmpExe("");
  answer = MessageAnswer::kYes;
  starts = false;
  commands.Play({1}, search);
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[2].text, "The installer " + application.path() +
                               "winamp265_lite.exe could not be started. It is not there.\n\n" +
                               std::string(HowToInstallPlayer()) +
                               " Then close Tallow and open it again.");
  EXPECT_NE(shown[2].text.find(PlayerProgramName()), std::string::npos);
  application.File("winamp265_lite.exe");
  shown.clear();
  commands.Play({1}, search);
  EXPECT_NE(shown[2].text.find("It cannot be run."), std::string::npos);
}

TEST_F(PlayCommandsTest, TheCheckReturnsWhetherAPlayerIsKnown) {
  EXPECT_TRUE(commands.CheckPlayer(search));
  tallow.settings.LocOfWinAmpExe("");
  EXPECT_FALSE(commands.CheckPlayer(search));
}

TEST_F(PlayCommandsTest, TheSongsOfAFolderAreItsRecordsInListOrder) {
  FolderTree tree;
  Folder& folder = tree.AddChild(nullptr, "one");
  for (const int record : {5, 3, 5, 8}) folder.Items().emplace_back(record, 2);
  EXPECT_EQ(SongsOf(folder), (std::vector<std::int32_t>{5, 3, 5, 8}));
  EXPECT_EQ(SongsOf(folder, {1, 3}), (std::vector<std::int32_t>{3, 8}));
  EXPECT_EQ(SongsOf(folder, {-1, 4}), (std::vector<std::int32_t>{}));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// The link with Tallow's own player, with and without a Winamp beside it.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "app/tallow.h"
#include "player/path_in_code_page_windows.h"
#include "player/player_window_windows.h"
#include "player/playfile.h"
#include "player/tallow_player.h"
#include "tests/real_player_windows.h"
#include "tests/sound_windows.h"
#include "tests/stand_in_player_windows.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

/// Sends a copy-data record of code 100, as another program does.
void SendAddFile(HWND window, std::string path) {
  path += '\0';
  COPYDATASTRUCT record{};
  record.dwData = kAddFile;
  record.cbData = static_cast<DWORD>(path.size());
  record.lpData = path.data();
  SendMessageW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&record));
}

class WindowsPlayer : public RealPlayer {
 protected:
  HWND Window() { return reinterpret_cast<HWND>(link->Find()); }
  std::string Song(const std::string& name) {
    const std::string file = folder / name;
    MakeMp3(file, "60 sine 440", 2, "-b 64");
    return file;
  }
};

TEST_F(WindowsPlayer, HasAHiddenWindowWhoseTitleNamesTheApplicationFolder) {
  StartPlayer();
  const HWND window = Window();
  EXPECT_EQ(FromWide(WindowTitle(window)), "Tallow player " + PlayerIdentifier(folder.path()));
  EXPECT_FALSE(IsWindowVisible(window));
  // It is a window at the top level, which other programs find.
  EXPECT_EQ(GetParent(window), nullptr);
  EXPECT_EQ(link->KindOf(link->Find()), PlayerKind::kTallowPlayer);
}

TEST_F(WindowsPlayer, IsStartedByTheLinkAndASecondOneIsNot) {
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(WaitUntil([&] { return link->FollowStart() == PlayerStart::kAnswers; }));
  const HWND window = Window();
  ASSERT_TRUE(player.StartWinamp());
  EXPECT_EQ(Window(), window);
  ASSERT_TRUE(player.FindWinamp());
  player.SendWinampCommand(kClosePlayer);
  EXPECT_TRUE(WaitUntil([&] { return link->Find() == 0; }));
}

TEST_F(WindowsPlayer, APlayerThatIsStillStartingIsNotStartedAgain) {
  for (int k = 0; k < 3; ++k) ASSERT_TRUE(link->Start(path));
  ASSERT_TRUE(WaitUntil([&] { return link->FollowStart() == PlayerStart::kAnswers; }));
  // A second process would have written that the first one runs.
  EXPECT_EQ(link->LastLineWritten(), "");
  ASSERT_TRUE(player.FindWinamp());
  player.SendWinampCommand(kClosePlayer);
  EXPECT_TRUE(WaitUntil([&] { return link->Find() == 0; }));
}

TEST_F(WindowsPlayer, APlayerThatEndsAtOnceIsQuoted) {
  const std::wstring name = L"Local\\" + ToWide(PlayerWindowTitle(identifier));
  const HANDLE running = CreateMutexW(nullptr, FALSE, name.c_str());
  ASSERT_TRUE(player.StartWinamp());
  EXPECT_TRUE(WaitUntil([&] { return link->FollowStart() == PlayerStart::kEnded; }));
  EXPECT_EQ(link->LastLineWritten(), "tallow-player: another player is already running.");
  CloseHandle(running);
}

TEST_F(WindowsPlayer, ItsProgramThatIsGoneIsNotStarted) {
  path = folder / "tallow-player.exe";
  EXPECT_FALSE(player.StartWinamp());
}

TEST_F(WindowsPlayer, GetsPathsOfAllAlphabetsAndAnswersInJson) {
  const std::string song = Song("\u043F\u0435\u0441\u043D\u044F \u66F2.mp3");
  StartPlayer();
  Play({song});
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  TallowPlayer own(*link, link->Find());
  const std::optional<TallowPlayerState> state = own.State();
  ASSERT_TRUE(state);
  EXPECT_EQ(state->count, 1U);
  EXPECT_EQ(state->status, kPlaying);
  // A request that is not valid has no answer.
  EXPECT_FALSE(link->Ask(link->Find(), "{}"));
  // The log is in UTF-8.
  const Texts log = Lines("log");
  EXPECT_TRUE(std::any_of(log.begin(), log.end(), [&](const std::string& line) {
    return line.find(song) != std::string::npos;
  }));
}

TEST_F(WindowsPlayer, PlaysSongsWhosePathsAreLong) {
  const std::string song =
      folder.Folder(std::string(150, 'a') + "/" + std::string(150, 'b')) + "c.mp3";
  MakeMp3(FromWide(ToWidePath(song)), "60 sine 440", 2, "-b 64");
  StartPlayer();
  Play({Song("a.mp3"), song});
  player.SendWinampCommand(kNextTrack);
  EXPECT_TRUE(WaitUntil([&] { return player.GetTrackPosition() >= 0; }));
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_EQ(player.GetListPlace(), 1);
}

TEST_F(WindowsPlayer, OtherProgramsSendPathsInTheCodePageOfTheSystem) {
  // This name is in every code page of Windows.
  const std::string song = Song("a.mp3");
  StartPlayer();
  SendAddFile(Window(), PathInCodePage(song, SystemCodePage()));
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(WindowsPlayer, UnknownAndInvalidMessagesHaveNoEffect) {
  StartPlayer();
  Play({Song("a.mp3")});
  const HWND window = Window();
  EXPECT_EQ(SendMessageW(window, WM_USER, 1, 999), 0);
  EXPECT_EQ(SendMessageW(window, WM_COMMAND, 1, 0), 0);
  EXPECT_EQ(SendMessageW(window, WM_USER, static_cast<WPARAM>(-1), kSetVolume), 0);
  SendAddFile(window, "relative.mp3");
  SendAddFile(window, "");
  std::string large(kMaxPayload + 1, 'a');
  COPYDATASTRUCT record{};
  record.dwData = kAsk;
  record.cbData = static_cast<DWORD>(large.size());
  record.lpData = large.data();
  EXPECT_EQ(SendMessageW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&record)), 0);
  EXPECT_EQ(player.GetListLength(), 1);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
}

TEST_F(WindowsPlayer, TakesTheMediaKeysUntilItIsStopped) {
  const auto are_free = [] {
    const bool free = RegisterHotKey(nullptr, 1, MOD_NOREPEAT, VK_MEDIA_PLAY_PAUSE) != FALSE;
    if (free) UnregisterHotKey(nullptr, 1);
    return free;
  };
  const auto press = [this](WPARAM key) { SendMessageW(Window(), WM_HOTKEY, key, 0); };
  StartPlayer();
  EXPECT_TRUE(are_free());
  Play({Song("a.mp3"), Song("b.mp3")});
  EXPECT_FALSE(are_free());
  press(VK_MEDIA_PLAY_PAUSE);
  EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
  EXPECT_FALSE(are_free());
  press(VK_MEDIA_NEXT_TRACK);
  EXPECT_EQ(player.GetListPlace(), 1);
  press(VK_MEDIA_PREV_TRACK);
  EXPECT_EQ(player.GetListPlace(), 0);
  press(VK_MEDIA_STOP);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_TRUE(are_free());
}

TEST_F(WindowsPlayer, EndsWhenTheSystemClosesItsWindow) {
  StartPlayer();
  PostMessageW(Window(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
}

TEST_F(WindowsPlayer, TenThousandSongsAreHandedOverInTheirOrder) {
  constexpr std::int32_t kSongs = 10'000;
  const std::string song = Song("a.mp3");
  const std::string last = folder / "b.mp3";
  MakeMp3(last, "3 sine 440");
  TempFolder application;
  Tallow tallow(application.path());
  clsMain& library = tallow.library;
  std::vector<std::int32_t> songs;
  for (std::int32_t row = 1; row <= kSongs; ++row) {
    library.Mp3Info(kFileLocation, row, folder.path());
    library.Mp3Info(kFileName, row, row == kSongs ? "b.mp3" : "a.mp3");
    songs.push_back(row);
  }
  struct Panel : HandOffPanel {
    void TrackStarted(std::int32_t seconds) override { length = seconds; }
    void HandedOver() override { done = true; }
    std::int32_t length = 0;
    bool done = false;
  } panel;
  StartPlayer();
  HandOver(songs, library, player, messages.Shower(), panel);
  EXPECT_TRUE(panel.done);
  EXPECT_EQ(panel.length, 60);
  EXPECT_EQ(player.GetListLength(), kSongs);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  player.SendWinampCommand(kStop);
  player.SetListPlace(kSongs - 1);
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackLength(), 3);
  EXPECT_EQ(player.GetListPlace(), kSongs - 1);
}

TEST_F(WindowsPlayer, TwoTallowsHaveAPlayerEach) {
  StartPlayer();
  Play({Song("a.mp3")});
  const std::unique_ptr<PlayerLink> other = SystemPlayerLink("other");
  other->UseProgram(path);
  EXPECT_EQ(other->Find(), 0U);
  ASSERT_TRUE(other->Start(path));
  ASSERT_TRUE(WaitUntil([&] { return other->Find() != 0; }));
  EXPECT_NE(other->Find(), link->Find());
  other->Send(other->Find(), kWmUser, 0, kClearList);
  EXPECT_EQ(player.GetListLength(), 1);
  other->Send(other->Find(), kWmCommand, kClosePlayer, 0);
  EXPECT_TRUE(WaitUntil([&] { return other->Find() == 0; }));
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
}

/// A user's own Winamp runs.
class BesideAWinamp : public OtherPlayer {
 protected:
  BesideAWinamp() {
    winamp_link->UseProgram(path);
    EXPECT_TRUE(winamp_link->Start(path));
    EXPECT_TRUE(WaitUntil([&] { return winamp_link->Find() != 0; }));
    ReceivedMessages();
  }
  ~BesideAWinamp() override {
    if (own_link->Find() != 0) {
      own.FindWinamp();
      own.SendWinampCommand(kClosePlayer);
      EXPECT_TRUE(WaitUntil([&] { return own_link->Find() == 0; }));
    }
  }

  void StartOwn() {
    ASSERT_TRUE(own.StartWinamp());
    ASSERT_TRUE(WaitUntil([&] { return own.FindWinamp(); }));
  }

  const std::string own_path = std::string(FolderOfPath(ExecutablePath())) + "tallow-player.exe";
  std::unique_ptr<PlayerLink> winamp_link = SystemPlayerLink("id");
  std::unique_ptr<PlayerLink> own_link = SystemPlayerLink("id");
  WinAMP_Control own{*own_link, [this] { return own_path; }, messages.Shower()};
};

TEST_F(BesideAWinamp, OurPlayerIsNeverMistakenForIt) {
  // Before our player runs, nothing is sent to the Winamp.
  EXPECT_FALSE(own.FindWinamp());
  own.SendWinampCommand(kStop);
  own.ClearWinampPlaylist();
  own.SendWinampCommand(kClosePlayer);
  EXPECT_EQ(ReceivedMessages(), Texts{});
  StartOwn();
  EXPECT_EQ(own_link->KindOf(own.Window()), PlayerKind::kTallowPlayer);
  own.SendWinampCommand(kStop);
  own.ClearWinampPlaylist();
  own.AddFileToWinamp(folder.File("a.mp3"));
  EXPECT_EQ(own.GetListLength(), 1);
  EXPECT_EQ(own.GetWinampStatus(), "STOPPED");
  own.SendWinampCommand(kClosePlayer);
  EXPECT_TRUE(WaitUntil([&] { return own_link->Find() == 0; }));
  EXPECT_EQ(ReceivedMessages(), Texts{});
  EXPECT_TRUE(winamp_link->IsRunning(winamp_link->Find()));
}

TEST_F(BesideAWinamp, ItGetsTheMessagesWhenItIsChosen) {
  StartOwn();
  const std::string song = folder.File("a.mp3");
  own.AddFileToWinamp(song);
  ASSERT_TRUE(player.FindWinamp());
  EXPECT_EQ(link->KindOf(player.Window()), PlayerKind::kWinamp);
  EXPECT_EQ(player.GetWinampVersion(), "2.081");
  player.ClearWinampPlaylist();
  player.AddFileToWinamp(song);
  // Requests that only our player knows are not sent.
  EXPECT_FALSE(link->Ask(player.Window(), R"({"do":"state"})"));
  EXPECT_EQ(link->AddFiles(player.Window(), std::string(8, '\0') + song + '\0'), 0);
  EXPECT_EQ(ReceivedMessages(),
            (Texts{"1024 0 0", "1024 0 101", "74 0 100 \"" + link->TextOfPath(song) + "\\0\""}));
  EXPECT_EQ(own.GetListLength(), 1);
}

TEST_F(BesideAWinamp, BeforeAProgramIsChosenOurPlayerComesFirst) {
  const std::unique_ptr<PlayerLink> any = SystemPlayerLink("id");
  EXPECT_EQ(any->KindOf(any->Find()), PlayerKind::kWinamp);
  StartOwn();
  EXPECT_EQ(any->KindOf(any->Find()), PlayerKind::kTallowPlayer);
  // It gets paths of all alphabets.
  const std::string path = folder / "\u66F2.mp3";
  EXPECT_EQ(any->TextOfPath(path), path);
  // The player of another Tallow is neither.
  const std::unique_ptr<PlayerLink> another = SystemPlayerLink("another");
  EXPECT_EQ(another->Find(), winamp_link->Find());
}

}  // namespace
}  // namespace tallow

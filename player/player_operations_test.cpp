// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every operation with a player in another process: the real player on Linux, a stand-in for
// Winamp on Windows. Both log the messages they receive in the same format.
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "player/winamp_control.h"
#ifdef _WIN32
#include "tests/stand_in_player_windows.h"
#else
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#endif

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

#ifndef _WIN32
class OtherPlayer : public RealPlayer {
 protected:
  void StartSong() {
    song = folder / "a.mp3";
    MakeMp3(song, "60 sine 440", 2, "-b 64");
    StartPlayer();
    Play({song});
    EXPECT_EQ(player.GetTrackLength(), 60);
    ReceivedMessages();
  }
  Texts ReceivedMessages() {
    Texts lines = Lines("log");
    const std::size_t before = std::exchange(lines_read_, lines.size());
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
    return lines;
  }

  std::string song;

 private:
  std::size_t lines_read_ = 0;
};
#endif

TEST_F(OtherPlayer, IsNotFoundWhenItDoesNotRun) {
  EXPECT_FALSE(player.FindWinamp());
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."});
}

TEST_F(OtherPlayer, ReceivesEveryOperationAsItsMessage) {
  StartSong();
  const std::string length = "1024 1 105";
  struct Operation {
    std::function<void()> run;
    Texts received;
  };
  const std::vector<Operation> operations = {
      {[&] { player.SendWinampCommand(40046); }, {"273 40046 0"}},
      {[&] { player.GetWinampStatus(); }, {"1024 0 104"}},
      {[&] { player.GetTrackPosition(); }, {"1024 0 105"}},
      {[&] { player.GetTrackLength(); }, {length}},
      {[&] { player.GetWinampVersion(); }, {"1024 0 0"}},
      {[&] { player.SetTrackPosition(0); }, {length, "1024 0 106"}},
      {[&] { player.SetTrackPosition(59); }, {length, "1024 59000 106"}},
      {[&] { player.SetTrackPosition(60); }, {length, "1024 60000 106"}},
      {[&] { player.SetTrackPosition(61); }, {length}},
      {[&] { player.SetTrackPosition(-1); }, {}},
      {[&] { player.SetVolume(0); }, {"1024 0 122"}},
      {[&] { player.SetVolume(255); }, {"1024 255 122"}},
      {[&] { player.SetVolume(256); }, {}},
      {[&] { player.SetVolume(-1); }, {}},
      {[&] { player.SetBalance(-127); }, {"1024 128 123"}},
      {[&] { player.SetBalance(-1); }, {"1024 254 123"}},
      {[&] { player.SetBalance(0); }, {"1024 0 123"}},
      {[&] { player.SetBalance(127); }, {"1024 127 123"}},
      {[&] { player.SetBalance(128); }, {}},
      {[&] { player.SetBalance(-128); }, {}},
      {[&] { player.AddFileToWinamp(song); }, {"74 0 100 \"" + link->TextOfPath(song) + "\\0\""}},
      {[&] { player.SendWinampCommand(40048); }, {"273 40048 0"}},
      {[&] { player.SendWinampCommand(40044); }, {"273 40044 0"}},
      {[&] { player.SendWinampCommand(40157); }, {"273 40157 0"}},
      {[&] { player.SendWinampCommand(40047); }, {"273 40047 0"}},
      {[&] { player.SendWinampCommand(40045); }, {"273 40045 0"}},
      {[&] { player.ClearWinampPlaylist(); }, {"1024 0 101"}},
      {[&] { player.SendWinampCommand(40001); }, {"273 40001 0"}},
  };
  for (const auto& [run, received] : operations) {
    run();
    EXPECT_EQ(ReceivedMessages(), received);
  }
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(OtherPlayer, AfterItWasClosedMessagesAreDropped) {
  StartSong();
  player.SendWinampCommand(kClosePlayer);
  ASSERT_TRUE(WaitUntil([&] { return link->Find() == 0; }));
  ReceivedMessages();
  // Operations still use the window that was found before.
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(player.GetTrackPosition(), 0);
  EXPECT_EQ(player.GetWinampVersion(), "UNKNOWN");
  player.AddFileToWinamp(song);
  player.SendWinampCommand(kPlay);
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_EQ(ReceivedMessages(), Texts{});
  EXPECT_FALSE(player.FindWinamp());
}

}  // namespace
}  // namespace tallow

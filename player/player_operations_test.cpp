// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every operation with a player in another process: our own player, and on Windows also a
// stand-in for Winamp. All log the messages they receive in the same format.
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "player/winamp_control.h"
#ifdef _WIN32
#include "tests/real_player_windows.h"
#include "tests/sound_windows.h"
#include "tests/stand_in_player_windows.h"
#else
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#endif

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class OwnPlayer : public RealPlayer {
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
  /// The message that adds the song.
  std::string AddedSong() const {
#ifdef _WIN32
    // In UTF-8, behind the place: at the end.
    std::string place;
    for (std::size_t k = 0; k < sizeof(std::int64_t); ++k) place += "\\0";
    return "74 0 " + std::to_string(kAddFiles) + " \"" + place + song + "\\0\"";
#else
    return "74 0 100 \"" + song + "\\0\"";
#endif
  }

  std::string song;

 private:
  std::size_t lines_read_ = 0;
};

template <class Player>
class PlayerOperations : public Player {};
#ifdef _WIN32
#ifdef TALLOW_HAS_OWN_PLAYER
using Players = testing::Types<OwnPlayer, OtherPlayer>;
#else
using Players = testing::Types<OtherPlayer>;
#endif
#else
using Players = testing::Types<OwnPlayer>;
#endif
TYPED_TEST_SUITE(PlayerOperations, Players);

TYPED_TEST(PlayerOperations, IsNotFoundWhenItDoesNotRun) {
  EXPECT_FALSE(this->player.FindWinamp());
  this->player.SendWinampCommand(kPlay);
  EXPECT_EQ(this->messages.Take(), Texts{"WinAMP window not found yet..."});
}

TYPED_TEST(PlayerOperations, ReceivesEveryOperationAsItsMessage) {
  this->StartSong();
  const std::string length = "1024 1 105";
  struct Operation {
    std::function<void()> run;
    Texts received;
  };
  const std::vector<Operation> operations = {
      {[&] { this->player.SendWinampCommand(40046); }, {"273 40046 0"}},
      {[&] { this->player.GetWinampStatus(); }, {"1024 0 104"}},
      {[&] { this->player.GetTrackPosition(); }, {"1024 0 105"}},
      {[&] { this->player.GetTrackLength(); }, {length}},
      {[&] { this->player.GetWinampVersion(); }, {"1024 0 0"}},
      {[&] { this->player.SetTrackPosition(0); }, {length, "1024 0 106"}},
      {[&] { this->player.SetTrackPosition(59); }, {length, "1024 59000 106"}},
      {[&] { this->player.SetTrackPosition(60); }, {length, "1024 60000 106"}},
      {[&] { this->player.SetTrackPosition(61); }, {length}},
      {[&] { this->player.SetTrackPosition(-1); }, {}},
      {[&] { this->player.SetVolume(0); }, {"1024 0 122"}},
      {[&] { this->player.SetVolume(255); }, {"1024 255 122"}},
      {[&] { this->player.SetVolume(256); }, {}},
      {[&] { this->player.SetVolume(-1); }, {}},
      {[&] { this->player.SetBalance(-127); }, {"1024 128 123"}},
      {[&] { this->player.SetBalance(-1); }, {"1024 254 123"}},
      {[&] { this->player.SetBalance(0); }, {"1024 0 123"}},
      {[&] { this->player.SetBalance(127); }, {"1024 127 123"}},
      {[&] { this->player.SetBalance(128); }, {}},
      {[&] { this->player.SetBalance(-128); }, {}},
      {[&] { this->player.AddFileToWinamp(this->song); }, {this->AddedSong()}},
      {[&] { this->player.SendWinampCommand(40048); }, {"273 40048 0"}},
      {[&] { this->player.SendWinampCommand(40044); }, {"273 40044 0"}},
      {[&] { this->player.SendWinampCommand(40157); }, {"273 40157 0"}},
      {[&] { this->player.SendWinampCommand(40047); }, {"273 40047 0"}},
      {[&] { this->player.SendWinampCommand(40045); }, {"273 40045 0"}},
      {[&] { this->player.ClearWinampPlaylist(); }, {"1024 0 101"}},
      {[&] { this->player.SendWinampCommand(40001); }, {"273 40001 0"}},
  };
  for (const auto& [run, received] : operations) {
    run();
    EXPECT_EQ(this->ReceivedMessages(), received);
  }
  EXPECT_TRUE(this->messages.shown.empty());
}

TYPED_TEST(PlayerOperations, AfterItWasClosedMessagesAreDropped) {
  this->StartSong();
  this->player.SendWinampCommand(kClosePlayer);
  ASSERT_TRUE(WaitUntil([&] { return this->link->Find() == 0; }));
  this->ReceivedMessages();
  // Operations still use the window that was found before.
  EXPECT_EQ(this->player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(this->player.GetTrackPosition(), 0);
  EXPECT_EQ(this->player.GetWinampVersion(), "UNKNOWN");
  this->player.AddFileToWinamp(this->song);
  this->player.SendWinampCommand(kPlay);
  EXPECT_TRUE(this->messages.shown.empty());
  EXPECT_EQ(this->ReceivedMessages(), Texts{});
  EXPECT_FALSE(this->player.FindWinamp());
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/winamp_control.h"

#include <functional>
#include <gtest/gtest.h>

#include "player/player_messages.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"
#include "tests/tallow_player_stand_in.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class WinampControl : public testing::Test {
 protected:
  /// Returns what an operation sends after the player was found.
  Texts SentBy(const std::function<void()>& operation) {
    player.FindWinamp();
    link.Take();
    operation();
    return link.Take();
  }

  RecordedLink link;
  RecordedMessages messages;
  std::string path = "/opt/winamp.exe";
  WinAMP_Control player{link, [this] { return path; }, messages.Shower()};
};

TEST_F(WinampControl, FindWinampReturnsWhetherThereIsAWindow) {
  EXPECT_TRUE(player.FindWinamp());
  link.found = 0;
  EXPECT_FALSE(player.FindWinamp());
}

TEST_F(WinampControl, AnotherPlayerIsLookedForOnlyWhereTheLastOneHasEnded) {
  const auto look = [&] { player.FindAgainIfEnded(); };
  EXPECT_EQ(SentBy(look), Texts{});
  link.ends_at = 0;
  EXPECT_EQ(SentBy(look), Texts{"find"});
  // FindAgainIfEnded shows no message when there is no player; the next command does.
  link.found = 0;
  player.FindAgainIfEnded();
  EXPECT_EQ(player.Window(), 0U);
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."});
}

TEST_F(WinampControl, StartingRunsThePlayersPath) {
  EXPECT_TRUE(player.StartWinamp());
  EXPECT_EQ(link.Take(), Texts{"start /opt/winamp.exe"});
  link.starts = false;
  EXPECT_FALSE(player.StartWinamp());
}

TEST_F(WinampControl, WithoutAPathNothingIsStarted) {
  path.clear();
  EXPECT_FALSE(player.StartWinamp());
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(WinampControl, StartingDoesNotLookForTheWindow) {
  player.StartWinamp();
  EXPECT_EQ(link.Take(), Texts{"start /opt/winamp.exe"});
  EXPECT_EQ(player.Window(), 0U);
}

TEST_F(WinampControl, TheFirstCommandFindsAPlayerThatRunsAlready) {
  player.SendWinampCommand(40046);
  EXPECT_EQ(link.Take(), (Texts{"find", "273 40046 0"}));
  EXPECT_EQ(link.handles, std::vector<PlayerHandle>{7});
  player.SendWinampCommand(40047);
  EXPECT_EQ(link.Take(), Texts{"273 40047 0"});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(WinampControl, ACommandSendsItsNumber) {
  for (const std::int32_t id : {40044, 40045, 40046, 40047, 40048, 40157, 40001})
    EXPECT_EQ(SentBy([&] { player.SendWinampCommand(id); }),
              Texts{"273 " + std::to_string(id) + " 0"});
}

TEST_F(WinampControl, MessagesGoToTheWindowThatWasFound) {
  link.found = 4711;
  SentBy([&] { player.SendWinampCommand(40045); });
  EXPECT_EQ(link.handles.back(), 4711U);
}

TEST_F(WinampControl, TheListIsCleared) {
  EXPECT_EQ(SentBy([&] { player.ClearWinampPlaylist(); }), Texts{"1024 0 101"});
}

TEST_F(WinampControl, AFileIsAddedWithATerminatingNul) {
  EXPECT_EQ(SentBy([&] { player.AddFileToWinamp("/m/a.mp3"); }), Texts{"copy 100 9 /m/a.mp3\\0"});
}

TEST_F(WinampControl, TheStatusIsOneOfThreeWords) {
  const std::pair<std::int64_t, std::string> words[] = {
      {1, "PLAYING"}, {3, "PAUSED"}, {0, "STOPPED"}, {2, "STOPPED"}, {-1, "STOPPED"}};
  for (const auto& [answer, word] : words) {
    link.answers["1024 0 104"] = answer;
    EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.GetWinampStatus(), word); }), Texts{"1024 0 104"});
  }
}

TEST_F(WinampControl, ThePositionIsInWholeSeconds) {
  player.FindWinamp();
  const std::pair<std::int64_t, std::int32_t> positions[] = {{61999, 61}, {999, 0}, {0, 0},
                                                             {1000, 1},   {-1, -1}, {-1999, -1}};
  for (const auto& [answer, seconds] : positions) {
    link.answers["1024 0 105"] = answer;
    EXPECT_EQ(player.GetTrackPosition(), seconds) << answer;
  }
}

TEST_F(WinampControl, TheLengthIsReturnedUnchangedInSeconds) {
  for (const std::int32_t length : {215, 0, -1}) {
    link.answers["1024 1 105"] = length;
    EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.GetTrackLength(), length); }), Texts{"1024 1 105"});
  }
}

TEST_F(WinampControl, SeekingGoesInMillisecondsAndOnlyInsideTheTrack) {
  link.answers["1024 1 105"] = 60;
  const std::string asked = "1024 1 105";
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(0); }), (Texts{asked, "1024 0 106"}));
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(59); }), (Texts{asked, "1024 59000 106"}));
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(60); }), (Texts{asked, "1024 60000 106"}));
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(61); }), Texts{asked});
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(-1); }), Texts{});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(WinampControl, SeekingInATrackOfUnknownLengthSendsNothing) {
  link.answers["1024 1 105"] = -1;
  EXPECT_EQ(SentBy([&] { player.SetTrackPosition(0); }), Texts{"1024 1 105"});
}

TEST_F(WinampControl, AVolumeOutOfRangeIsIgnored) {
  EXPECT_EQ(SentBy([&] { player.SetVolume(0); }), Texts{"1024 0 122"});
  EXPECT_EQ(SentBy([&] { player.SetVolume(128); }), Texts{"1024 128 122"});
  EXPECT_EQ(SentBy([&] { player.SetVolume(255); }), Texts{"1024 255 122"});
  EXPECT_EQ(SentBy([&] { player.SetVolume(256); }), Texts{});
  EXPECT_EQ(SentBy([&] { player.SetVolume(-1); }), Texts{});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(WinampControl, ALeftBalanceIsOffsetBy255) {
  EXPECT_EQ(SentBy([&] { player.SetBalance(-1); }), Texts{"1024 254 123"});
  EXPECT_EQ(SentBy([&] { player.SetBalance(-127); }), Texts{"1024 128 123"});
  EXPECT_EQ(SentBy([&] { player.SetBalance(0); }), Texts{"1024 0 123"});
  EXPECT_EQ(SentBy([&] { player.SetBalance(127); }), Texts{"1024 127 123"});
  EXPECT_EQ(SentBy([&] { player.SetBalance(128); }), Texts{});
  EXPECT_EQ(SentBy([&] { player.SetBalance(-128); }), Texts{});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(WinampControl, TheVersionIsReadFromHexadecimalDigits) {
  player.FindWinamp();
  const std::pair<std::int64_t, std::string> versions[] = {
      {0x2081, "2.081"},  {0x2050, "2.050"}, {0x1F4, "UNKNOWN"}, {0, "UNKNOWN"},
      {0xFFF, "UNKNOWN"}, {0x1000, "1.000"}, {0x20AB, "2.0AB"},  {0x12345, "1.2345"}};
  for (const auto& [answer, version] : versions) {
    link.answers["1024 0 0"] = answer;
    EXPECT_EQ(player.GetWinampVersion(), version);
  }
}

TEST_F(WinampControl, TheListsLengthAndPlaceAreReturnedUnchanged) {
  link.answers["1024 0 124"] = 17;
  link.answers["1024 0 125"] = 16;
  EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.GetListLength(), 17); }), Texts{"1024 0 124"});
  EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.GetListPlace(), 16); }), Texts{"1024 0 125"});
}

TEST_F(WinampControl, APlaceIsSetFrom0On) {
  EXPECT_EQ(SentBy([&] { player.SetListPlace(0); }), Texts{"1024 0 121"});
  EXPECT_EQ(SentBy([&] { player.SetListPlace(99'999); }), Texts{"1024 99999 121"});
  EXPECT_EQ(SentBy([&] { player.SetListPlace(-1); }), Texts{});
}

TEST_F(WinampControl, ShuffleAndRepeatAreAskedAndSet) {
  for (const int on : {0, 1}) {
    link.answers["1024 0 250"] = on;
    link.answers["1024 0 251"] = on;
    const std::string set = "1024 " + std::to_string(on) + " ";
    EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.IsShuffled(), on == 1); }), Texts{"1024 0 250"});
    EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.IsRepeated(), on == 1); }), Texts{"1024 0 251"});
    EXPECT_EQ(SentBy([&] { player.SetShuffle(on == 1); }), Texts{set + "252"});
    EXPECT_EQ(SentBy([&] { player.SetRepeat(on == 1); }), Texts{set + "253"});
  }
}

TEST_F(WinampControl, TheKindIsThatOfThePlayerThatWasFound) {
  EXPECT_EQ(player.Kind(), PlayerKind::kWinamp);
  TallowPlayerStandIn own_link;
  WinAMP_Control own{own_link, [this] { return path; }, messages.Shower()};
  EXPECT_EQ(own.Kind(), PlayerKind::kWinamp);
  own.FindWinamp();
  EXPECT_EQ(own.Kind(), PlayerKind::kTallowPlayer);
  EXPECT_EQ(own.Program(), path);
  EXPECT_TRUE(own.OwnPlayer().State());
}

TEST_F(WinampControl, WithoutAWindowEveryOperationLooksForItAndShowsAMessage) {
  link.found = 0;
  const std::pair<const char*, std::function<void()>> operations[] = {
      {"command", [&] { player.SendWinampCommand(40045); }},
      {"clear", [&] { player.ClearWinampPlaylist(); }},
      {"add", [&] { player.AddFileToWinamp("/m/a.mp3"); }},
      {"status", [&] { EXPECT_EQ(player.GetWinampStatus(), ""); }},
      {"position", [&] { EXPECT_EQ(player.GetTrackPosition(), 0); }},
      {"length", [&] { EXPECT_EQ(player.GetTrackLength(), 0); }},
      {"seek", [&] { player.SetTrackPosition(1); }},
      {"volume", [&] { player.SetVolume(1); }},
      {"volume out of range", [&] { player.SetVolume(256); }},
      {"balance", [&] { player.SetBalance(1); }},
      {"list length", [&] { EXPECT_EQ(player.GetListLength(), 0); }},
      {"list place", [&] { EXPECT_EQ(player.GetListPlace(), 0); }},
      {"set place", [&] { player.SetListPlace(1); }},
      {"shuffle", [&] { EXPECT_FALSE(player.IsShuffled()); }},
      {"set shuffle", [&] { player.SetShuffle(true); }},
      {"repeat", [&] { EXPECT_FALSE(player.IsRepeated()); }},
      {"set repeat", [&] { player.SetRepeat(true); }},
      {"version", [&] { EXPECT_EQ(player.GetWinampVersion(), ""); }},
  };
  for (const auto& [name, operation] : operations) {
    operation();
    ASSERT_EQ(messages.shown.size(), 1U) << name;
    const Message& message = messages.shown.front();
    EXPECT_EQ(message.text, "WinAMP window not found yet...");
    EXPECT_EQ(message.title, "WinAMP Not Found");
    EXPECT_EQ(message.icon, MessageIcon::kCritical);
    EXPECT_EQ(message.buttons, MessageButtons::kOk);
    messages.shown.clear();
    EXPECT_EQ(link.Take(), Texts{"find"}) << name;
  }
}

TEST_F(WinampControl, AStaleWindowIsNotDetected) {
  player.FindWinamp();
  EXPECT_EQ(SentBy([&] { EXPECT_EQ(player.GetWinampStatus(), "STOPPED"); }), Texts{"1024 0 104"});
  EXPECT_EQ(messages.Take(), Texts{});
}

}  // namespace
}  // namespace tallow

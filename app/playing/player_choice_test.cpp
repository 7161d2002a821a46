// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/player_choice.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/library_fixture.h"
#include "util/path_text.h"

namespace tallow {
namespace {

class PlayerChoice : public LibraryTest {
 protected:
  /// A program in a temporary folder.
  std::string Program(const std::string& name) {
    const std::string path = music.File(name);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }
  /// The player that the next start uses.
  std::string Stored() {
    clsINI stored;
    stored.GetandLoadIniInfo(tallow.settings_path);
    return stored.LocOfWinAmpExe();
  }
};

TEST_F(PlayerChoice, TallowsOwnPlayerIsKnownByItsName) {
  const std::string folder = std::string("x") + kSeparator;
  EXPECT_EQ(KindOfPlayer(folder + "tallow-player"), PlayerKind::kTallowPlayer);
  EXPECT_EQ(KindOfPlayer(folder + "Tallow-Player.EXE"), PlayerKind::kTallowPlayer);
  EXPECT_EQ(KindOfPlayer(folder + "winamp.exe"), PlayerKind::kWinamp);
  EXPECT_EQ(KindOfPlayer(folder + "tallow-player-2.exe"), PlayerKind::kWinamp);
  EXPECT_EQ(KindOfPlayer(std::string("tallow-player") + kSeparator + "winamp.exe"),
            PlayerKind::kWinamp);
  EXPECT_EQ(KindOfPlayer(""), PlayerKind::kWinamp);
}

TEST_F(PlayerChoice, OffersOwnPlayerThenWinampsThenTheChosenOneEachOnce) {
  tallow.player_path = "/opt/other";
  EXPECT_EQ(PlayersToChooseFrom(tallow, "/opt/own", {"/a/winamp.exe", "/b/winamp.exe"}),
            (Texts{"/opt/own", "/a/winamp.exe", "/b/winamp.exe", "/opt/other"}));
  tallow.player_path = "/b/winamp.exe";
  EXPECT_EQ(PlayersToChooseFrom(tallow, "", {"/a/winamp.exe", "/b/winamp.exe", "/a/winamp.exe"}),
            (Texts{"/a/winamp.exe", "/b/winamp.exe"}));
  tallow.player_path.clear();
  EXPECT_EQ(PlayersToChooseFrom(tallow, "", {}), Texts{});
}

TEST_F(PlayerChoice, AChoiceIsStoredAndEndsAPendingSearch) {
  tallow.player_search_is_pending = true;
  const std::string program = Program("winamp.exe");
  EXPECT_EQ(ChoosePlayer(tallow, program), "");
  EXPECT_TRUE(IsSamePathText(tallow.player_path, program)) << tallow.player_path;
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), tallow.player_path);
  EXPECT_EQ(Stored(), tallow.player_path);
  EXPECT_FALSE(tallow.player_search_is_pending);
}

TEST_F(PlayerChoice, WhatCannotBeThePlayerChangesNothing) {
  const std::string player = Program("player.exe");
  ASSERT_EQ(ChoosePlayer(tallow, player), "");
  const std::string chosen = tallow.player_path;
  const std::string gone = music.path() + "gone.exe";
  EXPECT_EQ(ChoosePlayer(tallow, ""), "No program was named.");
  EXPECT_EQ(ChoosePlayer(tallow, "player.exe"),
            std::string("player.exe is not a full path. A full path begins with a drive or with ") +
                kSeparator + ".");
  EXPECT_EQ(ChoosePlayer(tallow, gone), "There is no program " + gone + ".");
  EXPECT_EQ(ChoosePlayer(tallow, gone + "\n"),
            "The path has a line break, so it cannot be stored.");
  // A folder is no program.
  EXPECT_EQ(ChoosePlayer(tallow, application.path()),
            "There is no program " + application.path() + ".");
  EXPECT_EQ(tallow.player_path, chosen);
  EXPECT_EQ(Stored(), chosen);
}

}  // namespace
}  // namespace tallow

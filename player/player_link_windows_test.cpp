// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_link.h"
#include "tests/stand_in_player_windows.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

TEST_F(OtherPlayer, StartsMinimizedWithoutTheFocus) {
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
  EXPECT_EQ(Heard(), Texts{"started " + std::to_string(SW_SHOWMINNOACTIVE)});
}

TEST_F(OtherPlayer, AnswersAcrossProcesses) {
  StartSong();
  EXPECT_EQ(player.GetWinampVersion(), "2.081");
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  EXPECT_EQ(player.GetTrackPosition(), 61);
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(OtherPlayer, IsNotStartedFromAPathWithoutAProgram) {
  path = folder / "winamp.exe";
  EXPECT_FALSE(player.StartWinamp());
}

TEST_F(OtherPlayer, MayLieInAFolderWithBlanks) {
  const std::string blanks = folder.Folder("Program Files") + "winamp.exe";
  ASSERT_TRUE(CopyFileW(ToWide(path).c_str(), ToWide(blanks).c_str(), TRUE));
  path = blanks;
  ASSERT_TRUE(player.StartWinamp());
  EXPECT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
  EndPlayer();
  // Its file can be deleted once the process is gone.
  EXPECT_TRUE(WaitUntil([&] { return RemoveFile(blanks); }));
}

TEST_F(OtherPlayer, GetsAPathOfTheCodePageAsItsBytes) {
  // These are in every code page of the West; the machine of this test has such a one.
  const std::string text = link->TextOfPath("C:\\Musik\\caf\u00E9.mp3");
  EXPECT_TRUE(text == "C:\\Musik\\caf\xE9.mp3" || text == "C:\\Musik\\caf\u00E9.mp3") << text;
}

TEST_F(OtherPlayer, GetsAnyOtherPathByItsShortForm) {
  const std::string file = folder.File("\u66F2 \u0416.mp3");
  const std::string text = link->TextOfPath(file);
  if (text == file) GTEST_SKIP() << "The system's code page is UTF-8, which has every character.";
  for (const char c : text) EXPECT_GT(c, ' ');
  EXPECT_EQ(text.find('?'), std::string::npos) << text;
  // It leads to the same file.
  EXPECT_TRUE(FileExists(text)) << text;
}

TEST_F(OtherPlayer, GetsTheNearestTextWhereThereIsNoShortForm) {
  const std::string text = link->TextOfPath("C:\\gone\\\u66F2.mp3");
  EXPECT_TRUE(text == "C:\\gone\\?.mp3" || text == "C:\\gone\\\u66F2.mp3") << text;
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/path_in_code_page_windows.h"
#include "player/player_link.h"
#include "tests/stand_in_player_windows.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

TEST_F(OtherPlayer, StartsMinimizedWithoutTheFocus) {
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
  EXPECT_EQ(ReceivedMessages(), Texts{"started " + std::to_string(SW_SHOWMINNOACTIVE)});
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
  // The file can be deleted only after the process has ended.
  EXPECT_TRUE(WaitUntil([&] { return RemoveFile(blanks); }));
}

TEST(PathInCodePage, APathWithinTheCodePageIsConverted) {
  EXPECT_EQ(PathInCodePage("C:\\Musik\\caf\u00E9 \u20AC.mp3", 1252), "C:\\Musik\\caf\xE9 \x80.mp3");
  EXPECT_EQ(PathInCodePage("C:\\\u041C\u0438\u0440.mp3", 1251), "C:\\\xCC\xE8\xF0.mp3");
  EXPECT_EQ(PathInCodePage("C:\\\u66F2.mp3", 65001), "C:\\\u66F2.mp3");
}

TEST(PathInCodePage, AnyOtherPathIsReplacedByItsShortForm) {
  const TempFolder folder;
  // A best-fit replacement (Latin a for the Cyrillic one) would name another file.
  for (const char* const name : {"\u66F2 \u0416.mp3", "\u0430.mp3"}) {
    const std::string file = folder.File(name);
    const std::string text = PathInCodePage(file, 1252);
    for (const char c : text) EXPECT_GT(c, ' ');
    EXPECT_EQ(text.find('?'), std::string::npos) << text;
    // The short path names the same file.
    EXPECT_TRUE(FileExists(text)) << text;
  }
}

TEST(PathInCodePage, WithoutAShortFormItHasQuestionMarks) {
  EXPECT_EQ(PathInCodePage("C:\\gone\\\u66F2.mp3", 1252), "C:\\gone\\?.mp3");
}

TEST_F(OtherPlayer, GetsPathsInTheCodePageOfTheSystem) {
  const std::string plain = "C:\\Music\\a.mp3";
  EXPECT_EQ(link->TextOfPath(plain), plain);
}

}  // namespace
}  // namespace tallow

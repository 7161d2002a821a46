// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/tip_list.h"

#include <gtest/gtest.h>
#include <map>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

TEST(TipList, EveryLineIsATipAndEachHasTheSameChance) {
  TempFolder folder;
  TipList tips(7);
  ASSERT_TRUE(tips.Load(folder.File("tips", "1\r\n2\r\n\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10")));
  ASSERT_EQ(tips.Count(), 10U);
  std::map<std::string, int> drawn;
  constexpr int kDraws = 10000;
  int same = 0;
  std::string before;
  for (int k = 0; k < kDraws; ++k) {
    tips.Next();
    ++drawn[*tips.Current()];
    same += before == *tips.Current();
    before = *tips.Current();
  }
  EXPECT_EQ(drawn.size(), 10U);
  // Each count of a fair draw is 1,000 with a standard deviation of 30; the tolerance is five of
  // them.
  for (const auto& [tip, times] : drawn) EXPECT_NEAR(times, 1000, 150) << tip;
  EXPECT_NEAR(same, 1000, 150);
}

TEST(TipList, AFileOfOneLineAlwaysShowsThatLine) {
  TempFolder folder;
  TipList tips(1);
  ASSERT_TRUE(tips.Load(folder.File("tips", "only")));
  for (int k = 0; k < 5; ++k, tips.Next()) EXPECT_EQ(*tips.Current(), "only");
}

TEST(TipList, WithoutAFileThereIsNoTip) {
  TempFolder folder;
  TipList tips(1);
  EXPECT_FALSE(tips.Load(""));
  EXPECT_FALSE(tips.Load(folder / "none"));
  EXPECT_EQ(tips.Current(), nullptr);
  EXPECT_TRUE(tips.Load(folder.File("empty", "")));
  tips.Next();
  EXPECT_EQ(tips.Current(), nullptr);
}

TEST(TipList, AnUnreadableFileIsTreatedAsMissing) {
  TempFolder folder;
  TipList tips(1);
  EXPECT_FALSE(tips.Load(folder.Folder("a folder")));
  EXPECT_EQ(tips.Current(), nullptr);
}

TEST(TipList, LinesMayBeOfAnyLength) {
  TempFolder folder;
  TipList tips(1);
  const std::string tip(200000, 'x');
  ASSERT_TRUE(tips.Load(folder.File("tips", tip)));
  EXPECT_EQ(*tips.Current(), tip);
}

TEST(TipList, TheFileIsInTheApplicationFolderOrBesideTheProgram) {
  TempFolder own;
  TempFolder program;
  EXPECT_EQ(TipFilePath(own.path(), program.path()), own / "TIPOFDAY.TXT");
  program.File("TIPOFDAY.TXT");
  EXPECT_EQ(TipFilePath(own.path(), program.path()), program / "TIPOFDAY.TXT");
  own.File("TIPOFDAY.TXT");
  EXPECT_EQ(TipFilePath(own.path(), program.path()), own / "TIPOFDAY.TXT");
}

TEST(TipList, WithoutTipsAnExplanationIsShown) {
  EXPECT_EQ(
      NoTipsText(),
      "That the TIPOFDAY.TXT file was not found? \r\n\r\nCreate a text file named "
      "TIPOFDAY.TXT using NotePad with 1 tip per line. Then place it in the same directory as "
      "the application. ");
}

}  // namespace
}  // namespace tallow

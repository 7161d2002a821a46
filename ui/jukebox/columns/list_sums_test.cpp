// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/list_sums.h"

#include "tests/jukebox_window_fixture.h"

namespace tallow {
namespace {

class ListSumsTest : public JukeboxWindowTest {
 protected:
  void UseDetails(bool on) {
    tallow.preferences.SetSwitches({.columns_of_details = on});
    window.FollowPreferences();
  }
  bool Becomes(const QString& text) {
    return QTest::qWaitFor([&] { return window.SumsText() == text; });
  }
};

TEST_F(ListSumsTest, TellTheSongsOfTheFolderOrTheSelection) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  UseDetails(true);
  Show();
  EXPECT_TRUE(Becomes("3 songs"));
  SelectRow(1);
  EXPECT_TRUE(Becomes("1 of 3 songs selected"));
  List().clearSelection();
  EXPECT_TRUE(Becomes("3 songs"));
}

TEST_F(ListSumsTest, AreEmptyWithoutTheSwitch) {
  AddSongs(1);
  AddFolder("one", {1});
  UseDetails(true);
  Show();
  EXPECT_TRUE(Becomes("1 song"));
  UseDetails(false);
  EXPECT_TRUE(Becomes(""));
}

TEST_F(ListSumsTest, FollowTheFolder) {
  AddSongs(2);
  AddFolder("one", {1});
  Folder& two = AddFolder("two", {1, 2});
  UseDetails(true);
  Show();
  EXPECT_TRUE(Becomes("1 song"));
  window.PVExplorer1().Select(two);
  EXPECT_TRUE(Becomes("2 songs"));
}

}  // namespace
}  // namespace tallow

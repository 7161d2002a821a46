// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLabel>

#include "tests/jukebox_window_fixture.h"

namespace tallow {
namespace {

class EmptyFolderHintTest : public JukeboxWindowTest {
 protected:
  EmptyFolderHintTest() { tallow.preferences.SetSwitches({.columns_of_details = true}); }
  QLabel& Hint() { return *window.findChild<QLabel*>(QStringLiteral("lblEmptyFolder")); }
};

TEST_F(EmptyFolderHintTest, TellsHowSongsGetIntoTheFolder) {
  AddSongs(1);
  AddFolder("Parties");
  Show();
  EXPECT_TRUE(Hint().isVisible());
  EXPECT_EQ(Hint().text(),
            "This folder is empty. Drag songs onto it in the tree, or copy songs in another folder "
            "and paste them here.");
  EXPECT_EQ(Hint().size(), List().viewport()->size());
  window.resize(900, 700);
  EXPECT_EQ(Hint().size(), List().viewport()->size());
}

TEST_F(EmptyFolderHintTest, IsGoneWhenTheFolderHasSongs) {
  AddSongs(1);
  Folder& mine = AddFolder("Parties");
  Folder& full = AddFolder("full", {1});
  Show();
  EXPECT_TRUE(Hint().isVisible());
  window.PVExplorer1().Select(full);
  EXPECT_FALSE(Hint().isVisible());
  window.PVExplorer1().Select(mine);
  EXPECT_TRUE(Hint().isVisible());
  window.PVExplorer1().AddSongs(mine, {SongEntry(1, 2)});
  EXPECT_FALSE(Hint().isVisible());
}

TEST_F(EmptyFolderHintTest, GivesWayToTheNoticeOfAnEmptyLibrary) {
  AddFolder("Parties");
  Show();
  EXPECT_FALSE(Hint().isVisible());
}

TEST_F(EmptyFolderHintTest, ShowsThatASearchHasFoundNothing) {
  AddSongs(1);
  AddFolder("Parties");
  Show();
  Box().ShowHits({}, library);
  EXPECT_EQ(Hint().text(),
            "No song has all these words in its title, artist, album, genre or file name.");
  Box().ShowHits({1}, library);
  EXPECT_FALSE(Hint().isVisible());
  Box().HideHits(library);
  EXPECT_NE(Hint().text(),
            "No song has all these words in its title, artist, album, genre or file name.");
  EXPECT_TRUE(Hint().isVisible());
}

TEST_F(EmptyFolderHintTest, IsNotShownWithoutTheSwitch) {
  tallow.preferences.SetSwitches({.columns_of_details = false});
  AddSongs(1);
  AddFolder("Parties");
  Show();
  EXPECT_FALSE(Hint().isVisible());
  tallow.preferences.SetSwitches({.columns_of_details = true});
  window.FollowPreferences();
  EXPECT_TRUE(Hint().isVisible());
}

TEST_F(EmptyFolderHintTest, LeavesTheMouseToTheList) {
  AddSongs(1);
  AddFolder("Parties");
  Show();
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                    List().viewport()->mapTo(&window, QPoint(50, 50)));
  EXPECT_TRUE(List().hasFocus());
}

}  // namespace
}  // namespace tallow

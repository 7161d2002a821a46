// SPDX-License-Identifier: GPL-3.0-or-later
// What the menus and the toolbar act on after a click into the player panel: the jukebox that was
// used last.
#include <gtest/gtest.h>

#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include "app/play_commands.h"
#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_find.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/player/frm_main_winamp.h"

namespace tallow {
namespace {

class JukeboxWithPanel : public FrameTest {
 protected:
  using Songs = std::vector<std::int32_t>;

  JukeboxWithPanel() {
    Name(one, "ONE");
    Name(two, "TWO");
    Item("mnuPlayAllTheSongInNode").trigger();
    EXPECT_NE(frame.PlayerPanel(), nullptr);
    frame.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&frame));
    // The jukebox used last is not the jukebox opened last.
    // The click is below the folders, because one on the selected folder starts renaming it later.
    QWidget& tree = *TreeOf(two).viewport();
    QTest::mouseClick(&tree, Qt::LeftButton, {}, QPoint(60, tree.height() - 8));
    EXPECT_EQ(Area().activeSubWindow(), &SubOf(two));
    Area().setActiveSubWindow(&SubOf(one));
    QTest::mouseClick(ListOf(one).viewport(), Qt::LeftButton, {}, QPoint(60, 8));
    EXPECT_EQ(Area().activeSubWindow(), &SubOf(one));
    ClickIntoPanel();
    link.Take();
  }

  static void Name(frmMain& window, const char* caption) {
    window.Jukebox().Caption(caption);
    window.Jukebox().Nodes().AddChild(nullptr, "All Songs");
    window.Jukebox().AddColumnHeader(kNameHeader);
  }
  static FolderTreeView& TreeOf(frmMain& of) { return *of.findChild<FolderTreeView*>(); }
  static SongListView& ListOf(frmMain& of) { return *of.findChild<SongListView*>(); }
  void ClickIntoPanel() {
    // Brings the frame back to the front after a dialog.
    frame.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    QCoreApplication::processEvents();
    auto* const button = frame.PlayerPanel()->findChild<QPushButton*>();
    QTest::mousePress(button, Qt::LeftButton);
    // Released outside the button, so that the button is not triggered.
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-20, -20));
    ASSERT_EQ(Area().activeSubWindow(), &SubOf(*frame.PlayerPanel()));
  }
  void ClickButton(int index) {
    auto* const bar = frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"));
    QWidget* const button =
        bar->widgetForAction(&Item(QByteArray("Button" + QByteArray::number(index))));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
  }
  static Texts FoldersOf(frmMain& window, const Folder* above = nullptr) {
    Texts texts;
    const FolderTree& tree = window.Jukebox().Nodes();
    const std::int32_t count = above != nullptr ? above->Children() : tree.Children();
    for (std::int32_t k = 0; k < count; ++k)
      texts.push_back((above != nullptr ? above->ChildAt(k) : tree.ChildAt(k)).Text());
    return texts;
  }
  static Folder& FirstOf(frmMain& window) { return window.Jukebox().Nodes().ChildAt(0); }

  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
};

TEST_F(JukeboxWithPanel, MenuAndToolbarPlayItsSongs) {
  Item("mnuPlaySeletedSongs").trigger();
  EXPECT_EQ(tallow.SongsToPlay, Songs{1});
  EXPECT_EQ(HandOvers(), 1);
  ClickIntoPanel();
  Item("mnuPlayAllTheSongInNode").trigger();
  EXPECT_EQ(tallow.SongsToPlay, (Songs{1, 2}));
  ClickIntoPanel();
  ClickButton(1);
  EXPECT_EQ(tallow.SongsToPlay, Songs{1});
  ClickIntoPanel();
  ClickButton(2);
  EXPECT_EQ(tallow.SongsToPlay, (Songs{1, 2}));
  EXPECT_EQ(frame.statusBar()->currentMessage(), "");
}

TEST_F(JukeboxWithPanel, MenuAndToolbarAddFoldersToIt) {
  for (int time = 1; time <= 2; ++time) {
    if (time == 1)
      Item("mnuAddFolderToRoot").trigger();
    else
      ClickButton(9);
    one.PVExplorer1().CommitEditing();
    EXPECT_EQ(FoldersOf(one).size(), 2U + static_cast<std::size_t>(time));
    ClickIntoPanel();
  }
  one.PVExplorer1().Select(FirstOf(one));
  Item("mnuAddFolderToSelectedFolder").trigger();
  one.PVExplorer1().CommitEditing();
  one.PVExplorer1().Select(FirstOf(one));
  ClickIntoPanel();
  ClickButton(10);
  one.PVExplorer1().CommitEditing();
  EXPECT_EQ(FoldersOf(one, &FirstOf(one)), (Texts{"New Folder", "New Folder"}));
  EXPECT_EQ(FoldersOf(two), (Texts{"one", "All Songs"}));
}

TEST_F(JukeboxWithPanel, FindSearchesIt) {
  for (const bool by_button : {false, true}) {
    ClickIntoPanel();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const dialog = qobject_cast<frmFind*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer.stop();
      auto* const text = dialog->findChild<QLineEdit*>(QStringLiteral("Text1"));
      text->setText("b.mp3");
      QTest::keyClick(text, Qt::Key_Return);
      dialog->reject();
    });
    timer.start(5);
    if (by_button)
      ClickButton(12);
    else
      Item("mnuFind").trigger();
    EXPECT_EQ(one.PVExplorer1().SelectedRows(), std::vector<int>{1});
    EXPECT_EQ(two.PVExplorer1().SelectedRows(), std::vector<int>{});
    // The keyboard goes to the jukebox with the song that was found.
    EXPECT_EQ(Area().activeSubWindow(), &SubOf(one));
  }
}

TEST_F(JukeboxWithPanel, NewSongsAreFiledIntoIt) {
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  music.File("c.mp3");
  Item("mnuNewSongsNormalLocations").trigger();
  EXPECT_EQ(frame.statusBar()->currentMessage(), "1 new song");
  EXPECT_EQ(SongsOf(*one.Jukebox().Nodes().Find("All Songs")), (Songs{1, 2, 3}));
  EXPECT_EQ(SongsOf(*two.Jukebox().Nodes().Find("All Songs")), Songs{});
  ClickIntoPanel();
  music.File("d.mp3");
  ClickButton(14);
  EXPECT_EQ(SongsOf(*one.Jukebox().Nodes().Find("All Songs")), (Songs{1, 2, 3, 4}));
}

TEST_F(JukeboxWithPanel, EditCommandsAndTheirKeysActOnThePaneThatWasUsedLast) {
  Item("mnuCopy").trigger();
  EXPECT_EQ(tallow.clipboard.Songs().size(), 1U);
  Item("mnuDelete").trigger();
  EXPECT_EQ(SongsOf(FirstOf(one)), Songs{2});
  ClickIntoPanel();
  QWidget* const focus = frame.PlayerPanel()->findChild<QPushButton*>();
  focus->setFocus();
  QTest::keyClick(focus, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(FirstOf(one)), (Songs{2, 1}));
  EXPECT_EQ(SongsOf(FirstOf(two)), (Songs{1, 2}));
  // The player's keys still go to the player.
  link.Take();
  QTest::keyClick(focus, Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(link.Take(), Texts{"273 40048 0"});
}

TEST_F(JukeboxWithPanel, CommandsSkipAMinimizedJukeboxWhileAnotherIsOpen) {
  SubOf(one).showMinimized();
  ClickIntoPanel();
  Item("mnuAddFolderToRoot").trigger();
  two.PVExplorer1().CommitEditing();
  EXPECT_EQ(FoldersOf(one).size(), 2U);
  EXPECT_EQ(FoldersOf(two).size(), 3U);
}

TEST_F(JukeboxWithPanel, CommandsSkipAClosedJukebox) {
  one.Jukebox().RememberContent();
  SubOf(one).close();
  ClickIntoPanel();
  Item("mnuAddFolderToRoot").trigger();
  two.PVExplorer1().CommitEditing();
  EXPECT_EQ(FoldersOf(two).size(), 3U);
}

TEST_F(JukeboxWithPanel, CloseActsOnThePanel) {
  Item("mnuClose").trigger();
  DeleteClosedWindows();
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Which items of the menus and buttons of the toolbar are grey, and the items Undo and Redo.
#include "ui/frame/command_states.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include "app/play_commands.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

class States : public FrameTest {
 protected:
  /// Opens a menu and closes it again, by its signals: without a window manager, the frame window
  /// would not get the keyboard focus back from a real menu.
  /// \returns the names of the items that were grey while it was open
  QStringList GreyIn(const char* menu_name) {
    auto& menu = *frame.findChild<QMenu*>(QLatin1String(menu_name));
    emit menu.aboutToShow();
    QStringList grey;
    for (const QAction* const item : menu.actions())
      if (!item->isSeparator() && item->isVisible() && !item->isEnabled())
        grey.append(item->objectName());
    emit menu.aboutToHide();
    for (const QAction* const item : menu.actions())
      EXPECT_TRUE(item->isSeparator() || !item->isVisible() || item->isEnabled())
          << item->objectName().toStdString();
    return grey;
  }
  /// The text of an item while its menu is open.
  QString TextOf(const char* item) {
    auto& menu = *frame.findChild<QMenu*>(QStringLiteral("mnuEdit"));
    emit menu.aboutToShow();
    const QString text = Item(item).text();
    emit menu.aboutToHide();
    return text;
  }
  QStringList GreyButtons() {
    QStringList grey;
    for (const QAction* const button : frame.findChild<QToolBar*>("Toolbar1")->actions())
      if (button->isVisible() && !button->isSeparator() && !button->isEnabled())
        grey.append(button->objectName());
    return grey;
  }
  /// Gives a widget of the frame the keyboard focus.
  void Focus(QWidget& widget) {
    frame.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&frame));
    // The frame gives the focus to its jukebox when it becomes active.
    QCoreApplication::processEvents();
    widget.setFocus();
    EXPECT_EQ(QApplication::focusWidget(), &widget);
  }
  static SongListView& ListOf(frmMain& window) { return *window.findChild<SongListView*>(); }
  static FolderTreeView& TreeOf(frmMain& window) { return *window.findChild<FolderTreeView*>(); }
};

TEST_F(States, WithoutAWindowOnlyItemsThatWouldSayNothingAreGrey) {
  frame.show();
  EXPECT_EQ(GreyIn("mnuFile"), QStringList{"mnuClose"});
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuUndo", "mnuRedo"}));
  EXPECT_EQ(GreyIn("mnuSongs"), QStringList());
  EXPECT_EQ(GreyIn("mnuPicture"), QStringList());
  EXPECT_EQ(GreyIn("mnuWindowList"), (QStringList{"mnuCascade", "mnuTile", "mnuArrageIcons"}));
  EXPECT_EQ(GreyIn("mnuTools"), QStringList());
  EXPECT_EQ(GreyIn("mnuHelp"), QStringList());
  EXPECT_EQ(GreyButtons(), QStringList());
  // Those that are not grey say why they do nothing.
  for (const char* const name :
       {"mnuSave", "mnuSaveAs", "mnuCut", "mnuCopy", "mnuPaste", "mnuDelete", "mnuFind",
        "mnuAddFolderToRoot", "mnuAddFolderToSelectedFolder", "mnuPlaySeletedSongs",
        "mnuPlayAllTheSongInNode", "Button1", "Button2", "Button12"}) {
    frame.statusBar()->clearMessage();
    Item(name).trigger();
    EXPECT_EQ(frame.statusBar()->currentMessage(),
              "No jukebox is open. Open one, or make a new one, and try again.")
        << name;
  }
}

TEST_F(States, PlayerCommandsAreNeverGreyBecauseTheySayThatThereIsNoPlayer) {
  ShowJukebox();
  link.found = 0;
  for (const char* const name :
       {"mnuNextTrack", "mnuPreviousTrack", "mnuPause", "mnuPlay", "mnuStop", "mnuStopAfterTrack",
        "mnuCloseWinAmp", "Button3", "Button4", "Button5", "Button7"}) {
    Item(name).trigger();
    EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."}) << name;
  }
  EXPECT_EQ(GreyIn("mnuSongs"), QStringList());
  EXPECT_EQ(GreyButtons(), QStringList());
}

TEST_F(States, TheEditMenuFollowsPaneSelectionAndClipboard) {
  frmMain& window = ShowJukebox();
  window.Jukebox().Nodes().AddChild(nullptr, "All Songs");
  Focus(ListOf(window));
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuUndo", "mnuRedo", "mnuPaste"}));
  // Without a selection they say that no song is selected.
  Item("mnuCut").trigger();
  EXPECT_EQ(frame.statusBar()->currentMessage(), "No song is selected.");
  ListOf(window).SelectRows(0, 0);
  Item("mnuCut").trigger();
  EXPECT_EQ(GreyIn("mnuEdit"), QStringList{"mnuRedo"});
  Focus(TreeOf(window));
  EXPECT_EQ(GreyIn("mnuEdit"), QStringList{"mnuRedo"});
  // A special folder is not deleted, and says nothing.
  window.PVExplorer1().Select(window.Jukebox().Nodes().ChildAt(1));
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuRedo", "mnuDelete"}));
  // On the empty area of the tree there is no folder to cut.
  QTest::mouseClick(TreeOf(window).viewport(), Qt::LeftButton, {},
                    QPoint(5, TreeOf(window).viewport()->height() - 3));
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuRedo", "mnuCut", "mnuCopy", "mnuDelete"}));
}

TEST_F(States, InATextFieldTheEditMenuFollowsTheText) {
  frmMain& window = ShowJukebox();
  QLineEdit field(&frame);
  field.show();
  Focus(field);
  QApplication::clipboard()->clear();
  const QStringList empty{"mnuUndo", "mnuRedo", "mnuCut", "mnuCopy", "mnuPaste", "mnuDelete"};
  EXPECT_EQ(GreyIn("mnuEdit"), empty);
  QTest::keyClicks(&field, "ab");
  EXPECT_EQ(GreyIn("mnuEdit"), empty.mid(1));
  EXPECT_EQ(TextOf("mnuUndo"), "&Undo");
  Item("mnuUndo").trigger();
  EXPECT_EQ(field.text(), "");
  EXPECT_FALSE(window.Jukebox().History().CanRedo());
  Item("mnuRedo").trigger();
  EXPECT_EQ(field.text(), "ab");
  field.selectAll();
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuRedo", "mnuPaste"}));
  Item("mnuCopy").trigger();
  EXPECT_EQ(GreyIn("mnuEdit"), QStringList{"mnuRedo"});
  QApplication::clipboard()->clear();
}

TEST_F(States, TheMenuBarLeavesTheEditCommandsToTheTextField) {
  frmMain& window = ShowJukebox();
  QLineEdit field(&frame);
  field.show();
  Focus(field);
  QTest::keyClicks(&field, "ab");
  field.selectAll();
  // As Alt does it.
  frame.menuBar()->setFocus(Qt::MenuBarFocusReason);
  EXPECT_FALSE(field.hasFocus());
  EXPECT_FALSE(GreyIn("mnuEdit").contains(QStringLiteral("mnuCut")));
  Item("mnuCut").trigger();
  EXPECT_EQ(field.text(), "");
  Item("mnuUndo").trigger();
  EXPECT_EQ(field.text(), "ab");
  EXPECT_FALSE(window.Jukebox().History().CanUndo());
  // From the list, the menu bar gives them to the list.
  Focus(ListOf(window));
  ListOf(window).SelectRows(0, 0);
  frame.menuBar()->setFocus(Qt::MenuBarFocusReason);
  Item("mnuCut").trigger();
  EXPECT_EQ(field.text(), "ab");
  EXPECT_TRUE(window.Jukebox().History().CanUndo());
}

TEST_F(States, UndoAndRedoNameTheStepAndWorkByMenuAndKey) {
  frmMain& window = ShowJukebox();
  Folder& folder = window.Jukebox().Nodes().ChildAt(0);
  SongListView& list = ListOf(window);
  Focus(list);
  list.selectAll();
  Item("mnuCut").trigger();
  EXPECT_EQ(TextOf("mnuUndo"), "&Undo Cut 2 Songs");
  EXPECT_EQ(TextOf("mnuRedo"), "&Redo");
  Item("mnuUndo").trigger();
  EXPECT_EQ(SongsOf(folder).size(), 2U);
  EXPECT_EQ(TextOf("mnuUndo"), "&Undo");
  EXPECT_EQ(TextOf("mnuRedo"), "&Redo Cut 2 Songs");
  EXPECT_EQ(GreyIn("mnuEdit"), QStringList{"mnuUndo"});
  Item("mnuRedo").trigger();
  EXPECT_TRUE(folder.Items().empty());
  // The keys work although an item was grey when its menu was open last.
  QTest::keyClick(&list, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(folder).size(), 2U);
  EXPECT_EQ(GreyIn("mnuEdit"), QStringList{"mnuUndo"});
  QTest::keyClick(&list, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(folder.Items().empty());
  QTest::keyClick(&TreeOf(window), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(folder).size(), 2U);
}

TEST_F(States, HitsOfASearchAreCopiedOnly) {
  frmMain& window = ShowJukebox();
  Focus(ListOf(window));
  tallow.clipboard.PutSongs({{1, 2}});
  window.PVExplorer1().ShowHits({1});
  EXPECT_EQ(GreyIn("mnuEdit"),
            (QStringList{"mnuUndo", "mnuRedo", "mnuCut", "mnuPaste", "mnuDelete"}));
  window.PVExplorer1().HideHits();
  EXPECT_EQ(GreyIn("mnuEdit"), (QStringList{"mnuUndo", "mnuRedo"}));
}

TEST_F(States, UndoStandsAboveASeparatorAndCut) {
  const QList<QAction*> items = frame.findChild<QMenu*>(QStringLiteral("mnuEdit"))->actions();
  EXPECT_EQ(items[0]->objectName(), "mnuUndo");
  EXPECT_EQ(items[0]->shortcut(), QKeySequence(QStringLiteral("Ctrl+Z")));
  EXPECT_EQ(items[1]->objectName(), "mnuRedo");
  EXPECT_EQ(items[1]->shortcut(), QKeySequence(QStringLiteral("Ctrl+Shift+Z")));
  EXPECT_TRUE(items[2]->isSeparator());
  EXPECT_EQ(items[3]->objectName(), "mnuCut");
}

TEST_F(States, AJukeboxWithoutFoldersGreysWhatNeedsOne) {
  frmMain& window = ShowJukebox();
  EXPECT_EQ(GreyButtons(), QStringList());
  Focus(TreeOf(window));
  window.PVExplorer1().DeleteFolder(window.Jukebox().Nodes().ChildAt(0));
  EXPECT_EQ(GreyButtons(), (QStringList{"Button1", "Button2"}));
  EXPECT_EQ(GreyIn("mnuSongs"), (QStringList{"mnuPlaySeletedSongs", "mnuPlayAllTheSongInNode"}));
  EXPECT_EQ(GreyIn("mnuEdit"),
            (QStringList{"mnuRedo", "mnuCut", "mnuCopy", "mnuPaste", "mnuDelete"}));
  for (const char* const name :
       {"mnuAddFolderToRoot", "mnuAddFolderToSelectedFolder", "Button9", "Button10"}) {
    frame.statusBar()->clearMessage();
    Item(name).trigger();
    EXPECT_EQ(frame.statusBar()->currentMessage(),
              "This jukebox has no folders. To add one, right-click in the tree and choose New "
              "Folder.")
        << name;
  }
  Item("mnuUndo").trigger();
  EXPECT_EQ(GreyButtons(), QStringList());
}

TEST_F(States, TheWindowListFollowsTheWindows) {
  frmMain& window = ShowJukebox();
  EXPECT_EQ(GreyIn("mnuFile"), QStringList());
  EXPECT_EQ(GreyIn("mnuWindowList"), QStringList{"mnuArrageIcons"});
  SubOf(window).showMinimized();
  EXPECT_EQ(GreyIn("mnuWindowList"), (QStringList{"mnuCascade", "mnuTile"}));
}

}  // namespace
}  // namespace tallow

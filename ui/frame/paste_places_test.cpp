// SPDX-License-Identifier: GPL-3.0-or-later
// Pasting by key, by the Edit menu and by the pop-up menu, for each place that can have the
// keyboard focus.
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QMenu>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include "tests/frame_fixture.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

enum class Place {
  kFolder,       ///< a folder of the tree
  kBeside,       ///< in the tree, on the empty area beside the folders
  kSongs,        ///< a song of the list
  kBesideSongs,  ///< in the list, on the empty area below the songs
  kEmptyTree,    ///< the tree of a jukebox without folders
  kEmptyList,    ///< the list of a jukebox without folders
  kToolbar,      ///< a toolbar button, after a click into the tree
};
enum class Way { kKey, kEditItem, kPopUpItem };

/// What is on the clipboard.
enum class Carried { kSongs, kFolder };

class PastePlaces : public FrameTest {
 protected:
  static std::string ContentHash(const Folder& folder) {
    std::string content = folder.Text() + "(";
    for (const SongEntry& entry : folder.Items()) content += std::to_string(entry.SubItem()) + " ";
    for (std::int32_t k = 0; k < folder.Children(); ++k) content += ContentHash(folder.ChildAt(k));
    return content + ")";
  }
  static std::string ContentHash(const FolderTree& tree) {
    std::string content;
    for (std::int32_t k = 0; k < tree.Children(); ++k) content += ContentHash(tree.ChildAt(k));
    return content;
  }

  void Copy(Carried carried) {
    if (carried == Carried::kSongs) return tallow.clipboard.PutSongs({{2, 2}});
    Jukebox other;
    tallow.clipboard.PutFolder(other.Nodes().AddChild(nullptr, "copied"));
  }
  /// A jukebox window that fills the frame, with two folders or none.
  frmMain& NewWindow(bool with_folders) {
    frmMain& window = frame.NewJukeboxWindow();
    window.Jukebox().AddColumnHeader(kNameHeader);
    if (with_folders)
      for (const char* const text : {"one", "two"})
        window.Jukebox().Nodes().AddChild(nullptr, text).Items().emplace_back(1, 2);
    frame.show();
    frame.ShowJukeboxWindow(window);
    frame.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&frame));
    return window;
  }
  /// Clicks into a place.
  /// \returns the widget that was clicked, and the position
  std::pair<QWidget*, QPoint> GoTo(Place place, frmMain& window) {
    auto& tree = *window.findChild<FolderTreeView*>();
    auto& list = *window.findChild<SongListView*>();
    const QPoint second = tree.visualRect(tree.model()->index(1, 0)).center();
    const QPoint below(5, tree.viewport()->height() - 3);
    const bool in_list =
        place == Place::kSongs || place == Place::kBesideSongs || place == Place::kEmptyList;
    const QPoint at = place == Place::kFolder || place == Place::kToolbar ? second
                      : place == Place::kSongs                            ? QPoint(60, 8)
                                                                          : below;
    QWidget* const clicked = in_list ? list.viewport() : tree.viewport();
    QTest::mouseClick(clicked, Qt::LeftButton, {}, at);
    if (place != Place::kToolbar) return {clicked, at};
    auto* const bar = frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"));
    bar->widgetForAction(&Item("Button1"))->setFocus();
    return {clicked, at};
  }
  static void PopUpAndPaste(frmMain& window, QWidget* clicked, const QPoint& at) {
    QTest::mouseClick(clicked, Qt::RightButton, {}, at);
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, at, clicked->mapToGlobal(at));
    QApplication::sendEvent(clicked, &wanted);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    // Without a folder the list has no pop-up menu.
    if (menu == nullptr) return;
    for (QAction* const action : menu->actions())
      if (action->text() == "&Paste") action->trigger();
    menu->close();
    Q_UNUSED(window);
  }
  std::string ContentAfter(Place place, Way way, Carried carried) {
    frmMain& window = NewWindow(place != Place::kEmptyTree && place != Place::kEmptyList);
    Copy(carried);
    const auto [clicked, at] = GoTo(place, window);
    switch (way) {
      case Way::kKey:
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        break;
      case Way::kEditItem:
        Item("mnuPaste").trigger();
        break;
      case Way::kPopUpItem:
        PopUpAndPaste(window, clicked, at);
        break;
    }
    return ContentHash(window.Jukebox().Nodes());
  }
};

TEST_F(PastePlaces, EveryWayDoesTheSameInTheSamePlace) {
  struct Expected {
    Place place;
    std::string songs;
    std::string folder;
  };
  const Expected places[] = {
      {Place::kFolder, "one(1 )two(1 2 )", "one(1 )two(1 copied())"},
      {Place::kBeside, "one(1 )two(1 )", "one(1 )two(1 )copied()"},
      {Place::kSongs, "one(1 2 )two(1 )", "one(1 copied())two(1 )"},
      {Place::kBesideSongs, "one(1 2 )two(1 )", "one(1 copied())two(1 )"},
      {Place::kEmptyTree, "", "copied()"},
      {Place::kToolbar, "one(1 )two(1 2 )", "one(1 )two(1 copied())"},
  };
  for (const auto& [place, songs, folder] : places)
    for (const Way way : {Way::kKey, Way::kEditItem, Way::kPopUpItem}) {
      SCOPED_TRACE(std::to_string(static_cast<int>(place)) + " " +
                   std::to_string(static_cast<int>(way)));
      EXPECT_EQ(ContentAfter(place, way, Carried::kSongs), songs);
      EXPECT_EQ(ContentAfter(place, way, Carried::kFolder), folder);
    }
  for (const Way way : {Way::kKey, Way::kEditItem})
    EXPECT_EQ(ContentAfter(Place::kEmptyList, way, Carried::kFolder), "copied()");
}

TEST_F(PastePlaces, PastingSongsWithoutAFolderIsReported) {
  frmMain& window = NewWindow(true);
  Copy(Carried::kSongs);
  GoTo(Place::kBeside, window);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(frame.statusBar()->currentMessage(),
            "Songs go into a folder. Select a folder and paste again.");
}

TEST_F(PastePlaces, BesideTheFoldersOtherKeysDoNothingUntilAFolderIsCurrent) {
  frmMain& window = NewWindow(true);
  FolderTree& tree = window.Jukebox().Nodes();
  GoTo(Place::kBeside, window);
  messages.answer = MessageAnswer::kYes;
  QWidget* const focus = QApplication::focusWidget();
  QTest::keyClick(focus, Qt::Key_C, Qt::ControlModifier);
  QTest::keyClick(focus, Qt::Key_X, Qt::ControlModifier);
  QTest::keyClick(focus, Qt::Key_Delete);
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(ContentHash(tree), "one(1 )two(1 )");
  EXPECT_EQ(tallow.clipboard.CopiedFolder(), nullptr);
  // The shown folder stays shown, and after any key that moves through the tree, commands act on
  // folders again.
  EXPECT_EQ(window.Jukebox().selectednode(), &tree.ChildAt(0));
  QTest::keyClick(focus, Qt::Key_Up);
  QTest::keyClick(focus, Qt::Key_C, Qt::ControlModifier);
  ASSERT_NE(tallow.clipboard.CopiedFolder(), nullptr);
  EXPECT_EQ(tallow.clipboard.CopiedFolder()->Text(), "one");
}

TEST_F(PastePlaces, TheTreesSelectionIsGreyWhileTheKeysAreForTheRoot) {
  frmMain& window = NewWindow(true);
  const auto& tree = *window.findChild<FolderTreeView*>();
  const auto mark = [&] { return tree.palette().color(QPalette::Active, QPalette::Highlight); };
  const auto is_grey = [&] {
    QCoreApplication::processEvents();
    return mark() == tree.palette().color(QPalette::Inactive, QPalette::Highlight);
  };
  GoTo(Place::kFolder, window);
  EXPECT_FALSE(is_grey());
  GoTo(Place::kBeside, window);
  EXPECT_TRUE(is_grey());
  GoTo(Place::kFolder, window);
  EXPECT_FALSE(is_grey());
}

}  // namespace
}  // namespace tallow

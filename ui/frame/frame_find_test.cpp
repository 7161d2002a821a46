// SPDX-License-Identifier: GPL-3.0-or-later
// Finding songs while typing, with the real field, list, menus and keys.
#include "ui/frame/frame_find.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include "tests/drag_and_drop.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

class FindWhileTyping : public FrameTest {
 protected:
  FindWhileTyping() {
    for (const char* const name : {"Blue Moon.mp3", "Moonlight.mp3", "Honeymoon.mp3", "Sun.mp3"}) {
      music.File(name);
      AddSong(music.path(), name);
    }
    tallow.preferences.SetSwitches({.find_field = true, .more_commands = true});
    window = &ShowJukebox();
    window->Jukebox().AddColumnHeader(kNameHeader);
    window->Jukebox().AddColumnHeader(kKeyHeader);
    Folder& other = Nodes().AddChild(nullptr, "two");
    for (const std::int32_t song : {3, 6}) other.Items().emplace_back(song, 2);
    QApplication::setActiveWindow(&frame);
    Q_UNUSED(QTest::qWaitForWindowActive(&frame));
  }

  QLineEdit& Field() { return *frame.findChild<QLineEdit*>(QStringLiteral("FindField")); }
  SongListView& List() { return *window->findChild<SongListView*>(QStringLiteral("ListView")); }
  FolderTreeView& Tree() { return *window->findChild<FolderTreeView*>(QStringLiteral("TreeView")); }
  PVExplorer& Explorer() { return window->PVExplorer1(); }
  Jukebox& Box() { return window->Jukebox(); }
  FolderTree& Nodes() { return window->Jukebox().Nodes(); }
  Folder& Top(const char* text) { return *Nodes().Find(text); }
  QMenu& ListMenu() { return *window->findChild<QMenu*>(QStringLiteral("ListMenu")); }
  QAction& ItemOfList(ListCommand command) {
    for (QAction* const action : ListMenu().actions())
      if (action->data().toInt() == static_cast<int>(command)) return *action;
    throw std::out_of_range("no such item");
  }
  void Type(const char* text) {
    Field().setFocus();
    QTest::keyClicks(&Field(), QLatin1String(text));
    // On a busy computer, the last keys may be searched together.
    QCoreApplication::processEvents();
  }
  QString Status() { return frame.statusBar()->currentMessage(); }
  int ColumnOf(const char* header) {
    const QAbstractItemModel& songs = *List().model();
    int column = 0;
    while (column < songs.columnCount() &&
           songs.headerData(column, Qt::Horizontal).toString() != QLatin1String(header))
      ++column;
    return column;
  }
  std::string InFolder(const char* text) {
    std::string songs;
    for (const SongEntry& entry : Top(text).Items()) songs += std::to_string(entry.SubItem()) + " ";
    return songs;
  }

  frmMain* window = nullptr;
};

const QStringList kOne{"1.  a.mp3", "2.  b.mp3"};

TEST_F(FindWhileTyping, TheListShowsTheHitsFromTheFirstLetterOn) {
  Type("m");
  EXPECT_TRUE(Box().ShowsHits());
  EXPECT_GE(List().model()->rowCount(), 3);
  Type("OON");
  QStringList hits = RowsOf(List());
  // The first two are in the order of their file names.
  EXPECT_EQ(hits, (QStringList{"1.  Blue Moon.mp3", "2.  Moonlight.mp3", "3.  Honeymoon.mp3"}));
  EXPECT_EQ(Box().selectednode(), &Top("one"));
}

TEST_F(FindWhileTyping, TheStatusBarShowsTheNumberOfHitsAndTheTime) {
  const auto matches = [this](const char* pattern) {
    return QRegularExpression(QLatin1String(pattern)).match(Status()).hasMatch();
  };
  Type("moon");
  EXPECT_TRUE(matches("^3 songs found in (under 1|[1-9][\\d,]*) ms$")) << Status().toStdString();
  Type(" blue");
  EXPECT_TRUE(matches("^1 song found in (under 1|[1-9][\\d,]*) ms$")) << Status().toStdString();
  Type(" x");
  EXPECT_TRUE(matches("^No songs found in (under 1|[1-9][\\d,]*) ms$")) << Status().toStdString();
  EXPECT_EQ(List().model()->rowCount(), 0);
  Field().clear();
  EXPECT_EQ(Status(), QString());
}

TEST_F(FindWhileTyping, NewSongsJoinTheHits) {
  Type("moon");
  EXPECT_EQ(List().model()->rowCount(), 3);
  List().SelectRows({1});
  AddSong(music.path(), "A Moon.mp3");
  EXPECT_TRUE(QTest::qWaitFor([&] { return List().model()->rowCount() == 4; }));
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  A Moon.mp3", "2.  Blue Moon.mp3", "3.  Moonlight.mp3",
                                         "4.  Honeymoon.mp3"}));
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{2});
  EXPECT_TRUE(Status().startsWith(QStringLiteral("4 songs found in ")));
  // A later message stays.
  frame.statusBar()->showMessage(QStringLiteral("later"));
  AddSong(music.path(), "B Moon.mp3");
  EXPECT_TRUE(QTest::qWaitFor([&] { return List().model()->rowCount() == 5; }));
  EXPECT_EQ(Status(), "later");
}

TEST_F(FindWhileTyping, AMinimizedJukeboxIsRestoredToShowTheHits) {
  window->parentWidget()->showMinimized();
  ASSERT_TRUE(window->parentWidget()->isMinimized());
  Type("moon");
  EXPECT_FALSE(window->parentWidget()->isMinimized());
  EXPECT_TRUE(Box().ShowsHits());
  EXPECT_EQ(List().model()->rowCount(), 3);
  EXPECT_TRUE(Field().hasFocus());
  EXPECT_EQ(Field().text(), "moon");
}

TEST_F(FindWhileTyping, WithoutHitsTheKeyboardStaysInTheField) {
  Type("xyzzy");
  EXPECT_EQ(List().model()->rowCount(), 0);
  QTest::keyClick(&Field(), Qt::Key_Down);
  EXPECT_TRUE(Field().hasFocus());
  EXPECT_EQ(Field().text(), "xyzzy");
  Item("mnuPlayAllTheSongInNode").trigger();
  EXPECT_EQ(Status(), "No songs were found to play.");
}

TEST_F(FindWhileTyping, SongsThatAreGoneLeaveTheHits) {
  Type("moon");
  library.Mp3Info(kFileIsThere, 3, "0");
  EXPECT_TRUE(QTest::qWaitFor([&] { return List().model()->rowCount() == 2; }));
}

TEST_F(FindWhileTyping, HitsThatTheUserHasSortedStay) {
  Type("moon");
  QTest::mouseClick(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  const QStringList sorted = RowsOf(List());
  ASSERT_EQ(sorted.front(), "1.  Blue Moon.mp3");
  ASSERT_EQ(sorted[1], "2.  Honeymoon.mp3");
  AddSong(music.path(), "A Moon.mp3");
  auto* const timer = frame.findChild<QTimer*>(QStringLiteral("RenewalTimer"));
  ASSERT_TRUE(timer->isActive());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !timer->isActive(); }));
  EXPECT_EQ(RowsOf(List()), sorted);
  // The next text is searched anew.
  Type(" ");
  EXPECT_EQ(List().model()->rowCount(), 4);
}

TEST_F(FindWhileTyping, TheFieldIsAtTheRightEndOfTheToolbarAndHasAName) {
  const auto* const bar = frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"));
  EXPECT_TRUE(Field().isVisible());
  EXPECT_EQ(Field().placeholderText(), "Find songs");
  EXPECT_EQ(Field().accessibleName(), "Find songs");
  EXPECT_EQ(bar->actions().back(), bar->actionAt(Field().geometry().center()));
  EXPECT_GE(Field().geometry().right(), bar->width() - 20);
}

TEST_F(FindWhileTyping, ThePlaceholderHasTheColourOfTheText) {
  QPalette dark = frame.palette();
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::PlaceholderText, Qt::black);
  frame.setPalette(dark);
  EXPECT_EQ(Field().palette().color(QPalette::PlaceholderText).rgb(), QColor(Qt::white).rgb());
}

TEST_F(FindWhileTyping, TheEditMenuHasAnItemThatGoesToTheField) {
  Explorer().GrabFocus(true);
  EXPECT_TRUE(Item("mnuFindField").isVisible());
  Item("mnuFindField").trigger();
  EXPECT_TRUE(Field().hasFocus());
  tallow.preferences.SetSwitches({});
  EXPECT_FALSE(Item("mnuFindField").isVisible());
}

TEST_F(FindWhileTyping, InANarrowWindowCtrlEShowsTheFieldUntilItIsLeft) {
  frame.resize(frame.minimumSize());
  QCoreApplication::processEvents();
  auto* const bar = frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"));
  const auto* const rest = bar->findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
  const int height = bar->height();
  ASSERT_FALSE(Field().isVisible());
  Explorer().GrabFocus(true);
  for (int times = 0; times < 2; ++times) {
    QTest::keyClick(&List(), Qt::Key_E, Qt::ControlModifier);
    ASSERT_TRUE(Field().isVisible());
    EXPECT_TRUE(Field().hasFocus());
    EXPECT_TRUE(bar->rect().contains(Field().geometry()));
    QTest::keyClicks(&Field(), "moon");
    // The pointer leaves the toolbar.
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(bar, &leave);
    QTest::qWait(600);
    EXPECT_TRUE(Field().hasFocus());
    EXPECT_TRUE(Box().ShowsHits());
    QTest::keyClick(&Field(), Qt::Key_Escape);
    EXPECT_TRUE(List().hasFocus());
    EXPECT_FALSE(rest->isChecked());
    EXPECT_FALSE(Field().isVisible());
    EXPECT_EQ(bar->height(), height);
  }
}

TEST_F(FindWhileTyping, CtrlEGoesToTheFieldAndSelectsItsText) {
  Explorer().GrabFocus(true);
  QTest::keyClick(&List(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(Field().hasFocus());
  Type("sun");
  QTest::keyClick(&Field(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(Field().selectedText(), "sun");
}

TEST_F(FindWhileTyping, TheClassicStyleHasNoFieldAndNoKey) {
  Type("moon");
  tallow.preferences.SetSwitches({});
  // The toolbar hides its widgets when it is laid out.
  QCoreApplication::processEvents();
  EXPECT_FALSE(Field().isVisible());
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(RowsOf(List()), kOne);
  Explorer().GrabFocus(true);
  QTest::keyClick(&List(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(List().hasFocus());
}

TEST_F(FindWhileTyping, EscGivesTheFolderBackAsItWas) {
  for (int k = 0; k < 200; ++k) Top("one").Items().emplace_back(1 + k % 2, 2);
  Box().ListRefilled(library);
  List().SelectRows({100, 101, 103});
  const int scrolled = List().verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);
  const std::vector<int> rows = Explorer().SelectedRows();
  Explorer().GrabFocus(true);
  Type("moon");
  EXPECT_EQ(List().verticalScrollBar()->value(), 0);
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(Field().text(), QString());
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(List().verticalScrollBar()->value(), scrolled);
  EXPECT_EQ(Explorer().SelectedRows().size(), rows.size());
  EXPECT_TRUE(List().hasFocus());
}

TEST_F(FindWhileTyping, EscSelectsTheSameEntryOfASongThatTheFolderHoldsTwice) {
  Top("one").Items().emplace_back(1, 2);
  Box().ListRefilled(library);
  List().SelectRows(2, 2);
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{2});
  EXPECT_EQ(List().currentIndex().row(), 2);
}

TEST_F(FindWhileTyping, EscSelectsASongThatGotAnotherRecordNumber) {
  List().SelectRows(1, 1);
  Type("moon");
  // As when the file of a missing song is found in another folder.
  music.File("b2.mp3");
  AddSong(music.path(), "b2.mp3");
  Box().Renumber({{2, library.UBoundOfMp3Array()}});
  Box().ListRefilled(library);
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  a.mp3", "2.  b2.mp3"}));
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  EXPECT_EQ(List().currentIndex().row(), 1);
}

TEST_F(FindWhileTyping, NoFolderIsMarkedWhileHitsAreShown) {
  EXPECT_TRUE(Tree().selectionModel()->isSelected(IndexOf(Tree(), "one")));
  Type("moon");
  EXPECT_FALSE(Tree().selectionModel()->hasSelection());
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_TRUE(Tree().selectionModel()->isSelected(IndexOf(Tree(), "one")));
  Type("moon");
  Explorer().Select(Top("two"));
  EXPECT_EQ(Tree().selectionModel()->selectedIndexes(), QModelIndexList{IndexOf(Tree(), "two")});
}

TEST_F(FindWhileTyping, EscInTheTreeGivesTheFolderBack) {
  Type("moon");
  Tree().setFocus();
  QTest::keyClick(&Tree(), Qt::Key_Escape);
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(Field().text(), QString());
  EXPECT_TRUE(Tree().hasFocus());
}

TEST_F(FindWhileTyping, TheEndOfASearchRemovesWhatWasSaidAboutIt) {
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(Status(), QString());
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_NE(Status(), QString());
  QTest::keyClick(&List(), Qt::Key_Escape);
  EXPECT_EQ(Status(), QString());
  Type("moon");
  Explorer().Select(Top("two"));
  EXPECT_EQ(Status(), QString());
  Type("moon");
  Item("mnuAddFolderToRoot").trigger();
  EXPECT_EQ(Status(), QString());
  EXPECT_EQ(Field().text(), QString());
}

TEST_F(FindWhileTyping, EscInTheListGivesTheFolderBack) {
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Escape);
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(Field().text(), QString());
  EXPECT_TRUE(List().hasFocus());
}

TEST_F(FindWhileTyping, AnEmptiedFieldGivesTheFolderBackAndKeepsTheFocus) {
  Type("s");
  QTest::keyClick(&Field(), Qt::Key_Backspace);
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_TRUE(Field().hasFocus());
  Type(" ");
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(Field().text(), " ");
}

TEST_F(FindWhileTyping, AnotherFolderEndsTheHits) {
  Type("moon");
  Explorer().Select(Top("two"));
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  Blue Moon.mp3", "2.  Sun.mp3"}));
  EXPECT_EQ(Field().text(), QString());
  Type("moon");
  // A click on the folder that is chosen already.
  QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {},
                    Tree().visualRect(IndexOf(Tree(), "two")).center());
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  Blue Moon.mp3", "2.  Sun.mp3"}));
  EXPECT_EQ(Field().text(), QString());
}

TEST_F(FindWhileTyping, AnotherWindowEndsTheHits) {
  Type("moon");
  frmMain& other = frame.NewJukeboxWindow();
  frame.ShowJukeboxWindow(other);
  EXPECT_EQ(Field().text(), QString());
  EXPECT_FALSE(Box().ShowsHits());
  Type("sun");
  EXPECT_TRUE(other.Jukebox().ShowsHits());
  EXPECT_FALSE(Box().ShowsHits());
}

TEST_F(FindWhileTyping, AClosedWindowClearsTheField) {
  Type("moon");
  window->parentWidget()->close();
  DeleteClosedWindows();
  EXPECT_EQ(Field().text(), QString());
  Type("m");
  EXPECT_EQ(Status(), "No jukebox is open. Open one, or make a new one, and try again.");
  ShowJukebox();
  EXPECT_EQ(Status(), QString());
  EXPECT_EQ(Field().text(), QString());
}

TEST_F(FindWhileTyping, DownGoesToTheFirstHit) {
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  EXPECT_TRUE(List().hasFocus());
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{0});
}

TEST_F(FindWhileTyping, EnterPlaysTheHits) {
  tallow.preferences.SetSwitches({.plays_on = true, .find_field = true});
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Return);
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{3, 4, 5}));
  EXPECT_EQ(HandOvers(), 1);
  // While the key is held down, it does not play again.
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
  QApplication::sendEvent(&Field(), &held);
  EXPECT_EQ(HandOvers(), 0);
}

TEST_F(FindWhileTyping, CtrlLPlaysAllHits) {
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_L, Qt::ControlModifier);
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{3, 4, 5}));
  EXPECT_EQ(HandOvers(), 1);
}

TEST_F(FindWhileTyping, HitsAreCopiedButNotCutOrDeletedAndTakeNothing) {
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_C, Qt::ControlModifier);
  for (const int key : {int(Qt::Key_X), int(Qt::Key_Delete)}) {
    QTest::keyClick(&List(), Qt::Key(key), key == Qt::Key_X ? Qt::ControlModifier : Qt::NoModifier);
    EXPECT_EQ(Status(),
              "The list shows the songs found. Show a song in its folder to remove it there.");
  }
  QTest::keyClick(&List(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Status(), "The list shows the songs found. Songs can be pasted only into a folder.");
  EXPECT_EQ(List().model()->rowCount(), 3);
  EXPECT_EQ(InFolder("one"), "1 2 ");
  EXPECT_FALSE(Box().History().CanUndo());
  QTest::keyClick(&List(), Qt::Key_Escape);
  QTest::keyClick(&List(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(InFolder("one"), "1 2 3 ");
}

TEST_F(FindWhileTyping, TheMenuOffersWhatHitsCanDo) {
  const auto open = [this] {
    const QPoint place = List().visualRect(List().model()->index(0, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, List().viewport()->mapToGlobal(place));
    QApplication::sendEvent(List().viewport(), &event);
    ListMenu().close();
  };
  List().SelectRows(0, 0);
  open();
  EXPECT_FALSE(ItemOfList(ListCommand::kShowInFolder).isEnabled());
  EXPECT_TRUE(ItemOfList(ListCommand::kCutSongs).isEnabled());
  Type("moon");
  List().SelectRows(0, 0);
  open();
  for (const ListCommand command :
       {ListCommand::kCutSongs, ListCommand::kPasteSongs, ListCommand::kDeleteSongs})
    EXPECT_FALSE(ItemOfList(command).isEnabled());
  for (const ListCommand command :
       {ListCommand::kShowInFolder, ListCommand::kCopySongs, ListCommand::kAddToQueue})
    EXPECT_TRUE(ItemOfList(command).isEnabled());
  EXPECT_TRUE(ItemOfList(ListCommand::kShowInFolder).isVisible());
  // Without the field there are no hits to show in a folder.
  tallow.preferences.SetSwitches({});
  open();
  EXPECT_FALSE(ItemOfList(ListCommand::kShowInFolder).isVisible());
}

TEST_F(FindWhileTyping, HitsAreDraggedIntoAFolderAsCopies) {
  Type("moon");
  List().SelectRows({1, 2});
  const auto data = Explorer().SongsToDrag();
  ASSERT_NE(data, nullptr);
  const QPoint on_two = Tree().visualRect(IndexOf(Tree(), "two")).center();
  EXPECT_TRUE(DropAt(Tree(), on_two, *data));
  EXPECT_EQ(InFolder("two"), "3 6 4 5 ");
  EXPECT_EQ(List().model()->rowCount(), 3);
}

TEST_F(FindWhileTyping, NothingIsDroppedOnHits) {
  Type("moon");
  const auto data = Explorer().FolderToDrag();
  ASSERT_NE(data, nullptr);
  EXPECT_FALSE(DropAt(List(), QPoint(20, 20), *data));
}

TEST_F(FindWhileTyping, ShowInFolderShowsAHitInAFolder) {
  Type("sun");
  List().SelectRows(0, 0);
  ItemOfList(ListCommand::kShowInFolder).setEnabled(true);
  ItemOfList(ListCommand::kShowInFolder).trigger();
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(Box().selectednode(), &Top("two"));
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  EXPECT_TRUE(List().hasFocus());
  EXPECT_EQ(Field().text(), QString());
}

TEST_F(FindWhileTyping, ASongOfNoFolderCannotBeShownInOne) {
  Type("honey");
  List().SelectRows(0, 0);
  ItemOfList(ListCommand::kShowInFolder).setEnabled(true);
  ItemOfList(ListCommand::kShowInFolder).trigger();
  EXPECT_EQ(Status(), "No folder of this jukebox has this song.");
  EXPECT_TRUE(Box().ShowsHits());
}

TEST_F(FindWhileTyping, ASongWhoseFileIsGoneCannotBeShownInAFolder) {
  Type("sun");
  List().SelectRows(0, 0);
  // As the row of a missing song is.
  for (const int column : {1, 2, 3}) library.Mp3Info(column, 6, "0");
  ItemOfList(ListCommand::kShowInFolder).setEnabled(true);
  ItemOfList(ListCommand::kShowInFolder).trigger();
  EXPECT_EQ(Status(), "The file of this song is missing.");
}

TEST_F(FindWhileTyping, FindsWordsWithAccentsByTheirPlainLetters) {
  music.File("Beyonc\xC3\xA9 - Halo.mp3");
  AddSong(music.path(), "Beyonc\xC3\xA9 - Halo.mp3");
  Type("beyonce");
  EXPECT_EQ(RowsOf(List()), QStringList{QStringLiteral("1.  Beyonc\u00E9 - Halo.mp3")});
}

TEST_F(FindWhileTyping, HitsAreRanked) {
  Type("sun");
  List().SelectRows(0, 0);
  window->Run(ListCommand::kRankBest, Box().ListFolder());
  EXPECT_EQ(library.Mp3Info(kSongRank, 6), "7");
  EXPECT_EQ(Box().ListFolder()->Items().front().Icon(), 7);
  Explorer().Select(Top("two"));
  EXPECT_EQ(Box().selectednode()->Items().back().Icon(), 7);
}

TEST_F(FindWhileTyping, UndoOfARankingKeepsTheHits) {
  Type("sun");
  List().SelectRows(0, 0);
  window->Run(ListCommand::kRankBest, Box().ListFolder());
  Explorer().Undo();
  EXPECT_TRUE(Box().ShowsHits());
  EXPECT_EQ(library.Mp3Info(kSongRank, 6), "2");
  EXPECT_EQ(Box().ListFolder()->Items().front().Icon(), 2);
  Explorer().Redo();
  EXPECT_EQ(library.Mp3Info(kSongRank, 6), "7");
  EXPECT_TRUE(Box().ShowsHits());
}

TEST_F(FindWhileTyping, SortingHitsChangesNoFolder) {
  Type("moon");
  for (int clicks = 0; clicks < 2; ++clicks)
    QTest::mouseClick(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  EXPECT_EQ(RowsOf(List()),
            (QStringList{"1.  Moonlight.mp3", "2.  Honeymoon.mp3", "3.  Blue Moon.mp3"}));
  EXPECT_FALSE(Box().History().CanUndo());
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(List().model()->headerData(0, Qt::Horizontal).toString().toStdString(), kNameHeader);
}

TEST_F(FindWhileTyping, HitsAreSortedByAColumnAndTheFolderIsNot) {
  tallow.preferences.SetSwitches(
      {.columns_of_details = true, .find_field = true, .more_commands = true});
  Type("moon");
  const QHeaderView& header = *List().horizontalHeader();
  int title = 0;
  while (List().model()->headerData(title, Qt::Horizontal).toString() != "Title") ++title;
  const auto click = [&] {
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      QPoint(header.sectionViewportPosition(title) + 10, 8));
    return RowsOf(List(), title);
  };
  QStringList titles{"Blue Moon", "Honeymoon", "Moonlight"};
  EXPECT_EQ(click(), titles);
  std::reverse(titles.begin(), titles.end());
  EXPECT_EQ(click(), titles);
  EXPECT_TRUE(header.isSortIndicatorShown());
  EXPECT_FALSE(Box().History().CanUndo());
  QTest::keyClick(&Field(), Qt::Key_Escape);
  EXPECT_EQ(RowsOf(List(), title), (QStringList{"a", "b"}));
  EXPECT_FALSE(header.isSortIndicatorShown());
}

TEST_F(FindWhileTyping, HitsArePlayedNextOrAddedToTheQueue) {
  std::vector<std::int32_t> next;
  QObject::connect(window, &frmMain::PlayNext,
                   [&](const std::vector<std::int32_t>& songs) { next = songs; });
  Type("moon");
  List().SelectRows({1, 2});
  window->Run(ListCommand::kPlayNext, Box().ListFolder());
  EXPECT_EQ(next, (std::vector<std::int32_t>{4, 5}));
  EXPECT_EQ(tallow.SongsToPlay, next);
  EXPECT_EQ(HandOvers(), 1);
  List().SelectRows({0});
  window->Run(ListCommand::kAddToQueue, Box().ListFolder());
  EXPECT_EQ(tallow.SongsToPlay, std::vector<std::int32_t>{3});
  EXPECT_TRUE(Box().ShowsHits());
}

TEST_F(FindWhileTyping, UndoShowsTheFolderThatItChanges) {
  List().SelectRows(0, 0);
  Explorer().CutSongs();
  EXPECT_EQ(InFolder("one"), "2 ");
  Type("moon");
  Explorer().Undo();
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(InFolder("one"), "1 2 ");
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{0});
}

TEST_F(FindWhileTyping, UndoOfARankingGivesTheArrowOfTheFolderBack) {
  tallow.preferences.SetSwitches(
      {.columns_of_details = true, .find_field = true, .more_commands = true});
  const QHeaderView& header = *List().horizontalHeader();
  const int title = ColumnOf("Title");
  const auto sort = [&] {
    const int x = header.sectionViewportPosition(title) + header.sectionSize(title) / 2;
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(x, 8));
  };
  sort();
  List().SelectRows(1, 1);
  QTest::keyClick(&List(), Qt::Key_7, Qt::ControlModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 2), "7");
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 2), "2");
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  EXPECT_TRUE(header.isSortIndicatorShown());
  EXPECT_EQ(header.sortIndicatorSection(), title);
  sort();
  EXPECT_EQ(header.sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(InFolder("one"), "2 1 ");
}

TEST_F(FindWhileTyping, UndoAndRedoOfAMoveKeepTheSelectionOfTheFolder) {
  List().SelectRows(1, 1);
  QTest::keyClick(&List(), Qt::Key_Up, Qt::AltModifier);
  ASSERT_EQ(InFolder("one"), "2 1 ");
  const auto step = [this](Qt::KeyboardModifiers keys) {
    Type("moon");
    QTest::keyClick(&Field(), Qt::Key_Down);
    QTest::keyClick(&List(), Qt::Key_Z, keys);
    EXPECT_FALSE(Box().ShowsHits());
    EXPECT_EQ(Field().text(), QString());
  };
  step(Qt::ControlModifier);
  EXPECT_EQ(InFolder("one"), "1 2 ");
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  step(Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(InFolder("one"), "2 1 ");
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{0});
}

TEST_F(FindWhileTyping, UndoOfASortKeepsTheSelectionOfTheFolder) {
  for (int clicks = 0; clicks < 2; ++clicks)
    QTest::mouseClick(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  ASSERT_EQ(InFolder("one"), "2 1 ");
  List().SelectRows(0, 0);
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(InFolder("one"), "1 2 ");
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  EXPECT_EQ(List().currentIndex().row(), 1);
}

TEST_F(FindWhileTyping, UndoAndRedoOfADeletionSelectTheSongs) {
  Explorer().GrabFocus(true);
  List().SelectRows(0, 0);
  QTest::keyClick(&List(), Qt::Key_Delete);
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(RowsOf(List()), kOne);
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{0});
  Type("moon");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(RowsOf(List()), QStringList{"1.  b.mp3"});
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{0});
}

TEST_F(FindWhileTyping, TheFindDialogLeavesTheHits) {
  Type("moon");
  EXPECT_EQ(Explorer().SelectSong(Top("one"), 1), 1);
  EXPECT_FALSE(Box().ShowsHits());
  EXPECT_EQ(Explorer().SelectedRows(), std::vector<int>{1});
  EXPECT_EQ(Field().text(), QString());
}

TEST_F(FindWhileTyping, HitsAreRankedAndQueuedByTheirKeysAndMenu) {
  Type("sun");
  QTest::keyClick(&Field(), Qt::Key_Down);
  QTest::keyClick(&List(), Qt::Key_5, Qt::ControlModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 6), "5");
  EXPECT_TRUE(Box().ShowsHits());
  std::vector<std::int32_t> queued;
  QObject::connect(window, &frmMain::AddToQueue,
                   [&](const std::vector<std::int32_t>& songs) { queued = songs; });
  ItemOfList(ListCommand::kAddToQueue).trigger();
  EXPECT_EQ(queued, std::vector<std::int32_t>{6});
  EXPECT_TRUE(Box().ShowsHits());
}

}  // namespace
}  // namespace tallow

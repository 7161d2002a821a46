// SPDX-License-Identifier: GPL-3.0-or-later
// Where the user is in the list of songs after it has changed, and what opens a song.
#include <gtest/gtest.h>

#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>

#include "jukebox/window/explorer_drag.h"
#include "jukebox/window/pop_up_menus.h"
#include "tests/drag_and_drop.h"
#include "tests/jukebox_window_fixture.h"
#include "tests/tagged_file.h"

namespace tallow {
namespace {

class Selection : public JukeboxWindowTest {
 protected:
  static constexpr int kSongs = 300;
  static constexpr int kFar = 200;

  /// A long list on show, scrolled to a row that is selected.
  Folder& LongList() {
    AddSongs(kSongs);
    Songs records;
    for (int k = 1; k <= kSongs; ++k) records.push_back(k);
    Folder& one = AddFolder("one", records);
    AddFolder("two");
    Show();
    List().setFocus();
    List().SelectRows(kFar, kFar);
    return one;
  }
  bool IsOnShow(int row) {
    return List().viewport()->rect().intersects(List().visualRect(List().model()->index(row, 0)));
  }
  void DropOn(const QString& folder, const QMimeData& data) {
    EXPECT_TRUE(DropAt(Tree(), Tree().visualRect(IndexOf(Tree(), folder)).center(), data));
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&List(), key, modifiers);
  }
};

TEST_F(Selection, TheNextSongTakesThePlaceOfOnesThatAreDraggedAway) {
  LongList();
  const auto drag = window.PVExplorer1().SongsToDrag();
  DropOn("two", *drag);
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_TRUE(IsOnShow(kFar));
  Press(Qt::Key_Down);
  EXPECT_EQ(Selected(), std::vector<int>{kFar + 1});
}

TEST_F(Selection, SongsThatAnUndoBringsBackAreSelected) {
  LongList();
  List().SelectRows({kFar, kFar + 2, kFar + 3});
  Press(Qt::Key_X, Qt::ControlModifier);
  List().SelectRows(0, 0);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Selected(), (std::vector<int>{kFar, kFar + 2, kFar + 3}));
  EXPECT_TRUE(IsOnShow(kFar));
  // Taken again, the next one is selected as when they were cut.
  Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_EQ(List().currentIndex().row(), kFar);
}

TEST_F(Selection, SongsThatAnUndoBringsBackToAnotherFolderAreSelectedThere) {
  LongList();
  Press(Qt::Key_X, Qt::ControlModifier);
  Click("two");
  window.PVExplorer1().Undo();
  EXPECT_EQ(Box().selectednode()->Text(), "one");
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_TRUE(IsOnShow(kFar));
}

TEST_F(Selection, AnUndonePasteSelectsWhatComesNext) {
  LongList();
  Press(Qt::Key_C, Qt::ControlModifier);
  Click("two");
  window.PVExplorer1().Paste(Box().selectednode());
  EXPECT_EQ(Selected(), std::vector<int>{0});
  window.PVExplorer1().Undo();
  EXPECT_EQ(Selected(), std::vector<int>{});
  window.PVExplorer1().Redo();
  EXPECT_EQ(Selected(), std::vector<int>{0});
}

TEST_F(Selection, StaysWithThePlacesWhenASortIsUndone) {
  LongList();
  ClickHeader();
  ClickHeader();
  List().SelectRows({kFar, kFar + 2});
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Selected(), (std::vector<int>{kFar, kFar + 2}));
  EXPECT_EQ(List().currentIndex().row(), kFar);
  EXPECT_TRUE(IsOnShow(kFar));
  // The next click begins with the first order again.
  ClickHeader();
  EXPECT_EQ(Header(), "Name    --   ");
  EXPECT_EQ(Box().SortState(), 2);
}

TEST_F(Selection, IsCutWhereAnUndoneSortFindsSongsMissing) {
  LongList();
  ClickHeader();
  ClickHeader();
  List().SelectRows(kSongs - 8, kSongs - 1);
  library.Mp3Info(kFileIsThere, 7, "0");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(List().model()->rowCount(), kSongs - 1);
  EXPECT_EQ(Selected().size(), 7U);
}

TEST_F(Selection, NewFilesForAnotherFolderLeaveTheListWhereItIs) {
  LongList();
  List().SelectRows({kFar, kFar + 2});
  const int scrolled = List().verticalScrollBar()->value();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(
      QString::fromStdString(music.File("fresh.mp3", Audio(300) + Tag({.artist = "ABBA"}))))});
  DropOn("two", data);
  EXPECT_EQ(SongsOf(*Nodes().Find("two")), Songs{kSongs + 1});
  EXPECT_EQ(Selected(), (std::vector<int>{kFar, kFar + 2}));
  EXPECT_EQ(List().verticalScrollBar()->value(), scrolled);
  EXPECT_GT(scrolled, 0);
}

TEST_F(Selection, SongsDroppedOnTheFolderOnShowAreSelected) {
  AddSongs(3);
  AddFolder("here", {1});
  Show();
  frmMain other(tallow, messages.Shower());
  other.Jukebox().AddColumnHeader(kNameHeader);
  Folder& there = other.Jukebox().Nodes().AddChild(nullptr, "there");
  for (const int song : {1, 2, 3}) there.Items().emplace_back(song, 2);
  other.show();
  other.ShowJukebox();
  ListOf(other).SelectRows(0, 2);
  const auto drag = other.PVExplorer1().SongsToDrag();
  DropOn("here", *drag);
  // The first one was there already.
  EXPECT_EQ(Selected(), (std::vector<int>{1, 2}));
}

TEST_F(Selection, AFolderThatLiesTooDeepLeavesTheOtherWindowAsItIs) {
  Folder* deep = &AddFolder("top");
  while (deep->Level() < kMostLevel) deep = &AddFolder("x", {}, deep);
  Show();
  window.PVExplorer1().Select(*deep);
  frmMain other(tallow, messages.Shower());
  other.Jukebox().AddColumnHeader(kNameHeader);
  Folder& a = other.Jukebox().Nodes().AddChild(nullptr, "a");
  other.Jukebox().Nodes().AddChild(nullptr, "b");
  other.show();
  other.ShowJukebox();
  other.PVExplorer1().Select(a);
  const auto drag = other.PVExplorer1().FolderToDrag();
  EXPECT_TRUE(DropAt(List(), QPoint(10, 60), *drag));
  EXPECT_EQ(problems, QStringList{"Folders may lie at most 1000 deep. Put this one further up."});
  EXPECT_EQ(other.Jukebox().selectednode(), &a);
  EXPECT_EQ(other.Jukebox().Nodes().Count(), 2);
}

TEST_F(Selection, OnlyTheLeftButtonOpensASong) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  const QPoint place = List().visualRect(List().model()->index(0, 0)).center();
  const QPointF on_screen = List().viewport()->mapToGlobal(QPointF(place));
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton})
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
      const bool held = type != QEvent::MouseButtonRelease;
      QMouseEvent event(type, place, on_screen, button, held ? button : Qt::NoButton, {});
      QApplication::sendEvent(List().viewport(), &event);
    }
  EXPECT_TRUE(played.empty());
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(played.size(), 1U);
}

TEST_F(Selection, EnterAndBackspaceActOnlyAlone) {
  AddSongs(1);
  Folder& above = AddFolder("above");
  AddFolder("one", {1}, &above);
  Show();
  window.PVExplorer1().Select(above.ChildAt(0));
  List().SelectRows(0, 0);
  for (const Qt::KeyboardModifier with : {Qt::AltModifier, Qt::ControlModifier}) {
    Press(Qt::Key_Return, with);
    Press(Qt::Key_Backspace, with);
  }
  EXPECT_TRUE(played.empty());
  EXPECT_EQ(Box().selectednode(), &above.ChildAt(0));
  Press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(played.size(), 1U);
}

TEST_F(Selection, ASortThatStopsLeavesTheListAsItsSongsAre) {
  for (int k = 1; k <= 12; ++k)
    AddSong(music.path(), "x.mp3", "1", k == 7 ? "x" : std::to_string(2 + k % 6));
  Songs records;
  for (int k = 12; k >= 1; --k) records.push_back(k);
  Folder& one = AddFolder("one", records);
  Show();
  for (int click = 1; click <= 3; ++click) ClickHeader();
  EXPECT_EQ(problems.size(), 1);
  for (std::size_t k = 0; k < one.Items().size(); ++k) {
    const SongEntry& entry = one.Items()[k];
    EXPECT_EQ(entry.LabelPosition(), static_cast<std::int32_t>(k) + 1);
    const std::string rank(library.Mp3Info(kSongRank, entry.SubItem()));
    EXPECT_EQ(std::to_string(entry.Icon()), rank == "x" ? "0" : rank);
  }
}

TEST_F(Selection, TheMenuOffersWhatCanBeDoneThere) {
  AddFolder("one");
  Show();
  auto& menu = *window.findChild<QMenu*>(QStringLiteral("TreeMenu"));
  const auto open = [&](const QPoint& place) {
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, place,
                             Tree().viewport()->mapToGlobal(place));
    QApplication::sendEvent(Tree().viewport(), &wanted);
    menu.close();
    QList<int> grey;
    for (const QAction* const action : menu.findChildren<QAction*>())
      if (!action->isEnabled()) grey.append(action->data().toInt());
    std::sort(grey.begin(), grey.end());
    return grey;
  };
  const auto beside = [&] { return open(QPoint(5, Tree().viewport()->height() - 3)); };
  const auto on_folder = [&] { return open(Tree().visualRect(IndexOf(Tree(), "one")).center()); };
  EXPECT_EQ(beside(), (QList<int>{kAddFolderToSelected, kCutFolder, kCopyFolder, kPasteFolder,
                                  kDeleteFolder}));
  EXPECT_EQ(on_folder(), QList<int>{kPasteFolder});
  // Songs go into folders only.
  tallow.clipboard.PutSongs({{1, 2}});
  EXPECT_TRUE(beside().contains(kPasteFolder));
  EXPECT_EQ(on_folder(), QList<int>{});
  tallow.clipboard.PutFolder(Nodes().ChildAt(0));
  EXPECT_FALSE(beside().contains(kPasteFolder));
  EXPECT_EQ(on_folder(), QList<int>{});
}

TEST_F(Selection, TheMenuKeyOpensTheMenuNearTheNameOfTheSong) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  window.resize(1600, 500);
  Show();
  List().setFocus();
  List().SelectRows(1, 1);
  auto& menu = *window.findChild<QMenu*>(QStringLiteral("ListMenu"));
  Press(Qt::Key_F10, Qt::ShiftModifier);
  const QRect row = List().visualRect(List().model()->index(1, 0));
  const QPoint place = List().viewport()->mapFromGlobal(menu.pos());
  EXPECT_TRUE(menu.isVisible());
  menu.close();
  const int character = List().fontMetrics().averageCharWidth();
  EXPECT_GT(place.x(), row.x());
  EXPECT_LT(place.x(), row.x() + 24 * character);
  EXPECT_GE(place.y(), row.top());
  EXPECT_LE(place.y(), row.bottom() + 1);
}

TEST_F(Selection, TheFolderThatWentWhileItWasAskedAboutIsLeftAlone) {
  Folder& one = AddFolder("one");
  AddFolder("two");
  Show();
  messages.answer = MessageAnswer::kYes;
  messages.on_show = [&] { window.PVExplorer1().DeleteFolder(one); };
  window.ActOnPopUpClick(kDeleteFolder, kTreePane, &one);
  EXPECT_EQ(FoldersIn(), Texts{"two"});
}

}  // namespace
}  // namespace tallow

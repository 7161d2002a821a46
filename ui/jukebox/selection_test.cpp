// SPDX-License-Identifier: GPL-3.0-or-later
// Selection and scroll position in the list of songs after changes, and what opens a song.
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>

#include "tests/drag_and_drop.h"
#include "tests/jukebox_window_fixture.h"
#include "tests/tagged_file.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/pop_up_menus.h"

namespace tallow {
namespace {

class Selection : public JukeboxWindowTest {
 protected:
  static constexpr int kSongs = 300;
  static constexpr int kFar = 200;

  /// Shows a long list, scrolled to a selected row.
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

TEST_F(Selection, TheSongAfterSongsThatAreDraggedAwayIsSelected) {
  LongList();
  const auto drag = window.PVExplorer1().SongsToDrag();
  DropOn("two", *drag);
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_TRUE(IsOnShow(kFar));
  Press(Qt::Key_Down);
  EXPECT_EQ(Selected(), std::vector<int>{kFar + 1});
}

TEST_F(Selection, SongsRestoredByUndoAreSelected) {
  LongList();
  List().SelectRows({kFar, kFar + 2, kFar + 3});
  Press(Qt::Key_X, Qt::ControlModifier);
  List().SelectRows(0, 0);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Selected(), (std::vector<int>{kFar, kFar + 2, kFar + 3}));
  EXPECT_TRUE(IsOnShow(kFar));
  // Redo removes the songs again and selects the next song, as the cut did.
  Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_EQ(List().currentIndex().row(), kFar);
}

TEST_F(Selection, SongsRestoredByUndoInAnotherFolderAreSelectedThere) {
  LongList();
  Press(Qt::Key_X, Qt::ControlModifier);
  Click("two");
  window.PVExplorer1().Undo();
  EXPECT_EQ(Box().selectednode()->Text(), "one");
  EXPECT_EQ(Selected(), std::vector<int>{kFar});
  EXPECT_TRUE(IsOnShow(kFar));
}

TEST_F(Selection, UndoingAPasteSelectsTheNextSong) {
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

TEST_F(Selection, FollowsTheSongsWhenASortIsUndone) {
  Folder& one = LongList();
  ClickHeader();
  ClickHeader();
  List().SelectRows({kFar, kFar + 2});
  const Songs songs = SongsOf(one, Selected());
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(std::ranges::is_permutation(SongsOf(one, Selected()), songs));
  EXPECT_EQ(SongsOf(one, {List().currentIndex().row()}), Songs{songs[0]});
  EXPECT_TRUE(IsOnShow(List().currentIndex().row()));
  // The next click starts again with the first sort order.
  ClickHeader();
  EXPECT_EQ(Header(), "Name    --   ");
  EXPECT_EQ(Box().SortState(), 2);
}

TEST_F(Selection, LosesSongsThatAreFoundMissingWhenASortIsUndone) {
  Folder& one = LongList();
  ClickHeader();
  ClickHeader();
  List().SelectRows(kSongs - 8, kSongs - 1);
  Songs songs = SongsOf(one, Selected());
  library.Mp3Info(kFileIsThere, songs[3], "0");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(List().model()->rowCount(), kSongs - 1);
  songs.erase(songs.begin() + 3);
  EXPECT_TRUE(std::ranges::is_permutation(SongsOf(one, Selected()), songs));
}

TEST_F(Selection, FilesDroppedOnAnotherFolderKeepSelectionAndScrollPosition) {
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
  // The folder already contained the first song.
  EXPECT_EQ(Selected(), (std::vector<int>{1, 2}));
}

TEST_F(Selection, RejectingAFolderThatIsTooDeepLeavesTheOtherWindowUnchanged) {
  Folder* deep = &AddFolder("top");
  while (deep->Level() < kMaxLevel) deep = &AddFolder("x", {}, deep);
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
  EXPECT_EQ(problems,
            QStringList{"Folders can be nested at most 1000 levels deep. Choose a higher folder."});
  EXPECT_EQ(other.Jukebox().selectednode(), &a);
  EXPECT_EQ(other.Jukebox().Nodes().Count(), 2);
}

TEST_F(Selection, IsTheEntryThatMovesOfASongThatTheFolderHoldsTwice) {
  UseMoreCommands();
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3, 1});
  Show();
  List().setFocus();
  List().SelectRows(3, 3);
  const auto expect = [&](const Songs& songs, int row) {
    EXPECT_EQ(SongsOf(one), songs);
    EXPECT_EQ(Selected(), std::vector<int>{row});
    EXPECT_EQ(List().currentIndex().row(), row);
  };
  Press(Qt::Key_Up, Qt::AltModifier);
  expect({1, 2, 1, 3}, 2);
  Press(Qt::Key_Z, Qt::ControlModifier);
  expect({1, 2, 3, 1}, 3);
  Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  expect({1, 2, 1, 3}, 2);
  Press(Qt::Key_Up, Qt::AltModifier);
  expect({1, 1, 2, 3}, 1);
  // The list stays the same, which is no step.
  Press(Qt::Key_Up, Qt::AltModifier);
  expect({1, 1, 2, 3}, 0);
  EXPECT_EQ(Box().History().Steps(), 2U);
  Press(Qt::Key_Down, Qt::AltModifier);
  Press(Qt::Key_Down, Qt::AltModifier);
  expect({1, 2, 1, 3}, 2);
}

TEST_F(Selection, IsTheEntryThatIsDraggedOfASongThatTheFolderHoldsTwice) {
  UseMoreCommands();
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3, 1});
  Show();
  List().SelectRows(3, 3);
  const auto drag = window.PVExplorer1().SongsToDrag();
  const QRect row = List().visualRect(List().model()->index(1, 0));
  EXPECT_TRUE(DropAt(List(), row.topLeft() + QPoint(5, 1), *drag));
  EXPECT_EQ(SongsOf(one), (Songs{1, 1, 2, 3}));
  EXPECT_EQ(Selected(), std::vector<int>{1});
  window.PVExplorer1().Undo();
  EXPECT_EQ(Selected(), std::vector<int>{3});
}

TEST_F(Selection, KeepsItsEntryOfASongWhenAMoveFindsAnotherSongMissing) {
  UseMoreCommands();
  AddSongs(4);
  Folder& one = AddFolder("one", {1, 4, 2, 3, 1});
  Show();
  List().setFocus();
  List().SelectRows(4, 4);
  library.Mp3Info(kFileIsThere, 4, "0");
  Press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 1, 3}));
  EXPECT_EQ(Selected(), std::vector<int>{2});
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3, 1}));
  EXPECT_EQ(Selected(), std::vector<int>{3});
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

TEST_F(Selection, EnterAndBackspaceActOnlyWithoutModifiers) {
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

TEST_F(Selection, AFailedSortLeavesTheListConsistentWithItsSongs) {
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

TEST_F(Selection, TheMenuEnablesOnlyItemsThatHaveAnEffect) {
  using enum TreeCommand;
  UseMoreCommands();
  AddFolder("one");
  Show();
  auto& menu = *window.findChild<QMenu*>(QStringLiteral("TreeMenu"));
  const auto open = [&](const QPoint& place) {
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, place,
                             Tree().viewport()->mapToGlobal(place));
    QApplication::sendEvent(Tree().viewport(), &wanted);
    menu.close();
    QList<TreeCommand> grey;
    for (const QAction* const action : menu.findChildren<QAction*>())
      if (!action->isEnabled()) grey.append(TreeCommand(action->data().toInt()));
    std::sort(grey.begin(), grey.end());
    return grey;
  };
  const auto beside = [&] { return open(QPoint(5, Tree().viewport()->height() - 3)); };
  const auto on_folder = [&] { return open(Tree().visualRect(IndexOf(Tree(), "one")).center()); };
  EXPECT_EQ(beside(),
            (QList<TreeCommand>{kAddFolderToSelected, kCutFolder, kCopyFolder, kPasteFolder,
                                kDeleteFolder, kMoveToRoot, kRename, kPlayFolder, kPlayFolderNext,
                                kAddFolderToQueue, kFolderProperties}));
  EXPECT_EQ(on_folder(), (QList<TreeCommand>{kPasteFolder, kMoveToRoot}));
  // Songs can be pasted only into a folder, and say so.
  tallow.clipboard.PutSongs({{1, 2}});
  EXPECT_FALSE(beside().contains(kPasteFolder));
  EXPECT_EQ(on_folder(), (QList<TreeCommand>{kMoveToRoot}));
  tallow.clipboard.PutFolder(Nodes().ChildAt(0));
  EXPECT_FALSE(beside().contains(kPasteFolder));
  EXPECT_EQ(on_folder(), (QList<TreeCommand>{kMoveToRoot}));
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

TEST_F(Selection, AFolderDeletedDuringTheConfirmationIsIgnored) {
  Folder& one = AddFolder("one");
  AddFolder("two");
  Show();
  messages.answer = MessageAnswer::kYes;
  messages.on_show = [&] { window.PVExplorer1().DeleteFolder(one); };
  window.Run(TreeCommand::kDeleteFolder, &one);
  EXPECT_EQ(FoldersIn(), Texts{"two"});
}

/// Selected songs and current song, before and after the list is reordered.
class SortedSelection : public Selection, public testing::WithParamInterface<unsigned> {
 protected:
  static constexpr int kMaxSongs = 60;

  int Random(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
  /// Shows a random list with repeated names and ranks, and with some songs twice.
  Folder& RandomList() {
    const int count = 2 + Random(kMaxSongs);
    Songs records;
    for (int k = 1; k <= count; ++k) {
      AddSong(music.path(), "n" + std::to_string(Random(count)) + ".mp3", "1",
              std::to_string(2 + Random(6)));
      for (int times = 1 + (Random(5) == 0 ? 1 : 0); times > 0; --times) records.push_back(k);
    }
    std::shuffle(records.begin(), records.end(), random);
    Folder& one = AddFolder("one", records);
    AddFolder("two");
    Show();
    List().setFocus();
    return one;
  }
  void SelectSomeRows() {
    std::vector<int> rows;
    for (int row = 0; row < List().model()->rowCount(); ++row)
      if (Random(3) == 0) rows.push_back(row);
    if (rows.empty()) rows.push_back(0);
    List().SelectRows(rows);
    const int current = rows[static_cast<std::size_t>(Random(static_cast<int>(rows.size())))];
    List().selectionModel()->setCurrentIndex(List().model()->index(current, 0),
                                             QItemSelectionModel::NoUpdate);
  }
  Songs SelectedSongs() {
    Songs songs = SongsOf(*Box().selectednode(), Selected());
    std::sort(songs.begin(), songs.end());
    return songs;
  }
  Songs CurrentSong() { return SongsOf(*Box().selectednode(), {List().currentIndex().row()}); }

  std::mt19937 random{GetParam()};
};

TEST_P(SortedSelection, HasTheSameSongs) {
  RandomList();
  SelectSomeRows();
  const Songs songs = SelectedSongs();
  const Songs current = CurrentSong();
  const auto expect_same = [&](const std::string& after) {
    EXPECT_EQ(SelectedSongs(), songs) << after;
    EXPECT_EQ(CurrentSong(), current) << after;
    EXPECT_TRUE(List().selectionModel()->isRowSelected(List().currentIndex().row(), {})) << after;
    EXPECT_TRUE(IsOnShow(List().currentIndex().row())) << after;
  };
  for (int click = 1; click <= 5; ++click) {
    ClickHeader();
    expect_same("click " + std::to_string(click));
  }
  for (int step = 1; step <= 5; ++step) {
    Press(Qt::Key_Z, Qt::ControlModifier);
    expect_same("undo " + std::to_string(step));
  }
  for (int step = 1; step <= 5; ++step) {
    Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    expect_same("redo " + std::to_string(step));
  }
  window.Run(TreeCommand::kSortNodes, nullptr);
  expect_same("sorting the folders");
}

TEST_P(SortedSelection, IsWhatDelRemoves) {
  const Folder& one = RandomList();
  SelectSomeRows();
  Songs left;
  const std::vector<int> rows = Selected();
  for (int row = 0; row < List().model()->rowCount(); ++row)
    if (std::find(rows.begin(), rows.end(), row) == rows.end())
      left.push_back(SongsOf(one, {row}).front());
  for (int clicks = 1 + Random(4); clicks > 0; --clicks) ClickHeader();
  Press(Qt::Key_Delete);
  EXPECT_TRUE(std::ranges::is_permutation(SongsOf(one), left));
}

TEST_P(SortedSelection, LosesOnlySongsThatTheSortFindsMissing) {
  RandomList();
  SelectSomeRows();
  Songs songs = SelectedSongs();
  const std::int32_t gone = songs[songs.size() / 2];
  library.Mp3Info(kFileIsThere, gone, "0");
  std::erase(songs, gone);
  ClickHeader();
  EXPECT_EQ(SelectedSongs(), songs);
}

TEST_P(SortedSelection, HasTheSameSongsWhenASortFails) {
  const Folder& one = RandomList();
  ClickHeader();
  ClickHeader();
  library.Mp3Info(kSongRank, SongsOf(one).back(), "x");
  SelectSomeRows();
  const Songs songs = SelectedSongs();
  const Songs current = CurrentSong();
  ClickHeader();
  EXPECT_EQ(problems.size(), 1);
  EXPECT_EQ(SelectedSongs(), songs);
  EXPECT_EQ(CurrentSong(), current);
}

TEST_P(SortedSelection, IsExtendedFromTheCurrentSong) {
  RandomList();
  List().SelectRows(0, 0);
  ClickHeader();
  ClickHeader();
  const int current = List().currentIndex().row();
  Press(Qt::Key_Down, Qt::ShiftModifier);
  const int last = std::min(current + 1, List().model()->rowCount() - 1);
  std::vector<int> expected{current};
  if (last != current) expected.push_back(last);
  EXPECT_EQ(Selected(), expected);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SortedSelection, testing::Range(1U, 13U));

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/rank_clicks.h"

#include <QWheelEvent>

#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/columns/song_list_delegate.h"
#include "ui/jukebox/song_list_model.h"

namespace tallow {
namespace {

class RankClicksTest : public JukeboxWindowTest {
 protected:
  RankClicksTest() {
    tallow.preferences.SetSwitches({.columns_of_details = true, .more_commands = true});
    window.FollowPreferences();
    window.resize(1200, 500);
    AddSongs(4);
    AddFolder("one", {1, 2, 3, 4});
    Show();
  }
  QRect Cell(int row) {
    const auto& songs = *window.findChild<SongListModel*>();
    return List().visualRect(songs.index(row, songs.IndexOf(ListColumn::kRank)));
  }
  /// A point of a cell that stands for a rank; 0: behind the bars.
  QPoint PointOf(int row, int rank) {
    const QRect cell = Cell(row);
    for (int x = cell.left(); x <= cell.right(); ++x)
      if (SongListDelegate::RankAt(cell, x) == rank) return {x + 1, cell.center().y()};
    ADD_FAILURE() << "no place for rank " << rank;
    return {};
  }
  void ClickRank(int row, int rank, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, keys, PointOf(row, rank));
  }
  void Turn(int row, int by, Qt::KeyboardModifiers keys = Qt::ControlModifier) {
    const QPoint point = PointOf(row, 5);
    QWheelEvent event(point, List().viewport()->mapToGlobal(point), {}, QPoint(0, by), Qt::NoButton,
                      keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(List().viewport(), &event);
  }
  Texts Ranks() { return Cells(kSongRank); }
};

TEST_F(RankClicksTest, AClickIntoASelectedRowSetsTheRankOfItsBar) {
  SelectRow(1);
  for (const int rank : {7, 6, 5, 4, 3}) {
    ClickRank(1, rank);
    EXPECT_EQ(Ranks(), (Texts{"2", std::to_string(rank), "2", "2"}));
  }
  EXPECT_TRUE(played.empty());
}

TEST_F(RankClicksTest, AClickBeforeTheBarsTakesTheRankAway) {
  SelectRow(1);
  ClickRank(1, 6);
  ClickRank(1, kNeverRanked);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
}

TEST_F(RankClicksTest, AClickBehindTheBarsDoesNothing) {
  SelectRow(1);
  ClickRank(1, 0);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
  EXPECT_EQ(Selected(), std::vector<int>{1});
}

TEST_F(RankClicksTest, AllSelectedSongsGetTheRankInOneStep) {
  SelectRow(0);
  SelectRow(2, Qt::ShiftModifier);
  ClickRank(1, 7);
  EXPECT_EQ(Ranks(), (Texts{"7", "7", "7", "2"}));
  EXPECT_EQ(Selected(), (std::vector<int>{0, 1, 2}));
  window.PVExplorer1().Undo();
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
}

TEST_F(RankClicksTest, AClickIntoARowThatIsNotSelectedSelectsIt) {
  SelectRow(0);
  ClickRank(2, 7);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
  EXPECT_EQ(Selected(), std::vector<int>{2});
}

TEST_F(RankClicksTest, ADoubleClickIntoARowThatIsNotSelectedPlaysIt) {
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, PointOf(2, 7));
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, PointOf(2, 7));
  EXPECT_EQ(played, std::vector<Songs>{{3}});
}

TEST_F(RankClicksTest, ACtrlClickSelectsAsElsewhere) {
  SelectRow(0);
  ClickRank(0, 7, Qt::ControlModifier);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
  EXPECT_TRUE(Selected().empty());
}

TEST_F(RankClicksTest, AReleaseElsewhereDoesNothing) {
  SelectRow(1);
  QTest::mousePress(List().viewport(), Qt::LeftButton, {}, PointOf(1, 7));
  QTest::mouseRelease(List().viewport(), Qt::LeftButton, {}, PointOf(2, 7));
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
}

TEST_F(RankClicksTest, TheWheelWithCtrlRaisesAndLowersTheRank) {
  SelectRow(1);
  Turn(1, 120);
  EXPECT_EQ(Ranks()[1], "3");
  Turn(1, 120);
  EXPECT_EQ(Ranks()[1], "4");
  Turn(1, -120);
  Turn(1, -120);
  Turn(1, -120);
  EXPECT_EQ(Ranks()[1], "2");
  Turn(1, 120, Qt::NoModifier);
  Turn(0, 120);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
}

TEST_F(RankClicksTest, TheWheelRaisesEachSelectedSongInOneStep) {
  SelectRow(1);
  ClickRank(1, 5);
  SelectRow(2);
  ClickRank(2, 7);
  SelectRow(0);
  SelectRow(2, Qt::ShiftModifier);
  Turn(0, 120);
  EXPECT_EQ(Ranks(), (Texts{"3", "6", "7", "2"}));
  EXPECT_EQ(Box().History().NameToUndo(), "Rank 2 Songs");
  window.PVExplorer1().Undo();
  EXPECT_EQ(Ranks(), (Texts{"2", "5", "7", "2"}));
  // Two steps of the wheel at once.
  Turn(0, -240);
  EXPECT_EQ(Ranks(), (Texts{"2", "3", "5", "2"}));
}

TEST_F(RankClicksTest, AllEntriesOfASongShowItsRank) {
  Folder& shown = *Box().selectednode();
  shown.Items().emplace_back(1, 2);
  Box().ListRefilled(library);
  SelectRow(0);
  QTest::keyClick(&List(), Qt::Key_7, Qt::ControlModifier);
  EXPECT_EQ(shown.Items().back().Icon(), 7);
  Turn(0, -120);
  EXPECT_EQ(shown.Items().back().Icon(), 6);
  // The classic style shows it at the selected entries.
  tallow.preferences.SetSwitches({.more_commands = true});
  window.FollowPreferences();
  List().SelectRows(0, 0);
  QTest::keyClick(&List(), Qt::Key_5, Qt::ControlModifier);
  EXPECT_EQ(shown.Items().front().Icon(), 5);
  EXPECT_EQ(shown.Items().back().Icon(), 6);
}

TEST_F(RankClicksTest, APressThatMovesDragsTheSongs) {
  SelectRow(1);
  int drags = 0;
  // The real receiver would wait for the end of the drag.
  QObject::disconnect(&List(), &SongListView::DragStarted, nullptr, nullptr);
  QObject::connect(&List(), &SongListView::DragStarted, [&drags] { ++drags; });
  QWidget& viewport = *List().viewport();
  const QPoint from = PointOf(1, 6);
  const auto move = [&](const QPoint& to) {
    QMouseEvent event(QEvent::MouseMove, to, viewport.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&viewport, &event);
  };
  QTest::mousePress(&viewport, Qt::LeftButton, {}, from);
  move(from + QPoint(1, 0));
  EXPECT_EQ(drags, 0);
  move(from + QPoint(0, QApplication::startDragDistance() + 1));
  EXPECT_EQ(drags, 1);
  QTest::mouseRelease(&viewport, Qt::LeftButton, {}, from);
  EXPECT_EQ(Ranks(), (Texts{"2", "2", "2", "2"}));
  // A small movement is still a click.
  QTest::mousePress(&viewport, Qt::LeftButton, {}, from);
  move(from + QPoint(0, 1));
  QTest::mouseRelease(&viewport, Qt::LeftButton, {}, from);
  EXPECT_EQ(Ranks()[1], "6");
}

TEST_F(RankClicksTest, PartsOfAStepOfTheWheelAddUp) {
  SelectRow(1);
  for (int part = 0; part < 7; ++part) Turn(1, 15);
  EXPECT_EQ(Ranks()[1], "2");
  Turn(1, 15);
  EXPECT_EQ(Ranks()[1], "3");
  // The other direction, and another song, begin anew.
  Turn(1, 105);
  Turn(1, -15);
  Turn(1, 105);
  EXPECT_EQ(Ranks()[1], "3");
  SelectRow(2);
  Turn(2, 15);
  EXPECT_EQ(Ranks(), (Texts{"2", "3", "2", "2"}));
}

TEST_F(RankClicksTest, TheTooltipTellsTheRank) {
  SelectRow(1);
  ClickRank(1, 5);
  const auto& songs = *window.findChild<SongListModel*>();
  const QModelIndex cell = songs.index(1, songs.IndexOf(ListColumn::kRank));
  EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), "rank 5 of 7");
}

}  // namespace
}  // namespace tallow

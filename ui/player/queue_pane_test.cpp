// SPDX-License-Identifier: GPL-3.0-or-later
// The queue: its rows, how they are rearranged, and what it says, in the real pane.
#include "ui/player/queue_pane.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <set>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextDocument>

#include "tests/model_stand_in.h"
#include "tests/window_fixture.h"
#include "ui/player/queue_model.h"
#include "ui/player/queue_view.h"
#include "ui/player/tool_tip_text.h"

namespace tallow {
namespace {

/// A stand-in that counts the rows that it is asked for.
class CountingModel : public ModelStandIn {
 public:
  QueueRow QueueAt(std::size_t row) override {
    asked.insert(row);
    return ModelStandIn::QueueAt(row);
  }
  std::set<std::size_t> asked;
};

/// A queue of the songs 1, 2 and so on, whose entries have the numbers 101, 102 and so on.
class Queue : public testing::Test {
 protected:
  static std::vector<PlayerModel::QueueRow> Rows(int first, int last) {
    std::vector<PlayerModel::QueueRow> rows;
    for (int song = first; song <= last; ++song)
      rows.push_back({static_cast<std::uint64_t>(song) + 100, song});
    return rows;
  }
  void Show(int songs) {
    for (int song = 1; song <= songs; ++song)
      model.texts[song] = "Title " + std::to_string(song) + " - Artist";
    model.SetQueue(Rows(1, songs));
    pane->resize(300, 400);
    pane->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
    QApplication::processEvents();
    model.Take();
  }
  QueueView& View() { return pane->View(); }
  QueueModel& Model() { return *pane->findChild<QueueModel*>(); }
  QString Text(const char* name) { return Label(name).text(); }
  QLabel& Label(const char* name) { return *pane->findChild<QLabel*>(QLatin1String(name)); }
  QVariant Data(int row, int role) { return Model().index(row, 0).data(role); }
  void Select(int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(View().viewport(), Qt::LeftButton, keys, PlaceOf(row));
  }
  QPoint PlaceOf(int row) { return View().visualRect(Model().index(row, 0)).center(); }
  std::unique_ptr<QMimeData> Drag(const std::vector<int>& rows) {
    QModelIndexList indexes;
    for (const int row : rows) indexes.append(Model().index(row, 0));
    return std::unique_ptr<QMimeData>(Model().mimeData(indexes));
  }
  /// Drags rows to a position without dropping them.
  bool DragTo(const QMimeData& data, const QPoint& place) {
    const Qt::DropActions actions = Qt::MoveAction | Qt::CopyAction;
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(View().viewport(), &enter);
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(View().viewport(), &move);
    return move.isAccepted();
  }
  void DropAt(const QMimeData& data, const QPoint& place) {
    DragTo(data, place);
    QDropEvent drop(place, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(View().viewport(), &drop);
  }
  /// Drops dragged rows before a row; -1: below all rows.
  void Drop(const std::vector<int>& rows, int before) {
    const QRect rect = View().visualRect(Model().index(before, 0));
    DropAt(*Drag(rows), rect.isValid() ? rect.center() - QPoint(0, rect.height() / 3)
                                       : QPoint(20, View().viewport()->height() - 3));
  }
  /// The upper edges of the rows of pixels that have the colour of the line, in the viewport.
  int DropLine() {
    const QImage picture = View().viewport()->grab().toImage();
    const QColor color = View().palette().color(QPalette::Highlight);
    for (int y = 0; y < picture.height(); ++y)
      if (picture.pixelColor(picture.width() / 2, y) == color &&
          picture.pixelColor(picture.width() - 2, y) == color)
        return y;
    return -1;
  }
  void UseWinamp() {
    model.why_not[PlayerFeature::kRearrange] = "Winamp cannot do this.";
    model.Change([](Playing& now) {
      now.is_running = true;
      now.kind = PlayerKind::kWinamp;
    });
  }
  QMenu& OpenMenu(int row) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, PlaceOf(row),
                            View().viewport()->mapToGlobal(PlaceOf(row)));
    QApplication::sendEvent(View().viewport(), &event);
    return *pane->findChild<QMenu*>(QStringLiteral("QueueMenu"));
  }
  QAction& Item(const char* name) { return *pane->findChild<QAction*>(QLatin1String(name)); }

  CountingModel model;
  std::unique_ptr<QueuePane> pane = std::make_unique<QueuePane>(model);
};

TEST_F(Queue, ListsTitlesAndCountsTheSongs) {
  Show(3);
  EXPECT_EQ(RowsOf(View()),
            (QStringList{"Title 1 - Artist", "Title 2 - Artist", "Title 3 - Artist"}));
  EXPECT_EQ(Text("lblQueueCount"), "3 songs");
  model.SetQueue(Rows(1, 1));
  EXPECT_EQ(Text("lblQueueCount"), "1 song");
  model.SetQueue({{7, 0}});
  EXPECT_EQ(RowsOf(View()), QStringList{"Unknown song"});
}

TEST_F(Queue, AQueueThatIsNotKnownSaysSo) {
  Show(0);
  model.Change([](Playing& now) {
    now.is_running = true;
    now.kind = PlayerKind::kTallowPlayer;
    now.status = kPlaying;
  });
  EXPECT_EQ(Text("lblQueueEmpty"), "The songs of the player are not known.");
  model.Play(1, 200);
  EXPECT_TRUE(Text("lblQueueEmpty").startsWith("No songs are to come."));
}

TEST_F(Queue, AnotherListWithTheSameNumbersIsShown) {
  Show(3);
  model.queue = {{101, 3}, {102, 2}, {103, 1}};
  model.Change([](Playing& now) {
    ++now.queue_revision;
    ++now.queue_generation;
  });
  // No row of the former list is remembered.
  EXPECT_EQ(Model().KnownAt(0), 0U);
  EXPECT_EQ(RowsOf(View()),
            (QStringList{"Title 3 - Artist", "Title 2 - Artist", "Title 1 - Artist"}));
}

TEST_F(Queue, AnEmptyQueueSaysHowSongsGetIntoIt) {
  Show(0);
  EXPECT_TRUE(Label("lblQueueEmpty").isVisible());
  EXPECT_EQ(Text("lblQueueEmpty"),
            "No songs are to come. To add some, right-click songs of a folder and choose Play From "
            "Here, Play Next or Add To Queue.");
  EXPECT_EQ(Text("lblQueueCount"), "0 songs");
  EXPECT_FALSE(pane->findChild<QPushButton*>()->isEnabled());
  model.SetQueue(Rows(1, 1));
  EXPECT_FALSE(Label("lblQueueEmpty").isVisible());
  EXPECT_TRUE(pane->findChild<QPushButton*>()->isEnabled());
}

TEST_F(Queue, AtTheLastSongOfARepeatedListItSaysThatTheListBeginsAgain) {
  Show(0);
  model.Play(1, 180);
  model.Change([](Playing& now) { now.repeat = RepeatMode::kAll; });
  EXPECT_EQ(Text("lblQueueEmpty"), "This is the last song. After it the list begins again.");
  model.Change([](Playing& now) { now.repeat = RepeatMode::kOff; });
  EXPECT_TRUE(Text("lblQueueEmpty").startsWith("No songs are to come."));
}

TEST_F(Queue, WithWinampInRandomOrderItSaysWhyItIsEmpty) {
  Show(0);
  UseWinamp();
  model.Change([](Playing& now) { now.shuffle = true; });
  EXPECT_EQ(Text("lblQueueEmpty"),
            "Winamp plays in random order, and does not say which songs are to come.");
}

TEST_F(Queue, DelRemovesTheSelectedSongs) {
  Show(5);
  Select(1);
  Select(3, Qt::ControlModifier);
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 102 104"});
}

TEST_F(Queue, AfterDelTheRowBelowIsSelectedSoThatDelCanBeRepeated) {
  Show(5);
  Select(1);
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 102"});
  auto rows = Rows(1, 5);
  rows.erase(rows.begin() + 1);
  model.SetQueue(rows);
  EXPECT_EQ(View().SelectedRows(), std::vector<int>{1});
  EXPECT_EQ(View().currentIndex().row(), 1);
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 103"});
  rows.erase(rows.begin() + 1);
  model.SetQueue(rows);
  // Of the last row, the row above is selected.
  Select(2);
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 105"});
  rows.pop_back();
  model.SetQueue(rows);
  EXPECT_EQ(View().SelectedRows(), std::vector<int>{1});
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 104"});
}

TEST_F(Queue, ACommandConcernsTheSongThatIsShownEvenIfTheQueueHasMovedOn) {
  Show(5);
  Select(1);
  // The player has moved on, and the view does not know it yet.
  model.queue = Rows(2, 5);
  QTest::keyClick(&View(), Qt::Key_Return);
  EXPECT_EQ(model.Take(), Texts{"play 102"});
  QTest::keyClick(&View(), Qt::Key_Delete);
  EXPECT_EQ(model.Take(), Texts{"remove 102"});
}

TEST_F(Queue, DelOfTheQueueNeverReachesTheMenuOfTheFrame) {
  Show(2);
  Select(0);
  for (const auto& [key, modifiers] :
       {std::pair(Qt::Key_Delete, Qt::KeyboardModifiers()),
        std::pair(Qt::Key_X, Qt::KeyboardModifiers(Qt::ControlModifier)),
        std::pair(Qt::Key_C, Qt::KeyboardModifiers(Qt::ControlModifier)),
        std::pair(Qt::Key_V, Qt::KeyboardModifiers(Qt::ControlModifier)),
        std::pair(Qt::Key_Z, Qt::KeyboardModifiers(Qt::ControlModifier)),
        std::pair(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier)}) {
    QKeyEvent override(QEvent::ShortcutOverride, key, modifiers);
    override.ignore();
    QApplication::sendEvent(&View(), &override);
    EXPECT_TRUE(override.isAccepted()) << key;
  }
  QKeyEvent find(QEvent::ShortcutOverride, Qt::Key_F, Qt::ControlModifier);
  find.ignore();
  QApplication::sendEvent(&View(), &find);
  EXPECT_FALSE(find.isAccepted());
}

TEST_F(Queue, ADoubleClickAndEnterPlayTheSong) {
  Show(3);
  QTest::mouseClick(View().viewport(), Qt::LeftButton, {}, PlaceOf(1));
  QTest::mouseDClick(View().viewport(), Qt::LeftButton, {}, PlaceOf(1));
  EXPECT_EQ(model.Take(), Texts{"play 102"});
  // QTest::mouseDClick would also open the menu, by the clicks before the double click.
  const QPoint place = PlaceOf(1);
  QMouseEvent right(QEvent::MouseButtonDblClick, place, View().viewport()->mapToGlobal(place),
                    Qt::RightButton, Qt::RightButton, {});
  QApplication::sendEvent(View().viewport(), &right);
  EXPECT_EQ(model.Take(), Texts{});
  Select(2);
  QTest::keyClick(&View(), Qt::Key_Return);
  EXPECT_EQ(model.Take(), Texts{"play 103"});
}

TEST_F(Queue, TheBlankPausesIfTheUserHasChosenThat) {
  Show(1);
  QTest::keyClick(&View(), Qt::Key_Space);
  EXPECT_EQ(model.Take(), Texts{});
  View().SetSpacePauses(true);
  QTest::keyClick(&View(), Qt::Key_Space);
  EXPECT_EQ(model.Take(), Texts{"play or pause"});
}

TEST_F(Queue, TypingAsksThePlayerForNoRows) {
  Show(1000);
  Select(0);
  model.asked.clear();
  QTest::keyClicks(&View(), QStringLiteral("z"));
  EXPECT_LT(model.asked.size(), 60U);
  EXPECT_EQ(View().currentIndex().row(), 0);
}

TEST_F(Queue, AltUpAndAltDownMoveTheSelectedSongs) {
  Show(5);
  Select(2);
  QTest::keyClick(&View(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(model.Take(), Texts{"move 103 before 102"});
  QTest::keyClick(&View(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(model.Take(), Texts{"move 103 before 105"});
  Select(3);
  QTest::keyClick(&View(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(model.Take(), Texts{"move 104 before 0"});
}

TEST_F(Queue, DroppedRowsComeBeforeTheRowBelowThem) {
  Show(5);
  Drop({0, 3}, 2);
  EXPECT_EQ(model.Take(), Texts{"move 101 104 before 103"});
  // The row below is dragged as well.
  Drop({1, 2}, 2);
  EXPECT_EQ(model.Take(), Texts{"move 102 103 before 104"});
  // The first of them keeps its place.
  Drop({0, 3}, 1);
  EXPECT_EQ(model.Take(), Texts{"move 101 104 before 102"});
  // The lower half of a row.
  DropAt(*Drag({4}), PlaceOf(1) + QPoint(0, 3));
  EXPECT_EQ(model.Take(), Texts{"move 105 before 103"});
  Drop({0}, -1);
  EXPECT_EQ(model.Take(), Texts{"move 101 before 0"});
}

TEST_F(Queue, ADropKeepsItsSongsWhenTheQueueMovesOnDuringTheDrag) {
  Show(4);
  const std::unique_ptr<QMimeData> data = Drag({2});
  model.SetQueue(Rows(2, 4));
  QApplication::processEvents();
  DropAt(*data, PlaceOf(0) - QPoint(0, 3));
  EXPECT_EQ(model.Take(), Texts{"move 103 before 102"});
}

TEST_F(Queue, ALineShowsWhereDraggedRowsWillBe) {
  Show(5);
  EXPECT_EQ(DropLine(), -1);
  const std::unique_ptr<QMimeData> data = Drag({4});
  const QRect row = View().visualRect(Model().index(2, 0));
  EXPECT_TRUE(DragTo(*data, row.center() - QPoint(0, 4)));
  EXPECT_NEAR(DropLine(), row.top(), 2);
  EXPECT_TRUE(DragTo(*data, row.center() + QPoint(0, 4)));
  EXPECT_NEAR(DropLine(), row.bottom(), 2);
  EXPECT_TRUE(DragTo(*data, QPoint(20, View().viewport()->height() - 3)));
  EXPECT_NEAR(DropLine(), View().visualRect(Model().index(4, 0)).bottom(), 2);
  QDragLeaveEvent leave;
  QApplication::sendEvent(View().viewport(), &leave);
  EXPECT_EQ(DropLine(), -1);
}

TEST_F(Queue, RowsOfAnotherProgramAndOtherDataAreRefused) {
  Show(3);
  QMimeData data;
  data.setData(QStringLiteral("application/x-tallow-queue"), QByteArray());
  EXPECT_FALSE(DragTo(data, PlaceOf(1)));
  EXPECT_EQ(DropLine(), -1);
  DropAt(data, PlaceOf(1));
  EXPECT_EQ(model.Take(), Texts{});
}

TEST_F(Queue, RowsCanBeDraggedOnlyIfThePlayerCanRearrange) {
  Show(2);
  EXPECT_TRUE(Model().flags(Model().index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
  EXPECT_TRUE(Model().flags({}).testFlag(Qt::ItemIsDropEnabled));
  // Songs are dropped between others, not on them.
  EXPECT_FALSE(Model().flags(Model().index(0, 0)).testFlag(Qt::ItemIsDropEnabled));
  UseWinamp();
  EXPECT_FALSE(Model().flags(Model().index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
  EXPECT_FALSE(Model().flags({}).testFlag(Qt::ItemIsDropEnabled));
  Drop({0}, 2);
  EXPECT_EQ(model.Take(), Texts{});
}

TEST_F(Queue, WithWinampRearrangingIsGreyAndSaysWhy) {
  Show(3);
  EXPECT_FALSE(Label("lblQueueNote").isVisible());
  UseWinamp();
  EXPECT_TRUE(Label("lblQueueNote").isVisible());
  EXPECT_EQ(Text("lblQueueNote"), "The songs cannot be rearranged. Winamp cannot do this.");
  Select(1);
  QMenu& menu = OpenMenu(1);
  EXPECT_TRUE(Item("mnuQueuePlay").isEnabled());
  for (const char* const name : {"mnuQueueUp", "mnuQueueDown", "mnuQueueRemove"}) {
    EXPECT_FALSE(Item(name).isEnabled()) << name;
    EXPECT_EQ(Item(name).toolTip(), "Winamp cannot do this.");
  }
  EXPECT_TRUE(menu.toolTipsVisible());
  menu.hide();
  QTest::keyClick(&View(), Qt::Key_Delete);
  QTest::keyClick(&View(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(model.Take(), Texts{});
  QTest::keyClick(&View(), Qt::Key_Return);
  EXPECT_EQ(model.Take(), Texts{"play 102"});
}

TEST_F(Queue, TheMenuHasItsItemsAndRunsThem) {
  Show(3);
  Select(1);
  QMenu& menu = OpenMenu(1);
  QStringList items;
  for (const QAction* const action : menu.actions())
    items.append(action->isSeparator() ? QStringLiteral("-")
                                       : action->text() + "|" + action->shortcut().toString());
  menu.hide();
  EXPECT_EQ(items, (QStringList{"&Play|Return", "-", "Move &Up|Alt+Up", "Move Do&wn|Alt+Down",
                                "&Remove From Queue|Del"}));
  for (const char* const name : {"mnuQueuePlay", "mnuQueueUp", "mnuQueueDown", "mnuQueueRemove"})
    Item(name).trigger();
  EXPECT_EQ(model.Take(),
            (Texts{"play 102", "move 102 before 101", "move 102 before 0", "remove 102"}));
}

TEST_F(Queue, ASongThatCouldNotBePlayedIsMarkedAndSaysWhy) {
  Show(3);
  EXPECT_TRUE(Data(1, Qt::DecorationRole).isNull());
  model.SetFailure(2, "the file is gone");
  EXPECT_FALSE(Data(1, Qt::DecorationRole).value<QIcon>().isNull());
  const QString text = "Title 2 - Artist\nThis song could not be played: the file is gone";
  EXPECT_EQ(Data(1, Qt::ToolTipRole).toString(), ToolTipText(text));
  EXPECT_EQ(Data(1, Qt::AccessibleTextRole).toString(), text);
  EXPECT_TRUE(Data(0, Qt::DecorationRole).isNull());
}

TEST_F(Queue, ASongThatFailedEarlierIsMarkedWhenItIsQueuedAgain) {
  Show(0);
  model.SetFailure(2, "the file is gone");
  model.SetQueue(Rows(1, 3));
  ASSERT_EQ(model.FailureOfEntry(102), "");
  EXPECT_FALSE(Data(1, Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_TRUE(Data(1, Qt::AccessibleTextRole).toString().endsWith("the file is gone"));
  EXPECT_TRUE(Data(0, Qt::DecorationRole).isNull());
  model.SetFailure(2, "");
  EXPECT_TRUE(Data(1, Qt::DecorationRole).isNull());
}

TEST_F(Queue, ATitleThatLooksLikeHtmlIsShownAsItIs) {
  Show(1);
  model.texts[1] = "<img src=x> Rock & <b>Roll</b>";
  EXPECT_EQ(Data(0, Qt::DisplayRole).toString(), "<img src=x> Rock & <b>Roll</b>");
  QTextDocument tip;
  tip.setHtml(Data(0, Qt::ToolTipRole).toString());
  EXPECT_EQ(tip.toPlainText(), "<img src=x> Rock & <b>Roll</b>");
}

TEST_F(Queue, TheSelectionFollowsItsSongsWhenTheNextSongBegins) {
  Show(30);
  Select(4);
  Select(6, Qt::ControlModifier);
  model.SetQueue(Rows(2, 30));
  EXPECT_EQ(View().SelectedRows(), (std::vector<int>{3, 5}));
  EXPECT_EQ(View().currentIndex().row(), 5);
  EXPECT_EQ(Text("lblQueueCount"), "29 songs");
}

TEST_F(Queue, TheSelectionFollowsItsSongsWhenTheyAreMoved) {
  Show(5);
  Select(1);
  auto rows = Rows(1, 5);
  std::rotate(rows.begin() + 1, rows.begin() + 2, rows.begin() + 4);
  model.SetQueue(rows);
  EXPECT_EQ(View().SelectedRows(), std::vector<int>{3});
  EXPECT_EQ(View().currentIndex().row(), 3);
}

TEST_F(Queue, ARefillKeepsTheScrollPosition) {
  Show(500);
  View().verticalScrollBar()->setValue(200);
  QApplication::processEvents();
  auto rows = Rows(1, 500);
  std::reverse(rows.begin(), rows.end());
  model.SetQueue(rows);
  EXPECT_EQ(View().verticalScrollBar()->value(), 200);
}

TEST_F(Queue, OfAQueueOf100000SongsOnlyTheRowsOnScreenAreAskedFor) {
  Show(0);
  model.asked.clear();
  model.SetQueue(Rows(1, 100000));
  QApplication::processEvents();
  EXPECT_EQ(Text("lblQueueCount"), QLocale().toString(100000) + " songs");
  EXPECT_GT(model.asked.size(), 5U);
  EXPECT_LT(model.asked.size(), 60U);
  View().verticalScrollBar()->setValue(50000);
  QApplication::processEvents();
  EXPECT_TRUE(model.asked.contains(50000));
  EXPECT_LT(model.asked.size(), 120U);
}

TEST_F(Queue, TheQueueIsFollowedOnlyWhileItExists) {
  EXPECT_EQ(model.listeners.size(), 1U);
  pane.reset();
  EXPECT_EQ(model.listeners.size(), 0U);
}

}  // namespace
}  // namespace tallow

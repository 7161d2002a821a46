// SPDX-License-Identifier: GPL-3.0-or-later
// The marks of the song that plays, and of songs that could not be played, in the real list.
#include "ui/jukebox/explorer/playing_marks.h"

#include <gtest/gtest.h>
#include <set>

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QSignalSpy>

#include "tests/jukebox_window_fixture.h"
#include "tests/model_stand_in.h"
#include "ui/jukebox/rank_picture.h"

namespace tallow {
namespace {

/// Records which rows a list repaints.
class PaintedRows : public QObject {
 public:
  explicit PaintedRows(QTableView& view) : view_(view) {
    view.viewport()->installEventFilter(this);
  }

  /// Waits until nothing is repainted any more.
  void Settle() {
    constexpr int kQuietRounds = 5;
    for (int quiet = 0; quiet < kQuietRounds; quiet = Take().empty() ? quiet + 1 : 0)
      QTest::qWait(1);
  }
  /// The rows since the last call.
  std::set<int> Take() {
    QApplication::processEvents();
    return std::exchange(rows_, {});
  }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint)
      for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
        for (int y = rect.top(); y <= rect.bottom(); ++y)
          if (const int row = view_.rowAt(y); row >= 0) rows_.insert(row);
    return QObject::eventFilter(watched, event);
  }

  QTableView& view_;
  std::set<int> rows_;
};

class Marks : public JukeboxWindowTest {
 protected:
  ~Marks() override { window.SetPlayer(nullptr); }

  void ShowMarked() {
    window.SetPlayer(&model);
    window.ShowMarks(true);
    Show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  }
  QVariant Data(int row, int role, int column = 0) {
    return List().model()->index(row, column).data(role);
  }
  QString Spoken(int row) { return Data(row, Qt::AccessibleTextRole).toString(); }
  bool IsBold(int row, int column = 0) {
    return Data(row, Qt::FontRole, column).value<QFont>().bold();
  }
  QImage PictureOf(int row) {
    return Data(row, Qt::DecorationRole).value<QIcon>().pixmap(List().iconSize()).toImage();
  }
  QImage Marked(int rank, SongMark mark) {
    return MarkedRankPicture(rank, mark).pixmap(List().iconSize()).toImage();
  }
  void Pause() {
    model.Change([](Playing& now) { now.status = kPaused; });
  }

  ModelStandIn model;
};

TEST_F(Marks, TheSongThatPlaysHasATriangleAndIsBoldAndIsReadAsPlaying) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  ShowMarked();
  model.Play(2, 180);
  EXPECT_EQ(PictureOf(0), Marked(2, SongMark::kNone));
  EXPECT_EQ(PictureOf(1), Marked(2, SongMark::kPlaying));
  EXPECT_NE(Marked(2, SongMark::kNone), Marked(2, SongMark::kPlaying));
  EXPECT_FALSE(IsBold(0));
  EXPECT_TRUE(IsBold(1));
  EXPECT_TRUE(IsBold(1, 1));
  EXPECT_EQ(Spoken(0), "1.  1.mp3, not ranked");
  EXPECT_EQ(Spoken(1), "2.  2.mp3, not ranked, playing");
  EXPECT_EQ(Data(1, Qt::DisplayRole).toString(), "2.  2.mp3");
}

TEST_F(Marks, TheTriangleIsHollowWhileTheSongIsPaused) {
  AddSongs(1);
  AddFolder("one", {1});
  ShowMarked();
  model.Play(1, 180);
  Pause();
  EXPECT_EQ(PictureOf(0), Marked(2, SongMark::kPaused));
  EXPECT_NE(Marked(2, SongMark::kPaused), Marked(2, SongMark::kPlaying));
  EXPECT_NE(Marked(2, SongMark::kPaused), Marked(2, SongMark::kNone));
  EXPECT_TRUE(IsBold(0));
  EXPECT_EQ(Spoken(0), "1.  1.mp3, not ranked, playing, paused");
}

TEST_F(Marks, TheRankIconLooksAsWithoutAMark) {
  const int side = 16;
  QPixmap both(WidthWithMark(side), side);
  both.fill(Qt::transparent);
  QPainter painter(&both);
  MarkedRankPicture(5, SongMark::kNone).paint(&painter, both.rect());
  painter.end();
  const QImage right = both.toImage().copy(both.width() - side, 0, side, side);
  EXPECT_EQ(right, RankPicture(5).pixmap(side).toImage().convertToFormat(right.format()));
}

TEST_F(Marks, OnlyTheRowsOfTheOldAndTheNewSongAreRepainted) {
  AddSongs(9);
  // The third song is in the folder twice.
  AddFolder("one", {1, 2, 3, 4, 5, 6, 7, 3, 8, 9});
  ShowMarked();
  model.Play(2, 180);
  PaintedRows painted(List());
  painted.Settle();
  model.Play(3, 180);
  EXPECT_EQ(painted.Take(), (std::set<int>{1, 2, 7}));
  model.Play(3, 180, 17);
  EXPECT_EQ(painted.Take(), std::set<int>());
  Pause();
  EXPECT_EQ(painted.Take(), (std::set<int>{2, 7}));
  model.Set({});
  EXPECT_EQ(painted.Take(), (std::set<int>{2, 7}));
}

TEST_F(Marks, AFolderOf100000SongsRepaintsTwoRows) {
  constexpr int kSongs = 100000;
  AddSongs(3);
  Folder& folder = AddFolder("one");
  for (int k = 0; k < kSongs; ++k) folder.Items().emplace_back(k == 4 ? 2 : k == 7 ? 3 : 1, 2);
  ShowMarked();
  model.Play(2, 180);
  PaintedRows painted(List());
  painted.Settle();
  model.Play(3, 180);
  EXPECT_EQ(painted.Take(), (std::set<int>{4, 7}));
  EXPECT_TRUE(IsBold(7));
}

TEST_F(Marks, ASongThatCouldNotBePlayedSaysWhy) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  ShowMarked();
  PaintedRows painted(List());
  painted.Settle();
  model.SetFailure(2, "the file has no audio");
  EXPECT_EQ(painted.Take(), std::set<int>{1});
  EXPECT_EQ(PictureOf(1), Marked(2, SongMark::kFailed));
  EXPECT_FALSE(IsBold(1));
  const QString why = "This song could not be played: the file has no audio";
  EXPECT_EQ(Spoken(1), "2.  2.mp3, not ranked\n" + why);
  EXPECT_EQ(Data(1, Qt::ToolTipRole).toString(), "2.  2.mp3\nNot ranked\n" + why);
  // The song plays after all.
  model.SetFailure(2, "");
  EXPECT_EQ(painted.Take(), std::set<int>{1});
  EXPECT_EQ(PictureOf(1), Marked(2, SongMark::kNone));
  EXPECT_EQ(Spoken(1), "2.  2.mp3, not ranked");
}

TEST_F(Marks, ASongThatPlaysHasNoMarkOfAnEarlierFailure) {
  AddSongs(1);
  AddFolder("one", {1});
  ShowMarked();
  model.SetFailure(1, "the file has no audio");
  model.Play(1, 180);
  EXPECT_EQ(PictureOf(0), Marked(2, SongMark::kPlaying));
  EXPECT_EQ(Spoken(0), "1.  1.mp3, not ranked, playing");
}

TEST_F(Marks, WithoutMarksTheListLooksAsIfNothingPlayed) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  window.SetPlayer(&model);
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  const QImage before = List().viewport()->grab().toImage();
  const QSize icon = List().iconSize();
  EXPECT_EQ(icon.width(), icon.height());
  model.Play(1, 180);
  model.SetFailure(2, "the file has no audio");
  EXPECT_EQ(List().viewport()->grab().toImage(), before);
  EXPECT_EQ(Spoken(0), "1.  1.mp3, not ranked");
  EXPECT_EQ(Data(1, Qt::ToolTipRole).toString(), "2.  2.mp3\nNot ranked");
  window.ShowMarks(true);
  EXPECT_NE(List().viewport()->grab().toImage(), before);
  EXPECT_GT(List().iconSize().width(), icon.width());
  window.ShowMarks(false);
  EXPECT_EQ(List().viewport()->grab().toImage(), before);
  EXPECT_EQ(List().iconSize(), icon);
}

TEST_F(Marks, AChangeOfAnotherPreferenceDoesNotLayOutTheList) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  ShowMarked();
  const QSignalSpy changes(List().model(), &QAbstractItemModel::dataChanged);
  window.ShowMarks(true);
  window.SetPlayer(&model);
  EXPECT_EQ(changes.count(), 0);
  window.ShowMarks(false);
  EXPECT_GT(changes.count(), 0);
}

TEST_F(Marks, TheMarkFollowsItsSongThroughASort) {
  AddSong(music.path(), "b.mp3");
  AddSong(music.path(), "a.mp3");
  AddFolder("one", {1, 2});
  ShowMarked();
  model.Play(1, 180);
  EXPECT_TRUE(IsBold(0));
  ClickHeader();
  EXPECT_FALSE(IsBold(0));
  EXPECT_TRUE(IsBold(1));
}

TEST_F(Marks, AWindowThatIsClosedNoLongerFollowsThePlayer) {
  AddSongs(1);
  {
    frmMain other(tallow, messages.Shower());
    other.SetPlayer(&model);
    other.ShowMarks(true);
    EXPECT_EQ(model.listeners.size(), 1U);
  }
  EXPECT_EQ(model.listeners.size(), 0U);
}

}  // namespace
}  // namespace tallow

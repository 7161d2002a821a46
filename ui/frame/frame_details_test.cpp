// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_details.h"

#include <atomic>
#include <filesystem>

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "tests/frame_fixture.h"
#include "tests/id3v2_tag.h"
#include "tests/tagged_file.h"
#include "tests/wait_until.h"
#include "ui/frame/style_bar.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

class FrameDetailsTest : public FrameTest {
 protected:
  FrameDetailsTest() { tallow.preferences.Load(PreferencesPath(application.path())); }

  /// A song with newer tags alone, in place of the song of row 1.
  void MakeNewerSong() { music.File("a.mp3", Id3v2Tag({{"TIT2", "Title"}}) + Audio(300)); }
  /// Reads the details of all songs.
  void Fill() {
    frame.Details().Start();
    Finish();
  }
  void Finish() {
    frame.Details().Changed();
    EXPECT_TRUE(WaitUntil([this] {
      frame.Details().Changed();
      return !tallow.details.IsReading();
    }));
  }
  StyleBar& Bar() { return *frame.findChild<StyleBar*>(); }
  QPushButton& Button(const char* name) {
    return *frame.findChild<QPushButton*>(QLatin1String(name));
  }
  QString Text() { return Bar().findChild<QLabel*>(QStringLiteral("lblStyleBar"))->text(); }
  QLabel& Progress() {
    return *frame.statusBar()->findChild<QLabel*>(QStringLiteral("lblDetailsProgress"));
  }
};

TEST_F(FrameDetailsTest, WithNothingToSayThereIsNoBar) {
  ShowJukebox();
  EXPECT_TRUE(Bar().isHidden());
  const QRect area = Area().geometry();
  Fill();
  EXPECT_TRUE(Bar().isHidden());
  EXPECT_EQ(Area().geometry(), area);
}

TEST_F(FrameDetailsTest, TheBarStandsAboveTheJukeboxesAndTakesNoFocus) {
  ShowJukebox();
  QWidget* const focus = frame.focusWidget();
  const int height = Area().height();
  MakeNewerSong();
  music.File("other/a.mp3");
  library.LeaveOut(music / "other/a.mp3", 1);
  library.RememberVisit(music.path(), 3);
  Fill();
  QCoreApplication::processEvents();
  ASSERT_TRUE(Bar().isVisible());
  EXPECT_EQ(Text(),
            "1 of 2 songs carries only newer tags, 1 was left out because a song of that file name "
            "is there, 3 are of other formats.");
  EXPECT_EQ(Area().height(), height - Bar().height());
  EXPECT_LE(Bar().mapTo(&frame, QPoint(0, Bar().height())).y(),
            Area().mapTo(&frame, QPoint(0, 0)).y());
  EXPECT_EQ(frame.focusWidget(), focus);
}

TEST_F(FrameDetailsTest, OneClickChoosesTheModernStyle) {
  ShowJukebox();
  MakeNewerSong();
  Fill();
  ASSERT_TRUE(Bar().isVisible());
  QWidget* const focus = frame.focusWidget();
  QTest::mouseClick(&Button("cmdUseModernStyle"), Qt::LeftButton);
  EXPECT_EQ(tallow.preferences.style(), Style::kModern);
  EXPECT_TRUE(Bar().isHidden());
  EXPECT_EQ(frame.focusWidget(), focus);
  tallow.preferences.SetStyle(Style::kClassic);
  Finish();
  EXPECT_TRUE(Bar().isHidden());
}

TEST_F(FrameDetailsTest, TheKeysOfTheButtonsAndTabReachThem) {
  frmMain& window = ShowJukebox();
  MakeNewerSong();
  Fill();
  QCoreApplication::processEvents();
  for (const char* const name : {"cmdUseModernStyle", "cmdStyleDetails", "cmdNotNow"}) {
    QPushButton& button = Button(name);
    EXPECT_TRUE((button.focusPolicy() & Qt::TabFocus) != 0);
    EXPECT_FALSE(button.accessibleDescription().isEmpty());
  }
  frame.activateWindow();
  Button("cmdUseModernStyle").setFocus(Qt::TabFocusReason);
  QTest::keyClick(&Button("cmdUseModernStyle"), Qt::Key_Tab);
  EXPECT_TRUE(Button("cmdStyleDetails").hasFocus());
  QTest::keyClick(&Button("cmdStyleDetails"), Qt::Key_Tab);
  ASSERT_TRUE(Button("cmdNotNow").hasFocus());
  QTest::keyClick(&Button("cmdNotNow"), Qt::Key_Space);
  EXPECT_TRUE(Bar().isHidden());
  // The focus goes back to the jukebox.
  ASSERT_NE(frame.focusWidget(), nullptr);
  EXPECT_TRUE(window.isAncestorOf(frame.focusWidget()));
}

TEST_F(FrameDetailsTest, NotNowHidesTheBarInTheNextRunsUntilThereIsMore) {
  ShowJukebox();
  MakeNewerSong();
  Fill();
  QTest::mouseClick(&Button("cmdNotNow"), Qt::LeftButton);
  EXPECT_TRUE(Bar().isHidden());
  Finish();
  EXPECT_TRUE(Bar().isHidden());
  EXPECT_EQ(tallow.preferences.style(), Style::kClassic);
  for (const bool has_more : {false, true}) {
    if (has_more) {
      library.RememberVisit(music.path(), 1);
      library.FinishScan(true);
    }
    frmMDIForm1 next(tallow, link, searches, messages.Shower());
    next.Details().Start();
    EXPECT_TRUE(WaitUntil([&] {
      next.Details().Changed();
      return !tallow.details.IsReading();
    }));
    EXPECT_EQ(next.findChild<StyleBar*>()->isHidden(), !has_more);
  }
}

TEST_F(FrameDetailsTest, DetailsListTheSongsAndFiles) {
  ShowJukebox();
  MakeNewerSong();
  Fill();
  QStringList rows;
  QTimer::singleShot(0, [&rows] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    const QTreeView& list = *dialog->findChild<QTreeView*>();
    rows = RowsOf(list);
    rows.append(list.model()->index(0, 0, list.model()->index(0, 0)).data().toString());
    dialog->reject();
  });
  QTest::mouseClick(&Button("cmdStyleDetails"), Qt::LeftButton);
  EXPECT_EQ(rows, (QStringList{"Only newer tags, which the classic style does not read (1)",
                               QString::fromStdString(music / "a.mp3")}));
  EXPECT_TRUE(Bar().isVisible());
}

TEST_F(FrameDetailsTest, InANarrowWindowTheButtonsStandBelowTheText) {
  ShowJukebox();
  MakeNewerSong();
  library.RememberVisit(music.path(), 3);
  library.LeaveOut(music / "other/a.mp3", 1);
  Fill();
  const QLabel& text = *Bar().findChild<QLabel*>(QStringLiteral("lblStyleBar"));
  for (const int width : {1600, 900, 480, 1600}) {
    frame.resize(width, 600);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(frame.width(), width);
    const QPushButton& last = Button("cmdNotNow");
    EXPECT_LE(last.mapTo(&Bar(), QPoint(last.width(), 0)).x(), Bar().width()) << width;
    EXPECT_GE(last.width(), last.minimumSizeHint().width()) << width;
    EXPECT_GE(text.height(), text.heightForWidth(text.width())) << width;
    const int buttons = Button("cmdUseModernStyle").mapTo(&Bar(), QPoint(0, 0)).y();
    EXPECT_EQ(buttons >= text.geometry().bottom(), width == 480) << width;
  }
}

TEST_F(FrameDetailsTest, TheProgressLeavesTheMessagesOfTheStatusBar) {
  ShowJukebox();
  frame.Notice({"2 new songs"});
  EXPECT_TRUE(Progress().isHidden());
  std::atomic<bool> may_read = false;
  frame.Details().Start([&may_read] {
    return [&may_read](const std::string&, const std::function<bool()>& stopped) {
      while (!may_read && !stopped()) QThread::yieldCurrentThread();
      return SongDetails();
    };
  });
  EXPECT_TRUE(WaitUntil([this] {
    frame.Details().Changed();
    return Progress().isVisible();
  }));
  EXPECT_EQ(Progress().text(), "Reading the details of songs: 0 of 2");
  EXPECT_EQ(frame.statusBar()->currentMessage(), "2 new songs");
  may_read = true;
  Finish();
  EXPECT_TRUE(Progress().isHidden());
}

TEST_F(FrameDetailsTest, ADamagedDatabaseIsSaidInTheStatusBar) {
  ShowJukebox();
  WriteFileAtomically(SystemFolder(application.path()) + "SongDetails.db", std::string(5000, 'x'));
  Fill();
  EXPECT_TRUE(WaitUntil([this] {
    frame.Details().Changed();
    return frame.statusBar()->currentMessage().contains("is damaged. It was renamed");
  }));
}

TEST_F(FrameDetailsTest, ADamagedFileOfWhatWasLeftOutIsSaidInTheStatusBar) {
  ShowJukebox();
  const std::string path = SystemFolder(application.path()) + "LeftOut.json";
  WriteFileAtomically(path, "x");
  Fill();
  EXPECT_TRUE(frame.statusBar()->currentMessage().contains("LeftOut.json is damaged. It was"));
  EXPECT_TRUE(FileExists(path + ".bak"));
  EXPECT_TRUE(Bar().isHidden());
}

TEST_F(FrameDetailsTest, SongsThatComeBackOrAreForgottenAreCountedAgain) {
  frmMain& window = ShowJukebox();
  MakeNewerSong();
  Fill();
  EXPECT_EQ(tallow.details.Songs(), 2);
  tallow.library.Mp3Info(kFileIsThere, 1, "0");
  emit frame.Findings().DriveForgotten();
  EXPECT_TRUE(WaitUntil([this] { return tallow.details.Songs() == 1; }));
  tallow.library.Mp3Info(kFileIsThere, 1, "1");
  emit window.SongsReturned({});
  EXPECT_TRUE(WaitUntil([this] { return tallow.details.Songs() == 2; }));
}

TEST_F(FrameDetailsTest, TheNoticesOfTheStartStayWhenTheDatabaseIsDamagedToo) {
  ShowJukebox();
  frame.Notice({"The preferences are damaged.", "2 new songs"});
  WriteFileAtomically(SystemFolder(application.path()) + "SongDetails.db", std::string(5000, 'x'));
  Fill();
  EXPECT_TRUE(WaitUntil([this] {
    frame.Details().Changed();
    return frame.statusBar()->currentMessage().contains("is damaged. It was renamed");
  }));
  EXPECT_TRUE(frame.statusBar()->currentMessage().endsWith("  (and 2 more)"));
  EXPECT_TRUE(frame.statusBar()->toolTip().endsWith("\nThe preferences are damaged.\n2 new songs"));
  // What the user does replaces them.
  frame.Notice({"1 song was filed"});
  EXPECT_EQ(frame.statusBar()->toolTip(), "1 song was filed");
}

TEST_F(FrameDetailsTest, WorkThatDisablesTheFrameIsNotInterrupted) {
  ShowJukebox();
  MakeNewerSong();
  frame.setEnabled(false);
  frame.Details().Start();
  frame.Details().Changed();
  EXPECT_EQ(tallow.details.SongsWithOnlyNewerTags(), 0);
  EXPECT_TRUE(tallow.details.IsReading());
  frame.setEnabled(true);
  Finish();
  EXPECT_EQ(tallow.details.SongsWithOnlyNewerTags(), 1);
}

/// The lines of the list that a click on the status bar opens.
QStringList LinesAfterAClick(QStatusBar& bar) {
  QStringList lines;
  QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(30, 5));
  QTimer::singleShot(0, [&lines] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    const auto* const list = dialog->findChild<QTreeWidget*>(QStringLiteral("lstFindings"));
    for (QTreeWidgetItemIterator item(const_cast<QTreeWidget*>(list)); *item != nullptr; ++item)
      lines.append((*item)->text(0));
    dialog->reject();
  });
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  return lines;
}

TEST_F(FrameDetailsTest, TheStatusBarTellsOfSongsThatCouldNotBeReadInBothStyles) {
  music.File("b.mp3", Id3v2Tag({{"TIT2", "Title"}}) + Audio(300));
  for (const Style style : {Style::kClassic, Style::kModern}) {
    MakeNewerSong();
    tallow.preferences.Set<std::int64_t>("unreadableSongs", 0);
    tallow.preferences.SetStyle(style);
    frmMDIForm1 window(tallow, link, searches, messages.Shower());
    window.show();
    std::filesystem::remove(music / "a.mp3");
    window.Details().Start();
    ASSERT_TRUE(WaitUntil([&] {
      window.Details().Changed();
      return !window.statusBar()->currentMessage().isEmpty();
    }));
    EXPECT_EQ(window.statusBar()->currentMessage(),
              "1 song could not be read completely (click for the list)");
    EXPECT_EQ(window.statusBar()->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(LinesAfterAClick(*window.statusBar()),
              (QStringList{"Songs that could not be read completely", QtPath(music / "a.mp3")}));
    // Once a run, also after a search.
    window.statusBar()->clearMessage();
    window.Details().Changed();
    ASSERT_TRUE(WaitUntil([&] {
      window.Details().Changed();
      return !tallow.details.IsReading();
    }));
    EXPECT_EQ(window.statusBar()->currentMessage(), "");
  }
}

}  // namespace
}  // namespace tallow

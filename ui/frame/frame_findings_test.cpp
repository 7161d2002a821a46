// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_findings.h"

#include <QApplication>
#include <QDialog>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "tests/frame_fixture.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

class FrameFindingsTest : public FrameTest {
 protected:
  /// Clicks the status bar, and closes the dialog that opens.
  /// \returns the name of the dialog; empty for none
  QString ClickStatusBar() {
    QString name;
    const auto close = [&name] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      name = dialog->objectName();
      dialog->reject();
    };
    QTest::mouseClick(frame.statusBar(), Qt::LeftButton, {}, QPoint(30, 5));
    QTimer::singleShot(0, close);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    return name;
  }
};

TEST_F(FrameFindingsTest, AClickOnTheStatusBarOpensTheListWhenThereIsOne) {
  frame.show();
  frame.NoticeScan({"2 new songs"});
  EXPECT_EQ(frame.statusBar()->currentMessage(), "2 new songs");
  EXPECT_EQ(frame.statusBar()->cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(ClickStatusBar(), "");
  AddSong(music.path(), "a.mp3");
  library.LeaveOut(music / "other/a.mp3", 1);
  frame.NoticeScan({"1 skipped because a song with that file name exists"});
  EXPECT_EQ(frame.statusBar()->cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(ClickStatusBar(), "frmFindings");
}

TEST_F(FrameFindingsTest, AClickOpensATextThatTheStatusBarCannotShowWhole) {
  frame.resize(700, 500);
  frame.show();
  const std::string text = "The settings were cut. " + std::string(200, 'x') + ". Do this.";
  frame.Notice({text});
  EXPECT_EQ(frame.statusBar()->cursor().shape(), Qt::PointingHandCursor);
  ClickStatusBar();
  EXPECT_EQ(messages.Take(), Texts{text});
  EXPECT_EQ(frame.statusBar()->cursor().shape(), Qt::ArrowCursor);
  frame.Notice({"first", "second"});
  ClickStatusBar();
  EXPECT_EQ(messages.Take(), Texts{"first\nsecond"});
  frame.Notice({"short"});
  ClickStatusBar();
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(FrameFindingsTest, SizesAreDeterminedOnceTheWindowIsShown) {
  music.File("a.mp3", "12345");
  AddSong(music.path(), "a.mp3");
  library.Save();
  frame.show();
  frame.Findings().FindSizes();
  EXPECT_TRUE(WaitUntil([this] {
    QCoreApplication::processEvents();
    return library.Facts(1).size == 5;
  }));
}

TEST_F(FrameFindingsTest, ACommandWithoutAJukeboxIsReported) {
  frame.show();
  for (const char* const item : {"mnuCut", "mnuPlayAllTheSongInNode", "mnuSave", "mnuSaveAs"}) {
    frame.statusBar()->clearMessage();
    QAction* const action = frame.findChild<QAction*>(QLatin1String(item));
    ASSERT_NE(action, nullptr) << item;
    action->trigger();
    EXPECT_EQ(frame.statusBar()->currentMessage(),
              "No jukebox is open. Open one, or make a new one, and try again.")
        << item;
  }
}

}  // namespace
}  // namespace tallow

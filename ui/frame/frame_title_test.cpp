// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_title.h"

#include <gtest/gtest.h>

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWindow>

#include "tests/frame_fixture.h"
#include "tests/model_stand_in.h"
#include "ui/support/shown_title.h"

namespace tallow {
namespace {

class FrameTitleTest : public testing::Test {
 protected:
  FrameTitleTest() { model.texts = {{1, "A Title - An Artist"}, {2, "[*] - <b>"}}; }

  QMainWindow window;
  ModelStandIn model;
};

TEST_F(FrameTitleTest, BeginsWithTheSongWhileOnePlays) {
  const FrameTitle title(window, model);
  EXPECT_EQ(window.windowTitle(), "Tallow");
  model.Play(1, 200);
  EXPECT_EQ(window.windowTitle(), "A Title - An Artist - Tallow");
  model.Change([](Playing& now) { now.status = kPaused; });
  EXPECT_EQ(window.windowTitle(), "Tallow");
  model.Play(2, 200);
  EXPECT_EQ(window.windowTitle(), "[*][*] - <b> - Tallow");
  model.Set({});
  EXPECT_EQ(window.windowTitle(), "Tallow");
}

TEST_F(FrameTitleTest, ASongWhoseFileIsGoneIsNotShown) {
  const FrameTitle title(window, model);
  model.Play(3, 200);
  EXPECT_EQ(window.windowTitle(), "Tallow");
}

TEST_F(FrameTitleTest, TheCaptionOfAMaximizedWindowFollows) {
  // Qt adds the caption only where the menu bar shows the window's buttons.
  window.menuBar();
  auto* const area = new QMdiArea(&window);
  window.setCentralWidget(area);
  const FrameTitle title(window, model);
  auto* const sub = area->addSubWindow(new QWidget);
  sub->setWindowTitle(QStringLiteral("MIX"));
  window.show();
  sub->showMaximized();
  EXPECT_EQ(window.windowTitle(), "Tallow - [MIX]");
  model.Play(1, 200);
  EXPECT_EQ(window.windowTitle(), "A Title - An Artist - Tallow - [MIX]");
  sub->showNormal();
  EXPECT_EQ(window.windowTitle(), "A Title - An Artist - Tallow");
  sub->showMaximized();
  model.Set({});
  EXPECT_EQ(window.windowTitle(), "Tallow - [MIX]");
}

TEST_F(FrameTitleTest, ListensUntilItEnds) {
  { const FrameTitle title(window, model); }
  EXPECT_TRUE(model.listeners.empty());
}

class TitlesOfJukeboxes : public FrameTest {};

TEST_F(TitlesOfJukeboxes, TheTitlesShowAStarForAnUnsavedJukeboxAndNoPlaceholder) {
  frmMain& one = ShowJukebox();
  one.Jukebox().Caption("ONE");
  const auto title_becomes = [this](const QString& title) {
    return QTest::qWaitFor([&] { return frame.windowHandle()->title() == title; });
  };
  EXPECT_TRUE(title_becomes("Tallow - [ONE]")) << frame.windowHandle()->title().toStdString();
  one.Jukebox().IsFormDirty(true);
  EXPECT_TRUE(title_becomes("Tallow - [ONE*]")) << frame.windowHandle()->title().toStdString();
  frmMain& two = ShowJukebox();
  two.Jukebox().Caption("TWO");
  EXPECT_TRUE(title_becomes("Tallow - [TWO]")) << frame.windowHandle()->title().toStdString();
  auto& menu = *frame.findChild<QMenu*>(QStringLiteral("mnuWindowList"));
  emit menu.aboutToShow();
  EXPECT_EQ(Item("WindowList1").text(), "&1 ONE*");
  EXPECT_EQ(Item("WindowList2").text(), "&2 TWO");
  Item("WindowList1").trigger();
  EXPECT_TRUE(title_becomes("Tallow - [ONE*]")) << frame.windowHandle()->title().toStdString();
  SubOf(one).showNormal();
  EXPECT_TRUE(title_becomes("Tallow")) << frame.windowHandle()->title().toStdString();
  EXPECT_EQ(ShownTitle(SubOf(one)), "ONE*");
}

}  // namespace
}  // namespace tallow

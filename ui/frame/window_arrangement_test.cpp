// SPDX-License-Identifier: GPL-3.0-or-later
// The positions of the windows in the frame, and of the frame on the screen.
#include "ui/frame/window_arrangement.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QRegion>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include "app/style_switches.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"  // IWYU pragma: keep, for the conversion to QWidget

namespace tallow {
namespace {

class WindowArrangement : public FrameTest {};

TEST_F(WindowArrangement, ArrangingIconsLeavesThePanelAlone) {
  ShowJukebox();
  Item("mnuPlayAllTheSongInNode").trigger();
  const QRect place = SubOf(*frame.PlayerPanel()).geometry();
  Item("mnuArrageIcons").trigger();
  EXPECT_FALSE(SubOf(*frame.PlayerPanel()).isMinimized());
  EXPECT_EQ(SubOf(*frame.PlayerPanel()).geometry(), place);
}

TEST_F(WindowArrangement, NothingOffersToHideTheToolbar) {
  ShowJukebox();
  QSettings().setValue(QStringLiteral("Window/State"), [this] {
    frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"))->hide();
    return frame.saveState();
  }());
  RecordedLink other_link;
  frmMDIForm1 next(tallow, other_link, searches, messages.Shower());
  EXPECT_FALSE(next.findChild<QToolBar*>(QStringLiteral("Toolbar1"))->isHidden());
  EXPECT_EQ(static_cast<QMainWindow&>(next).createPopupMenu(), nullptr);
  QSettings().remove(QStringLiteral("Window"));
}

TEST_F(WindowArrangement, TheWindowListShowsTheOpenWindowsWithACheckAtTheActiveOne) {
  ShowJukebox().Jukebox().Caption("ONE & A");
  frmMain& two = ShowJukebox();
  two.Jukebox().Caption("TWO");
  auto* const menu = frame.findChild<QMenu*>(QStringLiteral("mnuWindowList"));
  const auto list = [&] {
    emit menu->aboutToShow();
    QStringList items;
    for (const QAction* const action : menu->actions().mid(3))
      items.append(action->isSeparator() ? QStringLiteral("-")
                                         : action->text() + (action->isChecked() ? " x" : ""));
    return items;
  };
  EXPECT_EQ(list(), (QStringList{"-", "&1 ONE && A", "&2 TWO x"}));
  Item("WindowList1").trigger();
  EXPECT_EQ(list(), (QStringList{"-", "&1 ONE && A x", "&2 TWO"}));
  SubOf(two).close();
  DeleteClosedWindows();
  EXPECT_EQ(list(), (QStringList{"-", "&1 ONE && A x"}));
}

TEST_F(WindowArrangement, ArrangingMinimizesThePanel) {
  frmMain& window = ShowJukebox();
  for (const char* const item : {"mnuCascade", "mnuTile"}) {
    Item("mnuPlayAllTheSongInNode").trigger();
    EXPECT_FALSE(SubOf(*frame.PlayerPanel()).isMinimized());
    Item(item).trigger();
    EXPECT_TRUE(SubOf(*frame.PlayerPanel()).isMinimized()) << item;
    EXPECT_FALSE(SubOf(window).isMaximized());
  }
}

TEST_F(WindowArrangement, CascadedWindowsLieOneBeforeTheOther) {
  std::vector<frmMain*> windows;
  for (int k = 0; k < 4; ++k) windows.push_back(&ShowJukebox());
  Area().setActiveSubWindow(&SubOf(*windows[1]));
  Item("mnuCascade").trigger();
  const QList<QMdiSubWindow*> stack = Area().subWindowList(QMdiArea::StackingOrder);
  EXPECT_EQ(stack.back(), &SubOf(*windows[1]));
  for (int k = 1; k < stack.size(); ++k) EXPECT_GT(stack[k]->y(), stack[k - 1]->y());
  EXPECT_EQ(Area().activationOrder(), QMdiArea::CreationOrder);
}

TEST_F(WindowArrangement, TilingLeavesTheKeyboardWhereItWas) {
  ShowJukebox();
  frmMain& two = ShowJukebox();
  SubOf(two).showMaximized();
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  two.PVExplorer1().GrabFocus(true);
  QWidget* const list = QApplication::focusWidget();
  ASSERT_NE(list, nullptr);
  for (const char* const item : {"mnuTile", "mnuCascade"}) {
    Item(item).trigger();
    EXPECT_EQ(QApplication::focusWidget(), list) << item;
  }
}

TEST_F(WindowArrangement, TilingLeavesAStripForMinimizedWindows) {
  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
  frmMain& aside = ShowJukebox();
  SubOf(aside).showMinimized();
  Item("mnuTile").trigger();
  for (const frmMain* const window : {&one, &two})
    EXPECT_FALSE(SubOf(*window).geometry().intersects(SubOf(aside).geometry()));
}

TEST_F(WindowArrangement, CommandsSkipAMinimizedJukebox) {
  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
  SubOf(two).showMinimized();
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(one));
  const std::int32_t before = two.Jukebox().Nodes().Count();
  Item("mnuAddFolderToRoot").trigger();
  EXPECT_EQ(two.Jukebox().Nodes().Count(), before);
  EXPECT_EQ(one.Jukebox().Nodes().Count(), before + 1);
}

TEST_F(WindowArrangement, TheStatusBarIsVisibleFromTheStart) {
  frame.show();
  EXPECT_TRUE(frame.statusBar()->isVisible());
}

TEST_F(WindowArrangement, CascadingLeavesMinimizedWindowsMinimized) {
  frmMain& aside = ShowJukebox();
  frmMain& one = ShowJukebox();
  Item("mnuPlayAllTheSongInNode").trigger();
  SubOf(*frame.PlayerPanel()).showMinimized();
  SubOf(aside).showMinimized();
  Area().setActiveSubWindow(&SubOf(one));
  Item("mnuCascade").trigger();
  EXPECT_TRUE(SubOf(*frame.PlayerPanel()).isMinimized());
  EXPECT_TRUE(SubOf(aside).isMinimized());
  EXPECT_EQ(SubOf(one).pos(), QPoint(0, 0));
}

TEST_F(WindowArrangement, CascadedWindowsAreLargeEnoughToUse) {
  Item("mnuCascade").trigger();
  std::vector<frmMain*> windows;
  for (const int count : {1, 3, 20}) {
    while (static_cast<int>(windows.size()) < count) windows.push_back(&ShowJukebox());
    Item("mnuCascade").trigger();
    for (const frmMain* const window : windows) {
      EXPECT_GE(SubOf(*window).width(), 400) << count;
      EXPECT_GE(SubOf(*window).height(), 250) << count;
    }
    EXPECT_EQ(Area().currentSubWindow(), &SubOf(*windows.back()));
  }
}

TEST_F(WindowArrangement, ModernWindowsAreSideBySideWhereTheFrameIsWiderThanHigh) {
  std::vector<frmMain*> windows;
  for (int k = 0; k < 5; ++k) windows.push_back(&ShowJukebox());
  const auto places = [&](int count) {
    for (int k = 0; k < 5; ++k) SubOf(*windows[static_cast<std::size_t>(k)]).setVisible(k < count);
    Item("mnuTile").trigger();
    QCoreApplication::processEvents();
    QStringList texts;
    for (int k = 0; k < count; ++k) {
      const QRect place = SubOf(*windows[static_cast<std::size_t>(k)]).geometry();
      texts.append(QStringLiteral("%1 %2").arg(place.x() > 0).arg(place.y() > 0));
    }
    return texts.join(", ");
  };
  frame.resize(1200, 600);
  EXPECT_EQ(places(3), "0 0, 0 1, 0 1");
  tallow.preferences.SetStyle(Style::kModern);
  EXPECT_EQ(places(3), "0 0, 1 0, 1 0");
  EXPECT_EQ(places(5), "0 0, 1 0, 1 1, 1 0, 1 1");
  frame.resize(600, 1000);
  EXPECT_EQ(places(3), "0 0, 0 1, 0 1");
}

TEST_F(WindowArrangement, TilingIsHorizontalWithAnyNumberOfWindows) {
  Item("mnuTile").trigger();
  std::vector<frmMain*> windows;
  for (const int count : {1, 2, 3, 20}) {
    while (static_cast<int>(windows.size()) < count) windows.push_back(&ShowJukebox());
    Item("mnuTile").trigger();
    QCoreApplication::processEvents();
    const QRect space = Area().viewport()->rect();
    QRegion covered;
    for (const frmMain* const window : windows) {
      const QRect place = SubOf(*window).geometry();
      EXPECT_TRUE(space.contains(place)) << count;
      EXPECT_FALSE(covered.intersects(place)) << count;
      covered += place;
      if (count <= 3) {
        EXPECT_EQ(place.width(), space.width());
      }
    }
    EXPECT_EQ(covered.boundingRect(), space);
    EXPECT_EQ(Area().currentSubWindow(), &SubOf(*windows.back()));
  }
}

TEST_F(WindowArrangement, IconsAreArrangedAtTheBottom) {
  std::vector<frmMain*> windows;
  for (int k = 0; k < 7; ++k) {
    windows.push_back(&ShowJukebox());
    SubOf(*windows.back()).showMinimized();
    SubOf(*windows.back()).move(k * 13, k * 17);
  }
  Item("mnuArrageIcons").trigger();
  const QRect space = Area().viewport()->rect();
  QRegion covered;
  for (const frmMain* const window : windows) {
    const QRect place = SubOf(*window).geometry();
    EXPECT_TRUE(space.contains(place));
    EXPECT_FALSE(covered.intersects(place));
    covered += place;
  }
  EXPECT_EQ(SubOf(*windows[0]).geometry().bottomLeft(), space.bottomLeft());
}

TEST_F(WindowArrangement, TheGeometryOfTheWindowIsRemembered) {
  ShowJukebox();
  frame.resize(888, 555);
  frame.addToolBar(Qt::LeftToolBarArea, frame.findChild<QToolBar*>());
  EXPECT_TRUE(frame.close());
  RecordedLink other_link;
  frmMDIForm1 next(tallow, other_link, searches, messages.Shower());
  EXPECT_EQ(next.size(), QSize(888, 555));
  EXPECT_EQ(next.toolBarArea(next.findChild<QToolBar*>()), Qt::LeftToolBarArea);
  // So that the other tests start without a stored geometry.
  QSettings().remove(QStringLiteral("Window"));
}

}  // namespace
}  // namespace tallow

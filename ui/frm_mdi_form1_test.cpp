// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frm_mdi_form1.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>

#include "jukebox/frm_main.h"
#include "tests/window_fixture.h"

namespace tallow {
namespace {

class FrmMdiForm1 : public LibraryTest {
 protected:
  frmMDIForm1 frame{tallow};
};

TEST_F(FrmMdiForm1, HoldsTheOpenJukeboxesInTheirOrder) {
  EXPECT_EQ(frame.objectName(), "frmMDIForm1");
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
  frmMain& one = frame.NewJukeboxWindow();
  frmMain& two = frame.NewJukeboxWindow();
  EXPECT_EQ(frame.OpenJukeboxes(), (std::vector<Jukebox*>{&one.Jukebox(), &two.Jukebox()}));
  EXPECT_EQ(frame.WindowOf(two.Jukebox()), &two);
  Jukebox stranger;
  EXPECT_EQ(frame.WindowOf(stranger), nullptr);
}

TEST_F(FrmMdiForm1, AShownJukeboxFillsTheFrame) {
  frmMain& window = frame.NewJukeboxWindow();
  window.Jukebox().Caption("MIX");
  frame.show();
  EXPECT_FALSE(window.isVisible());
  frame.ShowJukeboxWindow(window);
  EXPECT_TRUE(window.isVisible());
  auto* const area = frame.findChild<QMdiArea*>();
  ASSERT_EQ(area->subWindowList().size(), 1);
  EXPECT_TRUE(area->subWindowList()[0]->isMaximized());
  EXPECT_EQ(area->subWindowList()[0]->windowTitle(), "MIX");
}

TEST_F(FrmMdiForm1, AClosedJukeboxIsNoLongerOpen) {
  frmMain& window = frame.NewJukeboxWindow();
  frame.show();
  frame.ShowJukeboxWindow(window);
  frame.findChild<QMdiArea*>()->closeAllSubWindows();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
}

TEST_F(FrmMdiForm1, ANoticeIsInTheStatusBarWithAllLinesInItsTip) {
  frame.Notice({});
  EXPECT_EQ(frame.statusBar()->currentMessage(), "");
  frame.Notice({"first", "second", "third"});
  EXPECT_EQ(frame.statusBar()->currentMessage(), "first  (and 2 more)");
  EXPECT_EQ(frame.statusBar()->toolTip(), "first\nsecond\nthird");
  frame.Notice(std::vector<std::string>(50, "line"));
  EXPECT_EQ(frame.statusBar()->toolTip().count(u'\n'), 20);
  EXPECT_TRUE(frame.statusBar()->toolTip().endsWith(". . ."));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player_bar.h"

#include <gtest/gtest.h>

#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include "app/playing/playing_preferences.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/player/player_bar.h"

namespace tallow {
namespace {

/// Waits until the frame is the active window.
void Activate(QWidget& frame) {
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
}

class FrameBar : public FrameTest {
 protected:
  template <typename Widget>
  Widget& Part(const char* name) {
    return *frame.findChild<Widget*>(QLatin1String(name));
  }
  PlayerBar& Bar() { return Part<PlayerBar>("PlayerBar"); }
  static void PressF6() {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    QCoreApplication::processEvents();
  }
};

TEST_F(FrameBar, IsOffInTheClassicStyle) {
  ShowJukebox();
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_FALSE(Item("mnuPlayerBar").isChecked());
  EXPECT_TRUE(Item("mnuPlayerBar").isCheckable());
}

TEST_F(FrameBar, FollowsTheStyleUntilTheUserTurnsItOff) {
  ShowJukebox();
  tallow.preferences.SetStyle(Style::kModern);
  EXPECT_TRUE(Bar().isVisible());
  EXPECT_TRUE(Item("mnuPlayerBar").isChecked());
  tallow.preferences.SetStyle(Style::kClassic);
  EXPECT_FALSE(Bar().isVisible());
  tallow.preferences.SetStyle(Style::kModern);
  Item("mnuPlayerBar").trigger();
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_FALSE(Item("mnuPlayerBar").isChecked());
  tallow.preferences.SetStyle(Style::kClassic);
  tallow.preferences.SetStyle(Style::kModern);
  EXPECT_FALSE(Bar().isVisible());
}

TEST_F(FrameBar, CanBeTurnedOnInTheClassicStyle) {
  ShowJukebox();
  Item("mnuPlayerBar").trigger();
  EXPECT_TRUE(Bar().isVisible());
  EXPECT_TRUE(Item("mnuPlayerBar").isChecked());
  EXPECT_TRUE(PlayingPreferences(tallow.preferences).ShowsBar());
}

TEST_F(FrameBar, LiesBelowTheJukeboxesAndAboveTheStatusBarInItsWholeWidth) {
  ShowJukebox();
  Item("mnuPlayerBar").trigger();
  for (const int width : {480, 640, 1920}) {
    frame.resize(width, 500);
    QCoreApplication::processEvents();
    ASSERT_EQ(frame.width(), width);
    const auto place = [this](const QWidget& widget) {
      return QRect(widget.mapTo(&frame, QPoint()), widget.size());
    };
    const QRect bar = place(Part<QToolBar>("PlayerBarArea"));
    EXPECT_EQ(bar.width(), width);
    EXPECT_LT(place(Area()).bottom(), bar.top());
    EXPECT_LT(bar.bottom(), place(*frame.statusBar()).top());
    EXPECT_TRUE(bar.contains(place(Bar())));
    EXPECT_GT(Bar().width(), width - 40);
  }
}

TEST_F(FrameBar, IsThereAgainAtTheNextStart) {
  ShowJukebox();
  // The state of the window is stored without the bar, and then the style changes.
  frame.close();
  tallow.preferences.SetStyle(Style::kModern);
  {
    frmMDIForm1 next(tallow, link, searches, messages.Shower());
    next.show();
    EXPECT_TRUE(next.findChild<PlayerBar*>()->isVisible());
    next.close();
  }
  tallow.preferences.SetStyle(Style::kClassic);
  frmMDIForm1 last(tallow, link, searches, messages.Shower());
  last.show();
  EXPECT_FALSE(last.findChild<PlayerBar*>()->isVisible());
}

TEST_F(FrameBar, HasNoPopUpMenuThatHidesIt) {
  ShowJukebox();
  Item("mnuPlayerBar").trigger();
  EXPECT_FALSE(Part<QToolBar>("PlayerBarArea").isMovable());
  EXPECT_FALSE(Part<QToolBar>("PlayerBarArea").isFloatable());
}

TEST_F(FrameBar, IsReachedAndLeftByF6) {
  frmMain& window = ShowJukebox();
  Activate(frame);
  window.GrabFocus();
  const QWidget* const before = QApplication::focusWidget();
  PressF6();
  EXPECT_EQ(QApplication::focusWidget(), before);
  Item("mnuPlayerBar").trigger();
  PressF6();
  EXPECT_TRUE(Bar().HasFocus());
  PressF6();
  EXPECT_EQ(QApplication::focusWidget(), before);
  PressF6();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), before);
}

TEST_F(FrameBar, GivesTheFocusBackWhenItIsTurnedOff) {
  frmMain& window = ShowJukebox();
  Activate(frame);
  window.GrabFocus();
  const QWidget* const before = QApplication::focusWidget();
  Item("mnuPlayerBar").trigger();
  PressF6();
  ASSERT_TRUE(Bar().HasFocus());
  Item("mnuPlayerBar").trigger();
  EXPECT_EQ(QApplication::focusWidget(), before);
}

TEST_F(FrameBar, AClickOnItLeavesTheKeysWithTheList) {
  frmMain& window = ShowJukebox();
  Activate(frame);
  window.GrabFocus();
  const QWidget* const before = QApplication::focusWidget();
  Item("mnuPlayerBar").trigger();
  QTest::mouseClick(&Part<QWidget>("sldVolume"), Qt::LeftButton);
  QTest::mouseClick(&Part<QWidget>("cmdMute"), Qt::LeftButton);
  QTest::mouseClick(&Part<QWidget>("lblSong"), Qt::LeftButton);
  EXPECT_EQ(QApplication::focusWidget(), before);
}

TEST_F(FrameBar, PlaysTheSelectedSongsWhenNothingPlays) {
  frmMain& window = ShowJukebox();
  link.answers["1024 0 104"] = 0;
  link.answers["1024 0 124"] = 0;
  Item("mnuPlayerBar").trigger();
  window.PVExplorer1().Select(*window.Jukebox().Nodes().Find("one"));
  window.PVExplorer1().findChild<QTableView*>()->selectAll();
  HandOvers();
  QTest::mouseClick(&Part<QWidget>("cmdPlay"), Qt::LeftButton);
  EXPECT_EQ(HandOvers(), 1);
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
}

TEST_F(FrameBar, SharesThePlayerWithThePanel) {
  ShowJukebox();
  Item("mnuPlayerBar").trigger();
  Item("mnuPlayerPanel").trigger();
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  EXPECT_TRUE(frame.PlayerPanel()->isVisible());
  link.Take();
  QTest::mouseClick(&Part<QWidget>("cmdMute"), Qt::LeftButton);
  EXPECT_EQ(
      frame.PlayerPanel()->findChild<QAbstractSlider*>(QStringLiteral("hscrlVolume"))->value(), 0);
}

TEST_F(FrameBar, PlayingGoesOnWhenItIsTurnedOff) {
  ShowJukebox();
  Item("mnuPlayerBar").trigger();
  link.Take();
  Item("mnuPlayerBar").trigger();
  for (const std::string& sent : link.Take()) {
    EXPECT_EQ(sent.find("40047"), std::string::npos) << sent;
    EXPECT_EQ(sent.find("40001"), std::string::npos) << sent;
    EXPECT_EQ(sent.find(" 101"), std::string::npos) << sent;
  }
}

}  // namespace
}  // namespace tallow

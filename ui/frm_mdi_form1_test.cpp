// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frm_mdi_form1.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>
#include <QTest>

#include "jukebox/frm_main.h"
#include "player/frm_main_winamp.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"
#include "tests/window_fixture.h"

namespace tallow {
namespace {

class FrmMdiForm1 : public LibraryTest {
 protected:
  FrmMdiForm1() {
    tallow.settings.LocOfWinAmpExe("/opt/player");
    AddSong(music.path(), "a.mp3");
    AddSong(music.path(), "b.mp3");
    music.File("a.mp3");
    music.File("b.mp3");
    link.answers["1024 0 0"] = 0x2081;
  }

  /// A jukebox window on screen with a folder of both songs.
  frmMain& ShowJukebox() {
    frmMain& window = frame.NewJukeboxWindow();
    Folder& folder = window.Jukebox().Nodes().AddChild(nullptr, "one");
    folder.Items().emplace_back(1, 2);
    folder.Items().emplace_back(2, 2);
    frame.show();
    frame.ShowJukeboxWindow(window);
    return window;
  }
  /// How often songs were handed over since the last call.
  std::ptrdiff_t HandOvers() {
    const Texts sent = link.Take();
    return std::count(sent.begin(), sent.end(), "1024 0 101");
  }
  QMdiArea& Area() { return *frame.findChild<QMdiArea*>(); }
  QMdiSubWindow& SubOf(const QWidget& window) {
    return *qobject_cast<QMdiSubWindow*>(window.parentWidget());
  }

  RecordedLink link;
  RecordedMessages messages;
  frmMDIForm1 frame{tallow, link, messages.Shower()};
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

TEST_F(FrmMdiForm1, PlayingOpensThePanelBesideTheJukebox) {
  frmMain& jukebox = ShowJukebox();
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, *jukebox.Jukebox().selectednode());
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(HandOvers(), 1);
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(frame.PlayerPanel()->windowTitle(), "WinAMP Version# 2.081");
  const QMdiSubWindow& panel = SubOf(*frame.PlayerPanel());
  EXPECT_TRUE(panel.isVisible());
  EXPECT_FALSE(panel.isMaximized());
  EXPECT_TRUE(SubOf(jukebox).isMaximized());
  EXPECT_TRUE(Area().viewport()->rect().contains(panel.geometry()));
  // The next command is for the jukebox.
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
  // Jukeboxes are counted without it.
  EXPECT_EQ(frame.OpenJukeboxes().size(), 1U);
}

TEST_F(FrmMdiForm1, AnOpenPanelIsHandedTheListOnceMore) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  const frmMainWinamp* const panel = frame.PlayerPanel();
  HandOvers();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_EQ(HandOvers(), 1);
  EXPECT_EQ(frame.PlayerPanel(), panel);
}

TEST_F(FrmMdiForm1, AMinimizedPanelComesBackForTheNextSongs) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  Area().setActiveSubWindow(&SubOf(*frame.PlayerPanel()));
  SubOf(*frame.PlayerPanel()).showMinimized();
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_FALSE(SubOf(*frame.PlayerPanel()).isMinimized());
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
}

TEST_F(FrmMdiForm1, ThePanelStaysInsideAFrameThatGetsSmaller) {
  frmMain& jukebox = ShowJukebox();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, *jukebox.Jukebox().selectednode());
  frame.resize(700, 420);
  const auto in_the_corner = [&] {
    return Area().viewport()->rect().bottomRight() ==
           SubOf(*frame.PlayerPanel()).geometry().bottomRight();
  };
  EXPECT_TRUE(QTest::qWaitFor(in_the_corner));
  frame.resize(1000, 700);
  EXPECT_TRUE(QTest::qWaitFor(in_the_corner));
  // Where the user has put it, it stays as long as there is room.
  SubOf(*frame.PlayerPanel()).move(100, 150);
  frame.resize(900, 600);
  QCoreApplication::processEvents();
  EXPECT_EQ(SubOf(*frame.PlayerPanel()).pos(), QPoint(100, 150));
  frame.resize(500, 330);
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return Area().viewport()->rect().contains(SubOf(*frame.PlayerPanel()).geometry()); }));
}

TEST_F(FrmMdiForm1, AnEmptySelectionDoesNothing) {
  frmMain& jukebox = ShowJukebox();
  jukebox.ActOnPopUpClick(kPlaySelectedSongs, kListPane, *jukebox.Jukebox().selectednode());
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(FrmMdiForm1, APanelWhosePlayerIsNotThereDoesNotStay) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  link.starts = false;
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_EQ(messages.Take(), Texts{"Couldn't start WinAMP"});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  link.starts = true;
  link.found = 0;
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  // Once it was open it stays, whatever becomes of the player.
  link.found = 7;
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  link.found = 0;
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_NE(frame.PlayerPanel(), nullptr);
}

TEST_F(FrmMdiForm1, WithoutAPlayerTheQuestionComesAndNoPanel) {
  frmMain& jukebox = ShowJukebox();
  tallow.settings.LocOfWinAmpExe("");
  messages.answer = MessageAnswer::kNo;
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, *jukebox.Jukebox().selectednode());
  EXPECT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
}

TEST_F(FrmMdiForm1, ThePendingSearchIsSaidInTheStatusBarWhileTheFrameIsDisabled) {
  frmMain& jukebox = ShowJukebox();
  tallow.settings.LocOfWinAmpExe("");
  tallow.player_search_is_pending = true;
  QString status;
  bool enabled = true;
  tallow.search_for_player = [&] {
    status = frame.statusBar()->currentMessage();
    enabled = frame.isEnabled();
    tallow.settings.LocOfWinAmpExe("/opt/player");
  };
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, *jukebox.Jukebox().selectednode());
  EXPECT_EQ(status, "Searching for Winamp  . . . ");
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(frame.isEnabled());
  EXPECT_EQ(frame.statusBar()->currentMessage(), "");
  EXPECT_EQ(HandOvers(), 1);
}

TEST_F(FrmMdiForm1, ClosingThePanelClosesThePlayerAndTheNextSongsOpenItAnew) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  link.Take();
  SubOf(*frame.PlayerPanel()).close();
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, folder);
  EXPECT_EQ(HandOvers(), 1);
}

TEST_F(FrmMdiForm1, ClosingTheFrameClosesThePanel) {
  frmMain& jukebox = ShowJukebox();
  jukebox.ActOnPopUpClick(kPlayAllSongsInFolder, kListPane, *jukebox.Jukebox().selectednode());
  link.Take();
  frame.close();
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
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

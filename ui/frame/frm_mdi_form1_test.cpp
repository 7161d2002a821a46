// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frm_mdi_form1.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QEvent>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTest>

#include "jukebox/initial_jukebox.h"
#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_tip.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/support/shown_title.h"

namespace tallow {
namespace {

using FrmMdiForm1 = FrameTest;

TEST_F(FrmMdiForm1, HoldsTheOpenJukeboxesInTheirOrder) {
  EXPECT_EQ(frame.objectName(), "frmMDIForm1");
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
  frmMain& one = frame.NewJukeboxWindow();
  frmMain& two = frame.NewJukeboxWindow();
  EXPECT_EQ(frame.OpenJukeboxes(), (std::vector<Jukebox*>{&one.Jukebox(), &two.Jukebox()}));
  EXPECT_EQ(frame.WindowOf(two.Jukebox()), &two);
  Jukebox other;
  EXPECT_EQ(frame.WindowOf(other), nullptr);
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
  EXPECT_EQ(ShownTitle(*area->subWindowList()[0]), "MIX");
}

TEST_F(FrmMdiForm1, AClosedJukeboxIsNoLongerOpen) {
  frmMain& window = frame.NewJukeboxWindow();
  frame.show();
  frame.ShowJukeboxWindow(window);
  frame.findChild<QMdiArea*>()->closeAllSubWindows();
  DeleteClosedWindows();
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
}

TEST_F(FrmMdiForm1, PlayingOpensThePanelBesideTheJukebox) {
  frmMain& jukebox = ShowJukebox();
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(HandOvers(), 1);
  EXPECT_EQ(tallow.SongsToPlay, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(frame.PlayerPanel()->windowTitle(), "WinAMP Version# 2.081");
  const QMdiSubWindow& panel = SubOf(*frame.PlayerPanel());
  EXPECT_TRUE(panel.isVisible());
  EXPECT_FALSE(panel.isMaximized());
  EXPECT_TRUE(SubOf(jukebox).isMaximized());
  EXPECT_TRUE(Area().viewport()->rect().contains(panel.geometry()));
  // The next command acts on the jukebox.
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
  // The panel is no jukebox.
  EXPECT_EQ(frame.OpenJukeboxes().size(), 1U);
}

TEST_F(FrmMdiForm1, PlayingAgainHandsTheListToTheOpenPanel) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  const frmMainWinamp* const panel = frame.PlayerPanel();
  HandOvers();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_EQ(HandOvers(), 1);
  EXPECT_EQ(frame.PlayerPanel(), panel);
}

TEST_F(FrmMdiForm1, AMinimizedPanelComesBackForTheNextSongs) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  Area().setActiveSubWindow(&SubOf(*frame.PlayerPanel()));
  SubOf(*frame.PlayerPanel()).showMinimized();
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_FALSE(SubOf(*frame.PlayerPanel()).isMinimized());
  EXPECT_EQ(Area().activeSubWindow(), &SubOf(jukebox));
}

TEST_F(FrmMdiForm1, ThePanelStaysInsideAFrameThatGetsSmaller) {
  frmMain& jukebox = ShowJukebox();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  frame.resize(700, 420);
  const auto in_the_corner = [&] {
    return Area().viewport()->rect().bottomRight() ==
           SubOf(*frame.PlayerPanel()).geometry().bottomRight();
  };
  EXPECT_TRUE(QTest::qWaitFor(in_the_corner));
  frame.resize(1000, 700);
  EXPECT_TRUE(QTest::qWaitFor(in_the_corner));
  // A panel that the user has moved stays in place while it fits in the frame.
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
  jukebox.Run(ListCommand::kPlaySelectedSongs, jukebox.Jukebox().selectednode());
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(FrmMdiForm1, APanelWhosePlayerDoesNotStartIsClosed) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  link.starts = false;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_EQ(messages.Take(), Texts{"Couldn't start WinAMP"});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  link.starts = true;
  link.found = 0;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  // A panel that has played once stays open, even when the player is gone.
  link.found = 7;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  link.found = 0;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_NE(frame.PlayerPanel(), nullptr);
}

TEST_F(FrmMdiForm1, WithoutAPlayerTheUserIsAskedAndNoPanelOpens) {
  frmMain& jukebox = ShowJukebox();
  tallow.settings.LocOfWinAmpExe("");
  messages.answer = MessageAnswer::kNo;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  EXPECT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
}

TEST_F(FrmMdiForm1, ThePendingSearchIsReportedWhileTheFrameIsDisabled) {
  frmMain& jukebox = ShowJukebox();
  tallow.settings.LocOfWinAmpExe("");
  tallow.player_search_is_pending = true;
  QString status;
  bool enabled = true;
  const auto splashes = [] {
    std::vector<QWidget*> shown;
    for (QWidget* const top : QApplication::topLevelWidgets())
      if (top->objectName() == QLatin1String("frmSplash") && top->isVisible()) shown.push_back(top);
    return shown;
  };
  bool can_cancel = false;
  searches.for_player = [&] {
    status = frame.statusBar()->currentMessage();
    enabled = frame.isEnabled();
    for (const QWidget* const splash : splashes())
      can_cancel = splash->findChild<QPushButton*>("cmdCancel")->isVisible();
    tallow.settings.LocOfWinAmpExe("/opt/player");
  };
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  EXPECT_EQ(status, "Searching for Winamp  . . . ");
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(can_cancel);
  EXPECT_TRUE(splashes().empty());
  EXPECT_TRUE(frame.isEnabled());
  EXPECT_EQ(frame.statusBar()->currentMessage(), "");
  EXPECT_EQ(HandOvers(), 1);
}

TEST_F(FrmMdiForm1, SettingsThatCannotBeSavedWithARankAreReportedInTheStatusBar) {
  frmMain& jukebox = ShowJukebox();
  auto& list = *jukebox.findChild<QTableView*>(QStringLiteral("ListView"));
  list.selectRow(0);
  RemoveFile(tallow.settings_path);
  CreateFolder(tallow.settings_path);
  jukebox.ActOnPopUpClick(8, kListPane, jukebox.Jukebox().selectednode());
  EXPECT_EQ(library.Mp3Info(5, 1), "7");
  EXPECT_TRUE(frame.statusBar()->currentMessage().startsWith("The settings could not be saved. "));
}

TEST_F(FrmMdiForm1, ClosingThePanelClosesThePlayerAndTheNextSongsOpenItAnew) {
  frmMain& jukebox = ShowJukebox();
  Folder& folder = *jukebox.Jukebox().selectednode();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  link.Take();
  SubOf(*frame.PlayerPanel()).close();
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
  DeleteClosedWindows();
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, &folder);
  EXPECT_EQ(HandOvers(), 1);
}

TEST_F(FrmMdiForm1, ClosingTheFrameClosesThePanel) {
  frmMain& jukebox = ShowJukebox();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  link.Take();
  frame.close();
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
}

TEST_F(FrmMdiForm1, TheFileMenuHasItsItemsInTheirOrder) {
  auto* const menu = frame.findChild<QMenu*>(QStringLiteral("mnuFile"));
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->title(), "&File");
  QStringList items;
  for (const QAction* const action : menu->actions())
    items.append(action->isSeparator() ? QStringLiteral("-")
                                       : action->objectName() + " " + action->text() + " " +
                                             action->shortcut().toString());
  EXPECT_EQ(items, (QStringList{"mnuNew &New Jukebox Ctrl+N", "mnuOpen &Open... Ctrl+O",
                                "mnuClose &Close ", "-", "mnuSave &Save Ctrl+S",
                                "mnuSaveAs Save &As... ", "mnuExit E&xit ", "-"}));
  EXPECT_FALSE(menu->actions().back()->isVisible());
}

TEST_F(FrmMdiForm1, RecentFilesAppearInTheFileMenuAsTheyAreSaved) {
  const auto item = [&](int element) {
    return frame.findChild<QAction*>(QStringLiteral("mnuTheFiles%1").arg(element));
  };
  EXPECT_EQ(item(1), nullptr);
  tallow.settings.LocOfLastSavedJukeBox("/F/one & two.juk");
  ASSERT_NE(item(1), nullptr);
  EXPECT_TRUE(item(0)->isVisible());
  EXPECT_EQ(item(1)->text(), "&1.  /F/one && two.juk");
  EXPECT_EQ(item(2), nullptr);
  tallow.settings.LocOfLastSavedJukeBox(
      "/F/abcdefghijklmnopqrstuvwxyz/abcdefghijklmnopqrstuvwxyz.juk");
  EXPECT_EQ(item(1)->text(), "&1.  /F/abcdefghijkl .... fghijklmnopqrstuvwxyz.juk");
  EXPECT_EQ(item(2)->text(), "&2.  /F/one && two.juk");
}

TEST_F(FrmMdiForm1, AJukeboxIsSavedClosedAndOpenedFromTheMenu) {
  frmMain& jukebox = ShowJukebox();
  jukebox.Jukebox().Caption("SAMPLE");
  const auto choose = [&](const char* item, const QString& file) {
    WithFileDialog(Item(item), [&](QFileDialog& dialog) {
      EXPECT_EQ(dialog.objectName(), "CommonDialog1");
      EXPECT_EQ(dialog.directory(), QDir(QString::fromStdString(application / "Grouping/")));
      EXPECT_EQ(dialog.nameFilters(), QStringList{"Juke Box Files (*.juk)"});
      Choose(dialog, file);
    });
  };
  choose("mnuSaveAs", "Mix");
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_TRUE(FileExists(application / "Grouping/mix.juk"));
  EXPECT_EQ(ShownTitle(jukebox), "MIX");
  Item("mnuClose").trigger();
  DeleteClosedWindows();
  ASSERT_TRUE(frame.OpenJukeboxes().empty());
  choose("mnuOpen", QString::fromStdString(application / "Grouping/mix.juk"));
  ASSERT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_EQ(frame.OpenJukeboxes()[0]->Caption(), "MIX");
  EXPECT_TRUE(SubOf(*frame.WindowOf(*frame.OpenJukeboxes()[0])).isVisible());
  Item("mnuTheFiles1").trigger();
  EXPECT_EQ(messages.Take(), Texts{"This file is already open"});
  RemoveFile(application / "Grouping/mix.juk");
  messages.answer = MessageAnswer::kNo;
  Item("mnuClose").trigger();
  DeleteClosedWindows();
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to MIX"});
  Item("mnuTheFiles1").trigger();
  EXPECT_EQ(messages.Take().size(), 1U);
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
}

TEST_F(FrmMdiForm1, ANewJukeboxIsTheSampleFirstAndNumberedLater) {
  frame.show();
  QAction* const item = frame.findChild<QAction*>(QStringLiteral("mnuNew"));
  item->trigger();
  ASSERT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_EQ(frame.OpenJukeboxes()[0]->Caption(), kSampleCaption);
  item->trigger();
  item->trigger();
  ASSERT_EQ(frame.OpenJukeboxes().size(), 3U);
  EXPECT_EQ(frame.OpenJukeboxes()[1]->Caption(), "JukeBox2");
  EXPECT_EQ(frame.OpenJukeboxes()[2]->Caption(), "JukeBox3");
  const Jukebox& jukebox = *frame.OpenJukeboxes()[2];
  EXPECT_EQ(jukebox.Nodes().Count(), 1);
  EXPECT_EQ(jukebox.Nodes().ChildAt(0).Text(), "All Songs");
  EXPECT_EQ(jukebox.ColumnHeaders(), (Texts{"Name    --        (click to sort)", "Key"}));
}

TEST_F(FrmMdiForm1, TheControlFillsItsWindowWhateverItsState) {
  frmMain& window = ShowJukebox();
  const auto expect_filled = [&] {
    QCoreApplication::processEvents();
    const QRect control = window.PVExplorer1().geometry();
    EXPECT_EQ(control.topLeft(), QPoint(0, 0));
    EXPECT_GE(control.width(), window.width());
    // The layout may leave up to 12 pixels for a frame that a style may draw.
    EXPECT_GE(control.bottom(), window.height() - 12);
    const auto* const list = window.findChild<QTableView*>();
    EXPECT_TRUE(window.rect().contains(list->mapTo(&window, list->rect().bottomRight())))
        << window.width() << "x" << window.height() << " control " << control.width() << "x"
        << control.height() << " list to " << list->mapTo(&window, list->rect().bottomRight()).x()
        << " " << list->mapTo(&window, list->rect().bottomRight()).y();
  };
  expect_filled();
  frame.resize(700, 500);
  expect_filled();
  frame.resize(1100, 800);
  expect_filled();
  SubOf(window).showNormal();
  expect_filled();
  SubOf(window).showMaximized();
  expect_filled();
}

TEST_F(FrmMdiForm1, RestoringOneJukeboxRestoresAllInsideTheFrame) {
  std::vector<frmMain*> windows;
  for (int k = 0; k < 8; ++k) windows.push_back(&ShowJukebox());
  for (const frmMain* const window : windows) EXPECT_TRUE(SubOf(*window).isMaximized());
  SubOf(*windows.back()).showNormal();
  for (const frmMain* const window : windows) {
    EXPECT_FALSE(SubOf(*window).isMaximized());
    EXPECT_TRUE(Area().viewport()->rect().contains(SubOf(*window).geometry()));
  }
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(*windows.back()));
}

TEST_F(FrmMdiForm1, AFileThatCannotBeOpenedLeavesTheActiveJukeboxActive) {
  ShowJukebox();
  frmMain& two = ShowJukebox();
  ShowJukebox();
  Area().setActiveSubWindow(&SubOf(two));
  tallow.settings.LocOfLastSavedJukeBox(application / "gone.juk");
  Item("mnuTheFiles1").trigger();
  EXPECT_EQ(messages.Take().size(), 1U);
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(two));
}

TEST_F(FrmMdiForm1, ANewJukeboxSkipsTheNumbersOfOpenJukeboxes) {
  ShowJukebox().Jukebox().Caption("JukeBox2");
  Item("mnuNew").trigger();
  EXPECT_EQ(frame.OpenJukeboxes()[1]->Caption(), "JukeBox3");
}

TEST_F(FrmMdiForm1, SavingMinimizesAnActivePanel) {
  frmMain& jukebox = ShowJukebox();
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  jukebox.Jukebox().Caption("MIX");
  jukebox.Jukebox().FileLocation(application / "Grouping/");
  Area().setActiveSubWindow(&SubOf(*frame.PlayerPanel()));
  frame.SaveDatForm();
  EXPECT_TRUE(SubOf(*frame.PlayerPanel()).isMinimized());
  EXPECT_TRUE(FileExists(application / "Grouping/mix.juk"));
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

TEST_F(FrmMdiForm1, ThePlayerFoundAtStartUpIsTheOneStarted) {
  frmMain& jukebox = ShowJukebox();
  tallow.player_path = "/opt/player of the start";
  link.found = 0;
  jukebox.Run(ListCommand::kPlayAllSongsInFolder, jukebox.Jukebox().selectednode());
  const Texts sent = link.Take();
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "start /opt/player of the start"), 1);
}

TEST_F(FrmMdiForm1, TheHelpKeyAndTheHelpCommandsOpenTheHelpFileOfTheStart) {
  ShowJukebox();
  tallow.help_file = "/opt/tallowhelp.hlp";
  Texts opened;
  bool opens = true;
  frame.OnOpenHelp([&](const std::string& path) {
    opened.push_back(path);
    return opens;
  });
  const auto shown = [] {
    const QWidgetList all = QApplication::topLevelWidgets();
    return std::any_of(all.begin(), all.end(), [](const QWidget* top) {
      return top->objectName() == QLatin1String("frmHelp") && top->isVisible();
    });
  };
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  const auto ask_three_times = [&] {
    Item("mnuHelpp").trigger();
    Item("Button17").trigger();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
  };
  ask_three_times();
  EXPECT_EQ(opened, Texts(3, "/opt/tallowhelp.hlp"));
  EXPECT_FALSE(shown());
  // If the help file cannot be opened, the manual is shown.
  opens = false;
  Item("mnuHelpp").trigger();
  EXPECT_TRUE(shown());
}

TEST_F(FrmMdiForm1, TheTipOfTheStartLeavesTheKeyboardToTheFrame) {
  frmMain& window = ShowJukebox();
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  window.GrabFocus();
  QWidget* const focus = QApplication::focusWidget();
  ASSERT_NE(focus, nullptr);
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 1);
  frame.ShowTipOfStart();
  auto* const tip = frame.findChild<frmTip*>();
  ASSERT_NE(tip, nullptr);
  EXPECT_TRUE(tip->isVisible());
  EXPECT_FALSE(tip->isModal());
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.isActiveWindow(); }));
  EXPECT_EQ(QApplication::focusWidget(), focus);
  // A tip that the user closes is not kept.
  tip->accept();
  DeleteClosedWindows();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  // Esc in the frame closes it, too.
  frame.ShowTipOfStart();
  ASSERT_NE(frame.findChild<frmTip*>(), nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return frame.isActiveWindow(); }));
  window.GrabFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  DeleteClosedWindows();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  // With the frame, the tip is closed.
  frame.ShowTipOfStart();
  frame.close();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
  frame.show();
  frame.ShowTipOfStart();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
}

}  // namespace
}  // namespace tallow

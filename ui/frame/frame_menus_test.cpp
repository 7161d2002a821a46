// SPDX-License-Identifier: GPL-3.0-or-later
// Every item of the frame's menus and every button of its toolbar, through the real actions.
#include "ui/frame/frame_menus.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QWidgetAction>

#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_help.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"

namespace tallow {
namespace {

class FrameMenus : public FrameTest {
 protected:
  QStringList ItemsOf(const char* menu) {
    QStringList items;
    for (const QAction* const action : frame.findChild<QMenu*>(QLatin1String(menu))->actions())
      items.append(action->isSeparator() ? QStringLiteral("-")
                                         : action->objectName() + "|" + action->text() + "|" +
                                               action->shortcut().toString());
    return items;
  }
  QAction& Button(int index) { return Item(QByteArray("Button" + QByteArray::number(index))); }
  /// Shows a jukebox window whose commands are recorded in `commands` as "pane item".
  /// \param pane the pane that was used last; 0 for none
  frmMain& Watched(int pane) {
    frmMain& window = ShowJukebox();
    QObject::connect(&window, &frmMain::PopUpClick, [this](int item, int in) {
      commands.append(QStringLiteral("%1 %2").arg(in).arg(item));
    });
    if (pane != 0) emit window.PVExplorer1().FocusChanged(pane);
    return window;
  }
  QStringList TakeCommands() { return std::exchange(commands, {}); }

  QStringList commands;
};

TEST_F(FrameMenus, HaveTheirItemsCaptionsAndKeys) {
  QStringList menus;
  for (const QAction* const action : frame.menuBar()->actions())
    menus.append(action->menu()->objectName() + "|" + action->text());
  EXPECT_EQ(menus,
            (QStringList{"mnuFile|&File", "mnuEdit|&Edit", "mnuSongs|&Songs", "mnuPicture|&Picture",
                         "mnuWindowList|&WindowList", "mnuTools|&Tools", "mnuHelp|&Help"}));
  EXPECT_EQ(
      ItemsOf("mnuEdit"),
      (QStringList{"mnuUndo|&Undo|Ctrl+Z", "mnuRedo|&Redo|Ctrl+Shift+Z", "-", "mnuCut|Cu&t|Ctrl+X",
                   "mnuCopy|&Copy|Ctrl+C", "mnuPaste|&Paste|Ctrl+V", "mnuDelete|Delete|Del", "-",
                   "mnuFind|&Find|Ctrl+F", "mnuFindField|Find &While Typing|Ctrl+E", "-",
                   "mnuAddFolderToRoot|&Add Folder To Root|",
                   "mnuAddFolderToSelectedFolder|A&dd Folder To Selected Folder|"}));
  EXPECT_EQ(ItemsOf("mnuSongs"),
            (QStringList{
                "mnuNewSongsNormalLocations|&Bring In New Songs (Look where I normally keep them)|",
                "mnuNewSongsWholeComputerSearch|B&ring In New Songs (Search my whole computer)|",
                "-", "mnuPlaySeletedSongs|&Play Selected Songs|Ctrl+P",
                "mnuPlayAllTheSongInNode|P&lay All Songs In Folder|Ctrl+L", "-",
                "mnuNextTrack|&Next Track|Ctrl+T", "mnuPreviousTrack|P&revious Track|Ctrl+R",
                "mnuPause|P&ause|Ctrl+U", "mnuPlay|Pla&y|Ctrl+Y", "mnuStop|&Stop|",
                "mnuStopAfterTrack|S&top After Track|", "mnuCloseWinAmp|&Close WinAmp|"}));
  EXPECT_EQ(ItemsOf("mnuPicture"), QStringList{"mnuChangeBackgroup|Change Backgroup Picture|"});
  EXPECT_EQ(ItemsOf("mnuWindowList"),
            (QStringList{"mnuCascade|&Cascade|Shift+F4", "mnuTile|&Tile|Shift+F5",
                         "mnuArrageIcons|&Arrange Icons|"}));
  EXPECT_EQ(ItemsOf("mnuTools"),
            (QStringList{
                "mnuPreferences|&Preferences...|Ctrl+,", "mnuWhereMyMusicIs|&Where My Music Is...|",
                "mnuFileAgainByTags|&File Again By Tags|", "-", "mnuPlayerBar|Player &Bar|",
                "mnuPlayerPanel|Player Pa&nel|", "mnuQueue|&Queue|Ctrl+Shift+U",
                "mnuShowPlayingSong|&Show Playing Song|Ctrl+J"}));
  EXPECT_EQ(ItemsOf("mnuHelp"),
            (QStringList{"mnuHelpp|&Help|", "mnuTip|&Tip|", "mnuAbout|&About|"}));
}

TEST_F(FrameMenus, TheToolbarHasItsButtonsAndTooltips) {
  const auto* const bar = frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"));
  ASSERT_NE(bar, nullptr);
  QStringList tips;
  for (const QAction* const action : bar->actions()) {
    // The find field of the modern style, and the space before it.
    if (qobject_cast<const QWidgetAction*>(action) != nullptr) continue;
    tips.append(action->isSeparator() ? QStringLiteral("-") : action->toolTip());
    if (!action->isSeparator()) {
      EXPECT_FALSE(action->icon().pixmap(24).isNull());
    }
  }
  EXPECT_EQ(tips, (QStringList{"Play Selected Songs", "Play All Songs in Folder", "Play Next Track",
                               "Play Previous Track", "Pause", "Play", "Stop After Current Track",
                               "-", "Add Folder To Root", "Add Folder To Current", "New Juke Box",
                               "Find Song", "-", "Bring In New Songs (Search Normal Directories)",
                               "Bring In New Songs (Search entire computer)", "Background Picture",
                               "Help"}));
}

TEST_F(FrameMenus, EditCommandsGoToThePaneThatWasUsedLast) {
  frmMain& window = Watched(0);
  messages.answer = MessageAnswer::kNo;
  const auto expect = [&](int pane, const QStringList& numbers) {
    emit window.PVExplorer1().FocusChanged(pane);
    for (const char* const item : {"mnuCopy", "mnuPaste", "mnuDelete", "mnuCut"})
      Item(item).trigger();
    EXPECT_EQ(TakeCommands(), numbers);
  };
  expect(2, {"2 5", "2 6", "2 7", "2 4"});
  expect(1, {"1 7", "1 8", "1 9", "1 6"});
}

TEST_F(FrameMenus, APaneThatWasNeverUsedGetsNoEditCommand) {
  frmMain& window = Watched(0);
  emit window.PVExplorer1().FocusChanged(0);
  for (const char* const item : {"mnuCut", "mnuCopy", "mnuPaste", "mnuDelete"})
    Item(item).trigger();
  EXPECT_EQ(TakeCommands(), QStringList());
}

TEST_F(FrameMenus, NodeCommandsHaveTheirPaneAndNumber) {
  Watched(1);
  Item("mnuAddFolderToRoot").trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"1 5"});
  Item("mnuAddFolderToSelectedFolder").trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"1 4"});
  Item("mnuPlaySeletedSongs").trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"2 2"});
  Item("mnuPlayAllTheSongInNode").trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"2 1"});
  Button(1).trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"2 2"});
  Button(2).trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"2 1"});
  Button(9).trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"1 5"});
  Button(10).trigger();
  EXPECT_EQ(TakeCommands(), QStringList{"1 4"});
}

TEST_F(FrameMenus, WithOnlyThePanelOpenNodeCommandsDoNothing) {
  frmMain& window = ShowJukebox();
  Item("mnuPlayAllTheSongInNode").trigger();
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  SubOf(window).close();
  DeleteClosedWindows();
  messages.Take();
  link.Take();
  for (const char* const item :
       {"mnuCut", "mnuCopy", "mnuPaste", "mnuDelete", "mnuAddFolderToRoot",
        "mnuAddFolderToSelectedFolder", "mnuPlaySeletedSongs", "mnuPlayAllTheSongInNode"})
    Item(item).trigger();
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(FrameMenus, PlayerCommandsAreThePlayersNumbers) {
  ShowJukebox();
  Item("mnuPlayAllTheSongInNode").trigger();
  link.Take();
  const std::pair<const char*, const char*> expected[] = {
      {"mnuNextTrack", "273 40048 0"},   {"mnuPreviousTrack", "273 40044 0"},
      {"mnuPause", "273 40046 0"},       {"mnuPlay", "273 40045 0"},
      {"mnuStop", "273 40047 0"},        {"mnuStopAfterTrack", "273 40157 0"},
      {"mnuCloseWinAmp", "273 40001 0"}, {"Button3", "273 40048 0"},
      {"Button4", "273 40044 0"},        {"Button5", "273 40046 0"},
      {"Button6", "273 40045 0"},        {"Button7", "273 40157 0"}};
  for (const auto& [item, message] : expected) {
    Item(item).trigger();
    EXPECT_EQ(link.Take(), Texts{message}) << item;
  }
}

TEST_F(FrameMenus, SomeButtonsAskForThePlayerAndTheirMenuItemsDoNot) {
  frmMain& window = Watched(1);
  tallow.settings.LocOfWinAmpExe("");
  messages.answer = MessageAnswer::kNo;
  for (const int button : {6, 9, 10}) {
    Button(button).trigger();
    EXPECT_EQ(messages.Take().size(), 1U) << button;
  }
  EXPECT_EQ(TakeCommands(), QStringList());
  EXPECT_EQ(window.Jukebox().Nodes().Count(), 1);
  Item("mnuAddFolderToRoot").trigger();
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(window.Jukebox().Nodes().Count(), 2);
}

TEST_F(FrameMenus, NoOtherButtonAsksForThePlayer) {
  Watched(1);
  library.Save();
  tallow.settings.LocOfWinAmpExe("");
  const auto dismiss = [] {
    if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
      dialog->reject();
  };
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, dismiss);
  timer.start(5);
  for (const int button : {11, 12, 14, 15, 16, 17}) {
    Button(button).trigger();
    EXPECT_EQ(messages.Take(), Texts{}) << button;
  }
  // The buttons for the player search for it and report that it has no window. None offers to
  // install a player.
  link.found = 0;
  for (const int button : {3, 4, 5, 7}) {
    Button(button).trigger();
    EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."}) << button;
  }
  Item("mnuPlay").trigger();
  EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."});
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}

TEST_F(FrameMenus, PauseAndStopFindAPlayerThatAnEarlierTallowHasLeft) {
  ShowJukebox();
  Item("mnuPause").trigger();
  Item("mnuStop").trigger();
  Button(4).trigger();
  EXPECT_EQ(link.Take(), (Texts{"find", "273 40046 0", "273 40047 0", "273 40044 0"}));
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(FrameMenus, AButtonOpensTheHelpAndTheMenuSaves) {
  frmMain& window = ShowJukebox();
  Button(17).trigger();
  const QWidgetList all = QApplication::topLevelWidgets();
  EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const QWidget* top) {
    return top->objectName() == QLatin1String("frmHelp") && top->isVisible();
  }));
  ASSERT_TRUE(window.Jukebox().Save(application / "Grouping/one.juk", library));
  window.Jukebox().Caption("ONE");
  window.Jukebox().FileLocation(application / "Grouping/");
  window.Jukebox().IsFormDirty(true);
  Item("mnuSave").trigger();
  EXPECT_FALSE(window.Jukebox().IsFormDirty());
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(FrameMenus, DialogsAreOpenedByMenuAndButton) {
  ShowJukebox();
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
  const std::pair<const char*, const char*> expected[] = {
      {"mnuFind", "frmFind"},     {"Button12", "frmFind"},
      {"mnuTip", "frmTip"},       {"mnuChangeBackgroup", "frmPicture"},
      {"Button16", "frmPicture"}, {"mnuAbout", "frmSplash"}};
  for (const auto& [item, name] : expected) {
    QString opened;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      opened = dialog->objectName();
      dialog->reject();
    });
    timer.start(5);
    Item(item).trigger();
    EXPECT_EQ(opened, name) << item;
  }
}

TEST_F(FrameMenus, NewSongsAreBroughtInWhileTheFrameIsDisabledAndThenReported) {
  frmMain& window = ShowJukebox();
  window.Jukebox().Nodes().AddChild(nullptr, "All Songs");
  window.Jukebox().Caption("ONE");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  bool enabled = true;
  bool shown = false;
  searches.for_songs = [&](SearchProgress& progress) {
    enabled = frame.isEnabled();
    for (QWidget* const top : QApplication::topLevelWidgets())
      shown = shown || (top->objectName() == QLatin1String("frmSearching") && top->isVisible());
    EXPECT_FALSE(frame.close());
    progress.VisitFolder("/music/");
    return true;
  };
  const auto run = [&](const char* item) {
    music.File(std::string(item) + ".mp3");
    Item(item).trigger();
    EXPECT_TRUE(frame.isEnabled());
    return frame.statusBar()->currentMessage();
  };
  EXPECT_EQ(run("mnuNewSongsNormalLocations"), "1 new song");
  EXPECT_EQ(run("Button14"), "1 new song");
  EXPECT_EQ(window.Jukebox().Nodes().Find("All Songs")->Items().size(), 4U);
  for (const char* const item : {"mnuNewSongsWholeComputerSearch", "Button15"}) {
    enabled = true;
    shown = false;
    EXPECT_EQ(run(item), "0 new songs");
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(shown);
  }
  for (QWidget* const top : QApplication::topLevelWidgets())
    EXPECT_NE(top->objectName(), "frmSearching");
}

TEST_F(FrameMenus, ASearchIsCancelledWithTheMouseThoughTheFrameIsDisabled) {
  ShowJukebox();
  library.Save();
  bool was_clicked = false;
  searches.for_songs = [&](SearchProgress& progress) {
    for (QWidget* const top : QApplication::topLevelWidgets()) {
      if (top->objectName() != QLatin1String("frmSearching")) continue;
      auto* const button = top->findChild<QPushButton*>("cmdCancel");
      // The click stays in the event queue until the search processes events.
      QMetaObject::invokeMethod(
          button, [button] { QTest::mouseClick(button, Qt::LeftButton); }, Qt::QueuedConnection);
      EXPECT_FALSE(tallow.SearchCancelled);
      QTest::qWait(50);
      progress.VisitFolder("/music/");
      was_clicked = tallow.SearchCancelled;
    }
    return !tallow.SearchCancelled;
  };
  Item("mnuNewSongsWholeComputerSearch").trigger();
  EXPECT_TRUE(was_clicked);
  EXPECT_TRUE(frame.isEnabled());
  EXPECT_TRUE(
      frame.statusBar()->currentMessage().startsWith("0 new songs. The search was cancelled"));
}

TEST_F(FrameMenus, ShortcutKeysWorkInBothPanesOfAJukebox) {
  frmMain& window = Watched(0);
  messages.answer = MessageAnswer::kNo;
  Item("mnuPlayAllTheSongInNode").trigger();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  // A folder that the program keeps when it is cut.
  window.Jukebox().Nodes().AddChild(nullptr, "New");
  auto* const tree = window.findChild<QTreeView*>();
  tree->setCurrentIndex(tree->model()->index(1, 0));
  TakeCommands();
  link.Take();
  struct Expected {
    QWidget* focus;
    QStringList edits;  ///< commands for copy, paste, cut, delete
  };
  const Expected panes[] = {{tree, {"1 7", "1 8", "1 6", "1 9"}},
                            {window.findChild<QTableView*>(), {"2 5", "2 6", "2 4", "2 7"}}};
  for (const Expected& pane : panes) {
    const auto press = [&](int key, Qt::KeyboardModifiers with = Qt::ControlModifier) {
      pane.focus->setFocus();
      QTest::keyClick(pane.focus, static_cast<Qt::Key>(key), with);
    };
    press(Qt::Key_C);
    press(Qt::Key_V);
    press(Qt::Key_X);
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(TakeCommands(), pane.edits);
    link.Take();
    for (const auto& [key, message] : {std::pair{Qt::Key_T, "273 40048 0"},
                                       {Qt::Key_R, "273 40044 0"},
                                       {Qt::Key_U, "273 40046 0"},
                                       {Qt::Key_Y, "273 40045 0"}}) {
      press(key);
      EXPECT_EQ(link.Take(), Texts{message});
    }
    press(Qt::Key_L);
    EXPECT_EQ(TakeCommands(), QStringList{"2 1"});
    press(Qt::Key_P);
    EXPECT_EQ(TakeCommands(), QStringList{"2 2"});
    press(Qt::Key_F5, Qt::ShiftModifier);
    EXPECT_FALSE(SubOf(window).isMaximized());
    SubOf(window).showMaximized();
    press(Qt::Key_F4, Qt::ShiftModifier);
    EXPECT_FALSE(SubOf(window).isMaximized());
    SubOf(window).showMaximized();
  }
  QTest::keyClick(tree, Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}

TEST_F(FrameMenus, AButtonMakesANewJukebox) {
  ShowJukebox();
  Button(11).trigger();
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}

TEST_F(FrameMenus, HandedOverFilesAreOpenedOrShownOnceTheFrameIsEnabled) {
  frmMain& one = ShowJukebox();
  one.Jukebox().Caption("ONE");
  const std::string first = application / "Grouping/one.juk";
  const std::string second = application / "Grouping/two.juk";
  ASSERT_TRUE(one.Jukebox().Save(second, library));
  ASSERT_TRUE(one.Jukebox().Save(first, library));
  ShowJukebox();
  // A file that is already open is only shown.
  frame.OpenFiles({first});
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(one));
  EXPECT_EQ(messages.Take(), Texts{});
  frame.setEnabled(false);
  frame.OpenFiles({second});
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
  frame.setEnabled(true);
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.OpenJukeboxes().size() == 3; }));
  EXPECT_EQ(frame.OpenJukeboxes()[2]->Caption(), "TWO");
}

TEST_F(FrameMenus, AnOpenMenuKeepsTheMessageOfTheStatusBar) {
  frame.show();
  frame.statusBar()->showMessage("2 new songs");
  QMenu* const menu = frame.findChild<QMenu*>("mnuSongs");
  frame.menuBar()->setActiveAction(menu->menuAction());
  QTest::keyClick(menu, Qt::Key_Down);
  menu->close();
  EXPECT_EQ(frame.statusBar()->currentMessage(), "2 new songs");
}

TEST_F(FrameMenus, SeparatorsDoNothing) {
  Watched(1);
  for (const int button : {8, 13}) {
    EXPECT_TRUE(Button(button).isSeparator());
    Button(button).trigger();
  }
  EXPECT_EQ(TakeCommands(), QStringList());
}

TEST_F(FrameMenus, EditCommandsActOnATextThatIsBeingTyped) {
  frmMain& window = Watched(1);
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  window.PVExplorer1().EditText(window.Jukebox().Nodes().ChildAt(0));
  auto* const editor = window.findChild<QTreeView*>()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->setFocus();
  editor->selectAll();
  Item("mnuCut").trigger();
  EXPECT_EQ(editor->text(), "");
  Item("mnuPaste").trigger();
  EXPECT_EQ(editor->text(), "one");
  editor->selectAll();
  Item("mnuDelete").trigger();
  EXPECT_EQ(editor->text(), "");
  EXPECT_EQ(TakeCommands(), QStringList());
}

TEST_F(FrameMenus, NoShortcutKeyIsUsedTwice) {
  QStringList keys;
  for (const QAction* const action : frame.findChildren<QAction*>())
    if (!action->shortcut().isEmpty() && action->shortcutContext() != Qt::WidgetShortcut)
      keys.append(action->shortcut().toString());
  const QSet<QString> different(keys.begin(), keys.end());
  EXPECT_EQ(different.size(), keys.size());
}

TEST_F(FrameMenus, NewSongsKeepTheSelectionAndTheFocus) {
  frmMain& window = ShowJukebox();
  window.Jukebox().Nodes().AddChild(nullptr, "All Songs");
  window.Jukebox().Caption("ONE");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  music.File("c.mp3");
  Item("mnuNewSongsNormalLocations").trigger();
  auto* const tree = window.findChild<QTreeView*>();
  auto* const list = window.findChild<QTableView*>();
  tree->setCurrentIndex(tree->model()->index(1, 0));
  ASSERT_EQ(list->model()->rowCount(), 3);
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  list->setFocus();
  list->selectRow(1);
  const auto selected = [&] {
    return window.Jukebox()
        .selectednode()
        ->Items()
        .at(static_cast<std::size_t>(window.PVExplorer1().SelectedRows().at(0)))
        .SubItem();
  };
  const std::int32_t song = selected();
  music.File("Aa.mp3");
  Item("mnuNewSongsNormalLocations").trigger();
  EXPECT_EQ(list->model()->rowCount(), 4);
  EXPECT_EQ(selected(), song);
  EXPECT_EQ(frame.focusWidget(), list);
}

TEST_F(FrameMenus, EveryControlHasANameAndADescription) {
  const auto expect_all = [](const QWidget& window) {
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
      if (control->focusPolicy() == Qt::NoFocus || !control->isVisibleTo(&window)) continue;
      // Skips inner parts of other controls, and frames around controls.
      if (control->objectName().isEmpty() || control->objectName().startsWith("qt_")) continue;
      auto* const spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
      ASSERT_NE(spoken, nullptr);
      EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty())
          << control->objectName().toStdString();
      EXPECT_FALSE(spoken->text(QAccessible::Description).isEmpty())
          << window.objectName().toStdString() << " " << control->objectName().toStdString();
    }
  };
  expect_all(ShowJukebox());
  Item("mnuPlayAllTheSongInNode").trigger();
  expect_all(*frame.PlayerPanel());
  for (const char* const item :
       {"mnuFind", "mnuTip", "mnuChangeBackgroup", "mnuPreferences", "mnuAbout"}) {
    QTimer::singleShot(50, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      expect_all(*dialog);
      dialog->reject();
    });
    Item(item).trigger();
  }
  expect_all(frmHelp());
  expect_all(frmSearching());
}

}  // namespace
}  // namespace tallow

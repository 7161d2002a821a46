// SPDX-License-Identifier: GPL-3.0-or-later
// The dock of the queue and the commands that concern what plays, in a main window with jukeboxes.
#include "ui/frame/frame_queue.h"

#include <gtest/gtest.h>
#include <optional>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

#include "app/playing/playing_preferences.h"
#include "tests/library_fixture.h"
#include "tests/model_stand_in.h"
#include "tests/recorded_messages.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/frame/playing_lists.h"
#include "ui/frame/status_bar.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
namespace {

class FrameQueueTest : public LibraryTest {
 protected:
  FrameQueueTest() {
    for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"}) {
      AddSong(music.path(), name);
      music.File(name);
    }
    main.setStatusBar(bar);
    main.setCentralWidget(area);
    main.resize(640, 480);
  }

  /// A jukebox window with the folders "All Songs" of all songs and "mine" of the song 2.
  frmMain& AddJukebox() {
    auto* const window = new frmMain(tallow, messages.Shower());
    jukeboxes.Add(*window);
    FolderTree& tree = window->Jukebox().Nodes();
    Folder& all = tree.AddChild(nullptr, "All Songs");
    for (const std::int32_t song : {1, 2, 3}) all.Items().emplace_back(song, 2);
    tree.AddChild(nullptr, "mine").Items().emplace_back(2, 2);
    window->ShowJukebox();
    jukeboxes.Show(*window);
    lists->Follow(*window);
    return *window;
  }
  void ShowMain() {
    main.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&main));
  }
  QDockWidget& Dock() { return *main.findChild<QDockWidget*>(QStringLiteral("QueueDock")); }
  PlayingPreferences Preferences() { return PlayingPreferences(tallow.preferences); }
  /// Shows a song that plays.
  void Play(std::int32_t song, SongsOrigin origin) {
    model.Play(song, 180);
    model.Change([&](Playing& now) { now.origin = origin; });
  }
  static std::string ShownIn(frmMain& window) {
    const Folder* const folder = window.Jukebox().selectednode();
    std::string text = folder != nullptr ? folder->Text() : "none";
    for (const int row : window.PVExplorer1().SelectedRows()) text += " " + std::to_string(row);
    return text;
  }
  QString Status() { return bar->currentMessage(); }

  RecordedMessages messages;
  ModelStandIn model;
  QMainWindow main;
  StatusBar* bar = new StatusBar;
  QMdiArea* area = new QMdiArea;
  QAction item;
  FrameMessages frame_messages{main, *bar, messages.Shower()};
  JukeboxArea jukeboxes{*area};
  Texts commands;
  std::optional<PlayingLists> lists{
      std::in_place,
      tallow,
      jukeboxes,
      frame_messages,
      model,
      PlayListCommands{
          .play = [this](const auto&, SongsOrigin) { commands.push_back("play"); },
          .play_from_here = [this](const auto&, std::size_t,
                                   SongsOrigin) { commands.push_back("from here"); },
          .play_next = [this](const auto&, SongsOrigin) { commands.push_back("next"); },
          .add_to_queue = [this](const auto&, SongsOrigin) { commands.push_back("add"); }}};
  std::optional<FrameQueue> queue{std::in_place, main, tallow, jukeboxes, frame_messages, model};
};

TEST_F(FrameQueueTest, TheDockIsHiddenUntilTheUserShowsIt) {
  queue->SetItem(item);
  queue->FollowPreferences();
  ShowMain();
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_TRUE(item.isCheckable());
  EXPECT_FALSE(item.isChecked());
  queue->Toggle();
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(item.isChecked());
  EXPECT_TRUE(Preferences().ShowsQueue());
  EXPECT_EQ(Dock().windowTitle(), "Queue");
  queue->Toggle();
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_FALSE(item.isChecked());
  EXPECT_FALSE(Preferences().ShowsQueue());
}

TEST_F(FrameQueueTest, ClosingTheDockIsStored) {
  queue->SetItem(item);
  ShowMain();
  queue->Show(true);
  Dock().close();
  EXPECT_FALSE(Dock().isVisible());
  EXPECT_FALSE(item.isChecked());
  EXPECT_FALSE(Preferences().ShowsQueue());
}

TEST_F(FrameQueueTest, HidingTheFrameDoesNotTurnTheDockOff) {
  queue->SetItem(item);
  ShowMain();
  queue->Show(true);
  main.hide();
  main.close();
  EXPECT_TRUE(Preferences().ShowsQueue());
  main.show();
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(item.isChecked());
}

TEST_F(FrameQueueTest, AStartShowsTheDockAgainAtItsSide) {
  ShowMain();
  queue->Show(true);
  main.addDockWidget(Qt::LeftDockWidgetArea, &Dock());
  const QByteArray state = main.saveState();
  queue.reset();
  queue.emplace(main, tallow, jukeboxes, frame_messages, model);
  queue->SetItem(item);
  main.restoreState(state);
  queue->FollowPreferences();
  EXPECT_TRUE(Dock().isVisible());
  EXPECT_TRUE(item.isChecked());
  EXPECT_EQ(main.dockWidgetArea(&Dock()), Qt::LeftDockWidgetArea);
  EXPECT_FALSE(Dock().isAreaAllowed(Qt::BottomDockWidgetArea));
}

TEST_F(FrameQueueTest, TheWindowIsNotWiderThan640PixelsWithTheDock) {
  AddJukebox();
  ShowMain();
  queue->Show(true);
  QApplication::processEvents();
  EXPECT_EQ(main.width(), 640);
  EXPECT_GE(area->width(), main.width() / 2);
  EXPECT_GE(Dock().width(), 150);
}

TEST_F(FrameQueueTest, SaveAsFolderMakesAFolderOfTheSongsThatCanBeUndone) {
  frmMain& window = AddJukebox();
  ShowMain();
  library.Mp3Info(5, 1, "6");
  model.SetQueue({{11, 3}, {12, 1}, {13, 0}, {14, 3}});
  queue->Show(true);
  FolderTree& tree = window.Jukebox().Nodes();
  Dock().findChild<QPushButton*>(QStringLiteral("cmdSaveQueue"))->click();
  ASSERT_EQ(tree.Children(), 3);
  const Folder& folder = tree.ChildAt(2);
  EXPECT_EQ(folder.Text(), "Queue");
  ASSERT_EQ(folder.Items().size(), 2U);
  EXPECT_EQ(folder.Items()[0].SubItem(), 3);
  EXPECT_EQ(folder.Items()[1].SubItem(), 1);
  EXPECT_EQ(folder.Items()[1].Icon(), 6);
  EXPECT_TRUE(window.Jukebox().IsFormDirty());
  // The user can type a name at once.
  auto* const editor = window.findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "Queue");
  QTest::keyClicks(editor, QStringLiteral("Evening"));
  QTest::keyClick(editor, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(tree.ChildAt(2).Text(), "Evening");
  window.PVExplorer1().Undo();
  window.PVExplorer1().Undo();
  EXPECT_EQ(tree.Children(), 2);
  window.PVExplorer1().Redo();
  EXPECT_EQ(tree.ChildAt(2).Items().size(), 2U);
}

TEST_F(FrameQueueTest, SaveAsFolderWithoutAJukeboxSaysWhatToDo) {
  ShowMain();
  model.SetQueue({{11, 3}});
  queue->Show(true);
  Dock().findChild<QPushButton*>(QStringLiteral("cmdSaveQueue"))->click();
  EXPECT_EQ(Status(), "No jukebox is open. Open one, or make a new one, and try again.");
}

TEST_F(FrameQueueTest, TheSongThatPlaysIsShownInTheFolderThatItCameFrom) {
  frmMain& window = AddJukebox();
  frmMain& other = AddJukebox();
  ShowMain();
  ASSERT_EQ(jukeboxes.ActiveWindow(), &other);
  Play(2, {&window.Jukebox(), window.Jukebox().Nodes().ChildAt(1).Key()});
  lists->ShowPlayingSong();
  EXPECT_EQ(jukeboxes.ActiveWindow(), &window);
  EXPECT_EQ(ShownIn(window), "mine 0");
  EXPECT_EQ(ShownIn(other), "All Songs");
  EXPECT_EQ(Status(), "");
}

TEST_F(FrameQueueTest, ASongThatHasLeftItsFolderIsShownInAllSongs) {
  frmMain& window = AddJukebox();
  AddJukebox();
  ShowMain();
  // The folder has other songs.
  Play(3, {&window.Jukebox(), window.Jukebox().Nodes().ChildAt(1).Key()});
  lists->ShowPlayingSong();
  EXPECT_EQ(jukeboxes.ActiveWindow(), &window);
  EXPECT_EQ(ShownIn(window), "All Songs 2");
  // The folder is gone.
  Play(1, {&window.Jukebox(), 4711});
  lists->ShowPlayingSong();
  EXPECT_EQ(ShownIn(window), "All Songs 0");
}

TEST_F(FrameQueueTest, ASongOfAClosedJukeboxIsShownInTheActiveOne) {
  const Jukebox closed;
  AddJukebox();
  frmMain& active = AddJukebox();
  ShowMain();
  Play(2, {&closed, 1});
  lists->ShowPlayingSong();
  EXPECT_EQ(jukeboxes.ActiveWindow(), &active);
  EXPECT_EQ(ShownIn(active), "All Songs 1");
}

TEST_F(FrameQueueTest, AMinimizedJukeboxIsRestoredToShowTheSong) {
  frmMain& window = AddJukebox();
  AddJukebox();
  ShowMain();
  window.parentWidget()->showMinimized();
  Play(2, {&window.Jukebox(), window.Jukebox().Nodes().ChildAt(1).Key()});
  lists->ShowPlayingSong();
  EXPECT_FALSE(window.parentWidget()->isMinimized());
  EXPECT_EQ(jukeboxes.ActiveWindow(), &window);
}

TEST_F(FrameQueueTest, WhyNoSongCanBeShownIsSaid) {
  ShowMain();
  lists->ShowPlayingSong();
  EXPECT_EQ(Status(), "No song plays.");
  model.Change([](Playing& now) { now.status = kPlaying; });
  lists->ShowPlayingSong();
  EXPECT_EQ(
      Status(),
      "Tallow does not know the song that plays: the player's list is not the one that Tallow "
      "has handed over.");
  Play(2, {});
  lists->ShowPlayingSong();
  EXPECT_EQ(Status(), "No open jukebox has the song that plays. Open its jukebox, and try again.");
}

TEST_F(FrameQueueTest, TheListsHandTheirSongsToTheFrame) {
  frmMain& window = AddJukebox();
  emit window.PlaySongs({1});
  emit window.PlayFromHere({1, 2}, 1, {});
  emit window.PlayNext({1}, {});
  emit window.AddToQueue({1}, {});
  emit window.PlayOrPause();
  EXPECT_EQ(commands, (Texts{"play", "from here", "next", "add"}));
  EXPECT_EQ(model.Take(), Texts{"play or pause"});
}

TEST_F(FrameQueueTest, TheListsAreMarkedByThePreference) {
  const auto marked = [this] { return model.listeners.size() > 1; };
  frmMain& window = AddJukebox();
  EXPECT_FALSE(marked());
  Preferences().SetShowsMarks(true);
  lists->FollowPreferences();
  EXPECT_TRUE(marked());
  Preferences().SetShowsMarks(false);
  lists->FollowPreferences();
  EXPECT_FALSE(marked());
  tallow.preferences.SetSwitches({.plays_on = true});
  EXPECT_FALSE(Preferences().ShowsMarks());
  Preferences().SetShowsMarks(true);
  lists->FollowPreferences();
  // The windows are destroyed after the player.
  lists.reset();
  EXPECT_FALSE(marked());
  EXPECT_EQ(window.Jukebox().Nodes().Children(), 2);
}

TEST_F(FrameQueueTest, InTheModernStyleNewWindowsAreMarked) {
  tallow.preferences.SetStyle(Style::kModern);
  AddJukebox();
  EXPECT_EQ(model.listeners.size(), 2U);
}

}  // namespace
}  // namespace tallow

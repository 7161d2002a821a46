// SPDX-License-Identifier: GPL-3.0-or-later
// The dock of the queue and the commands that concern what plays, in a main window with jukeboxes.
#include "ui/frame/frame_queue.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QDropEvent>
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
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/player/queue_view.h"

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
  std::function<void()> add = [] {};  ///< called when songs are added to the queue
  std::optional<PlayingLists> lists{
      std::in_place,
      tallow,
      jukeboxes,
      frame_messages,
      model,
      PlayListCommands{.play = [this](const auto&, SongsOrigin) { commands.push_back("play"); },
                       .play_from_here = [this](const auto&, std::size_t,
                                                SongsOrigin) { commands.push_back("from here"); },
                       .play_next =
                           [this](const auto&, SongsOrigin) {
                             commands.push_back("next");
                             add();
                           },
                       .add_to_queue =
                           [this](const auto&, SongsOrigin) {
                             commands.push_back("add");
                             add();
                           }}};
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

TEST_F(FrameQueueTest, TheListOfSongsKeepsAWidthBesideAWideDock) {
  frmMain& window = AddJukebox();
  ShowMain();
  queue->Show(true);
  main.resizeDocks({&Dock()}, {500}, Qt::Horizontal);
  QApplication::processEvents();
  EXPECT_EQ(main.width(), 640);
  auto* const list = window.findChild<SongListView*>();
  const int character = list->fontMetrics().averageCharWidth();
  EXPECT_GE(list->width(), 28 * character);
  EXPECT_GE(list->columnWidth(0), 14 * character);
  // The list is in view.
  EXPECT_LE(list->mapTo(area, QPoint(list->width(), 0)).x(), area->width());
}

TEST_F(FrameQueueTest, TheBlankPausesInTheModernStyle) {
  ShowMain();
  queue->Show(true);
  auto* const view = Dock().findChild<QueueView*>();
  QTest::keyClick(view, Qt::Key_Space);
  EXPECT_EQ(model.Take(), Texts{});
  tallow.preferences.SetStyle(Style::kModern);
  queue->FollowPreferences();
  QTest::keyClick(view, Qt::Key_Space);
  EXPECT_EQ(model.Take(), Texts{"play or pause"});
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

TEST_F(FrameQueueTest, ASongOfASearchIsShownInAFolderThatHasIt) {
  frmMain& window = AddJukebox();
  ShowMain();
  Jukebox& jukebox = window.Jukebox();
  for (std::int32_t k = 0; k < jukebox.Nodes().Children(); ++k)
    jukebox.Nodes().ChildAt(k).Items().clear();
  Folder& mine = jukebox.Nodes().AddChild(nullptr, "mine");
  mine.Items().emplace_back(1, 2);
  mine.Items().emplace_back(2, 2);
  jukebox.ShowHits({2}, library);
  Play(2, {&jukebox, jukebox.ListFolder()->Key()});
  jukebox.HideHits(library);
  lists->ShowPlayingSong();
  EXPECT_EQ(jukebox.selectednode(), &mine);
  EXPECT_EQ(window.PVExplorer1().SelectedRows(), std::vector<int>{1});
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
  EXPECT_EQ(Status(), "");
}

TEST_F(FrameQueueTest, TheStatusBarSaysHowManySongsWereAddedToTheQueue) {
  frmMain& window = AddJukebox();
  Play(3, {});
  add = [this] { model.SetQueue({{11, 1}, {12, 2}}); };
  emit window.AddToQueue({1, 2}, {});
  EXPECT_EQ(Status(), "2 songs added to the queue.");
  add = [this] { model.SetQueue({{13, 1}, {11, 1}, {12, 2}}); };
  emit window.PlayNext({1}, {});
  EXPECT_EQ(Status(), "1 song added to the queue.");
  // What went wrong is not replaced.
  add = [this] {
    model.SetQueue({{13, 1}, {11, 1}, {12, 2}, {14, 1}});
    frame_messages.ShowStatus("1 song was not played");
  };
  emit window.AddToQueue({1, 2}, {});
  EXPECT_EQ(Status(), "1 song was not played");
  // Without a queue they are played.
  frame_messages.ClearStatus();
  model.SetQueue({});
  model.Change([](Playing& now) { now = {}; });
  add = [this] { model.SetQueue({{14, 1}}); };
  emit window.AddToQueue({1, 2}, {});
  EXPECT_EQ(Status(), "");
}

TEST_F(FrameQueueTest, SongsOfAListCanBeDroppedOnTheQueue) {
  frmMain& window = AddJukebox();
  ShowMain();
  queue->Show(true);
  QApplication::processEvents();
  std::string dropped;
  queue->OnSongsDropped([&](const std::vector<std::int32_t>& songs, SongsOrigin origin) {
    for (const std::int32_t song : songs) dropped += std::to_string(song) + " ";
    if (origin.jukebox == &window.Jukebox()) dropped += "of " + std::to_string(origin.folder);
  });
  Folder& all = window.Jukebox().Nodes().ChildAt(0);
  QWidget& target = *Dock().findChild<QueueView*>()->viewport();
  const auto drop = [&](const QMimeData& data) {
    const Qt::DropActions actions = Qt::CopyAction | Qt::LinkAction;
    QDragEnterEvent enter(QPoint(10, 10), actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &enter);
    QDropEvent event(QPointF(10, 10), actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &event);
    return event.isAccepted();
  };
  PVExplorer& explorer = window.PVExplorer1();
  explorer.Select(all);
  explorer.findChild<SongListView*>()->SelectRows(std::vector<int>{0, 2});
  EXPECT_TRUE(drop(*explorer.SongsToDrag()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !dropped.empty(); }));
  EXPECT_EQ(dropped, "1 3 of " + std::to_string(all.Key()));
  // Folders, and files of other programs, are refused.
  EXPECT_FALSE(drop(*explorer.FolderToDrag()));
  QMimeData files;
  files.setData(QStringLiteral("text/uri-list"), "file:///a.mp3\r\n");
  EXPECT_FALSE(drop(files));
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

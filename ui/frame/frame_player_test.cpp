// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player.h"

#include <gtest/gtest.h>
#include <memory>

#include <QAbstractSlider>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolBar>

#include "app/data_paths.h"
#include "tests/frame_fixture.h"
#include "tests/stand_in_tallow_player.h"
#include "ui/player/frm_main_winamp.h"

namespace tallow {
namespace {

using Songs = std::vector<std::int32_t>;

const Texts kCloses = {"273 40047 0", "1024 0 101", "273 40001 0"};

class FramePlayerTest : public FrameTest {
 protected:
  FramePlayer& Player() { return frame.Player(); }
  SystemPlayerModel& Model() { return Player().Model(); }
  PlayingPreferences Preferences() { return PlayingPreferences(tallow.preferences); }
  std::string Added(const std::string& name) const {
    return "copy 100 " + std::to_string(music.path().size() + name.size() + 1) + " " +
           music.path() + name + "\\0";
  }
  QAction& Button(int number) {
    return *frame.findChild<QToolBar*>(QStringLiteral("Toolbar1"))
                ->findChild<QAction*>(QStringLiteral("Button%1").arg(number));
  }
  QTimer& Timer() { return *Player().findChild<QTimer*>(QStringLiteral("tmrPlayer")); }
};

TEST_F(FramePlayerTest, WithThePlayerBarNoPlayCommandOpensThePanel) {
  Preferences().SetShowsBar(true);
  ShowJukebox();
  Player().Play({1, 2});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(link.Take(),
            (Texts{"start /opt/player", "find", "1024 128 122", "1024 0 123", "273 40047 0",
                   "1024 0 101", Added("a.mp3"), "273 40045 0", Added("b.mp3")}));
  Player().AddToQueue({1}, {});
  EXPECT_EQ(frame.PlayerPanel(), nullptr);
  EXPECT_TRUE(Timer().isActive());
}

TEST_F(FramePlayerTest, WithThePlayerBarThePanelOpensOnlyWhenItIsAskedFor) {
  Preferences().SetShowsBar(true);
  ShowJukebox();
  Player().Play({1});
  Model().SetVolume(77);
  link.Take();
  Player().ShowPanel();
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  // It shows the player, and does not play anew.
  EXPECT_EQ(HandOvers(), 0);
  EXPECT_EQ(frame.PlayerPanel()->findChild<QScrollBar*>(QStringLiteral("hscrlVolume"))->value(),
            77);
  Player().ShowPanel();
  EXPECT_NE(frame.PlayerPanel(), nullptr);
  link.Take();
  SubOf(*frame.PlayerPanel()).close();
  EXPECT_EQ(link.Take(), kCloses);
}

TEST_F(FramePlayerTest, EndingTallowClosesThePlayerWhileTheBarIsOn) {
  Preferences().SetShowsBar(true);
  ShowJukebox();
  Player().Play({1});
  link.Take();
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(link.Take(), kCloses);
}

TEST_F(FramePlayerTest, AWinampThatTallowDoesNotUseIsNotClosed) {
  Preferences().SetShowsBar(true);
  ShowJukebox();
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(link.Take(), Texts{});
  Player().Send(kPause);
  EXPECT_EQ(link.Take(), (Texts{"find", "273 40046 0"}));
  frame.show();
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(FramePlayerTest, EndingTallowClosesThePlayerWhoseBarWasTurnedOff) {
  Preferences().SetShowsBar(true);
  ShowJukebox();
  Player().Play({1});
  Preferences().SetShowsBar(false);
  link.Take();
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(link.Take(), kCloses);
}

TEST_F(FramePlayerTest, PlayFromHereBeginsAtTheSong) {
  ShowJukebox();
  AddSong(music.path(), "c.mp3");
  music.File("c.mp3");
  Player().PlayFromHere({1, 2, 3}, 1, {nullptr, 5});
  ASSERT_NE(frame.PlayerPanel(), nullptr);
  Texts sent = link.Take();
  std::erase_if(sent, [](const std::string& text) { return !text.starts_with("copy"); });
  EXPECT_EQ(sent, (Texts{Added("b.mp3"), Added("c.mp3"), Added("a.mp3")}));
  EXPECT_EQ(tallow.handed_over.OriginOf(1).folder, 5U);
}

TEST_F(FramePlayerTest, TheButtonPlayStartsADeadPlayerAndPlaysTheSelection) {
  for (const bool has_bar : {false, true}) {
    Preferences().SetShowsBar(has_bar);
    frmMain& window = ShowJukebox();
    auto* const list = window.findChild<QTableView*>();
    list->selectRow(1);
    // The player is dead, and is found once it is started.
    link.found = 0;
    link.ends_at = 0;
    link.on_start = [this] {
      link.found = 7;
      link.ends_at = link.max_files;
    };
    link.Take();
    Button(6).trigger();
    const Texts sent = link.Take();
    EXPECT_EQ(std::count(sent.begin(), sent.end(), Added("b.mp3")), 1) << has_bar;
    EXPECT_EQ(std::count(sent.begin(), sent.end(), "273 40045 0"), 1) << has_bar;
    EXPECT_EQ(messages.Take(), Texts{});
    EXPECT_EQ(frame.PlayerPanel() == nullptr, has_bar);
    Player().End();
    DeleteClosedWindows();
    link.ends_at = 0;
    SubOf(window).close();
    DeleteClosedWindows();
    link.ends_at = std::size_t{1} << 30;
  }
}

TEST_F(FramePlayerTest, PlayOrPauseWithoutAListPlaysTheSelection) {
  Preferences().SetShowsBar(true);
  frmMain& window = ShowJukebox();
  window.findChild<QTableView*>()->selectRow(1);
  Player().PlayOrPause();
  Texts sent = link.Take();
  EXPECT_EQ(std::count(sent.begin(), sent.end(), Added("b.mp3")), 1);
  link.answers["1024 0 124"] = 1;
  link.answers["1024 0 104"] = 1;
  Player().PlayOrPause();
  EXPECT_EQ(link.Take(), Texts{"273 40046 0"});
}

TEST_F(FramePlayerTest, TheModelIsAskedOnlyWhileThereMayBeAPlayer) {
  ShowJukebox();
  EXPECT_FALSE(Timer().isActive());
  Player().Play({1});
  EXPECT_TRUE(Timer().isActive());
  EXPECT_EQ(Timer().interval(), 150);
  link.ends_at = 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return !Timer().isActive(); }));
  Preferences().SetShowsBar(true);
  EXPECT_TRUE(Timer().isActive());
}

TEST_F(FramePlayerTest, TheTitleBeginsWithTheSong) {
  ShowJukebox();
  EXPECT_TRUE(frame.windowTitle().startsWith("Tallow")) << frame.windowTitle().toStdString();
  link.answers["1024 0 124"] = 2;
  link.answers["1024 0 104"] = 1;
  Player().Play({2, 1});
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.windowTitle().startsWith("b.mp3 - Tallow"); }));
  link.answers["1024 0 125"] = 1;
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.windowTitle().startsWith("a.mp3 - Tallow"); }));
  link.answers["1024 0 104"] = 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.windowTitle().startsWith("Tallow"); }));
}

TEST_F(FramePlayerTest, ThePanelNamesTheSong) {
  ShowJukebox();
  link.answers["1024 0 124"] = 2;
  link.answers["1024 0 104"] = 1;
  Player().Play({2, 1});
  auto* const song = frame.PlayerPanel()->findChild<QLabel*>(QStringLiteral("lblSong"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return song->text() == "b.mp3"; }));
  link.answers["1024 0 125"] = 1;
  EXPECT_TRUE(QTest::qWaitFor([&] { return song->text() == "a.mp3"; }));
  link.answers["1024 0 104"] = 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return song->text().isEmpty(); }));
}

TEST_F(FramePlayerTest, AnOpenPanelIsDeletedBeforeTheModelThatItFollows) {
  auto other = std::make_unique<frmMDIForm1>(tallow, link, searches, messages.Shower());
  other->show();
  other->Player().Play({1});
  ASSERT_NE(other->PlayerPanel(), nullptr);
  const QPointer<FramePlayer> player(&other->Player());
  bool is_first = false;
  QObject::connect(other->PlayerPanel(), &QObject::destroyed,
                   [&] { is_first = player != nullptr; });
  other.reset();
  EXPECT_TRUE(is_first);
  EXPECT_EQ(player, nullptr);
}

/// A frame window with a stand-in of Tallow's own player.
class FrameWithOwnPlayer : public LibraryTest {
 protected:
  FrameWithOwnPlayer() {
    for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"}) {
      AddSong(music.path(), name);
      music.File(name, "song");
    }
    tallow.player_path = music.path() + "tallow-player";
    tallow.settings.LocOfWinAmpExe(tallow.player_path);
    tallow.preferences.SetStyle(Style::kModern);
    MakeFrame();
  }

  void MakeFrame() {
    frame.reset();
    tallow.handed_over.Clear();
    frame = std::make_unique<frmMDIForm1>(tallow, link, searches, messages.Shower());
  }
  FramePlayer& Player() { return frame->Player(); }

  StandInTallowPlayer link;
  RecordedMessages messages;
  RecordedSearches searches{tallow};
  std::unique_ptr<frmMDIForm1> frame;
};

TEST_F(FrameWithOwnPlayer, CommandsOfTheQueueGoToThePlayer) {
  Player().PlayFromHere({1, 2}, 1, {});
  Player().PlayNext({3}, {});
  Player().AddToQueue({1}, {});
  EXPECT_EQ(Player().Model().Now().song, 2);
  EXPECT_EQ(Player().Model().SongsOfQueue(), (Songs{3, 1}));
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(FrameWithOwnPlayer, TheQueueIsKeptAfterTheProgramEnds) {
  Player().Play({1, 2, 3});
  link.PlayNextEntry();
  link.position = 5000;
  Player().End();
  EXPECT_FALSE(link.is_there);
  MakeFrame();
  Player().RestoreQueue();
  EXPECT_EQ(Player().Model().Now().status, kPaused);
  EXPECT_EQ(Player().Model().Now().song, 2);
  EXPECT_EQ(Player().Model().Now().position, 5);
  EXPECT_EQ(Player().Model().SongsOfQueue(), Songs{3});
}

TEST_F(FrameWithOwnPlayer, ThePlayerThatTheUserClosedHasNoQueueToRestore) {
  Player().Play({1, 2, 3});
  Player().Model().StoreQueue();
  Player().Send(kClosePlayer);
  Player().End();
  MakeFrame();
  Player().RestoreQueue();
  EXPECT_FALSE(link.is_there);
}

TEST_F(FrameWithOwnPlayer, ThePlayerOfAKilledTallowIsClosedAtTheNextEnd) {
  Player().Play({1, 2, 3});
  Player().Model().StoreQueue();
  link.volume = 30;
  MakeFrame();
  Player().RestoreQueue();
  EXPECT_EQ(Player().Model().Now().song, 1);
  EXPECT_EQ(Player().Model().SongsOfQueue(), (Songs{2, 3}));
  EXPECT_EQ(Player().Model().Volume(), 30);
  EXPECT_TRUE(Player().findChild<QTimer*>(QStringLiteral("tmrPlayer"))->isActive());
  EXPECT_TRUE(frame->close());
  EXPECT_FALSE(link.is_there);
}

TEST_F(FrameWithOwnPlayer, ALateAnswerDoesNotEndFollowing) {
  PlayingPreferences(tallow.preferences).SetShowsBar(false);
  Player().Play({1, 2});
  Player().Model().Update();
  link.answers = false;
  QTest::qWait(400);
  EXPECT_EQ(Player().Model().Now().song, 1);
  link.PlayNextEntry();
  link.answers = true;
  EXPECT_TRUE(QTest::qWaitFor([&] { return Player().Model().Now().song == 2; }));
}

TEST_F(FrameWithOwnPlayer, TheStatusBarSaysWhatHappensToThePlayer) {
  const auto status = [&] { return frame->statusBar()->currentMessage(); };
  Player().Play({1});
  link.status = kStopped;
  link.Fail(link.list[0].number, "It is no music.");
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return status() == "a.mp3 cannot be played: It is no music."; }));
  Player().Play({1, 2});
  link.End();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return status().startsWith("The player has ended. Play starts it again.");
  })) << status().toStdString();
}

TEST_F(FrameWithOwnPlayer, CommandsThatHaveNoEffectSayWhy) {
  const auto run = [&](const char* item) {
    frame->statusBar()->clearMessage();
    frame->findChild<QAction*>(QLatin1String(item))->trigger();
    return frame->statusBar()->currentMessage();
  };
  Player().Play({1});
  Player().Model().Update();
  EXPECT_EQ(run("mnuNextTrack"), "There is no next song.");
  EXPECT_EQ(run("Button3"), "There is no next song.");
  EXPECT_EQ(run("mnuPause"), "");
  link.status = kStopped;
  Player().Model().Update();
  for (const char* const item : {"mnuPause", "mnuStop", "mnuStopAfterTrack", "Button5", "Button7"})
    EXPECT_EQ(run(item), "Nothing is playing.") << item;
}

TEST_F(FrameWithOwnPlayer, ThePanelOfAnotherKindOfPlayerClosesTheFirst) {
  Player().Play({1, 2});
  tallow.player_path = "C:\\Winamp\\winamp.exe";
  Player().ShowPanel();
  EXPECT_TRUE(link.is_there);
  EXPECT_TRUE(link.list.empty());
}

TEST_F(FrameWithOwnPlayer, TheVolumeOfLastTimeIsShownWhenTheStartHasEnded) {
  const std::string path = PreferencesPath(application.path());
  CreateFolders(SystemFolder(application.path()));
  Preferences stored;
  stored.Load(path);
  stored.SetStyle(Style::kModern);
  PlayingPreferences(stored).SetVolume(30);
  PlayingPreferences(stored).SetBalance(-20);
  tallow.preferences.SetStyle(Style::kClassic);
  MakeFrame();
  EXPECT_EQ(Player().Model().Volume(), 128);
  // As the start does, after the frame was made.
  tallow.preferences.Load(path);
  Player().RestoreQueue();
  EXPECT_EQ(Player().Model().Volume(), 30);
  EXPECT_EQ(frame->findChild<QAbstractSlider*>(QStringLiteral("sldVolume"))->value(), 30);
  Player().Model().SetVolume(40);
  Player().End();
  frame.reset();
  EXPECT_EQ(PlayingPreferences(tallow.preferences).Volume(), 40);
  EXPECT_EQ(PlayingPreferences(tallow.preferences).Balance(), -20);
}

TEST_F(FrameWithOwnPlayer, APlayerThatCannotStartAtTheBeginningShowsNoMessageBox) {
  Player().Play({1, 2});
  Player().End();
  MakeFrame();
  link.starts = false;
  Player().RestoreQueue();
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(frame->statusBar()->currentMessage(), "Couldn't start WinAMP");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// What the list hands to the player: by its pop-up menu, a double-click, Enter and the blank.
#include <gtest/gtest.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

#include "tests/jukebox_window_fixture.h"
#include "tests/model_stand_in.h"
#include "ui/jukebox/folder_tree_view.h"

namespace tallow {
namespace {

/// Records what the window asks the player for, such as "here 1 2 3 from 2 of 7" (the folder's key
/// is 7, the second song is chosen).
class ListPlays : public JukeboxWindowTest {
 protected:
  ListPlays() {
    QObject::connect(&window, &frmMain::PlaySongs, [this](const Songs& songs, SongsOrigin origin) {
      Record("play", songs, origin);
    });
    QObject::connect(&window, &frmMain::PlayFromHere,
                     [this](const Songs& songs, std::size_t chosen, SongsOrigin origin) {
                       Record("from " + std::to_string(chosen) + " in", songs, origin);
                     });
    QObject::connect(&window, &frmMain::PlayNext, [this](const Songs& songs, SongsOrigin origin) {
      Record("next", songs, origin);
    });
    QObject::connect(&window, &frmMain::AddToQueue, [this](const Songs& songs, SongsOrigin origin) {
      Record("add", songs, origin);
    });
    QObject::connect(&window, &frmMain::PlayOrPause, [this] { asked.push_back("pause"); });
  }
  ~ListPlays() override { window.SetPlayer(nullptr); }

  void Record(std::string text, const Songs& songs, SongsOrigin origin) {
    for (const std::int32_t song : songs) text += " " + std::to_string(song);
    const Folder* const folder = Box().Nodes().FindKey(origin.folder);
    EXPECT_EQ(origin.jukebox, &Box());
    asked.push_back(text + " of " + (folder != nullptr ? folder->Text() : "none"));
  }
  Texts Take() { return std::exchange(asked, {}); }
  void PlayOn(bool on) { library.UseSwitches({.plays_on = on}); }
  void Run(int command) { window.ActOnPopUpClick(command, kListPane, Box().selectednode()); }
  void ClickTwice(int row) {
    const QPoint place = List().visualRect(List().model()->index(row, 0)).center();
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, place);
  }
  QMenu& Menu() { return *window.findChild<QMenu*>(QStringLiteral("ListMenu")); }
  QAction& Item(int command) {
    for (QAction* const action : Menu().actions())
      if (action->data().toInt() == command) return *action;
    throw std::out_of_range("no such item");
  }
  void OpenMenu() {
    const QPoint place = List().visualRect(List().model()->index(0, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, List().viewport()->mapToGlobal(place));
    QApplication::sendEvent(List().viewport(), &event);
    EXPECT_TRUE(Menu().isVisible());
  }

  ModelStandIn model;
  Texts asked;
};

TEST_F(ListPlays, PlayFromHereHandsOverTheWholeFolderAndTheFirstSelectedSong) {
  AddSongs(4);
  AddFolder("one", {1, 2, 3, 4});
  Show();
  SelectRow(2);
  Run(15);
  EXPECT_EQ(Take(), Texts{"from 2 in 1 2 3 4 of one"});
  SelectRow(1);
  SelectRow(3, Qt::ControlModifier);
  // The current song is the one that was clicked last.
  Run(15);
  EXPECT_EQ(Take(), Texts{"from 3 in 1 2 3 4 of one"});
  SelectRow(3, Qt::ControlModifier);
  Run(15);
  EXPECT_EQ(Take(), Texts{"from 1 in 1 2 3 4 of one"});
}

TEST_F(ListPlays, PlayFromHereCountsOnlySongsThatTheListShows) {
  AddSongs(2);
  AddSong("0", "0", "0");
  AddSongs(2);
  AddFolder("one", {1, 3, 4, 5});
  Show();
  ASSERT_EQ(RowsOf(List()).size(), 3);
  SelectRow(1);
  Run(15);
  EXPECT_EQ(Take(), Texts{"from 1 in 1 4 5 of one"});
}

TEST_F(ListPlays, PlayNextAndAddToQueueHandOverTheSelectedSongsInListOrder) {
  AddSongs(4);
  AddFolder("one", {4, 3, 2, 1});
  Show();
  SelectRow(2);
  SelectRow(0, Qt::ControlModifier);
  Run(16);
  EXPECT_EQ(Take(), Texts{"next 4 2 of one"});
  Run(17);
  EXPECT_EQ(Take(), Texts{"add 4 2 of one"});
}

TEST_F(ListPlays, WithoutASelectionTheThreeItemsSayThatNoneIsSelected) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  for (const int command : {15, 16, 17}) {
    problems.clear();
    Run(command);
    EXPECT_EQ(problems, QStringList{"No song is selected."}) << command;
  }
  EXPECT_EQ(Take(), Texts{});
}

TEST_F(ListPlays, TheOtherPlayCommandsSayTheirFolderToo) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  Show();
  Run(1);
  SelectRow(1);
  Run(2);
  EXPECT_EQ(Take(), (Texts{"play 1 2 of one", "play 2 of one"}));
}

TEST_F(ListPlays, InClassicStyleADoubleClickAndEnterPlayTheOneSong) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  PlayOn(false);
  Show();
  ClickTwice(1);
  EXPECT_EQ(Take(), Texts{"play 2 of one"});
  QTest::keyClick(&List(), Qt::Key_Return);
  EXPECT_EQ(Take(), Texts{"play 2 of one"});
}

TEST_F(ListPlays, WithTheSwitchADoubleClickAndEnterPlayFromHere) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  PlayOn(true);
  Show();
  ClickTwice(1);
  EXPECT_EQ(Take(), Texts{"from 1 in 1 2 3 of one"});
  QTest::keyClick(&List(), Qt::Key_Return);
  EXPECT_EQ(Take(), Texts{"from 1 in 1 2 3 of one"});
}

TEST_F(ListPlays, TheBlankPausesWithTheSwitchOnly) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  PlayOn(false);
  Show();
  SelectRow(0);
  QTest::keyClick(&List(), Qt::Key_Space);
  EXPECT_EQ(Take(), Texts{});
  PlayOn(true);
  QTRY_VERIFY(!List().IsTyping());
  QTest::keyClick(&List(), Qt::Key_Space);
  EXPECT_EQ(Take(), Texts{"pause"});
  EXPECT_EQ(Selected(), std::vector<int>{0});
}

TEST_F(ListPlays, TheBlankPausesInTheTree) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  PlayOn(false);
  auto& tree = *window.findChild<FolderTreeView*>();
  QTest::keyClick(&tree, Qt::Key_Space);
  EXPECT_EQ(Take(), Texts{});
  PlayOn(true);
  QTest::keyClick(&tree, Qt::Key_Space);
  EXPECT_EQ(Take(), Texts{"pause"});
  const int before = QApplication::keyboardInputInterval();
  QApplication::setKeyboardInputInterval(60000);
  QTest::keyClick(&tree, Qt::Key_O);
  QTest::keyClick(&tree, Qt::Key_Space);
  QApplication::setKeyboardInputInterval(before);
  EXPECT_EQ(Take(), Texts{});
}

TEST_F(ListPlays, ABlankInANameThatIsBeingTypedBelongsToTheName) {
  AddSong(music.path(), "the end.mp3");
  AddSong(music.path(), "thesis.mp3");
  AddSong(music.path(), "the west.mp3");
  AddFolder("one", {1, 2, 3});
  PlayOn(true);
  Show();
  SelectRow(1);
  // All keys are one type-ahead, however slow the computer is.
  QApplication::setKeyboardInputInterval(60000);
  QTest::keyClicks(&List(), QStringLiteral("the w"));
  QApplication::setKeyboardInputInterval(400);
  EXPECT_EQ(Selected(), std::vector<int>{2});
  EXPECT_EQ(Take(), Texts{});
}

TEST_F(ListPlays, WithWinampPlayNextIsGreyAndSaysWhy) {
  AddSongs(1);
  AddFolder("one", {1});
  window.SetPlayer(&model);
  Show();
  SelectRow(0);
  OpenMenu();
  EXPECT_TRUE(Item(16).isEnabled());
  Menu().hide();
  const std::string reason = "Winamp cannot do this.";
  model.why_not[PlayerFeature::kPlayNext] = reason;
  OpenMenu();
  EXPECT_FALSE(Item(16).isEnabled());
  EXPECT_EQ(Item(16).toolTip(), QString::fromStdString(reason));
  EXPECT_TRUE(Menu().toolTipsVisible());
  for (const int command : {15, 17}) EXPECT_TRUE(Item(command).isEnabled());
  Menu().hide();
}

}  // namespace
}  // namespace tallow

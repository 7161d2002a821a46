// SPDX-License-Identifier: GPL-3.0-or-later
// Actions between several jukebox windows of one frame.
#include <gtest/gtest.h>

#include <QStatusBar>
#include <QTest>

#include "app/data_paths.h"
#include "app/play_commands.h"
#include "tests/drag_and_drop.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

using std::string_literals::operator""s;

class SeveralJukeboxes : public FrameTest {
 protected:
  using Songs = std::vector<std::int32_t>;

  static FolderTreeView& TreeOf(frmMain& of) { return *of.findChild<FolderTreeView*>(); }
  static SongListView& ListOf(frmMain& of) { return *of.findChild<SongListView*>(); }
  static Folder& First(frmMain& of) { return of.Jukebox().Nodes().ChildAt(0); }
  /// Shows a jukebox whose first folder is "there" and empty.
  frmMain& EmptyJukebox() {
    frmMain& window = frame.NewJukeboxWindow();
    window.Jukebox().Nodes().AddChild(nullptr, "there");
    frame.ShowJukeboxWindow(window);
    return window;
  }
  static void Drop(frmMain& to, const QMimeData& data) {
    FolderTreeView& tree = TreeOf(to);
    EXPECT_TRUE(DropAt(tree, tree.visualRect(tree.model()->index(0, 0)).center(), data));
  }
};

TEST_F(SeveralJukeboxes, ARankIsShownInAllOfThem) {
  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
  const auto icons = [](frmMain& of) {
    return std::pair(First(of).Items()[0].Icon(), First(of).Items()[1].Icon());
  };
  ListOf(one).SelectRows(1, 1);
  one.Run(RankCommand(1), &First(one));
  EXPECT_EQ(icons(one), std::pair(2, 7));
  EXPECT_EQ(icons(two), std::pair(2, 7));
  one.PVExplorer1().Undo();
  EXPECT_EQ(icons(two), std::pair(2, 2));
  // The worst item shows no bars at first, in the list where it was chosen.
  one.Run(ListCommand::kRankWorst, &First(one));
  EXPECT_EQ(icons(one), std::pair(2, 2));
  EXPECT_EQ(icons(two), std::pair(2, 3));
}

TEST_F(SeveralJukeboxes, ARankChangesThePictureOfNoOtherSong) {
  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
  const auto icons = [](frmMain& of) {
    return std::pair(First(of).Items()[0].Icon(), First(of).Items()[1].Icon());
  };
  ListOf(two).SelectRows(0, 0);
  two.Run(ListCommand::kRankWorst, &First(two));
  ASSERT_EQ(icons(two), std::pair(2, 2));
  ListOf(one).SelectRows(1, 1);
  one.Run(RankCommand(1), &First(one));
  EXPECT_EQ(icons(one), std::pair(3, 7));
  EXPECT_EQ(icons(two), std::pair(2, 7));
  one.PVExplorer1().Undo();
  EXPECT_EQ(icons(one), std::pair(3, 2));
  EXPECT_EQ(icons(two), std::pair(2, 2));
  one.PVExplorer1().Redo();
  EXPECT_EQ(icons(two), std::pair(2, 7));
}

TEST_F(SeveralJukeboxes, AMoveBetweenJukeboxesIsUndoneAsOneStep) {
  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
  ListOf(one).SelectRows(0, 0);
  Drop(two, *one.PVExplorer1().SongsToDrag());
  for (frmMain* const undone_in : {&one, &two}) {
    EXPECT_EQ(SongsOf(First(one)), Songs{2});
    EXPECT_EQ(SongsOf(First(two)), Songs{1});
    undone_in->PVExplorer1().Undo();
    EXPECT_EQ(SongsOf(First(one)), (Songs{1, 2}));
    EXPECT_EQ(SongsOf(First(two)), Songs{});
    EXPECT_FALSE(one.Jukebox().IsFormDirty());
    EXPECT_FALSE(two.Jukebox().IsFormDirty());
    undone_in->PVExplorer1().Redo();
  }
}

TEST_F(SeveralJukeboxes, AMoveOfAFolderIsUndoneInBothJukeboxes) {
  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
  one.PVExplorer1().Select(First(one));
  Drop(two, *one.PVExplorer1().FolderToDrag());
  EXPECT_EQ(one.Jukebox().Nodes().Count(), 0);
  EXPECT_EQ(two.Jukebox().Nodes().Count(), 2);
  two.PVExplorer1().Undo();
  EXPECT_EQ(one.Jukebox().Nodes().Count(), 1);
  EXPECT_EQ(two.Jukebox().Nodes().Count(), 1);
  EXPECT_EQ(frame.statusBar()->currentMessage(), "");
}

/// A song has moved from ONE to TWO, and TWO has changed since.
class MovesBetweenJukeboxes : public SeveralJukeboxes {
 protected:
  MovesBetweenJukeboxes() {
    one.Jukebox().Caption("ONE");
    two.Jukebox().Caption("TWO");
    ListOf(one).SelectRows(0, 0);
    Drop(two, *one.PVExplorer1().SongsToDrag());
    ChangeTwo();
  }
  void ChangeTwo() {
    two.PVExplorer1().AddFolder(nullptr);
    two.PVExplorer1().CommitEditing();
  }
  void ExpectSongs(const Songs& in_one, const Songs& in_two) {
    EXPECT_EQ(SongsOf(First(one)), in_one);
    EXPECT_EQ(SongsOf(First(two)), in_two);
  }
  QString Status() {
    const QString text = frame.statusBar()->currentMessage();
    frame.statusBar()->clearMessage();
    return text;
  }

  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
};

TEST_F(MovesBetweenJukeboxes, AnUndoInOnlyOneJukeboxIsReported) {
  one.PVExplorer1().Undo();
  ExpectSongs({1, 2}, {1});
  EXPECT_EQ(Status(),
            "The move was undone only in ONE: the other jukebox has changed since, or was "
            "closed.");
  // Undoing in TWO reaches the other part, after which everything is as before the move.
  two.PVExplorer1().Undo();
  two.PVExplorer1().Undo();
  ExpectSongs({1, 2}, {});
  EXPECT_EQ(Status(), "");
}

TEST_F(MovesBetweenJukeboxes, ARedoAfterWhichBothPartsAreDoneIsNotReported) {
  one.PVExplorer1().Undo();
  Status();
  one.PVExplorer1().Redo();
  ExpectSongs({2}, {1});
  EXPECT_EQ(Status(), "");
}

TEST_F(MovesBetweenJukeboxes, AnUndoNeverRemovesASongFromBothJukeboxes) {
  // Gives ONE a later step after its part of the move.
  two.PVExplorer1().Undo();
  one.PVExplorer1().AddFolder(nullptr);
  one.PVExplorer1().CommitEditing();
  two.PVExplorer1().Undo();
  ExpectSongs({2}, {1});
  EXPECT_EQ(
      Status(),
      "The move between two jukeboxes was not undone: the other jukebox has changed since. Undo "
      "those changes first.");
  one.PVExplorer1().Undo();
  two.PVExplorer1().Undo();
  ExpectSongs({1, 2}, {});
  EXPECT_EQ(Status(), "");
}

TEST_F(MovesBetweenJukeboxes, AMoveForgottenByTheOtherJukeboxIsNotRedone) {
  two.PVExplorer1().Undo();
  one.PVExplorer1().Undo();
  ExpectSongs({1, 2}, {});
  ChangeTwo();
  one.PVExplorer1().Redo();
  ExpectSongs({1, 2}, {});
  EXPECT_EQ(
      Status(),
      "The move between two jukeboxes was not redone: the other jukebox has changed since, or "
      "was closed.");
}

TEST_F(MovesBetweenJukeboxes, AClosedWindowDoesNotBlockEarlierUndoSteps) {
  delete &SubOf(one);
  two.PVExplorer1().Undo();
  two.PVExplorer1().Undo();
  EXPECT_EQ(SongsOf(First(two)), Songs{});
  EXPECT_EQ(Status(),
            "The move was undone only in TWO: the other jukebox has changed since, or was "
            "closed.");
}

TEST_F(SeveralJukeboxes, WhatIsCutInOneIsPastedInTheOther) {
  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
  ListOf(one).SelectRows(1, 1);
  QTest::keyClick(&ListOf(one), Qt::Key_X, Qt::ControlModifier);
  QTest::keyClick(&ListOf(two), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(First(one)), Songs{1});
  EXPECT_EQ(SongsOf(First(two)), Songs{2});
}

#ifndef _WIN32
// On Windows file names are Unicode text, which can always be displayed.
TEST_F(SeveralJukeboxes, CaptionsThatLookAlikeAreNotTheSame) {
  // Both names are shown with a replacement character for the byte that cannot be shown.
  for (const char* const name : {"caf\xE8.juk", "caf\xE9.juk"}) {
    Jukebox made;
    made.Nodes().AddChild(nullptr, "All Songs");
    ASSERT_TRUE(made.Save(GroupingFolder(application.path()) + name, library));
    frame.show();
    frame.OpenFiles({GroupingFolder(application.path()) + name});
  }
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}
#endif

TEST_F(SeveralJukeboxes, AHiddenWindowIsNotAnOpenJukebox) {
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  const std::string path = GroupingFolder(application.path()) + "mix.juk";
  ASSERT_TRUE(made.Save(path, library));
  frmMain& hidden = frame.NewJukeboxWindow();
  hidden.Jukebox().Caption("MIX");
  frame.show();
  frame.OpenFiles({path});
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
  frame.OpenFiles({GroupingFolder(application.path()) + "x" + kSep + "MIX.juk"});
  EXPECT_EQ(messages.Take(), Texts{"This file is already open"});
}

TEST_F(SeveralJukeboxes, AReactivatedWindowFocusesThePaneThatHadTheFocus) {
  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
  QApplication::setActiveWindow(&frame);
  const auto focus_of = [](frmMain& of) {
    QCoreApplication::processEvents();
    const QWidget* const focus = QApplication::focusWidget();
    return focus == &ListOf(of) ? "list" : focus == &TreeOf(of) ? "tree" : "neither";
  };
  EXPECT_EQ(focus_of(two), "tree"s);
  for (QMdiSubWindow* const sub : {&SubOf(one), &SubOf(two), &SubOf(one)})
    Area().setActiveSubWindow(sub);
  EXPECT_EQ(focus_of(one), "tree"s);
  one.PVExplorer1().GrabFocus(true);
  EXPECT_EQ(focus_of(one), "list"s);
  Area().setActiveSubWindow(&SubOf(two));
  EXPECT_EQ(focus_of(two), "tree"s);
  Area().setActiveSubWindow(&SubOf(one));
  EXPECT_EQ(focus_of(one), "list"s);
  // A new jukebox focuses its tree, whatever had the focus before.
  frmMain& three = EmptyJukebox();
  EXPECT_EQ(focus_of(three), "tree"s);
  // Also when the list of another window has the focus, and that list is empty.
  Area().setActiveSubWindow(&SubOf(two));
  two.PVExplorer1().GrabFocus(true);
  EXPECT_EQ(focus_of(two), "list"s);
  SubOf(two).showMinimized();
  SubOf(three).showMinimized();
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(one));
  EXPECT_EQ(focus_of(one), "list"s);
  SubOf(two).showNormal();
  Area().setActiveSubWindow(&SubOf(two));
  EXPECT_EQ(focus_of(two), "list"s);
  frmMain& four = EmptyJukebox();
  EXPECT_EQ(focus_of(four), "tree"s);
}

}  // namespace
}  // namespace tallow

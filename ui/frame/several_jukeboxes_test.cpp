// SPDX-License-Identifier: GPL-3.0-or-later
// What several jukebox windows of one frame have to do with each other.
#include <gtest/gtest.h>

#include <QStatusBar>
#include <QTest>

#include "app/data_paths.h"
#include "jukebox/play_commands.h"
#include "jukebox/window/explorer_drag.h"
#include "jukebox/window/folder_tree_view.h"
#include "jukebox/window/pv_explorer.h"
#include "jukebox/window/song_list_view.h"
#include "tests/drag_and_drop.h"
#include "tests/frame_fixture.h"

namespace tallow {
namespace {

class SeveralJukeboxes : public FrameTest {
 protected:
  using Songs = std::vector<std::int32_t>;

  static FolderTreeView& TreeOf(frmMain& of) { return *of.findChild<FolderTreeView*>(); }
  static SongListView& ListOf(frmMain& of) { return *of.findChild<SongListView*>(); }
  static Folder& First(frmMain& of) { return of.Jukebox().Nodes().ChildAt(0); }
  /// A jukebox with an empty folder "there" before the others.
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

TEST_F(SeveralJukeboxes, AMoveFromOneToTheOtherIsUndoneAsOne) {
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

TEST_F(SeveralJukeboxes, AFolderThatMovesIsUndoneInBothToo) {
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

TEST_F(SeveralJukeboxes, AHalfThatIsNotTheLastStepStaysAndIsTold) {
  frmMain& one = ShowJukebox();
  frmMain& two = EmptyJukebox();
  one.Jukebox().Caption("ONE");
  ListOf(one).SelectRows(0, 0);
  Drop(two, *one.PVExplorer1().SongsToDrag());
  two.PVExplorer1().AddFolder(nullptr);
  two.PVExplorer1().CommitEditing();
  one.PVExplorer1().Undo();
  EXPECT_EQ(SongsOf(First(one)), (Songs{1, 2}));
  EXPECT_EQ(SongsOf(First(two)), Songs{1});
  EXPECT_EQ(frame.statusBar()->currentMessage(),
            "Of this move between two jukeboxes only the half in ONE was undone: the other jukebox "
            "was closed or has changed since. Undo and redo there act on the other half.");
  one.PVExplorer1().Redo();
  EXPECT_TRUE(frame.statusBar()->currentMessage().contains("in ONE was done again: "));
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

TEST_F(SeveralJukeboxes, CaptionsThatLookAlikeAreNotTheSame) {
  // Both are shown with a mark in place of what cannot be shown.
  for (const char* const name : {"caf\xE8.juk", "caf\xE9.juk"}) {
    if (kSeparator == '\\') GTEST_SKIP() << "names of this system are text";
    Jukebox made;
    made.Nodes().AddChild(nullptr, "All Songs");
    ASSERT_TRUE(made.Save(GroupingFolder(application.path()) + name, library));
    frame.show();
    frame.OpenFiles({GroupingFolder(application.path()) + name});
  }
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(frame.OpenJukeboxes().size(), 2U);
}

TEST_F(SeveralJukeboxes, OnlyAWindowThatIsSeenCountsAsOpen) {
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

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_edits.h"

#include <numeric>

#include "app/play_commands.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using Result = JukeboxEdits::Result;
using Songs = std::vector<std::int32_t>;

class Edits : public LibraryTest {
 protected:
  Edits() {
    for (int k = 1; k <= 9; ++k) AddSong("/m/", std::to_string(k) + ".mp3");
  }

  static Folder& Add(Jukebox& jukebox, Folder* parent, const char* text, const Songs& songs = {}) {
    Folder& folder = jukebox.Nodes().AddChild(parent, text);
    for (const std::int32_t song : songs) folder.Items().emplace_back(song, 2);
    return folder;
  }
  Folder& Add(Folder* parent, const char* text, const Songs& songs = {}) {
    return Add(jukebox, parent, text, songs);
  }
  /// The texts of the direct subfolders of a folder, or of the top level.
  Texts Children(const Folder* above = nullptr) const {
    Texts texts;
    const FolderTree& tree = jukebox.Nodes();
    const std::int32_t count = above != nullptr ? above->Children() : tree.Children();
    for (std::int32_t k = 0; k < count; ++k)
      texts.push_back((above != nullptr ? above->ChildAt(k) : tree.ChildAt(k)).Text());
    return texts;
  }

  Jukebox jukebox;
  JukeboxClipboard clipboard;
  JukeboxEdits edits{jukebox, clipboard};
};

TEST_F(Edits, ANewFolderComesBehindTheOthers) {
  Folder& a = Add(nullptr, "A");
  Add(&a, "A1");
  const Folder* const added = edits.AddFolder(&a);
  EXPECT_EQ(added, &a.ChildAt(1));
  EXPECT_EQ(Children(&a), (Texts{"A1", "New Folder"}));
  edits.AddFolder(nullptr);
  EXPECT_EQ(Children(), (Texts{"A", "New Folder"}));
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(Edits, NoFolderLiesDeeperThanAThousand) {
  Folder* folder = nullptr;
  for (int level = 0; level <= kMaxLevel; ++level) folder = &Add(folder, "x");
  EXPECT_EQ(edits.AddFolder(folder), nullptr);
  Folder& other = Add(nullptr, "other");
  edits.CopyFolder(other);
  EXPECT_EQ(edits.Paste(folder), Result::kTooDeep);
  EXPECT_EQ(edits.DropFolder(edits, other, folder, false), Result::kTooDeep);
  EXPECT_EQ(edits.DropFolder(edits, other, folder, true), Result::kTooDeep);
  EXPECT_EQ(edits.Paste(folder->Parent()), Result::kDone);
}

TEST_F(Edits, AFolderCanBeRenamedButNotToBlanks) {
  Folder& folder = Add(nullptr, "A");
  EXPECT_TRUE(edits.Rename(folder, "A"));
  EXPECT_FALSE(jukebox.History().CanUndo());
  EXPECT_FALSE(edits.Rename(folder, ""));
  EXPECT_FALSE(edits.Rename(folder, "   "));
  EXPECT_EQ(folder.Text(), "A");
  EXPECT_TRUE(edits.Rename(folder, "[b] "));
  EXPECT_EQ(folder.Text(), "[b] ");
}

TEST_F(Edits, ASpecialFolderKeepsItsText) {
  Folder& folder = Add(nullptr, "New");
  EXPECT_FALSE(edits.Rename(folder, "Old"));
  EXPECT_EQ(folder.Text(), "New");
}

TEST_F(Edits, CutMovesSongsToTheClipboard) {
  Folder& from = Add(nullptr, "from", {1, 2, 3, 4, 5});
  Folder& to = Add(nullptr, "to", {9});
  edits.CutSongs(from, {0, 2, 3});
  EXPECT_EQ(SongsOf(from), (Songs{2, 5}));
  EXPECT_EQ(edits.Paste(&to), Result::kDone);
  EXPECT_EQ(SongsOf(to), (Songs{9, 1, 3, 4}));
  // Pasting leaves the songs on the clipboard.
  EXPECT_EQ(edits.Paste(&from), Result::kDone);
  EXPECT_EQ(SongsOf(from), (Songs{2, 5, 1, 3, 4}));
}

TEST_F(Edits, ASongIsNotAddedTwice) {
  Folder& from = Add(nullptr, "from", {1, 2, 2, 3});
  Folder& to = Add(nullptr, "to", {3, 3, 7});
  edits.CopySongs(from, {0, 1, 2, 3});
  edits.Paste(&to);
  EXPECT_EQ(SongsOf(to), (Songs{3, 3, 7, 1, 2}));
  EXPECT_EQ(edits.Paste(&to), Result::kAlreadyThere);
  EXPECT_EQ(jukebox.History().Steps(), 1U);
}

TEST_F(Edits, WithoutASelectionTheClipboardStaysUnchanged) {
  Folder& from = Add(nullptr, "from", {1, 2});
  Folder& to = Add(nullptr, "to");
  edits.CopySongs(from, {1});
  edits.CopySongs(from, {});
  edits.CutSongs(from, {-1, 2, 99});
  EXPECT_FALSE(jukebox.IsFormDirty());
  edits.Paste(&to);
  EXPECT_EQ(SongsOf(to), Songs{2});
}

TEST_F(Edits, SongsCannotBePastedAtTopLevel) {
  edits.CopySongs(Add(nullptr, "from", {1}), {0});
  EXPECT_EQ(edits.Paste(nullptr), Result::kNeedsFolder);
}

TEST_F(Edits, AnEmptyClipboardPastesNothing) {
  EXPECT_EQ(edits.Paste(&Add(nullptr, "to")), Result::kNothing);
  EXPECT_EQ(edits.Paste(nullptr), Result::kNothing);
}

TEST_F(Edits, AFolderIsPastedWithItsSubtreeNextToOneOfTheSameText) {
  Folder& a = Add(nullptr, "A", {1});
  Folder& inner = Add(&a, "inner", {2, 3});
  Folder& b = Add(nullptr, "B");
  Add(&b, "A");
  edits.CopyFolder(a);
  edits.Rename(inner, "renamed later");
  EXPECT_EQ(edits.Paste(&b), Result::kDone);
  EXPECT_EQ(Children(&b), (Texts{"A", "A"}));
  EXPECT_EQ(SongsOf(b.ChildAt(1)), Songs{1});
  EXPECT_EQ(b.ChildAt(1).ChildAt(0).Text(), "inner");
  EXPECT_EQ(SongsOf(b.ChildAt(1).ChildAt(0)), (Songs{2, 3}));
  edits.Paste(nullptr);
  EXPECT_EQ(Children(), (Texts{"A", "B", "A"}));
}

TEST_F(Edits, AFolderCanBePastedIntoItsOriginal) {
  Folder& a = Add(nullptr, "A");
  Add(&a, "inner");
  edits.CopyFolder(a);
  edits.Paste(&a);
  EXPECT_EQ(Children(&a), (Texts{"inner", "A"}));
  EXPECT_EQ(Children(&a.ChildAt(1)), Texts{"inner"});
}

TEST_F(Edits, TheClipboardHoldsSongsOrAFolder) {
  Folder& a = Add(nullptr, "A", {1});
  Folder& to = Add(nullptr, "to");
  edits.CopyFolder(a);
  edits.CopySongs(a, {0});
  edits.Paste(&to);
  EXPECT_EQ(to.Children(), 0);
  EXPECT_EQ(SongsOf(to), Songs{1});
  edits.CopyFolder(a);
  edits.Paste(&to);
  EXPECT_EQ(to.Children(), 1);
}

TEST_F(Edits, ACutFolderLeavesTheTreeAndCanBePasted) {
  Folder& a = Add(nullptr, "A", {1});
  Folder& b = Add(nullptr, "B");
  std::int64_t changes = 0;
  jukebox.ShowFolder(a, library, changes);
  edits.CutFolder(a);
  EXPECT_EQ(jukebox.selectednode(), nullptr);
  EXPECT_EQ(Children(), Texts{"B"});
  edits.Paste(&b);
  EXPECT_EQ(SongsOf(b.ChildAt(0)), Songs{1});
}

TEST_F(Edits, TheClipboardIsSharedByJukeboxes) {
  Jukebox other;
  JukeboxEdits other_edits(other, clipboard);
  Folder& there = Add(other, nullptr, "there");
  edits.CopySongs(Add(nullptr, "A", {4, 5}), {0, 1});
  other_edits.Paste(&there);
  EXPECT_EQ(SongsOf(there), (Songs{4, 5}));
  EXPECT_FALSE(jukebox.IsFormDirty());
  EXPECT_TRUE(other.IsFormDirty());
}

TEST_F(Edits, DroppedSongsMoveOrAreCopied) {
  Folder& from = Add(nullptr, "from", {1, 2, 3});
  Folder& to = Add(nullptr, "to", {2});
  EXPECT_EQ(edits.DropSongs(edits, from, {0, 1}, to, false), Result::kDone);
  EXPECT_EQ(SongsOf(from), Songs{3});
  EXPECT_EQ(SongsOf(to), (Songs{2, 1}));
  EXPECT_EQ(edits.DropSongs(edits, from, {0}, to, true), Result::kDone);
  EXPECT_EQ(SongsOf(from), Songs{3});
  EXPECT_EQ(SongsOf(to), (Songs{2, 1, 3}));
  EXPECT_EQ(edits.DropSongs(edits, from, {0}, from, false), Result::kNothing);
  EXPECT_EQ(edits.DropSongs(edits, from, {}, to, false), Result::kNothing);
  // Each drop is one step.
  EXPECT_EQ(jukebox.History().Steps(), 2U);
  jukebox.Undo();
  jukebox.Undo();
  EXPECT_EQ(SongsOf(from), (Songs{1, 2, 3}));
  EXPECT_EQ(SongsOf(to), Songs{2});
}

TEST_F(Edits, SongsMoveToAnotherJukebox) {
  Jukebox other;
  JukeboxEdits other_edits(other, clipboard);
  Folder& there = Add(other, nullptr, "there", {1});
  Folder& from = Add(nullptr, "from", {1, 2, 3});
  EXPECT_EQ(other_edits.DropSongs(edits, from, {0, 2}, there, false), Result::kDone);
  EXPECT_EQ(SongsOf(from), Songs{2});
  EXPECT_EQ(SongsOf(there), (Songs{1, 3}));
  // The two steps have the same move number.
  using State = EditHistory::LinkedStepState;
  const std::uint64_t pair = jukebox.History().LinkToUndo().move;
  EXPECT_NE(pair, 0U);
  EXPECT_TRUE(jukebox.History().LinkToUndo().is_source);
  EXPECT_EQ(other.History().LinkToUndo().move, pair);
  EXPECT_FALSE(other.History().LinkToUndo().is_source);
  EXPECT_EQ(other.History().LinkToRedo().move, 0U);
  EXPECT_EQ(jukebox.History().StateOfLinkedStep(pair), State::kDone);
  EXPECT_EQ(jukebox.History().StateOfLinkedStep(pair + 1), State::kNone);
  jukebox.Undo();
  EXPECT_EQ(jukebox.History().StateOfLinkedStep(pair), State::kUndone);
  EXPECT_EQ(jukebox.History().LinkToUndo().move, 0U);
  EXPECT_EQ(jukebox.History().LinkToRedo().move, pair);
  EXPECT_EQ(SongsOf(from), (Songs{1, 2, 3}));
  EXPECT_EQ(SongsOf(there), (Songs{1, 3}));
  other.Undo();
  EXPECT_EQ(SongsOf(there), Songs{1});
}

TEST_F(Edits, ADroppedFolderMovesOrIsCopied) {
  Folder& a = Add(nullptr, "A", {1});
  Folder& b = Add(nullptr, "B");
  EXPECT_EQ(edits.DropFolder(edits, a, &b, true), Result::kDone);
  EXPECT_EQ(Children(), (Texts{"A", "B"}));
  EXPECT_EQ(edits.DropFolder(edits, a, &b, false), Result::kDone);
  EXPECT_EQ(Children(), Texts{"B"});
  EXPECT_EQ(Children(&b), (Texts{"A", "A"}));
  EXPECT_EQ(&b.ChildAt(1), &a);
  EXPECT_EQ(edits.DropFolder(edits, a, nullptr, false), Result::kDone);
  EXPECT_EQ(Children(), (Texts{"B", "A"}));
  jukebox.Undo();
  jukebox.Undo();
  EXPECT_EQ(Children(), (Texts{"A", "B"}));
}

TEST_F(Edits, AFolderDoesNotGoIntoItselfOrBelow) {
  Folder& a = Add(nullptr, "A");
  Folder& inner = Add(&a, "inner");
  for (const bool copy : {false, true}) {
    EXPECT_EQ(edits.DropFolder(edits, a, &a, copy), Result::kNothing);
    EXPECT_EQ(edits.DropFolder(edits, a, &inner, copy), Result::kNothing);
  }
  // Each folder is already in the target.
  EXPECT_EQ(edits.DropFolder(edits, inner, &a, false), Result::kNothing);
  EXPECT_EQ(edits.DropFolder(edits, a, nullptr, false), Result::kNothing);
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(Edits, AFolderMovesToAnotherJukebox) {
  Jukebox other;
  JukeboxEdits other_edits(other, clipboard);
  Folder& a = Add(nullptr, "A", {1});
  Add(&a, "inner", {2});
  EXPECT_EQ(other_edits.DropFolder(edits, a, nullptr, false), Result::kDone);
  EXPECT_EQ(Children(), Texts{});
  EXPECT_EQ(other.Nodes().ChildAt(0).ChildAt(0).Text(), "inner");
  EXPECT_NE(jukebox.History().LinkToUndo().move, 0U);
  EXPECT_EQ(jukebox.History().LinkToUndo().move, other.History().LinkToUndo().move);
  jukebox.Undo();
  EXPECT_EQ(Children(), Texts{"A"});
  other.Undo();
  EXPECT_EQ(other.Nodes().Count(), 0);
}

TEST_F(Edits, SortNodesSortsBelowAFolderOrTheWholeTree) {
  Folder& b = Add(nullptr, "b");
  Add(nullptr, "A");
  Folder& disc10 = Add(&b, "Disc 10");
  Add(&b, "disc 2");
  Add(&disc10, "z");
  Add(&disc10, "Y");
  edits.SortNodes(&b);
  EXPECT_EQ(Children(), (Texts{"b", "A"}));
  EXPECT_EQ(Children(&b), (Texts{"disc 2", "Disc 10"}));
  EXPECT_EQ(Children(&disc10), (Texts{"Y", "z"}));
  edits.SortNodes(nullptr);
  EXPECT_EQ(Children(), (Texts{"A", "b"}));
  edits.SortNodes(nullptr);
  EXPECT_EQ(jukebox.History().Steps(), 2U);
  jukebox.Undo();
  jukebox.Undo();
  EXPECT_EQ(Children(&b), (Texts{"Disc 10", "disc 2"}));
  EXPECT_EQ(Children(&disc10), (Texts{"z", "Y"}));
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(Edits, AfterARemovalTheNextThePreviousOrTheParentFolderIsShown) {
  Folder& a = Add(nullptr, "A");
  Folder& a1 = Add(&a, "A1");
  EXPECT_EQ(FolderToShowAfterRemoval(a), nullptr);
  EXPECT_EQ(FolderToShowAfterRemoval(a1), &a);
  Folder& a2 = Add(&a, "A2");
  EXPECT_EQ(FolderToShowAfterRemoval(a1), &a2);
  EXPECT_EQ(FolderToShowAfterRemoval(a2), &a1);
  Folder& b = Add(nullptr, "B");
  EXPECT_EQ(FolderToShowAfterRemoval(a), &b);
  EXPECT_EQ(FolderToShowAfterRemoval(b), &a);
}

TEST_F(Edits, SongsThatTheTargetHoldsMoveWithoutAStepInTheTarget) {
  Jukebox other;
  JukeboxEdits other_edits(other, clipboard);
  Folder& there = Add(other, nullptr, "there", {1});
  Folder& from = Add(nullptr, "from", {1, 2});
  other_edits.DropSongs(edits, from, {0}, there, false);
  EXPECT_EQ(SongsOf(from), Songs{2});
  EXPECT_FALSE(other.History().CanUndo());
  EXPECT_EQ(jukebox.History().LinkToUndo().move, 0U);
}

TEST_F(Edits, AFolderRenamedLikeASpecialOneMovesAfterItAndIsOrdinary) {
  Folder& mine = Add(nullptr, "mine");
  Folder& other = Add(nullptr, "other");
  Folder& artist = Add(nullptr, "Artist");
  Add(nullptr, "last");
  EXPECT_TRUE(edits.Rename(mine, "Artist"));
  EXPECT_EQ(Children(), (Texts{"other", "Artist", "Artist", "last"}));
  EXPECT_EQ(mine.Index(), 2);
  EXPECT_TRUE(IsSpecialFolder(artist));
  EXPECT_FALSE(IsSpecialFolder(mine));
  // The folder can be renamed again. Renamed after the special folder, it keeps its position.
  EXPECT_TRUE(edits.Rename(mine, "mine"));
  EXPECT_TRUE(edits.Rename(mine, "Artist"));
  EXPECT_EQ(mine.Index(), 2);
  for (int k = 1; k <= 3; ++k) jukebox.Undo();
  EXPECT_EQ(Children(), (Texts{"mine", "other", "Artist", "last"}));
  jukebox.Redo();
  EXPECT_EQ(Children(), (Texts{"other", "Artist", "Artist", "last"}));
  EXPECT_TRUE(IsSpecialFolder(artist));
  EXPECT_TRUE(edits.Rename(other, "Others"));
}

TEST_F(Edits, ADecadeFolderStaysTheFirstWithItsText) {
  Folder& decades = Add(nullptr, "Decades");
  Folder& mine = Add(&decades, "mine");
  Folder& eighties = Add(&decades, "80's");
  EXPECT_TRUE(edits.Rename(mine, "80's"));
  EXPECT_EQ(mine.Index(), 1);
  EXPECT_TRUE(IsSpecialFolder(eighties));
  EXPECT_FALSE(IsSpecialFolder(mine));
}

TEST_F(Edits, AFolderWithTheTextOfAnOrdinaryOneKeepsItsPlace) {
  Folder& mine = Add(nullptr, "mine");
  Add(nullptr, "By Mood");
  EXPECT_TRUE(edits.Rename(mine, "By Mood"));
  EXPECT_EQ(mine.Index(), 0);
}

TEST_F(Edits, APastedCopyOfASpecialFolderIsOrdinary) {
  Folder& artist = Add(nullptr, "Artist", {1});
  edits.CopyFolder(artist);
  EXPECT_EQ(edits.Paste(nullptr), Result::kDone);
  Folder& pasted = *artist.Next();
  EXPECT_TRUE(IsSpecialFolder(artist));
  EXPECT_FALSE(IsSpecialFolder(pasted));
  EXPECT_TRUE(edits.Rename(pasted, "mine"));
}

TEST_F(Edits, SongsNeedAFolderToBePastedInto) {
  Folder& one = Add(nullptr, "one", {1});
  EXPECT_EQ(edits.Paste(nullptr), Result::kNothing);
  edits.CopySongs(one, {0});
  EXPECT_EQ(edits.Paste(nullptr), Result::kNeedsFolder);
}

TEST_F(Edits, SongsMoveToAPlaceInTheirFolder) {
  Folder& folder = Add(nullptr, "A", {1, 2, 3, 4, 5});
  edits.MoveSongsTo(folder, {0, 3}, 2);
  EXPECT_EQ(SongsOf(folder), (Songs{2, 1, 4, 3, 5}));
  EXPECT_EQ(jukebox.History().NameToUndo(), "Move 2 Songs");
  edits.MoveSongsTo(folder, {0}, 5);
  EXPECT_EQ(SongsOf(folder), (Songs{1, 4, 3, 5, 2}));
  edits.MoveSongsTo(folder, {4}, 0);
  EXPECT_EQ(SongsOf(folder), (Songs{2, 1, 4, 3, 5}));
  for (int step = 0; step < 3; ++step) jukebox.Undo();
  EXPECT_EQ(SongsOf(folder), (Songs{1, 2, 3, 4, 5}));
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(Edits, SongsThatMoveToWhereTheyAreMakeNoStep) {
  Folder& folder = Add(nullptr, "A", {1, 2, 3});
  edits.MoveSongsTo(folder, {1}, 1);
  edits.MoveSongsTo(folder, {1}, 2);
  edits.MoveSongsTo(folder, {}, 0);
  edits.MoveSongsTo(folder, {-1, 3}, 0);
  EXPECT_FALSE(jukebox.History().CanUndo());
}

TEST_F(Edits, SongsMoveOverTheirNeighbours) {
  Folder& folder = Add(nullptr, "A", {1, 2, 3, 4, 5});
  edits.MoveSongsByOne(folder, {1, 2, 4}, {0, 1, 3});
  EXPECT_EQ(SongsOf(folder), (Songs{2, 3, 1, 5, 4}));
  EXPECT_EQ(jukebox.History().NameToUndo(), "Move 3 Songs");
  // A neighbour need not be the next entry: entries that are not shown stay where they are.
  edits.MoveSongsByOne(folder, {0}, {4});
  EXPECT_EQ(SongsOf(folder), (Songs{4, 3, 1, 5, 2}));
  EXPECT_EQ(jukebox.History().NameToUndo(), "Move Song");
}

TEST_F(Edits, AMoveTellsWhereTheSongsAreNow) {
  Folder& folder = Add(nullptr, "A", {1, 2, 3, 1});
  const JukeboxEdits::SongMove up = edits.MoveSongsByOne(folder, {3}, {2});
  EXPECT_TRUE(up.is_step);
  EXPECT_EQ(SongsOf(folder), (Songs{1, 2, 1, 3}));
  EXPECT_EQ(up.moved_to.SourceOf(3), 2U);
  EXPECT_EQ(up.moved_to.SourceOf(2), 3U);
  EXPECT_EQ(up.moved_to.SourceOf(0), 0U);
  const JukeboxEdits::SongMove down = edits.MoveSongsTo(folder, {0}, 4);
  EXPECT_EQ(SongsOf(folder), (Songs{2, 1, 3, 1}));
  EXPECT_EQ(down.moved_to.SourceOf(0), 3U);
  EXPECT_EQ(down.moved_to.SourceOf(3), 2U);
}

TEST_F(Edits, TwoEntriesOfASongThatChangePlacesMakeNoStep) {
  Folder& folder = Add(nullptr, "A", {2, 1, 1});
  const JukeboxEdits::SongMove move = edits.MoveSongsByOne(folder, {2}, {1});
  EXPECT_FALSE(move.is_step);
  EXPECT_EQ(move.moved_to.SourceOf(2), 1U);
  EXPECT_FALSE(jukebox.History().CanUndo());
  EXPECT_TRUE(edits.MoveSongsByOne(folder, {1}, {0}).is_step);
  EXPECT_EQ(SongsOf(folder), (Songs{1, 2, 1}));
}

TEST_F(Edits, AMoveInALongFolderIsASmallStep) {
  Songs songs(10'000);
  std::iota(songs.begin(), songs.end(), 1);
  Folder& folder = Add(nullptr, "A", songs);
  edits.MoveSongsByOne(folder, {5000}, {4999});
  EXPECT_LT(jukebox.History().Bytes(), 1000U);
  jukebox.Undo();
  EXPECT_EQ(SongsOf(folder), songs);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/edit_history.h"

#include "app/play_commands.h"
#include "jukebox/jukebox.h"
#include "jukebox/jukebox_edits.h"
#include "jukebox/step_name.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using Songs = std::vector<std::int32_t>;

class History : public LibraryTest {
 protected:
  Folder& Add(const char* text, const Songs& songs = {}) {
    Folder& folder = jukebox.Nodes().AddChild(nullptr, text);
    for (const std::int32_t song : songs) folder.Items().emplace_back(song, 2);
    return folder;
  }

  Jukebox jukebox;
  JukeboxClipboard clipboard;
  JukeboxEdits edits{jukebox, clipboard};
  EditHistory& history = jukebox.History();
};

TEST_F(History, UndoingBackToTheSavedStateClearsTheDirtyFlag) {
  Folder& folder = Add("A");
  EXPECT_FALSE(jukebox.IsFormDirty());
  edits.Rename(folder, "B");
  EXPECT_TRUE(jukebox.IsFormDirty());
  jukebox.IsFormDirty(false);
  EXPECT_FALSE(jukebox.IsFormDirty());
  edits.Rename(folder, "C");
  jukebox.Undo();
  EXPECT_FALSE(jukebox.IsFormDirty());
  jukebox.Undo();
  EXPECT_TRUE(jukebox.IsFormDirty());
  jukebox.Redo();
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(History, ANewChangeCanMakeTheSavedStateUnreachable) {
  Folder& folder = Add("A");
  edits.Rename(folder, "B");
  jukebox.IsFormDirty(false);
  jukebox.Undo();
  edits.Rename(folder, "C");
  jukebox.Undo();
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(History, UndoDoesNotRevertFilingNorClearItsDirtyFlag) {
  Folder& folder = Add("A");
  edits.Rename(folder, "B");
  jukebox.IsFormDirty(true);
  jukebox.Undo();
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(History, ANewChangeDiscardsTheRedoSteps) {
  Folder& folder = Add("A");
  edits.Rename(folder, "B");
  jukebox.Undo();
  edits.Rename(folder, "C");
  EXPECT_FALSE(history.CanRedo());
  EXPECT_EQ(jukebox.Redo().concerned, nullptr);
  EXPECT_EQ(folder.Text(), "C");
}

TEST_F(History, UndoAndRedoReturnTheFolderToShow) {
  AddSong("/m/", "a.mp3");
  Folder& a = Add("A", {1});
  Folder& b = Add("B");
  std::int64_t changes = 0;
  jukebox.ShowFolder(a, library, changes);
  Folder* const added = edits.AddFolder(&b);
  EXPECT_EQ(jukebox.Undo().concerned, &b);
  EXPECT_EQ(jukebox.Redo().concerned, added);
  edits.DeleteFolder(b);
  EXPECT_EQ(jukebox.Undo().concerned, &b);
  EXPECT_EQ(jukebox.Redo().concerned, &a);
  edits.CutSongs(a, {0});
  EXPECT_EQ(jukebox.Undo().concerned, &a);
}

TEST_F(History, UndoingADeletionRestoresTheSameFolderObject) {
  Folder& a = Add("A", {1, 2});
  edits.Rename(a, "A2");
  edits.DeleteFolder(a);
  for (int k = 0; k < 2; ++k) jukebox.Undo();
  EXPECT_EQ(&jukebox.Nodes().ChildAt(0), &a);
  EXPECT_EQ(a.Text(), "A");
  EXPECT_EQ(SongsOf(a), (Songs{1, 2}));
}

TEST_F(History, UndoingTheAdditionOfTheShownFolderHidesIt) {
  AddSong("/m/", "a.mp3");
  std::int64_t changes = 0;
  Folder* const folder = edits.AddFolder(nullptr);
  folder->Items().emplace_back(1, 2);
  jukebox.ShowFolder(*folder, library, changes);
  jukebox.Undo();
  EXPECT_EQ(jukebox.selectednode(), nullptr);
  jukebox.Redo();
  EXPECT_EQ(EntryText(folder->Items()[0], library), "1");
}

TEST_F(History, TheSortOfAColumnIsUndone) {
  for (const char* name : {"c.mp3", "a.mp3", "b.mp3"}) AddSong("/m/", name);
  Folder& folder = Add("A", {1, 2, 3});
  std::int64_t changes = 0;
  jukebox.ShowFolder(folder, library, changes);
  jukebox.ColumnClick(library);
  EXPECT_EQ(SongsOf(folder), (Songs{2, 3, 1}));
  EXPECT_EQ(history.NameToUndo(), "Sort Songs");
  EXPECT_TRUE(jukebox.IsFormDirty());
  // Sorting into the same order adds no step.
  jukebox.ShowFolder(folder, library, changes);
  jukebox.ColumnClick(library);
  EXPECT_EQ(history.Steps(), 1U);
  jukebox.Undo();
  EXPECT_EQ(SongsOf(folder), (Songs{1, 2, 3}));
  jukebox.Redo();
  EXPECT_EQ(SongsOf(folder), (Songs{2, 3, 1}));
}

TEST_F(History, UndoAndRedoWithoutAStepChangeNothing) {
  for (const char* name : {"b.mp3", "a.mp3"}) AddSong("/m/", name);
  Folder& folder = Add("A", {1, 2});
  std::int64_t changes = 0;
  jukebox.ShowFolder(folder, library, changes);
  jukebox.ColumnClick(library);
  jukebox.History().Clear();
  EXPECT_FALSE(jukebox.Undo().list_changed);
  EXPECT_FALSE(jukebox.Redo().list_changed);
  EXPECT_EQ(jukebox.SortState(), 2);
  // Undoing a step that affects no songs does not change the list either.
  edits.Rename(folder, "B");
  EXPECT_FALSE(jukebox.Undo().list_changed);
  EXPECT_EQ(jukebox.SortState(), 2);
}

TEST_F(History, ASortThatFailsHalfwayCanBeUndone) {
  for (const char* rank : {"3", "5", "x", "4", "7"}) AddSong("/m/", "a.mp3", "1", rank);
  Folder& folder = Add("A", {5, 4, 3, 2, 1});
  std::int64_t changes = 0;
  jukebox.ShowFolder(folder, library, changes);
  for (int click = 1; click <= 2; ++click) jukebox.ColumnClick(library);
  const Songs before = SongsOf(folder);
  const std::size_t steps = history.Steps();
  EXPECT_ANY_THROW(jukebox.ColumnClick(library));
  while (history.Steps() > steps && jukebox.Undo().concerned != nullptr &&
         SongsOf(folder) != before) {
  }
  EXPECT_EQ(SongsOf(folder), before);
}

TEST_F(History, KeepsAThousandSmallSteps) {
  Folder& folder = Add("A");
  for (int k = 1; k <= 1500; ++k) edits.Rename(folder, std::to_string(k));
  EXPECT_EQ(history.Steps(), EditHistory::kMaxSteps);
  while (history.CanUndo()) jukebox.Undo();
  EXPECT_EQ(folder.Text(), "500");
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(History, KeepsAHundredLargeStepsThenDropsStepsToSaveMemory) {
  constexpr int kSongs = 100000;
  Songs songs(kSongs);
  for (int k = 0; k < kSongs; ++k) songs[static_cast<std::size_t>(k)] = k + 1;
  Folder& folder = Add("A", songs);
  std::vector<int> rows(kSongs);
  for (int k = 0; k < kSongs; ++k) rows[static_cast<std::size_t>(k)] = k;
  for (int k = 0; k < 75; ++k) {
    edits.CutSongs(folder, rows);
    edits.Paste(&folder);
  }
  EXPECT_EQ(history.Steps(), EditHistory::kMinSteps);
  for (std::size_t k = 0; k < EditHistory::kMinSteps; ++k) {
    EXPECT_TRUE(history.CanUndo());
    jukebox.Undo();
  }
  EXPECT_EQ(folder.Items().size(), std::size_t{kSongs});
}

TEST_F(History, RedoDoesNotAddASongThatWasFiledMeanwhile) {
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"}) AddSong("/m/", name);
  Folder& latest = Add("New", {1});
  edits.AddSongs(latest, {{2, 2}, {3, 2}, {4, 2}});
  edits.CutSongs(latest, {0});
  jukebox.Undo();
  jukebox.Undo();
  // Filing adds one of these songs.
  latest.Items().emplace_back(3, 2);
  jukebox.Redo();
  EXPECT_EQ(SongsOf(latest), (Songs{1, 2, 4, 3}));
  jukebox.Redo();
  EXPECT_EQ(SongsOf(latest), (Songs{2, 4, 3}));
  // Undo does not remove a filed song.
  jukebox.Undo();
  jukebox.Undo();
  EXPECT_EQ(SongsOf(latest), (Songs{1, 3}));
}

TEST_F(History, ReportsHowAStepChangedTheSongsOfAFolder) {
  Folder& folder = Add("A", {1, 2, 3, 4});
  Folder& other = Add("B");
  edits.DropSongs(edits, folder, {1, 3}, other, false);
  EXPECT_FALSE(history.LastSongChange(Add("C")).any);
  jukebox.Undo();
  EXPECT_EQ(history.LastSongChange(folder).added, (std::vector<int>{1, 3}));
  EXPECT_EQ(history.LastSongChange(folder).first_removed_at, -1);
  EXPECT_EQ(history.LastSongChange(other).first_removed_at, 0);
  jukebox.Redo();
  EXPECT_EQ(history.LastSongChange(folder).first_removed_at, 1);
  EXPECT_EQ(history.LastSongChange(other).added, (std::vector<int>{0, 1}));
  EXPECT_FALSE(history.LastSongChange(folder).IsReorder());
  edits.MoveSongsTo(other, {0}, 2);
  jukebox.Undo();
  EXPECT_TRUE(history.LastSongChange(other).IsReorder());
  EXPECT_FALSE(history.LastSongChange(folder).IsReorder());
}

TEST_F(History, TellsWhereAStepMovedTheSongsOfAFolder) {
  Folder& folder = Add("A", {1, 2, 3, 1});
  edits.MoveSongsByOne(folder, {3}, {2});
  const auto moved = [&] {
    std::vector<std::size_t> positions;
    for (std::size_t position = 0; position < 4; ++position)
      positions.push_back(history.MovedByLast(folder, position));
    return positions;
  };
  jukebox.Undo();
  EXPECT_EQ(moved(), (std::vector<std::size_t>{0, 1, 3, 2}));
  jukebox.Redo();
  EXPECT_EQ(moved(), (std::vector<std::size_t>{0, 1, 3, 2}));
  edits.MoveSongsTo(folder, {0}, 4);
  jukebox.Undo();
  EXPECT_EQ(moved(), (std::vector<std::size_t>{1, 2, 3, 0}));
  jukebox.Redo();
  EXPECT_EQ(moved(), (std::vector<std::size_t>{3, 0, 1, 2}));
}

TEST_F(History, StepsAreNamedByWhatTheyDo) {
  Folder& one = Add("One", {1, 2, 3, 4});
  Folder& two = Add("Two");
  const auto name = [this] { return std::string(history.NameToUndo()); };
  EXPECT_EQ(name(), "");
  edits.AddFolder(nullptr);
  EXPECT_EQ(name(), "Add Folder");
  edits.AddFolderOf("Of", {SongEntry(1, 2)});
  EXPECT_EQ(name(), "Add Folder");
  edits.Rename(two, "Three");
  EXPECT_EQ(name(), "Rename Folder");
  edits.DropSongs(edits, one, {0, 1}, two, true);
  EXPECT_EQ(name(), "Copy 2 Songs");
  edits.DropSongs(edits, one, {0, 1, 2}, two, false);
  EXPECT_EQ(name(), "Move 3 Songs");
  edits.CutSongs(two, {0});
  EXPECT_EQ(name(), "Cut Song");
  edits.Paste(&one);
  EXPECT_EQ(name(), "Paste Song");
  edits.AddSongs(two, {SongEntry(5, 2), SongEntry(6, 2)});
  EXPECT_EQ(name(), "Add 2 Songs");
  edits.CopyFolder(one);
  edits.Paste(nullptr);
  EXPECT_EQ(name(), "Paste Folder");
  edits.DropFolder(edits, one, &two, false);
  EXPECT_EQ(name(), "Move Folder");
  edits.DropFolder(edits, one, nullptr, true);
  EXPECT_EQ(name(), "Copy Folder");
  EXPECT_TRUE(edits.SortNodes(nullptr));
  EXPECT_EQ(name(), "Sort Folders");
  EXPECT_FALSE(edits.SortNodes(nullptr));
  edits.CutSongs(two, {0, 1}, "Delete");
  EXPECT_EQ(name(), "Delete 2 Songs");
  edits.DeleteFolder(one);
  EXPECT_EQ(name(), "Delete Folder");
  edits.CutFolder(two);
  EXPECT_EQ(name(), "Cut Folder");
  EXPECT_EQ(history.NameToRedo(), "");
  jukebox.Undo();
  EXPECT_EQ(history.NameToRedo(), "Cut Folder");
  EXPECT_EQ(name(), "Delete Folder");
}

TEST_F(History, NamesOfStepsGroupTheDigitsOfTheNumberOfSongs) {
  EXPECT_EQ(NameOfSongStep("Move", 1234), "Move 1,234 Songs");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Songs of a jukebox that go missing, are unreachable, or return.
#include "jukebox/returned_songs.h"

#include <filesystem>
#include <limits>

#include "app/add_files.h"
#include "app/play_commands.h"
#include "jukebox/confused_songs.h"
#include "jukebox/jukebox.h"
#include "jukebox/jukebox_edits.h"
#include "jukebox/jukebox_reader.h"
#include "jukebox/song_search.h"
#include "jukebox/sorting.h"
#include "jukebox/unsaved_jukeboxes.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;
using Songs = std::vector<std::int32_t>;

/// A jukebox with a folder "mine" and a library of real files, some of which the tests move.
class ReturnedSongs : public LibraryTest {
 protected:
  ReturnedSongs() {
    for (const char* const name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"}) {
      music.File(std::string("m/") + name,
                 std::string(static_cast<std::size_t>(100 + library.UBoundOfMp3Array()), 'x'));
      library.AddSong(music / "m/", name, 100 + library.UBoundOfMp3Array());
    }
    library.ImportFoundSongs(0);
    library.FinishScan(true);
    for (std::int32_t row = 1; row <= 4; ++row) mine.Items().emplace_back(row, 2);
    Show();
  }

  void Show() {
    std::int64_t changes = 0;
    jukebox.ShowFolder(mine, library, changes);
  }
  void Scan() {
    library.BeginScan(ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    library.AddAnyAdditionalMp3FromTheNormalDirectories();
    Jukebox* const open[] = {&jukebox};
    RenumberReturnedSongs(library.TakeReturned(), open, tallow.clipboard);
    library.FinishScan(true);
    jukebox.ListRefilled(library);
  }
  void MoveAway(const char* name) {
    CreateFolders(music / "n/");
    fs::rename(fs::path(music / (std::string("m/") + name)),
               fs::path(music / (std::string("n/") + name)));
  }
  void MoveBack(const char* name) {
    fs::rename(fs::path(music / (std::string("n/") + name)),
               fs::path(music / (std::string("m/") + name)));
  }
  Texts Labels() {
    Texts labels;
    for (const SongEntry& entry : mine.Items())
      if (!library.IsHidden(entry.SubItem())) labels.push_back(EntryText(entry, library));
    return labels;
  }

  Jukebox jukebox;
  Folder& mine = jukebox.Nodes().AddChild(nullptr, "mine");
  JukeboxEdits edits{jukebox, tallow.clipboard};
};

TEST_F(ReturnedSongs, AMissingSongKeepsAHiddenEntry) {
  MoveAway("b.mp3");
  Scan();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 2, 3, 4}));
  EXPECT_EQ(ShownSongsOf(mine, library), (Songs{1, 3, 4}));
  EXPECT_EQ(Labels(), (Texts{"1.  a.mp3", "2.  c.mp3", "3.  d.mp3"}));
}

TEST_F(ReturnedSongs, ASongThatIsNotRememberedIsPruned) {
  for (const std::int16_t column : {kFileLocation, kFileName, kFileIsThere})
    library.Mp3Info(column, 2, "0");
  jukebox.ListRefilled(library);
  EXPECT_EQ(SongsOf(mine), (Songs{1, 3, 4}));
}

TEST_F(ReturnedSongs, AReturnedSongKeepsItsPositionAndRankAndIsNotFiledAgain) {
  Folder& all = jukebox.Nodes().AddChild(nullptr, "All Songs");
  Folder& latest = jukebox.Nodes().AddChild(nullptr, "New");
  for (std::int32_t row = 1; row <= 4; ++row) all.Items().emplace_back(row, 2);
  library.Mp3Info(kSongRank, 2, "6");
  MoveAway("b.mp3");
  Scan();
  MoveBack("b.mp3");
  Scan();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 5, 3, 4}));
  EXPECT_EQ(Labels()[1], "2.  b.mp3");
  EXPECT_EQ(mine.Items()[1].Icon(), 6);
  Jukebox* const open[] = {&jukebox};
  FillAutomaticFolders(kFillNewToo, true, {}, library, open);
  EXPECT_EQ(SongsOf(all), (Songs{1, 5, 3, 4}));
  EXPECT_EQ(SongsOf(latest), Songs{});
}

TEST_F(ReturnedSongs, UndoStepsAndTheClipboardUseTheNewNumber) {
  edits.CopySongs(mine, {1, 2});
  Folder& other = jukebox.Nodes().AddChild(nullptr, "other");
  edits.AddSongs(other, {{2, 2}, {3, 2}});
  edits.CutSongs(mine, {1, 3});
  edits.CopySongs(other, {0, 1});
  Folder& gone = jukebox.Nodes().AddChild(nullptr, "gone");
  gone.Items().emplace_back(2, 2);
  edits.DeleteFolder(gone);
  MoveAway("b.mp3");
  Scan();
  MoveBack("b.mp3");
  Scan();
  EXPECT_EQ(SongsOf(other), (Songs{5, 3}));
  ASSERT_EQ(tallow.clipboard.Songs().size(), 2U);
  EXPECT_EQ(tallow.clipboard.Songs()[0].SubItem(), 5);
  jukebox.Undo();
  EXPECT_EQ(SongsOf(*jukebox.Nodes().Find("gone")), Songs{5});
  jukebox.Undo();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 5, 3, 4}));
  jukebox.Undo();
  EXPECT_EQ(SongsOf(other), Songs{});
  jukebox.Redo();
  EXPECT_EQ(SongsOf(other), (Songs{5, 3}));
}

TEST_F(ReturnedSongs, AStepThatHoldsAMissingSongStaysValid) {
  Folder& other = jukebox.Nodes().AddChild(nullptr, "other");
  edits.AddSongs(other, {{2, 2}, {3, 2}});
  std::int64_t changes = 0;
  MoveAway("b.mp3");
  Scan();
  jukebox.ShowFolder(other, library, changes);
  jukebox.Undo();
  EXPECT_EQ(SongsOf(other), Songs{});
  jukebox.Redo();
  EXPECT_EQ(SongsOf(other), (Songs{2, 3}));
}

TEST_F(ReturnedSongs, AFolderOnTheClipboardUsesTheNewNumber) {
  edits.CopyFolder(mine);
  MoveAway("b.mp3");
  Scan();
  MoveBack("b.mp3");
  Scan();
  ASSERT_NE(tallow.clipboard.CopiedFolder(), nullptr);
  EXPECT_EQ(SongsOf(*tallow.clipboard.CopiedFolder()), (Songs{1, 5, 3, 4}));
}

TEST_F(ReturnedSongs, ASortMovesTheShownSongsOnly) {
  MoveAway("b.mp3");
  Scan();
  jukebox.ColumnClick(library);
  EXPECT_EQ(SongsOf(mine), (Songs{1, 2, 3, 4}));
  jukebox.ColumnClick(library);
  EXPECT_EQ(SongsOf(mine), (Songs{4, 2, 3, 1}));
  jukebox.Undo();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 2, 3, 4}));
}

TEST_F(ReturnedSongs, AMissingSongIsNotFound) {
  MoveAway("b.mp3");
  Scan();
  SongSearch search;
  EXPECT_EQ(search.FindNext("0", jukebox.Nodes(), mine, library).folder, nullptr);
}

TEST_F(ReturnedSongs, TheNameOfAMissingSongIsWritten) {
  MoveAway("b.mp3");
  Scan();
  const std::string bytes = jukebox.Encode(library);
  EXPECT_NE(bytes.find("\"2\":\"b.mp3\""), std::string::npos) << bytes;
  EXPECT_NE(bytes.find("\"songs\":[1,2,3,4]"), std::string::npos) << bytes;
}

TEST_F(ReturnedSongs, AFileSavedBeforeTheMoveLoadsTheReturnedSong) {
  const std::string path = application / "Grouping/mix.juk";
  ASSERT_TRUE(jukebox.Save(path, library));
  MoveAway("b.mp3");
  Scan();
  Jukebox meanwhile;
  ASSERT_TRUE(meanwhile.Load(path, library));
  EXPECT_EQ(SongsOf(meanwhile.Nodes().ChildAt(0)), (Songs{1, 2, 3, 4}));
  MoveBack("b.mp3");
  Scan();
  Jukebox loaded;
  ASSERT_TRUE(loaded.Load(path, library));
  EXPECT_EQ(SongsOf(loaded.Nodes().ChildAt(0)), (Songs{1, 5, 3, 4}));
}

TEST_F(ReturnedSongs, UnsavedChangesLoadTheReturnedSong) {
  UnsavedJukeboxes unsaved(SystemFolder(application.path()));
  jukebox.RememberContent();
  mine.Items().emplace_back(2, 2);
  unsaved.Keep(jukebox, library);
  MoveAway("b.mp3");
  Scan();
  MoveBack("b.mp3");
  Scan();
  Texts problems;
  const auto found = unsaved.Find(problems);
  ASSERT_EQ(found.size(), 1U);
  Jukebox recovered;
  ASSERT_TRUE(
      UnsavedJukeboxes(SystemFolder(application.path())).Recover(found[0], recovered, library));
  EXPECT_EQ(SongsOf(recovered.Nodes().ChildAt(0)), (Songs{1, 5, 3, 4, 5}));
}

TEST_F(ReturnedSongs, AChangeOfNumbersAloneIsNoUnsavedChange) {
  const std::string path = application / "Grouping/mix.juk";
  EXPECT_TRUE(jukebox.HasUnsavedChanges(library));
  ASSERT_TRUE(jukebox.Save(path, library));
  EXPECT_FALSE(jukebox.HasUnsavedChanges(library));
  MoveAway("b.mp3");
  Scan();
  MoveBack("b.mp3");
  Scan();
  EXPECT_FALSE(jukebox.HasUnsavedChanges(library));
  edits.CutSongs(mine, {0});
  EXPECT_TRUE(jukebox.HasUnsavedChanges(library));
  // Numbers change again while the jukebox differs from its file. Undo then removes the difference.
  MoveAway("c.mp3");
  Scan();
  MoveBack("c.mp3");
  Scan();
  EXPECT_TRUE(jukebox.HasUnsavedChanges(library));
  jukebox.Undo();
  EXPECT_FALSE(jukebox.HasUnsavedChanges(library));
  RemoveFile(path);
  EXPECT_TRUE(jukebox.HasUnsavedChanges(library));
}

TEST_F(ReturnedSongs, DroppedFilesThatWereMovedKeepTheirSongs) {
  MoveAway("b.mp3");
  library.Mp3Info(kSongRank, 2, "7");
  library.Save();
  const AddedFiles taken = AddFiles(Texts{music / "n/b.mp3"}, library);
  ASSERT_EQ(taken.returned.size(), 1U);
  EXPECT_EQ(taken.returned[0].number, 2);
  EXPECT_EQ(taken.returned[0].now, 5);
  EXPECT_EQ(library.Mp3Info(kSongRank, 5), "7");
  ASSERT_EQ(taken.songs.size(), 1U);
  EXPECT_EQ(taken.songs[0].SubItem(), 5);
  EXPECT_EQ(TextOf(taken.report, false), "1 back with its rank, 1 missing");
}

TEST_F(ReturnedSongs, ADropOfACopyIsReported) {
  music.File("n/b.mp3", "another song");
  const AddedFiles taken = AddFiles(Texts{music / "n/b.mp3"}, library);
  EXPECT_TRUE(taken.returned.empty());
  EXPECT_FALSE(taken.has_new_songs);
  ASSERT_EQ(taken.songs.size(), 1U);
  EXPECT_EQ(taken.songs[0].SubItem(), 2);
  EXPECT_EQ(TextOf(taken.report, false), "1 skipped because a song with that file name exists");
  ASSERT_EQ(library.LeftOut().size(), 1U);
  EXPECT_EQ(library.LeftOut()[0].path, music / "n/b.mp3");
  EXPECT_EQ(library.LeftOut()[0].stands_for_it, music / "m/b.mp3");
}

/// Checks RelinkSongs for entries whose names differ from those in the library.
class Links : public ReturnedSongs {
 protected:
  Songs Linked(const std::vector<std::pair<std::int32_t, std::string>>& entries,
               const ResolveConfusedSongs& ask = {}) {
    JukeboxContent content;
    content.folders.emplace_back();
    for (const auto& [number, name] : entries) {
      content.names.Add(number, name);
      content.folders[0].songs.push_back(number);
    }
    RelinkSongs(content, library, ask);
    return content.folders[0].songs;
  }
};

TEST_F(Links, NumbersOfMissingAbsentAndOtherSongsAreReplacedByName) {
  MoveAway("b.mp3");
  Scan();
  EXPECT_EQ(Linked({{2, "c.mp3"}, {99, "a.mp3"}, {4, "a.mp3"}, {-3, "d.mp3"}}),
            (Songs{3, 1, 1, 4}));
}

TEST_F(Links, AMissingSongIsFoundByNameWhenNoPresentSongHasIt) {
  MoveAway("b.mp3");
  Scan();
  EXPECT_EQ(Linked({{2, "b.mp3"}, {99, "b.mp3"}, {3, "b.mp3"}}), (Songs{2, 2, 2}));
}

TEST_F(Links, ARememberedSongIsNotReplacedByAnotherOfItsName) {
  MoveAway("b.mp3");
  Scan();
  music.File("m/b.mp3", "another song of this name");
  Scan();
  ASSERT_EQ(library.Mp3Info(kFileName, 5), "b.mp3");
  EXPECT_EQ(Linked({{2, "b.mp3"}}), Songs{2});
}

TEST_F(Links, PlaceholderNumbersAreUnique) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kFirst = kFirstPlaceholder;
  // The first two free placeholder numbers are used by an entry with a name and an entry without
  // one.
  JukeboxContent content;
  content.names.Add(kLowest, "x.mp3");
  content.names.Add(kFirst, "y.mp3");
  content.names.Add(1, "z.mp3");
  content.folders.emplace_back().songs = {kLowest, kFirst, kFirst - 1, 1};
  RelinkSongs(content, library);
  EXPECT_EQ(content.folders[0].songs, (Songs{kLowest, kFirst, kFirst - 1, kFirst - 2}));
  EXPECT_EQ(AbsentNames(content, library).at(kFirst - 2), "z.mp3");
}

TEST_F(Links, OneQuestionCoversAllConfusedNumbers) {
  library.Repaired().Set({{2, "b.mp3", "d.mp3", 4}, {3, "c.mp3", "a.mp3", 1}});
  std::vector<ConfusedSongs> asked;
  const auto answer = [&](std::optional<bool> names) -> ResolveConfusedSongs {
    return [&asked, names](const ConfusedSongs& songs) {
      asked.push_back(songs);
      return names;
    };
  };
  const std::vector<std::pair<std::int32_t, std::string>> entries{
      {1, "a.mp3"}, {2, "d.mp3"}, {3, "a.mp3"}};
  EXPECT_EQ(Linked(entries, answer(true)), (Songs{1, 4, 1}));
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].number, 2);
  EXPECT_EQ(asked[0].by_name, "d.mp3");
  EXPECT_EQ(asked[0].by_number, "b.mp3");
  EXPECT_EQ(asked[0].count, 2U);
  EXPECT_EQ(Linked(entries, answer(false)), (Songs{1, 2, 3}));
  EXPECT_EQ(Linked(entries, answer(std::nullopt)), (Songs{1, 4, 1}));
  EXPECT_EQ(Linked(entries), (Songs{1, 4, 1}));
  // A jukebox that was saved after the repair causes no question.
  asked.clear();
  EXPECT_EQ(Linked({{2, "b.mp3"}, {3, "c.mp3"}}, answer(false)), (Songs{2, 3}));
  EXPECT_TRUE(asked.empty());
}

TEST_F(Links, TheAnswerIsStoredPerFile) {
  std::vector<std::string> texts;
  const AskQuestion ask = [&](const std::string& text) -> std::optional<bool> {
    texts.push_back(text);
    return false;
  };
  library.Repaired().Set({{2, "b.mp3", "d.mp3", 4}, {3, "c.mp3", "a.mp3", 1}});
  const ConfusedSongs songs{2, "d.mp3", "b.mp3", 2};
  EXPECT_EQ(AskAboutConfusedSongs(kSep + "mix.juk", library, ask)(songs), false);
  EXPECT_EQ(AskAboutConfusedSongs(kSep + "mix.juk", library, ask)(songs), false);
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_EQ(texts[0],
            "mix.juk was saved by an earlier version of Tallow, which had mixed up the numbers of "
            "songs. For song number 2 the jukebox has\n\n    d.mp3\n\nbut the library has\n\n    "
            "b.mp3\n\nThe same applies to 1 more song.\n\nUse the songs by name? "
            "(Yes: by name. No: by number.)");
  EXPECT_EQ(AskAboutConfusedSongs(kSep + "other.juk", library, ask)({2, "d.mp3", "b.mp3", 3}),
            false);
  EXPECT_NE(texts[1].find("applies to 2 more songs."), std::string::npos);
  EXPECT_EQ(AskAboutConfusedSongs(kSep + "one.juk", library, ask)({2, "d.mp3", "b.mp3", 1}), false);
  EXPECT_EQ(texts[2].find("The same applies"), std::string::npos);
  AskAboutConfusedSongs(kSep + "gone.juk", library, ask)({2, "d.mp3", "", 1});
  EXPECT_NE(texts[3].find("has\n\n    (a song that was removed)\n\n"), std::string::npos);
  // Without an answer, nothing is stored and the next load asks again.
  const AskQuestion left = [&](const std::string&) { return std::optional<bool>(); };
  EXPECT_EQ(AskAboutConfusedSongs(kSep + "left.juk", library, left)(songs), std::nullopt);
  EXPECT_FALSE(library.Repaired().AnswerFor(kSep + "left.juk"));
}

}  // namespace
}  // namespace tallow

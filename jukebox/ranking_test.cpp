// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/ranking.h"

#include <filesystem>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "jukebox/sorting.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class Ranking : public LibraryTest {
 protected:
  Ranking() {
    for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"}) AddSong("/m/", name);
    for (const int song : {3, 1, 2}) folder.Items().emplace_back(song, 2);
  }
  std::vector<int> Icons() const {
    std::vector<int> icons;
    for (const SongEntry& entry : folder.Items()) icons.push_back(entry.Icon());
    return icons;
  }

  FolderTree tree;
  Folder& folder = tree.AddChild(nullptr, "one");
  EditHistory history{tree};
};

TEST_F(Ranking, TheFirstFiveItemsStoreAndShowRanksSevenToThree) {
  for (int item = 1; item <= 5; ++item) {
    EXPECT_TRUE(RankSongs(history, folder, {0, 2}, item, library));
    const std::string rank = std::to_string(8 - item);
    EXPECT_EQ(Cells(5), (Texts{"2", rank, rank}));
    EXPECT_EQ(Icons(), (std::vector<int>{8 - item, 2, 8 - item}));
  }
}

TEST_F(Ranking, ToWorstStoresThreeAndShowsTwoUntilTheFolderIsLabelledAgain) {
  RankSongs(history, folder, {1}, 6, library);
  EXPECT_EQ(Cells(5), (Texts{"3", "2", "2"}));
  EXPECT_EQ(Icons(), (std::vector<int>{2, 2, 2}));
  RefreshFolderList(folder, library);
  EXPECT_EQ(Icons(), (std::vector<int>{2, 3, 2}));
}

TEST_F(Ranking, TheLibraryIsSavedOnce) {
  const auto before = StampOf(LibraryPath());
  EXPECT_TRUE(RankSongs(history, folder, {0, 1, 2}, 1, library));
  EXPECT_NE(StampOf(LibraryPath()), before);
  Tallow again(application.path());
  again.settings.GetandLoadIniInfo(again.settings_path);
  again.library.LoadMain();
  EXPECT_EQ(again.library.Mp3Info(5, 2), "7");
}

TEST_F(Ranking, NothingIsSavedForNoSongs) {
  EXPECT_TRUE(RankSongs(history, folder, {}, 1, library));
  EXPECT_TRUE(RankSongs(history, folder, {-1, 3}, 1, library));
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(Ranking, AnEntryWithoutASongIsIgnored) {
  folder.Items().emplace_back(99, 2);
  EXPECT_TRUE(RankSongs(history, folder, {3}, 1, library));
  EXPECT_EQ(Icons().back(), 2);
}

TEST_F(Ranking, NoRankStoresAndShowsTheRankOfSongsThatWereNeverRanked) {
  RankSongs(history, folder, {0, 1, 2}, 1, library);
  EXPECT_TRUE(RankSongs(history, folder, {1}, kNoRankItem, library));
  EXPECT_EQ(Cells(5), (Texts{"2", "7", "7"}));
  EXPECT_EQ(Icons(), (std::vector<int>{7, 2, 7}));
}

TEST_F(Ranking, EverySongMayGetAnotherRank) {
  RankSongs(history, folder, {0}, 3, library);
  const auto better = [](int rank) { return NewRank{std::to_string(rank + 1), rank + 1}; };
  EXPECT_TRUE(RankSongs(history, folder, {0, 2}, better, library));
  EXPECT_EQ(Cells(5), (Texts{"2", "3", "6"}));
  EXPECT_EQ(Icons(), (std::vector<int>{6, 2, 3}));
}

TEST_F(Ranking, IsAStepThatIsUndoneAndRedone) {
  RankSongs(history, folder, {1}, 2, library);
  RankSongs(history, folder, {0, 1, 2}, 1, library);
  EXPECT_EQ(history.NameToUndo(), "Rank 3 Songs");
  EXPECT_EQ(history.Undo(), &folder);
  EXPECT_EQ(history.LastRankedSongs().size(), 3U);
  EXPECT_EQ(Cells(5), (Texts{"6", "2", "2"}));
  EXPECT_EQ(history.NameToUndo(), "Rank Song");
  EXPECT_EQ(history.NameToRedo(), "Rank 3 Songs");
  history.Undo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "2"}));
  history.Redo();
  history.Redo();
  EXPECT_EQ(Cells(5), (Texts{"7", "7", "7"}));
}

TEST_F(Ranking, SongsThatHaveTheRankAlreadyMakeNoStep) {
  RankSongs(history, folder, {0, 1}, 1, library);
  RankSongs(history, folder, {0, 1}, 1, library);
  EXPECT_EQ(history.Steps(), 1U);
  RankSongs(history, folder, {0, 1, 2}, 1, library);
  EXPECT_EQ(history.NameToUndo(), "Rank Song");
}

TEST_F(Ranking, ASongThatTheFolderHoldsTwiceGetsItsRankBack) {
  folder.Items().emplace_back(3, 2);
  RankSongs(history, folder, {0, 3}, 1, library);
  history.Undo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "2"}));
  history.Redo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "7"}));
  history.Undo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "2"}));
}

TEST_F(Ranking, AllEntriesOfASongShowItsRank) {
  folder.Items().emplace_back(3, 2);
  folder.Items().emplace_back(1, 2);
  RankSongs(history, folder, {3}, 1, library);
  EXPECT_EQ(Icons(), (std::vector<int>{2, 2, 2, 7, 2}));
  ShowRanksAtAllEntries(folder, {3, -1, 9});
  EXPECT_EQ(Icons(), (std::vector<int>{7, 2, 2, 7, 2}));
}

TEST_F(Ranking, StepsFollowSongsThatGetOtherRecordNumbers) {
  RankSongs(history, folder, {0}, 1, library);
  library.Mp3Info(kSongRank, 2, "7");
  history.Renumber({{3, 2}});
  history.Undo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "7"}));
}

TEST_F(Ranking, ARankThatIsNotANumberIsRestored) {
  library.Mp3Info(kSongRank, 3, "best");
  RankSongs(history, folder, {0}, 1, library);
  history.Undo();
  EXPECT_EQ(Cells(5), (Texts{"2", "2", "best"}));
}

TEST_F(Ranking, LeavesAJukeboxAsSavedAsItWas) {
  const auto rank = [this](int item) { RankSongs(history, folder, {0}, item, library); };
  rank(1);
  EXPECT_TRUE(history.IsAsSaved());
  history.Begin(&folder, "Rename Folder");
  history.RenameFolder(folder, "two");
  history.End();
  rank(2);
  EXPECT_FALSE(history.IsAsSaved());
  history.MarkSaved();
  history.Undo();
  EXPECT_TRUE(history.IsAsSaved());
  history.Undo();
  EXPECT_FALSE(history.IsAsSaved());
  history.Redo();
  EXPECT_TRUE(history.IsAsSaved());
  // The step that led to the state that was saved is dropped.
  rank(3);
  EXPECT_TRUE(history.IsAsSaved());
  history.Undo();
  history.Undo();
  EXPECT_FALSE(history.IsAsSaved());
}

TEST_F(Ranking, StaysSavedWhenTheOldestStepsAreDropped) {
  // Not by RankSongs, which saves the library each time.
  for (std::size_t step = 0; step <= EditHistory::kMaxSteps; ++step) {
    RankChange change(library);
    change.Add(3, std::to_string(6 + step % 2));
    history.Begin(&folder, "Rank Song");
    history.ChangeRanks(std::move(change));
    history.End();
  }
  EXPECT_EQ(history.Steps(), EditHistory::kMaxSteps);
  EXPECT_TRUE(history.IsAsSaved());
}

TEST_F(Ranking, AFailedSaveIsReportedAndTheRanksStayInMemory) {
  std::filesystem::create_directories(std::filesystem::path(LibraryPath()));
  EXPECT_FALSE(RankSongs(history, folder, {0}, 1, library));
  EXPECT_EQ(library.Mp3Info(5, 3), "7");
}

TEST_F(Ranking, RanksThatCouldNotBeSavedAreTriedAgain) {
  const std::filesystem::path in_the_way(LibraryPath());
  std::filesystem::create_directories(in_the_way);
  EXPECT_FALSE(RankSongs(history, folder, {0}, 1, library));
  EXPECT_FALSE(RankSongs(history, folder, {0}, 1, library));
  std::filesystem::remove(in_the_way);
  EXPECT_TRUE(RankSongs(history, folder, {0}, 1, library));
  EXPECT_TRUE(std::filesystem::is_regular_file(in_the_way));
  history.Undo();
  EXPECT_FALSE(history.CanUndo());
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/ranking.h"

#include <filesystem>

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
};

TEST_F(Ranking, TheFirstFiveItemsStoreAndShowRanksSevenToThree) {
  for (int item = 1; item <= 5; ++item) {
    EXPECT_TRUE(RankSongs(folder, {0, 2}, item, library));
    const std::string rank = std::to_string(8 - item);
    EXPECT_EQ(Cells(5), (Texts{"2", rank, rank}));
    EXPECT_EQ(Icons(), (std::vector<int>{8 - item, 2, 8 - item}));
  }
}

TEST_F(Ranking, ToWorstStoresThreeAndShowsTwoUntilTheFolderIsLabelledAgain) {
  RankSongs(folder, {1}, 6, library);
  EXPECT_EQ(Cells(5), (Texts{"3", "2", "2"}));
  EXPECT_EQ(Icons(), (std::vector<int>{2, 2, 2}));
  RefreshFolderList(folder, library);
  EXPECT_EQ(Icons(), (std::vector<int>{2, 3, 2}));
}

TEST_F(Ranking, TheLibraryIsSavedOnce) {
  const auto before = StampOf(LibraryPath());
  EXPECT_TRUE(RankSongs(folder, {0, 1, 2}, 1, library));
  EXPECT_NE(StampOf(LibraryPath()), before);
  Tallow again(application.path());
  again.settings.GetandLoadIniInfo(again.settings_path);
  again.library.LoadMain();
  EXPECT_EQ(again.library.Mp3Info(5, 2), "7");
}

TEST_F(Ranking, NothingIsSavedForNoSongs) {
  EXPECT_TRUE(RankSongs(folder, {}, 1, library));
  EXPECT_TRUE(RankSongs(folder, {-1, 3}, 1, library));
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(Ranking, AnEntryWithoutASongIsIgnored) {
  folder.Items().emplace_back(99, 2);
  EXPECT_TRUE(RankSongs(folder, {3}, 1, library));
  EXPECT_EQ(Icons().back(), 2);
}

TEST_F(Ranking, AFailedSaveIsReportedAndTheRanksStayInMemory) {
  std::filesystem::create_directories(std::filesystem::path(LibraryPath()));
  EXPECT_FALSE(RankSongs(folder, {0}, 1, library));
  EXPECT_EQ(library.Mp3Info(5, 3), "7");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/excluded_folders.h"

#include <filesystem>

#include "app/add_files.h"
#include "app/search/file_search.h"
#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"
#include "util/text.h"

namespace tallow {
namespace {

const Texts kNames = {"$RECYCLE.BIN", "RECYCLER",   ".Trashes",  "#recycle",
                      "@Recycle",     ".snapshots", ".snapshot", "@eaDir"};

class ExcludedFolders : public LibraryTest {
 protected:
  void SearchAll() {
    const TestDrives drives({{music.path()}});
    FileSearch(tallow, drives, nullptr).SearchDrivesForMp3s(true, {});
  }
  /// Saves the songs to the library and the folder list, as earlier versions did.
  void Remember() {
    ASSERT_TRUE(library.Save());
    library.WriteOutMp3DirectoryLocations();
  }
};

TEST_F(ExcludedFolders, AreRecognizedAtAnyDepthInAnyLetterCase) {
  for (const std::string& name : kNames) {
    EXPECT_TRUE(HoldsNoSongs(music / ("a/b/" + name + "/c/"))) << name;
    EXPECT_TRUE(HoldsNoSongs(music / (ToLower(name) + "/"))) << name;
    EXPECT_TRUE(HoldsNoSongs(music / ToUpper(name))) << name;
    EXPECT_TRUE(IsExcludedFolder(music / (name + "/"))) << name;
    EXPECT_FALSE(HoldsNoSongs(music / ("my " + name + "/"))) << name;
    EXPECT_FALSE(HoldsNoSongs(music / (name + "s of mine/"))) << name;
  }
  EXPECT_FALSE(HoldsNoSongs(music / "Downloads/incomplete/"));
  EXPECT_TRUE(IsExcludedFolder(music / "Downloads/incomplete/"));
}

TEST_F(ExcludedFolders, AreSkippedByASearchOfTheComputer) {
  for (const std::string& name : kNames) {
    music.File(name + "/in " + name + ".mp3");
    music.File("deep/er/" + name + "/x/below " + name + ".mp3");
  }
  music.File("deep/er/song.mp3");
  SearchAll();
  EXPECT_EQ(Cells(2), Texts{"song.mp3"});
}

TEST_F(ExcludedFolders, FilesInRecycleBinsAreCountedAndSnapshotsAreNotEntered) {
  music.File("RECYCLER/a.mp3");
  music.File(".snapshots/1/b.mp3");
  music.File("c.mp3");
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  FileSearch(tallow, drives, nullptr).WalkFolderTree(request);
  EXPECT_EQ(request.FilesFound, 2);
  EXPECT_EQ(Cells(2), Texts{"c.mp3"});
}

#ifndef _WIN32
TEST_F(ExcludedFolders, AreNotEnteredThroughALinkEither) {
  const TempFolder elsewhere;
  elsewhere.File(".snapshots/1/a.mp3");
  elsewhere.File("plain/b.mp3");
  std::filesystem::create_directory_symlink(elsewhere / ".snapshots/1", music / "to snapshot");
  std::filesystem::create_directory_symlink(elsewhere / "plain", music / "to plain");
  SearchAll();
  EXPECT_EQ(Cells(2), Texts{"b.mp3"});
}
#endif

TEST_F(ExcludedFolders, AppleDoubleFilesAreNotSongs) {
  EXPECT_FALSE(MayBeSong("._a.mp3"));
  EXPECT_TRUE(MayBeSong("_a.mp3"));
  EXPECT_TRUE(MayBeSong(".a.mp3"));
  music.File("a.mp3");
  music.File("._a.mp3");
  SearchAll();
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

TEST_F(ExcludedFolders, AreSkippedInTheUsualFolders) {
  AddSong(music.Folder("@Recycle"), "known.mp3", "1", "6");
  AddSong(music.path(), "b.mp3");
  music.File("@Recycle/known.mp3");
  music.File("b.mp3");
  Remember();
  music.File("@Recycle/new.mp3");
  music.File("._b.mp3");
  music.File("c.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  // Songs that earlier versions added stay.
  EXPECT_EQ(Cells(2), (Texts{"known.mp3", "b.mp3", "c.mp3"}));
  EXPECT_EQ(Cells(5), (Texts{"6", "2", "2"}));
}

TEST_F(ExcludedFolders, DroppedFilesAreRefusedAndReported) {
  const std::string deleted = music.File("#recycle/a.mp3");
  const std::string attributes = music.File("._b.mp3");
  const AddedFiles taken = AddFiles(Texts{deleted, attributes}, library);
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_EQ(taken.problems,
            (Texts{attributes + " is a macOS metadata file without music and was skipped.",
                   deleted + " lies in a folder of unfinished or deleted files, or in a snapshot, "
                             "and was skipped."}));
}

TEST_F(ExcludedFolders, ADropOfAFolderAddsNoAppleDoubleFiles) {
  music.File("in/a.mp3");
  music.File("in/._a.mp3");
  music.File("other/._a.mp3");
  const AddedFiles taken = AddFiles(Texts{music / "in", music / "other"}, library);
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
  EXPECT_EQ(taken.problems, Texts{(music / "other") + " holds no MP3 file."});
}

TEST_F(ExcludedFolders, ASongThatIsFoundElsewhereMovesThereWithItsRank) {
  AddSong(music.Folder("$RECYCLE.BIN/S-1"), "a.mp3", "1", "6");
  music.File("$RECYCLE.BIN/S-1/a.mp3");
  Remember();
  music.File("songs/A.mp3");
  std::int32_t known = library.UBoundOfMp3Array();
  SearchAll();
  library.DeleteIdenticalFileNamesAndPaths(known);
  EXPECT_EQ(Cells(1), Texts{music / "songs/"});
  EXPECT_EQ(Cells(2), Texts{"A.mp3"});
  EXPECT_EQ(Cells(5), Texts{"6"});
}

TEST_F(ExcludedFolders, ADropMovesASongOutOfAnExcludedFolderToo) {
  AddSong(music.Folder("RECYCLER"), "a.mp3", "1", "6");
  music.File("RECYCLER/a.mp3");
  const AddedFiles taken = AddFiles(Texts{music.File("songs/a.mp3")}, library);
  ASSERT_EQ(taken.songs.size(), 1U);
  EXPECT_EQ(taken.songs[0].SubItem(), 1);
  EXPECT_EQ(Cells(1), Texts{music / "songs/"});
  EXPECT_EQ(Cells(5), Texts{"6"});
}

TEST_F(ExcludedFolders, AnAppleDoubleFileInTheLibraryBecomesMissing) {
  AddSong(music.path(), "._a.mp3", "1", "5");
  AddSong(music.path(), "a.mp3");
  music.File("._a.mp3");
  music.File("a.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(Cells(2), (Texts{"0", "a.mp3"}));
  ASSERT_NE(library.Missing().Find(1), nullptr);
  EXPECT_EQ(library.Missing().Find(1)->rank, "5");
}

}  // namespace
}  // namespace tallow

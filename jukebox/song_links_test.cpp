// SPDX-License-Identifier: GPL-3.0-or-later
// Entries of jukebox files when several songs have one file name.
#include "jukebox/song_links.h"

#include <utility>

#include "jukebox/jukebox_reader.h"
#include "jukebox/jukebox_writer.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

/// A library in the modern style, and a jukebox file with one entry.
class SongLinksTest : public LibraryTest {
 protected:
  SongLinksTest() { library.UseSwitches(kModernStyle); }

  void Song(const std::string& folder, const std::string& name, std::int64_t size) {
    library.AddSong(folder, name, size);
  }
  static JukeboxContent File(std::int32_t record, const std::string& name,
                             const std::string& folder, std::int64_t size) {
    JukeboxContent content;
    content.folders.emplace_back().key = 1;
    content.folders[0].songs = {record};
    content.names.Add(record, name);
    content.places.AddFolder(folder);
    content.places.Add(record, size);
    return content;
  }
  /// The number of the song that the entry of a file is linked to.
  std::int32_t Linked(std::int32_t record, const std::string& name, const std::string& folder,
                      std::int64_t size) {
    JukeboxContent content = File(record, name, folder, size);
    RelinkSongs(content, library);
    return content.folders[0].songs[0];
  }
};

TEST_F(SongLinksTest, TheSongAtThePathComesFirstWhateverItsNumberAndSize) {
  Song("/x/", "a.mp3", 10);
  Song("/y/", "a.mp3", 20);
  EXPECT_EQ(Linked(1, "a.mp3", "/y/", 10), 2);
  EXPECT_EQ(Linked(7, "a.mp3", "/x/", 99), 1);
  EXPECT_EQ(Linked(2, "a.mp3", "/y/", -1), 2);
}

TEST_F(SongLinksTest, WithoutASongAtThePathTheNumberStaysIfNameAndSizeAreThose) {
  Song("/x/", "a.mp3", 10);
  Song("/y/", "a.mp3", 10);
  EXPECT_EQ(Linked(2, "a.mp3", "/gone/", 10), 2);
  EXPECT_TRUE(IsPlaceholder(Linked(2, "b.mp3", "/gone/", 10)));
  EXPECT_TRUE(IsPlaceholder(Linked(2, "a.mp3", "/gone/", 11)));
}

TEST_F(SongLinksTest, OtherwiseItIsTheOnlySongOfThatNameAndSize) {
  Song("/x/", "a.mp3", 10);
  Song("/y/", "a.mp3", 20);
  Song("/y/", "b.mp3", 20);
  EXPECT_EQ(Linked(3, "a.mp3", "/gone/", 20), 2);
  EXPECT_EQ(Linked(99, "a.mp3", "/gone/", 10), 1);
  Song("/z/", "a.mp3", 20);
  EXPECT_TRUE(IsPlaceholder(Linked(3, "a.mp3", "/gone/", 20)));
}

TEST_F(SongLinksTest, ASizeThatTheLibraryDoesNotKnowIsNotCompared) {
  Song("/new root/", "a.mp3", 10);
  Song("/new root/two/", "a.mp3", 20);
  ASSERT_EQ(Linked(1, "a.mp3", "/old root/", 30), kFirstPlaceholder);
  AddSong("/new root/three/", "a.mp3");
  ASSERT_EQ(library.Facts(3).size, kUnknownSize);
  EXPECT_EQ(Linked(3, "a.mp3", "/old root/", 30), 3);
}

TEST_F(SongLinksTest, AMissingSongIsFoundByItsFolderAndThenByItsSize) {
  for (const auto& [name, size] : {std::pair("x", 10), {"y", 10}, {"z", 30}}) {
    const std::string folder = music.Folder(name);
    Song(folder, "a.mp3", size);
    // An empty folder may be that of a drive that is not mounted.
    WriteFileAtomically(folder + "other.mp3", "x");
  }
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  library.FinishScan(true);
  ASSERT_EQ(library.Missing().size(), 3U);
  EXPECT_EQ(Linked(99, "a.mp3", library.Missing().Find(2)->folder, 5), 2);
  EXPECT_EQ(Linked(99, "a.mp3", "/gone/", 30), 3);
  EXPECT_TRUE(IsPlaceholder(Linked(99, "a.mp3", "/gone/", 10)));
}

TEST_F(SongLinksTest, AnEntryOfAnAbsentSongKeepsItsPlaceWhenTheJukeboxIsSaved) {
  Song("/m/", "other.mp3", 10);
  JukeboxContent content = File(1, "a.mp3", "/away/x/", 10);
  content.places.AddFolder("/away/y/");
  content.folders[0].songs = {1, 7};
  content.names.Add(7, "a.mp3");
  content.places.Add(7, 20);
  for (int round = 0; round < 2; ++round) {
    RelinkSongs(content, library);
    FolderTree tree;
    FillTree(content, library, tree);
    ASSERT_EQ(content.folders[0].songs,
              (std::vector<std::int32_t>{kFirstPlaceholder, kFirstPlaceholder - 1}));
    content = DecodeJukebox(EncodeJukebox(tree, {}, library, AbsentNames(content, library),
                                          AbsentPlaces(content, library)));
  }
  Song("/away/y/", "a.mp3", 20);
  Song("/away/x/", "a.mp3", 10);
  RelinkSongs(content, library);
  EXPECT_EQ(content.folders[0].songs, (std::vector<std::int32_t>{3, 2}));
}

}  // namespace
}  // namespace tallow

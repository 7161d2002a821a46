// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folders_of_song.h"

#include <gtest/gtest.h>
#include <string>

#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class FoldersOfASong : public LibraryTest {
 protected:
  FoldersOfASong() {
    for (const char* const name : {"a.mp3", "b.mp3"}) {
      music.File(name);
      AddSong(music.path(), name);
    }
  }
  Folder& Add(const char* text, std::initializer_list<std::int32_t> songs,
              Folder* parent = nullptr) {
    Folder& folder = jukebox.Nodes().AddChild(parent, text);
    for (const std::int32_t song : songs) folder.Items().emplace_back(song, 2);
    return folder;
  }
  /// "folder:index" of each, separated by blanks.
  std::string Of(std::int32_t song) const {
    std::string text;
    for (const FolderOfSong& found : FoldersOfSong(jukebox, song, library))
      text += found.folder->Text() + ":" + std::to_string(found.index) + " ";
    return text;
  }
  std::string Shown(std::int32_t song) const {
    const FolderOfSong found = FolderToShowSongIn(jukebox, song, library);
    return found.folder == nullptr ? "none" : found.folder->Text();
  }

  Jukebox jukebox;
  std::int64_t folder_changes = 0;
};

TEST_F(FoldersOfASong, AreListedInTheOrderOfTheTree) {
  Add("All Songs", {1, 2});
  Folder& mine = Add("mine", {2, 2});
  Add("below", {1, 2}, &mine);
  EXPECT_EQ(Of(2), "All Songs:1 mine:0 below:1 ");
  EXPECT_EQ(Of(1), "All Songs:0 below:0 ");
  EXPECT_EQ(Of(3), "");
}

TEST_F(FoldersOfASong, LeaveOutFoldersThatAreSetAside) {
  // Once the switches were used, the automatic "Album" is set aside without the switch albums.
  library.UseSwitches(kClassicStyle);
  Folder& album = Add("Album", {});
  album.Automatic(true);
  Add("Hits", {1}, &album);
  EXPECT_EQ(Of(1), "");
}

TEST_F(FoldersOfASong, TheFolderToShowIsThePresentOneOrTheFirstThatSaysMore) {
  Add("All Songs", {1, 2});
  Add("New", {1});
  Folder& artist = Add("Artist", {});
  Add("ABBA", {1}, &artist);
  Folder& mine = Add("mine", {1});
  EXPECT_EQ(Shown(1), "ABBA");
  EXPECT_EQ(Shown(2), "All Songs");
  EXPECT_EQ(Shown(3), "none");
  jukebox.ShowFolder(mine, library, folder_changes);
  EXPECT_EQ(Shown(1), "mine");
}

TEST_F(FoldersOfASong, TheSongsOfAFolderAndThoseBelowAreListedOnce) {
  Folder& artist = Add("Artist", {2});
  Add("ABBA", {2, 1, 7}, &artist);
  EXPECT_EQ(SongsBelow(artist, library), (std::vector<std::int32_t>{2, 1}));
}

}  // namespace
}  // namespace tallow

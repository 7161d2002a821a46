// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/set_aside_folders.h"

#include "tests/modern_fixture.h"

namespace tallow {
namespace {

class SetAsideFolders : public ModernFilingTest {
 protected:
  SetAsideFolders() {
    MakeFolders(jukebox);
    AddSong(music.path(), "1.mp3");
    AddSong(music.path(), "2.flac");
  }
  /// Adds a folder with songs.
  Folder& Add(Folder* above, const char* text, const std::vector<std::int32_t>& songs) {
    Folder& folder = jukebox.Nodes().AddChild(above, text);
    for (const std::int32_t song : songs) folder.Items().emplace_back(song, 2);
    return folder;
  }
  Texts Found() {
    Texts texts;
    for (const Folder* const folder : FoldersSetAside(jukebox.Nodes(), library))
      texts.push_back(folder->Text());
    return texts;
  }
};

TEST_F(SetAsideFolders, AreThoseThatHoldOnlySongsSetAside) {
  Folder* const artist = At("Artist");
  Add(artist, "both", {1, 2});
  Add(artist, "other", {2});
  Add(artist, "empty", {});
  Add(&Add(artist, "above", {}), "below", {2});
  Add(&Add(artist, "kept", {2}), "folder of the user", {});
  Add(nullptr, "Mine", {2});
  At("Decades/20's")->Items().emplace_back(2, 2);
  At("All Songs")->Items().emplace_back(2, 2);
  EXPECT_EQ(Found(), Texts{});
  library.UseSwitches({.albums = true});
  EXPECT_EQ(Found(), (Texts{"other", "above"}));
  library.UseSwitches({.more_formats = true, .albums = true});
  EXPECT_EQ(Found(), Texts{});
}

TEST_F(SetAsideFolders, TheAutomaticAlbumIsOneWithoutItsSwitch) {
  Add(At("Album"), "Hits (ABBA)", {1});
  Add(nullptr, "Album", {1});
  library.UseSwitches(kModernStyle);
  EXPECT_EQ(Found(), Texts{});
  library.UseSwitches(kClassicStyle);
  ASSERT_EQ(Found(), Texts{"Album"});
  EXPECT_TRUE(FoldersSetAside(jukebox.Nodes(), library)[0]->Automatic());
}

}  // namespace
}  // namespace tallow

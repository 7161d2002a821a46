// SPDX-License-Identifier: GPL-3.0-or-later
// The hits of a search in place of a folder's songs.
#include "jukebox/found_songs.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class Hits : public LibraryTest {
 protected:
  Hits() {
    for (const char* const name : {"c.mp3", "a.mp3", "b.mp3"}) {
      music.File(name);
      AddSong(music.path(), name);
    }
    jukebox.AddColumnHeader(kNameHeader);
    for (const std::int32_t song : {1, 2}) folder.Items().emplace_back(song, 2);
    jukebox.ShowFolder(folder, library, folder_changes);
  }
  /// The texts of the list.
  std::vector<std::string> List() const {
    std::vector<std::string> texts;
    for (const SongEntry& entry : jukebox.ListFolder()->Items())
      texts.push_back(EntryText(entry, library));
    return texts;
  }

  Jukebox jukebox;
  Folder& folder = jukebox.Nodes().AddChild(nullptr, "one");
  std::int64_t folder_changes = 0;
};

TEST_F(Hits, AreListedInTheirOrderAndTheFolderStaysChosen) {
  jukebox.ShowHits({3, 1, 2}, library);
  EXPECT_TRUE(jukebox.ShowsHits());
  EXPECT_EQ(List(), (std::vector<std::string>{"1.  b.mp3", "2.  c.mp3", "3.  a.mp3"}));
  EXPECT_EQ(jukebox.selectednode(), &folder);
  EXPECT_TRUE(IsOfHits(*jukebox.ListFolder()));
  EXPECT_FALSE(IsOfHits(folder));
}

TEST_F(Hits, GiveTheFolderBackAsItWas) {
  jukebox.ColumnClick(library);
  jukebox.ColumnClick(library);
  const int state = jukebox.SortState();
  const auto before = List();
  const auto header = jukebox.ColumnHeaders().front();
  jukebox.ShowHits({3}, library);
  EXPECT_EQ(jukebox.SortState(), 0);
  EXPECT_EQ(jukebox.ColumnHeaders().front(), kNameHeader);
  jukebox.ShowHits({2}, library);
  jukebox.HideHits(library);
  EXPECT_FALSE(jukebox.ShowsHits());
  EXPECT_EQ(List(), before);
  EXPECT_EQ(jukebox.SortState(), state);
  EXPECT_EQ(jukebox.ColumnHeaders().front(), header);
}

TEST_F(Hits, AreSortedWithoutAStepOfTheHistory) {
  jukebox.ShowHits({3, 1, 2}, library);
  jukebox.ColumnClick(library);
  EXPECT_EQ(List(), (std::vector<std::string>{"1.  a.mp3", "2.  b.mp3", "3.  c.mp3"}));
  EXPECT_FALSE(jukebox.History().CanUndo());
  EXPECT_FALSE(jukebox.IsFormDirty());
  jukebox.HideHits(library);
  EXPECT_EQ(List(), (std::vector<std::string>{"1.  c.mp3", "2.  a.mp3"}));
}

TEST_F(Hits, AreNoPartOfTheJukebox) {
  const std::string before = jukebox.Encode(library);
  jukebox.RememberContent();
  jukebox.ShowHits({3}, library);
  EXPECT_EQ(jukebox.Encode(library), before);
  EXPECT_FALSE(jukebox.DiffersFromFile());
  EXPECT_EQ(jukebox.Nodes().Count(), 1);
}

TEST_F(Hits, TheJukeboxIsSavedWithTheHeaderOfTheFolder) {
  jukebox.AddColumnHeader(kNameHeader);
  for (int click = 1; click <= 3; ++click) jukebox.ColumnClick(library);
  const std::string before = jukebox.Encode(library);
  EXPECT_NE(before.find("By Rank -- best to worst"), std::string::npos);
  jukebox.ShowHits({3}, library);
  EXPECT_EQ(jukebox.Encode(library), before);
  jukebox.ColumnClick(library);
  EXPECT_EQ(jukebox.Encode(library), before);
  EXPECT_EQ(jukebox.ColumnHeaders().front(), "Name    --   ");
}

TEST_F(Hits, EndWhenAFolderIsShown) {
  jukebox.ShowHits({3}, library);
  jukebox.ShowFolder(folder, library, folder_changes);
  EXPECT_FALSE(jukebox.ShowsHits());
  EXPECT_EQ(List(), (std::vector<std::string>{"1.  c.mp3", "2.  a.mp3"}));
}

TEST_F(Hits, FollowNewRecordNumbers) {
  jukebox.ShowHits({3}, library);
  jukebox.Renumber({{3, 2}});
  jukebox.ListRefilled(library);
  EXPECT_EQ(List(), (std::vector<std::string>{"1.  a.mp3"}));
}

TEST_F(Hits, AreListedWithoutAFolderToo) {
  Jukebox empty;
  empty.ShowHits({2}, library);
  ASSERT_NE(empty.ListFolder(), nullptr);
  EXPECT_EQ(empty.ListFolder()->Items().size(), 1U);
  empty.HideHits(library);
  EXPECT_EQ(empty.ListFolder(), nullptr);
}

}  // namespace
}  // namespace tallow

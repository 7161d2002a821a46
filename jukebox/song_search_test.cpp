// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/song_search.h"

#include <random>

#include "jukebox/folder_tree.h"
#include "tests/library_fixture.h"
#include "util/text.h"

namespace tallow {
namespace {

class Search : public LibraryTest {
 protected:
  Search() {
    for (const char* const name : {"Apple.mp3", "banana.mp3", "Pineapple.mp3", "cherry.mp3"})
      AddSong("/m/", name);
  }
  Folder& Add(const char* text, const std::vector<std::int32_t>& songs, Folder* parent = nullptr) {
    Folder& folder = tree.AddChild(parent, text);
    for (const std::int32_t song : songs) folder.Items().emplace_back(song, 2);
    return folder;
  }
  /// Returns "folder row" of the next match; empty when there is none.
  std::string Next(const std::string& text, const Folder& selected) {
    const auto result = search.FindNext(text, tree, selected, library);
    return result.folder == nullptr ? "" : result.folder->Text() + " " + std::to_string(result.row);
  }

  FolderTree tree;
  SongSearch search;
};

TEST_F(Search, LetterCaseIsIgnored) {
  const Folder& a = Add("a", {2, 1});
  EXPECT_EQ(Next("APPLE", a), "a 1");
  EXPECT_EQ(search.LastLookedFor(), "apple");
  search.FirstRun(true);
  EXPECT_EQ(Next("BaNaNa", a), "a 0");
}

TEST_F(Search, TwoStepsFindTheFirstSongAndThenTheSecond) {
  const Folder& a = Add("a", {1, 2, 3});
  EXPECT_EQ(Next("apple", a), "a 0");
  EXPECT_FALSE(search.FirstRun());
  EXPECT_EQ(Next("apple", a), "a 2");
}

TEST_F(Search, SearchesInTreeOrderAndWrapsAround) {
  const Folder& a = Add("a", {1});
  Folder& b = Add("b", {3});
  const Folder& inner = Add("inner", {2, 1}, &b);
  Add("c", {3, 4});
  EXPECT_EQ(Next("apple", inner), "inner 1");
  EXPECT_FALSE(search.LookingForTheLastNode());
  EXPECT_EQ(Next("apple", inner), "c 0");
  EXPECT_TRUE(search.LookingForTheLastNode());
  EXPECT_EQ(Next("apple", a), "a 0");
  EXPECT_EQ(Next("apple", a), "b 0");
  // The starting folder is searched a second time before the search ends.
  EXPECT_EQ(Next("apple", a), "inner 1");
  EXPECT_EQ(Next("apple", a), "");
  EXPECT_TRUE(search.FirstRun());
  EXPECT_FALSE(search.LookingForTheLastNode());
  EXPECT_EQ(Next("apple", a), "a 0");
}

TEST_F(Search, ATextWithoutAMatchEndsTheSearchOnce) {
  const Folder& a = Add("a", {1, 2});
  Add("b", {3});
  EXPECT_EQ(Next("nowhere", a), "");
  EXPECT_TRUE(search.FirstRun());
  EXPECT_EQ(Next("banana", a), "a 1");
}

TEST_F(Search, ANewSearchBeginsAtTheSelectedFolder) {
  const Folder& a = Add("a", {1});
  const Folder& b = Add("b", {1});
  EXPECT_EQ(Next("apple", a), "a 0");
  search.FirstRun(true);
  EXPECT_EQ(Next("apple", b), "b 0");
}

TEST_F(Search, TheEmptyTextMatchesEveryName) {
  const Folder& a = Add("a", {4, 2});
  EXPECT_EQ(Next("", a), "a 0");
  EXPECT_EQ(Next("", a), "a 1");
}

TEST_F(Search, EntriesWithoutASongDoNotMatch) { EXPECT_EQ(Next("", Add("a", {99, 0, -1})), ""); }

TEST_F(Search, RemovingTheCurrentFolderStartsANewSearch) {
  Folder& a = Add("a", {1});
  Folder& b = Add("b", {1});
  EXPECT_EQ(Next("apple", b), "b 0");
  tree.Take(b);
  EXPECT_EQ(Next("apple", a), "a 0");
}

TEST_F(Search, PassesOverFoldersAndSongsThatTheStyleDoesNotShow) {
  AddSong("/m/", "Apple.flac");
  const std::int32_t other = library.UBoundOfMp3Array();
  library.UseSwitches(kClassicStyle);
  const Folder& a = Add("a", {other, 1});
  Folder& album = Add("Album", {});
  album.Automatic(true);
  Add("Hits", {1}, &album);
  Folder& artist = Add("Artist", {});
  Add("only other formats", {other}, &artist);
  const Folder& last = Add("last", {3});
  for (const char* const found : {"a 1", "last 0", "a 1", ""}) EXPECT_EQ(Next("apple", a), found);
  library.UseSwitches(kModernStyle);
  for (const char* const found : {"a 0", "a 1", "Hits 0", "only other formats 0", "last 0"})
    EXPECT_EQ(Next("apple", a), found);
  // The folder found last is no longer shown.
  search.FirstRun(true);
  EXPECT_EQ(Next("apple", artist), "only other formats 0");
  library.UseSwitches(kClassicStyle);
  EXPECT_EQ(Next("apple", last), "last 0");
}

TEST_F(Search, EndsAtOnceWithoutAShownFolder) {
  AddSong("/m/", "Apple.flac");
  library.UseSwitches(kClassicStyle);
  Folder& album = Add("Album", {1});
  album.Automatic(true);
  EXPECT_EQ(Next("apple", album), "");
}

/// Reference implementation: the same search without caching.
class ReferenceSearch {
 public:
  std::string Next(const std::string& text, const FolderTree& tree, const Folder& selected,
                   const clsMain& library) {
    std::vector<Folder*> folders;
    const auto collect = [&](const auto& self, Folder& folder) -> void {
      folders.push_back(&folder);
      for (std::int32_t k = 0; k < folder.Children(); ++k) self(self, folder.ChildAt(k));
    };
    for (std::int32_t k = 0; k < tree.Children(); ++k) collect(collect, tree.ChildAt(k));
    if (first_run) {
      first_run = looking = false;
      for (std::size_t k = 0; k < folders.size(); ++k)
        if (folders[k] == &selected) start = current = k;
      last = -1;
    }
    while (true) {
      const auto& items = folders[current]->Items();
      for (int row = last + 1; row < static_cast<int>(items.size()); ++row) {
        const std::string name(library.Mp3Info(2, items[static_cast<std::size_t>(row)].SubItem()));
        if (ToLower(name).find(ToLower(text)) != std::string::npos) {
          last = row;
          return folders[current]->Text() + " " + std::to_string(row);
        }
      }
      if (looking && current == start) {
        last = -1;
        first_run = true;
        looking = false;
        return "";
      }
      if (!looking && current == start) looking = true;
      if (++current == folders.size()) current = 0;
      last = -1;
    }
  }
  bool first_run = true;

 private:
  bool looking = false;
  std::size_t start = 0;
  std::size_t current = 0;
  int last = -1;
};

TEST_F(Search, AgreesWithTheReferenceImplementation) {
  std::mt19937 random(5);
  const auto any = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  for (int round = 0; round < 40; ++round) {
    FolderTree other;
    tree.Swap(other);
    std::vector<Folder*> folders;
    for (int k = 0; k < 12; ++k) {
      Folder* const parent =
          folders.empty() || any(2) == 0
              ? nullptr
              : folders[static_cast<std::size_t>(any(static_cast<int>(folders.size())))];
      std::vector<std::int32_t> songs(static_cast<std::size_t>(any(6)));
      for (std::int32_t& song : songs) song = any(4) + 1;
      folders.push_back(&Add(std::to_string(k).c_str(), songs, parent));
    }
    ReferenceSearch reference;
    search.FirstRun(true);
    for (int step = 0; step < 80; ++step) {
      if (any(10) == 0) {
        search.FirstRun(true);
        reference.first_run = true;
      }
      const char* const texts[] = {"apple", "an", "Cherry", "none", ""};
      const std::string text = texts[round % 5];
      const Folder& selected = *folders[static_cast<std::size_t>(any(12))];
      ASSERT_EQ(Next(text, selected), reference.Next(text, tree, selected, library));
    }
  }
}

}  // namespace
}  // namespace tallow

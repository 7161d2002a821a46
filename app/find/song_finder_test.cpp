// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/song_finder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "app/data_paths.h"
#include "details/details_store.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"
#include "tests/wait_until.h"
#include "util/file_system.h"
#include "util/fold.h"
#include "util/natural_order.h"

namespace tallow {
namespace {

using Records = std::vector<std::int32_t>;

class SongFinderTest : public LibraryTest {
 protected:
  void AddSongWith(const std::string& name, const SongTags& tags, const std::string& rank = "2") {
    AddSong(music.path(), name, "1", rank);
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(library.UBoundOfMp3Array()).Path(), {.tags = tags});
  }

  SongFinder finder_{library, tallow.details};
};

TEST_F(SongFinderTest, EveryWordIsSomewhereInTheSong) {
  AddSongWith("1.mp3", {.found = true, .title = "Halo", .artist = "Beyoncé", .genre = "Pop"});
  AddSongWith("2.mp3", {.found = true, .title = "Other", .artist = "Beyoncé", .album = "Halo"});
  AddSongWith("halo.mp3", {.found = true, .artist = "Someone"});
  EXPECT_EQ(finder_.Find("BEYONCE  halo"), (Records{1, 2}));
  EXPECT_EQ(finder_.Find("halo pop"), (Records{1}));
  EXPECT_EQ(finder_.Find("halo"), (Records{1, 2, 3}));
  EXPECT_EQ(finder_.Find("nothing"), Records{});
  EXPECT_EQ(finder_.Find(" \t"), Records{});
}

TEST_F(SongFinderTest, BeginningsOfWordsComeFirstThenRanksThenNames) {
  AddSong(music.path(), "10 abba.mp3");
  AddSong(music.path(), "9 abba.mp3");
  AddSong(music.path(), "cabbage.mp3", "1", "7");
  AddSong(music.path(), "99 abba.mp3", "1", "3");
  EXPECT_EQ(finder_.Find("abb"), (Records{4, 2, 1, 3}));
}

TEST_F(SongFinderTest, FindsOnlySongsThatAreThere) {
  AddSong(music.path(), "a.mp3");
  AddSong(music.path(), "b.mp3", "0");
  AddSong("0", "0", "0");
  EXPECT_EQ(finder_.Find("mp3"), (Records{1}));
  EXPECT_EQ(finder_.Find("0"), Records{});
}

TEST_F(SongFinderTest, FindsAnyScriptFromTheFirstLetter) {
  AddSongWith("1.mp3", {.found = true, .title = "Пачка сигарет", .artist = "Кино"});
  AddSongWith("2.mp3", {.found = true, .title = "上を向いて歩こう"});
  AddSongWith("3.mp3", {.found = true, .artist = "Røyksopp"});
  EXPECT_EQ(finder_.Find("к"), (Records{1}));
  EXPECT_EQ(finder_.Find("СИГ кин"), (Records{1}));
  EXPECT_EQ(finder_.Find("向"), (Records{2}));
  EXPECT_EQ(finder_.Find("roy"), (Records{3}));
}

TEST_F(SongFinderTest, FollowsTheLibraryAndItsRanks) {
  AddSong(music.path(), "a song.mp3");
  AddSong(music.path(), "b song.mp3");
  EXPECT_EQ(finder_.Find("song"), (Records{1, 2}));
  library.Mp3Info(kSongRank, 2, "5");
  EXPECT_EQ(finder_.Find("song"), (Records{2, 1}));
  AddSong(music.path(), "0 song.mp3");
  EXPECT_EQ(finder_.Find("song"), (Records{2, 3, 1}));
  library.Mp3Info(kFileName, 1, "renamed.mp3");
  EXPECT_EQ(finder_.Find("song"), (Records{2, 3}));
  library.Mp3Info(kFileIsThere, 2, "0");
  EXPECT_EQ(finder_.Find("song"), (Records{3}));
}

TEST_F(SongFinderTest, FollowsTheDetailsThatAreRead) {
  AddSongWith("a.mp3", {.found = true, .title = "Old"});
  AddSong(music.path(), "b.mp3");
  music.File("a.mp3", Audio(300) + Tag({.title = "New"}));
  music.File("b.mp3", Audio(300) + Tag({.title = "Other"}));
  EXPECT_EQ(finder_.Find("old"), (Records{1}));
  EXPECT_EQ(finder_.Find("other"), Records{});
  const std::uint64_t version = tallow.details.Version();
  tallow.details.Start(library);
  EXPECT_TRUE(WaitUntil([&] {
    tallow.details.Poll();
    return !tallow.details.IsReading();
  }));
  EXPECT_GT(tallow.details.Version(), version);
  EXPECT_EQ(finder_.Find("old"), Records{});
  EXPECT_EQ(finder_.Find("new"), (Records{1}));
  EXPECT_EQ(finder_.Find("other"), (Records{2}));
}

TEST_F(SongFinderTest, DoesNotFindSongsThatAreSetAside) {
  AddSong(music.path(), "aside.flac");
  AddSong(music.path(), "a.mp3");
  library.UseSwitches({.more_formats = true});
  EXPECT_EQ(finder_.Find("a"), (Records{2, 1}));
  library.UseSwitches({});
  ASSERT_TRUE(library.Song(1).IsSetAside());
  EXPECT_EQ(finder_.Find("a"), Records{2});
  library.UseSwitches({.more_formats = true});
  EXPECT_EQ(finder_.Find("a"), (Records{2, 1}));
}

TEST_F(SongFinderTest, FindsSongsThatAreAway) {
  const std::string drive = music.Folder("drive");
  music.File("drive/a.mp3");
  MountedVolumes mounted{{drive, {"uuid", kSep}, false}};
  library.UseDrives([&] { return mounted; }, {});
  library.BeginScan(ScanKind::kComputer);
  library.AddSong(drive, "a.mp3", 0);
  library.ImportFoundSongs(0);
  library.FinishScan(true);
  mounted.clear();
  RemoveFile(drive + "a.mp3");
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  ASSERT_TRUE(library.IsAway(1));
  EXPECT_EQ(finder_.Find("a"), Records{1});
}

TEST_F(SongFinderTest, ReplacedTextsDoNotFillTheMemory) {
  for (int k = 0; k < 5; ++k) AddSong(music.path(), "song.mp3");
  const std::string name(200, 'x');
  // Each text takes about 200 bytes, so that the names are more than 4 MB.
  for (int k = 0; k < 20'000; ++k) {
    library.Mp3Info(kFileName, 3, name + std::to_string(k));
    finder_.Find("song");
  }
  EXPECT_LT(finder_.Index().Bytes(), 2'500'000U);
  EXPECT_EQ(finder_.Find("song"), (Records{1, 2, 4, 5}));
  EXPECT_EQ(finder_.Find("xx19999"), Records{3});
}

TEST_F(SongFinderTest, AStartOfReadingKeepsWhatIsFound) {
  AddSongWith("a.mp3", {.found = true, .title = "Title", .artist = "Artist"});
  EXPECT_EQ(finder_.Find("artist"), Records{1});
  tallow.details.Start(library);
  EXPECT_EQ(finder_.Find("artist"), Records{1});
  EXPECT_EQ(finder_.Index().Sorts(), 1);
}

/// The literal search: each song is folded anew, and the hits are sorted as they should be.
Records LiteralFind(const clsMain& library, LibraryDetails& details, std::string_view typed) {
  struct Hit {
    bool is_inside;
    std::int32_t rank;
    std::string name;
    std::int32_t record;
  };
  std::vector<std::string> words;
  std::istringstream folded(Folded(typed));
  for (std::string word; folded >> word;) words.push_back(word);
  if (words.empty()) return {};
  std::vector<Hit> hits;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    if (!library.IsPresent(record)) continue;
    const DetailsRow row = details.RowOf(record);
    const std::string name(library.Song(record).Name());
    bool has_all = true;
    bool is_inside = false;
    for (const std::string& word : words) {
      bool is_found = false;
      bool at_start = false;
      for (const std::string_view text :
           {row.title, row.artist, row.album, row.genre, std::string_view(name)}) {
        const std::string in = Folded(text);
        for (std::size_t at = 0; at + word.size() <= in.size(); ++at) {
          if (in.substr(at, word.size()) != word) continue;
          is_found = true;
          at_start = at_start || IsWordStart(in, at);
        }
      }
      has_all = has_all && is_found;
      is_inside = is_inside || !at_start;
    }
    const std::int32_t rank = library.Song(record).Rank();
    if (has_all)
      hits.push_back({is_inside, rank >= 3 && rank <= 7 ? rank : 0, Folded(name), record});
  }
  std::ranges::stable_sort(hits, [](const Hit& a, const Hit& b) {
    if (a.is_inside != b.is_inside) return b.is_inside;
    if (a.rank != b.rank) return a.rank > b.rank;
    return NaturalKeyLess(a.name, b.name);
  });
  Records records;
  for (const Hit& hit : hits) records.push_back(hit.record);
  return records;
}

TEST_F(SongFinderTest, NewSongsArePutInTheirPlacesWithoutSortingAll) {
  for (int k = 0; k < 40; ++k) AddSong(music.path(), std::to_string(2 * k + 1) + " song.mp3");
  finder_.Find("song");
  EXPECT_EQ(finder_.Index().Sorts(), 1);
  AddSong(music.path(), "30 song.mp3");
  AddSong(music.path(), "0 song.mp3");
  AddSong(music.path(), "99 song.mp3");
  library.Mp3Info(kFileName, 5, "31 song.mp3");
  library.Mp3Info(kSongRank, 7, "4");
  library.Mp3Info(kFileIsThere, 9, "0");
  EXPECT_EQ(finder_.Find("song"), LiteralFind(library, tallow.details, "song"));
  EXPECT_EQ(finder_.Index().Sorts(), 1);
  for (int k = 0; k < 40; ++k) AddSong(music.path(), std::to_string(2 * k) + " song.mp3");
  EXPECT_EQ(finder_.Find("song"), LiteralFind(library, tallow.details, "song"));
  EXPECT_EQ(finder_.Index().Sorts(), 2);
}

TEST_F(SongFinderTest, FindsWhatTheLiteralSearchFinds) {
  std::mt19937 random(11);
  const std::vector<std::string> parts = {"a",  "B",  "ab", "é",  " ", " ", "-",    "10", "9",
                                          "07", "ba", "ж",  "Ж ", "’", "'", "\xE9", "ø",  "("};
  const auto text = [&](std::size_t most) {
    std::string made;
    for (std::size_t n = random() % (most + 1); n > 0; --n) made += parts[random() % parts.size()];
    return made;
  };
  std::vector<std::string> shared;
  for (int k = 0; k < 12; ++k) shared.push_back(text(5));
  const auto any_shared = [&] { return shared[random() % shared.size()]; };
  const auto tags = [&](const std::string& name) {
    return SongTags{.found = true,
                    .title = random() % 2 == 0 ? name : text(6),
                    .artist = any_shared(),
                    .album = any_shared(),
                    .genre = any_shared()};
  };
  for (int round = 0; round < 15; ++round) {
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    for (int k = 0; k < 30; ++k) {
      const std::string title = text(5);
      const std::string name = text(2) + title + ".mp3";
      AddSong(music.path(), name, random() % 8 == 0 ? "0" : "1", std::to_string(random() % 8 + 1));
      const std::int32_t record = library.UBoundOfMp3Array();
      if (random() % 4 != 0) store.Put(library.Song(record).Path(), {.tags = tags(title)});
    }
    store.Close();
    for (int k = 0; k < 40; ++k) {
      const auto record = static_cast<std::int32_t>(random() % 20 + 1);
      if (random() % 3 == 0) library.Mp3Info(kSongRank, record, std::to_string(random() % 9));
      if (random() % 10 == 0) library.Mp3Info(kFileName, record, text(5) + ".mp3");
      const std::string typed = text(3) + " " + text(2);
      // Find opens the database.
      const Records found = finder_.Find(typed);
      EXPECT_EQ(found, LiteralFind(library, tallow.details, typed))
          << typed << " in round " << round;
    }
  }
}

TEST_F(SongFinderTest, ManySongsAreSearchedOnSeveralThreads) {
  for (int k = 0; k < 50'000; ++k)
    AddSong(music.path(), "song " + std::to_string(50'000 - k) + ".mp3", "1",
            std::to_string(k % 7 + 1));
  EXPECT_EQ(finder_.Find("ong 4999 song"), LiteralFind(library, tallow.details, "ong 4999 song"));
  EXPECT_EQ(finder_.Find("s"), LiteralFind(library, tallow.details, "s"));
}

}  // namespace
}  // namespace tallow

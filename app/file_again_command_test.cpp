// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_again_command.h"

#include "tests/id3v2_tag.h"
#include "tests/modern_fixture.h"

namespace tallow {
namespace {

class FileAgainCommand : public ModernFilingTest {
 protected:
  FileAgainCommand() {
    MakeFolders(jukebox);
    library.UseSwitches(kModernStyle);
    for (const char* const artist : {"ABBA", "Queen", "Yes"}) {
      music.File(std::string(artist) + ".mp3", TagOf(artist));
      AddSong(music.path(), std::string(artist) + ".mp3");
    }
    Jukebox* const windows[] = {&jukebox};
    FillAutomaticFolders(kFillNewToo, false, {}, library, windows, nullptr, {},
                         tallow.details.TagReader());
  }

  static std::string TagOf(const std::string& artist) {
    return Id3v2Tag({{"TPE1", artist}, {"TALB", "Hits"}}) + Audio(300);
  }
  void Show(const std::string& path) { jukebox.ShowFolder(*At(path), library, changes); }
  std::vector<std::int32_t> Songs(const std::vector<int>& selected = {}) {
    return SongsToFileAgain(jukebox, selected, library);
  }
  FiledAgain Again(const std::vector<std::int32_t>& songs, const BeginLongWork& begin = {}) {
    Jukebox* const windows[] = {&jukebox};
    return FileSongsAgain(songs, tallow, windows, begin);
  }
  using Rows = std::vector<std::int32_t>;

  std::int64_t changes = 0;
};

TEST_F(FileAgainCommand, ActsOnTheSelectionElseTheFolderElseAll) {
  EXPECT_EQ(Songs(), (Rows{1, 2, 3}));
  Show("Artist");
  EXPECT_EQ(Songs(), (Rows{1, 2, 3}));
  Show("Artist/Queen");
  EXPECT_EQ(Songs(), Rows{2});
  Show("All Songs");
  EXPECT_EQ(Songs({0, 2, 3}), (Rows{1, 3}));
}

TEST_F(FileAgainCommand, FilesByTheTagsThatTheFilesHaveNow) {
  music.File("Queen.mp3", TagOf("Queen & Bowie"));
  EXPECT_EQ(Again({2, 3}).lines, Texts{"2 songs were filed again by the tags."});
  EXPECT_EQ(Below("Artist"), "ABBA|Queen & Bowie|Yes");
  EXPECT_EQ(Again({1}).lines, Texts{"1 song was filed again by the tags."});
  jukebox.Undo();
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Yes");
}

TEST_F(FileAgainCommand, SaysWhenThereIsNothingToFile) {
  library.Mp3Info(kFileIsThere, 1, "0");
  const FiledAgain filed = Again({1, 9});
  EXPECT_TRUE(filed.is_complete);
  EXPECT_EQ(filed.lines,
            Texts{"No song was filed again: there is none here, or the files cannot be read now."});
}

TEST_F(FileAgainCommand, NamesEachProblem) {
  library.UseSwitches(kClassicStyle);
  music.File("Yes.mp3", Audio(300) + Tag({.artist = "Yes", .year = "198x"}));
  const FiledAgain filed = Again({3});
  ASSERT_EQ(filed.lines.size(), 2U);
  EXPECT_EQ(filed.lines[0], "1 song was filed again by the tags.");
  EXPECT_NE(filed.lines[1].find("'198x', is not a number"), std::string::npos);
  EXPECT_TRUE(filed.is_complete);
}

/// Work that is cancelled after a number of calls.
class CancelledWork : public LongWork {
 public:
  explicit CancelledWork(int calls) : calls_(calls) {}
  bool GoOn(const std::function<std::string()>& line) override {
    lines.push_back(line());
    return --calls_ > 0;
  }
  static inline Texts lines;

 private:
  int calls_;
};

TEST_F(FileAgainCommand, SaysHowFarACancelledFilingCame) {
  const FiledAgain filed = Again({1, 2, 3}, [](std::string_view text) {
    EXPECT_EQ(text, kFilingSongs);
    return std::make_unique<CancelledWork>(1);
  });
  EXPECT_FALSE(filed.is_complete);
  EXPECT_EQ(CancelledWork::lines.back(), "Filed 1 of 3 songs");
  EXPECT_EQ(filed.lines, Texts{"Filing was cancelled: 1 song was filed again by the tags, 2 stay "
                               "where they are."});
}

TEST_F(FileAgainCommand, AddsTheAlbumFolderOnceAndFillsIt) {
  EXPECT_FALSE(OffersAlbumFolder(jukebox, library));
  jukebox.Nodes().Take(*At("Album"));
  library.UseSwitches(kClassicStyle);
  EXPECT_FALSE(OffersAlbumFolder(jukebox, library));
  library.UseSwitches({.newer_tags = true, .albums = true});
  EXPECT_TRUE(OffersAlbumFolder(jukebox, library));
  EXPECT_EQ(AddAlbumFolder(jukebox, tallow, {}).lines, Texts{"3 album folders were added."});
  EXPECT_EQ(Below("Album"), "Hits (ABBA)|Hits (Queen)|Hits (Yes)");
  EXPECT_FALSE(OffersAlbumFolder(jukebox, library));
  EXPECT_EQ(jukebox.History().Steps(), 1U);
  jukebox.Undo();
  EXPECT_TRUE(OffersAlbumFolder(jukebox, library));
}

}  // namespace
}  // namespace tallow

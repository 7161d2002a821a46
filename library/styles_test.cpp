// SPDX-License-Identifier: GPL-3.0-or-later
// The library in classic and modern style, and switching between them.
#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

#include "tests/library_fixture.h"
#include "tests/row_numbers.h"
#include "util/atomic_file.h"
#include "util/path_text.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;

class Styles : public LibraryTest {
 protected:
  void MakeFile(const std::string& path, std::size_t size = 10) {
    CreateFolders(std::string(FolderOfPath(path)));
    WriteFileAtomically(path, std::string(size, 'x'));
  }
  /// Adds every file of the collection, as a search of the computer does.
  void Search() {
    library.BeginScan(ScanKind::kComputer);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    std::int32_t before = library.UBoundOfMp3Array();
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(music.path())))
      if (entry.is_regular_file() &&
          (entry.path().extension() == ".mp3" ||
           (library.Switches().more_formats && entry.path().extension() == ".flac")))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files)
      library.AddSong(EnsureTrailingBackslash(file.parent_path().string()),
                      file.filename().string(), static_cast<std::int64_t>(fs::file_size(file)));
    if (before == 0)
      library.ImportFoundSongs(0);
    else
      library.DeleteIdenticalFileNamesAndPaths(before);
    library.FinishScan(true);
    ExpectRowsAreNumbers(library);
  }
  /// The numbers of the songs that are listed.
  std::vector<std::int32_t> Listed() const {
    std::vector<std::int32_t> listed;
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      if (library.IsPresent(row)) listed.push_back(row);
    return listed;
  }
  using Rows = std::vector<std::int32_t>;
};

TEST_F(Styles, KnownFoldersShowFilesOfOtherFormats) {
  MakeFile(music / "one" + kSeparator + "a.mp3");
  MakeFile(music / "one" + kSeparator + "b.flac");
  MakeFile(music / "two" + kSeparator + "c.flac");
  Search();
  EXPECT_EQ(library.Findings().OtherFormats(), 0U);
  library.BeginScan(ScanKind::kFolderList);
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  library.FinishScan(true);
  EXPECT_EQ(library.Findings().ByFolder(), (ScanFindings::Folders{{music / "one/", {1, {}}}}));
}

TEST_F(Styles, OfTwoFilesThatAreAlikeTheOtherOneDoesNotTakeThePlaceOfAMissingOne) {
  library.UseSwitches(kModernStyle);
  const std::string first = music / "one" + kSeparator + "a.mp3";
  MakeFile(first);
  MakeFile(music / "two" + kSeparator + "a.mp3");
  Search();
  ASSERT_EQ(Listed(), (Rows{1, 2}));
  library.Mp3Info(kSongRank, 1, "5");
  RemoveFile(first);
  Search();
  EXPECT_EQ(Listed(), Rows{2});
  EXPECT_EQ(library.Song(2).Rank(), 2);
  EXPECT_TRUE(library.TakeReturned().empty());
  MakeFile(first);
  Search();
  EXPECT_EQ(Listed(), (Rows{2, 3}));
  EXPECT_EQ(library.Song(3).Rank(), 5);
  ASSERT_EQ(library.TakeReturned().size(), 1U);
}

TEST_F(Styles, AFileThatComesBackToItsPlaceWithAnotherSizeIsTheSong) {
  library.UseSwitches(kModernStyle);
  const std::string path = music / "one" + kSeparator + "a.mp3";
  MakeFile(path);
  MakeFile(music / "one" + kSeparator + "b.mp3");
  Search();
  library.Mp3Info(kSongRank, 1, "5");
  RemoveFile(path);
  Search();
  MakeFile(path, 20);
  Search();
  EXPECT_EQ(Listed(), (Rows{2, 3}));
  EXPECT_EQ(library.Song(3).Rank(), 5);
}

TEST_F(Styles, ModernStyleAddsTwinsAndOtherFormats) {
  MakeFile(music / "one" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "b.flac");
  Search();
  EXPECT_EQ(Listed(), Rows{1});
  library.UseSwitches(kModernStyle);
  Search();
  EXPECT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_EQ(Listed(), (Rows{1, 2, 3}));
  EXPECT_EQ(library.LeftOut().size(), 0U);
  Search();
  EXPECT_EQ(library.UBoundOfMp3Array(), 3);
}

TEST_F(Styles, ClassicStyleSetsAsideWhatModernStyleAdded) {
  MakeFile(music / "one" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "b.flac");
  library.UseSwitches(kModernStyle);
  Search();
  library.Mp3Info(kSongRank, 2, "7");
  library.UseSwitches(kClassicStyle);
  EXPECT_EQ(Listed(), Rows{1});
  EXPECT_TRUE(library.IsHidden(2));
  EXPECT_TRUE(library.Song(3).IsSetAside());
  EXPECT_FALSE(library.Song(2).IsMissing());
  // A classic search neither removes them nor adds them again.
  Search();
  EXPECT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_EQ(Listed(), Rows{1});
  EXPECT_TRUE(library.Save());
  EXPECT_TRUE(library.LoadMain());
  EXPECT_EQ(Listed(), Rows{1});
  library.UseSwitches(kModernStyle);
  EXPECT_EQ(Listed(), (Rows{1, 2, 3}));
  EXPECT_EQ(library.Song(2).Rank(), 7);
}

TEST_F(Styles, ASongSetAsideKeepsItsRowWhenItsFileIsGone) {
  MakeFile(music / "a.mp3");
  MakeFile(music / "b.flac");
  library.UseSwitches(kModernStyle);
  Search();
  library.UseSwitches(kClassicStyle);
  fs::remove(fs::path(music / "b.flac"));
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_FALSE(library.Song(2).IsMissing());
  library.UseSwitches(kModernStyle);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_TRUE(library.Song(2).IsMissing());
}

TEST_F(Styles, ATwinTakesThePlaceOfTheSongThatIsGone) {
  MakeFile(music / "one" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "a.mp3");
  library.UseSwitches(kModernStyle);
  Search();
  library.UseSwitches(kClassicStyle);
  fs::remove(fs::path(music / "one" + kSeparator + "a.mp3"));
  MakeFile(music / "one" + kSeparator + "c.txt");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(Listed(), Rows{2});
}

TEST_F(Styles, OfTwinsThatAreBothGoneNoneIsListed) {
  for (const char* const folder : {"one", "three", "two"}) {
    MakeFile(music / folder + kSeparator + "a.mp3");
    MakeFile(music / folder + kSeparator + "c.txt");
  }
  MakeFile(music / "one" + kSeparator + "b.flac");
  library.UseSwitches(kModernStyle);
  Search();
  // The numbers are in the order of the paths.
  ASSERT_EQ(Listed(), (Rows{1, 2, 3, 4}));
  library.UseSwitches(kClassicStyle);
  ASSERT_EQ(Listed(), Rows{1});
  for (const std::int32_t row : {1, 2, 3}) RemoveFile(library.Song(row).Path());
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(library.FinishScan(true).missing, 2);
  EXPECT_EQ(Listed(), Rows{4});
  EXPECT_EQ(library.Missing().size(), 2U);
  RemoveFile(library.Song(4).Path());
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(Listed(), Rows{});
  // A song of another format keeps its row until its format is listed again.
  EXPECT_EQ(library.Missing().size(), 3U);
}

TEST_F(Styles, OfTwoMissingTwinsTheOneAtItsPathComesBack) {
  MakeFile(music / "one" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "a.mp3");
  MakeFile(music / "two" + kSeparator + "x.mp3");
  MakeFile(music / "one" + kSeparator + "y.mp3");
  library.UseSwitches(kModernStyle);
  Search();
  const auto row_of = [&](const std::string& path) {
    for (const std::int32_t row : Listed())
      if (library.Song(row).Path() == path) return row;
    return 0;
  };
  const std::string second = music / "two" + kSeparator + "a.mp3";
  library.Mp3Info(kSongRank, row_of(second), "6");
  for (const char* const folder : {"one", "two"})
    fs::remove(fs::path(music / folder + kSeparator + "a.mp3"));
  Search();
  EXPECT_EQ(Listed().size(), 2U);
  MakeFile(second);
  Search();
  EXPECT_EQ(library.Song(row_of(second)).Rank(), 6);
}

TEST_F(Styles, OfTwoMissingTwinsTheOneAtItsPathComesBackInTheClassicStyle) {
  for (const char* const folder : {"one", "two"}) MakeFile(music / folder + kSeparator + "a.mp3");
  for (const char* const folder : {"one", "two"}) MakeFile(music / folder + kSeparator + "x.mp3");
  library.UseSwitches(kModernStyle);
  Search();
  const std::string first = library.Song(1).Path();
  ASSERT_EQ(NameOfPath(first), "a.mp3");
  library.Mp3Info(kSongRank, 1, "6");
  library.UseSwitches(kClassicStyle);
  for (const char* const folder : {"one", "two"})
    fs::remove(fs::path(music / folder + kSeparator + "a.mp3"));
  Search();
  for (const char* const folder : {"one", "two"}) MakeFile(music / folder + kSeparator + "a.mp3");
  Search();
  std::map<std::string, std::int32_t> ranks;
  for (const std::int32_t row : Listed())
    ranks[library.Song(row).Path()] = library.Song(row).Rank();
  EXPECT_EQ(ranks.at(first), 6);
}

TEST_F(Styles, ACopyDoesNotTakeTheRankOfTheSongThatIsBackInItsPlace) {
  const std::string place = music / "x" + kSeparator + "a.mp3";
  MakeFile(place);
  MakeFile(music / "x" + kSeparator + "y.mp3");
  MakeFile(music / "b" + kSeparator + "z.mp3");
  library.UseSwitches(kModernStyle);
  Search();
  for (const std::int32_t row : Listed())
    if (library.Song(row).Path() == place) library.Mp3Info(kSongRank, row, "6");
  fs::remove(fs::path(place));
  Search();
  MakeFile(place);
  // Its folder is searched first.
  const std::string copy = music / "b" + kSeparator + "a.mp3";
  MakeFile(copy);
  Search();
  std::map<std::string, std::int32_t> ranks;
  for (const std::int32_t row : Listed())
    ranks[library.Song(row).Path()] = library.Song(row).Rank();
  EXPECT_EQ(ranks.at(place), 6);
  EXPECT_EQ(ranks.at(copy), 2);
}

TEST_F(Styles, SwitchingToAndFroLosesNoNumberAndNoRank) {
  std::mt19937 random(7);
  std::map<std::string, std::int32_t> ranks;
  const auto name = [&] {
    return music / ("f" + std::to_string(random() % 4)) + kSeparator +
           std::string(1, static_cast<char>('a' + random() % 6)) +
           (random() % 3 == 0 ? ".flac" : ".mp3");
  };
  library.UseSwitches(kModernStyle);
  for (int k = 0; k < 20; ++k) MakeFile(name(), 10 + random() % 5);
  Search();
  std::map<std::int32_t, std::string> paths;
  for (int round = 0; round < 100; ++round) {
    library.UseSwitches(
        Switches{.more_formats = random() % 2 == 0, .songs_by_path = random() % 2 == 0});
    if (random() % 4 == 0) MakeFile(name(), 10 + random() % 5);
    if (random() % 2 == 0) Search();
    for (const std::int32_t row : Listed())
      if (random() % 5 == 0) {
        ranks[library.Song(row).Path()] = 3 + static_cast<std::int32_t>(random() % 5);
        library.Mp3Info(kSongRank, row, std::to_string(ranks[library.Song(row).Path()]));
      }
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row) {
      const std::string path = library.Song(row).Path();
      const auto [known, is_new] = paths.emplace(row, path);
      ASSERT_EQ(known->second, path);
      const auto rank = ranks.find(path);
      if (rank == ranks.end()) continue;
      ASSERT_EQ(library.Song(row).Rank(), rank->second) << path;
    }
  }
  library.UseSwitches(kModernStyle);
  Search();
  std::size_t files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(music.path())))
    files += entry.is_regular_file() ? 1 : 0;
  EXPECT_EQ(Listed().size(), files);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/new_songs.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "app/search/file_search.h"
#include "jukebox/jukebox.h"
#include "library/library_file.h"
#include "tests/recorded_progress.h"
#include "tests/system_fixture.h"

namespace tallow {
namespace {

/// Start-up with real files, and the commands for new songs.
class NewSongs : public SystemTest, protected NewSongsWindows {
 protected:
  NewSongs() { Start(); }

  SearchProgress& ShowSearching() override {
    log.push_back("show");
    return progress;
  }
  void UnloadSearching() override { log.push_back("unload"); }
  void EnableFrame(bool enabled) override { log.push_back(enabled ? "enable" : "disable"); }
  Jukebox* ActiveJukebox() override { return has_active ? windows->open[0] : nullptr; }
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }
  MessageAnswer Show(const Message& message) override {
    said.push_back(message.text);
    return MessageAnswer::kOk;
  }
  void Notice(const std::vector<std::string>& lines) override { noticed = lines; }
  void NoticeScan(const std::vector<std::string>& lines) override { noticed = lines; }

  void BringIn(NewSongsPlace place) {
    log.clear();
    BringInNewSongs(place, *tallow, *this, search_all_drives);
    EXPECT_EQ(log, (Texts{"show", "disable", "unload", "enable"}));
  }
  Jukebox& Box() { return *windows->open[0]; }
  bool HasArtist(const char* artist) {
    return Box().Nodes().Find(artist, Box().Nodes().Find("Artist")) != nullptr;
  }

  class Progress : public RecordedProgress {
   public:
    void VisitFolder(std::string_view folder) override {
      visited.emplace_back(folder);
      if (on_visit) on_visit();
    }
    Texts visited;
    std::function<void()> on_visit;
  } progress;
  SearchAllDrives search_all_drives = [this](SearchProgress& shown) {
    return FileSearch(*tallow, drives, &shown).SearchDrivesForMp3s(true, {});
  };
  bool has_active = true;
  Texts log;
  Texts said;
  Texts noticed;
};

TEST_F(NewSongs, InTheUsualFoldersAreFoundFiledAndCounted) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  MakeSong("elsewhere/five.mp3", {.artist = "Yes"});
  std::filesystem::remove(std::filesystem::path(music / "a/one.mp3"));
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song, 1 missing"});
  EXPECT_TRUE(HasArtist("Zappa"));
  EXPECT_FALSE(HasArtist("Yes"));
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 4);
  // The missing song is no longer in the folder on show.
  EXPECT_EQ(SongsOnShow("New"), 4U);
  EXPECT_NE(std::find(progress.visited.begin(), progress.visited.end(), music / "a/"),
            progress.visited.end());
}

TEST_F(NewSongs, OnTheWholeComputerAreFoundEverywhere) {
  MakeSong("elsewhere/five.mp3", {.artist = "Yes"});
  MakeSong("elsewhere/deeper/six.mp3", {.artist = "Zappa"});
  BringIn(NewSongsPlace::kWholeComputer);
  EXPECT_EQ(noticed, Texts{"2 new songs"});
  EXPECT_TRUE(HasArtist("Yes"));
  EXPECT_TRUE(HasArtist("Zappa"));
  EXPECT_EQ(SongsOnShow(), 5U);
  // The folder is a usual folder from now on.
  MakeSong("elsewhere/seven.mp3", {.artist = "Genesis"});
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song"});
}

TEST_F(NewSongs, WithNothingNewTheFoldersAreNotTouched) {
  const std::uint64_t before = ContentHash(Box().Nodes());
  Box().IsFormDirty(false);
  for (const NewSongsPlace place : {NewSongsPlace::kKnownFolders, NewSongsPlace::kWholeComputer}) {
    BringIn(place);
    EXPECT_EQ(noticed, Texts{"0 new songs"});
    EXPECT_EQ(ContentHash(Box().Nodes()), before);
    EXPECT_FALSE(Box().IsFormDirty());
  }
}

TEST_F(NewSongs, ARenamedFileIsMissingAndNew) {
  std::filesystem::rename(std::filesystem::path(music / "a/one.mp3"),
                          std::filesystem::path(music / "a/uno.mp3"));
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song, 1 missing"});
}

TEST_F(NewSongs, AWholeComputerSearchFindsMissingAndRenamedFilesToo) {
  std::filesystem::rename(std::filesystem::path(music / "a/one.mp3"),
                          std::filesystem::path(music / "a/uno.mp3"));
  std::filesystem::remove_all(std::filesystem::path(music / "b"));
  BringIn(NewSongsPlace::kWholeComputer);
  EXPECT_EQ(noticed, Texts{"1 new song, 2 missing"});
}

TEST_F(NewSongs, TheLibraryIsSortedByRecordNumberAfterwards) {
  MakeSong("a/aaa.mp3", {});
  MakeSong("b/zzz.mp3", {});
  for (const NewSongsPlace place : {NewSongsPlace::kWholeComputer, NewSongsPlace::kKnownFolders}) {
    bool sorted = false;
    tallow->library.Sort(false, true, kFileName, sorted);
    BringIn(place);
    for (std::int32_t row = 1; row <= tallow->library.UBoundOfMp3Array(); ++row)
      EXPECT_EQ(tallow->library.Mp3Info(kRecordNumber, row), std::to_string(row));
  }
}

TEST_F(NewSongs, ATagThatCannotBeFiledIsReportedAndTheRestIsFiled) {
  MakeSong("a/four.mp3", {.artist = "Zappa", .year = "198x"});
  MakeSong("a/six.mp3", {.artist = "Yes"});
  BringIn(NewSongsPlace::kKnownFolders);
  ASSERT_GE(noticed.size(), 2U);
  EXPECT_EQ(noticed[0], "2 new songs");
  EXPECT_NE(noticed[1].find("198x"), std::string::npos);
  EXPECT_TRUE(HasArtist("Zappa"));
  EXPECT_TRUE(HasArtist("Yes"));
}

TEST_F(NewSongs, ACancelOfTheFilingIsRecordedThoughATagCannotBeFiled) {
  MakeSong("a/bad.mp3", {.artist = "Zappa", .year = "abcd"});
  MakeSong("a/six.mp3", {.artist = "Yes"});
  progress.on_visit = [this] {
    if (!progress.found.empty() && progress.found.back().starts_with("Filed "))
      tallow->SearchCancelled = true;
  };
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_TRUE(tallow->filing_is_pending);
}

TEST_F(NewSongs, AFolderThatIsGoneHasAllItsSongsMissing) {
  std::filesystem::remove_all(std::filesystem::path(music / "a"));
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"0 new songs, 2 missing"});
}

TEST_F(NewSongs, ALibraryThatWasNeverFilledIsFilledFromTheWholeComputer) {
  for (const std::string& path : {Library(), Library() + ".bak", Settings()})
    std::filesystem::remove(std::filesystem::path(path));
  TempFolder empty;
  windows.emplace();
  tallow.emplace(application.path());
  const TestDrives nothing({{empty.path()}});
  System(*tallow, nothing, *windows).Main(runtime_file);
  ASSERT_EQ(tallow->library.UBoundOfMp3Array(), 0);
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"3 new songs"});
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
}

TEST_F(NewSongs, WithoutAnActiveJukeboxNothingIsFiled) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  has_active = false;
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song. No jukebox is open, so nothing was filed."});
  EXPECT_FALSE(HasArtist("Zappa"));
}

TEST_F(NewSongs, AJukeboxWithoutACaptionDoesNotMeanOpenJukeboxes) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  Box().Caption("");
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_FALSE(HasArtist("Zappa"));
}

TEST_F(NewSongs, ACancelStopsAfterTheFolderAndSearchedFoldersAreComplete) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  MakeSong("b/five.mp3", {.artist = "Yes"});
  // The folders are visited twice: for missing songs, then for new songs.
  int visits = 0;
  progress.on_visit = [&] { tallow->SearchCancelled = ++visits == 3; };
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song. The search was cancelled; the folders searched so "
                           "far are complete."});
  EXPECT_NE(HasArtist("Zappa"), HasArtist("Yes"));
  EXPECT_FALSE(tallow->SearchCancelled);
  progress.on_visit = {};
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"1 new song"});
}

TEST_F(NewSongs, ASearchThatFailsLeavesTheFrameEnabled) {
  search_all_drives = [](SearchProgress&) -> bool {
    throw std::runtime_error("The drive is gone.");
  };
  BringIn(NewSongsPlace::kWholeComputer);
  EXPECT_EQ(said,
            Texts{"The search for new songs could not be finished. The drive is gone.\n\nThe songs "
                  "found so far are kept. Check that all disks are connected, and search "
                  "again."});
}

TEST_F(NewSongs, ASearchThatFailsHalfWayLeavesNoSongTwice) {
  MakeSong("elsewhere/five.mp3", {.artist = "Yes"});
  search_all_drives = [this](SearchProgress& shown) -> bool {
    FileSearch(*tallow, drives, &shown).SearchDrivesForMp3s(true, {});
    throw std::runtime_error("The drive is gone.");
  };
  BringIn(NewSongsPlace::kWholeComputer);
  EXPECT_EQ(said.size(), 1U);
  EXPECT_EQ(noticed, Texts{"1 new song"});
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 4);
  EXPECT_TRUE(HasArtist("Yes"));
}

TEST_F(NewSongs, ALibraryThatCannotBeSortedEndsTheSearchWithAMessage) {
  tallow->library.Mp3Info(kRecordNumber, 2, "two");
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(said,
            Texts{"The search for new songs could not be finished. 'two' is not a number\n\nThe "
                  "songs found so far are kept. Check that all disks are connected, and search "
                  "again."});
  EXPECT_EQ(noticed, Texts{"0 new songs"});
}

TEST_F(NewSongs, AFailureOfTheFilingIsReportedAndTheSongsAreKept) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  progress.on_visit = [this] {
    if (progress.found.back().starts_with("Filed ")) {
      progress.on_visit = {};
      throw std::runtime_error("There is no memory.");
    }
  };
  BringIn(NewSongsPlace::kKnownFolders);
  ASSERT_EQ(said.size(), 1U);
  EXPECT_TRUE(
      said[0].starts_with("The search for new songs could not be finished. There is no memory."));
  EXPECT_EQ(noticed, Texts{"1 new song"});
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 4);
  EXPECT_EQ(InspectLibrary(Library()).usable, 4);
}

TEST_F(NewSongs, ALibraryThatCannotBeSavedIsReportedFirst) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  CreateFolders(Library() + ".new" + kSep + "x");
  BringIn(NewSongsPlace::kKnownFolders);
  ASSERT_GE(noticed.size(), 2U);
  EXPECT_TRUE(noticed[0].starts_with("The song library could not be saved: " + Library()))
      << noticed[0];
  EXPECT_EQ(noticed[1], "1 new song");
  EXPECT_EQ(said, Texts{});
  EXPECT_TRUE(HasArtist("Zappa"));
}

TEST_F(NewSongs, OnTheWholeComputerACancelStopsBeforeTheNextFolder) {
  TempFolder second;
  second.File("six.mp3", Audio(400) + Tag({.artist = "Zappa"}));
  MakeSong("elsewhere/five.mp3", {.artist = "Yes"});
  const TestDrives two({{music.path()}, {second.path()}});
  search_all_drives = [&](SearchProgress& shown) {
    return FileSearch(*tallow, two, &shown).SearchDrivesForMp3s(true, {});
  };
  progress.on_visit = [&] {
    if (progress.visited.back().starts_with(music / "elsewhere")) tallow->SearchCancelled = true;
  };
  BringIn(NewSongsPlace::kWholeComputer);
  EXPECT_EQ(noticed, Texts{"1 new song. The search was cancelled; the folders searched so "
                           "far are complete."});
  EXPECT_TRUE(HasArtist("Yes"));
  EXPECT_FALSE(HasArtist("Zappa"));
}

TEST_F(NewSongs, ACancelDuringTheMissingCheckLeavesOtherSongsUnchanged) {
  std::filesystem::remove(std::filesystem::path(music / "a/one.mp3"));
  std::filesystem::remove(std::filesystem::path(music / "b/three.mp3"));
  int visits = 0;
  progress.on_visit = [&] { tallow->SearchCancelled = ++visits == 1; };
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed,
            Texts{"0 new songs, 1 missing. The search was cancelled; the folders searched so far "
                  "are complete."});
  progress.on_visit = {};
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"0 new songs, 1 missing"});
}

TEST_F(NewSongs, ManyNewFilesAreFiled) {
  constexpr int kSongs = 20000;
  for (int k = 0; k < kSongs; ++k) {
    // Writes the files without a flush for each.
    std::ofstream(music / ("a/many " + std::to_string(k) + ".mp3"), std::ios::binary)
        << Audio(400) + Tag({.artist = "Artist " + std::to_string(k % 50)});
  }
  BringIn(NewSongsPlace::kKnownFolders);
  EXPECT_EQ(noticed, Texts{"20000 new songs"});
  EXPECT_EQ(SongsOnShow(), kSongs + 3U);
}

}  // namespace
}  // namespace tallow

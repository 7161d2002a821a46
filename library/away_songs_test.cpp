// SPDX-License-Identifier: GPL-3.0-or-later
// How the library handles songs and drives that are away, missing, or back.
#include <filesystem>

#include "library/size_finder.h"
#include "tests/library_fixture.h"
#include "tests/row_numbers.h"
#include "tests/wait_until.h"
#ifndef _WIN32
#include "tests/as_nobody_linux.h"
#endif

namespace tallow {
namespace {

namespace fs = std::filesystem;

/// A library over two folders that simulate drives, "one" and "two".
class AwaySongs : public LibraryTest {
 protected:
  AwaySongs() {
    library.UseDrives([this] { return mounted; }, {});
    Mount(one, "uuid A");
  }

  void Mount(const std::string& root, const std::string& volume) {
    Unmount(root);
    mounted.push_back({root, {volume, volume.empty() ? "" : kSep}, false});
  }
  void Unmount(const std::string& root) {
    std::erase_if(mounted, [&](const MountedVolume& volume) { return volume.root == root; });
  }
  /// Creates a file of a given size.
  void MakeFile(const std::string& path, std::size_t size = 10) {
    CreateFolders(std::string(FolderOfPath(path)));
    WriteFileAtomically(path, std::string(size, 'x'));
  }
  /// Simulates unmounting a drive: moves its files away and leaves an empty folder at the root.
  void TakeAway(const std::string& root, const std::string& to) {
    Unmount(root);
    fs::rename(fs::path(root), fs::path(to));
    CreateFolders(root);
  }
  void BringBack(const std::string& root, const std::string& from, const std::string& volume) {
    fs::remove(fs::path(root));
    fs::rename(fs::path(from), fs::path(root));
    Mount(root, volume);
  }

  /// Simulates the first search of all drives.
  void Search() {
    library.BeginScan(ScanKind::kComputer);
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(music.path())))
      if (entry.is_regular_file() && !entry.path().string().starts_with(away)) {
        files.push_back(entry.path());
      }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files)
      library.AddSong(EnsureTrailingBackslash(file.parent_path().string()),
                      file.filename().string(), static_cast<std::int64_t>(fs::file_size(file)));
    library.ImportFoundSongs(0);
    report = library.FinishScan(true);
  }
  /// Simulates the scan at the start of the program.
  void Scan() {
    library.BeginScan(ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    library.AddAnyAdditionalMp3FromTheNormalDirectories();
    report = library.FinishScan(true);
    ExpectRowsAreNumbers(library);
  }
  /// Simulates a restart of the program.
  void StartAgain() {
    again = std::make_unique<Tallow>(application.path());
    again->settings.GetandLoadIniInfo(again->settings_path);
    again->library.UseDrives([this] { return mounted; }, {});
    again->library.BeginScan(ScanKind::kFolderList);
    EXPECT_TRUE(again->library.LoadMain());
    again->library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    again->library.AddAnyAdditionalMp3FromTheNormalDirectories();
    report = again->library.FinishScan(true);
    ExpectRowsAreNumbers(again->library);
  }

  const std::string one = music.Folder("one");
  const std::string two = music.Folder("two");
  const std::string away = music / "away";
  MountedVolumes mounted;
  ScanReport report;
  std::unique_ptr<Tallow> again;
};

TEST_F(AwaySongs, ATwinOnADriveThatIsAwayIsTheSameSongWhenTheDriveReturns) {
  library.UseSwitches(kModernStyle);
  const std::string folder = one + "abba" + kSep;
  MakeFile(folder + "a.mp3");
  MakeFile(two + "a.mp3");
  Search();
  ASSERT_EQ(library.UBoundOfMp3Array(), 2);
  const std::int32_t twin = library.Song(1).Folder() == folder ? 1 : 2;
  library.Mp3Info(kSongRank, twin, "7");
  const auto search_again = [&](const std::vector<std::string>& folders) {
    Scan();
    library.BeginScan(ScanKind::kComputer);
    std::int32_t before = library.UBoundOfMp3Array();
    for (const std::string& one_folder : folders) library.AddSong(one_folder, "a.mp3", 10);
    library.DeleteIdenticalFileNamesAndPaths(before);
    report = library.FinishScan(true);
    EXPECT_EQ(library.UBoundOfMp3Array(), 2);
    EXPECT_EQ(library.LeftOut().size(), 0U);
    EXPECT_EQ(report.new_songs, 0);
  };
  TakeAway(one, away);
  search_again({two});
  EXPECT_TRUE(library.IsAway(twin));
  EXPECT_FALSE(library.IsAway(3 - twin));
  BringBack(one, away, "uuid A");
  search_again({folder, two});
  EXPECT_FALSE(library.IsAway(twin));
  EXPECT_EQ(library.Song(twin).Folder(), folder);
  EXPECT_EQ(library.Song(twin).Rank(), 7);
  EXPECT_EQ(library.Song(3 - twin).Folder(), two);
  EXPECT_TRUE(library.TakeReturned().empty());
}

TEST_F(AwaySongs, TwinsOnADriveAreForgottenWithIt) {
  library.UseSwitches(kModernStyle);
  MakeFile(one + "abba" + kSep + "a.mp3");
  MakeFile(one + "queen" + kSep + "a.mp3");
  MakeFile(two + "b.mp3");
  Search();
  ASSERT_EQ(library.UBoundOfMp3Array(), 3);
  library.UseSwitches(kClassicStyle);
  TakeAway(one, away);
  Scan();
  ASSERT_EQ(library.AwayPlaces().size(), 1U);
  EXPECT_EQ(library.ForgetAwayPlace(one), 2);
  EXPECT_TRUE(library.AwayPlaces().empty());
  EXPECT_EQ(library.Missing().size(), 2U);
}

TEST_F(AwaySongs, AStartWithoutTheDriveChangesNothing) {
  MakeFile(one + "abba" + kSep + "a.mp3");
  MakeFile(two + "b.mp3");
  Search();
  EXPECT_EQ(report.new_songs, 2);
  library.Mp3Info(kSongRank, 1, "7");
  library.Save();
  TakeAway(one, away);
  const auto file = ReadWholeFile(LibraryPath());
  const auto list = ReadWholeFile(ListPath());
  StartAgain();
  EXPECT_EQ(ReadWholeFile(LibraryPath()), file);
  EXPECT_EQ(ReadWholeFile(ListPath()), list);
  EXPECT_TRUE(again->library.IsPresent(1));
  EXPECT_TRUE(again->library.IsAway(1));
  EXPECT_FALSE(again->library.IsAway(2));
  EXPECT_EQ(again->library.AwayText(1), "a.mp3 is on a drive that is away: " + one);
  EXPECT_EQ(TextOf(report, false), "1 away (" + one + ")");
  BringBack(one, away, "uuid A");
  StartAgain();
  EXPECT_FALSE(again->library.IsAway(1));
  EXPECT_EQ(again->library.AwayText(1), "");
  EXPECT_EQ(again->library.Mp3Info(kSongRank, 1), "7");
  EXPECT_EQ(TextOf(report, false), "");
}

TEST_F(AwaySongs, ASongOnAMountedDriveIsMissing) {
  MakeFile(one + "a.mp3");
  MakeFile(one + "b.mp3");
  MakeFile(one + "deep" + kSep + "c.mp3");
  Search();
  RemoveFile(one + "a.mp3");
  fs::remove_all(fs::path(one + "deep"));
  Scan();
  EXPECT_EQ(report.missing, 2);
  EXPECT_FALSE(library.IsPresent(1));
  EXPECT_TRUE(library.IsPresent(2));
  EXPECT_FALSE(library.IsPresent(3));
}

TEST_F(AwaySongs, AFileThatExistsIsPresentWhateverItsVolumeIs) {
  MakeFile(one + "a.mp3");
  MakeFile(one + "b.mp3");
  Search();
  RemoveFile(one + "b.mp3");
  Mount(one, "uuid B");
  Scan();
  EXPECT_FALSE(library.IsAway(1));
  EXPECT_TRUE(library.IsAway(2));
}

TEST_F(AwaySongs, ADriveAtAnotherRootUpdatesTheFoldersOfItsRows) {
  MakeFile(one + "abba" + kSep + "a.mp3");
  MakeFile(one + "abba" + kSep + "b.mp3");
  Search();
  library.Mp3Info(kSongRank, 2, "6");
  library.Save();
  Unmount(one);
  fs::remove_all(fs::path(two));
  fs::rename(fs::path(one), fs::path(two));
  Mount(two, "uuid A");
  MakeFile(two + "abba" + kSep + "new.mp3");
  Scan();
  EXPECT_EQ(report.new_songs, 1);
  EXPECT_EQ(report.missing, 0);
  EXPECT_EQ(library.Mp3Info(kFileLocation, 2), two + "abba" + kSep);
  EXPECT_EQ(library.Mp3Info(kSongRank, 2), "6");
  EXPECT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_EQ(ReadWholeFile(ListPath()), two + "abba" + kSep + "\r\n");
  StartAgain();
  EXPECT_EQ(TextOf(report, false), "");
  // The drive is now remembered at the new root.
  Unmount(two);
  TakeAway(two, away);
  StartAgain();
  EXPECT_EQ(TextOf(report, false), "3 away (" + two + ")");
}

TEST_F(AwaySongs, WithoutARememberedDriveAnEmptyOrMissingFolderIsAway) {
  MakeFile(one + "a.mp3");
  MakeFile(two + "b.mp3");
  MakeFile(two + "c.mp3");
  Search();
  // Earlier versions did not write this file.
  RemoveFile(SystemFolder(application.path()) + "Drives.json");
  TakeAway(one, away);
  RemoveFile(two + "b.mp3");
  StartAgain();
  EXPECT_TRUE(again->library.IsAway(1));
  EXPECT_FALSE(again->library.IsPresent(2));
  EXPECT_TRUE(again->library.IsPresent(3));
  // The song is not lost at the next start either.
  StartAgain();
  EXPECT_TRUE(again->library.IsAway(1));
  BringBack(one, away, "");
  StartAgain();
  EXPECT_EQ(TextOf(report, false), "");
}

#ifndef _WIN32
TEST_F(AwaySongs, AFolderThatCannotBeReadIsAway) {
  MakeFile(one + "abba" + kSep + "a.mp3");
  MakeFile(one + "abba" + kSep + "b.mp3");
  MakeFile(one + "queen" + kSep + "c.mp3");
  Search();
  fs::permissions(fs::path(one + "abba"), fs::perms::none);
  fs::permissions(fs::path(one + "queen"), fs::perms::none);
  {
    const AsNobody nobody;
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  }
  for (const std::int32_t row : {1, 2, 3}) EXPECT_TRUE(library.IsAway(row)) << row;
  EXPECT_EQ(library.AwayText(1), "a.mp3's folder cannot be read: Permission denied");
  const std::vector<AwayPlace> places = library.AwayPlaces();
  ASSERT_EQ(places.size(), 2U);
  EXPECT_EQ(places[0].place, one + "abba/");
  EXPECT_EQ(places[0].kind, AwayKind::kFolder);
  EXPECT_EQ(places[0].problem, "Permission denied");
  EXPECT_EQ(places[0].songs, 2);
  fs::permissions(fs::path(one + "abba"), fs::perms::owner_all);
  fs::permissions(fs::path(one + "queen"), fs::perms::owner_all);
  Scan();
  EXPECT_EQ(TextOf(report, false), "");
}

TEST_F(AwaySongs, AFolderThatCanBeEnteredButNotListedIsCheckedFileByFile) {
  MakeFile(one + "abba" + kSep + "a.mp3");
  MakeFile(one + "abba" + kSep + "b.mp3");
  Search();
  RemoveFile(one + "abba/b.mp3");
  fs::permissions(fs::path(one + "abba"),
                  fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec);
  for (const char* const above : {"one", ""})
    fs::permissions(fs::path(music / above), fs::perms::all);
  {
    const AsNobody nobody;
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  }
  fs::permissions(fs::path(one + "abba"), fs::perms::owner_all);
  EXPECT_FALSE(library.IsAway(1));
  EXPECT_TRUE(library.IsAway(2));
}
#endif

TEST_F(AwaySongs, ACopyOfAnAwaySongIsLeftOutButAnotherSongOfThatNameIsNot) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3", 200);
  MakeFile(two + "c.mp3", 300);
  Search();
  TakeAway(one, away);
  MakeFile(two + "a.mp3", 100);
  MakeFile(two + "b.mp3", 201);
  Scan();
  EXPECT_EQ(report.new_songs, 1);
  EXPECT_EQ(report.left_out, 1);
  ASSERT_EQ(library.LeftOut().size(), 1U);
  EXPECT_EQ(library.LeftOut()[0].path, two + "a.mp3");
  EXPECT_EQ(library.LeftOut()[0].stands_for_it, one + "a.mp3");
  EXPECT_EQ(library.Mp3Info(kFileLocation, 4), two);
  EXPECT_EQ(library.Mp3Info(kFileName, 4), "b.mp3");
  // Both songs are present once the drive is back.
  BringBack(one, away, "uuid A");
  Scan();
  EXPECT_EQ(library.UBoundOfMp3Array(), 4);
  EXPECT_TRUE(library.IsPresent(2));
  EXPECT_TRUE(library.IsPresent(4));
}

TEST_F(AwaySongs, WithoutAKnownSizeTheNameDecides) {
  AddSong(one, "a.mp3");
  MakeFile(one + "a.mp3", 100);
  MakeFile(two + "c.mp3");
  AddSong(two, "c.mp3");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  Scan();
  ASSERT_EQ(library.Facts(1).size, kUnknownSize);
  TakeAway(one, away);
  MakeFile(two + "a.mp3", 77);
  Scan();
  EXPECT_EQ(report.left_out, 1);
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
}

TEST_F(AwaySongs, WhatWasLeftOutOnADriveHoldsWhileItIsAway) {
  Mount(two, "uuid B");
  const std::string folder = two + "abba" + kSep;
  for (const std::string& path : {one + "a.mp3", two + "b.mp3", folder + "a.mp3", folder + "c.mp3"})
    MakeFile(path);
  Search();
  MakeFile(two + "d.flac");
  MakeFile(folder + "e.flac");
  Scan();
  const ScanFindings::Folders found{{two, {1, {}}}, {folder, {1, {{"a.mp3", one + "a.mp3"}}}}};
  EXPECT_EQ(library.Findings().ByFolder(), found);
  TakeAway(two, away);
  Scan();
  EXPECT_EQ(library.Findings().ByFolder(), found);
  StartAgain();
  EXPECT_TRUE(again->library.LoadFindings());
  EXPECT_EQ(again->library.Findings().ByFolder(), found);
  BringBack(two, away, "uuid B");
  // A folder that is gone from a drive that is there has none.
  fs::remove_all(fs::path(folder));
  StartAgain();
  EXPECT_TRUE(again->library.LoadFindings());
  EXPECT_EQ(again->library.Findings().ByFolder(), (ScanFindings::Folders{{two, {1, {}}}}));
}

TEST_F(AwaySongs, ForgettingADriveForgetsWhatWasLeftOutOnIt) {
  Mount(two, "uuid B");
  for (const std::string& path : {one + "a.mp3", two + "b.mp3"}) MakeFile(path);
  Search();
  for (const std::string& path : {one + "c.flac", two + "d.flac"}) MakeFile(path);
  Scan();
  TakeAway(two, away);
  Scan();
  EXPECT_EQ(library.Findings().OtherFormats(), 2U);
  EXPECT_EQ(library.ForgetAwayPlace(two), 1);
  EXPECT_EQ(library.Findings().ByFolder(), (ScanFindings::Folders{{one, {1, {}}}}));
}

TEST_F(AwaySongs, WhatWasLeftOutOnADriveThatHasAnotherPlaceIsCountedOnce) {
  Mount(two, "uuid B");
  const std::string folder = two + "abba" + kSep;
  for (const std::string& path : {one + "a.mp3", folder + "a.mp3", folder + "c.mp3"})
    MakeFile(path);
  Search();
  EXPECT_EQ(library.Findings().LeftOut(), 1U);
  const std::string three = music / "three" + kSep;
  Unmount(two);
  fs::rename(fs::path(two), fs::path(three));
  Mount(three, "uuid B");
  Scan();
  EXPECT_EQ(library.Findings().ByFolder(),
            (ScanFindings::Folders{{three + "abba" + kSep, {0, {{"a.mp3", one + "a.mp3"}}}}}));
}

TEST_F(AwaySongs, AfterForgettingADriveTheLeftOutFileInheritsTheRank) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(two + "c.mp3", 300);
  Search();
  library.Mp3Info(kSongRank, 1, "7");
  library.Save();
  TakeAway(one, away);
  MakeFile(two + "a.mp3", 100);
  Scan();
  ASSERT_EQ(library.AwayPlaces().size(), 1U);
  EXPECT_EQ(library.AwayPlaces()[0].place, one);
  EXPECT_EQ(library.AwayPlaces()[0].kind, AwayKind::kDrive);
  EXPECT_EQ(library.ForgetAwayPlace(one), 1);
  EXPECT_FALSE(library.IsPresent(1));
  EXPECT_TRUE(library.AwayPlaces().empty());
  EXPECT_TRUE(library.LeftOut().empty());
  EXPECT_EQ(library.TakeReturned().size(), 1U);
  ExpectRowsAreNumbers(library);
  ASSERT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_EQ(library.Mp3Info(kSongRank, 3), "7");
  EXPECT_EQ(library.Missing().NumberNow(1), 3);
  // The drive is forgotten too.
  EXPECT_FALSE(library.KnowsDrive(one));
}

TEST_F(AwaySongs, ASongThatHasComeBackIsNotForgotten) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(two + "c.mp3", 300);
  Search();
  TakeAway(one, away);
  Scan();
  BringBack(one, away, "uuid A");
  EXPECT_EQ(library.ForgetAwayPlace(one), 0);
  EXPECT_TRUE(library.IsPresent(1));
  EXPECT_FALSE(library.IsAway(1));
}

TEST_F(AwaySongs, KnowsDriveBeforeLoadingTheLibraryForgetsNothing) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3");
  MakeFile(two + "c.mp3");
  Search();
  RemoveFile(one + "a.mp3");
  Scan();
  ASSERT_TRUE(library.IsHidden(1));
  again = std::make_unique<Tallow>(application.path());
  again->settings.GetandLoadIniInfo(again->settings_path);
  again->library.UseDrives([this] { return mounted; }, {one});
  EXPECT_TRUE(again->library.KnowsDrive(one));
  EXPECT_TRUE(again->library.LoadMain());
  EXPECT_TRUE(again->library.IsHidden(1));
}

TEST_F(AwaySongs, AnEmptyFolderOfAKnownVolumeIsAwayToo) {
  MakeFile(one + "a.mp3");
  MakeFile(two + "b.mp3");
  Search();
  fs::rename(fs::path(one + "a.mp3"), fs::path(music / "a.mp3"));
  Scan();
  EXPECT_TRUE(library.IsAway(1));
}

TEST_F(AwaySongs, AFolderGivenOnceStaysADrive) {
  const std::string given = one + "music" + kSep;
  MakeFile(given + "abba" + kSep + "a.mp3");
  MakeFile(one + "b.mp3");
  library.UseDrives([this] { return mounted; }, {given});
  Search();
  // One start without the folder given, and one with it given but not mounted.
  library.UseDrives([this] { return mounted; }, {});
  StartAgain();
  EXPECT_TRUE(library.KnowsDrive(given));
  fs::remove_all(fs::path(given));
  StartAgain();
  EXPECT_EQ(again->library.AwayText(2), "a.mp3 is on a drive that is away: " + given);
}

TEST_F(AwaySongs, AGivenFolderThatIsNotThereIsAwayEvenForSongsFoundWithoutIt) {
  const std::string given = one + "music" + kSep;
  MakeFile(given + "abba" + kSep + "a.mp3");
  MakeFile(one + "b.mp3");
  Search();
  fs::remove_all(fs::path(given));
  library.UseDrives([this] { return mounted; }, {given});
  EXPECT_TRUE(library.KnowsDrive(given));
  Scan();
  EXPECT_TRUE(library.IsAway(2));
}

TEST_F(AwaySongs, ASongThatIsSeenAgainIsNoLongerAway) {
  MakeFile(one + "abba" + kSep + "a.mp3", 100);
  MakeFile(two + "b.mp3");
  Search();
  TakeAway(one, away);
  Scan();
  ASSERT_TRUE(library.IsAway(1));
  BringBack(one, away, "uuid A");
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  EXPECT_FALSE(library.IsAway(1));
  TakeAway(one, away);
  Scan();
  BringBack(one, away, "uuid A");
  std::int32_t old_count = library.UBoundOfMp3Array();
  library.AddSong(one + "abba" + kSep, "a.mp3", 100);
  library.DeleteIdenticalFileNamesAndPaths(old_count);
  EXPECT_FALSE(library.IsAway(1));
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
  EXPECT_TRUE(library.LeftOut().empty());
}

TEST_F(AwaySongs, RecheckingDetectsADriveUnmountedDuringARun) {
  MakeFile(one + "a.mp3");
  MakeFile(one + "b.mp3");
  MakeFile(two + "c.mp3");
  Search();
  TakeAway(one, away);
  EXPECT_FALSE(library.IsAway(1));
  library.MarkAwaySongs({3, 1});
  EXPECT_FALSE(library.IsAway(1));
  library.MarkAwaySongs({1, 2, 3});
  EXPECT_TRUE(library.IsAway(1));
  EXPECT_TRUE(library.IsAway(2));
  EXPECT_FALSE(library.IsAway(3));
}

#ifndef _WIN32
TEST_F(AwaySongs, ADanglingLinkIsAway) {
  MakeFile(two + "real.song");
  MakeFile(one + "b.mp3");
  fs::create_symlink(fs::path(two + "real.song"), fs::path(one + "a.mp3"));
  library.AddSong(one, "a.mp3", 10);
  library.AddSong(one, "b.mp3", 10);
  library.ImportFoundSongs(0);
  library.FinishScan(true);
  RemoveFile(two + "real.song");
  Scan();
  EXPECT_TRUE(library.IsAway(1));
  EXPECT_EQ(library.AwayText(1), "a.mp3's folder cannot be read: The link is broken");
}
#endif

TEST_F(AwaySongs, AMovedFileKeepsItsRankAcrossAStart) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3", 200);
  MakeFile(two + "c.mp3");
  Search();
  library.Mp3Info(kSongRank, 1, "6");
  library.Save();
  fs::rename(fs::path(one + "a.mp3"), fs::path(two + "a.mp3"));
  StartAgain();
  EXPECT_EQ(report.missing, 1);
  EXPECT_EQ(report.back, 1);
  EXPECT_EQ(TextOf(report, false), "1 back with its rank, 1 missing");
  EXPECT_EQ(again->library.Mp3Info(kSongRank, 4), "6");
  EXPECT_EQ(again->library.TakeReturned().size(), 1U);
  StartAgain();
  EXPECT_EQ(again->library.Missing().NumberNow(1), 4);
  EXPECT_FALSE(again->library.IsHidden(1));
}

TEST_F(AwaySongs, ASongOfAnotherSizeIsAnotherSong) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3");
  MakeFile(two + "c.mp3");
  Search();
  library.Mp3Info(kSongRank, 1, "6");
  RemoveFile(one + "a.mp3");
  MakeFile(two + "a.mp3", 101);
  Scan();
  EXPECT_EQ(report.back, 0);
  EXPECT_EQ(report.new_songs, 1);
  EXPECT_EQ(library.Mp3Info(kSongRank, 4), "2");
}

TEST_F(AwaySongs, SizesComeFromTheSearchAndMissingSizesAreReadLater) {
  MakeFile(one + "a.mp3", 123);
  Search();
  EXPECT_EQ(library.Facts(1).size, 123);
  EXPECT_GT(library.Facts(1).added, 20000);
  StartAgain();
  EXPECT_EQ(again->library.Facts(1).size, 123);
  // A lost companion is rebuilt without a message.
  const std::string companion = GroupingFolder(application.path()) + "FileLocNames.more";
  ASSERT_TRUE(RemoveFile(companion));
  StartAgain();
  EXPECT_EQ(again->library.Facts(1).size, kUnknownSize);
  EXPECT_TRUE(again->library.TakeProblems().empty());
  SizeFinder finder(again->library);
  EXPECT_TRUE(WaitUntil([&] { return !finder.StoreSizes(again->library); }));
  EXPECT_EQ(again->library.Facts(1).size, 123);
  again->library.SaveFacts();
  StartAgain();
  EXPECT_EQ(again->library.Facts(1).size, 123);
}

TEST_F(AwaySongs, TheSizeOfAnotherFileIsIgnored) {
  MakeFile(one + "a.mp3", 123);
  Search();
  library.SetSize(1, one, "b.mp3", 9);
  library.SetSize(1, two, "a.mp3", 9);
  library.SetSize(0, one, "a.mp3", 9);
  library.SetSize(2, one, "a.mp3", 9);
  EXPECT_EQ(library.Facts(1).size, 123);
  library.SetSize(1, one, "a.mp3", 9);
  EXPECT_EQ(library.Facts(1).size, 9);
}

TEST_F(AwaySongs, AKillBetweenWritingMissingSongsAndLibraryLosesNothing) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3", 200);
  Search();
  const std::string library_file = ReadWholeFile(LibraryPath()).value();
  RemoveFile(one + "a.mp3");
  MakeFile(one + "c.mp3");
  Scan();
  EXPECT_FALSE(library.IsPresent(1));
  ASSERT_TRUE(FileExists(SystemFolder(application.path()) + "Missing.json"));
  // The old library with the new Missing.json: the file is assigned to its old row.
  WriteFileAtomically(LibraryPath(), library_file);
  tallow.settings.NumerOfRecordsInTheMain(2);
  tallow.SaveSettings();
  MakeFile(one + "a.mp3", 100);
  StartAgain();
  EXPECT_TRUE(again->library.IsPresent(1));
  EXPECT_EQ(again->library.Missing().size(), 0U);
  EXPECT_EQ(again->library.Facts(1).size, 100);
}

TEST_F(AwaySongs, AReturnThatTheLibraryDoesNotContainIsDropped) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3", 200);
  MakeFile(two + "c.mp3");
  Search();
  RemoveFile(one + "a.mp3");
  MakeFile(two + "d.mp3");
  Scan();
  const std::string library_file = ReadWholeFile(LibraryPath()).value();
  const auto rows = library.UBoundOfMp3Array();
  MakeFile(two + "a.mp3", 100);
  Scan();
  ASSERT_EQ(library.Missing().NumberNow(1), rows + 1);
  WriteFileAtomically(LibraryPath(), library_file);
  tallow.settings.NumerOfRecordsInTheMain(rows);
  tallow.SaveSettings();
  RemoveFile(two + "a.mp3");
  StartAgain();
  EXPECT_EQ(again->library.Missing().NumberNow(1), 1);
  EXPECT_TRUE(again->library.IsHidden(1));
}

TEST_F(AwaySongs, ADamagedStateFileIsKeptAndReported) {
  MakeFile(one + "a.mp3");
  Search();
  const std::string folder = SystemFolder(application.path());
  for (const char* const name : {"Drives.json", "Missing.json", "Repaired.json"}) {
    WriteFileAtomically(folder + name, "damaged");
    StartAgain();
    EXPECT_EQ(again->library.TakeProblems(),
              Texts{folder + name + " is damaged. It was renamed to end in .bak."});
    EXPECT_EQ(ReadWholeFile(folder + name + ".bak"), "damaged");
  }
}

TEST_F(AwaySongs, AnUnreadableStateFileIsNotReplaced) {
  MakeFile(one + "a.mp3");
  MakeFile(one + "b.mp3");
  Search();
  const std::string path = SystemFolder(application.path()) + "Missing.json";
  RemoveFile(path);
  CreateFolder(path);
  RemoveFile(one + "a.mp3");
  MakeFile(one + "c.mp3");
  StartAgain();
  const Texts problems = again->library.TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with(path + " cannot be read (")) << problems[0];
  EXPECT_TRUE(
      problems[0].ends_with("), so it was not changed. Make it readable and start Tallow again."));
  EXPECT_TRUE(FolderExists(path));
  EXPECT_EQ(
      again->library.AwayText(1),
      "a.mp3 was not found. Its entries and rank are kept, because " + path + " cannot be read.");
  ASSERT_EQ(again->library.AwayPlaces().size(), 1U);
  EXPECT_EQ(again->library.AwayPlaces()[0].kind, AwayKind::kKept);
}

TEST_F(AwaySongs, RestartingTheNumberingForgetsMissingSongs) {
  MakeFile(one + "a.mp3", 100);
  MakeFile(one + "b.mp3");
  Search();
  RemoveFile(one + "a.mp3");
  MakeFile(one + "c.mp3");
  Scan();
  ASSERT_EQ(library.Missing().size(), 1U);
  again = std::make_unique<Tallow>(application.path());
  again->settings.CreateNewIniFile(again->settings_path, application.path());
  again->library.UseDrives([this] { return mounted; }, {});
  again->library.AddSong(one, "b.mp3", 10);
  again->library.ImportFoundSongs(0);
  EXPECT_EQ(again->library.Missing().size(), 0U);
  EXPECT_EQ(ReadWholeFile(SystemFolder(application.path()) + "Missing.json")->find("a.mp3"),
            std::string::npos);
}

TEST_F(AwaySongs, LeftOutFilesAreReportedWhenTheirNumberGrows) {
  MakeFile(one + "a.mp3");
  MakeFile(two + "a.mp3");
  MakeFile(two + "b.mp3");
  Search();
  EXPECT_EQ(report.left_out, 1);
  EXPECT_TRUE(report.left_out_grew);
  StartAgain();
  EXPECT_EQ(report.left_out, 1);
  EXPECT_FALSE(report.left_out_grew);
  MakeFile(one + "b.mp3");
  StartAgain();
  EXPECT_EQ(report.left_out, 2);
  EXPECT_TRUE(report.left_out_grew);
  StartAgain();
  EXPECT_FALSE(report.left_out_grew);
  EXPECT_EQ(again->library.LeftOut().size(), 2U);
}

TEST_F(AwaySongs, RecheckingFindsASongThatIsBack) {
  MakeFile(one + "a.mp3");
  MakeFile(two + "b.mp3");
  Search();
  TakeAway(one, away);
  Scan();
  EXPECT_FALSE(library.RecheckSong(1));
  BringBack(one, away, "uuid A");
  EXPECT_TRUE(library.IsAway(1));
  EXPECT_TRUE(library.RecheckSong(1));
  EXPECT_FALSE(library.IsAway(1));
  EXPECT_FALSE(library.RecheckSong(99));
}

TEST_F(AwaySongs, ACancelledCheckDoesNotUpdateRoots) {
  MakeFile(one + "abba" + kSep + "a.mp3");
  Search();
  Unmount(one);
  fs::remove_all(fs::path(two));
  fs::rename(fs::path(one), fs::path(two));
  Mount(two, "uuid A");
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse([](std::string_view) { return false; });
  library.FinishScan(false);
  Scan();
  EXPECT_EQ(report.missing, 0);
  EXPECT_EQ(library.Mp3Info(kFileLocation, 1), two + "abba" + kSep);
}

TEST_F(AwaySongs, ALibraryWithConfusedNumbersIsRepaired) {
  MakeFile(one + "a.mp3");
  MakeFile(one + "b.mp3");
  MakeFile(one + "c.mp3");
  AddSong(one, "a.mp3", "1", "7");
  AddSong(one, "b.mp3", "1", "6");
  AddSong(one, "c.mp3", "1", "5");
  library.Mp3Info(kRecordNumber, 2, "3");
  library.Mp3Info(kRecordNumber, 3, "4");
  library.Save();
  const auto before = ReadWholeFile(LibraryPath());
  ASSERT_TRUE(library.LoadMain());
  EXPECT_TRUE(library.RepairRecordNumbers());
  ExpectRowsAreNumbers(library);
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "0", "b.mp3", "c.mp3"}));
  EXPECT_EQ(Cells(5), (Texts{"7", "2", "6", "5"}));
  EXPECT_EQ(ReadWholeFile(LibraryPath() + ".bak"), before);
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 4);
  EXPECT_TRUE(library.LoadMain());
  EXPECT_FALSE(library.RepairRecordNumbers());
  ASSERT_NE(library.Repaired().Find(3), nullptr);
  EXPECT_EQ(library.Repaired().Find(3)->held, "c.mp3");
}

}  // namespace
}  // namespace tallow

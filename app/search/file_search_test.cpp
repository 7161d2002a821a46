// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/file_search.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <random>

#include "app/search/drive_searches.h"
#include "app/search/player_search.h"
#include "app/search/winamp_search.h"
#include "library/recycle_bin.h"
#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"
#include "util/path_text.h"
#include "util/user_folders.h"
#ifndef _WIN32
#include <cstdlib>
#include <sys/stat.h>
#else
#include "util/text.h"
#endif

namespace tallow {
namespace {

class FileSearchTest : public LibraryTest {
 protected:
  void Search(const TestDrives& drives) {
    FileSearch(tallow, drives, &progress).SearchDrivesForMp3s(true, {});
  }
  void SearchMusic() { Search(TestDrives({{music.path()}})); }

  /// The full paths of all songs, relative to the music folder, sorted.
  Texts Songs() const {
    Texts songs;
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      songs.push_back((std::string(library.Mp3Info(1, row)) + std::string(library.Mp3Info(2, row)))
                          .substr(music.path().size()));
    std::sort(songs.begin(), songs.end());
    return songs;
  }

  RecordedProgress progress;
};

TEST_F(FileSearchTest, FoundFilesBecomeSongsOfRankTwo) {
  music.File("a.mp3");
  music.File("sub/B.MP3");
  music.File("sub/c.txt");
  SearchMusic();
  EXPECT_EQ(Songs(), (Texts{"a.mp3", "sub" + kSep + "B.MP3"}));
  EXPECT_EQ(Cells(1), (Texts{music.path(), music / "sub/"}));
  EXPECT_EQ(Cells(3), (Texts{"1", "1"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_EQ(Cells(5), (Texts{"2", "2"}));
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(FileSearchTest, FilesOfOtherFormatsAreSeenByFolder) {
  music.File("a.mp3");
  music.File("flac/b.flac");
  music.File("flac/c.M4A");
  music.File("flac/cover.jpg");
  music.File("ogg/d.ogg");
  music.File("incomplete/e.ogg");
  library.BeginScan(ScanKind::kComputer);
  SearchMusic();
  EXPECT_EQ(Songs(), Texts{"a.mp3"});
  library.FinishScan(true);
  EXPECT_EQ(library.Findings().ByFolder(),
            (ScanFindings::Folders{{music / "flac/", {2, {}}}, {music / "ogg/", {1, {}}}}));
}

TEST_F(FileSearchTest, InModernStyleThereAreNoOtherFormats) {
  library.UseSwitches(kModernStyle);
  music.File("b.flac");
  library.BeginScan(ScanKind::kComputer);
  SearchMusic();
  library.FinishScan(true);
  EXPECT_EQ(Songs(), Texts{"b.flac"});
  EXPECT_EQ(library.Findings().OtherFormats(), 0U);
}

TEST_F(FileSearchTest, OnlyHardDrivesAreWalkedButAllAreNamed) {
  for (const char* drive : {"a", "c", "d", "e"})
    music.File(std::string(drive) + "/x" + drive + ".mp3");
  const TestDrives drives({{music / "a/", kRemovableDrive},
                           {music / "c/", kFixedDrive},
                           {music / "d/", kCdRom},
                           {music / "e/", kRemoteDrive}});
  Search(drives);
  EXPECT_EQ(Cells(2), (Texts{"xc.mp3"}));
  EXPECT_EQ(
      progress.status,
      (Texts{"Looking for Mp3s in " + (music / "a/"), "Looking for Mp3s in " + (music / "c/"),
             "Looking for Mp3s in " + (music / "d/"), "Looking for Mp3s in " + (music / "e/")}));
  EXPECT_EQ(progress.yields, 4 * 1999);
  EXPECT_EQ(progress.repaints, 4 * 2 + 2);
}

TEST_F(FileSearchTest, TheFoundLineShowsTheRecordNumber) {
  AddSong("/known/", "k.mp3");
  music.File("a.mp3");
  music.File("b.mp3");
  SearchMusic();
  EXPECT_EQ(progress.found, (Texts{"Found 2 Mp3s", "Found 3 Mp3s"}));
  EXPECT_EQ(progress.song_yields, 2);
}

TEST_F(FileSearchTest, WithoutASplashWindowNothingIsReported) {
  music.File("a.mp3");
  progress.loaded = false;
  SearchMusic();
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
  EXPECT_TRUE(progress.status.empty());
  EXPECT_TRUE(progress.found.empty());
  EXPECT_EQ(progress.song_yields, 0);
  FileSearch(tallow, TestDrives({{music.path()}}), nullptr).SearchDrivesForMp3s(true, {});
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
}

TEST_F(FileSearchTest, OneFolderIsSearchedWithoutItsSubfolders) {
  music.File("a.mp3");
  music.File("sub/b.mp3");
  tallow.SearchCancelled = true;
  FileSearch(tallow, TestDrives({}), &progress).SearchDrivesForMp3s(false, music.path());
  EXPECT_EQ(Songs(), (Texts{"a.mp3"}));
  EXPECT_EQ(progress.yields, 0);
  EXPECT_TRUE(progress.status.empty());
  EXPECT_TRUE(tallow.SearchCancelled);
}

TEST_F(FileSearchTest, ACancelTakesEffectAtTheNextDrive) {
  music.File("c/a.mp3");
  music.File("c/b.mp3");
  music.File("d/c.mp3");
  progress.on_song = [this] { tallow.SearchCancelled = true; };
  Search(TestDrives({{music / "c/"}, {music / "d/"}}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
  EXPECT_EQ(progress.status.size(), 1U);
  EXPECT_FALSE(tallow.SearchCancelled);
}

TEST_F(FileSearchTest, TheEndOfTheProgramStopsTheSearch) {
  music.File("c/a/a.mp3");
  music.File("c/b/b.mp3");
  music.File("d/c.mp3");
  progress.on_song = [this] { tallow.SearchCancelled = tallow.is_shutting_down = true; };
  Search(TestDrives({{music / "c/"}, {music / "d/"}}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
}

TEST_F(FileSearchTest, ACancelDuringTheYieldsStopsBeforeTheDrive) {
  music.File("c/a.mp3");
  progress.on_yield = [this] { tallow.SearchCancelled = progress.yields == 1999; };
  Search(TestDrives({{music / "c/"}}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_TRUE(progress.status.empty());
}

TEST_F(FileSearchTest, ACancelAfterTheLastDriveStopsTheNextSearch) {
  music.File("c/a.mp3");
  const TestDrives drives({{music / "c/"}});
  progress.on_song = [this] { tallow.SearchCancelled = true; };
  Search(drives);
  EXPECT_TRUE(tallow.SearchCancelled);
  progress.on_song = {};
  Search(drives);
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
  EXPECT_FALSE(tallow.SearchCancelled);
}

TEST_F(FileSearchTest, ADriveThatVanishedIsOnlyNamed) {
  Search(TestDrives({{music / "gone/"}}));
  EXPECT_EQ(progress.status.size(), 1U);
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
}

TEST_F(FileSearchTest, AnEmptyDriveListEndsAtOnce) {
  Search(TestDrives({}));
  EXPECT_EQ(progress.yields, 0);
}

TEST_F(FileSearchTest, MoreThanTwentySixDrivesAreSearched) {
  std::vector<TestDrives::Drive> many;
  for (int k = 10; k < 50; ++k) {
    music.File(std::to_string(k) + "/" + std::to_string(k) + ".mp3");
    many.push_back({music / (std::to_string(k) + "/")});
  }
  Search(TestDrives(many));
  EXPECT_EQ(library.UBoundOfMp3Array(), 40);
}

TEST_F(FileSearchTest, PartialDownloadsAreCountedButNotAdded) {
  music.File("Downloads/InComplete/a.mp3", "123");
  music.File("Downloads/incomplete.mp3", "12");
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  EXPECT_EQ(FileSearch(tallow, drives, nullptr).WalkFolderTree(request), 5);
  EXPECT_EQ(request.FilesFound, 2);
  EXPECT_EQ(request.TotalBytes, 5);
  EXPECT_EQ(Cells(2), (Texts{"incomplete.mp3"}));
}

TEST(RecycleBin, ThePlatformsBinsAreKnown) {
  EXPECT_TRUE(IsInRecycleBin("C:" + kSep + "Recycled" + kSep));
  EXPECT_TRUE(IsInRecycleBin("C:" + kSep + "$Recycle.Bin" + kSep + "S-1" + kSep));
  EXPECT_FALSE(IsInRecycleBin("C:" + kSep + "music" + kSep + "RECYCLED" + kSep));
  EXPECT_FALSE(IsInRecycleBin("C:" + kSep + "music" + kSep));
#ifndef _WIN32
  EXPECT_TRUE(IsInRecycleBin("/mnt/.Trash-1000/files/"));
  EXPECT_TRUE(IsInRecycleBin("/mnt/.Trash/1000/"));
  EXPECT_TRUE(IsInRecycleBin("/mnt/.Trash-1000"));
  EXPECT_FALSE(IsInRecycleBin("/mnt/.Trash-metal/"));
  EXPECT_FALSE(IsInRecycleBin("/mnt/.Trash-/"));
  EXPECT_FALSE(IsInRecycleBin("/mnt/Trash/"));
  setenv("XDG_DATA_HOME", "/home/ann/data", 1);
  EXPECT_TRUE(IsInRecycleBin("/home/ann/data/Trash/files/"));
  EXPECT_FALSE(IsInRecycleBin("/home/ann/data/Trashy/"));
  unsetenv("XDG_DATA_HOME");
#endif
}

#ifndef _WIN32
TEST_F(FileSearchTest, DeletedFilesAreCountedButNotAdded) {
  music.File(".Trash-1000/files/a.mp3");
  music.File("b.mp3");
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  FileSearch(tallow, drives, nullptr).WalkFolderTree(request);
  EXPECT_EQ(request.FilesFound, 2);
  EXPECT_EQ(Cells(2), (Texts{"b.mp3"}));
}

TEST_F(FileSearchTest, TotalSizesBeyondTwoGibibytesAreCounted) {
  for (const char* name : {"a.mp3", "b.mp3"}) {
    const std::string path = music.File(name);
    std::filesystem::resize_file(path, 1'500'000'000);
  }
  music.File("c.mp3");
  FileSearchRequest request{.AddToLibrary = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  FileSearch search(tallow, drives, nullptr);
  EXPECT_EQ(search.AddFilesInFolder(request), 3'000'000'001);
  EXPECT_EQ(request.FilesFound, 3);
}

TEST_F(FileSearchTest, LinkedFoldersAreEnteredAfterTheDrivesAndOnlyOnce) {
  const TempFolder elsewhere;
  elsewhere.File("far.mp3");
  music.File("a/real.mp3");
  std::filesystem::create_directory_symlink(music / "a", music / "1 to a");
  std::filesystem::create_directory_symlink(elsewhere.path(), music / "2 to elsewhere");
  std::filesystem::create_directory_symlink(elsewhere.path(), music / "3 to elsewhere");
  std::filesystem::create_directory_symlink(music.path(), music / "a/cycle");
  std::filesystem::create_directory_symlink(music.path(), elsewhere / "back");
  std::filesystem::create_directory_symlink(music / "nowhere", music / "broken");
  music.File("z.mp3");
  SearchMusic();
  ASSERT_EQ(library.UBoundOfMp3Array(), 3);
  EXPECT_EQ(library.Mp3Info(2, 3), "far.mp3");
  EXPECT_EQ(library.Mp3Info(1, 3), elsewhere.path());
}

TEST_F(FileSearchTest, LinksIntoTheKernelsFileSystemsAreNotFollowed) {
  const TempFolder elsewhere;
  elsewhere.File("far.mp3");
  std::filesystem::create_directory_symlink(elsewhere.path(), music / "link");
  TestDrives drives({{music.path()}});
  drives.forbidden_link = music / "link";
  Search(drives);
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_FALSE(SystemDrives()->MayFollow("/proc/self"));
  EXPECT_TRUE(SystemDrives()->MayFollow(elsewhere.path()));
}

TEST_F(FileSearchTest, LinkedFilesAreSongs) {
  const TempFolder elsewhere;
  std::filesystem::create_symlink(elsewhere.File("far.mp3"), music / "near.mp3");
  SearchMusic();
  EXPECT_EQ(Songs(), (Texts{"near.mp3"}));
}

TEST_F(FileSearchTest, PipesAndDevicesAreNeverOpened) {
  ASSERT_EQ(mkfifo((music / "pipe.mp3").c_str(), 0600), 0);
  music.File("a.mp3");
  SearchMusic();
  EXPECT_EQ(Songs(), (Texts{"a.mp3"}));
}

TEST_F(FileSearchTest, NamesOfAnyBytesAreKept) {
  const std::string invalid = "caf\xE9 \xFF.mp3";
  const std::string broken = "line\nbreak.mp3";
  const std::string longest = std::string(251, 'x') + ".mp3";
  for (const std::string& name : {invalid, broken, longest}) music.File(name);
  SearchMusic();
  Texts expected{invalid, broken, longest};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(Songs(), expected);
}
#endif

TEST_F(FileSearchTest, MountPointsBelowAreNotEntered) {
  music.File("a.mp3");
  music.File("mnt/b.mp3");
  TestDrives drives({{music.path()}, {music / "mnt/"}});
  drives.mount_point = music / "mnt/";
  Search(drives);
  EXPECT_EQ(Songs(), (Texts{"a.mp3", "mnt" + kSep + "b.mp3"}));
}

TEST_F(FileSearchTest, ADriveInsideAnotherIsWalkedOnce) {
  music.File("a.mp3");
  music.File("sub/b.mp3");
  Search(TestDrives({{music.path()}, {music / "sub/"}, {music.path()}}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
}

TEST_F(FileSearchTest, TheWalkIsDepthFirstFilesBeforeSubfolders) {
  for (const char* file : {"z.mp3", "a/m.mp3", "a/a/n.mp3", "b/o.mp3"}) music.File(file);
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  FileSearch(tallow, drives, nullptr).WalkFolderTree(request);
  EXPECT_EQ(library.Mp3Info(2, 1), "z.mp3");
  const Texts names = Cells(2);
  const auto place = [&](const char* name) {
    return std::find(names.begin(), names.end(), name) - names.begin();
  };
  EXPECT_EQ(place("n.mp3"), place("m.mp3") + 1);
  EXPECT_TRUE(FolderExists(request.Folder));
  EXPECT_NE(request.Folder, music.path());
}

/// Reference implementation of the walk: plain recursion, one enumeration for files and one for
/// folders.
void ReferenceWalk(const std::string& folder, Texts& found) {
  const FolderListing files = ListFolder(folder, {.pattern = "*.mp3"});
  for (const FileEntry& file : files.files) found.push_back(folder + file.name);
  const FolderListing all = ListFolder(folder, {.pattern = "*", .subfolders = true});
  for (const SubfolderEntry& entry : all.subfolders)
    if (!entry.linked) ReferenceWalk(folder + entry.name + kSeparator, found);
}

TEST_F(FileSearchTest, ReadingAheadFindsWhatPlainRecursionFindsInTheSameOrder) {
  std::mt19937 random(23);
  std::vector<std::string> folders{""};
  for (int k = 0; k < 300; ++k) {
    const std::string above = folders[random() % folders.size()];
    if (random() % 3 == 0)
      folders.push_back(above + "d" + std::to_string(k) + "/");
    else
      music.File(above + std::to_string(k) + (random() % 4 == 0 ? ".txt" : ".mp3"));
  }
  for (const std::string& folder : folders)
    if (!folder.empty()) music.Folder(folder);
  Texts expected;
  ReferenceWalk(music.path(), expected);
  SearchMusic();
  Texts found;
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    found.push_back(std::string(library.Mp3Info(1, row)) + std::string(library.Mp3Info(2, row)));
  EXPECT_EQ(found, expected);
  EXPECT_GT(found.size(), 100U);
}

#ifdef _WIN32
constexpr const char* kPlayer = "WinAmp.exe";
#else
constexpr const char* kPlayer = "Tallow-Player";
#endif

/// Makes an executable file with the player's name.
std::string MakePlayer(const TempFolder& folder, const std::string& inside) {
  const std::string path = folder.File(inside + kPlayer);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  return path;
}

TEST_F(FileSearchTest, ThePlayerIsFoundInATree) {
  const std::string player = MakePlayer(music, "a/b/");
  const TestDrives drives({});
  const std::string found = FindWinampUnder(music.path(), drives);
#ifdef _WIN32
  EXPECT_EQ(found, ToLower(player));
#else
  EXPECT_EQ(found, player);
#endif
  EXPECT_EQ(FindWinampUnder(music / "none/", drives), "");
}

TEST_F(FileSearchTest, WithoutAPlayerNearbyTheHardDrivesAreSearched) {
  for (const char* drive : {"cd/", "d/", "e/"}) MakePlayer(music, drive);
  music.Folder("c");
  const TestDrives drives(
      {{music / "cd/", kCdRom}, {music / "c/"}, {music / "d/"}, {music / "e/"}});
  WinampSearch(tallow, drives, &progress, [] { return std::string(); }).SearchDrivesForWinamp();
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), PlayerAt((music / "d/") + kPlayer));
  EXPECT_EQ(progress.status, (Texts{"Looking for WinAmp in " + (music / "cd/"),
                                    "Looking for WinAmp in " + (music / "c/"),
                                    "Looking for WinAmp in " + (music / "d/"), "Found WinAmp!!"}));
  EXPECT_EQ(progress.yields, 2 * 1999);
  clsINI saved;
  saved.GetandLoadIniInfo(tallow.settings_path);
  EXPECT_EQ(saved.LocOfWinAmpExe(), tallow.settings.LocOfWinAmpExe());
}

TEST_F(FileSearchTest, WithoutAnyPlayerTheSettingsAreNotTouched) {
  RemoveFile(tallow.settings_path);
  const TestDrives drives({{music.path()}});
  WinampSearch(tallow, drives, &progress, [] { return std::string(); }).SearchDrivesForWinamp();
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), "");
  EXPECT_FALSE(FileExists(tallow.settings_path));
}

TEST_F(FileSearchTest, ACancelledSearchForThePlayerStoresNothing) {
  music.Folder("c");
  MakePlayer(music, "d/");
  progress.on_yield = [this] { tallow.SearchCancelled = true; };
  const TestDrives drives({{music / "c/"}, {music / "d/"}});
  WinampSearch(tallow, drives, &progress, [] { return std::string(); }).SearchDrivesForWinamp();
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), "");
  EXPECT_FALSE(tallow.SearchCancelled);
}

#if !defined(_WIN32) || defined(TALLOW_HAS_OWN_PLAYER)
TEST_F(FileSearchTest, ThePlayerBesideTheProgramComesFirst) {
  ASSERT_FALSE(FindOwnPlayer().empty());
  EXPECT_EQ(FindOwnPlayer(), FindPlayerNearby());
  WinampSearch(tallow, TestDrives({{music.path()}}), &progress).SearchDrivesForWinamp();
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), FindPlayerNearby());
  EXPECT_EQ(progress.status, (Texts{"Found WinAmp!!"}));
  clsINI saved;
  saved.GetandLoadIniInfo(tallow.settings_path);
  EXPECT_EQ(saved.LocOfWinAmpExe(), FindPlayerNearby());
}
#endif

#ifndef _WIN32
TEST_F(FileSearchTest, AFileThatIsNotExecutableIsNotThePlayer) {
  std::filesystem::permissions(MakePlayer(music, "a/"), std::filesystem::perms::owner_read);
  EXPECT_EQ(FindWinampUnder(music.path(), TestDrives({})), "");
}
#endif

TEST_F(FileSearchTest, ASearchOfTheDisksStoresNothingAndPassesThePlayerNearby) {
  music.Folder("c");
  const std::string player = MakePlayer(music, "d/");
  const TestDrives drives({{music / "c/"}, {music / "d/"}});
  tallow.settings.LocOfWinAmpExe("/opt/chosen");
  const auto nearby = [] { return std::string("/opt/beside"); };
  const std::optional<std::string> found =
      DriveSearches(tallow, drives, nearby).SearchDisksForPlayer(progress);
  ASSERT_TRUE(found);
  EXPECT_TRUE(IsSamePathText(*found, player)) << *found;
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), "/opt/chosen");
  EXPECT_EQ(
      DriveSearches(tallow, TestDrives({{music / "c/"}}), nearby).SearchDisksForPlayer(progress),
      "");
  progress.on_yield = [this] { tallow.SearchCancelled = true; };
  EXPECT_EQ(DriveSearches(tallow, drives, nearby).SearchDisksForPlayer(progress), std::nullopt);
  EXPECT_FALSE(tallow.SearchCancelled);
}

#ifndef _WIN32
TEST_F(FileSearchTest, LinkedFoldersAreEnteredInTheOrderMet) {
  const TempFolder elsewhere;
  for (const char* name : {"a", "b", "c"}) {
    elsewhere.File(std::string(name) + "/" + name + ".mp3");
    std::filesystem::create_directory_symlink(elsewhere / name, music / name);
  }
  Texts met;
  for (const SubfolderEntry& entry : ListFolder(music.path(), {.subfolders = true}).subfolders)
    met.push_back(entry.name + ".mp3");
  SearchMusic();
  EXPECT_EQ(Cells(2), met);
  EXPECT_EQ(progress.status.size(), 4U);
}

TEST_F(FileSearchTest, ACancelTakesEffectBeforeALinkedFolder) {
  const TempFolder elsewhere;
  elsewhere.File("far.mp3");
  music.File("near.mp3");
  std::filesystem::create_directory_symlink(elsewhere.path(), music / "link");
  progress.on_song = [this] { tallow.SearchCancelled = true; };
  SearchMusic();
  EXPECT_EQ(Cells(2), (Texts{"near.mp3"}));
  EXPECT_FALSE(tallow.SearchCancelled);
}

TEST_F(FileSearchTest, ThePlayerOnThePathComesNext) {
  const std::string player = MakePlayer(music, "bin/");
  const std::string before = std::getenv("PATH");
  setenv("PATH", ("relative:" + (music / "none") + ":" + (music / "bin")).c_str(), 1);
  const std::string beside = FindPlayerNearby();
  EXPECT_TRUE(beside == player || FolderOfPath(beside) == FolderOfPath(ExecutablePath()));
  EXPECT_EQ(FindPlayerOnPath(), player);
  setenv("PATH", "relative", 1);
  EXPECT_EQ(FindPlayerOnPath(), "");
  setenv("PATH", before.c_str(), 1);
}

TEST(RecycleBin, TheUsersTrashIsKnownBehindALinkToo) {
  const TempFolder home;
  home.Folder("real/data/Trash/files");
  std::filesystem::create_directory_symlink(home / "real", home / "link");
  setenv("XDG_DATA_HOME", (home / "link/data").c_str(), 1);
  EXPECT_TRUE(IsInRecycleBin(home / "real/data/Trash/files/"));
  EXPECT_TRUE(IsInRecycleBin(home / "link/data/Trash/"));
  unsetenv("XDG_DATA_HOME");
}
#endif

TEST_F(FileSearchTest, UnreadFoldersAreSearchedOnceTheirDisksRespond) {
  music.File("one/deep/a.mp3");
  music.File("two/b.mp3");
  library.RememberUnread(music.Folder("one"), true, "Input/output error");
  library.RememberUnread(music.Folder("two"), true, "Input/output error");
  const TestDrives drives({});
  FileSearch search(tallow, drives, &progress);
  search.SearchUnreadFolders([&](const std::string& folder) { return folder == music / "two/"; });
  EXPECT_EQ(Cells(2), Texts{"b.mp3"});
  ASSERT_EQ(library.UnreadFoldersNow().size(), 1U);
  EXPECT_EQ(library.UnreadFoldersNow()[0].path, music / "one/");
  search.SearchUnreadFolders([](const std::string&) { return true; });
  EXPECT_EQ(Cells(2), (Texts{"b.mp3", "a.mp3"}));
  EXPECT_TRUE(library.UnreadFoldersNow().empty());
}

TEST_F(FileSearchTest, ACancelledSearchOfAnUnreadFolderIsRepeated) {
  music.File("one/a.mp3");
  music.File("one/deep/b.mp3");
  music.File("two/c.mp3");
  library.RememberUnread(music.Folder("one"), true, "Input/output error");
  library.RememberUnread(music.Folder("two"), true, "Input/output error");
  progress.on_song = [this] { tallow.SearchCancelled = true; };
  const TestDrives drives({});
  FileSearch(tallow, drives, &progress).SearchUnreadFolders([](const std::string&) {
    return true;
  });
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
  const std::vector<UnreadFolder> unread = library.UnreadFoldersNow();
  ASSERT_EQ(unread.size(), 2U);
  EXPECT_EQ(unread[0].path, music / "one/");
  EXPECT_TRUE(unread[0].below);
  EXPECT_EQ(unread[0].problem, "Input/output error");
  EXPECT_EQ(unread[1].path, music / "two/");
}

TEST_F(FileSearchTest, TotalsCoverAllLevels) {
  music.File("a.mp3", "1");
  music.File("x/b.mp3", "22");
  music.File("x/y/c.mp3", "333");
  music.File("z/d.mp3", "4444");
  FileSearchRequest request{.Recurse = true, .Folder = music.path(), .Pattern = "*.mp3"};
  const TestDrives drives({});
  EXPECT_EQ(FileSearch(tallow, drives, nullptr).WalkFolderTree(request), 10);
  EXPECT_EQ(request.TotalBytes, 10);
  EXPECT_EQ(request.FilesFound, 4);
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "app/data_paths.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "library/library_file.h"
#include "tests/system_fixture.h"
#ifndef _WIN32
#include <sys/stat.h>

#include "tests/as_nobody_linux.h"
#endif

namespace tallow {
namespace {

TEST_F(SystemTest, TheFirstStartFindsSongsAndShowsTheSampleJukebox) {
  EXPECT_TRUE(Start());
  EXPECT_TRUE(FolderExists(GroupingFolder(application.path())));
  EXPECT_TRUE(FolderExists(SystemFolder(application.path())));
  EXPECT_EQ(windows->log, (Texts{"splash", "cancel on", "cancel off", "cancel on", "found on",
                                 "cancel off", "found off", "jukebox", "splash off", "tip"}));
  EXPECT_TRUE(Searched());
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
  EXPECT_EQ(InspectLibrary(Library()).usable, 3);
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_EQ(SongsOnShow("New"), 3U);
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_EQ(tallow->help_file, application.path() + "tallowhelp.hlp");
  EXPECT_TRUE(windows->messages.empty());
  EXPECT_TRUE(windows->asked.empty());
  EXPECT_TRUE(windows->notices.empty());
  clsINI saved;
  saved.GetandLoadIniInfo(Settings());
  EXPECT_EQ(saved.NumerOfRecordsInTheMain(), 3);
  const auto list = ReadWholeFile(saved.FileContainingTargetDirectories());
  EXPECT_EQ(list, (music / "a/") + "\r\n" + (music / "b/") + "\r\n");
}

TEST_F(SystemTest, TheSecondRunSearchesNothing) {
  Start();
  const auto library = ReadWholeFile(Library());
  const auto settings = ReadWholeFile(Settings());
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->log, (Texts{"splash", "jukebox", "splash off", "tip"}));
  EXPECT_TRUE(windows->progress.status.empty());
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_EQ(ReadWholeFile(Library()), library);
  EXPECT_EQ(ReadWholeFile(Settings()), settings);
}

TEST_F(SystemTest, FilesAddedAndRemovedBetweenRunsAreDetected) {
  Start();
  Rank();
  MakeSong("b/four.mp3", {.artist = "ABBA"});
  RemoveFile(music / "a/one.mp3");
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 4);
  EXPECT_EQ(RankOf("four.mp3"), "2");
  EXPECT_EQ(RankOf("one.mp3"), "no such song");
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_EQ(RankOf("three.mp3"), ranked[2].second);
}

TEST_F(SystemTest, RecreatedSettingsGetTheSongCountOfTheLibrary) {
  Start();
  Rank();
  RemoveFile(Settings());
  EXPECT_TRUE(Start());
  EXPECT_FALSE(Searched());
  EXPECT_TRUE(windows->asked.empty());
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
  ExpectRanks();
}

TEST_F(SystemTest, DamagedSettingsAreBackedUpAndRebuilt) {
  Start();
  Rank();
  const std::string damaged = "list\r\ngrouping\r\nabc\r\n";
  WriteFileAtomically(Settings(), damaged);
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_EQ(
      windows->asked[0],
      "The settings cannot be read.\n\nTallowOrganizer.ini, line 3: 'abc' is not a "
      "number\n\nTallow can create new settings: it reads the songs and ranks from the song "
      "library. If there is no library, it searches the drives for songs. The damaged file is kept "
      "as TallowOrganizer.ini.bak beside it.\n\nContinue? (No exits Tallow and changes nothing.)");
  EXPECT_EQ(ReadWholeFile(Settings() + ".bak"), damaged);
  ExpectRanks();
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, DamagedSettingsAreKeptUnderAnotherNameIfBakIsTaken) {
  Start();
  Rank();
  const std::string damaged = "list\r\ngrouping\r\nabc\r\n";
  WriteFileAtomically(Settings(), damaged);
  CreateFolder(Settings() + ".bak");
  EXPECT_TRUE(Start());
  EXPECT_EQ(ReadWholeFile(Settings() + ".damaged"), damaged);
  EXPECT_TRUE(FolderExists(Settings() + ".bak"));
  ExpectRanks();
}

TEST_F(SystemTest, SettingsThatCannotBeWrittenAreReported) {
  CreateFolder(GroupingFolder(application.path()));
  CreateFolder(SystemFolder(application.path()));
  CreateFolder(Settings() + ".new");
  EXPECT_TRUE(Start());
  ASSERT_FALSE(windows->notices.empty());
  EXPECT_TRUE(windows->notices[0].starts_with("The settings could not be saved. " + Settings()))
      << windows->notices[0];
  EXPECT_FALSE(tallow->settings.CreateNewIniFile(Settings(), application.path()));
}

TEST_F(SystemTest, TheStartLoadsThePreferencesAndNamesDamagedOnes) {
  EXPECT_TRUE(Start());
  const std::string path = PreferencesPath(application.path());
  EXPECT_FALSE(FileExists(path));
  application.File("Grouping/System/Preferences.json", R"({"style":"modern"})");
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->preferences.style(), Style::kModern);
  EXPECT_EQ(windows->notices, std::vector<std::string>{});
  application.File("Grouping/System/Preferences.json", "{");
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->preferences.style(), Style::kClassic);
  EXPECT_EQ(windows->notices,
            std::vector<std::string>{path + " is damaged. It was renamed to end in .bak. Tallow "
                                            "runs in the classic style now. To choose again, open "
                                            "Tools > Preferences."});
}

TEST_F(SystemTest, ARefusedOfferEndsTheStartAndChangesNothing) {
  Start();
  WriteFileAtomically(Settings(), "list\r\ngrouping\r\nabc\r\n");
  EXPECT_FALSE(Start(false));
  EXPECT_EQ(windows->log, (Texts{"splash", "splash off"}));
  EXPECT_TRUE(windows->open.empty());
  EXPECT_EQ(ReadWholeFile(Settings()), "list\r\ngrouping\r\nabc\r\n");
  EXPECT_FALSE(FileExists(Settings() + ".bak"));
}

TEST_F(SystemTest, ADamagedLibraryIsBackedUpAndItsReadableSongsSurvive) {
  Start();
  Rank();
  const std::string whole = ReadWholeFile(Library()).value();
  const std::string damaged = whole.substr(0, whole.size() - 5);
  WriteFileAtomically(Library(), damaged);
  RemoveFile(Library() + ".bak");
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_TRUE(windows->asked[0].starts_with("The song library " + Library() +
                                            " is damaged: the record that begins at byte "))
      << windows->asked[0];
  EXPECT_EQ(ReadWholeFile(Library() + ".bak"), damaged);
  EXPECT_TRUE(Searched());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
  int kept = 0;
  for (const auto& [name, rank] : ranked) kept += RankOf(name) == rank;
  EXPECT_EQ(kept, 2);
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, ADamagedLibraryIsUnchangedWhenTheOfferIsRefused) {
  Start();
  RemoveFile(Library() + ".bak");
  WriteFileAtomically(Library(), "garbage");
  EXPECT_FALSE(Start(false));
  EXPECT_EQ(ReadWholeFile(Library()), "garbage");
}

TEST_F(SystemTest, ARebuildOfAMissingLibraryIsOffered) {
  Start();
  RemoveFile(Library());
  RemoveFile(Library() + ".bak");
  EXPECT_FALSE(Start(false));
  EXPECT_EQ(
      windows->asked,
      (Texts{"The song library " + Library() +
             " is missing. The settings count 3 songs in it.\n\nTallow can search the drives "
             "again. All ranks are lost.\n\nContinue? (No exits Tallow and changes nothing.)"}));
  EXPECT_TRUE(Start());
  EXPECT_TRUE(Searched());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
}

TEST_F(SystemTest, AShortLibraryIsBackedUpAndItsRanksSurvive) {
  Start();
  Rank();
  const auto whole = ReadWholeFile(Library());
  tallow->settings.NumerOfRecordsInTheMain(7);
  tallow->SaveSettings();
  // Without its checksum, the library cannot be verified.
  RemoveFile(application / "Grouping/FileLocNames.more");
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_TRUE(windows->asked[0].starts_with("The song library " + Library() +
                                            " holds 3 songs, but the settings count 7.\n\n"
                                            "Tallow can search the drives again. Songs that the "
                                            "library still shows keep their ranks. The damaged "
                                            "file is kept as FileLocNames.lmz.bak beside it."))
      << windows->asked[0];
  EXPECT_EQ(ReadWholeFile(Library() + ".bak"), whole);
  ExpectRanks();
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
}

TEST_F(SystemTest, AKillBetweenLibraryAndSettingsCostsNothing) {
  Start();
  Rank();
  tallow->settings.NumerOfRecordsInTheMain(1);
  tallow->SaveSettings();
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
  EXPECT_FALSE(Searched());
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
  ExpectRanks();
  tallow->settings.NumerOfRecordsInTheMain(0);
  tallow->SaveSettings();
  EXPECT_TRUE(Start());
  EXPECT_FALSE(Searched());
  ExpectRanks();
}

TEST_F(SystemTest, AMissingFolderListIsWrittenAgain) {
  Start();
  const std::string list = tallow->settings.FileContainingTargetDirectories();
  const auto before = ReadWholeFile(list);
  RemoveFile(list);
  MakeSong("b/four.mp3", {});
  EXPECT_TRUE(Start());
  EXPECT_EQ(ReadWholeFile(list), before);
  EXPECT_EQ(RankOf("four.mp3"), "2");
  EXPECT_FALSE(Searched());
}

TEST_F(SystemTest, ARebuildThatFindsNothingIsNotRepeated) {
  Start();
  RemoveFile(Library());
  RemoveFile(Library() + ".bak");
  for (const char* song : {"a/one.mp3", "a/two.mp3", "b/three.mp3"}) RemoveFile(music / song);
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->asked.size(), 1U);
  EXPECT_TRUE(Searched());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 0);
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 0);
  EXPECT_EQ(ReadWholeFile(Library()), "");
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, AStartWithoutAnySongsSucceeds) {
  drives = TestDrives({});
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 0);
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->messages.empty());
}

TEST_F(SystemTest, ALibraryWithoutSongsAndLostSettingsStartASearch) {
  CreateFolders(SystemFolder(application.path()));
  WriteFileAtomically(Library(), "");
  EXPECT_TRUE(Start());
  EXPECT_TRUE(Searched());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
}

TEST_F(SystemTest, DataThatWasMovedWithTheProgramIsFound) {
  Start();
  Rank();
  const TempFolder elsewhere;
  std::filesystem::rename(std::filesystem::path(application / "Grouping"),
                          std::filesystem::path(elsewhere / "Grouping"));
  windows.emplace();
  tallow.emplace(elsewhere.path());
  System moved(*tallow, drives, *windows);
  EXPECT_TRUE(moved.Main(runtime_file));
  EXPECT_TRUE(windows->asked.empty());
  ExpectRanks();
  EXPECT_EQ(tallow->settings.LocOfGroupingDir(), GroupingFolder(elsewhere.path()));
}

TEST_F(SystemTest, AMissingRuntimeFileIsReportedAndEndsTheStart) {
  runtime_file = {music / "libqjpeg.so", "the package libqt6gui6"};
  EXPECT_FALSE(Start());
  EXPECT_EQ(
      windows->messages,
      (Texts{"A file that Tallow needs to run correctly is missing: libqjpeg.so\n\nIt belongs to "
             "the package libqt6gui6.\n\nThis information is also in the readme.txt file."}));
  EXPECT_EQ(windows->log, (Texts{"editor " + application.path() + "readme.txt"}));
  EXPECT_FALSE(FolderExists(GroupingFolder(application.path())));
  runtime_file.path = music / "a/one.mp3";
  EXPECT_TRUE(Start());
}

TEST_F(SystemTest, ADataFolderThatCannotBeMadeIsNamed) {
  application.File("Grouping");
  EXPECT_FALSE(Start());
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_TRUE(windows->messages[0].starts_with("Tallow cannot start.\n\n" +
                                               GroupingFolder(application.path()) + ": "))
      << windows->messages[0];
  EXPECT_EQ(windows->log, (Texts{"splash", "splash off"}));
}

TEST_F(SystemTest, ATagWithABadYearIsReportedAndTheStartContinues) {
  MakeSong("a/bad.mp3", {.artist = "Who", .year = "198x"});
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(music / "a/bad.mp3: the year in the tag, '198x', "));
  EXPECT_EQ(SongsOnShow(), 4U);
  EXPECT_EQ(windows->log.back(), "tip");
}

TEST_F(SystemTest, ALibraryThatCannotBeSavedIsNamed) {
  CreateFolders(SystemFolder(application.path()));
  CreateFolder(Library() + ".new");
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with("A file of the song library could not be saved: " +
                                              Library()))
      << windows->notices[0];
  EXPECT_EQ(SongsOnShow(), 3U);
}

TEST_F(SystemTest, ACancelledSearchKeepsWhatItFound) {
  drives = TestDrives({{music / "a/"}, {music / "b/"}});
  windows.emplace();
  tallow.emplace(application.path());
  windows->progress.on_song = [this] { tallow->SearchCancelled = true; };
  system.emplace(*tallow, drives, *windows);
  EXPECT_TRUE(system->Main(runtime_file));
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 2);
  EXPECT_EQ(SongsOnShow(), 2U);
}

#ifndef _WIN32
TEST_F(SystemTest, AwkwardFilesOnTheDriveStopNothing) {
  MakeSong("a/line\nbreak.mp3", {});
  MakeSong("folder\nbreak/x.mp3", {});
  MakeSong("a/caf\xE9.mp3", {});
  MakeSong("a/" + std::string(251, 'n') + ".mp3", {});
  MakeSong("a/demo [live.mp3", {});
  MakeSong("a/B#.mp3", {});
  ASSERT_EQ(mkfifo((music / "a/pipe.mp3").c_str(), 0600), 0);
  std::filesystem::create_directory_symlink(music.path(), music / "b/cycle");
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 9);
  EXPECT_EQ(SongsOnShow(), 9U);
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 9);
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 9);
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, AFolderWithoutPermissionIsSkipped) {
  std::filesystem::permissions(application.path(), std::filesystem::perms::all);
  std::filesystem::permissions(music / "b", std::filesystem::perms::none);
  {
    const AsNobody nobody;
    EXPECT_TRUE(Start());
    EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 2);
  }
  std::filesystem::permissions(music / "b", std::filesystem::perms::owner_all);
}
#endif

TEST_F(SystemTest, ADriveRootThatVanishedIsNoError) {
  drives = TestDrives({{music / "gone/"}, {music.path()}});
  EXPECT_TRUE(Start());
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
}

TEST_F(SystemTest, ARebuildThatCannotBeSavedShowsWhatItFound) {
  Start();
  RemoveFile(Library());
  RemoveFile(Library() + ".bak");
  CreateFolder(Library() + ".new");
  EXPECT_TRUE(Start());
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->messages.empty());
  EXPECT_TRUE(Start());
  EXPECT_EQ(SongsOnShow(), 3U);
}

TEST_F(SystemTest, AFolderListThatIsAFolderDoesNotPreventTheStart) {
  Start();
  const std::string list = tallow->settings.FileContainingTargetDirectories();
  RemoveFile(list);
  CreateFolder(list);
  MakeSong("b/four.mp3", {});
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->messages.empty());
  EXPECT_EQ(RankOf("four.mp3"), "2");
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(list + " cannot be read ("));
}

TEST_F(SystemTest, AFolderListInAMissingFolderDoesNotPreventTheStart) {
  Start();
  tallow->settings.FileContainingTargetDirectories(music / "gone/list.lmz");
  tallow->SaveSettings();
  MakeSong("b/four.mp3", {});
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->messages.empty());
  EXPECT_EQ(RankOf("four.mp3"), "2");
}

TEST_F(SystemTest, AMissingDataFolderIsAskedAbout) {
  Start();
  tallow->settings.LocOfGroupingDir(music / "disk/Grouping/");
  tallow->SaveSettings();
  const auto settings = ReadWholeFile(Settings());
  RemoveFile(Library());
  EXPECT_FALSE(Start(false));
  EXPECT_EQ(windows->asked.size(), 1U);
  EXPECT_EQ(ReadWholeFile(Settings()), settings);
  EXPECT_TRUE(Start());
  EXPECT_EQ(ReadWholeFile(Settings() + ".bak"), settings);
  EXPECT_EQ(tallow->settings.LocOfGroupingDir(), GroupingFolder(application.path()));
  EXPECT_EQ(SongsOnShow(), 3U);
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, ADamagedValueWithoutLettersIsStillReported) {
  Start();
  WriteFileAtomically(Settings(), std::string("list\r\ngrouping\r\n\0\0\0\r\n", 19));
  EXPECT_FALSE(Start(false));
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_NE(windows->asked[0].find("line 3: '"
                                   "???"
                                   "' is not a number"),
            std::string::npos)
      << windows->asked[0];
}

#ifndef _WIN32
TEST_F(SystemTest, NamesThatDifferOnlyInCaseDoNotGrowTheLibrary) {
  for (const char* song : {"a/song.mp3", "b/Song.mp3", "c/SONG.mp3", "c/song.mp3"})
    MakeSong(song, {});
  Start();
  const std::int32_t songs = tallow->library.UBoundOfMp3Array();
  Rank();
  for (int again = 0; again < 4; ++again) {
    EXPECT_TRUE(Start());
    EXPECT_EQ(tallow->library.UBoundOfMp3Array(), songs);
    ExpectRanks();
  }
}

TEST_F(SystemTest, UnreadableSettingsAreBackedUpAndRebuilt) {
  Start();
  Rank();
  for (const std::string& folder :
       {application.path(), GroupingFolder(application.path()), SystemFolder(application.path())})
    std::filesystem::permissions(folder, std::filesystem::perms::all);
  std::filesystem::permissions(Settings(), std::filesystem::perms::none);
  const AsNobody nobody;
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->asked.size(), 1U);
  EXPECT_TRUE(FileExists(Settings() + ".bak"));
  ExpectRanks();
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemTest, ASettingsFolderThatCannotBeReadEndsTheStart) {
  Start();
  const std::string folder = SystemFolder(application.path());
  std::filesystem::permissions(folder, std::filesystem::perms::none);
  {
    const AsNobody nobody;
    EXPECT_FALSE(Start());
  }
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  EXPECT_EQ(windows->messages,
            Texts{"Tallow cannot start.\n\n" + folder +
                  ": the folder cannot be read (Permission denied). Make it readable and start "
                  "Tallow again."});
  EXPECT_EQ(windows->asked, Texts{});
  EXPECT_TRUE(windows->open.empty());
}

TEST_F(SystemTest, NewSettingsBesideAnUnreadableLibraryAreNoSecondProblem) {
  Start();
  RemoveFile(Settings());
  std::filesystem::permissions(SystemFolder(application.path()), std::filesystem::perms::all);
  std::filesystem::permissions(Library(), std::filesystem::perms::none);
  const AsNobody nobody;
  EXPECT_FALSE(Start());
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_TRUE(
      windows->messages[0].starts_with("Tallow cannot start.\n\n" + Library() +
                                       ": the song library cannot be read (Permission denied)."))
      << windows->messages[0];
}

TEST_F(SystemTest, AnUnreadableLibraryIsUnchangedAndNamed) {
  Start();
  std::filesystem::permissions(Library(), std::filesystem::perms::none);
  const AsNobody nobody;
  EXPECT_FALSE(Start());
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_NE(windows->messages[0].find(Library() + ": the song library cannot be read ("),
            std::string::npos)
      << windows->messages[0];
  EXPECT_NE(windows->messages[0].find("Make it readable, or move it away, and start Tallow again."),
            std::string::npos);
}
#endif

}  // namespace
}  // namespace tallow

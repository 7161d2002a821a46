// SPDX-License-Identifier: GPL-3.0-or-later
// What start-up finds and opens after loading the library: the player and the first jukebox.
#include <filesystem>
#include <gtest/gtest.h>

#include "app/search/drive_searches.h"
#include "app/search/player_search.h"
#include "app/system.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "tests/row_numbers.h"
#include "tests/system_fixture.h"

namespace tallow {
namespace {

TEST_F(SystemTest, TheFirstRunFindsThePlayer) {
  Start();
  EXPECT_FALSE(tallow->player_path.empty());
  EXPECT_EQ(tallow->player_path, tallow->settings.LocOfWinAmpExe());
  clsINI saved;
  saved.GetandLoadIniInfo(Settings());
  EXPECT_EQ(saved.LocOfWinAmpExe(), tallow->player_path);
}

TEST_F(SystemTest, AMissingPlayerIsSearchedAndItsPathReplaced) {
  Start();
  tallow->settings.LocOfWinAmpExe(music / "gone/player");
  tallow->SaveSettings();
  std::filesystem::remove(std::filesystem::path(music / "z/winamp.exe"));
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->log,
            (Texts{"splash", "cancel on", "cancel off", "jukebox", "splash off", "tip"}));
  EXPECT_EQ(tallow->player_path, FindPlayerNearby());
  clsINI saved;
  saved.GetandLoadIniInfo(Settings());
  EXPECT_EQ(saved.LocOfWinAmpExe(), FindPlayerNearby());
}

TEST_F(SystemTest, WithAPlayerNearbyNoStartSearchesDrivesForAnother) {
  Start();
  for (const std::string& stored : {std::string(), music / "gone/tallow-player"}) {
    tallow->settings.LocOfWinAmpExe(stored);
    tallow->SaveSettings();
    windows.emplace();
    tallow.emplace(application.path());
    const std::string beside = application.File("beside");
    System with(*tallow, drives, *windows, [&] { return beside; });
    EXPECT_TRUE(with.Main(runtime_file));
    EXPECT_EQ(windows->progress.status, Texts{"Found WinAmp!!"});
    EXPECT_EQ(tallow->player_path, beside);
    EXPECT_FALSE(tallow->player_search_is_pending);
  }
}

TEST_F(SystemTest, ADeletedJukeboxGivesTheSampleAndKeepsTheRecentList) {
  Start();
  tallow->settings.LocOfLastSavedJukeBox("older.juk");
  tallow->settings.LocOfLastSavedJukeBox(application / "gone.juk");
  tallow->SaveSettings();
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_EQ(windows->notices, Texts{application / "gone.juk" +
                                    " is missing. The sample jukebox was opened instead. Other "
                                    "jukeboxes are in the File menu."});
  EXPECT_EQ(windows->messages, Texts{});
  EXPECT_EQ(tallow->settings.LocOfLastSavedJukeBox(), application / "gone.juk");
  EXPECT_EQ(tallow->settings.LocSecToLastSavedJukeBox(), "older.juk");
}

TEST_F(SystemTest, ALastJukeboxThatIsAFolderIsReported) {
  Start();
  CreateFolders(application / "folder.juk/x");
  tallow->settings.LocOfLastSavedJukeBox(application / "folder.juk");
  tallow->SaveSettings();
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_TRUE(windows->messages[0].starts_with("The jukebox could not be opened. " +
                                               (application / "folder.juk")))
      << windows->messages[0];
}

TEST_F(SystemTest, TheLastSavedJukeboxIsOpenedWithTheSongsAddedSince) {
  Start();
  const std::string path = application / "Grouping/my mix.juk";
  {
    Jukebox& saved = *windows->open[0];
    saved.Nodes().AddChild(nullptr, "Mine").Items().emplace_back(2, 2);
    saved.Nodes().Rename(*saved.Nodes().Find("Seasonal"), "Holidays");
    ASSERT_TRUE(saved.Save(path, tallow->library));
  }
  tallow->settings.LocOfLastSavedJukeBox(path);
  tallow->SaveSettings();
  MakeSong("b/four.mp3", {.artist = "Zappa"});
  EXPECT_TRUE(Start());
  EXPECT_TRUE(windows->messages.empty());
  Jukebox& jukebox = *windows->open[0];
  EXPECT_EQ(jukebox.Caption(), "MY MIX");
  EXPECT_EQ(jukebox.Tag(), "1");
  EXPECT_EQ(jukebox.FileLocation(), application / "Grouping/");
  EXPECT_EQ(jukebox.ColumnHeaders().size(), 2U);
  EXPECT_NE(jukebox.Nodes().Find("Holidays"), nullptr);
  EXPECT_EQ(jukebox.Nodes().Find("Seasonal"), nullptr);
  EXPECT_EQ(jukebox.Nodes().Find("Mine")->Items().size(), 1U);
  EXPECT_EQ(jukebox.Nodes().Find("All Songs")->Items().size(), 4U);
  EXPECT_NE(jukebox.Nodes().Find("Zappa", jukebox.Nodes().Find("Artist")), nullptr);
  EXPECT_EQ(windows->log, (Texts{"splash", "jukebox", "splash off", "tip"}));
  EXPECT_EQ(tallow->settings.LocOfLastSavedJukeBox(), path);
}

TEST_F(SystemTest, TheLastJukeboxIsOpenThoughASongCannotBeFiled) {
  Start();
  const std::string path = application / "Grouping/mix.juk";
  ASSERT_TRUE(windows->open[0]->Save(path, tallow->library));
  tallow->settings.LocOfLastSavedJukeBox(path);
  tallow->SaveSettings();
  MakeSong("a/bad.mp3", {.artist = "Who", .year = "198x"});
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(music / "a/bad.mp3: the year in the tag, '198x', "))
      << windows->notices[0];
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_EQ(windows->open[0]->Caption(), "MIX");
  EXPECT_EQ(windows->open[0]->Tag(), "1");
  EXPECT_EQ(SongsOnShow(), 4U);
  EXPECT_EQ(windows->log, (Texts{"splash", "jukebox", "splash off", "tip"}));
}

TEST_F(SystemTest, ALastJukeboxWithConfusedNumbersIsAskedAbout) {
  Start();
  const std::string path = application / "Grouping/mix.juk";
  // The jukebox was saved while song 3 was in row 2.
  const std::string second(tallow->library.Mp3Info(kFileName, 2));
  const std::string third(tallow->library.Mp3Info(kFileName, 3));
  ASSERT_TRUE(windows->open[0]->Save(path, tallow->library));
  tallow->settings.LocOfLastSavedJukeBox(path);
  tallow->SaveSettings();
  tallow->library.Mp3Info(kRecordNumber, 2, "3");
  tallow->library.Mp3Info(kRecordNumber, 3, "2");
  ASSERT_TRUE(tallow->library.Save());
  EXPECT_TRUE(Start(false));
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_NE(windows->asked[0].find("For song number 2 the jukebox has\n\n    " + second +
                                   "\n\nbut the library has\n\n    " + third + "\n"),
            std::string::npos)
      << windows->asked[0];
  EXPECT_EQ(windows->open[0]->Caption(), "MIX");
  EXPECT_EQ(SongsOnShow(), 3U);
  // The answer is stored.
  EXPECT_TRUE(Start());
  EXPECT_EQ(windows->asked, Texts{});
}

TEST_F(SystemTest, ALastJukeboxThatCannotBeLoadedIsReportedAndTheSampleIsBuilt) {
  Start();
  const std::string path = application.File("Grouping/mix.juk", "no jukebox");
  tallow->settings.LocOfLastSavedJukeBox(path);
  tallow->SaveSettings();
  EXPECT_TRUE(Start());
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_TRUE(windows->messages[0].starts_with("The jukebox could not be opened. " + path +
                                               ": at byte 2 it is damaged or cut off."))
      << windows->messages[0];
  EXPECT_TRUE(windows->messages[0].ends_with(
      "Tallow opens the sample jukebox instead. The file is unchanged."));
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_EQ(windows->open[0]->ColumnHeaders().size(), 2U);
  EXPECT_EQ(tallow->settings.LocOfLastSavedJukeBox(), path);
  EXPECT_EQ(ReadWholeFile(path), "no jukebox");
}

TEST_F(SystemTest, APlayerSearchCancelledAtTheStartIsPending) {
  Start();
  EXPECT_FALSE(tallow->player_search_is_pending);
  tallow->settings.LocOfWinAmpExe("");
  tallow->SaveSettings();
  const std::string player = music / "z/winamp.exe";
  std::filesystem::remove(std::filesystem::path(player));
  windows.emplace();
  tallow.emplace(application.path());
  windows->progress.on_yield = [this] { tallow->SearchCancelled = true; };
  System cancelled(*tallow, drives, *windows, [] { return std::string(); });
  EXPECT_TRUE(cancelled.Main(runtime_file));
  EXPECT_TRUE(tallow->player_search_is_pending);
  EXPECT_EQ(tallow->player_path, "");

  // A play command runs the pending search later.
  windows->progress.on_yield = {};
  DriveSearches nowhere(*tallow, drives, [] { return std::string(); });
  EXPECT_TRUE(nowhere.SearchForPlayer(windows->progress));
  EXPECT_EQ(tallow->settings.LocOfWinAmpExe(), "");
  DriveSearches nearby(*tallow, drives, [] { return std::string("/opt/player"); });
  EXPECT_TRUE(nearby.SearchForPlayer(windows->progress));
  EXPECT_EQ(tallow->settings.LocOfWinAmpExe(), "/opt/player");
  EXPECT_EQ(tallow->player_path, "/opt/player");
  clsINI saved;
  saved.GetandLoadIniInfo(Settings());
  EXPECT_EQ(saved.LocOfWinAmpExe(), "/opt/player");
}

TEST_F(SystemTest, WithoutAPlayerThePathIsEmpty) {
  Start();
  tallow->settings.LocOfWinAmpExe(music / "gone/player");
  tallow->SaveSettings();
  std::filesystem::remove(std::filesystem::path(music / "z/winamp.exe"));
  windows.emplace();
  tallow.emplace(application.path());
  System without(*tallow, drives, *windows, [] { return std::string(); });
  EXPECT_TRUE(without.Main(runtime_file));
  EXPECT_EQ(windows->progress.status, (Texts{"Looking for WinAmp in " + music.path()}));
  EXPECT_EQ(tallow->player_path, "");
  clsINI saved;
  saved.GetandLoadIniInfo(Settings());
  EXPECT_EQ(saved.LocOfWinAmpExe(), "");
}

TEST_F(SystemTest, TheFirstStartReportsAllSongsAndALaterOneOnlyChanges) {
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->scan, "3 new songs");
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->scan, "");
  MakeSong("a/four.mp3", {});
  RemoveFile(music / "b/three.mp3");
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->scan, "1 new song, 1 missing");
  EXPECT_TRUE(windows->notices.empty());
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->scan, "");
}

TEST_F(SystemTest, ConfusedNumbersAreRepairedAndReported) {
  ASSERT_TRUE(Start());
  Rank();
  clsMain& library = tallow->library;
  library.Mp3Info(kRecordNumber, 2, "3");
  library.Mp3Info(kRecordNumber, 3, "4");
  ASSERT_TRUE(library.Save());
  const auto before = ReadWholeFile(Library());
  ASSERT_TRUE(Start());
  ExpectRowsAreNumbers(tallow->library);
  ExpectRanks();
  EXPECT_EQ(ReadWholeFile(Library() + ".bak"), before);
  EXPECT_EQ(
      windows->notices,
      Texts{
          "An earlier version of Tallow had mixed up the numbers of songs in the song library. "
          "They were repaired; the library as it was is kept as FileLocNames.lmz.bak beside it."});
  ASSERT_TRUE(Start());
  EXPECT_TRUE(windows->notices.empty());
}

TEST_F(SystemTest, ALastJukeboxOnAnAwayDriveIsNotReportedAsGone) {
  ASSERT_TRUE(Start());
  // A drive that was connected before.
  KnownDrives drives({music / "stick/"});
  const std::string root = music.Folder("stick");
  music.File("stick/abba/a.mp3");
  drives.CheckDrives([] { return MountedVolumes(); });
  drives.UpdateFolders({root + "abba" + kSep}, {}, true);
  WriteFileAtomically(SystemFolder(application.path()) + "Drives.json", drives.Encode());
  tallow->library.AddSong(root + "abba" + kSep, "a.mp3", 1);
  ASSERT_TRUE(tallow->library.Save());
  std::filesystem::remove_all(std::filesystem::path(root));
  tallow->settings.LocOfLastSavedJukeBox(root + "mix.juk");
  tallow->SaveSettings();
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->notices, Texts{root + "mix.juk is on a drive that is away: " + root +
                                    ". The sample jukebox was opened instead."});
}

}  // namespace
}  // namespace tallow

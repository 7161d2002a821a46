// SPDX-License-Identifier: GPL-3.0-or-later
// How start-up handles files that were damaged, truncated or replaced.
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "library/library_file.h"
#include "tests/system_fixture.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class SystemFaults : public SystemTest {
 protected:
  SystemFaults() {
    Start();
    Rank();
  }

  std::string System(const std::string& name) const {
    return SystemFolder(application.path()) + name;
  }
  std::string List() const { return FolderListPath(application.path()); }
  static std::string Read(const std::string& path) { return ReadWholeFile(path).value_or("none"); }
  static void Change(const std::string& path, const std::string& from, const std::string& to) {
    std::string bytes = Read(path);
    const std::size_t at = bytes.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    WriteFileAtomically(path, bytes.replace(at, from.size(), to));
  }
  static bool Contains(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines)
      if (line.find(text) != std::string::npos) return true;
    return false;
  }
  bool StartChoosing(std::optional<std::size_t> choice,
                     const std::function<void()>& while_asked = {}) {
    windows.emplace();
    windows->on_choose = while_asked;
    windows->choice = choice;
    tallow.emplace(application.path());
    system.emplace(*tallow, drives, *windows);
    return system->Main(runtime_file);
  }
};

TEST_F(SystemFaults, AChangedByteOfTheLibraryIsReportedWithThreeChoices) {
  Change(Library(), "two.mp3", "twp.mp3");
  const std::string changed = Read(Library());
  EXPECT_FALSE(StartChoosing(std::nullopt));
  EXPECT_EQ(
      windows->asked,
      Texts{"The song library " + Library() +
            " has changed since Tallow wrote it: by a disk error, by another program, or because a "
            "backup was restored.\n\nUse It As It Is: it holds 3 songs. Choose this if you have "
            "restored a backup.\nUse the Last Good One: FileLocNames.lmz.bak beside it, with 3 "
            "songs. It may lack your last changes.\nSalvage It: Tallow searches the drives again. "
            "Songs that the library still shows keep their ranks.\n\nUnless it is used as it is, "
            "it is kept as FileLocNames.lmz.damaged beside it.\nClosing this window exits Tallow "
            "and changes nothing."});
  EXPECT_EQ(windows->choices, (Texts{"Use It As It Is", "Use the Last Good One", "Salvage It"}));
  EXPECT_EQ(Read(Library()), changed);
}

TEST_F(SystemFaults, ALibraryThatIsUsedAsItIsIsNotAskedAboutAgain) {
  // Replaces the library with an older backup that has other ranks.
  Change(Library(),
         std::string("\1\0"
                     "4",
                     3),
         std::string("\1\0"
                     "9",
                     3));
  ASSERT_TRUE(StartChoosing(0));
  EXPECT_EQ(windows->asked.size(), 1U);
  EXPECT_FALSE(Searched());
  ASSERT_TRUE(StartChoosing(std::nullopt));
  EXPECT_TRUE(windows->asked.empty());
  bool found = false;
  for (std::int32_t row = 1; row <= 3; ++row)
    found = found || tallow->library.Mp3Info(kSongRank, row) == "9";
  EXPECT_TRUE(found);
}

TEST_F(SystemFaults, TheLastGoodLibraryCanBeUsed) {
  // Saves twice, so that the last good library has the ranks.
  tallow->library.MainIsDirty(true);
  tallow->library.Mp3Info(kSongRank, 1, "9");
  tallow->library.Save();
  Change(Library(), "two.mp3", "twp.mp3");
  const std::string changed = Read(Library());
  ASSERT_TRUE(StartChoosing(1));
  ExpectRanks();
  EXPECT_FALSE(Searched());
  EXPECT_EQ(Read(Library() + ".damaged"), changed);
  ASSERT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
  ExpectRanks();
}

TEST_F(SystemFaults, AChangedLibraryCanBeSalvaged) {
  Change(Library(), "two.mp3", "twp.mp3");
  const std::string changed = Read(Library());
  const std::string good = Read(Library() + ".bak");
  ASSERT_TRUE(StartChoosing(2));
  EXPECT_TRUE(Searched());
  EXPECT_EQ(RankOf("one.mp3"), ranked[0].second);
  EXPECT_EQ(RankOf("three.mp3"), ranked[2].second);
  EXPECT_NE(RankOf("two.mp3"), "no such song");
  EXPECT_EQ(Read(Library() + ".damaged"), changed);
  tallow->library.Mp3Info(kSongRank, 1, "9");
  tallow->library.Save();
  // The last good library is kept until the next start.
  EXPECT_EQ(Read(Library() + ".bak"), good);
  ASSERT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
}

TEST_F(SystemFaults, FoldersThatCouldNotBeReadAreSearchedAtTheNextStart) {
  MakeSong("deep/er/four.mp3", {});
  tallow->library.RememberUnread(music / "deep/", true, "Input/output error");
  tallow->library.RememberUnread(music / "gone/", true, "Input/output error");
  tallow->library.FinishScan(false);
  ASSERT_TRUE(Start());
  EXPECT_NE(RankOf("four.mp3"), "no such song");
  EXPECT_TRUE(tallow->library.UnreadFoldersNow().empty());
  ExpectRanks();
}

TEST_F(SystemFaults, ADamagedFolderListThatCannotBeBackedUpIsUnchanged) {
  Change(List(), music.path(), "somewhere");
  CreateFolder(List() + ".bak");
  application.File("Grouping/System/LocOfMainTargetFiles.lmz.bak/x");
  const std::string damaged = Read(List());
  ASSERT_TRUE(Start());
  EXPECT_TRUE(Contains(windows->notices,
                       List() + " is damaged, and cannot be copied to a name that ends in .bak ("));
  EXPECT_EQ(Read(List()), damaged);
  ExpectRanks();
}

TEST_F(SystemFaults, AMissingFolderOfTheFolderListIsReplacedAndReported) {
  tallow->settings.FileContainingTargetDirectories(application / "Grouqing/list.lmz");
  tallow->SaveSettings();
  const std::string wrong = Read(Settings());
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->notices,
            Texts{"The folder " + (application / "Grouqing/") +
                  " named in the settings does not exist, so Tallow uses " +
                  (application / "Grouping/System/") +
                  ". The old settings are kept as TallowOrganizer.ini.bak beside them."});
  EXPECT_EQ(Read(Settings() + ".bak"), wrong);
  EXPECT_EQ(tallow->settings.FileContainingTargetDirectories(), List());
  ExpectRanks();
}

TEST_F(SystemFaults, TheSettingsFromBeforeTheStartAreBackedUp) {
  tallow->settings.LocOfWinAmpExe(application / "gone/player");
  tallow->settings.LocOfGroupingDir(application / "Grouqing/");
  tallow->SaveSettings();
  const std::string wrong = Read(Settings());
  // The start replaces both the folder and the player.
  ASSERT_TRUE(Start());
  EXPECT_EQ(Read(Settings() + ".bak"), wrong);
}

TEST_F(SystemFaults, ForALibraryThatDoesNotParseTheLastGoodOneIsOffered) {
  WriteFileAtomically(Library(), Read(Library()).substr(0, 50));
  ASSERT_TRUE(StartChoosing(0));
  EXPECT_EQ(windows->choices, (Texts{"Use the Last Good One", "Salvage It"}));
  EXPECT_TRUE(windows->asked.at(0).starts_with("The song library " + Library() + " is damaged: "));
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
  EXPECT_FALSE(Searched());
}

TEST_F(SystemFaults, DamagedSettingsStayBackedUpThoughTheLibraryIsDamagedToo) {
  const std::string wrong = "list\r\ngrouping\r\nabc\r\n";
  WriteFileAtomically(Settings(), wrong);
  RemoveFile(Library());
  ASSERT_TRUE(StartChoosing(0));
  EXPECT_EQ(windows->asked.size(), 2U);
  EXPECT_EQ(Read(Settings() + ".bak"), wrong);
  EXPECT_EQ(windows->notices.at(0),
            "New settings were created. Saved jukeboxes are opened with Open in the File menu.");
}

TEST_F(SystemFaults, UnreadFoldersThatCannotBeWrittenAreTriedAgain) {
  const std::string path = SystemFolder(application.path()) + "Unread.json";
  CreateFolder(path + ".new");
  clsMain& library = tallow->library;
  library.RememberUnread(music / "deep/", true, "Input/output error");
  const auto rank = [&](const char* rank) {
    library.Mp3Info(kSongRank, 1, rank);
    library.Save();
  };
  rank("8");
  rank("9");
  const Texts problems = library.TakeProblems();
  EXPECT_EQ(std::count_if(
                problems.begin(), problems.end(),
                [&](const std::string& text) {
                  return text.starts_with(path) &&
                         text.ends_with(
                             ". Until it is written, folders that could not be read are not "
                             "searched again. Free some disk space, or make the file writable.");
                }),
            1);
  std::filesystem::remove(std::filesystem::path(path + ".new"));
  rank("8");
  EXPECT_TRUE(FileExists(path));
}

TEST_F(SystemFaults, AnEmptyLibraryIsNotOfferedBesideAGoodOne) {
  WriteFileAtomically(Library(), {});
  EXPECT_FALSE(StartChoosing(std::nullopt));
  EXPECT_EQ(windows->choices, (Texts{"Use the Last Good One", "Salvage It"}));
  ASSERT_TRUE(StartChoosing(0));
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
}

TEST_F(SystemFaults, AGoodLibraryWithMoreSongsIsOfferedFirst) {
  const std::string whole = Read(Library());
  LibraryReader reader(whole);
  LibraryRecord record;
  for (int k = 0; k < 2; ++k) ASSERT_EQ(reader.Next(record), LibraryReader::Result::kRecord);
  WriteFileAtomically(Library(), whole.substr(0, reader.position()));
  EXPECT_FALSE(StartChoosing(std::nullopt));
  EXPECT_EQ(windows->choices, (Texts{"Use the Last Good One", "Use It As It Is", "Salvage It"}));
}

TEST_F(SystemFaults, ForAMissingLibraryTheLastGoodOneIsOffered) {
  RemoveFile(Library());
  ASSERT_TRUE(StartChoosing(0));
  EXPECT_EQ(
      windows->asked.at(0),
      "The song library " + Library() +
          " is missing.\n\nUse the Last Good One: FileLocNames.lmz.bak beside it, with 3 songs. "
          "It may lack your last changes.\nSearch Again: Tallow searches the drives. All "
          "ranks are lost.\nClosing this window exits Tallow and changes nothing.");
  EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3);
}

TEST_F(SystemFaults, AWrongCountIsCorrectedWhenTheLibraryIsComplete) {
  tallow->settings.NumerOfRecordsInTheMain(9);
  tallow->SaveSettings();
  ASSERT_TRUE(Start());
  EXPECT_TRUE(windows->asked.empty());
  EXPECT_FALSE(Searched());
  EXPECT_EQ(tallow->settings.NumerOfRecordsInTheMain(), 3);
  ExpectRanks();
}

TEST_F(SystemFaults, ADamagedCompanionIsBackedUpAndReported) {
  const std::string companion = application / "Grouping/FileLocNames.more";
  Change(companion, "TALLOW", "TOLLOW");
  const std::string damaged = Read(companion);
  ASSERT_TRUE(Start());
  EXPECT_TRUE(Contains(windows->notices,
                       companion + " is damaged. A copy was kept with .bak appended to its name."));
  EXPECT_EQ(Read(companion + ".bak"), damaged);
  ExpectRanks();
}

TEST_F(SystemFaults, AFolderInPlaceOfTheCompanionIsReportedAndSavingWorks) {
  const std::string companion = application / "Grouping/FileLocNames.more";
  RemoveFile(companion);
  CreateFolder(companion);
  ASSERT_TRUE(Start());
  EXPECT_TRUE(Contains(windows->notices, companion + " cannot be read ("));
  tallow->library.Mp3Info(kSongRank, 1, "9");
  EXPECT_TRUE(tallow->library.Save()) << tallow->library.SaveError();
  EXPECT_TRUE(FolderExists(companion + ".bak"));
  EXPECT_TRUE(FileExists(companion));
}

TEST_F(SystemFaults, TruncatedSettingsAreBackedUpAndCompleted) {
  const std::string whole = Read(Settings());
  for (const std::size_t length :
       {std::size_t{0}, whole.find("Grouping") + 3, whole.find("\r\n") + 9, whole.find(" 3 ") + 2,
        whole.size() - 2}) {
    WriteFileAtomically(Settings(), whole.substr(0, length));
    ASSERT_TRUE(Start()) << length;
    EXPECT_EQ(windows->notices.at(0),
              Settings() +
                  " is truncated. Missing settings were set to their defaults. The old settings "
                  "are kept as TallowOrganizer.ini.bak beside them. Saved jukeboxes are opened "
                  "with Open in the File menu.")
        << length;
    EXPECT_TRUE(windows->asked.empty()) << length;
    EXPECT_EQ(Read(Settings() + ".bak"), whole.substr(0, length));
    EXPECT_EQ(tallow->library.UBoundOfMp3Array(), 3) << length;
    EXPECT_FALSE(Searched() && length > 0 && length != whole.find("Grouping") + 3) << length;
    ExpectRanks();
    ASSERT_TRUE(Start());
    EXPECT_TRUE(windows->notices.empty()) << windows->notices.at(0);
  }
}

TEST_F(SystemFaults, AFailedWriteOfTheSettingsIsReportedOnce) {
  RemoveFile(Settings());
  CreateFolder(Settings());
  tallow->settings.IsItTiled(true);
  tallow->SaveSettings();
  tallow->SaveSettings();
  const std::vector<std::string> problems = tallow->TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with("The settings could not be saved. " + Settings() + ": "));
  EXPECT_TRUE(problems[0].ends_with(". Free some disk space, or make the file writable."));
  EXPECT_TRUE(tallow->TakeProblems().empty());
}

TEST_F(SystemFaults, ASettingsFileOfMoreThan16MegabytesIsRejected) {
  std::filesystem::resize_file(Settings(), (std::uintmax_t{16} << 20U) + 1);
  ASSERT_TRUE(Start());
  ASSERT_EQ(windows->asked.size(), 1U);
  EXPECT_NE(windows->asked[0].find("has more than 16777216 bytes"), std::string::npos);
  EXPECT_EQ(std::filesystem::file_size(Settings() + ".bak"), (std::uintmax_t{16} << 20U) + 1);
  ExpectRanks();
}

TEST_F(SystemFaults, MissingFoldersInTheSettingsAreReportedAndTheSettingsBackedUp) {
  const std::string before = Read(Settings());
  tallow->settings.LocOfGroupingDir(application / "Grouqing/");
  tallow->SaveSettings();
  const std::string wrong = Read(Settings());
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->notices.at(0),
            "The folder " + (application / "Grouqing/") +
                " named in the settings does not exist, so Tallow uses " +
                (application / "Grouping/") +
                ". The old settings are kept as TallowOrganizer.ini.bak beside them.");
  EXPECT_EQ(Read(Settings() + ".bak"), wrong);
  EXPECT_EQ(Read(Settings()), before);
  ExpectRanks();
}

TEST_F(SystemFaults, SettingsThatCannotBeBackedUpAreReported) {
  tallow->settings.LocOfGroupingDir(application / "Grouqing/");
  tallow->SaveSettings();
  for (const char* const suffix : {".bak", ".damaged"})
    CreateFolders(Settings() + suffix + kSep + "x");
  ASSERT_TRUE(Start());
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(
      "The folder " + (application / "Grouqing/") +
      " named in the settings does not exist, so Tallow uses " + (application / "Grouping/") +
      ". The old settings could not be kept: " + Settings()))
      << windows->notices[0];
  EXPECT_EQ(tallow->settings.LocOfGroupingDir(), application / "Grouping/");
  ExpectRanks();
}

TEST_F(SystemFaults, ALibraryThatIsDamagedAfterItsCheckEndsTheStartUnchanged) {
  Change(Library(), "two.mp3", "twp.mp3");
  EXPECT_FALSE(StartChoosing(0, [this] { WriteFileAtomically(Library(), "garbage"); }));
  EXPECT_EQ(windows->messages,
            Texts{"Tallow cannot start.\n\n" + Library() +
                  ": the song library cannot be read. Make it readable, or move it away, and "
                  "start Tallow again."});
  EXPECT_EQ(Read(Library()), "garbage");
  EXPECT_TRUE(windows->open.empty());
}

TEST_F(SystemFaults, AnUnreadableFolderListIsUnchangedAndReported) {
  RemoveFile(List());
  CreateFolder(List());
  MakeSong("a/new.mp3", {});
  ASSERT_TRUE(Start());
  EXPECT_TRUE(Contains(windows->notices, List() + " cannot be read ("));
  EXPECT_TRUE(Contains(windows->notices,
                       "), so it was not changed, and folders that only it names are not "
                       "processed. Make it readable and start Tallow again."));
  EXPECT_TRUE(FolderExists(List()));
  ExpectRanks();
  // The folders are known from the songs in the library.
  EXPECT_NE(RankOf("new.mp3"), "no such song");
}

TEST_F(SystemFaults, UnreadableUnsavedChangesAreKept) {
  // Larger than any valid file; a sparse file, so it occupies no disk space.
  const std::string path = application.File("Grouping/System/Jukebox-1.unsaved");
  std::filesystem::resize_file(path, std::uintmax_t{2} << 30U);
  ASSERT_TRUE(Start());
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(
      path + ": the unsaved changes in this file cannot be read (has more than "));
  EXPECT_TRUE(windows->notices[0].ends_with("). The next start offers them again."));
  EXPECT_TRUE(FileExists(path));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cls_ini.h"

#include <gtest/gtest.h>

#include "tests/library_fixture.h"
#include "util/errors.h"

namespace tallow {
namespace {

class ClsIni : public testing::Test {
 protected:
  /// Loads settings from the given file content.
  clsINI Load(const std::string& text) {
    clsINI settings;
    settings.GetandLoadIniInfo(folder.File("ini", text));
    return settings;
  }

  TempFolder folder;
  std::string path = folder / "TallowOrganizer.ini";
};

TEST_F(ClsIni, StartsEmpty) {
  const clsINI settings;
  EXPECT_EQ(settings.NumerOfRecordsInTheMain(), 0);
  EXPECT_EQ(settings.LocOfGroupingDir(), "");
  EXPECT_FALSE(settings.IsItTiled());
  EXPECT_FALSE(settings.IsThereAPicture());
}

TEST_F(ClsIni, TheFileIsTheseTenLines) {
  clsINI settings;
  settings.FileContainingTargetDirectories("list");
  settings.LocOfGroupingDir("grouping");
  settings.NumerOfRecordsInTheMain(1234);
  settings.LocOfWinAmpExe("player");
  settings.LocOfLastSavedJukeBox("third");
  settings.LocOfLastSavedJukeBox("second");
  settings.LocOfLastSavedJukeBox("last");
  settings.IsThereAPicture(true);
  settings.PictureLocation("picture");
  settings.Save(path);
  EXPECT_EQ(ReadWholeFile(path),
            "list\r\ngrouping\r\n 1234 \r\nplayer\r\nlast\r\nsecond\r\nthird\r\nTrue\r\nFalse\r\n"
            "picture\r\n");
}

TEST_F(ClsIni, ANegativeNumberHasItsSignInPlaceOfTheBlank) {
  clsINI settings;
  settings.NumerOfRecordsInTheMain(-5);
  settings.Save(path);
  EXPECT_EQ(ReadWholeFile(path), "\r\n\r\n-5 \r\n\r\n\r\n\r\n\r\nFalse\r\nFalse\r\n\r\n");
}

TEST_F(ClsIni, BlanksAroundTheCountAreIgnored) {
  EXPECT_EQ(Load("a\r\nb\r\n 1234 \r\n").NumerOfRecordsInTheMain(), 1234);
}

TEST_F(ClsIni, TheTwoPictureFlagsAreIndependent) {
  const clsINI settings = Load("\r\n\r\n0\r\n\r\n\r\n\r\n\r\nFalse\r\nTrue\r\n");
  EXPECT_FALSE(settings.IsThereAPicture());
  EXPECT_TRUE(settings.IsItTiled());
}

TEST_F(ClsIni, AFlagMayBeANumber) {
  const clsINI settings = Load("\r\n\r\n0\r\n\r\n\r\n\r\n\r\n7\r\n0\r\n");
  EXPECT_TRUE(settings.IsThereAPicture());
  EXPECT_FALSE(settings.IsItTiled());
}

TEST_F(ClsIni, SaveAndLoadGiveEveryPropertyBack) {
  for (const bool filled : {true, false}) {
    clsINI settings;
    if (filled) {
      settings.FileContainingTargetDirectories("/a b/list");
      settings.LocOfGroupingDir("/g/");
      settings.NumerOfRecordsInTheMain(2147483647);
      settings.LocOfWinAmpExe("/p\xFF");
      settings.LocOfLastSavedJukeBox("1");
      settings.LocSecToLastSavedJukeBox("2");
      settings.LocOfThirdToLastSaveJukeBox("3");
      settings.IsItTiled(true);
      settings.IsThereAPicture(true);
      settings.PictureLocation("pic.jpg");
    }
    settings.Save(path);
    clsINI read;
    read.GetandLoadIniInfo(path);
    EXPECT_EQ(read.FileContainingTargetDirectories(), settings.FileContainingTargetDirectories());
    EXPECT_EQ(read.LocOfGroupingDir(), settings.LocOfGroupingDir());
    EXPECT_EQ(read.NumerOfRecordsInTheMain(), settings.NumerOfRecordsInTheMain());
    EXPECT_EQ(read.LocOfWinAmpExe(), settings.LocOfWinAmpExe());
    EXPECT_EQ(read.LocOfLastSavedJukeBox(), settings.LocOfLastSavedJukeBox());
    EXPECT_EQ(read.LocSecToLastSavedJukeBox(), settings.LocSecToLastSavedJukeBox());
    EXPECT_EQ(read.LocOfThirdToLastSaveJukeBox(), settings.LocOfThirdToLastSaveJukeBox());
    EXPECT_EQ(read.IsItTiled(), settings.IsItTiled());
    EXPECT_EQ(read.IsThereAPicture(), settings.IsThereAPicture());
    EXPECT_EQ(read.PictureLocation(), settings.PictureLocation());
  }
}

TEST_F(ClsIni, LinesPastTheTenthAreIgnored) {
  const clsINI settings =
      Load("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\nTrue\r\nTrue\r\n10\r\n11\r\n12\r\n");
  EXPECT_EQ(settings.FileContainingTargetDirectories(), "1");
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), "5");
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "6");
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), "7");
  EXPECT_EQ(settings.PictureLocation(), "10");
}

TEST_F(ClsIni, ThreeLinesChangeThreeProperties) {
  clsINI settings;
  settings.LocOfWinAmpExe("player");
  settings.IsItTiled(true);
  settings.GetandLoadIniInfo(folder.File("ini", "  list  \r\ngrouping\r\n5\r\n"));
  EXPECT_EQ(settings.FileContainingTargetDirectories(), "list");
  EXPECT_EQ(settings.LocOfGroupingDir(), "grouping");
  EXPECT_EQ(settings.NumerOfRecordsInTheMain(), 5);
  EXPECT_EQ(settings.LocOfWinAmpExe(), "player");
  EXPECT_TRUE(settings.IsItTiled());
}

TEST_F(ClsIni, AnInvalidNumberIsReportedWithItsLine) {
  clsINI settings;
  const std::string file = folder.File("TallowOrganizer.ini", "list\r\ng\r\nabc\r\nplayer\r\n");
  try {
    settings.GetandLoadIniInfo(file);
    FAIL();
  } catch (const SettingsError& error) {
    EXPECT_STREQ(error.what(), "TallowOrganizer.ini, line 3: 'abc' is not a number");
  }
  EXPECT_EQ(settings.LocOfGroupingDir(), "g");
  EXPECT_EQ(settings.LocOfWinAmpExe(), "");
}

TEST_F(ClsIni, AnInvalidFlagIsReportedWithItsLine) {
  clsINI settings;
  try {
    settings.GetandLoadIniInfo(
        folder.File("TallowOrganizer.ini", "\r\n\r\n0\r\n\r\n\r\n\r\n\r\nTrue\r\nmaybe\r\n"));
    FAIL();
  } catch (const SettingsError& error) {
    EXPECT_STREQ(error.what(), "TallowOrganizer.ini, line 9: 'maybe' is not a number");
  }
  EXPECT_TRUE(settings.IsThereAPicture());
}

TEST_F(ClsIni, ANumberOutOfRangeIsReportedWithItsLine) {
  try {
    Load("\r\n\r\n99999999999\r\n");
    FAIL();
  } catch (const SettingsError& error) {
    EXPECT_STREQ(error.what(), "ini, line 3: '99999999999' is out of range");
  }
}

TEST_F(ClsIni, AFileThatCannotBeOpenedThrows) {
  clsINI settings;
  EXPECT_THROW(settings.GetandLoadIniInfo(folder / "none"), FileError);
  EXPECT_THROW(settings.GetandLoadIniInfo(folder.path()), FileError);
}

TEST_F(ClsIni, SavingIntoAMissingFolderDoesNotThrow) {
  const clsINI settings;
  settings.Save(folder / "none/x.ini");
  EXPECT_FALSE(FileExists(folder / "none/x.ini"));
}

TEST_F(ClsIni, AFailingSaveLeavesTheOldFile) {
  folder.File("TallowOrganizer.ini", "old");
  folder.Folder("TallowOrganizer.ini.new");
  const clsINI settings;
  settings.Save(path);
  EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST_F(ClsIni, ANewLastJukeboxShiftsTheOthers) {
  int updates = 0;
  clsINI settings([&] { ++updates; });
  settings.LocOfLastSavedJukeBox("a");
  EXPECT_EQ(updates, 3);
  settings.LocOfLastSavedJukeBox("b");
  settings.LocOfLastSavedJukeBox("c");
  settings.LocOfLastSavedJukeBox("d");
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), "d");
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "c");
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), "b");
  EXPECT_EQ(updates, 12);
}

TEST_F(ClsIni, TheSameLastJukeboxChangesNothing) {
  int updates = 0;
  clsINI settings([&] { ++updates; });
  settings.LocOfLastSavedJukeBox("a");
  settings.LocOfLastSavedJukeBox("b");
  updates = 0;
  settings.LocOfLastSavedJukeBox("b");
  EXPECT_EQ(updates, 0);
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "a");
  settings.LocOfLastSavedJukeBox("B");  // the comparison is case-sensitive
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "b");
}

TEST_F(ClsIni, DuplicatesAmongTheRecentFilesAreKept) {
  clsINI settings;
  for (const char* file : {"A", "B", "A"}) settings.LocOfLastSavedJukeBox(file);
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), "A");
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "B");
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), "A");
}

TEST_F(ClsIni, TheLowerEntriesAlwaysRebuildTheMenu) {
  int updates = 0;
  clsINI settings;
  settings.SetMenuUpdate([&] { ++updates; });
  settings.LocSecToLastSavedJukeBox("x");
  settings.LocSecToLastSavedJukeBox("x");
  settings.LocOfThirdToLastSaveJukeBox("y");
  EXPECT_EQ(updates, 3);
  settings.Clear();
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "");
  settings.LocSecToLastSavedJukeBox("z");
  EXPECT_EQ(updates, 4);
}

class NewIniFile : public LibraryTest {};

TEST_F(NewIniFile, HasTheDefaults) {
  clsINI settings;
  settings.LocOfWinAmpExe("x");
  settings.LocOfLastSavedJukeBox("x");
  settings.IsItTiled(true);
  EXPECT_TRUE(settings.CreateNewIniFile(tallow.settings_path, application.path()));
  EXPECT_EQ(settings.FileContainingTargetDirectories(),
            application.path() + "Grouping" + kSep + "System" + kSep + "LocOfMainTargetFiles.lmz");
  EXPECT_EQ(settings.LocOfGroupingDir(), application.path() + "Grouping" + kSep);
  EXPECT_EQ(settings.NumerOfRecordsInTheMain(), 0);
  EXPECT_EQ(settings.LocOfWinAmpExe(), "");
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), "");
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "");
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), "");
  EXPECT_FALSE(settings.IsItTiled());
  EXPECT_TRUE(FileExists(tallow.settings_path));
}

TEST_F(NewIniFile, ReadsTheCountFromTheLastSongOfTheLibrary) {
  AddSong("/a/", "a");
  AddSong("/a/", "b");
  AddSong("/a/", "");
  library.Save();
  clsINI settings;
  settings.CreateNewIniFile(tallow.settings_path, application.path());
  EXPECT_EQ(settings.NumerOfRecordsInTheMain(), 2);
}

TEST_F(NewIniFile, ALibraryWithoutSongsFailsBeforeAnythingIsSaved) {
  library.Save();
  RemoveFile(tallow.settings_path);
  clsINI settings;
  EXPECT_THROW(settings.CreateNewIniFile(tallow.settings_path, application.path()),
               TypeMismatchError);
  EXPECT_FALSE(FileExists(tallow.settings_path));
}

TEST_F(NewIniFile, TheCountIsTheLastSongsNumberNotTheNumberOfSongs) {
  AddSong("/a/", "a");
  AddSong("/a/", "b");
  AddSong("/a/", "c");
  library.Mp3Info(4, 2, "abc");
  library.Mp3Info(4, 3, " 7 ");
  library.Save();
  clsINI settings;
  settings.LocOfThirdToLastSaveJukeBox("x");
  settings.IsThereAPicture(true);
  settings.PictureLocation("x");
  settings.CreateNewIniFile(tallow.settings_path, application.path());
  EXPECT_EQ(settings.NumerOfRecordsInTheMain(), 7);
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), "");
  EXPECT_FALSE(settings.IsThereAPicture());
  EXPECT_EQ(settings.PictureLocation(), "");
}

TEST_F(ClsIni, LoadingAFewLinesRotatesTheRecentFiles) {
  clsINI settings;
  settings.LocOfLastSavedJukeBox("old");
  settings.GetandLoadIniInfo(folder.File("ini", "a\r\nb\r\n1\r\np\r\nnew\r\n"));
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), "new");
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), "old");
}

TEST_F(ClsIni, LoadingRebuildsTheMenuForEachOfItsLines) {
  int updates = 0;
  clsINI settings([&] { ++updates; });
  settings.GetandLoadIniInfo(folder.File("ini", "a\r\nb\r\n1\r\np\r\nlast\r\nsecond\r\nthird\r\n"));
  EXPECT_EQ(updates, 5);
}

TEST_F(ClsIni, ARecentFileCanBecomeTheLastOne) {
  clsINI settings;
  const std::string a = "/jukeboxes/a name that is kept outside the string itself.juk";
  const std::string b = "/jukeboxes/b another name of some length, as paths have it.juk";
  settings.LocOfLastSavedJukeBox(a);
  settings.LocOfLastSavedJukeBox(b);
  settings.LocOfLastSavedJukeBox(settings.LocSecToLastSavedJukeBox());
  EXPECT_EQ(settings.LocOfLastSavedJukeBox(), a);
  EXPECT_EQ(settings.LocSecToLastSavedJukeBox(), b);
  EXPECT_EQ(settings.LocOfThirdToLastSaveJukeBox(), a);
}

TEST_F(ClsIni, ALineBreakWithinAPathDoesNotShiftTheLines) {
  clsINI settings;
  settings.LocOfLastSavedJukeBox("/a\nb.juk");
  settings.IsItTiled(true);
  settings.Save(path);
  clsINI read;
  read.GetandLoadIniInfo(path);
  EXPECT_EQ(read.LocOfLastSavedJukeBox(), "/a\nb.juk");
  EXPECT_TRUE(read.IsItTiled());
}

}  // namespace
}  // namespace tallow

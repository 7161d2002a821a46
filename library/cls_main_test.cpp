// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cls_main.h"

#include <gtest/gtest.h>

#include "library/library_file.h"
#include "tests/library_fixture.h"
#include "util/errors.h"

namespace tallow {
namespace {

class ClsMain : public LibraryTest {};

TEST_F(ClsMain, AnUndimensionedTableHasNoRows) {
  bool sorted = true;
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_FALSE(library.Mp3MainHasSomeMembers());
  EXPECT_FALSE(library.Sort(true, true, 2, sorted));
  EXPECT_FALSE(sorted);
  library.RenumberBasedOnArrayNumber();
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_FALSE(library.MainIsDirty());
}

TEST_F(ClsMain, WritingACellGrowsTheTableToItsRow) {
  library.Mp3Info(1, 5, "x");
  EXPECT_EQ(library.UBoundOfMp3Array(), 5);
  for (std::int32_t row = 1; row <= 4; ++row)
    for (int column = 1; column <= 12; ++column) EXPECT_EQ(library.Mp3Info(column, row), "");
  EXPECT_EQ(library.Mp3Info(1, 5), "x");
}

TEST_F(ClsMain, CellsOutsideAreSubscriptErrors) {
  library.Mp3Info(1, 2, "x");
  EXPECT_THROW(library.Mp3Info(0, 1, "x"), SubscriptError);
  EXPECT_THROW(library.Mp3Info(13, 1, "x"), SubscriptError);
  EXPECT_THROW(library.Mp3Info(1, 0, "x"), SubscriptError);
  EXPECT_THROW(library.Mp3Info(1, 3), SubscriptError);
  EXPECT_THROW(library.Mp3Info(13, 1), SubscriptError);
  EXPECT_THROW(library.Mp3Info(70000, 1), SubscriptError);
}

TEST_F(ClsMain, AMissingFileBlanksItsRowPermanently) {
  AddSong(music.path(), "a.mp3", "1", "7");
  AddSong(music.path(), "b.mp3");
  music.File("b.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(library.Mp3Info(1, 1), "0");
  EXPECT_EQ(library.Mp3Info(2, 1), "0");
  EXPECT_EQ(library.Mp3Info(3, 1), "0");
  EXPECT_EQ(library.Mp3Info(4, 1), "1");
  EXPECT_EQ(library.Mp3Info(5, 1), "7");
  EXPECT_EQ(library.Mp3Info(2, 2), "b.mp3");
  EXPECT_EQ(library.Mp3Info(3, 2), "1");
  music.File("a.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(library.Mp3Info(2, 1), "0");
}

TEST_F(ClsMain, ARowWithAnotherFlagThanOneIsBlankedThoughItsFileExists) {
  music.File("a.mp3");
  for (const char* flag : {"0", "", "2", "True"}) AddSong(music.path(), "a.mp3", flag);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(Cells(3), (Texts{"0", "0", "0", "0"}));
  EXPECT_EQ(Cells(2), (Texts{"0", "0", "0", "0"}));
}

TEST_F(ClsMain, UnusualPathsAreCheckedOneByOne) {
  // A name without the usual extension, a folder without a trailing separator, a folder with one
  // song.
  music.File("odd.song");
  music.File("one/only.mp3");
  AddSong(music.path(), "odd.song");
  AddSong(music / "one", kSep + "only.mp3");
  AddSong(music.path(), "gone.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(Cells(3), (Texts{"1", "1", "0"}));
}

TEST_F(ClsMain, NewFilesInListedFoldersAreAddedWithRankTwo) {
  music.File("a.mp3");
  music.File("B.MP3");
  music.File("c.txt");
  AddSong(music.path(), "a.mp3", "1", "7");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  EXPECT_FALSE(library.AddAnyAdditionalMp3FromTheNormalDirectories());
  EXPECT_EQ(Cells(1), (Texts{music.path(), music.path()}));
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "B.MP3"}));
  EXPECT_EQ(Cells(3), (Texts{"1", "1"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_EQ(Cells(5), (Texts{"7", "2"}));
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 2);
}

TEST_F(ClsMain, WithoutNewFilesNothingIsSaved) {
  music.File("a.mp3");
  AddSong(music.path(), "a.mp3");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  RemoveFile(LibraryPath());
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(ClsMain, AMissingFolderAndTheLineOfMissingSongsAddNothing) {
  AddSong("0", "0", "0");
  AddSong(music / "gone/", "a.mp3");
  library.Save();
  library.WriteOutMp3DirectoryLocations();
  EXPECT_EQ(ReadWholeFile(ListPath()), (music / "gone/") < "0"
                                           ? (music / "gone/") + "\r\n0\r\n"
                                           : "0\r\n" + (music / "gone/") + "\r\n");
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
}

TEST_F(ClsMain, AMissingFolderListIsRebuilt) {
  music.File("a.mp3");
  AddSong(music.path(), "a.mp3");
  library.Save();
  music.File("b.mp3");
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3"}));
  EXPECT_EQ(ReadWholeFile(ListPath()), music.path() + "\r\n");
}

TEST_F(ClsMain, WithoutALibraryAllDrivesAreSearched) {
  int searches = 0;
  const auto search = [&] {
    ++searches;
    AddSong("/b/", "two.mp3");
    AddSong("/a/", "one.mp3");
    AddSong("/c/", "one.mp3");
  };
  tallow.settings.NumerOfRecordsInTheMain(0);
  EXPECT_FALSE(library.AddAnyAdditionalMp3FromTheNormalDirectories({}, {}, search));
  EXPECT_EQ(searches, 1);
  EXPECT_EQ(Cells(2), (Texts{"two.mp3", "one.mp3"}));
  EXPECT_EQ(Cells(1), (Texts{"/b/", "/a/"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 2);
  EXPECT_EQ(ReadWholeFile(ListPath()), "/a/\r\n/b/\r\n");
}

TEST_F(ClsMain, ASearchThatFindsNothingChangesNothing) {
  library.AddAnyAdditionalMp3FromTheNormalDirectories({}, {}, [] {});
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(ClsMain, DuplicatesAreRemovedAndAddedRowsAreNumberedByTheirRow) {
  AddSong("/a/", "a.mp3");
  AddSong("/b/", "a.mp3");
  AddSong("/b/", "b.mp3");
  std::int32_t old_count = 1;
  library.DeleteIdenticalFileNamesAndPaths(old_count);
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_TRUE(FileExists(LibraryPath()));
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 2);
}

TEST_F(ClsMain, DuplicateRemovalWithoutNewRowsDoesNotSave) {
  AddSong("/a/", "a.mp3");
  AddSong("/b/", "a.mp3");
  std::int32_t old_count = 1;
  library.DeleteIdenticalFileNamesAndPaths(old_count);
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
  EXPECT_FALSE(FileExists(LibraryPath()));
}

TEST_F(ClsMain, RenumberingSetsEveryNumberToItsRow) {
  AddSong("/a/", "a.mp3");
  AddSong("/a/", "b.mp3");
  library.Mp3Info(4, 1, "17");
  library.Mp3Info(4, 2, "x");
  library.RenumberBasedOnArrayNumber();
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
}

TEST_F(ClsMain, SortMovesWholeRowsByTextAndByNumberInBothDirections) {
  AddSong("/c/", "10");
  AddSong("/a/", "9");
  AddSong("/b/", "100");
  for (int column = 6; column <= 12; ++column) library.Mp3Info(column, 1, "spare");
  bool sorted = false;
  EXPECT_TRUE(library.Sort(true, true, 2, sorted));
  EXPECT_TRUE(sorted);
  EXPECT_EQ(Cells(2), (Texts{"10", "100", "9"}));
  library.Sort(true, false, 2, sorted);
  EXPECT_EQ(Cells(2), (Texts{"9", "10", "100"}));
  library.Sort(false, true, 2, sorted);
  EXPECT_EQ(Cells(2), (Texts{"9", "100", "10"}));
  library.Sort(false, false, 2, sorted);
  EXPECT_EQ(Cells(2), (Texts{"100", "10", "9"}));
  EXPECT_EQ(Cells(1), (Texts{"/b/", "/c/", "/a/"}));
  EXPECT_EQ(Cells(12), (Texts{"", "spare", ""}));
}

TEST_F(ClsMain, SaveAndLoadRestoreColumnsOneToFive) {
  for (int k = 1; k <= 3; ++k) {
    AddSong("/music " + std::to_string(k) + "/", "song\xFF" + std::to_string(k) + ".mp3", "1",
            std::to_string(k + 2));
    library.Mp3Info(6, k, "spare");
    library.Mp3Info(12, k, "spare");
  }
  const std::vector<Texts> before{Cells(1), Cells(2), Cells(3), Cells(4), Cells(5)};
  EXPECT_TRUE(library.Save());
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 3);
  library.MainIsDirty(true);
  EXPECT_TRUE(library.LoadMain());
  EXPECT_FALSE(library.MainIsDirty());
  EXPECT_EQ((std::vector<Texts>{Cells(1), Cells(2), Cells(3), Cells(4), Cells(5)}), before);
  for (int column = 6; column <= 12; ++column) EXPECT_EQ(Cells(column), (Texts{"", "", ""}));
}

TEST_F(ClsMain, SaveWritesMissingAndNamelessRowsToo) {
  AddSong("0", "0", "0");
  AddSong("/a/", "");
  library.Save();
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 2);
  SongTable table;
  table.Resize(2);
  const std::vector<Texts> rows{{"0", "0", "0", "1", "2"}, {"/a/", "", "1", "2", "2"}};
  for (std::int32_t row = 1; row <= 2; ++row)
    for (std::int16_t column = 1; column <= 5; ++column)
      table.SetCell(column, row,
                    rows[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)]);
  EXPECT_EQ(ReadWholeFile(LibraryPath()), EncodeLibrary(table));
}

TEST_F(ClsMain, SaveOfAnEmptyLibraryWritesAnEmptyFile) {
  EXPECT_TRUE(library.Save());
  EXPECT_EQ(ReadWholeFile(LibraryPath()), "");
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 0);
}

TEST_F(ClsMain, SaveClearsTheDirtyFlagAndSavesTheSettings) {
  AddSong("/a/", "a.mp3");
  library.MainIsDirty(true);
  EXPECT_TRUE(library.MainIsDirty());
  library.Save();
  EXPECT_FALSE(library.MainIsDirty());
  clsINI read;
  read.GetandLoadIniInfo(tallow.settings_path);
  EXPECT_EQ(read.NumerOfRecordsInTheMain(), 1);
}

TEST_F(ClsMain, AFileChangedByAnotherProgramIsWrittenAgain) {
  AddSong("/a/", "a.mp3");
  library.Save();
  const auto saved = ReadWholeFile(LibraryPath());
  WriteFileAtomically(LibraryPath(), "something else");
  library.Save();
  EXPECT_EQ(ReadWholeFile(LibraryPath()), saved);
  RemoveFile(LibraryPath());
  library.Save();
  EXPECT_EQ(ReadWholeFile(LibraryPath()), saved);
}

TEST_F(ClsMain, AFailingSaveLeavesTheFileAndTheCount) {
  AddSong("/a/", "a.mp3");
  library.Save();
  const auto saved = ReadWholeFile(LibraryPath());
  CreateFolder(LibraryPath() + ".new");
  AddSong("/a/", "b.mp3");
  EXPECT_FALSE(library.Save());
  EXPECT_EQ(ReadWholeFile(LibraryPath()), saved);
  EXPECT_EQ(tallow.settings.NumerOfRecordsInTheMain(), 1);
  EXPECT_TRUE(library.SaveError().starts_with(LibraryPath())) << library.SaveError();
}

TEST_F(ClsMain, ARecordWithoutANameIsSkippedAndTheNextFillsItsRow) {
  AddSong("/a/", "a.mp3");
  AddSong("/x/", "");
  AddSong("/b/", "b.mp3");
  library.Save();
  tallow.settings.NumerOfRecordsInTheMain(2);
  EXPECT_TRUE(library.LoadMain());
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "3"}));
}

TEST_F(ClsMain, MoreRecordsThanTheCountFillTheRowsAndFail) {
  for (const char* name : {"a", "b", "c"}) AddSong("/a/", name);
  library.Save();
  tallow.settings.NumerOfRecordsInTheMain(2);
  library.MainIsDirty(true);
  EXPECT_FALSE(library.LoadMain());
  EXPECT_TRUE(library.MainIsDirty());
  EXPECT_EQ(Cells(2), (Texts{"a", "b"}));
}

TEST_F(ClsMain, AMissingFileIsCreatedEmptyAndLoadsEmptyRows) {
  tallow.settings.NumerOfRecordsInTheMain(5);
  EXPECT_TRUE(library.LoadMain());
  EXPECT_EQ(ReadWholeFile(LibraryPath()), "");
  EXPECT_EQ(library.UBoundOfMp3Array(), 5);
  EXPECT_EQ(Cells(2), (Texts{"", "", "", "", ""}));
}

TEST_F(ClsMain, FewerRecordsThanTheCountLeaveEmptyRowsAtTheEnd) {
  AddSong("/a/", "a");
  library.Save();
  tallow.settings.NumerOfRecordsInTheMain(2);
  EXPECT_TRUE(library.LoadMain());
  EXPECT_EQ(Cells(2), (Texts{"a", ""}));
}

TEST_F(ClsMain, ACountBelowOneFails) {
  for (const int count : {0, -3}) {
    tallow.settings.NumerOfRecordsInTheMain(count);
    EXPECT_FALSE(library.LoadMain());
  }
}

TEST_F(ClsMain, ATruncatedRecordEndsTheLoad) {
  AddSong("/a/", "a");
  AddSong("/a/", "b");
  library.Save();
  const std::string whole = ReadWholeFile(LibraryPath()).value();
  WriteFileAtomically(LibraryPath(), whole.substr(0, whole.size() - 1));
  EXPECT_FALSE(library.LoadMain());
  EXPECT_EQ(Cells(2), (Texts{"a", ""}));
}

TEST_F(ClsMain, ASaveAfterAFailedLoadKeepsTheOldFile) {
  AddSong("/a/", "a");
  AddSong("/a/", "b");
  library.Save();
  const std::string whole = ReadWholeFile(LibraryPath()).value();
  const std::string damaged = whole.substr(0, whole.size() - 1);
  WriteFileAtomically(LibraryPath(), damaged);
  library.LoadMain();
  library.Save();
  EXPECT_EQ(ReadWholeFile(LibraryPath() + ".bak"), damaged);
  // The next save keeps the damaged backup under another name.
  const auto saved = ReadWholeFile(LibraryPath());
  for (const char* name : {"c", "d", "e"}) {
    AddSong("/a/", name);
    library.Save();
    EXPECT_EQ(ReadWholeFile(LibraryPath() + ".damaged"), damaged);
  }
  EXPECT_NE(ReadWholeFile(LibraryPath() + ".bak"), saved);
}

TEST_F(ClsMain, ASaveAfterAShortLoadKeepsTheOldFile) {
  AddSong("/a/", "a");
  library.Save();
  const auto whole = ReadWholeFile(LibraryPath());
  tallow.settings.NumerOfRecordsInTheMain(3);
  EXPECT_TRUE(library.LoadMain());
  library.Save();
  EXPECT_EQ(ReadWholeFile(LibraryPath() + ".bak"), whole);
}

TEST_F(ClsMain, ASaveAfterASuccessfulLoadKeepsThePreviousLibrary) {
  AddSong("/a/", "a");
  library.Save();
  const auto before = ReadWholeFile(LibraryPath());
  library.LoadMain();
  AddSong("/a/", "b");
  library.Save();
  EXPECT_EQ(ReadWholeFile(LibraryPath() + ".bak"), before);
  EXPECT_FALSE(FileExists(LibraryPath() + ".damaged"));
}

TEST_F(ClsMain, TheFolderListHasEachFolderOnceInOrder) {
  AddSong("C:\\B\\", "1");
  AddSong("C:\\A\\", "2");
  AddSong("C:\\A\\", "3");
  library.WriteOutMp3DirectoryLocations();
  EXPECT_EQ(ReadWholeFile(ListPath()), "C:\\A\\\r\nC:\\B\\\r\n");
  EXPECT_EQ(Cells(4), (Texts{"1", "2", "3"}));
  EXPECT_TRUE(FileExists(LibraryPath()));
}

TEST_F(ClsMain, AFolderThatMatchesThePreviousOneAsAPatternIsLeftOut) {
  AddSong("/a1/", "1");
  AddSong("/a[1]/", "2");  // as a pattern, matches the previous folder
  AddSong("/b#/", "3");    // does not match itself, but is written only once
  AddSong("/b#/", "4");
  library.WriteOutMp3DirectoryLocations();
  EXPECT_EQ(ReadWholeFile(ListPath()), "/a1/\r\n/b#/\r\n");
}

TEST_F(ClsMain, AFolderWithALineBreakIsLeftOut) {
  AddSong("/a\nb/", "1");
  AddSong("/c\rd/", "2");
  AddSong("/e/", "3");
  library.WriteOutMp3DirectoryLocations();
  EXPECT_EQ(ReadWholeFile(ListPath()), "/e/\r\n");
}

TEST_F(ClsMain, AFolderListThatCannotBeWrittenIsNotReported) {
  AddSong("/b/", "1");
  AddSong("/a/", "2");
  CreateFolders(ListPath());
  library.WriteOutMp3DirectoryLocations();
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_FALSE(library.SaveError().empty());
}

TEST_F(ClsMain, ASaveAfterASortWritesTheNewOrder) {
  AddSong("/a/", "a.mp3");
  AddSong("/a/", "b.mp3");
  library.Save();
  bool sorted = false;
  library.Sort(false, true, 2, sorted);
  library.Save();
  library.LoadMain();
  EXPECT_EQ(Cells(2), (Texts{"b.mp3", "a.mp3"}));
}

TEST_F(ClsMain, WritingTheFolderListKeepsTheOrderOfTheLibraryFile) {
  AddSong("/b/", "1");
  AddSong("/a/", "2");
  library.WriteOutMp3DirectoryLocations();
  library.LoadMain();
  EXPECT_EQ(Cells(2), (Texts{"1", "2"}));
}

TEST_F(ClsMain, AnInvalidColumnIsAnErrorAfterTheTableHasGrown) {
  EXPECT_THROW(library.Mp3Info(13, 3, "x"), SubscriptError);
  EXPECT_EQ(library.UBoundOfMp3Array(), 3);
}

TEST_F(ClsMain, ANumberThatDoesNotFitEndsANumericSort) {
  AddSong("/a/", "99999999999");
  AddSong("/a/", "1");
  bool sorted = false;
  EXPECT_THROW(library.Sort(true, false, 2, sorted), OverflowError);
}

TEST_F(ClsMain, ASongTooLongForTheFileIsNamed) {
  AddSong("/a/", std::string(70000, 'n'));
  EXPECT_FALSE(library.Save());
  EXPECT_NE(library.SaveError().find("is too long for the song library"), std::string::npos);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/add_files.h"

#include "tests/library_fixture.h"

namespace tallow {
namespace {

class AddFilesTest : public LibraryTest {
 protected:
  AddedFiles Take(const Texts& paths) { return AddFiles(paths, library); }
  static std::vector<std::int32_t> SongsOf(const AddedFiles& taken) {
    std::vector<std::int32_t> songs;
    for (const SongEntry& entry : taken.songs) songs.push_back(entry.SubItem());
    return songs;
  }
  using Songs = std::vector<std::int32_t>;
};

TEST_F(AddFilesTest, NewFilesAreNewSongsOfRankTwo) {
  const AddedFiles taken = Take({music.File("b.MP3"), music.File("a.mp3")});
  EXPECT_EQ(SongsOf(taken), (Songs{1, 2}));
  EXPECT_TRUE(taken.has_new_songs);
  EXPECT_EQ(taken.problems, Texts{});
  EXPECT_EQ(Cells(1), (Texts{music.path(), music.path()}));
  EXPECT_EQ(Cells(2), (Texts{"b.MP3", "a.mp3"}));
  EXPECT_EQ(Cells(3), (Texts{"1", "1"}));
  EXPECT_EQ(Cells(4), (Texts{"1", "2"}));
  EXPECT_EQ(Cells(5), (Texts{"2", "2"}));
  EXPECT_EQ(taken.songs[0].Icon(), 2);
}

TEST_F(AddFilesTest, TheLibraryIsSavedAndTheFolderRemembered) {
  Take({music.File("in/a.mp3")});
  Tallow again(application.path());
  again.settings.GetandLoadIniInfo(again.settings_path);
  ASSERT_TRUE(again.library.LoadMain());
  EXPECT_EQ(again.library.Mp3Info(2, 1), "a.mp3");
  EXPECT_EQ(ReadWholeFile(ListPath()), music / "in/" + "\r\n");
}

TEST_F(AddFilesTest, AFileWithAKnownNameIsThatSong) {
  AddSong(music.path(), "known.mp3", "1", "6");
  const AddedFiles taken = Take({music.File("elsewhere/Known.MP3")});
  EXPECT_EQ(SongsOf(taken), Songs{1});
  EXPECT_EQ(taken.songs[0].Icon(), 6);
  EXPECT_FALSE(taken.has_new_songs);
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
}

TEST_F(AddFilesTest, AMissingSongIsNotMatched) {
  AddSong("0", "0", "0", "6");
  EXPECT_EQ(SongsOf(Take({music.File("a.mp3")})), Songs{2});
}

TEST_F(AddFilesTest, ACancelKeepsAddedFilesAndReportsTheRest) {
  Texts files;
  for (const char* const name : {"a.mp3", "b.mp3", "c.mp3"}) files.push_back(music.File(name));
  const auto cancel_after = [&](int calls) {
    return AddFiles(files, library, [calls](std::string_view) mutable { return --calls > 0; });
  };
  // Cancels while the files are collected.
  AddedFiles taken = cancel_after(1);
  EXPECT_TRUE(taken.songs.empty());
  EXPECT_EQ(taken.problems, Texts{"The drop was cancelled: 3 files were not processed."});
  // Cancels while the files are added. The callback was called once for each file before.
  for (int calls = 2; calls < 50 && taken.songs.size() != 2; ++calls) taken = cancel_after(calls);
  EXPECT_EQ(taken.problems, Texts{"The drop was cancelled: 1 file was not processed."});
}

TEST_F(AddFilesTest, TwoFilesWithTheSameNameAreOneSong) {
  EXPECT_EQ(SongsOf(Take({music.File("a.mp3"), music.File("b/a.mp3")})), (Songs{1, 1}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
}

TEST_F(AddFilesTest, TheFilesOfAFolderAreAdded) {
  for (const char* const name : {"in/b.mp3", "in/a.mp3", "in/c.txt", "in/deeper/d.mp3"})
    music.File(name);
  Take({music / "in"});
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3"}));
  music.File("empty/x.txt");
  EXPECT_EQ(Take({music / "empty"}).problems, Texts{music / "empty" + " holds no MP3 file."});
}

TEST_F(AddFilesTest, FilesThatAreLeftOutAreReported) {
  const std::string partial = music.File("Incomplete/a.mp3");
  const AddedFiles taken = Take({music.File("a.wav"), music / "gone.mp3", partial});
  EXPECT_EQ(taken.problems, (Texts{music / "a.wav" + " is not an MP3 file and was skipped.",
                                   music / "gone.mp3" + " cannot be found and was skipped.",
                                   partial + " lies in a folder of unfinished or deleted files, or "
                                             "in a snapshot, and was skipped."}));
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
}

TEST_F(AddFilesTest, ALibraryThatCannotBeSavedIsReported) {
  CreateFolders(LibraryPath() + kSep + "x");
  const AddedFiles taken = Take({music.File("a.mp3")});
  ASSERT_EQ(taken.problems.size(), 1U);
  EXPECT_TRUE(taken.problems[0].starts_with("The new songs could not be saved. " + LibraryPath()))
      << taken.problems[0];
  EXPECT_EQ(SongsOf(taken), Songs{1});
}

}  // namespace
}  // namespace tallow

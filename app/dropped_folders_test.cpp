// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/dropped_folders.h"

#include <gtest/gtest.h>

#include "app/add_files.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class DroppedFolders : public LibraryTest {
 protected:
  AddedFiles Drop(const Texts& paths, const GoOn& go_on = {}) {
    return AddFiles(paths, library, go_on,
                    [this](const std::string& folder, const GoOn& below, Texts& problems) {
                      return FoldersWithSongs(folder, library.Switches(), may_enter, below,
                                              problems);
                    });
  }

  MayEnterFolder may_enter = EnterAllVolumes();
};

TEST_F(DroppedFolders, BringInTheSongsAtAnyDepth) {
  std::string deep = "in";
  for (int k = 0; k < 20; ++k) deep += "/d";
  for (const std::string& name :
       Texts{"in/b.mp3", "in/a.mp3", "in/x/c.mp3", deep + "/e.mp3", "in/empty/x.txt", "beside.mp3"})
    music.File(name);
  const AddedFiles added = Drop({music / "in"});
  EXPECT_EQ(Cells(2), (Texts{"a.mp3", "b.mp3", "e.mp3", "c.mp3"}));
  EXPECT_EQ(added.songs.size(), 4U);
  EXPECT_EQ(added.problems, Texts{});
}

TEST_F(DroppedFolders, WithoutSongsAreNamedOnce) {
  music.File("in/x/y/a.txt");
  EXPECT_EQ(Drop({music / "in"}).problems, Texts{music / "in" + " holds no MP3 file."});
}

TEST_F(DroppedFolders, LeaveOutFoldersThatSearchesSkip) {
  for (const char* const name :
       {"in/a.mp3", "in/Incomplete/b.mp3", "in/@eaDir/c.mp3", "in/.snapshots/1/d.mp3"})
    music.File(name);
  EXPECT_EQ(Drop({music / "in"}).problems, Texts{});
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

TEST_F(DroppedFolders, HaveSongsOfOtherFormatsOnlyByTheSwitch) {
  music.File("in/x/a.flac");
  EXPECT_TRUE(Drop({music / "in"}).songs.empty());
  library.UseSwitches(kModernStyle);
  EXPECT_EQ(Drop({music / "in"}).songs.size(), 1U);
}

TEST_F(DroppedFolders, DoNotEnterWhatShowsTheStateOfTheSystem) {
  music.File("in/a.mp3");
  music.File("in/proc/b.mp3");
  may_enter = [forbidden = music / "in/proc/"](const std::string& folder) {
    return folder != forbidden;
  };
  Drop({music / "in"});
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

TEST_F(DroppedFolders, StopAtACancel) {
  for (int k = 0; k < 50; ++k) music.File("in/" + std::to_string(k) + "/a.mp3");
  int calls = 0;
  const AddedFiles added =
      Drop({music / "in", music / "other"}, [&](std::string_view) { return ++calls < 10; });
  EXPECT_TRUE(added.songs.empty());
  EXPECT_EQ(added.problems, Texts{"The drop was cancelled: 2 files were not processed."});
}

TEST_F(DroppedFolders, StopAtACancelBetweenTheirFiles) {
  for (int k = 0; k < 9; ++k)
    music.File("in/" + std::to_string(k) + "/" + std::to_string(k) + ".mp3");
  AddedFiles added;
  for (int last = 10; last < 200 && added.songs.empty(); ++last) {
    int calls = 0;
    added = Drop({music / "in"}, [&](std::string_view) { return ++calls < last; });
  }
  ASSERT_EQ(added.problems.size(), 1U);
  EXPECT_TRUE(added.problems[0].starts_with("The drop was cancelled: ")) << added.problems[0];
  EXPECT_LT(added.songs.size(), 9U);
}

TEST_F(DroppedFolders, OfOneAndOfAnotherInsideAddEachSongOnce) {
  music.File("in/x/a.mp3");
  Drop({music / "in/x", music / "in"});
  EXPECT_EQ(Cells(2), Texts{"a.mp3"});
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Dropped files and folders that cannot be read.
#include <filesystem>

#include "app/add_files.h"
#include "tests/as_nobody_linux.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class UnreadableFiles : public LibraryTest {};

TEST_F(UnreadableFiles, AFileThatCannotBeCheckedIsLeftOutAndReported) {
  const std::string closed = music.File("closed/a.mp3");
  std::filesystem::create_symlink(music / "none.mp3", music / "broken.mp3");
  const Texts files{closed, music / "broken.mp3", music.File("b.mp3")};
  std::filesystem::permissions(music / "closed", std::filesystem::perms::none);
  AddedFiles taken;
  {
    const AsNobody nobody;
    taken = AddFiles(files, library);
  }
  std::filesystem::permissions(music / "closed", std::filesystem::perms::owner_all);
  ASSERT_GE(taken.problems.size(), 2U);
  EXPECT_EQ(taken.problems[0], closed + " cannot be read (Permission denied) and was skipped.");
  EXPECT_EQ(taken.problems[1],
            music / "broken.mp3" + " cannot be read (The link is broken) and was skipped.");
  EXPECT_EQ(Cells(2), Texts{"b.mp3"});
  EXPECT_EQ(taken.songs.size(), 1U);
}

TEST_F(UnreadableFiles, AFolderThatCannotBeListedIsReported) {
  music.File("closed/a.mp3");
  const std::string closed = music / "closed";
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  AddedFiles taken;
  {
    const AsNobody nobody;
    taken = AddFiles(Texts{closed}, library);
  }
  std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
  EXPECT_EQ(taken.problems,
            Texts{closed + " cannot be read (Permission denied), so songs in it may be left out. "
                           "Make it readable and add it again."});
  EXPECT_TRUE(taken.songs.empty());
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
}

}  // namespace
}  // namespace tallow

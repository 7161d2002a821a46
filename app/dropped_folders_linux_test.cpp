// SPDX-License-Identifier: GPL-3.0-or-later
// Dropped folders with links, and with folders that cannot be read.
#include <filesystem>
#include <gtest/gtest.h>

#include "app/dropped_folders.h"
#include "tests/as_nobody_linux.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class LinkedFolders : public LibraryTest {
 protected:
  void Link(const std::string& to, const std::string& from) {
    std::filesystem::create_directory_symlink(to, music / from);
  }
  Texts FoldersIn(const std::string& folder) {
    return FoldersWithSongs(music / folder, kClassicStyle, EnterAllVolumes(), {}, problems);
  }

  Texts problems;
};

TEST_F(LinkedFolders, AreFollowedOnce) {
  music.File("in/x/a.mp3");
  music.File("beside/deep/b.mp3");
  Link(music / "beside", "in/one");
  Link(music / "beside", "in/two");
  Link(music / "in/x", "in/again");
  const Texts folders = FoldersIn("in");
  ASSERT_EQ(folders.size(), 2U);
  EXPECT_TRUE(folders[0] == music / "in/one/deep/" || folders[0] == music / "in/two/deep/")
      << folders[0];
  EXPECT_EQ(folders[1], music / "in/x/");
}

TEST_F(LinkedFolders, AreNeverFollowedInCirclesOrUpwards) {
  music.File("in/x/a.mp3");
  music.File("beside/b.mp3");
  Link(music / "in", "in/x/circle");
  Link(".", "in/x/self");
  Link(music.path(), "in/x/up");
  Link("/", "in/x/top");
  Link("nowhere", "in/x/broken");
  EXPECT_EQ(FoldersIn("in"), Texts{music / "in/x/"});
}

TEST_F(LinkedFolders, ThatWereDroppedAreWalked) {
  music.File("in/x/a.mp3");
  Link(music / "in", "link");
  EXPECT_EQ(FoldersIn("link"), Texts{music / "link/x/"});
}

TEST_F(LinkedFolders, ThatCannotBeReadStayInTheList) {
  music.File("in/a.mp3");
  const std::string closed = music.Folder("in/closed");
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  Texts folders;
  {
    const AsNobody nobody;
    folders = FoldersIn("in");
  }
  std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
  EXPECT_EQ(folders, (Texts{music / "in/", closed}));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Saving when the operating system refuses the write.
#include <filesystem>
#include <gtest/gtest.h>

#include "jukebox/jukebox.h"
#include "tests/as_nobody_linux.h"
#include "tests/file_size_limit_linux.h"
#include "tests/library_fixture.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class FailingSave : public LibraryTest {
 protected:
  FailingSave() {
    AddSong("/m/", "a.mp3");
    Folder& folder = jukebox.Nodes().AddChild(nullptr, "a");
    for (int k = 0; k < 5000; ++k) folder.Items().emplace_back(1, 2);
    EXPECT_TRUE(jukebox.Save(Path(), library));
    before = *ReadWholeFile(Path());
    jukebox.Nodes().AddChild(nullptr, "changed");
  }
  std::string Path() const { return music / "mix.juk"; }

  Jukebox jukebox;
  std::string before;
};

TEST_F(FailingSave, AFolderWithoutWritePermissionIsReported) {
  std::filesystem::permissions(music.path(), std::filesystem::perms(0555));
  {
    const AsNobody nobody;
    EXPECT_FALSE(jukebox.Save(Path(), library));
  }
  std::filesystem::permissions(music.path(), std::filesystem::perms(0755));
  EXPECT_TRUE(jukebox.FileProblem().starts_with("The jukebox could not be saved. " + Path()))
      << jukebox.FileProblem();
  EXPECT_TRUE(jukebox.FileProblem().ends_with(
      ". Save it in another folder, or correct the problem and save again."));
  EXPECT_EQ(ReadWholeFile(Path()), before);
}

TEST_F(FailingSave, AWriteThatFailsMidwayLeavesTheOldFile) {
  for (const rlim_t room : {0U, 1U, 100U, 5000U}) {
    {
      const FileSizeLimit limit(room);
      EXPECT_FALSE(jukebox.Save(Path(), library)) << room;
    }
    EXPECT_TRUE(jukebox.FileProblem().starts_with("The jukebox could not be saved. "));
    EXPECT_EQ(ReadWholeFile(Path()), before);
    EXPECT_TRUE(jukebox.DiffersFromFile());
  }
  // Saving works again once the limit is gone.
  EXPECT_TRUE(jukebox.Save(Path(), library));
  Jukebox saved;
  EXPECT_TRUE(saved.Load(Path(), library));
  EXPECT_NE(saved.Nodes().Find("changed"), nullptr);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/unsaved_jukeboxes.h"

#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class UnsavedJukeboxesTest : public LibraryTest {
 protected:
  UnsavedJukeboxesTest() {
    AddSong("/m/", "a.mp3");
    jukebox.Caption("MIX \"\xFF\n");
    jukebox.FileLocation("/m/");
    jukebox.AddColumnHeader(kNameHeader);
    jukebox.Nodes().AddChild(nullptr, "mine").Items().emplace_back(1, 2);
  }
  std::vector<UnsavedJukebox> Find() { return UnsavedJukeboxes(SystemPath()).Find(problems); }
  std::string SystemPath() const { return SystemFolder(application.path()); }
  std::string First() const { return SystemPath() + "Jukebox-1.unsaved"; }

  Jukebox jukebox;
  UnsavedJukeboxes& unsaved = tallow.unsaved;
  Texts problems;
};

TEST_F(UnsavedJukeboxesTest, AKeptJukeboxIsRecoveredCompletely) {
  unsaved.Keep(jukebox, library);
  const auto found = Find();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].path, First());
  EXPECT_EQ(found[0].caption, "MIX \"\xFF\n");
  EXPECT_EQ(found[0].location, "/m/");
  EXPECT_EQ(found[0].file, "");
  Jukebox again;
  ASSERT_TRUE(unsaved.Recover(found[0], again, library));
  EXPECT_EQ(again.Caption(), jukebox.Caption());
  EXPECT_EQ(again.FileLocation(), "/m/");
  EXPECT_EQ(again.ColumnHeaders(), jukebox.ColumnHeaders());
  EXPECT_EQ(ContentHash(again.Nodes()), ContentHash(jukebox.Nodes()));
  EXPECT_TRUE(again.IsFormDirty());
  EXPECT_TRUE(again.DiffersFromFile());
}

TEST_F(UnsavedJukeboxesTest, AJukeboxThatEqualsItsFileIsNotKept) {
  ASSERT_TRUE(jukebox.Save(music / "mix.juk", library));
  jukebox.IsFormDirty(true);
  unsaved.Keep(jukebox, library);
  EXPECT_FALSE(FileExists(First()));
  jukebox.Nodes().AddChild(nullptr, "x");
  unsaved.Keep(jukebox, library);
  EXPECT_TRUE(FileExists(First()));
  EXPECT_EQ(Find()[0].file, music / "mix.juk");
  // Removing the folder makes the content equal to the file again.
  jukebox.Nodes().Take(*jukebox.Nodes().Find("x"));
  unsaved.Keep(jukebox, library);
  EXPECT_FALSE(FileExists(First()));
}

TEST_F(UnsavedJukeboxesTest, OnlyAChangeIsWritten) {
  unsaved.Keep(jukebox, library);
  RemoveFile(First());
  unsaved.Keep(jukebox, library);
  EXPECT_FALSE(FileExists(First()));
  jukebox.Nodes().ChildAt(0).Items().emplace_back(1, 2);
  unsaved.Keep(jukebox, library);
  EXPECT_TRUE(FileExists(First()));
}

TEST_F(UnsavedJukeboxesTest, FilesOfAnEarlierRunAreNotOverwritten) {
  unsaved.Keep(jukebox, library);
  UnsavedJukeboxes next(SystemPath());
  Jukebox other;
  other.Nodes().AddChild(nullptr, "other");
  next.Keep(other, library);
  const auto found = Find();
  ASSERT_EQ(found.size(), 2U);
  // A recovered jukebox keeps using its .unsaved file.
  Jukebox again;
  ASSERT_TRUE(next.Recover(found[0], again, library));
  again.Nodes().AddChild(nullptr, "more");
  next.Keep(again, library);
  EXPECT_EQ(Find().size(), 2U);
  next.Forget(again);
  EXPECT_EQ(Find().size(), 1U);
}

TEST_F(UnsavedJukeboxesTest, InvalidFilesAreRenamedToBackups) {
  application.File("Grouping/System/Jukebox-3.unsaved", "");
  application.File("Grouping/System/Jukebox-4.unsaved", "{}\n{}");
  application.File("Grouping/System/Jukebox-5.unsaved",
                   R"({"format":"Tallow unsaved jukebox","version":2})"
                   "\n{}");
  EXPECT_TRUE(Find().empty());
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(problems[0], SystemPath() +
                             "Jukebox-3.unsaved: the unsaved changes in this file cannot be read "
                             "(it is cut off). It was renamed to end in .bak.");
  EXPECT_EQ(problems[2],
            SystemPath() +
                "Jukebox-5.unsaved: the unsaved changes in this file cannot be read (it was "
                "written by another program or a newer Tallow). It was renamed to end in .bak.");
  EXPECT_TRUE(FileExists(SystemPath() + "Jukebox-4.unsaved.bak"));
  problems.clear();
  EXPECT_TRUE(Find().empty());
  EXPECT_TRUE(problems.empty());
}

TEST_F(UnsavedJukeboxesTest, IsSavedComparesWithTheCurrentFile) {
  ASSERT_TRUE(jukebox.Save(music / "mix.juk", library));
  jukebox.Nodes().AddChild(nullptr, "x");
  unsaved.Keep(jukebox, library);
  EXPECT_FALSE(UnsavedJukeboxes::IsSaved(Find()[0], library));
  ASSERT_TRUE(jukebox.Save(music / "mix.juk", library));
  EXPECT_TRUE(UnsavedJukeboxes::IsSaved(Find()[0], library));
}

TEST_F(UnsavedJukeboxesTest, ADeclinedJukeboxIsRenamedToABackup) {
  unsaved.Keep(jukebox, library);
  UnsavedJukeboxes::Decline(Find()[0]);
  EXPECT_TRUE(Find().empty());
  EXPECT_TRUE(FileExists(First() + ".bak"));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/open_jukeboxes.h"

#include <gtest/gtest.h>

#include "jukebox/jukebox.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

class OpenJukeboxesTest : public testing::Test {
 protected:
  std::string File() const { return folder / "OpenJukeboxes.json"; }
  std::vector<OpenJukebox> LoadAgain() {
    OpenJukeboxes jukeboxes(folder.path());
    problems.clear();
    return jukeboxes.Load(problems);
  }
  OpenJukebox Example(const std::string& name) const {
    return {.file = folder / name,
            .is_active = true,
            .place = {WindowPlace::State::kMinimized, -3, 5, 640, 480},
            .shown = {"Artist", "AB\"BA\xFF"},
            .expanded = {{"Artist"}, {"Year", "1976"}}};
  }

  TempFolder folder;
  std::vector<std::string> problems;
};

TEST_F(OpenJukeboxesTest, WhatIsStoredIsLoadedAgain) {
  OpenJukeboxes jukeboxes(folder.path());
  jukeboxes.BeginStoring();
  const std::vector<OpenJukebox> open = {Example("a.juk"), {.file = folder / "b.juk"}};
  jukeboxes.Store(open);
  EXPECT_EQ(LoadAgain(), open);
  EXPECT_TRUE(problems.empty());
}

TEST_F(OpenJukeboxesTest, NothingIsStoredBeforeTheStartHasOpenedTheJukeboxes) {
  OpenJukeboxes jukeboxes(folder.path());
  jukeboxes.Store({Example("a.juk")});
  EXPECT_FALSE(FileExists(File()));
}

TEST_F(OpenJukeboxesTest, ADamagedFileIsKeptUnderAnotherName) {
  WriteFileAtomically(File(), "{\"format\":\"Tallow open jukeboxes\",\"version\":1}");
  EXPECT_TRUE(LoadAgain().empty());
  EXPECT_EQ(problems.size(), 1U);
  EXPECT_FALSE(FileExists(File()));
  EXPECT_TRUE(FileExists(File() + ".bak"));
}

TEST_F(OpenJukeboxesTest, AJukeboxOnADriveThatIsAwayIsKeptUntilItIsOpen) {
  OpenJukeboxes jukeboxes(folder.path());
  jukeboxes.BeginStoring();
  jukeboxes.KeepAway(Example("away.juk"));
  jukeboxes.Store({Example("a.juk")});
  EXPECT_EQ(LoadAgain(), (std::vector{Example("a.juk"), Example("away.juk")}));
  OpenJukebox opened{.file = folder / "away.juk"};
  jukeboxes.Store({opened});
  EXPECT_EQ(LoadAgain(), std::vector{opened});
}

TEST(DescribeOpen, TheShownAndTheExpandedFoldersAreNamed) {
  Jukebox jukebox;
  Folder& artist = jukebox.Nodes().AddChild(nullptr, "Artist");
  Folder& abba = jukebox.Nodes().AddChild(&artist, "ABBA");
  jukebox.Nodes().AddChild(&abba, "Live");
  jukebox.Nodes().AddChild(nullptr, "Year");
  abba.Open(true);
  const OpenJukebox open = DescribeOpen(jukebox);
  EXPECT_TRUE(open.shown.empty());
  EXPECT_EQ(open.expanded, (std::vector<FolderNames>{{"Artist", "ABBA"}}));
}

TEST(DescribeOpen, FoldersAreExpandedAndFoundByTheirNames) {
  Jukebox jukebox;
  Folder& year = jukebox.Nodes().AddChild(nullptr, "Year");
  Folder& artist = jukebox.Nodes().AddChild(nullptr, "Artist");
  Folder& abba = jukebox.Nodes().AddChild(&artist, "ABBA");
  year.Open(true);
  ExpandAsBefore({.file = "", .expanded = {{"Artist"}, {"Artist", "gone"}, {"gone", "x"}}},
                 jukebox);
  EXPECT_FALSE(year.Open());
  EXPECT_TRUE(artist.Open());
  EXPECT_FALSE(abba.Open());
  EXPECT_EQ(FindFolder(jukebox.Nodes(), {"Artist", "ABBA"}), &abba);
  EXPECT_EQ(FindFolder(jukebox.Nodes(), {"ABBA"}), nullptr);
  EXPECT_EQ(FindFolder(jukebox.Nodes(), {}), nullptr);
}

}  // namespace
}  // namespace tallow

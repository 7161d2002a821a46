// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/special_folders.h"

#include <gtest/gtest.h>

#include "jukebox/folder_tree.h"

namespace tallow {
namespace {

constexpr const char* kTopLevel[] = {"All Songs", "Artist", "Genre", "Decades", "Year", "New"};
constexpr const char* kDecadeNames[] = {"20's", "30's", "40's", "50's", "60's",
                                        "70's", "80's", "90's", "00's"};

TEST(SpecialFolders, AreTheSixAtTopLevel) {
  FolderTree tree;
  for (const char* const text : kTopLevel) EXPECT_FALSE(OkToDelete(tree.AddChild(nullptr, text)));
  for (const char* const text : {"all songs", "ARTIST", "Artist ", "Years", "", "20's", "By Mood"})
    EXPECT_TRUE(OkToDelete(tree.AddChild(nullptr, text))) << text;
}

TEST(SpecialFolders, AreOrdinaryBelowAnotherFolder) {
  FolderTree tree;
  Folder& mine = tree.AddChild(nullptr, "Mine");
  for (const char* const text : kTopLevel) EXPECT_TRUE(OkToDelete(tree.AddChild(&mine, text)));
  for (const char* const text : kDecadeNames) EXPECT_TRUE(OkToDelete(tree.AddChild(&mine, text)));
}

TEST(SpecialFolders, AreTheNineDecadesDirectlyBelowDecades) {
  FolderTree tree;
  Folder& decades = tree.AddChild(nullptr, "Decades");
  for (const char* const text : kDecadeNames) {
    Folder& decade = tree.AddChild(&decades, text);
    EXPECT_FALSE(OkToDelete(decade));
    EXPECT_TRUE(OkToDelete(tree.AddChild(&decade, text)));
  }
  for (const char* const text : {"10's", "1980", "80s"})
    EXPECT_TRUE(OkToDelete(tree.AddChild(&decades, text))) << text;
  // A folder "Decades" below a folder of the user has no special subfolders.
  Folder& deeper = tree.AddChild(&tree.AddChild(nullptr, "Mine"), "Decades");
  EXPECT_TRUE(OkToDelete(tree.AddChild(&deeper, "80's")));
}

TEST(SpecialFolders, AllSongsIsTheOneAtTopLevel) {
  FolderTree tree;
  EXPECT_TRUE(IsAllSongs(tree.AddChild(nullptr, "All Songs")));
  Folder& mine = tree.AddChild(nullptr, "New");
  EXPECT_FALSE(IsAllSongs(mine));
  EXPECT_FALSE(IsAllSongs(tree.AddChild(&mine, "All Songs")));
}

TEST(SpecialFolders, OfSiblingsWithTheSameTextOnlyTheFirstIsSpecial) {
  FolderTree tree;
  for (const char* const text : kTopLevel) {
    Folder& first = tree.AddChild(nullptr, text);
    Folder& second = tree.AddChild(nullptr, text);
    EXPECT_TRUE(IsSpecialFolder(first)) << text;
    EXPECT_FALSE(IsSpecialFolder(second)) << text;
    EXPECT_TRUE(OkToDelete(second)) << text;
  }
  Folder& decades = *tree.Find("Decades");
  EXPECT_TRUE(IsSpecialFolder(tree.AddChild(&decades, "80's")));
  EXPECT_FALSE(IsSpecialFolder(tree.AddChild(&decades, "80's")));
  EXPECT_FALSE(IsSpecialFolder(tree.AddChild(decades.Next(), "80's")));
  EXPECT_FALSE(IsAllSongs(*tree.Find("All Songs")->Next()));
}

TEST(SpecialFolders, FoldersBelowASpecialFolderAreAutomatic) {
  FolderTree tree;
  for (const char* const text : kTopLevel) {
    Folder& folder = tree.AddChild(nullptr, text);
    EXPECT_TRUE(IsAutomaticFolder(folder)) << text;
    Folder& below = tree.AddChild(&folder, "ABBA");
    EXPECT_TRUE(IsAutomaticFolder(below)) << text;
    EXPECT_TRUE(IsAutomaticFolder(tree.AddChild(&below, "live"))) << text;
  }
  EXPECT_TRUE(IsAutomaticFolder(tree.AddChild(tree.Find("Decades"), "80's")));
  Folder& mine = tree.AddChild(nullptr, "Mine");
  EXPECT_FALSE(IsAutomaticFolder(mine));
  EXPECT_FALSE(IsAutomaticFolder(tree.AddChild(&mine, "Artist")));
  Folder& second = tree.AddChild(nullptr, "Artist");
  EXPECT_FALSE(IsAutomaticFolder(second));
  EXPECT_FALSE(IsAutomaticFolder(tree.AddChild(&second, "ABBA")));
}

}  // namespace
}  // namespace tallow

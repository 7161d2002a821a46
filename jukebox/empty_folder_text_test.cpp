// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/empty_folder_text.h"

#include <gtest/gtest.h>

#include "jukebox/folder_tree.h"
#include "jukebox/found_songs.h"

namespace tallow {
namespace {

TEST(EmptyFolderText, TellsWhatTheFolderIsFor) {
  FolderTree tree;
  EXPECT_EQ(EmptyFolderText(tree.AddChild(nullptr, "All Songs")),
            "All songs are filed here when they are found. To search for songs, choose "
            "Songs > Bring In New Songs.");
  EXPECT_EQ(EmptyFolderText(tree.AddChild(nullptr, "New")),
            "Songs are filed here when a search finds them.");
  EXPECT_EQ(EmptyFolderText(tree.AddChild(nullptr, "Parties")),
            "This folder is empty. Drag songs onto it in the tree, or copy songs in another folder "
            "and paste them here.");
}

TEST(EmptyFolderText, TellsThatTagsFillAutomaticFolders) {
  FolderTree tree;
  Folder& artist = tree.AddChild(nullptr, "Artist");
  EXPECT_EQ(EmptyFolderText(artist),
            "Songs are filed by their tags, in the folders below this one.");
  EXPECT_EQ(EmptyFolderText(tree.AddChild(&artist, "New")), "Songs are filed here by their tags.");
}

TEST(EmptyFolderText, ASubfolderOfTheUserIsTheUsers) {
  FolderTree tree;
  Folder& mine = tree.AddChild(nullptr, "Parties");
  EXPECT_EQ(EmptyFolderText(tree.AddChild(&mine, "New")).substr(0, 21), "This folder is empty.");
}

TEST(EmptyFolderText, AFolderWithFoldersIsNotCalledEmpty) {
  FolderTree tree;
  Folder& mine = tree.AddChild(nullptr, "By Mood");
  tree.AddChild(&mine, "Slow");
  EXPECT_EQ(EmptyFolderText(mine),
            "This folder itself has no songs. Drag songs onto it in the tree, or copy songs in "
            "another folder and paste them here.");
}

TEST(EmptyFolderText, TellsThatNothingWasFound) {
  FoundSongs found;
  found.Show({});
  EXPECT_EQ(EmptyFolderText(*found.Shown()),
            "No song has all these words in its title, artist, album, genre or file name.");
}

TEST(EmptyFolderText, TellsOfSongsThatAreNotShown) {
  FolderTree tree;
  Folder& mine = tree.AddChild(nullptr, "Parties");
  mine.Items().emplace_back(1, 2);
  EXPECT_EQ(EmptyFolderText(mine),
            "The files of the songs in this folder are missing, or are left out in this style.");
}

}  // namespace
}  // namespace tallow

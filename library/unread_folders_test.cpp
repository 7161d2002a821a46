// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/unread_folders.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(UnreadFolders, AreSavedInTheirFile) {
  UnreadFolders folders;
  folders.Add({"/m/b\xFF/", true, "Input/output error"});
  folders.Add({"/m/a/", false, "Permission denied"});
  EXPECT_TRUE(folders.IsDirty());
  UnreadFolders read;
  read.Decode(folders.Encode());
  ASSERT_EQ(read.size(), 2U);
  EXPECT_EQ(read.Folders()[0].path, "/m/a/");
  EXPECT_FALSE(read.Folders()[0].below);
  EXPECT_EQ(read.Folders()[1].path, "/m/b\xFF/");
  EXPECT_TRUE(read.Folders()[1].below);
  EXPECT_FALSE(read.IsDirty());
}

TEST(UnreadFolders, AFolderThatWasReadIsForgotten) {
  UnreadFolders folders;
  folders.Add({"/m/a/", true, "Input/output error"});
  folders.MarkSaved();
  folders.Remove("/m/b/");
  EXPECT_FALSE(folders.IsDirty());
  folders.Remove("/m/a/");
  EXPECT_TRUE(folders.IsDirty());
  EXPECT_EQ(folders.size(), 0U);
}

TEST(UnreadFolders, TheSameFolderAgainIsNoChange) {
  UnreadFolders folders;
  folders.Add({"/m/a/", true, "Input/output error"});
  folders.MarkSaved();
  folders.Add({"/m/a/", true, "Permission denied"});
  EXPECT_FALSE(folders.IsDirty());
  EXPECT_EQ(folders.Folders()[0].problem, "Permission denied");
}

TEST(UnreadFolders, TheSubfoldersAreNotForgotten) {
  UnreadFolders folders;
  folders.Add({"/m/a/", true, "Input/output error"});
  folders.Add({"/m/a/", false, "Input/output error"});
  EXPECT_TRUE(folders.HasBelow("/m/a/"));
  EXPECT_FALSE(folders.HasBelow("/m/b/"));
}

TEST(UnreadFolders, AtMostTheMaximumIsKept) {
  UnreadFolders folders;
  for (std::size_t k = 0; k <= UnreadFolders::kMax; ++k)
    folders.Add({"/m/" + std::to_string(k) + "/", true, "Permission denied"});
  EXPECT_EQ(folders.size(), UnreadFolders::kMax);
}

TEST(UnreadFolders, AnInvalidFileIsRejected) {
  UnreadFolders folders;
  folders.Add({"/m/a/", true, {}});
  EXPECT_ANY_THROW(folders.Decode("{}"));
  EXPECT_ANY_THROW(
      folders.Decode(R"({"format":"Tallow unread folders","version":2,"folders":[]})"));
  EXPECT_ANY_THROW(
      folders.Decode(R"({"format":"Tallow unread folders","version":1,"folders":[{"path":1}]})"));
  EXPECT_EQ(folders.size(), 1U);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folder_tree.h"

#include <gtest/gtest.h>
#include <set>

namespace tallow {
namespace {

TEST(FolderTree, FoldersKnowTheirPlace) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "A");
  Folder& b = tree.AddChild(nullptr, "B");
  Folder& a1 = tree.AddChild(&a, "A1", 2, 3);
  Folder& a2 = tree.AddChild(&a, "A2");
  EXPECT_EQ(tree.Children(), 2);
  EXPECT_EQ(tree.Count(), 4);
  EXPECT_EQ(a.Level(), 0);
  EXPECT_EQ(a1.Level(), 1);
  EXPECT_EQ(a1.Parent(), &a);
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(a.Child(), &a1);
  EXPECT_EQ(a1.Next(), &a2);
  EXPECT_EQ(a2.Next(), nullptr);
  EXPECT_EQ(a.Next(), &b);
  EXPECT_EQ(b.Child(), nullptr);
  EXPECT_EQ(a2.Index(), 1);
  EXPECT_EQ(a1.Image(), 2);
  EXPECT_EQ(a1.SelectedImage(), 3);
  EXPECT_EQ(a2.Image(), kClosedFolder);
  EXPECT_EQ(std::set<std::uint32_t>({a.Key(), b.Key(), a1.Key(), a2.Key()}).size(), 4U);
}

TEST(FolderTree, LookUpIsByExactTextOnOneLevelFirstMatchFirst) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "Artist");
  tree.AddChild(nullptr, "Artist");
  Folder& inner = tree.AddChild(&a, "Year");
  EXPECT_EQ(tree.Find("Artist"), &a);
  EXPECT_EQ(tree.Find("artist"), nullptr);
  EXPECT_EQ(tree.Find("Year"), nullptr);
  EXPECT_EQ(tree.Find("Year", &a), &inner);
}

TEST(SongEntry, PicturesAreKeptWithinTheirRange) {
  SongEntry entry(7, 300);
  EXPECT_EQ(entry.Icon(), 255);
  entry.Icon(-1);
  EXPECT_EQ(entry.Icon(), 0);
  entry.Icon(7);
  EXPECT_EQ(entry.Icon(), 7);
  entry.LabelPosition(16777215);
  EXPECT_EQ(entry.LabelPosition(), 16777215);
  EXPECT_EQ(entry.SubItem(), 7);
}

TEST(FolderTree, AnObserverIsToldBeforeAndAfter) {
  struct Observer : FolderTreeObserver {
    void BeforeAdd(const Folder* parent, std::int32_t index) override {
      before.emplace_back(parent, index);
    }
    void AfterAdd() override { ++after; }
    std::vector<std::pair<const Folder*, std::int32_t>> before;
    int after = 0;
  } observer;
  FolderTree tree;
  tree.SetObserver(&observer);
  Folder& a = tree.AddChild(nullptr, "A");
  tree.AddChild(&a, "B");
  tree.AddChild(&a, "C");
  EXPECT_EQ(observer.before,
            (std::vector<std::pair<const Folder*, std::int32_t>>{{nullptr, 0}, {&a, 0}, {&a, 1}}));
  EXPECT_EQ(observer.after, 3);
}

}  // namespace
}  // namespace tallow

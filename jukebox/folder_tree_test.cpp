// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folder_tree.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <set>

namespace tallow {
namespace {

TEST(FolderTree, FoldersReportTheirPositionInTheTree) {
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

TEST(FolderTree, FindMatchesTheExactTextOnOneLevelAndReturnsTheFirst) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "Artist");
  tree.AddChild(nullptr, "Artist");
  Folder& inner = tree.AddChild(&a, "Year");
  EXPECT_EQ(tree.Find("Artist"), &a);
  EXPECT_EQ(tree.Find("artist"), nullptr);
  EXPECT_EQ(tree.Find("Year"), nullptr);
  EXPECT_EQ(tree.Find("Year", &a), &inner);
}

TEST(SongEntry, TheIconIsClampedToItsRange) {
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

TEST(FolderTree, TheObserverIsCalledBeforeAndAfterAChange) {
  struct Observer : FolderTreeObserver {
    void BeforeAdd(const Folder* parent, std::int32_t index) override {
      before.emplace_back(parent, index);
    }
    void AfterAdd() override { ++after; }
    void BeforeRemove(const Folder& folder) override { log += "-" + folder.Text(); }
    void AfterRemove() override { log += "."; }
    void Renamed(const Folder& folder) override { log += "=" + folder.Text(); }
    void BeforeReset() override { log += "!"; }
    void AfterReset() override { log += "."; }
    void BeforeReorder(const Folder* parent) override {
      log += "~" + (parent != nullptr ? parent->Text() : std::string());
    }
    void AfterReorder() override { log += "."; }
    std::string log;
    std::vector<std::pair<const Folder*, std::int32_t>> before;
    int after = 0;
    void BeforeReorderAll() override { log += "B"; }
    void AfterReorderAll() override { log += "E"; }
  } observer;
  FolderTree tree;
  tree.SetObserver(&observer);
  Folder& a = tree.AddChild(nullptr, "A");
  tree.AddChild(&a, "B");
  tree.AddChild(&a, "C");
  EXPECT_EQ(observer.before,
            (std::vector<std::pair<const Folder*, std::int32_t>>{{nullptr, 0}, {&a, 0}, {&a, 1}}));
  EXPECT_EQ(observer.after, 3);
  tree.Rename(a, "A+");
  tree.Reorder(&a, {1, 0});
  DetachedFolder taken = tree.Take(a);
  EXPECT_EQ(observer.log, "=A+~A+.-A+.");
  tree.Put(std::move(taken), nullptr, 0);
  EXPECT_EQ(observer.before.size(), 4U);
  FolderTree other;
  other.AddChild(&other.AddChild(nullptr, "X"), "Y");
  tree.Swap(other);
  EXPECT_TRUE(observer.log.ends_with("!."));
  EXPECT_EQ(tree.Count(), 2);
  EXPECT_EQ(tree.ChildAt(0).Child()->Text(), "Y");
  EXPECT_EQ(tree.ChildAt(0).Next(), nullptr);
  EXPECT_EQ(other.ChildAt(0).Text(), "A+");
}

/// A tree as text: "A(B,C),D".
std::string Shape(const Folder& folder) {
  std::string text = folder.Text();
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    text += (k == 0 ? "(" : ",") + Shape(folder.ChildAt(k));
  return folder.Children() > 0 ? text + ")" : text;
}

std::string Shape(const FolderTree& tree) {
  std::string text;
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    text += (k == 0 ? "" : ",") + Shape(tree.ChildAt(k));
  return text;
}

/// Checks that every folder's parent, index, level and key are consistent with the tree.
void ExpectSound(const FolderTree& tree) {
  std::int32_t count = 0;
  std::set<std::uint32_t> keys;
  const std::function<void(const Folder&, const Folder*, std::int32_t)> look =
      [&](const Folder& folder, const Folder* parent, std::int32_t index) {
        ++count;
        EXPECT_TRUE(keys.insert(folder.Key()).second);
        EXPECT_EQ(folder.Parent(), parent);
        EXPECT_EQ(folder.Index(), index);
        EXPECT_EQ(folder.Level(), parent != nullptr ? parent->Level() + 1 : 0);
        for (std::int32_t k = 0; k < folder.Children(); ++k) look(folder.ChildAt(k), &folder, k);
      };
  for (std::int32_t k = 0; k < tree.Children(); ++k) look(tree.ChildAt(k), nullptr, k);
  EXPECT_EQ(tree.Count(), count);
}

TEST(FolderTree, FoldersCanBeRemovedAndInsertedElsewhere) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "A");
  Folder& b = tree.AddChild(&a, "B");
  tree.AddChild(&b, "C").Items().emplace_back(7, 2);
  tree.AddChild(&a, "D");
  Folder& e = tree.AddChild(nullptr, "E");
  EXPECT_EQ(b.CountAll(), 2);
  EXPECT_EQ(a.Height(), 2);
  DetachedFolder taken = tree.Take(b);
  EXPECT_EQ(Shape(tree), "A(D),E");
  ExpectSound(tree);
  EXPECT_EQ(&tree.Put(std::move(taken), &e, 0), &b);
  EXPECT_EQ(Shape(tree), "A(D),E(B(C))");
  EXPECT_EQ(b.Child()->Items()[0].SubItem(), 7);
  ExpectSound(tree);
  tree.Put(tree.Take(b), nullptr, 1);
  EXPECT_EQ(Shape(tree), "A(D),B(C),E");
  ExpectSound(tree);
}

TEST(FolderTree, ACopyIsIndependentOfItsOriginal) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "A", 2, 3);
  a.Open(true);
  Folder& b = tree.AddChild(&a, "B");
  b.Items().emplace_back(7, 5);
  b.Items()[0].LabelPosition(1);
  FolderTree other;
  other.AddChild(nullptr, "X");
  Folder& copy = other.Put(other.Copy(a), nullptr, 1);
  tree.Rename(b, "changed");
  EXPECT_EQ(Shape(other), "X,A(B)");
  EXPECT_EQ(copy.Image(), 2);
  EXPECT_EQ(copy.SelectedImage(), 3);
  EXPECT_TRUE(copy.Open());
  EXPECT_EQ(copy.Child()->Items()[0].SubItem(), 7);
  EXPECT_EQ(copy.Child()->Items()[0].Icon(), 5);
  EXPECT_EQ(copy.Child()->Items()[0].LabelPosition(), 0);
  ExpectSound(other);
}

TEST(FolderTree, FoldersCanBeReordered) {
  FolderTree tree;
  for (const char* const text : {"A", "B", "C"}) tree.AddChild(nullptr, text);
  tree.AddChild(&tree.ChildAt(1), "B1");
  tree.Reorder(nullptr, {2, 0, 1});
  EXPECT_EQ(Shape(tree), "C,A,B(B1)");
  ExpectSound(tree);
}

TEST(FolderTree, AFolderHoldsItselfAndWhatIsBelow) {
  FolderTree tree;
  Folder& a = tree.AddChild(nullptr, "A");
  Folder& b = tree.AddChild(&a, "B");
  Folder& c = tree.AddChild(nullptr, "C");
  EXPECT_TRUE(a.Holds(a));
  EXPECT_TRUE(a.Holds(b));
  EXPECT_FALSE(b.Holds(a));
  EXPECT_FALSE(a.Holds(c));
}

TEST(FolderTree, TheDepthIsLimitedToAThousandLevels) {
  FolderTree tree;
  Folder* deepest = nullptr;
  for (std::int32_t level = 0; level <= kMaxLevel; ++level) deepest = &tree.AddChild(deepest, "x");
  Folder& two = tree.AddChild(nullptr, "two");
  tree.AddChild(&two, "below");
  EXPECT_EQ(deepest->Level(), kMaxLevel);
  EXPECT_FALSE(FolderTree::FitsBelow(deepest, two));
  EXPECT_FALSE(FolderTree::FitsBelow(deepest->Parent(), two));
  EXPECT_TRUE(FolderTree::FitsBelow(deepest->Parent()->Parent(), two));
  EXPECT_TRUE(FolderTree::FitsBelow(nullptr, two));
}

TEST(FolderTree, RandomEditsKeepTheTreeConsistent) {
  FolderTree tree;
  std::mt19937 random(3);
  const auto any = [&]() -> Folder* {
    std::vector<Folder*> all{nullptr};
    const std::function<void(Folder&)> add = [&](Folder& folder) {
      all.push_back(&folder);
      for (std::int32_t k = 0; k < folder.Children(); ++k) add(folder.ChildAt(k));
    };
    for (std::int32_t k = 0; k < tree.Children(); ++k) add(tree.ChildAt(k));
    return all[random() % all.size()];
  };
  const auto some_index = [&](const Folder* parent) {
    const std::int32_t siblings = parent != nullptr ? parent->Children() : tree.Children();
    return static_cast<std::int32_t>(random() % (static_cast<std::uint32_t>(siblings) + 1));
  };
  for (int k = 0; k < 3000; ++k) {
    Folder* const one = any();
    switch (random() % 5) {
      case 0:
        tree.AddChild(one, std::to_string(k));
        break;
      case 1:
        if (one != nullptr) {
          DetachedFolder taken = tree.Take(*one);
          Folder* const parent = any();
          if (random() % 3 != 0) tree.Put(std::move(taken), parent, some_index(parent));
        }
        break;
      case 2:
        if (one != nullptr && tree.Count() < 200) {
          Folder* const parent = any();
          tree.Put(tree.Copy(*one), parent, some_index(parent));
        }
        break;
      case 3:
        if (one != nullptr) tree.Rename(*one, "r" + std::to_string(k));
        break;
      default: {
        const std::int32_t count = one != nullptr ? one->Children() : tree.Children();
        std::vector<std::int32_t> order(static_cast<std::size_t>(count));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), random);
        tree.Reorder(one, order);
      }
    }
    ExpectSound(tree);
  }
}

}  // namespace
}  // namespace tallow

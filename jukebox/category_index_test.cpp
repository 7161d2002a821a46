// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/category_index.h"

#include <gtest/gtest.h>
#include <random>

#include "util/like.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Reference implementation: linear search over the children, each text used as a pattern.
Folder& ReferenceFolderFor(FolderTree& tree, Folder& category, const std::string& value,
                           bool exact) {
  for (Folder* same = category.Child(); same != nullptr && !exact; same = same->Next())
    if (ToLower(same->Text()) == ToLower(value)) return *same;
  Folder* child = category.Child();
  for (std::int32_t k = 0; k < category.Children(); ++k, child = child->Next()) {
    const bool matches =
        exact ? Like(child->Text(), value) : Like(ToLower(value), ToLower(child->Text()) + "*");
    if (matches) return *child;
  }
  return tree.AddChild(&category, value);
}

TEST(CategoryIndex, AgreesWithALinearSearchOverTheChildren) {
  std::mt19937 random(31);
  static const char* const kLetters[] = {"a", "A", "b", "B", " ", "\xC3\xA9", "\xC3\x89", "1"};
  static const char* const kWild[] = {"*", "?", "#", "[ab]", "[", "]", "\xC3"};
  const auto text = [&](bool wild) {
    std::string drawn;
    for (auto n = 1 + random() % 4; n > 0; --n)
      drawn += wild && random() % 3 == 0 ? kWild[random() % 7] : kLetters[random() % 8];
    return drawn;
  };
  for (int round = 0; round < 1500; ++round) {
    FolderTree fast_tree;
    FolderTree slow_tree;
    Folder& fast = fast_tree.AddChild(nullptr, "Artist");
    Folder& slow = slow_tree.AddChild(nullptr, "Artist");
    const bool wild = random() % 2 == 0;
    for (auto n = random() % 5; n > 0; --n) {
      const std::string folder = random() % 20 == 0 ? "" : text(wild);
      fast_tree.AddChild(&fast, folder);
      slow_tree.AddChild(&slow, folder);
    }
    CategoryIndex index(fast_tree, fast, CategoryIndex::Match::kBeginning);
    for (int k = 0; k < 30; ++k) {
      const std::string value = text(wild);
      ASSERT_EQ(index.FolderFor(value).Index(),
                ReferenceFolderFor(slow_tree, slow, value, false).Index())
          << "round " << round << " value " << value;
    }
    ASSERT_EQ(fast.Children(), slow.Children());
  }
}

TEST(CategoryIndex, ExactMeansTheSameTextInTheSameCase) {
  FolderTree tree;
  Folder& genre = tree.AddChild(nullptr, "Genre");
  tree.AddChild(&genre, "rock");
  tree.AddChild(&genre, "*");
  CategoryIndex index(tree, genre, CategoryIndex::Match::kExact);
  EXPECT_EQ(index.FolderFor("Rock").Index(), 2);
  EXPECT_EQ(index.FolderFor("Rock").Index(), 2);
  EXPECT_EQ(index.FolderFor("rock").Index(), 0);
  FolderTree slow_tree;
  Folder& slow = slow_tree.AddChild(nullptr, "Genre");
  slow_tree.AddChild(&slow, "rock");
  slow_tree.AddChild(&slow, "*");
  EXPECT_EQ(ReferenceFolderFor(slow_tree, slow, "Rock", true).Index(), 2);
}

}  // namespace
}  // namespace tallow

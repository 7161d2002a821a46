// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the position arithmetic with lists of numbered elements that are edited one by one.
#include "jukebox/list_positions.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

namespace tallow {
namespace {

using List = std::vector<std::int32_t>;

std::int32_t PositionOf(std::int32_t element, const List& list) {
  return static_cast<std::int32_t>(std::find(list.begin(), list.end(), element) - list.begin());
}

bool Has(const List& list, std::int32_t element) {
  return std::find(list.begin(), list.end(), element) != list.end();
}

List Without(List list, const List& removed) {
  std::erase_if(list, [&](std::int32_t element) { return Has(removed, element); });
  return list;
}

/// The positions in a list of those of the given elements that it has.
Positions PositionsOf(const List& elements, const List& list) {
  Positions positions;
  for (const std::int32_t element : elements)
    if (Has(list, element)) positions.push_back(PositionOf(element, list));
  std::sort(positions.begin(), positions.end());
  return positions;
}

class ListPositions : public testing::Test {
 protected:
  int Random(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

  /// A list of up to 12 different elements, in random order.
  List AnyList() {
    List list(static_cast<std::size_t>(Random(13)));
    std::iota(list.begin(), list.end(), 100);
    std::shuffle(list.begin(), list.end(), random);
    return list;
  }
  List SomeOf(const List& list) {
    List some;
    for (const std::int32_t element : list)
      if (Random(3) == 0) some.push_back(element);
    return some;
  }

  std::mt19937 random;
};

TEST_F(ListPositions, FollowARemovalAndBack) {
  for (int round = 0; round < 2000; ++round) {
    const List list = AnyList();
    const List removed = SomeOf(list);
    const List left = Without(list, removed);
    const List some = SomeOf(left);
    EXPECT_EQ(AfterRemoval(PositionsOf(some, list), PositionsOf(removed, list)),
              PositionsOf(some, left));
    EXPECT_EQ(BeforeRemoval(PositionsOf(some, left), PositionsOf(removed, list)),
              PositionsOf(some, list));
  }
}

TEST_F(ListPositions, ElementsAreRemovedAndComeBackToTheirPositions) {
  for (int round = 0; round < 2000; ++round) {
    const List list = AnyList();
    const List removed = SomeOf(list);
    const Positions positions = PositionsOf(removed, list);
    List edited = list;
    EXPECT_EQ(RemoveAt(edited, positions), removed);
    EXPECT_EQ(edited, Without(list, removed));
    InsertAt(edited, positions, removed);
    EXPECT_EQ(edited, list);
  }
}

TEST_F(ListPositions, ElementsWithPositionsPastTheEndAreAppended) {
  List list = {1, 2};
  InsertAt(list, {1, 7}, {8, 9});
  EXPECT_EQ(list, (List{1, 8, 2, 9}));
}

TEST_F(ListPositions, APrunedToggleActsAsOneThatNeverHadTheElements) {
  for (int round = 0; round < 2000; ++round) {
    const List with = AnyList();
    const List toggled = SomeOf(with);
    const List without = Without(with, toggled);
    const bool in_list = Random(2) == 0;
    const List& current = in_list ? with : without;
    const List& other = in_list ? without : with;
    const List pruned = SomeOf(current);

    ElementToggle toggle(PositionsOf(toggled, with), in_list);
    EXPECT_EQ(toggle.Prune(PositionsOf(pruned, current)), PositionsOf(pruned, other));
    List list = Without(current, pruned);
    List outside = in_list ? List() : toggled;
    toggle.Toggle(list, outside);
    EXPECT_EQ(list, Without(other, pruned));
    toggle.Toggle(list, outside);
    EXPECT_EQ(list, Without(current, pruned));
  }
}

TEST_F(ListPositions, APrunedPermutationOrdersTheOtherElementsAsBefore) {
  for (int round = 0; round < 2000; ++round) {
    const List current = AnyList();
    const auto reordered = static_cast<std::size_t>(Random(static_cast<int>(current.size()) + 1));
    std::vector<std::int32_t> sources(reordered);
    std::iota(sources.begin(), sources.end(), 0);
    std::shuffle(sources.begin(), sources.end(), random);
    List other = current;
    for (std::size_t k = 0; k < reordered; ++k)
      other[k] = current[static_cast<std::size_t>(sources[k])];
    const List pruned = SomeOf(current);

    Permutation permutation(sources);
    EXPECT_EQ(permutation.Prune(PositionsOf(pruned, current)), PositionsOf(pruned, other));
    const auto apply = [&permutation](const List& list) {
      List result;
      for (const std::int32_t from : permutation.SourcesFor(static_cast<std::int32_t>(list.size())))
        result.push_back(list[static_cast<std::size_t>(from)]);
      return result;
    };
    EXPECT_EQ(apply(Without(current, pruned)), Without(other, pruned));
    permutation.Invert();
    EXPECT_EQ(apply(Without(other, pruned)), Without(current, pruned));
  }
}

TEST_F(ListPositions, APermutationStoresOnlyTheRangeThatMoves) {
  Permutation permutation({0, 1, 3, 4, 2, 5});
  EXPECT_EQ(permutation.First(), 2U);
  EXPECT_EQ(permutation.End(), 5U);
  EXPECT_EQ(permutation.SourceOf(2), 3U);
  EXPECT_EQ(permutation.SourceOf(1), 1U);
  EXPECT_EQ(permutation.SourceOf(5), 5U);
  EXPECT_EQ(permutation.SourcesFor(7), (List{0, 1, 3, 4, 2, 5, 6}));
  // The element that moves to the end of the range is gone, and one before the range.
  EXPECT_EQ(permutation.Prune({0, 2}), (Positions{0, 4}));
  EXPECT_EQ(permutation.size(), 0U);
  EXPECT_EQ(permutation.SourcesFor(4), (List{0, 1, 2, 3}));
}

}  // namespace
}  // namespace tallow

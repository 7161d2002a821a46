// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tallow {

// Arithmetic on positions in a list that is edited.
//
// An edit here is something that can be toggled: applied once it changes the list, applied again it
// restores it. So an edit lies between two states of the list, the current one and the other one,
// and toggling exchanges the two. The positions that an edit stores refer to these two states.
//
// Pruning removes elements from both states at once, as if they had never been in the list. Prune
// is given their positions in the current state. It corrects the positions that the edit stores and
// returns the positions that the elements had in the other state. With the returned positions the
// next edit in a history of edits can be pruned, and so on.

/// Positions in a list, from 0, ascending and without duplicates.
using Positions = std::vector<std::int32_t>;

/// Returns where elements are after other elements were removed.
///
/// \param positions positions before the removal, in any order, none of them in `removed`
Positions AfterRemoval(std::vector<std::int32_t> positions, const Positions& removed);

/// Returns where elements were before other elements were removed, the inverse of AfterRemoval.
Positions BeforeRemoval(Positions positions, const Positions& removed);

/// Removes the elements at the given positions from a list and returns them.
template <typename Element>
std::vector<Element> RemoveAt(std::vector<Element>& list, const Positions& positions) {
  std::vector<Element> removed;
  removed.reserve(positions.size());
  std::size_t kept = 0;
  for (std::size_t k = 0; k < list.size(); ++k) {
    const std::size_t next = removed.size();
    if (next < positions.size() && static_cast<std::size_t>(positions[next]) == k)
      removed.push_back(list[k]);
    else
      list[kept++] = list[k];
  }
  list.resize(kept);
  return removed;
}

/// Inserts elements into a list so that each gets its given position; the inverse of RemoveAt.
/// Elements whose positions lie past the end are appended.
template <typename Element>
void InsertAt(std::vector<Element>& list, const Positions& positions,
              const std::vector<Element>& added) {
  std::size_t from = list.size();
  std::size_t next = added.size();
  list.resize(list.size() + added.size());
  for (std::size_t k = list.size(); k-- > 0 && next > 0;) {
    if (from == 0 || static_cast<std::size_t>(positions[next - 1]) >= k)
      list[k] = added[--next];
    else
      list[k] = list[--from];
  }
}

/// An edit that removes elements from a list, or adds them.
class ElementToggle {
 public:
  /// \param positions where the elements are in the state of the list that has them
  /// \param in_list   whether the current state has them
  ElementToggle(Positions positions, bool in_list)
      : positions_(std::move(positions)), in_list_(in_list) {}

  const Positions& At() const noexcept { return positions_; }
  bool InList() const noexcept { return in_list_; }

  /// Toggles the edit.
  /// \param outside the elements while they are not in the list
  template <typename Element>
  void Toggle(std::vector<Element>& list, std::vector<Element>& outside) {
    if (in_list_) {
      outside = RemoveAt(list, positions_);
    } else {
      InsertAt(list, positions_, outside);
      std::vector<Element>().swap(outside);
    }
    in_list_ = !in_list_;
  }

  /// Prunes elements. Those that only the current state has are removed from this edit, because
  /// they have no position in the other state.
  ///
  /// \param pruned positions in the current state
  /// \returns their positions in the other state
  Positions Prune(const Positions& pruned);

 private:
  Positions positions_;
  bool in_list_;
};

/// An edit that reorders elements of a list. Only the range from the first to the last element that
/// moves is stored; all elements outside stay where they are.
class Permutation {
 public:
  /// \param sources for each position after toggling, the position before; each from 0 to the
  ///                number of sources - 1 occurs once
  explicit Permutation(std::vector<std::int32_t> sources);

  /// The first position of the range.
  std::size_t First() const noexcept { return first_; }
  /// The position after the range.
  std::size_t End() const noexcept { return first_ + sources_.size(); }
  /// The length of the range; 0 when every element stays.
  std::size_t size() const noexcept { return sources_.size(); }
  /// Returns which element toggling moves to a position, by its current position.
  std::size_t SourceOf(std::size_t position) const {
    if (position < First() || position >= End()) return position;
    return static_cast<std::size_t>(sources_[position - first_]);
  }

  /// Returns the sources of all elements of a list.
  /// \param count length of the list, at least End()
  std::vector<std::int32_t> SourcesFor(std::int32_t count) const;

  /// Makes this the permutation that restores the former order.
  void Invert();

  /// Prunes elements.
  ///
  /// \param pruned positions in the current state
  /// \returns their positions in the other state
  Positions Prune(const Positions& pruned);

 private:
  /// Stores the range of the sources of a longer range.
  /// \param first position of the first source
  void Store(std::vector<std::int32_t> sources, std::size_t first);

  std::size_t first_ = 0;
  std::vector<std::int32_t> sources_;
};

}  // namespace tallow

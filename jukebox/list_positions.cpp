// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/list_positions.h"

#include <algorithm>
#include <iterator>

namespace tallow {

Positions AfterRemoval(std::vector<std::int32_t> positions, const Positions& removed) {
  for (std::int32_t& position : positions) {
    const auto end = std::lower_bound(removed.begin(), removed.end(), position);
    position -= static_cast<std::int32_t>(end - removed.begin());
  }
  return positions;
}

Positions BeforeRemoval(Positions positions, const Positions& removed) {
  // The number of removed elements before the current one.
  std::size_t passed = 0;
  for (std::int32_t& position : positions) {
    while (passed < removed.size() &&
           removed[passed] <= position + static_cast<std::int32_t>(passed))
      ++passed;
    position += static_cast<std::int32_t>(passed);
  }
  return positions;
}

Positions ElementToggle::Prune(const Positions& pruned) {
  if (!in_list_) {
    Positions in_other_state = BeforeRemoval(pruned, positions_);
    positions_ = AfterRemoval(std::move(positions_), in_other_state);
    return in_other_state;
  }
  Positions in_both_states;
  std::set_difference(pruned.begin(), pruned.end(), positions_.begin(), positions_.end(),
                      std::back_inserter(in_both_states));
  Positions in_other_state = AfterRemoval(std::move(in_both_states), positions_);
  Positions left;
  std::set_difference(positions_.begin(), positions_.end(), pruned.begin(), pruned.end(),
                      std::back_inserter(left));
  positions_ = AfterRemoval(std::move(left), pruned);
  return in_other_state;
}

std::vector<std::int32_t> Permutation::SourcesFor(std::int32_t count) const {
  std::vector<std::int32_t> sources = sources_;
  for (auto k = static_cast<std::int32_t>(size()); k < count; ++k) sources.push_back(k);
  return sources;
}

void Permutation::Invert() {
  std::vector<std::int32_t> inverse(size());
  for (std::size_t k = 0; k < size(); ++k) inverse[SourceOf(k)] = static_cast<std::int32_t>(k);
  sources_ = std::move(inverse);
}

Positions Permutation::Prune(const Positions& pruned) {
  const auto first_after =
      std::lower_bound(pruned.begin(), pruned.end(), static_cast<std::int32_t>(size()));
  std::vector<bool> is_pruned(size());
  for (auto position = pruned.begin(); position != first_after; ++position)
    is_pruned[static_cast<std::size_t>(*position)] = true;
  Positions in_other_state;
  std::vector<std::int32_t> left;
  for (std::size_t k = 0; k < size(); ++k)
    if (is_pruned[SourceOf(k)])
      in_other_state.push_back(static_cast<std::int32_t>(k));
    else
      left.push_back(sources_[k]);
  sources_ = AfterRemoval(std::move(left), pruned);
  // Elements after the reordered ones have the same position in both states.
  in_other_state.insert(in_other_state.end(), first_after, pruned.end());
  return in_other_state;
}

}  // namespace tallow

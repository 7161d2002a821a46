// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/list_positions.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>

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

Permutation::Permutation(std::vector<std::int32_t> sources) { Store(std::move(sources), 0); }

void Permutation::Store(std::vector<std::int32_t> sources, std::size_t first) {
  const auto stays = [&](std::size_t k) {
    return static_cast<std::size_t>(sources[k]) == first + k;
  };
  std::size_t begin = 0;
  std::size_t end = sources.size();
  while (begin < end && stays(begin)) ++begin;
  while (end > begin && stays(end - 1)) --end;
  if (begin == 0 && end == sources.size())
    sources_ = std::move(sources);
  else
    // Copied, because a vector that gets shorter keeps its memory.
    sources_ = std::vector<std::int32_t>(sources.begin() + static_cast<std::ptrdiff_t>(begin),
                                         sources.begin() + static_cast<std::ptrdiff_t>(end));
  first_ = size() == 0 ? 0 : first + begin;
}

std::vector<std::int32_t> Permutation::SourcesFor(std::int32_t count) const {
  std::vector<std::int32_t> sources(static_cast<std::size_t>(count));
  std::iota(sources.begin(), sources.end(), 0);
  std::copy(sources_.begin(), sources_.end(),
            sources.begin() + static_cast<std::ptrdiff_t>(first_));
  return sources;
}

void Permutation::Invert() {
  std::vector<std::int32_t> inverse(size());
  for (std::size_t k = First(); k < End(); ++k)
    inverse[SourceOf(k) - first_] = static_cast<std::int32_t>(k);
  sources_ = std::move(inverse);
}

Positions Permutation::Prune(const Positions& pruned) {
  const auto first_inside =
      std::lower_bound(pruned.begin(), pruned.end(), static_cast<std::int32_t>(First()));
  const auto first_after =
      std::lower_bound(first_inside, pruned.end(), static_cast<std::int32_t>(End()));
  std::vector<bool> is_pruned(size());
  for (auto position = first_inside; position != first_after; ++position)
    is_pruned[static_cast<std::size_t>(*position) - first_] = true;
  // Elements outside the range have the same position in both states.
  Positions in_other_state(pruned.begin(), first_inside);
  std::vector<std::int32_t> left;
  for (std::size_t k = First(); k < End(); ++k)
    if (is_pruned[SourceOf(k) - first_])
      in_other_state.push_back(static_cast<std::int32_t>(k));
    else
      left.push_back(static_cast<std::int32_t>(SourceOf(k)));
  in_other_state.insert(in_other_state.end(), first_after, pruned.end());
  Store(AfterRemoval(std::move(left), pruned),
        first_ - static_cast<std::size_t>(first_inside - pruned.begin()));
  return in_other_state;
}

}  // namespace tallow

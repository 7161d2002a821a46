// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace tallow {

/// The best and the lowest rank that a user can give.
inline constexpr std::int32_t kHighestRank = 7;
inline constexpr std::int32_t kLowestRank = 3;

/// The rank that the user gave a song, 7 to 3; 0 when it has none.
/// \param rank SongView::Rank
constexpr std::int32_t GivenRank(std::int32_t rank) noexcept {
  return rank >= kLowestRank && rank <= kHighestRank ? rank : 0;
}

}  // namespace tallow

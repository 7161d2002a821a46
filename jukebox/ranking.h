// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace tallow {

class Folder;
class clsMain;

/// The best rank of a song, and the rank of a song that was never ranked.
inline constexpr int kBestRank = 7;
inline constexpr int kNeverRanked = 2;

/// Number of items in the rank menu, ordered from best to worst.
inline constexpr int kRankItems = 6;

/// Ranks songs of a folder and then saves the library once.
///
/// The items store "7", "6", "5", "4", "3" and "3" again. The last item differs only in the icon:
/// it sets icon 2 at once, and labelling the folder replaces it by 3. Only songs that were never
/// ranked have the stored rank "2".
///
/// \param rows positions in the list, from 0; invalid positions are ignored
/// \param item 1 (best) to kRankItems (worst)
/// \returns whether the library was saved; the ranks are set in memory in any case
bool RankSongs(Folder& folder, const std::vector<int>& rows, int item, clsMain& library);

}  // namespace tallow

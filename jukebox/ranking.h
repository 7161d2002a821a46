// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace tallow {

class Folder;
class clsMain;

/// The six items of the rank menu, from the best to the worst.
inline constexpr int kRankItems = 6;

/// Ranks some songs of a folder and saves the library, once.
///
/// The items store "7", "6", "5", "4", "3" and "3" again: the last one differs only in the picture that
/// the entries get at once, 2, which gives way to 3 when the folder is labelled next. Only songs that
/// were never ranked carry a "2".
///
/// \param rows places in the list, from 0; others than there are entries are passed over
/// \param item 1 (best) to kRankItems (worst)
/// \returns whether the library could be saved; the ranks hold in memory in any case
bool RankSongs(Folder& folder, const std::vector<int>& rows, int item, clsMain& library);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tallow {

class EditHistory;
class Folder;
class clsMain;

/// The best rank of a song, and the rank of a song that was never ranked.
inline constexpr int kBestRank = 7;
inline constexpr int kNeverRanked = 2;

/// Number of items in the rank menu, ordered from best to worst.
inline constexpr int kRankItems = 6;

/// The number of the item "No Rank", which comes after them.
inline constexpr int kNoRankItem = kRankItems + 1;

/// A rank as it is stored, and the picture that the list shows at once.
struct NewRank {
  std::string stored;  ///< see kSongRank
  int picture = kNeverRanked;
};

/// Ranks songs of a folder, as one step of the history, and then saves the library once. Songs that
/// have their new rank already are not part of the step.
///
/// \param rows    positions in the list, from 0; invalid positions are ignored
/// \param rank_of returns the new rank of a song
/// \param rank    the song's present rank, see SongView::Rank
/// \returns whether the library was saved; the ranks are set in memory in any case
bool RankSongs(EditHistory& history, Folder& folder, const std::vector<int>& rows,
               const std::function<NewRank(int rank)>& rank_of, clsMain& library);

/// Ranks songs by an item of the rank menu.
///
/// The items store "7", "6", "5", "4", "3" and "3" again. The last item differs only in the icon:
/// it sets icon 2 at once, and labelling the folder replaces it by 3. kNoRankItem stores "2", the
/// rank of songs that were never ranked.
///
/// \param item 1 (best) to kRankItems (worst), or kNoRankItem
bool RankSongs(EditHistory& history, Folder& folder, const std::vector<int>& rows, int item,
               clsMain& library);

/// Gives the pictures of ranked entries to all entries of their songs in the folder.
/// \param rows positions of the ranked entries, from 0; invalid positions are ignored
void ShowRanksAtAllEntries(Folder& folder, const std::vector<int>& rows);

}  // namespace tallow

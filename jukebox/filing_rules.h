// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "details/song_tags.h"

namespace tallow {

// The rules of filing that need no tree. See Switches for when they apply.

/// The text of the folder of a year's decade: "20's" to "90's" for 1920 to 1999, "00's" for 2000 to
/// 2009, then "2010's" and so on. Empty for years before 1920.
std::string DecadeText(std::int32_t year);

/// The first year of the decade that a folder text stands for; 0 for other texts.
std::int32_t FirstYearOfDecade(std::string_view text);

/// The text of the folder of a song's album: the album, and behind it in parentheses the artist
/// whose folder the song belongs to, as in "Greatest Hits (Queen)". Albums of one title and of
/// different artists thus have different folders, and the albums are ordered by title. In NFC;
/// empty for a song without an album.
std::string AlbumFolderText(const SongTags& tags);

/// Compares two elements of a list by their positions, from 0.
using ComesBefore = std::function<bool(std::int32_t, std::int32_t)>;

/// Returns the order of a list in which new elements, so far at its end, are where they belong:
/// each directly before the first old element that comes after it. Old elements keep their order;
/// new ones that belong to the same place are sorted, equal ones in their present order.
///
/// \param count     number of elements
/// \param first_new position of the first new element; 0 sorts the list
/// \returns for each position, the present position of the element that belongs there
std::vector<std::int32_t> OrderWithNew(std::int32_t count, std::int32_t first_new,
                                       const ComesBefore& comes_before);

}  // namespace tallow

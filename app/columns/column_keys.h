// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "app/columns/list_column.h"
#include "jukebox/column_sort.h"

namespace tallow {

class LibraryDetails;
class PlayCounts;
class clsMain;

/// The sort keys of songs in a column, see SongColumns::KeysOf. Texts become numbers once: each
/// distinct text of songs is folded and compared once, not once for each song.
///
/// \param details have to be loaded
std::vector<ColumnKey> KeysOfColumn(const clsMain& library, LibraryDetails& details,
                                    PlayCounts& counts, ListColumn column,
                                    std::span<const std::int32_t> records);

}  // namespace tallow

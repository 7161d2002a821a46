// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "jukebox/jukebox_format.h"
#include "library/cls_main.h"

namespace tallow {

/// Songs of a jukebox that was saved while record numbers were confused: the names in the file
/// denote other songs than the numbers do.
struct ConfusedSongs {
  std::int32_t number = 0;  ///< record number of the first such song
  std::string by_name;      ///< file name that the jukebox has for the number
  std::string by_number;    ///< file name of the song that now has the number
  std::size_t count = 0;    ///< number of such songs
};

/// Asks whether confused songs are those given by the names (true) or by the numbers (false).
/// Returns no value when there is no answer.
using ResolveConfusedSongs = std::function<std::optional<bool>(const ConfusedSongs&)>;

/// The highest placeholder number. Placeholders go down from here. They replace the record number
/// of an entry when neither its number nor its name denotes a song of the library, so that only the
/// file name is known. Such an entry is hidden until the library has a song with that name.
inline constexpr std::int32_t kFirstPlaceholder = clsMain::kFirstPlaceholder;
inline constexpr bool IsPlaceholder(std::int32_t record) { return record <= kFirstPlaceholder; }

/// Links the songs of a jukebox file to the library, by record number and file name.
///
/// For each name in the file:
/// - If the song has returned under a new number, that number is used.
/// - If the number denotes a present song, or a missing song that is remembered, and the file name
///   matches, the number stays.
/// - Otherwise the number becomes that of the only present song with the name, or else of the only
///   remembered missing song with it.
/// - If there is no such song, or several, the number stays when it is a placeholder or a row of
///   the library without a present song. Otherwise the entry gets a placeholder number, see
///   kFirstPlaceholder.
///
/// If the user has used the modern style, in which several songs may have one file name, and the
/// file has the place of a song, the song is the one at that path. Otherwise it is the one with the
/// number, if its name and size are those in the file, or else the only one with that name and
/// size. A size that is not known is not compared with that of the number's song, and without a
/// size in the file, or a place, the rules above hold.
///
/// \param ask called once if numbers were repaired after the jukebox was saved and the jukebox has
///            songs whose numbers were confused; may be empty. Without an answer the names are
///            used.
void RelinkSongs(JukeboxContent& content, const clsMain& library,
                 const ResolveConfusedSongs& ask = {});

}  // namespace tallow

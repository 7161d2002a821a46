// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "jukebox/jukebox_format.h"

namespace tallow {

class FolderTree;
class clsMain;

/// Parses the bytes of a file. The result satisfies all rules of the format, see
/// jukebox_format.h.
///
/// \throws JukeboxFileError
JukeboxContent DecodeJukebox(std::string_view bytes);

/// Returns the names in a file of songs that are absent from the library or missing. They must be
/// kept in case the library gets these songs again.
SongNames AbsentNames(const JukeboxContent& content, const clsMain& library);

/// The places in a file of the songs that AbsentNames returns. They must be kept as well, because
/// two of these songs may have one name.
SongPlaces AbsentPlaces(const JukeboxContent& content, const clsMain& library);

/// Adds folders and songs to an empty tree. The entries have no labels yet; their icons show the
/// ranks of the songs.
void FillTree(const JukeboxContent& content, const clsMain& library, FolderTree& tree);

}  // namespace tallow

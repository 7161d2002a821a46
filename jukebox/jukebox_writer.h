// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "jukebox/jukebox_format.h"

namespace tallow {

class FolderTree;
class clsMain;

/// Encodes a jukebox as the bytes of a jukebox file.
///
/// \param absent file names of songs that the library does not have; these are written too
/// \param absent_places places of such songs
std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library, const SongNames& absent = {},
                          const SongPlaces& absent_places = {});

}  // namespace tallow

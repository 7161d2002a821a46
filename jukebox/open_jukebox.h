// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "jukebox/confused_songs.h"
#include "jukebox/sorting.h"

namespace tallow {

class Jukebox;
class TagCache;
class clsMain;

/// Loads a jukebox from its file, see Jukebox::Load.
using LoadFromFile = std::function<bool(const std::string& path, const AskWhichSongs& ask)>;

/// Takes a jukebox from its file: the folders and the place, and files the songs that have come to the
/// library since it was saved.
///
/// \param caption    what it is called: the file's name in upper case, as the caller makes it; where nothing
///                   is left of that, the whole name
/// \param windows    the open jukeboxes, this one among them
/// \param load       loads this jukebox
/// \param ask        asks about songs whose numbers were confused; may be empty
/// \param found_tags tags that are known already, sealed; null for none
/// \param progress   see FillAutomaticFolders; the jukebox is open with the songs that have been filed when this
///                   ends the filing
/// \returns false when the file cannot be used; jukebox.FileProblem() says why, and nothing has changed
/// \throws FilingError after everything else is done, see FillAutomaticFolders
bool OpenJukeboxFile(const std::string& path, std::string_view caption, Jukebox& jukebox,
                     clsMain& library, std::span<Jukebox* const> windows, const LoadFromFile& load,
                     const AskQuestion& ask, const TagCache* found_tags = nullptr,
                     const FilingProgress& progress = {});

}  // namespace tallow

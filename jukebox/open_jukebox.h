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
using LoadFromFile = std::function<bool(const std::string& path, const ResolveConfusedSongs& ask)>;

/// Opens a jukebox from its file: loads the folders, sets caption and location, and files the songs
/// that were added to the library after the jukebox was saved.
///
/// \param caption    the caption: by convention the file name in upper case; if empty, the file
///                   name as it is
/// \param windows    the open jukeboxes, including this one
/// \param load       callback that loads this jukebox
/// \param ask        callback that asks about songs whose numbers were confused; may be empty
/// \param found_tags sealed cache of tags already read; null for none
/// \param progress   see FillAutomaticFolders; if it cancels the filing, the jukebox is open with
///                   the songs filed so far
/// \param read_tags  see FillAutomaticFolders
/// \returns false when the file cannot be used; jukebox.FileProblem() has the reason, and nothing
/// has changed
/// \throws FilingError after everything else is done, see FillAutomaticFolders
bool OpenJukeboxFile(const std::string& path, std::string_view caption, Jukebox& jukebox,
                     clsMain& library, std::span<Jukebox* const> windows, const LoadFromFile& load,
                     const AskQuestion& ask, const TagCache* found_tags = nullptr,
                     const FilingProgress& progress = {}, const ReadTags& read_tags = {});

}  // namespace tallow

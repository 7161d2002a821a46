// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "jukebox/sorting.h"

namespace tallow {

class Jukebox;
class TagCache;
class clsMain;

/// The caption of the sample jukebox.
inline constexpr std::string_view kSampleCaption =
    "Jukebox One  (sample Jukebox you can use as a starting point)";

/// The caption of the sample jukebox while it is being built.
inline constexpr std::string_view kBuildingCaption =
    "No saved Jukebox found, building initial Jukebox - may take a while. . . ";

/// Adds the headers of a new jukebox's song list: name and key.
void AddStandardColumns(Jukebox& jukebox);

/// Builds a new jukebox, whose only folder is "All Songs". It is empty; with the switch
/// `fills_new_jukeboxes` it has all songs that FillAutomaticFolders would file. This content need
/// not be saved.
///
/// \param jukebox newly created, without folders
void BuildNewJukebox(clsMain& library, Jukebox& jukebox);

/// Builds the sample jukebox: the automatic folders, filled from the library, and empty folders
/// that suggest how to arrange songs. "Album" is among them with the switch `albums`. The sample
/// jukebox is an ordinary jukebox without a file. The settings do not change.
///
/// \param jukebox newly created, without folders
/// \param windows the open jukeboxes, including this one
/// \param show    callback that shows the window, called at the end
/// \param found_tags see FillAutomaticFolders
/// \param progress   see FillAutomaticFolders; if it cancels the filing, the remaining folders are
///   still built
/// \param read_tags  see FillAutomaticFolders
/// \throws FilingError after everything is built and shown, see FillAutomaticFolders
void BuildInitialJukebox(clsMain& library, Jukebox& jukebox, std::span<Jukebox* const> windows,
                         const std::function<void()>& show, const TagCache* found_tags = nullptr,
                         const FilingProgress& progress = {}, const ReadTags& read_tags = {});

}  // namespace tallow

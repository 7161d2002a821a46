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

/// Builds the sample jukebox: the automatic folders, filled from the library, and empty folders
/// that suggest how to arrange songs. It is an ordinary jukebox without a file; the settings do not
/// change.
///
/// \param jukebox just made, without folders
/// \param windows the open jukeboxes, this one among them
/// \param show    shows the window, at the end
/// \param found_tags see FillAutomaticFolders
/// \param progress   see FillAutomaticFolders; all else is built when this ends the filing
/// \throws FilingError once all is built and shown, see FillAutomaticFolders
void BuildInitialJukebox(clsMain& library, Jukebox& jukebox, std::span<Jukebox* const> windows,
                         const std::function<void()>& show, const TagCache* found_tags = nullptr,
                         const FilingProgress& progress = {});

}  // namespace tallow

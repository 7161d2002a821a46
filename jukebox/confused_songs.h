// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "jukebox/song_links.h"

namespace tallow {

class clsMain;

/// Asks the user a yes/no question. Returns no value when the user cancels, or when there is no
/// user to ask.
using AskQuestion = std::function<std::optional<bool>(const std::string& text)>;

/// Returns the question callback of RelinkSongs for one jukebox file. The callback stores the
/// answer, so the user answers once per file.
///
/// \param file    the path of the jukebox file
/// \param library must outlive the returned callback
ResolveConfusedSongs AskAboutConfusedSongs(const std::string& file, clsMain& library,
                                           AskQuestion ask);

}  // namespace tallow

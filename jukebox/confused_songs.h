// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "jukebox/jukebox_file.h"

namespace tallow {

class clsMain;

/// Asks a question with Yes and No buttons; no value when the user leaves it, or nobody can answer.
using AskQuestion = std::function<std::optional<bool>(const std::string& text)>;

/// The question for RelinkSongs about one jukebox file. An answer is kept, so that it is asked once.
///
/// \param file    the jukebox's file
/// \param library has to outlive what is returned
AskWhichSongs AskAboutConfusedSongs(const std::string& file, clsMain& library, AskQuestion ask);

}  // namespace tallow

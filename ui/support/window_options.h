// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Sees to it that the places and sizes of windows (QSettings) have a file that can be opened. A pipe in its
/// place would be waited for.
///
/// To be called before anything else asks for them.
/// \param folder where they are kept instead; ends in a separator
/// \returns what is the matter with their usual file, a sentence; empty when nothing is
std::string PrepareWindowOptions(const std::string& folder);

}  // namespace tallow

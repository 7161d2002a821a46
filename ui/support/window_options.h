// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Ensures that QSettings, which stores the positions and sizes of windows, uses a file that can be
/// opened. Opening a pipe in its place would block.
///
/// Must be called before QSettings is first used.
/// \param folder where to keep the settings instead; ends in a separator
/// \returns a sentence saying what is wrong with the usual file; empty when nothing is wrong
std::string PrepareWindowOptions(const std::string& folder);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Opens a help file with the system's own help program.
///
/// \param path of the file
/// \returns false where there is no such file or program; Linux has none
bool OpenHelpFile(const std::string& path);

}  // namespace tallow

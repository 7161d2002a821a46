// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Opens a help file with the system's help program.
///
/// \param path path of the file
/// \returns false when the file or the program does not exist; Linux has no such program
bool OpenHelpFile(const std::string& path);

}  // namespace tallow

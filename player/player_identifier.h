// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Identifies an application folder in the names of its player's window, socket and bus name: 16
/// hexadecimal digits, the XXH3 checksum of the path's PathKey: the same folder has one identifier
/// however Windows spells it.
/// \param application_folder ends in a separator
std::string PlayerIdentifier(const std::string& application_folder);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Identifies an application folder in the names of its player's window, socket and bus name: 16
/// hexadecimal digits, the XXH3 checksum of the path.
/// \param application_folder compared as bytes; ends in a separator
std::string PlayerIdentifier(const std::string& application_folder);

}  // namespace tallow

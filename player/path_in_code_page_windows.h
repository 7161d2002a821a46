// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The system's ANSI code page. The code page of this process is UTF-8, whatever the player uses.
unsigned SystemCodePage();

/// Converts a path to a code page. If a character is not in the code page, uses the short (8.3)
/// path. If there is no short path, replaces each such character by a question mark.
///
/// \param page number of the code page, for example 1252
std::string PathInCodePage(const std::string& path, unsigned page);

/// Converts a path in a code page to UTF-8.
/// \returns the path unchanged when the system does not know the code page
std::string PathFromCodePage(const std::string& bytes, unsigned page);

}  // namespace tallow

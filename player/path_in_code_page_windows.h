// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Converts a path to a code page. If a character is not in the code page, uses the short (8.3)
/// path. If there is no short path, replaces each such character by a question mark.
///
/// \param page number of the code page, for example 1252
std::string PathInCodePage(const std::string& path, unsigned page);

}  // namespace tallow

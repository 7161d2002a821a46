// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// A path as bytes of a code page. One with a character that has no place there goes by its short (8.3)
/// form; where there is none, with a question mark for the character.
///
/// \param page a code page's number, 1252
std::string PathInCodePage(const std::string& path, unsigned page);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

// JSON is UTF-8, but a file name need not be. A byte that is not part of valid UTF-8 is written as
// the code point U+10FE00 plus the byte, and so is each byte of a code point from U+10FE80 to
// U+10FEFF.

/// Appends arbitrary bytes as a JSON string, quotes included.
void AppendJsonText(std::string& to, std::string_view text);

/// Decodes a parsed JSON string back to the original bytes.
std::string BytesOfJsonText(std::string text);

}  // namespace tallow

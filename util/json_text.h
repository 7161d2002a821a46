// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

// JSON is UTF-8, and a file name need not be. A byte that is no part of valid UTF-8 stands as the character
// U+10FE00 plus the byte, and so does each byte of a character from U+10FE80 to U+10FEFF.

/// Appends a text of any bytes as a JSON text with its quotes.
void AppendJsonText(std::string& to, std::string_view text);

/// The bytes of a JSON text, which a parser has read.
std::string BytesOfJsonText(std::string text);

}  // namespace tallow

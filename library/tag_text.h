// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

// The texts of an ID3v1 tag carry no mark of their encoding. Nearly all are Windows-1252; some
// programs write UTF-8. A field is taken as UTF-8 when it is valid UTF-8 and holds a character of
// more than one byte, which Windows-1252 text practically never is by chance.

/// The text of a tag field as UTF-8. The five bytes that Windows-1252 leaves undefined (81, 8D, 8F,
/// 90, 9D hex) stand for the control characters of the same numbers. NULs stay.
std::string DecodeTagField(std::string_view bytes);

/// The bytes that a tag field of a given length gets for a text: Windows-1252 where the text has
/// such a form and DecodeTagField gives it back, else UTF-8. Cut to the length (UTF-8 at a
/// character's end) and padded with blanks.
std::string EncodeTagField(std::string_view text, std::size_t length);

}  // namespace tallow

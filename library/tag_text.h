// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

// The texts of an ID3v1 tag do not declare their encoding. Nearly all are Windows-1252; some
// programs write UTF-8. A field is decoded as UTF-8 when it is valid UTF-8 and contains a character
// of more than one byte, which hardly ever happens by chance in Windows-1252 text. The last
// character may be cut by the end of the field, or by the NULs that pad it.

/// Decodes a tag field to UTF-8. The five bytes undefined in Windows-1252 (81, 8D, 8F, 90, 9D hex)
/// become the control characters of the same numbers. NULs are kept; the bytes of a cut character
/// are not.
std::string DecodeTagField(std::string_view bytes);

/// Encodes a text as a tag field of a given length: as Windows-1252 if that is possible and
/// DecodeTagField restores the text, else as UTF-8. Truncated to the length (UTF-8 at a character
/// boundary) and padded with blanks.
std::string EncodeTagField(std::string_view text, std::size_t length);

}  // namespace tallow

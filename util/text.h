// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

// Text in the core is bytes. They are usually UTF-8, but a Linux file name need not be, and such a
// name must be kept unchanged. So every function here treats a byte that is not part of a valid
// UTF-8 sequence as one character and copies it unchanged.

/// First value after Unicode's last code point. NextCharacter returns this plus the byte for a byte
/// that is not part of valid UTF-8, so that such a byte only equals itself.
inline constexpr char32_t kInvalidByteBase = 0x110000;

/// Reads the character at a position and moves the position past it.
///
/// \param text     the bytes
/// \param position index of the character's first byte, below text.size(); moved by 1 to 4
/// \returns the code point, or kInvalidByteBase + byte
char32_t NextCharacter(std::string_view text, std::size_t& position) noexcept;

/// Appends a code point as UTF-8; a value from kInvalidByteBase on is appended as the single byte.
void AppendCharacter(std::string& text, char32_t character);

/// Whether every byte belongs to a valid UTF-8 sequence.
bool IsValidUtf8(std::string_view text) noexcept;

/// Whether no byte is above 7F hex.
bool IsAscii(std::string_view text) noexcept;

/// Converts every character to lower case (Unicode's simple mapping, one to one).
std::string ToLower(std::string_view text);

/// Converts every character to upper case (Unicode's simple mapping, one to one).
std::string ToUpper(std::string_view text);

/// Appends the lower-case form of a text; avoids the temporary string of ToLower.
void AppendLower(std::string& to, std::string_view text);

/// Converts a text to Unicode's composed form (NFC), so that texts that differ only in their
/// Unicode form become equal. A text that is not valid UTF-8 is returned as it is.
std::string ToNfc(std::string_view text);

/// Whether two texts have the same lower-case form.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

/// The text without leading and trailing blanks. Only blanks (20 hex) are removed, no other white
/// space.
std::string_view Trim(std::string_view text) noexcept;

/// The text before its first NUL; the whole text when it has none.
std::string_view StripAtNul(std::string_view text) noexcept;

}  // namespace tallow

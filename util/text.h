// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

// Text in the core is bytes. They are UTF-8 as a rule, but a file name of a Linux disk need not be,
// and such a name has to come through unchanged. So every function here treats a byte that belongs
// to no valid UTF-8 sequence as a character of its own and copies it as it is.

/// The first value behind Unicode's last code point; NextCharacter adds the byte to it for a byte
/// that is no part of valid UTF-8, so that such bytes equal themselves and nothing else.
inline constexpr char32_t kInvalidByteBase = 0x110000;

/// Reads the character that begins at a position and moves the position behind it.
///
/// \param text     the bytes
/// \param position index of the character's first byte, below text.size(); moved by 1 to 4
/// \returns the code point, or kInvalidByteBase + byte
char32_t NextCharacter(std::string_view text, std::size_t& position) noexcept;

/// Appends a code point as UTF-8, or the bare byte of a value from kInvalidByteBase on.
void AppendCharacter(std::string& text, char32_t character);

/// Whether every byte belongs to a valid UTF-8 sequence.
bool IsValidUtf8(std::string_view text) noexcept;

/// Whether no byte is above 7F hex.
bool IsAscii(std::string_view text) noexcept;

/// The text with every character in lower case (Unicode's simple mapping, one to one).
std::string ToLower(std::string_view text);

/// The text with every character in upper case (Unicode's simple mapping, one to one).
std::string ToUpper(std::string_view text);

/// Appends the lower case form of a text to another one; spares the temporary of ToLower.
void AppendLower(std::string& to, std::string_view text);

/// Whether two texts are the same once both are in lower case.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

/// The text without leading and trailing blanks. Only the blank (20 hex) is removed.
std::string_view Trim(std::string_view text) noexcept;

/// The text before its first NUL; all of it when it has none.
std::string_view StripAtNul(std::string_view text) noexcept;

}  // namespace tallow

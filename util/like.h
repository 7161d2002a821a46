// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a whole text matches a wildcard pattern. Case counts; a character is one code point.
///
/// | In the pattern | matches |
/// |---|---|
/// | `?` | any one character |
/// | `*` | any run of characters, none included |
/// | `#` | one digit, 0 to 9 |
/// | `[a-cx]` | one character of the list; ranges go by code point |
/// | `[!a-c]` | one character that is not in the list |
/// | `[]` | nothing at all |
/// | `]` alone, `[` that is never closed | itself |
///
/// A hyphen at the beginning or the end of a list is itself, and so is the mark in `[!]`. A range
/// whose ends are the wrong way round holds no character.
bool Like(std::string_view text, std::string_view pattern) noexcept;

/// Whether a text, taken as a pattern, holds a character with a meaning of its own.
bool HasWildcards(std::string_view text) noexcept;

/// The test for two names being the same name: equal text, or a match of the second as a pattern.
///
/// A name with wildcard characters need not match itself ("B#.mp3" does not), hence the first half.
bool SameName(std::string_view text, std::string_view pattern) noexcept;

/// Whether a file name matches a file pattern as a file system matches it: `*` and `?` only, in any
/// letter case. "*.mp3" matches "SONG.MP3" and ".mp3".
bool MatchesFilePattern(std::string_view name, std::string_view pattern);

}  // namespace tallow

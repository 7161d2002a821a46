// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a whole text matches a wildcard pattern. Case-sensitive; a character is one code point.
///
/// | In the pattern | matches |
/// |---|---|
/// | `?` | any one character |
/// | `*` | any run of characters, also an empty one |
/// | `#` | one digit, 0 to 9 |
/// | `[a-cx]` | one character of the list; ranges are compared by code point |
/// | `[!a-c]` | one character that is not in the list |
/// | `[]` | the empty text |
/// | `]` alone, `[` that is never closed | itself |
///
/// A hyphen at the beginning or the end of a list is literal, and so is the `!` in `[!]`. A range
/// whose end is below its start matches no character.
bool Like(std::string_view text, std::string_view pattern) noexcept;

/// Whether a text contains a wildcard character.
bool HasWildcards(std::string_view text) noexcept;

/// Whether two names are the same: they are equal, or the first matches the second as a pattern.
///
/// The test for equality is needed because a name with wildcard characters may not match itself
/// ("B#.mp3" does not).
bool SameName(std::string_view text, std::string_view pattern) noexcept;

/// Whether a file name matches a file pattern. Only `*` and `?` are wildcards, and letter case is
/// ignored: "*.mp3" matches "SONG.MP3" and ".mp3". A semicolon separates patterns, of which one has
/// to match: "*.mp3;*.flac".
bool MatchesFilePattern(std::string_view name, std::string_view pattern);

}  // namespace tallow

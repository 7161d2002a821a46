// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <string>
#include <string_view>

namespace tallow {

/// The path separator of this system.
extern const char kSeparator;

/// The key for comparing paths or parts of paths: lower case where file names are case-insensitive.
std::string PathKey(std::string_view path);

/// Like PathKey, but avoids the copy where a path is its own key; elsewhere the key is appended to
/// `keys`.
/// \returns a view of the path or of the appended text
std::string_view PathKeyView(std::string_view path, std::deque<std::string>& keys);

/// Whether another text may have the same PathKey.
bool MayHaveOtherSpelling(std::string_view path) noexcept;

/// Whether two paths, or parts of paths, are equal as text (see PathKey). Links are not followed;
/// see IsSamePath for that.
bool IsSamePathText(std::string_view path, std::string_view other);

/// Appends the separator unless the path already ends in one. An empty path becomes the separator.
std::string EnsureTrailingBackslash(std::string_view path);

/// The name of a file without its folder and without its last four characters (the dot and a
/// three-letter extension). Blanks at both ends of the path are removed first. A name of fewer than
/// four characters gives the empty text.
std::string FileTitleWithoutExtension(std::string_view path);

/// The folder of a path, up to and including the last separator; empty when there is none.
std::string_view FolderOfPath(std::string_view path) noexcept;

/// The share at the start of a Windows path, as in "\\server\music\"; empty for other paths.
std::string_view ShareOfPath(std::string_view path) noexcept;

/// The part of a path after the last separator.
std::string_view NameOfPath(std::string_view path) noexcept;

/// Whether a path is absolute.
bool IsAbsolutePath(std::string_view path) noexcept;

/// Whether a text holds CR or LF, and so cannot be stored as one line of a text file.
bool HasLineBreak(std::string_view text) noexcept;

}  // namespace tallow

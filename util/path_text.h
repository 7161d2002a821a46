// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// What stands between two folders of a path.
#ifdef _WIN32
inline constexpr char kSeparator = '\\';
#else
inline constexpr char kSeparator = '/';
#endif

/// Whether two names that differ in letter case alone name one file.
#ifdef _WIN32
inline constexpr bool kPathsIgnoreCase = true;
#else
inline constexpr bool kPathsIgnoreCase = false;
#endif

/// A path or a part of one as it is compared: in lower case where the system's file systems ignore case.
std::string PathKey(std::string_view path);

/// Whether two paths, or parts of paths, are one and the same as texts of this system. Links are not
/// followed, see IsSamePath.
bool IsSamePathText(std::string_view path, std::string_view other);

/// Appends the separator unless it is the last character already. An empty text becomes the
/// separator.
std::string EnsureTrailingBackslash(std::string_view path);

/// The name of a file without its folder and without its last four characters (the point and a
/// three letter extension), blanks at both ends of the path removed first. A name of fewer than
/// four characters gives the empty text.
std::string FileTitleWithoutExtension(std::string_view path);

/// The folder of a path, up to and including the last separator; empty when there is none.
std::string_view FolderOfPath(std::string_view path) noexcept;

/// The share that a Windows path begins with, as in "\\server\music\"; empty for other paths.
std::string_view ShareOfPath(std::string_view path) noexcept;

/// What follows the last separator of a path.
std::string_view NameOfPath(std::string_view path) noexcept;

/// Whether a path says where it is regardless of the current folder.
bool IsAbsolutePath(std::string_view path) noexcept;

/// Whether a text holds a carriage return or a line feed, and so cannot be a line of a text file.
bool HasLineBreak(std::string_view text) noexcept;

}  // namespace tallow

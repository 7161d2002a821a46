// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace tallow {

// Definitions shared by the folder scans.

/// Pattern of song files.
inline constexpr std::string_view kSongPattern = "*.mp3";
/// Value of the flag column for a present song.
inline constexpr std::string_view kPresent = "1";

/// Batch size for listing folders with ReadAhead.
inline constexpr std::size_t kFoldersAtOnce = 16;

/// Thrown to cancel a ReadAhead.
struct Stopped {};

/// Error message for a file or folder on a disk that does not answer.
inline constexpr std::string_view kDoesNotAnswer = "The disk does not answer";

/// Progress callback of a scan, called with each folder checked, and with an empty text while
/// waiting. Returns false to stop.
using GoOn = std::function<bool(std::string_view folder)>;

/// Callback, called repeatedly with the root of a drive that has not answered for a second. Returns
/// whether to wait longer; a drive that is not waited for is away.
using WaitForDrive = std::function<bool(std::string_view root)>;

}  // namespace tallow

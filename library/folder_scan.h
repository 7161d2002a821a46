// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace tallow {

// What the scans of folders share.

/// The files that are songs.
inline constexpr std::string_view kSongPattern = "*.mp3";
/// The flag of a song that is there.
inline constexpr std::string_view kPresent = "1";

/// How many folders a thread lists at once, see ReadAhead.
inline constexpr std::size_t kFoldersAtOnce = 16;

/// Ends reading ahead before its end.
struct Stopped {};

/// What is said of a file or folder on a disk that does not answer.
inline constexpr std::string_view kDoesNotAnswer = "The disk does not answer";

/// Is told each folder that has been looked at (an empty text while one is waited for), and says whether to
/// look at more.
using GoOn = std::function<bool(std::string_view folder)>;

/// Is told again and again of a drive that has not answered for a second, by its root, and says whether to
/// go on waiting for it. One that is not waited for is away.
using WaitForDrive = std::function<bool(std::string_view root)>;

}  // namespace tallow

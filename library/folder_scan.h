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

/// Is told each folder that has been looked at (an empty text while one is waited for), and says whether to
/// look at more.
using GoOn = std::function<bool(std::string_view folder)>;

/// Processes window events while a folder is being read; empty where nobody is to be told.
inline std::function<void()> IdleCallback(const GoOn& go_on) {
  if (!go_on) return {};
  return [&go_on] {
    if (!go_on({})) throw Stopped();
  };
}

}  // namespace tallow

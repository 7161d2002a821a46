// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace tallow {

// What the player understands: the window messages of Winamp 2, which are numbers of the Windows API
// (WM_...) and of the player itself. A message has two parameters, wParam and lParam, and an answer.

inline constexpr std::uint32_t kWmCopyData = 74;
inline constexpr std::uint32_t kWmCommand = 273;
inline constexpr std::uint32_t kWmUser = 1024;

/// The wParam of kWmCommand.
enum PlayerCommand : std::int32_t {
  kClosePlayer = 40001,
  kPreviousTrack = 40044,
  kPlay = 40045,
  kPause = 40046,  ///< and go on again, when the player is paused
  kStop = 40047,   ///< the list stays
  kNextTrack = 40048,
  kStopAfterTrack = 40157,
};

/// The lParam of kWmUser.
enum PlayerRequest : std::int32_t {
  kVersion = 0,  ///< answers four hexadecimal digits, 2081 for version 2.081
  kClearList = 101,
  kStatus = 104,      ///< answers a PlayerStatus
  kTrackTime = 105,   ///< wParam kAskPosition or kAskLength
  kSeek = 106,        ///< wParam: where to, in ms
  kSetVolume = 122,   ///< wParam: amplitude, 0 to 255
  kSetBalance = 123,  ///< wParam: 0 middle to 127 right; 128 left to 254 just left of the middle
};

enum PlayerStatus : std::int32_t {
  kStopped = 0,
  kPlaying = 1,
  kPaused = 3,
};

/// The wParam of kTrackTime.
enum TrackTime : std::int32_t {
  kAskPosition = 0,  ///< answers ms; -1 when nothing plays
  kAskLength = 1,    ///< answers s; -1 when nothing plays
};

/// The code of kWmCopyData that adds a file to the list. Its data is the path, ended by a NUL.
inline constexpr std::uint32_t kAddFile = 100;

inline constexpr std::int32_t kMaxVolume = 255;
inline constexpr std::int32_t kMaxBalance = 127;
/// What is added to a balance left of the middle.
inline constexpr std::int32_t kLeftBalance = 255;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace tallow {

// Messages to the player: the window messages of Winamp 2. The numbers are those of the Windows API
// (WM_...) and of the player itself. A message has two parameters, wParam and lParam, and an
// answer.

inline constexpr std::uint32_t kWmCopyData = 74;
inline constexpr std::uint32_t kWmCommand = 273;
inline constexpr std::uint32_t kWmUser = 1024;

/// Values of wParam for kWmCommand.
enum PlayerCommand : std::int32_t {
  kClosePlayer = 40001,
  kPreviousTrack = 40044,
  kPlay = 40045,
  kPause = 40046,  ///< pauses, or resumes when paused
  kStop = 40047,   ///< keeps the list
  kNextTrack = 40048,
  kStopAfterTrack = 40157,
};

/// Values of lParam for kWmUser.
enum PlayerRequest : std::int32_t {
  kVersion = 0,  ///< answer: four hexadecimal digits, 2081 for version 2.081
  kClearList = 101,
  kStatus = 104,      ///< answer: a PlayerStatus
  kTrackTime = 105,   ///< wParam: kAskPosition or kAskLength
  kSeek = 106,        ///< wParam: new position in ms
  kSetPlace = 121,    ///< wParam: place in the list, from 0, of the track to play next
  kSetVolume = 122,   ///< wParam: amplitude, 0 to 255
  kSetBalance = 123,  ///< wParam: 0 center to 127 right; 128 left to 254 just left of center
  kListLength = 124,  ///< answer: number of files in the list
  kListPlace = 125,   ///< answer: place of the current track in the list, from 0
  kShuffle = 250,     ///< answer: 1 when the list is played in random order, else 0
  kRepeat = 251,      ///< answer: 1 when the list or the track is repeated, else 0
  kSetShuffle = 252,  ///< wParam: 0 or 1
  kSetRepeat = 253,   ///< wParam: 0, or 1 to repeat the list
};

enum PlayerStatus : std::int32_t {
  kStopped = 0,
  kPlaying = 1,
  kPaused = 3,
};

/// Values of wParam for kTrackTime.
enum TrackTime : std::int32_t {
  kAskPosition = 0,  ///< answer: position in ms; -1 when nothing plays
  kAskLength = 1,    ///< answer: length in s; -1 when nothing plays
};

/// Code of kWmCopyData that appends a file to the list. The data is the path, NUL-terminated.
inline constexpr std::uint32_t kAddFile = 100;

/// Maximum size of the data of kWmCopyData for Tallow's own player, in bytes.
inline constexpr std::size_t kMaxPayload = std::size_t{64} * 1024;

// Codes of kWmCopyData that only Tallow's own player knows.

/// Adds files to the list, see tallow_player_requests.h. Answer: the number of the first new entry,
/// kListHasNoRoom, or kNoSuchEntry.
inline constexpr std::uint32_t kAddFiles = 0x54410001;
/// A request in JSON, see tallow_player_requests.h. The answer is JSON, too.
inline constexpr std::uint32_t kAsk = 0x54410002;

/// The answer to kAddFiles when the list has no room for the files; none of them was added.
inline constexpr std::int64_t kListHasNoRoom = -1;
/// The answer to kAddFiles when the entry to add the files before is not in the list; none of them
/// was added.
inline constexpr std::int64_t kNoSuchEntry = -2;

inline constexpr std::int32_t kMaxVolume = 255;
inline constexpr std::int32_t kMaxBalance = 127;
/// Added to a negative (left) balance.
inline constexpr std::int32_t kLeftBalance = 255;

}  // namespace tallow

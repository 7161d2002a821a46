// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/player_requests.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "player/player_messages.h"
#include "player/substitute/song_player.h"
#include "util/version.h"

namespace tallow {
namespace {

/// The program's version as hexadecimal digits: 1, major version, two digits of minor version.
/// Version 0.1 is 0x1001, which is displayed as 1.001.
constexpr PlayerAnswer kVersionAnswer =
    0x1000 + kMajorVersion * 0x100 + kMinorVersion / 10 * 0x10 + kMinorVersion % 10;
static_assert(kMajorVersion < 0x10 && kMinorVersion < 100);

/// The answer to a seek to a position outside the track.
constexpr PlayerAnswer kNoSuchPlace = 1;

/// Bytes that are escaped in a line of the log.
constexpr std::string_view kWrittenOut{"\0\n", 2};

}  // namespace

PlayerRequests::PlayerRequests(SongPlayer& player, std::function<void()> close)
    : player_(player), close_(std::move(close)) {}

bool PlayerRequests::Execute(const PlayerRequestHead& head, const std::string& payload,
                             const std::function<void(PlayerAnswer)>& answer) {
  switch (head.message) {
    case kWmCommand:
      if (!Command(head)) return false;
      break;
    case kWmCopyData:
      return AddFile(head, payload, answer);
    case kWmUser:
      return User(head, answer);
    default:
      return false;
  }
  answer(0);
  return true;
}

bool PlayerRequests::Command(const PlayerRequestHead& head) {
  if (head.lParam != 0) return false;
  switch (head.wParam) {
    case kClosePlayer:
      close_();
      return true;
    case kPreviousTrack:
      player_.Previous();
      return true;
    case kPlay:
      player_.Play();
      return true;
    case kPause:
      player_.TogglePause();
      return true;
    case kStop:
      player_.Stop();
      return true;
    case kNextTrack:
      player_.Next();
      return true;
    case kStopAfterTrack:
      player_.StopAfterCurrent();
      return true;
    default:
      return false;
  }
}

bool PlayerRequests::AddFile(const PlayerRequestHead& head, const std::string& payload,
                             const std::function<void(PlayerAnswer)>& answer) {
  // The payload must be an absolute path, with a single NUL at its end.
  if (head.lParam != kAddFile || head.wParam != 0 || payload.size() < 2 || payload.front() != '/' ||
      payload.find('\0') != payload.size() - 1)
    return false;
  answer(player_.Add(payload.substr(0, payload.size() - 1)) ? 0 : kListIsFull);
  return true;
}

bool PlayerRequests::User(const PlayerRequestHead& head,
                          const std::function<void(PlayerAnswer)>& answer) {
  const std::int64_t value = head.wParam;
  PlayerAnswer result = 0;
  switch (head.lParam) {
    case kTrackTime:
      if (value == kAskLength) {
        player_.WhenLengthIsKnown(answer);
        return true;
      }
      if (value != kAskPosition) return false;
      result = player_.Position();
      break;
    case kSeek:
      if (value < 0) return false;
      if (player_.Status() == kStopped)
        result = -1;
      else if (!player_.Seek(value))
        result = kNoSuchPlace;
      break;
    case kSetVolume:
      if (value < 0 || value > kMaxVolume) return false;
      player_.SetVolume(static_cast<std::int32_t>(value));
      break;
    case kSetBalance: {
      if (value < 0 || value >= kLeftBalance) return false;
      const auto balance = static_cast<std::int32_t>(value);
      player_.SetBalance(balance > kMaxBalance ? balance - kLeftBalance : balance);
      break;
    }
    case kVersion:
    case kClearList:
    case kStatus:
      if (value != 0) return false;
      if (head.lParam == kVersion) result = kVersionAnswer;
      if (head.lParam == kStatus) result = player_.Status();
      if (head.lParam == kClearList) player_.Clear();
      break;
    default:
      return false;
  }
  answer(result);
  return true;
}

std::string DescribeRequest(const PlayerRequestHead& head, const std::string& payload) {
  std::string line = std::to_string(head.message) + " " + std::to_string(head.wParam) + " " +
                     std::to_string(head.lParam);
  if (head.message != kWmCopyData) return line;
  // Escape the NUL at the end, and any other NUL or line feed.
  line += " \"";
  for (std::size_t from = 0; from < payload.size();) {
    const std::size_t to = std::min(payload.find_first_of(kWrittenOut, from), payload.size());
    line.append(payload, from, to - from);
    if (to < payload.size()) line += payload[to] == '\0' ? "\\0" : "\\n";
    from = to + 1;
  }
  return line + "\"";
}

}  // namespace tallow

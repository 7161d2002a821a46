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

/// The answers to a seek that is not possible: to a position outside the track, or without a track.
constexpr PlayerAnswer kNoSuchPosition = 1;
constexpr PlayerAnswer kNothingPlays = -1;

/// Bytes that are escaped in a line of the log.
constexpr std::string_view kEscapedBytes{"\0\n", 2};

}  // namespace

PlayerRequests::PlayerRequests(SongPlayer& player, std::function<void()> close)
    : player_(player), close_(std::move(close)) {}

bool PlayerRequests::Execute(const PlayerRequestHead& head, const std::string& payload,
                             const std::function<void(PlayerAnswer)>& answer) {
  switch (head.message) {
    case kWmCommand:
      if (!ExecuteCommand(head)) return false;
      break;
    case kWmCopyData:
      return AddFile(head, payload, answer);
    case kWmUser:
      return ExecuteUserMessage(head, answer);
    default:
      return false;
  }
  answer(0);
  return true;
}

bool PlayerRequests::ExecuteCommand(const PlayerRequestHead& head) {
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

bool PlayerRequests::ExecuteUserMessage(const PlayerRequestHead& head,
                                        const std::function<void(PlayerAnswer)>& answer) {
  if (head.lParam == kTrackTime && head.wParam == kAskLength) {
    player_.WhenLengthIsKnown(answer);
    return true;
  }
  const std::optional<PlayerAnswer> result = AnswerAtOnce(head.lParam, head.wParam);
  if (!result) return false;
  answer(*result);
  return true;
}

std::optional<PlayerAnswer> PlayerRequests::AnswerAtOnce(std::int64_t request, std::int64_t value) {
  switch (request) {
    case kTrackTime:
      if (value != kAskPosition) return std::nullopt;
      return player_.Position();
    case kSeek:
      return Seek(value);
    case kSetVolume:
      if (value < 0 || value > kMaxVolume) return std::nullopt;
      player_.SetVolume(static_cast<std::int32_t>(value));
      return 0;
    case kSetBalance:
      return SetBalance(value);
    case kVersion:
      return value == 0 ? std::optional(kVersionAnswer) : std::nullopt;
    case kStatus:
      return value == 0 ? std::optional<PlayerAnswer>(player_.Status()) : std::nullopt;
    case kClearList:
      if (value != 0) return std::nullopt;
      player_.Clear();
      return 0;
    default:
      return std::nullopt;
  }
}

std::optional<PlayerAnswer> PlayerRequests::Seek(std::int64_t ms) {
  if (ms < 0) return std::nullopt;
  if (player_.Status() == kStopped) return kNothingPlays;
  return player_.Seek(ms) ? 0 : kNoSuchPosition;
}

std::optional<PlayerAnswer> PlayerRequests::SetBalance(std::int64_t value) {
  if (value < 0 || value >= kLeftBalance) return std::nullopt;
  const auto balance = static_cast<std::int32_t>(value);
  player_.SetBalance(balance > kMaxBalance ? balance - kLeftBalance : balance);
  return 0;
}

std::string DescribeRequest(const PlayerRequestHead& head, const std::string& payload) {
  std::string line = std::to_string(head.message) + " " + std::to_string(head.wParam) + " " +
                     std::to_string(head.lParam);
  if (head.message != kWmCopyData) return line;
  // Escape the NUL at the end, and any other NUL or line feed.
  line += " \"";
  for (std::size_t from = 0; from < payload.size();) {
    const std::size_t to = std::min(payload.find_first_of(kEscapedBytes, from), payload.size());
    line.append(payload, from, to - from);
    if (to < payload.size()) line += payload[to] == '\0' ? "\\0" : "\\n";
    from = to + 1;
  }
  return line + "\"";
}

}  // namespace tallow

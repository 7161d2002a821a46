// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/player_requests.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "player/player_messages.h"
#include "player/substitute/json_requests.h"
#include "player/substitute/song_player.h"
#include "player/tallow_player_requests.h"
#include "util/path_text.h"
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

/// The absolute paths in a record, each followed by a NUL; empty when the record is not valid.
std::vector<std::string> PathsOf(std::string_view record) {
  std::vector<std::string> paths;
  while (!record.empty()) {
    const std::size_t end = record.find('\0');
    if (end == std::string_view::npos || !IsAbsolutePath(record.substr(0, end))) return {};
    paths.emplace_back(record.substr(0, end));
    record.remove_prefix(end + 1);
  }
  return paths;
}

}  // namespace

PlayerRequests::PlayerRequests(SongPlayer& player, std::function<void()> close)
    : player_(player), close_(std::move(close)) {}

bool PlayerRequests::Execute(const PlayerRequestHead& head, const std::string& payload,
                             const std::function<void(PlayerAnswer)>& answer,
                             const std::function<void(std::string)>& answer_text) {
  switch (head.message) {
    case kWmCommand:
      if (!ExecuteCommand(head)) return false;
      break;
    case kWmCopyData:
      return ExecuteCopyData(head, payload, answer, answer_text);
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

bool PlayerRequests::ExecuteCopyData(const PlayerRequestHead& head, const std::string& payload,
                                     const std::function<void(PlayerAnswer)>& answer,
                                     const std::function<void(std::string)>& answer_text) {
  if (head.wParam != 0) return false;
  if (head.lParam == kAsk) return ExecuteJsonRequest(player_, payload, answer_text);
  std::optional<PlayerAnswer> result;
  if (head.lParam == kAddFile) result = AddFile(payload);
  if (head.lParam == kAddFiles) result = AddFiles(payload);
  if (!result) return false;
  answer(*result);
  return true;
}

std::optional<PlayerAnswer> PlayerRequests::AddFile(const std::string& payload) {
  std::vector<std::string> paths = PathsOf(payload);
  if (paths.size() != 1) return std::nullopt;
  return player_.Add(std::move(paths.front())) ? 0 : kListIsFull;
}

std::optional<PlayerAnswer> PlayerRequests::AddFiles(const std::string& payload) {
  std::int64_t at = 0;
  if (payload.size() < sizeof at) return std::nullopt;
  std::memcpy(&at, payload.data(), sizeof at);
  std::vector<std::string> paths = PathsOf(std::string_view(payload).substr(sizeof at));
  if (paths.empty() || at < kPlayNext) return std::nullopt;
  if (at > 0 && !player_.List().Contains(static_cast<ListNumber>(at))) return kNoSuchEntry;
  const ListNumber first = player_.AddFiles(std::move(paths), at);
  return first == 0 ? kListHasNoRoom : static_cast<PlayerAnswer>(first);
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
      return AnswerAboutList(request, value);
  }
}

std::optional<PlayerAnswer> PlayerRequests::AnswerAboutList(std::int64_t request,
                                                            std::int64_t value) {
  const bool is_flag = value == 0 || value == 1;
  const PlayList& list = player_.List();
  switch (request) {
    case kSetPlace:
      if (value < 0) return std::nullopt;
      player_.SetPlace(static_cast<std::size_t>(value));
      return 0;
    case kListLength:
      return value == 0 ? std::optional(static_cast<PlayerAnswer>(list.Size())) : std::nullopt;
    case kListPlace:
      return value == 0 ? std::optional(static_cast<PlayerAnswer>(list.Place())) : std::nullopt;
    case kShuffle:
      return value == 0 ? std::optional<PlayerAnswer>(list.IsShuffled()) : std::nullopt;
    case kRepeat:
      if (value != 0) return std::nullopt;
      return list.Repeat() == RepeatMode::kOff ? 0 : 1;
    case kSetShuffle:
      if (!is_flag) return std::nullopt;
      player_.SetShuffle(value == 1);
      return 0;
    case kSetRepeat:
      if (!is_flag) return std::nullopt;
      player_.SetRepeat(value == 1 ? RepeatMode::kAll : RepeatMode::kOff);
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

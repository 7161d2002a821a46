// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/winamp_control.h"

#include <utility>

#include "player/player_messages.h"

namespace tallow {
namespace {

/// Formats a number as uppercase hexadecimal digits without leading zeros.
std::string Hexadecimal(std::uint32_t number) {
  std::string digits;
  do digits.insert(digits.begin(), "0123456789ABCDEF"[number % 16]);
  while ((number /= 16) != 0);
  return digits;
}

}  // namespace

WinAMP_Control::WinAMP_Control(PlayerLink& link, std::function<std::string()> player_path,
                               ShowMessage show)
    : link_(link), player_path_(std::move(player_path)), show_(std::move(show)) {}

bool WinAMP_Control::FindWinamp() {
  link_.UseProgram(player_path_());
  window_ = link_.Find();
  return window_ != 0;
}

bool WinAMP_Control::StartWinamp() {
  const std::string path = player_path_();
  return !path.empty() && link_.Start(path);
}

PlayerStart WinAMP_Control::FollowStart() {
  const PlayerStart start = link_.FollowStart();
  if (start == PlayerStart::kAnswers) return FindWinamp() ? start : PlayerStart::kNoWindow;
  // A player that was found before has ended.
  window_ = 0;
  return start;
}

bool WinAMP_Control::RequireWindow() {
  if (window_ != 0 || FindWinamp()) return true;
  show_({.text = "WinAMP window not found yet...",
         .title = "WinAMP Not Found",
         .icon = MessageIcon::kCritical});
  return false;
}

std::int64_t WinAMP_Control::SendUserMessage(std::int64_t wParam, std::int64_t lParam) {
  return link_.Send(window_, kWmUser, wParam, lParam);
}

void WinAMP_Control::SendWinampCommand(std::int32_t id) {
  if (RequireWindow()) link_.Send(window_, kWmCommand, id, 0);
}

void WinAMP_Control::ClearWinampPlaylist() {
  if (RequireWindow()) SendUserMessage(0, kClearList);
}

bool WinAMP_Control::AddFileToWinamp(const std::string& path) {
  if (!RequireWindow()) return true;
  std::string data = link_.TextOfPath(path);
  data.push_back('\0');
  return link_.SendCopyData(window_, kAddFile, data);
}

std::string WinAMP_Control::GetWinampStatus() {
  if (!RequireWindow()) return {};
  switch (SendUserMessage(0, kStatus)) {
    case kPlaying:
      return "PLAYING";
    case kPaused:
      return "PAUSED";
    default:
      return "STOPPED";
  }
}

std::int32_t WinAMP_Control::GetTrackPosition() {
  if (!RequireWindow()) return 0;
  const auto position = static_cast<std::int32_t>(SendUserMessage(kAskPosition, kTrackTime));
  return position == -1 ? -1 : position / 1000;
}

std::int32_t WinAMP_Control::GetTrackLength() {
  if (!RequireWindow()) return 0;
  return static_cast<std::int32_t>(SendUserMessage(kAskLength, kTrackTime));
}

void WinAMP_Control::SetTrackPosition(std::int32_t seconds) {
  if (!RequireWindow()) return;
  if (seconds >= 0 && seconds <= GetTrackLength())
    SendUserMessage(std::int64_t{seconds} * 1000, kSeek);
}

void WinAMP_Control::SetVolume(std::int32_t volume) {
  if (!RequireWindow()) return;
  if (volume >= 0 && volume <= kMaxVolume) SendUserMessage(volume, kSetVolume);
}

void WinAMP_Control::SetBalance(std::int32_t balance) {
  if (!RequireWindow()) return;
  if (balance < -kMaxBalance || balance > kMaxBalance) return;
  SendUserMessage(balance < 0 ? balance + kLeftBalance : balance, kSetBalance);
}

std::int32_t WinAMP_Control::GetListLength() {
  return RequireWindow() ? static_cast<std::int32_t>(SendUserMessage(0, kListLength)) : 0;
}

std::int32_t WinAMP_Control::GetListPlace() {
  return RequireWindow() ? static_cast<std::int32_t>(SendUserMessage(0, kListPlace)) : 0;
}

void WinAMP_Control::SetListPlace(std::int32_t place) {
  if (RequireWindow() && place >= 0) SendUserMessage(place, kSetPlace);
}

bool WinAMP_Control::IsShuffled() { return RequireWindow() && SendUserMessage(0, kShuffle) == 1; }

void WinAMP_Control::SetShuffle(bool on) {
  if (RequireWindow()) SendUserMessage(on ? 1 : 0, kSetShuffle);
}

bool WinAMP_Control::IsRepeated() { return RequireWindow() && SendUserMessage(0, kRepeat) == 1; }

void WinAMP_Control::SetRepeat(bool on) {
  if (RequireWindow()) SendUserMessage(on ? 1 : 0, kSetRepeat);
}

std::string WinAMP_Control::GetWinampVersion() {
  if (!RequireWindow()) return {};
  std::string digits = Hexadecimal(static_cast<std::uint32_t>(SendUserMessage(0, kVersion)));
  if (digits.size() <= 3) return "UNKNOWN";
  return digits.insert(1, ".");
}

}  // namespace tallow

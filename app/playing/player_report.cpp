// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/player_report.h"

#include <algorithm>
#include <utility>

namespace tallow {
namespace {

PlayerReport StateOf(TallowPlayerState&& answer) {
  return {.status = answer.status,
          .position = answer.position,
          .length = answer.length,
          .entry = answer.entry,
          .place = answer.place,
          .count = answer.count,
          .upcoming = answer.upcoming,
          .revision = answer.revision,
          .shuffle = answer.shuffle,
          .repeat = answer.repeat,
          .failures = std::move(answer.failures)};
}

PlayerReport AskWinamp(PlayerLink& link, PlayerHandle player) {
  const auto ask = [&](std::int64_t w_param, PlayerRequest request) {
    return link.Send(player, kWmUser, w_param, request);
  };
  PlayerReport state;
  const std::int64_t status = ask(0, kStatus);
  if (status == kPlaying || status == kPaused) state.status = static_cast<PlayerStatus>(status);
  state.position = std::max<std::int64_t>(ask(kAskPosition, kTrackTime), -1);
  const std::int64_t seconds = ask(kAskLength, kTrackTime);
  if (seconds >= 0) state.length = seconds * 1000;
  state.count = static_cast<std::size_t>(std::max<std::int64_t>(ask(0, kListLength), 0));
  state.shuffle = ask(0, kShuffle) == 1;
  if (ask(0, kRepeat) == 1) state.repeat = RepeatMode::kAll;
  const std::int64_t place = ask(0, kListPlace);
  if (place < 0 || std::cmp_greater_equal(place, state.count)) return state;
  state.place = static_cast<std::size_t>(place);
  state.entry = state.place + 1;
  if (!state.shuffle) state.upcoming = state.count - state.place - 1;
  return state;
}

}  // namespace

std::optional<PlayerReport> AskState(WinAMP_Control& player, std::uint64_t failures_after) {
  if (!player.IsRunning()) return std::nullopt;
  if (player.Kind() == PlayerKind::kWinamp) return AskWinamp(player.Link(), player.Window());
  auto answer = player.OwnPlayer().State(failures_after);
  if (!answer) return std::nullopt;
  return StateOf(std::move(*answer));
}

}  // namespace tallow

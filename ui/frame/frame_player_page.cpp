// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player_page.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>

#include "app/playing/player_choice.h"
#include "app/search/drive_searches.h"
#include "app/search/player_search.h"
#include "app/search/winamp_places.h"
#include "app/tallow.h"
#include "player/player_link.h"
#include "player/tallow_player.h"
#include "player/winamp_control.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/frame/busy_frame.h"

namespace tallow {
namespace {

/// Tallow's own player, if it lies where no disk has to be searched; else empty.
std::string FindOwnPlayerNearby() {
  const std::string found = FindPlayerNearby();
  return KindOfPlayer(found) == PlayerKind::kTallowPlayer ? found : std::string();
}

/// Tallow's own player, if it is chosen and runs.
std::optional<TallowPlayer> RunningPlayer(const Tallow& tallow, PlayerLink& link) {
  WinAMP_Control player(link, [&tallow] { return tallow.player_path; }, {});
  if (!player.FindWinamp() || player.Kind() != PlayerKind::kTallowPlayer) return std::nullopt;
  return player.OwnPlayer();
}

/// Searches the disks for a player, with its progress in the splash window over the dialog.
std::optional<std::string> SearchDisks(Tallow& tallow, DriveSearches& searches, BusyFrame& busy) {
  // Only a child of a modal dialog accepts clicks while the dialog is open.
  frmSplash splash([&tallow] { tallow.SearchCancelled = true; }, QApplication::activeModalWidget());
  splash.Load();
  splash.ShowForSearch();
  splash.ShowCancelButton(true);
  busy.EnableFrame(false);
  // The dialog is disabled with the frame, and with the dialog its child.
  splash.setEnabled(true);
  std::optional<std::string> found = std::string();
  try {
    found = searches.SearchDisksForPlayer(splash);
  } catch (const std::exception&) {
    // A failed search found no player.
  }
  busy.EnableFrame(true);
  return found;
}

}  // namespace

PlayerPageContext MakePlayerPageContext(Tallow& tallow, DriveSearches& searches, PlayerLink& link,
                                        BusyFrame& busy) {
  PlayerPageContext context;
  context.find_own = FindOwnPlayerNearby;
  context.find_winamps = WinampsInUsualPlaces;
  context.search = [&tallow, &searches, &busy] { return SearchDisks(tallow, searches, busy); };
  context.devices = [&tallow, &link] {
    std::optional<TallowPlayer> player = RunningPlayer(tallow, link);
    return player ? player->Devices() : std::vector<SoundDevice>();
  };
  context.set_gain = [&tallow, &link](ReplayGain mode) {
    if (std::optional<TallowPlayer> player = RunningPlayer(tallow, link)) player->SetGain(mode);
  };
  context.set_device = [&tallow, &link](const std::string& name) {
    if (std::optional<TallowPlayer> player = RunningPlayer(tallow, link)) player->SetDevice(name);
  };
  return context;
}

}  // namespace tallow

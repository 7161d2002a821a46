// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/playfile.h"

#include "library/cls_main.h"
#include "player/player_messages.h"
#include "util/comm_dlgs.h"

namespace tallow {

bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show) {
  if (!player.StartWinamp()) {
    show({.text = "Couldn't start WinAMP"});
    return false;
  }
  if (!player.FindWinamp()) {
    show({.text = "Couldn't find WinAMP's Window"});
    return false;
  }
  return true;
}

std::string PathOfSong(const clsMain& library, std::int32_t record) {
  if (record < 1 || record > library.UBoundOfMp3Array()) return {};
  return std::string(library.Mp3Info(kFileLocation, record)) +
         std::string(library.Mp3Info(kFileName, record));
}

void HandOver(std::span<const std::int32_t> songs, const clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel) {
  if (!ReachPlayer(player, show)) return;
  panel.PlayerFound();
  if (songs.empty()) return;
  const auto playable = [&](const std::string& path) {
    return !path.empty() && FileExistsCheck(path, show);
  };
  const std::string first = PathOfSong(library, songs.front());
  if (!playable(first)) return;
  player.SendWinampCommand(kStop);
  player.ClearWinampPlaylist();
  player.AddFileToWinamp(first);
  player.SendWinampCommand(kPlay);
  panel.TrackStarted(player.GetTrackLength());
  for (const std::int32_t song : songs.subspan(1)) {
    const std::string path = PathOfSong(library, song);
    if (playable(path)) player.AddFileToWinamp(path);
  }
  panel.HandedOver();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/play_commands.h"

#include <exception>
#include <utility>

#include "app/search/player_search.h"
#include "app/tallow.h"
#include "jukebox/folder_tree.h"
#include "library/folder_scan.h"
#include "util/file_system.h"

namespace tallow {

bool PlayCommands::CheckPlayer(const std::function<void()>& search) {
  if (std::exchange(tallow_.player_search_is_pending, false)) SearchForPlayer(search);
  if (!tallow_.settings.LocOfWinAmpExe().empty()) return true;
  OfferInstaller();
  return false;
}

void PlayCommands::SearchForPlayer(const std::function<void()>& search) {
  windows_.ShowStatus("Searching for Winamp  . . . ");
  windows_.EnableFrame(false);
  try {
    search();
  } catch (const std::exception&) {
    // A failed search found no player; the next step reports that.
  }
  windows_.EnableFrame(true);
  windows_.ShowStatus({});
}

void PlayCommands::OfferInstaller() {
  const MessageAnswer answer = windows_.Show(
      {.text = "WinAmp is not installed on your system.  You need Winamp to play music.  Would you "
               "like to have a free copy of WinAmp installed on you system now?",
       .icon = MessageIcon::kQuestion,
       .buttons = MessageButtons::kYesNoCancel});
  if (answer != MessageAnswer::kYes) return;
  windows_.Show(
      {.text =
           "WinAmp will now be installed on your system.  After WinAmp is installed, close down "
           "both WinAmp and Tallow.  Then just open Tallow.  When you request to play songs "
           "WinAmp will then automatically open.",
       .icon = MessageIcon::kInformation});
  const std::string installer = tallow_.application_folder + kPlayerInstaller;
  if (windows_.Start(installer)) return;
  const std::string reason = FileExists(installer) ? "It cannot be run" : "It is not there";
  windows_.Show({.text = "The installer " + installer + " could not be started. " + reason +
                         ".\n\n" + std::string(HowToInstallPlayer()) +
                         " Then close Tallow and open it again.",
                 .icon = MessageIcon::kCritical});
}

void PlayCommands::Play(std::vector<std::int32_t> songs, const PlayOrder& order,
                        const std::function<void()>& search) {
  if (!CheckPlayer(search)) return;
  PlayOrder now = order;
  const std::string away = LeaveOutAway(songs, now.first);
  if (!away.empty()) windows_.ShowStatus(away);
  if (songs.empty()) return;
  tallow_.SongsToPlay = std::move(songs);
  tallow_.play_order = now;
  windows_.PlayOnPanel();
}

std::string PlayCommands::LeaveOutAway(std::vector<std::int32_t>& songs, std::size_t& first_song) {
  const clsMain& library = tallow_.library;
  std::vector<char> is_there;
  if (!CheckSongs(songs, is_there)) {
    songs.clear();
    return "Nothing was played: the search for the songs was cancelled";
  }
  const std::size_t chosen = first_song;
  std::string first;
  std::size_t k = 0;
  const auto left_out = std::erase_if(songs, [&](std::int32_t song) {
    if (is_there[k++]) return false;
    if (first.empty()) first = library.AwayText(song);
    if (k <= chosen) --first_song;
    return true;
  });
  // Neither the chosen song nor one behind it is there.
  if (first_song >= songs.size()) songs.clear();
  if (left_out == 0) return {};
  if (left_out == 1) return "1 song was not played: " + first;
  return std::to_string(left_out) + " songs were not played. The first: " + first;
}

bool PlayCommands::CheckSongs(const std::vector<std::int32_t>& songs, std::vector<char>& is_there) {
  clsMain& library = tallow_.library;
  is_there.assign(songs.size(), 1);
  const std::unique_ptr<LongWork> work = windows_.BeginWork(kLookingForSongs);
  GoOn go_on;
  if (work) go_on = [&](std::string_view) { return work->GoOn([] { return std::string(); }); };
  try {
    library.CheckWithProgress(go_on, [&] {
      // The songs' drive may have been disconnected since the last search.
      library.MarkAwaySongs(songs);
      std::vector<std::int32_t> away;
      for (const std::int32_t song : songs)
        if (library.IsAway(song)) away.push_back(song);
      const std::vector<char> back = library.RecheckSong(away);
      std::size_t next = 0;
      // A song that occurs several times may have come back after it was added to `away`.
      for (std::size_t k = 0; k < songs.size() && next < away.size(); ++k)
        if (songs[k] == away[next]) is_there[k] = back[next++];
    });
  } catch (const Stopped&) {
    return false;
  }
  return true;
}

std::vector<std::int32_t> SongsOf(const Folder& folder) {
  std::vector<std::int32_t> songs;
  songs.reserve(folder.Items().size());
  for (const SongEntry& entry : folder.Items()) songs.push_back(entry.SubItem());
  return songs;
}

std::vector<std::int32_t> ShownSongsOf(const Folder& folder, const clsMain& library) {
  std::vector<std::int32_t> songs = SongsOf(folder);
  std::erase_if(songs, [&library](std::int32_t song) { return library.IsHidden(song); });
  return songs;
}

std::vector<std::int32_t> SongsOf(const Folder& folder, const std::vector<int>& rows) {
  std::vector<std::int32_t> songs;
  for (const int row : rows)
    if (row >= 0 && static_cast<std::size_t>(row) < folder.Items().size())
      songs.push_back(folder.Items()[static_cast<std::size_t>(row)].SubItem());
  return songs;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/playing_lists.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <QMdiSubWindow>

#include "app/playing/playing_preferences.h"
#include "app/tallow.h"
#include "jukebox/folders_of_song.h"
#include "ui/frame/bring_to_front.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/frame_player.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "util/number.h"

namespace tallow {
namespace {

/// The top-level folder of a jukebox that has all its songs.
constexpr std::string_view kAllSongs = "All Songs";

/// How long a text is shown that concerns only what the user has just done, in ms.
constexpr int kShortly = 10 * 1000;

}  // namespace

PlayListCommands CommandsOf(FramePlayer& player) {
  using Songs = PlayListCommands::Songs;
  return {
      .play = [&player](Songs songs, SongsOrigin origin) { player.Play(std::move(songs), origin); },
      .play_from_here =
          [&player](Songs songs, std::size_t chosen, SongsOrigin origin) {
            player.PlayFromHere(std::move(songs), chosen, origin);
          },
      .play_next = [&player](Songs songs,
                             SongsOrigin origin) { player.PlayNext(std::move(songs), origin); },
      .add_to_queue = [&player](
                          Songs songs,
                          SongsOrigin origin) { player.AddToQueue(std::move(songs), origin); }};
}

PlayingLists::PlayingLists(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages,
                           PlayerModel& player, PlayListCommands commands)
    : tallow_(tallow),
      jukeboxes_(jukeboxes),
      messages_(messages),
      player_(player),
      commands_(std::move(commands)) {}

PlayingLists::~PlayingLists() {
  // The windows are destroyed after the player.
  for (const QPointer<frmMain>& window : windows_)
    if (window != nullptr) window->SetPlayer(nullptr);
}

void PlayingLists::Follow(frmMain& window) {
  std::erase_if(windows_, [](const QPointer<frmMain>& other) { return other == nullptr; });
  windows_.emplace_back(&window);
  window.SetPlayer(&player_);
  window.ShowMarks(PlayingPreferences(tallow_.preferences).ShowsMarks());
  connect(&window, &frmMain::PlaySongs, this,
          [this](std::vector<std::int32_t> songs, SongsOrigin origin) {
            commands_.play(std::move(songs), origin);
          });
  connect(&window, &frmMain::PlayFromHere, this,
          [this](std::vector<std::int32_t> songs, std::size_t chosen, SongsOrigin origin) {
            commands_.play_from_here(std::move(songs), chosen, origin);
          });
  connect(&window, &frmMain::PlayNext, this,
          [this](std::vector<std::int32_t> songs, SongsOrigin origin) {
            AddBy(commands_.play_next, std::move(songs), origin);
          });
  connect(&window, &frmMain::AddToQueue, this,
          [this](std::vector<std::int32_t> songs, SongsOrigin origin) {
            AddToQueue(std::move(songs), origin);
          });
  connect(&window, &frmMain::PlayOrPause, this, [this] { player_.PlayOrPause(); });
}

void PlayingLists::AddToQueue(std::vector<std::int32_t> songs, SongsOrigin origin) {
  AddBy(commands_.add_to_queue, std::move(songs), origin);
}

void PlayingLists::AddBy(const Add& add, std::vector<std::int32_t> songs, SongsOrigin origin) {
  const std::size_t before = player_.QueueLength();
  // Without a queue the songs are played.
  const bool is_queued = before > 0 || player_.Now().status != kStopped;
  const std::size_t count = songs.size();
  add(std::move(songs), origin);
  player_.Update();
  const std::size_t now = player_.QueueLength();
  // Otherwise something went wrong, and a message says so.
  if (!is_queued || now != before + count) return;
  messages_.ShowStatus(
      count == 1 ? "1 song added to the queue."
                 : GroupedNumber(static_cast<std::int64_t>(count)) + " songs added to the queue.",
      kShortly);
}

void PlayingLists::FollowPreferences() {
  const bool on = PlayingPreferences(tallow_.preferences).ShowsMarks();
  for (const QPointer<frmMain>& window : windows_)
    if (window != nullptr) window->ShowMarks(on);
}

void PlayingLists::ShowPlayingSong() {
  const Playing now = player_.Now();
  if (now.song == 0)
    return messages_.ShowStatus(now.status == kStopped
                                    ? "No song plays."
                                    : "Tallow does not know the song that plays: the player's list "
                                      "is not the one that Tallow has handed over.",
                                kShortly);
  const Place place = FindPlace(now.song, now.origin);
  if (place.window == nullptr)
    return messages_.ShowStatus(
        "No open jukebox has the song that plays. Open its jukebox, and try again.", kShortly);
  if (auto* const sub = qobject_cast<QMdiSubWindow*>(place.window->parentWidget()))
    BringToFront(jukeboxes_.Area(), *sub);
  PVExplorer& explorer = place.window->PVExplorer1();
  if (explorer.SelectSong(*place.folder, place.row) < 0)
    return messages_.ShowStatus("The file of the song that plays is missing.", kShortly);
  explorer.GrabFocus(true);
}

PlayingLists::Place PlayingLists::FindPlace(std::int32_t song, SongsOrigin origin) const {
  std::vector<frmMain*> windows;
  // The jukebox may have been closed, so it is looked for by its address.
  for (const Jukebox* const jukebox : jukeboxes_.Open()) {
    frmMain* const window = jukeboxes_.WindowOf(*jukebox);
    if (jukebox != origin.jukebox) {
      windows.push_back(window);
      continue;
    }
    windows.insert(windows.begin(), window);
    const Place place = PlaceIn(window, jukebox->Nodes().FindKey(origin.folder), song);
    if (place.window != nullptr) return place;
  }
  if (frmMain* const active = jukeboxes_.ActiveWindow();
      active != nullptr && (windows.empty() || &windows.front()->Jukebox() != origin.jukebox))
    windows.insert(windows.begin(), active);
  for (frmMain* const window : windows) {
    const Place place = PlaceInAllSongs(window, song);
    if (place.window != nullptr) return place;
  }
  if (tallow_.library.IsHidden(song)) return {};
  // Songs that were found by a search may be in other folders only.
  for (frmMain* const window : windows) {
    const FolderOfSong found = FolderToShowSongIn(window->Jukebox(), song, tallow_.library);
    if (found.folder != nullptr) return {window, found.folder, found.index};
  }
  return {};
}

PlayingLists::Place PlayingLists::PlaceInAllSongs(frmMain* window, std::int32_t song) const {
  return PlaceIn(window, window->Jukebox().Nodes().Find(kAllSongs), song);
}

PlayingLists::Place PlayingLists::PlaceIn(frmMain* window, const Folder* folder,
                                          std::int32_t song) const {
  if (folder == nullptr || tallow_.library.IsHidden(song)) return {};
  int row = 0;
  for (const SongEntry& entry : folder->Items()) {
    if (entry.SubItem() == song) return {window, folder, row};
    ++row;
  }
  return {};
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_filing.h"

#include <utility>

#include <QApplication>
#include <QPointer>
#include <QWidget>

#include "app/file_again_command.h"
#include "app/tallow.h"
#include "ui/frame/new_song_search.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {

FrameFiling::FrameFiling(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages,
                         BusyFrame& busy, NewSongSearch& search,
                         std::function<void(const std::vector<std::string>&)> notice_scan)
    : FrameWindows(jukeboxes, messages, busy),
      tallow_(tallow),
      search_(search),
      notice_scan_(std::move(notice_scan)),
      changes_(tallow, *this) {}

void FrameFiling::FileAgain() {
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (window == nullptr)
    return messages_.ShowStatus("No jukebox is open. Open one, or make a new one, and try again.");
  window->PVExplorer1().CommitEditing();
  const std::vector<std::int32_t> songs =
      SongsToFileAgain(window->Jukebox(), window->PVExplorer1().SelectedRows(), tallow_.library);
  jukeboxes_.KeepPlaces([&] {
    Notice(FileSongsAgain(songs, tallow_, OpenJukeboxes(), [this](std::string_view text) {
             return busy_.BeginWork(text);
           }).lines);
  });
}

void FrameFiling::Follow(const Switches& before) {
  // Other settings change no list.
  if (before == tallow_.preferences.switches()) return;
  KeepFocus([&] { KeepPlaces([&] { changes_.Follow(before); }); });
}

void FrameFiling::FinishStyle() {
  KeepFocus([&] { KeepPlaces([&] { changes_.FinishStyle(); }); });
}

void FrameFiling::Finish() {
  if (changes_.HasWork()) KeepPlaces([&] { changes_.Finish(); });
}

NewSongsResult FrameFiling::Search(NewSongsPlace place) {
  return search_.BringIn(place, NewSongsTarget::kOpenJukeboxes);
}

/// Keeps the places in the lists, and each chosen folder in view: other folders come and go, so the
/// tree is scrolled.
void FrameFiling::KeepPlaces(const std::function<void()>& act) const {
  jukeboxes_.KeepPlaces(act);
  for (const Jukebox* const jukebox : jukeboxes_.Open()) {
    PVExplorer& explorer = jukeboxes_.WindowOf(*jukebox)->PVExplorer1();
    if (jukebox->ShowsHits()) continue;
    if (const Folder* const chosen = explorer.selectednode()) explorer.Select(*chosen);
  }
}

/// Work disables the dialog in which the user has changed a switch, and a disabled window loses its
/// focus.
void FrameFiling::KeepFocus(const std::function<void()>& act) const {
  const QPointer<QWidget> focus = QApplication::focusWidget();
  act();
  if (focus != nullptr && focus->isVisible()) focus->setFocus();
}

}  // namespace tallow

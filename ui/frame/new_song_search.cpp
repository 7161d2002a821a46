// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/new_song_search.h"

#include <utility>

#include <QApplication>

#include "app/playing/follow_returned_songs.h"
#include "app/search/drive_searches.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/frame/frame_findings.h"
#include "ui/support/help_page.h"

namespace tallow {

NewSongSearch::NewSongSearch(Tallow& tallow, DriveSearches& searches, JukeboxArea& jukeboxes,
                             FrameMessages& messages, BusyFrame& busy, FrameFindings& findings,
                             std::function<void(const std::vector<std::string>&)> notice_scan)
    : FrameWindows(jukeboxes, messages, busy),
      tallow_(tallow),
      searches_(searches),
      findings_(findings),
      notice_scan_(std::move(notice_scan)) {}

NewSongSearch::~NewSongSearch() = default;

NewSongsResult NewSongSearch::BringIn(NewSongsPlace place, NewSongsTarget target) {
  NewSongsResult result;
  if (searching_) return result;
  jukeboxes_.KeepPlaces([&] {
    result = BringInNewSongs(
        place, tallow_, *this,
        [this](SearchProgress& progress) { return searches_.SearchForSongs(progress); }, target);
  });
  findings_.FindSizes();
  return result;
}

void NewSongSearch::FollowSongs(const std::vector<ReturnedSong>& songs) {
  jukeboxes_.KeepPlaces([&] {
    const std::vector<Jukebox*> open = jukeboxes_.Open();
    FollowReturnedSongs(songs, open, tallow_);
    for (Jukebox* const jukebox : open) jukebox->ListRefilled(tallow_.library);
  });
  findings_.Changed();
}

SearchProgress& NewSongSearch::ShowSearching() {
  searching_ = std::make_unique<frmSearching>([this] { tallow_.SearchCancelled = true; });
  // Only a child of a modal dialog accepts clicks while the dialog is open.
  if (QWidget* const modal = QApplication::activeModalWidget())
    searching_->setParent(modal, searching_->windowFlags());
  searching_->setProperty(kHelpPage, QStringLiteral("new-songs"));
  searching_->Load();
  searching_->show();
  searching_->Redraw();
  return *searching_;
}

void NewSongSearch::UnloadSearching() { searching_.reset(); }

void NewSongSearch::EnableFrame(bool enabled) {
  busy_.EnableFrame(enabled);
  // A dialog over the frame is disabled with it, and with the dialog its child, this window.
  if (searching_) searching_->setEnabled(true);
}

Jukebox* NewSongSearch::ActiveJukebox() { return jukeboxes_.ActiveJukebox(); }

}  // namespace tallow

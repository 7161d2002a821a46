// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/playing_songs.h"

#include <utility>

#include <QCoreApplication>

#include "app/playing/system_player_model.h"
#include "ui/support/display_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

QString Tr(const char* text) { return QCoreApplication::translate("PlayingSongs", text); }

}  // namespace

PlayingSongs::PlayingSongs(SystemPlayerModel& model, ShowMessage show, BeginLongWork begin,
                           ShowStatus status, HandOffPanel* view)
    : model_(model),
      show_(std::move(show)),
      work_(std::move(begin)),
      status_(std::move(status)),
      view_(view) {}

void PlayingSongs::Play() {
  const HandOverProgress progress = work_.BeginHandingOver();
  model_.HandOverSongs(show_, *this, progress, work_.Starting());
  work_.End();
}

void PlayingSongs::PlayerFound() {
  if (view_ != nullptr)
    view_->PlayerFound();
  else
    model_.SetUpNewPlayer();
}

void PlayingSongs::TrackStarted(std::int32_t length) {
  if (view_ != nullptr)
    view_->TrackStarted(length);
  else
    model_.Update();
}

void PlayingSongs::HandedOver() {
  work_.End();
  if (view_ != nullptr) view_->HandedOver();
}

void PlayingSongs::Cancelled(std::size_t songs, std::size_t of) {
  status_(Tr("Handing songs to the player was cancelled: it has %1 of the %2 songs.")
              .arg(songs)
              .arg(of));
}

void PlayingSongs::DiskTimedOut(std::size_t songs, const std::string& first) {
  status_(songs == 1
              ? Tr("1 song was not played, because its disk does not answer: %1")
                    .arg(DisplayText(first))
              : Tr("%1 songs were not played, because their disk does not answer. The first: %2")
                    .arg(songs)
                    .arg(DisplayText(first)));
}

void PlayingSongs::FirstSongIsGone(const std::string& path) {
  status_(Tr("%1 is gone, so nothing is played.").arg(DisplayText(NameOfPath(path))));
}

}  // namespace tallow

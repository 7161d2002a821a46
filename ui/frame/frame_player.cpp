// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player.h"

#include <utility>

#include "app/search/drive_searches.h"
#include "app/tallow.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/panel_window.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/support/help_page.h"
#include "util/start_program.h"

namespace tallow {

FramePlayer::FramePlayer(Tallow& tallow, PlayerLink& link, DriveSearches& searches,
                         JukeboxArea& jukeboxes, PanelWindow& panel, FrameMessages& messages,
                         BusyFrame& busy)
    : FrameWindows(jukeboxes, messages, busy),
      tallow_(tallow),
      searches_(searches),
      panel_(panel),
      player_(
          link, [&tallow] { return tallow.player_path; }, messages.Shower()),
      play_commands_(tallow, *this) {}

bool FramePlayer::CheckPlayer() {
  const bool is_found = play_commands_.CheckPlayer([this] { SearchForPlayer(); });
  messages_.Notice(tallow_.TakeProblems());
  return is_found;
}

void FramePlayer::Play(std::vector<std::int32_t> songs) {
  play_commands_.Play(std::move(songs), [this] { SearchForPlayer(); });
  messages_.Notice(tallow_.TakeProblems());
}

void FramePlayer::SearchForPlayer() {
  frmSplash splash([this] { tallow_.SearchCancelled = true; });
  splash.Load();
  splash.ShowForSearch();
  splash.ShowCancelButton(true);
  searches_.SearchForPlayer(splash);
}

void FramePlayer::Send(std::int32_t command) {
  player_.FindAgainIfEnded();
  player_.SendWinampCommand(command);
}

void FramePlayer::ShowStatus(const std::string& text) { messages_.ShowStatus(text); }

void FramePlayer::EnableFrame(bool enabled) { busy_.EnableFrame(enabled); }

void FramePlayer::PlayOnPanel() {
  if (panel_.Panel() == nullptr) OpenPanel();
  panel_.Play();
}

void FramePlayer::OpenPanel() {
  auto* const panel = new frmMainWinamp(tallow_, player_, messages_.Shower());
  panel->setProperty(kHelpPage, QStringLiteral("playing"));
  panel->OnLongWork([this](std::string_view text) { return BeginWork(text); });
  QObject::connect(panel, &frmMainWinamp::StatusMessage, &panel_,
                   [this](const QString& text) { ShowStatus(text.toStdString()); });
  panel_.Open(*panel);
}

bool FramePlayer::Start(const std::string& program) {
  return StartProgram(program, FirstWindow::kNormal);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player.h"

#include <utility>

#include <QTimer>

#include "app/playing/flag_guard.h"
#include "app/search/drive_searches.h"
#include "app/tallow.h"
#include "player/player_messages.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/panel_window.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/player/player_work.h"
#include "ui/player/playing_songs.h"
#include "ui/support/help_page.h"
#include "util/start_program.h"

namespace tallow {
namespace {

constexpr int kUpdateInterval = 150;  ///< ms

/// How long a text is shown that concerns only what the user has just done, in ms.
constexpr int kShortly = 10 * 1000;

}  // namespace

FramePlayer::FramePlayer(Tallow& tallow, PlayerLink& link, DriveSearches& searches,
                         JukeboxArea& jukeboxes, PanelWindow& panel, FrameMessages& messages,
                         BusyFrame& busy)
    : FrameWindows(jukeboxes, messages, busy),
      tallow_(tallow),
      searches_(searches),
      panel_(panel),
      preferences_(tallow.preferences),
      player_(
          link, [&tallow] { return tallow.player_path; }, messages.Shower()),
      model_(tallow, player_),
      play_commands_(tallow, *this),
      timer_(new QTimer(this)) {
  timer_->setObjectName(QStringLiteral("tmrPlayer"));
  timer_->setInterval(kUpdateInterval);
  connect(timer_, &QTimer::timeout, this, &FramePlayer::Update);
}

// The panel follows the model; the area would delete it after that.
FramePlayer::~FramePlayer() { panel_.Delete(); }

bool FramePlayer::CheckPlayer() {
  const bool is_found = play_commands_.CheckPlayer([this] { SearchForPlayer(); });
  messages_.Notice(tallow_.TakeProblems());
  return is_found;
}

void FramePlayer::Play(std::vector<std::int32_t> songs, const SongsOrigin& origin) {
  PlaySongs(std::move(songs), {.origin = origin});
}

void FramePlayer::PlayFromHere(std::vector<std::int32_t> songs, std::size_t chosen,
                               const SongsOrigin& origin) {
  PlaySongs(std::move(songs), {.first = chosen, .origin = origin});
}

void FramePlayer::PlayNext(std::vector<std::int32_t> songs, const SongsOrigin& origin) {
  PlaySongs(std::move(songs), {.to = HandOverTo::kPlayNext, .origin = origin});
}

void FramePlayer::AddToQueue(std::vector<std::int32_t> songs, const SongsOrigin& origin) {
  PlaySongs(std::move(songs), {.to = HandOverTo::kAtEnd, .origin = origin});
}

void FramePlayer::PlaySongs(std::vector<std::int32_t> songs, const PlayOrder& order) {
  // The songs that are being handed over are those in SongsToPlay.
  if (is_handing_over_) return;
  // What was said about the command before, such as that no song is selected.
  messages_.ClearStatus();
  play_commands_.Play(std::move(songs), order, [this] { SearchForPlayer(); });
  messages_.Notice(tallow_.TakeProblems());
}

void FramePlayer::SearchForPlayer() {
  frmSplash splash([this] { tallow_.SearchCancelled = true; });
  splash.Load();
  splash.ShowForSearch();
  splash.ShowCancelButton(true);
  searches_.SearchForPlayer(splash);
}

bool FramePlayer::FindsPlayer() { return player_.IsRunning() || player_.FindWinamp(); }

void FramePlayer::PlayOrPause() {
  if (FindsPlayer() && model_.HasList()) return model_.PlayOrPause();
  if (play_selection_) play_selection_();
}

void FramePlayer::Send(std::int32_t command) {
  player_.FindAgainIfEnded();
  player_.SendWinampCommand(command);
  if (command == kClosePlayer) model_.DropStoredQueue();
  if (player_.Window() != 0) timer_->start();
}

void FramePlayer::ShowStatus(const std::string& text) { messages_.ShowStatus(text); }

void FramePlayer::EnableFrame(bool enabled) { busy_.EnableFrame(enabled); }

void FramePlayer::PlayOnPanel() {
  {
    const FlagGuard handing_over(is_handing_over_);
    if (panel_.Panel() == nullptr && preferences_.ShowsBar()) {
      PlayWithoutPanel();
    } else {
      if (panel_.Panel() == nullptr) {
        model_.CloseFormerPlayer();
        OpenPanel();
      }
      panel_.Play();
    }
  }
  timer_->start();
}

void FramePlayer::PlayWithoutPanel() {
  PlayingSongs playing(
      model_, messages_.Shower(), [this](std::string_view text) { return BeginWork(text); },
      [this](const QString& text) { messages_.ShowStatus(text.toStdString(), kShortly); });
  playing.Play();
  model_.Update();
}

void FramePlayer::ShowPanel() {
  if (panel_.Panel() == nullptr) {
    model_.CloseFormerPlayer();
    OpenPanel();
  }
  panel_.ShowPlayer();
  timer_->start();
}

void FramePlayer::OpenPanel() {
  auto* const panel = new frmMainWinamp(player_, model_, messages_.Shower());
  panel->setProperty(kHelpPage, QStringLiteral("playing"));
  panel->OnLongWork([this](std::string_view text) { return BeginWork(text); });
  connect(panel, &frmMainWinamp::StatusMessage, this,
          [this](const QString& text) { messages_.ShowStatus(text.toStdString(), kShortly); });
  connect(panel, &frmMainWinamp::Closing, this, &FramePlayer::PanelCloses);
  panel_.Open(*panel);
}

void FramePlayer::PanelCloses() {
  if (!is_ending_) model_.DropStoredQueue();
}

void FramePlayer::Update() {
  model_.Update();
  std::vector<std::string> lines = model_.TakeNotices();
  for (std::string& problem : tallow_.TakeProblems()) lines.push_back(std::move(problem));
  if (!lines.empty()) messages_.AddNotice(std::move(lines));
  // A player that is late with its answer is still followed.
  if (!player_.IsRunning() && !preferences_.ShowsBar()) timer_->stop();
}

void FramePlayer::FollowPreferences() {
  if (preferences_.ShowsBar()) timer_->start();
}

void FramePlayer::RestoreQueue() {
  FollowPreferences();
  // The preferences were loaded after the model was made.
  model_.ShowVolumeOfLastTime();
  // A message box would interrupt each start.
  const ShowMessage show = [this](const Message& message) {
    messages_.AddNotice({message.text});
    return MessageAnswer::kOk;
  };
  PlayerWork work([this](std::string_view text) { return BeginWork(text); });
  HandOverProgress progress;
  model_.RestoreQueue(show, work.Starting(), [&](std::size_t done, std::size_t songs) {
    if (!progress) progress = work.BeginHandingOver();
    return !progress || progress(done, songs);
  });
  if (player_.IsRunning()) timer_->start();
}

void FramePlayer::End() {
  is_ending_ = true;
  timer_->stop();
  model_.StoreQueue();
  if (panel_.Panel() != nullptr)
    panel_.Close();
  else if (model_.HasPlayer())
    model_.ClosePlayer();
  is_ending_ = false;
}

bool FramePlayer::Start(const std::string& program) {
  return StartProgram(program, FirstWindow::kNormal);
}

}  // namespace tallow

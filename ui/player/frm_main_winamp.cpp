// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/frm_main_winamp.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTimer>

#include "app/playing/system_player_model.h"
#include "player/player_messages.h"
#include "player/reach_player.h"
#include "ui/player/elided_label.h"
#include "ui/player/panel_bar.h"
#include "ui/player/player_work.h"
#include "ui/player/playing_songs.h"
#include "ui/player/time_text.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

constexpr int kUpdateInterval = 150;  ///< ms

/// Page steps of the bars, for the page keys: about a tenth of each range.
constexpr int kPages = 10;
constexpr int kVolumePage = 25;
constexpr int kBalancePage = 25;
constexpr int kVolumeStep = 5;
/// A step of 1, so that the keys can return the balance to the centre.
constexpr int kBalanceStep = 1;

/// Minimum length of the bars, in average characters.
constexpr int kBarCharacters = 44;

QScrollBar* NewBar(const char* name, const QString& label, const QString& description,
                   QWidget* parent) {
  auto* const bar = new PanelBar(parent);
  bar->setObjectName(QLatin1String(name));
  bar->setAccessibleName(label);
  bar->setAccessibleDescription(description);
  bar->setMinimumWidth(kBarCharacters * parent->fontMetrics().averageCharWidth());
  return bar;
}

}  // namespace

frmMainWinamp::frmMainWinamp(WinAMP_Control& player, SystemPlayerModel& model, ShowMessage show,
                             QWidget* parent)
    : QWidget(parent), player_(player), model_(model), show_(std::move(show)) {
  setObjectName(QStringLiteral("frmMainWinamp"));
  setWindowTitle(tr("WinAMP"));
  cmdPlayPause = new QPushButton(tr("&Play"), this);
  cmdPlayPause->setObjectName(QStringLiteral("cmdPlayPause"));
  cmdPlayPause->setAccessibleDescription(tr("Pauses or resumes"));
  hscrlTrackPos =
      NewBar("hscrlTrackPos", tr("Track Position"), tr("Position in the song, in seconds"), this);
  hscrlVolume = NewBar("hscrlVolume", tr("Volume"), tr("From silent at the left to full"), this);
  hscrlBalance =
      NewBar("hscrlBalance", tr("Balance"), tr("Between the left and the right loudspeaker"), this);
  lblSong = new ElidedLabel(this);
  lblSong->setObjectName(QStringLiteral("lblSong"));
  lblStatus = new QLabel(tr("No File Open"), this);
  lblStatus->setObjectName(QStringLiteral("lblStatus"));
  times_ = new QLabel(this);
  times_->setObjectName(QStringLiteral("lblTimes"));
  times_->setMinimumWidth(times_->fontMetrics().horizontalAdvance(tr("000:00 / 000:00")));
  tmrScrollUpdate = new QTimer(this);
  tmrScrollUpdate->setObjectName(QStringLiteral("tmrScrollUpdate"));
  tmrScrollUpdate->setInterval(kUpdateInterval);

  auto* const grid = new QGridLayout(this);
  grid->addWidget(lblSong, 0, 0, 1, 3);
  grid->addWidget(cmdPlayPause, 1, 0);
  auto* const status = new QHBoxLayout;
  status->addWidget(new QLabel(tr("Status:"), this));
  status->addWidget(lblStatus, 1);
  grid->addLayout(status, 1, 1);
  const std::pair<QScrollBar*, QString> bars[] = {{hscrlTrackPos, tr("Track Position")},
                                                  {hscrlVolume, tr("Volume")},
                                                  {hscrlBalance, tr("Balance")}};
  for (int row = 0; row < 3; ++row) {
    grid->addWidget(new QLabel(bars[row].second, this), row + 2, 0);
    grid->addWidget(bars[row].first, row + 2, 1);
  }
  grid->addWidget(times_, 2, 2);
  grid->setColumnStretch(1, 1);
  SetUpBars();
  SetUpTrackBar();
  connect(cmdPlayPause, &QPushButton::clicked, this, &frmMainWinamp::ClickPlayPause);
  connect(tmrScrollUpdate, &QTimer::timeout, this, &frmMainWinamp::Update);
  model_.AddListener(*this);
  PlayingChanged({}, model_.Now());
}

frmMainWinamp::~frmMainWinamp() { model_.RemoveListener(*this); }

void frmMainWinamp::SetUpBars() {
  hscrlVolume->setRange(0, kMaxVolume);
  hscrlVolume->setValue(model_.Volume());
  hscrlVolume->setSingleStep(kVolumeStep);
  hscrlVolume->setPageStep(kVolumePage);
  hscrlBalance->setRange(-kMaxBalance, kMaxBalance);
  hscrlBalance->setValue(model_.Balance());
  hscrlBalance->setSingleStep(kBalanceStep);
  hscrlBalance->setPageStep(kBalancePage);
  connect(hscrlVolume, &QScrollBar::valueChanged, this, [this](int value) {
    player_.SetVolume(value);
    model_.VolumeWasSet(value);
    PlayerFound();
  });
  connect(hscrlBalance, &QScrollBar::valueChanged, this, [this](int value) {
    player_.SetBalance(value);
    model_.BalanceWasSet(value);
    PlayerFound();
  });
}

void frmMainWinamp::SetUpTrackBar() {
  hscrlTrackPos->setRange(0, 0);
  // The bar changes its value only when it is released, so the player seeks once per drag.
  hscrlTrackPos->setTracking(false);
  connect(hscrlTrackPos, &QScrollBar::actionTriggered, this, &frmMainWinamp::UserScrolls);
  connect(hscrlTrackPos, &QScrollBar::sliderPressed, this, &frmMainWinamp::UserScrolls);
  connect(hscrlTrackPos, &QScrollBar::sliderReleased, this, &frmMainWinamp::UserScrolls);
  connect(hscrlTrackPos, &QScrollBar::sliderMoved, this, [this](int position) {
    UserScrolls();
    ShowTimes(position);
  });
  connect(hscrlTrackPos, &QScrollBar::valueChanged, this, &frmMainWinamp::TrackBarChanged);
}

bool frmMainWinamp::Play() {
  if (opened_ || Open()) Playstuff();
  return opened_;
}

bool frmMainWinamp::ShowPlayer() {
  if (!opened_ && !Open()) return false;
  cmdPlayPause->setEnabled(true);
  tmrScrollUpdate->start();
  return true;
}

bool frmMainWinamp::Open() {
  PlayerWork work(begin_work_);
  if (!ReachPlayer(player_, show_, work.Starting())) return false;
  model_.BeginVolume();
  SetUpPlayer();
  return true;
}

void frmMainWinamp::SetUpPlayer() {
  opened_ = true;
  set_up_ = player_.Window();
  setWindowTitle(DisplayText("WinAMP Version# " + player_.GetWinampVersion()));
  model_.SetUpPlayer();
}

void frmMainWinamp::PlayerFound() {
  // A new player, started after the panel was opened or replacing the previous one, would play at
  // full volume.
  if (player_.Window() != 0 && player_.Window() != set_up_) SetUpPlayer();
}

void frmMainWinamp::Playstuff() {
  PlayingSongs playing(
      model_, show_, begin_work_, [this](const QString& text) { emit StatusMessage(text); }, this);
  playing.Play();
}

void frmMainWinamp::PlayingChanged(const Playing& before, const Playing& now) {
  // The details of a song may be read after it has begun.
  const bool is_shown = before.song == now.song && !lblSong->text().isEmpty();
  if (is_shown && before.position == now.position && before.texts_revision == now.texts_revision)
    return;
  lblSong->ShowText(now.song == 0 ? QString() : DisplayText(model_.TextOf(now.song)));
}

void frmMainWinamp::VolumeChanged() {
  const QSignalBlocker volume(hscrlVolume);
  const QSignalBlocker balance(hscrlBalance);
  hscrlVolume->setValue(model_.Volume());
  hscrlBalance->setValue(model_.Balance());
}

void frmMainWinamp::TrackStarted(std::int32_t length) {
  UserIsScrolling = false;
  {
    const QSignalBlocker quiet(hscrlTrackPos);
    hscrlTrackPos->setMinimum(0);
    if (length >= 0) FitTrackBar(length);
    hscrlTrackPos->setValue(0);
  }
  ShowTimes(0);
}

void frmMainWinamp::HandedOver() {
  cmdPlayPause->setText(tr("&Pause"));
  cmdPlayPause->setEnabled(true);
  tmrScrollUpdate->start();
}

void frmMainWinamp::FitTrackBar(int length) {
  hscrlTrackPos->setPageStep(std::max(1, length / kPages));
  hscrlTrackPos->setMaximum(length);
}

void frmMainWinamp::ClickPlayPause() {
  const bool play = cmdPlayPause->text() == tr("&Play");
  player_.FindAgainIfEnded();
  player_.SendWinampCommand(play ? kPlay : kPause);
  cmdPlayPause->setText(play ? tr("&Pause") : tr("&Play"));
  PlayerFound();
}

void frmMainWinamp::UserScrolls() {
  // A bar at its end, or one that was moved back, does not emit valueChanged.
  UserIsScrolling =
      hscrlTrackPos->isSliderDown() || hscrlTrackPos->sliderPosition() != hscrlTrackPos->value();
}

void frmMainWinamp::TrackBarChanged(int seconds) {
  if (std::exchange(UserIsScrolling, false)) player_.SetTrackPosition(seconds);
  ShowTimes(seconds);
}

void frmMainWinamp::Update() {
  // Without a player the timer must not show a message box at every tick.
  if (player_.Window() == 0) return;
  // A menu command may have found another player.
  PlayerFound();
  const int position = player_.GetTrackPosition();
  const int length = player_.GetTrackLength();
  // The bar does not move while the user drags it.
  if (!UserIsScrolling) ShowPosition(position, length);
  ShowStatus(DisplayText(player_.GetWinampStatus()));
}

void frmMainWinamp::ShowPosition(int position, int length) {
  const QSignalBlocker quiet(hscrlTrackPos);
  if (length > 0) FitTrackBar(length);
  if (position >= hscrlTrackPos->minimum() && position <= hscrlTrackPos->maximum())
    hscrlTrackPos->setValue(position);
  ShowTimes(hscrlTrackPos->value());
}

void frmMainWinamp::ShowStatus(const QString& status) {
  // The player can also be controlled by media keys and menus, and stops at the end of the list;
  // the caption follows its status.
  cmdPlayPause->setText(status == QLatin1String("PLAYING") ? tr("&Pause") : tr("&Play"));
  lblStatus->setText(status);
}

void frmMainWinamp::ShowTimes(int position) {
  times_->setText(TimeText(position) + tr(" / ") + TimeText(hscrlTrackPos->maximum()));
}

void frmMainWinamp::closeEvent(QCloseEvent* event) {
  tmrScrollUpdate->stop();
  event->accept();
  emit Closing();
  // A message box about a missing player would keep the program from ending.
  if (!player_.IsRunning()) player_.FindWinamp();
  model_.ClosePlayer();
}

}  // namespace tallow

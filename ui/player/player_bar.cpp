// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_bar.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/player/bar_button.h"
#include "ui/player/cover_view.h"
#include "ui/player/elided_label.h"
#include "ui/player/repeat_button.h"
#include "ui/player/seek_line.h"
#include "ui/player/time_text.h"
#include "ui/player/volume_control.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

constexpr int kMargin = 4;
constexpr int kSpacing = 4;
constexpr int kGroupSpacing = 8;  ///< between the groups of parts
constexpr int kPlayPicture = 32;
constexpr int kMinWidth = 320;

/// The line to seek in has at least this width before parts are hidden, in average characters.
constexpr int kMinLineCharacters = 16;

bool IsPlayingOrPaused(const Playing& now) { return now.status != kStopped; }

}  // namespace

PlayerBar::PlayerBar(PlayerModel& model, PathOf path_of, CoverLoader::Read read_cover,
                     QWidget* parent)
    : QWidget(parent),
      model_(model),
      path_of_(std::move(path_of)),
      cover_(new CoverView(std::move(read_cover), this)),
      previous_(new BarButton("cmdPrevious", this)),
      play_(new BarButton("cmdPlay", this)),
      next_(new BarButton("cmdNext", this)),
      song_(new ElidedLabel(this)),
      gone_(NewTime("lblGone", tr("Time gone"))),
      seek_(new SeekLine(this)),
      left_(NewTime("lblLeft", tr("Time left"))),
      shuffle_(new BarButton("cmdShuffle", this)),
      repeat_(new RepeatButton(model, this)),
      volume_(new VolumeControl(model, this)) {
  setObjectName(QStringLiteral("PlayerBar"));
  setAccessibleName(tr("Player bar"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  // The height stays when the cover is hidden.
  setMinimumHeight(CoverView::kSide + 2 * kMargin);
  song_->setObjectName(QStringLiteral("lblSong"));
  previous_->Show("previous", tr("Previous Track"));
  next_->Show("next", tr("Next Track"));
  play_->setIconSize(QSize(kPlayPicture, kPlayPicture));
  shuffle_->setCheckable(true);
  Arrange();
  Connect();
  model_.AddListener(*this);
  ShowAll();
}

PlayerBar::~PlayerBar() { model_.RemoveListener(*this); }

QLabel* PlayerBar::NewTime(const char* name, const QString& label) {
  auto* const time = new QLabel(this);
  time->setObjectName(QLatin1String(name));
  time->setAccessibleDescription(label);
  time->setToolTip(label);
  return time;
}

void PlayerBar::Arrange() {
  left_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  for (BarButton* const button : {previous_, play_, next_}) buttons->addWidget(button);
  auto* const line = new QHBoxLayout;
  line->setSpacing(kSpacing);
  line->addWidget(gone_);
  line->addWidget(seek_, 1);
  line->addWidget(left_);
  auto* const song = new QVBoxLayout;
  song->setSpacing(2);
  song->addStretch(1);
  song->addWidget(song_);
  song->addLayout(line);
  song->addStretch(1);
  auto* const order = new QHBoxLayout;
  order->setSpacing(0);
  order->addWidget(shuffle_);
  order->addWidget(repeat_);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  row->setSpacing(kGroupSpacing);
  row->addWidget(cover_);
  row->addLayout(buttons);
  row->addLayout(song, 1);
  row->addLayout(order);
  row->addWidget(volume_);
  QWidget* before = previous_;
  for (QWidget* const after :
       std::initializer_list<QWidget*>{play_, next_, seek_, shuffle_, repeat_, volume_}) {
    setTabOrder(before, after);
    before = after;
  }
}

void PlayerBar::Connect() {
  connect(previous_, &BarButton::clicked, this, [this] { model_.Previous(); });
  connect(next_, &BarButton::clicked, this, [this] { model_.Next(); });
  connect(play_, &BarButton::clicked, this, [this] {
    if (IsPlayingOrPaused(model_.Now()))
      model_.PlayOrPause();
    else
      emit PlayWhileStopped();
  });
  connect(shuffle_, &BarButton::clicked, this, [this](bool on) {
    model_.SetShuffle(on);
    ShowButtons();
  });
  connect(seek_, &SeekLine::Sought, this, [this](int seconds) { model_.Seek(seconds); });
  connect(seek_, &SeekLine::PositionShown, this, &PlayerBar::ShowTimes);
}

bool PlayerBar::HasFocus() const {
  const QWidget* const focus = QApplication::focusWidget();
  return focus != nullptr && isAncestorOf(focus);
}

void PlayerBar::TakeFocus() { play_->setFocus(Qt::ShortcutFocusReason); }

QSize PlayerBar::minimumSizeHint() const {
  // Parts are hidden instead.
  return {kMinWidth, QWidget::minimumSizeHint().height()};
}

void PlayerBar::Fit() {
  const auto width_of = [](const QWidget* widget) { return widget->sizeHint().width(); };
  const int times = width_of(gone_) + width_of(left_) + 2 * kSpacing;
  const int cover = CoverView::kSide + kGroupSpacing;
  const int slider = volume_->WidthWith(true) - volume_->WidthWith(false);
  const int order = width_of(shuffle_) + width_of(repeat_) + kGroupSpacing;
  int needed = 2 * kMargin + width_of(previous_) + width_of(play_) + width_of(next_) +
               kGroupSpacing + kMinLineCharacters * fontMetrics().averageCharWidth() +
               kGroupSpacing + volume_->WidthWith(false) + times + cover + slider + order;
  // Hides one part after another until the rest fits.
  const auto shows = [&](int part) {
    const bool fits = needed <= width();
    if (!fits) needed -= part;
    return fits;
  };
  volume_->ShowSlider(shows(slider));
  cover_->setVisible(shows(cover));
  const bool has_times = shows(times);
  gone_->setVisible(has_times);
  left_->setVisible(has_times);
  const bool has_order = shows(order);
  shuffle_->setVisible(has_order);
  repeat_->setVisible(has_order);
}

void PlayerBar::PlayingChanged(const Playing& before, const Playing& now) {
  if (before.entry != now.entry || before.song != now.song) seek_->CancelDrag();
  // Nobody sees the cover of a hidden bar, so it is not read.
  if (isVisible()) ShowAll();
}

void PlayerBar::ShowAll() {
  ShowSong();
  ShowButtons();
  ShowPosition();
}

void PlayerBar::ShowSong() {
  const Playing& now = model_.Now();
  if (now.song != 0)
    song_->ShowText(DisplayText(model_.TextOf(now.song)));
  else
    song_->ShowText(IsPlayingOrPaused(now) ? tr("A song that was not chosen here")
                                           : tr("Nothing is playing"));
  if (isVisible()) cover_->ShowSong(now.song != 0 ? path_of_(now.song) : std::string());
}

void PlayerBar::ShowButtons() {
  const Playing& now = model_.Now();
  if (now.status == kPlaying)
    play_->Show("pause", tr("Pause"));
  else
    play_->Show("play", tr("Play"));
  previous_->setEnabled(now.can_go_previous);
  next_->setEnabled(now.can_go_next);
  shuffle_->setChecked(now.shuffle);
  if (now.shuffle)
    shuffle_->Show("shuffle", tr("Shuffle: on"));
  else
    shuffle_->Show("shuffle-off", tr("Shuffle: off"));
  repeat_->ShowMode(now.repeat);
}

void PlayerBar::ShowPosition() {
  const Playing& now = model_.Now();
  seek_->ShowPosition(IsPlayingOrPaused(now) ? now.position : -1, now.length);
  if (!seek_->isSliderDown()) ShowTimes(seek_->value());
}

void PlayerBar::ShowTimes(int position) {
  const bool is_known = seek_->isEnabled();
  const int length = seek_->maximum();
  // As wide as the longest time of the song, so that the line keeps its place.
  constexpr int kHour = 3600;
  const QString longest = length < kHour ? QStringLiteral("-00:00") : QStringLiteral("-0:00:00");
  const int width = fontMetrics().horizontalAdvance(longest) + kSpacing;
  for (QLabel* const label : {gone_, left_}) label->setMinimumWidth(width);
  const QString unknown = QStringLiteral("-:--");
  gone_->setText(is_known ? TimeText(position) : unknown);
  left_->setText(is_known ? QChar(0x2212) + TimeText(length - position) : unknown);
}

void PlayerBar::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  ShowAll();
  Fit();
}

void PlayerBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
}

void PlayerBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) Fit();
}

void PlayerBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return emit Left();
  QWidget::keyPressEvent(event);
}

}  // namespace tallow

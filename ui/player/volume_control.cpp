// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/volume_control.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

#include "player/player_messages.h"
#include "ui/player/bar_button.h"
#include "ui/player/clicked_slider.h"

namespace tallow {
namespace {

constexpr int kStep = 5;
constexpr int kPage = 25;
constexpr int kSliderCharacters = 14;  ///< width of the slider, in average characters
constexpr int kSpacing = 2;
constexpr int kFirstVolume = 128;  ///< after muting, when no other is known

}  // namespace

VolumeControl::VolumeControl(PlayerModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      mute_(new BarButton("cmdMute", this)),
      slider_(new ClickedSlider(this)),
      before_mute_(kFirstVolume) {
  setObjectName(QStringLiteral("VolumeControl"));
  mute_->setCheckable(true);
  slider_->setObjectName(QStringLiteral("sldVolume"));
  slider_->setAccessibleName(tr("Volume"));
  slider_->setAccessibleDescription(tr("From silent at the left to full"));
  slider_->setRange(0, kMaxVolume);
  slider_->setSingleStep(kStep);
  slider_->setPageStep(kPage);
  slider_->setFixedWidth(kSliderCharacters * fontMetrics().averageCharWidth());
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kSpacing);
  row->addWidget(mute_);
  row->addWidget(slider_);
  connect(mute_, &QToolButton::clicked, this, &VolumeControl::Mute);
  connect(slider_, &QSlider::valueChanged, this, [this](int value) { model_.SetVolume(value); });
  model_.AddListener(*this);
  VolumeChanged();
}

VolumeControl::~VolumeControl() { model_.RemoveListener(*this); }

void VolumeControl::ShowSlider(bool on) { slider_->setVisible(on); }

int VolumeControl::WidthWith(bool slider) const {
  return mute_->sizeHint().width() + (slider ? kSpacing + slider_->maximumWidth() : 0);
}

void VolumeControl::VolumeChanged() {
  const int volume = model_.Volume();
  if (volume > 0) before_mute_ = volume;
  {
    const QSignalBlocker quiet(slider_);
    slider_->setValue(volume);
  }
  slider_->setToolTip(tr("Volume: %1 %").arg((volume * 100 + kMaxVolume / 2) / kMaxVolume));
  mute_->setChecked(volume == 0);
  if (volume == 0)
    mute_->Show("muted", tr("Unmute"));
  else
    mute_->Show("volume", tr("Mute"));
}

void VolumeControl::Mute(bool on) {
  const int before = before_mute_;
  model_.SetVolume(on ? 0 : before);
  VolumeChanged();
}

}  // namespace tallow

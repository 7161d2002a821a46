// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/volume_of_last_time.h"

#include <utility>

#include "app/playing/playing_preferences.h"

namespace tallow {

void VolumeOfLastTime::Begin() {
  Store();
  const bool keeps = preferences_.KeepsVolume();
  volume_ = keeps ? preferences_.Volume() : kFirstVolume;
  balance_ = keeps ? preferences_.Balance() : kFirstBalance;
}

void VolumeOfLastTime::SetVolume(std::int32_t volume, Time now) {
  if (std::exchange(volume_, volume) == volume) return;
  has_changed_ = true;
  changed_ = now;
}

void VolumeOfLastTime::SetBalance(std::int32_t balance, Time now) {
  if (std::exchange(balance_, balance) == balance) return;
  has_changed_ = true;
  changed_ = now;
}

void VolumeOfLastTime::Poll(Time now) {
  if (has_changed_ && now - changed_ >= kStoreAfter) Store();
}

void VolumeOfLastTime::Store() {
  if (!std::exchange(has_changed_, false) || !preferences_.KeepsVolume()) return;
  preferences_.SetVolume(volume_);
  preferences_.SetBalance(balance_);
}

}  // namespace tallow

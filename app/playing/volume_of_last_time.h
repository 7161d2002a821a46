// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace tallow {

class PlayingPreferences;

/// The volume and balance that the player gets, and keeping them for the next time.
class VolumeOfLastTime {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr std::int32_t kFirstVolume = 128;
  static constexpr std::int32_t kFirstBalance = 0;
  /// They are stored when they have not changed for this time, because a drag changes them often.
  static constexpr std::chrono::seconds kStoreAfter{2};

  /// \param preferences have to outlive this object
  explicit VolumeOfLastTime(PlayingPreferences& preferences) : preferences_(preferences) {}

  /// A player is opened, or what the next one gets is to be shown: the volume and balance of last
  /// time, if the user wants them; else kFirstVolume and kFirstBalance.
  void Begin();
  /// 0 to 255.
  std::int32_t Volume() const noexcept { return volume_; }
  /// -127 to 127.
  std::int32_t Balance() const noexcept { return balance_; }
  void SetVolume(std::int32_t volume, Time now);
  void SetBalance(std::int32_t balance, Time now);

  /// To be called now and then: stores what has changed, if the user wants that.
  void Poll(Time now);
  /// Stores at once what has changed.
  void Store();

 private:
  PlayingPreferences& preferences_;
  std::int32_t volume_ = kFirstVolume;
  std::int32_t balance_ = kFirstBalance;
  bool has_changed_ = false;
  Time changed_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/playing_preferences.h"

#include <cstddef>

#include "player/player_messages.h"

namespace tallow {
namespace {

constexpr std::int32_t kFirstVolume = 128;

/// In the order of RepeatMode and ReplayGain.
constexpr const char* kRepeatNames[] = {"off", "all", "one"};
constexpr const char* kGainNames[] = {"off", "track", "album"};

/// The number of a name; 0 when there is none of this name.
template <std::size_t n>
std::size_t NumberOf(const std::string& name, const char* const (&names)[n]) {
  for (std::size_t k = 0; k < n; ++k)
    if (name == names[k]) return k;
  return 0;
}

std::int32_t NumberWithin(std::int64_t number, std::int32_t min, std::int32_t max,
                          std::int32_t otherwise) {
  return number < min || number > max ? otherwise : static_cast<std::int32_t>(number);
}

}  // namespace

std::int32_t PlayingPreferences::Volume() const {
  return NumberWithin(preferences_.Get("player.volume", std::int64_t{kFirstVolume}), 0, kMaxVolume,
                      kFirstVolume);
}

void PlayingPreferences::SetVolume(std::int32_t volume) {
  preferences_.Set("player.volume", std::int64_t{volume});
}

std::int32_t PlayingPreferences::Balance() const {
  return NumberWithin(preferences_.Get("player.balance", std::int64_t{0}), -kMaxBalance,
                      kMaxBalance, 0);
}

void PlayingPreferences::SetBalance(std::int32_t balance) {
  preferences_.Set("player.balance", std::int64_t{balance});
}

RepeatMode PlayingPreferences::Repeat() const {
  return static_cast<RepeatMode>(
      NumberOf(preferences_.Get<std::string>("player.repeat", {}), kRepeatNames));
}

void PlayingPreferences::SetRepeat(RepeatMode mode) {
  preferences_.Set<std::string>("player.repeat", kRepeatNames[static_cast<std::size_t>(mode)]);
}

ReplayGain PlayingPreferences::Gain() const {
  return static_cast<ReplayGain>(
      NumberOf(preferences_.Get<std::string>("player.gain", {}), kGainNames));
}

void PlayingPreferences::SetGain(ReplayGain mode) {
  preferences_.Set<std::string>("player.gain", kGainNames[static_cast<std::size_t>(mode)]);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "app/preferences.h"
#include "player/tallow_player.h"

namespace tallow {

/// The preferences on playing, in the object "player" of the file of the preferences. A value that
/// is not one of the table counts as its default. "modern" is the switch `plays_on`.
///
/// | Member        | Value                                         | Default |
/// |---------------|-----------------------------------------------|---------|
/// | bar           | the player bar is shown                       | modern  |
/// | marks         | the lists mark what plays                     | modern  |
/// | queueDock     | the queue is shown                            | false   |
/// | keepsVolume   | begin with volume and balance of last time    | modern  |
/// | volume        | of last time, 0 to 255                        | 128     |
/// | balance       | of last time, -127 (left) to 127 (right)      | 0       |
/// | restoresQueue | restore the queue at start, paused            | modern  |
/// | shuffle       | play in random order                          | false   |
/// | repeat        | "off", "all" or "one"                         | "off"   |
/// | gain          | ReplayGain: "off", "track" or "album"         | "off"   |
/// | device        | name of the sound device; "auto": of the system | "auto"  |
class PlayingPreferences {
 public:
  /// \param preferences have to outlive this object
  explicit PlayingPreferences(Preferences& preferences) : preferences_(preferences) {}

  bool ShowsBar() const { return IsOn("player.bar"); }
  void SetShowsBar(bool on) { preferences_.Set("player.bar", on); }
  bool ShowsMarks() const { return IsOn("player.marks"); }
  void SetShowsMarks(bool on) { preferences_.Set("player.marks", on); }
  bool ShowsQueue() const { return preferences_.Get("player.queueDock", false); }
  void SetShowsQueue(bool on) { preferences_.Set("player.queueDock", on); }

  bool KeepsVolume() const { return IsOn("player.keepsVolume"); }
  void SetKeepsVolume(bool on) { preferences_.Set("player.keepsVolume", on); }
  std::int32_t Volume() const;
  void SetVolume(std::int32_t volume);
  std::int32_t Balance() const;
  void SetBalance(std::int32_t balance);

  bool RestoresQueue() const { return IsOn("player.restoresQueue"); }
  void SetRestoresQueue(bool on) { preferences_.Set("player.restoresQueue", on); }
  bool Shuffles() const { return preferences_.Get("player.shuffle", false); }
  void SetShuffles(bool on) { preferences_.Set("player.shuffle", on); }
  RepeatMode Repeat() const;
  void SetRepeat(RepeatMode mode);

  ReplayGain Gain() const;
  void SetGain(ReplayGain mode);
  std::string Device() const { return preferences_.Get<std::string>("player.device", "auto"); }
  void SetDevice(const std::string& name) { preferences_.Set("player.device", name); }

  /// Whether double click and Enter play the folder from the song on, and Space pauses.
  bool PlaysOn() const { return preferences_.switches().plays_on; }

 private:
  bool IsOn(const char* key) const { return preferences_.Get(key, PlaysOn()); }

  Preferences& preferences_;
};

}  // namespace tallow

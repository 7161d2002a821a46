// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "player/substitute/playback_engine.h"

namespace tallow {

/// Stand-in for an engine: records the commands. The test replies and sends the events.
class RecordedEngine : public PlaybackEngine {
 public:
  void SetListener(PlaybackListener& listener) override { events = &listener; }
  CommandNumber Load(const std::string& path) override { return Record("load " + path, path); }
  CommandNumber Append(const std::string& path) override { return Record("append " + path, path); }
  void RemoveFirst() override { Record("remove first"); }
  CommandNumber RemoveFollowing() override { return removal = Record("remove following"); }
  void RemoveAt(std::size_t index) override { Record("remove " + std::to_string(index)); }
  void MoveBehindFirst(std::size_t index) override {
    Record("move " + std::to_string(index) + " behind the first");
  }
  void Redirect(const std::string& path) override { Record("redirect to " + path); }
  void Stop() override { Record("stop"); }
  CommandNumber Seek(double seconds) override {
    return seek = Record("seek " + std::to_string(std::lround(seconds)));
  }
  void Pause(bool paused) override { Record(paused ? "pause" : "resume"); }
  void SetVolume(std::int32_t volume) override { Record("volume " + std::to_string(volume)); }
  void SetBalance(std::int32_t balance) override { Record("balance " + std::to_string(balance)); }
  void SetGain(ReplayGain mode) override {
    Record("gain " + std::to_string(static_cast<int>(mode)));
  }
  void SetDevice(const std::string& name) override { Record("device " + name); }
  void RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) override {
    callback({{.name = "auto", .description = "Any"}});
  }
  void RequestProperties() override { Record("properties"); }

  /// Replies to all commands that load a track, also to those sent meanwhile.
  void ReplyToLoads() {
    while (!loads.empty()) {
      const auto [command, path] = *loads.begin();
      loads.erase(command);
      entries[path] = ++last_entry_;
      events->OnReply(command, true, last_entry_);
    }
  }

  PlaybackListener* events = nullptr;
  std::vector<std::string> sent;
  bool full = false;  ///< no command is accepted
  CommandNumber seek = 0;
  CommandNumber removal = 0;                   ///< the last "remove following"
  std::map<CommandNumber, std::string> loads;  ///< without a reply
  std::map<std::string, EntryNumber> entries;  ///< path to entry

 private:
  CommandNumber Record(const std::string& text, const std::string& path = {}) {
    sent.push_back(text);
    if (full) return 0;
    if (!path.empty()) loads[last_command_ + 1] = path;
    return ++last_command_;
  }

  EntryNumber last_entry_ = 100;
  CommandNumber last_command_ = 0;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "player/substitute/playback_engine.h"

namespace tallow {

/// Stand-in for an engine that behaves like libmpv's playlist, for orders of events that libmpv
/// cannot be made to produce. Commands wait until Execute, tracks last until Advance, and events
/// wait until Dispatch, so a test decides what overtakes what.
///
/// Before a track is opened, the engine waits until its start has been dispatched, as libmpv waits
/// for a hook, and executes the commands sent until then. A file whose path begins with "bad"
/// cannot be played.
class SimulatedEngine : public PlaybackEngine {
 public:
  void SetListener(PlaybackListener& listener) override { listener_ = &listener; }

  CommandNumber Load(const std::string& path) override {
    return Send([this, path](CommandNumber command) {
      EndCurrent(nullptr);
      entries_ = {{++last_entry_, path}};
      Reply(command, last_entry_);
      StartAt(0);
    });
  }
  CommandNumber Append(const std::string& path) override {
    return Send([this, path](CommandNumber command) {
      entries_.push_back({++last_entry_, path});
      Reply(command, last_entry_);
    });
  }
  void RemoveFirst() override { RemoveAt(0); }
  CommandNumber RemoveFollowing() override {
    return Send([this](CommandNumber command) {
      std::vector<Entry> kept;
      if (IsPlaying()) kept = {entries_[current_]};
      entries_ = kept;
      current_ = 0;
      Reply(command, kNoEntry);
    });
  }
  void RemoveAt(std::size_t index) override {
    Send([this, index](CommandNumber command) {
      Reply(command, kNoEntry);
      if (index >= entries_.size()) return;
      const bool is_current = IsPlaying() && index == current_;
      if (is_current) EndCurrent(nullptr);
      entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
      if (index < current_) --current_;
      if (is_current) StartAt(current_);
    });
  }
  void MoveBehindFirst(std::size_t index) override {
    Send([this, index](CommandNumber command) {
      Reply(command, kNoEntry);
      if (index >= entries_.size()) return;
      const Entry moved = entries_[index];
      entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
      entries_.insert(entries_.begin() + 1, moved);
      if (current_ == index)
        current_ = 1;
      else if (current_ >= 1 && current_ < index)
        ++current_;
    });
  }
  void Redirect(const std::string& path) override { redirect_ = path; }
  void Stop() override {
    Send([this](CommandNumber) {
      EndCurrent(nullptr);
      entries_.clear();
      StartAt(0);
    });
  }
  CommandNumber Seek(double /*seconds*/) override {
    return Send([this](CommandNumber command) { Reply(command, kNoEntry); });
  }
  void Pause(bool /*paused*/) override {}
  void SetVolume(std::int32_t /*volume*/) override {}
  void SetBalance(std::int32_t /*balance*/) override {}
  void SetGain(ReplayGain /*mode*/) override {}
  void SetDevice(const std::string& /*name*/) override {}
  void RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) override {
    callback({});
  }
  void RequestProperties() override {}

  /// Executes the next command.
  /// \returns false when there is none
  bool Execute() { return CallFirst(commands_); }
  /// Dispatches the next event.
  /// \returns false when there is none
  bool Dispatch() { return CallFirst(events_); }
  /// Plays the current track to its end.
  /// \returns false when the engine does not play, or waits for the start to be dispatched
  bool Advance() {
    if (phase_ != Phase::kPlaying) return false;
    EndCurrent(nullptr);
    StartAt(current_ + 1);
    return true;
  }
  /// Executes and dispatches everything. Tracks do not end meanwhile, except those that cannot be
  /// played.
  void Settle() {
    while (Dispatch() || Execute()) {
    }
  }

  /// The paths of the tracks that are audible or will be: the current one first.
  std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    if (!IsPlaying()) return paths;
    for (std::size_t k = current_; k < entries_.size(); ++k) paths.push_back(entries_[k].path);
    return paths;
  }
  /// Called when a track begins to sound.
  std::function<void(const std::string& path)> on_sound = [](const std::string&) {};

 private:
  enum class Phase { kIdle, kStarting, kPlaying };
  struct Entry {
    EntryNumber number = kNoEntry;
    std::string path;
  };

  static bool CallFirst(std::deque<std::function<void()>>& calls) {
    if (calls.empty()) return false;
    const std::function<void()> call = std::move(calls.front());
    calls.pop_front();
    call();
    return true;
  }

  CommandNumber Send(std::function<void(CommandNumber)> command) {
    const CommandNumber number = ++last_command_;
    commands_.push_back([command = std::move(command), number] { command(number); });
    return number;
  }
  void Reply(CommandNumber command, EntryNumber entry) {
    events_.push_back([this, command, entry] { listener_->OnReply(command, true, entry); });
  }
  bool IsPlaying() const { return phase_ != Phase::kIdle && current_ < entries_.size(); }

  void EndCurrent(const char* error) {
    if (!IsPlaying()) return;
    phase_ = Phase::kIdle;
    events_.push_back([this, entry = entries_[current_].number, error] {
      listener_->OnTrackEnded(entry, error);
    });
  }
  void StartAt(std::size_t index) {
    current_ = index;
    if (index >= entries_.size()) {
      phase_ = Phase::kIdle;
      events_.push_back([this] { listener_->OnIdle(); });
      return;
    }
    phase_ = Phase::kStarting;
    const EntryNumber entry = entries_[index].number;
    events_.push_back([this, entry] {
      redirect_.clear();
      listener_->OnTrackStarted(entry);
      Open(entry);
    });
  }
  /// The start of an entry has been dispatched.
  void Open(EntryNumber entry) {
    while (Execute()) {
    }
    // A command may have replaced the entry.
    if (phase_ != Phase::kStarting || entries_[current_].number != entry) return;
    if (!redirect_.empty()) entries_[current_].path = redirect_;
    const std::string path = entries_[current_].path;
    if (path.starts_with("bad")) {
      EndCurrent("damaged");
      StartAt(current_ + 1);
      return;
    }
    phase_ = Phase::kPlaying;
    on_sound(path);
    events_.push_back([this] {
      listener_->OnTrackOpened();
      listener_->OnPosition(0.1);
    });
  }

  PlaybackListener* listener_ = nullptr;
  std::deque<std::function<void()>> commands_;
  std::deque<std::function<void()>> events_;
  std::vector<Entry> entries_;
  std::size_t current_ = 0;
  Phase phase_ = Phase::kIdle;
  std::string redirect_;
  EntryNumber last_entry_ = 0;
  CommandNumber last_command_ = 0;
};

}  // namespace tallow

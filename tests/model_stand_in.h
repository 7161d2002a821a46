// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "app/playing/player_model.h"

namespace tallow {

/// A PlayerModel without a player: shows what the test sets, and records the commands.
///
/// The commands change nothing of what it shows, except for volume and balance. Set() tells the
/// listeners.
class ModelStandIn : public PlayerModel {
 public:
  /// Shows another state and tells the listeners, as Update does after the player's answer.
  void Set(const Playing& now) {
    const Playing before = std::exchange(now_, now);
    if (before == now_) return;
    for (PlayerListener* const listener : Listeners()) listener->PlayingChanged(before, now_);
  }
  /// Changes the state by a function that gets a Playing&, and tells the listeners.
  template <typename Function>
  void Change(const Function& change) {
    Playing now = now_;
    change(now);
    Set(now);
  }
  /// Shows a song that plays.
  void Play(std::int32_t song, std::int32_t length, std::int32_t position = 0) {
    Change([&](Playing& now) {
      now.is_running = true;
      now.status = kPlaying;
      now.song = song;
      now.entry = static_cast<std::uint64_t>(song);
      now.length = length;
      now.position = position;
      now.can_go_next = true;
      now.can_go_previous = true;
    });
  }
  /// Shows another queue, and tells the listeners.
  void SetQueue(std::vector<QueueRow> rows) {
    queue = std::move(rows);
    Change([](Playing& now) { ++now.queue_revision; });
  }
  /// Shows a failure of a song, and of each of its entries in the queue; empty for none any more.
  void SetFailure(std::int32_t song, const std::string& reason) {
    failures[song] = reason;
    for (const QueueRow& row : queue)
      if (row.song == song) failures_of_entries[row.entry] = reason;
    Change([](Playing& now) { ++now.failures_revision; });
  }
  /// The commands since the last call, such as "seek 60".
  std::vector<std::string> Take() { return std::exchange(commands, {}); }

  void AddListener(PlayerListener& listener) override { listeners.push_back(&listener); }
  void RemoveListener(PlayerListener& listener) override { std::erase(listeners, &listener); }
  void Update() override { ++updates; }
  const Playing& Now() const override { return now_; }
  std::string TextOf(std::int32_t song) const override {
    const auto text = texts.find(song);
    return text == texts.end() ? std::string() : text->second;
  }

  void PlayOrPause() override { Record("play or pause"); }
  void Next() override { Record("next"); }
  void Previous() override { Record("previous"); }
  void Seek(std::int32_t seconds) override { Record("seek", seconds); }
  std::int32_t Volume() const override { return volume; }
  std::int32_t Balance() const override { return balance; }
  void SetVolume(std::int32_t to) override {
    Record("volume", to);
    volume = to;
    for (PlayerListener* const listener : Listeners()) listener->VolumeChanged();
  }
  void SetBalance(std::int32_t to) override {
    Record("balance", to);
    balance = to;
    for (PlayerListener* const listener : Listeners()) listener->VolumeChanged();
  }
  void SetShuffle(bool on) override { Record(on ? "shuffle on" : "shuffle off"); }
  void SetRepeat(RepeatMode mode) override { Record("repeat", static_cast<std::int64_t>(mode)); }
  void SetGain(ReplayGain mode) override { Record("gain", static_cast<std::int64_t>(mode)); }

  bool Can(PlayerFeature feature) const override { return WhyNot(feature).empty(); }
  std::string WhyNot(PlayerFeature feature) const override {
    const auto reason = why_not.find(feature);
    return reason == why_not.end() ? std::string() : reason->second;
  }

  std::size_t QueueLength() const override { return queue.size(); }
  QueueRow QueueAt(std::size_t row) override { return queue.at(row); }
  void MoveInQueue(std::span<const std::uint64_t> entries, std::uint64_t before) override {
    Record("move" + TextOfEntries(entries) + " before " + std::to_string(before));
  }
  void RemoveFromQueue(std::span<const std::uint64_t> entries) override {
    Record("remove" + TextOfEntries(entries));
  }
  void PlayFromQueue(std::uint64_t entry) override { Record("play " + std::to_string(entry)); }
  std::vector<std::int32_t> SongsOfQueue() override {
    std::vector<std::int32_t> songs;
    for (const QueueRow& row : queue)
      if (row.song != 0) songs.push_back(row.song);
    return songs;
  }

  std::string FailureOf(std::int32_t song) const override {
    const auto reason = failures.find(song);
    return reason == failures.end() ? std::string() : reason->second;
  }
  std::string FailureOfEntry(std::uint64_t entry) const override {
    const auto reason = failures_of_entries.find(entry);
    return reason == failures_of_entries.end() ? std::string() : reason->second;
  }

  std::map<std::int32_t, std::string> texts;  ///< of TextOf(), by record number
  std::int32_t volume = 128;
  std::int32_t balance = 0;
  std::map<PlayerFeature, std::string> why_not;  ///< what the player cannot do, and why
  std::vector<QueueRow> queue;
  std::map<std::int32_t, std::string> failures;              ///< by record number
  std::map<std::uint64_t, std::string> failures_of_entries;  ///< by entry
  std::vector<PlayerListener*> listeners;
  std::vector<std::string> commands;
  int updates = 0;  ///< calls of Update()

 private:
  void Record(std::string command) { commands.push_back(std::move(command)); }
  void Record(const std::string& command, std::int64_t value) {
    Record(command + " " + std::to_string(value));
  }
  static std::string TextOfEntries(std::span<const std::uint64_t> entries) {
    std::string text;
    for (const std::uint64_t entry : entries) text += " " + std::to_string(entry);
    return text;
  }
  /// A copy: a listener may remove itself while it is told.
  std::vector<PlayerListener*> Listeners() const { return listeners; }

  Playing now_;
};

}  // namespace tallow

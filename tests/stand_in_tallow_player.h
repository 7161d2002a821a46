// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/tallow_player_requests.h"

namespace tallow {

/// A link to a stand-in of Tallow's own player: it keeps a list and answers requests as
/// tallow_player_requests.h says, but plays nothing. The test sets position and status. Next,
/// Previous, shuffle and repeat do not change what will play.
class StandInTallowPlayer : public PlayerLink {
 public:
  struct Entry {
    std::uint64_t number;
    std::string path;
  };

  PlayerHandle Find() override { return is_there ? handle : 0; }
  bool Start(const std::string& /*program*/) override {
    if (!starts) return false;
    if (!std::exchange(is_there, true)) Restart();
    return true;
  }
  bool IsRunning(PlayerHandle player) override { return is_there && player == handle; }
  PlayerKind KindOf(PlayerHandle /*player*/) override { return PlayerKind::kTallowPlayer; }
  std::string TextOfPath(const std::string& path) const override { return path; }

  std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t w_param,
                    std::int64_t l_param) override {
    if (!IsRunning(player)) return 0;
    if (message == kWmCommand) return Command(w_param);
    if (message != kWmUser) return 0;
    switch (l_param) {
      case kClearList:
        list.clear();
        current = 0;
        status = kStopped;
        return Changed();
      case kStatus:
        return status;
      case kTrackTime:
        return w_param == kAskPosition ? position : (length < 0 ? -1 : length / 1000);
      case kSeek:
        position = w_param;
        return 0;
      case kSetVolume:
        volume = w_param;
        return 0;
      case kSetBalance:
        balance = w_param;
        return 0;
      case kSetShuffle:
        shuffle = w_param == 1;
        return Changed();
      case kVersion:
        return 0x2091;
      default:
        return 0;
    }
  }

  bool SendCopyData(PlayerHandle /*player*/, std::uint32_t /*code*/,
                    std::string_view data) override {
    list.push_back({++last_entry, std::string(data.substr(0, data.size() - 1))});
    Changed();
    return true;
  }

  std::int64_t AddFiles(PlayerHandle player, std::string_view data) override {
    if (!IsRunning(player)) return 0;
    std::int64_t at = 0;
    std::memcpy(&at, data.data(), sizeof at);
    data.remove_prefix(sizeof at);
    const std::uint64_t first = last_entry + 1;
    std::size_t place = list.size();
    if (at == kPlayNext) place = std::min(list.size(), current + 1 + next_added);
    if (at > 0) place = PlaceOf(static_cast<std::uint64_t>(at));
    if (at > 0 && place == list.size()) return kNoSuchEntry;
    while (!data.empty()) {
      const std::size_t end = data.find('\0');
      const bool is_before = !list.empty() && place <= current;
      list.insert(list.begin() + static_cast<std::ptrdiff_t>(place++),
                  {++last_entry, std::string(data.substr(0, end))});
      if (is_before) ++current;
      if (at == kPlayNext) ++next_added;
      data.remove_prefix(end + 1);
    }
    Changed();
    return static_cast<std::int64_t>(first);
  }

  std::optional<std::string> Ask(PlayerHandle player, std::string_view request) override {
    if (!IsRunning(player) || !answers) return std::nullopt;
    const auto asked = nlohmann::json::parse(request);
    const std::string what = asked.at("do");
    if (what != "state" && what != "queue") asked_for.emplace_back(request);
    if (what == "state") return State(asked.at("failuresAfter"));
    if (what == "queue") return Queue(asked.at("from"), asked.at("count"));
    if (what == "repeat") repeat = asked.at("mode");
    if (what == "play" || what == "cue") {
      current = PlaceOf(asked.at("entry"));
      position = what == "cue" ? asked.at("position").get<std::int64_t>() : 0;
      status = what == "cue" ? kPaused : kPlaying;
      next_added = 0;
      Changed();
    }
    if (what == "remove") {
      for (const std::uint64_t entry : asked.at("entries"))
        if (PlaceOf(entry) > current && PlaceOf(entry) < list.size())
          list.erase(list.begin() + static_cast<std::ptrdiff_t>(PlaceOf(entry)));
      Changed();
    }
    if (what == "move") Move(asked.at("entries"), asked.at("before"));
    return "{}";
  }

  /// The player plays the next entry, as at the end of a song.
  void PlayNextEntry() { Command(kNextTrack); }
  /// A song could not be played; without a reason it has played after all.
  void Fail(std::uint64_t entry, const std::string& reason) {
    failures.push_back({{"number", failures.size() + 1}, {"entry", entry}, {"reason", reason}});
  }
  /// The player ends.
  void End() { is_there = false; }
  std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    for (const Entry& entry : list) paths.push_back(entry.path);
    return paths;
  }
  std::vector<std::string> TakeRequests() { return std::exchange(asked_for, {}); }

  bool is_there = false;
  bool starts = true;
  bool answers = true;  ///< requests in JSON
  PlayerHandle handle = 1;
  std::vector<Entry> list;
  std::size_t current = 0;
  std::size_t next_added = 0;
  std::uint64_t last_entry = 0;
  PlayerStatus status = kStopped;
  std::int64_t position = 0;
  std::int64_t length = 200'000;
  std::int64_t volume = 255;
  std::int64_t balance = 0;
  bool shuffle = false;
  std::string repeat = "off";
  std::uint64_t revision = 1;
  std::vector<nlohmann::json> failures;
  std::vector<std::string> asked_for;  ///< requests that change something
  std::size_t questions = 0;           ///< how often the queue was asked for

 private:
  void Restart() {
    ++handle;
    list.clear();
    current = 0;
    last_entry = 0;
    status = kStopped;
    volume = 255;
    balance = 0;
    failures.clear();
  }
  std::int64_t Changed() {
    ++revision;
    return 0;
  }
  std::size_t PlaceOf(std::uint64_t entry) const {
    const auto found = std::ranges::find(list, entry, &Entry::number);
    return static_cast<std::size_t>(found - list.begin());
  }
  std::int64_t Command(std::int64_t command) {
    switch (command) {
      case kPlay:
        status = list.empty() ? kStopped : kPlaying;
        position = 0;
        break;
      case kPause:
        if (status != kStopped) status = status == kPaused ? kPlaying : kPaused;
        break;
      case kStop:
        status = kStopped;
        break;
      case kNextTrack:
      case kPreviousTrack:
        if (command == kNextTrack && current + 1 < list.size()) ++current;
        if (command == kPreviousTrack && current > 0) --current;
        position = 0;
        next_added = 0;
        break;
      case kClosePlayer:
        is_there = false;
        break;
      default:
        break;
    }
    return Changed();
  }
  std::size_t Upcoming() const { return list.empty() ? 0 : list.size() - current - 1; }

  std::string State(std::uint64_t failures_after) const {
    nlohmann::json new_failures = nlohmann::json::array();
    for (const auto& failure : failures)
      if (failure.at("number") > failures_after) new_failures.push_back(failure);
    return nlohmann::json{{"status", static_cast<int>(status)},
                          {"position", status == kStopped ? -1 : position},
                          {"length", length},
                          {"entry", list.empty() ? 0 : list[current].number},
                          {"place", current},
                          {"count", list.size()},
                          {"upcoming", Upcoming()},
                          {"revision", revision},
                          {"volume", volume},
                          {"balance", balance},
                          {"shuffle", shuffle},
                          {"repeat", repeat},
                          {"failures", new_failures}}
        .dump();
  }
  std::string Queue(std::size_t from, std::size_t count) {
    ++questions;
    nlohmann::json entries = nlohmann::json::array();
    for (std::size_t k = current + 1 + from; k < list.size() && entries.size() < count; ++k)
      entries.push_back(list[k].number);
    return nlohmann::json{{"revision", revision}, {"upcoming", Upcoming()}, {"entries", entries}}
        .dump();
  }
  void Move(const std::vector<std::uint64_t>& entries, std::uint64_t before) {
    std::vector<Entry> moved;
    for (const std::uint64_t entry : entries) {
      moved.push_back(list[PlaceOf(entry)]);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(PlaceOf(entry)));
    }
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(PlaceOf(before)), moved.begin(),
                moved.end());
    Changed();
  }
};

}  // namespace tallow

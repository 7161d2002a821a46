// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "player/player_messages.h"
#include "player/tallow_player_requests.h"
#include "tests/recorded_link.h"
#include "util/json_text.h"

namespace tallow {

/// A stand-in for Tallow's own player that keeps a list and executes requests literally, without
/// playing anything. What plays is set by the test. Its list plays in order, without repetition.
class TallowPlayerStandIn : public RecordedLink {
 public:
  struct Entry {
    std::uint64_t number = 0;
    std::string path;
  };

  PlayerKind KindOf(PlayerHandle /*player*/) override { return PlayerKind::kTallowPlayer; }

  std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                    std::int64_t lParam) override {
    if (message == kWmUser && lParam == kClearList) {
      list.clear();
      current = next_behind = 0;
      status = kStopped;
      ++revision;
    }
    if (message == kWmCommand && wParam == kStop) status = kStopped;
    if (message == kWmCommand && wParam == kPlay) status = list.empty() ? kStopped : kPlaying;
    return RecordedLink::Send(player, message, wParam, lParam);
  }

  std::int64_t AddFiles(PlayerHandle player, std::string_view data) override {
    handles.push_back(player);
    records.push_back(data.size());
    if (!is_answering) return 0;
    std::int64_t at = 0;
    std::memcpy(&at, data.data(), sizeof at);
    std::vector<std::string> paths;
    for (std::string_view rest = data.substr(sizeof at); !rest.empty();) {
      const std::size_t end = rest.find('\0');
      paths.emplace_back(rest.substr(0, end));
      rest.remove_prefix(end + 1);
    }
    std::string line = "add " + std::to_string(at);
    for (const std::string& path : paths) line += " " + path;
    log.push_back(line);
    if (list.size() + paths.size() > max_files) return kListHasNoRoom;
    if (at > 0 && PlaceOf(static_cast<std::uint64_t>(at)) == list.size()) return kNoSuchEntry;
    files += paths.size();
    return Insert(at, paths);
  }

  std::optional<std::string> Ask(PlayerHandle player, std::string_view request) override {
    handles.push_back(player);
    requests.emplace_back(request);
    if (answer) return answer;
    if (!is_answering) return std::nullopt;
    return Execute(nlohmann::json::parse(request));
  }

  /// The paths of the list, in order.
  std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    for (const Entry& entry : list) paths.push_back(entry.path);
    return paths;
  }
  /// The place of an entry in the list; its size when there is none.
  std::size_t PlaceOf(std::uint64_t number) const {
    return static_cast<std::size_t>(
        std::find_if(list.begin(), list.end(),
                     [&](const Entry& entry) { return entry.number == number; }) -
        list.begin());
  }

  std::vector<Entry> list;
  std::size_t current = 0;      ///< place of the current entry
  std::size_t next_behind = 0;  ///< entries behind it that were added with kPlayNext
  PlayerStatus status = kStopped;
  std::int64_t position = -1;  ///< in ms
  std::int64_t length = 1000;  ///< in ms
  std::uint64_t revision = 0;
  std::int32_t volume = 255;
  std::int32_t balance = 0;
  bool shuffle = false;
  std::string repeat = "off";
  std::string gain = "off";
  std::string device = "auto";
  bool device_missing = false;
  bool ended = false;
  nlohmann::json failures = nlohmann::json::array();
  nlohmann::json devices = nlohmann::json::array();

  bool is_answering = true;
  std::optional<std::string> answer;  ///< to every request in JSON, instead of the right one
  std::vector<std::string> requests;  ///< in JSON
  std::vector<std::size_t> records;   ///< sizes of the records of AddFiles
  std::uint64_t last_number = 0;

 private:
  std::int64_t Insert(std::int64_t at, const std::vector<std::string>& paths) {
    std::size_t place = list.size();
    if (at == kPlayNext && !list.empty()) {
      place = std::min(current + 1 + next_behind, list.size());
      next_behind += paths.size();
    } else if (at > 0) {
      place = PlaceOf(static_cast<std::uint64_t>(at));
      if (place <= current && !list.empty()) current += paths.size();
    }
    const std::uint64_t first = last_number + 1;
    std::vector<Entry> added;
    for (const std::string& path : paths) added.push_back({++last_number, path});
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(place), added.begin(), added.end());
    ++revision;
    return static_cast<std::int64_t>(first);
  }

  /// Takes upcoming entries out of the list.
  std::vector<Entry> TakeOut(const nlohmann::json& numbers) {
    std::vector<Entry> taken;
    for (const auto number : numbers.get<std::vector<std::uint64_t>>()) {
      const std::size_t place = PlaceOf(number);
      if (place <= current || place >= list.size()) continue;
      taken.push_back(list[place]);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(place));
    }
    ++revision;
    return taken;
  }

  std::string Execute(const nlohmann::json& request) {
    const std::string what = request.at("do");
    if (what == "state") return State(request.at("failuresAfter").get<std::uint64_t>());
    if (what == "queue") return Queue(request.at("from"), request.at("count"));
    if (what == "devices") return nlohmann::json{{"devices", devices}}.dump();
    if (what == "move") {
      std::vector<Entry> taken = TakeOut(request.at("entries"));
      const std::size_t place = PlaceOf(request.at("before"));
      list.insert(list.begin() + static_cast<std::ptrdiff_t>(place), taken.begin(), taken.end());
    } else if (what == "remove") {
      TakeOut(request.at("entries"));
    } else if (what == "play" || what == "cue") {
      const std::size_t place = PlaceOf(request.at("entry"));
      if (place == list.size()) return "{}";
      current = place;
      status = what == "play" ? kPlaying : kPaused;
      position = request.value("position", std::int64_t{0});
    } else if (what == "repeat") {
      repeat = request.at("mode");
    } else if (what == "gain") {
      gain = request.at("mode");
    } else if (what == "device") {
      device = BytesOfJsonText(request.at("name"));
    }
    return "{}";
  }

  std::string State(std::uint64_t failures_after) const {
    nlohmann::json later = nlohmann::json::array();
    for (const nlohmann::json& failure : failures)
      if (failure.at("number") > failures_after) later.push_back(failure);
    const nlohmann::json state{{"status", static_cast<int>(status)},
                               {"position", position},
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
                               {"gain", gain},
                               {"device", device},
                               {"deviceMissing", device_missing},
                               {"ended", ended},
                               {"stopAfter", false},
                               {"failures", later}};
    return state.dump();
  }

  std::string Queue(std::size_t from, std::size_t count) const {
    nlohmann::json entries = nlohmann::json::array();
    for (std::size_t k = from; k < std::min(Upcoming(), from + count); ++k)
      entries.push_back(list[current + 1 + k].number);
    return nlohmann::json{{"revision", revision}, {"upcoming", Upcoming()}, {"entries", entries}}
        .dump();
  }

  std::size_t Upcoming() const { return list.empty() ? 0 : list.size() - current - 1; }
};

}  // namespace tallow

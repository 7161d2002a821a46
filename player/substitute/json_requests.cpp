// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/json_requests.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "player/substitute/song_player.h"
#include "player/tallow_player_requests.h"
#include "util/json_text.h"

namespace tallow {
namespace {

using nlohmann::json;

constexpr std::size_t kMaxQueueAnswer = 4096;
constexpr std::size_t kMaxFailuresAnswer = 64;

// The names of the enumerators, in their order.
constexpr std::array<const char*, 3> kRepeatModes = {"off", "all", "one"};
constexpr std::array<const char*, 3> kGains = {"off", "track", "album"};

// Reading the members of a request. No value when one is missing or of the wrong type.

std::optional<std::uint64_t> NumberOf(const json& request, const char* name) {
  const auto member = request.find(name);
  if (member == request.end() || !member->is_number_unsigned()) return std::nullopt;
  return member->get<std::uint64_t>();
}

std::optional<std::string> TextOf(const json& request, const char* name) {
  const auto member = request.find(name);
  if (member == request.end() || !member->is_string()) return std::nullopt;
  return BytesOfJsonText(member->get<std::string>());
}

std::optional<std::vector<ListNumber>> EntriesOf(const json& request) {
  const auto member = request.find("entries");
  if (member == request.end() || !member->is_array()) return std::nullopt;
  const auto is_number = [](const json& entry) { return entry.is_number_unsigned(); };
  if (!std::all_of(member->begin(), member->end(), is_number)) return std::nullopt;
  return member->get<std::vector<ListNumber>>();
}

/// \param names of the enumerators
template <typename Mode>
std::optional<Mode> ModeOf(const json& request, const std::array<const char*, 3>& names) {
  const std::optional<std::string> text = TextOf(request, "mode");
  const auto* const found = std::find(names.begin(), names.end(), text.value_or(""));
  if (found == names.end()) return std::nullopt;
  return static_cast<Mode>(found - names.begin());
}

/// Writes a JSON object.
class Answer {
 public:
  Answer& Number(const char* name, std::int64_t value) {
    Name(name);
    text_ += std::to_string(value);
    return *this;
  }
  Answer& Number(const char* name, std::uint64_t value) {
    Name(name);
    text_ += std::to_string(value);
    return *this;
  }
  Answer& Flag(const char* name, bool value) {
    Name(name);
    text_ += value ? "true" : "false";
    return *this;
  }
  Answer& Text(const char* name, std::string_view value) {
    Name(name);
    AppendJsonText(text_, value);
    return *this;
  }
  /// \param append appends an item to the text
  template <typename Items, typename Append>
  Answer& List(const char* name, const Items& items, const Append& append) {
    Name(name);
    text_ += '[';
    for (bool first = true; const auto& item : items) {
      if (!std::exchange(first, false)) text_ += ',';
      append(text_, item);
    }
    text_ += ']';
    return *this;
  }
  std::string End() { return std::move(text_ += '}'); }

 private:
  void Name(const char* name) {
    if (text_.size() > 1) text_ += ',';
    AppendJsonText(text_, name);
    text_ += ':';
  }

  std::string text_ = "{";
};

std::string StateOf(const SongPlayer& player, std::uint64_t failures_after) {
  const PlayList& list = player.List();
  return Answer()
      .Number("status", std::int64_t{player.Status()})
      .Number("position", player.Position())
      .Number("length", player.LengthInMs())
      .Number("entry", list.CurrentNumber())
      .Number("place", std::uint64_t{list.Place()})
      .Number("count", std::uint64_t{list.Size()})
      .Number("upcoming", std::uint64_t{player.Upcoming()})
      .Flag("ended", player.HasEnded())
      .Number("revision", list.Revision())
      .Number("volume", std::int64_t{player.Volume()})
      .Number("balance", std::int64_t{player.Balance()})
      .Flag("shuffle", list.IsShuffled())
      .Text("repeat", kRepeatModes[static_cast<std::size_t>(list.Repeat())])
      .Text("gain", kGains[static_cast<std::size_t>(player.Gain())])
      .Text("device", player.Device())
      .Flag("deviceMissing", player.DeviceIsMissing())
      .Flag("stopAfter", player.StopsAfterCurrent())
      .List("failures", player.Failures().After(failures_after, kMaxFailuresAnswer),
            [](std::string& to, const FailedEntry& failure) {
              to += Answer()
                        .Number("number", failure.number)
                        .Number("entry", failure.entry)
                        .Text("reason", failure.reason)
                        .End();
            })
      .End();
}

std::string QueueOf(const SongPlayer& player, std::size_t from, std::size_t count) {
  const PlayList& list = player.List();
  const std::size_t upcoming = player.Upcoming();
  count = upcoming > 0 ? std::min(count, kMaxQueueAnswer) : 0;
  return Answer()
      .Number("revision", list.Revision())
      .Number("upcoming", std::uint64_t{upcoming})
      .List("entries", list.UpcomingNumbers(from, count),
            [](std::string& to, ListNumber entry) { to += std::to_string(entry); })
      .End();
}

std::string DevicesOf(const std::vector<SoundDevice>& devices) {
  return Answer()
      .List("devices", devices,
            [](std::string& to, const SoundDevice& device) {
              to +=
                  Answer().Text("name", device.name).Text("description", device.description).End();
            })
      .End();
}

// The requests that change something. They return false when the request is not valid.

bool Move(SongPlayer& player, const json& request) {
  const auto entries = EntriesOf(request);
  const auto before = NumberOf(request, "before");
  if (!entries || !before) return false;
  player.Move(*entries, *before);
  return true;
}

bool Remove(SongPlayer& player, const json& request) {
  const auto entries = EntriesOf(request);
  if (!entries) return false;
  player.Remove(*entries);
  return true;
}

bool Play(SongPlayer& player, const json& request) {
  const auto entry = NumberOf(request, "entry");
  if (!entry) return false;
  player.PlayEntry(*entry);
  return true;
}

bool Cue(SongPlayer& player, const json& request) {
  const auto entry = NumberOf(request, "entry");
  const auto position = NumberOf(request, "position");
  if (!entry || !position || !std::in_range<std::int64_t>(*position)) return false;
  player.Cue(*entry, static_cast<std::int64_t>(*position));
  return true;
}

bool SetRepeat(SongPlayer& player, const json& request) {
  const auto mode = ModeOf<RepeatMode>(request, kRepeatModes);
  if (!mode) return false;
  player.SetRepeat(*mode);
  return true;
}

bool SetGain(SongPlayer& player, const json& request) {
  const auto mode = ModeOf<ReplayGain>(request, kGains);
  if (!mode) return false;
  player.SetGain(*mode);
  return true;
}

bool SetDevice(SongPlayer& player, const json& request) {
  const auto name = TextOf(request, "name");
  if (!name || name->empty() || name->find('\0') != std::string::npos) return false;
  player.SetDevice(*name);
  return true;
}

struct ChangingRequest {
  const char* name;
  bool (*execute)(SongPlayer& player, const json& request);
};

constexpr ChangingRequest kChangingRequests[] = {
    {"move", Move},        {"remove", Remove}, {"play", Play},        {"cue", Cue},
    {"repeat", SetRepeat}, {"gain", SetGain},  {"device", SetDevice},
};

bool AnswerState(const SongPlayer& player, const json& request,
                 const std::function<void(std::string)>& answer) {
  const auto after = NumberOf(request, "failuresAfter");
  if (!after) return false;
  answer(StateOf(player, *after));
  return true;
}

bool AnswerQueue(const SongPlayer& player, const json& request,
                 const std::function<void(std::string)>& answer) {
  const auto from = NumberOf(request, "from");
  const auto count = NumberOf(request, "count");
  if (!from || !count) return false;
  answer(QueueOf(player, static_cast<std::size_t>(*from), static_cast<std::size_t>(*count)));
  return true;
}

}  // namespace

bool ExecuteJsonRequest(SongPlayer& player, std::string_view text,
                        const std::function<void(std::string)>& answer) {
  const json request = json::parse(text, nullptr, false);
  if (!request.is_object()) return false;
  const std::string what = TextOf(request, "do").value_or("");
  if (what == "state") return AnswerState(player, request, answer);
  if (what == "queue") return AnswerQueue(player, request, answer);
  if (what == "devices") {
    player.RequestDevices(
        [answer](const std::vector<SoundDevice>& devices) { answer(DevicesOf(devices)); });
    return true;
  }
  const auto* const found =
      std::find_if(std::begin(kChangingRequests), std::end(kChangingRequests),
                   [&](const ChangingRequest& known) { return what == known.name; });
  if (found == std::end(kChangingRequests) || !found->execute(player, request)) return false;
  answer("{}");
  return true;
}

}  // namespace tallow

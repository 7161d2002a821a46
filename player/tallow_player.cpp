// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/tallow_player.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "util/json_text.h"

namespace tallow {
namespace {

using Json = nlohmann::json;

/// Maximum number of entries in a request, so that their numbers, of at most 20 digits, fit into
/// kMaxPayload.
constexpr std::size_t kEntriesAtOnce = 3000;

template <typename Value>
struct Name {
  std::string_view text;
  Value value;
};
constexpr std::array<Name<RepeatMode>, 3> kRepeatModes{
    {{"off", RepeatMode::kOff}, {"all", RepeatMode::kAll}, {"one", RepeatMode::kOne}}};
constexpr std::array<Name<ReplayGain>, 3> kGains{
    {{"off", ReplayGain::kOff}, {"track", ReplayGain::kTrack}, {"album", ReplayGain::kAlbum}}};

template <typename Value>
std::string_view TextOf(const std::array<Name<Value>, 3>& names, Value value) {
  return std::find_if(names.begin(), names.end(), [&](const auto& n) { return n.value == value; })
      ->text;
}

/// Returns a member of an object; null when there is none.
const Json* Member(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found == object.end() ? nullptr : &*found;
}

/// Returns a member, or `missing` when there is none that the type can hold.
template <typename Number>
Number NumberIn(const Json& object, const char* name, Number missing) {
  const Json* const member = Member(object, name);
  if (member == nullptr || !member->is_number_integer()) return missing;
  if (member->is_number_unsigned()) {
    const auto number = member->get<std::uint64_t>();
    return std::in_range<Number>(number) ? static_cast<Number>(number) : missing;
  }
  const auto number = member->get<std::int64_t>();
  return std::in_range<Number>(number) ? static_cast<Number>(number) : missing;
}

std::string TextIn(const Json& object, const char* name) {
  const Json* const member = Member(object, name);
  if (member == nullptr || !member->is_string()) return {};
  return BytesOfJsonText(member->get<std::string>());
}

bool FlagIn(const Json& object, const char* name) {
  const Json* const member = Member(object, name);
  return member != nullptr && member->is_boolean() && member->get<bool>();
}

template <typename Value>
Value NamedIn(const Json& object, const char* name, const std::array<Name<Value>, 3>& names) {
  const std::string text = TextIn(object, name);
  const auto found =
      std::find_if(names.begin(), names.end(), [&](const auto& n) { return n.text == text; });
  return found == names.end() ? names.front().value : found->value;
}

/// Returns the elements of an array; none when there is no such array.
const Json::array_t& ArrayIn(const Json& object, const char* name) {
  static const Json::array_t none;
  const Json* const member = Member(object, name);
  return member != nullptr && member->is_array() ? member->get_ref<const Json::array_t&>() : none;
}

PlayerStatus StatusIn(const Json& object) {
  switch (NumberIn<std::int32_t>(object, "status", kStopped)) {
    case kPlaying:
      return kPlaying;
    case kPaused:
      return kPaused;
    default:
      return kStopped;
  }
}

std::vector<PlayFailure> FailuresIn(const Json& object) {
  std::vector<PlayFailure> failures;
  for (const Json& failure : ArrayIn(object, "failures"))
    if (failure.is_object())
      failures.push_back({NumberIn<std::uint64_t>(failure, "number", 0),
                          NumberIn<std::uint64_t>(failure, "entry", 0), TextIn(failure, "reason")});
  return failures;
}

/// The beginning of a request, to which the members are appended, see AsksOnly.
std::string Request(std::string_view what) { return R"({"do":")" + std::string(what) + '"'; }

void AppendNumber(std::string& request, std::string_view name, const std::string& digits) {
  request += ",\"";
  request += name;
  request += "\":" + digits;
}

void AppendText(std::string& request, std::string_view name, std::string_view text) {
  request += ",\"";
  request += name;
  request += "\":";
  AppendJsonText(request, text);
}

void AppendEntries(std::string& request, std::span<const std::uint64_t> entries) {
  request += ",\"entries\":[";
  for (std::size_t k = 0; k < entries.size(); ++k) {
    if (k > 0) request += ',';
    request += std::to_string(entries[k]);
  }
  request += ']';
}

/// Sends a request, and returns the answer; no value when it is not an object.
std::optional<Json> Ask(PlayerLink& link, PlayerHandle player, const std::string& request) {
  const std::optional<std::string> answer = link.Ask(player, request + '}');
  if (!answer) return std::nullopt;
  Json parsed = Json::parse(*answer, nullptr, false);
  if (!parsed.is_object()) return std::nullopt;
  return parsed;
}

/// Calls a function for each part of the entries that fits into one request.
template <typename Send>
void InParts(std::span<const std::uint64_t> entries, const Send& send) {
  while (!entries.empty()) {
    const std::size_t count = std::min(entries.size(), kEntriesAtOnce);
    send(entries.first(count));
    entries = entries.subspan(count);
  }
}

}  // namespace

std::optional<TallowPlayerState> TallowPlayer::State(std::uint64_t failures_after) {
  std::string request = Request("state");
  AppendNumber(request, "failuresAfter", std::to_string(failures_after));
  const std::optional<Json> answer = Ask(link_, player_, request);
  if (!answer) return std::nullopt;
  const Json& object = *answer;
  TallowPlayerState state;
  state.status = StatusIn(object);
  state.position = NumberIn<std::int64_t>(object, "position", -1);
  state.length = NumberIn<std::int64_t>(object, "length", -1);
  state.entry = NumberIn<std::uint64_t>(object, "entry", 0);
  state.place = NumberIn<std::size_t>(object, "place", 0);
  state.count = NumberIn<std::size_t>(object, "count", 0);
  state.upcoming = NumberIn<std::size_t>(object, "upcoming", 0);
  state.ended = FlagIn(object, "ended");
  state.revision = NumberIn<std::uint64_t>(object, "revision", 0);
  state.volume = std::clamp(NumberIn<std::int32_t>(object, "volume", 0), 0, kMaxVolume);
  state.balance =
      std::clamp(NumberIn<std::int32_t>(object, "balance", 0), -kMaxBalance, kMaxBalance);
  state.shuffle = FlagIn(object, "shuffle");
  state.repeat = NamedIn(object, "repeat", kRepeatModes);
  state.gain = NamedIn(object, "gain", kGains);
  state.device = TextIn(object, "device");
  state.device_missing = FlagIn(object, "deviceMissing");
  state.stops_after = FlagIn(object, "stopAfter");
  state.failures = FailuresIn(object);
  return state;
}

std::optional<UpcomingEntries> TallowPlayer::Upcoming(std::size_t from, std::size_t count) {
  std::string request = Request("queue");
  AppendNumber(request, "from", std::to_string(from));
  AppendNumber(request, "count", std::to_string(std::min(count, kMaxAsked)));
  const std::optional<Json> answer = Ask(link_, player_, request);
  if (!answer) return std::nullopt;
  UpcomingEntries upcoming;
  upcoming.revision = NumberIn<std::uint64_t>(*answer, "revision", 0);
  upcoming.upcoming = NumberIn<std::size_t>(*answer, "upcoming", 0);
  for (const Json& entry : ArrayIn(*answer, "entries"))
    // An entry that is no number keeps its place.
    upcoming.entries.push_back(entry.is_number_unsigned() ? entry.get<std::uint64_t>() : 0);
  return upcoming;
}

std::int64_t TallowPlayer::AddFiles(std::int64_t at, std::span<const std::string> paths) {
  std::string record(sizeof at, '\0');
  std::memcpy(record.data(), &at, sizeof at);
  for (const std::string& path : paths) {
    record += path;
    record += '\0';
  }
  return link_.AddFiles(player_, record);
}

void TallowPlayer::Move(std::span<const std::uint64_t> entries, std::uint64_t before) {
  InParts(entries, [&](std::span<const std::uint64_t> part) {
    std::string request = Request("move");
    AppendEntries(request, part);
    AppendNumber(request, "before", std::to_string(before));
    Ask(link_, player_, request);
  });
}

void TallowPlayer::Remove(std::span<const std::uint64_t> entries) {
  InParts(entries, [&](std::span<const std::uint64_t> part) {
    std::string request = Request("remove");
    AppendEntries(request, part);
    Ask(link_, player_, request);
  });
}

void TallowPlayer::Play(std::uint64_t entry) {
  std::string request = Request("play");
  AppendNumber(request, "entry", std::to_string(entry));
  Ask(link_, player_, request);
}

void TallowPlayer::Cue(std::uint64_t entry, std::int64_t position) {
  std::string request = Request("cue");
  AppendNumber(request, "entry", std::to_string(entry));
  AppendNumber(request, "position", std::to_string(position));
  Ask(link_, player_, request);
}

void TallowPlayer::SetRepeat(RepeatMode mode) {
  std::string request = Request("repeat");
  AppendText(request, "mode", TextOf(kRepeatModes, mode));
  Ask(link_, player_, request);
}

void TallowPlayer::SetGain(ReplayGain mode) {
  std::string request = Request("gain");
  AppendText(request, "mode", TextOf(kGains, mode));
  Ask(link_, player_, request);
}

std::vector<SoundDevice> TallowPlayer::Devices() {
  const std::optional<Json> answer = Ask(link_, player_, Request("devices"));
  if (!answer) return {};
  std::vector<SoundDevice> devices;
  for (const Json& device : ArrayIn(*answer, "devices"))
    if (device.is_object())
      devices.push_back({TextIn(device, "name"), TextIn(device, "description")});
  return devices;
}

void TallowPlayer::SetDevice(const std::string& name) {
  std::string request = Request("device");
  AppendText(request, "name", name);
  Ask(link_, player_, request);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/missing_songs.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "util/json_file.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow missing songs", 1};

}  // namespace

void MissingSongs::Index() {
  by_number_.clear();
  by_name_.clear();
  for (std::size_t k = 0; k < songs_.size(); ++k) {
    by_number_[songs_[k].number] = k;
    if (songs_[k].now == 0) by_name_.emplace(PathKey(songs_[k].name), k);
  }
}

void MissingSongs::Add(MissingSong song) {
  is_dirty_ = true;
  if (by_number_.contains(song.number)) {
    std::erase_if(songs_, [&](const MissingSong& other) { return other.number == song.number; });
    songs_.push_back(std::move(song));
    Index();
    return;
  }
  by_number_[song.number] = songs_.size();
  if (song.now == 0) by_name_.emplace(PathKey(song.name), songs_.size());
  songs_.push_back(std::move(song));
}

const MissingSong* MissingSongs::Find(std::int32_t number) const {
  const auto found = by_number_.find(number);
  return found != by_number_.end() ? &songs_[found->second] : nullptr;
}

bool MissingSongs::IsMissing(std::int32_t number) const {
  const MissingSong* const song = Find(number);
  return song != nullptr && song->now == 0;
}

std::int32_t MissingSongs::NumberNow(std::int32_t number) const {
  // A song may have been missing and come back several times. Each new number is higher, so the
  // loop ends.
  const MissingSong* song = Find(number);
  while (song != nullptr && song->now > number) {
    number = song->now;
    song = Find(number);
  }
  return number;
}

const MissingSong* MissingSongs::OnlyOf(std::string_view name, const std::int64_t* size) const {
  const MissingSong* only = nullptr;
  const auto [begin, end] = by_name_.equal_range(PathKey(name));
  for (auto place = begin; place != end; ++place) {
    const MissingSong& song = songs_[place->second];
    if (size != nullptr && song.size != *size) continue;
    if (only != nullptr) return nullptr;
    only = &song;
  }
  return only;
}

bool MissingSongs::HasName(std::string_view name) const {
  return !by_name_.empty() && by_name_.contains(PathKey(name));
}

const MissingSong* MissingSongs::Only(std::string_view name, std::int64_t size) const {
  return size < 0 ? nullptr : OnlyOf(name, &size);
}

const MissingSong* MissingSongs::In(std::string_view folder, std::string_view name) const {
  const auto [begin, end] = by_name_.equal_range(PathKey(name));
  for (auto place = begin; place != end; ++place) {
    const MissingSong& song = songs_[place->second];
    if (IsSamePathText(song.folder, folder)) return &song;
  }
  return nullptr;
}

const MissingSong* MissingSongs::OnlyOfName(std::string_view name) const {
  return OnlyOf(name, nullptr);
}

void MissingSongs::CameBack(std::int32_t number, std::int32_t now) {
  const auto found = by_number_.find(number);
  if (found == by_number_.end()) return;
  songs_[found->second].now = now;
  const auto [begin, end] = by_name_.equal_range(PathKey(songs_[found->second].name));
  for (auto place = begin; place != end; ++place) {
    if (place->second != found->second) continue;
    by_name_.erase(place);
    break;
  }
  is_dirty_ = true;
}

void MissingSongs::Forget(const std::function<bool(const MissingSong&)>& predicate) {
  if (std::erase_if(songs_, predicate) == 0) return;
  is_dirty_ = true;
  Index();
}

void MissingSongs::ForgetReturns(const std::function<bool(const MissingSong&)>& predicate) {
  for (MissingSong& song : songs_) {
    if (song.now == 0 || !predicate(song)) continue;
    song.now = 0;
    is_dirty_ = true;
  }
  if (is_dirty_) Index();
}

void MissingSongs::Shrink(std::size_t max_size) {
  if (songs_.size() <= max_size) return;
  songs_.erase(songs_.begin(), songs_.end() - static_cast<std::ptrdiff_t>(max_size));
  is_dirty_ = true;
  Index();
}

std::string MissingSongs::Encode() const {
  std::string bytes = BeginJsonFile(kFormat);
  bytes += has_namesakes_ ? ",\"namesakes\":true,\"songs\":[" : ",\"songs\":[";
  const char* separator = "\n";
  for (const MissingSong& song : songs_) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"number\":" + std::to_string(song.number) + ",\"name\":";
    AppendJsonText(bytes, song.name);
    bytes += ",\"folder\":";
    AppendJsonText(bytes, song.folder);
    bytes += ",\"size\":" + std::to_string(song.size) + ",\"rank\":";
    AppendJsonText(bytes, song.rank);
    bytes += ",\"day\":" + std::to_string(song.day) + ",\"now\":" + std::to_string(song.now) + "}";
  }
  return bytes + "]}\n";
}

void MissingSongs::Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::vector<MissingSong> songs;
  for (const auto& member : root.at("songs")) {
    const auto text = [&](const char* name) {
      return BytesOfJsonText(member.at(name).get<std::string>());
    };
    songs.push_back({member.at("number").get<std::int32_t>(), text("name"), text("folder"),
                     member.at("size").get<std::int64_t>(), text("rank"),
                     member.at("day").get<std::int32_t>(), member.at("now").get<std::int32_t>()});
  }
  const bool has_namesakes = root.value("namesakes", false);
  songs_ = std::move(songs);
  Index();
  is_dirty_ = has_namesakes_ && !has_namesakes;
  has_namesakes_ = has_namesakes_ || has_namesakes;
}

void MissingSongs::ExpectNamesakes() noexcept {
  is_dirty_ = is_dirty_ || !has_namesakes_;
  has_namesakes_ = true;
}

}  // namespace tallow

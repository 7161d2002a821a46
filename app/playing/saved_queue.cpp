// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/saved_queue.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <utility>

#include "util/errors.h"
#include "util/json_file.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow queue", 1};

SavedSongs Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  SavedSongs songs;
  songs.position = root.at("position").get<std::int64_t>();
  for (const auto& path : root.at("songs")) {
    songs.paths.push_back(BytesOfJsonText(path.get<std::string>()));
    if (!IsAbsolutePath(songs.paths.back())) throw std::runtime_error("a path is not absolute");
  }
  if (songs.position < 0 || songs.paths.size() > SavedQueue::kMaxSongs)
    throw std::runtime_error("it has a negative position or too many songs");
  songs.list = root.value("list", std::size_t{0});
  songs.entries = root.value("entries", std::vector<std::uint64_t>());
  if (!songs.entries.empty() && songs.entries.size() != songs.paths.size())
    throw std::runtime_error("it has not one number for each song");
  return songs;
}

std::string Encode(const SavedSongs& songs) {
  std::string bytes =
      BeginJsonFile(kFormat) + ",\"position\":" + std::to_string(songs.position) + ",\"songs\":[";
  const char* separator = "\n";
  for (const std::string& path :
       std::span(songs.paths).first(std::min(songs.paths.size(), SavedQueue::kMaxSongs))) {
    bytes += std::exchange(separator, ",\n");
    AppendJsonText(bytes, path);
  }
  bytes += "]";
  if (songs.entries.empty()) return bytes + "}\n";
  bytes += ",\"list\":" + std::to_string(songs.list) + ",\"entries\":[";
  separator = "";
  for (const std::uint64_t entry :
       std::span(songs.entries).first(std::min(songs.entries.size(), SavedQueue::kMaxSongs))) {
    bytes += std::exchange(separator, ",");
    bytes += std::to_string(entry);
  }
  return bytes + "]}\n";
}

}  // namespace

void SavedQueue::LoadOnce() {
  if (std::exchange(is_loaded_, true)) return;
  file_.Load(
      path_, [this](const std::string& bytes) { songs_ = Decode(bytes); }, problems_);
}

SavedSongs SavedQueue::Load() {
  LoadOnce();
  return songs_;
}

void SavedQueue::Store(const SavedSongs& songs) {
  LoadOnce();
  if (songs == songs_) return;
  try {
    file_.Save(Encode(songs));
    songs_ = songs;
    save_problem_.clear();
  } catch (const FileError& error) {
    std::string problem = "The queue could not be saved. " + std::string(error.what()) +
                          ". Free some disk space, or make the file writable.";
    if (std::exchange(save_problem_, problem) != problem) problems_.push_back(std::move(problem));
  }
}

std::vector<std::string> SavedQueue::TakeProblems() { return std::exchange(problems_, {}); }

}  // namespace tallow

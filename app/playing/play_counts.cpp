// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/play_counts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/json_file.h"
#include "util/json_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow play counts", 1};

constexpr std::string_view kDamagedSuffix = ".damaged";

/// Formats a day as "2026-11-23".
std::string TextOfDay(std::chrono::sys_days day) {
  const std::chrono::year_month_day date(day);
  const auto two = [](unsigned number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  return std::to_string(static_cast<int>(date.year())) + "-" +
         two(static_cast<unsigned>(date.month())) + "-" + two(static_cast<unsigned>(date.day()));
}

/// \throws std::exception when the text is not a day
std::chrono::sys_days DayOf(const std::string& text) {
  std::array<int, 3> parts{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (int& part : parts) {
    const auto [next, error] = std::from_chars(at, end, part);
    if (error != std::errc() || (next != end && *next != '-')) break;
    at = next == end ? end : next + 1;
  }
  const std::chrono::year_month_day date{std::chrono::year{parts[0]},
                                         std::chrono::month{static_cast<unsigned>(parts[1])},
                                         std::chrono::day{static_cast<unsigned>(parts[2])}};
  if (!date.ok() || TextOfDay(date) != text) throw std::runtime_error("'" + text + "' is no day");
  return date;
}

std::unordered_map<std::string, PlayCount> Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::unordered_map<std::string, PlayCount> counts;
  for (const auto& member : root.at("songs")) {
    const PlayCount count{member.at("count").get<std::int32_t>(),
                          DayOf(member.at("last").get<std::string>())};
    if (count.count < 1) throw std::runtime_error("a count is not positive");
    counts[BytesOfJsonText(member.at("path").get<std::string>())] = count;
  }
  return counts;
}

std::string Encode(const std::unordered_map<std::string, PlayCount>& counts) {
  std::vector<const std::pair<const std::string, PlayCount>*> sorted;
  sorted.reserve(counts.size());
  for (const auto& song : counts) sorted.push_back(&song);
  std::ranges::sort(sorted, {}, [](const auto* song) -> const std::string& { return song->first; });
  std::string bytes = BeginJsonFile(kFormat) + ",\"songs\":[";
  const char* separator = "\n";
  for (const auto* const song : sorted) {
    bytes += std::exchange(separator, ",\n");
    bytes += "{\"path\":";
    AppendJsonText(bytes, song->first);
    bytes += ",\"count\":" + std::to_string(song->second.count) + ",\"last\":\"" +
             TextOfDay(song->second.last) + "\"}";
  }
  return bytes + "]}\n";
}

}  // namespace

PlayCount PlayCounts::Of(const std::string& path) {
  LoadOnce();
  const auto found = counts_.find(path);
  return found == counts_.end() ? PlayCount() : found->second;
}

std::size_t PlayCounts::Songs() {
  LoadOnce();
  return counts_.size();
}

void PlayCounts::Add(const std::string& path, std::chrono::sys_days today) {
  LoadOnce();
  PlayCount& count = counts_[path];
  if (count.count < INT32_MAX) ++count.count;
  count.last = today;
  Save();
}

void PlayCounts::LoadOnce() {
  if (std::exchange(is_loaded_, true) || Load(path_) || !may_replace_) return;
  const std::size_t before = problems_.size();
  const std::string backup = path_ + std::string(kBackupSuffix);
  if (Load(backup) && before > 0) problems_.back() += " The counts before the last play are used.";
}

bool PlayCounts::Load(const std::string& path) {
  std::optional<std::string> bytes;
  try {
    bytes = ReadWholeFile(path, kMaxBytes);
    if (!bytes) return false;
    counts_ = Decode(*bytes);
    return true;
  } catch (const FileTooLargeError&) {
    SetAside(path);
  } catch (const FileError& error) {
    may_replace_ = false;
    problems_.push_back(path + " cannot be read (" + error.reason() +
                        "), so it was not changed. Make it readable and start Tallow again.");
  } catch (const std::exception&) {
    SetAside(path);
  }
  return false;
}

void PlayCounts::SetAside(const std::string& path) {
  try {
    MoveToBackup(path, kDamagedSuffix);
    problems_.push_back(path + " is damaged. It was renamed to end in " +
                        std::string(kDamagedSuffix) + ".");
  } catch (const FileError& error) {
    may_replace_ = false;
    problems_.push_back(path + " is damaged, and cannot be renamed to end in " +
                        std::string(kDamagedSuffix) + " (" + error.reason() +
                        "), so it was not changed.");
  }
}

void PlayCounts::Save() {
  if (!may_replace_) return;
  try {
    if (FileExists(path_)) KeepReplaced(path_);
    WriteFileAtomically(path_, Encode(counts_));
    save_problem_.clear();
  } catch (const FileError& error) {
    AddSaveProblem("The play counts could not be saved. " + std::string(error.what()) +
                   ". Free some disk space, or make the file writable.");
  }
}

void PlayCounts::AddSaveProblem(std::string problem) {
  if (problem == save_problem_) return;
  save_problem_ = problem;
  problems_.push_back(std::move(problem));
}

std::vector<std::string> PlayCounts::TakeProblems() { return std::exchange(problems_, {}); }

}  // namespace tallow

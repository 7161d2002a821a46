// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/play_failures.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "util/file_system.h"

namespace tallow {
namespace {

/// How long to wait for the disk. Commands and events wait meanwhile; the sound goes on.
constexpr std::chrono::milliseconds kMaxWait{100};

/// Looks for a file. A disk that does not respond must not block the player, so a detached thread
/// does it.
/// \returns no value when the disk does not respond
std::optional<FileStatus> LookFor(const std::string& path) {
  auto found = std::make_shared<std::promise<FileStatus>>();
  std::future<FileStatus> answer = found->get_future();
  try {
    std::thread([found, path] { found->set_value(CheckFile(path)); }).detach();
  } catch (const std::exception&) {
    return std::nullopt;
  }
  if (answer.wait_for(kMaxWait) != std::future_status::ready) return std::nullopt;
  return answer.get();
}

}  // namespace

void PlayFailures::Store(ListNumber entry, std::string reason) {
  kept_.push_back({.number = ++last_number_, .entry = entry, .reason = std::move(reason)});
  if (kept_.size() > kMaxKept) kept_.pop_front();
}

void PlayFailures::Add(ListNumber entry, std::string reason) {
  failed_.insert(entry);
  Store(entry, std::move(reason));
}

void PlayFailures::EntryPlays(ListNumber entry) {
  if (failed_.erase(entry) > 0) Store(entry, {});
}

std::vector<FailedEntry> PlayFailures::After(std::uint64_t number, std::size_t count) const {
  const auto first = std::find_if(kept_.begin(), kept_.end(), [&](const FailedEntry& failure) {
    return failure.number > number;
  });
  const auto left = static_cast<std::size_t>(kept_.end() - first);
  return {first, first + static_cast<std::ptrdiff_t>(std::min(count, left))};
}

std::string FailureReason(const std::string& path, const std::string& error) {
  const std::optional<FileStatus> status = LookFor(path);
  if (!status || status->presence == FilePresence::kThere) return error;
  if (status->presence == FilePresence::kNotThere) return "The file is gone.";
  return "The file cannot be read: " + status->problem;
}

}  // namespace tallow

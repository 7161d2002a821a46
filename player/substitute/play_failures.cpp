// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/play_failures.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include "util/detached_thread.h"

namespace tallow {
namespace {

/// How long to wait for the disk. Commands and events wait meanwhile; the sound goes on.
constexpr std::chrono::milliseconds kMaxWait{100};

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

std::optional<FileStatus> FailureReasons::LookFor(const std::string& path) {
  const auto has_answered = [this](std::chrono::milliseconds wait) {
    return answer_.wait_for(wait) == std::future_status::ready;
  };
  // Many files on a slow disk cause neither many threads nor many waits.
  if (answer_.valid() && !has_answered(std::chrono::milliseconds(0))) return std::nullopt;
  // A disk that does not respond must not block the player, so a detached thread looks for the
  // file.
  auto found = std::make_shared<std::promise<FileStatus>>();
  answer_ = found->get_future();
  if (!StartDetachedThread([found, path] { found->set_value(CheckFile(path)); })) {
    answer_ = {};
    return std::nullopt;
  }
  if (!has_answered(kMaxWait)) return std::nullopt;
  return answer_.get();
}

std::string FailureReasons::Of(const std::string& path, const std::string& error) {
  const std::optional<FileStatus> status = LookFor(path);
  if (!status || status->presence == FilePresence::kThere) return error;
  if (status->presence == FilePresence::kNotThere) return "The file is gone.";
  return "The file cannot be read: " + status->problem;
}

}  // namespace tallow

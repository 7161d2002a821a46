// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "player/substitute/play_list.h"
#include "util/file_system.h"

namespace tallow {

/// A file that could not be played.
struct FailedEntry {
  std::uint64_t number = 0;  ///< ascending from 1, for all lists
  ListNumber entry = 0;
  std::string reason;  ///< empty when the entry has played after all
};

/// The files that could not be played. Only the last kMaxKept failures are kept.
class PlayFailures {
 public:
  static constexpr std::size_t kMaxKept = 1000;

  void Add(ListNumber entry, std::string reason);
  /// Call this when an entry plays. Adds a failure without a reason if it has failed before.
  void EntryPlays(ListNumber entry);
  /// Call this when the list was emptied: its entries will not play any more.
  void ForgetEntries() { failed_.clear(); }

  /// The failures after one, oldest first.
  /// \param number 0 for all
  /// \param count  at most this many
  std::vector<FailedEntry> After(std::uint64_t number, std::size_t count) const;

 private:
  void Store(ListNumber entry, std::string reason);

  std::deque<FailedEntry> kept_;
  std::uint64_t last_number_ = 0;
  std::unordered_set<ListNumber> failed_;  ///< the entries that have not played since
};

/// Finds out why files could not be played.
class FailureReasons {
 public:
  /// Returns why a file could not be played, as users understand it. Waits at most 100 ms for the
  /// disk, and not at all while a disk owes the answer to an earlier call.
  /// \param error what the engine reported
  std::string Of(const std::string& path, const std::string& error);

 private:
  /// Looks for a file.
  /// \returns no value when the disk does not respond
  std::optional<FileStatus> LookFor(const std::string& path);

  std::future<FileStatus> answer_;  ///< not valid when it was taken
};

}  // namespace tallow

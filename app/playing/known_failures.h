// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace tallow {

/// Why songs could not be played when they were last tried in this run.
class KnownFailures {
 public:
  /// \param entry  of the player's list
  /// \param path   of the song; empty when the song is unknown
  /// \param reason empty when the song has played
  void Set(std::uint64_t entry, const std::string& path, const std::string& reason);
  /// Forgets the entries, because another player numbers anew; keeps the songs.
  void ForgetEntries() { by_entry_.clear(); }

  bool IsEmpty() const noexcept { return by_path_.empty() && by_entry_.empty(); }
  std::string OfPath(const std::string& path) const;
  std::string OfEntry(std::uint64_t entry) const;

 private:
  std::unordered_map<std::string, std::string> by_path_;
  std::unordered_map<std::uint64_t, std::string> by_entry_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// Folders that are currently skipped because the disk did not answer. Thread-safe.
class UnansweredPlaces {
 public:
  /// \param root ends in a separator
  void Add(std::string_view root);
  void Clear();

  /// The root that contains a path; empty for none.
  std::string RootOf(std::string_view path) const;
  bool Covers(std::string_view path) const { return !RootOf(path).empty(); }

 private:
  std::atomic<bool> any_ = false;  ///< false usually; checked first, without the mutex
  mutable std::mutex mutex_;
  std::vector<std::string> roots_;
};

}  // namespace tallow

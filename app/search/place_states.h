// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallow {

/// Finds out, without waiting, which places can be reached. Each is asked for on a thread of its
/// own, because the server of a share may never answer; such a thread stays detached.
class PlaceStates {
 public:
  /// \param max_wait a place that has not answered after this time counts as not there
  explicit PlaceStates(std::chrono::milliseconds max_wait);
  ~PlaceStates();
  PlaceStates(const PlaceStates&) = delete;
  PlaceStates& operator=(const PlaceStates&) = delete;

  /// Asks for folders, except for those that have not answered yet. The last answer of a folder is
  /// kept until the next one.
  void Ask(const std::vector<std::string>& folders);
  /// Forgets the answers, so that all folders are asked for again. A question that is still open
  /// stays open, so that a place that does not answer occupies one thread only.
  void Clear();

  /// Whether a folder is there; no value while that is not known.
  std::optional<bool> IsThere(const std::string& folder) const;
  /// Whether a folder that was asked for has neither answered nor been given up.
  bool IsWaiting() const;

 private:
  struct Shared;

  const std::chrono::milliseconds max_wait_;
  std::shared_ptr<Shared> shared_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "details/child_reader.h"

namespace tallow {

/// Reads tags in child processes, on any threads at once: as many children as there are calls at a
/// time. A child is started when a call finds none idle. They run until this object is destroyed.
class TagChildren {
 public:
  explicit TagChildren(ChildSettings settings) : settings_(std::move(settings)) {}
  TagChildren(const TagChildren&) = delete;
  TagChildren& operator=(const TagChildren&) = delete;

  /// ChildReader::ReadTags.
  SongTags Read(const std::string& path);

 private:
  /// Removes an idle reader, or makes one.
  std::unique_ptr<ChildReader> TakeIdle();

  const ChildSettings settings_;
  std::mutex mutex_;  ///< guards all below
  std::vector<std::unique_ptr<ChildReader>> idle_;
};

}  // namespace tallow

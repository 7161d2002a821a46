// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "details/child_reader.h"

namespace tallow {

/// Reads the tags of songs that are filed, on any threads at once: those of MP3 files as most
/// programs write them (IsPlainMp3) in this process, all others in child processes. The way to a
/// child and back takes as long as half of the reading of an MP3 file.
///
/// There are at most as many children as processors can use: more would only compete for them. On a
/// slow disk more threads than that read at a time. A thread that finds all children busy reads the
/// bytes of its file's tags itself, so that the system has them in its cache when a child is idle.
///
/// A child is started when a call finds none idle. They run until this object is destroyed.
class TagChildren {
 public:
  /// \param max_children from 1
  explicit TagChildren(ChildSettings settings, std::size_t max_children = DefaultChildren());
  TagChildren(const TagChildren&) = delete;
  TagChildren& operator=(const TagChildren&) = delete;

  /// Reads the tags of a file. Does not return while the disk of the file does not answer; other
  /// calls can then use all children.
  ///
  /// \returns the tags; no tags when the file cannot be read
  SongTags Read(const std::string& path);

 private:
  /// Makes a reader idle again.
  struct GiveBack {
    TagChildren* children;
    void operator()(ChildReader* reader) const;
  };
  using Loan = std::unique_ptr<ChildReader, GiveBack>;

  static std::size_t DefaultChildren() noexcept;
  /// Whether a call has to wait for a child.
  bool AreAllBusy();
  /// Waits for an idle reader, or makes one.
  Loan Borrow();

  const ChildSettings settings_;
  const std::size_t max_children_;
  std::mutex mutex_;  ///< guards all below
  std::condition_variable became_idle_;
  std::size_t made_ = 0;
  std::vector<std::unique_ptr<ChildReader>> idle_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tallow {

/// The files to play, in order, one of which is the current one. An empty list has none.
///
/// Its memory is limited, see kMaxListBytes.
class PlayList {
 public:
  /// Appends a file. The first file becomes the current one.
  /// \returns false when the list is full; nothing has changed in that case
  bool Add(std::string path);
  void Clear();

  bool IsEmpty() const noexcept { return entries_.empty(); }
  std::size_t Size() const noexcept { return entries_.size(); }

  /// Whether there is a file after the current one.
  bool HasNext() const noexcept { return current_ + 1 < entries_.size(); }
  /// Whether there is a file before the current one.
  bool HasPrevious() const noexcept { return current_ > 0; }

  /// The path of the current file; empty when the list is empty.
  std::string CurrentPath() const { return IsEmpty() ? std::string() : entries_[current_].path; }
  /// A number that identifies the current entry and is never reused; 0 when the list is empty.
  std::uint64_t CurrentNumber() const noexcept { return IsEmpty() ? 0 : entries_[current_].number; }
  /// The path of a file after the current one; null when there is none.
  /// \param distance 1 for the next file
  const std::string* PathAfterCurrent(std::size_t distance) const noexcept;

  // These change the current file.

  /// \pre HasNext()
  void GoToNext() noexcept { ++current_; }
  /// Stays at the first file.
  void GoToPrevious() noexcept { current_ -= HasPrevious() ? 1 : 0; }
  /// Goes to the next file, or from the last one to the first.
  void GoToNextOrFirst() noexcept { current_ = HasNext() ? current_ + 1 : 0; }
  /// \pre the list is not empty
  void GoToLast() noexcept { current_ = entries_.size() - 1; }

 private:
  struct Entry {
    std::string path;
    std::uint64_t number = 0;  ///< never reused
  };

  std::vector<Entry> entries_;
  std::size_t bytes_ = 0;    ///< limited by kMaxListBytes
  std::size_t current_ = 0;  ///< index in entries_; 0 when the list is empty
  std::uint64_t last_number_ = 0;
};

}  // namespace tallow

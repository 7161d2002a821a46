// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace tallow {

/// What will play after the current song, asked for in blocks and kept while it does not change.
class QueueEntries {
 public:
  static constexpr std::size_t kBlock = 256;     ///< rows that are asked for at once
  static constexpr std::size_t kMaxBlocks = 64;  ///< that are kept

  /// Returns the entries of rows, fewer at the end of the queue.
  /// \param from  from 0
  /// \param count at most TallowPlayer::kMaxAsked
  using Ask = std::function<std::vector<std::uint64_t>(std::size_t from, std::size_t count)>;

  explicit QueueEntries(Ask ask) : ask_(std::move(ask)) {}

  /// The queue has changed, or may have.
  void Forget() { blocks_.clear(); }
  /// The entry of a row; 0 past the end.
  std::uint64_t At(std::size_t row);
  /// The entries of all rows.
  /// \param length number of rows to expect
  std::vector<std::uint64_t> All(std::size_t length) const;

 private:
  Ask ask_;
  std::map<std::size_t, std::vector<std::uint64_t>> blocks_;  ///< by number of the block
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tallow {

/// Position of a text in a pool. 0 is the empty text.
using TextHandle = std::uint32_t;

/// Stores the texts of a large table in a few large blocks; a cell only needs a four-byte handle.
///
/// A song stores only its name and number; its folder, flag and rank are shared with all songs that
/// have the same texts. A text never moves, so views stay valid as long as the pool. Each text is
/// stored as its length (7 bits per byte, low bits first, high bit set if more bytes follow) and
/// its bytes.
class TextPool {
 public:
  /// Maximum size of a pool in bytes, lengths included.
  static constexpr std::size_t kMaxBytes = std::size_t{1} << 32U;

  TextPool();

  /// Adds a text without looking for an equal one. For texts that rarely repeat.
  ///
  /// \throws std::length_error when the pool is full
  TextHandle Add(std::string_view text);

  /// Returns the shared handle of a text, and adds the text on the first call. For texts that
  /// repeat.
  TextHandle Share(std::string_view text);

  /// The text of a handle returned by this pool.
  std::string_view Text(TextHandle handle) const noexcept;

  /// Bytes used so far.
  std::size_t size() const noexcept { return used_; }

 private:
  static constexpr std::size_t kBlockBits = 18;
  static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;

  struct Hash {
    using is_transparent = void;
    const TextPool* pool;
    std::size_t operator()(TextHandle handle) const noexcept { return (*this)(pool->Text(handle)); }
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>()(text);
    }
  };
  struct Equal {
    using is_transparent = void;
    const TextPool* pool;
    bool operator()(TextHandle a, TextHandle b) const noexcept { return a == b; }
    bool operator()(std::string_view a, TextHandle b) const noexcept { return a == pool->Text(b); }
    bool operator()(TextHandle a, std::string_view b) const noexcept { return pool->Text(a) == b; }
  };

  // A text never crosses a block boundary. A handle is the block number times the block size plus
  // the offset in the block. A text longer than a block occupies several consecutive block numbers,
  // of which only the first has memory.
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t used_ = 1;  ///< the next free position; position 0 is the empty text
  std::unordered_set<TextHandle, Hash, Equal> shared_;
};

}  // namespace tallow

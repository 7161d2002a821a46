// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tallow {

/// Where a text lies in a pool. 0 is the empty text.
using TextHandle = std::uint32_t;

/// Keeps the texts of a big table in few large blocks, four bytes of handle a cell.
///
/// A song costs one name, one number and no more: its folder, flag and rank are shared with every
/// other song that has the same. A text once added stays where it is until the pool goes, so views
/// of it hold that long. Each text is stored as its length (7 bits a byte, low bits first, high bit
/// set while more follow) and its bytes.
class TextPool {
 public:
  /// Most bytes that a pool can hold, lengths included.
  static constexpr std::size_t kMaxBytes = std::size_t{1} << 32U;

  TextPool();

  /// Adds a text even if it is there already: for texts that rarely repeat.
  ///
  /// \throws std::length_error when the pool is full
  TextHandle Add(std::string_view text);

  /// The one handle of a text: adds it if no earlier Share has. For texts that repeat.
  TextHandle Share(std::string_view text);

  /// The text of a handle that this pool gave.
  std::string_view Text(TextHandle handle) const noexcept;

  /// Bytes added so far.
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

  // A text never crosses blocks. A handle is the block's number times the block's size plus the
  // offset in it; a text longer than a block has a run of blocks to itself, of which only the first
  // is real.
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t used_ = 1;  ///< the next free place; 0 is taken by the empty text
  std::unordered_set<TextHandle, Hash, Equal> shared_;
};

}  // namespace tallow

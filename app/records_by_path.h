// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

class clsMain;

/// Finds songs by the paths of their files: a hash table with open addressing that stores record
/// numbers only, so that a million paths need no memory of their own.
class RecordsByPath {
 public:
  /// \param library must outlive this object and not change
  /// \param records of existing songs, each once
  RecordsByPath(const clsMain& library, const std::vector<std::int32_t>& records);

  /// Calls `found` for each song of a path.
  template <typename Found>
  void ForEach(std::string_view path, const Found& found) const {
    for (std::size_t slot = SlotOf(path); slots_[slot] != 0; slot = Next(slot))
      if (HasPath(slots_[slot], path)) found(slots_[slot]);
  }

 private:
  std::size_t SlotOf(std::string_view path) const noexcept;
  std::size_t Next(std::size_t slot) const noexcept { return (slot + 1) & (slots_.size() - 1); }
  bool HasPath(std::int32_t record, std::string_view path) const;

  const clsMain& library_;
  std::vector<std::int32_t> slots_;  ///< 0: empty; at most half of them are in use
};

}  // namespace tallow

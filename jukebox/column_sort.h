// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tallow {

/// What a song is sorted by: the key of a column, and what decides between songs of equal keys.
struct ColumnKey {
  /// From 1, smallest first. 0: the song has no text in the column, and comes last in both
  /// directions.
  std::uint64_t key = 0;
  /// Position of its album in natural order, from 1. 0: the song has no album, and comes after
  /// those of the same key that have one.
  std::uint32_t album = 0;
  std::int32_t disc = 0;
  std::int32_t track = 0;
};

/// Returns one key for each song, in the same order.
/// \param records the songs by record number; they may refer to no song
using ColumnKeys = std::function<std::vector<ColumnKey>(std::span<const std::int32_t> records)>;

/// Sorts songs by a column. Songs of equal keys are in the order of album, disc and track in both
/// directions, and those that still are equal stay in their order.
///
/// \returns for each new position, the old position of the song there; both from 0
std::vector<std::int32_t> OrderByColumn(std::span<const ColumnKey> keys, bool descending);

}  // namespace tallow

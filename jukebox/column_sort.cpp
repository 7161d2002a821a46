// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/column_sort.h"

#include <algorithm>
#include <cstddef>

namespace tallow {
namespace {

/// What a song is sorted by, as numbers that are compared one after another. The last holds the
/// song's position, so no two are equal.
struct SortKey {
  std::uint64_t key;
  std::uint64_t album_and_disc;
  std::uint64_t track_and_position;

  auto operator<=>(const SortKey&) const = default;
};

constexpr unsigned kHalf = 32;

/// A number whose order as unsigned is that of the signed one.
std::uint64_t AsUnsigned(std::int32_t number) noexcept {
  return static_cast<std::uint32_t>(number) ^ 0x80000000U;
}

SortKey SortKeyOf(const ColumnKey& key, std::uint32_t position, bool descending) noexcept {
  // Songs without a key are last: 0 becomes the largest number, as it does in the other direction.
  // So are, among equal keys, songs without an album.
  return {.key = descending ? ~key.key : key.key - 1,
          .album_and_disc = std::uint64_t{key.album - 1U} << kHalf | AsUnsigned(key.disc),
          .track_and_position = AsUnsigned(key.track) << kHalf | position};
}

}  // namespace

std::vector<std::int32_t> OrderByColumn(std::span<const ColumnKey> keys, bool descending) {
  std::vector<SortKey> sorted(keys.size());
  for (std::size_t k = 0; k < keys.size(); ++k)
    sorted[k] = SortKeyOf(keys[k], static_cast<std::uint32_t>(k), descending);
  std::ranges::sort(sorted);
  std::vector<std::int32_t> order(keys.size());
  std::ranges::transform(sorted, order.begin(), [](const SortKey& key) {
    return static_cast<std::int32_t>(key.track_and_position & 0xFFFFFFFFU);
  });
  return order;
}

}  // namespace tallow

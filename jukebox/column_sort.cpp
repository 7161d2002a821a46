// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/column_sort.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tallow {
namespace {

bool ComesFirst(const ColumnKey& a, const ColumnKey& b, bool descending) noexcept {
  if (a.key != b.key) {
    if (a.key == 0 || b.key == 0) return b.key == 0;
    return descending ? a.key > b.key : a.key < b.key;
  }
  if (a.album != b.album) return a.album < b.album;
  if (a.disc != b.disc) return a.disc < b.disc;
  return a.track < b.track;
}

}  // namespace

std::vector<std::int32_t> OrderByColumn(std::span<const ColumnKey> keys, bool descending) {
  std::vector<std::int32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::stable_sort(order, [&](std::int32_t a, std::int32_t b) {
    return ComesFirst(keys[static_cast<std::size_t>(a)], keys[static_cast<std::size_t>(b)],
                      descending);
  });
  return order;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/song_list_order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "library/cls_main.h"
#include "util/quicksort.h"

namespace tallow {
namespace {

/// One of the four sort orders of the list, which clicks cycle through.
struct ListOrder {
  std::string_view header;
  SongColumn key;
  void (*sort)(TextTable&, std::int32_t, std::int32_t, std::int16_t, std::int16_t);
};

constexpr int kFirstOrder = 1;
constexpr int kLastOrder = 4;

constexpr ListOrder kOrders[kLastOrder] = {
    {"Name    --   ", kFileName, &SortCity::QuickSortStringsAscending},
    {"Name    --   ", kFileName, &SortCity::QuickSortStringsDescending},
    {"By Rank -- best to worst", kSongRank, &SortCity::QuickSortNumericDecending},
    {"By Rank -- worst to best", kSongRank, &SortCity::QuickSortNumericAscending},
};

/// The positions, from 0, of a folder's songs that are shown in its list.
std::vector<std::size_t> ShownPositions(const std::vector<SongEntry>& entries,
                                        const clsMain& library) {
  std::vector<std::size_t> positions;
  positions.reserve(entries.size());
  for (std::size_t k = 0; k < entries.size(); ++k)
    if (!library.IsHidden(entries[k].SubItem())) positions.push_back(k);
  return positions;
}

/// The shown songs of a folder as a table of two columns: the sort key and the record number.
/// Sorting the table does not move hidden songs.
class KeyTable : public TextTable {
 public:
  static constexpr std::int16_t kKey = 1;
  static constexpr std::int16_t kColumns = 2;

  KeyTable(std::vector<SongEntry>& entries, const clsMain& library, SongColumn key)
      : entries_(entries),
        library_(library),
        key_(key),
        positions_(ShownPositions(entries, library)),
        origins_(entries.size()) {
    std::iota(origins_.begin(), origins_.end(), 0);
  }

  std::int32_t Rows() const noexcept { return static_cast<std::int32_t>(positions_.size()); }

  /// For each position, the position that its song had before the sort; both from 0.
  std::vector<std::int32_t>& Origins() noexcept { return origins_; }

  std::string_view Cell(std::int16_t /*column*/, std::int32_t row) const override {
    const std::int32_t record = entries_[PositionOf(row)].SubItem();
    // An entry that labelling skipped may refer to no song.
    return library_.Song(record).Exists() ? library_.Mp3Info(key_, record) : "0";
  }

  void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                std::int16_t /*columns*/) override {
    std::vector<std::int32_t> records(order.size());
    std::vector<std::int32_t> origins(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
      const std::size_t from = PositionOf(order[k]);
      records[k] = entries_[from].SubItem();
      origins[k] = origins_[from];
    }
    for (std::size_t k = 0; k < order.size(); ++k) {
      const std::size_t to = PositionOf(first + static_cast<std::int32_t>(k));
      entries_[to].SubItem(records[k]);
      origins_[to] = origins[k];
    }
  }

 private:
  std::size_t PositionOf(std::int32_t row) const {
    return positions_[static_cast<std::size_t>(row - 1)];
  }

  std::vector<SongEntry>& entries_;
  const clsMain& library_;
  SongColumn key_;
  std::vector<std::size_t> positions_;
  std::vector<std::int32_t> origins_;
};

}  // namespace

std::string_view SongListOrder::SortByNext(Folder& folder, const clsMain& library,
                                           EditHistory& history) {
  const int state = state_ == 0 ? kFirstOrder : state_;
  const ListOrder& order = kOrders[state - 1];
  KeyTable table(folder.Items(), library, order.key);
  history.Begin(&folder, "Sort Songs");
  const auto end_step = [&] {
    history.SongsReordered(folder, std::move(table.Origins()));
    history.End();
  };
  try {
    order.sort(table, 1, table.Rows(), KeyTable::kKey, KeyTable::kColumns);
  } catch (...) {
    // Some songs have already moved.
    end_step();
    throw;
  }
  end_step();
  state_ = state == kLastOrder ? kFirstOrder : state + 1;
  return order.header;
}

void SongListOrder::SortBy(Folder& folder, const clsMain& library, EditHistory& history,
                           const ColumnKeys& keys, bool descending) {
  // Sorted before the step begins: when the keys cannot be had, no step stays open.
  std::vector<std::int32_t> order = SortSongsByColumn(folder, library, keys, descending);
  history.Begin(&folder, "Sort Songs");
  history.SongsReordered(folder, std::move(order));
  history.End();
  Reset();
}

std::vector<std::int32_t> SortSongsByColumn(Folder& folder, const clsMain& library,
                                            const ColumnKeys& keys, bool descending) {
  std::vector<SongEntry>& entries = folder.Items();
  const std::vector<std::size_t> positions = ShownPositions(entries, library);
  std::vector<std::int32_t> records(positions.size());
  std::ranges::transform(positions, records.begin(),
                         [&](std::size_t position) { return entries[position].SubItem(); });
  const std::vector<std::int32_t> order = OrderByColumn(keys(records), descending);
  std::vector<std::int32_t> origins(entries.size());
  std::iota(origins.begin(), origins.end(), 0);
  for (std::size_t k = 0; k < order.size(); ++k) {
    const auto from = static_cast<std::size_t>(order[k]);
    entries[positions[k]].SubItem(records[from]);
    origins[positions[k]] = static_cast<std::int32_t>(positions[from]);
  }
  return origins;
}

}  // namespace tallow

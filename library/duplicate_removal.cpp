// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/duplicate_removal.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "util/like.h"
#include "util/number.h"

namespace tallow {
namespace {

/// The order and the names of the table's rows while duplicates are taken out. Carries out on the
/// table what it came to when it goes out of scope.
class Removal {
 public:
  explicit Removal(SongTable& table) : table_(table) {
    const auto rows = static_cast<std::size_t>(table.rows());
    std::vector<std::string_view> names(rows);
    for (std::size_t k = 0; k < rows; ++k)
      names[k] = table.Cell(kFileName, static_cast<std::int32_t>(k + 1));
    const std::vector<std::int32_t> ranks = RankText(names);
    order_.resize(rows);
    songs_.resize(rows);
    for (std::size_t k = 0; k < rows; ++k) {
      const auto row = static_cast<std::int32_t>(k + 1);
      // An emptied name ranks before all others, with the names that were empty from the start.
      order_[k] = {names[k].empty() ? kEmptyRank : ranks[k] + 1, row};
      songs_[k] = {names[k], HasWildcards(names[k]), table.Cell(kFileIsThere, row) == "1"};
    }
  }
  Removal(const Removal&) = delete;
  Removal& operator=(const Removal&) = delete;

  ~Removal() {
    std::vector<std::int32_t> order;
    order.reserve(order_.size() + cut_.size());
    for (const Place& place : order_) order.push_back(place.row);
    order.insert(order.end(), cut_.begin(), cut_.end());
    for (const Place& place : order_)
      if (Song(place).name.empty()) table_.SetCell(kFileName, place.row, {});
    table_.MoveRows(1, order, kSongColumns);
    table_.Resize(static_cast<std::int32_t>(order_.size()));
  }

  void Run() {
    bool again = true;
    while (again && !order_.empty()) {
      Sort(std::less<>());
      for (std::size_t i = 1; i < order_.size(); ++i) CompareNeighbours(order_[i - 1], order_[i]);
      Sort(std::greater<>());
      again = CutEmptied();
    }
  }

 private:
  static constexpr std::int32_t kEmptyRank = 0;

  /// What stands at one place of the sorted table.
  struct Place {
    std::int32_t rank;  ///< of the name, see RankText
    std::int32_t row;   ///< in the table, which does not move meanwhile
  };
  struct SongState {
    std::string_view name;
    bool wildcards = false;
    bool there = false;
  };

  SongState& Song(const Place& place) noexcept {
    return songs_[static_cast<std::size_t>(place.row - 1)];
  }

  template <typename Less>
  void Sort(Less less) {
    const auto at = [this](std::int32_t place) -> Place& {
      return order_[static_cast<std::size_t>(place - 1)];
    };
    QuickSortPlaces(
        1, static_cast<std::int32_t>(order_.size()),
        [&](std::int32_t place) { return at(place).rank; },
        [&](std::int32_t a, std::int32_t b) { std::swap(at(a), at(b)); }, less);
  }

  void CompareNeighbours(Place& first, Place& second) {
    // Names of different rank can only be the same by a pattern.
    if (first.rank != second.rank && !Song(second).wildcards) return;
    if (!Song(first).there || !Song(second).there || !SameName(Song(first).name, Song(second).name))
      return;
    const bool first_stays = Number(first) <= Number(second);
    Empty(first_stays ? second : first);
  }

  std::int32_t Number(const Place& place) const {
    return ConvertToInt32(table_.Cell(kRecordNumber, place.row));
  }

  void Empty(Place& place) {
    Song(place).name = {};
    Song(place).wildcards = false;
    place.rank = kEmptyRank;
  }

  /// Cuts the emptied rows, which a descending sort has put last; returns whether there were any.
  bool CutEmptied() {
    if (order_.empty() || order_.back().rank != kEmptyRank) return false;
    const auto first = std::find_if(order_.begin(), order_.end(),
                                    [](const Place& place) { return place.rank == kEmptyRank; });
    for (auto place = first; place != order_.end(); ++place) cut_.push_back(place->row);
    order_.erase(first, order_.end());
    return true;
  }

  SongTable& table_;
  std::vector<Place> order_;
  std::vector<SongState> songs_;   ///< by row of the table, from 0
  std::vector<std::int32_t> cut_;  ///< rows that are gone
};

}  // namespace

void RemoveDuplicates(SongTable& table) {
  if (table.rows() == 0) return;
  Removal(table).Run();
}

}  // namespace tallow

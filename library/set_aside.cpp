// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/set_aside.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "library/folder_scan.h"
#include "library/song_formats.h"
#include "util/number.h"

namespace tallow {
namespace {

/// Marks all songs of a file name but the one with the lowest record number.
class Namesakes {
 public:
  Namesakes(const SongTable& table, std::vector<char>& set_aside)
      : table_(table), set_aside_(set_aside) {
    lowest_.reserve(set_aside.size());
  }

  void Add(std::int32_t row) {
    const auto [first, is_new] = lowest_.emplace(table_.Cell(kFileName, row), row);
    if (is_new) return;
    if (NumberOf(row) < NumberOf(first->second)) std::swap(row, first->second);
    set_aside_[static_cast<std::size_t>(row - 1)] = 1;
  }

 private:
  std::int32_t NumberOf(std::int32_t row) const {
    return NumericValue(table_.Cell(kRecordNumber, row));
  }

  const SongTable& table_;
  std::vector<char>& set_aside_;
  std::unordered_map<std::string_view, std::int32_t> lowest_;
};

}  // namespace

bool IsOfOtherFormat(std::string_view name, const Switches& switches) {
  return !IsSongName(name, switches) && IsSongName(name, kModernStyle);
}

void SetAside(SongTable& table, const Switches& switches) {
  if (switches.more_formats && switches.songs_by_path) return table.SetAside({});
  std::vector<char> set_aside(static_cast<std::size_t>(table.rows()));
  Namesakes namesakes(table, set_aside);
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    if (table.Cell(kFileIsThere, row) != kPresent) continue;
    const std::string_view name = table.Cell(kFileName, row);
    if (IsOfOtherFormat(name, switches))
      set_aside[static_cast<std::size_t>(row - 1)] = 1;
    else if (!switches.songs_by_path)
      namesakes.Add(row);
  }
  if (std::find(set_aside.begin(), set_aside.end(), 1) == set_aside.end()) set_aside.clear();
  table.SetAside(std::move(set_aside));
}

std::vector<std::int32_t> RowsToBlank(const SongTable& table, const Switches& switches,
                                      std::vector<std::int32_t> missing) {
  if (std::ranges::none_of(missing, [&](std::int32_t row) { return table.IsSetAside(row); }))
    return missing;
  const auto number = [&](std::int32_t row) {
    return NumericValue(table.Cell(kRecordNumber, row));
  };
  std::vector<char> is_missing(static_cast<std::size_t>(table.rows()) + 1);
  for (const std::int32_t row : missing) is_missing[static_cast<std::size_t>(row)] = 1;
  // By file name, the lowest number of the songs that are not missing.
  std::unordered_map<std::string_view, std::int32_t> first_left;
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    if (is_missing[static_cast<std::size_t>(row)] != 0 || table.Cell(kFileIsThere, row) != kPresent)
      continue;
    const auto [first, is_new] = first_left.emplace(table.Cell(kFileName, row), number(row));
    if (!is_new) first->second = std::min(first->second, number(row));
  }
  std::erase_if(missing, [&](std::int32_t row) {
    if (!table.IsSetAside(row)) return false;
    const std::string_view name = table.Cell(kFileName, row);
    const auto first = first_left.find(name);
    return IsOfOtherFormat(name, switches) ||
           (first != first_left.end() && first->second < number(row));
  });
  return missing;
}

}  // namespace tallow

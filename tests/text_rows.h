// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "util/quicksort.h"

namespace tallow {

/// A minimal TextTable of strings.
class TextRows : public TextTable {
 public:
  TextRows() = default;
  TextRows(std::initializer_list<std::vector<std::string>> rows) : rows(rows) {}

  std::string_view Cell(std::int16_t column, std::int32_t row) const override {
    return rows.at(static_cast<std::size_t>(row - 1)).at(static_cast<std::size_t>(column - 1));
  }
  void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                std::int16_t columns) override {
    const auto before = rows;
    for (std::size_t k = 0; k < order.size(); ++k)
      for (std::size_t c = 0; c < static_cast<std::size_t>(columns); ++c)
        rows[static_cast<std::size_t>(first - 1) + k][c] =
            before[static_cast<std::size_t>(order[k] - 1)][c];
  }

  std::vector<std::vector<std::string>> rows;
};

}  // namespace tallow

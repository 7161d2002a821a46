// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "util/number.h"
#include "util/text.h"

namespace tallow {

/// The slow reference implementation of SortCity: recursive, moves whole rows, and computes each
/// key at every comparison. Rows and columns count from 1.
class ReferenceQuicksort {
 public:
  using Rows = std::vector<std::vector<std::string>>;

  ReferenceQuicksort(Rows& rows, bool ascending, bool as_text, std::size_t key_column,
                     std::size_t columns)
      : rows_(rows),
        ascending_(ascending),
        as_text_(as_text),
        key_(key_column),
        columns_(columns) {}

  void Sort(std::int32_t lo, std::int32_t hi) {
    std::int32_t i = lo;
    std::int32_t j = hi;
    const auto middle = static_cast<std::int32_t>(std::nearbyint((lo + hi) / 2.0));
    const Key pivot = KeyOf(middle);
    while (i <= j) {
      for (;;) {
        const bool passes = ascending_ ? KeyOf(i) < pivot : pivot < KeyOf(i);
        if (!(passes && i < hi)) break;
        ++i;
      }
      for (;;) {
        const bool passes = ascending_ ? pivot < KeyOf(j) : KeyOf(j) < pivot;
        if (!(passes && j > lo)) break;
        --j;
      }
      if (i <= j) {
        for (std::size_t c = 0; c < columns_; ++c) std::swap(Row(i)[c], Row(j)[c]);
        ++i;
        --j;
      }
    }
    if (lo < j) Sort(lo, j);
    if (i < hi) Sort(i, hi);
  }

 private:
  struct Key {
    std::string text;
    std::int32_t number = 0;
    bool operator<(const Key& other) const {
      return text != other.text ? text < other.text : number < other.number;
    }
  };

  std::vector<std::string>& Row(std::int32_t row) {
    return rows_[static_cast<std::size_t>(row - 1)];
  }
  Key KeyOf(std::int32_t row) {
    const std::string& cell = Row(row)[key_ - 1];
    return as_text_ ? Key{ToLower(cell)} : Key{{}, ConvertToInt32(cell)};
  }

  Rows& rows_;
  bool ascending_;
  bool as_text_;
  std::size_t key_;
  std::size_t columns_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/quicksort.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <thread>

#include "util/number.h"
#include "util/text.h"
#include "util/threads.h"

namespace tallow {
namespace {

/// A row during the sort. The key and the original row are adjacent, so that a scan and a swap
/// access one cache line.
struct KeyedRow {
  std::int32_t key;
  std::int32_t row;
};

/// Moves the table's rows in its destructor, so that after an exception the table is as far as the
/// sort got.
class OrderedRows {
 public:
  OrderedRows(TextTable& table, std::int32_t lo, std::int32_t hi, std::int16_t columns)
      : table_(table), lo_(lo), columns_(columns), rows_(static_cast<std::size_t>(hi - lo + 1)) {
    for (std::size_t k = 0; k < rows_.size(); ++k)
      rows_[k] = {0, lo + static_cast<std::int32_t>(k)};
  }
  OrderedRows(const OrderedRows&) = delete;
  OrderedRows& operator=(const OrderedRows&) = delete;
  ~OrderedRows() {
    std::vector<std::int32_t> order(rows_.size());
    std::transform(rows_.begin(), rows_.end(), order.begin(),
                   [](const KeyedRow& r) { return r.row; });
    table_.MoveRows(lo_, order, columns_);
  }

  std::vector<KeyedRow>& rows() noexcept { return rows_; }
  /// The row that is at a place now; places have the same numbers as the table's rows.
  KeyedRow& at(std::int32_t place) noexcept { return rows_[static_cast<std::size_t>(place - lo_)]; }

 private:
  TextTable& table_;
  std::int32_t lo_;
  std::int16_t columns_;
  std::vector<KeyedRow> rows_;
};

template <typename Less>
void SortByKeys(OrderedRows& rows, std::int32_t lo, std::int32_t hi) {
  QuickSortPlaces(
      lo, hi, [&](std::int32_t place) { return rows.at(place).key; },
      [&](std::int32_t a, std::int32_t b) { std::swap(rows.at(a), rows.at(b)); }, Less());
}

template <typename Less>
void SortStrings(TextTable& table, std::int32_t lo, std::int32_t hi, std::int16_t key_column,
                 std::int16_t columns) {
  if (lo > hi) return;
  OrderedRows rows(table, lo, hi, columns);
  std::vector<std::string_view> texts;
  texts.reserve(rows.rows().size());
  for (std::int32_t row = lo; row <= hi; ++row) texts.push_back(table.Cell(key_column, row));
  const std::vector<std::int32_t> ranks = RankText(texts);
  for (std::size_t k = 0; k < ranks.size(); ++k) rows.rows()[k].key = ranks[k];
  SortByKeys<Less>(rows, lo, hi);
}

template <typename Less>
void SortNumbers(TextTable& table, std::int32_t lo, std::int32_t hi, std::int16_t key_column,
                 std::int16_t columns) {
  if (lo > hi) return;
  OrderedRows rows(table, lo, hi, columns);
  bool all_numbers = true;
  for (KeyedRow& row : rows.rows()) {
    const std::optional<std::int32_t> number = TryConvertToInt32(table.Cell(key_column, row.row));
    all_numbers = all_numbers && number.has_value();
    row.key = number.value_or(0);
  }
  if (all_numbers) {
    SortByKeys<Less>(rows, lo, hi);
    return;
  }
  // At least one cell is not a number and will throw. The rows swapped before that must stay
  // swapped, so convert each cell only when the sort needs its key.
  QuickSortPlaces(
      lo, hi,
      [&](std::int32_t place) {
        return ConvertToInt32(table.Cell(key_column, rows.at(place).row));
      },
      [&](std::int32_t a, std::int32_t b) { std::swap(rows.at(a), rows.at(b)); }, Less());
}

/// A text to be ranked. The eight bytes after the prefix common to all texts are stored as one
/// number, which decides most comparisons.
struct RankEntry {
  std::uint64_t prefix;
  std::uint32_t offset;  ///< of the lower-cased text in the shared buffer
  std::uint32_t length;
  std::int32_t index;
};

std::uint64_t PrefixOf(const char* text, std::size_t length) noexcept {
  std::uint64_t prefix = 0;
  const std::size_t count = std::min<std::size_t>(length, sizeof prefix);
  for (std::size_t i = 0; i < count; ++i)
    prefix |= std::uint64_t{static_cast<unsigned char>(text[i])} << (56 - 8 * i);
  return prefix;
}

/// Whether a text is the same view as the previous text, as for consecutive songs of one folder.
bool IsSameViewAsPrevious(std::span<const std::string_view> texts, std::size_t i) noexcept {
  return i > 0 && texts[i].data() == texts[i - 1].data() && texts[i].size() == texts[i - 1].size();
}

/// std::sort on two threads when there are enough entries, otherwise on one.
template <typename Before>
void SortOnTwoCores(std::vector<RankEntry>& entries, const Before& before) {
  constexpr std::size_t kWorthAThread = 10000;
  const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(entries.size() / 2);
  if (entries.size() < kWorthAThread) {
    std::sort(entries.begin(), entries.end(), before);
    return;
  }
  std::thread upper = StartThreadOrRun([&] { std::sort(middle, entries.end(), before); });
  std::sort(entries.begin(), middle, before);
  Join(upper);
  std::inplace_merge(entries.begin(), middle, entries.end(), before);
}

}  // namespace

std::vector<std::int32_t> RankText(std::span<const std::string_view> texts) {
  std::string lowered;
  lowered.reserve(
      std::accumulate(texts.begin(), texts.end(), std::size_t{0},
                      [](std::size_t sum, std::string_view text) { return sum + text.size(); }));
  std::vector<RankEntry> entries;
  entries.reserve(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (IsSameViewAsPrevious(texts, i)) continue;
    const std::size_t offset = lowered.size();
    AppendLower(lowered, texts[i]);
    entries.push_back({0, static_cast<std::uint32_t>(offset),
                       static_cast<std::uint32_t>(lowered.size() - offset),
                       static_cast<std::int32_t>(i)});
  }
  const std::string_view all(lowered);
  const auto text_of = [all](const RankEntry& e) { return all.substr(e.offset, e.length); };
  std::string_view beginning = entries.empty() ? std::string_view() : text_of(entries.front());
  for (const RankEntry& entry : entries) {
    const std::string_view text = text_of(entry);
    const auto* const end =
        std::mismatch(beginning.begin(), beginning.end(), text.begin(), text.end()).first;
    beginning = beginning.substr(0, static_cast<std::size_t>(end - beginning.begin()));
  }
  for (RankEntry& entry : entries) {
    const std::string_view rest = text_of(entry).substr(beginning.size());
    entry.prefix = PrefixOf(rest.data(), rest.size());
  }
  const auto compare_rest = [&](const RankEntry& a, const RankEntry& b) {
    return text_of(a).compare(text_of(b));
  };
  SortOnTwoCores(entries, [&](const RankEntry& a, const RankEntry& b) {
    return a.prefix != b.prefix ? a.prefix < b.prefix : compare_rest(a, b) < 0;
  });
  std::vector<std::int32_t> ranks(texts.size());
  std::int32_t rank = 0;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    if (k > 0 && (entries[k].prefix != entries[k - 1].prefix ||
                  compare_rest(entries[k - 1], entries[k]) != 0))
      ++rank;
    ranks[static_cast<std::size_t>(entries[k].index)] = rank;
  }
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (IsSameViewAsPrevious(texts, i)) ranks[i] = ranks[i - 1];
  return ranks;
}

void SortCity::QuickSortStringsAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                         std::int16_t key_column, std::int16_t columns) {
  SortStrings<std::less<>>(table, lo, hi, key_column, columns);
}

void SortCity::QuickSortStringsDescending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                          std::int16_t key_column, std::int16_t columns) {
  SortStrings<std::greater<>>(table, lo, hi, key_column, columns);
}

void SortCity::QuickSortNumericAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                         std::int16_t key_column, std::int16_t columns) {
  SortNumbers<std::less<>>(table, lo, hi, key_column, columns);
}

void SortCity::QuickSortNumericDecending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                         std::int16_t key_column, std::int16_t columns) {
  SortNumbers<std::greater<>>(table, lo, hi, key_column, columns);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_table.h"

#include <algorithm>
#include <string>
#include <utility>

#include "util/errors.h"

namespace tallow {
namespace {

/// Puts elements into a new order, see TextTable::MoveRows.
template <typename Element>
void MoveElements(std::vector<Element>& elements, std::int32_t first,
                  std::span<const std::int32_t> order) {
  std::vector<Element> moved(order.size());
  for (std::size_t k = 0; k < order.size(); ++k)
    moved[k] = elements[static_cast<std::size_t>(order[k] - 1)];
  std::copy(moved.begin(), moved.end(), elements.begin() + (first - 1));
}

}  // namespace

SongTable::SongTable() : pool_(std::make_unique<TextPool>()) {}

void SongTable::Check(std::int16_t column, std::int32_t row) const {
  if (column < 1 || column > kSongColumns)
    throw SubscriptError("Column " + std::to_string(column) + " is outside the song table (1 to " +
                         std::to_string(kSongColumns) + ").");
  if (row < 1 || row > rows_)
    throw SubscriptError("Row " + std::to_string(row) + " is outside the song table (1 to " +
                         std::to_string(rows_) + ").");
}

bool SongTable::Repeats(std::int16_t column) noexcept {
  return column != kFileName && column != kRecordNumber;
}

std::string_view SongTable::Cell(std::int16_t column, std::int32_t row) const {
  Check(column, row);
  const std::vector<TextHandle>& cells = Column(column);
  const auto index = static_cast<std::size_t>(row - 1);
  return index < cells.size() ? pool_->Text(cells[index]) : std::string_view();
}

void SongTable::SetCell(std::int16_t column, std::int32_t row, std::string_view text) {
  Check(column, row);
  std::vector<TextHandle>& cells = Column(column);
  const auto index = static_cast<std::size_t>(row - 1);
  if (index >= cells.size()) {
    if (text.empty()) return;
    cells.resize(static_cast<std::size_t>(rows_));
  }
  TextHandle& cell = cells[index];
  if (pool_->Text(cell) == text) return;
  ++version_;
  if (column == kSongRank) ++rank_changes_;
  // Consecutive rows usually have the same folder, flag and rank, so try the previous row's handle
  // first.
  if (index > 0 && pool_->Text(cells[index - 1]) == text)
    cell = cells[index - 1];
  else
    cell = Repeats(column) ? pool_->Share(text) : pool_->Add(text);
}

void SongTable::Remove(const std::vector<char>& is_removed) {
  const auto kept = std::count(is_removed.begin(), is_removed.end(), 0);
  if (kept == static_cast<std::ptrdiff_t>(is_removed.size())) return;
  std::vector<std::int32_t> order;
  order.reserve(is_removed.size());
  for (const bool at_end : {false, true})
    for (std::size_t k = 0; k < is_removed.size(); ++k)
      if ((is_removed[k] != 0) == at_end) order.push_back(static_cast<std::int32_t>(k + 1));
  MoveRows(1, order, kSongColumns);
  Resize(static_cast<std::int32_t>(kept));
}

void SongTable::Resize(std::int32_t rows) {
  if (rows == rows_) return;
  ++version_;
  rows_ = rows;
  facts_.resize(static_cast<std::size_t>(rows));
  if (!set_aside_.empty()) set_aside_.resize(static_cast<std::size_t>(rows));
  for (std::vector<TextHandle>& cells : columns_)
    if (!cells.empty()) cells.resize(static_cast<std::size_t>(rows));
}

void SongTable::SetAside(std::vector<char> set_aside) {
  if (set_aside == set_aside_) return;
  ++version_;
  set_aside_ = std::move(set_aside);
}

void SongTable::Pack() {
  std::size_t live = 0;
  for (const std::int16_t column : {kFileName, kRecordNumber})
    for (const TextHandle cell : Column(column)) live += pool_->Text(cell).size() + 1;
  if (pool_->size() < 2 * live + (std::size_t{1} << 20U)) return;
  auto packed = std::make_unique<TextPool>();
  for (std::int16_t column = 1; column <= kSongColumns; ++column)
    for (TextHandle& cell : Column(column))
      cell = Repeats(column) ? packed->Share(pool_->Text(cell)) : packed->Add(pool_->Text(cell));
  pool_ = std::move(packed);
  for (std::vector<TextHandle>& cells : columns_) cells.shrink_to_fit();
}

void SongTable::MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                         std::int16_t columns) {
  const auto stays = [&, place = first](std::int32_t row) mutable { return row == place++; };
  if (std::all_of(order.begin(), order.end(), stays)) return;
  ++version_;
  for (std::int16_t column = 1; column <= columns; ++column)
    if (!Column(column).empty()) MoveElements(Column(column), first, order);
  MoveElements(facts_, first, order);
  if (!set_aside_.empty()) MoveElements(set_aside_, first, order);
}

bool SongTable::SameStoredText(std::int16_t column, std::int32_t a, std::int32_t b) const noexcept {
  const std::vector<TextHandle>& cells = Column(column);
  return cells.empty() ||
         cells[static_cast<std::size_t>(a - 1)] == cells[static_cast<std::size_t>(b - 1)];
}

void BlankSong(SongTable& table, std::int32_t row) {
  for (const std::int16_t column : {kFileIsThere, kFileLocation, kFileName})
    table.SetCell(column, row, "0");
}

}  // namespace tallow

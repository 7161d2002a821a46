// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/column_choice.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/preferences.h"

namespace tallow {
namespace {

constexpr ListColumn kClassicColumns[] = {ListColumn::kName, ListColumn::kKey};
constexpr ListColumn kModernColumns[] = {
    ListColumn::kPlaying, ListColumn::kPosition, ListColumn::kTitle,  ListColumn::kArtist,
    ListColumn::kAlbum,   ListColumn::kYear,     ListColumn::kLength, ListColumn::kRank};

const char* KeyOf(bool details) { return details ? "columns.modern" : "columns.classic"; }

/// The column that a text of the file names; no value when this version does not know it.
std::optional<ChosenColumn> ColumnOfText(std::string_view text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  const std::optional<ListColumn> column = ColumnOfId(text.substr(0, blank));
  if (!column) return std::nullopt;
  const std::string_view number = text.substr(std::min(blank + 1, text.size()));
  int width = 0;
  const char* const end = number.data() + number.size();
  const auto read = std::from_chars(std::to_address(number.begin()), end, width);
  const bool is_width = read.ec == std::errc() && read.ptr == end && width > 0;
  return ChosenColumn{*column, is_width ? std::min(width, kMaxColumnWidth) : 0};
}

std::string TextOf(const ChosenColumn& chosen) {
  std::string text(IdOf(chosen.column));
  if (chosen.width > 0) text += " " + std::to_string(std::min(chosen.width, kMaxColumnWidth));
  return text;
}

bool Has(const std::vector<ChosenColumn>& columns, ListColumn column) {
  return std::ranges::find(columns, column, &ChosenColumn::column) != columns.end();
}

}  // namespace

std::vector<ChosenColumn> FirstColumns(bool details) {
  std::vector<ChosenColumn> columns;
  if (details)
    for (const ListColumn column : kModernColumns) columns.push_back({column});
  else
    for (const ListColumn column : kClassicColumns) columns.push_back({column});
  return columns;
}

std::vector<ChosenColumn> ColumnsOf(const Preferences& preferences, bool details) {
  std::vector<ChosenColumn> columns;
  for (const std::string& text : preferences.Get(KeyOf(details), std::vector<std::string>()))
    if (const auto column = ColumnOfText(text); column && !Has(columns, column->column))
      columns.push_back(*column);
  return columns.empty() ? FirstColumns(details) : columns;
}

void ChooseColumns(Preferences& preferences, bool details,
                   const std::vector<ChosenColumn>& columns) {
  std::vector<std::string> texts;
  texts.reserve(columns.size());
  for (const ChosenColumn& column : columns) texts.push_back(TextOf(column));
  preferences.Set(KeyOf(details), texts);
}

std::vector<ChosenColumn> WithColumnMoved(std::vector<ChosenColumn> columns, ListColumn column,
                                          bool left) {
  const auto place = std::ranges::find(columns, column, &ChosenColumn::column);
  if (place == columns.end()) return columns;
  if (left && place != columns.begin()) std::iter_swap(place, place - 1);
  if (!left && place + 1 != columns.end()) std::iter_swap(place, place + 1);
  return columns;
}

std::vector<ChosenColumn> WithColumn(std::vector<ChosenColumn> columns, ListColumn column,
                                     bool shown) {
  if (Has(columns, column) == shown) return columns;
  if (shown)
    columns.insert(
        std::ranges::find_if(columns, [&](const ChosenColumn& one) { return one.column > column; }),
        {column});
  else if (columns.size() > 1)
    std::erase_if(columns, [&](const ChosenColumn& one) { return one.column == column; });
  return columns;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/list_column.h"

#include <cstddef>

namespace tallow {
namespace {

struct ColumnTexts {
  std::string_view id;
  std::string_view title;
  bool is_number;
};

/// In the order of ListColumn.
constexpr ColumnTexts kTexts[kListColumns] = {
    {"name", "Name", false},       {"key", "Key", false},
    {"playing", "Playing", false}, {"position", "Position", true},
    {"title", "Title", false},     {"artist", "Artist", false},
    {"album", "Album", false},     {"discTrack", "Disc/Track", true},
    {"year", "Year", true},        {"genre", "Genre", false},
    {"length", "Length", true},    {"rank", "Rank", false},
    {"plays", "Plays", true},      {"lastPlayed", "Last Played", false},
    {"added", "Added", false},     {"format", "Format", false},
    {"bitRate", "Bit Rate", true}, {"folder", "Folder", false},
};

const ColumnTexts& TextsOf(ListColumn column) noexcept {
  return kTexts[static_cast<std::size_t>(column)];
}

}  // namespace

std::string_view IdOf(ListColumn column) noexcept { return TextsOf(column).id; }

std::optional<ListColumn> ColumnOfId(std::string_view id) noexcept {
  for (int k = 0; k < kListColumns; ++k)
    if (kTexts[k].id == id) return static_cast<ListColumn>(k);
  return std::nullopt;
}

std::string_view TitleOf(ListColumn column) noexcept { return TextsOf(column).title; }

std::string_view HeaderOf(ListColumn column) noexcept {
  return column == ListColumn::kPlaying ? std::string_view() : TitleOf(column);
}

bool IsNumber(ListColumn column) noexcept { return TextsOf(column).is_number; }

bool CanSort(ListColumn column) noexcept {
  return column != ListColumn::kPlaying && column != ListColumn::kPosition;
}

bool SortsDescendingFirst(ListColumn column) noexcept {
  return column == ListColumn::kRank || column == ListColumn::kPlays ||
         column == ListColumn::kLastPlayed || column == ListColumn::kAdded;
}

}  // namespace tallow

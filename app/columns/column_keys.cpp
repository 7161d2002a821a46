// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/column_keys.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <unordered_map>

#include "app/columns/song_columns.h"
#include "app/library_details.h"
#include "app/playing/play_counts.h"
#include "details/details_table.h"
#include "library/cls_main.h"
#include "library/text_pool.h"
#include "util/fold.h"

namespace tallow {
namespace {

std::string NaturalBytes(std::string_view text) {
  std::string bytes;
  AppendNaturalBytes(bytes, Folded(text));
  return bytes;
}

/// The positions of texts in natural order, from 1; equal ones have the same. 0 for an empty text.
std::vector<std::uint32_t> PositionsInOrder(const std::vector<std::string>& keys) {
  std::vector<std::uint32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::sort(order, [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
  std::vector<std::uint32_t> positions(keys.size());
  std::uint32_t position = 0;
  const std::string* last = nullptr;
  for (const std::uint32_t index : order) {
    const std::string& key = keys[index];
    if (key.empty()) continue;
    if (last == nullptr || *last != key) ++position;
    last = &key;
    positions[index] = position;
  }
  return positions;
}

/// The positions of the texts of songs that many songs share.
std::vector<std::uint32_t> PositionsOfShared(const DetailsTable& table,
                                             std::span<const std::int32_t> records,
                                             TextHandle DetailsTable::SharedTexts::*text) {
  std::unordered_map<TextHandle, std::size_t> indexes;
  std::vector<std::string> keys;
  std::vector<std::size_t> index_of(records.size());
  for (std::size_t k = 0; k < records.size(); ++k) {
    const TextHandle handle = table.Shared(records[k]).*text;
    const auto [found, is_new] = indexes.emplace(handle, keys.size());
    if (is_new) keys.push_back(NaturalBytes(table.Text(handle)));
    index_of[k] = found->second;
  }
  const std::vector<std::uint32_t> positions = PositionsInOrder(keys);
  std::vector<std::uint32_t> result(records.size());
  std::ranges::transform(index_of, result.begin(),
                         [&](std::size_t index) { return positions[index]; });
  return result;
}

}  // namespace

std::vector<ColumnKey> KeysOfColumn(const clsMain& library, LibraryDetails& details,
                                    PlayCounts& counts, ListColumn column,
                                    std::span<const std::int32_t> records) {
  const DetailsTable& table = details.Table();
  using Shared = DetailsTable::SharedTexts;
  std::vector<ColumnKey> keys(records.size());
  const std::vector<std::uint32_t> albums = PositionsOfShared(table, records, &Shared::album);
  for (std::size_t k = 0; k < records.size(); ++k) {
    const DetailsRow row = table.Row(records[k]);
    keys[k].album = albums[k];
    keys[k].disc = row.disc;
    keys[k].track = row.track;
  }
  const auto set_shared = [&](TextHandle Shared::*text) {
    const std::vector<std::uint32_t> positions = PositionsOfShared(table, records, text);
    for (std::size_t k = 0; k < keys.size(); ++k) keys[k].key = positions[k];
  };
  const auto set_texts = [&](const auto& text_of) {
    std::vector<std::string> texts(records.size());
    for (std::size_t k = 0; k < keys.size(); ++k)
      if (library.IsPresent(records[k])) texts[k] = NaturalBytes(text_of(records[k]));
    const std::vector<std::uint32_t> positions = PositionsInOrder(texts);
    for (std::size_t k = 0; k < keys.size(); ++k) keys[k].key = positions[k];
  };
  const auto set_numbers = [&](const auto& number_of) {
    for (std::size_t k = 0; k < keys.size(); ++k)
      if (library.IsPresent(records[k]))
        keys[k].key = static_cast<std::uint64_t>(std::max<std::int64_t>(number_of(records[k]), 0));
  };
  switch (column) {
    case ListColumn::kPlaying:
    case ListColumn::kPosition:
      break;
    case ListColumn::kName:
      set_texts([&](std::int32_t record) { return library.Song(record).Name(); });
      break;
    case ListColumn::kTitle:
      set_texts([&](std::int32_t record) { return TitleOfSong(library, details, record); });
      break;
    case ListColumn::kFolder:
      set_texts([&](std::int32_t record) { return library.Song(record).Folder(); });
      break;
    case ListColumn::kArtist:
      set_shared(&Shared::artist);
      break;
    case ListColumn::kAlbum:
      set_shared(&Shared::album);
      break;
    case ListColumn::kGenre:
      set_shared(&Shared::genre);
      break;
    case ListColumn::kFormat:
      set_shared(&Shared::format);
      break;
    case ListColumn::kKey:
      set_numbers([](std::int32_t record) { return record; });
      break;
    case ListColumn::kDiscTrack:
      set_numbers([&](std::int32_t record) -> std::int64_t {
        const DetailsRow row = table.Row(record);
        return row.track > 0 ? (std::int64_t{row.disc} << 32U) + row.track : 0;
      });
      break;
    case ListColumn::kYear:
      set_numbers([&](std::int32_t record) { return table.Row(record).year; });
      break;
    case ListColumn::kLength:
      set_numbers([&](std::int32_t record) { return table.Row(record).length_ms; });
      break;
    case ListColumn::kBitRate:
      set_numbers([&](std::int32_t record) { return table.Row(record).bit_rate; });
      break;
    case ListColumn::kRank:
      set_numbers([&](std::int32_t record) {
        const std::int32_t rank = library.Song(record).Rank();
        return rank >= kLowestRank && rank <= kHighestRank ? rank : 0;
      });
      break;
    case ListColumn::kPlays:
      set_numbers(
          [&](std::int32_t record) { return counts.Of(library.Song(record).Path()).count; });
      break;
    case ListColumn::kLastPlayed:
      set_numbers([&](std::int32_t record) {
        const PlayCount count = counts.Of(library.Song(record).Path());
        return count.count > 0 ? count.last.time_since_epoch().count() : 0;
      });
      break;
    case ListColumn::kAdded:
      set_numbers([&](std::int32_t record) { return AddedDay(library, details, record); });
      break;
  }
  return keys;
}

}  // namespace tallow

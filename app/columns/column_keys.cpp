// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/column_keys.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "app/columns/given_rank.h"
#include "app/columns/song_columns.h"
#include "app/library_details.h"
#include "app/playing/play_counts.h"
#include "details/details_table.h"
#include "library/cls_main.h"
#include "library/text_pool.h"
#include "util/fold.h"
#include "util/text_order.h"

namespace tallow {
namespace {

/// Texts in one block of memory, with their positions in natural order.
class NaturalKeys {
 public:
  explicit NaturalKeys(std::size_t texts) { ends_.reserve(texts); }

  void Add(std::string_view text) {
    folded_.clear();
    AppendFolded(folded_, text);
    AppendNaturalBytes(bytes_, folded_);
    ends_.push_back(bytes_.size());
  }

  /// For each text, see PositionsOfTexts.
  std::vector<std::uint32_t> Positions() const {
    std::vector<std::string_view> views;
    views.reserve(ends_.size());
    std::size_t begin = 0;
    for (const std::size_t end : ends_) {
      views.push_back(std::string_view(bytes_).substr(begin, end - begin));
      begin = end;
    }
    return PositionsOfTexts(views);
  }

 private:
  std::string folded_;
  std::string bytes_;
  std::vector<std::size_t> ends_;
};

/// The positions of the texts of songs that many songs share.
std::vector<std::uint32_t> PositionsOfShared(const DetailsTable& table,
                                             std::span<const std::int32_t> records,
                                             TextHandle DetailsTable::SharedTexts::*text) {
  std::unordered_map<TextHandle, std::size_t> indexes;
  NaturalKeys keys(0);
  std::vector<std::size_t> index_of(records.size());
  for (std::size_t k = 0; k < records.size(); ++k) {
    const TextHandle handle = table.Shared(records[k]).*text;
    const auto [found, is_new] = indexes.emplace(handle, indexes.size());
    if (is_new) keys.Add(table.Text(handle));
    index_of[k] = found->second;
  }
  const std::vector<std::uint32_t> positions = keys.Positions();
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
    const DetailsRow row = table.Numbers(records[k]);
    keys[k].album = albums[k];
    keys[k].disc = row.disc;
    keys[k].track = row.track;
  }
  const auto set_shared = [&](TextHandle Shared::*text) {
    const std::vector<std::uint32_t> positions = PositionsOfShared(table, records, text);
    for (std::size_t k = 0; k < keys.size(); ++k) keys[k].key = positions[k];
  };
  const auto set_texts = [&](const auto& text_of) {
    NaturalKeys texts(records.size());
    for (const std::int32_t record : records)
      texts.Add(library.IsPresent(record) ? text_of(record) : std::string_view());
    const std::vector<std::uint32_t> positions = texts.Positions();
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
        const DetailsRow row = table.Numbers(record);
        return row.track > 0 ? (std::int64_t{row.disc} << 32U) + row.track : 0;
      });
      break;
    case ListColumn::kYear:
      set_numbers([&](std::int32_t record) { return table.Numbers(record).year; });
      break;
    case ListColumn::kLength:
      set_numbers([&](std::int32_t record) { return table.Numbers(record).length_ms; });
      break;
    case ListColumn::kBitRate:
      set_numbers([&](std::int32_t record) { return table.Numbers(record).bit_rate; });
      break;
    case ListColumn::kRank:
      set_numbers([&](std::int32_t record) { return GivenRank(library.Song(record).Rank()); });
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

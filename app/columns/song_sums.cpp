// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_sums.h"

#include <cstddef>

#include "app/columns/song_columns.h"
#include "app/library_details.h"
#include "details/details_table.h"
#include "library/cls_main.h"
#include "util/number.h"

namespace tallow {
namespace {

/// The details of at most this number of songs are read from the database, one by one.
constexpr std::size_t kFew = 500;

constexpr std::int64_t kKilobyte = 1000;
constexpr std::int64_t kMegabyte = 1000 * kKilobyte;
constexpr std::int64_t kGigabyte = 1000 * kMegabyte;

/// ", 48:10", ", at least 48:10" when `known` of `all` songs have a value; empty when none has.
std::string Part(const std::string& text, std::int64_t known, std::int64_t all) {
  if (known == 0) return {};
  return (known < all ? ", at least " : ", ") + text;
}

}  // namespace

SongSums SumsOf(const clsMain& library, LibraryDetails& details,
                std::span<const std::int32_t> records) {
  const DetailsTable& table = details.Table();
  std::size_t asked = 0;
  const auto length_of = [&](std::int32_t record) {
    // Every song is read in the background anyway. Asking for one that is not known yet makes
    // LibraryDetails::Version() grow when more is known.
    if (table.Knows(record) || asked == kFew) return table.Row(record).length_ms;
    ++asked;
    return details.RowOf(record).length_ms;
  };
  SongSums sums;
  for (const std::int32_t record : records) {
    ++sums.songs;
    if (!library.Song(record).Exists()) continue;
    if (const std::int32_t length = length_of(record); length > 0) {
      sums.length_ms += length;
      ++sums.lengths;
    }
    if (const std::int64_t size = library.Facts(record).size; size != kUnknownSize) {
      sums.bytes += size;
      ++sums.sizes;
    }
  }
  return sums;
}

std::string SumsText(const SongSums& shown, const std::optional<SongSums>& selected) {
  if (shown.songs == 0) return {};
  const SongSums& sums = selected ? *selected : shown;
  std::string text = selected ? GroupedNumber(selected->songs) + " of " : std::string();
  text += GroupedNumber(shown.songs) + (shown.songs == 1 ? " song" : " songs");
  if (selected) text += " selected";
  text += Part(LengthText(sums.length_ms), sums.lengths, sums.songs);
  return text + Part(SizeText(sums.bytes), sums.sizes, sums.songs);
}

std::string SizeText(std::int64_t bytes) {
  if (bytes < kMegabyte) return GroupedNumber((bytes + kKilobyte - 1) / kKilobyte) + " KB";
  if (bytes < kGigabyte) return GroupedNumber((bytes + kMegabyte / 2) / kMegabyte) + " MB";
  const std::int64_t tenths = (bytes + kGigabyte / 20) / (kGigabyte / 10);
  return GroupedNumber(tenths / 10) + "." + std::to_string(tenths % 10) + " GB";
}

}  // namespace tallow

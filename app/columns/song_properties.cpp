// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_properties.h"

#include <cstddef>
#include <functional>

#include "app/columns/list_column.h"
#include "app/columns/song_columns.h"
#include "app/columns/song_sums.h"
#include "app/library_details.h"
#include "app/playing/play_counts.h"
#include "library/cls_main.h"
#include "util/number.h"

namespace tallow {
namespace {

constexpr const char* kNotKnown = "not known";

/// Reading the details of all songs at once is faster from this number of songs on.
constexpr std::size_t kMany = 100;

/// The texts of one property: of a song, and in place of an empty one.
struct Texts {
  std::function<std::string(std::int32_t song)> of;
  const char* if_empty;
};

std::string CommonText(std::span<const std::int32_t> songs, const Texts& texts) {
  const std::string first = texts.of(songs.front());
  for (const std::int32_t song : songs.subspan(1))
    if (texts.of(song) != first) return kDifferent;
  return first.empty() ? texts.if_empty : first;
}

std::string Count(std::size_t songs) {
  return songs == 1 ? "1 song" : GroupedNumber(static_cast<std::int64_t>(songs)) + " songs";
}

/// A sum of which some parts are not known.
std::string SumText(const std::string& sum, std::size_t unknown, std::size_t songs) {
  if (unknown == songs) return kNotKnown;
  return unknown == 0 ? sum : "at least " + sum + ", not known of " + Count(unknown);
}

std::string LengthOf(std::span<const std::int32_t> songs, LibraryDetails& details) {
  std::int64_t sum = 0;
  std::size_t unknown = 0;
  for (const std::int32_t song : songs) {
    const std::int32_t length = details.RowOf(song).length_ms;
    sum += length;
    if (length <= 0) ++unknown;
  }
  return SumText(LengthText(sum), unknown, songs.size());
}

/// "61 MB (61,300,000 bytes)"
std::string ExactSizeText(std::int64_t bytes) {
  return SizeText(bytes) + " (" + GroupedNumber(bytes) + (bytes == 1 ? " byte)" : " bytes)");
}

std::string SizeOf(std::span<const std::int32_t> songs, const clsMain& library) {
  std::int64_t sum = 0;
  std::size_t unknown = 0;
  for (const std::int32_t song : songs) {
    const std::int64_t size = library.Song(song).Exists() ? library.Facts(song).size : kUnknownSize;
    if (size == kUnknownSize)
      ++unknown;
    else
      sum += size;
  }
  return SumText(ExactSizeText(sum), unknown, songs.size());
}

}  // namespace

std::vector<SongProperty> PropertiesOf(std::span<const std::int32_t> songs, const clsMain& library,
                                       LibraryDetails& details, PlayCounts& counts) {
  if (songs.size() >= kMany) details.LoadAll();
  const SongColumns columns(library, details, counts);
  std::vector<SongProperty> properties;
  const auto add = [&](const std::string& name, const Texts& texts) {
    properties.push_back({name, CommonText(songs, texts)});
  };
  const auto add_column = [&](ListColumn column, const char* if_empty = kNotKnown) {
    add(std::string(TitleOf(column)),
        {[&](std::int32_t song) { return columns.Text(column, song); }, if_empty});
  };
  const bool is_one = songs.size() == 1;
  if (!is_one) properties.push_back({"Songs", Count(songs.size())});
  add_column(ListColumn::kTitle);
  add_column(ListColumn::kArtist);
  add("Album Artist",
      {[&](std::int32_t song) { return std::string(details.RowOf(song).album_artist); },
       kNotKnown});
  add_column(ListColumn::kAlbum);
  add_column(ListColumn::kDiscTrack);
  add_column(ListColumn::kYear);
  add_column(ListColumn::kGenre);
  properties.push_back({is_one ? "Length" : "Total Length", LengthOf(songs, details)});
  add_column(ListColumn::kRank, "not ranked");
  add_column(ListColumn::kPlays, "none");
  add_column(ListColumn::kLastPlayed, "never");
  add_column(ListColumn::kAdded);
  add_column(ListColumn::kFormat);
  add(std::string(TitleOf(ListColumn::kBitRate)), {[&](std::int32_t song) {
                                                     const std::string rate =
                                                         columns.Text(ListColumn::kBitRate, song);
                                                     return rate.empty() ? rate : rate + " kbit/s";
                                                   },
                                                   kNotKnown});
  add("File Name",
      {[&](std::int32_t song) { return columns.Text(ListColumn::kName, song); }, kNotKnown});
  add_column(ListColumn::kFolder);
  properties.push_back({is_one ? "File Size" : "Total File Size", SizeOf(songs, library)});
  add_column(ListColumn::kKey);
  return properties;
}

}  // namespace tallow

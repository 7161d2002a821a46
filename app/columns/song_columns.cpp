// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_columns.h"

#include <chrono>
#include <cstddef>
#include <span>
#include <string_view>

#include "app/columns/column_keys.h"
#include "app/columns/given_rank.h"
#include "app/library_details.h"
#include "app/playing/play_counts.h"
#include "details/details_table.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

constexpr int kTwoDigits = 10;

std::string TextOrEmpty(std::int64_t number) {
  return number > 0 ? std::to_string(number) : std::string();
}

/// A number of at least two digits.
std::string AtLeastTwoDigits(std::int64_t number) {
  return (number < kTwoDigits ? "0" : "") + std::to_string(number);
}

std::string DiscTrackText(const DetailsRow& row) {
  if (row.track <= 0) return {};
  if (row.disc <= 0) return std::to_string(row.track);
  return std::to_string(row.disc) + "-" + AtLeastTwoDigits(row.track);
}

/// The folder without the separator at its end, unless it is a root.
std::string_view FolderText(std::string_view folder) {
  if (folder.size() > 1 && folder[folder.size() - 2] != ':') folder.remove_suffix(1);
  return folder;
}

std::int32_t DayOfLastPlay(const PlayCount& count) {
  return count.count > 0 ? static_cast<std::int32_t>(count.last.time_since_epoch().count()) : 0;
}

std::string_view WithoutExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

}  // namespace

std::string DayText(std::int32_t day) {
  if (day <= 0) return {};
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
  return std::to_string(static_cast<int>(date.year())) + "-" +
         AtLeastTwoDigits(static_cast<unsigned>(date.month())) + "-" +
         AtLeastTwoDigits(static_cast<unsigned>(date.day()));
}

std::string LengthText(std::int64_t milliseconds) {
  if (milliseconds <= 0) return {};
  constexpr std::int64_t kSecond = 1000;
  constexpr std::int64_t kSixty = 60;
  const std::int64_t seconds = (milliseconds + kSecond / 2) / kSecond;
  const std::int64_t minutes = seconds / kSixty;
  const std::string end = ":" + AtLeastTwoDigits(seconds % kSixty);
  if (minutes < kSixty) return std::to_string(minutes) + end;
  return std::to_string(minutes / kSixty) + ":" + AtLeastTwoDigits(minutes % kSixty) + end;
}

std::int32_t AddedDay(const clsMain& library, LibraryDetails& details, std::int32_t record) {
  if (!library.Song(record).Exists()) return 0;
  if (const std::int32_t added = library.Facts(record).added; added > 0) return added;
  return details.RowOf(record).modified;
}

std::string_view TitleOfSong(const clsMain& library, LibraryDetails& details, std::int32_t record) {
  const DetailsRow row = details.RowOf(record);
  return row.title.empty() ? WithoutExtension(library.Song(record).Name()) : row.title;
}

std::string SongColumns::Text(ListColumn column, std::int32_t record) const {
  const SongView song = library_.Song(record);
  if (!song.IsPresent()) return {};
  switch (column) {
    case ListColumn::kName:
      return std::string(song.Name());
    case ListColumn::kKey:
      return std::to_string(record);
    case ListColumn::kPlaying:
    case ListColumn::kPosition:
      return {};
    case ListColumn::kTitle:
      return std::string(TitleOfSong(library_, details_, record));
    case ListColumn::kArtist:
      return std::string(details_.RowOf(record).artist);
    case ListColumn::kAlbum:
      return std::string(details_.RowOf(record).album);
    case ListColumn::kDiscTrack:
      return DiscTrackText(details_.RowOf(record));
    case ListColumn::kYear:
      return TextOrEmpty(details_.RowOf(record).year);
    case ListColumn::kGenre:
      return std::string(details_.RowOf(record).genre);
    case ListColumn::kLength:
      return LengthText(details_.RowOf(record).length_ms);
    case ListColumn::kRank:
      return TextOrEmpty(GivenRank(song.Rank()));
    case ListColumn::kPlays:
      return TextOrEmpty(counts_.Of(song.Path()).count);
    case ListColumn::kLastPlayed:
      return DayText(DayOfLastPlay(counts_.Of(song.Path())));
    case ListColumn::kAdded:
      return DayText(AddedDay(library_, details_, record));
    case ListColumn::kFormat:
      return std::string(details_.RowOf(record).format);
    case ListColumn::kBitRate:
      return TextOrEmpty(details_.RowOf(record).bit_rate);
    case ListColumn::kFolder:
      return std::string(FolderText(song.Folder()));
  }
  return {};
}

ColumnKeys SongColumns::KeysOf(ListColumn column) const {
  return [this, column](std::span<const std::int32_t> records) {
    details_.LoadAll();
    return KeysOfColumn(library_, details_, counts_, column, records);
  };
}

}  // namespace tallow

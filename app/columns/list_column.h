// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

namespace tallow {

/// The columns that the list of songs can show.
enum class ListColumn {
  kName,        ///< the label of the entry: position and file name
  kKey,         ///< the record number
  kPlaying,     ///< a mark at the song that plays
  kPosition,    ///< of the entry in the list, from 1
  kTitle,       ///< the file name without its extension for a song without a title
  kArtist,      ///< of the song
  kAlbum,       ///< title of the album
  kDiscTrack,   ///< "1-04"; "4" without a disc
  kYear,        ///< four digits
  kGenre,       ///< name of the genre
  kLength,      ///< "3:05", "1:02:03"
  kRank,        ///< "7" best to "3"
  kPlays,       ///< how many times the song was played
  kLastPlayed,  ///< day of the last play
  kAdded,       ///< day on which the song came into the library, else that of its file
  kFormat,      ///< "MP3", "FLAC", ...
  kBitRate,     ///< kilobits per second
  kFolder,      ///< of the file
};

inline constexpr int kListColumns = static_cast<int>(ListColumn::kFolder) + 1;

/// The name of a column in the preferences file: "name", "lastPlayed".
std::string_view IdOf(ListColumn column) noexcept;

/// The column of a name in the preferences file; no value for another text.
std::optional<ListColumn> ColumnOfId(std::string_view id) noexcept;

/// The text of a column's header, and of the item that shows and hides the column. The header of
/// kPlaying shows no text; this is its item's.
std::string_view TitleOf(ListColumn column) noexcept;

/// The text of a column's header; empty for kPlaying.
std::string_view HeaderOf(ListColumn column) noexcept;

/// Whether the texts of a column are aligned at the right.
bool IsNumber(ListColumn column) noexcept;

/// Whether songs can be sorted by a column: it does not depend on their order.
bool CanSort(ListColumn column) noexcept;

/// Whether the first sort by a column is descending: the best, the most, the latest first.
bool SortsDescendingFirst(ListColumn column) noexcept;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/columns/list_column.h"
#include "jukebox/column_sort.h"

namespace tallow {

class LibraryDetails;
class PlayCounts;
class clsMain;

/// The texts and sort keys of the list's columns that depend only on the song.
class SongColumns {
 public:
  /// All have to outlive this object.
  SongColumns(const clsMain& library, LibraryDetails& details, PlayCounts& counts)
      : library_(library), details_(details), counts_(counts) {}

  /// The text of a song in a column; empty when it is not known, for a song that is neither present
  /// nor away, and in the columns that depend on more than the song (kPlaying, kPosition). kName
  /// gives the file name. Days are in the form "2026-11-23". Does not ask the disk for the file.
  std::string Text(ListColumn column, std::int32_t record) const;

  /// The keys for sorting songs by a column, in natural order without case and accents; all equal
  /// in the columns that depend on more than the song. Reads the details of all songs first. Valid
  /// as long as this object.
  ColumnKeys KeysOf(ListColumn column) const;

 private:
  const clsMain& library_;
  LibraryDetails& details_;
  PlayCounts& counts_;
};

/// The day on which a song came into the library, else that of its file's last change as of when
/// its details were read, in days since 1970-01-01; 0 when neither is known.
std::int32_t AddedDay(const clsMain& library, LibraryDetails& details, std::int32_t record);

/// The title of a song in lists: the title of its details, else its file name without extension.
/// Valid until the library or the details change.
std::string_view TitleOfSong(const clsMain& library, LibraryDetails& details, std::int32_t record);

/// A day in the form "2026-11-23"; empty for 0.
/// \param day days since 1970-01-01
std::string DayText(std::int32_t day);

/// A length in the form "3:05" or "1:02:03", rounded to seconds; empty for 0.
/// \param milliseconds from 0
std::string LengthText(std::int64_t milliseconds);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tallow {

class LibraryDetails;
class clsMain;

/// Number, length and size of songs.
struct SongSums {
  std::int64_t songs = 0;
  std::int64_t length_ms = 0;  ///< of the songs whose length is known, in milliseconds
  std::int64_t bytes = 0;      ///< of the songs whose size is known
  std::int64_t lengths = 0;    ///< number of songs whose length is known
  std::int64_t sizes = 0;      ///< number of songs whose size is known

  friend bool operator==(const SongSums&, const SongSums&) = default;
};

/// Adds up what is known of songs, without asking the disk for their files. The stored details of
/// at most 500 songs that are not known yet are read from the database.
///
/// \param records record numbers; those that refer to no song count as songs of unknown length
SongSums SumsOf(const clsMain& library, LibraryDetails& details,
                std::span<const std::int32_t> records);

/// The sums as the status bar shows them: "12 songs, 48:10, 61 MB", or "3 of 12 songs selected, at
/// least 9:12, 15 MB" when lengths of songs are not known. Empty without songs.
/// \param selected the selected songs; no value for none
std::string SumsText(const SongSums& shown, const std::optional<SongSums>& selected);

/// A size as it is shown: "61 MB", "1.2 GB"; units are powers of 1,000.
std::string SizeText(std::int64_t bytes);

}  // namespace tallow

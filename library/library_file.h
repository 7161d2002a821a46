// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "library/song_table.h"

namespace tallow {

/// The library file's name. The file is in the folder of the setting LocOfGroupingDir.
inline constexpr std::string_view kLibraryFileName = "FileLocNames.lmz";

// The library file "FileLocNames.lmz" contains every row of the song table.
//
// It has no header, no trailer and no count: records follow each other to the end of the file. A
// record is twelve texts; a text is its length n as 16 bits, low byte first, followed by n bytes.
// There is no padding, and texts have no terminator.
//
// | Text of the record | Column of the table |
// |---|---|
// | 1 | 2 FileName |
// | 2 | 1 FileLocation |
// | 3 | 4 RecordNumber |
// | 4 | 3 FileIsThere |
// | 5 | 5 SongRank |
// | 6 to 12 | 6 to 12 Spare6 to Spare12 |
//
// The row ("C:\MP3\", "A.MP3", "1", "7", "2", empty, ...) is these 39 bytes:
//
//   05 00 41 2E 4D 50 33            A.MP3
//   07 00 43 3A 5C 4D 50 33 5C      C:\MP3\ (backslash at the end)
//   01 00 37                        7, the record number
//   01 00 31                        1, the file is there
//   01 00 32                        2, the rank
//   00 00, seven times
//
// A record whose first text is empty is not a song: readers skip it.

/// Maximum length of one text of a record, in bytes.
inline constexpr std::size_t kMaxFieldBytes = 0xFFFF;

/// The twelve texts of a record in file order, as views of the file's bytes.
using LibraryRecord = std::array<std::string_view, kSongColumns>;

/// Indexes in a LibraryRecord, from 0.
enum LibraryField : std::size_t {
  kNameField = 0,
  kLocationField = 1,
  kNumberField = 2,
  kThereField = 3,
  kRankField = 4,
};

/// Parses the records of a library file.
class LibraryReader {
 public:
  enum class Result {
    kRecord,   ///< a complete record was read
    kEnd,      ///< the end of the bytes, at the end of a record
    kDamaged,  ///< a text is longer than the remaining bytes
  };

  /// \param bytes must outlive the reader and the records
  /// \param begin position of the first record
  explicit LibraryReader(std::string_view bytes, std::size_t begin = 0) noexcept
      : bytes_(bytes), position_(begin) {}

  Result Next(LibraryRecord& record) noexcept;

  /// Position of the next record; after kDamaged, of the damaged record.
  std::size_t position() const noexcept { return position_; }

 private:
  std::string_view bytes_;
  std::size_t position_;
};

/// The highest record number accepted for a file of that size: the number of 24-byte records (the
/// minimum) that fit, plus one.
/// \param bytes size of the file
std::int32_t MaxRecords(std::size_t bytes) noexcept;

/// Encodes a table as a library file.
///
/// \throws FileError naming the song when a text is longer than kMaxFieldBytes
std::string EncodeLibrary(const SongTable& table);

/// Maximum size of a library file, the largest signed 32-bit number. A larger file is not a
/// library.
inline constexpr std::uint64_t kMaxLibraryBytes = 0x7FFFFFFF;

/// The condition of a library file, found without loading it.
struct LibraryInspection {
  bool exists = false;
  /// Every record is complete, and every usable record has a valid record number.
  bool sound = false;
  std::int32_t usable = 0;     ///< complete records whose first text is not empty
  std::string last_number;     ///< third text of the last usable record; empty when there is none
  std::string problem;         ///< when not sound: the error, with its byte or song number
  std::uint64_t checksum = 0;  ///< of the file, see ChecksumOf; 0 when the file is too large
};

/// Inspects a library file. A file larger than kMaxLibraryBytes is not sound.
///
/// \throws FileError when it exists but cannot be read
LibraryInspection InspectLibrary(const std::string& path);

/// Fills a table with every song that can be recovered from a damaged library file.
///
/// After damage, parsing continues at the next position with plausible records. Each song gets the
/// row of its record number, because jukeboxes refer to it by that number. Of two songs with the
/// same number, the present song gets the row, or else the first; the other song, and a song with
/// an invalid or too large number, gets a row at the end. Rows whose record is lost become missing
/// songs ("0", "0", "0", number, "2").
///
/// \returns the number of songs found
std::int32_t SalvageLibrary(std::string_view bytes, SongTable& table);

}  // namespace tallow

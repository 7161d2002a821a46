// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "library/song_table.h"

namespace tallow {

/// The library file's name, in the folder of the setting LocOfGroupingDir.
inline constexpr std::string_view kLibraryFileName = "FileLocNames.lmz";

// The record file "FileLocNames.lmz" holds every row of the song table.
//
// It has no header, no trailer and no count: records follow one another to the end of the file. A
// record is twelve texts; a text is its length n as 16 bits, low byte first, and n bytes. Nothing
// is padded and nothing ends a text.
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
// A record whose first text is empty stands for no song: readers skip it.

/// Most bytes of one text of a record.
inline constexpr std::size_t kMaxFieldBytes = 0xFFFF;

/// The twelve texts of a record in the file's order, as views of the file's bytes.
using LibraryRecord = std::array<std::string_view, kSongColumns>;

/// Places in a LibraryRecord, from 0.
enum LibraryField : std::size_t {
  kNameField = 0,
  kLocationField = 1,
  kNumberField = 2,
  kThereField = 3,
  kRankField = 4,
};

/// Reads the records of a library file's bytes one after another.
class LibraryReader {
 public:
  enum class Result {
    kRecord,   ///< a whole record was read
    kEnd,      ///< the bytes ended where a record ends
    kDamaged,  ///< a text is longer than what is left of the bytes
  };

  /// \param bytes have to outlive the reader and the records
  /// \param begin where the first record begins
  explicit LibraryReader(std::string_view bytes, std::size_t begin = 0) noexcept
      : bytes_(bytes), position_(begin) {}

  Result Next(LibraryRecord& record) noexcept;

  /// Where the next record begins; where the damaged one does after kDamaged.
  std::size_t position() const noexcept { return position_; }

 private:
  std::string_view bytes_;
  std::size_t position_;
};

/// A number that no record of a file of so many bytes can have: it holds fewer records than this, plus one.
/// \param bytes of the file
std::int32_t MaxRecords(std::size_t bytes) noexcept;

/// The bytes of the library file of a table.
///
/// \throws FileError naming the song when a text is longer than kMaxFieldBytes
std::string EncodeLibrary(const SongTable& table);

/// Most bytes of a library file, as many as a signed 32-bit number counts. A larger file is none.
inline constexpr std::uint64_t kMaxLibraryBytes = 0x7FFFFFFF;

/// What a library file is worth, without loading it.
struct LibraryInspection {
  bool exists = false;
  /// Every record is whole, and every usable one has a number as its record number.
  bool sound = false;
  std::int32_t usable = 0;  ///< records before the damage whose first text is not empty
  std::string last_number;  ///< the third text of the last usable record; empty when there is none
  std::string problem;      ///< when not sound: what is wrong, and at which byte or record
  std::uint64_t checksum = 0;  ///< of its bytes, see ChecksumOf; 0 of one that is too large
};

/// Inspects a library file. One of more than kMaxLibraryBytes is not sound.
///
/// \throws FileError when it exists but cannot be read
LibraryInspection InspectLibrary(const std::string& path);

/// Fills a table with every song that a damaged library file still shows.
///
/// Of two songs with one number the present one has its row, or else the first; the other one, and one
/// whose number the file cannot hold, gets a row at the end. Behind a damage the next place is looked for from which plausible records follow. A song comes
/// to the row of its record number, because jukeboxes know it by that; rows whose record is lost
/// become missing songs ("0", "0", "0", number, "2").
///
/// \returns how many songs were found
std::int32_t SalvageLibrary(std::string_view bytes, SongTable& table);

}  // namespace tallow

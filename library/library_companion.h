// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/song_table.h"

namespace tallow {

/// The companion's file name; it is beside the library file.
inline constexpr std::string_view kCompanionFileName = "FileLocNames.more";

// The format of the library file has no room for further data, so other facts about the songs are
// stored in a companion file, "FileLocNames.more":
//
//   offset  bytes
//    0      8   "TALLOW+1"
//    8      8   checksum of the library file that it belongs to
//   16      8   checksum of the previous library file; 0 for none
//   24      4   number of files left out because a song has their name, in the listed folders
//   28      4   the same number for the whole computer; each is -1 if never counted
//   32      4   number of rows, n
//   36     12n  for each row: the file size (8 bytes; -1: not known), the day it was added
//               (4 bytes; in days since 1970-01-01, 0: not known)
//   36+12n  8   checksum of all preceding bytes
//
// Numbers are little-endian; checksums are XXH64 with seed 0. The companion is written before the
// library. If the program ends between the two, the previous library remains, whose checksum is in
// the companion too. A companion that is lost, damaged or of another library is ignored and
// rebuilt; a damaged companion is kept with ".bak" appended to its name. A library with neither
// checksum was changed by something else, see CheckLibrary.

/// The header of a companion.
struct CompanionHeader {
  std::uint64_t library = 0;  ///< checksum of the library file that it belongs to
  std::uint64_t before = 0;   ///< checksum of the previous library file; 0 for none
  std::int32_t left_out_of_list = -1;
  std::int32_t left_out_of_computer = -1;
};

/// XXH64 checksum with seed 0.
std::uint64_t ChecksumOf(std::string_view bytes) noexcept;

/// Encodes a companion.
std::string EncodeCompanion(const CompanionHeader& header, const SongTable& table);

/// Parses the header of a companion; no value when it is not a companion or is damaged.
std::optional<CompanionHeader> HeaderOfCompanion(std::string_view bytes);

/// Parses a companion and sets the facts of the table's rows, as far as the companion has them.
///
/// \param library checksum of the library file that the table was read from
/// \returns no value when it is not a companion, is damaged, or belongs to another library; nothing
/// has changed then
std::optional<CompanionHeader> DecodeCompanion(std::string_view bytes, std::uint64_t library,
                                               SongTable& table);

/// The number of rows in a companion; 0 when it is not valid.
std::int32_t RowsOfCompanion(std::string_view bytes);

/// Sets only those facts that the table's rows lack, from an older companion of the same rows that
/// could not be read before. Does nothing when the companion is not valid.
void CompleteFacts(std::string_view bytes, SongTable& table);

}  // namespace tallow

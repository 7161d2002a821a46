// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/song_table.h"

namespace tallow {

/// The companion's name; it lies beside the library file.
inline constexpr std::string_view kCompanionFileName = "FileLocNames.more";

// The library file's format has no room for more than a song's record, so what else is known of the songs
// lies in a companion, "FileLocNames.more":
//
//   offset  bytes
//    0      8   "TALLOW+1"
//    8      8   checksum of the library file that it belongs to
//   16      8   checksum of the library file before that one; 0 for none
//   24      4   files left out because a song of their name is there: in the folders of the folder list
//   28      4   the same, on the whole computer; each -1 where it was never counted
//   32      4   the number of rows, n
//   36     12n  of each row: the size of its file in bytes (8; -1: not known), the day it was added (4; in
//               days since 1970-01-01, 0: not known)
//   36+12n  8   checksum of all before it
//
// Numbers are little-endian, checksums are XXH64 with the seed 0. The companion is written before the
// library. A program that ends between the two leaves the earlier library, whose checksum is here too.
// One that is lost, damaged or of another library is as none, and made again; a damaged one is kept with
// ".bak" behind its name. A library that has neither checksum was changed by something else, see
// CheckLibrary.

/// What a companion holds beside the facts of the rows.
struct CompanionHeader {
  std::uint64_t library = 0;  ///< checksum of the library file that it belongs to
  std::uint64_t before = 0;   ///< of the one before; 0 for none
  std::int32_t left_out_of_list = -1;
  std::int32_t left_out_of_computer = -1;
};

/// The checksum of a file's bytes.
std::uint64_t ChecksumOf(std::string_view bytes) noexcept;

/// The bytes of a companion.
std::string EncodeCompanion(const CompanionHeader& header, const SongTable& table);

/// Reads what a companion holds beside the facts of the rows; no value when it is none, or damaged.
std::optional<CompanionHeader> HeaderOfCompanion(std::string_view bytes);

/// Reads a companion and gives the rows of the table their facts, as far as it has any.
///
/// \param library checksum of the library file that the table was read from
/// \returns no value when it is none, damaged, or of another library; nothing has changed then
std::optional<CompanionHeader> DecodeCompanion(std::string_view bytes, std::uint64_t library,
                                               SongTable& table);

/// How many rows a companion knows; 0 where it is none.
std::int32_t RowsOfCompanion(std::string_view bytes);

/// Gives the rows of a table the facts that they lack, from another companion of the same rows: one that could
/// not be read for a while. Nothing where it is none.
void CompleteFacts(std::string_view bytes, SongTable& table);

}  // namespace tallow

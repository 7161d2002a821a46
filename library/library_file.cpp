// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_file.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "library/library_companion.h"
#include "library/record_repair.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/number.h"

namespace tallow {
namespace {

constexpr std::size_t kLengthBytes = 2;

/// Maps the fields of a record, in file order, to the table's columns.
constexpr std::array<std::int16_t, kSongColumns> kColumnOfField = {
    kFileName, kFileLocation, kRecordNumber, kFileIsThere, kSongRank, 6, 7, 8, 9, 10, 11, 12};

/// Whether a record read at the expected position is a song. File names never contain NUL, so a
/// field whose damaged length makes it include the next fields is detected.
bool IsSong(const LibraryRecord& record) noexcept {
  // Cheap checks first: NextPlausible calls this for every byte of a damaged file.
  constexpr std::size_t kMaxDigits = 11;
  if (record[kNameField].empty()) return false;
  for (const std::size_t field : {kNumberField, kThereField, kRankField})
    if (record[field].size() > kMaxDigits) return false;
  const auto number = TryConvertToInt32(record[kNumberField]);
  if (!number || *number <= 0) return false;
  return std::none_of(record.begin(), record.end(), [](std::string_view text) {
    return text.find('\0') != std::string_view::npos;
  });
}

/// Whether a record read at an arbitrary position of a damaged file can be a song. Random bytes
/// rarely pass.
bool IsPlausible(const LibraryRecord& record) noexcept {
  const std::string_view there = record[kThereField];
  return IsSong(record) && (there == "0" || there == "1") &&
         TryConvertToInt32(record[kRankField]).has_value();
}

/// The first position at or after `from` where a plausible record begins that is the last record,
/// or is followed by another plausible record. The size of the bytes when there is none.
std::size_t NextPlausible(std::string_view bytes, std::size_t from) noexcept {
  for (std::size_t at = from; at < bytes.size(); ++at) {
    LibraryReader reader(bytes, at);
    LibraryRecord record;
    if (reader.Next(record) != LibraryReader::Result::kRecord || !IsPlausible(record)) continue;
    const LibraryReader::Result next = reader.Next(record);
    if (next == LibraryReader::Result::kEnd ||
        (next == LibraryReader::Result::kRecord && IsPlausible(record)))
      return at;
  }
  return bytes.size();
}

}  // namespace

LibraryReader::Result LibraryReader::Next(LibraryRecord& record) noexcept {
  if (position_ >= bytes_.size()) return Result::kEnd;
  std::size_t at = position_;
  for (std::string_view& field : record) {
    if (bytes_.size() - at < kLengthBytes) return Result::kDamaged;
    const std::size_t length = static_cast<unsigned char>(bytes_[at]) |
                               std::size_t{static_cast<unsigned char>(bytes_[at + 1])} << 8U;
    at += kLengthBytes;
    if (bytes_.size() - at < length) return Result::kDamaged;
    field = bytes_.substr(at, length);
    at += length;
  }
  position_ = at;
  return Result::kRecord;
}

std::int32_t MaxRecords(std::size_t bytes) noexcept {
  return static_cast<std::int32_t>(bytes / (kLengthBytes * kSongColumns) + 1);
}

std::string EncodeLibrary(const SongTable& table) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(table.rows()) * 96);
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    for (const std::int16_t column : kColumnOfField) {
      const std::string_view text = table.Cell(column, row);
      if (text.size() > kMaxFieldBytes)
        throw FileError(text.substr(0, 200), "is too long for the song library");
      bytes += static_cast<char>(text.size() & 0xFFU);
      bytes += static_cast<char>(text.size() >> 8U);
      bytes += text;
    }
  }
  return bytes;
}

LibraryInspection InspectLibrary(const std::string& path) {
  LibraryInspection result;
  std::optional<std::string> bytes;
  try {
    bytes = ReadWholeFile(path, kMaxLibraryBytes);
  } catch (const FileTooLargeError& error) {
    result.exists = true;
    result.problem = "it " + error.reason();
    return result;
  }
  if (!bytes) return result;
  result.exists = true;
  result.checksum = ChecksumOf(*bytes);
  LibraryReader reader(*bytes);
  LibraryRecord record;
  std::string_view last;
  for (;;) {
    const LibraryReader::Result read = reader.Next(record);
    if (read == LibraryReader::Result::kDamaged && result.problem.empty())
      result.problem = "the record that begins at byte " + std::to_string(reader.position()) +
                       " is not complete";
    if (read != LibraryReader::Result::kRecord) break;
    if (record[kNameField].empty()) continue;
    ++result.usable;
    last = record[kNumberField];
    if (result.problem.empty() && !TryConvertToInt32(last))
      result.problem =
          "song " + std::to_string(result.usable) + ": " + Quoted(last) + " is not a number";
  }
  result.last_number = last;
  result.sound = result.problem.empty();
  return result;
}

std::int32_t SalvageLibrary(std::string_view bytes, SongTable& table) {
  std::vector<LibraryRecord> found;
  for (std::size_t at = 0; at < bytes.size();) {
    LibraryReader reader(bytes, at);
    LibraryRecord record;
    if (reader.Next(record) == LibraryReader::Result::kRecord && IsSong(record)) {
      found.push_back(record);
      at = reader.position();
    } else {
      // Damaged, or a record without a song. Resynchronize at the next plausible record.
      at = NextPlausible(bytes, at + 1);
    }
  }
  std::vector<std::int32_t> numbers;
  std::vector<char> present;
  for (const LibraryRecord& record : found) {
    numbers.push_back(ConvertToInt32(record[kNumberField]));
    present.push_back(NumericValue(record[kThereField]) != 0);
  }
  // A number too large for this file size is damaged too. MaxRecords keeps the table from growing
  // to that number.
  const std::vector<std::size_t> by_row =
      PlacesByNumber(numbers, present, MaxRecords(bytes.size()));
  table = SongTable();
  table.Resize(static_cast<std::int32_t>(by_row.size()));
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    const std::size_t place = by_row[static_cast<std::size_t>(row - 1)];
    table.SetCell(kRecordNumber, row, std::to_string(row));
    table.SetCell(kSongRank, row, kUnranked);
    if (place == kNoRecord) {
      BlankSong(table, row);
      continue;
    }
    const LibraryRecord& record = found[place];
    table.SetCell(kFileLocation, row, record[kLocationField]);
    table.SetCell(kFileName, row, record[kNameField]);
    table.SetCell(kFileIsThere, row, record[kThereField]);
    if (TryConvertToInt32(record[kRankField])) table.SetCell(kSongRank, row, record[kRankField]);
  }
  return static_cast<std::int32_t>(found.size());
}

}  // namespace tallow

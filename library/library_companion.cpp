// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_companion.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace tallow {
namespace {

constexpr std::string_view kMagic = "TALLOW+1";
constexpr std::size_t kRowsOffset = 32;
constexpr std::size_t kHeaderBytes = 36;
constexpr std::size_t kRowBytes = 12;
constexpr std::size_t kChecksumBytes = 8;

template <typename Integer>
void Append(std::string& to, Integer value) {
  const auto bits = static_cast<std::make_unsigned_t<Integer>>(value);
  char bytes[sizeof bits];
  for (std::size_t k = 0; k < sizeof bits; ++k)
    bytes[k] = static_cast<char>(static_cast<unsigned char>(bits >> (8 * k)));
  to.append(bytes, sizeof bits);
}

/// Reads a little-endian integer.
/// \param at position of the first byte; the bytes must exist
template <typename Integer>
Integer Read(std::string_view bytes, std::size_t at) {
  std::make_unsigned_t<Integer> bits = 0;
  for (std::size_t k = 0; k < sizeof bits; ++k)
    bits = static_cast<std::make_unsigned_t<Integer>>(
        bits | static_cast<std::make_unsigned_t<Integer>>(
                   std::uint64_t{static_cast<unsigned char>(bytes[at + k])} << (8 * k)));
  return static_cast<Integer>(bits);
}

/// The facts that a companion stores for a row.
struct RowFacts {
  std::int64_t size;
  std::int32_t added;
};

/// Reads the facts of a row.
/// \param bytes of a valid companion
/// \param row   from 1; the companion must contain it
RowFacts FactsOf(std::string_view bytes, std::int32_t row) {
  const std::size_t at = kHeaderBytes + kRowBytes * static_cast<std::size_t>(row - 1);
  return {Read<std::int64_t>(bytes, at), Read<std::int32_t>(bytes, at + sizeof(std::int64_t))};
}

/// The smaller of the row counts of a valid companion and of the table.
std::int32_t RowsIn(std::string_view bytes, const SongTable& table) {
  return std::min(Read<std::int32_t>(bytes, kRowsOffset), table.rows());
}

}  // namespace

std::uint64_t ChecksumOf(std::string_view bytes) noexcept {
  return XXH64(bytes.data(), bytes.size(), 0);
}

std::string EncodeCompanion(const CompanionHeader& header, const SongTable& table) {
  std::string bytes(kMagic);
  bytes.reserve(kHeaderBytes + kRowBytes * static_cast<std::size_t>(table.rows()) + kChecksumBytes);
  Append(bytes, header.library);
  Append(bytes, header.before);
  Append(bytes, header.left_out_of_list);
  Append(bytes, header.left_out_of_computer);
  Append(bytes, table.rows());
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    const SongFacts& facts = table.Facts(row);
    Append(bytes, facts.size);
    Append(bytes, facts.added);
  }
  Append(bytes, ChecksumOf(bytes));
  return bytes;
}

std::optional<CompanionHeader> HeaderOfCompanion(std::string_view bytes) {
  if (bytes.size() < kHeaderBytes + kChecksumBytes || !bytes.starts_with(kMagic)) return {};
  const std::string_view body = bytes.substr(0, bytes.size() - kChecksumBytes);
  if (Read<std::uint64_t>(bytes, body.size()) != ChecksumOf(body)) return {};
  const CompanionHeader header{Read<std::uint64_t>(bytes, 8), Read<std::uint64_t>(bytes, 16),
                               Read<std::int32_t>(bytes, 24), Read<std::int32_t>(bytes, 28)};
  const auto rows = Read<std::int32_t>(bytes, kRowsOffset);
  if (rows < 0 || body.size() != kHeaderBytes + kRowBytes * static_cast<std::size_t>(rows))
    return {};
  return header;
}

std::optional<CompanionHeader> DecodeCompanion(std::string_view bytes, std::uint64_t library,
                                               SongTable& table) {
  const auto header = HeaderOfCompanion(bytes);
  if (!header || (header->library != library && header->before != library)) return {};
  for (std::int32_t row = 1; row <= RowsIn(bytes, table); ++row) {
    const RowFacts facts = FactsOf(bytes, row);
    table.Facts(row).size = facts.size;
    table.Facts(row).added = facts.added;
  }
  return header;
}

std::int32_t RowsOfCompanion(std::string_view bytes) {
  return HeaderOfCompanion(bytes) ? Read<std::int32_t>(bytes, kRowsOffset) : 0;
}

void CompleteFacts(std::string_view bytes, SongTable& table) {
  if (!HeaderOfCompanion(bytes)) return;
  for (std::int32_t row = 1; row <= RowsIn(bytes, table); ++row) {
    const RowFacts facts = FactsOf(bytes, row);
    if (table.Facts(row).size == kUnknownSize) table.Facts(row).size = facts.size;
    if (table.Facts(row).added == 0) table.Facts(row).added = facts.added;
  }
}

}  // namespace tallow

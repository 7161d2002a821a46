// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_companion.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

SongTable TableOf(std::int32_t rows) {
  SongTable table;
  table.Resize(rows);
  for (std::int32_t row = 1; row <= rows; ++row)
    table.Facts(row) = {.size = row * 5'000'000'000, .added = 20000 + row, .away = 3};
  return table;
}

TEST(LibraryCompanion, EncodedFactsAreDecoded) {
  const std::string bytes = EncodeCompanion({11, 22, 33, -1}, TableOf(3));
  EXPECT_EQ(bytes.size(), 36U + 3 * 12 + 8);
  SongTable table;
  table.Resize(3);
  const auto header = DecodeCompanion(bytes, 11, table);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->library, 11U);
  EXPECT_EQ(header->before, 22U);
  EXPECT_EQ(header->left_out_of_list, 33);
  EXPECT_EQ(header->left_out_of_computer, -1);
  EXPECT_EQ(table.Facts(3).size, 15'000'000'000);
  EXPECT_EQ(table.Facts(3).added, 20003);
  EXPECT_EQ(table.Facts(3).away, 0U);
}

TEST(LibraryCompanion, CompleteFactsSetsOnlyMissingFacts) {
  const std::string bytes = EncodeCompanion({11, 22, 0, 0}, TableOf(2));
  SongTable table;
  table.Resize(3);
  table.Facts(1) = {.size = 7, .added = 0, .away = 0};
  CompleteFacts(bytes, table);
  EXPECT_EQ(table.Facts(1).size, 7);
  EXPECT_EQ(table.Facts(1).added, 20001);
  EXPECT_EQ(table.Facts(2).size, 10'000'000'000);
  EXPECT_EQ(table.Facts(3).size, kUnknownSize);
  SongTable none;
  none.Resize(1);
  CompleteFacts(bytes.substr(1), none);
  EXPECT_EQ(none.Facts(1).added, 0);
}

TEST(LibraryCompanion, BelongsToThePreviousLibraryToo) {
  const std::string bytes = EncodeCompanion({11, 22, 0, 0}, TableOf(3));
  SongTable before;
  before.Resize(2);
  EXPECT_TRUE(DecodeCompanion(bytes, 22, before));
  EXPECT_EQ(before.Facts(2).added, 20002);
  EXPECT_FALSE(DecodeCompanion(bytes, 23, before));
}

TEST(LibraryCompanion, TheFormatHasTheDocumentedBytes) {
  // Example: one row with a file of 4183022 bytes, added on day 20779.
  SongTable table;
  table.Resize(1);
  table.Facts(1) = {.size = 4183022, .added = 20779, .away = 0};
  const std::string bytes = EncodeCompanion({1, 0, 2, -1}, table);
  const std::string expected(
      "TALLOW+1\x01\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x02\0\0\0\xFF\xFF\xFF\xFF\x01\0\0\0"
      "\xEE\xD3\x3F\0\0\0\0\0\x2B\x51\0\0",
      48);
  EXPECT_EQ(bytes.substr(0, 48), expected);
  // The published XXH64 checksum of empty input.
  EXPECT_EQ(ChecksumOf(""), 0xEF46DB3751D8E999U);
}

TEST(LibraryCompanion, ADamagedCompanionIsIgnored) {
  const std::string whole = EncodeCompanion({11, 22, 0, 0}, TableOf(3));
  SongTable table;
  table.Resize(3);
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(DecodeCompanion(whole.substr(0, length), 11, table)) << length;
  for (std::size_t k = 0; k < whole.size(); ++k) {
    std::string flipped = whole;
    flipped[k] = static_cast<char>(flipped[k] ^ 0x10);
    EXPECT_FALSE(DecodeCompanion(flipped, 11, table)) << k;
  }
  EXPECT_FALSE(DecodeCompanion(whole + "x", 11, table));
  EXPECT_EQ(table.Facts(1).size, kUnknownSize);
}

}  // namespace
}  // namespace tallow

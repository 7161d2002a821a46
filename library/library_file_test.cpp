// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_file.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/temp_folder.h"
#include "util/errors.h"

namespace tallow {
namespace {

void AddRow(SongTable& table, const std::vector<std::string>& cells) {
  table.Resize(table.rows() + 1);
  for (std::size_t c = 0; c < cells.size(); ++c)
    table.SetCell(static_cast<std::int16_t>(c + 1), table.rows(), cells[c]);
}

SongTable Songs(int count) {
  SongTable table;
  for (int k = 1; k <= count; ++k)
    AddRow(table, {"/music/", "song " + std::to_string(k) + ".mp3", "1", std::to_string(k),
                   std::to_string(2 + k % 6)});
  return table;
}

TEST(LibraryFile, ARecordHasTheDocumentedBytes) {
  SongTable table;
  AddRow(table, {"C:\\MP3\\", "A.MP3", "1", "7", "2"});
  const std::string expected(
      "\x05\x00"
      "A.MP3"
      "\x07\x00"
      "C:\\MP3\\"
      "\x01\x00"
      "7"
      "\x01\x00"
      "1"
      "\x01\x00"
      "2"
      "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00",
      39);
  EXPECT_EQ(EncodeLibrary(table), expected);
}

TEST(LibraryFile, SpareColumnsAreWrittenUnchanged) {
  SongTable table;
  AddRow(table, {"a/", "b", "1", "1", "2", "six", "", "", "", "", "", "twelve"});
  const std::string bytes = EncodeLibrary(table);
  LibraryReader reader(bytes);
  LibraryRecord record;
  ASSERT_EQ(reader.Next(record), LibraryReader::Result::kRecord);
  EXPECT_EQ(record[5], "six");
  EXPECT_EQ(record[11], "twelve");
  EXPECT_EQ(reader.Next(record), LibraryReader::Result::kEnd);
}

TEST(LibraryFile, LengthsAreLowByteFirst) {
  SongTable table;
  AddRow(table, {"", std::string(0x0302, 'n')});
  const std::string bytes = EncodeLibrary(table);
  EXPECT_EQ(bytes[0], '\x02');
  EXPECT_EQ(bytes[1], '\x03');
}

TEST(LibraryFile, ATextThatIsTooLongIsAnError) {
  SongTable table;
  AddRow(table, {"", std::string(kMaxFieldBytes + 1, 'n')});
  EXPECT_THROW(EncodeLibrary(table), FileError);
}

TEST(LibraryFile, EveryTruncationIsDamageOrTheEndOfARecord) {
  const std::string bytes = EncodeLibrary(Songs(3));
  const std::size_t record_size = bytes.size() / 3;
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    // A separate buffer, so that sanitizers detect reading past the end.
    const std::string cut = bytes.substr(0, length);
    LibraryReader reader(cut);
    LibraryRecord record;
    LibraryReader::Result result;
    std::size_t records = 0;
    while ((result = reader.Next(record)) == LibraryReader::Result::kRecord) ++records;
    EXPECT_EQ(records, length / record_size);
    EXPECT_EQ(result, length % record_size == 0 ? LibraryReader::Result::kEnd
                                                : LibraryReader::Result::kDamaged);
  }
}

TEST(InspectLibrary, CountsUsableRecordsOfASoundFile) {
  const TempFolder folder;
  SongTable table = Songs(3);
  table.SetCell(kFileName, 2, "");
  const LibraryInspection file = InspectLibrary(folder.File("lib", EncodeLibrary(table)));
  EXPECT_TRUE(file.exists);
  EXPECT_TRUE(file.sound);
  EXPECT_EQ(file.usable, 2);
  EXPECT_EQ(file.last_number, "3");
}

TEST(InspectLibrary, ReportsTheByteOfTheDamage) {
  const TempFolder folder;
  const std::string bytes = EncodeLibrary(Songs(2));
  const LibraryInspection file =
      InspectLibrary(folder.File("lib", bytes.substr(0, bytes.size() - 1)));
  EXPECT_FALSE(file.sound);
  EXPECT_EQ(file.usable, 1);
  EXPECT_EQ(file.problem, "the record that begins at byte " + std::to_string(bytes.size() / 2) +
                              " is not complete");
}

TEST(InspectLibrary, ReportsASongWithoutANumber) {
  const TempFolder folder;
  SongTable table = Songs(2);
  table.SetCell(kRecordNumber, 2, "abc");
  const LibraryInspection file = InspectLibrary(folder.File("lib", EncodeLibrary(table)));
  EXPECT_FALSE(file.sound);
  EXPECT_EQ(file.problem, "song 2: 'abc' is not a number");
}

TEST(InspectLibrary, AMissingFileDoesNotExist) {
  const TempFolder folder;
  EXPECT_FALSE(InspectLibrary(folder / "none").exists);
}

TEST(SalvageLibrary, AnUndamagedFileIsSalvagedCompletely) {
  const SongTable songs = Songs(50);
  SongTable found;
  EXPECT_EQ(SalvageLibrary(EncodeLibrary(songs), found), 50);
  EXPECT_EQ(EncodeLibrary(found), EncodeLibrary(songs));
}

TEST(SalvageLibrary, SongsAfterDamagedBytesKeepNumberAndRank) {
  const SongTable songs = Songs(50);
  std::string bytes = EncodeLibrary(songs);
  for (std::size_t k = bytes.size() / 2; k < bytes.size() / 2 + 60; ++k) bytes[k] = '\x7F';
  SongTable found;
  const std::int32_t count = SalvageLibrary(bytes, found);
  EXPECT_GE(count, 46);
  ASSERT_EQ(found.rows(), 50);
  std::int32_t lost = 0;
  for (std::int32_t row = 1; row <= 50; ++row) {
    EXPECT_EQ(found.Cell(kRecordNumber, row), std::to_string(row));
    if (found.Cell(kFileName, row) == "0") {
      ++lost;
      EXPECT_EQ(found.Cell(kFileIsThere, row), "0");
      EXPECT_EQ(found.Cell(kFileLocation, row), "0");
    } else {
      EXPECT_EQ(found.Cell(kFileName, row), songs.Cell(kFileName, row));
      EXPECT_EQ(found.Cell(kSongRank, row), songs.Cell(kSongRank, row));
    }
  }
  EXPECT_EQ(lost, 50 - count);
}

TEST(SalvageLibrary, ASongWithADamagedRankBecomesUnranked) {
  SongTable songs = Songs(3);
  songs.SetCell(kSongRank, 2, "x");
  songs.SetCell(kFileIsThere, 3, "?");
  SongTable found;
  EXPECT_EQ(SalvageLibrary(EncodeLibrary(songs), found), 3);
  EXPECT_EQ(found.Cell(kFileName, 2), "song 2.mp3");
  EXPECT_EQ(found.Cell(kSongRank, 2), "2");
  EXPECT_EQ(found.Cell(kFileName, 3), "song 3.mp3");
}

TEST(SalvageLibrary, AHugeNumberDoesNotEnlargeTheTable) {
  SongTable songs = Songs(3);
  songs.SetCell(kRecordNumber, 2, "2000000000");
  SongTable found;
  EXPECT_EQ(SalvageLibrary(EncodeLibrary(songs), found), 3);
  EXPECT_EQ(found.rows(), 4);  // 1, the lost 2, 3, and the song with the huge number
  EXPECT_EQ(found.Cell(kFileName, 4), "song 2.mp3");
}

TEST(SalvageLibrary, RandomDamageDoesNotCrash) {
  std::mt19937 random(17);
  const std::string sound = EncodeLibrary(Songs(20));
  for (int round = 0; round < 2000; ++round) {
    std::string bytes = sound.substr(0, random() % (sound.size() + 1));
    for (auto n = random() % 12; n > 0 && !bytes.empty(); --n)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    SongTable found;
    const std::int32_t count = SalvageLibrary(bytes, found);
    EXPECT_LE(count, found.rows());
  }
}

TEST(SalvageLibrary, AZeroedBlockLosesOnlyTheSongsInIt) {
  const SongTable songs = Songs(200);
  const std::string whole = EncodeLibrary(songs);
  for (std::size_t at = 500; at < 1500; at += 7) {
    for (const std::size_t length : {1U, 60U, 300U}) {
      std::string bytes = whole;
      for (std::size_t k = at; k < at + length; ++k) bytes[k] = 0;
      SongTable found;
      const std::int32_t count = SalvageLibrary(bytes, found);
      // A record is about 46 bytes; one more record on either side may be damaged or implausible.
      ASSERT_GE(count, 200 - static_cast<std::int32_t>(length / 40) - 3) << at << " " << length;
      ASSERT_EQ(found.Cell(kFileName, 200), "song 200.mp3");
      ASSERT_EQ(found.Cell(kSongRank, 200), songs.Cell(kSongRank, 200));
    }
  }
}

}  // namespace
}  // namespace tallow

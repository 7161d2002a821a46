// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/record_repair.h"

#include <gtest/gtest.h>
#include <random>

namespace tallow {
namespace {

constexpr std::int32_t kMax = 100;

void Add(SongTable& table, const std::string& name, const std::string& number,
         const std::string& there = "1", const std::string& rank = "2") {
  const std::int32_t row = table.rows() + 1;
  table.Resize(row);
  table.SetCell(kFileLocation, row, there == "1" ? "/m/" : "0");
  table.SetCell(kFileName, row, name);
  table.SetCell(kFileIsThere, row, there);
  table.SetCell(kRecordNumber, row, number);
  table.SetCell(kSongRank, row, rank);
}

std::vector<std::string> Names(const SongTable& table) {
  std::vector<std::string> names;
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    names.emplace_back(table.Cell(kFileName, row));
    EXPECT_EQ(table.Cell(kRecordNumber, row), std::to_string(row));
  }
  return names;
}

using Texts = std::vector<std::string>;

TEST(RecordRepair, ATableWithCorrectRowsIsUnchanged) {
  SongTable table;
  Add(table, "a", "1");
  Add(table, "0", "2", "0");
  const std::uint64_t version = table.version();
  EXPECT_FALSE(RepairNumbers(table, kMax));
  EXPECT_EQ(table.version(), version);
}

TEST(RecordRepair, EachRowMovesToItsPlaceAndAnEmptyPlaceBecomesAMissingSong) {
  SongTable table;
  Add(table, "a", "1");
  Add(table, "c", "3", "1", "7");
  Add(table, "d", "4");
  table.Facts(2).size = 333;
  const auto confused = RepairNumbers(table, kMax);
  ASSERT_TRUE(confused);
  EXPECT_EQ(Names(table), (Texts{"a", "0", "c", "d"}));
  for (const std::int16_t column : {kFileLocation, kFileName, kFileIsThere})
    EXPECT_EQ(table.Cell(column, 2), "0");
  EXPECT_EQ(table.Cell(kSongRank, 2), "2");
  EXPECT_EQ(table.Cell(kSongRank, 3), "7");
  EXPECT_EQ(table.Facts(3).size, 333);
  // Row 2 had c, whose number is 3; no row has the number 2. Row 3 had d.
  ASSERT_EQ(confused->size(), 2U);
  EXPECT_EQ((*confused)[0].number, 2);
  EXPECT_EQ((*confused)[0].held, "c");
  EXPECT_EQ((*confused)[0].held_now, 3);
  EXPECT_EQ((*confused)[0].named, "");
  EXPECT_EQ((*confused)[1].number, 3);
  EXPECT_EQ((*confused)[1].held, "d");
  EXPECT_EQ((*confused)[1].held_now, 4);
  EXPECT_EQ((*confused)[1].named, "c");
}

TEST(RecordRepair, OfTwoRowsWithOneNumberThePresentThenTheFirstKeepsIt) {
  SongTable table;
  Add(table, "0", "1", "0");
  Add(table, "a", "1");
  Add(table, "b", "2");
  Add(table, "c", "2");
  RepairNumbers(table, kMax);
  EXPECT_EQ(Names(table), (Texts{"a", "b", "0", "c"}));
}

TEST(RecordRepair, ATooLargeNumberIsInvalid) {
  SongTable table;
  Add(table, "a", "2");
  Add(table, "b", "101");
  Add(table, "c", "no number");
  Add(table, "d", "-4");
  RepairNumbers(table, kMax);
  EXPECT_EQ(Names(table), (Texts{"0", "a", "b", "c", "d"}));
}

TEST(RecordRepair, ARowWithoutNameAndNumberIsNotASong) {
  SongTable table;
  Add(table, "a", "1");
  Add(table, "", "");
  RepairNumbers(table, kMax);
  EXPECT_EQ(Names(table), Texts{"a"});
}

TEST(RecordRepair, KeepsEverySongOfRandomTables) {
  std::mt19937 random(5);
  for (int round = 0; round < 500; ++round) {
    SongTable table;
    std::vector<std::string> before;
    for (auto n = 1 + random() % 20; n > 0; --n) {
      before.push_back("song " + std::to_string(n));
      Add(table, before.back(), std::to_string(random() % 25), "1", std::to_string(random() % 8));
    }
    RepairNumbers(table, kMax);
    std::vector<std::string> after = Names(table);
    std::erase(after, "0");
    std::sort(after.begin(), after.end());
    std::sort(before.begin(), before.end());
    ASSERT_EQ(after, before);
    EXPECT_FALSE(RepairNumbers(table, kMax));
  }
}

TEST(RepairedNumbers, TheFileHoldsEverything) {
  RepairedNumbers repaired;
  EXPECT_TRUE(repaired.IsEmpty());
  repaired.Set({{12, "a.mp3", "b \xFF.mp3", 40}});
  repaired.Answer("/m/mix.juk", RepairedNumbers::Meant::kNumbers);
  RepairedNumbers read;
  read.Decode(repaired.Encode());
  EXPECT_EQ(read.Encode(), repaired.Encode());
  ASSERT_NE(read.Find(12), nullptr);
  EXPECT_EQ(read.Find(12)->held, "b \xFF.mp3");
  EXPECT_EQ(read.Find(12)->held_now, 40);
  EXPECT_EQ(read.Find(13), nullptr);
  EXPECT_EQ(read.AnswerFor("/m/mix.juk"), RepairedNumbers::Meant::kNumbers);
  EXPECT_FALSE(read.AnswerFor("/m/other.juk"));
  EXPECT_THROW(read.Decode("[]"), std::exception);
  read.Clear();
  EXPECT_TRUE(read.IsEmpty());
}

}  // namespace
}  // namespace tallow

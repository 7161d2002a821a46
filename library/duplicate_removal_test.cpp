// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/duplicate_removal.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/literal_quicksort.h"
#include "util/errors.h"
#include "util/like.h"

namespace tallow {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(const SongTable& table) {
  Rows rows;
  for (std::int32_t row = 1; row <= table.rows(); ++row) {
    rows.emplace_back();
    for (std::int16_t column = 1; column <= kSongColumns; ++column)
      rows.back().emplace_back(table.Cell(column, row));
  }
  return rows;
}

SongTable TableOf(const Rows& rows) {
  SongTable table;
  table.Resize(static_cast<std::int32_t>(rows.size()));
  for (std::size_t r = 0; r < rows.size(); ++r)
    for (std::size_t c = 0; c < rows[r].size(); ++c)
      table.SetCell(static_cast<std::int16_t>(c + 1), static_cast<std::int32_t>(r + 1), rows[r][c]);
  return table;
}

/// The removal step by step on whole rows: sort, compare neighbours, sort the other way, cut,
/// repeat.
void LiteralRemoval(Rows& rows) {
  constexpr std::size_t kName = 1;
  constexpr std::size_t kThere = 2;
  constexpr std::size_t kNumber = 3;
  const auto sort = [&](bool ascending) {
    LiteralQuicksort(rows, ascending, true, kFileName, kSongColumns)
        .Sort(1, static_cast<std::int32_t>(rows.size()));
  };
  while (!rows.empty()) {
    sort(true);
    for (std::size_t i = 1; i < rows.size(); ++i) {
      auto& first = rows[i - 1];
      auto& second = rows[i];
      const bool same = first[kName] == second[kName] || Like(first[kName], second[kName]);
      if (!same || first[kThere] != "1" || second[kThere] != "1") continue;
      if (ConvertToInt32(first[kNumber]) <= ConvertToInt32(second[kNumber]))
        second[kName].clear();
      else
        first[kName].clear();
    }
    sort(false);
    if (!rows.back()[kName].empty()) break;
    std::size_t keep = 0;
    while (!rows[keep][kName].empty()) ++keep;
    rows.resize(keep);
  }
}

Rows Row(const std::string& folder, const std::string& name, const std::string& there,
         const std::string& number) {
  std::vector<std::string> row{folder, name, there, number, "2"};
  row.resize(kSongColumns);
  return {row};
}

Rows operator+(Rows a, const Rows& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Rows After(const Rows& rows) {
  SongTable table = TableOf(rows);
  RemoveDuplicates(table);
  return RowsOf(table);
}

TEST(DuplicateRemoval, TheLowerRecordNumberSurvives) {
  const Rows a = Row("C:\\A\\", "SONG.MP3", "1", "3");
  const Rows b = Row("D:\\B\\", "SONG.MP3", "1", "7");
  EXPECT_EQ(After(a + b), a);
  EXPECT_EQ(After(b + a), a);
}

TEST(DuplicateRemoval, NumbersAreComparedByValue) {
  const Rows a = Row("/a/", "SONG.MP3", "1", "10");
  const Rows b = Row("/b/", "SONG.MP3", "1", "9");
  EXPECT_EQ(After(a + b), b);
}

TEST(DuplicateRemoval, OfEqualNumbersTheLaterRowGoes) {
  const Rows a = Row("/a/", "SONG.MP3", "1", "5");
  const Rows b = Row("/b/", "SONG.MP3", "1", "5");
  Rows expected = a + b;
  LiteralRemoval(expected);
  EXPECT_EQ(After(a + b), expected);
  EXPECT_EQ(expected.size(), 1U);
}

TEST(DuplicateRemoval, NamesThatDifferInCaseAreDifferentSongs) {
  EXPECT_EQ(After(Row("/a/", "song.mp3", "1", "1") + Row("/a/", "Song.mp3", "1", "2")).size(), 2U);
}

TEST(DuplicateRemoval, WildcardsOfAStoredNameTakeEffect) {
  // "A1.MP3" sorts before "A[1].MP3", and the latter is a pattern that the former matches.
  const Rows plain = Row("/a/", "A1.MP3", "1", "1");
  const Rows bracketed = Row("/a/", "A[1].MP3", "1", "2");
  EXPECT_EQ(After(plain + bracketed), plain);
  EXPECT_EQ(After(Row("/a/", "A1.MP3", "1", "4") + bracketed), bracketed);
}

TEST(DuplicateRemoval, ANameThatDoesNotMatchItselfIsStillItself) {
  const Rows a = Row("/a/", "B#.mp3", "1", "1");
  EXPECT_EQ(After(a + Row("/b/", "B#.mp3", "1", "2")), a);
}

TEST(DuplicateRemoval, AnUnclosedBracketIsNoError) {
  const Rows a = Row("/a/", "demo [live.mp3", "1", "1");
  EXPECT_EQ(After(a + Row("/b/", "demo [live.mp3", "1", "2")), a);
}

TEST(DuplicateRemoval, MissingSongsNeverTakePart) {
  const Rows rows = Row("0", "0", "0", "1") + Row("0", "0", "0", "2") + Row("/a/", "0", "1", "3");
  EXPECT_EQ(After(rows).size(), 3U);
}

TEST(DuplicateRemoval, ATableOfEmptyNamesOnlyBecomesEmpty) {
  EXPECT_TRUE(After(Row("/a/", "", "1", "1") + Row("/b/", "", "1", "2")).empty());
  EXPECT_TRUE(After({}).empty());
}

TEST(DuplicateRemoval, ASongWithoutANumberIsAnErrorOnlyWhenItHasATwin) {
  EXPECT_EQ(After(Row("/a/", "a", "1", "x") + Row("/a/", "b", "1", "2")).size(), 2U);
  SongTable table = TableOf(Row("/a/", "a", "1", "x") + Row("/b/", "a", "1", "2"));
  EXPECT_THROW(RemoveDuplicates(table), TypeMismatchError);
  EXPECT_EQ(table.rows(), 2);
}

/// Names over few letters and wildcard characters, so that twins of case, matches by pattern and
/// triples are common.
std::string RandomName(std::mt19937& random, bool wildcards) {
  static const char* const kPlain[] = {"a", "A", "b", "1", "\xC3\xA9", "\xC3\x89"};
  static const char* const kWild[] = {"*", "?", "#", "[", "[ab]", "[1]", "]", "[!a]"};
  std::string name;
  for (auto n = random() % 3; n > 0; --n)
    name += wildcards && random() % 3 == 0 ? kWild[random() % 8] : kPlain[random() % 6];
  return name;
}

TEST(DuplicateRemoval, AgreesWithTheLiteralStepsOnRandomTables) {
  std::mt19937 random(11);
  std::size_t removed = 0;
  for (int round = 0; round < 3000; ++round) {
    const bool wildcards = round % 2 == 1;
    Rows rows;
    const auto count = 1 + random() % 50;
    for (std::size_t k = 0; k < count; ++k)
      rows = rows + Row(std::to_string(k), RandomName(random, wildcards),
                        random() % 8 == 0 ? "0" : "1",
                        std::to_string(random() % 2 == 0 ? k : random() % 20));
    Rows expected = rows;
    LiteralRemoval(expected);
    removed += rows.size() - expected.size();
    ASSERT_EQ(After(rows), expected) << "round " << round;
  }
  EXPECT_GT(removed, 10000U);
}

}  // namespace
}  // namespace tallow

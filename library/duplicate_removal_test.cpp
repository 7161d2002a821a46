// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/duplicate_removal.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <tuple>

#include "tests/reference_quicksort.h"
#include "tests/temp_folder.h"
#include "util/errors.h"
#include "util/like.h"
#include "util/text.h"

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

constexpr std::size_t kFolder = 0;
constexpr std::size_t kName = 1;
constexpr std::size_t kThere = 2;
constexpr std::size_t kNumber = 3;

void SortByName(Rows& rows, bool ascending) {
  ReferenceQuicksort(rows, ascending, true, kFileName, kSongColumns)
      .Sort(1, static_cast<std::int32_t>(rows.size()));
}

/// Cuts off the emptied rows, which a descending sort has moved to the end.
bool CutEmptied(Rows& rows) {
  if (!rows.back()[kName].empty()) return false;
  std::size_t keep = 0;
  while (!rows[keep][kName].empty()) ++keep;
  rows.resize(keep);
  return true;
}

/// Simple algorithm on whole rows: sort ascending, compare adjacent rows, sort descending, cut off
/// the emptied rows, repeat.
void RemovalByNeighbours(Rows& rows) {
  while (!rows.empty()) {
    SortByName(rows, true);
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
    SortByName(rows, false);
    if (!CutEmptied(rows)) break;
  }
}

/// Reference implementation: like RemovalByNeighbours, but independent of how the sort orders equal
/// names. Among names equal in the sort's order all rows are compared with each other and with all
/// rows of the next such names, lowest numbers first; rows up to the old count stay. The folder of
/// a row is its index, from 0.
class ReferenceRemoval {
 public:
  ReferenceRemoval(Rows& rows, std::size_t old_count) : rows_(rows), old_count_(old_count) {}

  void Run() {
    while (!rows_.empty()) {
      SortByName(rows_, true);
      bool any = false;
      std::vector<std::size_t> before;
      for (std::size_t i = 0; i < rows_.size();) {
        std::vector<std::size_t> run;
        const std::string name = ToLower(rows_[i][kName]);
        for (; i < rows_.size() && ToLower(rows_[i][kName]) == name; ++i) run.push_back(i);
        any = Compare(run, run) || any;
        any = Compare(before, run) || any;
        before = run;
      }
      const auto is_removed = [this](const Cells& row) {
        return row[kName].empty() && !IsOld(row);
      };
      any = std::any_of(rows_.begin(), rows_.end(), is_removed) || any;
      std::erase_if(rows_, is_removed);
      if (!any) break;
    }
  }

 private:
  using Cells = std::vector<std::string>;
  bool IsOld(const Cells& row) const { return std::stoul(row[kFolder]) < old_count_; }

  /// Compares each row of one run with each row of another run, which may be the same run.
  bool Compare(const std::vector<std::size_t>& first, const std::vector<std::size_t>& second) {
    std::vector<std::size_t> both = first;
    if (first != second) both.insert(both.end(), second.begin(), second.end());
    std::erase_if(
        both, [this](std::size_t i) { return rows_[i][kThere] != "1" || rows_[i][kName].empty(); });
    const auto before = [&](std::size_t a, std::size_t b) {
      const auto key = [&](std::size_t i) {
        const bool is_later = std::count(first.begin(), first.end(), i) == 0;
        return std::make_tuple(ConvertToInt32(rows_[i][kNumber]), is_later,
                               std::stoul(rows_[i][kFolder]));
      };
      return key(a) < key(b);
    };
    std::sort(both.begin(), both.end(), before);
    bool any = false;
    for (std::size_t k = 0; k < both.size(); ++k) {
      for (std::size_t m = 0; m < k; ++m) {
        const bool in_first = std::count(first.begin(), first.end(), both[k]) > 0;
        const bool other_in_first = std::count(first.begin(), first.end(), both[m]) > 0;
        if (first != second && in_first == other_in_first) continue;
        const std::string& name = rows_[both[k]][kName];
        const std::string& other = rows_[both[m]][kName];
        if (name.empty() || other.empty() || IsOld(rows_[both[k]])) continue;
        const bool same = name == other || ((first == second || in_first) && Like(name, other)) ||
                          ((first == second || other_in_first) && Like(other, name));
        if (!same) continue;
        rows_[both[k]][kName].clear();
        any = true;
      }
    }
    return any;
  }

  Rows& rows_;
  const std::size_t old_count_;
};

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

Rows After(const Rows& rows, std::int32_t old_count = 0) {
  SongTable table = TableOf(rows);
  std::vector<char> there;
  for (const auto& row : rows) there.push_back(row[kThere] == "1");
  RemoveDuplicates(table, old_count, there);
  return RowsOf(table);
}

Rows Sorted(Rows rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
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

TEST(DuplicateRemoval, OfEqualNumbersTheLaterRowIsRemoved) {
  const Rows a = Row("/a/", "SONG.MP3", "1", "5");
  const Rows b = Row("/b/", "SONG.MP3", "1", "5");
  EXPECT_EQ(After(a + b), a);
}

TEST(DuplicateRemoval, NamesThatDifferInCaseAreDifferentSongs) {
  EXPECT_EQ(After(Row("/a/", "song.mp3", "1", "1") + Row("/a/", "Song.mp3", "1", "2")).size(), 2U);
}

TEST(DuplicateRemoval, WildcardsInAStoredNameAreEffective) {
  // "A1.MP3" sorts before "A[1].MP3", and matches "A[1].MP3" as a pattern.
  const Rows plain = Row("/a/", "A1.MP3", "1", "1");
  const Rows bracketed = Row("/a/", "A[1].MP3", "1", "2");
  EXPECT_EQ(After(plain + bracketed), plain);
  EXPECT_EQ(After(Row("/a/", "A1.MP3", "1", "4") + bracketed), bracketed);
}

TEST(DuplicateRemoval, ANameThatDoesNotMatchItselfStillEqualsItself) {
  const Rows a = Row("/a/", "B#.mp3", "1", "1");
  EXPECT_EQ(After(a + Row("/b/", "B#.mp3", "1", "2")), a);
}

TEST(DuplicateRemoval, AnUnclosedBracketIsNotAnError) {
  const Rows a = Row("/a/", "demo [live.mp3", "1", "1");
  EXPECT_EQ(After(a + Row("/b/", "demo [live.mp3", "1", "2")), a);
}

TEST(DuplicateRemoval, MissingSongsAreNotCompared) {
  const Rows rows = Row("0", "0", "0", "1") + Row("0", "0", "0", "2") + Row("/a/", "0", "1", "3");
  EXPECT_EQ(After(rows).size(), 3U);
}

TEST(DuplicateRemoval, ATableOfEmptyNamesOnlyBecomesEmpty) {
  EXPECT_TRUE(After(Row("/a/", "", "1", "1") + Row("/b/", "", "1", "2")).empty());
  EXPECT_TRUE(After({}).empty());
}

TEST(DuplicateRemoval, AMissingNumberIsAnErrorOnlyForASongWithACopy) {
  EXPECT_EQ(After(Row("/a/", "a", "1", "x") + Row("/a/", "b", "1", "2")).size(), 2U);
  SongTable table = TableOf(Row("/a/", "a", "1", "x") + Row("/b/", "a", "1", "2"));
  EXPECT_THROW(RemoveDuplicates(table, 0, {1, 1}), TypeMismatchError);
  EXPECT_EQ(table.rows(), 2);
}

/// Random names of few letters and wildcard characters, so that names that differ only in case,
/// wildcard matches and groups of three are common. As for real file names, none matches the empty
/// text.
std::string RandomName(std::mt19937& random, bool wildcards) {
  static const char* const kPlain[] = {"a", "A", "b", "1", "\xC3\xA9", "\xC3\x89"};
  static const char* const kWild[] = {"*", "?", "#", "[", "[ab]", "[1]", "]", "[!a]"};
  std::string name;
  for (auto n = random() % 3; n > 0; --n)
    name += wildcards && random() % 3 == 0 ? kWild[random() % 8] : kPlain[random() % 6];
  return name + "3";
}

TEST(DuplicateRemoval, OldRowsAreNeverRemoved) {
  const Rows a = Row("/a/", "SONG.MP3", "1", "1");
  const Rows b = Row("/b/", "SONG.MP3", "1", "2");
  const Rows c = Row("/c/", "SONG.MP3", "1", "3");
  EXPECT_EQ(After(a + b + c, 2), a + b);
  EXPECT_EQ(After(a + Row("/b/", "", "0", "2") + Row("/c/", "", "1", "3"), 2),
            a + Row("/b/", "", "0", "2"));
  // Not even when an added song has a lower number.
  EXPECT_EQ(After(Row("/a/", "x", "1", "9") + Row("/b/", "x", "1", "1"), 1).size(), 2U);
}

TEST(DuplicateRemoval, NamesThatDifferInCaseDoNotHideEqualNames) {
  Rows rows;
  for (int k = 0; k < 40; ++k)
    rows = rows + Row(std::to_string(k), k % 3 == 0 ? "intro.mp3" : "Intro.mp3", "1",
                      std::to_string(k + 1));
  EXPECT_EQ(After(rows), Row("0", "intro.mp3", "1", "1") + Row("1", "Intro.mp3", "1", "2"));
}

TEST(DuplicateRemoval, ManyRowsOfOneNameAreComparedToo) {
  Rows rows;
  for (int k = 100; k > 0; --k)
    rows = rows + Row(std::to_string(k), k % 2 == 0 ? "a" : "A", "1", std::to_string(k));
  EXPECT_EQ(After(rows), Row("2", "a", "1", "2") + Row("1", "A", "1", "1"));
}

/// A folder with this system's separators.
std::string In(const std::string& folder) { return kSep + folder + kSep; }

TEST(DuplicateRemoval, LeftOutFilesAreReturnedWithTheSongOfTheirName) {
  SongTable table = TableOf(Row(In("a"), "x", "1", "1") + Row(In("b"), "x", "1", "2") +
                            Row(In("a"), "x", "1", "3") + Row(In("c"), "x", "1", "4"));
  // Rows 1 and 2 are known; row 3 has the same path as row 1.
  const std::vector<LeftOutFile> left_out = RemoveDuplicates(table, 2, {1, 1, 1, 1});
  ASSERT_EQ(left_out.size(), 1U);
  EXPECT_EQ(left_out[0].path, In("c") + "x");
  EXPECT_EQ(left_out[0].stands_for_it, In("a") + "x");
  EXPECT_EQ(table.rows(), 2);
}

TEST(DuplicateRemoval, AFileThatIsAKnownSongIsNotLeftOutThoughAnotherSongHasItsName) {
  SongTable table = TableOf(Row(In("a"), "x", "1", "1") + Row(In("b"), "x", "1", "2") +
                            Row(In("b"), "x", "1", "3"));
  EXPECT_TRUE(RemoveDuplicates(table, 2, {1, 1, 1}).empty());
}

TEST(DuplicateRemoval, SongsThatDoNotTakePartStayAndRemoveNothing) {
  SongTable table = TableOf(Row("/a/", "x", "1", "1") + Row("/b/", "x", "1", "2"));
  RemoveDuplicates(table, 1, {0, 1});
  EXPECT_EQ(table.rows(), 2);
}

/// Rows with random names, flags and numbers. The folder of a row is its index.
Rows RandomRows(std::mt19937& random, bool wildcards) {
  Rows rows;
  const auto count = 1 + random() % 50;
  for (std::size_t k = 0; k < count; ++k)
    rows =
        rows + Row(std::to_string(k), RandomName(random, wildcards), random() % 8 == 0 ? "0" : "1",
                   std::to_string(random() % 2 == 0 ? k : random() % 20));
  return rows;
}

TEST(DuplicateRemoval, AgreesWithTheReferenceOnRandomTables) {
  std::mt19937 random(11);
  std::size_t removed = 0;
  for (int round = 0; round < 3000; ++round) {
    const Rows rows = RandomRows(random, round % 2 == 1);
    const std::size_t old_count = round % 3 == 0 ? 0 : random() % rows.size();
    Rows expected = rows;
    ReferenceRemoval(expected, old_count).Run();
    removed += rows.size() - expected.size();
    ASSERT_EQ(Sorted(After(rows, static_cast<std::int32_t>(old_count))), Sorted(expected))
        << "round " << round;
  }
  EXPECT_GT(removed, 10000U);
}

TEST(DuplicateRemoval, EqualsTheRemovalByNeighboursUnlessNamesDifferOnlyInCase) {
  std::mt19937 random(12);
  std::size_t removed = 0;
  for (int round = 0; round < 3000; ++round) {
    // With wildcards, use each name once: with several rows of a name, the sort would decide which
    // row is adjacent to the next name.
    const bool wildcards = round % 2 == 1;
    Rows rows = RandomRows(random, wildcards);
    std::set<std::string> names;
    std::erase_if(rows, [&](auto& row) {
      row[kName] = ToLower(row[kName]);
      // Every row is present: the two algorithms treat missing songs differently.
      row[kThere] = "1";
      row[kNumber] = std::to_string(std::stoi(row[kFolder]) * 7 % 53);
      return wildcards && !names.insert(row[kName]).second;
    });
    Rows expected = rows;
    RemovalByNeighbours(expected);
    removed += rows.size() - expected.size();
    ASSERT_EQ(Sorted(After(rows)), Sorted(expected)) << "round " << round;
  }
  EXPECT_GT(removed, 10000U);
}

TEST(DuplicateRemoval, TheOrderOfTheRowsDoesNotMatter) {
  std::mt19937 random(13);
  for (int round = 0; round < 500; ++round) {
    Rows rows = RandomRows(random, round % 2 == 1);
    for (auto& row : rows) row[kNumber] = row[kFolder];
    const Rows expected = Sorted(After(rows));
    std::shuffle(rows.begin(), rows.end(), random);
    ASSERT_EQ(Sorted(After(rows)), expected) << "round " << round;
  }
}

}  // namespace
}  // namespace tallow

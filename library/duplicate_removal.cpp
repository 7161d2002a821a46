// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/duplicate_removal.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "library/song_view.h"
#include "util/like.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/quicksort.h"

namespace tallow {
namespace {

using Row = std::int32_t;

/// Consecutive rows, in name order, whose names are equal ignoring case.
struct NameRun {
  std::size_t begin;  ///< index in rows_
  std::size_t end;
};

/// Larger runs without wildcards use a hash map instead of comparing all pairs.
constexpr std::size_t kMaxCompared = 16;

/// Decides which rows to remove. The destructor removes them from the table.
class Removal {
 public:
  Removal(SongTable& table, std::int32_t old_count, const std::vector<char>& is_compared,
          std::vector<LeftOutFile>& left_out)
      : table_(table), old_count_(old_count), is_compared_(is_compared), left_out_(left_out) {
    const auto count = static_cast<std::size_t>(table.rows());
    is_removed_.resize(count);
    names_.resize(count);
    for (std::size_t k = 0; k < count; ++k)
      names_[k] = table.Cell(kFileName, static_cast<Row>(k + 1));
    SortByName(RankText(names_));
  }
  Removal(const Removal&) = delete;
  Removal& operator=(const Removal&) = delete;
  ~Removal() { table_.Remove(is_removed_); }

  void Run() {
    bool again = true;
    while (again) {
      again = false;
      for (std::size_t k = 0; k < runs_.size(); ++k) {
        again = CompareInside(runs_[k]) || again;
        if (k > 0) again = CompareNeighbours(runs_[k - 1], runs_[k]) || again;
      }
      // Removing a whole run makes its neighbours adjacent, so they must be compared in another
      // pass.
      const std::size_t before = runs_.size();
      std::erase_if(runs_, [this](const NameRun& run) {
        return std::all_of(rows_.begin() + Offset(run.begin), rows_.begin() + Offset(run.end),
                           [this](Row row) { return IsRemoved(row); });
      });
      again = again && runs_.size() < before;
    }
  }

 private:
  static std::ptrdiff_t Offset(std::size_t place) { return static_cast<std::ptrdiff_t>(place); }
  bool IsRemoved(Row row) const { return is_removed_[static_cast<std::size_t>(row - 1)] != 0; }
  std::string_view Name(Row row) const { return names_[static_cast<std::size_t>(row - 1)]; }
  bool IsOld(Row row) const { return row <= old_count_; }
  bool IsPresent(Row row) const {
    return !IsRemoved(row) && is_compared_[static_cast<std::size_t>(row - 1)] != 0;
  }

  /// Sorts the rows by the ranks of their names (counting sort, stable), and finds the runs.
  void SortByName(const std::vector<std::int32_t>& ranks) {
    const auto max_rank = ranks.empty() ? 0 : *std::max_element(ranks.begin(), ranks.end());
    std::vector<std::size_t> begins(static_cast<std::size_t>(max_rank) + 2);
    for (const std::int32_t rank : ranks) ++begins[static_cast<std::size_t>(rank) + 1];
    std::partial_sum(begins.begin(), begins.end(), begins.begin());
    rows_.resize(ranks.size());
    std::vector<std::size_t> next(begins.begin(), begins.end() - 1);
    for (std::size_t k = 0; k < ranks.size(); ++k)
      rows_[next[static_cast<std::size_t>(ranks[k])]++] = static_cast<Row>(k + 1);
    for (std::size_t rank = 0; rank + 1 < begins.size(); ++rank) {
      if (begins[rank] == begins[rank + 1]) continue;
      const NameRun run{begins[rank], begins[rank + 1]};
      if (Name(rows_[run.begin]).empty())
        RemoveNameless(run);
      else
        runs_.push_back(run);
    }
  }

  void RemoveNameless(const NameRun& run) {
    for (std::size_t k = run.begin; k < run.end; ++k)
      if (!IsOld(rows_[k])) is_removed_[static_cast<std::size_t>(rows_[k] - 1)] = 1;
  }

  /// The present rows of a run, sorted by record number. Rows without a valid number come last.
  std::vector<Row> PresentOf(const NameRun& run) const {
    std::vector<Row> present;
    for (std::size_t k = run.begin; k < run.end; ++k)
      if (IsPresent(rows_[k])) present.push_back(rows_[k]);
    if (present.size() > 1) SortByNumber(present);
    return present;
  }
  void SortByNumber(std::vector<Row>& rows) const {
    std::vector<std::pair<std::int32_t, Row>> keys;
    keys.reserve(rows.size());
    for (const Row row : rows)
      keys.emplace_back(TryConvertToInt32(table_.Cell(kRecordNumber, row))
                            .value_or(std::numeric_limits<std::int32_t>::max()),
                        row);
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t k = 0; k < rows.size(); ++k) rows[k] = keys[k].second;
  }

  /// Compares the rows of one run with each other.
  /// \returns whether any row was removed
  bool CompareInside(const NameRun& run) {
    if (run.end - run.begin < 2) return false;
    const std::vector<Row> present = PresentOf(run);
    if (present.size() < 2) return false;
    const bool patterns = std::any_of(present.begin(), present.end(),
                                      [this](Row row) { return HasWildcards(Name(row)); });
    if (!patterns && present.size() > kMaxCompared) return CompareManyInside(present);
    bool any = false;
    std::vector<Row> left;  // remaining rows with different names
    for (const Row row : present) {
      const auto same = FindMatch(left, [&](Row other) { return Name(other) == Name(row); });
      auto original = same;
      if (!original && patterns)
        original = FindMatch(left, [&](Row other) {
          return Like(Name(other), Name(row)) || Like(Name(row), Name(other));
        });
      if (original) any = RemoveCopy(row, *original) || any;
      if (!same && !IsRemoved(row)) left.push_back(row);
    }
    return any;
  }

  /// CompareInside for many rows without wildcards, using a hash map.
  bool CompareManyInside(const std::vector<Row>& present) {
    bool any = false;
    std::unordered_map<std::string_view, Row> left;
    for (const Row row : present) {
      const auto [original, is_other] = left.emplace(Name(row), row);
      if (!is_other) any = RemoveCopy(row, original->second) || any;
    }
    return any;
  }

  /// Compares the rows of two adjacent runs.
  /// \returns whether any row was removed
  bool CompareNeighbours(const NameRun& first, const NameRun& second) {
    const bool patterns =
        std::any_of(rows_.begin() + Offset(second.begin), rows_.begin() + Offset(second.end),
                    [this](Row row) { return IsPresent(row) && HasWildcards(Name(row)); });
    // Names in different runs can only be the same by a wildcard match.
    if (!patterns) return false;
    std::vector<Row> both = PresentOf(first);
    const std::vector<Row> second_rows = PresentOf(second);
    const std::size_t firsts = both.size();
    if (firsts == 0 || second_rows.empty()) return false;
    both.insert(both.end(), second_rows.begin(), second_rows.end());
    std::unordered_map<Row, bool> is_first;
    for (std::size_t k = 0; k < both.size(); ++k) is_first[both[k]] = k < firsts;
    SortByNumber(both);
    bool any = false;
    std::vector<Row> left[2];  // remaining rows with different names, of either run
    std::unordered_map<std::string_view, Row> names;
    for (const Row row : both) {
      const bool in_first = is_first[row];
      const auto original = FindMatch(left[in_first ? 1 : 0], [&](Row other) {
        return in_first ? Like(Name(row), Name(other)) : Like(Name(other), Name(row));
      });
      if (original) any = RemoveCopy(row, *original) || any;
      if (!IsRemoved(row) && names.emplace(Name(row), row).second)
        left[in_first ? 0 : 1].push_back(row);
    }
    return any;
  }

  template <typename Matches>
  static std::optional<Row> FindMatch(const std::vector<Row>& rows, const Matches& matches) {
    const auto found = std::find_if(rows.begin(), rows.end(), matches);
    return found != rows.end() ? std::optional(*found) : std::nullopt;
  }

  /// Marks a row for removal unless it is an old row. Returns whether it was marked.
  bool RemoveCopy(Row row, Row original) {
    // Throw if either record number is invalid, because the lower number decides.
    for (const Row one : {row, original}) ConvertToInt32(table_.Cell(kRecordNumber, one));
    if (IsOld(row)) return false;
    is_removed_[static_cast<std::size_t>(row - 1)] = 1;
    if (!table_.SameStoredText(kFileLocation, row, original) || Name(row) != Name(original))
      left_out_.push_back({SongView(table_, row).Path(), SongView(table_, original).Path()});
    return true;
  }

  SongTable& table_;
  const std::int32_t old_count_;
  const std::vector<char>& is_compared_;
  std::vector<LeftOutFile>& left_out_;
  std::vector<std::string_view> names_;  ///< by row
  std::vector<char> is_removed_;         ///< by row
  std::vector<Row> rows_;                ///< in name order
  std::vector<NameRun> runs_;            ///< with at least one remaining row
};

/// Drops left-out files that are themselves songs in the table.
void DropKnownFiles(const SongTable& table, std::vector<LeftOutFile>& files) {
  if (files.empty()) return;
  std::unordered_map<std::string_view, std::vector<LeftOutFile*>> by_name;
  for (LeftOutFile& file : files) by_name[NameOfPath(file.path)].push_back(&file);
  for (Row row = 1; row <= table.rows(); ++row) {
    const auto found = by_name.find(table.Cell(kFileName, row));
    if (found == by_name.end()) continue;
    for (LeftOutFile* const file : found->second)
      if (FolderOfPath(file->path) == table.Cell(kFileLocation, row)) file->stands_for_it.clear();
  }
  std::erase_if(files, [](const LeftOutFile& file) { return file.stands_for_it.empty(); });
}

}  // namespace

std::vector<LeftOutFile> RemoveDuplicates(SongTable& table, std::int32_t old_count,
                                          const std::vector<char>& is_compared) {
  std::vector<LeftOutFile> left_out;
  if (table.rows() == 0) return left_out;
  Removal(table, old_count, is_compared, left_out).Run();
  DropKnownFiles(table, left_out);
  return left_out;
}

}  // namespace tallow

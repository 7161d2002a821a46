// SPDX-License-Identifier: GPL-3.0-or-later
// Searches a large library while a text is typed, and sorts its songs by columns. The songs are in
// memory and in the database of details only; there are no files.
//
// Usage: tallow_find_benchmark FOLDER COUNT
//   FOLDER for the database, which later runs use again; ends in a separator
//
// Prints lines of a name and seconds, each the best of several runs:
//   floor      one pass over as many bytes of memory as the index has
//   first      the first key, for which the details are read and the index is made
//   search     the slowest key of several typed texts; the text follows, and a checksum of all hits
//   sort_...   sorting all songs by a column
// and, in MB, "memory" with what the first key has added to the process, "index" with the memory of
// the index, and "details" with that of the table of details.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "app/columns/song_columns.h"
#include "app/find/song_finder.h"
#include "app/playing/play_counts.h"
#include "app/tallow.h"
#include "benchmarks/find_library.h"
#include "benchmarks/process_memory.h"
#include "jukebox/column_sort.h"

namespace tallow {
namespace {

constexpr int kRuns = 5;

template <typename Act>
double SecondsOf(const Act& act) {
  const auto begin = std::chrono::steady_clock::now();
  act();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

template <typename Act>
double BestOf(const Act& act) {
  double best = SecondsOf(act);
  for (int k = 1; k < kRuns; ++k) best = std::min(best, SecondsOf(act));
  return best;
}

/// One pass over memory.
double Floor(std::size_t bytes) {
  std::vector<std::uint64_t> memory(bytes / sizeof(std::uint64_t) + 1, 1);
  volatile std::uint64_t sum = 0;
  return BestOf([&] { sum = std::accumulate(memory.begin(), memory.end(), std::uint64_t{0}); });
}

void Run(const std::string& folder, std::int32_t count) {
  const FindLibrary library(folder, count);
  Tallow tallow(library.Application());
  library.Fill(tallow);

  double first = 0;
  double memory = 0;
  std::size_t bytes = 0;
  std::size_t table_bytes = 0;
  for (int k = 0; k < kRuns; ++k) {
    LibraryDetails details(library.Database());
    details.Use(tallow.library);
    SongFinder finder(tallow.library, details);
    const long before = ProcessMemory();
    const double seconds = SecondsOf([&] { finder.Find("b"); });
    constexpr double kKibibytesAMegabyte = 1e6 / 1024;
    if (k == 0) memory = static_cast<double>(ProcessMemory() - before) / kKibibytesAMegabyte;
    if (k == 0 || seconds < first) first = seconds;
    bytes = finder.Index().Bytes();
    table_bytes = details.Table().Bytes();
  }
  std::printf("floor %.6f\n", Floor(bytes));
  std::printf("first %.6f\n", first);
  std::printf("memory %.1f\n", memory);
  constexpr double kMegabyte = 1e6;
  std::printf("index %.1f\n", static_cast<double>(bytes) / kMegabyte);
  std::printf("details %.1f\n", static_cast<double>(table_bytes) / kMegabyte);

  SongFinder finder(tallow.library, tallow.details);
  finder.Find("b");
  double slowest = 0;
  std::string slowest_text;
  std::uint32_t checksum = 0;
  for (const std::string_view text : kTypedTexts)
    for (std::size_t length = 1; length <= text.size(); ++length) {
      const std::string typed(text.substr(0, length));
      std::vector<std::int32_t> hits;
      const double seconds = BestOf([&] { hits = finder.Find(typed); });
      constexpr std::uint32_t kFactor = 31;
      for (const std::int32_t hit : hits)
        checksum = checksum * kFactor + static_cast<std::uint32_t>(hit);
      if (seconds <= slowest) continue;
      slowest = seconds;
      slowest_text = typed;
    }
  std::printf("search %.6f \"%s\" %08x\n", slowest, slowest_text.c_str(), checksum);

  PlayCounts counts(library.Application());
  const SongColumns columns(tallow.library, tallow.details, counts);
  std::vector<std::int32_t> records(static_cast<std::size_t>(count));
  std::iota(records.begin(), records.end(), 1);
  std::ranges::shuffle(records, std::mt19937(8));
  for (const ListColumn column :
       {ListColumn::kTitle, ListColumn::kArtist, ListColumn::kLength, ListColumn::kFolder}) {
    const double seconds = BestOf([&] { OrderByColumn(columns.KeysOf(column)(records), false); });
    std::printf("sort_%s %.6f\n", std::string(IdOf(column)).c_str(), seconds);
  }
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  tallow::Run(argv[1], std::atoi(argv[2]));
}

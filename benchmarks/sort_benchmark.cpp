// SPDX-License-Identifier: GPL-3.0-or-later
// Sorts the library by each column and compares with std::sort of the same keys.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <vector>

#include "app/tallow.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr int kRows = 100000;

/// The cells of one column of a library of realistic songs, in random order.
std::vector<std::string> Keys(int column) {
  std::mt19937 random(4);
  std::vector<std::string> keys(kRows);
  for (int k = 0; k < kRows; ++k) {
    auto& key = keys[static_cast<std::size_t>(k)];
    const auto album = std::to_string(random() % (kRows / 10));
    if (column == kFileLocation) key = "/home/ann/Music/Artist " + album + "/Album " + album + "/";
    if (column == kFileName)
      key = "Song " + std::to_string(random() % 1000000) + " - " + std::to_string(k) + ".mp3";
    if (column == kFileIsThere) key = random() % 20 == 0 ? "0" : "1";
    if (column == kRecordNumber) key = std::to_string(k + 1);
    if (column == kSongRank) key = std::to_string(2 + random() % 6);
  }
  std::shuffle(keys.begin(), keys.end(), random);
  return keys;
}

bool AsText(int column) { return column == kFileLocation || column == kFileName; }

void TallowSort(benchmark::State& state) {
  const auto column = static_cast<std::int16_t>(state.range(0));
  const std::vector<std::string> keys = Keys(column);
  for (auto _ : state) {
    state.PauseTiming();
    Tallow tallow("/nowhere/");
    for (int c = 1; c <= kSongRank; ++c) {
      const std::vector<std::string>& cells = c == column ? keys : Keys(c);
      for (int k = 0; k < kRows; ++k)
        tallow.library.Mp3Info(c, k + 1, cells[static_cast<std::size_t>(k)]);
    }
    bool sorted = false;
    state.ResumeTiming();
    tallow.library.Sort(true, AsText(column), column, sorted);
    state.PauseTiming();
    benchmark::DoNotOptimize(tallow.library.Mp3Info(column, 1));
    state.ResumeTiming();
  }
}

void StandardSort(benchmark::State& state) {
  const auto column = static_cast<std::int16_t>(state.range(0));
  const std::vector<std::string> keys = Keys(column);
  for (auto _ : state) {
    // Uses the same keys as Sort: lower-cased text or integers, made from the cells.
    if (AsText(column)) {
      std::vector<std::string> lower;
      lower.reserve(keys.size());
      for (const std::string& key : keys) lower.push_back(ToLower(key));
      std::sort(lower.begin(), lower.end());
      benchmark::DoNotOptimize(lower.data());
    } else {
      std::vector<std::int32_t> numbers;
      numbers.reserve(keys.size());
      for (const std::string& key : keys) numbers.push_back(ConvertToInt32(key));
      std::sort(numbers.begin(), numbers.end());
      benchmark::DoNotOptimize(numbers.data());
    }
  }
}

BENCHMARK(StandardSort)->DenseRange(kFileLocation, kSongRank)->Unit(benchmark::kMillisecond);
BENCHMARK(TallowSort)
    ->DenseRange(kFileLocation, kSongRank)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);

}  // namespace
}  // namespace tallow

BENCHMARK_MAIN();

// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the jukebox file and the sorting of a list, with 100,000 songs filed in all automatic
// folders.
// Prints one line per measurement, and one per floor: what, seconds.
//
// Usage: tallow_jukebox_benchmark FOLDER
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "jukebox/song_search.h"
#include "util/atomic_file.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSongs = 100000;
constexpr int kTimes = 7;

/// The shortest time of several runs.
/// \param before runs before each run and is not measured
double Best(const std::function<void()>& act, const std::function<void()>& before = {}) {
  double best = 1e9;
  for (int k = 0; k < kTimes; ++k) {
    if (before) before();
    const auto begin = Clock::now();
    act();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - begin).count());
  }
  return best;
}

void FillLibrary(clsMain& library) {
  std::mt19937 random(1);
  for (int row = 1; row <= kSongs; ++row) {
    library.Mp3Info(kFileLocation, row, "/music/");
    library.Mp3Info(
        kFileName, row,
        "Song " + std::to_string(random() % 1000000) + " - " + std::to_string(row) + ".mp3");
    library.Mp3Info(kFileIsThere, row, "1");
    library.Mp3Info(kRecordNumber, row, std::to_string(row));
    library.Mp3Info(kSongRank, row, std::to_string(2 + random() % 6));
  }
}

/// Files every song under the values that tags of a real collection have.
void FillJukebox(Jukebox& jukebox) {
  FolderTree& tree = jukebox.Nodes();
  jukebox.AddColumnHeader(kNameHeader);
  jukebox.AddColumnHeader(kKeyHeader);
  Folder* const flat[] = {&tree.AddChild(nullptr, "All Songs"), &tree.AddChild(nullptr, "New")};
  const std::pair<const char*, int> categories[] = {
      {"Artist", 2000}, {"Year", 90}, {"Genre", 148}, {"Decades", 9}};
  for (Folder* const folder : flat)
    for (int song = 1; song <= kSongs; ++song) folder->Items().emplace_back(song, 2);
  for (const auto& [text, folders] : categories) {
    Folder& category = tree.AddChild(nullptr, text);
    for (int k = 0; k < folders; ++k)
      tree.AddChild(&category, std::string(text) + " " + std::to_string(k * 7919 % 100003));
    for (int song = 1; song <= kSongs; ++song)
      category.ChildAt(song * 31 % folders).Items().emplace_back(song, 2);
  }
}

std::size_t EntriesOf(const Folder& folder) {
  std::size_t entries = folder.Items().size();
  for (std::int32_t k = 0; k < folder.Children(); ++k) entries += EntriesOf(folder.ChildAt(k));
  return entries;
}

void MeasureFile(Jukebox& jukebox, const std::string& folder, const clsMain& library) {
  const std::string path = folder + "bench.juk";
  const auto remove = [&] { RemoveFile(path); };
  std::printf("save %.6f\n", Best([&] { jukebox.Save(path, library); }, remove));
  const std::string bytes = *ReadWholeFile(path);
  std::printf("write %.6f\n", Best([&] { WriteFileAtomically(path, bytes); }, remove));
  std::printf("load %.6f\n", Best([&] { Jukebox().Load(path, library); }));
  std::size_t members = 0;
  std::printf("read_and_parse %.6f\n",
              Best([&] { members += nlohmann::json::parse(*ReadWholeFile(path)).size(); }));
  std::size_t entries = 0;
  for (std::int32_t k = 0; k < jukebox.Nodes().Children(); ++k)
    entries += EntriesOf(jukebox.Nodes().ChildAt(k));
  const std::size_t names = bytes.find("\"names\":{");
  std::printf("bytes_an_entry %.2f %zu %zu\n",
              static_cast<double>(names) / static_cast<double>(entries), entries, bytes.size());
  if (members == 0) std::printf("nothing was parsed\n");
}

void MeasureSorting(Jukebox& jukebox, const clsMain& library) {
  std::int64_t changes = 0;
  Folder& all = jukebox.Nodes().ChildAt(0);
  const std::vector<SongEntry> unsorted = all.Items();
  for (int state = 1; state <= 4; ++state) {
    const auto before = [&] {
      all.Items() = unsorted;
      jukebox.ShowFolder(all, library, changes);
      // Earlier clicks are not measured. Each click sorts the order that the previous click
      // produced.
      for (int click = 1; click < state; ++click) jukebox.ColumnClick(library);
      jukebox.History().Clear();
    };
    std::printf("click_%d %.6f\n", state, Best([&] { jukebox.ColumnClick(library); }, before));
    std::vector<std::pair<std::string, std::int32_t>> texts;
    std::vector<std::pair<std::int32_t, std::int32_t>> numbers;
    const auto keys = [&] {
      before();
      texts.clear();
      numbers.clear();
    };
    // The floor does the same work as the clicks: read the keys, sort, write the songs back.
    const auto sort = [&](auto& table, const auto& key) {
      for (const SongEntry& entry : all.Items())
        table.emplace_back(key(entry.SubItem()), entry.SubItem());
      std::sort(table.begin(), table.end());
      if (state == 2 || state == 3) std::reverse(table.begin(), table.end());
      for (std::size_t k = 0; k < table.size(); ++k) all.Items()[k].SubItem(table[k].second);
    };
    std::printf("sort_%d %.6f\n", state,
                Best(
                    [&] {
                      if (state <= 2)
                        sort(texts,
                             [&](int song) { return ToLower(library.Mp3Info(kFileName, song)); });
                      else
                        sort(numbers, [&](int song) {
                          return std::stoi(std::string(library.Mp3Info(kSongRank, song)));
                        });
                    },
                    keys));
  }
}

/// Searches for a text that does not occur, which visits every folder.
void MeasureFinding(const Jukebox& jukebox, const clsMain& library) {
  bool found = false;
  std::printf("find %.6f\n", Best([&] {
                SongSearch search;
                const Folder& first = jukebox.Nodes().ChildAt(0);
                found =
                    search.FindNext("nowhere", jukebox.Nodes(), first, library).folder != nullptr;
              }));
  if (found) std::printf("it was found\n");
}

int Run(const std::string& folder) {
  Tallow tallow(folder);
  FillLibrary(tallow.library);
  Jukebox jukebox;
  FillJukebox(jukebox);
  MeasureFile(jukebox, folder, tallow.library);
  MeasureFinding(jukebox, tallow.library);
  MeasureSorting(jukebox, tallow.library);
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  return argc == 2 ? tallow::Run(tallow::EnsureTrailingBackslash(argv[1])) : 2;
}

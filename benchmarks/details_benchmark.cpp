// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how the details of songs are read in the background and stored in a new database, while
// the calling thread takes the results as a window does. Prints one line: "details", seconds,
// increase of memory in KiB, the longest call of the window's thread and the stop at the end in
// seconds, and the number of songs.
//
// Usage: tallow_details_benchmark MUSIC DATABASE
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/process_memory.h"
#include "details/details_filler.h"
#include "details/details_store.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

/// How often the results are taken.
constexpr std::chrono::milliseconds kPollEvery{50};

/// The songs below a folder.
void AddSongs(const std::string& folder, std::vector<std::string>& paths) {
  const FolderListing listing = ListFolder(folder, {.pattern = "*.mp3", .subfolders = true});
  for (const FileEntry& file : listing.files) paths.push_back(folder + file.name);
  for (const SubfolderEntry& entry : listing.subfolders) AddSongs(folder + entry.name + "/", paths);
}

int Run(const std::string& music, const std::string& database) {
  std::vector<std::string> paths;
  AddSongs(music + "/", paths);
  const long before = ProcessMemory();
  const auto begin = Clock::now();
  double longest = 0;
  const auto measure = [&](const auto& act) {
    const auto start = Clock::now();
    act();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    longest = std::max(longest, seconds);
    return seconds;
  };
  const auto store = std::make_shared<DetailsStore>();
  // The worker threads of the program open the database.
  store->Open(database);
  DetailsFiller filler(store);
  std::size_t found = 0;
  DetailsFiller::Progress progress{0, paths.size()};
  measure([&] { filler.Start(paths.size(), [&](std::size_t k) { return paths[k]; }); });
  while (!progress.IsFinished()) {
    std::this_thread::sleep_for(kPollEvery);
    measure([&] {
      progress = filler.Poll([&](std::size_t, const SongDetails& details) {
        if (!details.failed) ++found;
      });
    });
  }
  const std::chrono::duration<double> took = Clock::now() - begin;
  const long memory = ProcessMemory() - before;
  const double poll = longest;
  const double stop = measure([&] { filler.Stop(); });
  store->Close();
  std::printf("details %.6f %ld %.6f %.6f %zu\n", took.count(), memory, poll, stop, found);
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) { return argc == 3 ? tallow::Run(argv[1], argv[2]) : 2; }

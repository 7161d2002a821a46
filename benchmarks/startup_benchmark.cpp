// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the start-up without windows on a real collection: the first run, and later runs.
// Prints one line per run: what, seconds, increase of memory since before the library was created
// in KiB.
//
// Usage: tallow_startup_benchmark MUSIC APPLICATION_FOLDER first|second|save
//   save  saves the jukebox after the start, so that later starts open it
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/search/drive_list.h"
#include "app/system.h"
#include "benchmarks/process_memory.h"
#include "jukebox/jukebox.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Windows that do nothing, to measure the start-up alone.
class NoWindows : public StartUpWindows, private SearchProgress {
 public:
  void ShowSplash() override {}
  SearchProgress& Splash() override { return *this; }
  SearchProgress* LoadedSplash() override { return this; }
  void ShowCancelButton(bool) override {}
  void ShowFoundLine(bool) override {}
  void UnloadSplash() override {}
  Jukebox& NewJukebox() override { return jukebox; }
  void ShowJukebox(Jukebox&) override {}
  std::span<Jukebox* const> OpenJukeboxes() override { return open_; }
  MessageAnswer Show(const Message& message) override {
    std::fprintf(stderr, "%s\n", message.text.c_str());
    return message.can_be_dismissed ? MessageAnswer::kCancel : MessageAnswer::kNo;
  }
  std::optional<std::size_t> Choose(const std::string& /*text*/,
                                    const std::vector<std::string>& /*choices*/) override {
    return std::nullopt;
  }
  void Notice(const std::vector<std::string>& lines) override { ShowError(lines.front()); }
  void NoticeScan(const std::vector<std::string>&) override {}
  void DiscardJukebox(Jukebox&) override {}
  void SelectFolder(Jukebox&, Folder&) override {}
  void PlaceJukeboxes(const std::vector<PlacedJukebox>&, Jukebox&) override {}
  void OpenInTextEditor(const std::string&) override {}
  void ShowTip() override {}

  Jukebox jukebox;

 private:
  bool IsLoaded() const override { return true; }
  void SetStatus(std::string_view) override {}
  void SetFound(std::string_view) override {}
  void Repaint() override {}
  void Yield() override {}
  void YieldAfterSong() override {}

  Jukebox* const open_[1] = {&jukebox};
};

int Run(const std::string& music, const std::string& application, const char* what) {
  const long before = ProcessMemory();
  const auto begin = std::chrono::steady_clock::now();
  Tallow tallow(EnsureTrailingBackslash(application));
  const auto drives = GivenDrives({music});
  NoWindows windows;
  if (!System(tallow, *drives, windows).Main({})) return 1;
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  if (std::string_view(what) == "save") {
    const std::string path = EnsureTrailingBackslash(application) + "Grouping/bench.juk";
    if (!windows.jukebox.Save(path, tallow.library)) return 1;
    tallow.settings.LocOfLastSavedJukeBox(path);
    tallow.SaveSettings();
  }
  std::printf("%s %.6f %ld %d\n", what, took.count(), ProcessMemory() - before,
              tallow.library.UBoundOfMp3Array());
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) { return argc == 4 ? tallow::Run(argv[1], argv[2], argv[3]) : 2; }

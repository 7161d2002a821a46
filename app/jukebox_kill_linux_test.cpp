// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "jukebox/jukebox.h"
#include "jukebox/jukebox_edits.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

/// Kills a process that repeatedly edits a jukebox, saves it and keeps its unsaved changes.
class JukeboxKill : public LibraryTest {
 protected:
  static constexpr int kSongs = 2000;
  static constexpr int kKills = 150;

  JukeboxKill() {
    for (int k = 1; k <= kSongs; ++k) AddSong("/m/", std::to_string(k) + ".mp3");
    jukebox.Caption("MIX");
    for (const char* const text : {"a", "b"}) {
      Folder& folder = jukebox.Nodes().AddChild(nullptr, text);
      for (int k = 1; k <= kSongs; ++k) folder.Items().emplace_back(k, 2);
    }
  }

  std::string Path() const { return application / "mix.juk"; }

  /// Runs `act` in a loop in a child process, and kills the process at some moment after the first
  /// pass.
  template <typename Act>
  void RunAndKill(int kill_number, const Act& act) {
    int done[2];
    ASSERT_EQ(pipe(done), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int round = kill_number * 100000;; ++round) {
        Edit(round);
        act();
        if (write(done[1], "", 1) != 1) _exit(1);
      }
    }
    close(done[1]);
    char once = 0;
    EXPECT_EQ(read(done[0], &once, 1), 1);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 9000));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    close(done[0]);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
  }

  /// Each round changes the text of the first folder and replaces the songs of the second.
  void Edit(int round) {
    FolderTree& tree = jukebox.Nodes();
    tree.Rename(tree.ChildAt(0), std::to_string(round));
    for (SongEntry& entry : tree.ChildAt(1).Items())
      entry.SubItem((entry.SubItem() + round) % kSongs + 1);
  }
  /// Whether a jukebox is complete and equals the result of one of the rounds.
  bool IsComplete(const Jukebox& found) const {
    const FolderTree& tree = found.Nodes();
    if (tree.Children() != 2 || tree.ChildAt(0).Items().size() != kSongs) return false;
    const auto& songs = tree.ChildAt(1).Items();
    std::set<std::int32_t> all;
    for (const SongEntry& entry : songs) all.insert(entry.SubItem());
    return all.size() == kSongs;
  }

  std::mt19937 random{31};
  Jukebox jukebox;
};

TEST_F(JukeboxKill, AKillWhileSavingLeavesAWholeJukebox) {
  ASSERT_TRUE(jukebox.Save(Path(), library));
  std::set<std::string> seen;
  for (int kill_number = 0; kill_number < kKills; ++kill_number) {
    RunAndKill(kill_number, [&] { jukebox.Save(Path(), library); });
    if (HasFatalFailure()) return;
    Jukebox found;
    ASSERT_TRUE(found.Load(Path(), library)) << found.FileProblem();
    ASSERT_TRUE(IsComplete(found));
    seen.insert(found.Nodes().ChildAt(0).Text());
  }
  // Each process saved a different state.
  EXPECT_EQ(seen.size(), std::size_t{kKills});
}

TEST_F(JukeboxKill, AfterAKillTheUnsavedChangesAreComplete) {
  ASSERT_TRUE(jukebox.Save(Path(), library));
  int kept = 0;
  for (int kill_number = 0; kill_number < kKills; ++kill_number) {
    RunAndKill(kill_number, [&] { tallow.unsaved.Keep(jukebox, library); });
    if (HasFatalFailure()) return;
    // The saved file is not changed.
    Jukebox saved;
    ASSERT_TRUE(saved.Load(Path(), library));
    EXPECT_EQ(saved.Nodes().ChildAt(0).Text(), "a");
    std::vector<std::string> problems;
    UnsavedJukeboxes next(SystemFolder(application.path()));
    for (const UnsavedJukebox& unsaved : next.Find(problems)) {
      Jukebox found;
      ASSERT_TRUE(next.Recover(unsaved, found, library)) << found.FileProblem();
      ASSERT_TRUE(IsComplete(found));
      EXPECT_EQ(found.Caption(), "MIX");
      next.Forget(found);
      ++kept;
    }
    ASSERT_EQ(problems, Texts{});
  }
  EXPECT_EQ(kept, kKills);
}

}  // namespace
}  // namespace tallow

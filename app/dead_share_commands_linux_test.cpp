// SPDX-License-Identifier: GPL-3.0-or-later
// Commands whose songs, drives or jukeboxes are on a disk that does not respond.
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "app/new_songs.h"
#include "app/play_commands.h"
#include "app/search/file_search.h"
#include "jukebox/jukebox.h"
#include "tests/dead_share_linux.h"

namespace tallow {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

/// The search for new songs while the share does not respond.
class DeadShareSearch : public DeadShare, protected NewSongsWindows {
 protected:
  SearchProgress& ShowSearching() override { return windows->progress; }
  void UnloadSearching() override {}
  void EnableFrame(bool enabled) override { is_enabled = enabled; }
  Jukebox* ActiveJukebox() override { return windows->open[0]; }
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }
  MessageAnswer Show(const Message& message) override {
    said.push_back(message.text);
    return MessageAnswer::kOk;
  }
  void Notice(const Texts& lines) override { noticed = lines; }
  void NoticeScan(const Texts& lines) override { noticed = lines; }

  void BringIn() {
    BringInNewSongs(NewSongsPlace::kKnownFolders, *tallow, *this, {});
    EXPECT_TRUE(is_enabled);
    EXPECT_FALSE(tallow->SearchCancelled);
  }

  bool is_enabled = true;
  Texts said;
  Texts noticed;
};

TEST_F(DeadShareSearch, NamesTheShareAndACancelLeavesItsSongsUnchanged) {
  MakeSong("a/four.mp3", {.artist = "Zappa"});
  const DeadFolder dead(share);
  CancelWhenAsked();
  BringIn();
  EXPECT_TRUE(IsSaid(Waiting()));
  ASSERT_EQ(noticed.size(), 1U);
  EXPECT_TRUE(
      noticed[0].ends_with("The search was cancelled; the folders searched so far are complete."))
      << noticed[0];
  EXPECT_TRUE(tallow->library.IsPresent(Row("three.mp3")));
  EXPECT_EQ(Row("four.mp3"), 0);
  EXPECT_EQ(said, Texts{});
}

TEST_F(DeadShareSearch, WaitsForAShareThatRespondsLate) {
  MakeSong("b/four.mp3", {.artist = "Zappa"});
  std::optional<DeadFolder> dead(share);
  on_events = [&] {
    if (IsSaid(Waiting())) dead.reset();
  };
  BringIn();
  EXPECT_EQ(noticed, Texts{"1 new song"});
  EXPECT_FALSE(tallow->library.IsAway(Row("three.mp3")));
}

TEST_F(DeadShareSearch, EndsWithTheFailureOfAWindow) {
  const DeadFolder dead(share);
  on_events = [] { throw std::runtime_error("There is no memory."); };
  BringIn();
  EXPECT_EQ(said,
            Texts{"The search for new songs could not be finished. There is no memory.\n\nThe "
                  "songs found so far are kept. Check that all disks are connected, and search "
                  "again."});
  EXPECT_EQ(noticed, Texts{"0 new songs"});
  EXPECT_TRUE(tallow->library.IsPresent(Row("three.mp3")));
}

TEST_F(DeadShareSearch, ThatHasFailedGivesTheShareUpAtACancel) {
  const DeadFolder dead(share);
  bool has_failed = false;
  on_events = [&] {
    if (!std::exchange(has_failed, true)) throw std::runtime_error("There is no memory.");
    // The end of the search asks the share again.
    tallow->SearchCancelled = true;
  };
  BringIn();
  EXPECT_EQ(said.size(), 1U);
  EXPECT_TRUE(tallow->library.Unanswered()->Covers(share + "three.mp3"));
  EXPECT_TRUE(tallow->library.IsPresent(Row("three.mp3")));
}

/// Playing songs of the share.
class DeadSharePlay : public DeadShare, protected PlayWindows {
 protected:
  /// Cancels the work once the share has been asked.
  class CancelledWork : public LongWork {
   public:
    explicit CancelledWork(const DeadFolder& dead) : dead_(dead) {}
    bool GoOn(const std::function<std::string()>& /*line*/) override { return dead_.Asked() == 0; }

   private:
    const DeadFolder& dead_;
  };

  MessageAnswer Show(const Message& /*message*/) override { return MessageAnswer::kOk; }
  void Notice(const Texts& /*lines*/) override {}
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }
  std::unique_ptr<LongWork> BeginWork(std::string_view text) override {
    log.emplace_back(text);
    return std::make_unique<CancelledWork>(*dead);
  }
  void ShowStatus(const std::string& text) override { log.push_back(text); }
  void EnableFrame(bool /*enabled*/) override {}
  void PlayOnPanel() override { log.emplace_back("play"); }
  bool Start(const std::string& /*program*/) override { return false; }

  std::optional<DeadFolder> dead;
  Texts log;
};

TEST_F(DeadSharePlay, ACancelledCheckPlaysNothing) {
  tallow->settings.LocOfWinAmpExe("/opt/player");
  tallow->SongsToPlay = {9};
  dead.emplace(share);
  PlayCommands(*tallow, *this).Play({Row("three.mp3"), Row("one.mp3")}, {});
  EXPECT_EQ(log, (Texts{std::string(kLookingForSongs),
                        "Nothing was played: the search for the songs was cancelled"}));
  EXPECT_EQ(tallow->SongsToPlay, std::vector<std::int32_t>{9});
  EXPECT_TRUE(tallow->library.IsPresent(Row("three.mp3")));
}

TEST_F(DeadShare, ADriveThatASearchGivesUpIsSearchedAtTheNextStart) {
  MakeSong("b/four.mp3", {});
  const TestDrives only_share({{share}});
  RecordedProgress progress;
  FileSearch search(*tallow, only_share, &progress, {.slow_after = 0ms, .max_wait = 0ms});
  {
    const DeadFolder dead(share);
    EXPECT_TRUE(search.SearchDrivesForMp3s(true, {}));
  }
  EXPECT_EQ(progress.status, (Texts{"Looking for Mp3s in " + share, Waiting()}));
  const std::vector<UnreadFolder> unread = tallow->library.UnreadFoldersNow();
  ASSERT_EQ(unread.size(), 1U);
  EXPECT_EQ(unread[0].path, share);
  EXPECT_TRUE(unread[0].below);
  EXPECT_EQ(unread[0].problem, "The disk does not answer");
  EXPECT_EQ(Row("four.mp3"), 0);
  tallow->library.FinishScan(true);
  ASSERT_TRUE(StartAgain());
  EXPECT_NE(Row("four.mp3"), 0);
  EXPECT_TRUE(tallow->library.UnreadFoldersNow().empty());
}

TEST_F(DeadShare, ALinkThatASearchGivesUpIsRemembered) {
  const TempFolder elsewhere;
  elsewhere.File("far.mp3");
  std::filesystem::create_directory_symlink(elsewhere.path(), music / "a/link");
  const TestDrives drive({{music / "a/"}});
  RecordedProgress progress;
  const DeadFolder dead(music / "a/link/");
  EXPECT_TRUE(FileSearch(*tallow, drive, &progress, {.slow_after = 0ms, .max_wait = 1s})
                  .SearchDrivesForMp3s(true, {}));
  const std::vector<UnreadFolder> unread = tallow->library.UnreadFoldersNow();
  ASSERT_EQ(unread.size(), 1U);
  EXPECT_EQ(unread[0].path, music / "a/link/");
  EXPECT_EQ(Row("far.mp3"), 0);
}

TEST_F(DeadShare, ALastJukeboxOnTheShareIsNotOpenBesideARecoveredOne) {
  windows->open[0]->Nodes().AddChild(nullptr, "unsaved");
  tallow->unsaved.Keep(*windows->open[0], tallow->library);
  tallow->settings.LocOfLastSavedJukeBox(share + "mix.juk");
  tallow->SaveSettings();
  const DeadFolder dead(share);
  CancelWhenAsked();
  ASSERT_TRUE(StartAgain());
  EXPECT_EQ(windows->notices,
            Texts{share + "mix.juk is on a drive that does not answer, so it is not open."});
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_NE(windows->open[0]->Nodes().Find("unsaved"), nullptr);
  EXPECT_EQ(tallow->settings.LocOfLastSavedJukeBox(), share + "mix.juk");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Disks that do not respond, from the start to the hand-over to the player.
#include "tests/dead_share_linux.h"

#include <cerrno>

#include "app/add_files.h"
#include "app/play_commands.h"
#include "app/search/file_search.h"
#include "app/search/winamp_search.h"
#include "jukebox/sorting.h"
#include "player/playfile.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

TEST_F(DeadShare, AStartShowsTheWaitAndCancelSkipsTheDrive) {
  Rank();
  const DeadFolder dead(share);
  CancelWhenAsked();
  ASSERT_TRUE(StartAgain());
  EXPECT_TRUE(IsSaid(Waiting()));
  const auto& log = windows->log;
  EXPECT_NE(std::find(log.begin(), log.end(), "cancel on"), log.end());
  EXPECT_EQ(std::find(log.rbegin(), log.rend(), "cancel off") <
                std::find(log.rbegin(), log.rend(), "cancel on"),
            true);
  EXPECT_EQ(tallow->library.AwayText(Row("three.mp3")),
            "three.mp3 is on a drive that is away: " + share);
  EXPECT_FALSE(tallow->library.IsAway(Row("one.mp3")));
  EXPECT_EQ(windows->scan, "1 away (" + share + ")");
  EXPECT_FALSE(tallow->SearchCancelled);
  ExpectRanks();
}

TEST_F(DeadShare, SongsComeBackOnceTheShareResponds) {
  Rank();
  {
    const DeadFolder dead(share);
    CancelWhenAsked();
    ASSERT_TRUE(StartAgain());
  }
  ASSERT_TRUE(StartAgain());
  EXPECT_FALSE(IsSaid(Waiting()));
  EXPECT_FALSE(tallow->library.IsAway(Row("three.mp3")));
  ExpectRanks();
}

TEST_F(DeadShare, ALateResponseIsWaitedFor) {
  std::optional<DeadFolder> dead(share);
  on_events = [&] {
    if (!windows->progress.status.empty() && windows->progress.status.back() == Waiting())
      dead.reset();
  };
  ASSERT_TRUE(StartAgain());
  EXPECT_TRUE(IsSaid(Waiting()));
  EXPECT_EQ(windows->progress.status.back(), "");
  EXPECT_FALSE(tallow->library.IsAway(Row("three.mp3")));
}

TEST_F(DeadShare, AnUnresponsiveFolderOfALocalDriveIsSkippedToo) {
  mounted = {{"/", {"uuid root", "/"}, false, false}};
  ASSERT_TRUE(StartAgain());
  const DeadFolder dead(share);
  CancelWhenAsked();
  ASSERT_TRUE(StartAgain());
  EXPECT_TRUE(tallow->library.IsAway(Row("three.mp3")));
  EXPECT_FALSE(tallow->library.IsAway(Row("one.mp3")));
}

TEST_F(DeadShare, ACancelledCheckLeavesTheSongsUnchanged) {
  const DeadFolder dead(share);
  tallow->library.BeginScan(ScanKind::kFolderList);
  tallow->library.CheckToSeeIfFilesAreMissingAndMakeFalse(
      [](std::string_view folder) { return !folder.empty(); });
  EXPECT_TRUE(tallow->library.IsPresent(Row("three.mp3")));
}

TEST_F(DeadShare, ItsSongsAreFiledWhenTheShareRespondsAgain) {
  MakeSong("b/four.mp3", {.artist = "Zappa"});
  MakeSong("a/five.mp3", {.artist = "Yes"});
  clsMain& library = tallow->library;
  library.AddSong(share, "four.mp3", kUnknownSize);
  library.AddSong(music / "a/", "five.mp3", kUnknownSize);
  library.RenumberBasedOnArrayNumber();
  Jukebox& box = *windows->open[0];
  const auto file = [&](const FilingProgress& progress) {
    return FillAutomaticFolders(kFillNewToo, false, {}, library, windows->open, nullptr, progress);
  };
  {
    const DeadFolder dead(share);
    library.CheckPath(share, {}, [](std::string_view) { return false; });
    EXPECT_TRUE(file([](std::size_t, std::size_t) { return true; }));
  }
  EXPECT_EQ(SongsOnShow(), 4U);
  EXPECT_EQ(box.Nodes().Find("Zappa", box.Nodes().Find("Artist")), nullptr);
  library.BeginScan(ScanKind::kFolderList);
  EXPECT_TRUE(file({}));
  EXPECT_EQ(SongsOnShow(), 5U);
  EXPECT_NE(box.Nodes().Find("Zappa", box.Nodes().Find("Artist")), nullptr);
}

TEST_F(DeadShare, ACancelEndsASearchWhoseFolderDoesNotRespond) {
  music.File("a/six.mp3");
  const DeadFolder dead(share);
  RecordedProgress progress;
  progress.on_events = [this, &dead] { tallow->SearchCancelled = dead.Asked() > 0; };
  const std::int32_t before = tallow->library.UBoundOfMp3Array();
  EXPECT_FALSE(
      FileSearch(*tallow, TestDrives({{music.path()}}), &progress).SearchDrivesForMp3s(true, {}));
  EXPECT_FALSE(tallow->SearchCancelled);
  EXPECT_GE(tallow->library.UBoundOfMp3Array(), before);
}

TEST_F(DeadShare, ASearchDoesNotWaitForADriveThatIsNotSearched) {
  const std::int32_t before = tallow->library.UBoundOfMp3Array();
  music.File("a/six.mp3");
  const DeadFolder dead(share);
  const TestDrives with_share({{share, kRemoteDrive}, {music / "a/"}});
  RecordedProgress progress;
  EXPECT_TRUE(FileSearch(*tallow, with_share, &progress).SearchDrivesForMp3s(true, {}));
  EXPECT_EQ(dead.Asked(), 0);
  EXPECT_GT(tallow->library.UBoundOfMp3Array(), before);
}

TEST_F(DeadShare, ACancelEndsThePlayerSearchToo) {
  const DeadFolder dead(share);
  RecordedProgress progress;
  progress.on_events = [this, &dead] { tallow->SearchCancelled = dead.Asked() > 0; };
  EXPECT_FALSE(WinampSearch(*tallow, TestDrives({{share}}), &progress, [] {
                 return std::string();
               }).SearchDrivesForWinamp());
  EXPECT_FALSE(tallow->SearchCancelled);
}

/// A hand-over to a player that only records the commands.
class DeadShareInPlay : public DeadShare, protected HandOffPanel {
 protected:
  void TrackStarted(std::int32_t) override {}
  void HandedOver() override { handed_over = true; }
  void Cancelled(std::size_t songs, std::size_t of) override {
    cancelled = std::to_string(songs) + " of " + std::to_string(of);
  }
  void DiskTimedOut(std::size_t songs, const std::string& first) override {
    unanswered = std::to_string(songs) + " " + first;
  }
  void Play(const std::vector<std::int32_t>& songs, const HandOverProgress& progress) {
    HandOver(songs, tallow->library, player, messages.Shower(), *this, progress);
  }

  RecordedLink link;
  RecordedMessages messages;
  WinAMP_Control player{link, [] { return std::string("/opt/player"); }, messages.Shower()};
  bool handed_over = false;
  std::string cancelled;
  std::string unanswered;
};

TEST_F(DeadShareInPlay, TheHandOverCanBeCancelledDuringTheWait) {
  const DeadFolder dead(share);
  Play({Row("one.mp3"), Row("three.mp3")},
       [&](std::size_t, std::size_t) { return dead.Asked() == 0; });
  EXPECT_EQ(cancelled, "1 of 2");
  EXPECT_TRUE(handed_over);
}

TEST_F(DeadShareInPlay, SongsOfAGivenUpDriveAreLeftOutAndReported) {
  const DeadFolder dead(share);
  tallow->library.CheckPath(share, {}, [](std::string_view) { return false; });
  Play({Row("one.mp3"), Row("three.mp3"), Row("two.mp3")}, {});
  EXPECT_EQ(unanswered, "1 " + share + "three.mp3");
  EXPECT_TRUE(handed_over);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(DeadShareInPlay, SongsOfADriveGivenUpDuringTheWaitAreLeftOutAndReported) {
  const DeadFolder dead(share);
  bool is_said = false;
  Play({Row("one.mp3"), Row("three.mp3"), Row("two.mp3")}, [&](std::size_t, std::size_t) {
    // Gives the drive up, as a cancel by the user does.
    if (dead.Asked() > 0 && !std::exchange(is_said, true))
      tallow->library.CheckPath(share, {}, [](std::string_view) { return false; });
    return true;
  });
  EXPECT_EQ(unanswered, "1 " + share + "three.mp3");
  EXPECT_EQ(cancelled, "");
  EXPECT_TRUE(handed_over);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(DeadShareInPlay, APanelNeedNotHandleADriveThatDoesNotAnswer) {
  struct : HandOffPanel {
    void TrackStarted(std::int32_t) override {}
    void HandedOver() override { handed_over = true; }
    bool handed_over = false;
  } panel;
  const DeadFolder dead(share);
  tallow->library.CheckPath(share, {}, [](std::string_view) { return false; });
  const std::vector<std::int32_t> songs{Row("one.mp3"), Row("three.mp3")};
  HandOver(songs, tallow->library, player, messages.Shower(), panel);
  EXPECT_TRUE(panel.handed_over);
  EXPECT_EQ(link.files, 1U);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(DeadShare, ADropCanBeCancelledDuringTheWait) {
  const DeadFolder dead(share);
  const Texts files{music / "a/one.mp3", share + "three.mp3", share + "four.mp3"};
  const AddedFiles taken =
      AddFiles(files, tallow->library, [&](std::string_view) { return dead.Asked() == 0; });
  EXPECT_EQ(taken.problems, Texts{"The drop was cancelled: 3 files were not processed."});
  EXPECT_TRUE(taken.songs.empty());
}

TEST_F(DeadShare, FilesOfAGivenUpDriveAreLeftOutOfADropAndReported) {
  tallow->library.BeginScan(ScanKind::kFiles);
  const DeadFolder dead(share);
  bool is_said = false;
  const Texts files{share + "three.mp3", music / "a/one.mp3", share + "four.mp3"};
  const AddedFiles taken = AddFiles(files, tallow->library, [&](std::string_view path) {
    // Gives the drive up, as a cancel by the user does.
    if (dead.Asked() > 0 && !std::exchange(is_said, true))
      tallow->library.CheckPath(share, {}, [](std::string_view) { return false; });
    return !path.empty();
  });
  EXPECT_EQ(taken.problems,
            (Texts{share + "three.mp3 is on a drive that does not answer and was skipped.",
                   share + "four.mp3 is on a drive that does not answer and was skipped."}));
  EXPECT_EQ(taken.songs.size(), 1U);
}

TEST_F(DeadShare, UnsavedChangesOfAJukeboxOnTheShareAreStillOffered) {
  Jukebox& jukebox = *windows->open[0];
  ASSERT_TRUE(jukebox.Save(share + "Mix.juk", tallow->library));
  jukebox.Caption("MIX");
  jukebox.FileLocation(share);
  jukebox.Nodes().AddChild(nullptr, "unsaved");
  tallow->unsaved.Keep(jukebox, tallow->library);
  tallow->settings.LocOfLastSavedJukeBox(share + "Mix.juk");
  tallow->SaveSettings();
  const DeadFolder dead(share);
  CancelWhenAsked();
  ASSERT_TRUE(StartAgain());
  EXPECT_EQ(windows->asked,
            Texts{"Tallow was not closed properly. Recover the unsaved changes of MIX?"});
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_NE(windows->open[0]->Nodes().Find("unsaved"), nullptr);
}

TEST_F(DeadShare, AFolderThatCannotBeOpenedIsReadOnceNotOncePerSong) {
  constexpr int kSongs = 50;
  for (int k = 0; k < kSongs; ++k) MakeSong("c/" + std::to_string(k) + ".mp3", {});
  clsMain& library = tallow->library;
  std::vector<std::int32_t> songs;
  for (int k = 0; k < kSongs; ++k)
    songs.push_back(library.AddSong(music / "c/", std::to_string(k) + ".mp3", kUnknownSize));
  library.RenumberBasedOnArrayNumber();
  library.BeginScan(ScanKind::kFolderList);
  const FailingFolder failing(music / "c/", EIO);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_TRUE(library.IsAway(songs[0]));
  EXPECT_TRUE(library.IsAway(songs[kSongs - 1]));
  EXPECT_LE(failing.Asked(), 2);
  const int before = failing.Asked();
  library.CheckWithProgress({}, [&] {
    library.MarkAwaySongs(songs);
    const std::vector<char> there = library.RecheckSong(songs);
    EXPECT_EQ(std::count(there.begin(), there.end(), 0), kSongs);
  });
  EXPECT_LE(failing.Asked() - before, 3);
  EXPECT_TRUE(library.IsPresent(songs[0]));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <thread>

#include "library/cls_main.h"
#include "player/player_link.h"
#include "player/playfile.h"
#include "tests/library_fixture.h"
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#include "util/runtime_folder_linux.h"
#include "util/version.h"

namespace tallow {
namespace {

/// Tests with the real player: it is found, started, lost and found again.
class LinuxPlayer : public RealPlayer {
 protected:
  std::string Tone(const std::string& name, const std::string& synth) {
    const std::string file = folder / name;
    MakeMp3(file, synth, 2, "-b 64");
    return file;
  }
  std::size_t Starts() { return Lines("pids").size(); }
};

TEST_F(LinuxPlayer, NoPlayerIsFoundBeforeOneIsStarted) {
  EXPECT_FALSE(player.FindWinamp());
  EXPECT_EQ(player.GetWinampStatus(), "");
  EXPECT_EQ(messages.Take(), Texts{"WinAMP window not found yet..."});
}

TEST_F(LinuxPlayer, AJustStartedPlayerIsFoundAndAnswersWhenReady) {
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(player.FindWinamp());
  char version[16];
  std::snprintf(version, sizeof version, "1.%d%02d", kMajorVersion, kMinorVersion);
  EXPECT_EQ(player.GetWinampVersion(), version);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(player.GetTrackPosition(), -1);
  EXPECT_EQ(player.GetTrackLength(), -1);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(LinuxPlayer, ARunningPlayerIsNotStartedAgain) {
  StartPlayer();
  player.GetWinampVersion();
  EXPECT_TRUE(player.StartWinamp());
  EXPECT_TRUE(player.FindWinamp());
  WinAMP_Control other(
      *link, [this] { return path; }, messages.Shower());
  EXPECT_TRUE(other.StartWinamp());
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(LinuxPlayer, AProgramThatCannotBeRunIsNotStarted) {
  path = folder / "gone";
  EXPECT_FALSE(player.StartWinamp());
  path = folder.File("text", "no program");
  EXPECT_FALSE(player.StartWinamp());
  EXPECT_FALSE(player.FindWinamp());
}

TEST_F(LinuxPlayer, APlayerThatExitsAtOnceLeavesNothingBehind) {
  UseScript("exit 0\n");
  // The player may still be found for a moment. Requests to it must not block then.
  EXPECT_TRUE(player.StartWinamp());
  if (player.FindWinamp()) {
    EXPECT_EQ(player.GetWinampVersion(), "UNKNOWN");
    EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  }
  EXPECT_TRUE(WaitUntil([&] { return !player.FindWinamp(); }));
  UseOptions("--silent");
  StartPlayer();
  EXPECT_NE(player.GetWinampVersion(), "UNKNOWN");
}

TEST_F(LinuxPlayer, APlayerKilledDuringASongIsGoneAndCanBeStartedAgain) {
  const std::string song = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  Play({song});
  EXPECT_EQ(player.GetTrackLength(), 60);
  ASSERT_EQ(kill(LastPid(), SIGKILL), 0);
  ASSERT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  // Messages are dropped.
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(player.GetTrackPosition(), 0);
  player.SendWinampCommand(kPlay);
  player.AddFileToWinamp(song);
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_FALSE(player.FindWinamp());
  StartPlayer();
  Play({song});
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_EQ(Starts(), 2U);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
}

TEST_F(LinuxPlayer, AnUnresponsivePlayerIsWaitedForOnceAndGetsLaterCommands) {
  const std::string song = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  Play({song});
  EXPECT_EQ(player.GetTrackLength(), 60);
  const pid_t pid = LastPid();
  ASSERT_EQ(kill(pid, SIGSTOP), 0);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  // From here on no query waits any more; otherwise this test would exceed its time limit.
  for (int k = 0; k < 1000; ++k) EXPECT_EQ(player.GetTrackPosition(), 0);
  player.SendWinampCommand(kPause);
  EXPECT_TRUE(player.StartWinamp());
  EXPECT_TRUE(player.FindWinamp());
  ASSERT_EQ(kill(pid, SIGCONT), 0);
  EXPECT_TRUE(WaitForStatus("PAUSED"));
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(LinuxPlayer, APlayerClosedWhileUnresponsiveEndsAsSoonAsItResumes) {
  StartPlayer();
  player.GetWinampVersion();
  ASSERT_EQ(kill(LastPid(), SIGSTOP), 0);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  player.SendWinampCommand(kStop);
  player.SendWinampCommand(kClosePlayer);
  ASSERT_EQ(kill(LastPid(), SIGCONT), 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
}

TEST_F(LinuxPlayer, AfterAPlayerIsClosedANewOneIsStarted) {
  for (std::size_t k = 1; k <= 20; ++k) {
    StartPlayer();
    player.GetWinampVersion();
    EXPECT_EQ(Starts(), k);
    player.SendWinampCommand(kClosePlayer);
  }
}

TEST_F(LinuxPlayer, APlayerStartedByHandIsUsed) {
  std::string command = path + " &";
  ASSERT_EQ(std::system(command.c_str()), 0);
  ASSERT_TRUE(WaitUntil([&] { return IsRunning(); }));
  StartPlayer();
  EXPECT_EQ(Starts(), 1U);
  // A second player started by hand reports the first one and exits.
  command = path + " 2> '" + (folder / "said") + "'";
  EXPECT_NE(std::system(command.c_str()), 0);
  ASSERT_EQ(Lines("said").size(), 1U);
  EXPECT_NE(Lines("said")[0].find("another player is already running"), std::string::npos);
}

TEST_F(LinuxPlayer, ANameWithAnyBytesIsPlayed) {
  const std::string song = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  for (const char* const name : {"caf\xE9.mp3", "new\nline.mp3", "a'b\"c.mp3", "http:%2F%2Fx.mp3",
                                 "-.mp3", "#1 100%.mp3", "\xFF\xFE", "~.mp3", "Ünïcödé 曲.mp3"}) {
    const std::string named = folder / name;
    ASSERT_EQ(rename((folder / "a.mp3").c_str(), named.c_str()), 0);
    player.ClearWinampPlaylist();
    Play({named});
    EXPECT_EQ(player.GetTrackLength(), 60) << name;
    ASSERT_EQ(rename(named.c_str(), song.c_str()), 0);
  }
}

TEST_F(LinuxPlayer, APathAsLongAsLinuxAllowsIsPlayed) {
  std::string inside;
  while (folder.path().size() + inside.size() + 101 + 100 < 4095)
    inside += std::string(100, 'f') + "/";
  folder.Folder(inside);
  inside += std::string(4095 - folder.path().size() - inside.size(), 'x');
  const std::string song = Tone("a.mp3", "60 sine 440");
  ASSERT_EQ(rename(song.c_str(), (folder / inside).c_str()), 0) << std::strerror(errno);
  StartPlayer();
  Play({folder / inside});
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(LinuxPlayer, PauseHoldsThePositionAndPlayGoesOn) {
  const std::string song = Tone("a.mp3", "100 sine 440");
  StartPlayer();
  Play({song});
  EXPECT_EQ(player.GetTrackLength(), 100);
  ASSERT_TRUE(WaitUntil([&] { return link->Send(link->Find(), kWmUser, 0, kTrackTime) > 200; }));
  player.SendWinampCommand(kPause);
  EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
  // Seek in single steps, as the keys do. The paused position must not change.
  for (const int second : {30, 31, 32, 31, 30}) {
    player.SetTrackPosition(second);
    for (int k = 0; k < 2000; ++k) ASSERT_EQ(player.GetTrackPosition(), second);
  }
  EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  ASSERT_TRUE(WaitUntil([&] { return player.GetTrackPosition() == 31; }));
  player.SendWinampCommand(kPause);
  player.SendWinampCommand(kPause);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  // Play restarts a song that is already playing.
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackPosition(), 0);
  // A seek past the end is ignored. The player can tell only after it has opened the song.
  EXPECT_EQ(player.GetTrackLength(), 100);
  EXPECT_EQ(link->Send(link->Find(), kWmUser, 101000, kSeek), 1);
  EXPECT_EQ(player.GetTrackPosition(), 0);
  player.SendWinampCommand(kPlay);
  link->Send(link->Find(), kWmUser, 101000, kSeek);
  EXPECT_TRUE(WaitUntil([&] { return player.GetTrackPosition() == 0; }));
  player.SendWinampCommand(kPlay);
  link->Send(link->Find(), kWmUser, 40000, kSeek);
  EXPECT_EQ(player.GetTrackLength(), 100);
  EXPECT_TRUE(WaitUntil([&] { return player.GetTrackPosition() == 41; }));
}

TEST_F(LinuxPlayer, AnUnknownLengthTimesOutAndDoesNotBlockOthers) {
  // Opening a pipe without a writer blocks.
  const std::string pipe = folder / "a.mp3";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  StartPlayer();
  Play({pipe});
  const auto other = SystemPlayerLink();
  int answers = 0;
  std::thread asking([&] {
    const PlayerHandle handle = other->Find();
    for (; answers < 1000; ++answers)
      if (other->Send(handle, kWmUser, 0, kStatus) != kPlaying) break;
  });
  EXPECT_EQ(player.GetTrackLength(), -1);
  asking.join();
  EXPECT_EQ(answers, 1000);
  player.SendWinampCommand(kStop);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  // Open the pipe, so that the player can end.
  const OpenFile end(open(pipe.c_str(), O_RDWR | O_NONBLOCK));
  EndPlayer();
}

TEST_F(LinuxPlayer, APlayerWithAFullBacklogIsFoundOnceItAcceptsConnections) {
  const OpenFile listening(ListenAsPlayer(PlayerSocketPath()));
  ASSERT_EQ(listen(listening.descriptor(), 0), 0);
  std::vector<std::unique_ptr<OpenFile>> waiting;
  do waiting.push_back(std::make_unique<OpenFile>(ConnectToPlayer(PlayerSocketPath())));
  while (*waiting.back());
  EXPECT_TRUE(IsRunning());
  EXPECT_FALSE(player.FindWinamp());
  // It is running, so none is started.
  EXPECT_TRUE(player.StartWinamp());
  EXPECT_EQ(Starts(), 0U);
  const OpenFile accepted(accept(listening.descriptor(), nullptr, nullptr));
  ASSERT_TRUE(accepted);
  EXPECT_NE(SystemPlayerLink()->Find(), 0U);
  // Nobody answers, so the fixture must not find this player.
  unlink(PlayerSocketPath().c_str());
}

TEST_F(LinuxPlayer, ASocketPathThatIsTooLongIsReported) {
  const std::string deep = runtime.Folder(std::string(120, 'd'));
  ASSERT_EQ(chmod(deep.c_str(), S_IRWXU), 0);
  ASSERT_EQ(setenv("XDG_RUNTIME_DIR", deep.c_str(), 1), 0);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(player.StartWinamp());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "The player cannot be started. " + deep +
                                                        "tallow/player: cannot create a socket "
                                                        "there\n");
  EXPECT_FALSE(player.FindWinamp());
  EXPECT_EQ(Starts(), 0U);
}

TEST_F(LinuxPlayer, AStartLockThatAnotherProcessHoldsIsReported) {
  const std::string socket = PlayerSocketPath();
  testing::internal::CaptureStderr();
  {
    const PlayerStartLock lock(socket);
    EXPECT_FALSE(player.StartWinamp());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "The player cannot be started. " + socket +
                ".lock: another process has held the start lock for too long\n");
  EXPECT_EQ(Starts(), 0U);
  StartPlayer();
}

TEST_F(LinuxPlayer, ConcurrentStartsGetTheSamePlayer) {
  for (std::size_t round = 1; round <= 5; ++round) {
    std::vector<std::thread> starters;
    std::atomic<int> found{0};
    for (int k = 0; k < 4; ++k)
      starters.emplace_back([&] {
        const auto own = SystemPlayerLink();
        const bool started = own->Start(path);
        const PlayerHandle handle = own->Find();
        if (started && own->Send(handle, kWmUser, 0, kVersion) != 0) ++found;
      });
    for (std::thread& starter : starters) starter.join();
    EXPECT_EQ(found, 4);
    EXPECT_EQ(Starts(), round);
    EndPlayer();
  }
}

TEST_F(LinuxPlayer, HandOverReportsAPlayerThatExitsOrIsKilled) {
  Tone("a.mp3", "60 sine 440");
  TempFolder application;
  Tallow tallow(application.path());
  for (std::int32_t row = 1; row <= 3; ++row) {
    tallow.library.Mp3Info(kFileLocation, row, folder.path());
    tallow.library.Mp3Info(kFileName, row, "a.mp3");
  }
  struct Panel : HandOffPanel {
    explicit Panel(const std::function<void()>& act_) : act(act_) {}
    void TrackStarted(std::int32_t) override { act(); }
    void HandedOver() override {}
    std::function<void()> act;
  };
  const std::int32_t songs[] = {1, 2, 3};
  Panel quiet([] {});
  UseScript("exit 0\n");
  HandOver(songs, tallow.library, player, messages.Shower(), quiet);
  EXPECT_EQ(messages.Take(), Texts{"The player " + path + " could not start. It ended at once."});
  ASSERT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  UseOptions("--silent");
  Panel killer([&] { kill(LastPid(), SIGKILL); });
  HandOver(songs, tallow.library, player, messages.Shower(), killer);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(messages.Take(), Texts{"The player has ended: it accepted 1 of 3 songs. Play them "
                                   "again to restart the player."});
  ASSERT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  HandOver(songs, tallow.library, player, messages.Shower(), quiet);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(LinuxPlayer, APlayerThatCannotStartIsNamedWithTheLastLineThatItWrote) {
  UseScript(
      "echo first >&2\necho 'error while loading shared libraries: libmpv.so' >&2\n"
      "echo >&2\nexit 127\n");
  EXPECT_FALSE(ReachPlayer(player, messages.Shower()));
  EXPECT_EQ(messages.Take(), Texts{"The player " + path +
                                   " could not start. It wrote: error while loading shared "
                                   "libraries: libmpv.so"});
  EXPECT_FALSE(IsRunning());
}

TEST_F(LinuxPlayer, APlayerThatHangsAtItsStartIsSilentUntilItEnds) {
  UseScript("echo $$ >> " + Quote(folder / "pids") + "\nexec sleep 1000\n");
  ASSERT_TRUE(player.StartWinamp());
  for (int k = 0; k < 3; ++k) EXPECT_EQ(link->FollowStart(), PlayerStart::kSilent);
  ASSERT_TRUE(WaitUntil([&] { return Lines("pids").size() == 1; }));
  EXPECT_EQ(link->FollowStart(), PlayerStart::kSilent);
  ASSERT_EQ(kill(LastPid(), SIGKILL), 0);
  EXPECT_TRUE(WaitUntil([&] { return link->FollowStart() == PlayerStart::kEnded; }));
}

TEST_F(LinuxPlayer, AStartedPlayerWritesToTheUsualStandardError) {
  const std::string broken = folder.File("broken.mp3", "no sound");
  const std::string said = folder / "said";
  {
    // This process is the test, so its own standard error is replaced for a moment.
    const OpenFile own(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 10));
    const OpenFile file(open(said.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRWXU));
    ASSERT_GE(dup2(file.descriptor(), STDERR_FILENO), 0);
    const bool reached = ReachPlayer(player, messages.Shower());
    dup2(own.descriptor(), STDERR_FILENO);
    ASSERT_TRUE(reached);
  }
  Play({broken});
  EXPECT_TRUE(WaitUntil([&] {
    return ReadWholeFile(said).value_or("").find("broken.mp3") != std::string::npos;
  })) << ReadWholeFile(said).value_or("");
  EXPECT_EQ(link->LastLineWritten(), "");
}

TEST_F(LinuxPlayer, WritingToAClosedStderrDoesNotEndThePlayer) {
  UseScript(Quote(TALLOW_PLAYER) + " --silent \"$@\" 2>&1 | true\n");
  const std::string song = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  Play({folder.File("0.mp3", "no sound"), song});
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
}

TEST_F(LinuxPlayer, StopKeepsTheListAndNextAndPreviousGoThroughIt) {
  const std::string a = Tone("a.mp3", "10 sine 440");
  const std::string b = Tone("b.mp3", "20 sine 440");
  const std::string c = Tone("c.mp3", "30 sine 440");
  StartPlayer();
  const auto length_becomes = [&](int length) {
    return WaitUntil([&] { return player.GetTrackLength() == length; });
  };
  Play({a, b, c});
  EXPECT_EQ(player.GetTrackLength(), 10);
  player.SendWinampCommand(kNextTrack);
  EXPECT_TRUE(length_becomes(20));
  player.SendWinampCommand(kNextTrack);
  EXPECT_TRUE(length_becomes(30));
  player.SendWinampCommand(kNextTrack);
  EXPECT_EQ(player.GetTrackLength(), 30);
  player.SendWinampCommand(kPreviousTrack);
  EXPECT_TRUE(length_becomes(20));
  player.SendWinampCommand(kStop);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(player.GetTrackPosition(), -1);
  EXPECT_EQ(player.GetTrackLength(), -1);
  player.SendWinampCommand(kPause);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackLength(), 20);
  player.SendWinampCommand(kStop);
  player.SendWinampCommand(kPreviousTrack);
  player.SendWinampCommand(kPreviousTrack);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetTrackLength(), 10);
  player.SendWinampCommand(kPause);
  player.SendWinampCommand(kNextTrack);
  EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
  EXPECT_TRUE(length_becomes(20));
  player.ClearWinampPlaylist();
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  player.SendWinampCommand(kPlay);
  EXPECT_EQ(player.GetWinampStatus(), "STOPPED");
  EXPECT_EQ(player.GetTrackLength(), -1);
}

TEST_F(LinuxPlayer, AListWithoutAPlayableFileStops) {
  StartPlayer();
  std::vector<std::string> files;
  for (int k = 0; k < 100; ++k)
    files.push_back(folder.File(std::to_string(k) + ".mp3", "no sound"));
  Play(files);
  EXPECT_TRUE(WaitForStatus("STOPPED"));
  EXPECT_EQ(player.GetTrackLength(), -1);
}

TEST_F(LinuxPlayer, TenThousandSongsAreHandedOver) {
  constexpr int kSongs = 10000;
  const std::string song = Tone("a.mp3", "60 sine 440");
  TempFolder application;
  Tallow tallow(application.path());
  clsMain& library = tallow.library;
  std::vector<std::int32_t> songs;
  for (std::int32_t row = 1; row <= kSongs; ++row) {
    library.Mp3Info(kFileLocation, row, folder.path());
    library.Mp3Info(kFileName, row, "a.mp3");
    songs.push_back(row);
  }
  struct Panel : HandOffPanel {
    void TrackStarted(std::int32_t seconds) override { length = seconds; }
    void HandedOver() override { done = true; }
    std::int32_t length = 0;
    bool done = false;
  } panel;
  HandOver(songs, library, player, messages.Shower(), panel);
  EXPECT_TRUE(panel.done);
  EXPECT_EQ(panel.length, 60);
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  const auto records = [&] {
    const auto log = Lines("log");
    return std::count_if(log.begin(), log.end(), [](const std::string& line) {
      return line.starts_with("74 0 " + std::to_string(kAddFiles));
    });
  };
  const auto record_bytes = static_cast<std::ptrdiff_t>(song.size() + 1) * kSongs;
  EXPECT_GE(records(), 1 + record_bytes / static_cast<std::ptrdiff_t>(kMaxPayload));
  EXPECT_EQ(player.GetListLength(), kSongs);
  EXPECT_EQ(player.GetListPlace(), 0);
}

TEST_F(LinuxPlayer, TheSocketIsAccessibleToItsUserOnly) {
  StartPlayer();
  EXPECT_EQ(PlayerSocketPath(), runtime / "tallow/player");
  struct stat status {};
  ASSERT_EQ(stat((runtime / "tallow").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  ASSERT_EQ(stat((runtime / "tallow/player").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(LinuxPlayer, WithoutAPrivateRuntimeFolderOneIsCreated) {
  const std::string own = "/tmp/tallow-" + std::to_string(geteuid()) + "/";
  chmod(runtime.path().c_str(), 0755);
  EXPECT_EQ(RuntimeFolder(), own);
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(RuntimeFolder(), own);
  setenv("XDG_RUNTIME_DIR", "relative", 1);
  EXPECT_EQ(RuntimeFolder(), own);
  struct stat status {};
  ASSERT_EQ(stat(own.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
  chmod(runtime.path().c_str(), S_IRWXU);
}

TEST_F(LinuxPlayer, ARuntimeFolderAccessibleToOthersIsRefused) {
  ASSERT_EQ(mkdir((runtime / "tallow").c_str(), 0777), 0);
  ASSERT_EQ(chmod((runtime / "tallow").c_str(), 0777), 0);
  EXPECT_FALSE(player.StartWinamp());
  EXPECT_FALSE(player.FindWinamp());
  chmod((runtime / "tallow").c_str(), 0700);
}

}  // namespace
}  // namespace tallow

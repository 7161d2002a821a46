// SPDX-License-Identifier: GPL-3.0-or-later
// The built player's command line and its messages.
#include <cstdlib>

#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#include "util/version.h"

namespace tallow {
namespace {

class PlayerProgram : public RealPlayer {
 protected:
  /// Runs the player until it ends.
  /// \param arguments as in a shell
  /// \returns the exit code
  int Run(const std::string& arguments) {
    const std::string command = Quote(TALLOW_PLAYER) + " " + arguments + " > " +
                                Quote(folder / "out") + " 2> " + Quote(folder / "said");
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(status));
    out = ReadWholeFile(folder / "out").value_or("");
    said = ReadWholeFile(folder / "said").value_or("");
    return WEXITSTATUS(status);
  }

  std::string out;   ///< what the last run printed
  std::string said;  ///< what the last run wrote to standard error
};

TEST_F(PlayerProgram, HelpListsEveryOption) {
  EXPECT_EQ(Run("--help"), 0);
  EXPECT_TRUE(out.starts_with("Usage: tallow-player [OPTION...]\n")) << out;
  for (const char* const option : {"--audio-file FILE", "--paced SPEED", "--silent", "--log FILE",
                                   "--listen", "--errors-later", "--help", "--version"})
    EXPECT_NE(out.find(option), std::string::npos) << option;
  EXPECT_EQ(said, "");
}

TEST_F(PlayerProgram, VersionPrintsTheNumberOfTheProgram) {
  EXPECT_EQ(Run("--version"), 0);
  EXPECT_EQ(out, "tallow-player " + std::to_string(kMajorVersion) + "." +
                     std::to_string(kMinorVersion) + "\n");
  EXPECT_EQ(said, "");
}

TEST_F(PlayerProgram, AWrongArgumentIsNamedBeforeTheUsageAndEndsThePlayer) {
  ASSERT_EQ(Run("--help"), 0);
  const std::string usage = out;
  struct Wrong {
    const char* arguments;
    const char* message;
  };
  for (const auto& [arguments, message] :
       {Wrong{"--loud", "Unknown option --loud."},
        Wrong{"--silent song.mp3", "Unknown option song.mp3."}, Wrong{"''", "Unknown option ."},
        Wrong{"--log", "--log requires a file."},
        Wrong{"--silent --audio-file", "--audio-file requires a file."},
        Wrong{"--audio-file '' --version", "--audio-file requires a file."},
        Wrong{"--paced", "--paced requires a speed from 1 to 100."},
        Wrong{"--paced fast", "--paced requires a speed from 1 to 100."},
        Wrong{"--paced 101 --silent", "--paced requires a speed from 1 to 100."},
        Wrong{"--loud --quiet --help", "Unknown option --loud."}}) {
    EXPECT_EQ(Run(arguments), 2) << arguments;
    EXPECT_EQ(out, "") << arguments;
    EXPECT_EQ(said, std::string("tallow-player: ") + message + "\n" + usage) << arguments;
  }
  EXPECT_FALSE(IsRunning());
}

TEST_F(PlayerProgram, ALogThatCannotBeWrittenIsReported) {
  EXPECT_EQ(Run("--silent --log " + Quote(folder / "none/log")), 1);
  EXPECT_EQ(said, "tallow-player: " + (folder / "none/log") + " cannot be written.\n");
}

TEST_F(PlayerProgram, ListenWithoutADescriptorIsReported) {
  EXPECT_EQ(Run("--silent --listen 3<&-"), 1);
  EXPECT_EQ(said, "tallow-player: --listen requires a socket as descriptor 3.\n");
}

TEST_F(PlayerProgram, ASocketPathThatIsTooLongIsReported) {
  const std::string deep = runtime.Folder(std::string(120, 'd'));
  ASSERT_EQ(chmod(deep.c_str(), S_IRWXU), 0);
  ASSERT_EQ(setenv("XDG_RUNTIME_DIR", deep.c_str(), 1), 0);
  EXPECT_EQ(Run("--silent"), 1);
  EXPECT_EQ(said, "tallow-player: cannot create a socket at " + deep + "tallow/player.\n");
}

TEST_F(PlayerProgram, AStartLockThatAnotherProcessHoldsIsReported) {
  const std::string socket = PlayerSocketPath();
  const PlayerStartLock lock(socket);
  EXPECT_EQ(Run("--silent"), 1);
  EXPECT_EQ(said, "tallow-player: " + socket +
                      ".lock: another process has held the start lock for too long\n");
}

TEST_F(PlayerProgram, WithoutASoundDeviceSongsArePlayedSilently) {
  // No sound server and no device can be reached with these.
  UseScript(
      "export PULSE_SERVER=unix:/nonexistent PIPEWIRE_REMOTE=nonexistent JACK_NO_START_SERVER=1 "
      "ALSA_CONFIG_PATH=/dev/null SDL_AUDIODRIVER=none AUDIODEV=/nonexistent "
      "AUDIODEVICE=snd/nonexistent\nexec " +
      Quote(TALLOW_PLAYER) + " \"$@\" 2> " + Quote(folder / "said") + "\n");
  MakeMp3(folder / "a.mp3", "60 sine 440", 2, "-b 64");
  StartPlayer();
  Play({folder / "a.mp3"});
  EXPECT_EQ(player.GetTrackLength(), 60);
  EXPECT_TRUE(WaitUntil([&] { return player.GetTrackPosition() >= 1; }))
      << ReadWholeFile(folder / "said").value_or("");
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  const auto device_is_missing = [&] { return player.OwnPlayer().State()->device_missing; };
  EXPECT_TRUE(device_is_missing());
  player.SendWinampCommand(kStop);
  EXPECT_TRUE(WaitUntil([&] { return !device_is_missing(); }));
  EndPlayer();
  EXPECT_EQ(ReadWholeFile(folder / "said").value_or("").find("cannot be played"),
            std::string::npos);
}

TEST_F(PlayerProgram, ASeekToTheVeryEndEndsTheSongWithoutAnErrorMessage) {
  const std::string a = folder / "a.mp3";
  MakeMp3(a, "3 sine 440");
  UseOptions("--audio-file " + Quote(folder / "sound.wav"));
  StartPlayer();
  testing::internal::CaptureStderr();
  Play({a});
  player.SendWinampCommand(kPause);
  player.SetTrackPosition(3);
  player.SendWinampCommand(kPlay);
  EXPECT_TRUE(WaitForStatus("STOPPED"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PlayerProgram, AnOutputFileThatCannotBeWrittenIsReported) {
  UseOptions("--audio-file " + Quote(folder / "no/sound.wav") + " 2> " + Quote(folder / "said"));
  EXPECT_TRUE(player.StartWinamp());
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  EXPECT_EQ(Lines("said"), std::vector<std::string>{"tallow-player: " + (folder / "no/sound.wav") +
                                                    " cannot be written"});
}

}  // namespace
}  // namespace tallow

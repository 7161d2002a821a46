// SPDX-License-Identifier: GPL-3.0-or-later
// What the built player writes as sound, on each platform.
#include <string>
#include <vector>

#ifdef _WIN32
#include "tests/real_player_windows.h"
#include "tests/sound_windows.h"
#else
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#endif

namespace tallow {
namespace {

/// Plays into a WAV file and analyzes it.
class PlayedSound : public RealPlayer {
 protected:
  PlayedSound() { UseOptions("--audio-file " + Quote(folder / "sound.wav")); }

  std::string Tone(const std::string& name, const std::string& synth, int channels = 2) {
    const std::string file = folder / name;
    MakeMp3(file, synth, channels);
    return file;
  }
  /// Waits until playback stops and returns the sound.
  Sound Listen() {
    EXPECT_TRUE(WaitForStatus("STOPPED"));
    return ReadSound(folder / "sound.wav");
  }
};

TEST_F(PlayedSound, ThreeSongsFollowInOrderWithoutAGap) {
  const std::string a = Tone("a.mp3", "3 sine 440");
  const std::string b = Tone("b.mp3", "2 sine 880");
  const std::string c = Tone("c.mp3", "3 sine 660");
  StartPlayer();
  Play({a, b, c});
  const Sound sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 8, 0.01);
  EXPECT_NEAR(Pitch(Piece(sound.left, 0.5, 2)), 440, 1);
  EXPECT_NEAR(Pitch(Piece(sound.left, 3.2, 1.6)), 880, 1);
  EXPECT_NEAR(Pitch(Piece(sound.left, 5.2, 2)), 660, 1);
  EXPECT_LE(LongestSilence(sound.left), 0.01);
  EXPECT_LE(LongestSilence(sound.right), 0.01);
}

TEST_F(PlayedSound, SongsFollowEachOtherSampleForSample) {
  const std::vector<std::string> songs = {Tone("a.mp3", "3 sine 440"), Tone("b.mp3", "2 sine 880"),
                                          Tone("c.mp3", "3 sine 660")};
  Sound joined;
  for (const std::string& song : songs) {
    StartPlayer();
    Play({song});
    const Sound alone = Listen();
    joined.left.insert(joined.left.end(), alone.left.begin(), alone.left.end());
    joined.right.insert(joined.right.end(), alone.right.begin(), alone.right.end());
    EndPlayer();
  }
  StartPlayer();
  Play(songs);
  const Sound sound = Listen();
  EXPECT_NEAR(joined.Seconds(), 8, 0.001);
  ASSERT_EQ(sound.left.size(), joined.left.size());
  EXPECT_TRUE(sound.left == joined.left);
  EXPECT_TRUE(sound.right == joined.right);
}

TEST_F(PlayedSound, AnUnplayableFileIsSkippedWithoutAGap) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  const std::string b = Tone("b.mp3", "1 sine 880");
  StartPlayer();
  Play({folder.File("0.mp3", "no sound"), a, folder.File("1.mp3", "no sound"), folder / "gone.mp3",
        b, folder.File("2.mp3", "")});
  const Sound sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 2, 0.01);
  EXPECT_NEAR(Pitch(Piece(sound.left, 0.2, 0.6)), 440, 2);
  EXPECT_NEAR(Pitch(Piece(sound.left, 1.2, 0.6)), 880, 2);
  EXPECT_LE(LongestSilence(sound.left), 0.01);
}

TEST_F(PlayedSound, ManyUnplayableFilesAreSkipped) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  std::vector<std::string> files;
  for (int k = 0; k < 70; ++k) files.push_back(folder.File(std::to_string(k) + ".mp3", "no sound"));
  files.push_back(a);
  StartPlayer();
  Play(files);
  EXPECT_NEAR(Listen().Seconds(), 1, 0.01);
}

TEST_F(PlayedSound, SongsAddedAfterAnUnplayableLastSongArePlayed) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  StartPlayer();
  Play({folder.File("0.mp3", "no sound")});
  ASSERT_TRUE(WaitForStatus("STOPPED"));
  player.AddFileToWinamp(a);
  EXPECT_NEAR(Listen().Seconds(), 1, 0.01);
}

TEST_F(PlayedSound, TheVolumeIsProportionalToTheAmplitude) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  StartPlayer();
  for (const int volume : {255, 128, 32, 0}) {
    player.ClearWinampPlaylist();
    player.SetVolume(volume);
    Play({a});
    const Sound sound = Listen();
    EXPECT_NEAR(Level(Piece(sound.left, 0.2, 0.6)), kToneLevel * volume / 255, 0.005) << volume;
  }
}

TEST_F(PlayedSound, ChangingTheBalanceDropsNoSound) {
  const std::string a = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  Play({a});
  for (int k = -127; k <= 127; ++k) player.SetBalance(k);
  player.SetBalance(0);
  const Sound sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 60, 0.001);
  EXPECT_NEAR(Pitch(Piece(sound.left, 0.5, 59)), 440, 0.01);
}

TEST_F(PlayedSound, TheBalanceAttenuatesTheOtherSide) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  StartPlayer();
  const double half = kToneLevel * (1 - 64.0 / 127);
  struct Sides {
    int balance;
    double left, right;
  };
  for (const auto& [balance, left, right] :
       {Sides{0, kToneLevel, kToneLevel}, Sides{-127, kToneLevel, 0}, Sides{127, 0, kToneLevel},
        Sides{-64, kToneLevel, half}, Sides{64, half, kToneLevel}}) {
    player.ClearWinampPlaylist();
    player.SetBalance(balance);
    Play({a});
    const Sound sound = Listen();
    EXPECT_NEAR(Level(Piece(sound.left, 0.2, 0.6)), left, 0.005) << balance;
    EXPECT_NEAR(Level(Piece(sound.right, 0.2, 0.6)), right, 0.005) << balance;
    EXPECT_EQ(Level(sound.left) == 0, left == 0) << balance;
    EXPECT_EQ(Level(sound.right) == 0, right == 0) << balance;
  }
}

TEST_F(PlayedSound, AMonoSongIsEquallyLoudOnBothSides) {
  const std::string mono = Tone("a.mp3", "1 sine 440", 1);
  StartPlayer();
  Play({mono});
  const Sound sound = Listen();
  EXPECT_NEAR(Level(Piece(sound.left, 0.2, 0.6)), kToneLevel, 0.005);
  EXPECT_NEAR(Level(Piece(sound.right, 0.2, 0.6)), kToneLevel, 0.005);
}

TEST_F(PlayedSound, SeekingReachesTheExactPosition) {
  // The pitch encodes the time: 300 Hz plus 150 Hz per second.
  for (const char* const encoding : {"-b 128", "-V 2"}) {
    const std::string sweep = folder / "sweep.mp3";
    MakeMp3(sweep, "20 sine 300:3300", 2, encoding);
    StartPlayer();
    // Pause before the first sound.
    Play({sweep});
    player.SendWinampCommand(kPause);
    player.SetTrackPosition(13);
    EXPECT_EQ(player.GetTrackPosition(), 13);
    EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
    player.SendWinampCommand(kPause);
    const Sound sound = Listen();
    // The file still contains some audio from before the seek, which a device would discard.
    double jump = 0;
    while (Pitch(Piece(sound.left, jump, 0.02)) < 1500 && jump < sound.Seconds()) jump += 0.005;
    EXPECT_NEAR(sound.Seconds() - jump, 7, 0.05) << encoding;
    EXPECT_NEAR(Pitch(Piece(sound.left, jump + 0.1, 0.2)), 300 + 150 * (13 + 0.2), 150 * 0.05)
        << encoding;
    EndPlayer();
  }
}

TEST_F(PlayedSound, SeekingBackwardIsExact) {
  const std::string sweep = Tone("sweep.mp3", "20 sine 300:3300");
  StartPlayer();
  Play({sweep});
  player.SendWinampCommand(kPause);
  for (const int second : {15, 4, 17, 12}) player.SetTrackPosition(second);
  player.SendWinampCommand(kPlay);
  const Sound sound = Listen();
  // The last eight seconds must start at the target of the last seek, whatever was written before.
  EXPECT_NEAR(Pitch(Piece(sound.left, sound.Seconds() - 7.9, 0.2)), 300 + 150 * 12.2, 150 * 0.05);
  EXPECT_LT(sound.Seconds(), 20);
}

TEST_F(PlayedSound, StopAfterTrackFinishesTheTrackAndPlayStartsTheNextOne) {
  const std::string a = Tone("a.mp3", "2 sine 440");
  const std::string b = Tone("b.mp3", "1 sine 880");
  StartPlayer();
  Play({a, b});
  player.SendWinampCommand(kPause);
  player.SendWinampCommand(kStopAfterTrack);
  player.SendWinampCommand(kPause);
  Sound sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 2, 0.01);
  EXPECT_NEAR(Pitch(Piece(sound.left, 0.5, 1)), 440, 1);
  player.SendWinampCommand(kPlay);
  sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 1, 0.01);
  EXPECT_NEAR(Pitch(Piece(sound.left, 0.2, 0.6)), 880, 1);
}

TEST_F(PlayedSound, APauseAddsNoSound) {
  const std::string a = Tone("a.mp3", "60 sine 440");
  StartPlayer();
  Play({a});
  player.SendWinampCommand(kPause);
  EXPECT_EQ(player.GetWinampStatus(), "PAUSED");
  player.SendWinampCommand(kPlay);
  for (int k = 0; k < 20; ++k) {
    player.SendWinampCommand(kPause);
    player.SendWinampCommand(k % 2 == 0 ? kPlay : kPause);
  }
  if (player.GetWinampStatus() == "PAUSED") player.SendWinampCommand(kPlay);
  const Sound sound = Listen();
  EXPECT_NEAR(sound.Seconds(), 60, 0.01);
  EXPECT_LE(LongestSilence(sound.left), 0.01);
  EXPECT_NEAR(Pitch(Piece(sound.left, 1, 58)), 440, 0.1);
}

TEST_F(PlayedSound, APlaylistNamedLikeASongIsNotFollowed) {
  const std::string a = Tone("a.mp3", "1 sine 440");
  StartPlayer();
  Play({folder.File("list.mp3", "#EXTM3U\n" + a + "\n"),
        folder.File("concat.mp3", "ffconcat version 1.0\nfile '" + a + "'\n"),
        folder.File("sheet.mp3",
                    "FILE \"" + a + "\" MP3\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n")});
  EXPECT_EQ(Listen().Seconds(), 0);
}

}  // namespace
}  // namespace tallow

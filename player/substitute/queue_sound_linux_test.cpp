// SPDX-License-Identifier: GPL-3.0-or-later
// The samples that the real player writes while its queue and its gain change.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <random>

#include "player/tallow_player_requests.h"
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"

namespace tallow {
namespace {

/// The number of a member of a JSON object.
std::int64_t NumberIn(const std::string& answer, const std::string& name) {
  const std::size_t at = answer.find('"' + name + "\":");
  return at == std::string::npos ? -1 : std::stoll(answer.substr(at + name.size() + 3));
}

/// Plays into a WAV file, at several times real time.
class QueueSound : public RealPlayer {
 protected:
  QueueSound() { PlayAtPace("4"); }

  void PlayAtPace(const std::string& times) {
    UseOptions("--audio-file " + Quote(folder / "sound.wav") + " --paced " + times);
  }

  std::string Ask(const std::string& request) {
    const std::optional<std::string> answer = link->Ask(player.Window(), request);
    EXPECT_TRUE(answer) << request;
    return answer.value_or("");
  }
  std::string State() { return Ask(R"({"do":"state","failuresAfter":0})"); }
  std::vector<std::int64_t> Queue() {
    std::string answer = Ask(R"({"do":"queue","from":0,"count":4096})");
    std::replace(answer.begin(), answer.end(), ',', ' ');
    std::istringstream numbers(answer.substr(answer.find('[') + 1));
    std::vector<std::int64_t> entries;
    for (std::int64_t entry = 0; numbers >> entry;) entries.push_back(entry);
    return entries;
  }
  /// Adds a song of MakeSongs.
  void Add(std::int64_t at, std::size_t song) {
    std::string data(sizeof at, '\0');
    std::memcpy(data.data(), &at, sizeof at);
    const std::int64_t entry = link->AddFiles(player.Window(), data + SongPath(song) + '\0');
    EXPECT_GT(entry, 0);
    songs_[entry] = song;
  }

  /// Makes songs of about half a second, which differ in length and pitch.
  void MakeSongs(std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
      MakeMp3(SongPath(k), "0." + std::to_string(40 + k) + " sine " + std::to_string(300 + 50 * k));
      decoded_.push_back(Decoded(SongPath(k)));
    }
  }
  std::string SongPath(std::size_t song) { return folder / (std::to_string(song) + ".mp3"); }
  std::string Decoded(const std::string& song) {
    const std::string raw = folder / "decoded";
    const std::string command = "ffmpeg -v error -y -i " + Quote(song) +
                                " -f s16le -ac 2 -ar 44100 " + Quote(raw) + " < /dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return ReadWholeFile(raw).value_or("");
  }
  /// The samples of a list that has ended, decoded by another program.
  std::string DecodedList() {
    // Its other entries are to come again.
    player.SetListPlace(0);
    std::string samples = decoded_[songs_.at(NumberIn(State(), "entry"))];
    for (const std::int64_t entry : Queue()) samples += decoded_[songs_.at(entry)];
    return samples;
  }
  /// Copies a song and adds ReplayGain. The copy has no header of the encoder, whose gain libmpv
  /// would prefer; and libmpv ignores a gain without a peak.
  std::string Tagged(const std::string& song) {
    const std::string tagged = folder / "tagged.mp3";
    const std::string command = "ffmpeg -v error -i " + Quote(song) +
                                " -c copy -write_xing 0 -metadata REPLAYGAIN_TRACK_GAIN='-6.02 dB' "
                                "-metadata REPLAYGAIN_TRACK_PEAK=0.5 "
                                "-metadata REPLAYGAIN_ALBUM_GAIN='-12.04 dB' "
                                "-metadata REPLAYGAIN_ALBUM_PEAK=0.5 " +
                                Quote(tagged) + " < /dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return tagged;
  }
  std::string Written() {
    const std::string bytes = ReadWholeFile(folder / "sound.wav").value_or("");
    const std::size_t data = bytes.find("data");
    return data == std::string::npos ? "" : bytes.substr(data + 8);
  }

  /// Plays the list to its end.
  /// \param meanwhile called again and again, so also just before the ends of tracks
  void PlayToTheEnd(const std::function<void()>& meanwhile) {
    player.SendWinampCommand(kPlay);
    std::string state = State();
    while (NumberIn(state, "status") != kStopped) {
      const std::int64_t entry = NumberIn(state, "entry");
      ASSERT_TRUE(WaitUntil([&] {
        meanwhile();
        state = State();
        return NumberIn(state, "entry") != entry || NumberIn(state, "status") == kStopped;
      }));
    }
  }

  /// A list that was played to its end while the queue changed.
  struct ChangedList {
    int changes = 0;
    std::chrono::milliseconds longest_wait{0};  ///< between two answers of the player
  };
  ChangedList PlayChangingTheQueue(std::mt19937& random, std::size_t songs) {
    using Clock = std::chrono::steady_clock;
    ChangedList list;
    Clock::time_point last_answer = Clock::now();
    PlayToTheEnd([&] {
      const std::vector<std::int64_t> queue = Queue();
      const Clock::time_point now = Clock::now();
      list.longest_wait = std::max(list.longest_wait,
                                   std::chrono::ceil<std::chrono::milliseconds>(now - last_answer));
      last_answer = now;
      if (queue.size() < 3 || random() % 8 != 0) return;
      ++list.changes;
      const std::string next = std::to_string(queue.front());
      switch (random() % 3) {
        case 0:
          Ask(R"({"do":"move","entries":[)" + std::to_string(queue[2]) + R"(],"before":)" + next +
              "}");
          break;
        case 1:
          Ask(R"({"do":"move","entries":[)" + next + R"(],"before":0})");
          break;
        default:
          Ask(R"({"do":"remove","entries":[)" + next + "]}");
          Add(kPlayNext, random() % songs);
      }
    });
    return list;
  }

 private:
  std::vector<std::string> decoded_;
  std::map<std::int64_t, std::size_t> songs_;  ///< by the entry
};

TEST_F(QueueSound, OneHundredTrackChangesAreGaplessWhileTheQueueChanges) {
  constexpr std::size_t kSongs = 12;
  // If the player waits for the processor for longer than a song lasts, the engine may play a track
  // already that the player removes, and opens its output again. What was written says nothing
  // then, so the list is played once more.
  constexpr auto kLate = std::chrono::milliseconds(200);
  constexpr int kAttempts = 4;
  PlayAtPace("1");
  MakeSongs(kSongs);
  StartPlayer();
  std::mt19937 random(1);
  for (int attempt = 1;; ++attempt) {
    player.ClearWinampPlaylist();
    for (int k = 0; k < 101; ++k) Add(kAtEnd, random() % kSongs);
    const ChangedList list = PlayChangingTheQueue(random, kSongs);
    EXPECT_GE(list.changes, 100);
    const std::string expected = DecodedList();
    const std::string written = Written();
    if (written == expected) return;
    if (list.longest_wait >= kLate && attempt < kAttempts) continue;
    FAIL() << written.size() << " bytes were written instead of " << expected.size() << "; attempt "
           << attempt << ", the longest wait for an answer took " << list.longest_wait.count()
           << " ms";
  }
}

TEST_F(QueueSound, ChangingTheGainLosesNoSound) {
  MakeMp3(folder / "plain.mp3", "4 sine 440");
  const std::string tagged = Tagged(folder / "plain.mp3");
  StartPlayer();
  Play({tagged});
  int changes = 0;
  ASSERT_TRUE(WaitUntil([&] {
    for (int k = 0; k < 50; ++k) State();
    Ask(++changes % 2 == 0 ? R"({"do":"gain","mode":"off"})" : R"({"do":"gain","mode":"track"})");
    return NumberIn(State(), "status") == kStopped;
  }));
  EXPECT_GT(changes, 10);
  EXPECT_EQ(Written().size(), Decoded(tagged).size());
  const Sound sound = ReadSound(folder / "sound.wav");
  const std::span<const double> middle = Piece(sound.left, 0.1, 3.8);
  EXPECT_NEAR(Pitch(middle), 440, 0.5);
  EXPECT_LE(LongestSilence({middle.begin(), middle.end()}), 0.01);
  // How long the gain applied depends on when the changes came.
  EXPECT_LT(Level(middle), kToneLevel * 0.99);
}

TEST_F(QueueSound, TheGainOfTheTagsIsAppliedAndOtherFilesAreNotChanged) {
  const std::string plain = folder / "plain.mp3";
  MakeMp3(plain, "1 sine 440");
  const std::string tagged = Tagged(plain);
  StartPlayer();
  struct Case {
    const char* mode;
    double of_tagged;
  };
  for (const auto& [mode, of_tagged] :
       {Case{"track", 0.5}, Case{"album", 0.25}, Case{"off", 1.0}}) {
    player.ClearWinampPlaylist();
    Ask(std::string(R"({"do":"gain","mode":")") + mode + "\"}");
    Play({tagged});
    ASSERT_TRUE(WaitForStatus("STOPPED"));
    EXPECT_NEAR(Level(Piece(ReadSound(folder / "sound.wav").left, 0.2, 0.6)),
                kToneLevel * of_tagged, 0.005)
        << mode;
    player.ClearWinampPlaylist();
    Play({plain});
    ASSERT_TRUE(WaitForStatus("STOPPED"));
    EXPECT_TRUE(Written() == Decoded(plain)) << mode;
  }
}

TEST_F(QueueSound, AListOfUnplayableFilesThatIsRepeatedStops) {
  StartPlayer();
  Ask(R"({"do":"repeat","mode":"all"})");
  Play({folder.File("0.mp3", "no sound"), folder / "gone.mp3", folder.File("1.mp3", "")});
  ASSERT_TRUE(WaitUntil([&] { return NumberIn(State(), "status") == kStopped; }));
  const std::string state = State();
  EXPECT_NE(state.find(R"({"number":1,"entry":1,"reason":"Its format is not known."})"),
            std::string::npos)
      << state;
  EXPECT_NE(state.find(R"({"number":2,"entry":2,"reason":"The file is gone."})"), std::string::npos)
      << state;
  EXPECT_NE(state.find(R"({"number":3,"entry":3,"reason":")"), std::string::npos) << state;
}

TEST_F(QueueSound, TheSoundDevicesBeginWithTheSystemsOwn) {
  StartPlayer();
  EXPECT_TRUE(
      Ask(R"({"do":"devices"})").starts_with(R"({"devices":[{"name":"auto","description":)"));
  EXPECT_EQ(Ask(R"({"do":"device","name":"auto"})"), "{}");
}

}  // namespace
}  // namespace tallow

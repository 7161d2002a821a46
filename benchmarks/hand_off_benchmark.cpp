// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the hand-off of songs to the real player, against a floor: stat each file and send its
// path through a socket to another process and back, one after another.
// Prints per line: what, seconds, songs. For each hand-off there are two more lines:
//
//   longest_...  the longest time in which the caller could not process window events
//   sound_...    from the command until the position in the first song advances
//
//
// Usage: hand_off_benchmark PLAYER MUSIC SONGS
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "app/search/drive_list.h"
#include "app/search/file_search.h"
#include "app/tallow.h"
#include "player/player_messages.h"
#include "player/playfile.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

void Print(const char* what, Clock::time_point begin, std::size_t songs) {
  const std::chrono::duration<double> took = Clock::now() - begin;
  std::printf("%s %.6f %zu\n", what, took.count(), songs);
}

struct NoPanel : HandOffPanel {
  void TrackStarted(std::int32_t) override {}
  void HandedOver() override {}
};

/// Replies with eight bytes to every message.
[[noreturn]] void Answer(int socket) {
  char bytes[8192];
  while (read(socket, bytes, sizeof bytes) > 0)
    if (write(socket, bytes, 8) != 8) break;
  _exit(0);
}

bool MeasureFloor(const clsMain& library, const std::vector<std::int32_t>& songs) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) return false;
  const pid_t other = fork();
  if (other == 0) {
    close(ends[0]);
    Answer(ends[1]);
  }
  close(ends[1]);
  const auto begin = Clock::now();
  for (const std::int32_t song : songs) {
    const std::string path = library.Song(song).Path();
    struct stat status {};
    char answer[8];
    if (stat(path.c_str(), &status) != 0 || write(ends[0], path.data(), path.size()) < 0 ||
        read(ends[0], answer, sizeof answer) != sizeof answer)
      return false;
  }
  Print("floor", begin, songs.size());
  close(ends[0]);
  waitpid(other, nullptr, 0);
  return true;
}

/// Asks the player from another thread, as another client, when its position advances. Begins with
/// the next song: the last one may still play.
class SoundWatch {
 public:
  SoundWatch()
      : begin_(Clock::now()), thread_([this](const std::stop_token& stop) { Work(stop); }) {}

  /// Waits until the sound was heard, at most for as long as the hand-off takes.
  /// \returns the seconds that it took; below 0 if there was none
  double Seconds() {
    thread_.request_stop();
    thread_.join();
    return seconds_;
  }

 private:
  static constexpr std::chrono::milliseconds kPause{2};

  void Work(const std::stop_token& stop) {
    const auto link = SystemPlayerLink();
    std::uint64_t entry_before = 0;
    if (const PlayerHandle player = link->Find(); player != 0)
      if (const auto state = TallowPlayer(*link, player).State()) entry_before = state->entry;
    // A hand-off that is quicker than the sound is waited for.
    const auto is_late = [&] { return stop.stop_requested() && Clock::now() - begin_ > kMaxWait; };
    for (; !is_late(); std::this_thread::sleep_for(kPause)) {
      const PlayerHandle player = link->Find();
      if (player == 0) continue;
      const auto state = TallowPlayer(*link, player).State();
      if (!state || state->status != kPlaying || state->entry == entry_before ||
          state->position <= 0)
        continue;
      seconds_ = std::chrono::duration<double>(Clock::now() - begin_).count();
      return;
    }
  }

  static constexpr std::chrono::seconds kMaxWait{5};
  const Clock::time_point begin_;
  double seconds_ = -1;
  std::jthread thread_;
};

/// Measures the longest time between two calls.
class Gaps {
 public:
  void Called() {
    const Clock::time_point now = Clock::now();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
  }
  double Longest() const { return std::chrono::duration<double>(longest_).count(); }

 private:
  Clock::time_point last_ = Clock::now();
  Clock::duration longest_{};
};

bool MeasureHandOff(const std::string& what, const std::vector<std::int32_t>& songs,
                    clsMain& library, WinAMP_Control& player, const ShowMessage& show) {
  NoPanel panel;
  SoundWatch sound;
  Gaps gaps;
  const auto begin = Clock::now();
  const HandOverResult result = HandOver(
      {.songs = songs}, library, player, show, panel,
      [&](std::size_t, std::size_t) {
        gaps.Called();
        return true;
      },
      [&] {
        gaps.Called();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
      });
  gaps.Called();
  Print(what.c_str(), begin, songs.size());
  std::printf("longest_%s %.6f %zu\n", what.c_str(), gaps.Longest(), songs.size());
  std::printf("sound_%s %.6f %zu\n", what.c_str(), sound.Seconds(), songs.size());
  return result.songs.size() == songs.size();
}

int Run(const std::string& player_path, const std::string& music, std::size_t count) {
  char runtime[] = "/tmp/tallow-bench-XXXXXX";
  if (mkdtemp(runtime) == nullptr) return 1;
  setenv("XDG_RUNTIME_DIR", runtime, 1);
  Tallow tallow(std::string(runtime) + "/");
  const auto drives = GivenDrives({music});
  FileSearch(tallow, *drives, nullptr).SearchDrivesForMp3s(true, {});
  std::vector<std::int32_t> songs;
  for (std::int32_t row = 1; songs.size() < count && row <= tallow.library.UBoundOfMp3Array();
       ++row)
    songs.push_back(row);
  if (songs.size() < count || !MeasureFloor(tallow.library, songs)) return 1;

  const auto link = SystemPlayerLink();
  const ShowMessage show = [](const Message& message) {
    std::fprintf(stderr, "%s\n", message.text.c_str());
    return MessageAnswer::kOk;
  };
  WinAMP_Control player(
      *link, [&] { return player_path; }, show);
  bool complete = true;
  for (const char* const what : {"start_and_hand_off", "hand_off"})
    complete = MeasureHandOff(what, songs, tallow.library, player, show) && complete;
  player.SendWinampCommand(kClosePlayer);
  const int removed = std::system(("rm -rf " + std::string(runtime)).c_str());
  return complete ? removed : 1;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  return tallow::Run(argv[1], argv[2], std::strtoul(argv[3], nullptr, 10));
}

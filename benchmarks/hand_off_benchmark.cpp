// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the hand-off of songs to the real player, against a floor: stat each file and send its
// path through a socket to another process and back, one after another.
// Prints per line: what, seconds, songs.
//
// Usage: hand_off_benchmark PLAYER MUSIC SONGS
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
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
  NoPanel panel;
  for (const char* const what : {"start_and_hand_off", "hand_off"}) {
    const auto begin = Clock::now();
    HandOver(songs, tallow.library, player, show, panel);
    Print(what, begin, songs.size());
  }
  player.SendWinampCommand(kClosePlayer);
  return std::system(("rm -rf " + std::string(runtime)).c_str());
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  return tallow::Run(argv[1], argv[2], std::strtoul(argv[3], nullptr, 10));
}

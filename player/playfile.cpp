// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/playfile.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "library/cls_main.h"
#include "player/player_messages.h"
#include "util/comm_dlgs.h"

namespace tallow {

bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show) {
  if (!player.StartWinamp()) {
    show({.text = "Couldn't start WinAMP"});
    return false;
  }
  if (!player.FindWinamp()) {
    show({.text = "Couldn't find WinAMP's Window"});
    return false;
  }
  return true;
}

std::string PathOfSong(const clsMain& library, std::int32_t record) {
  if (record < 1 || record > library.UBoundOfMp3Array()) return {};
  return std::string(library.Mp3Info(kFileLocation, record)) +
         std::string(library.Mp3Info(kFileName, record));
}

namespace {

/// How many songs that cannot be read are named.
constexpr std::size_t kMostNamed = 5;

/// Looks whether the files of songs are there, and keeps what else is the matter with them.
class FileChecks {
 public:
  /// Whether a song is to be handed over: one that cannot be read may only be so at this moment.
  bool IsPlayable(const std::string& path) {
    if (path.empty()) return false;
    const std::optional<FileProblem> problem = ProblemOfFileDate(path);
    if (!problem) return true;
    if (problem->absent) return false;
    if (count_++ < kMostNamed) problems_.emplace_back(path, *problem);
    return true;
  }

  /// Says what was the matter, in one message.
  void Tell(const ShowMessage& show) const {
    if (count_ == 0) return;
    const FileProblem& first = problems_.front().second;
    std::string text = "Error Number: " + std::to_string(first.number) + "\n" + first.text;
    if (count_ > 1) {
      text = std::to_string(count_) + " songs cannot be read:\n";
      for (const auto& [path, problem] : problems_)
        text += "\n" + path + ": " + problem.text + " (" + std::to_string(problem.number) + ")";
      if (count_ > kMostNamed) text += "\nand " + std::to_string(count_ - kMostNamed) + " more";
    }
    show({.text = std::move(text), .title = "Error"});
  }

 private:
  std::size_t count_ = 0;
  std::vector<std::pair<std::string, FileProblem>> problems_;
};

void TellListIsFull(std::size_t taken, std::size_t all, const ShowMessage& show) {
  show({.text = "The player's list is full: it took " + std::to_string(taken) + " of the " +
                std::to_string(all) +
                " songs. Play fewer songs at once, and the others after them.",
        .title = "Error"});
}

}  // namespace

void HandOver(std::span<const std::int32_t> songs, const clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel) {
  if (!ReachPlayer(player, show)) return;
  panel.PlayerFound();
  if (songs.empty()) return;
  FileChecks checks;
  const std::string first = PathOfSong(library, songs.front());
  if (!checks.IsPlayable(first)) return panel.FirstSongIsGone(first);
  player.SendWinampCommand(kStop);
  player.ClearWinampPlaylist();
  if (!player.AddFileToWinamp(first)) return TellListIsFull(0, songs.size(), show);
  player.SendWinampCommand(kPlay);
  panel.TrackStarted(player.GetTrackLength());
  std::size_t done = 1;
  for (; done < songs.size(); ++done) {
    const std::string path = PathOfSong(library, songs[done]);
    if (checks.IsPlayable(path) && !player.AddFileToWinamp(path)) break;
  }
  panel.HandedOver();
  checks.Tell(show);
  if (done < songs.size()) TellListIsFull(done, songs.size(), show);
}

}  // namespace tallow

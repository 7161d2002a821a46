// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/playfile.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "library/cls_main.h"
#include "library/folder_scan.h"
#include "player/player_messages.h"
#include "util/comm_dlgs.h"
#include "util/read_ahead.h"

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

namespace {

/// Number of files that a thread checks in one batch, see ReadAhead.
constexpr std::size_t kFilesAtOnce = 64;

/// Result of checking a file.
struct FileAnswer {
  bool came = true;  ///< false: the disk does not answer
  std::optional<FileProblem> problem;
};

/// Maximum number of unreadable songs that the message names.
constexpr std::size_t kMaxNamed = 5;

/// Evaluates the checks of the songs' files and collects the problems.
class FileChecks {
 public:
  /// Whether to hand over a song. Includes songs that cannot be read now, because this may be
  /// temporary.
  bool IsPlayable(const std::string& path, const FileAnswer& answer) {
    if (path.empty()) return false;
    if (!answer.came) {
      if (unanswered_++ == 0) first_unanswered_ = path;
      return false;
    }
    const std::optional<FileProblem>& problem = answer.problem;
    if (!problem) return true;
    if (problem->absent) return false;
    if (count_++ < kMaxNamed) problems_.emplace_back(path, *problem);
    return true;
  }

  void ReportUnanswered(HandOffPanel& panel) const {
    if (unanswered_ > 0) panel.DiskTimedOut(unanswered_, first_unanswered_);
  }

  /// Shows the collected problems in one message.
  void Tell(const ShowMessage& show) const {
    if (count_ == 0) return;
    const FileProblem& first = problems_.front().second;
    std::string text = "Error Number: " + std::to_string(first.number) + "\n" + first.text;
    if (count_ > 1) {
      text = std::to_string(count_) + " songs cannot be read:\n";
      for (const auto& [path, problem] : problems_)
        text += "\n" + path + ": " + problem.text + " (" + std::to_string(problem.number) + ")";
      if (count_ > kMaxNamed) text += "\nand " + std::to_string(count_ - kMaxNamed) + " more";
    }
    show({.text = std::move(text), .title = "Error"});
  }

 private:
  std::size_t unanswered_ = 0;
  std::string first_unanswered_;
  std::size_t count_ = 0;
  std::vector<std::pair<std::string, FileProblem>> problems_;
};

void TellListIsFull(std::size_t taken, std::size_t all, const ShowMessage& show) {
  show({.text = "The player's list is full: it took " + std::to_string(taken) + " of the " +
                std::to_string(all) +
                " songs. Play fewer songs at once, and the others after them.",
        .title = "Error"});
}

void TellPlayerHasEnded(std::size_t taken, std::size_t all, const ShowMessage& show) {
  show({.text = "The player has ended: it took " + std::to_string(taken) + " of the " +
                std::to_string(all) + " songs. Play them again to restart the player.",
        .title = "Error"});
}

/// Checks the files of songs on worker threads and passes the results to a callback, in song order.
template <typename Use>
void LookAtFiles(std::span<const std::int32_t> songs, clsMain& library, const GoOn& go_on,
                 const Use& use) {
  const auto path_of = [&](std::size_t k) { return library.Song(songs[k]).Path(); };
  ReadAhead(
      songs.size(), kFilesAtOnce, path_of,
      [unanswered = library.Unanswered()](const std::string& path) -> FileAnswer {
        if (unanswered->Covers(path)) return {false, std::nullopt};
        return {true, path.empty() ? std::nullopt : ProblemOfFileDate(path)};
      },
      [&](std::size_t k, const FileAnswer& answer) { use(path_of(k), answer); },
      go_on ? library.WaitingFor(path_of, go_on) : WhileWaiting(),
      [](std::size_t) {
        return FileAnswer{false, std::nullopt};
      });
}

}  // namespace

void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress) {
  if (!ReachPlayer(player, show)) return;
  panel.PlayerFound();
  if (songs.empty()) return;
  FileChecks checks;
  std::size_t done = 0;
  std::size_t handed = 0;
  bool is_full = false;
  bool has_ended = false;
  GoOn go_on;
  if (progress) go_on = [&](std::string_view) { return progress(done, songs.size()); };
  const auto add = [&](const std::string& path) {
    is_full = !player.AddFileToWinamp(path);
    has_ended = !is_full && !player.IsThere();
    if (is_full || has_ended) throw Stopped();
    ++handed;
  };
  try {
    bool plays = false;
    LookAtFiles(songs.first(1), library, go_on,
                [&](const std::string& first, const FileAnswer& answer) {
                  plays = checks.IsPlayable(first, answer);
                  if (!answer.came) return panel.DiskTimedOut(1, first);
                  if (!plays) return panel.FirstSongIsGone(first);
                  player.SendWinampCommand(kStop);
                  player.ClearWinampPlaylist();
                  add(first);
                  player.SendWinampCommand(kPlay);
                  panel.TrackStarted(player.GetTrackLength());
                });
    if (!plays) return;
    ++done;
    if (go_on && !go_on({})) throw Stopped();
    LookAtFiles(songs.subspan(1), library, go_on,
                [&](const std::string& path, const FileAnswer& answer) {
                  if (checks.IsPlayable(path, answer)) add(path);
                  ++done;
                  if (go_on && done < songs.size() && !go_on({})) throw Stopped();
                });
  } catch (const Stopped&) {
    if (has_ended) return TellPlayerHasEnded(handed, songs.size(), show);
    if (is_full)
      TellListIsFull(done, songs.size(), show);
    else
      panel.Cancelled(handed, songs.size());
    if (handed == 0) return;
  }
  checks.ReportUnanswered(panel);
  panel.HandedOver();
  checks.Tell(show);
}

}  // namespace tallow

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

namespace {

/// Number of files that a thread checks in one batch, see ReadAhead.
constexpr std::size_t kFilesAtOnce = 64;

/// Result of checking a file.
struct FileAnswer {
  bool answered = true;  ///< false when the disk does not answer
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
    if (!answer.answered) {
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
  void ShowProblems(const ShowMessage& show) const {
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

void ShowListIsFull(std::size_t added, std::size_t all, const ShowMessage& show) {
  show({.text = "The player's list is full: it accepted " + std::to_string(added) + " of " +
                std::to_string(all) + " songs. Play fewer songs at once.",
        .title = "Error"});
}

void ShowPlayerHasEnded(std::size_t added, std::size_t all, const ShowMessage& show) {
  show({.text = "The player has ended: it accepted " + std::to_string(added) + " of " +
                std::to_string(all) + " songs. Play them again to restart the player.",
        .title = "Error"});
}

/// Checks the files of songs on worker threads and passes the results to a callback, in song order.
template <typename Callback>
void CheckFiles(std::span<const std::int32_t> songs, clsMain& library, const GoOn& go_on,
                const Callback& callback) {
  const auto path_of = [&](std::size_t k) { return library.Song(songs[k]).Path(); };
  ReadAhead(
      songs.size(), kFilesAtOnce, path_of,
      [unanswered = library.Unanswered()](const std::string& path) -> FileAnswer {
        if (unanswered->Covers(path)) return {false, std::nullopt};
        return {true, path.empty() ? std::nullopt : ProblemOfFileDate(path)};
      },
      [&](std::size_t k, const FileAnswer& answer) { callback(path_of(k), answer); },
      go_on ? library.WaitingFor(path_of, go_on) : WhileWaiting(),
      [](std::size_t) {
        return FileAnswer{false, std::nullopt};
      });
}

/// One hand-over of songs to the player, see HandOver.
class HandOverRun {
 public:
  HandOverRun(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress)
      : songs_(songs), library_(library), player_(player), show_(show), panel_(panel) {
    if (progress)
      go_on_ = [this, &progress](std::string_view) { return progress(done_, songs_.size()); };
  }

  void Run() {
    try {
      if (!PlayFirstSong()) return;
      AddOtherSongs();
    } catch (const Stopped&) {
      ShowWhyStopped();
      if (reason_ == StopReason::kPlayerHasEnded || added_ == 0) return;
    }
    checks_.ReportUnanswered(panel_);
    panel_.HandedOver();
    checks_.ShowProblems(show_);
  }

 private:
  /// Why a hand-over stops before its last song.
  enum class StopReason { kCancelled, kListIsFull, kPlayerHasEnded };

  /// Replaces the player's list by the first song and plays it.
  /// \returns false when its file is missing or cannot be checked; nothing is played in that case
  /// \throws Stopped
  bool PlayFirstSong() {
    bool plays = false;
    CheckFiles(songs_.first(1), library_, go_on_,
               [&](const std::string& path, const FileAnswer& answer) {
                 plays = checks_.IsPlayable(path, answer);
                 if (!answer.answered) return panel_.DiskTimedOut(1, path);
                 if (!plays) return panel_.FirstSongIsGone(path);
                 player_.SendWinampCommand(kStop);
                 player_.ClearWinampPlaylist();
                 Add(path);
                 player_.SendWinampCommand(kPlay);
                 panel_.TrackStarted(player_.GetTrackLength());
               });
    if (!plays) return false;
    ++done_;
    ReportProgress();
    return true;
  }

  /// \throws Stopped
  void AddOtherSongs() {
    CheckFiles(songs_.subspan(1), library_, go_on_,
               [&](const std::string& path, const FileAnswer& answer) {
                 if (checks_.IsPlayable(path, answer)) Add(path);
                 ++done_;
                 if (done_ < songs_.size()) ReportProgress();
               });
  }

  /// Adds a file to the player's list.
  /// \throws Stopped when the list is full or the player has ended
  void Add(const std::string& path) {
    if (!player_.AddFileToWinamp(path)) Stop(StopReason::kListIsFull);
    if (!player_.IsRunning()) Stop(StopReason::kPlayerHasEnded);
    ++added_;
  }

  /// \throws Stopped when the user has cancelled
  void ReportProgress() {
    if (go_on_ && !go_on_({})) Stop(StopReason::kCancelled);
  }

  [[noreturn]] void Stop(StopReason reason) {
    reason_ = reason;
    throw Stopped();
  }

  void ShowWhyStopped() {
    switch (reason_) {
      case StopReason::kPlayerHasEnded:
        return ShowPlayerHasEnded(added_, songs_.size(), show_);
      case StopReason::kListIsFull:
        return ShowListIsFull(done_, songs_.size(), show_);
      case StopReason::kCancelled:
        return panel_.Cancelled(added_, songs_.size());
    }
  }

  std::span<const std::int32_t> songs_;
  clsMain& library_;
  WinAMP_Control& player_;
  const ShowMessage& show_;
  HandOffPanel& panel_;
  GoOn go_on_;  ///< empty when the hand-over cannot be cancelled
  FileChecks checks_;
  std::size_t done_ = 0;   ///< number of songs processed
  std::size_t added_ = 0;  ///< number of songs that the player has
  /// Remains kCancelled when the hand-over is cancelled while it waits for a disk.
  StopReason reason_ = StopReason::kCancelled;
};

}  // namespace

void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress) {
  if (!ReachPlayer(player, show)) return;
  panel.PlayerFound();
  if (!songs.empty()) HandOverRun(songs, library, player, show, panel, progress).Run();
}

}  // namespace tallow

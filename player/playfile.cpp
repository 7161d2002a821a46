// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/playfile.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "library/cls_main.h"
#include "player/file_checks.h"
#include "player/player_messages.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

/// How long to wait for the length of the first song.
constexpr std::chrono::seconds kMaxLengthWait{2};
/// Pause between two queries of the length.
constexpr std::chrono::milliseconds kLengthPause{5};

void ShowEnd(const std::string& what, std::size_t added, std::size_t all, const std::string& advice,
             const ShowMessage& show) {
  show({.text = "The player" + what + ": it accepted " + std::to_string(added) + " of " +
                std::to_string(all) + " songs. " + advice,
        .title = "Error"});
}

/// One hand-over of songs to the player, see HandOver.
class HandOverRun {
 public:
  HandOverRun(const HandOverOrder& order, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress)
      : order_(order),
        library_(library),
        player_(player),
        show_(show),
        panel_(panel),
        sender_(player, [this](std::span<const HandedOverSong> songs, std::int64_t at) {
          Accepted(songs, at);
        }) {
    if (progress)
      go_on_ = [this, &progress](std::string_view) {
        Check(sender_.FlushIfDue());
        return progress(done_, order_.songs.size());
      };
  }

  HandOverResult Run() {
    try {
      if (!SendAll()) return std::move(result_);
    } catch (const Stopped&) {
      ShowWhyStopped();
      if (reason_ == Sent::kPlayerHasEnded || sender_.Count() == 0) return std::move(result_);
    }
    if (checks_.Unanswered() > 0)
      panel_.DiskTimedOut(checks_.Unanswered(), checks_.FirstUnanswered());
    panel_.HandedOver();
    checks_.ShowProblems(show_);
    return std::move(result_);
  }

 private:
  /// \returns false when nothing is played, because the first song's file is missing
  /// \throws Stopped
  bool SendAll() {
    if (order_.to != HandOverTo::kReplace) {
      sender_.AddAt(order_.to == HandOverTo::kPlayNext ? kPlayNext : kAtEnd);
      AddSongs(order_.songs);
      return true;
    }
    const std::size_t first = std::min(order_.first, order_.songs.size() - 1);
    if (!PlayFirstSong(order_.songs.subspan(first, 1))) return false;
    const auto entry = static_cast<std::int64_t>(sender_.LastEntry());
    AddSongs(order_.songs.subspan(first + 1));
    // With Winamp there is no entry, and they are added at the end.
    sender_.AddAt(entry);
    AddSongs(order_.songs.first(first));
    return true;
  }

  /// Replaces the player's list by the first song and plays it.
  /// \returns false when its file is missing or cannot be checked; nothing is played in that case
  /// \throws Stopped
  bool PlayFirstSong(std::span<const std::int32_t> song) {
    bool plays = false;
    CheckFiles(song, library_, go_on_,
               [&](std::int32_t number, const std::string& path, const FileAnswer& answer) {
                 plays = checks_.IsPlayable(path, answer);
                 if (!answer.answered) return panel_.DiskTimedOut(1, path);
                 if (!plays) return panel_.FirstSongIsGone(path);
                 player_.SendWinampCommand(kStop);
                 player_.ClearWinampPlaylist();
                 result_.replaced = true;
                 panel_.ListCleared();
                 Check(sender_.Add(number, path, done_));
                 Check(sender_.Flush());
                 player_.SendWinampCommand(kPlay);
                 panel_.TrackStarted(LengthOfTrack());
               });
    if (!plays) return false;
    ++done_;
    ReportProgress();
    return true;
  }

  /// The length of the song that has just begun to play, in s. Tallow's own player answers a query
  /// of it when the length is known, and must not be waited for so long without window events.
  std::int32_t LengthOfTrack() {
    const Clock::time_point deadline = Clock::now() + kMaxLengthWait;
    while (player_.Kind() == PlayerKind::kTallowPlayer && Clock::now() < deadline) {
      const std::optional<TallowPlayerState> state = player_.OwnPlayer().State();
      if (!state || state->status == kStopped) return -1;
      if (state->length >= 0) break;
      std::this_thread::sleep_for(kLengthPause);
      ReportProgress();
    }
    return player_.GetTrackLength();
  }

  /// \throws Stopped
  void AddSongs(std::span<const std::int32_t> songs) {
    CheckFiles(songs, library_, go_on_,
               [&](std::int32_t song, const std::string& path, const FileAnswer& answer) {
                 if (checks_.IsPlayable(path, answer)) Check(sender_.Add(song, path, done_));
                 ++done_;
                 if (done_ < order_.songs.size()) ReportProgress();
               });
    Check(sender_.Flush());
  }

  void Accepted(std::span<const HandedOverSong> songs, std::int64_t at) {
    // Those before the first song come after it, but precede it in the list.
    const auto place = at > 0 ? before_first_ : result_.songs.size();
    result_.songs.insert(result_.songs.begin() + static_cast<std::ptrdiff_t>(place), songs.begin(),
                         songs.end());
    if (at > 0) before_first_ += songs.size();
    panel_.SongsAdded(songs, at > 0 ? static_cast<std::uint64_t>(at) : 0);
  }

  /// \throws Stopped when the user has cancelled
  void ReportProgress() {
    if (go_on_ && !go_on_({})) throw Stopped();
  }

  /// \throws Stopped when the songs were not accepted
  void Check(Sent sent) {
    if (sent == Sent::kAccepted) return;
    reason_ = sent;
    throw Stopped();
  }

  void ShowWhyStopped() {
    const std::size_t all = order_.songs.size();
    switch (reason_) {
      case Sent::kPlayerHasEnded:
        return ShowEnd(" has ended", sender_.Count(), all, "Play them again to restart the player.",
                       show_);
      case Sent::kNoAnswer:
        return ShowEnd(" does not answer", sender_.Count(), all,
                       "End the player, then play them again.", show_);
      case Sent::kListIsFull:
        return ShowEnd("'s list is full", sender_.Refused(), all, "Play fewer songs at once.",
                       show_);
      case Sent::kAccepted:
        return panel_.Cancelled(sender_.Count(), all);
    }
  }

  const HandOverOrder& order_;
  clsMain& library_;
  WinAMP_Control& player_;
  const ShowMessage& show_;
  HandOffPanel& panel_;
  GoOn go_on_;  ///< empty when the hand-over cannot be cancelled
  FileChecks checks_;
  SongSender sender_;
  HandOverResult result_{.reached = true, .replaced = false, .songs = {}};
  std::size_t before_first_ = 0;  ///< songs of the result that precede the first one
  std::size_t done_ = 0;          ///< number of songs processed
  /// Remains kAccepted when the user cancels, also while the hand-over waits for a disk.
  Sent reason_ = Sent::kAccepted;
};

}  // namespace

HandOverResult HandOver(const HandOverOrder& order, clsMain& library, WinAMP_Control& player,
                        const ShowMessage& show, HandOffPanel& panel,
                        const HandOverProgress& progress, const WhileStarting& while_starting) {
  if (!ReachPlayer(player, show, while_starting)) return {};
  panel.PlayerFound();
  if (order.songs.empty()) return {.reached = true, .replaced = false, .songs = {}};
  return HandOverRun(order, library, player, show, panel, progress).Run();
}

void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress) {
  HandOver(HandOverOrder{.songs = songs}, library, player, show, panel, progress);
}

}  // namespace tallow

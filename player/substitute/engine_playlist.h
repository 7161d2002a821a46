// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "player/substitute/play_list.h"
#include "player/substitute/playback_engine.h"

namespace tallow {

/// What is known of the engine's playlist: the current track and those loaded in advance.
///
/// The number of an entry arrives in the reply to the command that loads it. Events with other
/// numbers refer to earlier tracks and are ignored.
class EnginePlaylist {
 public:
  /// Maximum number of tracks that the engine's playlist holds in advance. Unplayable files are
  /// skipped without closing the sound device if one of these tracks is playable.
  static constexpr std::size_t kMaxFollowing = 8;

  void Clear() noexcept;
  /// Call this after sending the command that replaces the engine's playlist by the current track.
  void SetCurrent(CommandNumber load, ListNumber track) noexcept;
  /// Call this after sending the command that appends a track.
  void AddFollowing(CommandNumber append, ListNumber track);
  /// Call this after sending the commands that append a track and move it behind the current one.
  void AddNext(CommandNumber append, ListNumber track);
  /// Call this after sending the command that removes all tracks except the current one.
  void RemoveFollowing(CommandNumber removal);
  /// Call this after sending the commands that remove all but the first `count` following tracks.
  void KeepFollowing(std::size_t count) { following_.resize(count); }
  /// Call this when an entry that MayHaveStarted has started, and another track was put in its
  /// place.
  void ReplaceCurrent(EntryNumber entry, ListNumber track) noexcept {
    current_ = {0, entry, track, true};
  }

  /// Stores the entry number that a reply contains, if the command has loaded one of the tracks.
  /// \param entry kNoEntry when the command has failed
  /// \returns whether the command has loaded the current track
  bool StoreReply(CommandNumber command, EntryNumber entry) noexcept;

  /// Whether the number of the current track is known.
  bool KnowsCurrent() const noexcept { return current_.number != kNoEntry; }
  bool IsCurrent(EntryNumber entry) const noexcept {
    return KnowsCurrent() && entry == current_.number;
  }
  /// Whether the engine continues with a track at the end of the current one: the next one, or one
  /// that it has until it has executed the commands that replace it.
  bool HasFollowing() const noexcept;
  bool IsNext(EntryNumber entry) const noexcept {
    return entry != kNoEntry && !following_.empty() && entry == following_.front().number;
  }
  /// Whether all commands that append or remove tracks have been answered.
  bool IsSettled() const noexcept;
  /// Whether an entry that is not the next one may have started before the engine executed a
  /// command: it was removed by RemoveFollowing, or AddNext has put another one before it.
  bool MayHaveStarted(EntryNumber entry) const noexcept;
  /// Number of tracks loaded in advance.
  std::size_t Following() const noexcept { return following_.size(); }
  /// A track that was loaded in advance.
  /// \param index 0 for the next one
  ListNumber FollowingTrack(std::size_t index) const { return following_[index].track; }
  /// Call this after the engine has continued with the next track.
  void Advance() noexcept;

 private:
  struct Entry {
    CommandNumber command = 0;
    EntryNumber number = kNoEntry;
    ListNumber track = 0;
    bool answered = false;  ///< the reply to the command has arrived
  };
  struct RemovedEntry {
    Entry entry;
    CommandNumber removal = 0;
  };

  Entry current_;
  std::deque<Entry> following_;  ///< the tracks after the current one, in order
  /// The tracks whose removal has not been answered yet.
  std::vector<RemovedEntry> removed_;
};

}  // namespace tallow

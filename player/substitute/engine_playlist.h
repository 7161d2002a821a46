// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>

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
  void SetCurrent(CommandNumber load) noexcept;
  /// Call this after sending the command that appends a track.
  void AddFollowing(CommandNumber append);
  /// Call this after sending the command that removes all tracks except the current one.
  void RemoveFollowing() noexcept { following_.clear(); }

  /// Stores the entry number that a reply contains, if the command has loaded one of the tracks.
  /// \param entry kNoEntry when the command has failed
  /// \returns whether the command has loaded the current track
  bool StoreReply(CommandNumber command, EntryNumber entry) noexcept;

  /// Whether the number of the current track is known.
  bool KnowsCurrent() const noexcept { return current_.number != kNoEntry; }
  bool IsCurrent(EntryNumber entry) const noexcept {
    return KnowsCurrent() && entry == current_.number;
  }
  /// Whether the number of the next track is known, so that the engine continues with it.
  bool KnowsNext() const noexcept {
    return !following_.empty() && following_.front().number != kNoEntry;
  }
  bool IsNext(EntryNumber entry) const noexcept {
    return KnowsNext() && entry == following_.front().number;
  }
  /// Number of tracks loaded in advance.
  std::size_t Following() const noexcept { return following_.size(); }
  /// Call this after the engine has continued with the next track.
  void Advance() noexcept;

 private:
  struct Entry {
    CommandNumber command = 0;
    EntryNumber number = kNoEntry;
  };

  Entry current_;
  std::deque<Entry> following_;  ///< the tracks after the current one, in order
};

}  // namespace tallow

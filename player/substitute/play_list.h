// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "player/tallow_player_requests.h"

namespace tallow {

/// Identifies an entry of a PlayList; never reused. 0 for none.
using ListNumber = std::uint64_t;

/// The files to play, one of which is the current one. An empty list has none.
///
/// The entries have two orders: that of the list, in which an entry has a place, and that in which
/// they are played. Both are the same without shuffle. With shuffle, the entries after the current
/// one ("upcoming") are in random order, except that those added by kPlayNext come first. A round
/// ends with the last entry in the order of playing. In a round, turning shuffle on lets those
/// entries follow that have not been played in it; turning it off continues behind the current
/// entry in the order of the list. Each round with shuffle has an order of its own.
///
/// Memory is limited, see kMaxListBytes; two numbers of four bytes for each entry are not counted.
/// Each change is at most linear in the length of the list, whatever the number of entries that it
/// concerns.
class PlayList {
 public:
  /// An entry that follows the current one.
  struct Following {
    ListNumber number = 0;      ///< 0 for none
    const std::string* path{};  ///< null for none; valid until the list changes
  };

  /// \param seed of the random order
  explicit PlayList(std::mt19937::result_type seed = std::random_device{}()) : random_(seed) {}

  /// Adds files: all of them, or none. The first file of an empty list becomes the current one.
  /// Files that are not added by kPlayNext are distributed randomly over the upcoming ones when the
  /// list is shuffled.
  /// \param at see AddFilesAt
  /// \returns the number of the first new entry, the others follow; 0 when the list has no room, or
  ///          has no entry with the number `at`
  ListNumber Add(std::vector<std::string> paths, std::int64_t at);
  /// Adds a file at the end.
  /// \returns false when the list is full; nothing has changed in that case
  bool Add(std::string path) { return Add(std::vector{std::move(path)}, kAtEnd) != 0; }
  void Clear();

  bool IsEmpty() const noexcept { return entries_.empty(); }
  std::size_t Size() const noexcept { return entries_.size(); }
  /// Whether an entry has this number.
  bool Contains(ListNumber number) const noexcept { return PlaceOf(number).has_value(); }
  /// Changes with the list, its order, and the current entry.
  std::uint64_t Revision() const noexcept { return revision_; }

  /// Whether there is a file after the current one.
  bool HasNext() const noexcept {
    return Upcoming() > 0 || (repeat_ == RepeatMode::kAll && !IsEmpty());
  }
  /// Whether there is a file before the current one.
  bool HasPrevious() const noexcept { return position_ > 0; }

  /// The path of the current file; empty when the list is empty.
  std::string CurrentPath() const { return IsEmpty() ? std::string() : entries_[Place()].path; }
  /// The number of the current entry; 0 when the list is empty.
  ListNumber CurrentNumber() const noexcept { return IsEmpty() ? 0 : entries_[Place()].number; }
  /// The place of the current entry in the list, from 0; 0 when the list is empty.
  std::size_t Place() const noexcept { return IsEmpty() ? 0 : PlaceAt(position_); }

  /// Number of entries that follow the current one in this round.
  std::size_t Upcoming() const noexcept { return IsEmpty() ? 0 : Size() - position_ - 1; }
  /// The numbers of upcoming entries, in the order of playing.
  /// \param from  from 0, the entry after the current one
  /// \param count at most this many
  std::vector<ListNumber> UpcomingNumbers(std::size_t from, std::size_t count) const;
  /// What plays after the current file when no command intervenes, with regard to the repeat mode.
  /// \param distance 1 for the next file
  Following After(std::size_t distance);

  // These change the current file.

  /// Goes to the next file, or from the last one to the first of a new round.
  /// \pre the list is not empty
  void GoToNext();
  /// Goes to what After(1) is.
  /// \pre After(1) is an entry
  void GoToFollowing();
  /// Stays at the first file. The entries that were added by kPlayNext still come before others.
  void GoToPrevious();
  /// With shuffle, the upcoming entries stay the same.
  /// \param place in the list, from 0
  /// \returns false when there is no such place
  bool GoToPlace(std::size_t place);
  /// Like GoToPlace. \returns false when no entry has the number
  bool GoTo(ListNumber number);

  /// Moves upcoming entries, in the order of `numbers`, before another upcoming one. Without
  /// shuffle this changes the list, with shuffle only the order of playing. Other numbers are
  /// ignored. When `before` is moved itself, the entry behind it that is not moved is meant.
  /// \param before 0: to the end; nothing changes when it is no upcoming entry
  void Move(const std::vector<ListNumber>& numbers, ListNumber before);
  /// Removes upcoming entries. Other numbers are ignored.
  void Remove(const std::vector<ListNumber>& numbers);

  bool IsShuffled() const noexcept { return shuffle_; }
  void SetShuffle(bool shuffle);
  RepeatMode Repeat() const noexcept { return repeat_; }
  void SetRepeat(RepeatMode mode) noexcept { repeat_ = mode; }

 private:
  /// Index in entries_.
  using PlaceIndex = std::uint32_t;

  struct Entry {
    std::string path;
    ListNumber number : 63 = 0;
    ListNumber played : 1 = 0;  ///< it was the current one in this round
  };

  std::size_t PlaceAt(std::size_t position) const noexcept {
    return shuffle_ ? order_[position] : position;
  }
  std::optional<std::size_t> PlaceOf(ListNumber number) const noexcept;
  /// The place of the first file to be added; no value when `at` is not in the list.
  std::optional<std::size_t> PlaceToAddAt(std::int64_t at) const noexcept;
  /// Adapts the order of playing to entries that were inserted into entries_.
  void AdaptOrder(std::size_t place, std::size_t count, bool play_next);
  /// Distributes places randomly over the order from a position on, whose order does not change.
  void MergeIntoOrder(std::vector<PlaceIndex> places, std::size_t from);
  /// Sorts the upcoming entries.
  /// \param positions the present position of each upcoming entry, in the new order
  void ApplyOrder(const std::vector<std::size_t>& positions);
  void MarkPlayed() noexcept { entries_[Place()].played = 1; }
  void StartRound();
  /// Determines the order of the next round, if that has not been done yet.
  const std::vector<PlaceIndex>& NextRound();
  void Shuffle();
  void Unshuffle();
  void Changed() noexcept;

  std::vector<Entry> entries_;  ///< in the order of the list
  std::size_t bytes_ = 0;       ///< limited by kMaxListBytes
  /// The places in the order of playing; only with shuffle.
  std::vector<PlaceIndex> order_;
  std::vector<PlaceIndex> next_round_;  ///< empty when not determined yet
  std::size_t position_ = 0;            ///< of the current entry in the order of playing
  /// Number of entries right after the current one that were added by kPlayNext, or were left by
  /// GoToPrevious before such entries.
  std::size_t play_next_ = 0;
  ListNumber last_number_ = 0;
  std::uint64_t revision_ = 0;
  bool shuffle_ = false;
  RepeatMode repeat_ = RepeatMode::kOff;
  std::mt19937 random_;
};

}  // namespace tallow

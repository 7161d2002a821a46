// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/play_list.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "player/player_request.h"

namespace tallow {
namespace {

/// The numbers have 63 bits.
constexpr ListNumber kMaxNumber = ~ListNumber{0} >> 1;

template <typename Container>
auto At(Container& container, std::size_t index) {
  return container.begin() + static_cast<std::ptrdiff_t>(index);
}

}  // namespace

void PlayList::Changed() noexcept {
  ++revision_;
  next_round_.clear();
}

// Adding.

std::optional<std::size_t> PlayList::PlaceOf(ListNumber number) const noexcept {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.number == number; });
  if (found == entries_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - entries_.begin());
}

std::optional<std::size_t> PlayList::PlaceToAddAt(std::int64_t at) const noexcept {
  if (at == kAtEnd) return Size();
  if (at == kPlayNext) return IsEmpty() ? 0 : PlaceAt(position_ + play_next_) + 1;
  return PlaceOf(static_cast<ListNumber>(at));
}

ListNumber PlayList::Add(std::vector<std::string> paths, std::int64_t at) {
  std::size_t bytes = 0;
  for (const std::string& path : paths) bytes += path.size() + sizeof(Entry);
  if (paths.empty() || bytes > kMaxListBytes - bytes_) return 0;
  const std::optional<std::size_t> place = PlaceToAddAt(at);
  if (!place) return 0;
  const ListNumber first = last_number_ + 1;
  std::vector<Entry> added;
  added.reserve(paths.size());
  for (std::string& path : paths) {
    added.push_back({.path = std::move(path)});
    added.back().number = ++last_number_ & kMaxNumber;
  }
  bytes_ += bytes;
  entries_.insert(At(entries_, *place), std::move_iterator(added.begin()),
                  std::move_iterator(added.end()));
  AdaptOrder(*place, added.size(), at == kPlayNext);
  Changed();
  return first;
}

void PlayList::AdaptOrder(std::size_t place, std::size_t count, bool play_next) {
  if (count == Size()) {
    // The list was empty.
    position_ = 0;
    play_next_ = play_next ? count - 1 : 0;
    if (!shuffle_) return;
    order_.resize(count);
    std::iota(order_.begin(), order_.end(), PlaceIndex{0});
    if (!play_next) std::shuffle(order_.begin() + 1, order_.end(), random_);
    return;
  }
  const std::size_t after_play_next = position_ + play_next_ + 1;
  if (!shuffle_) {
    if (place <= position_)
      position_ += count;
    else if (play_next || place < after_play_next)
      play_next_ += count;
    return;
  }
  for (PlaceIndex& known : order_)
    if (known >= place) known += static_cast<PlaceIndex>(count);
  std::vector<PlaceIndex> places(count);
  std::iota(places.begin(), places.end(), static_cast<PlaceIndex>(place));
  if (!play_next) return MergeIntoOrder(std::move(places), after_play_next);
  order_.insert(At(order_, after_play_next), places.begin(), places.end());
  play_next_ += count;
}

void PlayList::MergeIntoOrder(std::vector<PlaceIndex> places, std::size_t from) {
  std::shuffle(places.begin(), places.end(), random_);
  const std::vector<PlaceIndex> before(At(order_, from), order_.end());
  order_.resize(from);
  std::size_t next_place = 0;
  std::size_t next_before = 0;
  for (std::size_t left = places.size() + before.size(); left > 0; --left) {
    std::uniform_int_distribution<std::size_t> choose(1, left);
    const bool takes_place = choose(random_) <= places.size() - next_place;
    order_.push_back(takes_place ? places[next_place++] : before[next_before++]);
  }
}

void PlayList::Clear() {
  // clear() would keep the memory of a long list.
  entries_ = {};
  order_ = {};
  next_round_ = {};
  bytes_ = 0;
  position_ = 0;
  play_next_ = 0;
  Changed();
}

// What follows.

std::vector<ListNumber> PlayList::UpcomingNumbers(std::size_t from, std::size_t count) const {
  from = std::min(from, Upcoming());
  count = std::min(count, Upcoming() - from);
  std::vector<ListNumber> numbers;
  numbers.reserve(count);
  for (std::size_t k = 0; k < count; ++k)
    numbers.push_back(entries_[PlaceAt(position_ + 1 + from + k)].number);
  return numbers;
}

PlayList::Following PlayList::After(std::size_t distance) {
  if (IsEmpty()) return {};
  std::size_t place = 0;
  if (repeat_ == RepeatMode::kOne) {
    place = Place();
  } else if (distance <= Upcoming()) {
    place = PlaceAt(position_ + distance);
  } else {
    if (repeat_ == RepeatMode::kOff) return {};
    place = (distance - Upcoming() - 1) % Size();
    if (shuffle_) place = NextRound()[place];
  }
  return {.number = entries_[place].number, .path = &entries_[place].path};
}

const std::vector<PlayList::PlaceIndex>& PlayList::NextRound() {
  if (next_round_.size() == Size()) return next_round_;
  next_round_.resize(Size());
  std::iota(next_round_.begin(), next_round_.end(), PlaceIndex{0});
  std::shuffle(next_round_.begin(), next_round_.end(), random_);
  // The last file of this round is not the first one of the next.
  if (Size() > 1 && next_round_.front() == PlaceAt(Size() - 1))
    std::swap(next_round_.front(), next_round_.back());
  return next_round_;
}

void PlayList::StartRound() {
  for (Entry& entry : entries_) entry.played = 0;
  if (shuffle_) order_ = NextRound();
  position_ = 0;
  play_next_ = 0;
}

// Going to another entry.

void PlayList::GoToNext() {
  MarkPlayed();
  if (Upcoming() == 0) {
    StartRound();
  } else {
    ++position_;
    if (play_next_ > 0) --play_next_;
  }
  Changed();
}

void PlayList::GoToFollowing() {
  if (repeat_ != RepeatMode::kOne) GoToNext();
}

void PlayList::GoToPrevious() {
  if (!HasPrevious()) return;
  MarkPlayed();
  --position_;
  // The entry that was left comes before those that were added by kPlayNext.
  if (play_next_ > 0) ++play_next_;
  Changed();
}

bool PlayList::GoTo(ListNumber number) {
  const std::optional<std::size_t> place = PlaceOf(number);
  return place && GoToPlace(*place);
}

bool PlayList::GoToPlace(std::size_t place) {
  if (place >= Size()) return false;
  if (place == Place()) return true;
  MarkPlayed();
  const std::size_t last_play_next = position_ + play_next_;
  if (!shuffle_) {
    play_next_ = place > position_ && place <= last_play_next ? last_play_next - place : 0;
    position_ = place;
  } else {
    const auto found = std::find(order_.begin(), order_.end(), place);
    const auto position = static_cast<std::size_t>(found - order_.begin());
    order_.erase(found);
    if (position < position_)
      --position_;
    else if (position <= last_play_next)
      --play_next_;
    ++position_;
    order_.insert(At(order_, position_), static_cast<PlaceIndex>(place));
  }
  Changed();
  return true;
}

// Changing what is upcoming.

void PlayList::Move(const std::vector<ListNumber>& numbers, ListNumber before) {
  std::unordered_map<ListNumber, std::size_t> ranks;
  for (const ListNumber number : numbers) ranks.emplace(number, ranks.size());
  // Positions of the entries, 0 for an entry that is not upcoming.
  std::vector<std::size_t> moved(ranks.size(), 0);
  std::vector<std::size_t> stays;
  std::optional<std::size_t> target;  // index in `stays`
  std::size_t play_next_stays = 0;
  for (std::size_t position = position_ + 1; position < Size(); ++position) {
    const ListNumber number = entries_[PlaceAt(position)].number;
    if (number == before) target = stays.size();
    if (const auto rank = ranks.find(number); rank != ranks.end()) {
      moved[rank->second] = position;
    } else {
      stays.push_back(position);
      if (position <= position_ + play_next_) ++play_next_stays;
    }
  }
  std::erase(moved, std::size_t{0});
  if (before == 0) target = stays.size();
  if (!target || moved.empty()) return;
  stays.insert(At(stays, *target), moved.begin(), moved.end());
  play_next_ = play_next_stays + (*target < play_next_stays ? moved.size() : 0);
  ApplyOrder(stays);
  Changed();
}

void PlayList::ApplyOrder(const std::vector<std::size_t>& positions) {
  if (shuffle_) {
    std::vector<PlaceIndex> places;
    places.reserve(positions.size());
    for (const std::size_t position : positions) places.push_back(order_[position]);
    std::copy(places.begin(), places.end(), At(order_, position_ + 1));
  } else {
    std::vector<Entry> entries;
    entries.reserve(positions.size());
    for (const std::size_t position : positions) entries.push_back(std::move(entries_[position]));
    std::move(entries.begin(), entries.end(), At(entries_, position_ + 1));
  }
}

void PlayList::Remove(const std::vector<ListNumber>& numbers) {
  const std::unordered_set<ListNumber> removed(numbers.begin(), numbers.end());
  constexpr auto kRemoved = static_cast<PlaceIndex>(-1);
  std::vector<PlaceIndex> new_places(Size(), 0);
  const std::size_t last_play_next = position_ + play_next_;
  for (std::size_t position = position_ + 1; position < Size(); ++position) {
    const std::size_t place = PlaceAt(position);
    if (!removed.contains(entries_[place].number)) continue;
    new_places[place] = kRemoved;
    if (position <= last_play_next) --play_next_;
  }
  std::size_t kept = 0;
  for (std::size_t place = 0; place < Size(); ++place) {
    if (new_places[place] == kRemoved) {
      bytes_ -= entries_[place].path.size() + sizeof(Entry);
      continue;
    }
    new_places[place] = static_cast<PlaceIndex>(kept);
    if (kept != place) entries_[kept] = std::move(entries_[place]);
    ++kept;
  }
  if (kept == Size()) return;
  entries_.resize(kept);
  for (PlaceIndex& place : order_) place = new_places[place];
  std::erase(order_, kRemoved);
  Changed();
}

// Shuffle.

void PlayList::SetShuffle(bool shuffle) {
  if (shuffle == shuffle_) return;
  if (shuffle)
    Shuffle();
  else
    Unshuffle();
  Changed();
}

void PlayList::Shuffle() {
  shuffle_ = true;
  if (IsEmpty()) return;
  const std::size_t current = position_;
  const auto is_play_next = [&](std::size_t place) {
    return place > current && place <= current + play_next_;
  };
  std::vector<PlaceIndex> rest;
  order_.clear();
  order_.reserve(Size());
  for (std::size_t place = 0; place < Size(); ++place) {
    if (place == current || is_play_next(place)) continue;
    (entries_[place].played != 0 ? order_ : rest).push_back(static_cast<PlaceIndex>(place));
  }
  position_ = order_.size();
  for (std::size_t place = current; place <= current + play_next_; ++place)
    order_.push_back(static_cast<PlaceIndex>(place));
  std::shuffle(rest.begin(), rest.end(), random_);
  order_.insert(order_.end(), rest.begin(), rest.end());
}

void PlayList::Unshuffle() {
  shuffle_ = false;
  if (IsEmpty()) return;
  // The entries that were added by kPlayNext still come next, so they move in the list.
  const std::vector<PlaceIndex> order = std::exchange(order_, {});
  std::vector<bool> moves(Size(), false);
  for (std::size_t k = 1; k <= play_next_; ++k) moves[order[position_ + k]] = true;
  std::vector<Entry> entries;
  entries.reserve(Size());
  std::size_t new_position = 0;
  for (std::size_t place = 0; place < Size(); ++place) {
    if (moves[place]) continue;
    entries.push_back(std::move(entries_[place]));
    if (place != order[position_]) continue;
    new_position = entries.size() - 1;
    for (std::size_t k = 1; k <= play_next_; ++k)
      entries.push_back(std::move(entries_[order[position_ + k]]));
  }
  entries_ = std::move(entries);
  position_ = new_position;
}

}  // namespace tallow

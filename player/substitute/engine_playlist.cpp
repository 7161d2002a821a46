// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/engine_playlist.h"

#include <algorithm>

namespace tallow {

void EnginePlaylist::Clear() noexcept {
  current_ = {};
  following_.clear();
  removed_.clear();
}

void EnginePlaylist::SetCurrent(CommandNumber load, ListNumber track) noexcept {
  Clear();
  current_ = {load, kNoEntry, track, false};
}

void EnginePlaylist::AddFollowing(CommandNumber append, ListNumber track) {
  following_.push_back({append, kNoEntry, track, false});
}

void EnginePlaylist::AddNext(CommandNumber append, ListNumber track) {
  following_.push_front({append, kNoEntry, track, false});
}

void EnginePlaylist::RemoveFollowing(CommandNumber removal) {
  for (const Entry& following : following_) removed_.push_back({following, removal});
  following_.clear();
}

bool EnginePlaylist::IsSettled() const noexcept {
  // A removal without a number was not sent.
  return std::all_of(following_.begin(), following_.end(),
                     [](const Entry& following) { return following.answered; }) &&
         std::all_of(removed_.begin(), removed_.end(),
                     [](const RemovedEntry& removed) { return removed.removal == 0; });
}

bool EnginePlaylist::HasFollowing() const noexcept {
  return std::any_of(following_.begin(), following_.end(),
                     [](const Entry& following) { return following.number != kNoEntry; });
}

bool EnginePlaylist::MayHaveStarted(EntryNumber entry) const noexcept {
  if (entry == kNoEntry) return false;
  const auto is_entry = [entry](const Entry& other) { return other.number == entry; };
  return std::any_of(following_.begin(), following_.end(), is_entry) ||
         std::any_of(removed_.begin(), removed_.end(),
                     [&](const RemovedEntry& removed) { return is_entry(removed.entry); });
}

bool EnginePlaylist::StoreReply(CommandNumber command, EntryNumber entry) noexcept {
  for (Entry& following : following_) {
    if (command != following.command) continue;
    following.number = entry;
    following.answered = true;
  }
  for (RemovedEntry& removed : removed_)
    if (command == removed.entry.command) removed.entry.number = entry;
  // An entry that started before its removal was reported before the reply to the removal.
  std::erase_if(removed_, [&](const RemovedEntry& removed) { return removed.removal == command; });
  if (command != current_.command) return false;
  current_.number = entry;
  return true;
}

void EnginePlaylist::Advance() noexcept {
  current_ = following_.front();
  following_.pop_front();
}

}  // namespace tallow

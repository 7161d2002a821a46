// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/engine_playlist.h"

namespace tallow {

void EnginePlaylist::Clear() noexcept {
  current_ = {};
  following_.clear();
}

void EnginePlaylist::SetCurrent(CommandNumber load) noexcept {
  current_ = {load, kNoEntry};
  following_.clear();
}

void EnginePlaylist::AddFollowing(CommandNumber append) {
  following_.push_back({append, kNoEntry});
}

bool EnginePlaylist::StoreReply(CommandNumber command, EntryNumber entry) noexcept {
  for (Entry& following : following_)
    if (command == following.command) following.number = entry;
  if (command != current_.command) return false;
  current_.number = entry;
  return true;
}

void EnginePlaylist::Advance() noexcept {
  current_ = following_.front();
  following_.pop_front();
}

}  // namespace tallow

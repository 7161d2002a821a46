// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_children.h"

namespace tallow {

std::unique_ptr<ChildReader> TagChildren::TakeIdle() {
  const std::lock_guard lock(mutex_);
  if (idle_.empty()) return std::make_unique<ChildReader>(settings_);
  std::unique_ptr<ChildReader> reader = std::move(idle_.back());
  idle_.pop_back();
  return reader;
}

SongTags TagChildren::Read(const std::string& path) {
  // Not locked while the file is read, so that a disk that does not answer blocks one call alone.
  std::unique_ptr<ChildReader> reader = TakeIdle();
  SongTags tags = reader->ReadTags(path);
  const std::lock_guard lock(mutex_);
  idle_.push_back(std::move(reader));
  return tags;
}

}  // namespace tallow

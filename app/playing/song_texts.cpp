// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/song_texts.h"

#include <optional>

#include "app/tallow.h"
#include "details/song_tags.h"
#include "util/path_text.h"

namespace tallow {

std::string SongTexts::Of(std::int32_t song) {
  if (!tallow_.library.IsPresent(song)) return {};
  const std::string path = tallow_.library.Song(song).Path();
  if (const auto kept = kept_.find(path); kept != kept_.end()) return kept->second;
  return Ask(path);
}

std::string SongTexts::AskAnew(std::int32_t song) {
  if (!tallow_.library.IsPresent(song)) return {};
  const std::string path = tallow_.library.Song(song).Path();
  kept_.erase(path);
  return Ask(path);
}

std::string SongTexts::Ask(const std::string& path) {
  const std::optional<SongTags> tags = tallow_.details.TagsOf(path);
  // They are read later.
  if (!tags || tags->unread) return std::string(NameOfPath(path));
  std::string text = tags->title;
  if (text.empty())
    text = NameOfPath(path);
  else if (!tags->artist.empty())
    text += " - " + tags->artist;
  if (kept_.size() >= kMaxKept) kept_.clear();
  return kept_[path] = text;
}

}  // namespace tallow

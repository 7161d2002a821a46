// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/category_index.h"

#include <algorithm>

#include "util/like.h"
#include "util/text.h"

namespace tallow {

CategoryIndex::CategoryIndex(FolderTree& tree, Folder& category, Match match,
                             const FolderSet& unused)
    : tree_(tree), category_(category), match_(match) {
  for (std::int32_t k = 0; k < category.Children(); ++k)
    if (const Folder& child = category.ChildAt(k); unused.contains(&child))
      unused_.try_emplace(child.Text(), k);
    else
      Learn(k);
}

std::string CategoryIndex::WholeKey(std::string_view text) { return ToLower(ToNfc(Trim(text))); }

std::string CategoryIndex::KeyOf(std::string_view text) const {
  switch (match_) {
    case Match::kExact:
      return std::string(text);
    case Match::kWhole:
      return WholeKey(text);
    default:
      return ToLower(text);
  }
}

void CategoryIndex::Learn(std::int32_t index) {
  std::string key = KeyOf(category_.ChildAt(index).Text());
  if (match_ != Match::kBeginning) {
    by_text_.try_emplace(std::move(key), KnownText{index, false});
    return;
  }
  // A text that ends in the middle of a UTF-8 character would match as a prefix of bytes, though
  // not as a prefix of characters.
  const bool is_pattern = HasWildcards(key) || !IsValidUtf8(key);
  if (is_pattern) {
    const auto place =
        std::find_if(patterns_.rbegin(), patterns_.rend(), [&](const PatternFolder& other) {
          return other.index < index;
        }).base();
    patterns_.insert(place, {key + "*", index});
  } else {
    lengths_.insert(key.size());
  }
  by_text_.try_emplace(std::move(key), KnownText{index, !is_pattern});
}

std::int32_t CategoryIndex::FindByBeginning(const std::string& key) const {
  std::int32_t first = kNone;
  const auto consider = [&first](std::int32_t index) {
    if (first == kNone || index < first) first = index;
  };
  for (const std::size_t length : lengths_) {
    if (length > key.size()) break;
    const auto found = by_text_.find(key.substr(0, length));
    if (found != by_text_.end() && found->second.is_beginning) consider(found->second.index);
  }
  for (const PatternFolder& folder : patterns_) {
    if (first != kNone && folder.index > first) break;
    if (Like(key, folder.pattern)) consider(folder.index);
  }
  return first;
}

std::int32_t CategoryIndex::Find(std::string_view value) const {
  const std::string key = KeyOf(value);
  const auto found = by_text_.find(key);
  if (found != by_text_.end()) return found->second.index;
  return match_ == Match::kBeginning ? FindByBeginning(key) : kNone;
}

Folder& CategoryIndex::Add(std::string_view value) {
  const auto unused = unused_.find(std::string(value));
  if (unused == unused_.end()) {
    Folder& added = tree_.AddChild(&category_, value);
    Learn(added.Index());
    return added;
  }
  const std::int32_t index = unused->second;
  unused_.erase(unused);
  Learn(index);
  // The folder may come before the one that a cached value belongs to so far.
  known_.clear();
  return category_.ChildAt(index);
}

Folder& CategoryIndex::FolderFor(std::string_view value) {
  const auto known = known_.find(std::string(value));
  if (known != known_.end()) return category_.ChildAt(known->second);
  const std::int32_t found = Find(value);
  if (found == kNone) return Add(value);
  known_.emplace(value, found);
  return category_.ChildAt(found);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/category_index.h"

#include "util/like.h"
#include "util/text.h"

namespace tallow {

CategoryIndex::CategoryIndex(FolderTree& tree, Folder& category, Match match)
    : tree_(tree), category_(category), match_(match) {
  for (std::int32_t k = 0; k < category.Children(); ++k) Learn(k);
}

void CategoryIndex::Learn(std::int32_t index) {
  const std::string& text = category_.ChildAt(index).Text();
  if (match_ == Match::kExact) {
    by_text_.try_emplace(text, index);
    return;
  }
  std::string lower = ToLower(text);
  // A text that ends in the middle of a UTF-8 character would match as a prefix of bytes, though
  // not as a prefix of characters.
  if (HasWildcards(lower) || !IsValidUtf8(lower)) {
    patterns_.push_back({lower + "*", index});
    return;
  }
  lengths_.insert(lower.size());
  by_text_.try_emplace(std::move(lower), index);
}

std::int32_t CategoryIndex::Find(std::string_view value) const {
  std::int32_t first = kNone;
  const auto consider = [&first](std::int32_t index) {
    if (first == kNone || index < first) first = index;
  };
  if (match_ == Match::kExact) {
    const auto found = by_text_.find(std::string(value));
    return found == by_text_.end() ? kNone : found->second;
  }
  const std::string key = ToLower(value);
  for (const std::size_t length : lengths_) {
    if (length > key.size()) break;
    const auto found = by_text_.find(key.substr(0, length));
    if (found != by_text_.end()) consider(found->second);
  }
  for (const PatternFolder& folder : patterns_) {
    if (first != kNone && folder.index > first) break;
    if (Like(key, folder.pattern)) consider(folder.index);
  }
  return first;
}

Folder& CategoryIndex::FolderFor(std::string_view value) {
  const auto known = known_.find(std::string(value));
  if (known != known_.end()) return category_.ChildAt(known->second);
  const std::int32_t found = Find(value);
  if (found != kNone) {
    known_.emplace(value, found);
    return category_.ChildAt(found);
  }
  Folder& added = tree_.AddChild(&category_, value);
  Learn(added.Index());
  return added;
}

}  // namespace tallow

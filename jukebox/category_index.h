// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// Index over the folders of a category ("Artist", "Year", "Genre"). Finds the folder that a song
/// belongs to, with the same result as a linear search over the folders.
///
/// A song belongs to the first folder, in tree order, whose text matches the beginning of the
/// song's value. Letter case is ignored and the text is a wildcard pattern. Folders whose text
/// contains a wildcard character are few; Find tries them one by one. All other folders are in a
/// hash table keyed by lower-cased text. Find looks up every prefix of the value that is as long as
/// some folder's text.
///
/// A cached result stays valid for the lifetime of the index, because folders are only appended. A
/// value that does not match itself as a pattern ("Apollo #5") is never found, so each call adds
/// another folder for it.
class CategoryIndex {
 public:
  /// How a folder's text is compared with a value.
  enum class Match {
    kBeginning,  ///< the value starts with the text; ignores case, allows wildcards
    kExact,      ///< the value equals the text; case-sensitive, no wildcards
  };

  /// \param category the folder whose subfolders are indexed; must outlive the index
  CategoryIndex(FolderTree& tree, Folder& category, Match match);

  /// Returns the folder for a value. If there is none, appends a folder with the value as its text.
  Folder& FolderFor(std::string_view value);

 private:
  static constexpr std::int32_t kNone = -1;

  void Learn(std::int32_t index);
  std::int32_t Find(std::string_view value) const;

  FolderTree& tree_;
  Folder& category_;
  Match match_;
  /// Results of earlier lookups; indexes from 0.
  std::unordered_map<std::string, std::int32_t> known_;
  /// Index, from 0, of the first folder with a text.
  std::unordered_map<std::string, std::int32_t> by_text_;
  std::set<std::size_t> lengths_;  ///< lengths of the keys in by_text_, in bytes
  struct PatternFolder {
    std::string pattern;
    std::int32_t index;
  };
  std::vector<PatternFolder> patterns_;  ///< in tree order
};

}  // namespace tallow

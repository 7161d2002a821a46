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

/// Finds the folder of a category ("Artist", "Year", "Genre") that a song belongs to, as a walk
/// over the category's folders would, but without the walk.
///
/// A song belongs to the first folder, in the tree's order, whose text the song's value begins
/// with, letter case ignored, the text being taken as a wildcard pattern. Folders whose text holds
/// a wildcard character are few and tried one by one. The others lie in a table by lower-cased
/// text, which is asked for every beginning of the value that some folder's length allows. What was
/// once found for a value stays right while the index lives, since folders are only added, and
/// behind the others. A value whose own text does not match as a pattern ("Apollo #5") is never
/// found and gets a folder each time.
class CategoryIndex {
 public:
  /// How a folder's text has to fit.
  enum class Match {
    kBeginning,  ///< the value begins with the text, any case, wildcards count
    kExact,      ///< the value is the text, case counting, no wildcards
  };

  /// \param category the folder whose subfolders are looked at; has to outlive the index
  CategoryIndex(FolderTree& tree, Folder& category, Match match);

  /// The folder that takes a value; made behind the others, with the value as its text, when there
  /// is none.
  Folder& FolderFor(std::string_view value);

 private:
  static constexpr std::int32_t kNone = -1;

  void Learn(std::int32_t index);
  std::int32_t Find(std::string_view value) const;

  FolderTree& tree_;
  Folder& category_;
  Match match_;
  std::unordered_map<std::string, std::int32_t> known_;  ///< what earlier values came to
  std::unordered_map<std::string, std::int32_t>
      by_text_;                    ///< first folder of a text, its place from 0
  std::set<std::size_t> lengths_;  ///< of the texts in by_text_, bytes
  struct PatternFolder {
    std::string pattern;
    std::int32_t index;
  };
  std::vector<PatternFolder> patterns_;  ///< in the tree's order
};

}  // namespace tallow

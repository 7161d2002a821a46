// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// Folders of a tree, by address.
using FolderSet = std::unordered_set<const Folder*>;

/// Index over the folders of a category ("Artist", "Year", "Genre", "Album"). Finds the folder that
/// a song belongs to, with the same result as a linear search over the folders.
///
/// With kBeginning, a song belongs to the first folder, in tree order, whose text equals the song's
/// value; else to the first whose text matches the beginning of the value. Letter case is ignored
/// and the text is a wildcard pattern. Folders whose text contains a wildcard character are few;
/// Find tries them one by one. All folders are in a hash table keyed by lower-cased text. Find
/// looks up the value, and then every prefix of it that is as long as the text of some folder
/// without wildcards.
///
/// Folders are only appended while the index exists, so a cached result stays valid until an unused
/// folder is used again.
class CategoryIndex {
 public:
  /// How a folder's text is compared with a value.
  enum class Match {
    kBeginning,  ///< the value starts with the text; ignores case, allows wildcards
    kExact,      ///< the value equals the text; case-sensitive, no wildcards
    kWhole,      ///< the two have the same WholeKey
  };

  /// \param category the folder whose subfolders are indexed; must outlive the index
  /// \param unused   subfolders that match no value. One of them is used again, and matches from
  ///                 then on, in place of a new folder with exactly its text
  CategoryIndex(FolderTree& tree, Folder& category, Match match, const FolderSet& unused = {});

  /// Returns the folder for a value. If there is none, appends a folder with the value as its text.
  Folder& FolderFor(std::string_view value);

  /// What kWhole compares: the text in lower case and NFC, without blanks at its ends.
  static std::string WholeKey(std::string_view text);

 private:
  static constexpr std::int32_t kNone = -1;

  std::string KeyOf(std::string_view text) const;
  void Learn(std::int32_t index);
  std::int32_t Find(std::string_view value) const;
  std::int32_t FindByBeginning(const std::string& key) const;
  Folder& Add(std::string_view value);

  FolderTree& tree_;
  Folder& category_;
  Match match_;
  /// Results of earlier lookups; indexes from 0.
  std::unordered_map<std::string, std::int32_t> known_;
  struct KnownText {
    std::int32_t index;  ///< of the first folder with the text, from 0
    bool is_beginning;   ///< whether the text is the beginning of longer values
  };
  std::unordered_map<std::string, KnownText> by_text_;
  std::set<std::size_t> lengths_;  ///< lengths in bytes of the keys that are beginnings
  struct PatternFolder {
    std::string pattern;
    std::int32_t index;
  };
  std::vector<PatternFolder> patterns_;                   ///< in tree order
  std::unordered_map<std::string, std::int32_t> unused_;  ///< index of an unused folder, by text
};

}  // namespace tallow

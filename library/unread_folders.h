// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

// Folders that a search could not read are remembered in "Unread.json", because no song of theirs may be
// known by which the next start would come to them. It is JSON in UTF-8, a folder a line:
//
//   {"format":"Tallow unread folders","version":1,"folders":[
//   {"path":"/m/abba/","below":true}]}
//
// "below" says that the folders below it were to be searched too. Texts are written as AppendJsonText writes
// them.

/// A folder that could not be read.
struct UnreadFolder {
  std::string path;     ///< ends in a separator
  bool below = false;   ///< the folders below it are to be searched too
  std::string problem;  ///< what the system says; empty of one that an earlier run has left
};

/// The folders that could not be read, in the order of their paths.
class UnreadFolders {
 public:
  /// How many are remembered. Somebody who has no permission for more searches a disk that is not his.
  static constexpr std::size_t kMax = 10'000;

  void Add(UnreadFolder folder);
  /// Whether a folder is remembered with the folders below it.
  bool HasBelow(std::string_view path) const;
  /// Forgets a folder.
  void Remove(std::string_view path);

  std::vector<UnreadFolder> Folders() const;
  std::size_t size() const noexcept { return folders_.size(); }

  /// Whether anything has changed since Decode or MarkSaved.
  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }

  std::string Encode() const;
  /// Takes over the content of a file.
  /// \throws std::exception saying what is wrong with it; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  std::map<std::string, UnreadFolder, std::less<>> folders_;
  bool is_dirty_ = false;
};

}  // namespace tallow
